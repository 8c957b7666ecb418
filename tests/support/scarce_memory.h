#pragma once

// The library's memory for programs without GoogleTest, and for runs in which requests for it are refused.

#include <cstddef>

namespace lyrsdk {

class ScarceMemory {
public:
    // Becomes the library's memory. To be called while the library holds none.
    static void Install();
    static std::size_t LiveBlocks();

    // Refuses the request behind pFirst others, and with pForever all behind that one, until Relent, which tells how
    // many were refused.
    static void Refuse(std::size_t pFirst, bool pForever);
    static std::size_t Relent();

    // While one lives nothing is refused nor counted: for memory that the caller of an operation brings along.
    class Pause {
    public:
        Pause();
        ~Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;
    };
};

}  // namespace lyrsdk
