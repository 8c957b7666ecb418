// Compiled so that every inline function of the library is there as a function, whether a test calls it or not. A
// function that no test calls is then missed by scripts/allocation-sites.

#include "lyrfilesdk/lyrsdk.h"
