#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/klyrplugins/value_samples.h"
#include "tests/reliability/failing_memory_scenarios.h"
#include "tests/support/connection_filters.h"
#include "tests/support/counted.h"

namespace lyrsdk {
namespace {

using Info = KLyrPropertyInfo;
using Value = KLyrPropertyValue;
using Connect = KLyrPropertyConnect;

const char kLong[] = "a text that is longer than any of those that are there before";

// Items of each kind, outside of any page, and what was made of them.
struct ItemStage {
    OwnedPage mType{KLyrPropertyPage::Create("type", eSTRING)};
    Counted<Info> mChoice{Info::Create("choice", eENUM)};
    Counted<Info> mTyped{Info::Create("typed", mType.get())};
    Counted<Value> mText{Value::Create(nullptr, eSTRING)};
    Counted<Value> mNumber{Value::Create(nullptr, eDOUBLE1)};
    Counted<Value> mBlob{Value::Create(nullptr, eBLOB)};
    Counted<Connect> mConnect{Connect::Create(mType.get(), 0)};
    Counted<Connect> mPeer{Connect::Create(nullptr, 7)};
    Counted<Info> mMadeInfo;
    Counted<Value> mMadeValue;
    Counted<Connect> mMadeConnect;
    OwnedEntry mMadeEntry;
    KString mLong{kLong};
    TypeFilter mFilter{eLyrConnectionUser};

    ItemStage() {
        const KString lText("old");
        mText->Set(&lText, eSTRING);
        mBlob->Set(&lText, eSTRING);
        mChoice->SetLabel("old label");
        mChoice->AddEnumValue("zero");
        mTyped->SetMinMax(Info::eValueMin, &lText, eSTRING);
        mConnect->ConnectSrc(mPeer.Get(), eLyrConnectionUser);
        mPeer->ConnectSrc(mConnect.Get(), eLyrConnectionUser);
    }

    static void Show(std::ostream& pOut, const Info* pInfo) {
        if (!pInfo)
            return;
        pOut << pInfo->GetNameText() << ' ' << pInfo->GetType() << ' ' << Answer(pInfo->GetTypeInfo()) << ' '
             << pInfo->GetLabel();
        for (int i = 0; i < Info::eValueCount; ++i) {
            KString lBound;
            pInfo->GetMinMax(static_cast<Info::eValueIndex>(i), &lBound, eSTRING);
            pOut << ' ' << pInfo->HasMinMax(static_cast<Info::eValueIndex>(i)) << lBound;
        }
        for (int i = 0; i < pInfo->GetEnumCount(); ++i)
            pOut << " '" << pInfo->GetEnumValue(i) << "'";
        pOut << '\n';
    }
    static void Show(std::ostream& pOut, const Value* pValue) {
        if (!pValue)
            return;
        pOut << pValue->GetType();
        if (pValue->GetType() == eBLOB) {
            lyrBlob lBlob;
            pValue->Get(&lBlob, eBLOB);
            pOut << ' ' << ImageOf(lBlob);
        } else if (lyrHoldsValue(pValue->GetType())) {
            KString lText;
            pValue->Get(&lText, eSTRING);
            pOut << ' ' << lText;
        }
        pOut << '\n';
    }
    static void Show(std::ostream& pOut, Connect* pConnect) {
        if (!pConnect)
            return;
        pOut << Answer(pConnect->GetPage()) << ' ' << pConnect->GetPropertyId() << " from";
        for (int i = 0; i < pConnect->GetSrcCount(nullptr); ++i)
            pOut << ' ' << pConnect->GetSrc(nullptr, i)->GetPropertyId() << '/'
                 << pConnect->GetConnectionPoint().GetSrcType(i);
        pOut << " to";
        for (int i = 0; i < pConnect->GetDstCount(nullptr); ++i)
            pOut << ' ' << pConnect->GetDst(nullptr, i)->GetPropertyId() << '/'
                 << pConnect->GetConnectionPoint().GetDstType(i);
        pOut << '\n';
    }
    std::string Shows(Detail) const {
        std::ostringstream lOut;
        for (const auto* lInfo : {&mChoice, &mTyped, &mMadeInfo})
            Show(lOut, lInfo->Get());
        for (const auto* lValue : {&mText, &mNumber, &mBlob, &mMadeValue})
            Show(lOut, lValue->Get());
        for (const auto* lConnect : {&mConnect, &mPeer, &mMadeConnect})
            Show(lOut, lConnect->Get());
        lOut << Answer(mMadeEntry.get());
        return lOut.str();
    }
    static testing::AssertionResult Holds() { return testing::AssertionSuccess(); }

    std::string Make(Info* pInfo) {
        mMadeInfo.Reset(pInfo);
        return Answer(pInfo);
    }
    std::string Make(Value* pValue) {
        mMadeValue.Reset(pValue);
        return Answer(pValue);
    }
    std::string Make(Connect* pConnect) {
        mMadeConnect.Reset(pConnect);
        return Answer(pConnect);
    }
};

using S = ItemStage;

const Operation<S> kOperations[] = {
    {"CreatesATextValue", [](S& p) { return p.Make(Value::Create(&p.mLong, eSTRING)); }, "null"},
    {"CreatesAnEmptyBlobValue", [](S& p) { return p.Make(Value::Create(nullptr, eBLOB)); }, "null"},
    {"CreatesAValueWithoutStorage", [](S& p) { return p.Make(Value::Create(nullptr, eUNIDENTIFIED)); }, "null"},
    {"CreatesAReferenceValue", [](S& p) { return p.Make(Value::Create(&p.mLong, eREFERENCE)); }, "null"},
    {"ClonesATextValue", [](S& p) { return p.Make(p.mText->Clone(nullptr)); }, "null"},
    {"ClonesABlobValue", [](S& p) { return p.Make(p.mBlob->Clone(nullptr)); }, "null"},
    {"SetsATextValue", [](S& p) { return Answer(p.mText->Set(&p.mLong, eSTRING)); }, "false"},
    {"SetsABlobValue", [](S& p) { return Answer(p.mBlob->Set(&p.mLong, eSTRING)); }, "false"},
    {"GetsANumberValueAsText",
     [](S& p) {
         KString lText;
         return Answer(p.mNumber->Get(&lText, eSTRING)) + lText.Buffer();
     },
     "false"},
    {"GetsABlobValue",
     [](S& p) {
         lyrBlob lBlob;
         return Answer(p.mBlob->Get(&lBlob, eBLOB)) + ImageOf(lBlob);
     },
     "false"},
    {"CreatesADescription", [](S& p) { return p.Make(Info::Create(kLong, eENUM)); }, "null"},
    {"CreatesATypedDescription", [](S& p) { return p.Make(Info::Create(kLong, p.mType.get())); }, "null"},
    {"ClonesADescription", [](S& p) { return p.Make(p.mChoice->Clone(nullptr)); }, "null"},
    {"ClonesATypedDescription", [](S& p) { return p.Make(p.mTyped->Clone(nullptr)); }, "null"},
    {"SetsALabel", [](S& p) { return Answer(p.mChoice->SetLabel(kLong)); }, "false"},
    {"SetsABound",
     [](S& p) {
         const int lBound = 3;
         return Answer(p.mChoice->SetMinMax(Info::eValueSoftMax, &lBound, eINTEGER1));
     },
     "false"},
    {"SetsATextBoundAgain", [](S& p) { return Answer(p.mTyped->SetMinMax(Info::eValueMin, &p.mLong, eSTRING)); },
     "false"},
    {"GetsATextBound",
     [](S& p) {
         KString lText;
         return Answer(p.mTyped->GetMinMax(Info::eValueMin, &lText, eSTRING)) + lText.Buffer();
     },
     "false"},
    {"AddsAnEnumText", [](S& p) { return Answer(p.mChoice->AddEnumValue(kLong)); }, "-1"},
    {"AddsTheFirstEnumText", [](S& p) { return Answer(p.mMadeInfo->AddEnumValue(kLong)); }, "-1",
     Refused::eChangesNothing, [](S& p) { p.Make(Info::Create("made", eENUM)); }},
    {"InsertsAnEnumText",
     [](S& p) {
         p.mChoice->InsertEnumValue(0, kLong);
         return std::string();
     },
     ""},
    {"SetsAnEnumText",
     [](S& p) {
         p.mChoice->SetEnumValue(0, kLong);
         return std::string();
     },
     ""},
    {"CreatesAConnectionItem", [](S& p) { return p.Make(Connect::Create(p.mType.get(), 3)); }, "null"},
    {"ClonesAConnectionItem", [](S& p) { return p.Make(p.mPeer->Clone(p.mType.get())); }, "null"},
    {"ConnectsConnectionItems",
     [](S& p) { return Answer(p.mMadeConnect->ConnectSrc(p.mPeer.Get(), eLyrConnectionData)); }, "false",
     Refused::eChangesNothing,
     // The first connection of an item takes no memory.
     [](S& p) {
         p.Make(Connect::Create(nullptr, 3));
         p.mMadeConnect->ConnectSrc(p.mConnect.Get(), eLyrConnectionData);
     }},
    {"CountsSourcesThroughAFilter", [](S& p) { return Answer(p.mConnect->GetSrcCount(&p.mFilter)); }, "0"},
    {"CountsDestinationsThroughAFilter", [](S& p) { return Answer(p.mConnect->GetDstCount(&p.mFilter)); }, "0"},
    {"GivesASourceThroughAFilter", [](S& p) { return Answer(p.mConnect->GetSrc(&p.mFilter, 0)); }, "null"},
    {"GivesADestinationThroughAFilter", [](S& p) { return Answer(p.mConnect->GetDst(&p.mFilter, 0)); }, "null"},
    {"CreatesAnEntry",
     [](S& p) {
         p.mMadeEntry.reset(KLyrPropertyEntry::Create(0, p.mChoice.Get(), p.mText.Get(), p.mPeer.Get()));
         return Answer(p.mMadeEntry.get());
     },
     "null"},
};

class FailingMemoryItem : public testing::TestWithParam<Operation<S>> {};

TEST_P(FailingMemoryItem, DoesAllOrKeepsWhatWasStored) {
    ExpectDoneOrRefused(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Items, FailingMemoryItem, testing::ValuesIn(kOperations), NameOfOperation());

TEST(FailingMemoryValueItem, IsCreatedClonedAndSetOrNotInEveryType) {
    for (int i = 0; i < eMAX_TYPES; ++i) {
        const auto lType = static_cast<ELyrType>(i);
        SCOPED_TRACE(i);
        WithEveryAllocationFailing([lType](FailurePoint pPoint) {
            std::size_t lFailed = 0;
            Counted<Value> lMade;
            Counted<Value> lClone;
            {
                const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
                lMade.Reset(Value::Create(nullptr, lType));
                lClone.Reset(lMade ? lMade->Clone(nullptr) : nullptr);
                lFailed = lFail.Failed();
            }
            EXPECT_EQ(lMade && lClone, lFailed == 0);
            return lFailed;
        });
    }
}

}  // namespace
}  // namespace lyrsdk
