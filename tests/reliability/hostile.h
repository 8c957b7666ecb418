#pragma once

// Tables of hostile calls: what is passed, and how a row is run.
//
// The caller's duties, which no row violates, because the library cannot notice:
//   - a pointer or handle to a page, item, entry, point, filter, record or string that was destroyed, and giving back
//     a reference that the caller does not hold (DecRef, Destroy of a page's own entry, LyrSdkDelete);
//   - memory that is shorter than a length given with it (KString, lyrBlob, lyrParseDouble), a buffer that is shorter
//     than the header says (KTime::GetTimeString), a text without its zero byte;
//   - a value pointer whose memory is not of the stated type code;
//   - an index into a vector, which the headers leave unchecked;
//   - closing a bracket of symbols that somebody else opened, such as a page's;
//   - writing through what is given to be read (GetInstances, the links of map records), or where a text's bytes may be
//     overwritten, beyond its length;
//   - changing connections from within a filter's Selects; memory handlers exchanged while blocks are out;
//   - dereferencing the null that a map's end or an empty scoped pointer gives.

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {

inline constexpr int kHostileInts[] = {INT_MIN, INT_MIN + 1, -2, -1, 0, 1, 2, 3, 1000, INT_MAX - 1, INT_MAX};

// Ids that no property of a test has.
inline constexpr int kNoIds[] = {INT_MIN, -2, -1, 1000, INT_MAX};

// Indexes that are none in a list of up to three.
inline constexpr int kNegative[] = {INT_MIN, -2, -1};
inline constexpr int kPastTheEnd[] = {3, 4, 1000, INT_MAX};

// Type codes that stand for no value.
inline constexpr int kNoCodes[] = {INT_MIN, -1, eUNIDENTIFIED, eMAX_TYPES, eMAX_TYPES + 1, 1000, INT_MAX};

inline constexpr unsigned kHostileFlags[] = {0u,       1u,          0x7FFFu,     0x8000u,    0xFFFFu,
                                             0x10000u, 0x80000000u, 0xFFFF0000u, 0x55555555, 0xFFFFFFFFu};

inline const char kUnknownType[] = "Trying to assign an unknown type";
inline const char kVoidReference[] = "Trying to set value on a void Reference type";

// Texts of every byte, of bytes that are no UTF-8, and of a mebibyte.
inline const std::vector<std::string>& HostileTexts() {
    static const std::vector<std::string> sTexts = [] {
        std::string lBytes;
        for (int lByte = 1; lByte < 256; ++lByte)
            lBytes += static_cast<char>(lByte);
        return std::vector<std::string>{"",
                                        "a",
                                        " ",
                                        "%s%n%d",
                                        "\n",
                                        "a\nb\n\n",
                                        "|/\\.",
                                        lBytes,
                                        "\xff\xfe",
                                        "\xc0\x80",
                                        "\xed\xa0\x80",
                                        "\xf4\x90\x80\x80",
                                        "cut off \xe2\x82",
                                        std::string(255, 'n'),
                                        std::string(256, 'n'),
                                        std::string(1 << 20, '\xe9')};
    }();
    return sTexts;
}

// pCall(const char*) with each of them, and with null.
template <typename Call>
void WithHostileTexts(Call pCall) {
    pCall(static_cast<const char*>(nullptr));
    for (const std::string& lText : HostileTexts())
        pCall(lText.c_str());
}

inline std::string TextOrEmpty(const char* pText) {
    return pText ? pText : "";
}

// A value of the code, or plain zeroed memory for a code without storage.
class HostileValue {
public:
    explicit HostileValue(int pCode) : mType(static_cast<ELyrType>(pCode)) { lyrConstruct(mType, mBytes); }
    ~HostileValue() { lyrDestruct(mType, mBytes); }
    HostileValue(const HostileValue&) = delete;
    HostileValue& operator=(const HostileValue&) = delete;

    ELyrType Type() const { return mType; }
    void* Memory() { return mBytes; }

private:
    alignas(std::max_align_t) unsigned char mBytes[kLyrMaxValueSize] = {};
    ELyrType mType;
};

// pCall(ELyrType, void*) with each code, the undefined ones included, and memory that fits it.
template <typename Call>
void WithHostileValues(Call pCall) {
    for (int lCode = eUNIDENTIFIED + 1; lCode < eMAX_TYPES; ++lCode) {
        HostileValue lValue(lCode);
        pCall(lValue.Type(), lValue.Memory());
    }
    for (int lCode : kNoCodes) {
        HostileValue lValue(lCode);
        pCall(lValue.Type(), lValue.Memory());
    }
}

// kNothing: the subject's state is the same behind the calls.
enum class EEffect { kNothing, kSome };
inline constexpr EEffect kNothing = EEffect::kNothing;
inline constexpr EEffect kSome = EEffect::kSome;

template <typename Subject>
struct HostileRow {
    using Call = std::function<void(Subject&)>;

    HostileRow(const char* pFunction, EEffect pEffect, Call pCall)
        : mFunction(pFunction), mEffect(pEffect), mCall(std::move(pCall)) {}
    HostileRow(const char* pFunction, EEffect pEffect, Call pCall, std::vector<std::string> pReports)
        : mFunction(pFunction), mEffect(pEffect), mCall(std::move(pCall)), mReports(std::move(pReports)) {}

    const char* mFunction;
    EEffect mEffect;
    Call mCall;
    // Reports that may be made; a row without any makes none.
    std::vector<std::string> mReports;
};

// Runs every row on a subject of its own, which has a default constructor and a State() that tells all there is to see.
template <typename Subject>
void MakeHostileCalls(const std::vector<HostileRow<Subject>>& pRows) {
    for (const HostileRow<Subject>& lRow : pRows) {
        SCOPED_TRACE(lRow.mFunction);
        const LeakCheck lLeakCheck;
        ReportRecorder lReports;
        Subject lSubject;
        const std::string lState = lSubject.State();
        lRow.mCall(lSubject);
        for (const std::string& lMessage : lReports.Take())
            EXPECT_EQ(std::count(lRow.mReports.begin(), lRow.mReports.end(), lMessage), 1) << lMessage;
        const std::string lStateBehind = lSubject.State();
        if (lRow.mEffect == kNothing && lStateBehind != lState) {
            ADD_FAILURE() << "changed from\n" << lState.substr(0, 3000) << "to\n" << lStateBehind.substr(0, 3000);
        }
    }
}

// For functions that belong to nothing.
struct NoSubject {
    std::string State() const { return ""; }
};

}  // namespace lyrsdk
