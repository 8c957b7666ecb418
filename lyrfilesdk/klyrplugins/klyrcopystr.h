#pragma once

// Reads values from texts.
//
// Blanks (space, tab, line feed, vertical tab, form feed, carriage return) at both ends are ignored; everything else
// has to belong to the value. True when the text was read; for an empty, malformed or out-of-range text false, and the
// value stays as it was. The locale does not matter.
//
//     bool             true and false in any case, or an integer from -2^63 to 2^64 - 1: zero is false, all else true
//     signed types     decimal digits with an optional sign
//     unsigned types   the same; negative numbers wrap around, down to the least value of the signed type of that
//                      width, because unsigned values are shown through int
//     double           what lyrParseDouble reads, with an optional plus in front
//
// The char types are numbers, not letters.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/components/kbaselib/klib/kstring.h"

namespace lyrsdk {

// Reads pText into pValue. False, and unchanged, when it is no such value.
LYRSDK_API bool lyrCopyStr(bool& pValue, const KString& pText);
LYRSDK_API bool lyrCopyStr(char& pValue, const KString& pText);
LYRSDK_API bool lyrCopyStr(unsigned char& pValue, const KString& pText);
LYRSDK_API bool lyrCopyStr(short& pValue, const KString& pText);
LYRSDK_API bool lyrCopyStr(unsigned short& pValue, const KString& pText);
LYRSDK_API bool lyrCopyStr(int& pValue, const KString& pText);
LYRSDK_API bool lyrCopyStr(unsigned int& pValue, const KString& pText);
LYRSDK_API bool lyrCopyStr(long long& pValue, const KString& pText);
LYRSDK_API bool lyrCopyStr(unsigned long long& pValue, const KString& pText);
LYRSDK_API bool lyrCopyStr(double& pValue, const KString& pText);

}  // namespace lyrsdk
