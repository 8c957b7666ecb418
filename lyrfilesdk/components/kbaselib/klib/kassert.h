#pragma once

// Reports of broken invariants and of misuse.
//
// A check that fails calls KAssertFailed with the header's path, an empty function text, a line number, a message and
// the address of a bool that belongs to that one check site. The call is made only while that bool is false, and
// execution always goes on behind it. Reports are the same in every build type; nothing depends on NDEBUG.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"

namespace lyrsdk {

// Receives a report. pHideForever is never null; setting it to true silences that one site for the rest of the process.
// The texts are literals and live as long as the process. A handler may be called from any thread that uses the
// library. It comes in the middle of a call: it may use the library, but must not destroy the pages and items that the
// call works on.
using KAssertFailedHandler = void (*)(const char* pFile, const char* pFunction, unsigned long pLine,
                                      const char* pMessage, bool* pHideForever);

// Installs pHandler and returns the handler before it. Null installs the default, which prints one line to stderr and
// silences the site. Safe to call from any thread.
LYRSDK_API KAssertFailedHandler KSetAssertFailedHandler(KAssertFailedHandler pHandler);

// Passes a report to the installed handler; null texts as empty ones, a null flag as one that nobody keeps. A weak
// definition: a host may define its own at link time.
LYRSDK_API void KAssertFailed(const char* pFile, const char* pFunction, unsigned long pLine, const char* pMessage,
                              bool* pHideForever);

namespace detail {

// Makes a report unless the site's flag hides it.
inline void ReportAt(const char* pFile, unsigned long pLine, const char* pMessage, bool* pHideForever) {
    if (!__atomic_load_n(pHideForever, __ATOMIC_RELAXED))
        KAssertFailed(pFile, "", pLine, pMessage, pHideForever);
}

}  // namespace detail
}  // namespace lyrsdk

// Makes a report. Every expansion is one site, with a flag of its own. The flag is read atomically, because two threads
// may reach one site at the same time while they work on page families that have nothing else in common.
#define LYRSDK_REPORT(pFile, pLine, pMessage)                                    \
    do {                                                                         \
        static bool sHideForEver = false;                                        \
        ::lyrsdk::detail::ReportAt((pFile), (pLine), (pMessage), &sHideForEver); \
    } while (false)

// Makes a report when pCondition does not hold.
#define LYRSDK_CHECK(pCondition, pFile, pLine, pMessage) \
    do {                                                 \
        if (!(pCondition))                               \
            LYRSDK_REPORT((pFile), (pLine), (pMessage)); \
    } while (false)
