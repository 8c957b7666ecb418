#include "lyrfilesdk/lyrkit/klyrtypename.h"

#include <gtest/gtest.h>

#include <climits>

namespace lyrsdk {
namespace {

TEST(TypeName, IsTheNameOfTheCode) {
    EXPECT_STREQ(lyrTypeName(eUNIDENTIFIED), "eUNIDENTIFIED");
    EXPECT_STREQ(lyrTypeName(eBYTE1), "eBYTE1");
    EXPECT_STREQ(lyrTypeName(eENUM), "eENUM");
    EXPECT_STREQ(lyrTypeName(eREFERENCE), "eREFERENCE");
    EXPECT_STREQ(lyrTypeName(eDATETIME), "eDATETIME");
}

TEST(TypeName, OfWhatIsNoCodeIsUnknown) {
    for (int lCode : {-1, static_cast<int>(eMAX_TYPES), INT_MIN, INT_MAX})
        EXPECT_STREQ(lyrTypeName(static_cast<ELyrType>(lCode)), "unknown");
}

}  // namespace
}  // namespace lyrsdk
