#pragma once

// The hierarchy of nodes, made a forest whatever the file says.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "tools/lyrinspect/warnings.h"

namespace lyrsdk::inspect {

struct NodeEdge {
    int parent;
    int child;
};

// The parent of each of pCount nodes, -1 for a root. Of several parents the first one stated counts; a node that would
// be its own ancestor becomes a root. Every edge that is left out is a warning. pTitle names a node in it. Both ends of
// an edge are valid nodes. Costs O(nodes + edges); nothing here recurses.
std::vector<int> BuildNodeTree(std::size_t pCount, const std::vector<NodeEdge>& pEdges,
                               const std::function<std::string(int)>& pTitle, Warnings& pWarnings);

}  // namespace lyrsdk::inspect
