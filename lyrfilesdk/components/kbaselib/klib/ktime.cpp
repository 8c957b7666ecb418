#include "lyrfilesdk/components/kbaselib/klib/ktime.h"

#include <cmath>
#include <limits>

namespace lyrsdk {
namespace {

constexpr double kTwoTo63 = 9223372036854775808.0;
constexpr unsigned long long kNanosecondsPerSecond = 1000000000;

// Writes at least two digits and returns the position behind them.
char* WriteAtLeastTwoDigits(char* pOut, unsigned long long pValue) {
    char lDigits[20];
    int lCount = 0;
    do {
        lDigits[lCount++] = static_cast<char>('0' + pValue % 10);
        pValue /= 10;
    } while (pValue != 0 || lCount < 2);
    while (lCount > 0)
        *pOut++ = lDigits[--lCount];
    return pOut;
}

// Writes the fraction with its point, or nothing when it is zero.
char* WriteFraction(char* pOut, unsigned long long pNanoseconds) {
    if (pNanoseconds == 0)
        return pOut;
    int lDigits = 9;
    while (pNanoseconds % 10 == 0) {
        pNanoseconds /= 10;
        --lDigits;
    }
    *pOut++ = '.';
    for (int i = lDigits - 1; i >= 0; --i) {
        pOut[i] = static_cast<char>('0' + pNanoseconds % 10);
        pNanoseconds /= 10;
    }
    return pOut + lDigits;
}

}  // namespace

void KTime::SetSecondDouble(double pSeconds) {
    const double lCount = pSeconds * static_cast<double>(kTimeUnitsPerSecond);
    if (lCount >= kTwoTo63)
        mCount = std::numeric_limits<long long>::max();
    else if (lCount <= -kTwoTo63)
        mCount = std::numeric_limits<long long>::min();
    else if (lCount == lCount)
        mCount = static_cast<long long>(std::round(lCount));
    else
        mCount = 0;
}

double KTime::GetSecondDouble() const {
    return static_cast<double>(mCount) / static_cast<double>(kTimeUnitsPerSecond);
}

int KTime::GetTimeString(char* pBuffer, int, int, int, double) const {
    if (!pBuffer)
        return 0;
    char* lOut = pBuffer;
    // Negated as unsigned, because the smallest count has no positive counterpart.
    unsigned long long lCount = static_cast<unsigned long long>(mCount);
    if (mCount < 0) {
        *lOut++ = '-';
        lCount = 0 - lCount;
    }
    constexpr unsigned long long lUnits = kTimeUnitsPerSecond;
    const unsigned long long lSeconds = lCount / lUnits;
    // A unit is longer than a nanosecond, so that the last unit of a second does not round up to a full second.
    const unsigned long long lNanoseconds = ((lCount % lUnits) * kNanosecondsPerSecond + lUnits / 2) / lUnits;
    lOut = WriteAtLeastTwoDigits(lOut, lSeconds / 3600);
    *lOut++ = ':';
    lOut = WriteAtLeastTwoDigits(lOut, lSeconds / 60 % 60);
    *lOut++ = ':';
    lOut = WriteAtLeastTwoDigits(lOut, lSeconds % 60);
    lOut = WriteFraction(lOut, lNanoseconds);
    *lOut = 0;
    return static_cast<int>(lOut - pBuffer);
}

}  // namespace lyrsdk
