#pragma once

// The red-black tree under the ordered map.
//
// A tree is a root pointer, a count and its allocator. Every record is one node:
//
//     mData                    key, then value, stored by value
//     mParent                  null at the root
//     mLeftChild, mRightChild  null if none
//     mColor : 2               0 red, 1 black
//     mBlackDepth : 30         room for sanity checks; 0 in a new record, read by no operation
//
// Between operations an in-order walk gives strictly increasing keys, the root is black, no red record has a red child,
// every way down from a record to a null link meets the same number of black records, and mSize counts the records.
// Finding, inserting and removing are O(log n). Insert takes one record from the allocator and nothing else. A record
// keeps its address until it is removed or the tree compacted; values that are pointers are not owned.
//
// The compare functor is stateless, takes two keys and returns an int whose sign tells their order; the record's key is
// always its first argument. A functor with a true kIsOperatorLess promises that it orders plain numbers by operator<;
// the tree may then leave comparisons out and compare integers itself.
//
// A tree of plain numbers on an allocator that lends its owner room for a pointer keeps the record with the largest key
// there. Inserting a key behind all others then takes constant time on average.
//
// Broken links are reported and the operation goes on. The line numbers of the reports are fixed names of the check
// sites, not places in this file.

#include <climits>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/components/kbaselib/klib/kpair.h"

namespace lyrsdk {

inline constexpr char sgMapPath[] = "lyrfilesdk/components/kbaselib/klib/kmap";  // in the reports of trees and maps

namespace detail {

template <typename Compare, typename = void>
inline constexpr bool kComparesPlainly = false;
template <typename Compare>
inline constexpr bool kComparesPlainly<Compare, std::enable_if_t<Compare::kIsOperatorLess>> = true;

}  // namespace detail

// An ordered tree of records. Data has GetKey() and GetValue(), and a constructor from a key and a value. Allocator is
// one of kcontainerallocators.h.
template <typename Data, typename Compare, typename Allocator>
class KRedBlackTree {
public:
    using KeyType = std::decay_t<decltype(std::declval<const Data&>().GetKey())>;      // what records are ordered by
    using ValueType = std::decay_t<decltype(std::declval<const Data&>().GetValue())>;  // what they hold beside it

    enum EColor : unsigned int { eRed = 0, eBlack = 1 };  // of a record

    // One record: the data and its place in the tree.
    struct RecordType {
        // Red, and in no tree yet.
        RecordType(const KeyType& pKey, const ValueType& pValue) : mData(pKey, pValue), mColor(eRed), mBlackDepth(0) {}

        const KeyType& GetKey() const { return mData.GetKey(); }        // the key
        const ValueType& GetValue() const { return mData.GetValue(); }  // the value
        ValueType& GetValue() { return mData.GetValue(); }              // the value

        // The records with the smallest and the largest key of the subtree below and with this one.
        RecordType* Minimum() { return const_cast<RecordType*>(std::as_const(*this).Minimum()); }
        const RecordType* Minimum() const {
            const RecordType* lRecord = this;
            while (lRecord->mLeftChild)
                lRecord = lRecord->mLeftChild;
            return lRecord;
        }
        RecordType* Maximum() { return const_cast<RecordType*>(std::as_const(*this).Maximum()); }
        const RecordType* Maximum() const {
            const RecordType* lRecord = this;
            while (lRecord->mRightChild)
                lRecord = lRecord->mRightChild;
            return lRecord;
        }
        // The record with the next larger key, or null. Constant on average over a whole walk.
        RecordType* Successor() { return const_cast<RecordType*>(std::as_const(*this).Successor()); }
        const RecordType* Successor() const {
            if (mRightChild)
                return std::as_const(*mRightChild).Minimum();
            const RecordType* lRecord = this;
            const RecordType* lParent = mParent;
            while (lParent && lParent->mRightChild == lRecord) {
                lRecord = lParent;
                lParent = lParent->mParent;
            }
            return lParent;
        }

        Data mData;                         // key and value
        RecordType* mParent = nullptr;      // the record above; null at the root
        RecordType* mLeftChild = nullptr;   // the record below with smaller keys, or null
        RecordType* mRightChild = nullptr;  // the record below with larger keys, or null
        unsigned int mColor : 2;            // an EColor
        unsigned int mBlackDepth : 30;      // room for sanity checks; read by no operation
    };

    KRedBlackTree() : mAllocator(sizeof(RecordType)) {}  // empty
    ~KRedBlackTree() { Clear(); }
    KRedBlackTree(const KRedBlackTree&) = delete;
    KRedBlackTree& operator=(const KRedBlackTree&) = delete;

    // Has the allocator keep memory for pCount records in stock. False when there is no memory.
    bool Reserve(unsigned int pCount) { return mAllocator.Reserve(pCount); }
    // Of a KHungryAllocator only; what they tell is said in the map.
    std::size_t GetReservedCount() const { return mAllocator.GetRecordPoolSize(); }
    bool HasRoom() const { return mAllocator.HasRoom(); }  // of a KHungryAllocator only; for one record more
    // Of a KHungryAllocator only; what it does is said in the map.
    bool Compact(unsigned int pMore) {
        static_assert(std::is_trivially_copyable_v<KeyType>, "the old records are dropped as they are");
        const std::size_t lLive = static_cast<std::size_t>(mSize);
        Allocator lAllocator(sizeof(RecordType));
        // A block serves one record less than it holds.
        if (pMore >= static_cast<std::size_t>(-1) - lLive || !lAllocator.Reserve(lLive + pMore + 1))
            return false;
        for (RecordType* lRecord = Minimum(); lRecord;) {
            RecordType* lNext = lRecord->Successor();
            ReplaceNode(lRecord, ::new (lAllocator.AllocateRecords(1)) RecordType(*lRecord));
            lRecord = lNext;
        }
        mAllocator.Swap(lAllocator);
        return true;
    }
    int GetSize() const { return mSize; }  // the number of records

    // The record with the key, and true when this call made it. A record that was there keeps its value. Without memory
    // (null, false), and the tree is unchanged.
    KPair<RecordType*, bool> Insert(const KeyType& pKey, const ValueType& pValue);
    KPair<RecordType*, bool> Insert(const Data& pData) { return Insert(pData.GetKey(), pData.GetValue()); }
    // False when no record has the key.
    bool Remove(const KeyType& pKey) {
        RecordType* lRecord = Descend(pKey).mRecord;
        if (!lRecord)
            return false;
        if (lRecord == Last())
            RememberLast(nullptr);
        RemoveNode(lRecord);
        --mSize;
        DeleteRecord(lRecord);
        return true;
    }
    // Removes every record.
    void Clear() {
        // Records that nothing is done to are not visited.
        if constexpr (!std::is_trivially_destructible_v<RecordType> || Allocator::kFreesRecords)
            if (mRoot)
                ClearSubtree(mRoot);
        RememberLast(nullptr);
        mRoot = nullptr;
        mSize = 0;
    }

    // The record with the key, or null.
    RecordType* Find(const KeyType& pKey) { return const_cast<RecordType*>(std::as_const(*this).Find(pKey)); }
    const RecordType* Find(const KeyType& pKey) const { return Descend(pKey).mRecord; }
    // The record with the smallest key that is greater, or null.
    RecordType* UpperBound(const KeyType& pKey) {
        return const_cast<RecordType*>(std::as_const(*this).UpperBound(pKey));
    }
    const RecordType* UpperBound(const KeyType& pKey) const {
        const RecordType* lBound = nullptr;
        for (const RecordType* lRecord = mRoot; lRecord;) {
            const bool lIsBehind = Compare()(lRecord->GetKey(), pKey) > 0;
            lBound = lIsBehind ? lRecord : lBound;
            lRecord = lIsBehind ? lRecord->mLeftChild : lRecord->mRightChild;
        }
        return lBound;
    }
    // The records with the smallest and the largest key; null when the tree is empty.
    RecordType* Minimum() { return mRoot ? mRoot->Minimum() : nullptr; }
    const RecordType* Minimum() const { return mRoot ? std::as_const(*mRoot).Minimum() : nullptr; }
    RecordType* Maximum() { return mRoot ? mRoot->Maximum() : nullptr; }
    const RecordType* Maximum() const { return mRoot ? std::as_const(*mRoot).Maximum() : nullptr; }

private:
    // Where the way down to a key ended: its record or null, and the record above that place. mIsLast tells that every
    // step went to the right; it is not set when there is nowhere to remember the last record.
    struct Place {
        RecordType* mRecord;
        RecordType* mParent;
        bool mIsLast;
    };

    // Keys that the tree compares itself. The way down then takes no branch that depends on them but for the last one.
    static constexpr bool kHasPlainKeys = detail::kComparesPlainly<Compare> && std::is_integral_v<KeyType>;
    static constexpr bool kRemembersLast = detail::kComparesPlainly<Compare> && Allocator::kLendsPointer;

    Place Descend(const KeyType& pKey) const {
        Place lPlace{mRoot, nullptr, kRemembersLast};
        while (lPlace.mRecord) {
            const KeyType& lKey = std::as_const(*lPlace.mRecord).GetKey();
            int lOrder = 0;
            if constexpr (kHasPlainKeys)
                lOrder = lKey == pKey ? 0 : lKey < pKey ? -1 : 1;
            else
                lOrder = Compare()(lKey, pKey);
            if (lOrder == 0)
                break;
            const bool lIsLess = lOrder < 0;
            lPlace.mParent = lPlace.mRecord;
            lPlace.mIsLast &= lIsLess;
            lPlace.mRecord = lIsLess ? lPlace.mRecord->mRightChild : lPlace.mRecord->mLeftChild;
        }
        return lPlace;
    }
    Place PlaceForInsertion(const KeyType& pKey) const {
        RecordType* lLast = Last();
        if (lLast && Compare()(std::as_const(*lLast).GetKey(), pKey) < 0)
            return Place{nullptr, lLast, true};
        return Descend(pKey);
    }
    // The record with the largest key, or null when it is not known.
    RecordType* Last() const {
        if constexpr (kRemembersLast)
            return static_cast<RecordType*>(mAllocator.GetLentPointer());
        else
            return nullptr;
    }
    void RememberLast([[maybe_unused]] RecordType* pRecord) {
        if constexpr (kRemembersLast)
            mAllocator.SetLentPointer(pRecord);
    }
    RecordType* NewRecord(const KeyType& pKey, const ValueType& pValue);
    void DeleteRecord(RecordType* pRecord) {
        pRecord->~RecordType();
        mAllocator.FreeMemory(pRecord);
    }
    // Recursion is as deep as the tree is high, which is twice the logarithm of its size at most.
    void ClearSubtree(RecordType* pRecord) {
        if (pRecord->mLeftChild)
            ClearSubtree(pRecord->mLeftChild);
        if (pRecord->mRightChild)
            ClearSubtree(pRecord->mRightChild);
        DeleteRecord(pRecord);
    }

    void FixNodesAfterInsertion(RecordType* pNode);
    void StraightenAndRotate(RecordType* pNode, RecordType* pParent, RecordType* pGrandparent);
    void LeftRotate(RecordType* pNode);
    void RightRotate(RecordType* pNode);

    void RemoveNode(RecordType* pNode);
    void RemoveLeaf(RecordType* pNode);
    // Points the parent's link that leads to pNode at pNewNode. False when neither link leads there.
    bool ReplaceInParent(RecordType* pNode, RecordType* pNewNode) {
        RecordType* lParent = pNode->mParent;
        if (lParent->mLeftChild == pNode)
            lParent->mLeftChild = pNewNode;
        else if (lParent->mRightChild == pNode)
            lParent->mRightChild = pNewNode;
        else
            return false;
        return true;
    }
    void ReplaceNode(RecordType* pNodeToReplace, RecordType* pNewNode);
    void FixNodesAfterRemoval(RecordType* pParent, RecordType* pNode);
    void BorrowFromSibling(RecordType* pParent, RecordType* pNode, RecordType* pSibling);

    // The parent's other child. A null pNode stands for an empty left link before an empty right one.
    static RecordType* Sibling(RecordType* pParent, RecordType* pNode) {
        if (pParent->mLeftChild == pNode)
            return pParent->mRightChild;
        return pParent->mRightChild == pNode ? pParent->mLeftChild : nullptr;
    }
    static bool IsBlack(const RecordType* pRecord) { return !pRecord || pRecord->mColor == eBlack; }

    RecordType* mRoot = nullptr;
    int mSize = 0;
    Allocator mAllocator;
};

// ---------------------------------------------------------------------------------------------------------------------
// Records

// Null when there is no memory.
template <typename Data, typename Compare, typename Allocator>
auto KRedBlackTree<Data, Compare, Allocator>::NewRecord(const KeyType& pKey, const ValueType& pValue) -> RecordType* {
    void* lMemory = mAllocator.AllocateRecords(1);
    if (!lMemory)
        return nullptr;
    RecordType* lRecord = ::new (lMemory) RecordType(pKey, pValue);
    if constexpr (!std::is_trivially_copyable_v<KeyType>) {
        // A key that owns memory may have been copied without getting any; in the tree it would break the order.
        if (Compare()(std::as_const(*lRecord).GetKey(), pKey) != 0) {
            DeleteRecord(lRecord);
            return nullptr;
        }
    }
    return lRecord;
}

// ---------------------------------------------------------------------------------------------------------------------
// Insertion

template <typename Data, typename Compare, typename Allocator>
auto KRedBlackTree<Data, Compare, Allocator>::Insert(const KeyType& pKey, const ValueType& pValue)
    -> KPair<RecordType*, bool> {
    using Result = KPair<RecordType*, bool>;
    const Place lPlace = PlaceForInsertion(pKey);
    if (lPlace.mRecord)
        return Result(lPlace.mRecord, false);
    RecordType* lNode = mSize < INT_MAX ? NewRecord(pKey, pValue) : nullptr;
    if (!lNode)
        return Result(nullptr, false);
    ++mSize;
    RecordType* lParent = lPlace.mParent;
    if (!lParent) {
        mRoot = lNode;
    } else if (Compare()(std::as_const(*lParent).GetKey(), pKey) < 0) {
        LYRSDK_CHECK(lParent->mRightChild == nullptr, sgMapPath, 602, "lParent->mRightChild == 0");
        lParent->mRightChild = lNode;
    } else {
        LYRSDK_CHECK(lParent->mLeftChild == nullptr, sgMapPath, 608, "lParent->mLeftChild == 0");
        lParent->mLeftChild = lNode;
    }
    lNode->mParent = lParent;
    if (lPlace.mIsLast)
        RememberLast(lNode);
    FixNodesAfterInsertion(lNode);
    return Result(lNode, true);
}

// pNode is red and may have a red parent; nothing else is out of order.
template <typename Data, typename Compare, typename Allocator>
void KRedBlackTree<Data, Compare, Allocator>::FixNodesAfterInsertion(RecordType* pNode) {
    while (RecordType* lParent = pNode->mParent) {
        if (IsBlack(lParent))
            break;
        // Only a root whose colour was broken is red and has nothing above.
        RecordType* lGrandparent = lParent->mParent;
        if (!lGrandparent)
            break;
        RecordType* lUncle = Sibling(lGrandparent, lParent);
        if (IsBlack(lUncle)) {
            StraightenAndRotate(pNode, lParent, lGrandparent);
            break;
        }
        lParent->mColor = eBlack;
        lUncle->mColor = eBlack;
        lGrandparent->mColor = eRed;
        pNode = lGrandparent;
    }
    mRoot->mColor = eBlack;
}

// pNode and pParent are red, pGrandparent is black and so is its other child. Brings pNode to the outer side, then
// turns the grandparent down on the other side.
template <typename Data, typename Compare, typename Allocator>
void KRedBlackTree<Data, Compare, Allocator>::StraightenAndRotate(RecordType* pNode, RecordType* pParent,
                                                                  RecordType* pGrandparent) {
    if (pNode == pParent->mRightChild && pParent == pGrandparent->mLeftChild) {
        LeftRotate(pParent);
        pNode = pNode->mLeftChild;
    } else if (pNode == pParent->mLeftChild && pParent == pGrandparent->mRightChild) {
        RightRotate(pParent);
        pNode = pNode->mRightChild;
    }
    pParent = pNode->mParent;
    pParent->mColor = eBlack;
    pGrandparent->mColor = eRed;
    if (pNode == pParent->mLeftChild && pParent == pGrandparent->mLeftChild)
        RightRotate(pGrandparent);
    else
        LeftRotate(pGrandparent);
}

//      Z                     Z
//      |                     |
//    pNode                 lNode
//    /   \                 /   \      .
//   A   lNode    --->   pNode   C
//       /   \           /   \         .
//      B     C         A     B
template <typename Data, typename Compare, typename Allocator>
void KRedBlackTree<Data, Compare, Allocator>::LeftRotate(RecordType* pNode) {
    RecordType* lNode = pNode->mRightChild;
    RecordType* lA = pNode->mLeftChild;
    RecordType* lB = lNode->mLeftChild;
    RecordType* lC = lNode->mRightChild;
    RecordType* lZ = pNode->mParent;

    pNode->mRightChild = lB;
    if (lB)
        lB->mParent = pNode;
    lNode->mParent = lZ;
    if (!lZ) {
        LYRSDK_CHECK(mRoot == pNode, sgMapPath, 1066, "mRoot == pNode");
        mRoot = lNode;
    } else if (lZ->mLeftChild != pNode) {
        lZ->mRightChild = lNode;
    } else {
        lZ->mLeftChild = lNode;
    }
    lNode->mLeftChild = pNode;
    pNode->mParent = lNode;

    LYRSDK_CHECK(pNode->mLeftChild == lA, sgMapPath, 1080, "pNode->mLeftChild == A");
    LYRSDK_CHECK(pNode->mRightChild == lB, sgMapPath, 1081, "pNode->mRightChild == B");
    LYRSDK_CHECK(pNode->mParent == lNode, sgMapPath, 1082, "pNode->mParent == lNode");
    LYRSDK_CHECK(lNode->mLeftChild == pNode, sgMapPath, 1084, "lNode->mLeftChild == pNode");
    LYRSDK_CHECK(lNode->mRightChild == lC, sgMapPath, 1085, "lNode->mRightChild == C");
    LYRSDK_CHECK(lNode->mParent == lZ, sgMapPath, 1086, "lNode->mParent == Z");
    LYRSDK_CHECK(!lA || lA->mParent == pNode, sgMapPath, 1088, "A == 0 || A->mParent == pNode");
    LYRSDK_CHECK(!lB || lB->mParent == pNode, sgMapPath, 1089, "B == 0 || B->mParent == pNode");
    LYRSDK_CHECK(!lC || lC->mParent == lNode, sgMapPath, 1090, "C == 0 || C->mParent == lNode");
    LYRSDK_CHECK(!lZ || lZ->mLeftChild == lNode || lZ->mRightChild == lNode, sgMapPath, 1091,
                 "Z == 0 || Z->mLeftChild == lNode || Z->mRightChild == lNode");
}

//        Z               Z
//        |               |
//      pNode           lNode
//      /   \           /   \          .
//   lNode   C  --->   A   pNode
//   /   \                 /   \       .
//  A     B               B     C
template <typename Data, typename Compare, typename Allocator>
void KRedBlackTree<Data, Compare, Allocator>::RightRotate(RecordType* pNode) {
    RecordType* lNode = pNode->mLeftChild;
    RecordType* lA = lNode->mLeftChild;
    RecordType* lB = lNode->mRightChild;
    RecordType* lC = pNode->mRightChild;
    RecordType* lZ = pNode->mParent;

    pNode->mLeftChild = lB;
    if (lB)
        lB->mParent = pNode;
    lNode->mParent = lZ;
    if (!lZ) {
        LYRSDK_CHECK(mRoot == pNode, sgMapPath, 1115, "mRoot == pNode");
        mRoot = lNode;
    } else if (lZ->mRightChild != pNode) {
        lZ->mLeftChild = lNode;
    } else {
        lZ->mRightChild = lNode;
    }
    lNode->mRightChild = pNode;
    pNode->mParent = lNode;

    LYRSDK_CHECK(lNode->mLeftChild == lA, sgMapPath, 1129, "lNode->mLeftChild == A");
    LYRSDK_CHECK(lNode->mRightChild == pNode, sgMapPath, 1130, "lNode->mRightChild == pNode");
    LYRSDK_CHECK(lNode->mParent == lZ, sgMapPath, 1131, "lNode->mParent == Z");
    LYRSDK_CHECK(pNode->mLeftChild == lB, sgMapPath, 1133, "pNode->mLeftChild == B");
    LYRSDK_CHECK(pNode->mRightChild == lC, sgMapPath, 1134, "pNode->mRightChild == C");
    LYRSDK_CHECK(pNode->mParent == lNode, sgMapPath, 1135, "pNode->mParent == lNode");
    LYRSDK_CHECK(!lA || lA->mParent == lNode, sgMapPath, 1137, "A == 0 || A->mParent == lNode");
    LYRSDK_CHECK(!lB || lB->mParent == pNode, sgMapPath, 1138, "B == 0 || B->mParent == pNode");
    LYRSDK_CHECK(!lC || lC->mParent == pNode, sgMapPath, 1139, "C == 0 || C->mParent == pNode");
    LYRSDK_CHECK(!lZ || lZ->mLeftChild == lNode || lZ->mRightChild == lNode, sgMapPath, 1140,
                 "Z == 0 || Z->mLeftChild == lNode || Z->mRightChild == lNode");
}

// ---------------------------------------------------------------------------------------------------------------------
// Removal

// Takes pNode out of the tree without freeing it.
template <typename Data, typename Compare, typename Allocator>
void KRedBlackTree<Data, Compare, Allocator>::RemoveNode(RecordType* pNode) {
    if (!pNode->mLeftChild && !pNode->mRightChild) {
        RemoveLeaf(pNode);
    } else if (!pNode->mLeftChild) {
        RecordType* lChild = pNode->mRightChild;
        if (!pNode->mParent) {
            LYRSDK_CHECK(mRoot == pNode, sgMapPath, 1197, "mRoot == pNode");
            mRoot = lChild;
        } else if (!ReplaceInParent(pNode, lChild)) {
            LYRSDK_REPORT(sgMapPath, 1192, "Node not found in KRedBlackTree");
        }
        lChild->mParent = pNode->mParent;
        if (IsBlack(pNode))
            FixNodesAfterRemoval(lChild->mParent, lChild);
    } else if (pNode->mRightChild) {
        // The colour is read behind the removal, whose repair may have changed it.
        RecordType* lNext = pNode->mRightChild->Minimum();
        RemoveNode(lNext);
        lNext->mColor = pNode->mColor;
        ReplaceNode(pNode, lNext);
    } else {
        RecordType* lChild = pNode->mLeftChild;
        if (!pNode->mParent) {
            LYRSDK_CHECK(mRoot == pNode, sgMapPath, 1231, "mRoot == pNode");
            mRoot = lChild;
        } else if (!ReplaceInParent(pNode, lChild)) {
            LYRSDK_REPORT(sgMapPath, 1226, "Node not found in KRedBlackTree");
        }
        lChild->mParent = pNode->mParent;
        if (IsBlack(pNode))
            FixNodesAfterRemoval(lChild->mParent, lChild);
    }
    pNode->mParent = nullptr;
    pNode->mLeftChild = nullptr;
    pNode->mRightChild = nullptr;
}

template <typename Data, typename Compare, typename Allocator>
void KRedBlackTree<Data, Compare, Allocator>::RemoveLeaf(RecordType* pNode) {
    if (!pNode->mParent) {
        LYRSDK_CHECK(mRoot == pNode, sgMapPath, 1167, "mRoot == pNode");
        mRoot = nullptr;
    } else if (!ReplaceInParent(pNode, nullptr)) {
        LYRSDK_REPORT(sgMapPath, 1162, "Node not found in KRedBlackTree");
    }
    if (IsBlack(pNode))
        FixNodesAfterRemoval(pNode->mParent, nullptr);
}

// Puts pNewNode, which is in no tree, where pNodeToReplace is. Colours stay.
template <typename Data, typename Compare, typename Allocator>
void KRedBlackTree<Data, Compare, Allocator>::ReplaceNode(RecordType* pNodeToReplace, RecordType* pNewNode) {
    pNewNode->mParent = pNodeToReplace->mParent;
    if (!pNodeToReplace->mParent) {
        LYRSDK_CHECK(mRoot == pNodeToReplace, sgMapPath, 1273, "mRoot == pNodeToReplace");
        mRoot = pNewNode;
    } else {
        ReplaceInParent(pNodeToReplace, pNewNode);
    }
    pNewNode->mLeftChild = pNodeToReplace->mLeftChild;
    if (pNewNode->mLeftChild)
        pNewNode->mLeftChild->mParent = pNewNode;
    pNewNode->mRightChild = pNodeToReplace->mRightChild;
    if (pNewNode->mRightChild)
        pNewNode->mRightChild->mParent = pNewNode;
}

// The ways down through pNode, a child of pParent or null for an empty link, are one black record short.
template <typename Data, typename Compare, typename Allocator>
void KRedBlackTree<Data, Compare, Allocator>::FixNodesAfterRemoval(RecordType* pParent, RecordType* pNode) {
    for (; pParent && IsBlack(pNode); pNode = pParent, pParent = pNode->mParent) {
        RecordType* lSibling = Sibling(pParent, pNode);
        if (!IsBlack(lSibling)) {
            pParent->mColor = eRed;
            lSibling->mColor = eBlack;
            if (pNode == pParent->mLeftChild)
                LeftRotate(pParent);
            else
                RightRotate(pParent);
            lSibling = Sibling(pParent, pNode);
        }
        const bool lNoRedNephew =
            IsBlack(lSibling) && (!lSibling || (IsBlack(lSibling->mLeftChild) && IsBlack(lSibling->mRightChild)));
        if (!IsBlack(pParent) && lNoRedNephew) {
            if (lSibling)
                lSibling->mColor = eRed;
            pParent->mColor = eBlack;
            break;
        }
        if (!lSibling || !lNoRedNephew) {
            BorrowFromSibling(pParent, pNode, lSibling);
            break;
        }
        lSibling->mColor = eRed;
    }
    if (!IsBlack(pNode))
        pNode->mColor = eBlack;  // NOLINT(clang-analyzer-core.NullDereference): null is black
    if (mRoot)
        mRoot->mColor = eBlack;
}

// The sibling is black and has a red child. Brings that child to the outer side, then turns the parent down over the
// short way.
template <typename Data, typename Compare, typename Allocator>
void KRedBlackTree<Data, Compare, Allocator>::BorrowFromSibling(RecordType* pParent, RecordType* pNode,
                                                                RecordType* pSibling) {
    const bool lLeft = pNode == pParent->mLeftChild;
    if (pSibling && IsBlack(pSibling)) {
        RecordType* lInner = lLeft ? pSibling->mLeftChild : pSibling->mRightChild;
        RecordType* lOuter = lLeft ? pSibling->mRightChild : pSibling->mLeftChild;
        if (!IsBlack(lInner) && IsBlack(lOuter)) {
            pSibling->mColor = eRed;
            lInner->mColor = eBlack;
            if (lLeft)
                RightRotate(pSibling);
            else
                LeftRotate(pSibling);
        }
    }
    RecordType* lSibling = Sibling(pParent, pNode);
    LYRSDK_CHECK(lSibling != nullptr, sgMapPath, 1396, "lSibling != 0");
    if (!lSibling)
        return;
    lSibling->mColor = pParent->mColor;
    pParent->mColor = eBlack;
    RecordType* lOuter = lLeft ? lSibling->mRightChild : lSibling->mLeftChild;
    if (lOuter)
        lOuter->mColor = eBlack;
    if (lLeft)
        LeftRotate(pParent);
    else
        RightRotate(pParent);
}

}  // namespace lyrsdk
