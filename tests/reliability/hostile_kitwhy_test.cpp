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

TEST(HostileKitWhy, Overrides) {
    MakeHostileCalls<HostilePages>({
        {"lyrOverrideOf", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_FALSE(lyrOverrideOf(lProperty).mIsHeld);
         }},
        {"lyrVisitOverrides", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_EQ(lyrVisitOverrides(lProperty, [](const KLyrOverride&) {}), 0);
         }},
        {"lyrRedundancyOf", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_FALSE(lyrRedundancyOf(lProperty).IsAny());
         }},
        {"KLyrRedundancy::IsAny", kNothing, [](HostilePages&) { EXPECT_FALSE(KLyrRedundancy().IsAny()); }},
        {"lyrVisitRedundant", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_EQ(lyrVisitRedundant(lProperty, [](const KLyrRedundancy&) {}), 0);
         }},
        {"lyrDropRedundant", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_EQ(lyrDropRedundant(lProperty), 0);
         }},
    });
}

constexpr int kNoReverts[] = {INT_MIN, -1, 3, INT_MAX};

TEST(HostileKitWhy, GoingBack) {
    MakeHostileCalls<HostilePages>({
        {"lyrRevert", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_FALSE(lyrRevert(lProperty, KLyrRevert::eBoth));
             const KLyrPropertyHandle lOwn(pPages.mBelow.get(), HostilePages::kChild);
             for (const int lWhat : kNoReverts)
                 EXPECT_FALSE(lyrRevert(lOwn, static_cast<KLyrRevert>(lWhat)));
             // What a page added has nowhere to go back to.
             EXPECT_FALSE(lyrRevert(KLyrPropertyHandle(pPages.mPage.get(), HostilePages::kChild)));
         }},
        {"lyrRevertSubtree", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_EQ(lyrRevertSubtree(lProperty, KLyrRevert::eBoth), 0);
             for (const int lWhat : kNoReverts)
                 EXPECT_EQ(lyrRevertSubtree({pPages.mBelow.get(), 0}, static_cast<KLyrRevert>(lWhat)), 0);
             EXPECT_EQ(lyrRevertSubtree({pPages.mTop.get(), 0}), 0);
         }},
        {"lyrRevertAll", kNothing,
         [](HostilePages& pPages) {
             EXPECT_EQ(lyrRevertAll(KLyrPropertyHandle()), 0);
             EXPECT_EQ(lyrRevertAll({nullptr, 0}), 0);
             EXPECT_EQ(lyrRevertAll({pPages.mPage.get(), INT_MIN}), 0);
             for (const int lWhat : kNoReverts)
                 EXPECT_EQ(lyrRevertAll({pPages.mBelow.get(), 0}, static_cast<KLyrRevert>(lWhat)), 0);
         }},
    });
}

TEST(HostileKitWhy, Pushing) {
    MakeHostileCalls<HostilePages>({
        {"lyrPushItemsOf", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_EQ(lyrPushItemsOf(lProperty).mResult, KLyrPushResult::eUnknown);
             EXPECT_EQ(lyrPushItemsOf({pPages.mTop.get(), 0}).mResult, KLyrPushResult::eNoParent);
         }},
        {"lyrPushProperty", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_EQ(lyrPushProperty(lProperty), KLyrPushResult::eUnknown);
             EXPECT_EQ(lyrPushProperty({pPages.mTop.get(), 0}), KLyrPushResult::eNoParent);
             EXPECT_EQ(lyrPushProperty({pPages.mBelow.get(), 0}), KLyrPushResult::eNothing);
             EXPECT_EQ(lyrPushProperty({pPages.mPage.get(), HostilePages::kPart}), KLyrPushResult::eNoPlace);
         }},
        {"lyrVisitPush", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_EQ(lyrVisitPush(lProperty, [](const KLyrPushItems&) {}), 0);
             EXPECT_EQ(lyrVisitPush({pPages.mTop.get(), 0}, [](const KLyrPushItems&) {}), 0);
             EXPECT_EQ(lyrVisitPush({pPages.mPage.get(), HostilePages::kChild}, [](const KLyrPushItems&) {}), 0);
         }},
        {"lyrVisitPushEffects", kNothing,
         [](HostilePages& pPages) {
             for (const KLyrPropertyHandle& lProperty : NoProperties(pPages))
                 EXPECT_EQ(lyrVisitPushEffects(lProperty, [](const KLyrPushEffect&) {}), 0);
             EXPECT_EQ(lyrVisitPushEffects({pPages.mTop.get(), 0}, [](const KLyrPushEffect&) {}), 0);
         }},
        {"KLyrPushEffect::IsChange", kNothing, [](HostilePages&) { EXPECT_FALSE(KLyrPushEffect().IsChange()); }},
    });
}

}  // namespace
}  // namespace lyrsdk
