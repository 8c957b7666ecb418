#pragma once

// What holds for the whole process.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"

namespace lyrsdk {

// Wipe mode: while it is on, a connection item that is destroyed first disconnects everything from its point. Off when
// the process starts. It is a plain switch: set it while no other thread uses the library.
class LYRSDK_API KLyrPlug {
public:
    KLyrPlug() = delete;

    // Whether wipe mode is on.
    static bool GetWipeMode() { return sgWipeMode; }
    static void SetWipeMode(bool pWipeMode) { sgWipeMode = pWipeMode; }

    // The switch itself.
    static bool sgWipeMode;
};

}  // namespace lyrsdk
