#include "lyrfilesdk/components/kbaselib/klib/kmap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/map_invariants.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

using NameKey = KPair<int, const char*>;
using EntryMap = KMap<int, int*, KLyrLessCompare<int>, KHungryAllocator>;
using NameMap = KMap<NameKey, int, KNameMapCompare, KBaseAllocator>;
using TextMap = KMap<KString, int, KStringCompare, KBaseAllocator>;

static_assert(sizeof(void*) != 4 || sizeof(EntryMap::RecordType) == 24);
static_assert(sizeof(void*) != 4 || sizeof(NameMap::RecordType) == 28);
static_assert(!std::is_copy_constructible_v<EntryMap> && !std::is_copy_assignable_v<EntryMap>);
static_assert(std::is_trivially_destructible_v<EntryMap::RecordType>);

// How each of the maps makes a key and a value from a number. Keys sort like the numbers.
struct EntryTraits {
    using Map = EntryMap;
    static int Key(int pNumber) { return pNumber - 500; }
    static int* Value(int pNumber) {
        static int sTargets[4000];
        return sTargets + pNumber;
    }
};

struct NameTraits {
    using Map = NameMap;
    static NameKey Key(int pNumber) {
        static std::vector<std::string> sNames;
        if (sNames.empty())
            for (int lName = 0; lName < 10; ++lName)
                sNames.push_back(std::string(static_cast<std::size_t>(lName), 'n'));
        return NameKey(pNumber / 10 - 20, sNames[static_cast<std::size_t>(pNumber % 10)].c_str());
    }
    static int Value(int pNumber) { return pNumber; }
};

struct TextTraits {
    using Map = TextMap;
    static KString Key(int pNumber) {
        char lText[16];
        std::snprintf(lText, sizeof(lText), "key%05d", pNumber);
        return KString(lText);
    }
    static int Value(int pNumber) { return pNumber; }
};

template <typename Traits>
class AnyMap : public testing::Test {
protected:
    using Map = typename Traits::Map;

    static auto Insert(Map& pMap, int pNumber) { return pMap.Insert(Traits::Key(pNumber), Traits::Value(pNumber)); }
    static int Remove(Map& pMap, int pNumber) { return pMap.Remove(Traits::Key(pNumber)); }

    // Inserts in one order and removes in another, beside a standard map.
    static void FollowsTheStandardMap(const std::vector<int>& pInsert, const std::vector<int>& pRemove) {
        LeakCheck lLeaks;
        Map lMap;
        std::map<int, int> lModel;
        for (int lNumber : pInsert) {
            const auto lResult = Insert(lMap, lNumber);
            ASSERT_EQ(lResult.mSecond, lModel.emplace(lNumber, lNumber).second);
            ASSERT_TRUE(HoldsInvariants(lMap)) << "behind the insertion of " << lNumber;
            ASSERT_EQ(lMap.GetSize(), static_cast<int>(lModel.size()));
        }
        AgreesWith(lMap, lModel);
        for (int lNumber : pRemove) {
            ASSERT_EQ(Remove(lMap, lNumber), static_cast<int>(lModel.erase(lNumber)));
            ASSERT_TRUE(HoldsInvariants(lMap)) << "behind the removal of " << lNumber;
            ASSERT_EQ(lMap.GetSize(), static_cast<int>(lModel.size()));
        }
        AgreesWith(lMap, lModel);
    }

    // Compares every lookup for every number in reach.
    static void AgreesWith(Map& pMap, const std::map<int, int>& pModel) {
        for (int lNumber = 0; lNumber < 400; ++lNumber) {
            const auto lKey = Traits::Key(lNumber);
            const auto lFound = pModel.find(lNumber);
            const auto* lRecord = pMap.Find(lKey);
            ASSERT_EQ(lRecord != nullptr, lFound != pModel.end()) << lNumber;
            if (lRecord) {
                ASSERT_EQ(lRecord->GetValue(), Traits::Value(lNumber));
            }
            const auto lNext = pModel.upper_bound(lNumber);
            const auto* lBound = pMap.UpperBound(lKey);
            ASSERT_EQ(lBound != nullptr, lNext != pModel.end()) << lNumber;
            if (lBound) {
                ASSERT_EQ(lBound->GetValue(), Traits::Value(lNext->first));
            }
        }
        auto lExpected = pModel.begin();
        for (auto lIterator = pMap.Begin(); lIterator != pMap.End(); lIterator++, ++lExpected)
            ASSERT_EQ(lIterator->GetValue(), Traits::Value(lExpected->first));
        ASSERT_TRUE(lExpected == pModel.end());
    }
};

// Names the instances of a test.
struct MapNames {
    template <typename Traits>
    static std::string GetName(int) {
        if (std::is_same_v<Traits, EntryTraits>)
            return "Entries";
        return std::is_same_v<Traits, NameTraits> ? "Names" : "Texts";
    }
};

using AllMaps = testing::Types<EntryTraits, NameTraits, TextTraits>;
TYPED_TEST_SUITE(AnyMap, AllMaps, MapNames);

std::vector<int> Ascending() {
    std::vector<int> lNumbers(300);
    std::iota(lNumbers.begin(), lNumbers.end(), 50);
    return lNumbers;
}

std::vector<int> Descending() {
    std::vector<int> lNumbers = Ascending();
    std::reverse(lNumbers.begin(), lNumbers.end());
    return lNumbers;
}

TYPED_TEST(AnyMap, AgreesWithTheStandardMapInAscendingOrder) {
    this->FollowsTheStandardMap(Ascending(), Ascending());
    this->FollowsTheStandardMap(Ascending(), Descending());
}

TYPED_TEST(AnyMap, AgreesWithTheStandardMapInDescendingOrder) {
    this->FollowsTheStandardMap(Descending(), Descending());
    this->FollowsTheStandardMap(Descending(), Ascending());
}

TYPED_TEST(AnyMap, AgreesWithTheStandardMapInRandomOrder) {
    for (unsigned int lSeed = 1; lSeed <= 10; ++lSeed) {
        SCOPED_TRACE(testing::Message() << "seed " << lSeed);
        std::mt19937 lRandom(lSeed);
        std::vector<int> lInsert(400);
        for (int& lNumber : lInsert)
            lNumber = static_cast<int>(lRandom() % 400);
        std::vector<int> lRemove = Ascending();
        std::shuffle(lRemove.begin(), lRemove.end(), lRandom);
        this->FollowsTheStandardMap(lInsert, lRemove);
    }
}

TYPED_TEST(AnyMap, AgreesWithTheStandardMapInMixedOrder) {
    for (unsigned int lSeed = 1; lSeed <= 5; ++lSeed) {
        SCOPED_TRACE(testing::Message() << "seed " << lSeed);
        LeakCheck lLeaks;
        std::mt19937 lRandom(lSeed);
        typename TypeParam::Map lMap;
        std::map<int, int> lModel;
        for (int lStep = 0; lStep < 2000; ++lStep) {
            const int lNumber = static_cast<int>(lRandom() % 60);
            if (lRandom() % 2 == 0) {
                ASSERT_EQ(this->Insert(lMap, lNumber).mSecond, lModel.emplace(lNumber, lNumber).second);
            } else {
                ASSERT_EQ(this->Remove(lMap, lNumber), static_cast<int>(lModel.erase(lNumber)));
            }
            ASSERT_TRUE(HoldsInvariants(lMap)) << "step " << lStep;
            ASSERT_EQ(lMap.GetSize(), static_cast<int>(lModel.size()));
        }
        this->AgreesWith(lMap, lModel);
    }
}

TYPED_TEST(AnyMap, IsEmptyAtFirst) {
    typename TypeParam::Map lMap;
    const auto& lConst = lMap;
    EXPECT_EQ(lMap.GetSize(), 0);
    EXPECT_EQ(lMap.Minimum(), nullptr);
    EXPECT_EQ(lMap.Maximum(), nullptr);
    EXPECT_EQ(lConst.Minimum(), nullptr);
    EXPECT_EQ(lConst.Maximum(), nullptr);
    EXPECT_FALSE(lMap.Begin() != lMap.End());
    EXPECT_FALSE(lConst.Begin() != lConst.End());
    EXPECT_EQ(lMap.Find(TypeParam::Key(1)), nullptr);
    EXPECT_EQ(lMap.UpperBound(TypeParam::Key(0)), nullptr);
    EXPECT_EQ(lConst.UpperBound(TypeParam::Key(0)), nullptr);
    EXPECT_EQ(lMap.Remove(TypeParam::Key(1)), 0);
    lMap.Clear();
    EXPECT_TRUE(HoldsInvariants(lMap));
}

TYPED_TEST(AnyMap, KeepsTheOldValueWhenAKeyIsInsertedAgain) {
    typename TypeParam::Map lMap;
    const auto lFirst = this->Insert(lMap, 7);
    EXPECT_TRUE(lFirst.mSecond);
    const auto lAgain = lMap.Insert(TypeParam::Key(7), TypeParam::Value(8));
    EXPECT_FALSE(lAgain.mSecond);
    EXPECT_EQ(lAgain.mFirst, lFirst.mFirst);
    EXPECT_EQ(lAgain.mFirst->GetValue(), TypeParam::Value(7));
    EXPECT_EQ(lMap.GetSize(), 1);
}

TYPED_TEST(AnyMap, StartsARecordWithoutChildrenAndDepth) {
    typename TypeParam::Map lMap;
    const auto* lRoot = this->Insert(lMap, 7).mFirst;
    const auto* lChild = this->Insert(lMap, 8).mFirst;
    EXPECT_EQ(lRoot->mColor, 1u);
    EXPECT_EQ(lRoot->mBlackDepth, 0u);
    EXPECT_EQ(lRoot->mRightChild, lChild);
    EXPECT_EQ(lChild->mParent, lRoot);
    EXPECT_EQ(lChild->mColor, 0u);
    EXPECT_EQ(lChild->mBlackDepth, 0u);
    EXPECT_EQ(lChild->mLeftChild, nullptr);
    EXPECT_EQ(lChild->mRightChild, nullptr);
}

TYPED_TEST(AnyMap, RecordsKeepTheirAddressWhileOthersComeAndGo) {
    typename TypeParam::Map lMap;
    std::vector<typename TypeParam::Map::RecordType*> lRecords;
    for (int lNumber = 0; lNumber < 100; ++lNumber)
        lRecords.push_back(this->Insert(lMap, lNumber).mFirst);
    for (int lNumber = 0; lNumber < 100; lNumber += 2)
        this->Remove(lMap, lNumber);
    for (std::size_t lNumber = 1; lNumber < 100; lNumber += 2)
        EXPECT_EQ(lMap.Find(TypeParam::Key(static_cast<int>(lNumber))), lRecords[lNumber]);
}

TYPED_TEST(AnyMap, TakesKeysOutOfItsOwnRecords) {
    LeakCheck lLeaks;
    typename TypeParam::Map lMap;
    for (int lNumber = 0; lNumber < 20; ++lNumber)
        this->Insert(lMap, lNumber);
    EXPECT_FALSE(lMap.Insert(lMap.Maximum()->GetKey(), lMap.Minimum()->GetValue()).mSecond);
    for (int lLeft = 19; lLeft >= 0; --lLeft) {
        EXPECT_EQ(lMap.Remove(lMap.Minimum()->GetKey()), 1);
        EXPECT_EQ(lMap.GetSize(), lLeft);
    }
}

TYPED_TEST(AnyMap, IsUsableAfterClear) {
    LeakCheck lLeaks;
    typename TypeParam::Map lMap;
    for (int lNumber = 0; lNumber < 100; ++lNumber)
        this->Insert(lMap, lNumber);
    lMap.Clear();
    EXPECT_EQ(lMap.GetSize(), 0);
    EXPECT_TRUE(HoldsInvariants(lMap));
    EXPECT_TRUE(this->Insert(lMap, 50).mSecond);
    EXPECT_EQ(lMap.GetSize(), 1);
}

TYPED_TEST(AnyMap, StaysAsItIsWhenAnInsertionFindsNoMemory) {
    LeakCheck lLeaks;
    typename TypeParam::Map lMap;
    for (int lNumber = 0; lNumber < 4; ++lNumber)
        this->Insert(lMap, lNumber);
    const auto lKey = TypeParam::Key(9);
    std::size_t lFirst = 0;
    for (;; ++lFirst) {
        FailAllocations lFail(lFirst, true);
        const auto lResult = lMap.Insert(lKey, TypeParam::Value(9));
        ASSERT_TRUE(HoldsInvariants(lMap));
        if (lFail.Failed() == 0) {
            EXPECT_TRUE(lResult.mSecond);
            break;
        }
        EXPECT_EQ(lResult.mFirst, nullptr);
        EXPECT_FALSE(lResult.mSecond);
        EXPECT_EQ(lMap.GetSize(), 4);
        EXPECT_EQ(lMap.Find(lKey), nullptr);
    }
    EXPECT_GT(lFirst, 0u);
    EXPECT_EQ(lMap.GetSize(), 5);
}

TYPED_TEST(AnyMap, MakesOneRecordForAnInsertion) {
    typename TypeParam::Map lMap;
    for (int lNumber = 0; lNumber < 3; ++lNumber) {
        const auto lKey = TypeParam::Key(lNumber);
        const std::size_t lBefore = MemoryProbe::Allocations();
        lMap.Insert(lKey, TypeParam::Value(lNumber));
        // An empty pool's block takes two, a text key one for its copy.
        EXPECT_LE(MemoryProbe::Allocations() - lBefore, 2u);
        const std::size_t lAfter = MemoryProbe::Allocations();
        lMap.Insert(lKey, TypeParam::Value(lNumber));
        lMap.Find(lKey);
        lMap.UpperBound(lKey);
        EXPECT_EQ(MemoryProbe::Allocations(), lAfter);
    }
}

TEST(EntryMap, FindsTheFirstIdAboveMinusOne) {
    EntryMap lMap;
    lMap.Insert(0, nullptr);
    lMap.Insert(5, nullptr);
    EXPECT_EQ(lMap.UpperBound(-1)->GetKey(), 0);
    EXPECT_EQ(lMap.UpperBound(0)->GetKey(), 5);
    EXPECT_EQ(lMap.UpperBound(5), nullptr);
    EXPECT_EQ(lMap.UpperBound(INT_MAX), nullptr);
    EXPECT_EQ(lMap.UpperBound(INT_MIN)->GetKey(), 0);
}

TEST(EntryMap, OrdersTheWholeRangeOfIds) {
    EntryMap lMap;
    for (int lId : {0, INT_MAX, -1, INT_MIN, 1})
        EXPECT_TRUE(lMap.Insert(lId, nullptr).mSecond);
    EXPECT_TRUE(HoldsInvariants(lMap));
    EXPECT_EQ(lMap.Minimum()->GetKey(), INT_MIN);
    EXPECT_EQ(lMap.Maximum()->GetKey(), INT_MAX);
}

TEST(EntryMap, GivesItsMemoryBackAtItsEndOnly) {
    const std::size_t lBefore = MemoryProbe::LiveBlocks();
    {
        EntryMap lMap;
        for (int lId = 0; lId < 100; ++lId)
            lMap.Insert(lId, nullptr);
        const std::size_t lFull = MemoryProbe::LiveBlocks();
        EXPECT_GT(lFull, lBefore);
        lMap.Clear();
        EXPECT_EQ(MemoryProbe::LiveBlocks(), lFull);
    }
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore);
}

TEST(EntryMap, ReserveMakesRoomForOneRecordLess) {
    EntryMap lMap;
    ASSERT_TRUE(lMap.Reserve(100));
    EXPECT_EQ(MemoryProbe::LastSize(), 100 * sizeof(EntryMap::RecordType));
    const std::size_t lBefore = MemoryProbe::Allocations();
    for (int lId = 0; lId < 99; ++lId)
        lMap.Insert(lId, nullptr);
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
    lMap.Insert(99, nullptr);
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore + 2);
    FailAllocations lFail(0, true);
    EXPECT_FALSE(lMap.Reserve(1));
}

// Maps of every size up to a hundred, and with holes, so that trees of many shapes are moved.
TEST(EntryMap, CompactingMovesTheRecordsAndKeepsTheTree) {
    for (int lSize = 0; lSize < 100; ++lSize) {
        SCOPED_TRACE(lSize);
        LeakCheck lLeaks;
        EntryMap lMap;
        for (int i = 0; i < 3 * lSize; ++i)
            lMap.Insert((i * 37) % (3 * lSize), EntryTraits::Value(i));
        for (int i = 0; i < 2 * lSize; ++i)
            lMap.Remove((i * 11) % (3 * lSize));
        std::vector<std::pair<int, int*>> lBefore;
        std::vector<unsigned int> lColors;
        for (auto lIt = lMap.Begin(); lIt != lMap.End(); ++lIt) {
            lBefore.emplace_back(lIt->GetKey(), lIt->GetValue());
            lColors.push_back(lIt->mColor);
        }
        ASSERT_TRUE(lMap.Compact(5));
        EXPECT_TRUE(HoldsInvariants(lMap));
        EXPECT_EQ(lMap.GetReservedCount(), lBefore.size() + 6);
        std::size_t lAt = 0;
        const EntryMap::RecordType* lLast = nullptr;
        for (auto lIt = lMap.Begin(); lIt != lMap.End(); ++lIt, ++lAt) {
            ASSERT_LT(lAt, lBefore.size());
            EXPECT_EQ(lBefore[lAt], std::make_pair(lIt->GetKey(), lIt->GetValue()));
            EXPECT_EQ(lColors[lAt], lIt->mColor);
            EXPECT_TRUE(!lLast || lIt.operator->() == lLast + 1) << "in order of their keys, side by side";
            lLast = lIt.operator->();
        }
        EXPECT_EQ(lAt, lBefore.size());
        const std::size_t lAllocations = MemoryProbe::Allocations();
        for (int i = 0; i < 5; ++i) {
            EXPECT_TRUE(lMap.HasRoom());
            EXPECT_TRUE(lMap.Insert(-1 - i, nullptr).mSecond);
        }
        EXPECT_FALSE(lMap.HasRoom());
        EXPECT_EQ(MemoryProbe::Allocations(), lAllocations);
        EXPECT_TRUE(HoldsInvariants(lMap));
    }
}

TEST(EntryMap, CompactingGivesTheOldMemoryBack) {
    EntryMap lMap;
    for (int lId = 0; lId < 1000; ++lId)
        lMap.Insert(lId, nullptr);
    for (int lId = 1; lId < 1000; ++lId)
        lMap.Remove(lId);
    const std::size_t lFull = MemoryProbe::LiveBytes();
    ASSERT_TRUE(lMap.Compact(0));
    EXPECT_LE(MemoryProbe::LiveBytes() + 990 * sizeof(EntryMap::RecordType), lFull);
    EXPECT_EQ(lMap.GetReservedCount(), 2u);
    EXPECT_NE(lMap.Find(0), nullptr);
}

TEST(EntryMap, StaysAsItIsWhenCompactingFindsNoMemory) {
    LeakCheck lLeaks;
    EntryMap lMap;
    for (int lId = 0; lId < 10; ++lId)
        lMap.Insert(lId, nullptr);
    const EntryMap::RecordType* lRecord = lMap.Find(7);
    const std::size_t lReserved = lMap.GetReservedCount();
    for (std::size_t lFirst = 0; lFirst < 2; ++lFirst) {
        FailAllocations lFail(lFirst, false);
        EXPECT_FALSE(lMap.Compact(20));
        EXPECT_EQ(lFail.Failed(), 1u);
        EXPECT_EQ(lMap.Find(7), lRecord);
        EXPECT_EQ(lMap.GetReservedCount(), lReserved);
        EXPECT_TRUE(HoldsInvariants(lMap));
    }
    EXPECT_TRUE(lMap.Compact(20));
    EXPECT_NE(lMap.Find(7), lRecord);
}

TEST(EntryMap, LeavesAloneWhatItsValuesPointAt) {
    int lTarget = 5;
    EntryMap lMap;
    lMap.Insert(1, &lTarget);
    lMap.Insert(2, &lTarget);
    lMap.Find(2)->GetValue() = nullptr;
    EXPECT_EQ(lMap.Find(2)->GetValue(), nullptr);
    lMap.Remove(1);
    lMap.Clear();
    EXPECT_EQ(lTarget, 5);
}

// The allocator of this map gives no record back by itself.
TEST(EntryMap, ClearsKeysThatOwnSomething) {
    const std::size_t lBefore = MemoryProbe::LiveBytes();
    {
        KMap<KString, int, KStringCompare, KHungryAllocator> lMap;
        for (int i = 0; i < 100; ++i)
            lMap.Insert(TextTraits::Key(i), i);
        lMap.Clear();
        lMap.Insert(TextTraits::Key(1), 1);
    }
    EXPECT_EQ(MemoryProbe::LiveBytes(), lBefore);
}

TEST(EntryMap, CanBeReadWhenItIsConstant) {
    int lTarget = 5;
    EntryMap lMap;
    lMap.Insert(1, &lTarget);
    lMap.Insert(2, &lTarget);
    const EntryMap& lConst = lMap;
    EXPECT_EQ(lConst.Find(1), lMap.Find(1));
    EXPECT_EQ(lConst.UpperBound(1), lMap.Maximum());
    EXPECT_EQ(lConst.Minimum()->Successor(), lConst.Maximum());
    EXPECT_EQ(lConst.Maximum()->Successor(), nullptr);
    EXPECT_EQ(*lConst.Begin()->GetValue(), 5);
    static_assert(std::is_same_v<decltype(lConst.Find(1)), const EntryMap::RecordType*>);
}

TEST(NameMap, OrdersByParentThenByTheBytesOfTheName) {
    NameMap lMap;
    lMap.Insert(NameKey(3, "a"), 0);
    lMap.Insert(NameKey(2, "z"), 1);
    lMap.Insert(NameKey(3, "B"), 2);
    lMap.Insert(NameKey(-1, "z"), 3);
    std::vector<int> lValues;
    for (auto lIterator = lMap.Begin(); lIterator != lMap.End(); ++lIterator)
        lValues.push_back(lIterator->GetValue());
    EXPECT_EQ(lValues, (std::vector<int>{3, 1, 2, 0}));
}

TEST(NameMap, FindsByTextAndKeepsThePointerItWasGiven) {
    NameMap lMap;
    const char lName[] = "name";
    char lSameText[] = "name";
    lMap.Insert(NameKey(1, lName), 4);
    ASSERT_NE(lMap.Find(NameKey(1, lSameText)), nullptr);
    EXPECT_EQ(lMap.Find(NameKey(1, lSameText))->GetKey().mSecond, lName);
    EXPECT_FALSE(lMap.Insert(NameKey(1, lSameText), 5).mSecond);
    EXPECT_EQ(lMap.Find(NameKey(1, "Name")), nullptr);
}

TEST(NameMap, GivesARecordBackWhenItIsRemoved) {
    NameMap lMap;
    const std::size_t lBefore = MemoryProbe::LiveBlocks();
    lMap.Insert(NameKey(1, "a"), 4);
    EXPECT_EQ(MemoryProbe::LastSize(), sizeof(NameMap::RecordType));
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore + 1);
    EXPECT_EQ(lMap.Remove(NameKey(1, "a")), 1);
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBefore);
}

TEST(CompareFunctors, GiveThreeWayResults) {
    const KLyrLessCompare<int> lLess;
    EXPECT_EQ(lLess(1, 2), -1);
    EXPECT_EQ(lLess(2, 1), 1);
    EXPECT_EQ(lLess(2, 2), 0);
    EXPECT_EQ(lLess(INT_MIN, INT_MAX), -1);
    EXPECT_EQ(lLess(INT_MAX, INT_MIN), 1);
    const KNameMapCompare lName;
    EXPECT_EQ(lName(NameKey(1, "z"), NameKey(2, "a")), -1);
    EXPECT_EQ(lName(NameKey(2, "a"), NameKey(1, "z")), 1);
    EXPECT_EQ(lName(NameKey(INT_MIN, "a"), NameKey(INT_MAX, "a")), -1);
    EXPECT_LT(lName(NameKey(1, "B"), NameKey(1, "a")), 0);
    EXPECT_GT(lName(NameKey(1, "\xff"), NameKey(1, "a")), 0);
    EXPECT_EQ(lName(NameKey(1, "a"), NameKey(1, "a")), 0);
    const KStringCompare lText;
    EXPECT_LT(lText("", "a"), 0);
    EXPECT_GT(lText("b", "a"), 0);
    EXPECT_EQ(lText("a", "a"), 0);
}

TEST(CompareFunctors, TakeANullNameForAnEmptyOne) {
    const KNameMapCompare lName;
    EXPECT_EQ(lName(NameKey(1, nullptr), NameKey(1, "")), 0);
    EXPECT_LT(lName(NameKey(1, nullptr), NameKey(1, "a")), 0);
    EXPECT_GT(lName(NameKey(1, "a"), NameKey(1, nullptr)), 0);
}

TEST(MapIterator, StepsBeforeOrBehindItsValue) {
    EntryMap lMap;
    for (int lId : {1, 2, 3})
        lMap.Insert(lId, nullptr);
    EntryMap::IteratorType lIterator = lMap.Begin();
    EXPECT_EQ((lIterator++)->GetKey(), 1);
    EXPECT_EQ(lIterator->GetKey(), 2);
    EXPECT_EQ((++lIterator)->GetKey(), 3);
    const EntryMap::IteratorType lCopy(lIterator);
    EXPECT_FALSE(lCopy != lIterator);
    EXPECT_TRUE(lCopy == lIterator);
    ++lIterator;
    EXPECT_FALSE(lIterator != lMap.End());
    EXPECT_TRUE(lCopy != lIterator);
    EXPECT_FALSE(EntryMap::IteratorType() != lMap.End());
}

TEST(MapIterator, ReportsItsUseAtTheEnd) {
    ReportRecorder lRecorder;
    EntryMap lMap;
    EntryMap::IteratorType lEnd = lMap.End();
    ++lEnd;
    lEnd++;
    EXPECT_EQ(lEnd.operator->(), nullptr);
    EXPECT_FALSE(lEnd != lMap.End());
    const auto lReports = lRecorder.TakeReports();
    ASSERT_EQ(lReports.size(), 3u);
    for (const auto& lReport : lReports) {
        EXPECT_EQ(lReport.file, "lyrfilesdk/components/kbaselib/klib/kmap");
        EXPECT_EQ(lReport.function, "");
    }
    EXPECT_EQ(lReports[0].line, 96u);
    EXPECT_EQ(lReports[0].message, "mRecord != NULL");
    EXPECT_EQ(lReports[1].line, 96u);
    EXPECT_EQ(lReports[2].line, 148u);
    EXPECT_EQ(lReports[2].message, "mRecord");
}

}  // namespace
}  // namespace lyrsdk
