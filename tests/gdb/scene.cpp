// Makes the scene and aborts.

#include "tests/gdb/scene.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace scene {
namespace {

constexpr std::size_t kBlockHeader = 16;

alignas(std::max_align_t) char sgHeap[1 << 20];
std::size_t sgHeapUsed = 0;
bool sgKeepFreed = false;

void* Allocate(std::size_t pSize) {
    const std::size_t lSize = (pSize + 15) / 16 * 16;
    if (lSize > sizeof(sgHeap) - sgHeapUsed - kBlockHeader)
        return nullptr;
    char* lBlock = sgHeap + sgHeapUsed;
    std::memcpy(lBlock, &lSize, sizeof(lSize));
    sgHeapUsed += kBlockHeader + lSize;
    return lBlock + kBlockHeader;
}

void Free(void* pMemory) {
    std::size_t lSize;
    std::memcpy(&lSize, static_cast<char*>(pMemory) - kBlockHeader, sizeof(lSize));
    if (!sgKeepFreed)
        std::memset(pMemory, 0xDD, lSize);
}

}  // namespace

void OpenHeap() {
    lyrsdk::LyrSdkSetMemoryHandlers(&Allocate, &Free);
}

void KeepWhatIsFreed(bool pKeep) {
    sgKeepFreed = pKeep;
}

}  // namespace scene

int main() {
    // So that the debugger finds the objects by their names.
    using namespace scene;
    OpenHeap();
    MakeContainers();
    MakeValues();
    MakeLamps();
    MakeConnections();
    MakeOddities();
    MakeAnswers();
    MakeGarbage();
    std::abort();
}
