#include "tools/lyrinspect/text.h"

namespace lyrsdk::inspect {

namespace {

bool IsContinuation(unsigned char pByte) {
    return (pByte & 0xC0) == 0x80;
}

// The length of the well-formed UTF-8 sequence at the start of pText, or 0. Overlong forms, surrogates and values past
// U+10FFFF are not well formed.
std::size_t SequenceLength(std::string_view pText) {
    const auto lAt = [pText](std::size_t i) { return static_cast<unsigned char>(pText[i]); };
    const unsigned char lFirst = lAt(0);
    if (lFirst < 0x80)
        return 1;
    const std::size_t lLength = lFirst >= 0xF0 ? 4 : lFirst >= 0xE0 ? 3 : 2;
    if (lFirst < 0xC2 || lFirst > 0xF4 || pText.size() < lLength)
        return 0;
    for (std::size_t i = 1; i < lLength; ++i) {
        if (!IsContinuation(lAt(i)))
            return 0;
    }
    const unsigned char lSecond = lAt(1);
    const bool lOverlong = (lFirst == 0xE0 && lSecond < 0xA0) || (lFirst == 0xF0 && lSecond < 0x90);
    const bool lOutside = (lFirst == 0xED && lSecond >= 0xA0) || (lFirst == 0xF4 && lSecond >= 0x90);
    return lOverlong || lOutside ? 0 : lLength;
}

void AppendHex(std::string& pText, unsigned char pByte) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    pText += "\\x";
    pText += kDigits[pByte >> 4];
    pText += kDigits[pByte & 15];
}

// U+0080 to U+009F steer terminals as the characters below U+0020 do; U+2028 to U+202E and U+2066 to U+2069 break or
// reverse the line.
bool IsUnsafeSequence(std::string_view pSequence) {
    const auto lAt = [pSequence](std::size_t i) { return static_cast<unsigned char>(pSequence[i]); };
    if (pSequence.size() == 2)
        return lAt(0) == 0xC2 && lAt(1) < 0xA0;
    if (pSequence.size() != 3 || lAt(0) != 0xE2)
        return false;
    return (lAt(1) == 0x80 && lAt(2) >= 0xA8 && lAt(2) <= 0xAE) || (lAt(1) == 0x81 && lAt(2) >= 0xA6 && lAt(2) <= 0xA9);
}

void AppendAscii(std::string& pText, unsigned char pByte) {
    if (pByte == '\n')
        pText += "\\n";
    else if (pByte == '\t')
        pText += "\\t";
    else if (pByte == '\\')
        pText += "\\\\";
    else if (pByte < 0x20 || pByte == 0x7F)
        AppendHex(pText, pByte);
    else
        pText += static_cast<char>(pByte);
}

}  // namespace

std::size_t FindInvalidUtf8(std::string_view pText) {
    std::size_t i = 0;
    while (i < pText.size()) {
        const std::size_t lLength = SequenceLength(pText.substr(i));
        if (lLength == 0)
            return i;
        i += lLength;
    }
    return std::string_view::npos;
}

std::string Escaped(std::string_view pText) {
    std::string lResult;
    lResult.reserve(pText.size());
    while (!pText.empty()) {
        const std::size_t lLength = SequenceLength(pText);
        const std::string_view lSequence = pText.substr(0, lLength == 0 ? 1 : lLength);
        if (lLength == 1) {
            AppendAscii(lResult, static_cast<unsigned char>(pText[0]));
        } else if (lLength == 0 || IsUnsafeSequence(lSequence)) {
            for (const char lByte : lSequence)
                AppendHex(lResult, static_cast<unsigned char>(lByte));
        } else {
            lResult += lSequence;
        }
        pText.remove_prefix(lSequence.size());
    }
    return lResult;
}

std::string Quoted(std::string_view pText) {
    std::string lResult = "\"";
    for (const char lByte : Escaped(pText)) {
        if (lByte == '"')
            lResult += '\\';
        lResult += lByte;
    }
    return lResult + '"';
}

std::string Counted(std::size_t pCount, const char* pSingular, const char* pPlural) {
    std::string lResult = std::to_string(pCount) + ' ';
    if (pCount == 1)
        return lResult + pSingular;
    return lResult + (pPlural ? std::string(pPlural) : std::string(pSingular) + 's');
}

std::string Shortened(std::string_view pText, std::size_t pLength) {
    if (pText.size() <= pLength)
        return std::string(pText);
    while (pLength > 0 && IsContinuation(static_cast<unsigned char>(pText[pLength])))
        --pLength;
    return std::string(pText.substr(0, pLength)) + "...";
}

}  // namespace lyrsdk::inspect
