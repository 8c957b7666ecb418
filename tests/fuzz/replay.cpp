// Runs a fuzz target once on each file of a folder, in the order of their names. Fails when there is none.
//
// The name of each file is printed before it is run, so that the last one tells where a crash was.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz_support.h"

int main(int pCount, char** pArguments) {
    if (pCount != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", pArguments[0]);
        return 2;
    }
    std::vector<std::filesystem::path> lFiles;
    std::error_code lError;
    for (std::filesystem::directory_iterator lIt(pArguments[1], lError), lEnd; lIt != lEnd; lIt.increment(lError))
        lFiles.push_back(lIt->path());
    std::sort(lFiles.begin(), lFiles.end());
    for (const std::filesystem::path& lPath : lFiles) {
        std::printf("%s\n", lPath.filename().c_str());
        std::fflush(stdout);
        std::ifstream lFile(lPath, std::ios::binary);
        const std::string lBytes((std::istreambuf_iterator<char>(lFile)), std::istreambuf_iterator<char>());
        if (!lFile) {
            std::fprintf(stderr, "cannot read it\n");
            return 1;
        }
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(lBytes.data()), lBytes.size());
    }
    std::printf("%zu inputs\n", lFiles.size());
    return lFiles.empty() || lError ? 1 : 0;
}
