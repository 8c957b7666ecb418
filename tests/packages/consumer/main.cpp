#include <cstdio>

#include <lyrfilesdk/lyrsdk.h>

int main() {
    lyrsdk::KLyrPropertyHandle lPower = lyrsdk::KLyrPropertyHandle::Create("power", lyrsdk::eDOUBLE1);
    const lyrsdk::KString lText("75.5");
    double lWatts = 0;
    lPower.Set(&lText, lyrsdk::eSTRING);
    lPower.Get(&lWatts, lyrsdk::eDOUBLE1);
    lPower.Destroy();
    std::printf("%.1f W, %d-bit\n", lWatts, static_cast<int>(sizeof(void*)) * 8);
}
