#pragma once

// The ordered map, and the functors that order its keys.
//
// A map is one red-black tree of key-value records and forwards to it; kredblacktree.h has the record's layout, the
// costs, and what is reported. Keys are distinct and walked in increasing order. Inserting a key that is there changes
// nothing. Records keep their address until they are removed or the owner of the map compacts it; what pointer values
// and pointers in keys point at belongs to the caller.
//
// Failure values: null for a record that is not there, 0 for nothing removed, (null, false) for an insertion without
// memory, which leaves the map as it was.

#include <cstring>
#include <type_traits>

#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/components/kbaselib/klib/kcontainerallocators.h"
#include "lyrfilesdk/components/kbaselib/klib/kpair.h"
#include "lyrfilesdk/components/kbaselib/klib/kredblacktree.h"
#include "lyrfilesdk/components/kbaselib/klib/kstring.h"

namespace lyrsdk {

// The functors return a negative number, 0 or a positive number as the first key sorts before, with or behind the
// second.

// By operator<.
template <typename T>
struct KLyrLessCompare {
    // A tree may leave out comparisons whose result it knows.
    static constexpr bool kIsOperatorLess = std::is_arithmetic_v<T>;

    // The order of two keys.
    int operator()(const T& pLeft, const T& pRight) const {
        if (pLeft < pRight)
            return -1;
        return pRight < pLeft ? 1 : 0;
    }
};

// By parent id, then by the bytes of the name. A null name counts as empty.
struct KNameMapCompare {
    // Parent id and name.
    using KeyType = KPair<int, const char*>;

    // The order of two keys.
    int operator()(const KeyType& pLeft, const KeyType& pRight) const {
        if (pLeft.mFirst != pRight.mFirst)
            return pLeft.mFirst < pRight.mFirst ? -1 : 1;
        return std::strcmp(pLeft.mSecond ? pLeft.mSecond : "", pRight.mSecond ? pRight.mSecond : "");
    }
};

// By the bytes of the text.
struct KStringCompare {
    // The order of two keys.
    int operator()(const KString& pLeft, const KString& pRight) const { return lyrCompareText(pLeft, pRight); }
};

// A place in a tree: one record pointer, null behind the last record. It stays valid as long as its record's address.
template <typename RecordType>
class RedBack_IteratorType {
public:
    RedBack_IteratorType() = default;  // the end position
    // At a record; null is the end position.
    explicit RedBack_IteratorType(RecordType* pRecord) : mRecord(pRecord) {}

    // Moves to the record with the next larger key. The end position is reported, and stays.
    RedBack_IteratorType& operator++() {
        LYRSDK_CHECK(mRecord != nullptr, sgMapPath, 96, "mRecord != NULL");
        if (mRecord)
            mRecord = mRecord->Successor();
        return *this;
    }
    RedBack_IteratorType operator++(int) {
        RedBack_IteratorType lBefore(*this);
        ++*this;
        return lBefore;
    }
    // The record; at the end position null, which is reported.
    RecordType* operator->() const {
        LYRSDK_CHECK(mRecord != nullptr, sgMapPath, 148, "mRecord");
        return mRecord;
    }
    // Equal at the same record, and at the end.
    bool operator!=(const RedBack_IteratorType& pOther) const { return mRecord != pOther.mRecord; }
    bool operator==(const RedBack_IteratorType& pOther) const { return mRecord == pOther.mRecord; }

private:
    RecordType* mRecord = nullptr;
};

template <typename Key, typename Value, typename Compare, typename Allocator>
class KMap {
    static_assert(std::is_trivially_copyable_v<Value>, "a value that owns memory could be copied without getting any");

public:
    // What a record holds.
    class KKeyValuePair : public KPair<const Key, Value> {
    public:
        // Holds copies of both.
        KKeyValuePair(const Key& pKey, const Value& pValue) : KPair<const Key, Value>(pKey, pValue) {}

        // The key, which never changes.
        const Key& GetKey() const { return this->mFirst; }
        // The value.
        const Value& GetValue() const { return this->mSecond; }
        Value& GetValue() { return this->mSecond; }
    };

    // The tree below the map.
    using TreeType = KRedBlackTree<KKeyValuePair, Compare, Allocator>;
    // A record of the map: a node of the tree.
    using RecordType = typename TreeType::RecordType;
    // A position in a map.
    using IteratorType = RedBack_IteratorType<RecordType>;
    // A position in a map that is only read.
    using ConstIteratorType = RedBack_IteratorType<const RecordType>;

    KMap() = default;  // empty
    ~KMap() { Clear(); }
    KMap(const KMap&) = delete;
    KMap& operator=(const KMap&) = delete;

    // Has the allocator keep memory for pCount records in stock. False when there is no memory.
    bool Reserve(unsigned int pCount) { return mTree.Reserve(pCount); }
    // The number of records.
    int GetSize() const { return mTree.GetSize(); }

    // How many records there was memory for so far. A map on a KHungryAllocator keeps the memory of the records that
    // were removed until it is compacted, and these count too.
    std::size_t GetReservedCount() const { return mTree.GetReservedCount(); }
    // Whether one more record needs no memory. On a KHungryAllocator only, as are GetReservedCount and Compact.
    bool HasRoom() const { return mTree.HasRoom(); }
    // Moves all records to new memory that holds them and pMore others, and gives the old memory back. Every record has
    // another address from then on. False, and nothing changes, when there is no memory. Linear.
    bool Compact(unsigned int pMore) { return mTree.Compact(pMore); }

    // The record with the key, and true when this call made it; a record that was there keeps its value. O(log n). Of
    // numbers on a KHungryAllocator, inserting behind all others is constant on average.
    KPair<RecordType*, bool> Insert(const Key& pKey, const Value& pValue) { return mTree.Insert(pKey, pValue); }
    // 1 when a record was removed, 0 when there is none with the key. O(log n).
    int Remove(const Key& pKey) { return mTree.Remove(pKey) ? 1 : 0; }
    // Removes every record. A KHungryAllocator keeps the memory, and the records are not even visited: constant.
    // Otherwise linear.
    void Clear() { mTree.Clear(); }

    // The record with the key, or null. O(log n).
    RecordType* Find(const Key& pKey) { return mTree.Find(pKey); }
    const RecordType* Find(const Key& pKey) const { return mTree.Find(pKey); }
    // The record with the smallest key greater than pKey, or null. O(log n).
    RecordType* UpperBound(const Key& pKey) { return mTree.UpperBound(pKey); }
    const RecordType* UpperBound(const Key& pKey) const { return mTree.UpperBound(pKey); }
    // The records with the smallest and the largest key; null when the map is empty. O(log n).
    RecordType* Minimum() { return mTree.Minimum(); }
    const RecordType* Minimum() const { return mTree.Minimum(); }
    RecordType* Maximum() { return mTree.Maximum(); }
    const RecordType* Maximum() const { return mTree.Maximum(); }

    // The record with the smallest key (Begin), and the position behind the largest (End).
    IteratorType Begin() { return IteratorType(Minimum()); }
    ConstIteratorType Begin() const { return ConstIteratorType(Minimum()); }
    IteratorType End() { return IteratorType(nullptr); }
    ConstIteratorType End() const { return ConstIteratorType(nullptr); }

private:
    TreeType mTree;
};

}  // namespace lyrsdk
