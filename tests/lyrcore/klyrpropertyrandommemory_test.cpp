#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/connection_filters.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

// Random work on several families while memory comes and goes. What fails changes nothing that is seen, nothing leaks,
// and both ends of every connection agree.

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using F = LyrPropertyFlags;

constexpr std::size_t kMostPages = 8;
constexpr int kMostIds = 60;

class PropertyRandomMemory : public HandleTest {};

class Scarcity {
public:
    explicit Scarcity(unsigned pSeed) : mRandom(pSeed) {}
    ~Scarcity() {
        for (H& lPage : mPages)
            lPage.Destroy();
    }
    Scarcity(const Scarcity&) = delete;
    Scarcity& operator=(const Scarcity&) = delete;

    void Step() {
        const std::string lBefore = Seen();
        bool lMayChange;
        const bool lShort = Below(3) != 0;
        const std::size_t lFirst = static_cast<std::size_t>(Below(6));
        const bool lForever = Below(2) == 0;
        if (lShort) {
            const FailAllocations lFail(lFirst, lForever);
            lMayChange = Operate();
        } else {
            lMayChange = Operate();
        }
        for (const std::string& lMessage : mReports.Take())
            EXPECT_TRUE(lMessage == "Recursive type info" || lMessage == "lParentEntry" ||
                        lMessage == "Incompatible type assigment")
                << lMessage;
        EXPECT_TRUE(lMayChange || Seen() == lBefore) << lBefore << "became\n" << Seen();
        ExpectConnectionsAgree();
    }

    const std::string& Done() const { return mDone; }

private:
    int Below(int pBound) { return static_cast<int>(mRandom() % static_cast<unsigned>(pBound)); }
    H& AnyPage() { return mPages[static_cast<std::size_t>(Below(static_cast<int>(mPages.size())))]; }
    H AnyProperty() {
        const H lPage = AnyPage();
        return H(lPage.GetPage(), Below(lPage.GetPage()->GetPropertyEntryCount() + 1));
    }
    const char* AnyText() {
        static const char* const sTexts[] = {"", "a", "a text that is too long for any room inside of anything"};
        return sTexts[Below(3)];
    }

    std::string Seen() const {
        std::string lSeen;
        for (const H& lPage : mPages)
            lSeen += DescribePage(lPage, false);
        return lSeen;
    }

    // Whether anything may look different now: the operation succeeded, or it has no failure result.
    bool Operate() {
        if (mPages.empty() || (mPages.size() < kMostPages && Below(12) == 0))
            return Create();
        switch (Below(8)) {
            case 0:
                return Add();
            case 1:
                return SetAValue();
            case 2:
                return ChangeAState();
            case 3:
                return Describe();
            case 4:
                return Connect();
            case 5:
                return Look();
            case 6:
                return Push();
            default:
                return Below(4) == 0 && Remove();
        }
    }
    bool Create() {
        mDone = "Create";
        H lNew;
        switch (mPages.empty() ? 0 : Below(3)) {
            case 0:
                lNew = H::Create(AnyText(), eSTRING);
                break;
            case 1:
                lNew = H::Create(AnyPage());
                break;
            default:
                lNew = H::Create(AnyText(), AnyPage());
                break;
        }
        if (!lNew.Valid())
            return false;
        // Kept as a test would keep it; std::vector does not use the library's memory.
        mPages.push_back(lNew);
        return true;
    }
    bool Add() {
        mDone = "Add";
        H lParent = AnyProperty();
        if (lParent.GetPage()->GetIdGenerator()->PeekNextId() > kMostIds)
            return false;
        static const ELyrType sTypes[] = {eDOUBLE1, eSTRING, eENUM, eBLOB};
        const H lType = AnyPage();
        const bool lTyped = Below(3) == 0 && lType.GetPage()->GetPropertyEntryCount() < 12;
        const H lAdded = lTyped ? lParent.Add(AnyText(), lType) : lParent.Add(AnyText(), sTypes[Below(4)]);
        return lAdded.Valid();
    }
    bool SetAValue() {
        mDone = "Set";
        H lProperty = AnyProperty();
        const double lNumber = Below(5) / 2.0;
        return lProperty.Set(&lNumber, eDOUBLE1, Below(2) == 0);
    }
    bool ChangeAState() {
        H lProperty = AnyProperty();
        const auto lFlags = static_cast<F::eLyrPropertyFlags>(1u << Below(15));
        const KLyrInheritType lType = Below(2) == 0 ? eLyrInherit : eLyrOverride;
        switch (Below(3)) {
            case 0:
                mDone = "SetValueInheritType";
                return lProperty.SetValueInheritType(lType);
            case 1:
                mDone = "SetFlagsInheritType";
                return lProperty.SetFlagsInheritType(lFlags, lType);
            default:
                mDone = "ModifyFlags";
                return lProperty.ModifyFlags(lFlags, Below(2) == 0);
        }
    }
    bool Describe() {
        H lProperty = AnyProperty();
        const double lBound = Below(9);
        switch (Below(4)) {
            case 0:
                mDone = "SetLabel";
                return lProperty.SetLabel(AnyText());
            case 1:
                // A bound without memory for its text is there, but empty.
                mDone = "SetMax";
                lProperty.SetMax(&lBound, eDOUBLE1);
                return true;
            case 2:
                mDone = "AddEnumValue";
                return lProperty.AddEnumValue(AnyText()) != -1;
            default:
                mDone = "RemoveEnumValue";
                lProperty.RemoveEnumValue(Below(3));
                return true;
        }
    }
    bool Connect() {
        H lDst = AnyProperty();
        const H lSrc = AnyProperty();
        switch (Below(5)) {
            case 0:
                mDone = "DisconnectSrc";
                return lDst.DisconnectSrc(lSrc);
            case 1:
                mDone = "WipeAllConnections";
                lDst.WipeAllConnections();
                return true;
            default:
                mDone = "ConnectSrc";
                return lDst.ConnectSrc(lSrc, Below(2) == 0 ? eLyrConnectionUser : eLyrConnectionData);
        }
    }
    bool Look() {
        H lPage = AnyPage();
        mDone = "Find and brackets";
        if (Below(3) == 0)
            Below(2) == 0 ? lPage.BeginCreateOrFindProperty() : lPage.EndCreateOrFindProperty();
        const H lFound = lPage.Find(AnyText(), Below(2) == 0);
        EXPECT_TRUE(!lFound.Valid() || lFound.GetParent() == lPage);
        EXPECT_LE(AnyProperty().GetSrcCount(&mFilter), 1000);
        return false;
    }
    bool Push() {
        mDone = "Push";
        AnyPage().PushPropertiesToParentInstance();
        return true;
    }
    bool Remove() {
        if (Below(2) == 0) {
            mDone = "Destroy property";
            H lProperty = AnyProperty();
            return lProperty.GetId() != 0 && lProperty.Destroy();
        }
        mDone = "Destroy page";
        H& lPage = AnyPage();
        lPage.Destroy();
        lPage = mPages.back();
        mPages.pop_back();
        return true;
    }

    void ExpectConnectionsAgree() {
        for (const H& lPage : mPages)
            for (H lIt = lPage; lIt.Valid(); lIt = lPage.GetNextDescendent(lIt))
                ExpectConnectionsAgree(lIt);
    }
    void ExpectConnectionsAgree(const H& pProperty) {
        const KLyrPropertyEntry* lEntry = pProperty.GetPage()->GetPropertyEntry(pProperty.GetId());
        const KLyrPropertyConnect* lItem = lEntry->Get(static_cast<const KLyrPropertyConnect*>(nullptr));
        int lSrcs = 0, lDsts = 0;
        for (int i = 0; i < pProperty.GetSrcCount(nullptr); ++i) {
            EXPECT_TRUE(pProperty.GetSrc(nullptr, i).IsConnectedDst(pProperty));
            EXPECT_TRUE(HasDst(pProperty.GetSrc(nullptr, i), pProperty));
            lSrcs += mFilter.Selects(nullptr, lItem->GetConnectionPoint().GetSrcType(i)) ? 1 : 0;
        }
        for (int i = 0; i < pProperty.GetDstCount(nullptr); ++i) {
            EXPECT_TRUE(pProperty.GetDst(nullptr, i).IsConnectedSrc(pProperty));
            lDsts += mFilter.Selects(nullptr, lItem->GetConnectionPoint().GetDstType(i)) ? 1 : 0;
        }
        EXPECT_EQ(pProperty.GetSrcCount(&mFilter), lSrcs);
        EXPECT_EQ(pProperty.GetDstCount(&mFilter), lDsts);
    }
    static bool HasDst(const H& pSrc, const H& pDst) {
        for (int i = 0; i < pSrc.GetDstCount(nullptr); ++i)
            if (pSrc.GetDst(nullptr, i) == pDst)
                return true;
        return false;
    }

    std::mt19937 mRandom;
    ReportRecorder mReports;
    TypeFilter mFilter{eLyrConnectionUser};
    std::vector<H> mPages;
    std::string mDone;
};

TEST_F(PropertyRandomMemory, FailsWithoutATrace) {
    for (unsigned lSeed = 1; lSeed <= 40; ++lSeed) {
        const LeakCheck lLeakCheck;
        Scarcity lScarcity(lSeed);
        for (int lStep = 0; lStep < 200; ++lStep) {
            lScarcity.Step();
            ASSERT_FALSE(HasFailure()) << "seed " << lSeed << ", step " << lStep << ": " << lScarcity.Done();
        }
    }
}

}  // namespace
}  // namespace lyrsdk
