#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

struct Unknown {};

#ifdef COMPILES
using Asked = double;
#else
using Asked = Unknown;
#endif

lyrsdk::ELyrType Code() {
    return lyrsdk::lyrTypeCodeOf<Asked>();
}
