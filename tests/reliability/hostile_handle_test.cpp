#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/reliability/hostile_pages.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using Reports = std::vector<std::string>;

const char kRecursive[] = "Recursive type info";
const char kIncompatible[] = "Incompatible type assigment";

// The pages of HostilePages through handles, and handles that name no property: without a page, and with one but with
// an id that nothing has.
struct Handles : HostilePages {
    H mChild{mPage.get(), kChild};
    H mEnum{mPage.get(), HostilePages::kEnum};
    H mText{mPage.get(), HostilePages::kText};
    H mRoot{mPage.get(), 0};
    H mOther{mPeer.get(), 0};

    template <typename Call>
    void WithNone(Call pCall) {
        for (int lId : kHostileInts)
            pCall(H(nullptr, lId));
        for (int lId : kNoIds)
            pCall(H(mPage.get(), lId));
    }
};

// --- the value -------------------------------------------------------------------------------------------------------

TEST(HostileHandle, TheValue) {
    MakeHostileCalls<Handles>({
        {"KLyrPropertyHandle::KLyrPropertyHandle", kNothing,
         [](Handles&) {
             EXPECT_EQ(H().GetPage(), nullptr);
             for (int lId : kHostileInts)
                 EXPECT_FALSE(H(nullptr, lId).Valid());
         }},
        {"KLyrPropertyHandle::operator==", kNothing,
         [](Handles& p) { EXPECT_TRUE(p.mChild == p.mChild && H() == H(nullptr, -1) && !(p.mChild == H())); }},
        {"KLyrPropertyHandle::operator!=", kNothing, [](Handles& p) { EXPECT_FALSE(p.mChild != p.mChild); }},
        {"KLyrPropertyHandle::Is", kNothing, [](Handles& p) { EXPECT_TRUE(p.mChild.Is(p.mChild) && H().Is(H())); }},
        {"KLyrPropertyHandle::Valid", kNothing,
         [](Handles& p) { EXPECT_FALSE(H().Valid() || H(p.mPage.get(), -1).Valid()); }},
        {"KLyrPropertyHandle::GetPage", kNothing, [](Handles&) { EXPECT_EQ(H(nullptr, 1).GetPage(), nullptr); }},
        {"KLyrPropertyHandle::GetId", kNothing,
         [](Handles&) {
             for (int lId : kHostileInts)
                 EXPECT_EQ(H(nullptr, lId).GetId(), lId);
         }},
    });
}

// --- pages and children ----------------------------------------------------------------------------------------------

TEST(HostileHandle, PagesAndChildren) {
    MakeHostileCalls<Handles>({
        {"KLyrPropertyHandle::Create", kNothing,
         [](Handles& p) {
             p.WithNone([](H pNone) {
                 const OwnedRoot lUntyped(H::Create("root", pNone.GetPage() ? H() : pNone));
                 EXPECT_EQ(lUntyped->GetType(), eUNIDENTIFIED);
                 const OwnedRoot lInstance(H::Create(pNone));
                 EXPECT_EQ(lInstance->GetPage()->GetInstanceOf(), pNone.GetPage()) << "of the page, whatever the id";
             });
             WithHostileTexts([](const char* pText) {
                 EXPECT_EQ(OwnedRoot(H::Create(pText, eENUM))->GetName(), TextOrEmpty(pText));
             });
             const FailAllocations lFail(0, true);
             EXPECT_EQ(H::Create(), H());
             EXPECT_EQ(H::Create(p.mChild), H());
             EXPECT_EQ(H::Create("root", eENUM), H());
             EXPECT_EQ(H::Create("root", p.mChild), H());
         }},
        {"KLyrPropertyHandle::Destroy", kNothing,
         [](Handles& p) {
             p.WithNone([](H pNone) {
                 const H lBefore = pNone;
                 EXPECT_FALSE(pNone.Destroy());
                 EXPECT_EQ(pNone, lBefore);
             });
         }},
        {"KLyrPropertyHandle::Destroy", kSome,
         [](Handles& p) {
             H lSecond = p.mChild;
             EXPECT_TRUE(p.mChild.Destroy());
             EXPECT_EQ(p.mChild, H());
             EXPECT_FALSE(p.mChild.Destroy());
             EXPECT_FALSE(lSecond.Destroy()) << "gone already";
             EXPECT_TRUE(H(p.mBelow.get(), Handles::kChild).Destroy());
         }},
        {"KLyrPropertyHandle::SetPageDataPtr", kNothing,
         [](Handles& p) {
             for (int lId : kHostileInts)
                 H(nullptr, lId).SetPageDataPtr(&p);
             p.mChild.SetPageDataPtr(&p);
             p.mChild.SetPageDataPtr(nullptr);
         }},
        {"KLyrPropertyHandle::GetPageDataPtr", kNothing, [](Handles&) { EXPECT_EQ(H().GetPageDataPtr(), nullptr); }},
        {"KLyrPropertyHandle::Add", kNothing,
         [](Handles& p) {
             for (int lId : kHostileInts) {
                 EXPECT_EQ(H(nullptr, lId).Add("new", eDOUBLE1), H());
                 EXPECT_EQ(H(nullptr, lId).Add(nullptr, p.mChild), H());
             }
             const FailAllocations lFail(0, true);
             EXPECT_EQ(p.mRoot.Add("new", eDOUBLE1), H());
             EXPECT_EQ(p.mRoot.Add("new", p.mOther), H());
         }},
        {"KLyrPropertyHandle::Add", kSome,
         [](Handles& p) {
             WithHostileTexts(
                 [&p](const char* pText) { EXPECT_EQ(p.mRoot.Add(pText, eENUM).GetName(), TextOrEmpty(pText)); });
             EXPECT_STREQ(p.mChild.Add(p.mChild.GetName(), p.mChild).GetName(), "child") << "all of it its own";
             EXPECT_EQ(p.mRoot.Add("untyped", H()).GetType(), eUNIDENTIFIED);
             for (int lCode : kNoCodes)
                 EXPECT_EQ(p.mRoot.Add("code", static_cast<ELyrType>(lCode)).GetType(), lCode);
         },
         Reports{kRecursive}},
        {"KLyrPropertyHandle::SetParent", kNothing,
         [](Handles& p) {
             p.WithNone([&p](H pNone) { EXPECT_FALSE(pNone.SetParent(p.mRoot) || p.mChild.SetParent(pNone)); });
             EXPECT_FALSE(p.mChild.SetParent(p.mChild));
         }},
        {"KLyrPropertyHandle::IsAReferenceTo", kNothing, [](Handles&) { EXPECT_FALSE(H().IsAReferenceTo()); }},
        {"KLyrPropertyHandle::GetReferenceTo", kNothing,
         [](Handles& p) { EXPECT_TRUE(!H().GetReferenceTo() && !p.mOther.GetReferenceTo()); }},
        {"KLyrPropertyHandle::GetReferencedByCount", kNothing,
         [](Handles&) { EXPECT_EQ(H().GetReferencedByCount(), 0); }},
        {"KLyrPropertyHandle::GetReferencedBy", kNothing,
         [](Handles& p) {
             p.mBelow->SetDataPtr(&p);
             for (int lIndex : kHostileInts) {
                 EXPECT_EQ(H().GetReferencedBy(lIndex), nullptr);
                 EXPECT_EQ(p.mOther.GetReferencedBy(lIndex), nullptr);
                 EXPECT_EQ(p.mRoot.GetReferencedBy(lIndex), &p) << "the first one's";
             }
             p.mBelow->SetDataPtr(nullptr);
         }},
        {"KLyrPropertyHandle::IsReferencedBy", kNothing, [](Handles&) { EXPECT_FALSE(H().IsReferencedBy()); }},
    });
}

// --- value, type, lookup ---------------------------------------------------------------------------------------------

TEST(HostileHandle, ValuesAndLookup) {
    MakeHostileCalls<Handles>({
        {"KLyrPropertyHandle::Set", kNothing,
         [](Handles& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 for (bool lCheck : {true, false}) {
                     p.WithNone([&](H pNone) { EXPECT_FALSE(pNone.Set(pValue, pType, lCheck)); });
                     EXPECT_FALSE(p.mChild.Set(nullptr, pType, lCheck));
                     if (!lyrHoldsValue(pType)) {
                         EXPECT_FALSE(p.mChild.Set(pValue, pType, lCheck));
                     }
                 }
             });
         },
         Reports{kUnknownType, kVoidReference}},
        {"KLyrPropertyHandle::Get", kNothing,
         [](Handles& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 p.WithNone([&](H pNone) { EXPECT_FALSE(pNone.Get(pValue, pType)); });
                 EXPECT_FALSE(p.mChild.Get(nullptr, pType));
                 EXPECT_FALSE(p.mChild.Get(pValue, pType) && !lyrHoldsValue(pType));
             });
         },
         Reports{kUnknownType, kVoidReference, kIncompatible}},
        {"KLyrPropertyHandle::GetDefaultValue", kNothing,
         [](Handles& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 p.WithNone([&](H pNone) { EXPECT_FALSE(pNone.GetDefaultValue(pValue, pType)); });
                 EXPECT_FALSE(p.mChild.GetDefaultValue(nullptr, pType));
             });
         }},
        {"KLyrPropertyHandle::GetType", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_EQ(pNone.GetType(), eUNIDENTIFIED); }); }},
        {"KLyrPropertyHandle::GetName", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_STREQ(pNone.GetName(), ""); }); }},
        {"KLyrPropertyHandle::GetTypeInfo", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_FALSE(pNone.GetTypeInfo().Valid()); }); }},
        {"KLyrPropertyHandle::Find", kNothing,
         [](Handles& p) {
             for (bool lCase : {true, false})
                 WithHostileTexts([&p, lCase](const char* pText) {
                     p.WithNone([&](H pNone) {
                         EXPECT_FALSE(pNone.Find(pText, lCase).Valid());
                         EXPECT_FALSE(pNone.Find(pText, p.mChild, lCase).Valid());
                         EXPECT_FALSE(pNone.Find(pText, pText, lCase).Valid());
                         EXPECT_FALSE(pNone.Find(pText, pText, p.mOther, lCase).Valid());
                         EXPECT_FALSE(p.mChild.Find(pText, pNone, lCase).Valid());
                     });
                     EXPECT_FALSE(p.mRoot.Find(pText, lCase).Valid());
                 });
             EXPECT_EQ(p.mRoot.Find(p.mChild.GetName(), true), p.mChild);
         }},
        {"KLyrPropertyHandle::BeginCreateOrFindProperty", kNothing,
         [](Handles& p) {
             p.WithNone([](H pNone) { pNone.BeginCreateOrFindProperty(); });
             EXPECT_EQ(p.mRoot.Find("child", true), p.mChild);
             p.mRoot.EndCreateOrFindProperty();
         }},
        {"KLyrPropertyHandle::EndCreateOrFindProperty", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { pNone.EndCreateOrFindProperty(); }); }},
    });
}

// --- description -----------------------------------------------------------------------------------------------------

using Setter = bool (H::*)(const void*, ELyrType);
using BoundGetter = bool (H::*)(void*, ELyrType) const;
using BoundTester = bool (H::*)() const;

void SetsNoBound(Handles& p, Setter pSet, BoundTester pHas) {
    WithHostileValues([&](ELyrType pType, void* pValue) {
        p.WithNone([&](H pNone) { EXPECT_FALSE((pNone.*pSet)(pValue, pType)); });
        EXPECT_FALSE((p.mText.*pSet)(nullptr, pType));
        if (!lyrHoldsValue(pType)) {
            EXPECT_FALSE((p.mText.*pSet)(pValue, pType));
        }
    });
    EXPECT_FALSE((p.mText.*pHas)());
}

void GivesNoBound(Handles& p, BoundGetter pGet) {
    WithHostileValues([&](ELyrType pType, void* pValue) {
        p.WithNone([&](H pNone) { EXPECT_FALSE((pNone.*pGet)(pValue, pType)); });
        EXPECT_FALSE((p.mChild.*pGet)(nullptr, pType));
        EXPECT_FALSE((p.mText.*pGet)(pValue, pType));
    });
}

void HasNoBound(Handles& p, BoundTester pHas) {
    p.WithNone([&](H pNone) { EXPECT_FALSE((pNone.*pHas)()); });
}

TEST(HostileHandle, Bounds) {
    const Reports lCodes{kUnknownType, kVoidReference};
    MakeHostileCalls<Handles>({
        {"KLyrPropertyHandle::SetMin", kNothing, [](Handles& p) { SetsNoBound(p, &H::SetMin, &H::HasMin); }, lCodes},
        {"KLyrPropertyHandle::SetSoftMin", kNothing, [](Handles& p) { SetsNoBound(p, &H::SetSoftMin, &H::HasSoftMin); },
         lCodes},
        {"KLyrPropertyHandle::SetMax", kNothing, [](Handles& p) { SetsNoBound(p, &H::SetMax, &H::HasMax); }, lCodes},
        {"KLyrPropertyHandle::SetSoftMax", kNothing, [](Handles& p) { SetsNoBound(p, &H::SetSoftMax, &H::HasSoftMax); },
         lCodes},
        {"KLyrPropertyHandle::GetMin", kNothing, [](Handles& p) { GivesNoBound(p, &H::GetMin); }},
        {"KLyrPropertyHandle::GetSoftMin", kNothing, [](Handles& p) { GivesNoBound(p, &H::GetSoftMin); }},
        {"KLyrPropertyHandle::GetMax", kNothing, [](Handles& p) { GivesNoBound(p, &H::GetMax); }},
        {"KLyrPropertyHandle::GetSoftMax", kNothing, [](Handles& p) { GivesNoBound(p, &H::GetSoftMax); }},
        {"KLyrPropertyHandle::HasMin", kNothing, [](Handles& p) { HasNoBound(p, &H::HasMin); }},
        {"KLyrPropertyHandle::HasSoftMin", kNothing, [](Handles& p) { HasNoBound(p, &H::HasSoftMin); }},
        {"KLyrPropertyHandle::HasMax", kNothing, [](Handles& p) { HasNoBound(p, &H::HasMax); }},
        {"KLyrPropertyHandle::HasSoftMax", kNothing, [](Handles& p) { HasNoBound(p, &H::HasSoftMax); }},
    });
}

TEST(HostileHandle, Description) {
    MakeHostileCalls<Handles>({
        {"KLyrPropertyHandle::AddEnumValue", kNothing,
         [](Handles& p) {
             WithHostileTexts([&p](const char* pText) {
                 p.WithNone([&](H pNone) { EXPECT_EQ(pNone.AddEnumValue(pText), -1); });
                 EXPECT_EQ(p.mChild.AddEnumValue(pText), -1);
             });
             EXPECT_EQ(p.mEnum.AddEnumValue(p.mEnum.GetEnumValue(0)), -1);
         }},
        {"KLyrPropertyHandle::AddEnumValue", kSome,
         [](Handles& p) {
             EXPECT_EQ(p.mEnum.AddEnumValue(p.mEnum.GetEnumValue(0) + 5), 2);
             EXPECT_EQ(p.mEnum.AddEnumValue(nullptr), 3);
             EXPECT_EQ(p.mEnum.AddEnumValue(""), -1);
         }},
        {"KLyrPropertyHandle::InsertEnumValue", kNothing,
         [](Handles& p) {
             p.WithNone([](H pNone) { pNone.InsertEnumValue(0, "new"); });
             for (int lIndex : kNegative)
                 p.mEnum.InsertEnumValue(lIndex, nullptr);
             for (int lIndex : kHostileInts)
                 p.mChild.InsertEnumValue(lIndex, "new");
         }},
        {"KLyrPropertyHandle::InsertEnumValue", kSome,
         [](Handles& p) { p.mEnum.InsertEnumValue(INT_MAX, p.mEnum.GetEnumValue(0)); }},
        {"KLyrPropertyHandle::GetEnumCount", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_EQ(pNone.GetEnumCount(), 0); }); }},
        {"KLyrPropertyHandle::SetEnumValue", kNothing,
         [](Handles& p) {
             for (int lIndex : kHostileInts) {
                 p.WithNone([lIndex](H pNone) { pNone.SetEnumValue(lIndex, "new"); });
                 if (lIndex < 0 || lIndex > 1)
                     p.mEnum.SetEnumValue(lIndex, nullptr);
             }
             p.mEnum.SetEnumValue(0, p.mEnum.GetEnumValue(0));
         }},
        {"KLyrPropertyHandle::RemoveEnumValue", kNothing,
         [](Handles& p) {
             for (int lIndex : kHostileInts) {
                 p.WithNone([lIndex](H pNone) { pNone.RemoveEnumValue(lIndex); });
                 if (lIndex < 0 || lIndex > 1)
                     p.mEnum.RemoveEnumValue(lIndex);
             }
         }},
        {"KLyrPropertyHandle::GetEnumValue", kNothing,
         [](Handles& p) {
             for (int lIndex : kHostileInts) {
                 p.WithNone([lIndex](H pNone) { EXPECT_STREQ(pNone.GetEnumValue(lIndex), ""); });
                 EXPECT_EQ(p.mEnum.GetEnumValue(lIndex) != nullptr, lIndex < 2);
             }
         }},
        {"KLyrPropertyHandle::SetLabel", kNothing,
         [](Handles& p) {
             WithHostileTexts(
                 [&p](const char* pText) { p.WithNone([&](H pNone) { EXPECT_FALSE(pNone.SetLabel(pText)); }); });
             EXPECT_TRUE(p.mChild.SetLabel(p.mChild.GetLabel()));
         }},
        {"KLyrPropertyHandle::SetLabel", kSome,
         [](Handles& p) {
             EXPECT_TRUE(p.mChild.SetLabel(p.mChild.GetLabel() + 2));
             EXPECT_TRUE(p.mChild.SetLabel(p.mChild.GetName()));
             WithHostileTexts([&p](const char* pText) {
                 EXPECT_TRUE(p.mChild.SetLabel(pText));
                 EXPECT_EQ(p.mChild.GetLabel(), TextOrEmpty(pText));
             });
         }},
        {"KLyrPropertyHandle::GetLabel", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_STREQ(pNone.GetLabel(), ""); }); }},
        {"KLyrPropertyHandle::SetUserTag", kNothing,
         [](Handles& p) {
             for (int lTag : kHostileInts)
                 p.WithNone([lTag](H pNone) { EXPECT_FALSE(pNone.SetUserTag(lTag)); });
         }},
        {"KLyrPropertyHandle::GetUserTag", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_EQ(pNone.GetUserTag(), 0); }); }},
        {"KLyrPropertyHandle::SetUserData", kNothing,
         [](Handles& p) { p.WithNone([&p](H pNone) { EXPECT_FALSE(pNone.SetUserData(&p)); }); }},
        {"KLyrPropertyHandle::GetUserData", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_EQ(pNone.GetUserData(), nullptr); }); }},
    });
}

// --- inheritance and the tree ----------------------------------------------------------------------------------------

TEST(HostileHandle, InheritanceAndTheTree) {
    MakeHostileCalls<Handles>({
        {"KLyrPropertyHandle::GetFlags", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_EQ(pNone.GetFlags(), LyrPropertyFlags::eNO_FLAG); }); }},
        {"KLyrPropertyHandle::ModifyFlags", kNothing,
         [](Handles& p) {
             for (unsigned lBits : kHostileFlags)
                 for (bool lOn : {true, false})
                     p.WithNone([&](H pNone) { EXPECT_FALSE(pNone.ModifyFlags(HostileFlagsOf(lBits), lOn)); });
         }},
        {"KLyrPropertyHandle::ModifyFlags", kSome,
         [](Handles& p) {
             for (unsigned lBits : kHostileFlags) {
                 EXPECT_TRUE(p.mChild.ModifyFlags(HostileFlagsOf(lBits), true));
                 EXPECT_EQ(p.mChild.GetFlags() & lBits, lBits & 0xFFFFu);
                 EXPECT_EQ(p.mChild.GetFlags() & 0xFFFF0000u, 0u);
             }
         }},
        {"KLyrPropertyHandle::GetFlagsInheritType", kNothing,
         [](Handles& p) {
             for (unsigned lBits : kHostileFlags)
                 p.WithNone([lBits](H pNone) {
                     EXPECT_EQ(pNone.GetFlagsInheritType(HostileFlagsOf(lBits), true), eLyrInherit);
                 });
         }},
        {"KLyrPropertyHandle::SetFlagsInheritType", kNothing,
         [](Handles& p) {
             for (unsigned lBits : kHostileFlags) {
                 for (int lState : {0, 1, 2})
                     p.WithNone([&](H pNone) {
                         EXPECT_FALSE(pNone.SetFlagsInheritType(HostileFlagsOf(lBits), HostileInherit(lState)));
                     });
                 for (int lState : kNoStates)
                     EXPECT_FALSE(p.mChild.SetFlagsInheritType(HostileFlagsOf(lBits), HostileInherit(lState)));
             }
         }},
        {"KLyrPropertyHandle::GetValueInheritType", kNothing,
         [](Handles& p) {
             p.WithNone([](H pNone) {
                 EXPECT_EQ(pNone.GetValueInheritType(true), pNone.GetPage() ? eLyrInherit : eLyrOverride);
             });
         }},
        {"KLyrPropertyHandle::SetValueInheritType", kNothing,
         [](Handles& p) {
             p.WithNone([](H pNone) { EXPECT_FALSE(pNone.SetValueInheritType(eLyrOverride)); });
             for (int lState : kNoStates)
                 EXPECT_FALSE(p.mChild.SetValueInheritType(HostileInherit(lState)));
         }},
        {"KLyrPropertyHandle::PushPropertiesToParentInstance", kNothing,
         [](Handles& p) {
             p.WithNone([](H pNone) {
                 if (!pNone.GetPage() || pNone.GetId() != 0) {
                     EXPECT_FALSE(pNone.PushPropertiesToParentInstance());
                 }
             });
             EXPECT_FALSE(p.mChild.PushPropertiesToParentInstance());
             EXPECT_TRUE(p.mOther.PushPropertiesToParentInstance()) << "nothing to push to";
         }},
        {"KLyrPropertyHandle::GetParent", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_FALSE(pNone.GetParent().Valid()); }); }},
        {"KLyrPropertyHandle::GetChild", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_FALSE(pNone.GetChild().Valid()); }); }},
        {"KLyrPropertyHandle::GetSibling", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_FALSE(pNone.GetSibling().Valid()); }); }},
        {"KLyrPropertyHandle::GetFirstDescendent", kNothing,
         [](Handles& p) {
             p.WithNone(
                 [](H pNone) { EXPECT_EQ(pNone.GetFirstDescendent().Valid(), pNone.GetPage() && pNone.GetId() < -1); });
         }},
        {"KLyrPropertyHandle::GetNextDescendent", kNothing,
         [](Handles& p) {
             p.WithNone([&p](H pNone) {
                 EXPECT_FALSE(H().GetNextDescendent(pNone).Valid());
                 EXPECT_FALSE(p.mChild.GetNextDescendent(pNone).Valid()) << "a child without children";
             });
             EXPECT_FALSE(p.mChild.GetNextDescendent(p.mChild).Valid());
         }},
        {"KLyrPropertyHandle::IsChildOf", kNothing,
         [](Handles& p) {
             p.WithNone([&p](H pNone) { EXPECT_FALSE(p.mChild.IsChildOf(pNone)); });
             EXPECT_FALSE(p.mChild.IsChildOf(p.mChild) || H().IsChildOf(H()));
         }},
        {"KLyrPropertyHandle::IsDescendentOf", kNothing,
         [](Handles& p) {
             for (int lId : kHostileInts)
                 EXPECT_FALSE(p.mChild.IsDescendentOf(H(nullptr, lId)));
             EXPECT_FALSE(p.mChild.IsDescendentOf(p.mChild) || H().IsDescendentOf(H()));
         }},
    });
}

// --- connections -----------------------------------------------------------------------------------------------------

using Connect = bool (H::*)(const H&, kLyrConnectionType);
using Question = bool (H::*)(const H&) const;
using Disconnect = bool (H::*)(const H&);

void ConnectsNothing(Handles& p, Connect pConnect) {
    for (int lType : kHostileInts) {
        const kLyrConnectionType lConnection = HostileConnection(lType);
        p.WithNone([&](H pNone) {
            EXPECT_FALSE((pNone.*pConnect)(p.mRoot, lConnection));
            EXPECT_FALSE((p.mRoot.*pConnect)(pNone, lConnection));
            EXPECT_FALSE((pNone.*pConnect)(pNone, lConnection));
        });
        EXPECT_FALSE((p.mRoot.*pConnect)(p.mRoot, lConnection));
    }
}

void DisconnectsNothing(Handles& p, Disconnect pDisconnect) {
    p.WithNone([&](H pNone) {
        EXPECT_FALSE((pNone.*pDisconnect)(p.mOther));
        EXPECT_FALSE((p.mOther.*pDisconnect)(pNone));
    });
    EXPECT_FALSE((p.mChild.*pDisconnect)(p.mChild));
    EXPECT_FALSE((p.mRoot.*pDisconnect)(p.mOther));
}

void IsConnectedToNothing(Handles& p, Question pQuestion) {
    p.WithNone([&](H pNone) { EXPECT_FALSE((pNone.*pQuestion)(p.mOther) || (p.mOther.*pQuestion)(pNone)); });
    EXPECT_FALSE((p.mChild.*pQuestion)(p.mChild));
}

TEST(HostileHandle, Connections) {
    MakeHostileCalls<Handles>({
        {"KLyrPropertyHandle::ConnectSrc", kNothing, [](Handles& p) { ConnectsNothing(p, &H::ConnectSrc); }},
        {"KLyrPropertyHandle::ConnectDst", kNothing, [](Handles& p) { ConnectsNothing(p, &H::ConnectDst); }},
        {"KLyrPropertyHandle::DisconnectSrc", kNothing, [](Handles& p) { DisconnectsNothing(p, &H::DisconnectSrc); }},
        {"KLyrPropertyHandle::DisconnectDst", kNothing, [](Handles& p) { DisconnectsNothing(p, &H::DisconnectDst); }},
        {"KLyrPropertyHandle::IsConnectedSrc", kNothing,
         [](Handles& p) { IsConnectedToNothing(p, &H::IsConnectedSrc); }},
        {"KLyrPropertyHandle::IsConnectedDst", kNothing,
         [](Handles& p) { IsConnectedToNothing(p, &H::IsConnectedDst); }},
        {"KLyrPropertyHandle::GetSrcCount", kNothing,
         [](Handles& p) { p.WithNone([&p](H pNone) { EXPECT_EQ(pNone.GetSrcCount(&p.mFilter), 0); }); }},
        {"KLyrPropertyHandle::GetDstCount", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { EXPECT_EQ(pNone.GetDstCount(nullptr), 0); }); }},
        {"KLyrPropertyHandle::GetSrc", kNothing,
         [](Handles& p) {
             for (int lIndex : kHostileInts) {
                 p.WithNone([lIndex](H pNone) { EXPECT_EQ(pNone.GetSrc(nullptr, lIndex), H()); });
                 EXPECT_EQ(p.mOther.GetSrc(&p.mFilter, lIndex), H());
                 EXPECT_EQ(p.mOther.GetSrc(nullptr, lIndex), lIndex == 0 ? p.mChild : H());
             }
         }},
        {"KLyrPropertyHandle::GetDst", kNothing,
         [](Handles& p) {
             for (int lIndex : kHostileInts) {
                 p.WithNone([lIndex](H pNone) { EXPECT_EQ(pNone.GetDst(nullptr, lIndex), H()); });
                 EXPECT_EQ(p.mChild.GetDst(&p.mFilter, lIndex), H());
                 EXPECT_EQ(p.mChild.GetDst(nullptr, lIndex), lIndex == 0 ? p.mOther : H());
             }
         }},
        {"KLyrPropertyHandle::WipeAllConnections", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { pNone.WipeAllConnections(); }); }},
        {"KLyrPropertyHandle::ClearConnectCache", kNothing,
         [](Handles& p) { p.WithNone([](H pNone) { pNone.ClearConnectCache(); }); }},
    });
}

}  // namespace
}  // namespace lyrsdk
