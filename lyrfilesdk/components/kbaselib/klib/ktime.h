#pragma once

// A time or a duration, counted in units of 1/705,600,000 second.
//
// The unit divides the frame times of 24, 25, 30, 48, 50, 60, 90, 100 and 120 frames per second and the sample times of
// all usual audio rates, so that such times are whole counts. The count is a signed 64-bit number: the range is about
// 414 years to either side of zero. Eight bytes, trivially copyable, every count is valid.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"

namespace lyrsdk {

// Units in a second.
constexpr long long kTimeUnitsPerSecond = 705600000;

class LYRSDK_API KTime {
public:
    // A count of units.
    constexpr KTime(long long pCount = 0) : mCount(pCount) {}

    // The count of units.
    constexpr void Set(long long pCount) { mCount = pCount; }
    constexpr long long Get() const { return mCount; }

    // Takes the count nearest to pSeconds, halves away from zero. What lies outside the range becomes the least or the
    // greatest count; a NaN becomes 0.
    void SetSecondDouble(double pSeconds);
    // Seconds. Counts below 2^50 either way come back whole through SetSecondDouble; larger ones are rounded to what a
    // double holds.
    double GetSecondDouble() const;

    // The bytes that GetTimeString may write to.
    static constexpr int kTimeStringSize = 128;

    // Writes [-]HH:MM:SS.fffffffff, zero byte behind it, and returns the length, which is below kTimeStringSize. Hours
    // have two digits or as many as they need. The fraction is the nearest nanosecond, without trailing zeros and
    // without its point when it is zero; different counts have different texts. The four numbers choose a presentation
    // in hosts that have several; there is one here, so that any values are accepted and change nothing. A null buffer
    // gives 0.
    int GetTimeString(char* pBuffer, int pInfo, int pTimeMode, int pTimeFormat, double pFrameRate) const;

    // Equal when the counts are.
    friend constexpr bool operator==(const KTime& pLeft, const KTime& pRight) { return pLeft.mCount == pRight.mCount; }
    friend constexpr bool operator!=(const KTime& pLeft, const KTime& pRight) { return pLeft.mCount != pRight.mCount; }

private:
    long long mCount;
};

static_assert(sizeof(KTime) == 8, "a time is one 64-bit count");

}  // namespace lyrsdk
