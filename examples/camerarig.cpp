// A camera rig: a dolly, a crane, an actor and a zoom ring drive a camera through connections.
//
// A connection says which property takes its value from which. It moves no value by itself: the library keeps the graph
// and the types, and the program decides when to evaluate it. Here a property is evaluated by walking to its source
// first, and to that one's, and so on.

#include <iostream>

#include "lyrfilesdk/lyrsdk.h"

using namespace lyrsdk;

namespace {

// Selects the connections that carry a value. A connection may also just say that things belong together.
class DataOnly : public KLyrConnectionPointFilter {
public:
    bool Selects(const KLyrConnectionPoint*, kLyrConnectionType pType) const override {
        return (pType & eLyrConnectionData) != 0;
    }
};

// The pages, each with a root property of the name of the thing. Whoever owns a page destroys it.
struct Rig {
    KLyrOwnedPage mCameraType = KLyrOwnedPage::Create("camera", eUNIDENTIFIED);
    KLyrOwnedPage mCamera = KLyrOwnedPage::Create(*mCameraType);
    KLyrOwnedPage mDolly = KLyrOwnedPage::Create("dolly", eUNIDENTIFIED);
    KLyrOwnedPage mCrane = KLyrOwnedPage::Create("crane", eUNIDENTIFIED);
    KLyrOwnedPage mActor = KLyrOwnedPage::Create("actor", eUNIDENTIFIED);
    KLyrOwnedPage mZoom = KLyrOwnedPage::Create("zoom", eUNIDENTIFIED);
    DataOnly mData;
};

// "camera/focal length"
void Print(const KLyrPropertyHandle& pProperty) {
    std::cout << KLyrPropertyHandle(pProperty.GetPage(), 0).GetName() << '/';
    lyrDumpPath(std::cout, pProperty);
}

// --- connecting ----------------------------------------------------------------------------------------------------

// A connection is made whatever the types are. What would become of the values is known before the first one is sent.
bool Drive(KLyrPropertyHandle pProperty, const KLyrPropertyHandle& pSource) {
    const ELyrType lFrom = pSource.GetType();
    const ELyrType lTo = pProperty.GetType();
    Print(pSource);
    std::cout << " -> ";
    Print(pProperty);
    std::cout << ": " << lyrTypeName(lFrom) << " to " << lyrTypeName(lTo) << ", "
              << lyrVerdictText(lyrConversionVerdict(lFrom, lTo)) << '\n';
    return !lyrConversionIsRefused(lFrom, lTo) && pProperty.ConnectSrc(pSource, eLyrConnectionData);
}

// The camera has its position and focal length from its type until something drives them.
bool AddProperties(const Rig& pRig) {
    const lyrDouble3 lOrigin{{0, 0, 0}};
    return lyrAdd(*pRig.mCameraType, "position", lOrigin).Valid() &&
           lyrAdd(*pRig.mCameraType, "target", lOrigin).Valid() &&
           lyrAdd(*pRig.mCameraType, "focal length", 50.0).Valid() &&
           lyrAdd(*pRig.mDolly, "position", lOrigin).Valid() &&
           lyrAdd(*pRig.mCrane, "position", lyrDouble3{{0, 6, 0}}).Valid() &&
           lyrAdd(*pRig.mCrane, "serviced on", eDATETIME).Valid() &&
           lyrAdd(*pRig.mActor, "position", lyrDouble3{{4, 0, 3}}).Valid() &&
           lyrAdd(*pRig.mActor, "eyes", lOrigin).Valid() &&
           lyrAdd(*pRig.mZoom, "ring", "35").Valid();  // the ring sends texts
}

bool Connect(const Rig& pRig) {
    KLyrPropertyHandle lPosition = pRig.mCamera->Find("position", true);
    const KLyrPropertyHandle lEyes = pRig.mActor->Find("eyes", true);
    const bool lIsDriven = Drive(lPosition, pRig.mDolly->Find("position", true)) &&
                           Drive(lPosition, pRig.mCrane->Find("position", true)) &&
                           Drive(lEyes, pRig.mActor->Find("position", true)) &&
                           Drive(pRig.mCamera->Find("target", true), lEyes) &&
                           Drive(pRig.mCamera->Find("focal length", true), pRig.mZoom->Find("ring", true));
    const bool lIsRefused = !Drive(pRig.mCamera->Find("focal length", true), pRig.mCrane->Find("serviced on", true));
    // Says only that the two belong together.
    return lIsDriven && lIsRefused && lPosition.ConnectSrc(*pRig.mActor, eLyrConnectionReference);
}

void PrintSources(const char* pTitle, const KLyrPropertyHandle& pProperty, KLyrConnectionPointFilter* pFilter) {
    std::cout << pTitle << ':';
    for (const KLyrPropertyHandle& lSource : lyrSources(pProperty, pFilter)) {
        std::cout << ' ';
        Print(lSource);
    }
    std::cout << '\n';
}

// --- evaluating ----------------------------------------------------------------------------------------------------

// Connections may lead in a circle.
constexpr int kMostHops = 16;

// Brings a property up to date. Of several sources the first one that carries a value counts.
bool Update(const KLyrPropertyHandle& pProperty, DataOnly& pFilter, int pHops = 0) {
    const KLyrPropertyHandle lSource = pProperty.GetSrc(&pFilter, 0);
    if (!lSource.Valid())
        return true;
    if (pHops == kMostHops || !Update(lSource, pFilter, pHops + 1))
        return false;
    bool lIsSet = false;
    // The visitor gets the value in the source's own type, and lyrSet converts it.
    const bool lIsRead = lyrVisit(lSource, [&pProperty, &lIsSet](const auto& pValue) {
        lIsSet = lyrSet(pProperty, pValue, eLyrSetPin) == eLyrSetWritten;
    });
    return lIsRead && lIsSet;
}

// Evaluates the camera and shows it.
bool Shoot(const char* pTitle, Rig& pRig) {
    std::cout << pTitle << ':';
    bool lIsUpToDate = true;
    for (const KLyrPropertyHandle& lProperty : lyrChildren(*pRig.mCamera)) {
        lIsUpToDate = Update(lProperty, pRig.mData) && lIsUpToDate;
        std::cout << ' ' << lProperty.GetName() << ' ';
        lIsUpToDate = lyrDumpValue(std::cout, lProperty) && lIsUpToDate;
    }
    std::cout << (lIsUpToDate ? "\n" : " (not up to date)\n");
    return lIsUpToDate;
}

bool RollDolly(const Rig& pRig) {
    const KLyrPropertyHandle lDolly = pRig.mDolly->Find("position", true);
    const KLyrPropertyHandle lRing = pRig.mZoom->Find("ring", true);
    return lyrSet(lDolly, lyrDouble3{{1.5, 1, -4}}) == eLyrSetWritten && lyrSet(lRing, "85") == eLyrSetWritten;
}

// The actor is to look at what the camera looks at, which is the actor.
bool TryCircle(Rig& pRig) {
    KLyrPropertyHandle lPosition = pRig.mActor->Find("position", true);
    const KLyrPropertyHandle lTarget = pRig.mCamera->Find("target", true);
    const bool lIsFound = Drive(lPosition, lTarget) && !Shoot("in a circle", pRig);
    return lPosition.DisconnectSrc(lTarget) && lIsFound;
}

// --- when drivers go -----------------------------------------------------------------------------------------------

// What is destroyed takes its connections along, so that no walk ever meets something that is gone.
bool LoseDrivers(Rig& pRig) {
    const KLyrPropertyHandle lFocalLength = pRig.mCamera->Find("focal length", true);
    if (!pRig.mDolly->Destroy() || !Shoot("without dolly, the crane drives", pRig))
        return false;
    // The camera stays as it was driven last: the value is its own. Reverting shows what its type has.
    if (!pRig.mZoom->Destroy() || !Shoot("without zoom", pRig) || !lyrRevert(lFocalLength))
        return false;
    // One property may go, and its page stay.
    return pRig.mActor->Find("eyes", true).Destroy() && Shoot("reverted, and without eyes", pRig);
}

bool Run() {
    Rig lRig;
    if (!AddProperties(lRig) || !Connect(lRig))
        return false;
    std::cout << '\n';
    PrintSources("all sources", lRig.mCamera->Find("position", true), nullptr);
    PrintSources("of values", lRig.mCamera->Find("position", true), &lRig.mData);
    std::cout << '\n';
    if (!Shoot("at rest", lRig) || !RollDolly(lRig) || !Shoot("on the move", lRig) || !TryCircle(lRig))
        return false;
    // The graph, for a program that draws it.
    std::cout << '\n';
    if (!lyrDumpConnectionsAsDot(std::cout, *lRig.mCamera))
        return false;
    std::cout << '\n';
    if (!LoseDrivers(lRig))
        return false;
    PrintSources("sources left", lRig.mCamera->Find("position", true), nullptr);
    return true;
}

}  // namespace

int main() {
    if (Run())
        return 0;
    std::cerr << "the rig could not be built\n";
    return 1;
}
