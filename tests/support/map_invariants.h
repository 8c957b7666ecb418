#pragma once

// Checks the rules of an ordered map's tree and says which one is broken, and where.
//
// A place is the way down from the root: "root.L.R" is the right child of the root's left child. Walks are bounded by
// the map's size, so that a check ends on a tree whose links run in circles.

#include <gtest/gtest.h>

#include <string>

#include "lyrfilesdk/components/kbaselib/klib/kmap.h"

namespace lyrsdk {

template <typename Map, typename Compare>
class MapInvariants {
public:
    explicit MapInvariants(const Map& pMap) : mMap(pMap) {}

    testing::AssertionResult Check() {
        const Record* lMinimum = mMap.Minimum();
        const Record* lMaximum = mMap.Maximum();
        if (!lMinimum || !lMaximum)
            return lMinimum || lMaximum || mMap.GetSize() != 0 ? Broken("an empty tree has size 0", "map") : Holds();
        const Record* lRoot = lMinimum;
        for (int lStep = 0; lRoot->mParent; lRoot = lRoot->mParent)
            if (++lStep > mMap.GetSize())
                return Broken("the root can be reached from the minimum", "map");
        if (lRoot->mColor != kBlack)
            return Broken("the root is black", "root");
        int lBlackDepth = 0;
        if (!CheckSubtree(lRoot, "root", lBlackDepth))
            return Broken(mRule, mPlace);
        if (mRecords != mMap.GetSize())
            return Broken("the size counts the records", "map");
        if (mFirst != lMinimum || mLast != lMaximum)
            return Broken("minimum and maximum are the ends of the walk", "map");
        return CheckIteration();
    }

private:
    using Record = typename Map::RecordType;
    static constexpr unsigned int kBlack = 1;

    static testing::AssertionResult Holds() { return testing::AssertionSuccess(); }
    static testing::AssertionResult Broken(const std::string& pRule, const std::string& pPlace) {
        return testing::AssertionFailure() << "broken: " << pRule << " (" << pPlace << ")";
    }

    bool Fails(const char* pRule, const std::string& pPlace) {
        mRule = pRule;
        mPlace = pPlace;
        return false;
    }

    // Walks in order, so that mLast is the record before this one.
    bool CheckSubtree(const Record* pRecord, const std::string& pPlace, int& pBlackDepth) {
        if (++mRecords > mMap.GetSize())
            return Fails("the size counts the records", pPlace);
        const Record* const lChildren[] = {pRecord->mLeftChild, pRecord->mRightChild};
        int lDepths[] = {0, 0};
        for (int lSide = 0; lSide < 2; ++lSide) {
            const std::string lPlace = pPlace + (lSide == 0 ? ".L" : ".R");
            const Record* lChild = lChildren[lSide];
            if (lChild) {
                if (lChild->mParent != pRecord)
                    return Fails("a child points back at its parent", lPlace);
                if (pRecord->mColor != kBlack && lChild->mColor != kBlack)
                    return Fails("a red record has no red child", lPlace);
                if (!CheckSubtree(lChild, lPlace, lDepths[lSide]))
                    return false;
            }
            if (lSide == 0 && !CheckOrder(pRecord, pPlace))
                return false;
        }
        if (lDepths[0] != lDepths[1])
            return Fails("all ways down meet as many black records", pPlace);
        pBlackDepth = lDepths[0] + (pRecord->mColor == kBlack ? 1 : 0);
        return true;
    }

    bool CheckOrder(const Record* pRecord, const std::string& pPlace) {
        if (mLast && Compare()(mLast->GetKey(), pRecord->GetKey()) >= 0)
            return Fails("keys increase", pPlace);
        if (pRecord->mColor > kBlack)
            return Fails("a record is red or black", pPlace);
        if (!mFirst)
            mFirst = pRecord;
        mLast = pRecord;
        return true;
    }

    // The tree is sound here, so the iteration ends.
    testing::AssertionResult CheckIteration() {
        int lCount = 0;
        const Record* lBefore = nullptr;
        for (auto lIterator = mMap.Begin(); lIterator != mMap.End(); ++lIterator, ++lCount) {
            if (lBefore && Compare()(lBefore->GetKey(), lIterator->GetKey()) >= 0)
                return Broken("iteration increases", "map");
            lBefore = lIterator.operator->();
        }
        return lCount == mRecords ? Holds() : Broken("iteration meets every record", "map");
    }

    const Map& mMap;
    int mRecords = 0;
    const Record* mFirst = nullptr;
    const Record* mLast = nullptr;
    const char* mRule = "";
    std::string mPlace;
};

template <typename Key, typename Value, typename Compare, typename Allocator>
testing::AssertionResult HoldsInvariants(const KMap<Key, Value, Compare, Allocator>& pMap) {
    return MapInvariants<KMap<Key, Value, Compare, Allocator>, Compare>(pMap).Check();
}

}  // namespace lyrsdk
