#pragma once

// What is odd in a file, but does not keep it from being shown.

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace lyrsdk::inspect {

// Keeps the first kLimit texts and counts the rest, so that a file with a million faults costs neither a million lines
// nor the memory for them.
class Warnings {
public:
    static constexpr std::size_t kLimit = 50;

    // pText is one line, fit for a terminal.
    void Add(std::string pText) {
        ++mCount;
        if (mTexts.size() < kLimit)
            mTexts.push_back(std::move(pText));
    }

    const std::vector<std::string>& Texts() const { return mTexts; }
    std::size_t Count() const { return mCount; }

private:
    std::vector<std::string> mTexts;
    std::size_t mCount = 0;
};

}  // namespace lyrsdk::inspect
