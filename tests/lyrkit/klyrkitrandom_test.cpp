#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "lyrfilesdk/lyrkit/klyroverrides.h"
#include "lyrfilesdk/lyrkit/klyrpropertyranges.h"
#include "lyrfilesdk/lyrkit/klyrpushpreview.h"
#include "tests/support/page_family.h"
#include "tests/support/report_recorder.h"

// The kit's answers on families of all types, with descriptions in full, type pages, connections, orphans and holes.

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using PageAndId = std::pair<KLyrPropertyPage*, int>;

class MixedFamily {
public:
    explicit MixedFamily(unsigned pSeed) : mEngine(pSeed) {
        mType->Add(0, "in type", eINTEGER1);
        mType->Add(0, "kind", eENUM);
        mPages.push_back(MakeRoot());
    }
    ~MixedFamily() {
        while (!mPages.empty())
            mPages.pop_back();
    }

    int Below(int pEnd) { return static_cast<int>(mEngine() % static_cast<unsigned>(pEnd)); }
    bool Maybe() { return Below(2) == 0; }
    KLyrPropertyPage* AnyPage() {
        return mPages[static_cast<std::size_t>(Below(static_cast<int>(mPages.size())))].get();
    }
    // An id that is there or was, and sometimes one that is not.
    int AnyId() { return Below(12) == 0 ? Below(40) - 4 : Below(mEndId); }
    int EndId() const { return mEndId; }
    const std::vector<OwnedPage>& Pages() const { return mPages; }

    void Change(int pTimes) {
        for (int i = 0; i < pTimes; ++i)
            Below(2) == 0 ? ChangeFamily(AnyPage(), AnyId()) : ChangeItems(AnyPage(), AnyId());
    }

private:
    void ChangeFamily(KLyrPropertyPage* pPage, int pId) {
        switch (Below(8)) {
            case 0:
                if (mPages.size() < 8)
                    mPages.push_back(OwnedPage(KLyrPropertyPage::Create(pPage)));
                break;
            case 1:
            case 2:
                if (mEndId < 20)
                    mEndId = pPage->Add(pId, Maybe() ? "a" : "b", static_cast<ELyrType>(Below(eMAX_TYPES))) + 1;
                break;
            case 3:
                if (mEndId < 20)
                    mEndId = pPage->Add(pId, "typed", mType.get()) + 3;
                break;
            case 4:
                pPage->ConnectSrc(pId, AnyPage(), AnyId(), eLyrConnectionData);
                break;
            case 5:
                H(pPage, pId == 0 ? 1 : pId).Destroy();
                break;
            case 6:
                pPage->ChangePropertyEntryState(pId, Below(4) == 0 ? eLyrInherit : eLyrOverride);
                break;
            default:
                if (mPages.size() > 2 && Below(5) == 0)
                    mPages.erase(mPages.begin() + Below(static_cast<int>(mPages.size())));
                break;
        }
    }

    void ChangeItems(KLyrPropertyPage* pPage, int pId) {
        const auto lState = static_cast<KLyrInheritType>(Below(3));
        const auto lFlags = Flags(Below(3) == 0 ? static_cast<unsigned>(Below(0x10000)) : mEngine() & 7u);
        const double lBound = Below(3);
        switch (Below(9)) {
            case 0:
            case 1:
                return SetAny(pPage, pId, Maybe());
            case 2:
                pPage->ChangePropertyItemState<KLyrPropertyValue>(nullptr, pId, lState);
                return;
            case 3:
                pPage->ModifyFlags(pId, lFlags, Maybe(), Maybe());
                return;
            case 4:
                pPage->SetFlagsInheritType(Maybe() ? eLyrOverride : eLyrInherit, Maybe() ? Flags(0) : lFlags, pId);
                return;
            case 5:
                pPage->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, pId, lState);
                return;
            case 6:
                pPage->SetLabel(pId, Maybe() ? "L" : "M");
                return;
            case 7:
                pPage->SetMinMax(pId, static_cast<KLyrPropertyInfo::eValueIndex>(Below(4)), &lBound, eDOUBLE1);
                return;
            default:
                pPage->AddEnumValue(pId, Maybe() ? "x" : "y");
                return;
        }
    }

    void SetAny(KLyrPropertyPage* pPage, int pId, bool pCheckValueEquality) {
        const double lNumbers[] = {0.0, -0.0, 1.0, std::numeric_limits<double>::quiet_NaN()};
        const double lNumber = lNumbers[Below(4)];
        const lyrDouble3 lVector{{lNumber, 0.0, 1.0}};
        const lyrHalfFloat lHalf = lyrHalfFloat::FromBits(static_cast<unsigned short>(Maybe() ? 0x8000 : 0x7E01));
        const KString lText(Maybe() ? "1" : "two");
        switch (Below(4)) {
            case 0:
                pPage->Set(pId, &lNumber, eDOUBLE1, pCheckValueEquality);
                break;
            case 1:
                pPage->Set(pId, &lVector, eDOUBLE3, pCheckValueEquality);
                break;
            case 2:
                pPage->Set(pId, &lHalf, eHALFFLOAT, pCheckValueEquality);
                break;
            default:
                pPage->Set(pId, &lText, eSTRING, pCheckValueEquality);
                break;
        }
    }

    std::mt19937 mEngine;
    OwnedPage mType = MakeRoot("type", eDOUBLE1);
    std::vector<OwnedPage> mPages;
    int mEndId = 1;
};

// --- what is seen ----------------------------------------------------------------------------------------------------

struct Sight {
    std::string mValue;
    std::string mDescription;
    unsigned mFlags = 0;
    std::string mRest;
};

// pRead(memory, type) reads a value of that type. Its bytes where a blob takes them, else its text.
template <typename Read>
std::string BytesOf(ELyrType pType, Read pRead) {
    std::string lText = std::to_string(pType) + ':';
    lyrBlob lBlob;
    KString lShown;
    if (!lyrHoldsValue(pType))
        return lText;
    if (pType != eDISTANCE && pType != eDATETIME && pRead(&lBlob, eBLOB))
        return lText.append(static_cast<const char*>(lBlob.GetData()), static_cast<std::size_t>(lBlob.GetSize()));
    return pRead(&lShown, eSTRING) ? lText + lShown.Buffer() : lText + "unread";
}

std::string ValueOf(const KLyrPropertyPage& pPage, int pId) {
    const auto* lItem = pPage.GetPropertyItem<KLyrPropertyValue>(nullptr, pId);
    if (!lItem)
        return "none";
    return BytesOf(lItem->GetType(), [lItem](void* pTo, ELyrType pType) { return lItem->Get(pTo, pType); });
}

std::string DescriptionOf(const KLyrPropertyPage& pPage, int pId) {
    const auto* lItem = pPage.GetPropertyItem<KLyrPropertyInfo>(nullptr, pId);
    if (!lItem)
        return "none";
    std::ostringstream lOut;
    lOut << lItem->GetNameText() << '/' << lItem->GetType() << '/' << lItem->GetTypeInfo() << '/' << lItem->GetLabel();
    for (int i = 0; i < KLyrPropertyInfo::eValueCount; ++i) {
        const auto lBound = static_cast<KLyrPropertyInfo::eValueIndex>(i);
        lOut << '/';
        if (lItem->HasMinMax(lBound))
            lOut << BytesOf(lItem->GetType(), [lItem, lBound](void* pTo, ELyrType pType) {
                return lItem->GetMinMax(lBound, pTo, pType);
            });
    }
    for (int i = 0; i < lItem->GetEnumCount(); ++i)
        lOut << '|' << lItem->GetEnumValue(i);
    return lOut.str();
}

std::map<PageAndId, Sight> SightsOf(const MixedFamily& pFamily) {
    std::map<PageAndId, Sight> lSights;
    for (const OwnedPage& lPage : pFamily.Pages()) {
        for (int lId = 0; lId < pFamily.EndId(); ++lId) {
            Sight& lSight = lSights[{lPage.get(), lId}];
            lSight.mValue = ValueOf(*lPage, lId);
            lSight.mDescription = DescriptionOf(*lPage, lId);
            lSight.mFlags = lPage->GetFlags(lId);
            lSight.mRest = std::to_string(lPage->GetSrcCount(lId, nullptr)) + ' ' +
                           std::to_string(lPage->GetDstCount(lId, nullptr));
        }
    }
    return lSights;
}

// --- push ------------------------------------------------------------------------------------------------------------

using Effects = std::map<PageAndId, KLyrPushEffect>;

void Foretell(const H& pProperty, Effects& pEffects) {
    lyrVisitPushEffects(pProperty, [&](const KLyrPushEffect& pEffect) {
        const PageAndId lWhere(pEffect.mProperty.GetPage(), pEffect.mProperty.GetId());
        EXPECT_TRUE(pEffects.insert({lWhere, pEffect}).second) << "told twice";
    });
}

int ExpectCameTrue(const Effects& pEffects, const std::map<PageAndId, Sight>& pBefore,
                   const std::map<PageAndId, Sight>& pAfter) {
    int lChanges = 0;
    for (const auto& [lWhere, lBefore] : pBefore) {
        const Sight& lAfter = pAfter.at(lWhere);
        const auto lFound = pEffects.find(lWhere);
        const KLyrPushEffect lEffect = lFound == pEffects.end() ? KLyrPushEffect() : lFound->second;
        EXPECT_EQ(lBefore.mValue != lAfter.mValue, lEffect.mValue == KLyrPushReach::eChanged);
        EXPECT_EQ(lBefore.mDescription != lAfter.mDescription, lEffect.mDescription == KLyrPushReach::eChanged);
        EXPECT_EQ(lBefore.mFlags ^ lAfter.mFlags, static_cast<unsigned>(lEffect.mFlagsChanged));
        EXPECT_EQ(lBefore.mRest, lAfter.mRest) << "connections stay";
        lChanges += lEffect.IsChange() ? 1 : 0;
    }
    return lChanges;
}

TEST(KitAtRandom, APushOfItemsOfAllKindsDoesWhatWasForetold) {
    const LeakCheck lLeaks;
    ReportRecorder lReports;
    int lChanges = 0;
    for (unsigned lSeed = 0; lSeed < 500 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        MixedFamily lFamily(lSeed);
        lFamily.Change(160);
        const H lProperty(lFamily.AnyPage(), lFamily.Below(lFamily.EndId()));
        H lRoot(lProperty.GetPage(), 0);
        const bool lWhole = lFamily.Maybe();
        const KLyrPushItems lItems = lyrPushItemsOf(lProperty);
        Effects lEffects;
        if (lWhole)
            lyrVisitPush(lRoot, [&](const KLyrPushItems& pItems) { Foretell(pItems.mProperty, lEffects); });
        else if (lItems.mResult == KLyrPushResult::ePushed)
            Foretell(lProperty, lEffects);
        const auto lBefore = SightsOf(lFamily);
        if (lWhole)
            lRoot.PushPropertiesToParentInstance();
        else
            EXPECT_EQ(lyrPushProperty(lProperty), lItems.mResult);
        lChanges += ExpectCameTrue(lEffects, lBefore, SightsOf(lFamily));
    }
    EXPECT_GT(lChanges, 300);
    lReports.Clear();
}

TEST(KitAtRandom, WhatIsRedundantIsNotSeenToGo) {
    const LeakCheck lLeaks;
    ReportRecorder lReports;
    int lDropped = 0;
    for (unsigned lSeed = 0; lSeed < 500 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        MixedFamily lFamily(lSeed);
        lFamily.Change(160);
        const H lRoot(lFamily.AnyPage(), 0);
        const auto lBefore = SightsOf(lFamily);
        lDropped += lyrDropRedundant(lRoot);
        EXPECT_EQ(ExpectCameTrue(Effects(), lBefore, SightsOf(lFamily)), 0);
        EXPECT_EQ(lyrDropRedundant(lRoot), 0);
        lyrRevertAll(lRoot);
        EXPECT_EQ(lyrRevertAll(lRoot), 0);
    }
    EXPECT_GT(lDropped, 50);
    lReports.Clear();
}

// --- ranges ----------------------------------------------------------------------------------------------------------

// A walk during which properties go: each is met once, and those that stay are met.
template <typename Range, typename IsInRange>
void WalkAndRemove(MixedFamily& pFamily, const Range& pRange, KLyrPropertyPage* pPage, int pTop, IsInRange pIsInRange) {
    std::set<int> lStay;
    for (int lId = pTop + 1; lId < pFamily.EndId(); ++lId)
        if (pIsInRange(lId))
            lStay.insert(lId);
    std::vector<int> lMet;
    for (const H& lHandle : pRange) {
        lMet.push_back(lHandle.GetId());
        const int lGoes = pFamily.Maybe() ? lHandle.GetId() : pFamily.Below(pFamily.EndId());
        if (lGoes > 0 && lGoes != pTop && pFamily.Below(3) == 0)
            H(pFamily.Maybe() ? pPage : pFamily.AnyPage(), lGoes).Destroy();
        for (auto lAt = lStay.begin(); lAt != lStay.end();)
            lAt = pIsInRange(*lAt) ? std::next(lAt) : lStay.erase(lAt);
    }
    EXPECT_EQ(std::set<int>(lMet.begin(), lMet.end()).size(), lMet.size());
    for (const int lId : lStay)
        EXPECT_EQ(std::count(lMet.begin(), lMet.end(), lId), 1) << lId << " was left out";
}

TEST(KitAtRandom, WalksLeaveNothingOutThatStays) {
    const LeakCheck lLeaks;
    ReportRecorder lReports;
    for (unsigned lSeed = 0; lSeed < 900 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        MixedFamily lFamily(lSeed);
        lFamily.Change(120);
        KLyrPropertyPage* lPage = lFamily.AnyPage();
        const H lTop(lPage, lFamily.Below(3) == 0 ? 0 : lFamily.Below(lFamily.EndId()));
        if (!lPage->GetPropertyEntry(lTop.GetId()))
            continue;
        const auto lIsThere = [&](int pId) { return lPage->GetPropertyEntry(pId) != nullptr; };
        // What has no parent is a root, and below nothing.
        const auto lIsBelow = [&](int pId) { return lIsThere(pId) && lPage->GetParent(pId) != -1; };
        if (lSeed % 3 == 0)
            WalkAndRemove(lFamily, lyrChildren(lTop), lPage, lTop.GetId(),
                          [&](int pId) { return lIsThere(pId) && lPage->IsChildOf(pId, lTop.GetId()); });
        else if (lSeed % 3 == 1)
            WalkAndRemove(lFamily, lyrDescendents(lTop), lPage, lTop.GetId(),
                          [&](int pId) { return lIsBelow(pId) && lPage->IsDescendentOf(pId, lTop.GetId()); });
        else
            WalkAndRemove(lFamily, lyrProperties(lTop), lPage, -1, lIsThere);
    }
    lReports.Clear();
}

}  // namespace
}  // namespace lyrsdk
