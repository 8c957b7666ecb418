// Sequences of operations on pages and handles, against the plain model of them.

#include "tests/fuzz/fuzz_support.h"
#include "tests/model/driver.h"

namespace {

// More would find the same, only slower.
constexpr std::size_t kMostOperations = 96;

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t pSize) {
    const lyrfuzz::LeakCheck lLeaks;
    std::vector<lyrmodel::Operation> lOperations;
    const std::uint8_t* lNext = pData;
    for (lyrmodel::Operation lOperation; lOperations.size() < kMostOperations;) {
        if (!lyrmodel::DecodeOperation(lNext, pData + pSize, lOperation))
            break;
        lOperations.push_back(lOperation);
    }
    const lyrmodel::Outcome lOutcome = lyrmodel::RunOperations(lOperations, 0, lyrmodel::Fault::eNone, 1);
    if (!lOutcome.mSame)
        lyrfuzz::Fail(lyrmodel::Print(lOperations, lyrmodel::Fault::eNone));
    return 0;
}
