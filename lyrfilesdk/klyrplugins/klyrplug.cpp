#include "lyrfilesdk/klyrplugins/klyrplug.h"

namespace lyrsdk {

bool KLyrPlug::sgWipeMode = false;

}  // namespace lyrsdk
