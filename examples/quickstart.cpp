#include <cstdio>

#include "lyrfilesdk/lyrsdk.h"

using lyrsdk::KLyrOwnedPage, lyrsdk::KString;

int main() {
    KLyrOwnedPage lLamp = KLyrOwnedPage::Create("lamp", lyrsdk::eUNIDENTIFIED);
    const int lWatts = 60;  // becomes a double
    lLamp->Add("power", lyrsdk::eDOUBLE1).Set(&lWatts, lyrsdk::eINTEGER1);

    KLyrOwnedPage lDeskLamp = KLyrOwnedPage::Create(*lLamp);  // an instance: sees what the lamp holds
    const KString lBrighter("75.5");                          // becomes a double, and the instance's own
    lDeskLamp->Find("power", true).Set(&lBrighter, lyrsdk::eSTRING);

    KString lPowers[2];
    lLamp->Find("power", true).Get(&lPowers[0], lyrsdk::eSTRING);
    lDeskLamp->Find("power", true).Get(&lPowers[1], lyrsdk::eSTRING);
    std::printf("lamp: %s W, desk lamp: %s W\n", lPowers[0].Buffer(), lPowers[1].Buffer());
}
