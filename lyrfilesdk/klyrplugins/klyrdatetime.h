#pragma once

// A date and a time of day, without a time zone, in the Gregorian calendar carried back to year 0.
//
//     mYear         16 bits  0 .. 9999
//     mMonth         8 bits  1 .. 12
//     mDay           8 bits  1 .. the days of that month
//     mHour          8 bits  0 .. 23
//     mMinute        8 bits  0 .. 59
//     mSecond        8 bits  0 .. 59
//     (padding)      8 bits
//     mMillisecond  16 bits  0 .. 999
//
// 10 bytes, trivially copyable. Every value that can be set is valid and prints as a text that reads back as the same
// value. The default is the calendar's first moment, 0000-01-01T00:00:00.000.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/components/kbaselib/klib/kstring.h"

namespace lyrsdk {

class LYRSDK_API lyrDateTime {
public:
    constexpr lyrDateTime() = default;  // 0000-01-01T00:00:00.000

    // Takes a date and a time of day. False, and unchanged, when one of the numbers is out of its range.
    bool Set(int pYear, int pMonth, int pDay, int pHour = 0, int pMinute = 0, int pSecond = 0, int pMillisecond = 0);

    // 0 to 9999.
    int GetYear() const { return mYear; }
    // 1 to 12.
    int GetMonth() const { return mMonth; }
    // 1 to the days of the month.
    int GetDay() const { return mDay; }
    // 0 to 23.
    int GetHour() const { return mHour; }
    // 0 to 59.
    int GetMinute() const { return mMinute; }
    // 0 to 59.
    int GetSecond() const { return mSecond; }
    // 0 to 999.
    int GetMillisecond() const { return mMillisecond; }

    // Reads YYYY-MM-DDTHH:MM[:SS[.f]] with a fraction of one to three digits, and with 'T', 't' or a blank between date
    // and time. Nothing may stand around it. False, and unchanged, for every other text and for null.
    bool fromString(const char* pText);

    // YYYY-MM-DDTHH:MM:SS.mmm; empty when there is no memory.
    KString toString() const;
    // Writes the same text into pBuffer, zero byte behind it, and returns its length, which is 23.
    int format(char (&pBuffer)[32]) const;

    // Equal when date and time of day are.
    friend bool operator==(const lyrDateTime& pLeft, const lyrDateTime& pRight) {
        return pLeft.mYear == pRight.mYear && pLeft.mMonth == pRight.mMonth && pLeft.mDay == pRight.mDay &&
               pLeft.mHour == pRight.mHour && pLeft.mMinute == pRight.mMinute && pLeft.mSecond == pRight.mSecond &&
               pLeft.mMillisecond == pRight.mMillisecond;
    }
    friend bool operator!=(const lyrDateTime& pLeft, const lyrDateTime& pRight) { return !(pLeft == pRight); }

private:
    short mYear = 0;
    unsigned char mMonth = 1;
    unsigned char mDay = 1;
    unsigned char mHour = 0;
    unsigned char mMinute = 0;
    unsigned char mSecond = 0;
    short mMillisecond = 0;
};

static_assert(sizeof(lyrDateTime) == 10, "a date-time is five 16-bit words");

}  // namespace lyrsdk
