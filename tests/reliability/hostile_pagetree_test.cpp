#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/reliability/hostile_pages.h"

// Inheritance, the property tree, lookup and connections of a page.

namespace lyrsdk {
namespace {

using P = HostilePages;
using Page = KLyrPropertyPage;

Page* const kNoPage = nullptr;

// --- inheritance -----------------------------------------------------------------------------------------------------

TEST(HostilePage, Inheritance) {
    MakeHostileCalls<P>({
        {"KLyrPropertyPage::ChangePropertyEntryState", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 for (int lType : {0, 1, 2})
                     EXPECT_EQ(p.mPage->ChangePropertyEntryState(lId, HostileInherit(lType)), nullptr);
             for (int lType : kNoStates)
                 for (int lId : P::kIds)
                     EXPECT_EQ(p.mPage->ChangePropertyEntryState(lId, HostileInherit(lType)), nullptr);
         }},
        {"KLyrPropertyPage::ChangePropertyItemState", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 for (int lType : {0, 1, 2}) {
                     const KLyrInheritType lState = HostileInherit(lType);
                     EXPECT_EQ(p.mPage->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, lId, lState), nullptr);
                     EXPECT_EQ(p.mPage->ChangePropertyItemState<KLyrPropertyValue>(nullptr, lId, lState), nullptr);
                     EXPECT_EQ(p.mPage->ChangePropertyItemState<KLyrPropertyFlags>(nullptr, lId, lState), nullptr);
                 }
             for (int lType : kNoStates)
                 for (int lId : P::kIds) {
                     const KLyrInheritType lState = HostileInherit(lType);
                     EXPECT_EQ(p.mBelow->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, lId, lState), nullptr);
                     EXPECT_EQ(p.mBelow->ChangePropertyItemState<KLyrPropertyValue>(nullptr, lId, lState), nullptr);
                     EXPECT_EQ(p.mBelow->ChangePropertyItemState<KLyrPropertyFlags>(nullptr, lId, lState), nullptr);
                 }
         }},
        {"KLyrPropertyPage::GetValueInherit", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 for (bool lCheck : {true, false})
                     EXPECT_EQ(p.mPage->GetValueInherit(lId, lCheck), eLyrInherit);
         }},
        {"KLyrPropertyPage::SetValueInherit", kNothing,
         [](P& p) {
             for (int lId : kNoIds) {
                 EXPECT_FALSE(p.mPage->SetValueInherit(lId, eLyrOverride));
                 EXPECT_TRUE(p.mPage->SetValueInherit(lId, eLyrInherit)) << "as it was";
             }
             for (int lId : P::kIds) {
                 EXPECT_FALSE(p.mBelow->SetValueInherit(lId, eLyrDeleted));
                 for (int lType : kNoStates)
                     EXPECT_FALSE(p.mBelow->SetValueInherit(lId, HostileInherit(lType)));
             }
         }},
        {"KLyrPropertyPage::GetFlags", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mPage->GetFlags(lId), LyrPropertyFlags::eNO_FLAG);
         }},
        {"KLyrPropertyPage::GetFlagsInheritType", kNothing,
         [](P& p) {
             for (unsigned lBits : kHostileFlags)
                 for (bool lCheck : {true, false}) {
                     for (int lId : kNoIds)
                         EXPECT_EQ(p.mPage->GetFlagsInheritType(HostileFlagsOf(lBits), lCheck, lId), eLyrInherit);
                     p.mBelow->GetFlagsInheritType(HostileFlagsOf(lBits), lCheck, P::kChild);
                 }
         }},
        {"KLyrPropertyPage::SetFlagsInheritType", kNothing,
         [](P& p) {
             for (unsigned lBits : kHostileFlags) {
                 for (int lId : kNoIds)
                     for (int lType : {0, 1, 2})
                         EXPECT_FALSE(p.mPage->SetFlagsInheritType(HostileInherit(lType), HostileFlagsOf(lBits), lId));
                 for (int lId : P::kIds) {
                     EXPECT_FALSE(p.mBelow->SetFlagsInheritType(eLyrDeleted, HostileFlagsOf(lBits), lId));
                     for (int lType : kNoStates)
                         EXPECT_FALSE(p.mBelow->SetFlagsInheritType(HostileInherit(lType), HostileFlagsOf(lBits), lId));
                 }
                 EXPECT_FALSE(p.mTop->SetFlagsInheritType(eLyrOverride, HostileFlagsOf(lBits), 0)) << "of nothing";
             }
         }},
        {"KLyrPropertyPage::SetFlagsInheritType", kSome,
         [](P& p) {
             for (unsigned lBits : kHostileFlags)
                 for (KLyrInheritType lType : {eLyrOverride, eLyrInherit}) {
                     EXPECT_TRUE(p.mBelow->SetFlagsInheritType(lType, HostileFlagsOf(lBits), P::kChild));
                     EXPECT_EQ(p.mBelow->GetFlags(P::kChild), p.mPage->GetFlags(P::kChild));
                 }
         }},
        {"KLyrPropertyPage::ModifyFlags", kNothing,
         [](P& p) {
             for (unsigned lBits : kHostileFlags)
                 for (int lId : kNoIds)
                     for (bool lOn : {true, false})
                         for (bool lCheck : {true, false})
                             EXPECT_FALSE(p.mPage->ModifyFlags(lId, HostileFlagsOf(lBits), lOn, lCheck));
         }},
        {"KLyrPropertyPage::ModifyFlags", kSome,
         [](P& p) {
             for (unsigned lBits : kHostileFlags)
                 for (int lId : P::kIds)
                     for (bool lOn : {true, false}) {
                         EXPECT_TRUE(p.mBelow->ModifyFlags(lId, HostileFlagsOf(lBits), lOn, false));
                         EXPECT_EQ(p.mBelow->GetFlags(lId) & lBits, lOn ? lBits & 0xFFFFu : 0u);
                     }
         }},
        {"KLyrPropertyPage::PushPropertiesToParentInstance", kNothing,
         [](P& p) {
             p.mTop->PushPropertiesToParentInstance();
             p.mPeer->PushPropertiesToParentInstance();
         }},
        {"KLyrPropertyPage::PushPropertiesToParentInstance", kSome,
         [](P& p) {
             // An item that two properties share, and parents that exist nowhere.
             Page& lBelow = *p.mBelow;
             KLyrPropertyValue* lValue = lBelow.GetPropertyItem<KLyrPropertyValue>(nullptr, P::kChild);
             for (int lParent : kHostileInts)
                 lBelow.Add(lParent, nullptr, lValue, nullptr, true);
             lBelow.PushPropertiesToParentInstance();
             lBelow.PushPropertiesToParentInstance();
             p.mPage->PushPropertiesToParentInstance();
             double lRead = 0;
             EXPECT_TRUE(p.mTop->Get(P::kChild, &lRead, eDOUBLE1));
             EXPECT_EQ(lRead, 2.5);
         }},
    });
}

// --- the tree and lookup ---------------------------------------------------------------------------------------------

TEST(HostilePage, TheTree) {
    MakeHostileCalls<P>({
        {"KLyrPropertyPage::GetParent", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mPage->GetParent(lId), -1);
         }},
        {"KLyrPropertyPage::IsDescendentOf", kNothing,
         [](P& p) {
             for (int lId : kHostileInts)
                 for (int lAncestor : kHostileInts) {
                     const bool lIs = p.mPage->IsDescendentOf(lId, lAncestor);
                     EXPECT_EQ(lIs, lAncestor <= 0 || (lId == P::kPart && lAncestor == P::kTyped)) << lId << lAncestor;
                 }
         }},
        {"KLyrPropertyPage::IsChildOf", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 for (int lParent : kHostileInts)
                     EXPECT_EQ(p.mPage->IsChildOf(lId, lParent), lParent == -1);
         }},
        {"KLyrPropertyPage::GetMinimumPropertyIdAndEntry", kNothing,
         [](P& p) {
             for (int lId : {5, 1000, INT_MAX - 1, INT_MAX}) {
                 KLyrPropertyEntry* lEntry = p.mPage->GetPropertyEntry(0);
                 EXPECT_EQ(p.mPage->GetMinimumPropertyIdAndEntry(lId, &lEntry), -1);
                 EXPECT_EQ(lEntry, nullptr);
             }
             for (int lId : {INT_MIN, -2})
                 EXPECT_EQ(p.mPage->GetMinimumPropertyIdAndEntry(lId, nullptr), 0);
         }},
        {"KLyrPropertyPage::GetChild", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mPage->GetChild(lId), -1);
         }},
        {"KLyrPropertyPage::GetSibling", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mPage->GetSibling(lId), -1);
         }},
        {"KLyrPropertyPage::GetFirstDescendent", kNothing,
         [](P& p) {
             for (int lId : {-1, 1000, INT_MAX})
                 EXPECT_EQ(p.mPage->GetFirstDescendent(lId), -1);
             for (int lId : {INT_MIN, -2})
                 EXPECT_EQ(p.mPage->GetFirstDescendent(lId), 1) << "the root is nobody's descendant";
         }},
        {"KLyrPropertyPage::GetNextDescendent", kNothing,
         [](P& p) {
             for (int lAncestor : kHostileInts)
                 for (int lId : kHostileInts) {
                     const int lNext = p.mPage->GetNextDescendent(lAncestor, lId);
                     EXPECT_TRUE(lNext == -1 || (lNext > lId && p.mPage->IsDescendentOf(lNext, lAncestor)));
                 }
         }},
        {"KLyrPropertyPage::GetPropertyEntryCount", kNothing,
         [](P& p) { EXPECT_EQ(p.mBelow->GetPropertyEntryCount(), 6); }},
        {"KLyrPropertyPage::Find", kNothing,
         [](P& p) {
             for (bool lCase : {true, false}) {
                 WithHostileTexts([&p, lCase](const char* pText) {
                     for (int lId : kNoIds)
                         EXPECT_EQ(p.mPage->Find(lId, pText, nullptr, lCase, pText), -1);
                     EXPECT_EQ(p.mPage->Find(0, pText, nullptr, lCase, nullptr), -1);
                     EXPECT_EQ(p.mPage->Find(0, pText, p.mType.get(), lCase, pText), -1);
                     EXPECT_EQ(p.mPage->Find(0, "child", p.mPage.get(), lCase, pText), -1) << "not typed by itself";
                     EXPECT_EQ(p.mPage->Find(0, "child", nullptr, lCase, pText),
                               TextOrEmpty(pText).find_first_of("child") == std::string::npos ? P::kChild : -1);
                 });
                 const char* lName = p.mPage->GetName(P::kChild);
                 EXPECT_EQ(p.mPage->Find(0, lName, nullptr, lCase, lName), -1);
             }
         }},
        {"KLyrPropertyPage::FastFind", kNothing,
         [](P& p) {
             for (bool lCase : {true, false}) {
                 WithHostileTexts([&p, lCase](const char* pText) {
                     for (int lId : kHostileInts)
                         EXPECT_EQ(p.mPage->FastFind(lId, pText, nullptr, lCase), -1);
                 });
                 EXPECT_EQ(p.mPage->FastFind(0, p.mPage->GetName(P::kChild), nullptr, lCase), P::kChild);
             }
         }},
        {"KLyrPropertyPage::BeginCreateOrFindProperty", kNothing,
         [](P& p) {
             for (int i = 0; i < 3; ++i)
                 p.mPage->BeginCreateOrFindProperty();
             WithHostileTexts([&p](const char* pText) {
                 EXPECT_EQ(p.mPage->Find(0, pText, nullptr, true, nullptr), -1);
                 EXPECT_EQ(p.mPage->Find(-1, pText, nullptr, true, "|"), -1);
             });
             p.mPage->EndCreateOrFindProperty();
         }},
        {"KLyrPropertyPage::EndCreateOrFindProperty", kNothing,
         [](P& p) {
             for (int i = 0; i < 3; ++i)
                 p.mPage->EndCreateOrFindProperty();
         }},
    });
}

// --- connections -----------------------------------------------------------------------------------------------------

TEST(HostilePage, Connections) {
    MakeHostileCalls<P>({
        {"KLyrPropertyPage::ConnectSrc", kNothing,
         [](P& p) {
             for (int lType : kHostileInts) {
                 const kLyrConnectionType lConnection = HostileConnection(lType);
                 for (int lId : kNoIds) {
                     EXPECT_FALSE(p.mPage->ConnectSrc(lId, p.mPeer.get(), 0, lConnection));
                     EXPECT_FALSE(p.mPeer->ConnectSrc(0, p.mPage.get(), lId, lConnection));
                     EXPECT_FALSE(p.mPage->ConnectSrc(lId, p.mPage.get(), lId, lConnection));
                 }
                 EXPECT_FALSE(p.mPage->ConnectSrc(0, kNoPage, 0, lConnection));
                 EXPECT_FALSE(p.mPage->ConnectSrc(0, p.mPage.get(), 0, lConnection));
                 EXPECT_FALSE(p.mPeer->ConnectSrc(0, p.mPage.get(), P::kChild, lConnection)) << "a second one";
             }
         }},
        {"KLyrPropertyPage::ConnectSrc", kSome,
         [](P& p) {
             for (int lType : kHostileInts) {
                 EXPECT_TRUE(p.mPage->ConnectSrc(0, p.mBelow.get(), 0, HostileConnection(lType)));
                 EXPECT_TRUE(p.mPage->DisconnectSrc(0, p.mBelow.get(), 0));
             }
             EXPECT_TRUE(p.mPage->ConnectSrc(P::kChild, p.mPeer.get(), 0, eLyrConnectionNone)) << "a circle";
         }},
        {"KLyrPropertyPage::ConnectDst", kNothing,
         [](P& p) {
             for (int lId : kNoIds) {
                 EXPECT_FALSE(p.mPage->ConnectDst(lId, p.mPeer.get(), 0, eLyrConnectionData));
                 EXPECT_FALSE(p.mPage->ConnectDst(0, p.mPeer.get(), lId, eLyrConnectionData));
             }
             EXPECT_FALSE(p.mPage->ConnectDst(0, kNoPage, 0, eLyrConnectionData));
             EXPECT_FALSE(p.mPage->ConnectDst(0, p.mPage.get(), 0, HostileConnection(-1)));
         }},
        {"KLyrPropertyPage::DisconnectSrc", kNothing,
         [](P& p) {
             for (int lId : kNoIds) {
                 EXPECT_FALSE(p.mPeer->DisconnectSrc(lId, p.mPage.get(), P::kChild));
                 EXPECT_FALSE(p.mPeer->DisconnectSrc(0, p.mPage.get(), lId));
             }
             EXPECT_FALSE(p.mPeer->DisconnectSrc(0, kNoPage, P::kChild));
             EXPECT_FALSE(p.mPeer->DisconnectSrc(0, p.mPeer.get(), 0));
             EXPECT_FALSE(p.mPeer->DisconnectSrc(0, p.mBelow.get(), P::kChild)) << "connections are not inherited";
         }},
        {"KLyrPropertyPage::DisconnectDst", kNothing,
         [](P& p) {
             for (int lId : kNoIds) {
                 EXPECT_FALSE(p.mPage->DisconnectDst(lId, p.mPeer.get(), 0));
                 EXPECT_FALSE(p.mPage->DisconnectDst(P::kChild, p.mPeer.get(), lId));
             }
             EXPECT_FALSE(p.mPage->DisconnectDst(P::kChild, kNoPage, 0));
             EXPECT_FALSE(p.mPage->DisconnectDst(P::kChild, p.mPage.get(), P::kChild));
         }},
        {"KLyrPropertyPage::IsConnectedSrc", kNothing,
         [](P& p) {
             for (int lId : kNoIds) {
                 EXPECT_FALSE(p.mPeer->IsConnectedSrc(lId, p.mPage.get(), P::kChild));
                 EXPECT_FALSE(p.mPeer->IsConnectedSrc(0, p.mPage.get(), lId));
             }
             EXPECT_FALSE(p.mPeer->IsConnectedSrc(0, kNoPage, 0));
         }},
        {"KLyrPropertyPage::IsConnectedDst", kNothing,
         [](P& p) {
             for (int lId : kNoIds) {
                 EXPECT_FALSE(p.mPage->IsConnectedDst(lId, p.mPeer.get(), 0));
                 EXPECT_FALSE(p.mPage->IsConnectedDst(P::kChild, p.mPeer.get(), lId));
             }
             EXPECT_FALSE(p.mPage->IsConnectedDst(P::kChild, kNoPage, 0));
         }},
        {"KLyrPropertyPage::GetSrcCount", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mPeer->GetSrcCount(lId, &p.mFilter), 0);
             EXPECT_EQ(p.mPeer->GetSrcCount(0, &p.mFilter), 0);
         }},
        {"KLyrPropertyPage::GetDstCount", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mPage->GetDstCount(lId, nullptr), 0);
         }},
        {"KLyrPropertyPage::GetSrc", kNothing,
         [](P& p) {
             Page* lPage = p.mTop.get();
             int lSrcId = -7;
             for (int lIndex : kHostileInts) {
                 for (int lId : kNoIds)
                     EXPECT_FALSE(p.mPeer->GetSrc(lId, lIndex, nullptr, &lPage, &lSrcId));
                 EXPECT_FALSE(p.mPeer->GetSrc(0, lIndex, &p.mFilter, &lPage, &lSrcId));
                 EXPECT_EQ(p.mPeer->GetSrc(0, lIndex, nullptr, nullptr, nullptr), lIndex == 0);
             }
             EXPECT_TRUE(lPage == p.mTop.get() && lSrcId == -7) << "nothing is written";
         }},
        {"KLyrPropertyPage::GetDst", kNothing,
         [](P& p) {
             for (int lIndex : kHostileInts) {
                 for (int lId : kNoIds)
                     EXPECT_FALSE(p.mPage->GetDst(lId, lIndex, nullptr, nullptr, nullptr));
                 EXPECT_EQ(p.mPage->GetDst(P::kChild, lIndex, nullptr, nullptr, nullptr), lIndex == 0);
             }
         }},
        {"KLyrPropertyPage::WipeAllConnections", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 p.mPage->WipeAllConnections(lId);
             p.mPage->WipeAllConnections(P::kTyped);
         }},
        {"KLyrPropertyPage::ClearConnectCache", kNothing,
         [](P& p) {
             for (int lId : kHostileInts)
                 p.mPage->ClearConnectCache(lId);
             p.mPeer->GetSrcCount(0, &p.mFilter);
             p.mPeer->ClearConnectCache(0);
         }},
    });
}

}  // namespace
}  // namespace lyrsdk
