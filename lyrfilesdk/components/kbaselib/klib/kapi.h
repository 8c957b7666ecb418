#pragma once

// How the library marks its interface.

// Symbol visibility. The library is built with hidden visibility; what carries LYRSDK_API is its interface.
#define LYRSDK_API __attribute__((visibility("default")))

// Marks a definition that a host program may replace at link time with a function of the same name and signature.
#define LYRSDK_REPLACEABLE __attribute__((weak, visibility("default")))
