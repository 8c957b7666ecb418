#include <lyrfilesdk/lyrsdk.h>

int main() {
    lyrsdk::KLyrPropertyHandle lNumber = lyrsdk::KLyrPropertyHandle::Create("number", lyrsdk::eDOUBLE1);
    const lyrsdk::KString lText("2.5");
    double lValue = 0;
    const bool lRead = lNumber.Set(&lText, lyrsdk::eSTRING, false) && lNumber.Get(&lValue, lyrsdk::eDOUBLE1);
    lNumber.Destroy();
    return lRead && lValue == 2.5 ? 0 : 1;
}
