#include "lyrfilesdk/lyrkit/klyrlimits.h"

struct Unknown {};

#ifdef COMPILES
using Asked = double;
#else
using Asked = Unknown;
#endif

lyrsdk::ELyrLimitVerdict Holds(const lyrsdk::KLyrPropertyHandle& pHandle) {
    return lyrsdk::lyrValidate(pHandle, Asked());
}
