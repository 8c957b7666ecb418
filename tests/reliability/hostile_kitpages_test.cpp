#include <gtest/gtest.h>

#include <utility>

#include "lyrfilesdk/lyrkit/lyrkit.h"
#include "tests/reliability/hostile_pages.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using P = HostilePages;

// The handles that are no root property of a page.
std::vector<H> NoRoots(const P& pPages) {
    std::vector<H> lHandles = {H(), H(nullptr, 0), H(nullptr, P::kChild), H(pPages.mPage.get(), P::kChild)};
    for (int lId : kNoIds)
        lHandles.emplace_back(pPages.mPage.get(), lId);
    return lHandles;
}

TEST(HostileKitPages, OwnedPages) {
    using O = KLyrOwnedPage;
    MakeHostileCalls<P>({
        {"KLyrOwnedPage::KLyrOwnedPage", kNothing,
         [](P& p) {
             for (const H& lHandle : NoRoots(p))
                 EXPECT_FALSE(O(lHandle));
             EXPECT_FALSE(O(O()));
         }},
        {"KLyrOwnedPage::operator=", kNothing,
         [](P&) {
             O lOwner = O::Create("owned", eDOUBLE1);
             O& lSame = lOwner;
             lOwner = std::move(lSame);
             EXPECT_TRUE(lOwner);
             lOwner = O();
             EXPECT_FALSE(lOwner);
         }},
        {"KLyrOwnedPage::Create", kNothing,
         [](P&) {
             EXPECT_TRUE(O::Create(H())) << "an instance of nothing";
             EXPECT_TRUE(O::Create("typed by nothing", H()));
             WithHostileTexts([](const char* pText) { EXPECT_TRUE(O::Create(pText, eDOUBLE1)); });
             for (int lCode : kNoCodes)
                 EXPECT_TRUE(O::Create("of no type", static_cast<ELyrType>(lCode)));
         }},
        {"KLyrOwnedPage::operator bool", kNothing, [](P&) { EXPECT_FALSE(O().operator bool()); }},
        {"KLyrOwnedPage::operator*", kNothing,
         [](P&) {
             const O lNothing;
             EXPECT_EQ(*lNothing, H());
         }},
        {"KLyrOwnedPage::operator->", kNothing,
         [](P&) {
             O lNothing;
             EXPECT_FALSE(lNothing->Add("child", eDOUBLE1).Valid());
             EXPECT_FALSE(lNothing->Destroy());
         }},
        {"KLyrOwnedPage::Release", kNothing, [](P&) { EXPECT_EQ(O().Release(), H()); }},
        {"KLyrOwnedPage::Reset", kNothing,
         [](P& p) {
             for (const H& lHandle : NoRoots(p)) {
                 O lOwner = O::Create("owned", eDOUBLE1);
                 lOwner.Reset(lHandle);
                 EXPECT_FALSE(lOwner);
                 lOwner.Reset(lHandle);
             }
             O lOwner = O::Create("owned", eDOUBLE1);
             lOwner.Reset(*lOwner);
             EXPECT_TRUE(lOwner);
         }},
    });
}

TEST(HostileKitPages, LookupBrackets) {
    using B = KLyrLookupBracket;
    MakeHostileCalls<P>({
        {"KLyrPropertyPage::IsCreateOrFindOpen", kNothing,
         [](P& p) {
             for (int i = 0; i < 3; ++i)
                 p.mPage->BeginCreateOrFindProperty();
             EXPECT_TRUE(p.mPage->IsCreateOrFindOpen());
             p.mPage->EndCreateOrFindProperty();
             EXPECT_FALSE(p.mPage->IsCreateOrFindOpen());
             EXPECT_FALSE(p.mBelow->IsCreateOrFindOpen());
         }},
        {"KLyrLookupBracket::KLyrLookupBracket", kNothing,
         [](P& p) {
             for (const H& lHandle : NoRoots(p))
                 EXPECT_EQ(B(lHandle).Holds(), lHandle.GetPage() != nullptr);
         }},
        {"KLyrLookupBracket::Holds", kNothing,
         [](P& p) {
             const B lOuter(H(p.mPage.get(), 0));
             EXPECT_FALSE(B(H(p.mPage.get(), 0)).Holds());
             EXPECT_FALSE(B(H()).Holds());
         }},
        {"KLyrLookupBracket::End", kNothing,
         [](P& p) {
             B lNowhere{H()};
             lNowhere.End();
             B lBracket(H(p.mPage.get(), 0));
             for (int i = 0; i < 3; ++i)
                 lBracket.End();
             EXPECT_FALSE(p.mPage->IsCreateOrFindOpen());
         }},
    });
}

TEST(HostileKitPages, ResultTexts) {
    MakeHostileCalls<NoSubject>({
        {"lyrResultText", kNothing,
         [](NoSubject&) {
             for (int lNone : {INT_MIN, -1, 12, INT_MAX}) {
                 EXPECT_STREQ(lyrResultText(static_cast<ELyrSetResult>(lNone)), "unknown");
                 EXPECT_STREQ(lyrResultText(static_cast<ELyrBoundState>(lNone)), "unknown");
                 EXPECT_STREQ(lyrResultText(static_cast<ELyrLimitVerdict>(lNone)), "unknown");
                 EXPECT_STREQ(lyrResultText(static_cast<ELyrBuildStep>(lNone)), "unknown");
                 EXPECT_STREQ(lyrResultText(static_cast<ELyrConversionVerdict>(lNone)), "unknown");
                 EXPECT_STREQ(lyrResultText(static_cast<KLyrOrigin>(lNone)), "unknown");
                 EXPECT_STREQ(lyrResultText(static_cast<KLyrPushResult>(lNone)), "unknown");
                 EXPECT_STREQ(lyrResultText(static_cast<KLyrPushReach>(lNone)), "unknown");
             }
         }},
    });
}

// The row of lyrWhyRefused is that of the overload for handles.
TEST(HostileKitPages, ReasonsOfBoundProperties) {
    MakeHostileCalls<P>({
        {"lyrWhyRefused", kNothing,
         [](P& p) {
             const KLyrBoundProperty lBound(H(p.mPage.get(), P::kChild));
             EXPECT_FALSE(lyrWhyRefused(KLyrBoundProperty(), H(), eDOUBLE1, eLyrRead).IsEmpty());
             EXPECT_FALSE(lyrWhyRefused(lBound, H(), eDOUBLE1, eLyrRead).IsEmpty());
             EXPECT_FALSE(lyrWhyRefused(lBound, H(p.mType.get(), 0), eDOUBLE1, eLyrRead).IsEmpty());
             EXPECT_FALSE(lyrWhyRefused(lBound, H(p.mTop.get(), 0), eDOUBLE1, eLyrRead).IsEmpty());
             for (int lCode : kNoCodes)
                 EXPECT_FALSE(
                     lyrWhyRefused(lBound, H(p.mPage.get(), 0), static_cast<ELyrType>(lCode), eLyrWrite).IsEmpty());
             for (int lAccess : {INT_MIN, -1, 2, INT_MAX})
                 EXPECT_FALSE(
                     lyrWhyRefused(lBound, H(p.mPage.get(), 0), eDOUBLE1, static_cast<ELyrAccess>(lAccess)).IsEmpty());
         }},
    });
}

}  // namespace
}  // namespace lyrsdk
