#include "lyrfilesdk/lyrkit/klyrownedpage.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"
#include "lyrfilesdk/lyrkit/klyrtypedadd.h"
#include "tests/support/handle_pages.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;

static_assert(!std::is_copy_constructible_v<KLyrOwnedPage> && !std::is_copy_assignable_v<KLyrOwnedPage>);
static_assert(std::is_nothrow_move_constructible_v<KLyrOwnedPage> && std::is_nothrow_move_assignable_v<KLyrOwnedPage>);
static_assert(!std::is_convertible_v<H, KLyrOwnedPage>, "no page is taken over by chance");
static_assert(sizeof(KLyrOwnedPage) == sizeof(H));

template <typename Owner, typename Enable = void>
constexpr bool kGivesHandle = false;
template <typename Owner>
constexpr bool kGivesHandle<Owner, std::void_t<decltype(*std::declval<Owner>())>> = true;

static_assert(kGivesHandle<KLyrOwnedPage&> && kGivesHandle<const KLyrOwnedPage&>);
static_assert(!kGivesHandle<KLyrOwnedPage> && !kGivesHandle<const KLyrOwnedPage>, "the page would be gone");

// Every test sees by the memory in use whether pages were destroyed.
class OwnedPages : public HandleTest {};

TEST_F(OwnedPages, AreMadeAsTheHandleMakesThem) {
    const KLyrOwnedPage lPlain = KLyrOwnedPage::Create();
    EXPECT_STREQ(lPlain->GetName(), "");
    EXPECT_EQ(lPlain->GetType(), eUNIDENTIFIED);

    KLyrOwnedPage lLamp = KLyrOwnedPage::Create("lamp", eDOUBLE1);
    EXPECT_STREQ(lLamp->GetName(), "lamp");
    EXPECT_EQ(lLamp->GetType(), eDOUBLE1);
    EXPECT_TRUE(lLamp->Add("power", eDOUBLE1).Valid());

    const KLyrOwnedPage lDesk = KLyrOwnedPage::Create(*lLamp);
    EXPECT_EQ(lyrSet(*lLamp, 5.0), eLyrSetWritten);
    EXPECT_EQ(lyrGet<double>(*lDesk), 5.0) << "an instance";

    const KLyrOwnedPage lTyped = KLyrOwnedPage::Create("shade", *lLamp);
    EXPECT_EQ(lTyped->GetTypeInfo(), *lLamp);
    EXPECT_TRUE(lTyped->Find("power", true).Valid());
}

TEST_F(OwnedPages, GiveTheHandleOfTheirRoot) {
    const H lRoot = H::Create("lamp", eUNIDENTIFIED);
    KLyrOwnedPage lLamp(lRoot);
    EXPECT_TRUE(lLamp);
    EXPECT_EQ(*lLamp, lRoot);
    EXPECT_EQ(*lLamp.operator->(), lRoot);
    EXPECT_EQ(*std::as_const(lLamp).operator->(), lRoot);
}

TEST_F(OwnedPages, AreOwnersOfNothingWithoutARootProperty) {
    const KLyrOwnedPage lLamp = KLyrOwnedPage::Create("lamp", eUNIDENTIFIED);
    const H lPower = lyrAdd(*lLamp, "power", 60.0);
    for (const H& lNoRoot : {H(), H(nullptr, 0), H(nullptr, 1), H(lLamp->GetPage(), -1), lPower}) {
        const KLyrOwnedPage lNothing(lNoRoot);
        EXPECT_FALSE(lNothing);
        EXPECT_EQ(*lNothing, H());
        EXPECT_FALSE(lNothing->Find("power", true).Valid());
    }
    EXPECT_FALSE(KLyrOwnedPage());
    EXPECT_EQ(lyrGet<double>(lPower), 60.0) << "nobody destroyed it";
}

TEST_F(OwnedPages, MoveFromOwnerToOwner) {
    KLyrOwnedPage lFirst = KLyrOwnedPage::Create("lamp", eUNIDENTIFIED);
    const H lRoot = *lFirst;
    KLyrOwnedPage lSecond(std::move(lFirst));
    EXPECT_FALSE(lFirst);  // NOLINT(bugprone-use-after-move): it owns nothing
    EXPECT_EQ(*lSecond, lRoot);

    KLyrOwnedPage lThird = KLyrOwnedPage::Create("another", eUNIDENTIFIED);
    lThird = std::move(lSecond);
    EXPECT_EQ(*lThird, lRoot) << "and the other page is destroyed";

    KLyrOwnedPage& lSame = lThird;
    lThird = std::move(lSame);
    EXPECT_EQ(*lThird, lRoot) << "an owner that is given to itself keeps its page";
}

TEST_F(OwnedPages, LiveInContainers) {
    std::vector<KLyrOwnedPage> lPages;
    lPages.push_back(KLyrOwnedPage::Create("lamp", eUNIDENTIFIED));
    const H lPower = lyrAdd(*lPages.front(), "power", 60.0);
    for (int i = 0; i < 20; ++i)
        lPages.push_back(KLyrOwnedPage::Create(*lPages.front()));
    EXPECT_EQ(lPages.front()->GetReferencedByCount(), 20);
    lPages.pop_back();
    EXPECT_EQ(lPages.front()->GetReferencedByCount(), 19);
    // The page above goes before its instances.
    lPages.erase(lPages.begin());
    EXPECT_EQ(lyrGet<double>(H(lPages.back()->GetPage(), lPower.GetId())), 60.0);
}

TEST_F(OwnedPages, GiveTheirPageUpWithoutDestroyingIt) {
    KLyrOwnedPage lLamp = KLyrOwnedPage::Create("lamp", eUNIDENTIFIED);
    const H lRoot = *lLamp;
    const OwnedRoot lReleased(lLamp.Release());
    EXPECT_EQ(*lReleased, lRoot);
    EXPECT_FALSE(lLamp);
    EXPECT_EQ(lLamp.Release(), H());
    EXPECT_STREQ(lReleased->GetName(), "lamp");
}

TEST_F(OwnedPages, TakeAnotherPageForTheirOwn) {
    const KLyrOwnedPage lAbove = KLyrOwnedPage::Create("above", eUNIDENTIFIED);
    KLyrOwnedPage lOwner = KLyrOwnedPage::Create(*lAbove);
    const H lOther = H::Create("other", eUNIDENTIFIED);
    lOwner.Reset(lOther);
    EXPECT_EQ(*lOwner, lOther);
    EXPECT_EQ(lAbove->GetReferencedByCount(), 0) << "the first one is destroyed";
    lOwner.Reset(*lOwner);
    EXPECT_EQ(*lOwner, lOther) << "its own it keeps";
    lOwner.Reset();
    EXPECT_FALSE(lOwner);
    lOwner.Reset();
    EXPECT_FALSE(lOwner);
}

TEST_F(OwnedPages, AreLetGoOfByDestroy) {
    KLyrOwnedPage lLamp = KLyrOwnedPage::Create("lamp", eUNIDENTIFIED);
    EXPECT_TRUE(lLamp->Destroy());
    EXPECT_FALSE(lLamp);
    EXPECT_FALSE(lLamp->Destroy());
}

TEST_F(OwnedPages, AreNoneWithoutMemory) {
    const KLyrOwnedPage lLamp = KLyrOwnedPage::Create("lamp", eUNIDENTIFIED);
    const FailAllocations lFail(0, true);
    EXPECT_FALSE(KLyrOwnedPage::Create());
    EXPECT_FALSE(KLyrOwnedPage::Create("desk", eUNIDENTIFIED));
    EXPECT_FALSE(KLyrOwnedPage::Create(*lLamp));
    EXPECT_FALSE(KLyrOwnedPage::Create("desk", *lLamp));
}

}  // namespace
}  // namespace lyrsdk
