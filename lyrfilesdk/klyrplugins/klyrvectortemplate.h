#pragma once

// Vectors of 2, 3 and 4 elements: a plain array mData and nothing else. The 4x4 matrix is a 4-vector of 4-vectors, row
// by row, indexed [row][column]. Default construction gives zeros; {1, 2, 3} gives elements. Indices are not checked.
//
// A 4-vector may be looked at as the 3-vector of its first three elements, in place. The classes are therefore allowed
// to alias each other.

#include <cstring>
#include <type_traits>

namespace lyrsdk {
namespace detail {

// Moves bytes, so that a NaN keeps its payload whatever registers the compiler would have used.
template <typename T>
void CopyElement(T& pDst, const T& pSrc) {
    static_assert(std::is_trivially_copyable_v<T>, "elements are copied by their bytes");
    std::memmove(&pDst, &pSrc, sizeof(T));
}

}  // namespace detail

// Two elements.
template <typename T>
struct __attribute__((may_alias)) lyrVectorTemplate2 {
    // The element at an index that is not checked.
    T& operator[](int pIndex) { return mData[pIndex]; }
    const T& operator[](int pIndex) const { return mData[pIndex]; }

    // Sets both elements.
    lyrVectorTemplate2& operator=(const T& pScalar) {
        T lScalar;
        detail::CopyElement(lScalar, pScalar);
        for (T& lElement : mData)
            detail::CopyElement(lElement, lScalar);
        return *this;
    }

    // Equal when all elements are.
    friend bool operator==(const lyrVectorTemplate2& pLeft, const lyrVectorTemplate2& pRight) {
        return pLeft[0] == pRight[0] && pLeft[1] == pRight[1];
    }
    friend bool operator!=(const lyrVectorTemplate2& pLeft, const lyrVectorTemplate2& pRight) {
        return !(pLeft == pRight);
    }

    // The elements.
    T mData[2] = {};
};

// Three elements.
template <typename T>
struct __attribute__((may_alias)) lyrVectorTemplate3 {
    // The element at an index that is not checked.
    T& operator[](int pIndex) { return mData[pIndex]; }
    const T& operator[](int pIndex) const { return mData[pIndex]; }

    // Sets all three elements.
    lyrVectorTemplate3& operator=(const T& pScalar) {
        T lScalar;
        detail::CopyElement(lScalar, pScalar);
        for (T& lElement : mData)
            detail::CopyElement(lElement, lScalar);
        return *this;
    }

    // Equal when all elements are.
    friend bool operator==(const lyrVectorTemplate3& pLeft, const lyrVectorTemplate3& pRight) {
        return pLeft[0] == pRight[0] && pLeft[1] == pRight[1] && pLeft[2] == pRight[2];
    }
    friend bool operator!=(const lyrVectorTemplate3& pLeft, const lyrVectorTemplate3& pRight) {
        return !(pLeft == pRight);
    }

    // The elements.
    T mData[3] = {};
};

// Four elements.
template <typename T>
struct __attribute__((may_alias)) lyrVectorTemplate4 {
    // The element at an index that is not checked.
    T& operator[](int pIndex) { return mData[pIndex]; }
    const T& operator[](int pIndex) const { return mData[pIndex]; }

    // Sets elements 0 to 2; element 3 keeps its value. The 3-vector may lie inside this vector.
    lyrVectorTemplate4& operator=(const lyrVectorTemplate3<T>& pVector) {
        static_assert(std::is_trivially_copyable_v<T>, "elements are copied by their bytes");
        std::memmove(mData, pVector.mData, sizeof(pVector.mData));
        return *this;
    }

    // Elements 0 to 2, in place. Writable from a constant vector too; writing is right only when the vector itself was
    // not defined constant.
    operator lyrVectorTemplate3<T>&() const {
        return *reinterpret_cast<lyrVectorTemplate3<T>*>(const_cast<lyrVectorTemplate4*>(this));
    }

    // Equal when all elements are.
    friend bool operator==(const lyrVectorTemplate4& pLeft, const lyrVectorTemplate4& pRight) {
        return pLeft[0] == pRight[0] && pLeft[1] == pRight[1] && pLeft[2] == pRight[2] && pLeft[3] == pRight[3];
    }
    friend bool operator!=(const lyrVectorTemplate4& pLeft, const lyrVectorTemplate4& pRight) {
        return !(pLeft == pRight);
    }

    // The elements.
    T mData[4] = {};
};

using lyrDouble2 = lyrVectorTemplate2<double>;                       // what eDOUBLE2 stores
using lyrDouble3 = lyrVectorTemplate3<double>;                       // what eDOUBLE3 stores
using lyrDouble4 = lyrVectorTemplate4<double>;                       // what eDOUBLE4 stores
using lyrDouble44 = lyrVectorTemplate4<lyrVectorTemplate4<double>>;  // what eDOUBLE44 stores

}  // namespace lyrsdk
