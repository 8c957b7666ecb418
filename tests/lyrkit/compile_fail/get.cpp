#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

struct Unknown {};

#ifdef COMPILES
using Asked = double;
#else
using Asked = Unknown;
#endif

bool Reads(const lyrsdk::KLyrPropertyHandle& pHandle) {
    return lyrsdk::lyrGet<Asked>(pHandle).has_value();
}
