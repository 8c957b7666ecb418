#pragma once

// Memory for very many small blocks that live about as long as each other, such as those of a scene's pages.
//
//     chunk  ..| size | block       | size | block | size | block   | free ....................
//
// A small block is cut off a chunk behind the one before it, so that what is made together lies together. A block that
// is given back waits for the next one of about its size. Chunks are kept until the program ends. Large blocks are
// malloc's, and so is every block where the program is built to check addresses, which has to see each block's end.
//
// For programs of one thread: there is no lock.

#include <cstddef>

namespace lyrsdk::inspect {

// The largest block that is cut off a chunk.
constexpr std::size_t kLargestPooled = 1024;

// pSize bytes aligned for any object, or null when there is no memory. pSize may be 0.
void* TakeBlock(std::size_t pSize);

// Takes back what TakeBlock gave, and returns the size that was asked for.
std::size_t GiveBackBlock(void* pBlock);

}  // namespace lyrsdk::inspect
