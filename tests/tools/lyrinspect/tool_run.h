#pragma once

// Runs the inspector inside the test program, and makes scene files for it.

#include <string>
#include <string_view>
#include <vector>

namespace lyrsdk::inspect {

struct Outcome {
    int status = -1;
    std::string output;
    std::string errors;
};

// Runs the inspector with these arguments, without a terminal and with a clock that stands still. Fails the test when
// the library's memory is not given back.
Outcome RunTool(const std::vector<std::string>& pArguments);

// A file of the given content that is there while the object lives.
class SceneFile {
public:
    explicit SceneFile(std::string_view pContent);
    ~SceneFile();
    SceneFile(const SceneFile&) = delete;
    SceneFile& operator=(const SceneFile&) = delete;

    const std::string& Path() const { return mPath; }

private:
    std::string mPath;
};

// Runs the inspector on a file of that content. In the outcome "FILE" stands for the path of the file.
Outcome InspectText(std::string_view pContent, std::vector<std::string> pArguments = {});

// The path of a file below this folder, and of an example scene.
std::string DataPath(const std::string& pName);
std::string ExamplePath(const std::string& pName);

// A binary scene of that JSON and binary chunk; no binary chunk when it is empty.
std::string MakeGlb(std::string pJson, std::string pBinary);

// The little-endian bytes of a word.
std::string Word(unsigned int pWord);

// "{"asset":{"version":"2.0"}, <members>}"
std::string Document(const std::string& pMembers);

}  // namespace lyrsdk::inspect
