#include "lyrfilesdk/lyrkit/klyrtypename.h"

namespace lyrsdk {

const char* lyrTypeName(ELyrType pType) {
    static constexpr const char* sNames[] = {
#define LYRSDK_ROW(pNumber, pName, pType, pSize) #pName,
        LYRSDK_TYPE_LIST(LYRSDK_ROW, LYRSDK_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
    };
    return pType >= 0 && pType < eMAX_TYPES ? sNames[pType] : "unknown";
}

}  // namespace lyrsdk
