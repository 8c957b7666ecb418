// Operations with too little memory.

#include <set>

#include "tests/model/driver.h"
#include "tests/support/scarce_memory.h"

namespace lyrmodel {

using namespace lyrsdk;

// Whether the library shows what the model shows now. If not, the model is put back.
bool Driver::Try(const World& pBefore) {
    mSame.Reset();
    if (Check())
        return true;
    mPair.mModel.CopyFrom(pBefore);
    return false;
}

// What was inherited became the page's own and could not be written, or was written because there was no memory to
// compare it.
bool Driver::SetPartly(const Arguments& pA) {
    World lBefore;
    lBefore.CopyFrom(mPair.mModel);
    pA.mPages[0]->ChangeItemState(Item::eValue, pA.mIds[0], kOverride);
    if (Try(lBefore))
        return true;
    Page* lPage = mPair.mModel.At(pA.mSlots[0]);
    lPage->Set(pA.mIds[0], pA.mValue ? &*pA.mValue : nullptr, pA.mType, false);
    return Try(lBefore);
}

// Properties that would have needed a new entry above stayed where they were: one, or all from one on.
bool Driver::PushPartly(const Arguments& pA) {
    World lBefore;
    lBefore.CopyFrom(mPair.mModel);
    std::vector<int> lNew;
    for (const auto& [lId, lEntry] : pA.mPages[0]->mEntries)
        if (lEntry.IsPushed() && !pA.mPages[0]->mInstanceOf->Own(lId))
            lNew.push_back(lId);
    for (std::size_t i = 0; i < lNew.size(); ++i) {
        const auto lFrom = lNew.begin() + static_cast<std::ptrdiff_t>(i);
        for (const std::set<int>& lKept : {std::set<int>{*lFrom}, std::set<int>(lFrom, lNew.end())}) {
            mPair.mModel.At(pA.mSlots[0])->Push(lKept);
            if (Try(lBefore))
                return true;
        }
    }
    return false;
}

// Nothing was added, but the ids of what had been added by then are used up.
bool Driver::AddPartly(const Arguments& pA, Kind pKind) {
    World lBefore;
    lBefore.CopyFrom(mPair.mModel);
    Page* lPage = pA.mPages[0];
    const int lNext = mPair.Library(pA.mSlots[0])->GetIdGenerator()->PeekNextId();
    const unsigned lEnd = lNext < 0 ? 1u << 31 : static_cast<unsigned>(lNext);
    mPair.mModel.mAddsLeft = static_cast<int>(lEnd - static_cast<unsigned>(*lPage->mNextId));
    int lId = -1;
    if (pKind == Kind::eAddTyped)
        lId = lPage->Add(pA.mIds[0], pA.NameOrEmpty(), pA.mPages[1]);
    else if (pKind == Kind::eAddShared)
        lId = lPage->Add(pA.mIds[0], SharedInfo(pA), SharedValue(pA), false, pA.mBits & 4);
    else
        lId = lPage->Add(pA.mIds[0], NewInfo(pA), pA.mBits & 2 ? std::make_shared<Value>(pA.mType) : nullptr,
                         pA.mBits & 4, pA.mBits & 8);
    mPair.mModel.mAddsLeft = -1;
    mPair.mModel.TakeReports();
    // All of them may have been there when memory ended.
    if (lId >= 0)
        lPage->UndoAdd(lId);
    return Try(lBefore);
}

// The bound is there, without the value that could not be written.
bool Driver::SetMinMaxPartly(const Arguments& pA) {
    World lBefore;
    lBefore.CopyFrom(mPair.mModel);
    Info* lInfo = pA.mPages[0]->GetInfo(pA.mIds[0]);
    if (!lInfo || !lInfo->SetMinMax(pA.mNumber, pA.mValue ? &*pA.mValue : nullptr, mPair.mModel.mReports))
        return false;
    lInfo->mBounds[static_cast<std::size_t>(pA.mNumber)] = Value(lInfo->mBoundType);
    return Try(lBefore);
}

bool Driver::ApplyPartly(const Operation& pOperation) {
    const Arguments lArguments = Resolve(pOperation, mPair.mModel);
    switch (pOperation.mKind) {
        case Kind::eSet:
            return SetPartly(lArguments);
        case Kind::ePush:
        case Kind::ePushRoot:
            return PushPartly(lArguments);
        case Kind::eAddTyped:
        case Kind::eAddItems:
        case Kind::eAddShared:
            return AddPartly(lArguments, pOperation.mKind);
        case Kind::eSetMinMax:
            return SetMinMaxPartly(lArguments);
        default:
            return false;
    }
}

bool Driver::NeverAsks(Kind pKind) {
    static const std::set<Kind> sKinds = {Kind::eRemoveOwnEntry,
                                          Kind::eSetUserTag,
                                          Kind::eSetUserData,
                                          Kind::eGetEnumValue,
                                          Kind::eGetFlagsInheritType,
                                          Kind::eDisconnectSrc,
                                          Kind::eDisconnectDst,
                                          Kind::eDisconnectNth,
                                          Kind::eIsConnected,
                                          Kind::eWipeAllConnections,
                                          Kind::eClearConnectCache,
                                          Kind::eSetWipeMode,
                                          Kind::eEndCreateOrFind,
                                          Kind::eFind,
                                          Kind::eFindTyped,
                                          Kind::eFastFind,
                                          Kind::eIsChildOf,
                                          Kind::eIsDescendentOf,
                                          Kind::eGetNextDescendent,
                                          Kind::eGetMinimum,
                                          Kind::eSetPageData,
                                          Kind::eGetReferencedBy,
                                          Kind::eSkipIds,
                                          Kind::eTakeId,
                                          Kind::eCompareHandles,
                                          Kind::eSetParent};
    return sKinds.count(pKind) != 0;
}

bool Driver::NeedsMemory(Kind pKind) {
    return pKind == Kind::eConnectAll || pKind == Kind::eDestroyPage || pKind == Kind::eDestroy;
}

Driver::Scarce Driver::ApplyScarce(const Operation& pOperation, std::size_t pFirst, bool pForever) {
    if (NeedsMemory(pOperation.mKind))
        return Apply(pOperation) ? Scarce::eNotRefused : Scarce::eDiffers;
    if (NeverAsks(pOperation.mKind)) {
        ScarceMemory::Refuse(0, true);
        const bool lSame = Apply(pOperation);
        mSame.Same("requests for memory", ScarceMemory::Relent() != 0, false);
        return lSame && mSame.IsSame() ? Scarce::eNotRefused : Scarce::eDiffers;
    }
    World lBefore;
    lBefore.CopyFrom(mPair.mModel);
    const auto lPages = mPair.mPages;
    ScarceMemory::Refuse(pFirst, pForever);
    const bool lApplied = Apply(pOperation);
    if (ScarceMemory::Relent() == 0)
        return lApplied ? Scarce::eNotRefused : Scarce::eDiffers;
    // A bracket that stays closed may show in a later lookup only.
    if (lApplied && pOperation.mKind != Kind::eBeginCreateOrFind && Check())
        return Scarce::eDone;

    mPair.mModel.CopyFrom(lBefore);
    mPair.mPages = lPages;
    mPair.mReports.clear();
    mSame.Reset();
    Scarce lOutcome = Scarce::eUndone;
    if (!Check()) {
        lOutcome = Scarce::ePartly;
        const std::string lDifference = "without memory, " + Difference();
        if (!ApplyPartly(pOperation)) {
            mSame.Reset();
            mSame.Differs(lDifference);
            return Scarce::eDiffers;
        }
    }
    return Apply(pOperation) && Check() ? lOutcome : Scarce::eDiffers;
}

bool Driver::ApplyAsStated(const Operation& pOperation) {
    if (!pOperation.mRefused)
        return Apply(pOperation);
    return ApplyScarce(pOperation, pOperation.mRefused - 1u, pOperation.mForever) != Scarce::eDiffers;
}

std::string RunSeedScarce(std::uint64_t pSeed, std::uint64_t pCount, ScarceCounts& pCounts, Fault pFault) {
    Driver lDriver(pFault);
    Random lRandom(~pSeed);
    Outcome lOutcome;
    std::vector<Operation> lOperations = Generate(pSeed, pCount);
    for (Operation& lOperation : lOperations) {
        // Most operations ask for few blocks.
        const std::uint64_t lDrawn = lRandom.Next();
        lOperation.mRefused = static_cast<std::uint8_t>(1 + lDrawn % (lDrawn & 256 ? 4 : 10));
        lOperation.mForever = lDrawn & 512;
        ++lOutcome.mSteps;
        const Driver::Scarce lResult = lDriver.ApplyScarce(lOperation, lOperation.mRefused - 1u, lOperation.mForever);
        ++pCounts[static_cast<std::size_t>(lOperation.mKind)][static_cast<std::size_t>(lResult)];
        if (lResult == Driver::Scarce::eDiffers) {
            lOutcome.mDifference = lDriver.Difference();
            return Shortened(pSeed, lOperations, lOutcome, pFault);
        }
    }
    return "";
}

}  // namespace lyrmodel
