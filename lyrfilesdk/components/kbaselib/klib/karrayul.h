#pragma once

// Growable arrays of small plain elements: pointers, ids, type codes.
//
// An array is a count and one heap block, null while nothing was ever inserted:
//
//     mBaseArray ---v
//     [ mBlockCount | element 0 | element 1 | ... ]
//       header: GetHeaderOffset() bytes     room for mBlockCount * 4 elements
//
// The room doubles when it runs out and never shrinks before Clear, so that n appended elements cost n in all. Elements
// are moved as bytes.
//
// Invalid indexes are absorbed: reading gives element 0, or zero when there is no block; writing and removing do
// nothing. InsertAt returns -1, and changes nothing, for a negative index and when there is no memory.

#include <type_traits>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"

namespace lyrsdk {

// The untyped base. Elements are pElementSize bytes, 4 or 8.
template <unsigned int pElementSize>
class LYRSDK_API KBaseArrayFast {
    static_assert(pElementSize == 4 || pElementSize == 8, "elements are 4 or 8 bytes");

public:
    KBaseArrayFast() = default;  // empty
    ~KBaseArrayFast() { Clear(); }
    KBaseArrayFast(const KBaseArrayFast&) = delete;
    KBaseArrayFast& operator=(const KBaseArrayFast&) = delete;

    // The number of elements.
    int GetArrayCount() const { return mArrayCount; }
    // The same.
    int GetCount() const { return mArrayCount; }
    // The room, in blocks of 4 elements; 0 without a block.
    int GetBlockCount() const;
    // Sets the room when there is a block, and does nothing when there is none. The block grows where it has to;
    // without memory, or beyond the largest size, nothing changes.
    void SetBlockCount(int pBlockCount);
    // Bytes in front of element 0. Keeps the elements aligned to their size.
    static constexpr int GetHeaderOffset() { return static_cast<int>(pElementSize); }

    // True for an index that has an element.
    bool ValidateIndex(int pIndex) const { return pIndex >= 0 && pIndex < mArrayCount; }

    // Copies the element's bytes from pItem, which may lie in this array, to index pIndex and moves those from there on
    // up. An index past the end appends. Returns the element's index; -1 without memory and for a negative index or a
    // null pItem, and nothing has changed then. Linear in the elements moved.
    int InsertAt(int pIndex, const void* pItem);
    // Moves the elements behind the index down over it. Linear in the elements moved.
    void RemoveAt(int pIndex);
    // Removes every element and frees the block.
    void Clear();
    // Exchanges the contents of two arrays.
    void Swap(KBaseArrayFast& pOther);

protected:
    // The address of element 0; null without a block.
    char* Elements() const { return mBaseArray ? mBaseArray + GetHeaderOffset() : nullptr; }

private:
    bool ResizeBlock(int pBlockCount);

    int mArrayCount = 0;
    char* mBaseArray = nullptr;
};

extern template class KBaseArrayFast<4u>;
extern template class KBaseArrayFast<8u>;

static_assert(sizeof(void*) != 4 || sizeof(KBaseArrayFast<4u>) == 8, "count and block");

// An array of T. Adds no fields.
template <typename T>
class KArrayTemplate : public KBaseArrayFast<sizeof(T)> {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= sizeof(T), "elements are moved as bytes");
    using Base = KBaseArrayFast<sizeof(T)>;

public:
    // The first element's address; null without a block. Valid until the array is changed.
    T* GetArray() const { return reinterpret_cast<T*>(Base::Elements()); }

    // The element. For an invalid index element 0, or zero without a block.
    T GetAt(int pIndex) const { return (*this)[pIndex]; }
    // Likewise. Writing to the zero that stands for a missing block has no effect.
    T& operator[](int pIndex) { return *At(pIndex); }
    const T& operator[](int pIndex) const { return *At(pIndex); }
    // Does nothing for an invalid index.
    void SetAt(int pIndex, T pItem) {
        if (Base::ValidateIndex(pIndex))
            GetArray()[pIndex] = pItem;
    }

    using Base::InsertAt;
    // Inserts an element in front of the one at pIndex; past the end appends. Its index, or -1 without memory and for a
    // negative index.
    int InsertAt(int pIndex, T pItem) { return Base::InsertAt(pIndex, static_cast<const void*>(&pItem)); }
    // Appends. The element's index, or -1 without memory. Constant on average.
    int Add(T pItem) { return InsertAt(Base::GetArrayCount(), pItem); }
    // Returns what GetAt gives for the index, and removes the element if there is one.
    T RemoveAt(int pIndex) {
        const T lItem = GetAt(pIndex);
        Base::RemoveAt(pIndex);
        return lItem;
    }

    // The first index greater than pAfter whose element equals pItem, or -1. Linear.
    int FindAfter(int pAfter, T pItem) const {
        const T* lArray = GetArray();
        for (int lIndex = pAfter < 0 ? -1 : pAfter; lIndex < Base::GetArrayCount() - 1;)
            if (lArray[++lIndex] == pItem)
                return lIndex;
        return -1;
    }
    // The first index whose element equals pItem, or -1. Linear.
    int Find(T pItem) const { return FindAfter(-1, pItem); }

private:
    T* At(int pIndex) const {
        if (T* lArray = GetArray())
            return lArray + (Base::ValidateIndex(pIndex) ? pIndex : 0);
        static thread_local T sZero;
        sZero = T();
        return &sZero;
    }
};

}  // namespace lyrsdk
