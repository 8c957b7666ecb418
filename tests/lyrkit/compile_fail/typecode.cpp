#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

struct Unknown {};

#ifdef REFUSED
using Asked = Unknown;
#else
using Asked = double;
#endif

lyrsdk::ELyrType Code() {
    return lyrsdk::lyrTypeCodeOf<Asked>();
}
