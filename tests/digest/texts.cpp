#include <cmath>

#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "tests/digest/digest.h"
#include "tests/klyrplugins/value_samples.h"

namespace lyrsdk {
namespace {

constexpr int kRounds = 20000;

// A number of any magnitude, and now and then one that is not a number; never a signalling one, which a word size may
// quieten when it is passed on.
double AnyDouble(RandomBits& pRandom) {
    const std::uint64_t lBits = pRandom.Next();
    double lValue;
    std::memcpy(&lValue, &lBits, sizeof(lValue));
    return std::isnan(lValue) ? std::numeric_limits<double>::quiet_NaN() : lValue;
}

// A number with few digits, as people write them.
double PlainDouble(RandomBits& pRandom) {
    const int lDigits = pRandom.Below(2000001) - 1000000;
    const int lScale = pRandom.Below(7);
    constexpr double kScales[] = {1, 10, 100, 1000, 10000, 100000, 1000000};
    return lDigits / kScales[lScale];
}

void AddTextOf(Digest& pDigest, double pValue) {
    char lText[32];
    const int lLength = lyrFormat(lText, pValue);
    pDigest.Add(lText);
    double lBack = 0;
    pDigest.Add(lyrParseDouble(lText, lLength, lBack));
    pDigest.AddNumber(lBack);
    const int lFloatLength = lyrFormat(lText, static_cast<float>(pValue));
    pDigest.Add(lText);
    pDigest.Add(lyrParseDouble(lText, lFloatLength, lBack));
    pDigest.AddNumber(static_cast<float>(lBack));
}

// A number into a text by conversion, and back.
template <typename T>
void AddConverted(Digest& pDigest, const T& pValue) {
    KString lText;
    pDigest.Add(lyrCopy(lText, pValue));
    pDigest.Add(lText.Buffer());
    T lBack{};
    pDigest.Add(lyrCopy(lBack, lText));
    pDigest.Add(ImageOf(lBack));
}

template <typename T>
void AddRead(Digest& pDigest, const KString& pText) {
    T lValue{};
    pDigest.Add(lyrCopyStr(lValue, pText));
    pDigest.AddNumber(lValue);
}

// Digits with signs, points, exponents and blanks at places where they may and may not be.
std::string NumberLikeText(RandomBits& pRandom) {
    constexpr char kSigns[] = {'-', '+', ' ', '0'};
    constexpr char kInner[] = "0123456789012345678901234567890123456789.eE+- x";
    std::string lText;
    if (pRandom.Below(2))
        lText += kSigns[pRandom.Below(4)];
    const int lLength = pRandom.Below(24);
    for (int i = 0; i < lLength; ++i) {
        const bool lDigit = pRandom.Below(8) != 0;
        const int lAt = pRandom.Below(lDigit ? 40 : static_cast<int>(sizeof(kInner)) - 1);
        lText += kInner[lAt];
    }
    if (pRandom.Below(4) == 0) {
        lText += 'e';
        lText += std::to_string(pRandom.Below(700) - 350);
    }
    return lText;
}

void AddDate(Digest& pDigest, RandomBits& pRandom) {
    const int lYear = pRandom.Below(10002) - 1;
    const int lMonth = pRandom.Below(13);
    const int lDay = pRandom.Below(33);
    const int lHour = pRandom.Below(25);
    const int lMinute = pRandom.Below(61);
    const int lSecond = pRandom.Below(61);
    const int lMillisecond = pRandom.Below(1001);
    lyrDateTime lDate;
    pDigest.Add(lDate.Set(lYear, lMonth, lDay, lHour, lMinute, lSecond, lMillisecond));
    char lText[32];
    lDate.format(lText);
    pDigest.Add(lText);
    // One character is replaced, and the rest may be cut off.
    const int lPlace = pRandom.Below(23);
    lText[lPlace] = "0123456789-:T. t"[pRandom.Below(16)];
    lText[23 - pRandom.Below(10)] = '\0';
    lyrDateTime lBack;
    pDigest.Add(lBack.fromString(lText));
    pDigest.Add(ImageOf(lBack));
}

void AddTime(Digest& pDigest, RandomBits& pRandom) {
    const long long lCount = static_cast<long long>(pRandom.Next());
    const KTime lTime(lCount >> pRandom.Below(64));
    char lText[KTime::kTimeStringSize];
    lTime.GetTimeString(lText, 0, 0, 0, 0);
    pDigest.Add(lText);
    pDigest.AddNumber(lTime.GetSecondDouble());
    KTime lBack;
    lBack.SetSecondDouble(PlainDouble(pRandom));
    pDigest.AddNumber(lBack.Get());
    KString lConverted;
    pDigest.Add(lyrCopy(lConverted, lTime));
    pDigest.Add(lConverted.Buffer());
}

void AddLength(Digest& pDigest, RandomBits& pRandom) {
    constexpr KLyrSystemUnit kUnits[] = {KLyrSystemUnit::mm,   KLyrSystemUnit::dm,   KLyrSystemUnit::cm,
                                         KLyrSystemUnit::m,    KLyrSystemUnit::km,   KLyrSystemUnit::Inch,
                                         KLyrSystemUnit::Foot, KLyrSystemUnit::Yard, KLyrSystemUnit::Mile};
    const KLyrSystemUnit lNamed = kUnits[pRandom.Below(9)];
    const double lMultiplier = PlainDouble(pRandom);
    const double lScale = PlainDouble(pRandom);
    for (const KLyrSystemUnit& lUnit :
         {lNamed, KLyrSystemUnit(lNamed.GetScaleFactor(), lMultiplier), KLyrSystemUnit(lScale, lMultiplier)}) {
        char lText[64];
        lUnit.FormatScaleFactor(lText);
        pDigest.Add(lText);
        lUnit.FormatScaleFactor(lText, false);
        pDigest.Add(lText);
        pDigest.AddNumber(lUnit.GetConversionFactorTo(KLyrSystemUnit::Foot));
        const lyrDistance lLength(static_cast<float>(PlainDouble(pRandom)), lUnit);
        pDigest.AddNumber(lLength.internalValue());
        KString lConverted;
        pDigest.Add(lyrCopy(lConverted, lLength));
        pDigest.Add(lConverted.Buffer());
        double lNumber = 0;
        pDigest.Add(lyrCopy(lNumber, lLength));
        pDigest.AddNumber(lNumber);
    }
}

}  // namespace

std::uint64_t DigestOfNumberTexts() {
    Digest lDigest;
    RandomBits lRandom;
    for (int i = 0; i < kRounds; ++i) {
        AddTextOf(lDigest, AnyDouble(lRandom));
        AddTextOf(lDigest, PlainDouble(lRandom));
        const std::uint64_t lBits = lRandom.Next();
        const std::uint64_t lFewBits = lBits >> lRandom.Below(64);
        AddConverted(lDigest, static_cast<long long>(lFewBits));
        AddConverted(lDigest, -static_cast<long long>(lFewBits >> 1));
        AddConverted(lDigest, static_cast<unsigned long long>(lFewBits));
        AddConverted(lDigest, static_cast<int>(static_cast<unsigned int>(lFewBits)));
    }
    for (unsigned lBits = 0; lBits < 65536; ++lBits) {
        const lyrHalfFloat lHalf = lyrHalfFloat::FromBits(static_cast<unsigned short>(lBits));
        KString lText;
        lDigest.Add(lyrCopy(lText, lHalf));
        lDigest.Add(lText.Buffer());
        double lBack = 0;
        lDigest.Add(lyrCopy(lBack, lText));
        lDigest.AddNumber(lyrHalfFloat(static_cast<float>(lBack)).bits());
    }
    return lDigest.Value();
}

std::uint64_t DigestOfParsing() {
    Digest lDigest;
    RandomBits lRandom;
    for (int i = 0; i < kRounds; ++i) {
        const std::string lText = NumberLikeText(lRandom);
        double lNumber = 0;
        lDigest.Add(lText);
        lDigest.Add(lyrParseDouble(lText.c_str(), static_cast<int>(lText.size()), lNumber));
        lDigest.AddNumber(lNumber);
        const KString lValue(lText.c_str());
        AddRead<bool>(lDigest, lValue);
        AddRead<char>(lDigest, lValue);
        AddRead<unsigned char>(lDigest, lValue);
        AddRead<short>(lDigest, lValue);
        AddRead<unsigned short>(lDigest, lValue);
        AddRead<int>(lDigest, lValue);
        AddRead<unsigned int>(lDigest, lValue);
        AddRead<long long>(lDigest, lValue);
        AddRead<unsigned long long>(lDigest, lValue);
        AddRead<double>(lDigest, lValue);
    }
    return lDigest.Value();
}

std::uint64_t DigestOfTimesAndUnits() {
    Digest lDigest;
    RandomBits lRandom;
    for (int i = 0; i < kRounds; ++i) {
        AddTime(lDigest, lRandom);
        AddDate(lDigest, lRandom);
        AddLength(lDigest, lRandom);
    }
    return lDigest.Value();
}

}  // namespace lyrsdk
