#include "lyrfilesdk/lyrkit/klyrenumeration.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrkit/klyrtypedadd.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;

class Enumeration : public HandleTest {
protected:
    H Below(const H& pPage) const { return On(pPage, mState); }
    std::string Texts() const {
        std::string lTexts;
        for (int i = 0; i < mState.GetEnumCount(); ++i)
            lTexts += std::string(mState.GetEnumValue(i)) + ' ';
        return lTexts;
    }

    OwnedRoot mPage{H::Create("page", eUNIDENTIFIED)};
    OwnedRoot mInstance{H::Create(*mPage)};
    OwnedRoot mDeep{H::Create(*mInstance)};
    OwnedRoot mOther{H::Create(*mPage)};
    H mState = lyrBuild(*mPage, "state", eENUM).EnumTexts({"off", "idle", "on"});
};

TEST_F(Enumeration, IsReadAndSetByItsTexts) {
    EXPECT_EQ(lyrFindEnumIndex(mState, "on"), 2);
    EXPECT_EQ(lyrFindEnumIndex(mState, "ON"), -1);
    EXPECT_EQ(lyrFindEnumIndex(mState, std::string_view("only", 2)), 2);
    EXPECT_STREQ(lyrGetEnumText(mState), "off");
    EXPECT_EQ(lyrSetEnumText(mState, "idle"), eLyrSetWritten);
    EXPECT_STREQ(lyrGetEnumText(Below(*mDeep)), "idle");
    EXPECT_EQ(lyrSetEnumText(Below(*mDeep), "idle"), eLyrSetAlreadySo);
    EXPECT_EQ(lyrSetEnumText(Below(*mDeep), "idle", eLyrSetPin), eLyrSetWritten);
    EXPECT_EQ(lyrSetEnumText(Below(*mDeep), "idle"), eLyrSetCollapsed);
    EXPECT_EQ(lyrSetEnumText(mState, "unknown"), eLyrSetRefused);
    EXPECT_STREQ(lyrGetEnumText(mState), "idle");
}

TEST_F(Enumeration, HasNoTextForAnIndexOutsideItsList) {
    for (int lIndex : {INT_MIN, -1, 3, INT_MAX}) {
        lyrSet(mState, lIndex);
        EXPECT_EQ(lyrGetEnumText(mState), nullptr) << lIndex;
    }
    EXPECT_EQ(lyrGetEnumText(lyrAdd(*mPage, "number", 1)), nullptr);
}

TEST_F(Enumeration, KeepsItsMeaningWhenATextIsInserted) {
    lyrSetEnumText(mState, "idle");
    lyrSetEnumText(Below(*mInstance), "on");
    lyrSetEnumText(Below(*mOther), "off");
    EXPECT_EQ(lyrInsertEnumText(Below(*mDeep), 1, "dimmed"), 2);
    EXPECT_EQ(Texts(), "off dimmed idle on ");
    EXPECT_STREQ(lyrGetEnumText(mState), "idle");
    EXPECT_STREQ(lyrGetEnumText(Below(*mInstance)), "on");
    EXPECT_STREQ(lyrGetEnumText(Below(*mDeep)), "on");
    EXPECT_STREQ(lyrGetEnumText(Below(*mOther)), "off");
    EXPECT_EQ(Below(*mDeep).GetValueInheritType(false), eLyrInherit) << "who inherited still does";
    EXPECT_EQ(lyrInsertEnumText(mState, 4, "behind"), 0);
    EXPECT_EQ(Texts(), "off dimmed idle on behind ");
}

TEST_F(Enumeration, KeepsItsMeaningWhenATextIsRemoved) {
    lyrSetEnumText(mState, "on");
    lyrSetEnumText(Below(*mInstance), "off");
    lyrSetEnumText(Below(*mDeep), "idle");
    EXPECT_EQ(lyrRemoveEnumText(mState, 1, 0), 2);
    EXPECT_EQ(Texts(), "off on ");
    EXPECT_STREQ(lyrGetEnumText(mState), "on");
    EXPECT_STREQ(lyrGetEnumText(Below(*mInstance)), "off");
    EXPECT_STREQ(lyrGetEnumText(Below(*mDeep)), "off") << "the replacement";
    EXPECT_STREQ(lyrGetEnumText(Below(*mOther)), "on");
}

TEST_F(Enumeration, LeavesIndicesThatNameNoTextAlone) {
    for (int lIndex : {INT_MIN, -1, 100, INT_MAX}) {
        lyrSet(mState, lIndex);
        EXPECT_EQ(lyrInsertEnumText(mState, 0, "first"), 0);
        EXPECT_EQ(lyrGet<int>(mState), lIndex);
        EXPECT_EQ(lyrRemoveEnumText(mState, 0, 1), 0);
        EXPECT_EQ(lyrGet<int>(mState), lIndex);
    }
}

TEST_F(Enumeration, IsRemappedOnlyWhereTheSameListIsSeen) {
    lyrSet(mState, 2);
    lyrSet(Below(*mInstance), 1);
    lyrSet(Below(*mDeep), 0);
    // An own description, with a list of its own.
    mInstance->GetPage()->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, mState.GetId(), eLyrOverride);
    H lOwn = Below(*mInstance);
    for (const char* lText : {"a", "b"})
        lOwn.AddEnumValue(lText);
    EXPECT_EQ(lyrInsertEnumText(mState, 0, "first"), 1);
    EXPECT_EQ(lyrGet<int>(mState), 3);
    EXPECT_STREQ(lyrGetEnumText(Below(*mInstance)), "b");
    EXPECT_STREQ(lyrGetEnumText(Below(*mDeep)), "a");
    EXPECT_EQ(lyrInsertEnumText(Below(*mDeep), 0, "first"), 2);
    EXPECT_STREQ(lyrGetEnumText(Below(*mInstance)), "b");
    EXPECT_EQ(lyrGet<int>(mState), 3);
}

TEST_F(Enumeration, IsRemappedWhereItWasAddedToAnInstance) {
    const H lOwn = lyrBuild(*mInstance, "own", eENUM).EnumTexts({"a", "b"}).Default(1);
    lyrSetEnumText(On(*mDeep, lOwn), "a");
    EXPECT_EQ(lyrInsertEnumText(On(*mDeep, lOwn), 0, "first"), 2);
    EXPECT_STREQ(lyrGetEnumText(lOwn), "b");
    EXPECT_STREQ(lyrGetEnumText(On(*mDeep, lOwn)), "a");
}

TEST_F(Enumeration, IsRemappedByAnyFunction) {
    lyrSet(mState, 0);
    lyrSet(Below(*mDeep), 2);
    std::vector<int> lSeen;
    EXPECT_EQ(lyrRemapEnum(mState,
                           [&lSeen](int pIndex) {
                               lSeen.push_back(pIndex);
                               return 2 - pIndex;
                           }),
              2);
    EXPECT_EQ(lSeen, (std::vector<int>{0, 2}));
    EXPECT_EQ(lyrGet<int>(mState), 2);
    EXPECT_EQ(lyrGet<int>(Below(*mDeep)), 0);
    EXPECT_EQ(lyrRemapEnum(lyrAdd(*mPage, "number", 1), [](int) { return 5; }), -1);
}

TEST_F(Enumeration, RefusesToMakeTwoTextsAlike) {
    EXPECT_EQ(lyrInsertEnumText(mState, 0, "on"), -1);
    EXPECT_EQ(Texts(), "off idle on ");
}

TEST_F(Enumeration, TakesNoMemoryToBeReadOrRemapped) {
    lyrSet(Below(*mDeep), 1);
    const std::size_t lBefore = MemoryProbe::Allocations();
    EXPECT_STREQ(lyrGetEnumText(Below(*mDeep)), "idle");
    EXPECT_EQ(lyrSetEnumText(Below(*mDeep), "on"), eLyrSetWritten);
    EXPECT_EQ(lyrRemoveEnumText(mState, 0, 0), 1 + 0);
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

TEST_F(Enumeration, OfADescriptionOfItsOwnKeepsItsIndex) {
    lyrSetEnumText(Below(*mInstance), "on");
    lyrSetEnumText(Below(*mOther), "on");
    ASSERT_TRUE(mOther->GetPage()->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, mState.GetId(), eLyrOverride));
    lyrInsertEnumText(mState, 0, "asleep");
    EXPECT_EQ(lyrGet<int>(Below(*mInstance)), 3);
    EXPECT_EQ(lyrGet<int>(Below(*mOther)), 2);
}

}  // namespace
}  // namespace lyrsdk
