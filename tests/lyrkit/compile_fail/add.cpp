#include "lyrfilesdk/lyrkit/klyrtypedadd.h"

struct Unknown {};

#ifdef COMPILES
using Asked = double;
#else
using Asked = Unknown;
#endif

lyrsdk::KLyrPropertyHandle Adds(const lyrsdk::KLyrPropertyHandle& pHandle) {
    return lyrsdk::lyrAdd(pHandle, "x", Asked());
}
