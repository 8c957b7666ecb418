#include "tests/tools/lyrinspect/tool_run.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "tests/support/memory_probe.h"
#include "tools/lyrinspect/inspect.h"

namespace lyrsdk::inspect {

Outcome RunTool(const std::vector<std::string>& pArguments) {
    std::vector<const char*> lArguments{"lyrinspect"};
    for (const std::string& lArgument : pArguments)
        lArguments.push_back(lArgument.c_str());
    std::ostringstream lOutput;
    std::ostringstream lErrors;
    Outcome lOutcome;
    {
        const LeakCheck lLeaks;
        lOutcome.status = RunInspector(static_cast<int>(lArguments.size()), lArguments.data(),
                                       {lOutput, lErrors, false, false, [] { return 0.0; }});
    }
    lOutcome.output = lOutput.str();
    lOutcome.errors = lErrors.str();
    return lOutcome;
}

SceneFile::SceneFile(std::string_view pContent) {
    static int sCount = 0;
    mPath = testing::TempDir() + "lyrinspect-" + std::to_string(getpid()) + '-' + std::to_string(++sCount) + ".gltf";
    std::ofstream lFile(mPath, std::ios::binary);
    lFile << pContent;
    if (!lFile.flush())
        ADD_FAILURE() << "cannot write " << mPath;
}

SceneFile::~SceneFile() {
    std::remove(mPath.c_str());
}

Outcome InspectText(std::string_view pContent, std::vector<std::string> pArguments) {
    const SceneFile lFile(pContent);
    pArguments.push_back(lFile.Path());
    Outcome lOutcome = RunTool(pArguments);
    for (std::string* lText : {&lOutcome.output, &lOutcome.errors}) {
        for (std::size_t i = lText->find(lFile.Path()); i != std::string::npos; i = lText->find(lFile.Path()))
            lText->replace(i, lFile.Path().size(), "FILE");
    }
    return lOutcome;
}

std::string DataPath(const std::string& pName) {
    return std::string(LYRINSPECT_TEST_DATA) + '/' + pName;
}

std::string ExamplePath(const std::string& pName) {
    return std::string(LYRINSPECT_EXAMPLES) + '/' + pName;
}

std::string Word(unsigned int pWord) {
    std::string lBytes;
    for (int i = 0; i < 4; ++i)
        lBytes += static_cast<char>(pWord >> (8 * i) & 0xFF);
    return lBytes;
}

std::string MakeGlb(std::string pJson, std::string pBinary) {
    pJson.resize((pJson.size() + 3) / 4 * 4, ' ');
    pBinary.resize((pBinary.size() + 3) / 4 * 4, '\0');
    std::string lChunks = Word(static_cast<unsigned int>(pJson.size())) + "JSON" + pJson;
    if (!pBinary.empty())
        lChunks += Word(static_cast<unsigned int>(pBinary.size())) + std::string("BIN\0", 4) + pBinary;
    return "glTF" + Word(2) + Word(static_cast<unsigned int>(12 + lChunks.size())) + lChunks;
}

std::string Document(const std::string& pMembers) {
    return "{\"asset\":{\"version\":\"2.0\"}" + (pMembers.empty() ? "" : ',' + pMembers) + '}';
}

}  // namespace lyrsdk::inspect
