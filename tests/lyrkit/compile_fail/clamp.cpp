#include "lyrfilesdk/lyrkit/klyrlimits.h"

struct Unknown {};

#ifdef COMPILES
using Asked = double;
#else
using Asked = Unknown;
#endif

bool Clamps(const lyrsdk::KLyrPropertyHandle& pHandle) {
    return lyrsdk::lyrClamp(pHandle, Asked()).has_value();
}
