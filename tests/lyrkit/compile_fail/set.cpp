#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

struct Unknown {};

#ifdef REFUSED
using Asked = Unknown;
#else
using Asked = double;
#endif

lyrsdk::ELyrSetResult Writes(const lyrsdk::KLyrPropertyHandle& pHandle) {
    return lyrsdk::lyrSet(pHandle, Asked());
}
