#pragma once

// Values on their way into properties, from the texts of the tables and from JSON, and out of them as text.

#include <string>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tools/lyrinspect/document.h"
#include "tools/lyrinspect/prototypes.h"

namespace lyrsdk::inspect {

// Sets the property to the value that pText stands for: numbers separated by commas, true or false, the name of an
// enumeration value, seconds, metres ("inf" too), or the text itself. False when the text does not fit the type.
bool SetFromText(KLyrPropertyHandle pProperty, const char* pText);

// Gives the property the limits that "min..max" stands for; either side may be empty, and so may the whole text. A
// vector has the same limit in every element. False when a text is malformed or the type has no limits.
bool SetLimitsFromText(KLyrPropertyHandle pProperty, const char* pLimits, const char* pSoftLimits);

// Sets the property, which has a value, to what pJson states: a number, a bool, a text, an array of as many numbers as
// the type has elements (a matrix column by column), the text or number of an enumeration value. False when pJson is
// anything else; pExpected then says what would have been right.
bool SetFromJson(KLyrPropertyHandle pProperty, const PropertyFacts& pFacts, const Json& pJson, std::string& pExpected);

// Plain writers; false when the value is refused.
bool SetInt(KLyrPropertyHandle pProperty, int pValue);
bool SetDouble(KLyrPropertyHandle pProperty, double pValue);
bool SetBool(KLyrPropertyHandle pProperty, bool pValue);
bool SetString(KLyrPropertyHandle pProperty, const std::string& pValue);
bool SetSeconds(KLyrPropertyHandle pProperty, double pSeconds);
bool SetBytes(KLyrPropertyHandle pProperty, const void* pBytes, std::size_t pSize);
// Takes the first elements of pValues, as many as the type has.
bool SetNumbers(KLyrPropertyHandle pProperty, const double* pValues);

// How many doubles a value of the type consists of: 1 to 4, 16, or 0 when it does not.
int ElementCount(ELyrType pType);

// The value as text, by the property's own conversion to a string: texts in quotation marks, an enumeration's index
// with its name, all rows of a matrix, the size of a blob. Empty when there is no value. Nothing in it can harm a
// terminal.
std::string ValueText(const KLyrPropertyHandle& pProperty);

// "0..1", "0..", "..1", or empty.
std::string LimitsText(const KLyrPropertyHandle& pProperty);
std::string SoftLimitsText(const KLyrPropertyHandle& pProperty);

// Says how the value breaks the property's limits, "3 is above 1"; empty when it does not, or has none.
std::string LimitBreach(const KLyrPropertyHandle& pProperty);

// True when the number is on a bound that pLimits, the limits of its row, says it must not reach.
bool IsOnOpenBound(const KLyrPropertyHandle& pProperty, const std::string& pLimits);

}  // namespace lyrsdk::inspect
