#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

lyrsdk::ELyrSetResult Writes(const lyrsdk::KLyrPropertyHandle& pHandle) {
#ifdef REFUSED
    return lyrsdk::lyrSet(pHandle, lyrsdk::eLyrSetPin);
#else
    return lyrsdk::lyrSet(pHandle, 1.0, lyrsdk::eLyrSetPin);
#endif
}
