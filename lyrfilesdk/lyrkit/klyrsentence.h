#pragma once

// Writes the sentences of reasons. Internal to the kit.

#include <charconv>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "lyrfilesdk/lyrkit/klyrconversionverdict.h"
#include "lyrfilesdk/lyrkit/klyrdumptext.h"
#include "lyrfilesdk/lyrkit/klyrtypename.h"

namespace lyrsdk {
namespace detail {

// Writes a sentence into a reason, as much of it as there is room for.
class Sentence {
public:
    explicit Sentence(KLyrReason& pReason) : mReason(pReason) {}

    Sentence& operator<<(std::string_view pText) {
        const std::size_t lLength = pText.size() < Room() ? pText.size() : Room();
        std::memcpy(mReason.mText + mLength, pText.data(), lLength);
        mLength += lLength;
        mReason.mText[mLength] = '\0';
        return *this;
    }
    Sentence& operator<<(int pNumber) {
        char lDigits[16];
        const std::to_chars_result lEnd = std::to_chars(lDigits, lDigits + sizeof(lDigits), pNumber);
        return *this << std::string_view(lDigits, static_cast<std::size_t>(lEnd.ptr - lDigits));
    }
    Sentence& operator<<(ELyrType pType) {
        return pType >= 0 && pType < eMAX_TYPES ? *this << lyrTypeName(pType) : *this << static_cast<int>(pType);
    }
    // What comes from the application: it may be long, and hold any bytes.
    Sentence& Quote(std::string_view pText) {
        constexpr std::size_t lMost = 80;
        char lEscape[16];
        std::size_t lLength = 0;
        *this << "'";
        while (!pText.empty()) {
            const std::string_view lShown = lyrEscapeFirst(pText, lEscape);
            lLength += lShown.size();
            if (lLength > lMost)
                return *this << "...'";
            *this << lShown;
        }
        return *this << "'";
    }

private:
    std::size_t Room() const { return sizeof(mReason.mText) - 1 - mLength; }

    KLyrReason& mReason;
    std::size_t mLength = 0;
};

}  // namespace detail
}  // namespace lyrsdk
