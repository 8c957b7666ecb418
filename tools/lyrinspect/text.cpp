#include "tools/lyrinspect/text.h"

#include "lyrfilesdk/lyrkit/klyrdumptext.h"

namespace lyrsdk::inspect {

namespace {

bool IsContinuation(unsigned char pByte) {
    return (pByte & 0xC0) == 0x80;
}

}  // namespace

std::size_t FindInvalidUtf8(std::string_view pText) {
    std::size_t i = 0;
    while (i < pText.size()) {
        const std::size_t lLength = lyrUtf8Length(pText.substr(i));
        if (lLength == 0)
            return i;
        i += lLength;
    }
    return std::string_view::npos;
}

std::string Escaped(std::string_view pText) {
    return Gathered([pText](std::ostream& pStream) { lyrDumpText(pStream, pText); });
}

std::string Quoted(std::string_view pText) {
    return Gathered([pText](std::ostream& pStream) { lyrDumpQuoted(pStream, pText); });
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
