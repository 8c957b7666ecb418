#include "lyrfilesdk/lyrkit/klyrtypedadd.h"

struct Unknown {};

#ifdef REFUSED
using Asked = Unknown;
#else
using Asked = double;
#endif

lyrsdk::KLyrPropertyHandle Adds(const lyrsdk::KLyrPropertyHandle& pHandle) {
    return lyrsdk::lyrAdd(pHandle, "x", Asked());
}
