#include <gtest/gtest.h>

#include "lyrfilesdk/lyrkit/lyrkit.h"
#include "tests/reliability/hostile_pages.h"

namespace lyrsdk {
namespace {

using P = HostilePages;

// The handles that name no property of a page.
std::vector<KLyrPropertyHandle> Nowhere(const P& pPages) {
    std::vector<KLyrPropertyHandle> lHandles = {KLyrPropertyHandle(), KLyrPropertyHandle(nullptr, 0),
                                                KLyrPropertyHandle(nullptr, P::kChild)};
    for (int lId : kNoIds)
        lHandles.emplace_back(pPages.mPage.get(), lId);
    return lHandles;
}

KLyrPropertyHandle Here(const P& pPages, int pId) {
    return KLyrPropertyHandle(pPages.mPage.get(), pId);
}
KLyrPropertyHandle Below(const P& pPages, int pId) {
    return KLyrPropertyHandle(pPages.mBelow.get(), pId);
}

// --- types -----------------------------------------------------------------------------------------------------------

TEST(HostileKit, TypesAndVerdicts) {
    MakeHostileCalls<NoSubject>({
        {"lyrTypeName", kNothing,
         [](NoSubject&) {
             for (int lCode : {INT_MIN, -1, static_cast<int>(eMAX_TYPES), INT_MAX})
                 EXPECT_STREQ(lyrTypeName(static_cast<ELyrType>(lCode)), "unknown");
         }},
        {"lyrTypeCodeOf", kNothing, [](NoSubject&) { EXPECT_EQ(lyrTypeCodeOf<double>(), eDOUBLE1); }},
        {"lyrConversionVerdict", kNothing,
         [](NoSubject&) {
             for (int lCode : kNoCodes)
                 for (int lOther : {static_cast<int>(eDOUBLE1), lCode}) {
                     const ELyrType lTypes[] = {static_cast<ELyrType>(lCode), static_cast<ELyrType>(lOther)};
                     EXPECT_EQ(lyrConversionVerdict(lTypes[0], lTypes[1]), eLyrRefusedWithReport);
                     EXPECT_EQ(lyrConversionVerdict(lTypes[1], lTypes[0]), eLyrRefusedWithReport);
                 }
         }},
        {"lyrConversionIsRefused", kNothing,
         [](NoSubject&) {
             for (int lCode : kNoCodes)
                 EXPECT_TRUE(lyrConversionIsRefused(static_cast<ELyrType>(lCode), eDOUBLE1));
         }},
        {"lyrVerdictText", kNothing,
         [](NoSubject&) {
             for (int lVerdict : {INT_MIN, -1, 10, INT_MAX})
                 EXPECT_STREQ(lyrVerdictText(static_cast<ELyrConversionVerdict>(lVerdict)), "unknown");
         }},
        {"KLyrReason::IsEmpty", kNothing, [](NoSubject&) { EXPECT_TRUE(KLyrReason().IsEmpty()); }},
    });
}

// --- values ----------------------------------------------------------------------------------------------------------

TEST(HostileKit, TypedAccess) {
    MakeHostileCalls<P>({
        {"lyrGet", kNothing,
         [](P& p) {
             for (const KLyrPropertyHandle& lHandle : Nowhere(p)) {
                 EXPECT_FALSE(lyrGet<double>(lHandle));
                 EXPECT_FALSE(lyrGet<KString>(lHandle));
                 EXPECT_FALSE((lyrGet<std::array<double, 16>>(lHandle)));
             }
         }},
        {"lyrSet",
         kNothing,
         [](P& p) {
             for (const KLyrPropertyHandle& lHandle : Nowhere(p)) {
                 EXPECT_EQ(lyrSet(lHandle, 1.0), eLyrSetRefused);
                 EXPECT_EQ(lyrSet(lHandle, "text", eLyrSetPin), eLyrSetRefused);
             }
             for (int lMode : {INT_MIN, -1, 2, INT_MAX})
                 EXPECT_EQ(lyrSet(Here(p, P::kChild), 9.0, static_cast<ELyrSetMode>(lMode)), eLyrSetRefused);
             for (ELyrSetMode lMode : {eLyrSetCollapse, eLyrSetPin})
                 EXPECT_EQ(lyrSet(Here(p, P::kChild), nullptr, eDOUBLE1, lMode), eLyrSetRefused);
             const double lMemory[16] = {};
             for (int lCode : kNoCodes)
                 for (ELyrSetMode lMode : {eLyrSetCollapse, eLyrSetPin})
                     EXPECT_EQ(lyrSet(Below(p, P::kText), lMemory, static_cast<ELyrType>(lCode), lMode),
                               eLyrSetRefused);
             for (ELyrSetMode lMode : {eLyrSetCollapse, eLyrSetPin})
                 EXPECT_EQ(lyrSet(Below(p, P::kText), lMemory, eREFERENCE, lMode), eLyrSetRefused);
         },
         {kUnknownType, kVoidReference}},
        {"lyrSet", kSome,
         [](P& p) {
             WithHostileTexts([&p](const char* pText) {
                 EXPECT_EQ(lyrSet(Here(p, P::kText), pText), eLyrSetWritten);
                 EXPECT_EQ(lyrGet<KString>(Here(p, P::kText)).value(), pText);
                 EXPECT_EQ(lyrSet(Here(p, P::kChild), pText), eLyrSetRefused);
             });
             EXPECT_EQ(lyrSet(Here(p, P::kText), std::string_view("\0\0", 2)), eLyrSetWritten);
             EXPECT_EQ(lyrSet(Here(p, P::kText), std::string_view()), eLyrSetWritten);
         }},
        {"lyrVisit", kNothing,
         [](P& p) {
             for (const KLyrPropertyHandle& lHandle : Nowhere(p))
                 EXPECT_FALSE(lyrVisit(lHandle, [](const auto&) { ADD_FAILURE() << "called"; }));
         }},
        {"lyrWhyRefused", kNothing,
         [](P& p) {
             for (ELyrAccess lAccess : {eLyrRead, eLyrWrite}) {
                 for (const KLyrPropertyHandle& lHandle : Nowhere(p))
                     EXPECT_FALSE(lyrWhyRefused(lHandle, eDOUBLE1, lAccess).IsEmpty());
                 for (int lCode : kNoCodes)
                     EXPECT_FALSE(lyrWhyRefused(Here(p, P::kText), static_cast<ELyrType>(lCode), lAccess).IsEmpty());
             }
             for (int lAccess : {INT_MIN, -1, 2, INT_MAX})
                 EXPECT_FALSE(lyrWhyRefused(Here(p, P::kText), eSTRING, static_cast<ELyrAccess>(lAccess)).IsEmpty());
             for (const std::string& lBytes : HostileTexts()) {
                 const KString lText(lBytes.c_str());
                 EXPECT_FALSE(lyrWhyRefused(Here(p, P::kChild), eSTRING, eLyrWrite, &lText).IsEmpty());
             }
         }},
    });
}

}  // namespace
}  // namespace lyrsdk
