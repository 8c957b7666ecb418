#include "tests/digest/digest.h"
#include "tests/model/driver.h"

// The library is compared with the model, and what the model shows goes into the digest.

namespace lyrsdk {
namespace {

constexpr std::uint64_t kRuns = 20;
constexpr std::uint64_t kOperations = 1000;
constexpr std::uint64_t kInterval = 50;

void AddValue(Digest& pDigest, const lyrmodel::Value& pValue) {
    pDigest.AddNumber(pValue.mCode);
    pDigest.AddNumber(pValue.mInteger);
    for (double lNumber : pValue.mNumbers) {
        std::uint64_t lBits;
        std::memcpy(&lBits, &lNumber, sizeof(lBits));
        pDigest.AddNumber(lBits);
    }
    pDigest.Add(pValue.mBytes);
}

void AddDescription(Digest& pDigest, const lyrmodel::Info& pInfo) {
    pDigest.Add(pInfo.mName);
    pDigest.Add(pInfo.mLabel);
    for (int lNumber : {pInfo.GetType(), pInfo.mUserTag, pInfo.mUserData, pInfo.mBoundType})
        pDigest.AddNumber(lNumber);
    for (const auto& lBound : pInfo.mBounds)
        if (lBound)
            AddValue(pDigest, *lBound);
    for (const std::string& lText : pInfo.mEnums)
        pDigest.Add(lText);
}

void AddProperty(Digest& pDigest, lyrmodel::Page& pPage, int pId) {
    for (int lNumber : {pId, pPage.GetParent(pId), pPage.GetChild(pId), pPage.GetSibling(pId)})
        pDigest.AddNumber(lNumber);
    if (const lyrmodel::Info* lInfo = pPage.GetInfo(pId))
        AddDescription(pDigest, *lInfo);
    if (const lyrmodel::Found lFound = pPage.GetItem(lyrmodel::Item::eValue, pId))
        AddValue(pDigest, *lFound.mEntry->mValue);
    pDigest.AddNumber(pPage.GetFlags(pId));
    pDigest.AddNumber(pPage.GetValueInherit(pId, true));
    for (bool lSrcs : {false, true})
        for (const lyrmodel::Link& lLink : pPage.GetLinks(pId, lSrcs, nullptr))
            for (int lNumber : {lLink.mPeer->mPage->mSlot, lLink.mPeer->mId, lLink.mType})
                pDigest.AddNumber(lNumber);
}

void AddPages(Digest& pDigest, const lyrmodel::World& pWorld) {
    for (int lSlot : pWorld.LiveSlots()) {
        lyrmodel::Page& lPage = *pWorld.At(lSlot);
        pDigest.AddNumber(lSlot);
        pDigest.AddNumber(lPage.mInstanceOf ? lPage.mInstanceOf->mSlot : -1);
        for (int lId : lPage.VisibleIds())
            AddProperty(pDigest, lPage, lId);
    }
}

}  // namespace

std::uint64_t DigestOfPages() {
    Digest lDigest;
    for (std::uint64_t lSeed = 1; lSeed <= kRuns; ++lSeed) {
        lyrmodel::Driver lDriver;
        std::uint64_t lStep = 0;
        for (const lyrmodel::Operation& lOperation : lyrmodel::Generate(lSeed, kOperations)) {
            if (!lDriver.Apply(lOperation))
                return 0;
            lDigest.Add(lDriver.Last());
            if (++lStep % kInterval != 0)
                continue;
            if (!lDriver.Check())
                return 0;
            AddPages(lDigest, lDriver.Model());
        }
    }
    return lDigest.Value();
}

}  // namespace lyrsdk
