#include "lyrfilesdk/lyrkit/klyrpushpreview.h"

#include <gtest/gtest.h>

#include <map>

#include "tests/support/page_family.h"

namespace lyrsdk {
namespace {

using Reach = KLyrPushReach;
using Result = KLyrPushResult;

//   top:    0 "root"   1 "power" (double)
//   page, other: instances of top
//   low:    an instance of other
class PushPreviewTest : public PageTest {
protected:
    static constexpr int kId = 1;

    PushPreviewTest() { mTop->Add(0, "power", eDOUBLE1); }

    KLyrPropertyHandle Property() const { return KLyrPropertyHandle(mPage.get(), kId); }
    // What each page is told, in the order of the visits.
    std::vector<KLyrPushEffect> Effects() const {
        std::vector<KLyrPushEffect> lEffects;
        lyrVisitPushEffects(Property(), [&](const KLyrPushEffect& pEffect) { lEffects.push_back(pEffect); });
        return lEffects;
    }

    OwnedPage mTop = MakeRoot();
    OwnedPage mPage = MakeInstance(mTop);
    OwnedPage mOther = MakeInstance(mTop);
    OwnedPage mLow = MakeInstance(mOther);
};

TEST_F(PushPreviewTest, WhatThePageHoldsMovesAndWhatItInheritsDoesNot) {
    EXPECT_EQ(lyrPushItemsOf(Property()).mResult, Result::eNothing);
    SetNumber(mPage, kId, 2);
    mPage->ModifyFlags(kId, LyrPropertyFlags::eHIDDEN, true, false);
    const KLyrPushItems lItems = lyrPushItemsOf(Property());
    EXPECT_EQ(lItems.mResult, Result::ePushed);
    EXPECT_TRUE(lItems.mValue);
    EXPECT_FALSE(lItems.mDescription);
    EXPECT_FALSE(lItems.mIsNewAbove);
    EXPECT_EQ(lItems.mFlags, LyrPropertyFlags::eHIDDEN);
}

TEST_F(PushPreviewTest, ThePageAboveAndItsOtherInstancesSeeAChangeUnlessTheyAreShielded) {
    SetNumber(mPage, kId, 2);
    std::vector<KLyrPushEffect> lEffects = Effects();
    ASSERT_EQ(lEffects.size(), 3u);
    EXPECT_EQ(lEffects[0].mProperty, KLyrPropertyHandle(mTop.get(), kId));
    EXPECT_EQ(lEffects[1].mProperty, KLyrPropertyHandle(mOther.get(), kId));
    EXPECT_EQ(lEffects[2].mProperty, KLyrPropertyHandle(mLow.get(), kId));
    for (const KLyrPushEffect& lEffect : lEffects)
        EXPECT_TRUE(lEffect.mValue == Reach::eChanged && lEffect.IsChange());

    SetNumber(mOther, kId, 5);
    lEffects = Effects();
    EXPECT_EQ(lEffects[0].mValue, Reach::eChanged);
    EXPECT_EQ(lEffects[1].mValue, Reach::eShielded);
    EXPECT_EQ(lEffects[2].mValue, Reach::eShielded);
    EXPECT_EQ(lEffects[2].mValueShield, KLyrPropertyHandle(mOther.get(), kId));
    EXPECT_FALSE(lEffects[2].IsChange());
    EXPECT_EQ(lEffects[2].mDescription, Reach::eNotMoved);
}

TEST_F(PushPreviewTest, AValueThatReadsTheSameIsNoChange) {
    SetNumber(mPage, kId, 0);
    for (const KLyrPushEffect& lEffect : Effects())
        EXPECT_TRUE(lEffect.mValue == Reach::eSame && !lEffect.IsChange());
}

TEST_F(PushPreviewTest, FlagsAreToldBitByBit) {
    mPage->ModifyFlags(kId, LyrPropertyFlags::eHIDDEN | LyrPropertyFlags::eUSER, true, false);
    mOther->ModifyFlags(kId, LyrPropertyFlags::eHIDDEN, false, false);
    const std::vector<KLyrPushEffect> lEffects = Effects();
    EXPECT_EQ(lEffects[0].mFlagsChanged, LyrPropertyFlags::eHIDDEN | LyrPropertyFlags::eUSER);
    EXPECT_EQ(lEffects[1].mFlagsChanged, LyrPropertyFlags::eUSER);
    EXPECT_EQ(lEffects[1].mFlagsShielded, LyrPropertyFlags::eHIDDEN);
}

TEST_F(PushPreviewTest, AClonedDescriptionThatLacksTheLabelIsAChange) {
    mTop->SetLabel(kId, "Power");
    mPage->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, kId, eLyrOverride);
    EXPECT_EQ(Effects()[1].mDescription, Reach::eChanged);
    mPage->SetLabel(kId, "Power");
    EXPECT_EQ(Effects()[1].mDescription, Reach::eSame);
    const double lMax = 4;
    mPage->SetMinMax(kId, KLyrPropertyInfo::eValueMax, &lMax, eDOUBLE1);
    EXPECT_EQ(Effects()[1].mDescription, Reach::eChanged);
    mTop->SetMinMax(kId, KLyrPropertyInfo::eValueMax, &lMax, eDOUBLE1);
    EXPECT_EQ(Effects()[1].mDescription, Reach::eSame);
    const double lOtherMax = 5;
    mTop->SetMinMax(kId, KLyrPropertyInfo::eValueMax, &lOtherMax, eDOUBLE1);
    EXPECT_EQ(Effects()[1].mDescription, Reach::eChanged);
    mTop->SetMinMax(kId, KLyrPropertyInfo::eValueMax, &lMax, eDOUBLE1);
    mPage->SetUserTag(kId, 3);
    EXPECT_EQ(Effects()[1].mDescription, Reach::eChanged);
}

TEST_F(PushPreviewTest, EveryPageBelowThePageAboveIsToldOnceAndThePageAndThoseBelowItAreNot) {
    SetNumber(mPage, kId, 2);
    const OwnedPage lBelowPage = MakeInstance(mPage);
    const OwnedPage lThird = MakeInstance(mTop);
    const OwnedPage lLast = MakeInstance(mTop);
    const OwnedPage lLow2 = MakeInstance(mOther);
    const OwnedPage lUnderLow = MakeInstance(mLow);
    const OwnedPage lUnderThird = MakeInstance(lThird);
    std::vector<const KLyrPropertyPage*> lTold;
    lyrVisitPushEffects(Property(), [&](const KLyrPushEffect& pEffect) {
        lTold.push_back(pEffect.mProperty.GetPage());
        return lTold.size() < 20;
    });
    EXPECT_EQ(lTold, (std::vector<const KLyrPropertyPage*>{mTop.get(), mOther.get(), mLow.get(), lUnderLow.get(),
                                                           lLow2.get(), lThird.get(), lUnderThird.get(), lLast.get()}));
}

// Where each page would ask all above it, and those all above them, this would not come to an end.
TEST_F(PushPreviewTest, ALongChainOfInstancesIsToldPageByPage) {
    constexpr int lDepth = 6000;
    constexpr int lShield = 4000;
    SetNumber(mPage, kId, 2);
    std::vector<OwnedPage> lChain;
    lChain.push_back(MakeInstance(mLow));
    while (static_cast<int>(lChain.size()) < lDepth)
        lChain.push_back(MakeInstance(lChain.back()));
    SetNumber(lChain[lShield], kId, 3);
    int lTold = 0;
    int lShielded = 0;
    lyrVisitPushEffects(Property(), [&](const KLyrPushEffect& pEffect) {
        ++lTold;
        lShielded += pEffect.mValueShield == KLyrPropertyHandle(lChain[lShield].get(), kId) ? 1 : 0;
    });
    EXPECT_EQ(lTold, lDepth + 3);
    EXPECT_EQ(lShielded, lDepth - lShield);
    while (!lChain.empty())
        lChain.pop_back();
}

TEST_F(PushPreviewTest, DescriptionsOfEnumerationsDifferByTheirTexts) {
    const int lEnum = mTop->Add(0, "kind", eENUM);
    mTop->AddEnumValue(lEnum, "a");
    mPage->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, lEnum, eLyrOverride);
    std::vector<Reach> lReaches;
    const auto lNote = [&] {
        lyrVisitPushEffects(KLyrPropertyHandle(mPage.get(), lEnum), [&](const KLyrPushEffect& pEffect) {
            lReaches.push_back(pEffect.mDescription);
            return false;
        });
    };
    lNote();
    mPage->AddEnumValue(lEnum, "b");
    lNote();
    mPage->SetEnumValue(lEnum, 0, "a");
    lNote();
    EXPECT_EQ(lReaches, (std::vector<Reach>{Reach::eChanged, Reach::eChanged, Reach::eSame}));
}

TEST_F(PushPreviewTest, AVisitorEndsTheWalkWithFalse) {
    SetNumber(mPage, kId, 2);
    EXPECT_EQ(lyrVisitPushEffects(Property(), [](const KLyrPushEffect&) { return false; }), 1);
    mPage->Add(0, "extra", eDOUBLE1);
    EXPECT_EQ(lyrVisitPush({mPage.get(), 0}, [](const KLyrPushItems&) { return false; }), 1);
    EXPECT_EQ(lyrVisitPush({mPage.get(), 0}, [](const KLyrPushItems&) {}), 2);
    EXPECT_EQ(lyrVisitPush(Property(), [](const KLyrPushItems&) {}), 0) << "no root";
}

TEST_F(PushPreviewTest, NoMemoryIsTakenForNumbers) {
    SetNumber(mPage, kId, 2);
    const std::size_t lBefore = MemoryProbe::Allocations();
    int lChanges = 0;
    lyrVisitPush({mPage.get(), 0}, [&](const KLyrPushItems& pItems) {
        lyrVisitPushEffects(pItems.mProperty,
                            [&](const KLyrPushEffect& pEffect) { lChanges += pEffect.IsChange() ? 1 : 0; });
    });
    EXPECT_EQ(lChanges, 3);
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

// --- families at random ----------------------------------------------------------------------------------------------

using PageAndId = std::pair<const KLyrPropertyPage*, int>;

struct Sight {
    std::string mValue;
    std::string mDescription;
    unsigned mFlags;
};

std::string DescriptionOf(const KLyrPropertyPage& pPage, int pId) {
    if (!pPage.GetPropertyItem<KLyrPropertyInfo>(nullptr, pId))
        return "(none)";
    return std::string(pPage.GetName(pId)) + '/' + std::to_string(pPage.GetType(pId)) + '/' + pPage.GetLabel(pId) +
           '/' + std::to_string(pPage.GetUserTag(pId));
}

std::map<PageAndId, Sight> SightsOf(const RandomFamily& pFamily) {
    std::map<PageAndId, Sight> lSights;
    for (const OwnedPage& lPage : pFamily.Pages())
        for (int lId = 0; lId < RandomFamily::kMaxProperties; ++lId)
            lSights[{lPage.get(), lId}] = {TextOf(lPage, lId), DescriptionOf(*lPage, lId),
                                           static_cast<unsigned>(lPage->GetFlags(lId))};
    return lSights;
}

// What a push is foretold to move, and what each page is told; pages that nothing is told about see no change.
struct Forecast {
    std::map<PageAndId, KLyrPushItems> mItems;
    std::map<PageAndId, KLyrPushEffect> mEffects;

    void Note(const KLyrPushItems& pItems) {
        const int lId = pItems.mProperty.GetId();
        mItems[{pItems.mProperty.GetPage(), lId}] = pItems;
        lyrVisitPushEffects(pItems.mProperty, [&](const KLyrPushEffect& pEffect) {
            EXPECT_TRUE(mEffects.insert({{pEffect.mProperty.GetPage(), lId}, pEffect}).second) << "told twice";
        });
    }
    KLyrPushEffect Of(const PageAndId& pWhere) const {
        const auto lFound = mEffects.find(pWhere);
        return lFound == mEffects.end() ? KLyrPushEffect() : lFound->second;
    }
};

int ExpectCameTrue(const Forecast& pForecast, const std::map<PageAndId, Sight>& pBefore,
                   const std::map<PageAndId, Sight>& pAfter) {
    int lChanges = 0;
    for (const auto& [lWhere, lBefore] : pBefore) {
        const Sight& lAfter = pAfter.at(lWhere);
        const KLyrPushEffect lEffect = pForecast.Of(lWhere);
        EXPECT_EQ(lBefore.mValue != lAfter.mValue, lEffect.mValue == Reach::eChanged) << lWhere.second;
        EXPECT_EQ(lBefore.mDescription != lAfter.mDescription, lEffect.mDescription == Reach::eChanged);
        EXPECT_EQ(lBefore.mFlags ^ lAfter.mFlags, static_cast<unsigned>(lEffect.mFlagsChanged)) << lWhere.second;
        lChanges += lEffect.IsChange() ? 1 : 0;
    }
    return lChanges;
}

// Whether an item is really held by the page that was named as the shield.
void ExpectShields(const Forecast& pForecast) {
    for (const auto& [lWhere, lEffect] : pForecast.mEffects) {
        EXPECT_EQ(lEffect.mValue == Reach::eShielded, lEffect.mValueShield.Valid());
        if (lEffect.mValueShield.Valid()) {
            EXPECT_TRUE(OwnItem<KLyrPropertyValue>(*lEffect.mValueShield.GetPage(), lWhere.second));
        }
        if (lEffect.mDescriptionShield.Valid()) {
            EXPECT_TRUE(OwnItem<KLyrPropertyInfo>(*lEffect.mDescriptionShield.GetPage(), lWhere.second));
        }
    }
}

// Labels and tags, so that descriptions differ.
void Describe(RandomFamily& pFamily) {
    for (const OwnedPage& lPage : pFamily.Pages())
        for (int lId = 0; lId < RandomFamily::kMaxProperties; ++lId)
            if (OwnItem<KLyrPropertyInfo>(lPage, lId))
                lPage->SetUserTag(lId, pFamily.Below(2));
}

TEST(PushPreview, APushOfAWholePageDoesWhatWasForetold) {
    const LeakCheck lLeaks;
    int lChanges = 0;
    for (unsigned lSeed = 0; lSeed < 300 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(200);
        Describe(lFamily);
        KLyrPropertyHandle lRoot(lFamily.AnyPage().get(), 0);
        Forecast lForecast;
        lyrVisitPush(lRoot, [&](const KLyrPushItems& pItems) { lForecast.Note(pItems); });
        ExpectShields(lForecast);
        const auto lBefore = SightsOf(lFamily);
        ASSERT_TRUE(lRoot.PushPropertiesToParentInstance());
        lChanges += ExpectCameTrue(lForecast, lBefore, SightsOf(lFamily));
        for (const auto& [lWhere, lItems] : lForecast.mItems)
            EXPECT_EQ(OwnFlagData(*lWhere.first, lWhere.second), 0u);
        EXPECT_EQ(lyrVisitPush(lRoot, [](const KLyrPushItems&) {}), 0) << "all was pushed";
    }
    EXPECT_GT(lChanges, 300);
}

TEST(PushPreview, APushOfOnePropertyDoesWhatWasForetold) {
    const LeakCheck lLeaks;
    int lPushed = 0;
    int lChanges = 0;
    for (unsigned lSeed = 0; lSeed < 600 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(200);
        Describe(lFamily);
        const OwnedPage& lPage = lFamily.AnyPage();
        const KLyrPropertyHandle lProperty(lPage.get(), lFamily.Below(RandomFamily::kMaxProperties));
        const KLyrPushItems lItems = lyrPushItemsOf(lProperty);
        Forecast lForecast;
        if (lItems.mResult == Result::ePushed)
            lForecast.Note(lItems);
        const auto lBefore = SightsOf(lFamily);
        const std::string lHeld = Held(lPage);
        EXPECT_EQ(lyrPushProperty(lProperty), lItems.mResult);
        lChanges += ExpectCameTrue(lForecast, lBefore, SightsOf(lFamily));
        if (lItems.mResult == Result::ePushed)
            ++lPushed;
        else
            EXPECT_EQ(Held(lPage), lHeld);
    }
    EXPECT_GT(lPushed, 100);
    EXPECT_GT(lChanges, 50);
}

}  // namespace
}  // namespace lyrsdk
