#pragma once

// Type codes by name.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/klyrplugins/klyrtypelist.h"

namespace lyrsdk {

// The name of a type code as it stands in ELyrType, such as "eDOUBLE1"; "unknown" for what is no code. A literal.
LYRSDK_API const char* lyrTypeName(ELyrType pType);

}  // namespace lyrsdk
