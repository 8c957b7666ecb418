#include "lyrfilesdk/lyrkit/klyrlimits.h"

struct Unknown {};

#ifdef REFUSED
using Asked = Unknown;
#else
using Asked = double;
#endif

lyrsdk::ELyrLimitVerdict Holds(const lyrsdk::KLyrPropertyHandle& pHandle) {
    return lyrsdk::lyrValidate(pHandle, Asked());
}
