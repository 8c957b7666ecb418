#include "tools/lyrinspect/nodetree.h"

namespace lyrsdk::inspect {

namespace {

int& At(std::vector<int>& pValues, int pIndex) {
    return pValues[static_cast<std::size_t>(pIndex)];
}

// Walks up from every node until it meets a root or a node seen before. A node seen on the same walk closes a cycle.
void CutCycles(std::vector<int>& pParents, const std::function<std::string(int)>& pTitle, Warnings& pWarnings) {
    std::vector<int> lWalks(pParents.size(), -1);
    for (std::size_t i = 0; i < pParents.size(); ++i) {
        const int lWalk = static_cast<int>(i);
        int lNode = lWalk;
        while (lNode >= 0 && At(lWalks, lNode) < 0) {
            At(lWalks, lNode) = lWalk;
            lNode = At(pParents, lNode);
        }
        if (lNode >= 0 && At(lWalks, lNode) == lWalk) {
            pWarnings.Add(pTitle(lNode) + " is its own ancestor; the link from its parent " +
                          pTitle(At(pParents, lNode)) + " is left out");
            At(pParents, lNode) = -1;
        }
    }
}

}  // namespace

std::vector<int> BuildNodeTree(std::size_t pCount, const std::vector<NodeEdge>& pEdges,
                               const std::function<std::string(int)>& pTitle, Warnings& pWarnings) {
    std::vector<int> lParents(pCount, -1);
    for (const NodeEdge& lEdge : pEdges) {
        int& lParent = At(lParents, lEdge.child);
        if (lEdge.parent == lEdge.child)
            pWarnings.Add(pTitle(lEdge.child) + " is listed as its own child; the link is left out");
        else if (lParent >= 0)
            pWarnings.Add(pTitle(lEdge.child) + " already has the parent " + pTitle(lParent) + "; the link from " +
                          pTitle(lEdge.parent) + " is left out");
        else
            lParent = lEdge.parent;
    }
    CutCycles(lParents, pTitle, pWarnings);
    return lParents;
}

}  // namespace lyrsdk::inspect
