#include "lyrfilesdk/lyrkit/klyrlimits.h"

struct Unknown {};

#ifdef REFUSED
using Asked = Unknown;
#else
using Asked = double;
#endif

bool Clamps(const lyrsdk::KLyrPropertyHandle& pHandle) {
    return lyrsdk::lyrClamp(pHandle, Asked()).has_value();
}
