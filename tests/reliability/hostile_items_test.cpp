#include <gtest/gtest.h>

#include <string>

#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/reliability/hostile.h"
#include "tests/support/counted.h"

namespace lyrsdk {
namespace {

using Reports = std::vector<std::string>;
using EFlags = LyrPropertyFlags::eLyrPropertyFlags;

const char kIncompatible[] = "Incompatible type assigment";

EFlags ToFlags(unsigned pBits) {
    return static_cast<EFlags>(pBits);
}

// --- flags -----------------------------------------------------------------------------------------------------------

struct FlagItem {
    KLyrPropertyFlags mFlags{LyrPropertyFlags::eUSER};

    std::string State() const { return std::to_string(mFlags.GetMask()) + '/' + std::to_string(mFlags.GetFlags()); }
};

TEST(HostileItems, FlagsOfAnyBits) {
    MakeHostileCalls<FlagItem>({
        {"LyrPropertyFlags::GetFlagCount", kNothing,
         [](FlagItem&) { EXPECT_EQ(LyrPropertyFlags::GetFlagCount(), 16); }},
        {"LyrPropertyFlags::AllFlags", kNothing, [](FlagItem&) { EXPECT_EQ(LyrPropertyFlags::AllFlags(), 0x7FFFu); }},
        {"operator|", kNothing, [](FlagItem&) { EXPECT_EQ(ToFlags(0x80000000u) | ToFlags(1), 0x80000001u); }},
        {"operator&", kNothing, [](FlagItem&) { EXPECT_EQ(ToFlags(0xFFFFFFFFu) & ToFlags(0x8000u), 0x8000u); }},
        {"operator~", kNothing, [](FlagItem&) { EXPECT_EQ(~ToFlags(0), 0xFFFFFFFFu); }},
        {"KLyrPropertyFlags::KLyrPropertyFlags", kNothing,
         [](FlagItem&) {
             for (unsigned lBits : kHostileFlags)
                 EXPECT_EQ(KLyrPropertyFlags(ToFlags(lBits)).GetFlags(), lBits & 0xFFFFu);
         }},
        {"KLyrPropertyFlags::Clone", kNothing, [](FlagItem& p) { EXPECT_EQ(p.mFlags.Clone(nullptr).GetMask(), 0u); }},
        {"KLyrPropertyFlags::SetMask", kSome,
         [](FlagItem& p) {
             for (unsigned lBits : kHostileFlags) {
                 EXPECT_TRUE(p.mFlags.SetMask(lBits));
                 EXPECT_EQ(p.mFlags.GetMask() & ~0xFFFFu, 0u);
                 EXPECT_EQ(p.mFlags.GetFlags(), LyrPropertyFlags::eUSER);
             }
         }},
        {"KLyrPropertyFlags::UnsetMask", kSome,
         [](FlagItem& p) {
             for (unsigned lBits : kHostileFlags) {
                 EXPECT_TRUE(p.mFlags.UnsetMask(lBits));
                 EXPECT_EQ(p.mFlags.GetFlags(), LyrPropertyFlags::eUSER);
             }
         }},
        {"KLyrPropertyFlags::GetMask", kNothing, [](FlagItem&) { EXPECT_EQ(KLyrPropertyFlags().GetMask(), 0u); }},
        {"KLyrPropertyFlags::GetFlags", kNothing, [](FlagItem&) { EXPECT_EQ(KLyrPropertyFlags().GetFlags(), 0u); }},
        {"KLyrPropertyFlags::GetMergedFlags", kNothing,
         [](FlagItem& p) {
             for (unsigned lBits : kHostileFlags)
                 EXPECT_EQ(p.mFlags.GetMergedFlags(lBits), lBits | LyrPropertyFlags::eUSER);
         }},
        {"KLyrPropertyFlags::GetFlagsInheritType", kNothing,
         [](FlagItem& p) {
             for (unsigned lBits : kHostileFlags)
                 EXPECT_EQ(p.mFlags.GetFlagsInheritType(lBits),
                           lBits & LyrPropertyFlags::eUSER ? eLyrOverride : eLyrInherit);
         }},
        {"KLyrPropertyFlags::ModifyFlags", kSome,
         [](FlagItem& p) {
             for (unsigned lBits : kHostileFlags) {
                 EXPECT_TRUE(p.mFlags.ModifyFlags(lBits, true));
                 EXPECT_EQ(p.mFlags.GetFlags() & lBits, lBits & 0xFFFFu);
                 EXPECT_TRUE(p.mFlags.ModifyFlags(lBits, false));
                 EXPECT_EQ(p.mFlags.GetFlags() & lBits, 0u);
             }
         }},
        {"KLyrPropertyFlags::SetFlags", kSome,
         [](FlagItem& p) {
             for (unsigned lMask : kHostileFlags)
                 for (unsigned lBits : kHostileFlags) {
                     EXPECT_TRUE(p.mFlags.SetFlags(lMask, lBits));
                     EXPECT_EQ(p.mFlags.GetFlags() & lMask, lBits & lMask & 0xFFFFu);
                 }
         }},
        {"KLyrPropertyFlags::Equal", kNothing,
         [](FlagItem& p) {
             for (unsigned lBits : kHostileFlags)
                 EXPECT_TRUE(p.mFlags.Equal(p.mFlags, lBits));
         }},
    });
}

// --- values ----------------------------------------------------------------------------------------------------------

struct ValueItem {
    Counted<KLyrPropertyValue> mItem;
    Counted<KLyrPropertyValue> mNone{KLyrPropertyValue::Create(nullptr, eUNIDENTIFIED)};

    ValueItem() {
        const int lValue = 5;
        mItem.Reset(KLyrPropertyValue::Create(&lValue, eINTEGER1));
    }
    std::string State() const {
        int lValue = -1;
        EXPECT_TRUE(mItem->Get(&lValue, eINTEGER1));
        return std::to_string(lValue) + '/' + std::to_string(mItem->GetType()) + '/' + std::to_string(mNone->GetType());
    }
};

TEST(HostileItems, Values) {
    MakeHostileCalls<ValueItem>({
        {"KLyrPropertyValue::Create", kNothing,
         [](ValueItem&) {
             WithHostileValues([](ELyrType pType, void* pValue) {
                 for (const void* lValue : {static_cast<const void*>(nullptr), static_cast<const void*>(pValue)}) {
                     const Counted<KLyrPropertyValue> lItem(KLyrPropertyValue::Create(lValue, pType));
                     EXPECT_EQ(lItem->GetType(), pType);
                 }
             });
         }},
        {"KLyrPropertyValue::Clone", kNothing,
         [](ValueItem& p) {
             EXPECT_EQ(Counted<KLyrPropertyValue>(p.mItem->Clone(nullptr))->GetType(), eINTEGER1);
             EXPECT_EQ(Counted<KLyrPropertyValue>(p.mNone->Clone(nullptr))->GetType(), eUNIDENTIFIED);
         }},
        {"KLyrPropertyValue::IncRef", kNothing, [](ValueItem& p) { p.mItem->IncRef(), p.mItem->DecRef(); }},
        {"KLyrPropertyValue::DecRef", kNothing,
         [](ValueItem&) {
             KLyrPropertyValue* lItem = KLyrPropertyValue::Create(nullptr, eSTRING);
             lItem->IncRef();
             lItem->DecRef();
         }},
        {"KLyrPropertyValue::GetType", kNothing, [](ValueItem& p) { EXPECT_EQ(p.mNone->GetType(), eUNIDENTIFIED); }},
        {"KLyrPropertyValue::Get", kNothing,
         [](ValueItem& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 EXPECT_FALSE(p.mItem->Get(nullptr, pType));
                 EXPECT_FALSE(p.mNone->Get(pValue, pType));
                 EXPECT_FALSE(p.mItem->Get(pValue, pType) && !lyrHoldsValue(pType));
             });
         },
         Reports{kUnknownType, kVoidReference, kIncompatible}},
        {"KLyrPropertyValue::Set", kNothing,
         [](ValueItem& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 EXPECT_FALSE(p.mItem->Set(nullptr, pType));
                 EXPECT_FALSE(p.mNone->Set(pValue, pType));
                 if (!lyrHoldsValue(pType)) {
                     EXPECT_FALSE(p.mItem->Set(pValue, pType));
                 }
             });
         },
         Reports{kUnknownType, kVoidReference}},
    });
}

// --- descriptions ----------------------------------------------------------------------------------------------------

// An enumeration with two texts, a minimum and a label; a number; and a type page.
struct Infos {
    OwnedPage mType{KLyrPropertyPage::Create("type", eDOUBLE1)};
    Counted<KLyrPropertyInfo> mEnum{KLyrPropertyInfo::Create("enumeration", eENUM)};
    Counted<KLyrPropertyInfo> mNumber{KLyrPropertyInfo::Create("number", eDOUBLE1)};
    Counted<KLyrPropertyInfo> mNone{KLyrPropertyInfo::Create(nullptr, eUNIDENTIFIED)};

    Infos() {
        const int lMinimum = -3;
        mEnum->AddEnumValue("zero text");
        mEnum->AddEnumValue("one text");
        mEnum->SetMinMax(KLyrPropertyInfo::eValueMin, &lMinimum, eINTEGER1);
        mEnum->SetLabel("a label of its own");
        mEnum->SetUserTag(7);
        mEnum->SetUserData(this);
    }
    std::string State() const {
        std::string lState;
        for (const Counted<KLyrPropertyInfo>* lItem : {&mEnum, &mNumber, &mNone}) {
            KLyrPropertyInfo& lInfo = *lItem->Get();
            lState += std::string(lInfo.GetNameText()) + '/' + lInfo.GetLabel() + '/' +
                      std::to_string(lInfo.GetUserTag()) + (lInfo.GetUserData() ? " data " : " ") +
                      std::to_string(lInfo.GetType());
            for (int i = 0; i < lInfo.GetEnumCount(); ++i)
                lState += std::string(" ") + lInfo.GetEnumValue(i);
            for (int i = 0; i < KLyrPropertyInfo::eValueCount; ++i) {
                double lBound = 0;
                if (lInfo.GetMinMax(static_cast<KLyrPropertyInfo::eValueIndex>(i), &lBound, eDOUBLE1))
                    lState += ' ' + std::to_string(i) + '=' + std::to_string(lBound);
            }
            lState += '\n';
        }
        return lState;
    }
};

KLyrPropertyInfo::eValueIndex Bound(int pIndex) {
    return static_cast<KLyrPropertyInfo::eValueIndex>(pIndex);
}
constexpr int kNoBounds[] = {INT_MIN, -1, 4, 5, INT_MAX};

TEST(HostileItems, Descriptions) {
    MakeHostileCalls<Infos>({
        {"KLyrPropertyInfo::Create", kNothing,
         [](Infos& p) {
             WithHostileTexts([&p](const char* pText) {
                 const Counted<KLyrPropertyInfo> lPlain(KLyrPropertyInfo::Create(pText, static_cast<ELyrType>(-1)));
                 EXPECT_EQ(lPlain->GetNameText(), TextOrEmpty(pText));
                 const Counted<KLyrPropertyInfo> lTyped(KLyrPropertyInfo::Create(pText, p.mType.get()));
                 EXPECT_EQ(lTyped->GetType(), eDOUBLE1);
             });
             const Counted<KLyrPropertyInfo> lUntyped(
                 KLyrPropertyInfo::Create(p.mEnum->GetNameText(), static_cast<KLyrTypeInfo*>(nullptr)));
             EXPECT_EQ(lUntyped->GetType(), eUNIDENTIFIED);
             EXPECT_EQ(lUntyped->GetNameText(), p.mEnum->GetNameText()) << "equal names are one text";
             const FailAllocations lFail(0, true);
             EXPECT_EQ(KLyrPropertyInfo::Create("name", eDOUBLE1), nullptr);
         }},
        {"KLyrPropertyInfo::Clone", kNothing,
         [](Infos& p) { EXPECT_EQ(Counted<KLyrPropertyInfo>(p.mEnum->Clone(nullptr))->GetEnumCount(), 0); }},
        {"KLyrPropertyInfo::IncRef", kNothing, [](Infos& p) { p.mEnum->IncRef(), p.mEnum->DecRef(); }},
        {"KLyrPropertyInfo::DecRef", kNothing,
         [](Infos& p) {
             KLyrPropertyInfo* lInfo = KLyrPropertyInfo::Create("gone", p.mType.get());
             lInfo->IncRef();
             lInfo->DecRef();
         }},
        {"KLyrPropertyInfo::GetName", kNothing, [](Infos& p) { EXPECT_TRUE(p.mNone->GetName().IsEmpty()); }},
        {"KLyrPropertyInfo::GetNameText", kNothing, [](Infos& p) { EXPECT_STREQ(p.mNone->GetNameText(), ""); }},
        {"KLyrPropertyInfo::GetType", kSome,
         [](Infos& p) {
             // A page that is typed by itself.
             KLyrPropertyEntry* lRoot = p.mType->GetPropertyEntry(0);
             lRoot->Set(KLyrPropertyInfo::Create("self", p.mType.get()));
             EXPECT_EQ(p.mType->GetType(0), eUNIDENTIFIED);
         }},
        {"KLyrPropertyInfo::GetTypeInfo", kNothing, [](Infos& p) { EXPECT_EQ(p.mNone->GetTypeInfo(), nullptr); }},
        {"KLyrPropertyInfo::SetLabel", kNothing,
         [](Infos& p) {
             EXPECT_TRUE(p.mEnum->SetLabel(p.mEnum->GetLabel()));
             const FailAllocations lFail(0, true);
             EXPECT_FALSE(p.mEnum->SetLabel("a label that nobody has"));
         }},
        {"KLyrPropertyInfo::SetLabel", kSome,
         [](Infos& p) {
             EXPECT_TRUE(p.mEnum->SetLabel(p.mEnum->GetLabel() + 2));
             EXPECT_STREQ(p.mEnum->GetLabel(), "label of its own");
             WithHostileTexts([&p](const char* pText) {
                 EXPECT_TRUE(p.mEnum->SetLabel(pText));
                 EXPECT_EQ(p.mEnum->GetLabel(), TextOrEmpty(pText));
             });
         }},
        {"KLyrPropertyInfo::GetLabel", kNothing, [](Infos& p) { EXPECT_STREQ(p.mNone->GetLabel(), ""); }},
        {"KLyrPropertyInfo::SetUserTag", kSome,
         [](Infos& p) {
             for (int lTag : kHostileInts) {
                 p.mEnum->SetUserTag(lTag);
                 EXPECT_EQ(p.mEnum->GetUserTag(), lTag);
             }
         }},
        {"KLyrPropertyInfo::GetUserTag", kNothing, [](Infos& p) { EXPECT_EQ(p.mNone->GetUserTag(), 0); }},
        {"KLyrPropertyInfo::SetUserData", kSome,
         [](Infos& p) {
             p.mEnum->SetUserData(p.mEnum.Get());
             p.mEnum->SetUserData(nullptr);
         }},
        {"KLyrPropertyInfo::GetUserData", kNothing, [](Infos& p) { EXPECT_EQ(p.mNone->GetUserData(), nullptr); }},
        {"KLyrPropertyInfo::HasMinMax", kNothing,
         [](Infos& p) {
             for (int lIndex : kNoBounds)
                 EXPECT_FALSE(p.mEnum->HasMinMax(Bound(lIndex)));
         }},
        {"KLyrPropertyInfo::SetMinMax", kNothing,
         [](Infos& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 for (int lIndex : kNoBounds)
                     EXPECT_FALSE(p.mEnum->SetMinMax(Bound(lIndex), pValue, pType));
                 for (int lIndex = 0; lIndex < KLyrPropertyInfo::eValueCount; ++lIndex) {
                     EXPECT_FALSE(p.mEnum->SetMinMax(Bound(lIndex), nullptr, pType));
                     EXPECT_FALSE(p.mNone->SetMinMax(Bound(lIndex), pValue, pType));
                     if (!lyrHoldsValue(pType)) {
                         EXPECT_FALSE(p.mNumber->SetMinMax(Bound(lIndex), pValue, pType));
                         EXPECT_FALSE(p.mNumber->HasMinMax(Bound(lIndex)));
                     }
                 }
             });
         },
         Reports{kUnknownType, kVoidReference}},
        {"KLyrPropertyInfo::GetMinMax", kNothing,
         [](Infos& p) {
             WithHostileValues([&p](ELyrType pType, void* pValue) {
                 for (int lIndex : kNoBounds)
                     EXPECT_FALSE(p.mEnum->GetMinMax(Bound(lIndex), pValue, pType));
                 EXPECT_FALSE(p.mEnum->GetMinMax(KLyrPropertyInfo::eValueMax, pValue, pType)) << "not set";
                 EXPECT_FALSE(p.mEnum->GetMinMax(KLyrPropertyInfo::eValueMin, nullptr, pType));
                 if (!lyrHoldsValue(pType)) {
                     EXPECT_FALSE(p.mEnum->GetMinMax(KLyrPropertyInfo::eValueMin, pValue, pType));
                 }
             });
         },
         Reports{kUnknownType, kVoidReference}},
        {"KLyrPropertyInfo::GetEnumCount", kNothing, [](Infos& p) { EXPECT_EQ(p.mNumber->GetEnumCount(), 0); }},
        {"KLyrPropertyInfo::GetEnumValue", kNothing,
         [](Infos& p) {
             for (int lIndex : kNegative)
                 EXPECT_STREQ(p.mEnum->GetEnumValue(lIndex), "zero text");
             for (int lIndex : kPastTheEnd)
                 EXPECT_EQ(p.mEnum->GetEnumValue(lIndex), nullptr);
             for (int lIndex : kHostileInts)
                 EXPECT_EQ(p.mNumber->GetEnumValue(lIndex), nullptr);
         }},
        {"KLyrPropertyInfo::AddEnumValue", kNothing,
         [](Infos& p) {
             EXPECT_EQ(p.mEnum->AddEnumValue(p.mEnum->GetEnumValue(1)), -1);
             WithHostileTexts([&p](const char* pText) { EXPECT_EQ(p.mNumber->AddEnumValue(pText), -1); });
         }},
        {"KLyrPropertyInfo::AddEnumValue", kSome,
         [](Infos& p) {
             EXPECT_EQ(p.mEnum->AddEnumValue(p.mEnum->GetEnumValue(1) + 4), 2);
             int lCount = 3;
             for (const std::string& lText : HostileTexts())
                 EXPECT_EQ(p.mEnum->AddEnumValue(lText.c_str()), lCount++);
             WithHostileTexts([&p](const char* pText) { EXPECT_EQ(p.mEnum->AddEnumValue(pText), -1); });
         }},
        {"KLyrPropertyInfo::InsertEnumValue", kNothing,
         [](Infos& p) {
             for (int lIndex : kNegative)
                 p.mEnum->InsertEnumValue(lIndex, "new");
             for (int lIndex : kHostileInts)
                 p.mNumber->InsertEnumValue(lIndex, nullptr);
         }},
        {"KLyrPropertyInfo::InsertEnumValue", kSome,
         [](Infos& p) {
             p.mEnum->InsertEnumValue(INT_MAX, p.mEnum->GetEnumValue(0));
             EXPECT_STREQ(p.mEnum->GetEnumValue(2), "zero text");
             WithHostileTexts([&p](const char* pText) { p.mEnum->InsertEnumValue(0, pText); });
         }},
        {"KLyrPropertyInfo::SetEnumValue", kNothing,
         [](Infos& p) {
             for (int lIndex : kNegative)
                 p.mEnum->SetEnumValue(lIndex, "new");
             for (int lIndex : kPastTheEnd)
                 p.mEnum->SetEnumValue(lIndex, "new");
             for (int lIndex : kHostileInts)
                 p.mNumber->SetEnumValue(lIndex, "new");
             p.mEnum->SetEnumValue(1, p.mEnum->GetEnumValue(1));
         }},
        {"KLyrPropertyInfo::SetEnumValue", kSome,
         [](Infos& p) {
             p.mEnum->SetEnumValue(1, p.mEnum->GetEnumValue(1) + 4);
             EXPECT_STREQ(p.mEnum->GetEnumValue(1), "text");
             WithHostileTexts([&p](const char* pText) {
                 p.mEnum->SetEnumValue(0, pText);
                 EXPECT_EQ(p.mEnum->GetEnumValue(0), TextOrEmpty(pText));
             });
         }},
        {"KLyrPropertyInfo::RemoveEnumValue", kNothing,
         [](Infos& p) {
             for (int lIndex : kNegative)
                 p.mEnum->RemoveEnumValue(lIndex);
             for (int lIndex : kPastTheEnd)
                 p.mEnum->RemoveEnumValue(lIndex);
             for (int lIndex : kHostileInts)
                 p.mNumber->RemoveEnumValue(lIndex);
         }},
    });
}

// --- entries and ids -------------------------------------------------------------------------------------------------

struct Entries {
    Counted<KLyrPropertyInfo> mInfo{KLyrPropertyInfo::Create("info", eINTEGER1)};
    OwnedEntry mFull{KLyrPropertyEntry::Create(7, mInfo.Get(), KLyrPropertyValue::Create(nullptr, eINTEGER1),
                                               KLyrPropertyConnect::Create(nullptr, -1))};
    OwnedEntry mEmpty{KLyrPropertyEntry::Create(INT_MIN, nullptr, nullptr, nullptr)};

    std::string State() const {
        std::string lState = std::to_string(mFull->GetParentId()) + (mFull->IsEmpty() ? " empty" : " full");
        lState += mFull->Get(static_cast<const KLyrPropertyInfo*>(nullptr)) ? 'i' : '-';
        lState += mFull->Get(static_cast<const KLyrPropertyValue*>(nullptr)) ? 'v' : '-';
        lState += mFull->Get(static_cast<const KLyrPropertyConnect*>(nullptr)) ? 'c' : '-';
        lState += std::to_string(mFull->Get(static_cast<const KLyrPropertyFlags*>(nullptr))->GetMask());
        return lState + std::to_string(mEmpty->GetParentId()) + (mEmpty->IsEmpty() ? " empty" : " full");
    }
};

TEST(HostileItems, Entries) {
    MakeHostileCalls<Entries>({
        {"KLyrPropertyEntry::Create", kNothing,
         [](Entries&) {
             for (int lParent : kHostileInts)
                 EXPECT_EQ(OwnedEntry(KLyrPropertyEntry::Create(lParent, nullptr, nullptr, nullptr))->GetParentId(),
                           lParent);
         }},
        {"KLyrPropertyEntry::Destroy", kNothing,
         [](Entries& p) { KLyrPropertyEntry::Create(0, p.mInfo.Get(), nullptr, nullptr)->Destroy(); }},
        {"KLyrPropertyEntry::GetParentId", kNothing, [](Entries& p) { EXPECT_EQ(p.mEmpty->GetParentId(), INT_MIN); }},
        {"KLyrPropertyEntry::Get", kNothing,
         [](Entries& p) {
             EXPECT_EQ(p.mEmpty->Get(static_cast<const KLyrPropertyInfo*>(nullptr)), nullptr);
             EXPECT_EQ(p.mEmpty->Get(static_cast<const KLyrPropertyValue*>(nullptr)), nullptr);
             EXPECT_EQ(p.mEmpty->Get(static_cast<const KLyrPropertyConnect*>(nullptr)), nullptr);
             EXPECT_NE(p.mEmpty->Get(static_cast<const KLyrPropertyFlags*>(nullptr)), nullptr);
         }},
        {"KLyrPropertyEntry::Set", kNothing,
         [](Entries& p) {
             p.mFull->Set(p.mFull->Get(static_cast<const KLyrPropertyInfo*>(nullptr)));
             p.mFull->Set(p.mFull->Get(static_cast<const KLyrPropertyValue*>(nullptr)));
             p.mFull->Set(p.mFull->Get(static_cast<const KLyrPropertyConnect*>(nullptr)));
             p.mFull->Set(
                 static_cast<const KLyrPropertyFlags*>(p.mFull->Get(static_cast<KLyrPropertyFlags*>(nullptr))));
             p.mFull->Set(*p.mFull->Get(static_cast<KLyrPropertyFlags*>(nullptr)));
             p.mEmpty->Set(static_cast<KLyrPropertyInfo*>(nullptr));
             p.mEmpty->Set(static_cast<KLyrPropertyValue*>(nullptr));
             p.mEmpty->Set(static_cast<KLyrPropertyConnect*>(nullptr));
             p.mEmpty->Set(static_cast<const KLyrPropertyFlags*>(nullptr));
         }},
        {"KLyrPropertyEntry::Set", kSome,
         [](Entries& p) {
             p.mEmpty->Set(p.mFull->Get(static_cast<const KLyrPropertyInfo*>(nullptr)));
             p.mFull->Set(static_cast<KLyrPropertyInfo*>(nullptr));
             p.mFull->Set(static_cast<KLyrPropertyValue*>(nullptr));
             p.mFull->Set(static_cast<KLyrPropertyConnect*>(nullptr));
             EXPECT_TRUE(p.mFull->IsEmpty());
         }},
        {"KLyrPropertyEntry::IsEmpty", kNothing, [](Entries& p) { EXPECT_TRUE(p.mEmpty->IsEmpty()); }},
    });
}

struct Generator {
    OwnedPage mPage{KLyrPropertyPage::Create("root", eDOUBLE1)};
    KLyrPropertyIdGenerator* mIds = mPage->GetIdGenerator();

    std::string State() const { return std::to_string(mIds->PeekNextId()); }
};

TEST(HostileItems, Ids) {
    MakeHostileCalls<Generator>({
        {"KLyrPropertyIdGenerator::SkipTo", kNothing,
         [](Generator& p) {
             for (int lId : {INT_MIN, -1, 0})
                 EXPECT_FALSE(p.mIds->SkipTo(lId));
             EXPECT_TRUE(p.mIds->SkipTo(p.mIds->PeekNextId()));
         }},
        {"KLyrPropertyIdGenerator::GetNextIdAndInc", kSome,
         [](Generator& p) {
             EXPECT_TRUE(p.mIds->SkipTo(INT_MAX));
             EXPECT_EQ(p.mIds->GetNextIdAndInc(), INT_MAX);
             for (int i = 0; i < 3; ++i)
                 EXPECT_EQ(p.mIds->GetNextIdAndInc(), -1);
             for (int lId : kHostileInts)
                 EXPECT_FALSE(p.mIds->SkipTo(lId));
             EXPECT_EQ(p.mPage->Add(0, "no id left", eDOUBLE1), -1);
         }},
        {"KLyrPropertyIdGenerator::PeekNextId", kSome,
         [](Generator& p) {
             p.mIds->SkipTo(INT_MAX);
             p.mIds->GetNextIdAndInc();
             EXPECT_EQ(p.mIds->PeekNextId(), -1);
         }},
        {"KLyrPropertyIdGenerator::IncRef", kNothing, [](Generator& p) { p.mIds->IncRef(), p.mIds->DecRef(); }},
        {"KLyrPropertyIdGenerator::DecRef", kSome,
         [](Generator& p) {
             KLyrPropertyIdGenerator* lIds = p.mIds;
             lIds->IncRef();
             p.mPage.reset(KLyrPropertyPage::Create("other", eDOUBLE1));
             EXPECT_EQ(lIds->GetNextIdAndInc(), 1) << "it lives as long as a reference";
             lIds->DecRef();
             p.mIds = p.mPage->GetIdGenerator();
         }},
    });
}

}  // namespace
}  // namespace lyrsdk
