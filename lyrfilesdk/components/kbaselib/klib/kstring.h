#pragma once

// Texts, and the one way in which numbers are written as text and read back.
//
// KString is one pointer, null for the empty text. The text's length and the room of its block stand in front of it:
//
//     mText --------------------v
//     [ length | room ][ c h a r s \0 ]
//     int      int      room + 1 bytes
//
// GetLen and IsEmpty are constant; everything that copies costs the length copied. Appending doubles the room when it
// runs out, so that n appended bytes cost n in all. Every string owns a block of its own; nothing is shared.
//
// Texts are counted: a length given explicitly may span zero bytes. A null pointer is the empty text wherever a text is
// taken. Without memory Assign and Append return false, the assignments keep the old text, and the constructors and
// operator+ give the empty text. A text may be assigned or appended to itself, in whole or in part. Strings compare by
// bytes.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"

namespace lyrsdk {
namespace detail {

// What stands in front of a text.
struct TextHeader {
    int mLength;
    int mRoom;
};

}  // namespace detail

class LYRSDK_API KString {
public:
    constexpr KString() noexcept = default;  // the empty text
    // A text of its own, or the text of pOther, which is empty then. Null is the empty text.
    KString(const KString& pOther);
    KString(KString&& pOther) noexcept : mText(pOther.mText) { pOther.mText = nullptr; }
    KString(const char* pText);
    // The number's text, as lyrFormat writes it.
    KString(int pValue);
    KString(float pValue);
    KString(double pValue);
    ~KString() {
        if (mText)
            Clear();
    }

    // Takes a copy of the text, or the text of pOther itself. Null is the empty text.
    KString& operator=(const KString& pOther);
    KString& operator=(KString&& pOther) noexcept;
    KString& operator=(const char* pText);

    // Takes pLength bytes of pText. False when there is no memory or pLength < 0; the text is then unchanged.
    bool Assign(const char* pText, int pLength);
    // Takes the number's text, as lyrFormat writes it. False, and unchanged, when there is no memory.
    bool Assign(int pValue);
    bool Assign(float pValue);
    bool Assign(double pValue);
    // Puts the given text behind this one. False, and unchanged, when there is no memory, the length is below 0, or the
    // sum would not fit an int.
    bool Append(const char* pText);
    bool Append(const char* pText, int pLength);
    bool Append(const KString& pOther);
    // Makes the text empty and frees its block.
    void Clear();

    // The text with a zero byte behind it, never null. It stays valid until the string is changed or destroyed. The
    // GetLen bytes in front of the zero byte may be overwritten in place.
    char* Buffer() { return const_cast<char*>(Text()); }
    const char* Buffer() const { return Text(); }
    // What Buffer gives.
    operator const char*() const { return Text(); }
    // Not a test for emptiness: the pointer is never null. Use IsEmpty.
    explicit operator bool() const = delete;

    // The number of bytes in the text.
    int GetLen() const { return mText ? (reinterpret_cast<const detail::TextHeader*>(mText) - 1)->mLength : 0; }
    // Whether there is no text.
    bool IsEmpty() const { return !mText; }

private:
    const char* Text() const { return mText ? mText : ""; }

    // The first byte of the text, or null when it is empty.
    char* mText = nullptr;
};

static_assert(sizeof(KString) == sizeof(char*), "a string is one pointer");

// The one text with the other behind it; empty when there is no memory.
LYRSDK_API KString operator+(const KString& pLeft, const char* pRight);
LYRSDK_API KString operator+(const KString& pLeft, const KString& pRight);

// Equal when length and bytes are; null is the empty text.
LYRSDK_API bool operator==(const KString& pLeft, const KString& pRight);
LYRSDK_API bool operator==(const KString& pLeft, const char* pRight);
inline bool operator==(const char* pLeft, const KString& pRight) {
    return pRight == pLeft;
}
inline bool operator!=(const KString& pLeft, const KString& pRight) {
    return !(pLeft == pRight);
}
inline bool operator!=(const KString& pLeft, const char* pRight) {
    return !(pLeft == pRight);
}
inline bool operator!=(const char* pLeft, const KString& pRight) {
    return !(pRight == pLeft);
}

// Negative, 0 or positive as pLeft sorts before, equal to or behind pRight in the order of unsigned bytes, which is
// that of strcmp; a text sorts before every longer text that begins with it.
LYRSDK_API int lyrCompareText(const KString& pLeft, const KString& pRight);

// Writes a number into pBuffer, zero byte behind it, and returns the length. Allocates nothing, cannot fail, and knows
// no locale. An int is written in decimal. A double gets the first of 15, 16 and 17 significant digits that reads back
// to the same bits, a float the first of 6 to 9, both in the manner of printf's %g: 1, 1.5, 100000, 1e+15, -0, inf,
// -inf. Every NaN is "nan".
LYRSDK_API int lyrFormat(char (&pBuffer)[32], int pValue);
LYRSDK_API int lyrFormat(char (&pBuffer)[32], float pValue);
LYRSDK_API int lyrFormat(char (&pBuffer)[32], double pValue);

// Reads a decimal number that fills the whole text: an optional minus, digits with an optional point, an optional
// exponent; or inf, infinity, nan in any case. Gives the one double nearest to the text, ties to even, on every target.
// False, and pValue unchanged, for a null or malformed text and for a number that is too large for a double or so small
// that only zero would be left of it. Allocates nothing and knows no locale.
LYRSDK_API bool lyrParseDouble(const char* pText, int pLength, double& pValue);

}  // namespace lyrsdk
