#include "lyrfilesdk/klyrplugins/klyrplug.h"

#include <gtest/gtest.h>

namespace lyrsdk {
namespace {

TEST(KLyrPlug, HasWipeModeOffUntilItIsSwitchedOn) {
    EXPECT_FALSE(KLyrPlug::GetWipeMode());
    KLyrPlug::SetWipeMode(true);
    EXPECT_TRUE(KLyrPlug::GetWipeMode());
    EXPECT_TRUE(KLyrPlug::sgWipeMode);
    KLyrPlug::SetWipeMode(false);
    EXPECT_FALSE(KLyrPlug::GetWipeMode());
    KLyrPlug::sgWipeMode = true;
    EXPECT_TRUE(KLyrPlug::GetWipeMode());
    KLyrPlug::sgWipeMode = false;
}

}  // namespace
}  // namespace lyrsdk
