#pragma once

// Values for the model of page families: a fair set of type codes, how they convert into one another, and what is
// reported when they do not. Plain code that shares nothing with the library.

#include <array>
#include <string>
#include <vector>

namespace lyrmodel {

// The type codes that the model knows as values, by the library's numbers, and those that stand for no value.
enum Code : int {
    kNone = 0,
    kByte = 2,  // unsigned char
    kShort = 3,
    kBool = 9,
    kInt = 10,
    kFloat = 11,
    kDouble = 12,
    kVector2 = 13,
    kVector3 = 14,
    kVector4 = 15,
    kEnum = 17,
    kString = 18,
    kTime = 19,
    kReference = 20,
    kBlob = 21,
};

// The messages of reports, in order.
using Reports = std::vector<std::string>;

// A value of one code, which uses the members that it needs: integers, bool, enum and time mInteger; floating numbers
// and vectors mNumbers, a float as the double of the same value; strings and blobs mBytes.
struct Value {
    explicit Value(int pCode = kNone) : mCode(pCode) {}

    int mCode;
    long long mInteger = 0;
    std::array<double, 4> mNumbers{};
    std::string mBytes;
};

// Whether values of the code can be read and written.
bool HoldsValue(int pCode);
// The bits are the same: of every NaN too.
bool SameBits(const Value& pLeft, const Value& pRight);
// What comparing two values of one code says: numbers by ==. False, with a report, for a code without a value.
bool CompareEqual(const Value& pLeft, const Value& pRight, Reports& pReports);
// Converts into pTo, whose code says what is wanted. False, and pTo unchanged, when the pair is refused.
bool Convert(Value& pTo, const Value& pFrom, Reports& pReports);
// For messages.
std::string ToText(const Value& pValue);

}  // namespace lyrmodel
