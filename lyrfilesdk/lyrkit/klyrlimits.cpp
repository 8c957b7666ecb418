#include "lyrfilesdk/lyrkit/klyrlimits.h"

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "lyrfilesdk/lyrkit/klyrconversionverdict.h"

namespace lyrsdk {
namespace {

// Holds every integer and double as it is.
using Wide = long double;
static_assert(LDBL_MANT_DIG >= 64, "64-bit integers are compared with doubles");

constexpr int kMostElements = 16;

// A value as numbers in the order of values.
struct Elements {
    int mCount = 0;
    Wide mAt[kMostElements] = {};
};

bool IsNumber(ELyrType pType) {
    return (pType >= eBYTE1 && pType <= eDOUBLE1) || pType == eENUM;
}

bool IsVector(ELyrType pType) {
    return pType >= eDOUBLE2 && pType <= eDOUBLE44;
}

bool HasOrder(ELyrType pType) {
    return IsNumber(pType) || IsVector(pType) || pType == eTIME || pType == eDISTANCE || pType == eDATETIME;
}

// clang-format off
//
// The codes of numbers and what each is read and written as, but for eDOUBLE1, which the elements of vectors share.
#define LYRSDK_NUMBER_LIST(pNumber)          \
    pNumber(eBYTE1,      signed char)        \
    pNumber(eUBYTE1,     unsigned char)      \
    pNumber(eSHORT1,     short)              \
    pNumber(eUSHORT1,    unsigned short)     \
    pNumber(eINTEGER1,   int)                \
    pNumber(eUINTEGER1,  unsigned int)       \
    pNumber(eLONGLONG1,  long long)          \
    pNumber(eULONGLONG1, unsigned long long) \
    pNumber(eHALFFLOAT,  lyrHalfFloat)       \
    pNumber(eBOOL1,      bool)               \
    pNumber(eENUM,       int)                \
    pNumber(eFLOAT1,     float)
// clang-format on

template <typename T>
Wide NumberOf(const void* pValue) {
    if constexpr (std::is_same_v<T, lyrHalfFloat>)
        return static_cast<const lyrHalfFloat*>(pValue)->value();
    else
        return *static_cast<const T*>(pValue);
}

// Fields of different lengths in one number; only the order counts.
Wide NumberOf(const lyrDateTime& pDate) {
    const long long lDay = (pDate.GetYear() * 12ll + pDate.GetMonth()) * 31 + pDate.GetDay();
    const long long lSecond = ((lDay * 24 + pDate.GetHour()) * 60 + pDate.GetMinute()) * 60 + pDate.GetSecond();
    return static_cast<Wide>(lSecond * 1000 + pDate.GetMillisecond());
}

Wide FirstNumberOf(ELyrType pType, const void* pValue) {
    switch (pType) {
#define LYRSDK_NUMBER(pName, pStored) \
    case pName:                       \
        return NumberOf<pStored>(pValue);
        LYRSDK_NUMBER_LIST(LYRSDK_NUMBER)
#undef LYRSDK_NUMBER
        case eTIME:
            return static_cast<Wide>(static_cast<const KTime*>(pValue)->Get());
        case eDISTANCE:
            return static_cast<const lyrDistance*>(pValue)->internalValue();
        case eDATETIME:
            return NumberOf(*static_cast<const lyrDateTime*>(pValue));
        default:
            return NumberOf<double>(pValue);
    }
}

// Of a type with an order.
Elements ElementsOf(ELyrType pType, const void* pValue) {
    Elements lElements;
    lElements.mCount = 1;
    if (!IsVector(pType)) {
        lElements.mAt[0] = FirstNumberOf(pType, pValue);
        return lElements;
    }
    lElements.mCount = static_cast<int>(lyrStorageSize(pType) / sizeof(double));
    for (int i = 0; i < lElements.mCount; ++i) {
        double lElement;
        std::memcpy(&lElement, static_cast<const char*>(pValue) + sizeof(double) * static_cast<std::size_t>(i),
                    sizeof(double));
        lElements.mAt[i] = lElement;
    }
    return lElements;
}

// Memory for a value of a type with an order: they need no destructor.
struct Scratch {
    explicit Scratch(ELyrType pType) { lyrConstruct(pType, mBytes); }

    alignas(std::max_align_t) unsigned char mBytes[kLyrMaxValueSize];
};

// --- limits --------------------------------------------------------------------------------------------------------

struct Interval {
    Wide mMin = -std::numeric_limits<Wide>::infinity();
    Wide mMax = std::numeric_limits<Wide>::infinity();
    bool mIsBounded = false;

    // No number is inside when those of several elements leave no place between them.
    bool Has(Wide pValue) const { return pValue >= mMin && pValue <= mMax; }
    bool LiesApartFrom(const Interval& pOther) const { return mMin > pOther.mMax || mMax < pOther.mMin; }

    // A limit that is not a number fails both comparisons.
    void Narrow(Wide pMin, Wide pMax) {
        mIsBounded = mIsBounded || !std::isnan(pMin) || !std::isnan(pMax);
        mMin = pMin > mMin ? pMin : mMin;
        mMax = pMax < mMax ? pMax : mMax;
    }
    void Clamp(Wide& pValue, bool& pIsAtMin) const {
        if (pValue < mMin || pValue > mMax)
            pIsAtMin = pValue < mMin && mMin <= mMax;
        pValue = pValue < mMin ? mMin : pValue;
        pValue = pValue > mMax ? mMax : pValue;
    }
};

// The limits of a property, the hard or the soft ones.
class LimitPair {
public:
    LimitPair(const KLyrPropertyHandle& pHandle, ELyrType pType, bool pSoft)
        : mHandle(pHandle), mType(pType), mSoft(pSoft) {
        if (!HasOrder(pType))
            return;
        Read(true, mMin);
        Read(false, mMax);
    }

    bool Has(bool pMin) const {
        if (mSoft)
            return pMin ? mHandle.HasSoftMin() : mHandle.HasSoftMax();
        return pMin ? mHandle.HasMin() : mHandle.HasMax();
    }
    bool Get(bool pMin, void* pValue) const {
        if (mSoft)
            return pMin ? mHandle.GetSoftMin(pValue, mType) : mHandle.GetSoftMax(pValue, mType);
        return pMin ? mHandle.GetMin(pValue, mType) : mHandle.GetMax(pValue, mType);
    }

    // What element pElement has to keep to; with a number for all of a vector, everything.
    Interval For(int pElement, bool pForAll) const {
        Interval lInterval;
        const int lCount = mMin.mCount > mMax.mCount ? mMin.mCount : mMax.mCount;
        for (int i = pForAll ? 0 : pElement; i < (pForAll ? lCount : pElement + 1); ++i) {
            const Wide lMin = At(mMin, i);
            const Wide lMax = At(mMax, i);
            lInterval.Narrow(lMin > lMax ? lMax : lMin, lMax);
        }
        return lInterval;
    }

private:
    static Wide At(const Elements& pLimit, int pElement) {
        return pElement < pLimit.mCount ? pLimit.mAt[pElement] : std::numeric_limits<Wide>::quiet_NaN();
    }
    void Read(bool pMin, Elements& pLimit) const {
        Scratch lScratch(mType);
        if (Has(pMin) && Get(pMin, lScratch.mBytes))
            pLimit = ElementsOf(mType, lScratch.mBytes);
    }

    const KLyrPropertyHandle& mHandle;
    ELyrType mType;
    bool mSoft;
    Elements mMin;
    Elements mMax;
};

// --- values --------------------------------------------------------------------------------------------------------

// A value beside a property's limits.
class Candidate {
public:
    Candidate(const KLyrPropertyHandle& pHandle, const void* pValue, ELyrType pValueType, ELyrLimits pLimits)
        : mType(pHandle.GetType()),
          mValueType(pValueType),
          mLimits(pLimits),
          mHard(pHandle, mType, false),
          mSoft(pHandle, mType, true) {
        const bool lIsAsked = pLimits == eLyrHardLimits || pLimits == eLyrSoftLimits || pLimits == eLyrAllLimits;
        mIsRefused = !lIsAsked || !pValue || !lyrHoldsValue(mType) || lyrConversionIsRefused(pValueType, mType) ||
                     (HasOrder(mType) ? !Read(pValue) : HasLimits());
    }

    bool IsRefused() const { return mIsRefused; }
    int Count() const { return mElements.mCount; }
    Wide At(int pElement) const { return mElements.mAt[pElement]; }
    // Whether the value's own numbers are compared, so that others can be put in their place.
    bool IsComparedAsItIs() const { return mIsComparedAsItIs; }

    bool Asks(bool pSoft) const { return (mLimits & (pSoft ? eLyrSoftLimits : eLyrHardLimits)) != 0; }
    Interval For(bool pSoft, int pElement) const {
        const bool lForAll = IsNumber(mValueType) && IsVector(mType);
        return (pSoft ? mSoft : mHard).For(pElement, lForAll);
    }
    // Copies the limit that the value went to; for the types whose numbers stand for something else.
    bool CopyLimit(Wide pLimit, void* pValue) const {
        Scratch lScratch(mType);
        for (const LimitPair* lPair : {&mHard, &mSoft})
            for (const bool lMin : {true, false})
                if (lPair->Has(lMin) && lPair->Get(lMin, lScratch.mBytes) &&
                    ElementsOf(mType, lScratch.mBytes).mAt[0] == pLimit)
                    return lyrCopy(pValue, mValueType, lScratch.mBytes, mType);
        return false;  // LCOV_EXCL_LINE: it went to one of them
    }

private:
    bool HasLimits() const {
        for (const bool lMin : {true, false})
            if ((Asks(false) && mHard.Has(lMin)) || (Asks(true) && mSoft.Has(lMin)))
                return true;
        return false;
    }
    bool Read(const void* pValue) {
        const bool lIsNumber = IsNumber(mValueType) && (IsNumber(mType) || IsVector(mType));
        const bool lIsVector = IsVector(mValueType) && (IsNumber(mType) || IsVector(mType));
        mIsComparedAsItIs = lIsNumber || lIsVector || mValueType == mType;
        if (mIsComparedAsItIs) {
            mElements = ElementsOf(mValueType, pValue);
        } else {
            Scratch lScratch(mType);
            if (!lyrCopy(lScratch.mBytes, mType, pValue, mValueType))
                return false;
            mElements = ElementsOf(mType, lScratch.mBytes);
        }
        const int lMost = lIsVector ? static_cast<int>(IsNumber(mType) ? 1 : lyrStorageSize(mType) / sizeof(double))
                                    : mElements.mCount;
        mElements.mCount = mElements.mCount < lMost ? mElements.mCount : lMost;
        return true;
    }

    ELyrType mType;
    ELyrType mValueType;
    ELyrLimits mLimits;
    bool mIsComparedAsItIs = false;
    bool mIsRefused = true;
    LimitPair mHard;
    LimitPair mSoft;
    Elements mElements;
};

ELyrLimitVerdict Judge(Wide pValue, const Interval& pInterval, bool pSoft) {
    if (pInterval.mIsBounded && std::isnan(pValue))
        return eLyrIsNotANumber;
    if (pValue > pInterval.mMax)
        return pSoft ? eLyrAboveSoftMax : eLyrAboveMax;
    if (pValue < pInterval.mMin)
        return pSoft ? eLyrBelowSoftMin : eLyrBelowMin;
    return eLyrWithinLimits;
}

// --- clamping ------------------------------------------------------------------------------------------------------

// The T nearest to pLimit on its inner side, which is above a minimum. False when there is none.
template <typename T>
bool PutInside(void* pValue, Wide pLimit, bool pIsMin) {
    const auto lIsInside = [&](Wide pNumber) { return pIsMin ? pNumber >= pLimit : pNumber <= pLimit; };
    T lNumber;
    if constexpr (std::is_integral_v<T>) {
        const Wide lWhole = pIsMin ? std::ceil(pLimit) : std::floor(pLimit);
        if (!(lWhole >= static_cast<Wide>(std::numeric_limits<T>::min()) &&
              lWhole <= static_cast<Wide>(std::numeric_limits<T>::max())))
            return false;
        lNumber = static_cast<T>(lWhole);
    } else {
        constexpr T lInfinity = std::numeric_limits<T>::infinity();
        constexpr T lMost = std::numeric_limits<T>::max();
        if (pLimit > static_cast<Wide>(lMost))
            lNumber = pIsMin ? lInfinity : lMost;
        else if (pLimit < -static_cast<Wide>(lMost))
            lNumber = pIsMin ? -lMost : -lInfinity;
        else
            lNumber = static_cast<T>(pLimit);
        if (!lIsInside(static_cast<Wide>(lNumber)))
            lNumber = std::nextafter(lNumber, pIsMin ? lInfinity : -lInfinity);
    }
    std::memcpy(pValue, &lNumber, sizeof(T));
    return lIsInside(static_cast<Wide>(lNumber));
}

// Halves are cut towards zero, and the least ones are far off; so the place among all of them is looked for. Their
// numbers here are those of their values' order, with both infinities.
template <>
bool PutInside<lyrHalfFloat>(void* pValue, Wide pLimit, bool pIsMin) {
    constexpr int lInfinity = 0x7C00;
    const auto lAt = [](int pPlace) {
        return lyrHalfFloat::FromBits(static_cast<unsigned short>(pPlace < 0 ? 0x8000 - pPlace : pPlace));
    };
    int lLow = -lInfinity - 1;
    int lHigh = lInfinity + 1;
    while (lHigh - lLow > 1) {
        const int lMiddle = lLow + (lHigh - lLow) / 2;
        const Wide lNumber = lAt(lMiddle).value();
        const bool lIsBehind = pIsMin ? lNumber >= pLimit : lNumber > pLimit;
        (lIsBehind ? lHigh : lLow) = lMiddle;
    }
    const int lPlace = pIsMin ? lHigh : lLow;
    const lyrHalfFloat lHalf = lAt(lPlace);
    std::memcpy(pValue, static_cast<const void*>(&lHalf), sizeof(lHalf));
    return true;
}

bool PutNumber(ELyrType pType, void* pValue, Wide pLimit, bool pIsMin) {
    switch (pType) {
#define LYRSDK_NUMBER(pName, pStored) \
    case pName:                       \
        return PutInside<pStored>(pValue, pLimit, pIsMin);
        LYRSDK_NUMBER_LIST(LYRSDK_NUMBER)
#undef LYRSDK_NUMBER
        default:
            return PutInside<double>(pValue, pLimit, pIsMin);
    }
}

bool IsBounded(const Candidate& pCandidate, int pElement) {
    for (const bool lSoft : {true, false})
        if (pCandidate.Asks(lSoft) && pCandidate.For(lSoft, pElement).mIsBounded)
            return true;
    return false;
}

// Where a number goes, and whether that is up to a minimum.
struct Place {
    Wide mNumber;
    bool mIsAtMin = false;
};

Place Clamped(const Candidate& pCandidate, int pElement) {
    Place lPlace{pCandidate.At(pElement)};
    for (const bool lSoft : {true, false})
        if (pCandidate.Asks(lSoft))
            pCandidate.For(lSoft, pElement).Clamp(lPlace.mNumber, lPlace.mIsAtMin);
    return lPlace;
}

// Of limits that lie apart the hard ones count.
bool IsInside(const Candidate& pCandidate, int pElement) {
    const Wide lNumber = pCandidate.At(pElement);
    const Interval lHard = pCandidate.For(false, pElement);
    const Interval lSoft = pCandidate.For(true, pElement);
    const bool lHardDecide = pCandidate.Asks(false) && lSoft.LiesApartFrom(lHard);
    return (!pCandidate.Asks(false) || lHard.Has(lNumber)) &&
           (!pCandidate.Asks(true) || lHardDecide || lSoft.Has(lNumber));
}

// Puts each number of the candidate inside its limits, in a copy of the value. False when one is not a number, or finds
// no number of the type inside.
bool PutClamped(const Candidate& pCandidate, ELyrType pValueType, unsigned char* pResult) {
    const ELyrType lElementType = IsVector(pValueType) ? eDOUBLE1 : pValueType;
    for (int i = 0; i < pCandidate.Count(); ++i) {
        const Wide lBefore = pCandidate.At(i);
        const Place lGoesTo = Clamped(pCandidate, i);
        if (std::isnan(lBefore) && IsBounded(pCandidate, i))
            return false;
        unsigned char* lPlace = pResult + sizeof(double) * static_cast<std::size_t>(i);
        const bool lIsOutside = !std::isnan(lBefore) && lGoesTo.mNumber != lBefore;
        if (lIsOutside && !PutNumber(lElementType, lPlace, lGoesTo.mNumber, lGoesTo.mIsAtMin))
            return false;
    }
    return true;
}

}  // namespace

ELyrLimitVerdict lyrValidate(const KLyrPropertyHandle& pHandle, const void* pValue, ELyrType pValueType,
                             ELyrLimits pLimits) {
    const Candidate lCandidate(pHandle, pValue, pValueType, pLimits);
    if (lCandidate.IsRefused())
        return eLyrLimitsRefused;
    for (const bool lSoft : {false, true}) {
        for (int i = 0; lCandidate.Asks(lSoft) && i < lCandidate.Count(); ++i) {
            const ELyrLimitVerdict lVerdict = Judge(lCandidate.At(i), lCandidate.For(lSoft, i), lSoft);
            if (lVerdict != eLyrWithinLimits)
                return lVerdict;
        }
    }
    return eLyrWithinLimits;
}

// A value without an order is not read: there are no limits to hold it against, or it is refused.
ELyrLimitVerdict lyrValidate(const KLyrPropertyHandle& pHandle, ELyrLimits pLimits) {
    const ELyrType lType = pHandle.GetType();
    Scratch lScratch(lType);
    const KLyrPropertyPage* lPage = pHandle.GetPage();
    const bool lHasValue = lyrHoldsValue(lType) &&
                           lPage->GetPropertyItem<KLyrPropertyValue>(nullptr, pHandle.GetId()) &&
                           (!HasOrder(lType) || pHandle.Get(lScratch.mBytes, lType));
    return lHasValue ? lyrValidate(pHandle, lScratch.mBytes, lType, pLimits) : eLyrLimitsRefused;
}

bool lyrClamp(const KLyrPropertyHandle& pHandle, void* pValue, ELyrType pValueType, ELyrLimits pLimits) {
    const ELyrLimitVerdict lVerdict = lyrValidate(pHandle, pValue, pValueType, pLimits);
    if (lVerdict == eLyrWithinLimits)
        return true;
    if (lVerdict == eLyrLimitsRefused || lVerdict == eLyrIsNotANumber)
        return false;
    const Candidate lCandidate(pHandle, pValue, pValueType, pLimits);
    if (!lCandidate.IsComparedAsItIs())
        return false;
    if (!IsNumber(pValueType) && !IsVector(pValueType))
        return lCandidate.CopyLimit(Clamped(lCandidate, 0).mNumber, pValue);

    Scratch lResult(pValueType);
    const std::size_t lSize = lyrStorageSize(pValueType);
    std::memcpy(lResult.mBytes, pValue, lSize);
    if (!PutClamped(lCandidate, pValueType, lResult.mBytes))
        return false;
    // Between limits that lie close together there may be no value of the type.
    const Candidate lInside(pHandle, lResult.mBytes, pValueType, pLimits);
    for (int i = 0; i < lInside.Count(); ++i)
        if (!std::isnan(lInside.At(i)) && !IsInside(lInside, i))
            return false;
    std::memcpy(pValue, lResult.mBytes, lSize);
    return true;
}

}  // namespace lyrsdk
