#include "lyrfilesdk/lyrkit/klyroverrides.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/failing_memory.h"
#include "tests/support/page_family.h"

namespace lyrsdk {
namespace {

//   top:   0 "root"   1 "lamp"   2 "power" (double, below lamp)   3 "name" (string)
//   page:  an instance of top; 4 "extra" (double, below lamp)
class OverridesTest : public PageTest {
protected:
    static constexpr int kLamp = 1;
    static constexpr int kPower = 2;
    static constexpr int kName = 3;
    static constexpr int kExtra = 4;

    OverridesTest() {
        mTop->Add(0, "lamp", eUNIDENTIFIED);
        mTop->Add(kLamp, "power", eDOUBLE1);
        mTop->Add(0, "name", eSTRING);
        mPage->Add(kLamp, "extra", eDOUBLE1);
    }

    KLyrPropertyHandle At(int pId) const { return KLyrPropertyHandle(mPage.get(), pId); }

    OwnedPage mTop = MakeRoot();
    OwnedPage mPage = MakeInstance(mTop);
};

std::vector<int> Overridden(const KLyrPropertyHandle& pFrom) {
    std::vector<int> lIds;
    lyrVisitOverrides(pFrom, [&](const KLyrOverride& pFound) { lIds.push_back(pFound.mProperty.GetId()); });
    return lIds;
}

// --- what is held ----------------------------------------------------------------------------------------------------

TEST_F(OverridesTest, APageShowsWhatItHoldsAndNothingThatItInherits) {
    SetNumber(mPage, kPower, 2);
    mPage->ModifyFlags(kName, LyrPropertyFlags::eHIDDEN, true, false);
    const KLyrOverride lPower = lyrOverrideOf(At(kPower));
    EXPECT_TRUE(lPower.mIsHeld && lPower.mValue);
    EXPECT_FALSE(lPower.mIsAdded || lPower.mDescription || lPower.mConnections);
    EXPECT_EQ(lPower.mFlags, LyrPropertyFlags::eNO_FLAG);
    const KLyrOverride lName = lyrOverrideOf(At(kName));
    EXPECT_TRUE(lName.mIsHeld && !lName.mValue);
    EXPECT_EQ(lName.mFlags, LyrPropertyFlags::eHIDDEN);
    const KLyrOverride lExtra = lyrOverrideOf(At(kExtra));
    EXPECT_TRUE(lExtra.mIsAdded && lExtra.mDescription && lExtra.mValue);
    EXPECT_FALSE(lyrOverrideOf(At(kLamp)).mIsHeld);
    EXPECT_EQ(Overridden(At(0)), (std::vector<int>{kPower, kName, kExtra}));
    EXPECT_EQ(Overridden(At(kLamp)), (std::vector<int>{kPower, kExtra}));
    EXPECT_EQ(Overridden(At(kExtra)), (std::vector<int>{kExtra}));
}

TEST_F(OverridesTest, AVisitorEndsTheWalkWithFalseAndMayChangeWhatItIsShown) {
    SetNumber(mPage, kPower, 2);
    SetText(mPage, kName, "a");
    EXPECT_EQ(lyrVisitOverrides(At(0), [](const KLyrOverride&) { return false; }), 1);
    EXPECT_EQ(lyrVisitOverrides(At(0), [](const KLyrOverride& pFound) { lyrRevert(pFound.mProperty); }), 3);
    EXPECT_EQ(Overridden(At(0)), (std::vector<int>{kExtra}));
}

TEST_F(OverridesTest, APageThatLostItsRootPropertyStillShowsTheOthers) {
    ASSERT_TRUE(mTop->RemoveOwnEntry(0));
    SetNumber(mPage, kPower, 2);
    EXPECT_EQ(Overridden(At(0)), (std::vector<int>{kPower, kExtra}));
    EXPECT_EQ(lyrRevertAll(At(kName)), 1);
}

// --- what changes nothing --------------------------------------------------------------------------------------------

TEST_F(OverridesTest, AnOwnValueThatEqualsTheInheritedOneIsRedundant) {
    SetNumber(mTop, kPower, 2);
    SetNumber(mPage, kPower, 2);
    SetText(mPage, kName, "");
    EXPECT_TRUE(lyrRedundancyOf(At(kPower)).mValue);
    EXPECT_TRUE(lyrRedundancyOf(At(kName)).mValue);
    EXPECT_FALSE(lyrRedundancyOf(At(kExtra)).IsAny()) << "added here";
    EXPECT_FALSE(lyrRedundancyOf(At(kLamp)).IsAny()) << "inherited";
    EXPECT_EQ(lyrDropRedundant(At(0)), 2);
    EXPECT_EQ(Overridden(At(0)), (std::vector<int>{kExtra}));
    EXPECT_EQ(lyrDropRedundant(At(0)), 0);
    SetNumber(mPage, kPower, 3);
    EXPECT_FALSE(lyrRedundancyOf(At(kPower)).IsAny());
}

TEST_F(OverridesTest, ZeroesOfBothSignsDifferAndANaNEqualsItself) {
    SetNumber(mPage, kPower, -0.0);
    EXPECT_FALSE(lyrRedundancyOf(At(kPower)).mValue);
    const double lNaN = std::numeric_limits<double>::quiet_NaN();
    SetNumber(mTop, kPower, lNaN);
    SetNumber(mPage, kPower, lNaN);
    EXPECT_TRUE(lyrRedundancyOf(At(kPower)).mValue);
}

// pWrite(page, id, which) writes one of two values that differ.
template <typename T>
void ExpectRedundancyNoticed(ELyrType pType, const T& pOne, const T& pOther) {
    SCOPED_TRACE(static_cast<int>(pType));
    const OwnedPage lTop = MakeRoot("root", pType);
    const OwnedPage lPage = MakeInstance(lTop);
    ASSERT_TRUE(lTop->Set(0, &pOne, pType, false));
    ASSERT_TRUE(lPage->Set(0, &pOther, pType, false));
    EXPECT_FALSE(lyrRedundancyOf({lPage.get(), 0}).IsAny());
    ASSERT_TRUE(lPage->Set(0, &pOne, pType, false));
    EXPECT_TRUE(lyrRedundancyOf({lPage.get(), 0}).mValue);
}

TEST(Overrides, ValuesOfEveryKindAreCompared) {
    const LeakCheck lLeaks;
    ExpectRedundancyNoticed(eBOOL1, false, true);
    ExpectRedundancyNoticed(eINTEGER1, 3, 4);
    ExpectRedundancyNoticed(eENUM, 3, 4);
    ExpectRedundancyNoticed(eULONGLONG1, 3ull, ~0ull);
    ExpectRedundancyNoticed(eFLOAT1, 0.0f, -0.0f);
    ExpectRedundancyNoticed(eHALFFLOAT, lyrHalfFloat(0.0f), lyrHalfFloat(-0.0f));
    lyrDouble44 lMatrix;
    lyrDouble44 lOtherMatrix = lMatrix;
    lOtherMatrix[3][3] = 7;
    ExpectRedundancyNoticed(eDOUBLE44, lMatrix, lOtherMatrix);
    ExpectRedundancyNoticed(eTIME, KTime(5), KTime(6));
    ExpectRedundancyNoticed(eDISTANCE, lyrDistance(0.0f, KLyrSystemUnit::m), lyrDistance(-0.0f, KLyrSystemUnit::m));
    ExpectRedundancyNoticed(eDISTANCE, lyrDistance(0.0f, KLyrSystemUnit::m), lyrDistance(0.0f, KLyrSystemUnit::cm));
    lyrBlob lBlob;
    lyrBlob lOtherBlob;
    ASSERT_TRUE(lOtherBlob.Assign("abc", 3));
    ExpectRedundancyNoticed(eBLOB, lBlob, lOtherBlob);
    const KString lLong(std::string(1000, 'x').c_str());
    ExpectRedundancyNoticed(eSTRING, lLong, KString("y"));
}

TEST(Overrides, ReferencesOfBothPagesAreAlikeAndNothingIsReported) {
    const LeakCheck lLeaks;
    const OwnedPage lTop = MakeRoot("root", eREFERENCE);
    const OwnedPage lPage = MakeInstance(lTop);
    ASSERT_TRUE(lPage->SetValueInherit(0, eLyrOverride));
    EXPECT_TRUE(lyrRedundancyOf({lPage.get(), 0}).mValue);
    EXPECT_EQ(lyrDropRedundant({lPage.get(), 0}), 1);
}

TEST_F(OverridesTest, AFlagThatIsSetToWhatThePageAboveShowsIsRedundant) {
    mPage->ModifyFlags(kPower, LyrPropertyFlags::eHIDDEN, false, false);
    mPage->ModifyFlags(kPower, LyrPropertyFlags::eUSER, true, false);
    EXPECT_EQ(lyrRedundancyOf(At(kPower)).mFlags, LyrPropertyFlags::eHIDDEN);
    EXPECT_EQ(lyrDropRedundant(At(kPower)), 1);
    EXPECT_EQ(lyrOverrideOf(At(kPower)).mFlags, LyrPropertyFlags::eUSER);
    EXPECT_EQ(mPage->GetFlags(kPower), LyrPropertyFlags::eUSER);
}

TEST_F(OverridesTest, MarksThatHoldAnUnmarkedFlagInPlaceStay) {
    mTop->ModifyFlags(kPower, LyrPropertyFlags::eHIDDEN | LyrPropertyFlags::eUSER, true, false);
    mPage->SetFlagsInheritType(eLyrOverride, LyrPropertyFlags::eHIDDEN, kPower);
    EXPECT_EQ(lyrRedundancyOf(At(kPower)).mFlags, LyrPropertyFlags::eHIDDEN);
    mTop->ModifyFlags(kPower, LyrPropertyFlags::eUSER, false, false);
    EXPECT_EQ(lyrRedundancyOf(At(kPower)).mFlags, LyrPropertyFlags::eNO_FLAG);
    EXPECT_EQ(lyrDropRedundant(At(0)), 0);
    EXPECT_EQ(mPage->GetFlags(kPower), LyrPropertyFlags::eHIDDEN | LyrPropertyFlags::eUSER);
}

TEST_F(OverridesTest, AValueWhoseEntryHoldsAnUnmarkedFlagInPlaceStays) {
    mTop->ModifyFlags(kPower, LyrPropertyFlags::eUSER, true, false);
    ASSERT_TRUE(mPage->SetValueInherit(kPower, eLyrOverride));
    ASSERT_TRUE(mPage->SetFlagsInheritType(eLyrOverride, LyrPropertyFlags::eNO_FLAG, kPower));
    EXPECT_TRUE(lyrRedundancyOf(At(kPower)).mValue);
    mTop->ModifyFlags(kPower, LyrPropertyFlags::eUSER, false, false);
    EXPECT_FALSE(lyrRedundancyOf(At(kPower)).IsAny());
    EXPECT_EQ(mPage->GetFlags(kPower), LyrPropertyFlags::eUSER);
}

TEST_F(OverridesTest, WithoutMemoryToCompareTextsNoneIsRedundant) {
    SetText(mTop, kName, std::string(100, 'x').c_str());
    SetText(mPage, kName, std::string(100, 'x').c_str());
    const std::string lHeld = Held(mPage);
    WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
        const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
        const KLyrRedundancy lFound = lyrRedundancyOf(At(kName));
        EXPECT_EQ(lFound.mValue, lFail.Failed() == 0);
        return lFail.Failed();
    });
    EXPECT_EQ(Held(mPage), lHeld);
}

// --- going back ------------------------------------------------------------------------------------------------------

TEST_F(OverridesTest, APropertyGoesBackInWhatIsAskedFor) {
    SetNumber(mPage, kPower, 2);
    mPage->ModifyFlags(kPower, LyrPropertyFlags::eHIDDEN, true, false);
    EXPECT_TRUE(lyrRevert(At(kPower), KLyrRevert::eFlags));
    EXPECT_EQ(mPage->GetFlags(kPower), LyrPropertyFlags::eNO_FLAG);
    EXPECT_EQ(NumberOf(mPage, kPower), 2);
    EXPECT_FALSE(lyrRevert(At(kPower), KLyrRevert::eFlags)) << "already back";
    mPage->ModifyFlags(kPower, LyrPropertyFlags::eHIDDEN, true, false);
    EXPECT_TRUE(lyrRevert(At(kPower), KLyrRevert::eValue));
    EXPECT_EQ(NumberOf(mPage, kPower), 0);
    EXPECT_EQ(mPage->GetFlags(kPower), LyrPropertyFlags::eHIDDEN);
    SetNumber(mPage, kPower, 2);
    EXPECT_TRUE(lyrRevert(At(kPower)));
    EXPECT_FALSE(lyrOverrideOf(At(kPower)).mIsHeld);
    EXPECT_FALSE(lyrRevert(At(kPower)));
}

TEST_F(OverridesTest, ASubtreeGoesBackAndTheRestStays) {
    SetNumber(mPage, kPower, 2);
    SetText(mPage, kName, "a");
    EXPECT_EQ(lyrRevertSubtree(At(kLamp)), 1);
    EXPECT_EQ(Overridden(At(0)), (std::vector<int>{kName, kExtra}));
    SetNumber(mPage, kPower, 2);
    EXPECT_EQ(lyrRevertAll(At(kExtra)), 2);
    EXPECT_EQ(Overridden(At(0)), (std::vector<int>{kExtra}));
}

TEST_F(OverridesTest, APropertyThatNoPageAboveHasKeepsAll) {
    SetNumber(mPage, kExtra, 4);
    mPage->ModifyFlags(kExtra, LyrPropertyFlags::eHIDDEN, true, false);
    const std::string lHeld = Held(mPage);
    EXPECT_FALSE(lyrRevert(At(kExtra)));
    EXPECT_EQ(lyrRevertAll(KLyrPropertyHandle(mTop.get(), 0)), 0);
    EXPECT_EQ(Held(mPage), lHeld);
}

// --- families at random ----------------------------------------------------------------------------------------------

std::string SeenByAll(const RandomFamily& pFamily) {
    std::string lSeen;
    for (const OwnedPage& lPage : pFamily.Pages())
        lSeen += Seen(lPage) + '\n';
    return lSeen;
}

TEST(Overrides, DroppingWhatIsRedundantChangesNothingThatIsSeen) {
    const LeakCheck lLeaks;
    int lDropped = 0;
    for (unsigned lSeed = 0; lSeed < 150 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(250);
        const std::string lSeen = SeenByAll(lFamily);
        for (const OwnedPage& lPage : lFamily.Pages()) {
            const KLyrPropertyHandle lRoot(lPage.get(), 0);
            const int lFound = lyrVisitRedundant(lRoot, [](const KLyrRedundancy&) {});
            EXPECT_EQ(lyrDropRedundant(lRoot), lFound);
            EXPECT_EQ(lyrVisitRedundant(lRoot, [](const KLyrRedundancy&) {}), 0);
            EXPECT_EQ(SeenByAll(lFamily), lSeen);
            lDropped += lFound;
        }
    }
    EXPECT_GT(lDropped, 300);
}

// What is not redundant changes what is seen when it goes back.
TEST(Overrides, NothingRedundantIsMissed) {
    const LeakCheck lLeaks;
    int lTried = 0;
    for (unsigned lSeed = 0; lSeed < 200 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(250);
        for (const OwnedPage& lPage : lFamily.Pages()) {
            lyrDropRedundant({lPage.get(), 0});
            const int lId = lFamily.Below(RandomFamily::kMaxProperties);
            const std::string lSeen = SeenByAll(lFamily);
            const std::string lHeld = Held(lPage);
            const KLyrPropertyHandle lProperty(lPage.get(), lId);
            // Flags without a mark are not called redundant, whatever they show.
            const bool lMarked = lyrOverrideOf(lProperty).mFlags != LyrPropertyFlags::eNO_FLAG;
            const bool lFlags = lMarked && lFamily.Below(2) == 0;
            if (lyrRevert(lProperty, lFlags ? KLyrRevert::eFlags : KLyrRevert::eValue)) {
                EXPECT_NE(SeenByAll(lFamily), lSeen) << lHeld;
                ++lTried;
            }
        }
    }
    EXPECT_GT(lTried, 50);
}

TEST(Overrides, APageThatWentBackReadsAsThePageAbove) {
    const LeakCheck lLeaks;
    for (unsigned lSeed = 0; lSeed < 60 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(250);
        for (const OwnedPage& lPage : lFamily.Pages()) {
            lyrRevertAll({lPage.get(), 0});
            const KLyrPropertyPage* lAbove = lPage->GetInstanceOf();
            for (int lId = 0; lAbove && lId < RandomFamily::kMaxProperties; ++lId) {
                if (!lAbove->GetPropertyEntry(lId))
                    continue;
                EXPECT_EQ(lPage->GetFlags(lId), lAbove->GetFlags(lId));
                if (lAbove->GetPropertyItem<KLyrPropertyValue>(nullptr, lId)) {
                    EXPECT_EQ(TextOf(lPage, lId), TextOf(*lAbove, lId));
                }
            }
        }
    }
}

TEST_F(OverridesTest, AVisitorOfWhatIsRedundantMayEndTheWalk) {
    const double lValue = 0;
    const KString lText;
    mPage->Set(kPower, &lValue, eDOUBLE1, false);
    mPage->Set(kName, &lText, eSTRING, false);
    ASSERT_EQ(lyrVisitRedundant(At(0), [](const KLyrRedundancy&) { return true; }), 2);
    int lSeen = 0;
    EXPECT_EQ(lyrVisitRedundant(At(0),
                                [&](const KLyrRedundancy& pFound) {
                                    lSeen = pFound.mProperty.GetId();
                                    return false;
                                }),
              1);
    EXPECT_EQ(lSeen, kPower);
    EXPECT_EQ(lyrVisitOverrides(At(0), [](const KLyrOverride&) { return false; }), 1);
}

TEST_F(OverridesTest, FlagsThatAreNotThereDoNotGoBack) {
    EXPECT_FALSE(lyrRevert(At(kPower), KLyrRevert::eFlags)) << "no entry";
    const double lValue = 5;
    mPage->Set(kPower, &lValue, eDOUBLE1, false);
    EXPECT_FALSE(lyrRevert(At(kPower), KLyrRevert::eFlags)) << "an entry without flags";
    mPage->ModifyFlags(kPower, LyrPropertyFlags::eHIDDEN, true, false);
    EXPECT_TRUE(lyrRevert(At(kPower), KLyrRevert::eFlags));
    EXPECT_FALSE(lyrRevert(At(kPower), KLyrRevert::eFlags));
}

TEST_F(OverridesTest, AValueIsRedundantWhateverStandsBesideIt) {
    const double lValue = 0;
    mPage->Set(kPower, &lValue, eDOUBLE1, false);
    EXPECT_TRUE(lyrRedundancyOf(At(kPower)).mValue);
    mPage->ConnectSrc(kPower, mTop.get(), 0, eLyrConnectionData);
    EXPECT_TRUE(lyrRedundancyOf(At(kPower)).mValue);
    mPage->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, kPower, eLyrOverride);
    EXPECT_TRUE(lyrRedundancyOf(At(kPower)).mValue);
    EXPECT_EQ(lyrDropRedundant(At(kPower)), 1);
    EXPECT_FALSE(lyrRedundancyOf(At(kPower)).mValue);
}

}  // namespace
}  // namespace lyrsdk
