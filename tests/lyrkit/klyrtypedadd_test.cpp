#include "lyrfilesdk/lyrkit/klyrtypedadd.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "lyrfilesdk/lyrkit/klyrtypename.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using Flag = LyrPropertyFlags;

enum class Choice { eOff, eOn };

class TypedAdd : public HandleTest {
protected:
    OwnedRoot mPage{H::Create("page", eUNIDENTIFIED)};
};

TEST_F(TypedAdd, TakesTheTypeOfTheValue) {
    const H lNumber = lyrAdd(*mPage, "Intensity", 1.5);
    EXPECT_EQ(lNumber.GetType(), eDOUBLE1);
    EXPECT_STREQ(lNumber.GetName(), "Intensity");
    EXPECT_EQ(lNumber.GetParent(), *mPage);
    EXPECT_EQ(lyrGet<double>(lNumber), 1.5);
    EXPECT_EQ(lyrAdd(*mPage, "", 1).GetType(), eINTEGER1);
    EXPECT_EQ(lyrAdd(*mPage, "", true).GetType(), eBOOL1);
    EXPECT_EQ(lyrAdd(*mPage, "", Choice::eOn).GetType(), eENUM);
    EXPECT_EQ(lyrAdd(*mPage, "", std::array<double, 16>{}).GetType(), eDOUBLE44);
    EXPECT_EQ(lyrAdd(*mPage, "", KTime(3)).GetType(), eTIME);
    const H lText = lyrAdd(*mPage, "", "a text");
    EXPECT_EQ(lText.GetType(), eSTRING);
    EXPECT_STREQ(lyrGet<KString>(lText).value(), "a text");
    EXPECT_EQ(lyrAdd(*mPage, "", std::string_view()).GetType(), eSTRING);
}

TEST_F(TypedAdd, TakesATypeCodeForAType) {
    for (int lCode = 0; lCode < eMAX_TYPES; ++lCode) {
        const H lAdded = lyrAdd(*mPage, "x", static_cast<ELyrType>(lCode));
        EXPECT_TRUE(lAdded.Valid());
        EXPECT_EQ(lAdded.GetType(), lCode);
    }
}

TEST_F(TypedAdd, AddsNothingBelowWhatIsNotThere) {
    const std::string lBefore = DescribePage(*mPage);
    for (const H& lNowhere : {H(), H(mPage->GetPage(), -1), H(mPage->GetPage(), 1000), H(nullptr, 0)}) {
        EXPECT_EQ(lyrAdd(lNowhere, "x", 1.0), H());
        EXPECT_EQ(lyrAdd(lNowhere, "x", eDOUBLE1), H());
        H lHandle = *mPage;
        EXPECT_EQ(lyrBuild(lNowhere, "x", 1.0).Label("label").Limits(0, 1).Into(lHandle), eLyrBuildAdd);
        EXPECT_EQ(lHandle, H());
        EXPECT_EQ(lyrBuild(lNowhere, "x", *mPage).GetFailure(), eLyrBuildAdd);
    }
    EXPECT_EQ(lyrBuild(*mPage, "x", H()).GetFailure(), eLyrBuildAdd) << "no type page";
    EXPECT_EQ(DescribePage(*mPage), lBefore);
}

TEST_F(TypedAdd, BuildsAPropertyInOneExpression) {
    static int sData = 0;
    const H lPower = lyrBuild(*mPage, "Power", 60.0)
                         .Limits(0, 150.0f)
                         .SoftLimits("1", 100)
                         .Label("Power (W)")
                         .Flags(Flag::eANIMATABLE | Flag::eUSER)
                         .UserTag(7)
                         .UserData(&sData);
    ASSERT_TRUE(lPower.Valid());
    EXPECT_EQ(Describe(lPower, false).find("0/1 'Power' type=12 value='60' min=0 softmin=1 max=150 softmax=100"), 0u);
    EXPECT_STREQ(lPower.GetLabel(), "Power (W)");
    EXPECT_EQ(lPower.GetUserTag(), 7);
    EXPECT_EQ(lPower.GetUserData(), &sData);
    EXPECT_EQ(lPower.GetFlags(), Flag::eANIMATABLE | Flag::eUSER);

    H lState;
    EXPECT_EQ(lyrBuild(*mPage, "State", eENUM).EnumTexts({"off", "on"}).Default(Choice::eOn).Into(lState),
              eLyrBuildDone);
    EXPECT_EQ(lyrGet<Choice>(lState), Choice::eOn);
    EXPECT_EQ(lState.GetEnumCount(), 2);
    EXPECT_STREQ(lState.GetEnumValue(1), "on");
    EXPECT_EQ(lyrGet<Choice>(lyrBuild(*mPage, "Other", eENUM).EnumTexts({"off", "on"}).DefaultText("on")), Choice::eOn);
}

TEST_F(TypedAdd, BuildsATypedProperty) {
    OwnedRoot lType(H::Create("type", eDOUBLE1));
    lyrAdd(*lType, "part", 5);
    const H lTyped = lyrBuild(*mPage, "typed", *lType).Label("label");
    EXPECT_EQ(lTyped.GetTypeInfo(), *lType);
    EXPECT_STREQ(lTyped.Find("part", true).GetName(), "part");
}

template <typename Build>
void ExpectFails(const H& pPage, const H& pType, ELyrBuildStep pStep, Build pBuild) {
    SCOPED_TRACE(pStep);
    const std::string lBefore = DescribePage(pPage);
    // Typed and not, so that children have to go too.
    KLyrPropertyBuilder lBuilders[] = {lyrBuild(pPage, "plain", eENUM), lyrBuild(pPage, "typed", pType)};
    for (KLyrPropertyBuilder& lBuilder : lBuilders) {
        ASSERT_TRUE(lBuilder.GetHandle().Valid());
        H lHandle = pPage;
        EXPECT_EQ(pBuild(lBuilder.Label("label").UserTag(3)).Label("behind").EnumTexts({"a"}).Into(lHandle), pStep);
        EXPECT_EQ(lHandle, H());
        EXPECT_EQ(H(lBuilder), H());
        EXPECT_EQ(lBuilder.GetFailure(), pStep);
    }
    EXPECT_EQ(DescribePage(pPage), lBefore);
}

TEST_F(TypedAdd, LeavesNothingWhenAStepFails) {
    using B = KLyrPropertyBuilder;
    OwnedRoot lType(H::Create("type", eENUM));
    lyrAdd(lyrAdd(*lType, "part", 5), "deep", 6);
    const lyrDouble4 lVector;
    ExpectFails(*mPage, *lType, eLyrBuildDefault, [&](B& p) -> B& { return p.Default(lVector); });
    ExpectFails(*mPage, *lType, eLyrBuildDefault, [](B& p) -> B& { return p.Default("no number"); });
    ExpectFails(*mPage, *lType, eLyrBuildDefault, [](B& p) -> B& { return p.EnumTexts({"b"}).DefaultText("a"); });
    ExpectFails(*mPage, *lType, eLyrBuildMin, [&](B& p) -> B& { return p.Limits(lVector, 1); });
    ExpectFails(*mPage, *lType, eLyrBuildMax, [&](B& p) -> B& { return p.Limits(1, lVector); });
    ExpectFails(*mPage, *lType, eLyrBuildSoftMin, [&](B& p) -> B& { return p.SoftLimits("x", 1); });
    ExpectFails(*mPage, *lType, eLyrBuildSoftMax, [&](B& p) -> B& { return p.SoftLimits(1, "x"); });
    ExpectFails(*mPage, *lType, eLyrBuildEnumTexts, [](B& p) -> B& { return p.EnumTexts({"a", "b", "a"}); });
    ExpectFails(*mPage, *lType, eLyrBuildFlags,
                [](B& p) -> B& { return p.Flags(static_cast<Flag::eLyrPropertyFlags>(0x8000)); });
    EXPECT_EQ(lyrBuild(*mPage, "x", 1.0).EnumTexts({"a"}).GetFailure(), eLyrBuildEnumTexts) << "no enumeration";
}

TEST_F(TypedAdd, AsksForNoMoreMemoryThanTheHandle) {
    std::size_t lBefore = MemoryProbe::Allocations();
    H lPlain = mPage->Add("first name", eDOUBLE1);
    const double lValue = 2;
    lPlain.Set(&lValue, eDOUBLE1, false);
    lPlain.SetMin(&lValue, eDOUBLE1);
    lPlain.SetLabel("first label");
    const std::size_t lPlainly = MemoryProbe::Allocations() - lBefore;
    lBefore = MemoryProbe::Allocations();
    lyrBuild(*mPage, "other name", 2.0).Min(2.0).Label("other label");
    EXPECT_EQ(MemoryProbe::Allocations() - lBefore, lPlainly);
}

TEST_F(TypedAdd, LeavesNothingWhenMemoryEnds) {
    const std::string lLong(1000, 'l');
    int lFailures[eLyrBuildFlags + 1] = {};
    for (std::size_t i = 0;; ++i) {
        const std::string lBefore = DescribePage(*mPage);
        H lHandle;
        ELyrBuildStep lFailure;
        std::size_t lRefused;
        {
            const FailAllocations lFail(i, true);
            lFailure = lyrBuild(*mPage, "a name", lLong).Min("min").Label("a label").Into(lHandle);
            lRefused = lFail.Failed();
        }
        ++lFailures[lFailure];
        if (lRefused == 0)
            break;
        EXPECT_EQ(lHandle, H());
        EXPECT_EQ(DescribePage(*mPage), lBefore);
        EXPECT_EQ(lyrAdd(*mPage, "x", lLong).Valid(), true);
    }
    EXPECT_GT(lFailures[eLyrBuildAdd], 0);
    EXPECT_GT(lFailures[eLyrBuildMin], 0);
    EXPECT_GT(lFailures[eLyrBuildLabel], 0);
    EXPECT_EQ(lFailures[eLyrBuildDone], 1);
}

}  // namespace
}  // namespace lyrsdk
