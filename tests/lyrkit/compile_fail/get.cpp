#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

struct Unknown {};

#ifdef REFUSED
using Asked = Unknown;
#else
using Asked = double;
#endif

bool Reads(const lyrsdk::KLyrPropertyHandle& pHandle) {
    return lyrsdk::lyrGet<Asked>(pHandle).has_value();
}
