#include "tools/lyrinspect/stats.h"

#include <cstdio>
#include <ostream>

namespace lyrsdk::inspect {

namespace {

void CountProperty(const SceneObject& pObject, const KLyrPropertyHandle& pProperty, SceneCounts& pCounts) {
    ++pCounts.properties;
    // The root belongs to the prototype, like every property with a number below the object's own.
    const bool lOwnInfo = pProperty.GetUserTag() >= pObject.firstOwnTag;
    const bool lOwnValue = pProperty.GetValueInheritType(false) == eLyrOverride;
    const bool lOwnFlags = pProperty.GetFlagsInheritType(LyrPropertyFlags::AllFlags(), false) == eLyrOverride;
    const std::size_t lOwn = std::size_t{lOwnInfo} + std::size_t{lOwnValue} + std::size_t{lOwnFlags};
    pCounts.ownItems += lOwn;
    pCounts.inheritedItems += 3 - lOwn;
    // Each connection is counted where it arrives.
    pCounts.connections += static_cast<std::size_t>(pProperty.GetSrcCount(nullptr));
}

void PrintCount(std::ostream& pOutput, const char* pName, std::size_t pCount, const std::string& pRemark) {
    char lLine[64];
    std::snprintf(lLine, sizeof lLine, "  %-18s %12zu", pName, pCount);
    pOutput << lLine << (pRemark.empty() ? "" : "  ") << pRemark << '\n';
}

}  // namespace

SceneCounts CountScene(const Scene& pScene) {
    SceneCounts lCounts;
    lCounts.objectPages = pScene.ObjectCount();
    lCounts.prototypePages = kKindCount;
    lCounts.typePages = pScene.GetPrototypes().TypePageCount();
    for (std::size_t i = 0; i < kKindCount; ++i) {
        for (const SceneObject* lObject : pScene.Objects(static_cast<ObjectKind>(i))) {
            CountProperty(*lObject, lObject->root, lCounts);
            for (KLyrPropertyHandle lProperty = lObject->root.GetFirstDescendent(); lProperty.Valid();
                 lProperty = lObject->root.GetNextDescendent(lProperty))
                CountProperty(*lObject, lProperty, lCounts);
        }
    }
    return lCounts;
}

void PrintStats(std::ostream& pOutput, const SceneCounts& pCounts, const MemoryUse& pMemory,
                const std::vector<Phase>& pPhases) {
    pOutput << "statistics\n";
    PrintCount(pOutput, "pages", pCounts.objectPages + pCounts.prototypePages + pCounts.typePages,
               "objects " + std::to_string(pCounts.objectPages) + ", prototypes " +
                   std::to_string(pCounts.prototypePages) + ", types " + std::to_string(pCounts.typePages));
    PrintCount(pOutput, "properties", pCounts.properties, "");
    PrintCount(pOutput, "own items", pCounts.ownItems, "");
    PrintCount(pOutput, "inherited items", pCounts.inheritedItems, "");
    PrintCount(pOutput, "connections", pCounts.connections, "");
    PrintCount(pOutput, "memory bytes", pMemory.liveBytes,
               "in " + std::to_string(pMemory.liveBlocks) + " blocks, peak " + std::to_string(pMemory.peakBytes) +
                   ", allocations " + std::to_string(pMemory.allocations));
    for (const Phase& lPhase : pPhases) {
        char lLine[64];
        std::snprintf(lLine, sizeof lLine, "  time %-13s %12.6f  s\n", lPhase.name.c_str(), lPhase.seconds);
        pOutput << lLine;
    }
}

}  // namespace lyrsdk::inspect
