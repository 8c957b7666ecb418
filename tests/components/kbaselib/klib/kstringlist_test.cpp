#include "lyrfilesdk/components/kbaselib/klib/kstringlist.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <type_traits>
#include <vector>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"
#include "tests/support/huge_text.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

static_assert(std::is_polymorphic_v<KStringList> && std::has_virtual_destructor_v<KStringList>);
static_assert(std::is_base_of_v<KStringListTemplate<KStringListItem>, KStringList>);
static_assert(!std::is_copy_constructible_v<KStringList> && !std::is_copy_assignable_v<KStringList>);
static_assert(sizeof(void*) != 4 || sizeof(KStringList) == 12, "table, count, block");

std::vector<std::string> Strings(const KStringList& pList) {
    std::vector<std::string> lStrings;
    for (int lIndex = 0; lIndex < pList.GetCount(); ++lIndex)
        lStrings.emplace_back(pList.GetStringAt(lIndex));
    return lStrings;
}

using Expected = std::vector<std::string>;

TEST(KStringList, IsEmptyAtFirstWithoutABlock) {
    const std::size_t lBefore = MemoryProbe::Allocations();
    KStringList lList;
    EXPECT_EQ(lList.GetCount(), 0);
    for (int lIndex : {0, -1, 1, INT_MAX, INT_MIN}) {
        EXPECT_EQ(lList.GetStringAt(lIndex), nullptr);
        EXPECT_EQ(lList.GetReferenceAt(lIndex), 0u);
    }
    EXPECT_EQ(lList.FindIndex(""), -1);
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

TEST(KStringList, AddsStringsWithReferences) {
    LeakCheck lLeaks;
    KStringList lList;
    EXPECT_EQ(lList.Add("one", 11), 0);
    EXPECT_EQ(lList.Add("two", 0xffffffffu), 1);
    EXPECT_EQ(lList.Add(nullptr, 0), 2);
    EXPECT_EQ(Strings(lList), (Expected{"one", "two", ""}));
    EXPECT_EQ(lList.GetReferenceAt(0), 11u);
    EXPECT_EQ(lList.GetReferenceAt(1), 0xffffffffu);
    EXPECT_EQ(lList.GetReferenceAt(2), 0u);
}

TEST(KStringList, CopiesTheTextsItIsGiven) {
    char lText[] = "text";
    KStringList lList;
    lList.Add(lText, 0);
    lText[0] = 'n';
    EXPECT_STREQ(lList.GetStringAt(0), "text");
}

TEST(KStringList, InsertsInFrontOfAString) {
    LeakCheck lLeaks;
    KStringList lList;
    EXPECT_EQ(lList.InsertAt(7, "b", 2), 0);
    EXPECT_EQ(lList.InsertAt(0, "a", 1), 0);
    EXPECT_EQ(lList.InsertAt(100, "d", 4), 2);
    EXPECT_EQ(lList.InsertAt(2, "c", 3), 2);
    EXPECT_EQ(Strings(lList), (Expected{"a", "b", "c", "d"}));
    for (int lIndex = 0; lIndex < 4; ++lIndex)
        EXPECT_EQ(lList.GetReferenceAt(lIndex), static_cast<kReference>(lIndex + 1));
}

TEST(KStringList, IgnoresInvalidIndexes) {
    LeakCheck lLeaks;
    KStringList lList;
    lList.Add("a", 1);
    lList.Add("b", 2);
    EXPECT_EQ(lList.InsertAt(-1, "x", 0), -1);
    EXPECT_EQ(lList.InsertAt(INT_MIN, "x", 0), -1);
    for (int lIndex : {-1, 2, INT_MAX, INT_MIN}) {
        EXPECT_FALSE(lList.SetStringAt(lIndex, "x"));
        lList.RemoveAt(lIndex);
        EXPECT_EQ(lList.GetReferenceAt(lIndex), 0u);
    }
    EXPECT_EQ(Strings(lList), (Expected{"a", "b"}));
}

TEST(KStringList, GivesTheFirstTextAtANegativeIndexAndNullPastTheEnd) {
    KStringList lList;
    lList.Add("first", 0);
    lList.Add("second", 0);
    EXPECT_STREQ(lList.GetStringAt(-1), "first");
    EXPECT_STREQ(lList.GetStringAt(INT_MIN), "first");
    EXPECT_EQ(lList.GetStringAt(2), nullptr);
    EXPECT_EQ(lList.GetStringAt(INT_MAX), nullptr);
    lList.RemoveAt(0);
    lList.RemoveAt(0);
    EXPECT_EQ(lList.GetStringAt(-1), nullptr);
}

TEST(KStringList, SetsAStringAndKeepsItsReference) {
    LeakCheck lLeaks;
    KStringList lList;
    lList.Add("old", 7);
    EXPECT_TRUE(lList.SetStringAt(0, "a much longer text than the old one"));
    EXPECT_STREQ(lList.GetStringAt(0), "a much longer text than the old one");
    EXPECT_EQ(lList.GetReferenceAt(0), 7u);
    EXPECT_TRUE(lList.SetStringAt(0, nullptr));
    EXPECT_STREQ(lList.GetStringAt(0), "");
}

TEST(KStringList, RemovesStrings) {
    LeakCheck lLeaks;
    KStringList lList;
    for (const char* lText : {"a", "b", "c"})
        lList.Add(lText, 0);
    lList.RemoveAt(1);
    EXPECT_EQ(Strings(lList), (Expected{"a", "c"}));
    lList.Clear();
    EXPECT_EQ(lList.GetCount(), 0);
    lList.Clear();
    EXPECT_EQ(lList.Add("again", 0), 0);
}

TEST(KStringList, FindsTheFirstEqualString) {
    KStringList lList;
    for (const char* lText : {"a", "B", "", "B"})
        lList.Add(lText, 0);
    EXPECT_EQ(lList.FindIndex("B"), 1);
    EXPECT_EQ(lList.FindIndex("b"), -1);
    EXPECT_EQ(lList.FindIndex(""), 2);
    EXPECT_EQ(lList.FindIndex(nullptr), 2);
    EXPECT_EQ(lList.FindIndex("aB"), -1);
}

TEST(KStringList, TakesTextsOfItsOwn) {
    LeakCheck lLeaks;
    KStringList lList;
    lList.Add("alpha\nbeta", 0);
    lList.Add("gamma", 0);
    EXPECT_TRUE(lList.SetStringAt(1, lList.GetStringAt(1)));
    EXPECT_TRUE(lList.SetStringAt(1, lList.GetStringAt(1) + 2));
    EXPECT_STREQ(lList.GetStringAt(1), "mma");
    EXPECT_TRUE(lList.SetStringAt(1, lList.GetStringAt(0)));
    EXPECT_EQ(lList.InsertAt(0, lList.GetStringAt(1), 0), 0);
    EXPECT_EQ(lList.Add(lList.GetStringAt(2) + 6, 0), 3);
    EXPECT_EQ(Strings(lList), (Expected{"alpha\nbeta", "alpha\nbeta", "alpha\nbeta", "beta"}));
    EXPECT_EQ(lList.FindIndex(lList.GetStringAt(3)), 3);
    EXPECT_TRUE(lList.SetText(lList.GetStringAt(1)));
    EXPECT_EQ(Strings(lList), (Expected{"alpha", "beta"}));
}

TEST(KStringList, JoinsItsStringsWithALineFeedBehindEach) {
    LeakCheck lLeaks;
    KStringList lList;
    KString lText("old");
    EXPECT_TRUE(lList.GetText(lText));
    EXPECT_EQ(lText, "");
    lList.Add("a", 0);
    lList.Add("", 0);
    lList.Add("bc", 0);
    EXPECT_TRUE(lList.GetText(lText));
    EXPECT_EQ(lText, "a\n\nbc\n");
}

TEST(KStringList, SplitsATextIntoItsLines) {
    LeakCheck lLeaks;
    KStringList lList;
    lList.Add("old", 5);
    EXPECT_TRUE(lList.SetText("a\n\nbc\n"));
    EXPECT_EQ(Strings(lList), (Expected{"a", "", "bc"}));
    EXPECT_EQ(lList.GetReferenceAt(0), 0u);
    EXPECT_TRUE(lList.SetText("x\ny"));
    EXPECT_EQ(Strings(lList), (Expected{"x", "y"}));
    EXPECT_TRUE(lList.SetText("\n"));
    EXPECT_EQ(Strings(lList), (Expected{""}));
    EXPECT_TRUE(lList.SetText(""));
    EXPECT_EQ(lList.GetCount(), 0);
    lList.Add("old", 5);
    EXPECT_TRUE(lList.SetText(nullptr));
    EXPECT_EQ(lList.GetCount(), 0);
}

TEST(KStringList, TextsGoThereAndBack) {
    LeakCheck lLeaks;
    for (const Expected& lStrings : {Expected{}, Expected{""}, Expected{"", ""}, Expected{"a", "", "b"},
                                     Expected{"", "a", ""}, Expected{"with blank", "\ttab\r", "\xc3\xa4"}}) {
        KStringList lSource;
        KStringList lTarget;
        for (const std::string& lString : lStrings)
            lSource.Add(lString.c_str(), 0);
        KString lText;
        ASSERT_TRUE(lSource.GetText(lText));
        ASSERT_TRUE(lTarget.SetText(lText));
        EXPECT_EQ(Strings(lTarget), lStrings);
    }
}

TEST(KStringList, LosesNothingWithoutMemory) {
    LeakCheck lLeaks;
    KStringList lList;
    for (const char* lText : {"a", "b", "c", "d"})
        lList.Add(lText, 1);
    KString lText("old");
    for (std::size_t lFirst = 0; lFirst < 3; ++lFirst) {
        FailAllocations lFail(lFirst, true);
        EXPECT_EQ(lList.InsertAt(0, "new", 0), -1) << lFirst;
        EXPECT_EQ(lFail.Failed(), 1u);
        EXPECT_FALSE(lList.SetText("x\ny\nz"));
        EXPECT_FALSE(lList.SetStringAt(0, "too long for the room that is there"));
        EXPECT_FALSE(lList.GetText(lText));
    }
    EXPECT_EQ(Strings(lList), (Expected{"a", "b", "c", "d"}));
    EXPECT_EQ(lText, "old");
    EXPECT_EQ(lList.Add("e", 0), 4);
}

TEST(KStringList, SetTextNeedsAllOfItsMemoryOrChangesNothing) {
    LeakCheck lLeaks;
    KStringList lList;
    lList.Add("kept", 0);
    std::size_t lFirst = 0;
    for (;; ++lFirst) {
        FailAllocations lFail(lFirst, false);
        const bool lDone = lList.SetText("x\ny\n\nz");
        if (lFail.Failed() == 0) {
            EXPECT_TRUE(lDone);
            break;
        }
        EXPECT_FALSE(lDone) << lFirst;
        EXPECT_EQ(Strings(lList), (Expected{"kept"})) << lFirst;
    }
    EXPECT_EQ(lFirst, 8u) << "four items, three texts that are not empty, one array";
    EXPECT_EQ(Strings(lList), (Expected{"x", "y", "", "z"}));
}

TEST(KStringList, IsDeletedThroughItsBase) {
    LeakCheck lLeaks;
    KStringListTemplate<KStringListItem>* lList = LyrSdkNew<KStringList>();
    ASSERT_NE(lList, nullptr);
    lList->Add("text", 0);
    LyrSdkDelete(lList);
}

#ifdef LYRSDK_TEST_HUGE_TEXT
TEST(HugeText, IsNoItemOfAStringList) {
    const HugeText lHuge("\nlast");
    KStringList lList;
    ASSERT_EQ(lList.Add("old", 7), 0);
    EXPECT_EQ(lList.Add(lHuge.Text(), 1), -1);
    EXPECT_FALSE(lList.SetStringAt(0, lHuge.Text()));
    EXPECT_FALSE(lList.SetText(lHuge.Text()));
    ASSERT_EQ(lList.GetCount(), 1);
    EXPECT_STREQ(lList.GetStringAt(0), "old");
}
#endif

}  // namespace
}  // namespace lyrsdk
