#include <gtest/gtest.h>

#include "lyrfilesdk/lyrkit/lyrkit.h"
#include "tests/reliability/hostile_pages.h"

// What the kit says about inheritance, asked about properties that are not there.

namespace lyrsdk {
namespace {

// Handles that name no property of the pages.
std::vector<KLyrPropertyHandle> NoProperties(const HostilePages& pPages) {
    std::vector<KLyrPropertyHandle> lHandles = {KLyrPropertyHandle(), KLyrPropertyHandle(nullptr, 0)};
    for (const int lId : {INT_MIN, -5, -1, 77, INT_MAX})
        for (const OwnedPage* lPage : {&pPages.mTop, &pPages.mPage, &pPages.mBelow})
            lHandles.emplace_back(lPage->get(), lId);
    return lHandles;
}

TEST(HostileKitWhy, Explanations) {
    MakeHostileCalls<HostilePages>({
        {"lyrExplain", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_EQ(lyrExplain(lProperty).mValue.mOrigin, KLyrOrigin::eNowhere);
         }},
    });
}

}  // namespace
}  // namespace lyrsdk
