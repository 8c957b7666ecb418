#include "lyrfilesdk/components/kbaselib/klib/kassert.h"

#include <atomic>
#include <cstdio>

namespace lyrsdk {
namespace {

void PrintOnce(const char* pFile, const char* pFunction, unsigned long pLine, const char* pMessage,
               bool* pHideForever) {
    std::fprintf(stderr, "%s:%lu: %s%s%s\n", pFile, pLine, pFunction, *pFunction ? ": " : "", pMessage);
    __atomic_store_n(pHideForever, true, __ATOMIC_RELAXED);
}

std::atomic<KAssertFailedHandler> sgHandler{&PrintOnce};

}  // namespace

KAssertFailedHandler KSetAssertFailedHandler(KAssertFailedHandler pHandler) {
    return sgHandler.exchange(pHandler ? pHandler : &PrintOnce);
}

LYRSDK_REPLACEABLE void KAssertFailed(const char* pFile, const char* pFunction, unsigned long pLine,
                                      const char* pMessage, bool* pHideForever) {
    bool lNobodysFlag = false;
    sgHandler.load()(pFile ? pFile : "", pFunction ? pFunction : "", pLine, pMessage ? pMessage : "",
                     pHideForever ? pHideForever : &lNobodysFlag);
}

}  // namespace lyrsdk
