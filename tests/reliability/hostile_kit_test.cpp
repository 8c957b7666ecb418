#include <gtest/gtest.h>

#include <cstring>

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

// --- adding ----------------------------------------------------------------------------------------------------------

TEST(HostileKit, Adding) {
    MakeHostileCalls<P>({
        {"lyrAdd", kNothing,
         [](P& p) {
             for (const KLyrPropertyHandle& lHandle : Nowhere(p)) {
                 EXPECT_EQ(lyrAdd(lHandle, "x", 1.0), KLyrPropertyHandle());
                 EXPECT_EQ(lyrAdd(lHandle, nullptr, eDOUBLE1), KLyrPropertyHandle());
             }
         }},
        {"lyrAdd", kSome,
         [](P& p) {
             WithHostileTexts([&p](const char* pText) {
                 EXPECT_STREQ(lyrAdd(Here(p, 0), pText, 1.0).GetName(), TextOrEmpty(pText).c_str());
             });
             for (int lCode : kNoCodes)
                 EXPECT_TRUE(lyrAdd(Here(p, 0), "x", static_cast<ELyrType>(lCode)).Valid()) << "as the handle's Add";
         }},
        {"lyrBuild", kNothing,
         [](P& p) {
             for (const KLyrPropertyHandle& lHandle : Nowhere(p)) {
                 EXPECT_EQ(lyrBuild(lHandle, "x", 1.0).GetFailure(), eLyrBuildAdd);
                 EXPECT_EQ(lyrBuild(lHandle, "x", Here(p, 0)).GetFailure(), eLyrBuildAdd);
             }
             EXPECT_EQ(lyrBuild(Here(p, 0), "x", KLyrPropertyHandle()).GetFailure(), eLyrBuildAdd);
         }},
        {"KLyrPropertyBuilder::KLyrPropertyBuilder", kNothing,
         [](P&) { EXPECT_EQ(KLyrPropertyBuilder(KLyrPropertyHandle()).GetFailure(), eLyrBuildAdd); }},
        {"KLyrPropertyBuilder::GetFailure", kNothing,
         [](P& p) {
             KLyrPropertyBuilder lGone(Here(p, 1000));
             EXPECT_EQ(lGone.UserTag(1).GetFailure(), eLyrBuildUserTag);
             EXPECT_EQ(lGone.Label("x").GetFailure(), eLyrBuildUserTag) << "the first one";
         }},
    });
}

TEST(HostileKit, Building) {
    using B = KLyrPropertyBuilder;
    const auto lExpectFailure = [](P& p, ELyrBuildStep pStep, B& (*pBuild)(B&)) {
        for (B lBuilder : {B(Here(p, 1000)), lyrBuild(Here(p, 0), "x", eREFERENCE)})
            EXPECT_EQ(pBuild(lBuilder).GetFailure(), pStep);
        B lNothing{KLyrPropertyHandle()};
        EXPECT_EQ(pBuild(lNothing).GetFailure(), eLyrBuildAdd);
    };
    const std::vector<std::string> lReports = {kVoidReference};
    MakeHostileCalls<P>({
        {"KLyrPropertyBuilder::Default", kNothing,
         [&](P& p) { lExpectFailure(p, eLyrBuildDefault, [](B& pB) -> B& { return pB.Default(1.0); }); }, lReports},
        {"KLyrPropertyBuilder::DefaultText", kNothing,
         [&](P& p) { lExpectFailure(p, eLyrBuildDefault, [](B& pB) -> B& { return pB.DefaultText("zero text"); }); }},
        {"KLyrPropertyBuilder::Min", kNothing,
         [&](P& p) { lExpectFailure(p, eLyrBuildMin, [](B& pB) -> B& { return pB.Min(1.0); }); }, lReports},
        {"KLyrPropertyBuilder::Max", kNothing,
         [&](P& p) { lExpectFailure(p, eLyrBuildMax, [](B& pB) -> B& { return pB.Max(1.0); }); }, lReports},
        {"KLyrPropertyBuilder::SoftMin", kNothing,
         [&](P& p) { lExpectFailure(p, eLyrBuildSoftMin, [](B& pB) -> B& { return pB.SoftMin(1.0); }); }, lReports},
        {"KLyrPropertyBuilder::SoftMax", kNothing,
         [&](P& p) { lExpectFailure(p, eLyrBuildSoftMax, [](B& pB) -> B& { return pB.SoftMax(1.0); }); }, lReports},
        {"KLyrPropertyBuilder::Limits", kNothing,
         [&](P& p) { lExpectFailure(p, eLyrBuildMin, [](B& pB) -> B& { return pB.Limits(0, 1); }); }, lReports},
        {"KLyrPropertyBuilder::SoftLimits", kNothing,
         [&](P& p) { lExpectFailure(p, eLyrBuildSoftMin, [](B& pB) -> B& { return pB.SoftLimits(0, 1); }); }, lReports},
        {"KLyrPropertyBuilder::EnumTexts", kNothing,
         [&](P& p) {
             lExpectFailure(p, eLyrBuildEnumTexts, [](B& pB) -> B& { return pB.EnumTexts({nullptr, "a"}); });
         }},
        {"KLyrPropertyBuilder::Label", kSome,
         [&](P& p) {
             WithHostileTexts([&p](const char* pText) {
                 const KLyrPropertyHandle lHandle = B(Here(p, P::kChild)).Label(pText).GetHandle();
                 EXPECT_EQ(lHandle.GetLabel(), TextOrEmpty(pText));
             });
             EXPECT_EQ(B(Here(p, 1000)).Label("x").GetFailure(), eLyrBuildLabel);
         }},
        {"KLyrPropertyBuilder::UserTag", kNothing,
         [&](P& p) { EXPECT_EQ(B(Here(p, 1000)).UserTag(INT_MIN).GetFailure(), eLyrBuildUserTag); }},
        {"KLyrPropertyBuilder::UserData", kNothing,
         [&](P& p) { EXPECT_EQ(B(Here(p, 1000)).UserData(nullptr).GetFailure(), eLyrBuildUserData); }},
        {"KLyrPropertyBuilder::Flags", kNothing,
         [&](P& p) {
             for (unsigned lBits : kHostileFlags) {
                 B lBuilder = lyrBuild(Here(p, 0), "x", 1.0);
                 const bool lDefined = (lBits & ~0x7FFFu) == 0;
                 EXPECT_EQ(lBuilder.Flags(HostileFlagsOf(lBits)).GetFailure(),
                           lDefined ? eLyrBuildDone : eLyrBuildFlags);
                 lBuilder.GetHandle().Destroy();
             }
         }},
        {"KLyrPropertyBuilder::GetHandle", kNothing,
         [&](P&) { EXPECT_EQ(B(KLyrPropertyHandle()).GetHandle(), KLyrPropertyHandle()); }},
        {"KLyrPropertyBuilder::operator KLyrPropertyHandle", kNothing,
         [&](P&) { EXPECT_EQ(KLyrPropertyHandle(B(KLyrPropertyHandle())), KLyrPropertyHandle()); }},
        {"KLyrPropertyBuilder::Into", kNothing,
         [&](P& p) {
             KLyrPropertyHandle lHandle = Here(p, 0);
             EXPECT_EQ(B(KLyrPropertyHandle()).Into(lHandle), eLyrBuildAdd);
             EXPECT_EQ(lHandle, KLyrPropertyHandle());
         }},
    });
}

// --- ranges ----------------------------------------------------------------------------------------------------------

using H = KLyrPropertyHandle;

template <typename Range>
void ExpectEmpty(const P& pPages, Range pRange) {
    for (const H& lHandle : Nowhere(pPages)) {
        for (const H& lMet : pRange(lHandle))
            ADD_FAILURE() << lMet.GetId();
        EXPECT_TRUE(pRange(lHandle).IsEmpty());
    }
}

KLyrHandleRange<detail::ChildWalk>::Iterator EndOfChildren(const H& pHandle) {
    return lyrChildren(pHandle).end();
}

TEST(HostileKit, Ranges) {
    MakeHostileCalls<P>({
        {"lyrChildren", kNothing, [](P& p) { ExpectEmpty(p, [](const H& pHandle) { return lyrChildren(pHandle); }); }},
        {"lyrDescendents", kNothing,
         [](P& p) { ExpectEmpty(p, [](const H& pHandle) { return lyrDescendents(pHandle); }); }},
        {"lyrAncestors", kNothing,
         [](P& p) { ExpectEmpty(p, [](const H& pHandle) { return lyrAncestors(pHandle); }); }},
        {"lyrInstances", kNothing,
         [](P& p) { ExpectEmpty(p, [](const H& pHandle) { return lyrInstances(pHandle); }); }},
        {"lyrAllInstances", kNothing,
         [](P& p) { ExpectEmpty(p, [](const H& pHandle) { return lyrAllInstances(pHandle); }); }},
        {"lyrSources", kNothing, [](P& p) { ExpectEmpty(p, [](const H& pHandle) { return lyrSources(pHandle); }); }},
        {"lyrDestinations", kNothing,
         [](P& p) { ExpectEmpty(p, [](const H& pHandle) { return lyrDestinations(pHandle); }); }},
        {"lyrProperties", kNothing, [](P&) { EXPECT_TRUE(lyrProperties(H()).IsEmpty()); }},
        {"lyrOwnProperties", kNothing, [](P&) { EXPECT_TRUE(lyrOwnProperties(H()).IsEmpty()); }},
        {"KLyrHandleRange::KLyrHandleRange", kNothing,
         [](P&) { EXPECT_TRUE(KLyrHandleRange<detail::ChildWalk>(detail::ChildWalk(H())).IsEmpty()); }},
        {"KLyrHandleRange::begin", kNothing, [](P&) { EXPECT_FALSE(lyrChildren(H()).begin()->Valid()); }},
        {"KLyrHandleRange::end", kNothing, [](P& p) { EXPECT_FALSE(lyrChildren(Here(p, 0)).end()->Valid()); }},
        {"KLyrHandleRange::IsEmpty", kNothing, [](P& p) { EXPECT_FALSE(lyrChildren(Here(p, 0)).IsEmpty()); }},
        {"KLyrHandleRange::Iterator::Iterator", kNothing,
         [](P& p) {
             const KLyrHandleRange<detail::ChildWalk>::Iterator lEnd(detail::ChildWalk(Here(p, 0)), true);
             EXPECT_FALSE(lEnd->Valid());
         }},
        {"KLyrHandleRange::Iterator::operator*", kNothing,
         [](P&) { EXPECT_EQ(*lyrChildren(H()).end(), H()) << "though it is not to be used"; }},
        {"KLyrHandleRange::Iterator::operator->", kNothing,
         [](P&) { EXPECT_EQ(lyrChildren(H()).end()->GetId(), -1) << "though it is not to be used"; }},
        {"KLyrHandleRange::Iterator::operator++", kNothing,
         [](P& p) {
             auto lEnd = lyrSources(Here(p, 0)).end();
             EXPECT_TRUE(++lEnd == lyrSources(Here(p, 0)).end());
             EXPECT_TRUE(lEnd++ == lyrSources(Here(p, 0)).end());
         }},
        {"KLyrHandleRange::Iterator::operator==", kNothing,
         [](P& p) { EXPECT_TRUE(EndOfChildren(H()) == EndOfChildren(Here(p, 0))); }},
        {"KLyrHandleRange::Iterator::operator!=", kNothing,
         [](P& p) { EXPECT_FALSE(EndOfChildren(H()) != EndOfChildren(Here(p, 0))); }},
    });
}

// --- enumerations and limits -----------------------------------------------------------------------------------------

// Handles that are no enumeration.
std::vector<H> NoEnumerations(const P& pPages) {
    std::vector<H> lHandles = Nowhere(pPages);
    for (int lId : {0, P::kChild, P::kPart, P::kText})
        lHandles.push_back(Below(pPages, lId));
    return lHandles;
}

TEST(HostileKit, Enumerations) {
    MakeHostileCalls<P>({
        {"lyrFindEnumIndex", kNothing,
         [](P& p) {
             for (const H& lHandle : NoEnumerations(p))
                 EXPECT_EQ(lyrFindEnumIndex(lHandle, "zero text"), -1);
             for (const std::string& lText : HostileTexts())
                 EXPECT_EQ(lyrFindEnumIndex(Here(p, P::kEnum), lText), -1);
             EXPECT_EQ(lyrFindEnumIndex(Here(p, P::kEnum), std::string_view("zero text\0", 10)), -1);
         }},
        {"lyrGetEnumText", kNothing,
         [](P& p) {
             for (const H& lHandle : NoEnumerations(p))
                 EXPECT_EQ(lyrGetEnumText(lHandle), nullptr);
         }},
        {"lyrGetEnumText", kSome,
         [](P& p) {
             for (int lIndex : kHostileInts) {
                 lyrSet(Here(p, P::kEnum), lIndex);
                 EXPECT_EQ(lyrGetEnumText(Here(p, P::kEnum)) != nullptr, lIndex == 0 || lIndex == 1);
             }
         }},
        {"lyrSetEnumText", kNothing,
         [](P& p) {
             for (const H& lHandle : NoEnumerations(p))
                 EXPECT_EQ(lyrSetEnumText(lHandle, "zero text"), eLyrSetRefused);
             for (const std::string& lText : HostileTexts())
                 EXPECT_EQ(lyrSetEnumText(Below(p, P::kEnum), lText, eLyrSetPin), eLyrSetRefused);
             EXPECT_EQ(lyrSetEnumText(Below(p, P::kEnum), "one text", static_cast<ELyrSetMode>(9)), eLyrSetRefused);
         }},
        {"lyrInsertEnumText", kNothing,
         [](P& p) {
             for (const H& lHandle : NoEnumerations(p))
                 EXPECT_EQ(lyrInsertEnumText(lHandle, 0, "new"), -1);
             for (int lIndex : {INT_MIN, -1, 3, INT_MAX})
                 EXPECT_EQ(lyrInsertEnumText(Here(p, P::kEnum), lIndex, "new"), -1);
             EXPECT_EQ(lyrInsertEnumText(Here(p, P::kEnum), 0, "one text"), -1);
         }},
        {"lyrInsertEnumText", kSome,
         [](P& p) {
             EXPECT_EQ(lyrInsertEnumText(Here(p, P::kEnum), 0, nullptr), 1);
             EXPECT_EQ(lyrInsertEnumText(Here(p, P::kEnum), 0, ""), -1) << "there already";
         }},
        {"lyrRemoveEnumText", kNothing,
         [](P& p) {
             for (const H& lHandle : NoEnumerations(p))
                 EXPECT_EQ(lyrRemoveEnumText(lHandle, 0, 0), -1);
             for (int lIndex : {INT_MIN, -1, 2, INT_MAX})
                 EXPECT_EQ(lyrRemoveEnumText(Here(p, P::kEnum), lIndex, 0), -1);
         }},
        {"lyrRemoveEnumText", kSome,
         [](P& p) {
             EXPECT_EQ(lyrRemoveEnumText(Here(p, P::kEnum), 0, INT_MIN), 1);
             EXPECT_EQ(lyrRemoveEnumText(Here(p, P::kEnum), 0, INT_MAX), 0) << "no value names it";
         }},
        {"lyrRemapEnum", kNothing,
         [](P& p) {
             for (const H& lHandle : NoEnumerations(p))
                 EXPECT_EQ(lyrRemapEnum(lHandle, [](int) { return 1; }), -1);
         }},
    });
}

TEST(HostileKit, Limits) {
    MakeHostileCalls<P>({
        {"lyrValidate", kNothing,
         [](P& p) {
             for (const H& lHandle : Nowhere(p)) {
                 EXPECT_EQ(lyrValidate(lHandle), eLyrLimitsRefused);
                 EXPECT_EQ(lyrValidate(lHandle, 1.0), eLyrLimitsRefused);
                 EXPECT_EQ(lyrValidate(lHandle, "1"), eLyrLimitsRefused);
             }
             for (int lLimits : {INT_MIN, -1, 0, 4, INT_MAX})
                 EXPECT_EQ(lyrValidate(Here(p, P::kChild), 1.0, static_cast<ELyrLimits>(lLimits)), eLyrLimitsRefused);
             EXPECT_EQ(lyrValidate(Here(p, P::kChild), nullptr, eDOUBLE1), eLyrLimitsRefused);
             const double lMemory[16] = {};
             for (int lCode : kNoCodes)
                 EXPECT_EQ(lyrValidate(Here(p, P::kChild), lMemory, static_cast<ELyrType>(lCode)), eLyrLimitsRefused);
             WithHostileTexts(
                 [&p](const char* pText) { EXPECT_EQ(lyrValidate(Here(p, P::kChild), pText), eLyrLimitsRefused); });
         }},
        {"lyrClamp", kNothing,
         [](P& p) {
             for (const H& lHandle : Nowhere(p))
                 EXPECT_FALSE(lyrClamp(lHandle, 1.0));
             for (int lLimits : {INT_MIN, -1, 0, 4, INT_MAX})
                 EXPECT_FALSE(lyrClamp(Here(p, P::kChild), 1.0, static_cast<ELyrLimits>(lLimits)));
             EXPECT_FALSE(lyrClamp(Here(p, P::kChild), nullptr, eDOUBLE1));
             double lMemory[16] = {};
             for (int lCode : kNoCodes)
                 EXPECT_FALSE(lyrClamp(Here(p, P::kChild), lMemory, static_cast<ELyrType>(lCode)));
         }},
    });
}

// --- bound properties ------------------------------------------------------------------------------------------------

TEST(HostileKit, BoundProperties) {
    using B = KLyrBoundProperty;
    MakeHostileCalls<P>({
        {"KLyrBoundProperty::KLyrBoundProperty", kNothing,
         [](P& p) {
             for (const H& lHandle : Nowhere(p)) {
                 EXPECT_FALSE(B(lHandle).IsBound());
                 EXPECT_FALSE(B(lHandle, "child").IsBound());
                 EXPECT_FALSE(B(B(lHandle)).IsBound());
             }
             WithHostileTexts([&p](const char* pText) {
                 EXPECT_FALSE(B(Here(p, 0), pText).IsBound());
                 EXPECT_EQ(B(Here(p, 0), "child", pText).IsBound(), !pText || !std::strpbrk("child", pText));
             });
         }},
        {"KLyrBoundProperty::operator=", kNothing,
         [](P& p) {
             B lBound(Here(p, 0));
             const B& lSame = lBound;
             lBound = lSame;
             EXPECT_TRUE(lBound.IsBound());
             lBound = B();
             EXPECT_FALSE(lBound.IsBound());
         }},
        {"KLyrBoundProperty::IsBound", kNothing, [](P&) { EXPECT_FALSE(B().IsBound()); }},
        {"KLyrBoundProperty::GetId", kNothing, [](P&) { EXPECT_EQ(B().GetId(), -1); }},
        {"KLyrBoundProperty::GetState", kNothing,
         [](P& p) {
             const B lBound(Here(p, P::kChild));
             for (const H& lHandle : Nowhere(p)) {
                 EXPECT_EQ(B().GetState(lHandle), eLyrBoundToNothing);
                 EXPECT_EQ(lBound.GetState(lHandle), lHandle.GetPage() ? eLyrBoundHere : eLyrBoundElsewhere);
             }
         }},
        {"KLyrBoundProperty::On", kNothing,
         [](P& p) {
             EXPECT_EQ(B().On(Here(p, 0)), H());
             EXPECT_EQ(B(Here(p, P::kChild)).On(H()), H());
         }},
        {"KLyrBoundProperty::Get", kNothing,
         [](P& p) {
             EXPECT_FALSE(B().Get<double>(Here(p, 0)));
             EXPECT_FALSE(B(Here(p, P::kChild)).Get<double>(H()));
         }},
        {"KLyrBoundProperty::Set", kNothing,
         [](P& p) {
             EXPECT_EQ(B().Set(Here(p, 0), 1.0), eLyrSetRefused);
             EXPECT_EQ(B(Here(p, P::kChild)).Set(H(), 1.0), eLyrSetRefused);
             EXPECT_EQ(B(Here(p, P::kChild)).Set(Here(p, 0), 1.0, static_cast<ELyrSetMode>(7)), eLyrSetRefused);
         }},
    });
}

}  // namespace
}  // namespace lyrsdk
