// The scene inspector on files of any bytes: it ends, with what it promises, and gives all memory back.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/fuzz/fuzz_support.h"
#include "tools/lyrinspect/inspect.h"

namespace {

using lyrfuzz::Require;

// A file in a folder of its own, so that nothing lies beside it that it could name.
class SceneFile {
public:
    SceneFile() {
        const char* lFolder = std::getenv("TMPDIR");
        mFolder = std::string(lFolder && *lFolder ? lFolder : "/tmp") + "/lyrsdk-fuzz-XXXXXX";
        Require(mkdtemp(mFolder.data()) != nullptr, "cannot make a folder");
        mPath = mFolder + "/scene.gltf";
    }
    ~SceneFile() {
        std::remove(mPath.c_str());
        rmdir(mFolder.c_str());
    }
    SceneFile(const SceneFile&) = delete;
    SceneFile& operator=(const SceneFile&) = delete;

    void Write(const std::uint8_t* pData, std::size_t pSize) {
        std::ofstream lFile(mPath, std::ios::binary | std::ios::trunc);
        lFile.write(reinterpret_cast<const char*>(pData), static_cast<std::streamsize>(pSize));
        Require(static_cast<bool>(lFile.flush()), "cannot write the file");
    }
    const std::string& Path() const { return mPath; }

private:
    std::string mFolder, mPath;
};

// Each line of the error stream begins with the tool's name, and a file that cannot be shown has one line that is no
// warning.
void CheckErrors(int pStatus, const std::string& pErrors) {
    int lFatal = 0;
    std::istringstream lLines(pErrors);
    for (std::string lLine; std::getline(lLines, lLine);) {
        Require(lLine.rfind("lyrinspect: ", 0) == 0, "a line of another shape on the error stream");
        lFatal += lLine.rfind("lyrinspect: warning: ", 0) == 0 ? 0 : 1;
    }
    Require(pErrors.empty() || pErrors.back() == '\n', "a line without an end");
    Require(lFatal == pStatus, "the lines and the exit status disagree");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t pSize) {
    static SceneFile sFile;
    sFile.Write(pData, pSize);
    // How it is shown depends on the size, so that every file stays what it is.
    const char* lArguments[] = {"lyrinspect", sFile.Path().c_str(), pSize % 2 ? "--only-overrides" : "--prototypes"};
    std::ostringstream lOutput, lErrors;
    const lyrfuzz::LeakCheck lLeaks;
    const int lStatus = lyrsdk::inspect::RunInspector(pSize % 3 ? 2 : 3, lArguments,
                                                      {lOutput, lErrors, false, false, [] { return 0.0; }});
    Require(lStatus == 0 || lStatus == 1, "another exit status");
    CheckErrors(lStatus, lErrors.str());
    Require(lStatus == 0 ? !lOutput.str().empty() : lOutput.str().empty(), "the output and the exit status disagree");
    return 0;
}
