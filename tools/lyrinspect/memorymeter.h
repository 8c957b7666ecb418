#pragma once

// Counts what the library allocates, through its memory hook.

#include <cstddef>

namespace lyrsdk::inspect {

struct MemoryUse {
    std::size_t liveBytes = 0;
    std::size_t liveBlocks = 0;
    std::size_t peakBytes = 0;
    std::size_t allocations = 0;
};

// Installs the counting handlers. To be called once, before the library's first allocation.
void InstallMemoryMeter();

// What has been counted so far; all zero when the meter is not installed.
MemoryUse GetMemoryUse();

}  // namespace lyrsdk::inspect
