#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"
#include "tests/support/property_model.h"
#include "tests/support/report_recorder.h"

// Random work on several families through handles, step by step beside a model that says what must be seen.

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using F = LyrPropertyFlags;

constexpr int kMostPages = 7;
constexpr std::size_t kMostProperties = 25;

class PropertyRandom : public HandleTest {};

struct BothPages {
    H mHandle;
    std::unique_ptr<model::Page> mModel;
};

class Worker {
public:
    explicit Worker(unsigned pSeed) : mRandom(pSeed) {}
    ~Worker() {
        while (!mPages.empty())
            DestroyPage(mPages.size() - 1);
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    // One random operation on both; what was done is kept for messages.
    void Step() {
        static constexpr struct {
            int mWeight;
            void (Worker::*mDo)();
        } sOperations[] = {
            {4, &Worker::CreatePage}, {6, &Worker::Add},          {3, &Worker::AddTyped},     {12, &Worker::Set},
            {5, &Worker::SetInherit}, {12, &Worker::ModifyFlags}, {6, &Worker::FlagsInherit}, {3, &Worker::Push},
            {3, &Worker::Label},      {6, &Worker::Connect},      {2, &Worker::Disconnect},   {1, &Worker::Wipe},
            {2, &Worker::RemoveOne},  {1, &Worker::RemovePage},   {3, &Worker::Bracket},      {6, &Worker::Find},
        };
        int lDraw = Below(75);
        for (const auto& lOperation : sOperations) {
            if (lDraw < lOperation.mWeight || mPages.empty()) {
                (this->*lOperation.mDo)();
                return;
            }
            lDraw -= lOperation.mWeight;
        }
    }

    void ExpectSameAsModel() {
        for (const BothPages& lPage : mPages) {
            EXPECT_EQ(DescribePage(lPage.mHandle), lPage.mModel->Describe());
            for (int lId : lPage.mModel->Ids())
                ExpectSameConnections(lPage, lId);
        }
        if (mPages.empty())
            return;
        const BothPages& lPage = AnyPage();
        ExpectSameNames(lPage);
        for (int lId : lPage.mModel->Ids())
            ExpectSameAnswers(lPage, lId);
    }

    const std::string& Done() const { return mDone; }

private:
    int Below(int pBound) { return static_cast<int>(mRandom() % static_cast<unsigned>(pBound)); }
    bool OneIn(int pBound) { return Below(pBound) == 0; }
    std::size_t PageIndex() { return static_cast<std::size_t>(Below(static_cast<int>(mPages.size()))); }
    BothPages& AnyPage() { return mPages[PageIndex()]; }
    // Now and then one that does not exist.
    int AnyId(const BothPages& pPage) {
        const std::set<int> lIds = pPage.mModel->Ids();
        if (OneIn(25))
            return OneIn(2) ? -1 : *pPage.mModel->mNextId + Below(3);
        return *std::next(lIds.begin(), Below(static_cast<int>(lIds.size())));
    }
    const char* AnyName() {
        static const char* const sNames[] = {"", "a", "b", "c", "long name that is not kept inside of anything"};
        return sNames[Below(5)];
    }
    ELyrType AnyType() {
        static const ELyrType sTypes[] = {eDOUBLE1, eINTEGER1, eUNIDENTIFIED};
        return sTypes[Below(3)];
    }
    unsigned AnyFlags() { return 1u << Below(3) | (OneIn(3) ? 1u << Below(16) : 0u) | (OneIn(20) ? 0x7FFFu : 0u); }

    void Did(const std::string& pWhat, const BothPages& pPage, int pId) {
        mDone = pWhat + " on page " + std::to_string(&pPage - mPages.data()) + ", id " + std::to_string(pId);
    }
    std::size_t IndexOf(const model::Page* pModel) const {
        std::size_t lIndex = 0;
        while (lIndex < mPages.size() && mPages[lIndex].mModel.get() != pModel)
            ++lIndex;
        return lIndex;
    }
    static H At(const BothPages& pPage, int pId) { return H(pPage.mHandle.GetPage(), pId); }

    // --- pages and properties
    void CreatePage() {
        mDone = "Create";
        if (mPages.size() >= kMostPages)
            return;
        BothPages lNew;
        if (mPages.empty() || OneIn(4)) {
            const ELyrType lType = AnyType();
            const char* lName = AnyName();
            lNew.mHandle = H::Create(lName, lType);
            lNew.mModel = std::make_unique<model::Page>(nullptr);
            lNew.mModel->Add(-1, lName, lType);
        } else {
            BothPages& lOf = AnyPage();
            lNew.mHandle = H::Create(lOf.mHandle);
            lNew.mModel = std::make_unique<model::Page>(lOf.mModel.get());
        }
        mPages.push_back(std::move(lNew));
    }
    bool IsFull(const BothPages& pPage) { return pPage.mModel->Ids().size() >= kMostProperties; }
    void Add() {
        BothPages& lPage = AnyPage();
        const int lParent = AnyId(lPage);
        Did("Add", lPage, lParent);
        if (IsFull(lPage))
            return;
        const char* lName = AnyName();
        const ELyrType lType = AnyType();
        EXPECT_EQ(At(lPage, lParent).Add(lName, lType), At(lPage, lPage.mModel->Add(lParent, lName, lType)));
    }
    void AddTyped() {
        BothPages& lPage = AnyPage();
        BothPages& lType = AnyPage();
        const int lParent = AnyId(lPage);
        Did("Add typed by page " + std::to_string(&lType - mPages.data()), lPage, lParent);
        if (IsFull(lPage) || lType.mModel->Ids().size() > 8)
            return;
        const char* lName = AnyName();
        int lReports = 0;
        const int lId = lPage.mModel->Add(lParent, lName, lType.mModel.get(), lReports);
        EXPECT_EQ(At(lPage, lParent).Add(lName, lType.mHandle), At(lPage, lId));
        EXPECT_EQ(mReports.Take(), std::vector<std::string>(static_cast<std::size_t>(lReports), "Recursive type info"));
    }
    void RemoveOne() {
        BothPages& lPage = AnyPage();
        const int lId = AnyId(lPage);
        Did("Destroy", lPage, lId);
        if (lId == 0)
            return;
        EXPECT_EQ(At(lPage, lId).Destroy(), lPage.mModel->Remove(lId));
    }
    void RemovePage() {
        mDone = "Destroy page";
        if (OneIn(2))
            DestroyPage(PageIndex());
    }
    void DestroyPage(std::size_t pIndex) {
        model::Page* lGone = mPages[pIndex].mModel.get();
        for (const BothPages& lPage : mPages)
            if (lPage.mModel->mInstanceOf == lGone)
                lGone->HandDownTo(lPage.mModel.get());
        const ELyrType lType = lGone->Type(0);
        for (const BothPages& lPage : mPages) {
            for (auto& lEntry : lPage.mModel->mEntries) {
                std::optional<model::Info>& lInfo = lEntry.second.mInfo;
                if (lInfo && lInfo->mTypeInfo == lGone) {
                    lInfo->mTypeInfo = nullptr;
                    lInfo->mType = lType;
                }
            }
        }
        while (!lGone->mEntries.empty())
            lGone->RemoveOwn(lGone->mEntries.begin()->first);
        EXPECT_TRUE(mPages[pIndex].mHandle.Destroy());
        mPages.erase(mPages.begin() + static_cast<std::ptrdiff_t>(pIndex));
    }

    // --- values, flags, states
    void Set() {
        BothPages& lPage = AnyPage();
        const int lId = AnyId(lPage);
        const double lValue = Below(3) + (OneIn(3) ? 0.5 : 0);
        const bool lCheck = !OneIn(3);
        Did("Set " + std::to_string(lValue) + (lCheck ? " checked" : ""), lPage, lId);
        EXPECT_EQ(At(lPage, lId).Set(&lValue, eDOUBLE1, lCheck), lPage.mModel->Set(lId, lValue, lCheck));
    }
    void SetInherit() {
        BothPages& lPage = AnyPage();
        const int lId = AnyId(lPage);
        const bool lInherit = OneIn(2);
        Did(lInherit ? "Inherit value" : "Override value", lPage, lId);
        EXPECT_EQ(At(lPage, lId).SetValueInheritType(lInherit ? eLyrInherit : eLyrOverride),
                  lPage.mModel->SetValueInherit(lId, lInherit));
    }
    void ModifyFlags() {
        BothPages& lPage = AnyPage();
        const int lId = AnyId(lPage);
        const unsigned lFlags = AnyFlags();
        const bool lOn = OneIn(2);
        Did((lOn ? "Flags on " : "Flags off ") + std::to_string(lFlags), lPage, lId);
        EXPECT_EQ(At(lPage, lId).ModifyFlags(static_cast<F::eLyrPropertyFlags>(lFlags), lOn),
                  lPage.mModel->ModifyFlags(lId, lFlags, lOn));
    }
    void FlagsInherit() {
        BothPages& lPage = AnyPage();
        const int lId = AnyId(lPage);
        const unsigned lFlags = AnyFlags();
        const bool lInherit = OneIn(2);
        Did((lInherit ? "Inherit flags " : "Override flags ") + std::to_string(lFlags), lPage, lId);
        EXPECT_EQ(
            At(lPage, lId)
                .SetFlagsInheritType(static_cast<F::eLyrPropertyFlags>(lFlags), lInherit ? eLyrInherit : eLyrOverride),
            lPage.mModel->SetFlagsInherit(lId, lFlags, lInherit));
    }
    void Push() {
        BothPages& lPage = AnyPage();
        Did("Push", lPage, 0);
        EXPECT_TRUE(lPage.mHandle.PushPropertiesToParentInstance());
        lPage.mModel->Push();
    }
    void Label() {
        BothPages& lPage = AnyPage();
        const int lId = AnyId(lPage);
        Did("Label", lPage, lId);
        const char* lLabel = AnyName();
        model::Info* lInfo = lPage.mModel->Item<model::Info>(lId);
        EXPECT_EQ(At(lPage, lId).SetLabel(lLabel) && At(lPage, lId).SetUserTag(Below(9)), lInfo != nullptr);
        if (lInfo) {
            lInfo->mLabel = lLabel;
            lInfo->mTag = At(lPage, lId).GetUserTag();
        }
    }

    // --- connections
    void Connect() {
        BothPages& lDst = AnyPage();
        BothPages& lSrc = AnyPage();
        const int lDstId = AnyId(lDst), lSrcId = AnyId(lSrc);
        Did("Connect page " + std::to_string(&lSrc - mPages.data()) + ", id " + std::to_string(lSrcId), lDst, lDstId);
        const bool lDone = OneIn(2) ? At(lDst, lDstId).ConnectSrc(At(lSrc, lSrcId), eLyrConnectionData)
                                    : At(lSrc, lSrcId).ConnectDst(At(lDst, lDstId), eLyrConnectionUser);
        EXPECT_EQ(lDone, lDst.mModel->ConnectSrc(lDstId, lSrc.mModel.get(), lSrcId));
    }
    void Disconnect() {
        BothPages& lDst = AnyPage();
        BothPages& lSrc = AnyPage();
        const int lDstId = AnyId(lDst), lSrcId = AnyId(lSrc);
        Did("Disconnect", lDst, lDstId);
        EXPECT_EQ(At(lDst, lDstId).IsConnectedSrc(At(lSrc, lSrcId)),
                  lDst.mModel->IsConnectedSrc(lDstId, lSrc.mModel.get(), lSrcId));
        EXPECT_EQ(At(lDst, lDstId).DisconnectSrc(At(lSrc, lSrcId)),
                  lDst.mModel->DisconnectSrc(lDstId, lSrc.mModel.get(), lSrcId));
    }
    void Wipe() {
        BothPages& lPage = AnyPage();
        const int lId = AnyId(lPage);
        Did("Wipe", lPage, lId);
        At(lPage, lId).WipeAllConnections();
        lPage.mModel->Wipe(lId);
    }
    void ExpectSameConnections(const BothPages& pPage, int pId) {
        const model::Entry* lOwn = pPage.mModel->Own(pId);
        const model::Connect lConnect = lOwn && lOwn->mConnect ? *lOwn->mConnect : model::Connect();
        for (std::size_t i = 0; i <= lConnect.mSrcs.size(); ++i)
            EXPECT_EQ(At(pPage, pId).GetSrc(nullptr, static_cast<int>(i)), HandleAt(lConnect.mSrcs, i));
        for (std::size_t i = 0; i <= lConnect.mDsts.size(); ++i)
            EXPECT_EQ(At(pPage, pId).GetDst(nullptr, static_cast<int>(i)), HandleAt(lConnect.mDsts, i));
    }
    H HandleAt(const std::vector<model::End>& pEnds, std::size_t pIndex) const {
        if (pIndex >= pEnds.size())
            return H();
        return At(mPages[IndexOf(pEnds[pIndex].first)], pEnds[pIndex].second);
    }

    // --- lookup
    void Bracket() {
        BothPages& lPage = AnyPage();
        const bool lOpen = OneIn(2);
        Did(lOpen ? "Begin" : "End", lPage, 0);
        if (lOpen) {
            lPage.mHandle.BeginCreateOrFindProperty();
            lPage.mModel->Begin();
        } else {
            lPage.mHandle.EndCreateOrFindProperty();
            lPage.mModel->Close();
        }
    }
    void Find() {
        BothPages& lPage = AnyPage();
        const int lId = AnyId(lPage);
        const char* lName = AnyName();
        Did(std::string("Find ") + lName, lPage, lId);
        EXPECT_EQ(At(lPage, lId).Find(lName, true), At(lPage, lPage.mModel->Find(lId, lName, nullptr)));
        BothPages& lType = AnyPage();
        EXPECT_EQ(At(lPage, lId).Find(lName, lType.mHandle, true),
                  At(lPage, lPage.mModel->Find(lId, lName, lType.mModel.get())));
    }

    // What the description of a page does not tell.
    void ExpectSameAnswers(const BothPages& pPage, int pId) {
        model::Page& lModel = *pPage.mModel;
        const H lHandle = At(pPage, pId);
        double lNumber = -1;
        const model::Value* lDefault = lModel.DefaultValue(pId);
        const bool lHas = lDefault && lDefault->mType != eUNIDENTIFIED;
        EXPECT_EQ(lHandle.GetDefaultValue(&lNumber, eDOUBLE1), lHas);
        EXPECT_EQ(lNumber, lHas ? lDefault->mNumber : -1);
        EXPECT_EQ(lHandle.GetValueInheritType(true) == eLyrOverride, lModel.ValueOverridesAnother(pId));
        const unsigned lFlags = AnyFlags();
        EXPECT_EQ(lHandle.GetFlagsInheritType(static_cast<F::eLyrPropertyFlags>(lFlags), true) == eLyrOverride,
                  lModel.FlagsOverrideOthers(pId, lFlags));
        const int lParent = lModel.Seen(pId)->mParent;
        EXPECT_EQ(lHandle.GetChild(), At(pPage, lModel.ChildBehind(pId, -1)));
        EXPECT_EQ(lHandle.GetSibling(), At(pPage, lParent == -1 ? -1 : lModel.ChildBehind(lParent, pId)));
        const int lOther = AnyId(pPage);
        EXPECT_EQ(lHandle.IsChildOf(At(pPage, lOther)), lParent == lOther);
        EXPECT_EQ(lHandle.IsDescendentOf(At(pPage, lOther)), lModel.IsBelow(pId, lOther));
    }
    // Every property is looked for under its own parent.
    void ExpectSameNames(const BothPages& pPage) {
        for (int lId : pPage.mModel->Ids()) {
            const int lParent = pPage.mModel->Seen(lId)->mParent;
            const char* lName = At(pPage, lId).GetName();
            EXPECT_EQ(At(pPage, lParent).Find(lName, true), At(pPage, pPage.mModel->Find(lParent, lName, nullptr)))
                << lName << " below " << lParent;
        }
    }

    std::mt19937 mRandom;
    ReportRecorder mReports;
    std::vector<BothPages> mPages;
    std::string mDone;
};

TEST_F(PropertyRandom, ShowsWhatTheModelShowsAfterEveryStep) {
    for (unsigned lSeed = 1; lSeed <= 20; ++lSeed) {
        const LeakCheck lLeakCheck;
        Worker lWorker(lSeed);
        for (int lStep = 0; lStep < 200; ++lStep) {
            lWorker.Step();
            lWorker.ExpectSameAsModel();
            ASSERT_FALSE(HasFailure()) << "seed " << lSeed << ", step " << lStep << ": " << lWorker.Done();
        }
    }
}

}  // namespace
}  // namespace lyrsdk
