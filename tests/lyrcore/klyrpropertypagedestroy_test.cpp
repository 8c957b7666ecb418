#include <gtest/gtest.h>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/page_family.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

using Flag = LyrPropertyFlags;

class KLyrPropertyPageDestroyTest : public PageTest {};

// That the page holds every item of everything it sees.
void ExpectHoldsAll(const OwnedPage& pPage) {
    EXPECT_EQ(pPage->GetInstanceOf(), nullptr);
    for (int lId = 0; lId != -1; lId = pPage->GetMinimumPropertyIdAndEntry(lId)) {
        if (!pPage->GetPropertyEntry(lId))
            continue;
        EXPECT_NE(OwnItem<KLyrPropertyInfo>(pPage, lId), nullptr) << lId;
        EXPECT_NE(OwnItem<KLyrPropertyValue>(pPage, lId), nullptr) << lId;
        EXPECT_EQ(OwnFlagData(pPage, lId) >> 16 & 0x7FFFu, 0x7FFFu) << lId;
    }
}

TEST_F(KLyrPropertyPageDestroyTest, InstancesGetCopiesOfAllTheyInherited) {
    OwnedPage lRoot = MakeRoot("root", eSTRING);
    SetText(lRoot, 0, "text");
    const int lA = lRoot->Add(0, "a", eDOUBLE1);
    SetNumber(lRoot, lRoot->Add(lA, "b", eDOUBLE1), 2);
    lRoot->ModifyFlags(lA, Flag::eHIDDEN, true, false);
    const OwnedPage lFirst = MakeInstance(lRoot);
    const OwnedPage lSecond = MakeInstance(lRoot);
    SetNumber(lSecond, lA, 7);
    lSecond->Add(lA, "c", eDOUBLE1);
    const std::string lFirstBefore = Seen(lFirst);
    const std::string lSecondBefore = Seen(lSecond);
    lRoot.reset();
    EXPECT_EQ(Seen(lFirst), lFirstBefore);
    EXPECT_EQ(Seen(lSecond), lSecondBefore);
    ExpectHoldsAll(lFirst);
    ExpectHoldsAll(lSecond);
    SetNumber(lFirst, lA, 100);
    EXPECT_EQ(NumberOf(lSecond, lA), 7);
}

TEST_F(KLyrPropertyPageDestroyTest, HandedDownDescriptionIsACloneWithNameAndType) {
    OwnedPage lRoot = MakeRoot();
    const int lA = lRoot->Add(0, "a", eENUM);
    lRoot->SetLabel(lA, "label");
    lRoot->AddEnumValue(lA, "first");
    const OwnedPage lInstance = MakeInstance(lRoot);
    EXPECT_STREQ(lInstance->GetLabel(lA), "label");
    lRoot.reset();
    EXPECT_STREQ(lInstance->GetName(lA), "a");
    EXPECT_EQ(lInstance->GetType(lA), eENUM);
    EXPECT_STREQ(lInstance->GetLabel(lA), "");
    EXPECT_EQ(lInstance->GetEnumCount(lA), 0);
}

TEST_F(KLyrPropertyPageDestroyTest, ItemsThatNobodyHadAreNotMadeUp) {
    OwnedPage lRoot = MakeRoot();
    const int lEmpty = lRoot->Add(0, nullptr, nullptr, nullptr, true);
    const OwnedPage lInstance = MakeInstance(lRoot);
    const std::string lBefore = Seen(lInstance);
    lRoot.reset();
    EXPECT_EQ(Seen(lInstance), lBefore);
    EXPECT_EQ(Held(lInstance), "0<-1 iv- 7fff0000\n" + std::to_string(lEmpty) + "<0 --- 7fff0000\n");
}

TEST_F(KLyrPropertyPageDestroyTest, FlagsOverriddenOnSeveralLevelsReadTheSame) {
    for (int lDestroyed = 0; lDestroyed < 4; ++lDestroyed) {
        SCOPED_TRACE(lDestroyed);
        std::vector<OwnedPage> lChain;
        lChain.push_back(MakeRoot("root", eDOUBLE1));
        for (int i = 0; i < 4; ++i)
            lChain.push_back(MakeInstance(lChain.back()));
        lChain[0]->ModifyFlags(0, Flag::eANIMATABLE | Flag::eUSER | Flag::eHIDDEN, true, false);
        lChain[1]->ModifyFlags(0, Flag::eUSER, false, false);
        lChain[1]->ModifyFlags(0, Flag::eTEMPORARY, true, false);
        lChain[2]->ModifyFlags(0, Flag::eANIMATABLE, false, false);
        lChain[2]->SetFlagsInheritType(eLyrOverride, Flag::ePUBLISHED, 0);
        lChain[3]->ModifyFlags(0, Flag::eUSER | Flag::eUI_HIDDEN, true, false);
        std::vector<std::string> lBefore;
        for (const OwnedPage& lPage : lChain)
            lBefore.push_back(Seen(lPage));
        lBefore.erase(lBefore.begin() + lDestroyed);
        lChain.erase(lChain.begin() + lDestroyed);
        for (std::size_t i = 0; i < lChain.size(); ++i)
            EXPECT_EQ(Seen(lChain[i]), lBefore[i]) << "page " << i;
    }
}

TEST_F(KLyrPropertyPageDestroyTest, OwnFlagsOfAnInstanceWinOverTheHandedDownOnes) {
    OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    lRoot->ModifyFlags(0, Flag::eANIMATABLE | Flag::eUSER, true, false);
    lInstance->ModifyFlags(0, Flag::eUSER, false, false);
    lInstance->ModifyFlags(0, Flag::eHIDDEN, true, false);
    lRoot.reset();
    EXPECT_EQ(lInstance->GetFlags(0), Flag::eANIMATABLE | Flag::eHIDDEN);
    EXPECT_EQ(lInstance->GetFlagsInheritType(Flag::ePUBLISHED, false, 0), eLyrOverride);
}

TEST_F(KLyrPropertyPageDestroyTest, MarkOfTheUndefinedTopBitStays) {
    OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    const OwnedPage lSecond = MakeInstance(lRoot);
    lRoot->ModifyFlags(0, Flags(0x8000), true, false);
    lInstance->ModifyFlags(0, Flags(0x8000), false, false);
    lRoot.reset();
    EXPECT_EQ(OwnFlagData(lInstance, 0), 0xFFFF0000u);
    EXPECT_EQ(lSecond->GetFlags(0), 0x8000u);
}

TEST_F(KLyrPropertyPageDestroyTest, MiddleOfAChainLeavesFamiliesThatShareTheIds) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    OwnedPage lMiddle = MakeInstance(lRoot);
    const OwnedPage lLeaf = MakeInstance(lMiddle);
    const OwnedPage lBelow = MakeInstance(lLeaf);
    const int lA = lRoot->Add(0, "a", eDOUBLE1);
    const int lB = lMiddle->Add(lA, "b", eDOUBLE1);
    SetNumber(lMiddle, lA, 4);
    const std::string lBefore = Seen(lBelow);
    lMiddle.reset();
    ExpectHoldsAll(lLeaf);
    EXPECT_EQ(lBelow->GetInstanceOf(), lLeaf.get());
    EXPECT_EQ(Held(lBelow), "");
    EXPECT_EQ(Seen(lBelow), lBefore);
    EXPECT_EQ(lRoot->GetInstances().GetCount(), 0);
    EXPECT_EQ(lLeaf->GetIdGenerator(), lRoot->GetIdGenerator());
    EXPECT_EQ(lLeaf->Add(0, "c", eDOUBLE1), lB + 1);
    EXPECT_EQ(lRoot->Add(0, "d", eDOUBLE1), lB + 2);
    EXPECT_EQ(Tree(lRoot, 0), "a=0 d=0");
    EXPECT_EQ(Tree(lBelow, 0), "a=4(b=0) c=0");
    SetNumber(lRoot, lA, 9);
    EXPECT_EQ(NumberOf(lLeaf, lA), 4);
}

TEST_F(KLyrPropertyPageDestroyTest, PropertiesOfPagesFurtherUpAreHandedDownToo) {
    OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    lRoot->Add(0, "a", eDOUBLE1);
    OwnedPage lMiddle = MakeInstance(lRoot);
    const OwnedPage lLeaf = MakeInstance(lMiddle);
    EXPECT_EQ(Held(lMiddle), "");
    lMiddle.reset();
    ExpectHoldsAll(lLeaf);
    lRoot.reset();
    EXPECT_EQ(Tree(lLeaf, 0), "a=0");
}

TEST_F(KLyrPropertyPageDestroyTest, LastPageOfAFamilyTakesTheIdGeneratorAlong) {
    OwnedPage lRoot = MakeRoot();
    OwnedPage lInstance = MakeInstance(lRoot);
    Counted<KLyrPropertyIdGenerator> lGenerator(lRoot->GetIdGenerator());
    lRoot.reset();
    lInstance.reset();
    EXPECT_EQ(lGenerator->GetNextIdAndInc(), 1) << "a reference of one's own keeps it";
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    lGenerator.Reset();
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks - 1);
}

TEST_F(KLyrPropertyPageDestroyTest, LastInstanceMovesIntoThePlaceOfTheOneThatGoes) {
    const OwnedPage lRoot = MakeRoot();
    std::vector<OwnedPage> lPages;
    for (int i = 0; i < 5; ++i)
        lPages.push_back(MakeInstance(lRoot));
    const std::vector<KLyrPropertyPage*> lRaw = {lPages[0].get(), lPages[1].get(), lPages[2].get(), lPages[3].get(),
                                                 lPages[4].get()};
    const auto lInstances = [&lRoot] {
        const KArrayTemplate<KLyrPropertyPage*>& lArray = lRoot->GetInstances();
        return std::vector<KLyrPropertyPage*>(lArray.GetArray(), lArray.GetArray() + lArray.GetCount());
    };
    using List = std::vector<KLyrPropertyPage*>;
    lPages[1].reset();
    EXPECT_EQ(lInstances(), (List{lRaw[0], lRaw[4], lRaw[2], lRaw[3]}));
    lPages[4].reset();
    EXPECT_EQ(lInstances(), (List{lRaw[0], lRaw[3], lRaw[2]}));
    lPages[2].reset();
    EXPECT_EQ(lInstances(), (List{lRaw[0], lRaw[3]}));
    const OwnedPage lNew = MakeInstance(lRoot);
    EXPECT_EQ(lInstances(), (List{lRaw[0], lRaw[3], lNew.get()}));
    lPages[0].reset();
    EXPECT_EQ(lInstances(), (List{lNew.get(), lRaw[3]}));
    lPages[3].reset();
    EXPECT_EQ(lInstances(), List{lNew.get()});
}

TEST_F(KLyrPropertyPageDestroyTest, InstancesThatWereMadeFamilyRootsCanHaveInstancesAndGoInAnyOrder) {
    OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    OwnedPage lA = MakeInstance(lRoot);
    OwnedPage lB = MakeInstance(lRoot);
    lRoot.reset();
    OwnedPage lBelow = MakeInstance(lA);
    SetNumber(lA, 0, 3);
    EXPECT_EQ(NumberOf(lBelow, 0), 3);
    EXPECT_EQ(NumberOf(lB, 0), 0);
    lA.reset();
    EXPECT_EQ(NumberOf(lBelow, 0), 3);
    EXPECT_EQ(lBelow->Add(0, "a", eDOUBLE1), 1);
    EXPECT_EQ(lB->Add(0, "b", eDOUBLE1), 2);
}

TEST_F(KLyrPropertyPageDestroyTest, SharedItemsAreGivenBackOnce) {
    const Counted<KLyrPropertyValue> lValue(KLyrPropertyValue::Create(nullptr, eSTRING));
    OwnedPage lRoot = MakeRoot();
    const int lId = lRoot->Add(0, nullptr, lValue.Get(), nullptr, true);
    const OwnedPage lInstance = MakeInstance(lRoot);
    SetText(lRoot, lId, "shared");
    lRoot.reset();
    EXPECT_NE(OwnItem<KLyrPropertyValue>(lInstance, lId), lValue.Get());
    EXPECT_EQ(TextOf(lInstance, lId), "shared");
    const KString lOther("other");
    EXPECT_TRUE(lValue->Set(&lOther, eSTRING));
    EXPECT_EQ(TextOf(lInstance, lId), "shared");
}

TEST_F(KLyrPropertyPageDestroyTest, OpenBracketsGoWithThePageAndStayWithItsInstances) {
    OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const int lA = lRoot->Add(0, "a", eDOUBLE1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    lRoot->BeginCreateOrFindProperty();
    lInstance->BeginCreateOrFindProperty();
    lRoot.reset();
    EXPECT_EQ(lInstance->FastFind(0, "a", nullptr, true), lA);
    EXPECT_EQ(lInstance->FastFind(0, "A", nullptr, false), -1) << "the bracket is still open";
    lInstance->EndCreateOrFindProperty();
    EXPECT_EQ(lInstance->FastFind(0, "A", nullptr, false), lA);
}

TEST_F(KLyrPropertyPageDestroyTest, EveryTypeIsHandedDown) {
    for (int lType = 0; lType < eMAX_TYPES; ++lType) {
        SCOPED_TRACE(lType);
        OwnedPage lRoot = MakeRoot("root", static_cast<ELyrType>(lType));
        const OwnedPage lInstance = MakeInstance(lRoot);
        const std::string lBefore = Seen(lInstance);
        lRoot.reset();
        EXPECT_EQ(Seen(lInstance), lBefore);
        ASSERT_NE(OwnItem<KLyrPropertyValue>(lInstance, 0), nullptr);
        EXPECT_EQ(OwnItem<KLyrPropertyValue>(lInstance, 0)->GetType(), lType);
    }
}

TEST_F(KLyrPropertyPageDestroyTest, AnyPageOfARandomFamilyGoesUnseenByTheOthers) {
    for (unsigned lSeed = 1; lSeed <= 300; ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(60);
        std::vector<OwnedPage>& lPages = lFamily.Pages();
        while (lPages.size() > 1) {
            std::vector<std::string> lBefore;
            for (const OwnedPage& lPage : lPages)
                lBefore.push_back(Seen(lPage));
            const std::size_t lGone = static_cast<std::size_t>(lFamily.Below(static_cast<int>(lPages.size())));
            lPages.erase(lPages.begin() + static_cast<std::ptrdiff_t>(lGone));
            lBefore.erase(lBefore.begin() + static_cast<std::ptrdiff_t>(lGone));
            for (std::size_t i = 0; i < lPages.size(); ++i)
                ASSERT_EQ(Seen(lPages[i]), lBefore[i]);
        }
    }
}

// --- size ------------------------------------------------------------------------------------------------------------

constexpr int kLongChain = 100000;

std::vector<OwnedPage> LongChain() {
    std::vector<OwnedPage> lChain;
    lChain.push_back(MakeRoot("root", eDOUBLE1));
    for (int i = 1; i < kLongChain; ++i)
        lChain.push_back(MakeInstance(lChain.back()));
    return lChain;
}

TEST_F(KLyrPropertyPageDestroyTest, LongChainGoesFromTheTopOnASmallStack) {
    std::vector<OwnedPage> lChain = LongChain();
    SetNumber(lChain[0], 0, 8);
    RunOnSmallStack([&lChain] {
        for (std::size_t i = 0; i + 1 < lChain.size(); ++i)
            lChain[i].reset();
    });
    EXPECT_EQ(NumberOf(lChain.back(), 0), 8);
    ExpectHoldsAll(lChain.back());
}

TEST_F(KLyrPropertyPageDestroyTest, LongChainGoesFromTheBottomOnASmallStack) {
    std::vector<OwnedPage> lChain = LongChain();
    RunOnSmallStack([&lChain] {
        while (lChain.size() > 1)
            lChain.pop_back();
    });
    EXPECT_EQ(lChain[0]->GetInstances().GetCount(), 0);
}

TEST_F(KLyrPropertyPageDestroyTest, LongChainIsReadAndWrittenAtItsEndOnASmallStack) {
    const std::vector<OwnedPage> lChain = LongChain();
    const OwnedPage& lLeaf = lChain.back();
    const OwnedPage& lRoot = lChain.front();
    RunOnSmallStack([&lLeaf, &lRoot] {
        lRoot->ModifyFlags(0, Flag::eHIDDEN, true, false);
        EXPECT_EQ(lRoot->Add(0, "a", eDOUBLE1), 1);
        EXPECT_EQ(lLeaf->GetFlags(0), Flag::eHIDDEN);
        EXPECT_EQ(lLeaf->GetFlagsInheritType(Flag::eHIDDEN, true, 0), eLyrInherit);
        EXPECT_EQ(lLeaf->GetValueInherit(0, true), eLyrInherit);
        EXPECT_FALSE(SetNumber(lLeaf, 0, 0, true));
        EXPECT_TRUE(SetNumber(lLeaf, 0, 5, true));
        EXPECT_EQ(lLeaf->GetFlagsInheritType(Flag::eHIDDEN, true, 0), eLyrOverride);
        EXPECT_EQ(DefaultOf(lLeaf, 0), 0);
        EXPECT_EQ(lLeaf->GetFirstPropertyItem<KLyrPropertyValue>(0, nullptr), lRoot.get());
        EXPECT_EQ(lLeaf->GetChild(0), 1);
        EXPECT_EQ(lLeaf->GetPropertyEntryCount(), 2);
        EXPECT_EQ(lLeaf->FastFind(0, "a", nullptr, true), 1);
        lLeaf->BeginCreateOrFindProperty();
        EXPECT_EQ(lLeaf->FastFind(0, "a", nullptr, true), 1);
        lLeaf->PushPropertiesToParentInstance();
        EXPECT_EQ(NumberOf(lLeaf, 0), 5);
    });
}

TEST_F(KLyrPropertyPageDestroyTest, ManyInstancesOfOnePageGoFromBothEndsAndThenThePage) {
    constexpr std::size_t lCount = 50000;
    OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    std::vector<OwnedPage> lPages;
    for (std::size_t i = 0; i < lCount; ++i)
        lPages.push_back(MakeInstance(lRoot));
    for (std::size_t i = 0; i < lCount / 3; ++i)
        lPages[i].reset();
    for (std::size_t i = lCount / 2; i < lCount; ++i)
        lPages[i].reset();
    EXPECT_EQ(lRoot->GetInstances().GetCount(), static_cast<int>(lCount / 2 - lCount / 3));
    SetNumber(lRoot, 0, 3);
    lRoot.reset();
    for (std::size_t i = lCount / 3; i < lCount / 2; ++i)
        ASSERT_EQ(NumberOf(lPages[i], 0), 3);
}

}  // namespace
}  // namespace lyrsdk
