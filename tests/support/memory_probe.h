#pragma once

// Watches the library's memory hook, and makes it fail on demand.
//
// The test main installs the probe before the first allocation. Fresh memory is filled with a pattern and freed memory
// with another, a block that the probe did not give stops the program, and under AddressSanitizer the bytes in front of
// a block are out of bounds.

#include <cstddef>

namespace lyrsdk {

class MemoryProbe {
public:
    // Makes the probe the library's memory handler. To be called once, before the library allocates.
    static void Install();

    // What is handed out and not yet given back.
    static std::size_t LiveBytes();
    static std::size_t LiveBlocks();
    // The most that LiveBytes was since the latest ResetPeak.
    static std::size_t PeakBytes();
    static void ResetPeak();
    // Requests that were answered with memory, since the program started.
    static std::size_t Allocations();
    // The bytes asked for by the latest request, whether it failed or not.
    static std::size_t LastSize();

    // Has pListener called within every request that is refused; null calls nobody.
    static void OnRefusal(void (*pListener)());
};

// Fails the test when its end sees another number of live blocks or bytes than its start.
class LeakCheck {
public:
    LeakCheck();
    ~LeakCheck();
    LeakCheck(const LeakCheck&) = delete;
    LeakCheck& operator=(const LeakCheck&) = delete;

private:
    std::size_t mBlocks;
    std::size_t mBytes;
};

// Makes a request for memory fail, while alive: the one after pFirstToFail others (0: the next), and with pForever
// every one behind it. One at a time.
class FailAllocations {
public:
    FailAllocations(std::size_t pFirstToFail, bool pForever);
    ~FailAllocations();
    FailAllocations(const FailAllocations&) = delete;
    FailAllocations& operator=(const FailAllocations&) = delete;

    // The requests that have been refused so far; 0 means that the operation under test needed fewer.
    std::size_t Failed() const;
};

}  // namespace lyrsdk
