#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <type_traits>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/counted.h"
#include "tests/support/failing_memory.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

using Flags = LyrPropertyFlags::eLyrPropertyFlags;

static_assert(sizeof(KLyrPropertyFlags) == 4 && std::is_trivially_copyable_v<KLyrPropertyFlags>, "a plain word");
static_assert(!std::is_polymorphic_v<KLyrPropertyFlags> && !std::is_polymorphic_v<KLyrPropertyInfo> &&
                  !std::is_polymorphic_v<KLyrPropertyValue> && !std::is_polymorphic_v<KLyrPropertyConnect> &&
                  !std::is_polymorphic_v<KLyrPropertyEntry>,
              "items have no virtual functions");

template <typename T>
constexpr bool kOnlyMadeByFactory =
    !std::is_default_constructible_v<T> && !std::is_copy_constructible_v<T> && !std::is_copy_assignable_v<T> &&
    !std::is_move_constructible_v<T> && !std::is_destructible_v<T>;
static_assert(kOnlyMadeByFactory<KLyrPropertyInfo> && kOnlyMadeByFactory<KLyrPropertyValue> &&
                  kOnlyMadeByFactory<KLyrPropertyConnect> && kOnlyMadeByFactory<KLyrPropertyEntry>,
              "items and entries come from Create and Clone alone");

unsigned Word(const KLyrPropertyFlags& pFlags) {
    return pFlags.GetMask() << 16 | static_cast<unsigned>(pFlags.GetFlags());
}

// A flags item that holds any word.
KLyrPropertyFlags FlagsOf(unsigned pWord) {
    KLyrPropertyFlags lFlags;
    lFlags.SetFlags(0, pWord & 0xFFFFu);
    lFlags.SetMask(pWord >> 16);
    return lFlags;
}

// --- flags ---------------------------------------------------------------------------------------------------------

TEST(KLyrPropertyFlags, AreEmptyAtFirst) {
    EXPECT_EQ(Word(KLyrPropertyFlags()), 0u);
    EXPECT_EQ(Word(KLyrPropertyFlags(LyrPropertyFlags::eNO_FLAG)), 0u);
}

TEST(KLyrPropertyFlags, MadeFromFlagsHaveThemOnAndSetHere) {
    for (unsigned lBit = 0; lBit < 16; ++lBit) {
        const KLyrPropertyFlags lFlags(static_cast<Flags>(1u << lBit));
        EXPECT_EQ(lFlags.GetMask(), 1u << lBit);
        EXPECT_EQ(static_cast<unsigned>(lFlags.GetFlags()), 1u << lBit);
    }
    EXPECT_EQ(Word(KLyrPropertyFlags(LyrPropertyFlags::AllFlags())), 0x7FFF7FFFu);
}

TEST(KLyrPropertyFlags, MadeFromBitsAboveTheFlagsPutThemIntoTheMaskAsTheyAre) {
    EXPECT_EQ(Word(KLyrPropertyFlags(static_cast<Flags>(0x00050002u))), 0x00070002u);
    EXPECT_EQ(Word(KLyrPropertyFlags(static_cast<Flags>(0xFFFFFFFFu))), 0xFFFFFFFFu);
}

TEST(KLyrPropertyFlags, AreCopiedByAssignment) {
    const KLyrPropertyFlags lFrom = FlagsOf(0x12345678u);
    KLyrPropertyFlags lTo(LyrPropertyFlags::eUSER);
    EXPECT_EQ(&(lTo = lFrom), &lTo);
    EXPECT_EQ(Word(lTo), 0x12345678u);
    KLyrPropertyFlags& lSelf = lTo;
    lTo = lSelf;
    EXPECT_EQ(Word(lTo), 0x12345678u);
}

TEST(KLyrPropertyFlags, TheCloneIsAlwaysEmpty) {
    const OwnedPage lPage(KLyrPropertyPage::Create("page", eINTEGER1));
    for (const unsigned lWord : {0u, 1u, 0x00010000u, 0x7FFF7FFFu, 0xFFFFFFFFu}) {
        EXPECT_EQ(Word(FlagsOf(lWord).Clone(nullptr)), 0u);
        EXPECT_EQ(Word(FlagsOf(lWord).Clone(lPage.get())), 0u);
    }
}

TEST(KLyrPropertyFlags, AnExplicitOffIsALocalSetting) {
    KLyrPropertyFlags lFlags;
    EXPECT_TRUE(lFlags.ModifyFlags(LyrPropertyFlags::eHIDDEN, false));
    EXPECT_EQ(static_cast<unsigned>(lFlags.GetFlags()), 0u);
    EXPECT_EQ(lFlags.GetMask(), 64u);
    EXPECT_EQ(lFlags.GetFlagsInheritType(LyrPropertyFlags::eHIDDEN), eLyrOverride);
    EXPECT_EQ(lFlags.GetFlagsInheritType(LyrPropertyFlags::eUSER), eLyrInherit);
}

TEST(KLyrPropertyFlags, ModifyingAppliesHighBitsUnmasked) {
    KLyrPropertyFlags lFlags = FlagsOf(0x00030003u);
    EXPECT_TRUE(lFlags.ModifyFlags(0x00020000u, false));
    EXPECT_EQ(Word(lFlags), 0x00010003u);
    EXPECT_TRUE(lFlags.ModifyFlags(0x00080000u, true));
    EXPECT_EQ(Word(lFlags), 0x00090003u);
}

TEST(KLyrPropertyFlags, SettingFlagsMarksOnlyTheMaskBits) {
    KLyrPropertyFlags lFlags;
    EXPECT_TRUE(lFlags.SetFlags(LyrPropertyFlags::eUSER, LyrPropertyFlags::eUSER | LyrPropertyFlags::eHIDDEN));
    EXPECT_EQ(static_cast<unsigned>(lFlags.GetFlags()), 66u);
    EXPECT_EQ(lFlags.GetMask(), 2u);
    EXPECT_TRUE(lFlags.SetFlags(LyrPropertyFlags::eHIDDEN, LyrPropertyFlags::eNO_FLAG));
    EXPECT_EQ(static_cast<unsigned>(lFlags.GetFlags()), 2u);
    EXPECT_EQ(lFlags.GetMask(), 66u);
}

TEST(KLyrPropertyFlags, MergeOverInheritedFlags) {
    for (const unsigned lParent : {0u, 1u, 0x7FFFu, 0xFFFFu, 0xFFFFFFFFu})
        EXPECT_EQ(static_cast<unsigned>(KLyrPropertyFlags().GetMergedFlags(lParent)), lParent);
    KLyrPropertyFlags lFlags;
    lFlags.ModifyFlags(LyrPropertyFlags::eHIDDEN, false);
    lFlags.ModifyFlags(LyrPropertyFlags::eUSER, true);
    EXPECT_EQ(static_cast<unsigned>(lFlags.GetMergedFlags(64 + 16)), 16u + 2u);
}

TEST(KLyrPropertyFlags, AreEqualWhereTheyAreCompared) {
    const KLyrPropertyFlags lLeft = FlagsOf(0x00010005u);
    const KLyrPropertyFlags lRight = FlagsOf(0xFFFF0006u);
    EXPECT_TRUE(lLeft.Equal(lRight, 4));
    EXPECT_TRUE(lLeft.Equal(lRight, 8));
    EXPECT_TRUE(lLeft.Equal(lRight, 0));
    EXPECT_TRUE(lLeft.Equal(lRight, 0xFFFF0000u));
    EXPECT_FALSE(lLeft.Equal(lRight, 1));
    EXPECT_FALSE(lLeft.Equal(lRight, 0xFFFFFFFFu));
    EXPECT_TRUE(lLeft.Equal(lLeft, 0xFFFFFFFFu));
}

TEST(KLyrPropertyFlags, FollowTheirArithmeticForAnyWords) {
    std::mt19937 lRandom(20);
    for (int i = 0; i < 20000; ++i) {
        const auto lWord = static_cast<unsigned>(lRandom());
        const auto lOther = static_cast<unsigned>(lRandom());
        const unsigned lArgument = i % 3 == 0 ? 1u << (lRandom() % 32) : static_cast<unsigned>(lRandom());
        const unsigned lMask = lWord >> 16;
        const unsigned lLow = lWord & 0xFFFFu;

        KLyrPropertyFlags lFlags = FlagsOf(lWord);
        ASSERT_EQ(Word(lFlags), lWord);
        EXPECT_TRUE(lFlags.SetMask(lArgument));
        EXPECT_EQ(Word(lFlags), lWord | lArgument << 16);
        lFlags = FlagsOf(lWord);
        EXPECT_TRUE(lFlags.UnsetMask(lArgument));
        EXPECT_EQ(Word(lFlags), lWord & ~(lArgument << 16));
        lFlags = FlagsOf(lWord);
        EXPECT_TRUE(lFlags.ModifyFlags(lArgument, true));
        EXPECT_EQ(Word(lFlags), lWord | lArgument << 16 | lArgument);
        lFlags = FlagsOf(lWord);
        EXPECT_TRUE(lFlags.ModifyFlags(lArgument, false));
        EXPECT_EQ(Word(lFlags), (lWord | lArgument << 16) & ~lArgument);
        lFlags = FlagsOf(lWord);
        EXPECT_TRUE(lFlags.SetFlags(lArgument, lOther));
        EXPECT_EQ(Word(lFlags), ((lMask | lArgument) << 16) | (((lLow & ~lArgument) | lOther) & 0xFFFFu));
        lFlags = FlagsOf(lWord);
        EXPECT_EQ(static_cast<unsigned>(lFlags.GetMergedFlags(lOther)), (lOther & ~lMask) | lLow);
        EXPECT_EQ(lFlags.GetFlagsInheritType(lArgument), lMask & lArgument ? eLyrOverride : eLyrInherit);
        EXPECT_EQ(lFlags.Equal(FlagsOf(lOther), lArgument), ((lWord ^ lOther) & 0xFFFFu & lArgument) == 0);
        EXPECT_EQ(Word(lFlags), lWord);
    }
}

// --- entries -------------------------------------------------------------------------------------------------------

class KLyrPropertyEntryTest : public testing::Test {
protected:
    static constexpr const KLyrPropertyInfo* kInfo = nullptr;
    static constexpr const KLyrPropertyValue* kValue = nullptr;
    static constexpr const KLyrPropertyConnect* kConnect = nullptr;
    static constexpr const KLyrPropertyFlags* kFlags = nullptr;

    LeakCheck mLeaks;
};

TEST_F(KLyrPropertyEntryTest, HoldsWhatItWasGiven) {
    KLyrPropertyInfo* lInfo = KLyrPropertyInfo::Create("name", eINTEGER1);
    KLyrPropertyValue* lValue = KLyrPropertyValue::Create(nullptr, eINTEGER1);
    KLyrPropertyConnect* lConnect = KLyrPropertyConnect::Create(nullptr, 3);
    const OwnedEntry lEntry(KLyrPropertyEntry::Create(7, lInfo, lValue, lConnect));
    EXPECT_EQ(lEntry->GetParentId(), 7);
    EXPECT_EQ(lEntry->Get(kInfo), lInfo);
    EXPECT_EQ(lEntry->Get(kValue), lValue);
    EXPECT_EQ(lEntry->Get(kConnect), lConnect);
    ASSERT_NE(lEntry->Get(kFlags), nullptr);
    EXPECT_EQ(Word(*lEntry->Get(kFlags)), 0u);
    EXPECT_FALSE(lEntry->IsEmpty());
}

TEST_F(KLyrPropertyEntryTest, TheArgumentOfGetOnlyChoosesTheKind) {
    const OwnedEntry lEntry(KLyrPropertyEntry::Create(-1, KLyrPropertyInfo::Create("name", eINTEGER1),
                                                      KLyrPropertyValue::Create(nullptr, eINTEGER1), nullptr));
    const Counted<KLyrPropertyInfo> lOther(KLyrPropertyInfo::Create("other", eSTRING));
    EXPECT_EQ(lEntry->Get(lOther.Get()), lEntry->Get(kInfo));
    const KLyrPropertyFlags lFlags(LyrPropertyFlags::eUSER);
    EXPECT_NE(lEntry->Get(&lFlags), &lFlags);
    EXPECT_EQ(lEntry->Get(&lFlags), lEntry->Get(kFlags));
}

TEST_F(KLyrPropertyEntryTest, StoresAnyParentId) {
    for (const int lParent : {0, -1, INT_MIN, INT_MAX}) {
        const OwnedEntry lEntry(KLyrPropertyEntry::Create(lParent, nullptr, nullptr, nullptr));
        EXPECT_EQ(lEntry->GetParentId(), lParent);
    }
}

TEST_F(KLyrPropertyEntryTest, IsEmptyOnlyWithoutItemsAndWithoutFlagsSetHere) {
    const OwnedEntry lEntry(KLyrPropertyEntry::Create(0, nullptr, nullptr, nullptr));
    EXPECT_TRUE(lEntry->IsEmpty());
    EXPECT_EQ(lEntry->Get(kInfo), nullptr);
    EXPECT_EQ(lEntry->Get(kValue), nullptr);
    EXPECT_EQ(lEntry->Get(kConnect), nullptr);

    lEntry->Set(KLyrPropertyInfo::Create("name", eINTEGER1));
    EXPECT_FALSE(lEntry->IsEmpty());
    lEntry->Set(static_cast<KLyrPropertyInfo*>(nullptr));
    EXPECT_TRUE(lEntry->IsEmpty());
    lEntry->Set(KLyrPropertyValue::Create(nullptr, eUNIDENTIFIED));
    EXPECT_FALSE(lEntry->IsEmpty());
    lEntry->Set(static_cast<KLyrPropertyValue*>(nullptr));
    EXPECT_TRUE(lEntry->IsEmpty());
    lEntry->Set(KLyrPropertyConnect::Create(nullptr, 0));
    EXPECT_FALSE(lEntry->IsEmpty());
    lEntry->Set(static_cast<KLyrPropertyConnect*>(nullptr));
    EXPECT_TRUE(lEntry->IsEmpty());

    lEntry->Set(FlagsOf(0x0000FFFFu));
    EXPECT_TRUE(lEntry->IsEmpty());
    lEntry->Set(FlagsOf(0x00010000u));
    EXPECT_FALSE(lEntry->IsEmpty());
    lEntry->Set(FlagsOf(0x80000000u));
    EXPECT_FALSE(lEntry->IsEmpty());
}

TEST_F(KLyrPropertyEntryTest, CountsItsItemsAndGivesThemBack) {
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    Counted<KLyrPropertyValue> lValue(KLyrPropertyValue::Create(nullptr, eINTEGER1));
    {
        const OwnedEntry lFirst(KLyrPropertyEntry::Create(0, nullptr, lValue.Get(), nullptr));
        const OwnedEntry lSecond(KLyrPropertyEntry::Create(1, nullptr, lValue.Get(), nullptr));
        const int lNumber = 5;
        EXPECT_TRUE(lFirst->Get(kValue)->Set(&lNumber, eINTEGER1));
        int lRead = 0;
        EXPECT_TRUE(lSecond->Get(kValue)->Get(&lRead, eINTEGER1));
        EXPECT_EQ(lRead, 5);
        lValue.Reset();
        EXPECT_TRUE(lSecond->Get(kValue)->Get(&lRead, eINTEGER1));
    }
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks);
}

template <typename T>
void ExpectReplacingKeepsCounts(T* pOld, T* pNew) {
    const T* lTag = nullptr;
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    Counted<T> lOld(pOld);
    Counted<T> lNew(pNew);
    {
        const OwnedEntry lEntry(KLyrPropertyEntry::Create(0, nullptr, nullptr, nullptr));
        lEntry->Set(pOld);
        lEntry->Set(pOld);
        EXPECT_EQ(lEntry->Get(lTag), pOld);
        lEntry->Set(pNew);
        EXPECT_EQ(lEntry->Get(lTag), pNew);
        const std::size_t lBoth = MemoryProbe::LiveBlocks();
        lOld.Reset();
        EXPECT_LT(MemoryProbe::LiveBlocks(), lBoth) << "the replaced item had a reference left";
        lNew.Reset();
        // The entry alone holds it now; putting it in its own place must not free it.
        const std::size_t lHeld = MemoryProbe::LiveBlocks();
        lEntry->Set(pNew);
        EXPECT_EQ(MemoryProbe::LiveBlocks(), lHeld);
        EXPECT_EQ(lEntry->Get(lTag), pNew);
        lEntry->Set(static_cast<T*>(nullptr));
        EXPECT_LT(MemoryProbe::LiveBlocks(), lHeld);
        EXPECT_EQ(lEntry->Get(lTag), nullptr);
    }
    EXPECT_LT(MemoryProbe::LiveBlocks(), lBlocks);
}

TEST_F(KLyrPropertyEntryTest, ReplacingAnItemKeepsTheCountsRight) {
    ExpectReplacingKeepsCounts(KLyrPropertyInfo::Create("a", eINTEGER1), KLyrPropertyInfo::Create("b", eINTEGER1));
    ExpectReplacingKeepsCounts(KLyrPropertyValue::Create(nullptr, eSTRING), KLyrPropertyValue::Create(nullptr, eTIME));
    ExpectReplacingKeepsCounts(KLyrPropertyConnect::Create(nullptr, 1), KLyrPropertyConnect::Create(nullptr, 2));
}

TEST_F(KLyrPropertyEntryTest, TakesFlagsByValueAndByPointer) {
    const OwnedEntry lEntry(KLyrPropertyEntry::Create(0, nullptr, nullptr, nullptr));
    KLyrPropertyFlags lFlags = FlagsOf(0x00060004u);
    lEntry->Set(lFlags);
    EXPECT_EQ(Word(*lEntry->Get(kFlags)), 0x00060004u);
    lFlags = FlagsOf(0x00010001u);
    lEntry->Set(&lFlags);
    EXPECT_EQ(Word(*lEntry->Get(kFlags)), 0x00010001u);
    lEntry->Set(lEntry->Get(kFlags));
    EXPECT_EQ(Word(*lEntry->Get(kFlags)), 0x00010001u);
    lEntry->Get(kFlags)->ModifyFlags(LyrPropertyFlags::eUSER, true);
    EXPECT_EQ(Word(*lEntry->Get(kFlags)), 0x00030003u);
    lEntry->Set(static_cast<KLyrPropertyFlags*>(nullptr));
    EXPECT_EQ(Word(*lEntry->Get(kFlags)), 0u);
}

TEST_F(KLyrPropertyEntryTest, WithoutMemoryTheItemsStayTheCallers) {
    Counted<KLyrPropertyInfo> lInfo(KLyrPropertyInfo::Create("name", eINTEGER1));
    WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
        const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
        const OwnedEntry lEntry(KLyrPropertyEntry::Create(0, lInfo.Get(), nullptr, nullptr));
        EXPECT_EQ(lEntry == nullptr, lFail.Failed() > 0);
        return lFail.Failed();
    });
    EXPECT_STREQ(lInfo->GetNameText(), "name");
}

}  // namespace
}  // namespace lyrsdk
