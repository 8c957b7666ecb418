// Connections: which texture feeds which channel, and a view of the connections of one kind.

#include <cstdio>

#include "lyrfilesdk/lyrsdk.h"

using namespace lyrsdk;

namespace {

// Selects the connections that carry data.
class DataOnly : public KLyrConnectionPointFilter {
public:
    bool Selects(const KLyrConnectionPoint*, kLyrConnectionType pType) const override {
        return (pType & eLyrConnectionData) != 0;
    }
};

void PrintSources(const char* pTitle, const KLyrPropertyHandle& pDst, KLyrConnectionPointFilter* pFilter) {
    std::printf("%s:", pTitle);
    for (int lIndex = 0; lIndex < pDst.GetSrcCount(pFilter); ++lIndex)
        std::printf(" %s", pDst.GetSrc(pFilter, lIndex).GetName());
    std::printf("\n");
}

}  // namespace

int main() {
    KLyrOwnedPage lMaterial = KLyrOwnedPage::Create("material", eUNIDENTIFIED);
    KLyrPropertyHandle lBase = lMaterial->Add("base", eDOUBLE3);
    KLyrPropertyHandle lGlow = lMaterial->Add("glow", eDOUBLE3);
    KLyrOwnedPage lWood = KLyrOwnedPage::Create("wood", eUNIDENTIFIED);
    const KLyrOwnedPage lNote = KLyrOwnedPage::Create("note", eSTRING);

    lBase.ConnectSrc(*lWood, eLyrConnectionData);
    lBase.ConnectSrc(*lNote, eLyrConnectionReference);
    lWood->ConnectDst(lGlow, eLyrConnectionData);

    DataOnly lDataOnly;
    PrintSources("base", lBase, nullptr);
    PrintSources("base, data only", lBase, &lDataOnly);
    std::printf("wood feeds %d channels\n", lWood->GetDstCount(nullptr));

    // A second connection of the same pair is refused.
    std::printf("again: %s\n", lBase.ConnectSrc(*lWood, eLyrConnectionData) ? "yes" : "no");

    // A page that goes takes its connections along.
    lWood.Reset();
    PrintSources("without wood", lBase, nullptr);
}
