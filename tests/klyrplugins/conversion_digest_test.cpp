#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "tests/klyrplugins/value_samples.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

// One number over many results. The constants below hold on every word size, compiler and optimisation level.
class Digest {
public:
    void Add(const std::string& pBytes) {
        for (char lByte : pBytes + '\n')
            mValue = (mValue ^ static_cast<unsigned char>(lByte)) * 0x100000001B3ull;
    }
    std::uint64_t Value() const { return mValue; }

private:
    std::uint64_t mValue = 0xCBF29CE484222325ull;
};

template <typename Dst, typename Src>
void AddPair(Digest& pDigest) {
    for (const Src& lSample : Samples<Src>()) {
        const Src lSrc = lSample;
        Dst lDst = Samples<Dst>().front();
        pDigest.Add(lyrCopy(lDst, lSrc) ? "1" : "0");
        pDigest.Add(ImageOf(lDst));
    }
}

template <typename Dst>
void AddDestination(Digest& pDigest) {
#define LYRSDK_PAIR(pCode, pType) AddPair<Dst, pType>(pDigest);
    LYRSDK_TEST_TYPES(LYRSDK_PAIR)
#undef LYRSDK_PAIR
}

TEST(ConversionDigest, IsTheSameOnEveryTargetForAllPairsOfTypes) {
    ReportRecorder lRecorder;
    Digest lDigest;
#define LYRSDK_DESTINATION(pCode, pType) AddDestination<pType>(lDigest);
    LYRSDK_TEST_TYPES(LYRSDK_DESTINATION)
#undef LYRSDK_DESTINATION
    lRecorder.Clear();
    EXPECT_EQ(0xE69171C225705F44ull, lDigest.Value());
}

TEST(ConversionDigest, IsTheSameOnEveryTargetForRandomNumbers) {
    Digest lDigest;
    std::uint64_t lRandom = 88172645463325252ull;
    for (int i = 0; i < 30000; ++i) {
        lRandom ^= lRandom << 13;
        lRandom ^= lRandom >> 7;
        lRandom ^= lRandom << 17;
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
    EXPECT_EQ(0x1EC918E75D6B5667ull, lDigest.Value());
}

}  // namespace
}  // namespace lyrsdk
