#include "tools/lyrinspect/values.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "lyrfilesdk/components/kbaselib/klib/kstring.h"
#include "lyrfilesdk/components/kbaselib/klib/ktime.h"
#include "lyrfilesdk/lyrkit/klyrdumptext.h"
#include "tools/lyrinspect/text.h"

namespace lyrsdk::inspect {

namespace {

constexpr int kMaxElements = 16;

// Reads "1,2,3". False when a number is malformed or there are more than pLimit.
bool ParseNumbers(const std::string& pText, std::size_t pLimit, std::vector<double>& pNumbers) {
    pNumbers.clear();
    std::size_t lStart = 0;
    while (lStart <= pText.size()) {
        const std::size_t lEnd = std::min(pText.find(',', lStart), pText.size());
        double lNumber = 0;
        const char* lLast = pText.data() + lEnd;
        const auto lResult = std::from_chars(pText.data() + lStart, lLast, lNumber);
        if (lResult.ec != std::errc() || lResult.ptr != lLast || pNumbers.size() == pLimit)
            return false;
        pNumbers.push_back(lNumber);
        lStart = lEnd + 1;
    }
    return true;
}

int FindChoice(KLyrPropertyHandle pProperty, const char* pName) {
    int i = pProperty.GetEnumCount() - 1;
    while (i >= 0 && std::strcmp(pProperty.GetEnumValue(i), pName) != 0)
        --i;
    return i;
}

bool SetChoice(KLyrPropertyHandle pProperty, int pIndex) {
    return pIndex >= 0 && pProperty.Set(&pIndex, eENUM, false);
}

// A scalar as all elements of a vector. The result is read as the type pType.
lyrDouble4 Spread(double pValue) {
    lyrDouble4 lVector;
    for (int i = 0; i < 4; ++i)
        lVector[i] = pValue;
    return lVector;
}

enum class Bound { eMin, eSoftMin, eMax, eSoftMax };

bool SetBound(KLyrPropertyHandle& pProperty, Bound pBound, const void* pValue, ELyrType pType) {
    switch (pBound) {
        case Bound::eMin:
            return pProperty.SetMin(pValue, pType);
        case Bound::eSoftMin:
            return pProperty.SetSoftMin(pValue, pType);
        case Bound::eMax:
            return pProperty.SetMax(pValue, pType);
        default:
            return pProperty.SetSoftMax(pValue, pType);
    }
}

bool GetBound(const KLyrPropertyHandle& pProperty, Bound pBound, void* pValue, ELyrType pType) {
    switch (pBound) {
        case Bound::eMin:
            return pProperty.GetMin(pValue, pType);
        case Bound::eSoftMin:
            return pProperty.GetSoftMin(pValue, pType);
        case Bound::eMax:
            return pProperty.GetMax(pValue, pType);
        default:
            return pProperty.GetSoftMax(pValue, pType);
    }
}

bool SetBoundNumber(KLyrPropertyHandle& pProperty, Bound pBound, double pValue) {
    // A 4-vector takes no scalar and a distance takes nothing but a distance.
    if (pProperty.GetType() == eDOUBLE4) {
        const lyrDouble4 lVector = Spread(pValue);
        return SetBound(pProperty, pBound, &lVector, eDOUBLE4);
    }
    if (pProperty.GetType() == eDISTANCE) {
        const lyrDistance lDistance(static_cast<float>(pValue), KLyrSystemUnit::m);
        return SetBound(pProperty, pBound, &lDistance, eDISTANCE);
    }
    return SetBound(pProperty, pBound, &pValue, eDOUBLE1);
}

bool SetRange(KLyrPropertyHandle& pProperty, const std::string& pText, Bound pLow, Bound pHigh) {
    if (pText.empty())
        return true;
    const std::size_t lDots = pText.find("..");
    if (lDots == std::string::npos)
        return false;
    std::vector<double> lNumber;
    const std::string lLow = pText.substr(pText[0] == '>' ? 1 : 0, lDots - (pText[0] == '>' ? 1 : 0));
    if (!lLow.empty() && !(ParseNumbers(lLow, 1, lNumber) && SetBoundNumber(pProperty, pLow, lNumber[0])))
        return false;
    const std::string lHigh = pText.substr(lDots + (pText.compare(lDots, 3, "..<") == 0 ? 3 : 2));
    return lHigh.empty() || (ParseNumbers(lHigh, 1, lNumber) && SetBoundNumber(pProperty, pHigh, lNumber[0]));
}

std::string BoundText(const KLyrPropertyHandle& pProperty, Bound pBound) {
    KString lText;
    return GetBound(pProperty, pBound, &lText, eSTRING) ? std::string(lText.Buffer()) : std::string();
}

bool IsLength(double pValue) {
    return std::abs(pValue) <= static_cast<double>(std::numeric_limits<float>::max());
}

bool SetElements(KLyrPropertyHandle& pProperty, ELyrType pType, const double* pValues) {
    if (pType == eDISTANCE) {
        const lyrDistance lDistance(static_cast<float>(pValues[0]), KLyrSystemUnit::m);
        return pProperty.Set(&lDistance, eDISTANCE, false);
    }
    return ElementCount(pType) > 0 && pProperty.Set(pValues, pType, false);
}

// As many numbers as the type has elements.
bool SetNumbersFromJson(KLyrPropertyHandle& pProperty, ELyrType pType, const Json& pJson) {
    const int lCount = pType == eDISTANCE ? 1 : ElementCount(pType);
    double lNumbers[kMaxElements] = {};
    if (lCount == 1) {
        lNumbers[0] = pJson.is_number() ? pJson.get<double>() : 0;
        return pJson.is_number() && (pType != eDISTANCE || IsLength(lNumbers[0])) &&
               SetElements(pProperty, pType, lNumbers);
    }
    if (!pJson.is_array() || pJson.size() != static_cast<std::size_t>(lCount))
        return false;
    for (int i = 0; i < lCount; ++i) {
        const Json& lElement = pJson[static_cast<std::size_t>(i)];
        if (!lElement.is_number())
            return false;
        // The file has the matrix column by column, the library row by row.
        lNumbers[lCount == kMaxElements ? i % 4 * 4 + i / 4 : i] = lElement.get<double>();
    }
    return SetElements(pProperty, pType, lNumbers);
}

bool SetChoiceFromJson(const KLyrPropertyHandle& pProperty, const PropertyFacts& pFacts, const Json& pJson) {
    if (pFacts.codes.empty())
        return pJson.is_string() &&
               SetChoice(pProperty, FindChoice(pProperty, pJson.get_ref<const std::string&>().c_str()));
    int lCode = 0;
    if (!ToInt(pJson, lCode) || lCode < 0)
        return false;
    for (std::size_t i = 0; i < pFacts.codes.size(); ++i) {
        if (pFacts.codes[i] == lCode)
            return SetChoice(pProperty, static_cast<int>(i));
    }
    return false;
}

// What SetFromJson takes for a property of that type; pJson is what it did not take.
std::string ExpectedText(ELyrType pType, const PropertyFacts& pFacts, const Json& pJson) {
    switch (pType) {
        case eBOOL1:
            return "true or false";
        case eINTEGER1:
            return "a whole number";
        case eSTRING:
            return "a text";
        case eENUM:
            return "one of " + std::string(pFacts.row ? pFacts.row->choices : "");
        case eDISTANCE:
            return pJson.is_number() && !IsLength(pJson.get<double>()) ? "a length that a float can hold" : "a number";
        case eDOUBLE1:
            return "a number";
        default:
            return "an array of " + std::to_string(ElementCount(pType)) + " numbers";
    }
}

bool SetTypeFromJson(KLyrPropertyHandle& pProperty, ELyrType pType, const PropertyFacts& pFacts, const Json& pJson) {
    int lValue = 0;
    switch (pType) {
        case eBOOL1:
            return pJson.is_boolean() && SetBool(pProperty, pJson.get<bool>());
        case eINTEGER1:
            return ToInt(pJson, lValue) && SetInt(pProperty, lValue);
        case eSTRING:
            return pJson.is_string() && SetString(pProperty, pJson.get_ref<const std::string&>());
        case eENUM:
            return SetChoiceFromJson(pProperty, pFacts, pJson);
        default:
            return SetNumbersFromJson(pProperty, pType, pJson);
    }
}

// A distance compares in inches, like any other number; both sides are distances.
bool GetElements(const KLyrPropertyHandle& pProperty, const Bound* pBound, double (&pElements)[kMaxElements]) {
    const ELyrType lType = ElementCount(pProperty.GetType()) > 1 ? pProperty.GetType() : eDOUBLE1;
    return pBound ? GetBound(pProperty, *pBound, pElements, lType) : pProperty.Get(pElements, lType);
}

std::string BreachOf(const KLyrPropertyHandle& pProperty, Bound pBound, const double (&pValues)[kMaxElements],
                     int pCount) {
    double lBounds[kMaxElements] = {};
    if (!GetElements(pProperty, &pBound, lBounds))
        return std::string();
    for (int i = 0; i < pCount; ++i) {
        const bool lBreach = pBound == Bound::eMin ? pValues[i] < lBounds[i] : pValues[i] > lBounds[i];
        if (lBreach)
            return ValueText(pProperty) + (pBound == Bound::eMin ? " is below " : " is above ") +
                   BoundText(pProperty, pBound);
    }
    return std::string();
}

}  // namespace

int ElementCount(ELyrType pType) {
    switch (pType) {
        case eDOUBLE1:
            return 1;
        case eDOUBLE2:
            return 2;
        case eDOUBLE3:
            return 3;
        case eDOUBLE4:
            return 4;
        case eDOUBLE44:
            return kMaxElements;
        default:
            return 0;
    }
}

bool SetInt(KLyrPropertyHandle pProperty, int pValue) {
    return pProperty.Set(&pValue, eINTEGER1, false);
}

bool SetDouble(KLyrPropertyHandle pProperty, double pValue) {
    return pProperty.Set(&pValue, eDOUBLE1, false);
}

bool SetBool(KLyrPropertyHandle pProperty, bool pValue) {
    return pProperty.Set(&pValue, eBOOL1, false);
}

bool SetString(KLyrPropertyHandle pProperty, const std::string& pValue) {
    const KString lText(pValue.c_str());
    return pProperty.Set(&lText, eSTRING, false);
}

bool SetSeconds(KLyrPropertyHandle pProperty, double pSeconds) {
    KTime lTime;
    lTime.SetSecondDouble(pSeconds);
    return pProperty.Set(&lTime, eTIME, false);
}

bool SetBytes(KLyrPropertyHandle pProperty, const void* pBytes, std::size_t pSize) {
    lyrBlob lBlob;
    if (pSize > static_cast<std::size_t>(std::numeric_limits<int>::max()) ||
        !lBlob.Assign(pBytes, static_cast<int>(pSize)))
        return false;
    return pProperty.Set(&lBlob, eBLOB, false);
}

bool SetNumbers(KLyrPropertyHandle pProperty, const double* pValues) {
    return SetElements(pProperty, pProperty.GetType(), pValues);
}

bool SetFromText(KLyrPropertyHandle pProperty, const char* pText) {
    const ELyrType lType = pProperty.GetType();
    if (lType == eENUM)
        return SetChoice(pProperty, FindChoice(pProperty, pText));
    if (lType == eSTRING || lType == eBOOL1 || lType == eINTEGER1) {
        const KString lText(pText);
        return pProperty.Set(&lText, eSTRING, false);
    }
    std::vector<double> lNumbers;
    const int lCount = lType == eTIME || lType == eDISTANCE ? 1 : ElementCount(lType);
    if (lCount == 0 || !ParseNumbers(pText, static_cast<std::size_t>(lCount), lNumbers) ||
        lNumbers.size() != static_cast<std::size_t>(lCount))
        return false;
    return lType == eTIME ? SetSeconds(pProperty, lNumbers[0]) : SetNumbers(pProperty, lNumbers.data());
}

bool SetLimitsFromText(KLyrPropertyHandle pProperty, const char* pLimits, const char* pSoftLimits) {
    const bool lHard = SetRange(pProperty, pLimits, Bound::eMin, Bound::eMax);
    return SetRange(pProperty, pSoftLimits, Bound::eSoftMin, Bound::eSoftMax) && lHard;
}

bool SetFromJson(KLyrPropertyHandle pProperty, const PropertyFacts& pFacts, const Json& pJson, std::string& pExpected) {
    const ELyrType lType = pProperty.GetType();
    if (SetTypeFromJson(pProperty, lType, pFacts, pJson))
        return true;
    pExpected = ExpectedText(lType, pFacts, pJson);
    return false;
}

std::string ValueText(const KLyrPropertyHandle& pProperty) {
    return Gathered([&](std::ostream& pStream) { lyrDumpValue(pStream, pProperty); });
}

std::string LimitsText(const KLyrPropertyHandle& pProperty) {
    return Gathered([&](std::ostream& pStream) { lyrDumpLimits(pStream, pProperty, false); });
}

std::string SoftLimitsText(const KLyrPropertyHandle& pProperty) {
    return Gathered([&](std::ostream& pStream) { lyrDumpLimits(pStream, pProperty, true); });
}

bool IsOnOpenBound(const KLyrPropertyHandle& pProperty, const std::string& pLimits) {
    double lValues[kMaxElements] = {};
    double lBounds[kMaxElements] = {};
    if (!GetElements(pProperty, nullptr, lValues))
        return false;
    const Bound lLow = Bound::eMin;
    const Bound lHigh = Bound::eMax;
    if (pLimits[0] == '>' && GetElements(pProperty, &lLow, lBounds) && lValues[0] == lBounds[0])
        return true;
    return pLimits.find("..<") != std::string::npos && GetElements(pProperty, &lHigh, lBounds) &&
           lValues[0] == lBounds[0];
}

std::string LimitBreach(const KLyrPropertyHandle& pProperty) {
    if (!pProperty.HasMin() && !pProperty.HasMax())
        return std::string();
    double lValues[kMaxElements] = {};
    if (!GetElements(pProperty, nullptr, lValues))
        return std::string();
    const int lCount = std::max(1, ElementCount(pProperty.GetType()));
    const std::string lBreach = BreachOf(pProperty, Bound::eMin, lValues, lCount);
    return lBreach.empty() ? BreachOf(pProperty, Bound::eMax, lValues, lCount) : lBreach;
}

}  // namespace lyrsdk::inspect
