#include <gtest/gtest.h>

#include "lyrfilesdk/lyrkit/lyrkit.h"
#include "tests/reliability/hostile_pages.h"

namespace lyrsdk {
namespace {

TEST(HostileKit, TypeCodes) {
    MakeHostileCalls<NoSubject>({
        {"lyrTypeName", kNothing,
         [](NoSubject&) {
             for (int lCode : {INT_MIN, -1, static_cast<int>(eMAX_TYPES), INT_MAX})
                 EXPECT_STREQ(lyrTypeName(static_cast<ELyrType>(lCode)), "unknown");
         }},
        {"lyrTypeCodeOf", kNothing, [](NoSubject&) { EXPECT_EQ(lyrTypeCodeOf<double>(), eDOUBLE1); }},
    });
}

}  // namespace
}  // namespace lyrsdk
