// Lamps, their instances and connections, and what is unusual about pages.

#include <cstdio>

#include "tests/gdb/scene.h"

namespace scene {

using namespace lyrsdk;

// --- lamps ---------------------------------------------------------------------------------------------------------

KLyrPropertyHandle sgLamp;
KLyrPropertyHandle sgDeskLamp;
KLyrPropertyHandle sgMyLamp;
KLyrPropertyHandle sgPower;
KLyrPropertyHandle sgDeskPower;
KLyrPropertyHandle sgMyPower;
KLyrPropertyHandle sgState;
KLyrPropertyHandle sgMyState;
KLyrPropertyHandle sgPlaceType;
KLyrPropertyHandle sgPlace;
KLyrPropertyHandle sgPlaceX;
KLyrPropertyHandle sgNoHandle;
KLyrPropertyHandle sgNotFound;
KLyrPropertyPage* sgLampPage;
KLyrPropertyPage* sgDeskPage;
KLyrPropertyIdGenerator* sgGenerator;
KLyrPropertyEntry* sgPowerEntry;
KLyrPropertyInfo* sgPowerInfo;
KLyrPropertyInfo* sgStateInfo;
KLyrPropertyInfo* sgPlaceInfo;
KLyrPropertyValue* sgDeskPowerValue;
KLyrPropertyFlags sgNoFlags;
KLyrPropertyFlags sgSomeFlags(LyrPropertyFlags::eANIMATABLE | LyrPropertyFlags::eHIDDEN);
KLyrPropertyFlags* sgDeskFlags;

namespace {

template <typename T>
T* ItemOf(const KLyrPropertyHandle& pHandle) {
    return pHandle.GetPage()->GetPropertyItem<T>(nullptr, pHandle.GetId());
}

void DescribeLamp() {
    const double lNone = 0;
    const int lMost = 100;
    sgPower.SetLabel("Power (W)");
    sgPower.SetMin(&lNone, eDOUBLE1);
    sgPower.SetSoftMax(&lMost, eINTEGER1);
    sgPower.SetUserTag(7);
    sgPower.ModifyFlags(LyrPropertyFlags::eANIMATABLE, true);
    sgState.AddEnumValue("off");
    sgState.AddEnumValue("on");
    sgState.AddEnumValue("dimmed \"low\"");
}

void SetWatts(KLyrPropertyHandle& pPower, double pWatts) {
    pPower.Set(&pWatts, eDOUBLE1);
}

}  // namespace

void MakeLamps() {
    sgPlaceType = KLyrPropertyHandle::Create("place", eDOUBLE3);
    sgPlaceType.Add("x", eDOUBLE1);
    sgLamp = KLyrPropertyHandle::Create("lamp", eUNIDENTIFIED);
    sgPower = sgLamp.Add("power", eDOUBLE1);
    sgState = sgLamp.Add("state", eENUM);
    sgPlace = sgLamp.Add("place", sgPlaceType);
    DescribeLamp();
    SetWatts(sgPower, 60);

    sgDeskLamp = KLyrPropertyHandle::Create(sgLamp);
    sgMyLamp = KLyrPropertyHandle::Create(sgDeskLamp);
    sgDeskPower = sgDeskLamp.Find("power", true);
    sgMyPower = sgMyLamp.Find("power", true);
    SetWatts(sgDeskPower, 75.5);
    sgDeskPower.ModifyFlags(LyrPropertyFlags::eHIDDEN, true);
    sgDeskPower.ModifyFlags(LyrPropertyFlags::eANIMATABLE, false);
    sgMyState = sgMyLamp.Find("state", true);
    const int lOn = 1;
    sgMyState.Set(&lOn, eINTEGER1);
    sgPlaceX = sgMyLamp.Find("place/x", "/", true);
    sgNotFound = sgDeskLamp.Find("colour", true);

    sgLampPage = sgLamp.GetPage();
    sgDeskPage = sgDeskLamp.GetPage();
    sgGenerator = sgLampPage->GetIdGenerator();
    sgPowerEntry = sgLampPage->GetPropertyEntry(sgPower.GetId());
    sgPowerInfo = ItemOf<KLyrPropertyInfo>(sgPower);
    sgStateInfo = ItemOf<KLyrPropertyInfo>(sgState);
    sgPlaceInfo = ItemOf<KLyrPropertyInfo>(sgPlace);
    sgDeskPowerValue = ItemOf<KLyrPropertyValue>(sgDeskPower);
    sgDeskFlags = ItemOf<KLyrPropertyFlags>(sgDeskPower);
}

// --- connections ---------------------------------------------------------------------------------------------------

KLyrPropertyHandle sgSwitch;
KLyrPropertyHandle sgMain;
KLyrPropertyConnect* sgPowerConnect;
KLyrPropertyConnect* sgMainConnect;
const KLyrConnectionPoint* sgPowerPoint;
KLyrConnectionPoint sgLonePoint(nullptr);
KLyrConnectionPoint sgOtherPoint(nullptr);
KLyrConnectionPoint sgThinnedPoint(nullptr);

// More destinations than a list holds without an index; every other one goes again, so that places are free.
void MakeConnections() {
    sgSwitch = KLyrPropertyHandle::Create("switch", eBOOL1);
    sgMain = sgSwitch.Add("main", eBOOL1);
    sgPower.ConnectSrc(sgSwitch);
    sgPower.ConnectSrc(sgMain, eLyrConnectionSystem);
    KLyrPropertyHandle lBulbs[34];
    for (int i = 0; i < 34; ++i) {
        char lName[16];
        std::snprintf(lName, sizeof(lName), "bulb %d", i);
        lBulbs[i] = sgMain.Add(lName, eBOOL1);
        sgMain.ConnectDst(lBulbs[i], eLyrConnectionData);
    }
    for (int i = 0; i < 34; i += 2)
        sgMain.DisconnectDst(lBulbs[i]);
    sgMain.ConnectSrc(lBulbs[0], eLyrConnectionNone);
    sgPowerConnect = ItemOf<KLyrPropertyConnect>(sgPower);
    sgMainConnect = ItemOf<KLyrPropertyConnect>(sgMain);
    sgPowerPoint = &sgPowerConnect->GetConnectionPoint();
    sgLonePoint.ConnectSrc(&sgOtherPoint, static_cast<kLyrConnectionType>(eLyrConnectionUnidirectional | 0x1000));
    // A list that holds one connection again.
    KLyrConnectionPoint lPoint(nullptr);
    lPoint.ConnectSrc(&sgThinnedPoint, eLyrConnectionUser);
    sgOtherPoint.ConnectSrc(&sgThinnedPoint, eLyrConnectionData);
}

// --- what is unusual -----------------------------------------------------------------------------------------------

KLyrPropertyHandle sgDeep;
KLyrPropertyHandle sgInCircle;
KLyrPropertyHandle sgOrphan;
KLyrPropertyHandle sgOddName;
KLyrPropertyHandle sgBare;
KLyrPropertyHandle sgOddType;
KLyrPropertyHandle sgGone;
KLyrPropertyHandle sgGoneInPlace;
KLyrPropertyHandle sgLarge;
KLyrPropertyHandle sgFarUp;

void MakeOddities() {
    KLyrPropertyHandle lRoot = KLyrPropertyHandle::Create("odd", eUNIDENTIFIED);
    KLyrPropertyPage* lPage = lRoot.GetPage();
    sgDeep = lRoot;
    for (int i = 0; i < 40; ++i)
        sgDeep = sgDeep.Add("deeper", eINTEGER1);
    const int lNext = lPage->GetIdGenerator()->PeekNextId();
    lPage->Add(lNext + 1, "hen", eINTEGER1);
    sgInCircle = KLyrPropertyHandle(lPage, lPage->Add(lNext, "egg", eINTEGER1));
    sgOrphan = KLyrPropertyHandle(lPage, lPage->Add(4711, "orphan", eINTEGER1));
    sgOddName = lRoot.Add("a \"b\"\n\xFF", eINTEGER1);
    sgBare = KLyrPropertyHandle(lPage, lPage->Add(0, nullptr, nullptr, nullptr, false));
    sgOddType = lRoot.Add("odd type", static_cast<ELyrType>(99));

    sgGone = KLyrPropertyHandle::Create("gone", eINTEGER1);
    KLyrPropertyHandle(sgGone).Destroy();
    KeepWhatIsFreed(true);
    sgGoneInPlace = KLyrPropertyHandle::Create("gone", eINTEGER1);
    KLyrPropertyHandle(sgGoneInPlace).Destroy();
    KeepWhatIsFreed(false);

    KLyrPropertyHandle lLarge = KLyrPropertyHandle::Create("large", eUNIDENTIFIED);
    for (int i = 1; i <= 400; ++i) {
        KLyrPropertyHandle lNumber = lLarge.Add("number", eINTEGER1);
        lNumber.Set(&i, eINTEGER1);
        if (i == 300)
            sgLarge = lNumber;
    }
    KLyrPropertyHandle lPageOfChain = lLarge;
    for (int i = 0; i < 1000; ++i)
        lPageOfChain = KLyrPropertyHandle::Create(lPageOfChain);
    sgFarUp = KLyrPropertyHandle(lPageOfChain.GetPage(), sgLarge.GetId());
}

}  // namespace scene
