#include "lyrfilesdk/lyrkit/klyrkititems.h"

#include <cstddef>
#include <cstring>

namespace lyrsdk {
namespace detail {

bool PagesBelow::EnterFrom(KLyrPropertyPage* pAbove, int pIndex) {
    const KArrayTemplate<KLyrPropertyPage*>& lInstances = pAbove->GetInstances();
    for (int i = pIndex; i < lInstances.GetCount(); ++i) {
        if (lInstances.GetAt(i) != mLeftOut) {
            mPage = lInstances.GetAt(i);
            mIndex = i;
            return true;
        }
    }
    return false;
}

void PagesBelow::Next() {
    if (EnterFrom(mPage, 0))
        return;
    while (mPage != mTop) {
        KLyrPropertyPage* lAbove = mPage->GetInstanceOf();
        if (EnterFrom(lAbove, mIndex + 1))
            return;
        mPage = lAbove;
        mIndex = mPage == mTop ? 0 : mPage->GetInstanceOf()->GetInstances().Find(mPage);
    }
    mPage = nullptr;
}

int NextBelow(const KLyrPropertyPage* pPage, int pFrom, int pId) {
    return pFrom == 0 ? pPage->GetMinimumPropertyIdAndEntry(pId) : pPage->GetNextDescendent(pFrom, pId);
}

namespace {

// A value on the stack.
class Scratch {
public:
    // cppcheck-suppress uninitMemberVar ; the bytes are the value's, which constructs itself in them
    explicit Scratch(ELyrType pType) : mType(pType) { lyrConstruct(pType, mBytes); }
    ~Scratch() { lyrDestruct(mType, mBytes); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    void* Memory() { return mBytes; }
    template <typename T>
    const T& As() const {
        return *reinterpret_cast<const T*>(mBytes);
    }

private:
    alignas(std::max_align_t) unsigned char mBytes[kLyrMaxValueSize];
    ELyrType mType;
};

template <typename T>
bool SameBytes(T pLeft, T pRight) {
    return std::memcmp(&pLeft, &pRight, sizeof pLeft) == 0;
}

bool SameDistance(const lyrDistance& pLeft, const lyrDistance& pRight) {
    return SameBytes(pLeft.value(), pRight.value()) &&
           SameBytes(pLeft.unit().GetScaleFactor(), pRight.unit().GetScaleFactor()) &&
           SameBytes(pLeft.unit().GetMultiplier(), pRight.unit().GetMultiplier());
}

// Zeroes of both signs are equal, and a NaN is not even equal to itself; both show in what a value prints.
bool SameBits(Scratch& pLeft, Scratch& pRight, ELyrType pType) {
    switch (pType) {
        case eFLOAT1:
        case eDOUBLE1:
        case eDOUBLE2:
        case eDOUBLE3:
        case eDOUBLE4:
        case eDOUBLE44:
            return std::memcmp(pLeft.Memory(), pRight.Memory(), lyrStorageSize(pType)) == 0;
        case eDISTANCE:
            return SameDistance(pLeft.As<lyrDistance>(), pRight.As<lyrDistance>());
        default:
            return lyrCompare(pLeft.Memory(), pRight.Memory(), pType);
    }
}

// pRead(item, memory) reads a value of the type.
template <typename Item, typename Read>
bool ReadAlike(const Item* pLeft, const Item* pRight, ELyrType pType, Read pRead) {
    if (!lyrHoldsValue(pType))
        return true;
    Scratch lLeft(pType);
    Scratch lRight(pType);
    return pRead(pLeft, lLeft.Memory()) && pRead(pRight, lRight.Memory()) && SameBits(lLeft, lRight, pType);
}

bool SameText(const char* pLeft, const char* pRight) {
    return pLeft == pRight || (pLeft && pRight && std::strcmp(pLeft, pRight) == 0);
}

bool SameBounds(const KLyrPropertyInfo* pLeft, const KLyrPropertyInfo* pRight) {
    const ELyrType lType = pLeft->GetType();
    for (int i = 0; i < KLyrPropertyInfo::eValueCount; ++i) {
        const auto lIndex = static_cast<KLyrPropertyInfo::eValueIndex>(i);
        if (pLeft->HasMinMax(lIndex) != pRight->HasMinMax(lIndex))
            return false;
        const auto lRead = [&](const KLyrPropertyInfo* pInfo, void* pTo) {
            return pInfo->GetMinMax(lIndex, pTo, lType);
        };
        if (pLeft->HasMinMax(lIndex) && !ReadAlike(pLeft, pRight, lType, lRead))
            return false;
    }
    return true;
}

bool SameEnumeration(const KLyrPropertyInfo* pLeft, const KLyrPropertyInfo* pRight) {
    if (pLeft->GetEnumCount() != pRight->GetEnumCount())
        return false;
    int i = 0;
    while (i < pLeft->GetEnumCount() && SameText(pLeft->GetEnumValue(i), pRight->GetEnumValue(i)))
        ++i;
    return i == pLeft->GetEnumCount();
}

}  // namespace

bool AreAlike(const KLyrPropertyValue* pLeft, const KLyrPropertyValue* pRight) {
    if (pLeft == pRight)
        return true;
    if (!pLeft || !pRight || pLeft->GetType() != pRight->GetType())
        return false;
    const ELyrType lType = pLeft->GetType();
    return ReadAlike(pLeft, pRight, lType,
                     [lType](const KLyrPropertyValue* pItem, void* pTo) { return pItem->Get(pTo, lType); });
}

bool AreAlike(const KLyrPropertyInfo* pLeft, const KLyrPropertyInfo* pRight) {
    if (pLeft == pRight)
        return true;
    return pLeft && pRight && SameText(pLeft->GetNameText(), pRight->GetNameText()) &&
           pLeft->GetType() == pRight->GetType() && pLeft->GetTypeInfo() == pRight->GetTypeInfo() &&
           SameText(pLeft->GetLabel(), pRight->GetLabel()) && pLeft->GetUserTag() == pRight->GetUserTag() &&
           pLeft->GetUserData() == pRight->GetUserData() && SameBounds(pLeft, pRight) && SameEnumeration(pLeft, pRight);
}

}  // namespace detail
}  // namespace lyrsdk
