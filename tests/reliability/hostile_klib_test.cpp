#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "lyrfilesdk/components/kbaselib/klib/karrayul.h"
#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/components/kbaselib/klib/kcontainerallocators.h"
#include "lyrfilesdk/components/kbaselib/klib/kmap.h"
#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"
#include "lyrfilesdk/components/kbaselib/klib/kpair.h"
#include "lyrfilesdk/components/kbaselib/klib/kscopedptr.h"
#include "tests/reliability/hostile.h"
#include "tests/support/map_invariants.h"

namespace lyrsdk {
namespace {

using Reports = std::vector<std::string>;

// --- reports and memory ----------------------------------------------------------------------------------------------

TEST(HostileKlib, MemoryAndReports) {
    MakeHostileCalls<NoSubject>({
        {"LyrSdkMalloc", kNothing,
         [](NoSubject&) {
             void* lNothing = LyrSdkMalloc(0);
             LyrSdkFree(lNothing);
             EXPECT_EQ(LyrSdkMalloc(SIZE_MAX), nullptr);
         }},
        {"LyrSdkFree", kNothing, [](NoSubject&) { LyrSdkFree(nullptr); }},
        {"LyrSdkNew", kNothing,
         [](NoSubject&) {
             const FailAllocations lFail(0, true);
             EXPECT_EQ(LyrSdkNew<KString>("text"), nullptr);
         }},
        {"LyrSdkDelete", kNothing, [](NoSubject&) { LyrSdkDelete(static_cast<KString*>(nullptr)); }},
        {"KBaseArrayRealloc", kNothing,
         [](NoSubject&) {
             EXPECT_EQ(KBaseArrayRealloc(nullptr, UINT_MAX), nullptr);
             char* lBlock = KBaseArrayRealloc(nullptr, 0);
             ASSERT_NE(lBlock, nullptr);
             EXPECT_EQ(KBaseArrayRealloc(lBlock, UINT_MAX), nullptr);
             lBlock = KBaseArrayRealloc(lBlock, 8);
             std::memset(lBlock, 7, 8);
             lBlock = KBaseArrayRealloc(lBlock, 0);
             KBaseArrayFree(lBlock);
         }},
        {"KBaseArrayFree", kNothing, [](NoSubject&) { KBaseArrayFree(nullptr); }},
        {"KAssertFailed", kNothing,
         [](NoSubject&) {
             KAssertFailed(nullptr, nullptr, 0, nullptr, nullptr);
             WithHostileTexts([](const char* pText) { KAssertFailed(pText, pText, ULONG_MAX, pText, nullptr); });
         },
         HostileTexts()},
        {"KSetAssertFailedHandler", kNothing,
         [](NoSubject&) {
             const KAssertFailedHandler lBefore = KSetAssertFailedHandler(nullptr);
             const KAssertFailedHandler lDefault = KSetAssertFailedHandler(nullptr);
             EXPECT_EQ(KSetAssertFailedHandler(lBefore), lDefault);
         }},
    });
}

void* NeverMalloc(std::size_t) {
    return nullptr;
}
void NeverFree(void*) {}

// One handler without the other is none. Nothing of the test is allocated while the probe is away.
TEST(HostileKlib, HalfAPairOfMemoryHandlersIsNone) {
    const char* const lFunction = "LyrSdkSetMemoryHandlers";
    for (int i = 0; i < 3; ++i) {
        LyrSdkSetMemoryHandlers(i == 0 ? &NeverMalloc : nullptr, i == 1 ? &NeverFree : nullptr);
        void* lMemory = LyrSdkMalloc(16);
        LyrSdkFree(lMemory);
        MemoryProbe::Install();
        EXPECT_NE(lMemory, nullptr) << lFunction << ' ' << i;
    }
}

// --- allocators ------------------------------------------------------------------------------------------------------

struct Allocators {
    KBaseAllocator mBase{24};
    KHungryAllocator mHungry{24};
    KBaseAllocator mBaseOfNothing{0};
    KHungryAllocator mHungryOfNothing{0};

    std::string State() const {
        return std::to_string(mBase.GetRecordSize()) + ' ' + std::to_string(mHungry.GetRecordSize()) + ' ' +
               std::to_string(mHungry.GetRecordPoolSize()) + ' ' + std::to_string(mBaseOfNothing.GetRecordSize()) +
               (mHungry.GetNewestBlock() ? " block" : " none");
    }
};

constexpr std::size_t kHostileCounts[] = {SIZE_MAX, SIZE_MAX - 1, SIZE_MAX / 24 + 1, SIZE_MAX / 24, SIZE_MAX / 2};

TEST(HostileKlib, Allocators) {
    MakeHostileCalls<Allocators>({
        {"KBaseAllocator::KBaseAllocator", kNothing,
         [](Allocators&) { EXPECT_EQ(KBaseAllocator(SIZE_MAX).AllocateRecords(2), nullptr); }},
        {"KBaseAllocator::Reserve", kNothing, [](Allocators& p) { EXPECT_TRUE(p.mBase.Reserve(SIZE_MAX)); }},
        {"KBaseAllocator::AllocateRecords", kNothing,
         [](Allocators& p) {
             for (std::size_t lCount : kHostileCounts) {
                 const FailAllocations lFail(0, true);
                 EXPECT_EQ(p.mBase.AllocateRecords(lCount), nullptr);
             }
             p.mBase.FreeMemory(p.mBase.AllocateRecords(0));
             p.mBase.FreeMemory(p.mBaseOfNothing.AllocateRecords(SIZE_MAX));
         }},
        {"KBaseAllocator::FreeMemory", kNothing, [](Allocators& p) { p.mBase.FreeMemory(nullptr); }},
        {"KBaseAllocator::GetRecordSize", kNothing,
         [](Allocators&) { EXPECT_EQ(KBaseAllocator(SIZE_MAX).GetRecordSize(), SIZE_MAX); }},
        {"KHungryAllocator::KHungryAllocator", kNothing,
         [](Allocators&) { EXPECT_EQ(KHungryAllocator(SIZE_MAX).AllocateRecords(1), nullptr); }},
        {"KHungryAllocator::Reserve", kNothing,
         [](Allocators& p) {
             for (std::size_t lCount : kHostileCounts) {
                 const FailAllocations lFail(0, true);
                 EXPECT_FALSE(p.mHungry.Reserve(lCount));
             }
             EXPECT_TRUE(p.mHungryOfNothing.Reserve(SIZE_MAX));
         }},
        {"KHungryAllocator::Reserve", kSome,
         [](Allocators& p) {
             EXPECT_TRUE(p.mHungry.Reserve(0));
             EXPECT_TRUE(p.mHungry.Reserve(1));
             EXPECT_NE(p.mHungry.AllocateRecords(1), nullptr);
         }},
        {"KHungryAllocator::AllocateRecords", kNothing,
         [](Allocators& p) {
             for (std::size_t lCount : kHostileCounts) {
                 const FailAllocations lFail(0, true);
                 EXPECT_EQ(p.mHungry.AllocateRecords(lCount), nullptr);
                 EXPECT_EQ(p.mHungryOfNothing.AllocateRecords(lCount), nullptr);
             }
             EXPECT_EQ(p.mHungryOfNothing.AllocateRecords(0), nullptr);
         }},
        {"KHungryAllocator::AllocateRecords", kSome,
         [](Allocators& p) {
             EXPECT_NE(p.mHungry.AllocateRecords(0), nullptr);
             EXPECT_NE(p.mHungry.AllocateRecords(1000), nullptr);
         }},
        {"KHungryAllocator::FreeMemory", kNothing, [](Allocators& p) { p.mHungry.FreeMemory(nullptr); }},
        {"KHungryAllocator::GetRecordSize", kNothing,
         [](Allocators& p) { EXPECT_EQ(p.mHungryOfNothing.GetRecordSize(), 0u); }},
        {"KHungryAllocator::GetRecordPoolSize", kNothing,
         [](Allocators& p) { EXPECT_EQ(p.mHungry.GetRecordPoolSize(), 0u); }},
        {"KHungryAllocator::GetNewestBlock", kNothing,
         [](Allocators& p) { EXPECT_EQ(p.mHungry.GetNewestBlock(), nullptr); }},
        {"KHungryAllocator::HasRoom", kNothing,
         [](Allocators& p) {
             EXPECT_FALSE(p.mHungry.HasRoom());
             EXPECT_FALSE(p.mHungryOfNothing.HasRoom());
             EXPECT_FALSE(KHungryAllocator(SIZE_MAX).HasRoom());
         }},
        {"KHungryAllocator::Swap", kNothing, [](Allocators& p) { p.mHungry.Swap(p.mHungry); }},
        {"KHungryAllocator::Swap", kSome,
         [](Allocators& p) {
             EXPECT_NE(p.mHungry.AllocateRecords(1), nullptr);
             p.mHungry.Swap(p.mHungryOfNothing);
             EXPECT_EQ(p.mHungry.GetRecordSize(), 0u);
             EXPECT_NE(p.mHungryOfNothing.AllocateRecords(1), nullptr);
         }},
        {"KHungryAllocator::GetLentPointer", kNothing,
         [](Allocators& p) { EXPECT_EQ(p.mHungry.GetLentPointer(), nullptr); }},
        {"KHungryAllocator::SetLentPointer", kNothing, [](Allocators& p) { p.mHungryOfNothing.SetLentPointer(&p); }},
        {"KHungryAllocator::MemoryBlock::MemoryBlock", kNothing,
         [](Allocators&) {
             const KHungryAllocator::MemoryBlock lBlock(SIZE_MAX);
             EXPECT_EQ(lBlock.mData, nullptr);
             EXPECT_EQ(lBlock.mEnd, nullptr);
             const KHungryAllocator::MemoryBlock lEmpty(0);
             EXPECT_EQ(lEmpty.mEnd, lEmpty.mData);
         }},
        {"KHungryAllocator::MemoryBlock::GetChunk", kNothing,
         [](Allocators&) {
             for (std::size_t lSize : {SIZE_MAX, std::size_t{0}, std::size_t{16}}) {
                 KHungryAllocator::MemoryBlock lBlock(lSize);
                 for (std::size_t lBytes : {SIZE_MAX, SIZE_MAX / 2, std::size_t{16}, std::size_t{17}})
                     EXPECT_EQ(lBlock.GetChunk(lBytes), nullptr) << lSize << ", " << lBytes;
             }
         }},
        {"KHungryAllocator::MemoryBlock::HasRoom", kNothing,
         [](Allocators&) {
             for (std::size_t lSize : {SIZE_MAX, std::size_t{0}, std::size_t{16}})
                 for (std::size_t lBytes : {SIZE_MAX, SIZE_MAX / 2, std::size_t{16}, std::size_t{17}})
                     EXPECT_FALSE(KHungryAllocator::MemoryBlock(lSize).HasRoom(lBytes)) << lSize << ", " << lBytes;
         }},
    });
}

// --- arrays ----------------------------------------------------------------------------------------------------------

// Three elements, and an array that never had any.
struct Arrays {
    KArrayTemplate<int> mFull;
    KArrayTemplate<int> mEmpty;
    KArrayTemplate<double> mWide;

    Arrays() {
        for (int i = 0; i < 3; ++i) {
            mFull.Add(10 + i);
            mWide.Add(10.5 + i);
        }
    }
    std::string State() const {
        std::string lState = std::to_string(mFull.GetBlockCount()) + ':';
        for (int i = 0; i < mFull.GetCount(); ++i)
            lState += ' ' + std::to_string(mFull.GetAt(i)) + ' ' + std::to_string(mWide.GetAt(i));
        return lState + "; " + std::to_string(mEmpty.GetCount()) + (mEmpty.GetArray() ? " block" : " none");
    }
};

TEST(HostileKlib, ArraysTakeAnyIndex) {
    MakeHostileCalls<Arrays>({
        {"KBaseArrayFast::KBaseArrayFast", kNothing,
         [](Arrays&) { EXPECT_EQ(KBaseArrayFast<8>().GetCount() + KBaseArrayFast<4>().GetBlockCount(), 0); }},
        {"KBaseArrayFast::GetArrayCount", kNothing, [](Arrays& p) { EXPECT_EQ(p.mEmpty.GetArrayCount(), 0); }},
        {"KBaseArrayFast::GetCount", kNothing, [](Arrays& p) { EXPECT_EQ(p.mEmpty.GetCount(), 0); }},
        {"KBaseArrayFast::GetBlockCount", kNothing, [](Arrays& p) { EXPECT_EQ(p.mEmpty.GetBlockCount(), 0); }},
        {"KBaseArrayFast::GetHeaderOffset", kNothing, [](Arrays& p) { EXPECT_EQ(p.mFull.GetHeaderOffset(), 4); }},
        {"KBaseArrayFast::ValidateIndex", kNothing,
         [](Arrays& p) {
             for (int lIndex : kHostileInts) {
                 EXPECT_EQ(p.mFull.ValidateIndex(lIndex), lIndex >= 0 && lIndex < 3) << lIndex;
                 EXPECT_FALSE(p.mEmpty.ValidateIndex(lIndex));
             }
         }},
        {"KBaseArrayFast::SetBlockCount", kNothing,
         [](Arrays& p) {
             for (int lCount : kHostileInts)
                 p.mEmpty.SetBlockCount(lCount);
             const FailAllocations lFail(0, true);
             for (int lCount : {INT_MAX, INT_MAX - 1, INT_MAX / 16, INT_MAX / 16 - 1, 2})
                 p.mFull.SetBlockCount(lCount);
         }},
        {"KBaseArrayFast::SetBlockCount", kSome,
         [](Arrays& p) {
             for (int lCount : {INT_MIN, -1, 0, 1, 2, 5, 0, INT_MIN, 0, 3, -7}) {
                 p.mFull.SetBlockCount(lCount);
                 EXPECT_EQ(p.mFull.GetAt(2), 12) << lCount;
                 EXPECT_EQ(p.mFull.Add(13), 3) << lCount;
                 EXPECT_EQ(p.mFull.RemoveAt(3), 13) << lCount;
             }
         }},
        {"KBaseArrayFast::InsertAt", kNothing,
         [](Arrays& p) {
             for (int lIndex : kNegative)
                 EXPECT_EQ(p.mFull.InsertAt(lIndex, 7), -1);
             for (int lIndex : kHostileInts)
                 EXPECT_EQ(p.mFull.InsertAt(lIndex, static_cast<const void*>(nullptr)), -1);
         }},
        {"KBaseArrayFast::InsertAt", kSome,
         [](Arrays& p) {
             EXPECT_EQ(p.mFull.InsertAt(INT_MAX, 7), 3);
             for (int i = 0; i < 100; ++i)
                 EXPECT_EQ(p.mFull.InsertAt(0, static_cast<const void*>(p.mFull.GetArray() + p.mFull.GetCount() - 1)),
                           0);
             EXPECT_EQ(p.mFull.GetAt(0), 7);
         }},
        {"KBaseArrayFast::RemoveAt", kNothing,
         [](Arrays& p) {
             KBaseArrayFast<4>& lBase = p.mFull;
             for (int lIndex : kNegative)
                 lBase.RemoveAt(lIndex);
             for (int lIndex : kPastTheEnd)
                 lBase.RemoveAt(lIndex);
         }},
        {"KBaseArrayFast::Swap", kNothing,
         [](Arrays& p) {
             p.mFull.Swap(p.mFull);
             p.mFull.Swap(p.mEmpty);
             p.mEmpty.Swap(p.mFull);
         }},
        {"KBaseArrayFast::Clear", kSome,
         [](Arrays& p) {
             p.mFull.Clear();
             p.mFull.Clear();
             p.mEmpty.Clear();
             EXPECT_EQ(p.mFull.Add(1), 0);
         }},
        {"KArrayTemplate::GetArray", kNothing, [](Arrays& p) { EXPECT_EQ(p.mEmpty.GetArray(), nullptr); }},
        {"KArrayTemplate::GetAt", kNothing,
         [](Arrays& p) {
             for (int lIndex : kHostileInts) {
                 EXPECT_EQ(p.mFull.GetAt(lIndex), 10 + (lIndex == 1 || lIndex == 2 ? lIndex : 0));
                 EXPECT_EQ(p.mEmpty.GetAt(lIndex), 0);
             }
         }},
        {"KArrayTemplate::operator[]", kNothing,
         [](Arrays& p) {
             for (int lIndex : kHostileInts) {
                 EXPECT_EQ(p.mFull[lIndex], 10 + (lIndex == 1 || lIndex == 2 ? lIndex : 0));
                 p.mEmpty[lIndex] = 7;
                 EXPECT_EQ(p.mEmpty[lIndex], 0);
             }
         }},
        {"KArrayTemplate::SetAt", kNothing,
         [](Arrays& p) {
             for (int lIndex : kHostileInts) {
                 p.mEmpty.SetAt(lIndex, 7);
                 if (lIndex < 0 || lIndex > 2)
                     p.mFull.SetAt(lIndex, 7);
             }
         }},
        {"KArrayTemplate::Add", kSome,
         [](Arrays& p) {
             for (int i = 0; i < 50; ++i)
                 EXPECT_EQ(p.mFull.Add(p.mFull[1]), 3 + i);
             EXPECT_EQ(p.mFull[52], 11);
         }},
        {"KArrayTemplate::RemoveAt", kNothing,
         [](Arrays& p) {
             for (int lIndex : kHostileInts) {
                 EXPECT_EQ(p.mEmpty.RemoveAt(lIndex), 0);
                 if (lIndex < 0 || lIndex > 2) {
                     EXPECT_EQ(p.mFull.RemoveAt(lIndex), 10);
                 }
             }
         }},
        {"KArrayTemplate::FindAfter", kNothing,
         [](Arrays& p) {
             for (int lIndex : kHostileInts) {
                 EXPECT_EQ(p.mFull.FindAfter(lIndex, 12), lIndex < 2 ? 2 : -1) << lIndex;
                 EXPECT_EQ(p.mEmpty.FindAfter(lIndex, 0), -1);
             }
         }},
        {"KArrayTemplate::Find", kNothing,
         [](Arrays& p) {
             for (int lValue : kHostileInts)
                 EXPECT_EQ(p.mFull.Find(lValue), -1);
         }},
    });
}

// --- pairs, maps, iterators ------------------------------------------------------------------------------------------

using Map = KMap<int, int, KLyrLessCompare<int>, KHungryAllocator>;
using Tree = Map::TreeType;

// Keys 0, 10, 20 with the values 1, 2, 3.
struct Maps {
    Map mMap;
    Map mEmpty;
    Tree mTree;

    Maps() {
        for (int i = 0; i < 3; ++i) {
            mMap.Insert(10 * i, i + 1);
            mTree.Insert(10 * i, i + 1);
        }
    }
    std::string State() const {
        EXPECT_TRUE(HoldsInvariants(mMap));
        std::string lState;
        for (auto lIt = mMap.Begin(); lIt != mMap.End(); ++lIt)
            lState += std::to_string(lIt->GetKey()) + '=' + std::to_string(lIt->GetValue()) + ' ';
        for (const Tree::RecordType* l = mTree.Minimum(); l; l = l->Successor())
            lState += std::to_string(l->GetKey()) + '=' + std::to_string(l->GetValue()) + ' ';
        return lState + std::to_string(mMap.GetSize()) + std::to_string(mEmpty.GetSize());
    }
};

TEST(HostileKlib, MapsAndTreesTakeAnyKey) {
    MakeHostileCalls<Maps>({
        {"KPair::KPair", kNothing,
         [](Maps&) {
             const KPair<int, const char*> lPair;
             EXPECT_TRUE(lPair.mFirst == 0 && lPair.mSecond == nullptr);
             EXPECT_EQ((KPair<int, int>(INT_MIN, INT_MAX).mSecond), INT_MAX);
         }},
        {"KLyrLessCompare::operator()", kNothing,
         [](Maps&) {
             EXPECT_LT(KLyrLessCompare<int>()(INT_MIN, INT_MAX), 0);
             EXPECT_GT(KLyrLessCompare<int>()(INT_MAX, INT_MIN), 0);
         }},
        {"KNameMapCompare::operator()", kNothing,
         [](Maps&) {
             using Key = KNameMapCompare::KeyType;
             EXPECT_EQ(KNameMapCompare()(Key(1, nullptr), Key(1, "")), 0);
             EXPECT_LT(KNameMapCompare()(Key(INT_MIN, nullptr), Key(INT_MAX, nullptr)), 0);
             WithHostileTexts([](const char* pText) {
                 EXPECT_EQ(KNameMapCompare()(Key(-1, pText), Key(-1, pText)), 0);
                 EXPECT_EQ(KNameMapCompare()(Key(0, nullptr), Key(0, pText)) < 0, pText && *pText);
             });
         }},
        {"KStringCompare::operator()", kNothing,
         [](Maps&) {
             WithHostileTexts([](const char* pText) {
                 const KString lText(pText);
                 EXPECT_EQ(KStringCompare()(lText, lText), 0);
             });
         }},
        {"KMap::KMap", kNothing, [](Maps&) { EXPECT_EQ(Map().GetSize(), 0); }},
        {"KMap::Reserve", kNothing,
         [](Maps& p) {
             EXPECT_TRUE(p.mMap.Reserve(0));
             const FailAllocations lFail(0, true);
             EXPECT_FALSE(p.mMap.Reserve(UINT_MAX));
         }},
        {"KMap::GetSize", kNothing, [](Maps& p) { EXPECT_EQ(p.mEmpty.GetSize(), 0); }},
        {"KMap::GetReservedCount", kNothing, [](Maps&) { EXPECT_EQ(Map().GetReservedCount(), 0u); }},
        {"KMap::HasRoom", kNothing, [](Maps&) { EXPECT_FALSE(Map().HasRoom()); }},
        {"KMap::Compact", kNothing,
         [](Maps& p) {
             EXPECT_TRUE(p.mMap.Compact(0));
             const FailAllocations lFail(0, true);
             for (unsigned int lMore : {UINT_MAX, UINT_MAX - 3, UINT_MAX / 2, 0u})
                 EXPECT_FALSE(p.mMap.Compact(lMore)) << lMore;
         }},
        {"KMap::Insert", kNothing,
         [](Maps& p) {
             const auto lSame = p.mMap.Insert(p.mMap.Find(10)->GetKey(), INT_MAX);
             EXPECT_FALSE(lSame.mSecond);
             EXPECT_EQ(lSame.mFirst->GetValue(), 2);
         }},
        {"KMap::Insert", kSome,
         [](Maps& p) {
             for (int lKey : kHostileInts)
                 EXPECT_EQ(p.mMap.Insert(lKey, lKey).mFirst->GetKey(), lKey);
         }},
        {"KMap::Remove", kNothing,
         [](Maps& p) {
             for (int lKey : {INT_MIN, -1, 1, INT_MAX}) {
                 EXPECT_EQ(p.mMap.Remove(lKey), 0);
                 EXPECT_EQ(p.mEmpty.Remove(lKey), 0);
             }
         }},
        {"KMap::Remove", kSome,
         [](Maps& p) {
             while (auto* lRecord = p.mMap.Minimum())
                 EXPECT_EQ(p.mMap.Remove(lRecord->GetKey()), 1) << "by the record's own key";
         }},
        {"KMap::Clear", kSome,
         [](Maps& p) {
             p.mMap.Clear();
             p.mMap.Clear();
             p.mEmpty.Clear();
         }},
        {"KMap::Find", kNothing,
         [](Maps& p) {
             for (int lKey : {INT_MIN, -1, 1, INT_MAX})
                 EXPECT_EQ(p.mMap.Find(lKey), nullptr);
             EXPECT_EQ(p.mEmpty.Find(0), nullptr);
         }},
        {"KMap::UpperBound", kNothing,
         [](Maps& p) {
             EXPECT_EQ(p.mMap.UpperBound(INT_MIN)->GetKey(), 0);
             for (int lKey : {20, 21, INT_MAX})
                 EXPECT_EQ(p.mMap.UpperBound(lKey), nullptr);
             EXPECT_EQ(p.mEmpty.UpperBound(INT_MIN), nullptr);
         }},
        {"KMap::Minimum", kNothing, [](Maps& p) { EXPECT_EQ(p.mEmpty.Minimum(), nullptr); }},
        {"KMap::Maximum", kNothing, [](Maps& p) { EXPECT_EQ(p.mEmpty.Maximum(), nullptr); }},
        {"KMap::Begin", kNothing, [](Maps& p) { EXPECT_EQ(p.mEmpty.Begin(), p.mEmpty.End()); }},
        {"KMap::End", kNothing, [](Maps& p) { EXPECT_NE(p.mMap.End(), p.mMap.Begin()); }},
        {"KMap::KKeyValuePair::KKeyValuePair", kNothing,
         [](Maps&) { EXPECT_EQ(Map::KKeyValuePair(INT_MIN, 0).mFirst, INT_MIN); }},
        {"KMap::KKeyValuePair::GetKey", kNothing,
         [](Maps&) { EXPECT_EQ(Map::KKeyValuePair(INT_MIN, 0).GetKey(), INT_MIN); }},
        {"KMap::KKeyValuePair::GetValue", kNothing,
         [](Maps&) { EXPECT_EQ(Map::KKeyValuePair(0, INT_MAX).GetValue(), INT_MAX); }},
        {"KRedBlackTree::KRedBlackTree", kNothing, [](Maps&) { EXPECT_EQ(Tree().GetSize(), 0); }},
        {"KRedBlackTree::Reserve", kNothing,
         [](Maps& p) {
             EXPECT_TRUE(p.mTree.Reserve(0));
             const FailAllocations lFail(0, true);
             EXPECT_FALSE(p.mTree.Reserve(UINT_MAX));
         }},
        {"KRedBlackTree::GetSize", kNothing, [](Maps&) { EXPECT_EQ(Tree().GetSize(), 0); }},
        {"KRedBlackTree::GetReservedCount", kNothing, [](Maps&) { EXPECT_EQ(Tree().GetReservedCount(), 0u); }},
        {"KRedBlackTree::HasRoom", kNothing, [](Maps&) { EXPECT_FALSE(Tree().HasRoom()); }},
        {"KRedBlackTree::Compact", kNothing,
         [](Maps& p) {
             EXPECT_TRUE(p.mTree.Compact(0));
             const FailAllocations lFail(0, true);
             for (unsigned int lMore : {UINT_MAX, UINT_MAX - 3, UINT_MAX / 2, 0u})
                 EXPECT_FALSE(p.mTree.Compact(lMore)) << lMore;
         }},
        {"KRedBlackTree::Insert", kNothing,
         [](Maps& p) {
             EXPECT_FALSE(p.mTree.Insert(p.mTree.Find(10)->mData).mSecond);
             EXPECT_FALSE(p.mTree.Insert(20, INT_MIN).mSecond);
         }},
        {"KRedBlackTree::Insert", kSome,
         [](Maps& p) {
             for (int lKey : kHostileInts)
                 EXPECT_EQ(p.mTree.Insert(lKey, lKey).mFirst->GetKey(), lKey);
         }},
        {"KRedBlackTree::Remove", kNothing,
         [](Maps& p) {
             for (int lKey : {INT_MIN, -1, 1, INT_MAX})
                 EXPECT_FALSE(p.mTree.Remove(lKey));
         }},
        {"KRedBlackTree::Remove", kSome,
         [](Maps& p) {
             while (auto* lRecord = p.mTree.Maximum())
                 EXPECT_TRUE(p.mTree.Remove(lRecord->GetKey())) << "by the record's own key";
         }},
        {"KRedBlackTree::Clear", kSome,
         [](Maps& p) {
             p.mTree.Clear();
             p.mTree.Clear();
         }},
        {"KRedBlackTree::Find", kNothing, [](Maps& p) { EXPECT_EQ(p.mTree.Find(INT_MIN), nullptr); }},
        {"KRedBlackTree::UpperBound", kNothing, [](Maps& p) { EXPECT_EQ(p.mTree.UpperBound(INT_MAX), nullptr); }},
        {"KRedBlackTree::Minimum", kNothing, [](Maps&) { EXPECT_EQ(Tree().Minimum(), nullptr); }},
        {"KRedBlackTree::Maximum", kNothing, [](Maps&) { EXPECT_EQ(Tree().Maximum(), nullptr); }},
        {"KRedBlackTree::RecordType::RecordType", kNothing,
         [](Maps&) { EXPECT_EQ(Tree::RecordType(INT_MIN, INT_MAX).mParent, nullptr); }},
        {"KRedBlackTree::RecordType::GetKey", kNothing,
         [](Maps&) { EXPECT_EQ(Tree::RecordType(INT_MIN, 0).GetKey(), INT_MIN); }},
        {"KRedBlackTree::RecordType::GetValue", kNothing,
         [](Maps&) { EXPECT_EQ(Tree::RecordType(0, INT_MAX).GetValue(), INT_MAX); }},
        {"KRedBlackTree::RecordType::Minimum", kNothing,
         [](Maps&) {
             Tree::RecordType lAlone(0, 0);
             EXPECT_EQ(lAlone.Minimum(), &lAlone);
         }},
        {"KRedBlackTree::RecordType::Maximum", kNothing,
         [](Maps&) {
             Tree::RecordType lAlone(0, 0);
             EXPECT_EQ(lAlone.Maximum(), &lAlone);
         }},
        {"KRedBlackTree::RecordType::Successor", kNothing,
         [](Maps&) {
             Tree::RecordType lAlone(0, 0);
             EXPECT_EQ(lAlone.Successor(), nullptr);
         }},
        {"RedBack_IteratorType::RedBack_IteratorType", kNothing,
         [](Maps& p) { EXPECT_EQ(Map::IteratorType(nullptr), p.mMap.End()); }},
        {"RedBack_IteratorType::operator++", kNothing,
         [](Maps& p) {
             Map::IteratorType lEnd;
             EXPECT_EQ(++lEnd, p.mMap.End());
             EXPECT_EQ(lEnd++, p.mMap.End());
         },
         Reports{"mRecord != NULL"}},
        {"RedBack_IteratorType::operator->", kNothing, [](Maps& p) { EXPECT_EQ(p.mMap.End().operator->(), nullptr); },
         Reports{"mRecord"}},
        {"RedBack_IteratorType::operator==", kNothing, [](Maps& p) { EXPECT_TRUE(p.mMap.End() == p.mEmpty.End()); }},
        {"RedBack_IteratorType::operator!=", kNothing, [](Maps& p) { EXPECT_FALSE(p.mMap.End() != p.mEmpty.End()); }},
    });
}

// --- scoped pointers -------------------------------------------------------------------------------------------------

struct Pointers {
    using Pointer = KLyrSdkScopedPtr<KString>;
    Pointer mHeld{LyrSdkNew<KString>("held")};
    Pointer mEmpty;

    std::string State() const {
        return std::string(mHeld ? mHeld.Get()->Buffer() : "(null)") + (mEmpty ? " some" : " none");
    }
};

TEST(HostileKlib, ScopedPointersTakeNullAndThemselves) {
    MakeHostileCalls<Pointers>({
        {"LyrSdkDeletionPolicy::DeleteIt", kNothing,
         [](Pointers&) {
             KString* lNull = nullptr;
             LyrSdkDeletionPolicy<KString>::DeleteIt(nullptr);
             LyrSdkDeletionPolicy<KString>::DeleteIt(&lNull);
         }},
        {"KScopedPtr::KScopedPtr", kNothing,
         [](Pointers&) { EXPECT_FALSE((KScopedPtr<KString, LyrSdkDeletionPolicy<KString>>(nullptr))); }},
        {"KLyrSdkScopedPtr::KLyrSdkScopedPtr", kNothing,
         [](Pointers&) { EXPECT_FALSE(KLyrSdkScopedPtr<KString>(nullptr)); }},
        {"KScopedPtr::operator!", kNothing, [](Pointers& p) { EXPECT_TRUE(!p.mEmpty); }},
        {"KScopedPtr::operator bool", kNothing, [](Pointers& p) { EXPECT_FALSE(static_cast<bool>(p.mEmpty)); }},
        {"KScopedPtr::Get", kNothing, [](Pointers& p) { EXPECT_EQ(p.mEmpty.Get(), nullptr); }},
        {"KScopedPtr::operator->", kNothing, [](Pointers& p) { EXPECT_EQ(p.mEmpty.operator->(), nullptr); },
         Reports{"ptr != 0"}},
        {"KScopedPtr::Reset", kNothing,
         [](Pointers& p) {
             p.mEmpty.Reset();
             p.mEmpty.Reset(nullptr);
         }},
        {"KScopedPtr::Reset", kSome,
         [](Pointers& p) {
             p.mHeld.Reset(nullptr);
             EXPECT_EQ(p.mHeld.Get(), nullptr);
         }},
        {"KScopedPtr::Swap", kNothing,
         [](Pointers& p) {
             p.mHeld.Swap(p.mHeld);
             p.mHeld.Swap(p.mEmpty);
             p.mEmpty.Swap(p.mHeld);
         }},
    });
}

}  // namespace
}  // namespace lyrsdk
