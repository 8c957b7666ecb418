#pragma once

// Ordered maps with a link broken by hand, so that each check of the tree under them speaks.

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "lyrfilesdk/components/kbaselib/klib/kmap.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {

enum class ELink { eParent, eLeft, eRight };
inline constexpr int kNone = -1;

// Points one link of a record at another record, or at none.
struct Break {
    int mKey;
    ELink mLink;
    int mTarget;
};

// A map of mCount keys 0, 10, 20, ... put in in this order, without mRemoved; then the breaks, then one operation.
struct BrokenTree {
    using Map = KMap<int, int, KLyrLessCompare<int>, KHungryAllocator>;
    using Record = Map::RecordType;

    std::vector<unsigned long> mLines;
    int mCount;
    int mRemoved;
    std::vector<Break> mBreaks;
    enum { eInsert, eRemove } mOperation;
    int mKey;
};

inline constexpr ELink eP = ELink::eParent;
inline constexpr ELink eL = ELink::eLeft;
inline constexpr ELink eR = ELink::eRight;

// The checks of lines 1082, 1084, 1130 and 1135 look at links that the rotation wrote last; nothing can break those.
// clang-format off
inline const BrokenTree kBrokenTrees[] = {
    {{1066},             6, kNone, {{30, eP, kNone}},               BrokenTree::eRemove, 20},
    {{1080, 1088},       6, kNone, {{0, eR, 10}},                   BrokenTree::eRemove, 0},
    {{1081},             3, kNone, {{0, eP, 0}},                    BrokenTree::eInsert, 2},
    {{1085},             4, kNone, {{10, eP, 20}},                  BrokenTree::eRemove, 0},
    {{1080, 1085, 1086}, 8, kNone, {{10, eR, 10}},                  BrokenTree::eRemove, 0},
    {{1088},             2, kNone, {{0, eL, 0}},                    BrokenTree::eInsert, 1},
    {{1089},             2, kNone, {{10, eL, 0}},                   BrokenTree::eInsert, 20},
    {{1090},             4, kNone, {{30, eP, 0}},                   BrokenTree::eRemove, 0},
    {{1089, 1091},       8, kNone, {{0, eR, 10}},                   BrokenTree::eRemove, 10},
    {{1115},             9, 10,    {{20, eP, kNone}},               BrokenTree::eInsert, 4},
    {{1129},             8, kNone, {{10, eL, 30}},                  BrokenTree::eRemove, 10},
    {{1129, 1131, 1134}, 9, kNone, {{10, eL, 10}},                  BrokenTree::eRemove, 20},
    {{1133},             5, 0,     {{30, eP, 30}},                  BrokenTree::eRemove, 40},
    {{1134, 1139},       4, kNone, {{20, eR, 10}},                  BrokenTree::eRemove, 20},
    {{1137},             8, kNone, {{0, eL, 70}},                   BrokenTree::eRemove, 10},
    {{1138},             3, 20,    {{0, eR, 0}},                    BrokenTree::eInsert, -2},
    {{1139},             5, kNone, {{30, eR, 0}},                   BrokenTree::eRemove, 0},
    {{1138, 1140},       7, kNone, {{20, eL, 10}},                  BrokenTree::eRemove, 0},
    {{1162},             3, kNone, {{0, eP, 0}},                    BrokenTree::eRemove, 0},
    {{1167},             6, kNone, {{0, eP, kNone}},                BrokenTree::eRemove, 0},
    {{1192},             2, kNone, {{0, eP, 0}},                    BrokenTree::eRemove, 0},
    {{1197},             6, kNone, {{40, eP, kNone}},               BrokenTree::eRemove, 40},
    {{1226},             3, 20,    {{10, eP, 0}},                   BrokenTree::eRemove, 10},
    {{1231},             3, kNone, {{0, eP, kNone}, {0, eL, 0}},    BrokenTree::eRemove, 0},
    {{1273},             7, kNone, {{30, eP, kNone}},               BrokenTree::eRemove, 30},
    {{1396},             4, kNone, {{10, eR, kNone}},               BrokenTree::eRemove, 0},
};
// clang-format on

inline void Apply(const Break& pBreak, const std::map<int, BrokenTree::Record*>& pRecords) {
    BrokenTree::Record* lTarget = pBreak.mTarget == kNone ? nullptr : pRecords.at(pBreak.mTarget);
    BrokenTree::Record* lRecord = pRecords.at(pBreak.mKey);
    (pBreak.mLink == eP ? lRecord->mParent : pBreak.mLink == eL ? lRecord->mLeftChild : lRecord->mRightChild) = lTarget;
}

// The reports of the operation on the broken tree, which must do what it says all the same.
inline std::vector<ReportRecorder::Report> ReportsOf(const BrokenTree& pTree) {
    ReportRecorder lRecorder;
    BrokenTree::Map lMap;
    std::map<int, BrokenTree::Record*> lRecords;
    for (int lIndex = 0; lIndex < pTree.mCount; ++lIndex)
        lRecords[lIndex * 10] = lMap.Insert(lIndex * 10, 0).mFirst;
    if (pTree.mRemoved != kNone) {
        lMap.Remove(pTree.mRemoved);
        lRecords.erase(pTree.mRemoved);
    }
    const int lSize = lMap.GetSize();
    for (const Break& lBreak : pTree.mBreaks)
        Apply(lBreak, lRecords);
    if (pTree.mOperation == BrokenTree::eInsert) {
        const auto lResult = lMap.Insert(pTree.mKey, 0);
        EXPECT_TRUE(lResult.mSecond);
        lRecords[pTree.mKey] = lResult.mFirst;
        EXPECT_EQ(lMap.GetSize(), lSize + 1);
    } else {
        EXPECT_EQ(lMap.Remove(pTree.mKey), 1);
        lRecords.erase(pTree.mKey);
        EXPECT_EQ(lMap.GetSize(), lSize - 1);
    }
    // Links may run in circles now; the map's end must not follow them.
    for (const auto& lRecord : lRecords)
        lRecord.second->mLeftChild = lRecord.second->mRightChild = nullptr;
    return lRecorder.TakeReports();
}

// --- keys that change their order ------------------------------------------------------------------------------------

// Orders numbers until mTurnAt comparisons are done, and the other way round behind that.
struct FickleCompare {
    static inline int sgTurnAt = 0;
    int operator()(int pLeft, int pRight) const {
        const int lOrder = KLyrLessCompare<int>()(pLeft, pRight);
        return --sgTurnAt < 0 ? -lOrder : lOrder;
    }
};

// The reports of inserting the third key into the slot of the second.
inline std::vector<ReportRecorder::Report> ReportsOfATakenSlot(int pSecondKey, int pThirdKey) {
    ReportRecorder lRecorder;
    KMap<int, int, FickleCompare, KHungryAllocator> lMap;
    FickleCompare::sgTurnAt = 3;
    lMap.Insert(10, 0);
    lMap.Insert(pSecondKey, 0);
    EXPECT_TRUE(lRecorder.Reports().empty());
    EXPECT_TRUE(lMap.Insert(pThirdKey, 0).mSecond);
    return lRecorder.TakeReports();
}

}  // namespace lyrsdk
