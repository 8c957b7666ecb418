// A prototype lamp, two lamps made from it, and what each of them holds itself.
//
// A compound type is a page as well: every property typed by it gets a copy of its children.

#include <cstdio>

#include "lyrfilesdk/lyrsdk.h"

using namespace lyrsdk;

namespace {

// Prints the property's children, depth first; a star marks a value that the page holds itself.
void Print(const char* pTitle, const KLyrPropertyHandle& pRoot) {
    std::printf("%s\n", pTitle);
    for (KLyrPropertyHandle lIt = pRoot.GetFirstDescendent(); lIt.Valid(); lIt = pRoot.GetNextDescendent(lIt)) {
        KString lValue;
        lIt.Get(&lValue, eSTRING);
        const bool lOwn = lIt.GetValueInheritType(false) == eLyrOverride;
        const bool lInside = !lIt.IsChildOf(pRoot);
        std::printf("%s%c %s = %s\n", lInside ? "    " : "  ", lOwn ? '*' : ' ', lIt.GetName(), lValue.Buffer());
    }
}

void SetDouble(const KLyrPropertyHandle& pObject, const char* pPath, double pValue) {
    pObject.Find(pPath, "/", true).Set(&pValue, eDOUBLE1, true);
}

KLyrOwnedPage MakePrototype(const KLyrPropertyHandle& pPlace) {
    KLyrOwnedPage lLamp = KLyrOwnedPage::Create("lamp", eUNIDENTIFIED);
    lLamp->Add("place", pPlace);

    KLyrPropertyHandle lPower = lLamp->Add("power", eDOUBLE1);
    const double lDefault = 60, lLeast = 0;
    lPower.Set(&lDefault, eDOUBLE1, false);
    lPower.SetMin(&lLeast, eDOUBLE1);
    lPower.SetLabel("Power (W)");
    lPower.ModifyFlags(LyrPropertyFlags::eANIMATABLE, true);

    KLyrPropertyHandle lState = lLamp->Add("state", eENUM);
    lState.AddEnumValue("off");
    lState.AddEnumValue("on");
    return lLamp;
}

}  // namespace

int main() {
    KLyrOwnedPage lPlace = KLyrOwnedPage::Create("place", eUNIDENTIFIED);
    lPlace->Add("x", eDOUBLE1);
    lPlace->Add("y", eDOUBLE1);

    const KLyrOwnedPage lLamp = MakePrototype(*lPlace);
    KLyrOwnedPage lDesk = KLyrOwnedPage::Create(*lLamp);
    KLyrOwnedPage lHall = KLyrOwnedPage::Create(*lLamp);
    SetDouble(*lDesk, "place/x", 2.5);
    SetDouble(*lDesk, "power", 40);
    const int lOn = 1;
    lHall->Find("state", true).Set(&lOn, eENUM, true);
    Print("desk", *lDesk);
    Print("hall", *lHall);

    // A value that equals the prototype's goes back to being inherited.
    SetDouble(*lDesk, "power", 60);
    const bool lOwn = lDesk->Find("power", true).GetValueInheritType(false) == eLyrOverride;
    std::printf("desk power is %s\n", lOwn ? "its own" : "inherited");

    // The hall's own values become the prototype's, and the desk sees them.
    lHall->PushPropertiesToParentInstance();
    KLyrPropertyHandle lState = lDesk->Find("state", true);
    int lValue = 0;
    lState.Get(&lValue, eENUM);
    std::printf("desk state: %s\n", lState.GetEnumValue(lValue));

    KLyrPropertyHandle lPower = lDesk->Find("power", true);
    double lLeast = -1;
    lPower.GetMin(&lLeast, eDOUBLE1);
    std::printf("%s: at least %g, %s\n", lPower.GetLabel(), lLeast,
                lPower.GetFlags() & LyrPropertyFlags::eANIMATABLE ? "can be animated" : "cannot be animated");
}
