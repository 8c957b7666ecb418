#include <dlfcn.h>
#include <execinfo.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <set>
#include <vector>

#include "tests/support/memory_probe.h"

// With LYRSDK_REFUSAL_LOG naming a file, the program writes there from where the requests came that were refused: their
// number, and then one line for each different stack, innermost call first, as addresses within the program's file.

namespace lyrsdk {
namespace {

constexpr int kDeepest = 64;

std::set<std::vector<void*>> sgStacks;
std::size_t sgRefusals = 0;

void Record() {
    void* lFrames[kDeepest];
    const int lCount = backtrace(lFrames, kDeepest);
    ++sgRefusals;
    sgStacks.emplace(lFrames, lFrames + lCount);
}

class RefusalLog : public testing::Environment {
public:
    void SetUp() override {
        if (std::getenv("LYRSDK_REFUSAL_LOG"))
            MemoryProbe::OnRefusal(&Record);
    }
    void TearDown() override {
        MemoryProbe::OnRefusal(nullptr);
        const char* lFile = std::getenv("LYRSDK_REFUSAL_LOG");
        if (!lFile)
            return;
        std::ofstream lOut(lFile);
        lOut << sgRefusals << '\n' << std::hex;
        for (const std::vector<void*>& lStack : sgStacks) {
            for (void* lFrame : lStack)
                Write(lOut, lFrame);
            lOut << '\n';
        }
        EXPECT_TRUE(lOut.flush().good()) << "cannot write " << lFile;
    }

private:
    // What lies in other files is left out.
    static void Write(std::ostream& pOut, void* pAddress) {
        Dl_info lHere, lThere;
        if (dladdr(reinterpret_cast<void*>(&Record), &lHere) && dladdr(pAddress, &lThere) &&
            lHere.dli_fbase == lThere.dli_fbase)
            pOut << reinterpret_cast<std::uintptr_t>(pAddress) - reinterpret_cast<std::uintptr_t>(lHere.dli_fbase)
                 << ' ';
    }
};

const testing::Environment* const sgLog = testing::AddGlobalTestEnvironment(new RefusalLog);

}  // namespace
}  // namespace lyrsdk
