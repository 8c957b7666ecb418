#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "tests/digest/digest.h"
#include "tests/klyrplugins/any_value.h"
#include "tests/klyrplugins/value_samples.h"

namespace lyrsdk {
namespace {

void Ignore(const char*, const char*, unsigned long, const char*, bool*) {}

// Refused conversions are reported, which is not of interest here.
class WithoutReports {
public:
    WithoutReports() : mBefore(KSetAssertFailedHandler(&Ignore)) {}
    ~WithoutReports() { KSetAssertFailedHandler(mBefore); }
    WithoutReports(const WithoutReports&) = delete;
    WithoutReports& operator=(const WithoutReports&) = delete;

private:
    KAssertFailedHandler mBefore;
};

// Every sample of the one type, converted into the other.
void AddPair(Digest& pDigest, ELyrType pDstType, ELyrType pSrcType) {
    const AnyValue lOld = SamplesOf(pDstType).front();
    for (const AnyValue& lSrc : SamplesOf(pSrcType)) {
        AnyValue lDst = lOld;
        pDigest.Add(CopyByTypes(lDst, lSrc));
        pDigest.Add(ImageOf(lDst));
    }
}

void AddDestination(Digest& pDigest, ELyrType pDstType) {
#define LYRSDK_PAIR(pCode, pType) AddPair(pDigest, pDstType, pCode);
    LYRSDK_TEST_TYPES(LYRSDK_PAIR)
#undef LYRSDK_PAIR
}

template <typename T>
void AddComparisons(Digest& pDigest, ELyrType pType) {
    for (const T& lSample : Samples<T>()) {
        const T lLeft = lSample;
        std::string lResults;
        for (const T& lOther : Samples<T>()) {
            const T lRight = lOther;
            lResults += lyrCompare(&lLeft, &lRight, pType) ? '=' : '.';
        }
        pDigest.Add(lResults);
    }
}

}  // namespace

std::uint64_t DigestOfConversions() {
    const WithoutReports lQuiet;
    Digest lDigest;
#define LYRSDK_DESTINATION(pCode, pType) AddDestination(lDigest, pCode);
    LYRSDK_TEST_TYPES(LYRSDK_DESTINATION)
#undef LYRSDK_DESTINATION
    return lDigest.Value();
}

std::uint64_t DigestOfRandomConversions() {
    Digest lDigest;
    RandomBits lBits;
    for (int i = 0; i < 30000; ++i) {
        const std::uint64_t lRandom = lBits.Next();
        // Random bits as they are, and as numbers of ordinary size.
        const double lWild = FromBits<double>(lRandom);
        const double lTame =
            static_cast<double>(static_cast<long long>(lRandom)) / static_cast<double>(1ull << (i % 63));
        const KTime lTime(static_cast<long long>(lRandom));
        for (double lValue : {lWild, lTame, lTime.GetSecondDouble()}) {
            char lText[32];
            lyrFormat(lText, lValue);
            lDigest.Add(lText);
            float lFloat = 0;
            lyrCopy(lFloat, lValue);
            lDigest.Add(ImageOf(lFloat));
            lyrHalfFloat lHalf;
            lyrCopy(lHalf, lFloat);
            lDigest.Add(ImageOf(lHalf));
            long long lWhole = 0;
            lyrCopy(lWhole, lValue);
            lDigest.Add(ImageOf(lWhole));
            KTime lBack;
            lBack.SetSecondDouble(lValue);
            lDigest.Add(ImageOf(lBack));
            lDigest.Add(ImageOf(lyrDistance(lFloat, KLyrSystemUnit(lTame)).internalValue()));
        }
        char lText[KTime::kTimeStringSize];
        lTime.GetTimeString(lText, 5, 0, 2, 0.0);
        lDigest.Add(lText);
    }
    return lDigest.Value();
}

std::uint64_t DigestOfComparisons() {
    Digest lDigest;
#define LYRSDK_COMPARED(pCode, pType) AddComparisons<pType>(lDigest, pCode);
    LYRSDK_TEST_TYPES(LYRSDK_COMPARED)
#undef LYRSDK_COMPARED
    const std::vector<KString> lTexts = Samples<KString>();
    for (const KString& lLeft : lTexts) {
        for (const KString& lRight : lTexts) {
            const int lOrder = lyrCompareText(lLeft, lRight);
            lDigest.AddNumber((lOrder > 0) - (lOrder < 0));
        }
    }
    return lDigest.Value();
}

}  // namespace lyrsdk
