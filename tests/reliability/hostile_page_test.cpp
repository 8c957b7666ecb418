#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/reliability/hostile_pages.h"

namespace lyrsdk {
namespace {

using P = HostilePages;
using Page = KLyrPropertyPage;
using Reports = std::vector<std::string>;

const char kRecursive[] = "Recursive type info";
const char kIncompatible[] = "Incompatible type assigment";
Page* const kNoPage = nullptr;

// --- making, adding, destroying --------------------------------------------------------------------------------------

TEST(HostilePage, MakingAndAdding) {
    MakeHostileCalls<P>({
        {"KLyrPropertyPage::Create", kNothing,
         [](P& p) {
             WithHostileTexts([&p](const char* pText) {
                 const OwnedPage lPlain(Page::Create(pText, eSTRING));
                 EXPECT_EQ(lPlain->GetName(0), TextOrEmpty(pText));
                 const OwnedPage lTyped(Page::Create(pText, p.mType.get()));
                 EXPECT_EQ(lTyped->GetName(0), TextOrEmpty(pText));
                 const OwnedPage lUntyped(Page::Create(pText, kNoPage));
                 EXPECT_EQ(lUntyped->GetType(0), eUNIDENTIFIED);
             });
             for (int lCode : kNoCodes) {
                 const OwnedPage lPage(Page::Create("page", static_cast<ELyrType>(lCode)));
                 EXPECT_EQ(lPage->GetType(0), lCode);
             }
             const OwnedPage lOfNothing(Page::Create(kNoPage));
             EXPECT_STREQ(lOfNothing->GetName(0), "");
             const OwnedPage lOwnName(Page::Create(p.mPage->GetName(P::kChild), eENUM));
             EXPECT_STREQ(lOwnName->GetName(0), "child");
             const FailAllocations lFail(0, true);
             EXPECT_EQ(Page::Create("page", eSTRING), nullptr);
             EXPECT_EQ(Page::Create("page", p.mType.get()), nullptr);
             EXPECT_EQ(Page::Create(p.mPage.get()), nullptr);
         }},
        {"KLyrPropertyPage::Destroy", kSome,
         [](P& p) {
             p.mPage->BeginCreateOrFindProperty();
             p.mPage.reset(Page::Create(p.mTop.get()));
             EXPECT_EQ(p.mBelow->GetInstanceOf(), nullptr);
             EXPECT_EQ(p.mBelow->GetParent(P::kPart), P::kTyped);
             EXPECT_EQ(p.mPeer->GetSrcCount(0, nullptr), 0);
         }},
        {"KLyrPropertyPage::Is", kNothing,
         [](P& p) { EXPECT_TRUE(!p.mPage->Is(nullptr) && p.mPage->Is(p.mPage.get()) && !p.mPage->Is(p.mTop.get())); }},
        {"KLyrPropertyPage::Reparent", kNothing,
         [](P& p) {
             for (int lChild : kHostileInts)
                 for (int lParent : kHostileInts)
                     EXPECT_FALSE(p.mPage->Reparent(lChild, lParent));
         }},
        {"KLyrPropertyPage::SetDataPtr", kNothing,
         [](P& p) {
             p.mPage->SetDataPtr(p.mPage.get());
             EXPECT_EQ(p.mPage->GetDataPtr(), p.mPage.get());
             p.mPage->SetDataPtr(nullptr);
         }},
        {"KLyrPropertyPage::GetDataPtr", kNothing, [](P& p) { EXPECT_EQ(p.mPage->GetDataPtr(), nullptr); }},
        {"KLyrPropertyPage::GetInstanceOf", kNothing, [](P& p) { EXPECT_EQ(p.mTop->GetInstanceOf(), nullptr); }},
        {"KLyrPropertyPage::GetInstances", kNothing,
         [](P& p) {
             for (int lIndex : kHostileInts) {
                 EXPECT_EQ(p.mPage->GetInstances().GetAt(lIndex), p.mBelow.get());
                 EXPECT_EQ(p.mBelow->GetInstances().GetAt(lIndex), nullptr);
             }
         }},
        {"KLyrPropertyPage::GetIdGenerator", kNothing,
         [](P& p) { EXPECT_EQ(p.mPage->GetIdGenerator(), p.mTop->GetIdGenerator()); }},
        {"KLyrPropertyPage::Add", kNothing,
         [](P& p) {
             // Without a description there is nothing to recurse into, and without memory nothing is added.
             const Counted<KLyrPropertyInfo> lInfo(KLyrPropertyInfo::Create("kept", p.mType.get()));
             const FailAllocations lFail(0, true);
             for (int lParent : kHostileInts) {
                 EXPECT_EQ(p.mPage->Add(lParent, "none", eDOUBLE1), -1);
                 EXPECT_EQ(p.mPage->Add(lParent, "none", p.mType.get()), -1);
                 EXPECT_EQ(p.mPage->Add(lParent, lInfo.Get(), nullptr, nullptr, true), -1);
             }
         }},
        {"KLyrPropertyPage::Add", kSome,
         [](P& p) {
             for (int lParent : kHostileInts) {
                 EXPECT_EQ(p.mPage->GetParent(p.mPage->Add(lParent, nullptr, eDOUBLE1)), lParent);
                 EXPECT_EQ(p.mPage->GetParent(p.mPage->Add(lParent, nullptr, kNoPage)), lParent);
                 EXPECT_EQ(p.mPage->GetParent(p.mPage->Add(lParent, "typed", p.mType.get())), lParent);
                 EXPECT_EQ(p.mPage->GetParent(p.mPage->Add(lParent, nullptr, nullptr, nullptr, true)), lParent);
             }
             WithHostileTexts([&p](const char* pText) {
                 const int lId = p.mPage->Add(0, pText, eENUM);
                 EXPECT_EQ(p.mPage->GetName(lId), TextOrEmpty(pText));
             });
             for (int lCode : kNoCodes)
                 EXPECT_EQ(p.mPage->GetType(p.mPage->Add(0, "code", static_cast<ELyrType>(lCode))), lCode);
             EXPECT_STREQ(p.mPage->GetName(p.mPage->Add(0, p.mPage->GetName(P::kChild), eENUM)), "child");
             EXPECT_GT(p.mPage->Add(0, "self", p.mPage.get()), 0);
             EXPECT_GT(p.mPage->Add(0, "above", p.mTop.get()), 0);
             EXPECT_GT(p.mPage->Add(0, "below", p.mBelow.get()), 0);
         },
         Reports{kRecursive}},
        {"KLyrPropertyPage::Add", kSome,
         [](P& p) {
             // The page's own items, a second time.
             KLyrPropertyPage& lPage = *p.mPage;
             KLyrPropertyInfo* lInfo = lPage.GetPropertyItem<KLyrPropertyInfo>(nullptr, P::kChild);
             KLyrPropertyValue* lValue = lPage.GetPropertyItem<KLyrPropertyValue>(nullptr, P::kChild);
             KLyrPropertyConnect* lConnect = lPage.GetPropertyItem<KLyrPropertyConnect>(nullptr, P::kChild);
             const int lId = lPage.Add(P::kChild, lInfo, lValue, lConnect, true);
             EXPECT_EQ(lPage.GetDstCount(lId, nullptr), 1) << "one connection point for both";
             EXPECT_TRUE(lPage.RemoveOwnEntry(lId));
             EXPECT_EQ(lPage.GetDstCount(P::kChild, nullptr), 1);
         }},
        {"KLyrPropertyPage::RemoveOwnEntry", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_FALSE(p.mPage->RemoveOwnEntry(lId));
             for (int lId : {0, P::kTyped, P::kPart})
                 EXPECT_FALSE(p.mBelow->RemoveOwnEntry(lId)) << "inherited";
         }},
        {"KLyrPropertyPage::RemoveOwnEntry", kSome,
         [](P& p) {
             EXPECT_TRUE(p.mTop->RemoveOwnEntry(0)) << "even the root";
             for (Page* lPage : {p.mTop.get(), p.mPage.get(), p.mBelow.get()}) {
                 EXPECT_STREQ(lPage->GetName(0), "");
                 EXPECT_EQ(lPage->GetType(0), eUNIDENTIFIED);
             }
             EXPECT_TRUE(p.mPage->RemoveOwnEntry(P::kTyped));
             EXPECT_EQ(p.mPage->GetParent(P::kPart), P::kTyped) << "children keep their parent id";
         }},
    });
}

// --- entries, items, values ------------------------------------------------------------------------------------------

TEST(HostilePage, EntriesItemsAndValues) {
    MakeHostileCalls<P>({
        {"KLyrPropertyPage::GetPropertyEntry", kNothing,
         [](P& p) {
             for (int lId : kNoIds) {
                 Page* lFoundIn = p.mPeer.get();
                 EXPECT_EQ(p.mPage->GetPropertyEntry(lId), nullptr);
                 EXPECT_EQ(p.mPage->GetPropertyEntry(lId, &lFoundIn), nullptr);
                 EXPECT_EQ(lFoundIn, nullptr);
             }
             EXPECT_NE(p.mPage->GetPropertyEntry(0, nullptr), nullptr);
         }},
        {"KLyrPropertyPage::GetPropertyItem", kNothing,
         [](P& p) {
             for (int lId : kNoIds) {
                 Page* lFoundIn = p.mPeer.get();
                 EXPECT_EQ(p.mPage->GetPropertyItem<KLyrPropertyInfo>(nullptr, lId, &lFoundIn), nullptr);
                 EXPECT_EQ(p.mPage->GetPropertyItem<KLyrPropertyValue>(nullptr, lId), nullptr);
                 EXPECT_EQ(p.mPage->GetPropertyItem<KLyrPropertyConnect>(nullptr, lId), nullptr);
                 EXPECT_EQ(p.mPage->GetPropertyItem<KLyrPropertyFlags>(nullptr, lId), nullptr);
                 EXPECT_EQ(lFoundIn, nullptr);
             }
         }},
        {"KLyrPropertyPage::GetFirstPropertyItem", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mBelow->GetFirstPropertyItem<KLyrPropertyValue>(lId, nullptr), nullptr);
         }},
        {"KLyrPropertyPage::Get", kNothing,
         [](P& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 for (int lId : kNoIds)
                     EXPECT_FALSE(p.mPage->Get(lId, pValue, pType));
                 for (int lId : P::kIds) {
                     EXPECT_FALSE(p.mPage->Get(lId, nullptr, pType));
                     EXPECT_FALSE(p.mPage->Get(lId, pValue, pType) && !lyrHoldsValue(pType));
                 }
             });
         },
         Reports{kUnknownType, kVoidReference, kIncompatible}},
        {"KLyrPropertyPage::GetDefaultValue", kNothing,
         [](P& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 for (int lId : kNoIds)
                     EXPECT_FALSE(p.mBelow->GetDefaultValue(lId, pValue, pType));
                 for (int lId : P::kIds) {
                     EXPECT_FALSE(p.mBelow->GetDefaultValue(lId, nullptr, pType));
                     EXPECT_FALSE(p.mBelow->GetDefaultValue(lId, pValue, pType) && !lyrHoldsValue(pType));
                 }
             });
         },
         Reports{kUnknownType, kVoidReference, kIncompatible}},
        {"KLyrPropertyPage::Set", kNothing,
         [](P& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 for (bool lCheck : {true, false}) {
                     for (int lId : kNoIds)
                         EXPECT_FALSE(p.mPage->Set(lId, pValue, pType, lCheck));
                     for (int lId : P::kIds) {
                         EXPECT_FALSE(p.mPage->Set(lId, nullptr, pType, lCheck));
                         if (!lyrHoldsValue(pType)) {
                             EXPECT_FALSE(p.mBelow->Set(lId, pValue, pType, lCheck));
                         }
                     }
                 }
             });
         },
         Reports{kUnknownType, kVoidReference}},
        {"KLyrPropertyPage::Set", kSome,
         [](P& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 for (int lId : P::kIds)
                     for (bool lCheck : {true, false})
                         p.mBelow->Set(lId, pValue, pType, lCheck);
             });
             WithHostileTexts([&p](const char* pText) {
                 const KString lText(pText);
                 KString lRead;
                 EXPECT_TRUE(p.mPage->Set(P::kText, &lText, eSTRING, false));
                 EXPECT_TRUE(p.mPage->Get(P::kText, &lRead, eSTRING));
                 EXPECT_EQ(lRead, lText);
                 EXPECT_FALSE(p.mPage->Set(P::kChild, &lText, eSTRING, false)) << "no number";
             });
         },
         Reports{kUnknownType, kVoidReference, kIncompatible}},
    });
}

// --- descriptions ----------------------------------------------------------------------------------------------------

TEST(HostilePage, Descriptions) {
    MakeHostileCalls<P>({
        {"KLyrPropertyPage::GetType", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mPage->GetType(lId), eUNIDENTIFIED);
         }},
        {"KLyrPropertyPage::GetName", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_STREQ(p.mPage->GetName(lId), "");
         }},
        {"KLyrPropertyPage::GetTypeInfo", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mPage->GetTypeInfo(lId), nullptr);
         }},
        {"KLyrPropertyPage::GetLabel", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_STREQ(p.mPage->GetLabel(lId), "");
         }},
        {"KLyrPropertyPage::SetLabel", kNothing,
         [](P& p) {
             WithHostileTexts([&p](const char* pText) {
                 for (int lId : kNoIds)
                     EXPECT_FALSE(p.mPage->SetLabel(lId, pText));
             });
             EXPECT_TRUE(p.mPage->SetLabel(P::kChild, p.mBelow->GetLabel(P::kChild)));
         }},
        {"KLyrPropertyPage::SetLabel", kSome,
         [](P& p) {
             EXPECT_TRUE(p.mBelow->SetLabel(P::kChild, p.mPage->GetLabel(P::kChild) + 2));
             EXPECT_STREQ(p.mPage->GetLabel(P::kChild), "label of its own");
             WithHostileTexts([&p](const char* pText) { EXPECT_TRUE(p.mPage->SetLabel(0, pText)); });
         }},
        {"KLyrPropertyPage::GetUserTag", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mPage->GetUserTag(lId), 0);
         }},
        {"KLyrPropertyPage::SetUserTag", kNothing,
         [](P& p) {
             for (int lTag : kHostileInts) {
                 for (int lId : kNoIds)
                     EXPECT_FALSE(p.mPage->SetUserTag(lId, lTag));
                 EXPECT_TRUE(p.mPage->SetUserTag(0, lTag));
                 EXPECT_EQ(p.mTop->GetUserTag(0), lTag);
             }
             p.mPage->SetUserTag(0, 0);
         }},
        {"KLyrPropertyPage::GetUserData", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mPage->GetUserData(lId), nullptr);
         }},
        {"KLyrPropertyPage::SetUserData", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_FALSE(p.mPage->SetUserData(lId, &p));
             EXPECT_TRUE(p.mPage->SetUserData(0, nullptr));
         }},
        {"KLyrPropertyPage::SetMinMax", kNothing,
         [](P& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 for (int lId : kNoIds)
                     EXPECT_FALSE(p.mPage->SetMinMax(lId, KLyrPropertyInfo::eValueMin, pValue, pType));
                 for (int lBound : kNoBounds)
                     EXPECT_FALSE(p.mPage->SetMinMax(P::kChild, HostileBound(lBound), pValue, pType));
                 EXPECT_FALSE(p.mPage->SetMinMax(P::kChild, KLyrPropertyInfo::eValueMax, nullptr, pType));
                 if (!lyrHoldsValue(pType)) {
                     EXPECT_FALSE(p.mPage->SetMinMax(P::kEnum, KLyrPropertyInfo::eValueMax, pValue, pType));
                 }
             });
         },
         Reports{kUnknownType, kVoidReference}},
        {"KLyrPropertyPage::SetMinMax", kSome,
         [](P& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 for (int lId : P::kIds)
                     for (int lBound = 0; lBound < KLyrPropertyInfo::eValueCount; ++lBound)
                         p.mPage->SetMinMax(lId, HostileBound(lBound), pValue, pType);
             });
         },
         Reports{kUnknownType, kVoidReference, kIncompatible}},
        {"KLyrPropertyPage::GetMinMax", kNothing,
         [](P& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 for (int lId : kNoIds)
                     EXPECT_FALSE(p.mPage->GetMinMax(lId, KLyrPropertyInfo::eValueMax, pValue, pType));
                 for (int lBound : kNoBounds)
                     EXPECT_FALSE(p.mPage->GetMinMax(P::kChild, HostileBound(lBound), pValue, pType));
                 EXPECT_FALSE(p.mPage->GetMinMax(P::kChild, KLyrPropertyInfo::eValueMax, nullptr, pType));
             });
         }},
        {"KLyrPropertyPage::HasMinMax", kNothing,
         [](P& p) {
             for (int lBound : kNoBounds)
                 EXPECT_FALSE(p.mPage->HasMinMax(P::kChild, HostileBound(lBound)));
             for (int lId : kNoIds)
                 EXPECT_FALSE(p.mPage->HasMinMax(lId, KLyrPropertyInfo::eValueMax));
         }},
        {"KLyrPropertyPage::AddEnumValue", kNothing,
         [](P& p) {
             WithHostileTexts([&p](const char* pText) {
                 for (int lId : kNoIds)
                     EXPECT_EQ(p.mPage->AddEnumValue(lId, pText), -1);
                 EXPECT_EQ(p.mPage->AddEnumValue(P::kChild, pText), -1) << "no enumeration";
             });
             EXPECT_EQ(p.mPage->AddEnumValue(P::kEnum, p.mPage->GetEnumValue(P::kEnum, 1)), -1);
         }},
        {"KLyrPropertyPage::InsertEnumValue", kNothing,
         [](P& p) {
             for (int lIndex : kHostileInts) {
                 for (int lId : kNoIds)
                     p.mPage->InsertEnumValue(lId, lIndex, "new");
                 p.mPage->InsertEnumValue(P::kChild, lIndex, "new");
                 if (lIndex < 0)
                     p.mPage->InsertEnumValue(P::kEnum, lIndex, nullptr);
             }
         }},
        {"KLyrPropertyPage::InsertEnumValue", kSome,
         [](P& p) {
             p.mPage->InsertEnumValue(P::kEnum, INT_MAX, p.mPage->GetEnumValue(P::kEnum, 0));
             EXPECT_STREQ(p.mBelow->GetEnumValue(P::kEnum, 2), "zero text");
             WithHostileTexts([&p](const char* pText) { p.mPage->InsertEnumValue(P::kEnum, 1, pText); });
         }},
        {"KLyrPropertyPage::GetEnumCount", kNothing,
         [](P& p) {
             for (int lId : kNoIds)
                 EXPECT_EQ(p.mPage->GetEnumCount(lId), 0);
         }},
        {"KLyrPropertyPage::SetEnumValue", kNothing,
         [](P& p) {
             for (int lIndex : kHostileInts) {
                 for (int lId : kNoIds)
                     p.mPage->SetEnumValue(lId, lIndex, "new");
                 if (lIndex < 0 || lIndex > 1)
                     p.mPage->SetEnumValue(P::kEnum, lIndex, "new");
             }
             p.mPage->SetEnumValue(P::kEnum, 1, p.mPage->GetEnumValue(P::kEnum, 1));
         }},
        {"KLyrPropertyPage::RemoveEnumValue", kNothing,
         [](P& p) {
             for (int lIndex : kHostileInts) {
                 for (int lId : kNoIds)
                     p.mPage->RemoveEnumValue(lId, lIndex);
                 if (lIndex < 0 || lIndex > 1)
                     p.mPage->RemoveEnumValue(P::kEnum, lIndex);
             }
         }},
        {"KLyrPropertyPage::GetEnumValue", kNothing,
         [](P& p) {
             for (int lIndex : kHostileInts) {
                 for (int lId : kNoIds)
                     EXPECT_STREQ(p.mPage->GetEnumValue(lId, lIndex), "");
                 EXPECT_EQ(p.mPage->GetEnumValue(P::kEnum, lIndex) != nullptr, lIndex < 2);
                 EXPECT_EQ(p.mPage->GetEnumValue(P::kChild, lIndex), nullptr);
             }
         }},
    });
}

}  // namespace
}  // namespace lyrsdk
