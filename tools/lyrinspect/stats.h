#pragma once

// Numbers about a scene and about the work it took to make it.

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/lyrinspect/memorymeter.h"
#include "tools/lyrinspect/scene.h"

namespace lyrsdk::inspect {

struct SceneCounts {
    std::size_t objectPages = 0;
    std::size_t prototypePages = 0;
    std::size_t typePages = 0;
    // Properties that are seen through the objects' pages, and the descriptions, values and flags that each of them
    // has.
    std::size_t properties = 0;
    std::size_t ownItems = 0;
    std::size_t inheritedItems = 0;
    std::size_t connections = 0;
};

SceneCounts CountScene(const Scene& pScene);

struct Phase {
    std::string name;
    double seconds;
};

void PrintStats(std::ostream& pOutput, const SceneCounts& pCounts, const MemoryUse& pMemory,
                const std::vector<Phase>& pPhases);

}  // namespace lyrsdk::inspect
