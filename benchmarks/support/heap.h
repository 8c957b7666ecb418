#pragma once

// How much memory something takes.

#include <cstddef>

namespace lyrsdk::bench {

// The bytes of all blocks that the program has from malloc, with what malloc adds to each.
std::size_t HeapBytes();

// Watches the library's memory from its making to its end. One at a time.
class LibraryMemory {
public:
    LibraryMemory();
    ~LibraryMemory();
    LibraryMemory(const LibraryMemory&) = delete;
    LibraryMemory& operator=(const LibraryMemory&) = delete;

    // Of the blocks that were asked for since, and are still held: the bytes asked for, and those that malloc gave.
    std::size_t RequestedBytes() const;
    std::size_t UsableBytes() const;
    // How often memory was asked for.
    std::size_t Allocations() const;
};

}  // namespace lyrsdk::bench
