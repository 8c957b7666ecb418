#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "lyrfilesdk/components/kbaselib/klib/karrayul.h"
#include "lyrfilesdk/components/kbaselib/klib/kmap.h"
#include "lyrfilesdk/components/kbaselib/klib/kscopedptr.h"
#include "lyrfilesdk/components/kbaselib/klib/kstring.h"
#include "lyrfilesdk/components/kbaselib/klib/kstringlist.h"
#include "lyrfilesdk/components/kbaselib/klib/ktime.h"
#include "tests/reliability/failing_memory_scenarios.h"
#include "tests/support/map_invariants.h"

namespace lyrsdk {
namespace {

std::string TextOf(const KString& pText) {
    return std::string(pText.Buffer(), static_cast<std::size_t>(pText.GetLen()));
}

// --- texts -----------------------------------------------------------------------------------------------------------

const char kLonger[] = "a text that is longer than any of those that are there before";

struct TextStage {
    KString mText{"old text"};
    KString mOther{"the other text\n"};
    KString mEmpty;

    std::string Shows(Detail) const { return TextOf(mText) + "|" + TextOf(mOther) + "|" + TextOf(mEmpty); }
    static testing::AssertionResult Holds() { return testing::AssertionSuccess(); }
};

// Constructors and sums answer with the text, which is empty without memory; the others with what they return.
const Operation<TextStage> kTextOperations[] = {
    {"CopiesAText", [](TextStage& pStage) { return TextOf(KString(pStage.mText)); }, ""},
    {"MakesATextFromCharacters", [](TextStage&) { return TextOf(KString(kLonger)); }, ""},
    {"MakesATextFromAnInt", [](TextStage&) { return TextOf(KString(-123456789)); }, ""},
    {"MakesATextFromAFloat", [](TextStage&) { return TextOf(KString(0.1f)); }, ""},
    {"MakesATextFromADouble", [](TextStage&) { return TextOf(KString(1.0 / 3)); }, ""},
    {"AssignsAnotherTextByOperator", [](TextStage& pStage) { return Answer((pStage.mText = pStage.mOther).GetLen()); },
     "8"},
    {"AssignsCharactersByOperator", [](TextStage& pStage) { return Answer((pStage.mText = kLonger).GetLen()); }, "8"},
    {"AssignsToAText", [](TextStage& pStage) { return Answer(pStage.mText.Assign(kLonger, 40)); }, "false"},
    {"AssignsToAnEmptyText", [](TextStage& pStage) { return Answer(pStage.mEmpty.Assign("a\0b", 3)); }, "false"},
    {"AppendsCharacters", [](TextStage& pStage) { return Answer(pStage.mText.Append(kLonger)); }, "false"},
    {"AppendsCountedCharacters", [](TextStage& pStage) { return Answer(pStage.mText.Append(kLonger, 9)); }, "false"},
    {"AppendsAText", [](TextStage& pStage) { return Answer(pStage.mText.Append(pStage.mOther)); }, "false"},
    {"AppendsATextToItself", [](TextStage& pStage) { return Answer(pStage.mText.Append(pStage.mText)); }, "false"},
    {"AppendsToAnEmptyText", [](TextStage& pStage) { return Answer(pStage.mEmpty.Append(pStage.mOther)); }, "false"},
    {"AddsCharacters", [](TextStage& pStage) { return TextOf(pStage.mText + kLonger); }, ""},
    {"AddsTexts", [](TextStage& pStage) { return TextOf(pStage.mText + pStage.mOther); }, ""},
};

class FailingMemoryText : public testing::TestWithParam<Operation<TextStage>> {};

TEST_P(FailingMemoryText, DoesAllOrKeepsTheText) {
    ExpectDoneOrRefused(GetParam());
}

INSTANTIATE_TEST_SUITE_P(KString, FailingMemoryText, testing::ValuesIn(kTextOperations), NameOfOperation());

TEST(FailingMemoryText, WritesAndReadsNumbersAndTimesWithoutMemory) {
    ExpectSameWithoutMemory([] {
        char lInt[32], lFloat[32], lDouble[32], lTime[KTime::kTimeStringSize];
        lyrFormat(lInt, -5);
        lyrFormat(lFloat, 0.1f);
        lyrFormat(lDouble, 1e-300);
        KTime(-123456789012345).GetTimeString(lTime, 5, 0, 2, 24.0);
        double lRead[2] = {};
        EXPECT_TRUE(lyrParseDouble("5.435359256080003e+22", 21, lRead[0]));
        EXPECT_TRUE(lyrParseDouble("123456789012345678901234567890", 30, lRead[1]));
        std::ostringstream lOut;
        lOut << lInt << ' ' << lFloat << ' ' << lDouble << ' ' << lTime << ' ' << lRead[0] << ' ' << lRead[1];
        return lOut.str();
    });
}

TEST(FailingMemoryText, ComparesMovesAndEmptiesWithoutMemory) {
    KString lText("old text");
    KString lLonger("old text and more");
    const FailAllocations lFail(0, true);
    EXPECT_LT(lyrCompareText(lText, lLonger), 0);
    EXPECT_TRUE(lText == "old text");
    EXPECT_TRUE(lLonger.Assign("fits", 4));
    EXPECT_TRUE(lLonger.Append(" too"));
    const KString lMoved(static_cast<KString&&>(lLonger));
    EXPECT_STREQ(lMoved.Buffer(), "fits too");
    lText = static_cast<const char*>(nullptr);
    EXPECT_TRUE(lText.IsEmpty());
    EXPECT_EQ(lFail.Failed(), 0u);
}

// --- lists of texts --------------------------------------------------------------------------------------------------

// Four strings fill the list's first block.
struct ListStage {
    KStringList mList;
    KStringList mEmpty;
    KString mText{"t"};

    ListStage() {
        for (unsigned i = 0; i < 4; ++i)
            mList.Add(i == 2 ? "" : "line", i + 1);
    }

    static void Show(std::ostream& pOut, const KStringList& pList) {
        for (int i = 0; i < pList.GetCount(); ++i)
            pOut << pList.GetStringAt(i) << '=' << pList.GetReferenceAt(i) << '\n';
        pOut << "--\n";
    }
    std::string Shows(Detail) const {
        std::ostringstream lOut;
        Show(lOut, mList);
        Show(lOut, mEmpty);
        lOut << TextOf(mText);
        return lOut.str();
    }
    static testing::AssertionResult Holds() { return testing::AssertionSuccess(); }
};

const Operation<ListStage> kListOperations[] = {
    {"SetsAString", [](ListStage& pStage) { return Answer(pStage.mList.SetStringAt(1, kLonger)); }, "false"},
    {"SetsAnEmptyString", [](ListStage& pStage) { return Answer(pStage.mList.SetStringAt(2, "x")); }, "false"},
    {"InsertsInFront", [](ListStage& pStage) { return Answer(pStage.mList.InsertAt(0, kLonger, 9)); }, "-1"},
    {"InsertsPastTheEnd", [](ListStage& pStage) { return Answer(pStage.mList.InsertAt(99, "", 9)); }, "-1"},
    {"InsertsItsOwnText",
     [](ListStage& pStage) { return Answer(pStage.mList.InsertAt(0, pStage.mList.GetStringAt(3), 9)); }, "-1"},
    {"Adds", [](ListStage& pStage) { return Answer(pStage.mList.Add(kLonger, 9)); }, "-1"},
    {"AddsTheFirst", [](ListStage& pStage) { return Answer(pStage.mEmpty.Add(kLonger, 9)); }, "-1"},
    {"GivesItsText", [](ListStage& pStage) { return Answer(pStage.mList.GetText(pStage.mText)); }, "false"},
    {"TakesAText",
     [](ListStage& pStage) { return Answer(pStage.mList.SetText("a\n\nlonger line\nb\nc\nd\ne\nf\nno end")); },
     "false"},
};

class FailingMemoryStringList : public testing::TestWithParam<Operation<ListStage>> {};

TEST_P(FailingMemoryStringList, DoesAllOrKeepsTheList) {
    ExpectDoneOrRefused(GetParam());
}

INSTANTIATE_TEST_SUITE_P(KStringList, FailingMemoryStringList, testing::ValuesIn(kListOperations), NameOfOperation());

TEST(FailingMemoryStringList, FindsAndRemovesWithoutMemory) {
    ListStage lStage;
    const FailAllocations lFail(0, true);
    EXPECT_EQ(lStage.mList.FindIndex(""), 2);
    lStage.mList.RemoveAt(0);
    EXPECT_EQ(lStage.mList.GetCount(), 3);
    EXPECT_TRUE(lStage.mEmpty.SetText("")) << "no line needs no memory";
    lStage.mList.Clear();
    EXPECT_EQ(lStage.mList.GetCount(), 0);
    EXPECT_EQ(lFail.Failed(), 0u);
}

// --- arrays ----------------------------------------------------------------------------------------------------------

// Both element sizes; eight elements fill two blocks.
template <typename T>
struct ArrayStage {
    KArrayTemplate<T> mArray;
    KArrayTemplate<T> mEmpty;

    ArrayStage() {
        for (int lValue = 0; lValue < 88; lValue += 11)
            mArray.Add(static_cast<T>(lValue));
    }
    std::string Shows(Detail) const {
        std::ostringstream lOut;
        for (const auto* lArray : {&mArray, &mEmpty}) {
            for (int i = 0; i < lArray->GetCount(); ++i)
                lOut << lArray->GetAt(i) << ' ';
            lOut << '|' << lArray->GetBlockCount() << '\n';
        }
        return lOut.str();
    }
    static testing::AssertionResult Holds() { return testing::AssertionSuccess(); }
};

using Elements = testing::Types<int, long long>;
template <typename T>
class FailingMemoryArray : public testing::Test {};

struct ElementNames {
    template <typename T>
    static std::string GetName(int) {
        return sizeof(T) == 4 ? "OfFourBytes" : "OfEightBytes";
    }
};
TYPED_TEST_SUITE(FailingMemoryArray, Elements, ElementNames);

TYPED_TEST(FailingMemoryArray, InsertsOrKeepsElementsAndRoom) {
    using Stage = ArrayStage<TypeParam>;
    const Operation<Stage> lOperations[] = {
        {"Add", [](Stage& pStage) { return Answer(pStage.mArray.Add(99)); }, "-1"},
        {"AddTheFirst", [](Stage& pStage) { return Answer(pStage.mEmpty.Add(99)); }, "-1"},
        {"InsertInFront", [](Stage& pStage) { return Answer(pStage.mArray.InsertAt(0, TypeParam(99))); }, "-1"},
        {"InsertItsOwnElement",
         [](Stage& pStage) {
             return Answer(pStage.mArray.InsertAt(3, static_cast<const void*>(pStage.mArray.GetArray() + 7)));
         },
         "-1"},
        {"SetTheRoom",
         [](Stage& pStage) {
             pStage.mArray.SetBlockCount(9);
             return std::string();
         },
         ""},
        {"InsertBehindTooLittleRoom", [](Stage& pStage) { return Answer(pStage.mArray.Add(99)); }, "-1",
         Refused::eChangesNothing, [](Stage& pStage) { pStage.mArray.SetBlockCount(1); }},
    };
    for (const Operation<Stage>& lOperation : lOperations) {
        SCOPED_TRACE(lOperation.mName);
        ExpectDoneOrRefused(lOperation);
    }
}

TYPED_TEST(FailingMemoryArray, ReadsRemovesAndSwapsWithoutMemory) {
    ArrayStage<TypeParam> lStage;
    const FailAllocations lFail(0, true);
    EXPECT_EQ(lStage.mArray.Find(77), 7);
    EXPECT_EQ(lStage.mArray.RemoveAt(0), 0);
    EXPECT_EQ(lStage.mArray.Add(99), 7) << "there is room";
    lStage.mArray.Swap(lStage.mEmpty);
    EXPECT_EQ(lStage.mEmpty.GetAt(7), TypeParam(99));
    lStage.mEmpty.Clear();
    EXPECT_EQ(lFail.Failed(), 0u);
}

// --- the hook, allocators, owners ------------------------------------------------------------------------------------

struct BlockStage {
    char* mBlock = KBaseArrayRealloc(nullptr, 4);
    KHungryAllocator mHungry{24};
    KBaseAllocator mBase{24};
    void* mRecords = nullptr;
    KLyrSdkScopedPtr<KString> mOwner{LyrSdkNew<KString>("old")};

    BlockStage() {
        for (int i = 0; i < 4; ++i)
            mBlock[i] = static_cast<char>('a' + i);
    }
    ~BlockStage() {
        KBaseArrayFree(mBlock);
        mBase.FreeMemory(mRecords);
    }
    BlockStage(const BlockStage&) = delete;
    BlockStage& operator=(const BlockStage&) = delete;

    std::string Shows(Detail) const {
        std::ostringstream lOut;
        lOut << std::string(mBlock, 4) << ' ' << mHungry.GetRecordPoolSize() << ' ' << Answer(mRecords) << ' '
             << (mOwner ? TextOf(*mOwner.Get()) : "(null)");
        return lOut.str();
    }
    static testing::AssertionResult Holds() { return testing::AssertionSuccess(); }
};

const Operation<BlockStage> kBlockOperations[] = {
    {"ResizesABlock",
     [](BlockStage& pStage) {
         char* lBlock = KBaseArrayRealloc(pStage.mBlock, 4000);
         pStage.mBlock = lBlock ? lBlock : pStage.mBlock;
         return Answer(lBlock);
     },
     "null"},
    {"MakesABlock",
     [](BlockStage&) {
         char* lBlock = KBaseArrayRealloc(nullptr, 0);
         KBaseArrayFree(lBlock);
         return Answer(lBlock);
     },
     "null"},
    {"MakesAnObject",
     [](BlockStage&) {
         KStringList* lList = LyrSdkNew<KStringList>();
         LyrSdkDelete(lList);
         return Answer(lList);
     },
     "null"},
    {"ReservesABlockOfRecords", [](BlockStage& pStage) { return Answer(pStage.mHungry.Reserve(50)); }, "false"},
    {"GivesARecordOfABlock", [](BlockStage& pStage) { return Answer(pStage.mHungry.AllocateRecords(1)); }, "null"},
    {"GivesManyRecordsOfABlock", [](BlockStage& pStage) { return Answer(pStage.mHungry.AllocateRecords(9)); }, "null",
     Refused::eChangesNothing,
     [](BlockStage& pStage) {
         pStage.mHungry.Reserve(100);
         pStage.mHungry.AllocateRecords(95);
     }},
    {"GivesARecordOfItsOwn",
     [](BlockStage& pStage) { return Answer(pStage.mRecords = pStage.mBase.AllocateRecords(3)); }, "null"},
};

class FailingMemoryBlock : public testing::TestWithParam<Operation<BlockStage>> {};

TEST_P(FailingMemoryBlock, GivesMemoryOrNothing) {
    ExpectDoneOrRefused(GetParam());
}

INSTANTIATE_TEST_SUITE_P(KMemory, FailingMemoryBlock, testing::ValuesIn(kBlockOperations), NameOfOperation());

// Taking a null pointer is a reset like any other: what was owned goes.
TEST(FailingMemoryBlock, OwnerOfAnObjectThatCouldNotBeMadeOwnsNothing) {
    const LeakCheck lLeaks;
    BlockStage lStage;
    {
        const FailAllocations lFail(0, true);
        lStage.mOwner.Reset(LyrSdkNew<KString>("new"));
        EXPECT_EQ(lFail.Failed(), 1u);
    }
    EXPECT_TRUE(!lStage.mOwner);
    lStage.mOwner.Reset(LyrSdkNew<KString>("new"));
    EXPECT_STREQ(lStage.mOwner->Buffer(), "new");
}

// --- maps ------------------------------------------------------------------------------------------------------------

// Keys in the order of their numbers.
const char* NameKeyText(int pNumber) {
    static const auto sTexts = [] {
        auto lTexts = std::make_unique<std::string[]>(100);
        for (int i = 0; i < 100; ++i)
            lTexts[static_cast<std::size_t>(i)] = "key " + std::to_string(100 + i);
        return lTexts;
    }();
    return sTexts[static_cast<std::size_t>(pNumber)].c_str();
}
template <typename Key>
Key KeyOf(int pNumber);
template <>
int KeyOf(int pNumber) {
    return pNumber;
}
template <>
KPair<int, const char*> KeyOf(int pNumber) {
    return KPair<int, const char*>(pNumber / 7, NameKeyText(pNumber));
}
template <>
KString KeyOf(int pNumber) {
    return KString(NameKeyText(pNumber));
}

template <typename Key, typename Compare, typename Allocator>
struct MapStage {
    using Map = KMap<Key, int, Compare, Allocator>;
    static constexpr int kCount = 40;

    Map mMap;
    Map mEmpty;
    // Made with memory, so that only what the map does can be refused.
    std::unique_ptr<Key> mOdd[kCount];
    std::unique_ptr<Key> mEven[kCount];

    MapStage() {
        for (int i = 0; i < kCount; ++i) {
            mOdd[i] = std::make_unique<Key>(KeyOf<Key>(i * 2 + 1));
            mEven[i] = std::make_unique<Key>(KeyOf<Key>(i * 2));
            mMap.Insert(*mEven[i], i);
        }
    }

    void Show(std::ostream& pOut, const Map& pMap) const {
        for (int i = 0; i < kCount; ++i)
            for (const auto* lKey : {&mEven[i], &mOdd[i]})
                if (const auto* lRecord = pMap.Find(**lKey))
                    pOut << (lKey == &mOdd[i] ? "odd " : "even ") << i << '=' << lRecord->GetValue() << '\n';
        pOut << pMap.GetSize() << "--\n";
    }
    std::string Shows(Detail) const {
        std::ostringstream lOut;
        Show(lOut, mMap);
        Show(lOut, mEmpty);
        return lOut.str();
    }
    testing::AssertionResult Holds() const {
        const testing::AssertionResult lMap = HoldsInvariants(mMap);
        return lMap ? HoldsInvariants(mEmpty) : lMap;
    }

    std::string InsertInto(Map& pMap, int pIndex) {
        const auto lResult = pMap.Insert(*mOdd[pIndex], -pIndex);
        return Answer(lResult.mFirst) + " " + Answer(lResult.mSecond);
    }
};

using NameKey = KPair<int, const char*>;
using Maps = testing::Types<
    MapStage<int, KLyrLessCompare<int>, KHungryAllocator>, MapStage<int, KLyrLessCompare<int>, KBaseAllocator>,
    MapStage<NameKey, KNameMapCompare, KHungryAllocator>, MapStage<NameKey, KNameMapCompare, KBaseAllocator>,
    MapStage<KString, KStringCompare, KHungryAllocator>, MapStage<KString, KStringCompare, KBaseAllocator>>;

template <typename Stage>
class FailingMemoryMap : public testing::Test {};

struct MapNames {
    template <typename Stage>
    static std::string GetName(int pIndex) {
        static const char* const sKeys[] = {"OfIds", "OfNames", "OfTexts"};
        return std::string(sKeys[pIndex / 2]) + (pIndex % 2 == 0 ? "InBlocks" : "InRecordsOfTheirOwn");
    }
};
TYPED_TEST_SUITE(FailingMemoryMap, Maps, MapNames);

// A hungry allocator has room left as often as not, so its blocks are filled first.
TYPED_TEST(FailingMemoryMap, InsertsOrKeepsRecordsAndOrder) {
    using Stage = TypeParam;
    const Operation<Stage> lOperations[] = {
        {"InsertTheFirst", [](Stage& pStage) { return pStage.InsertInto(pStage.mEmpty, 0); }, "null false"},
        {"InsertMany",
         [](Stage& pStage) {
             for (int i = 0; i < Stage::kCount; ++i) {
                 std::string lAnswer = pStage.InsertInto(pStage.mEmpty, i);
                 EXPECT_TRUE(pStage.Holds());
                 if (lAnswer == "null false") {
                     pStage.mEmpty.Clear();
                     return lAnswer;
                 }
             }
             return std::string("all");
         },
         "null false"},
        {"RemoveAndInsertBetween",
         [](Stage& pStage) {
             for (int i = 0; i < Stage::kCount; ++i) {
                 std::string lAnswer = pStage.InsertInto(pStage.mMap, i);
                 EXPECT_TRUE(pStage.Holds());
                 if (lAnswer == "null false") {
                     while (--i >= 0)
                         EXPECT_EQ(pStage.mMap.Remove(*pStage.mOdd[i]), 1);
                     EXPECT_TRUE(pStage.Holds());
                     return lAnswer;
                 }
             }
             return std::string("all");
         },
         "null false"},
    };
    for (const Operation<Stage>& lOperation : lOperations) {
        SCOPED_TRACE(lOperation.mName);
        ExpectDoneOrRefused(lOperation);
    }
}

TYPED_TEST(FailingMemoryMap, FindsRemovesAndMeetsKeysThatAreThereWithoutMemory) {
    TypeParam lStage;
    const FailAllocations lFail(0, true);
    EXPECT_NE(lStage.mMap.Find(*lStage.mEven[3]), nullptr);
    EXPECT_EQ(lStage.mMap.UpperBound(*lStage.mOdd[3]), lStage.mMap.Find(*lStage.mEven[4]));
    const auto lResult = lStage.mMap.Insert(*lStage.mEven[3], 999);
    EXPECT_EQ(lResult.mFirst->GetValue(), 3);
    EXPECT_FALSE(lResult.mSecond);
    EXPECT_EQ(lStage.mMap.Remove(*lStage.mEven[5]), 1);
    EXPECT_TRUE(lStage.Holds());
    lStage.mMap.Clear();
    EXPECT_TRUE(lStage.Holds());
    EXPECT_EQ(lFail.Failed(), 0u);
}

TEST(FailingMemoryMap, ReservesOrStaysAsItWas) {
    using Stage = MapStage<int, KLyrLessCompare<int>, KHungryAllocator>;
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        Stage lStage;
        std::size_t lFailed = 0;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            const bool lReserved = lStage.mEmpty.Reserve(100);
            lFailed = lFail.Failed();
            EXPECT_EQ(lReserved, lFailed == 0);
        }
        EXPECT_TRUE(lStage.Holds());
        EXPECT_TRUE(lStage.mEmpty.Reserve(Stage::kCount + 1));
        // All of them come out of what was reserved.
        const FailAllocations lFail(0, true);
        for (int i = 0; i < Stage::kCount; ++i)
            EXPECT_EQ(lStage.InsertInto(lStage.mEmpty, i), "something true");
        EXPECT_TRUE(lStage.Holds());
        return lFailed;
    });
}

}  // namespace
}  // namespace lyrsdk
