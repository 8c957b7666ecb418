#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

struct Unknown {};

#ifdef COMPILES
using Asked = double;
#else
using Asked = Unknown;
#endif

lyrsdk::ELyrSetResult Writes(const lyrsdk::KLyrPropertyHandle& pHandle) {
    return lyrsdk::lyrSet(pHandle, Asked());
}
