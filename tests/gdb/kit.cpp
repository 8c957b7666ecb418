// What the kit answers about the lamps, ranges over them, and properties that are bound or being built.

#include <array>
#include <optional>
#include <string_view>

#include "tests/gdb/scene.h"

namespace scene {

using namespace lyrsdk;

// --- where items come from -----------------------------------------------------------------------------------------

KLyrExplanation sgWhyDeskPower;
KLyrExplanation sgWhyNothing;
KLyrItemOrigin sgOwnValue;
KLyrItemOrigin sgFarValue;
KLyrItemOrigin sgNowhere;
KLyrFlagOrigin sgOwnFlag;
KLyrFlagOrigin sgFarFlag;
KLyrFlagOrigin sgCopiedFlag;
KLyrFlagOrigin sgNoFlag;
// An answer about a page that is gone since.
KLyrItemOrigin sgStaleOrigin;

// --- what a page holds, and what a push moves ----------------------------------------------------------------------

KLyrOverride sgOverride;
KLyrOverride sgNoOverride;
KLyrOverride sgAdded;
KLyrRedundancy sgRedundancy;
KLyrRedundancy sgNoRedundancy;
KLyrPushItems sgPushItems;
KLyrPushItems sgNoPush;
KLyrPushEffect sgPushAbove;
KLyrPushEffect sgPushBeside;

// --- ranges --------------------------------------------------------------------------------------------------------

KLyrHandleRange<detail::ChildWalk> sgChildren = lyrChildren(KLyrPropertyHandle());
KLyrHandleRange<detail::DescendentWalk> sgDescendents = lyrDescendents(KLyrPropertyHandle());
KLyrHandleRange<detail::AncestorWalk> sgAncestors = lyrAncestors(KLyrPropertyHandle());
KLyrHandleRange<detail::PropertyWalk> sgProperties = lyrProperties(KLyrPropertyHandle());
KLyrHandleRange<detail::PropertyWalk> sgOwnProperties = lyrOwnProperties(KLyrPropertyHandle());
KLyrHandleRange<detail::PropertyWalk> sgNoProperties = lyrProperties(KLyrPropertyHandle());
KLyrHandleRange<detail::InstanceWalk> sgInstances = lyrInstances(KLyrPropertyHandle());
KLyrHandleRange<detail::AllInstancesWalk> sgAllInstances = lyrAllInstances(KLyrPropertyHandle());
KLyrHandleRange<detail::PeerWalk> sgSources = lyrSources(KLyrPropertyHandle());
KLyrHandleRange<detail::PeerWalk> sgDestinations = lyrDestinations(KLyrPropertyHandle());
KLyrHandleRange<detail::ChildWalk>::Iterator sgSecondChild = sgChildren.begin();
KLyrHandleRange<detail::ChildWalk>::Iterator sgEndOfChildren = sgChildren.end();

// --- bound, built, refused -----------------------------------------------------------------------------------------

KLyrBoundProperty sgBound;
KLyrBoundProperty sgUnbound;
KLyrPropertyBuilder sgBuilder{KLyrPropertyHandle()};
KLyrPropertyBuilder sgFailedBuilder{KLyrPropertyHandle()};
KLyrReason sgReason;
KLyrReason sgNoReason;
KLyrDumpStyle sgStyle;
std::optional<double> sgRead;
std::optional<KString> sgReadText;
ELyrSetResult sgSetResult;
ELyrConversionVerdict sgVerdict;
ELyrLimitVerdict sgLimitVerdict;
ELyrLimits sgLimits = eLyrAllLimits;
KLyrOrigin sgOrigin;
KLyrPushResult sgPushResult;
LyrPropertyFlags::eLyrPropertyFlags sgPlainFlags;
kLyrConnectionType sgPlainConnection;

namespace {

class DataOnly : public KLyrConnectionPointFilter {
public:
    bool Selects(const KLyrConnectionPoint*, kLyrConnectionType pType) const override {
        return (pType & eLyrConnectionData) != 0;
    }
};

DataOnly sgDataOnly;

KLyrPropertyHandle Named(const KLyrPropertyHandle& pPage, const char* pName) {
    return pPage.Find(pName, true);
}

// Two shops sell a bulb that a catalogue describes; the first one's price is the catalogue's.
struct Shops {
    KLyrPropertyHandle mCatalogue = KLyrPropertyHandle::Create("bulb", eUNIDENTIFIED);
    KLyrPropertyHandle mFirst;
    KLyrPropertyHandle mSecond;

    Shops() {
        lyrBuild(mCatalogue, "price", 2.5).Flags(LyrPropertyFlags::eUSER);
        lyrAdd(mCatalogue, "sold", true);
        mFirst = KLyrPropertyHandle::Create(mCatalogue);
        mSecond = KLyrPropertyHandle::Create(mCatalogue);
        lyrSet(Named(mFirst, "price"), 2.5, eLyrSetPin);
        lyrSet(Named(mSecond, "price"), 3.0);
        lyrSet(Named(mFirst, "sold"), false);
        Named(mFirst, "sold").ModifyFlags(LyrPropertyFlags::eHIDDEN, true);
        lyrAdd(mFirst, "shelf", 7);
    }
};

void ExplainLamps() {
    sgWhyDeskPower = lyrExplain(Named(sgDeskLamp, "power"));
    sgWhyNothing = lyrExplain(KLyrPropertyHandle());
    sgOwnValue = sgWhyDeskPower.mValue;
    sgFarValue = lyrExplain(sgPlaceX).mValue;
    sgOwnFlag = sgWhyDeskPower.mFlags[6];
    sgFarFlag = lyrExplain(Named(sgMyLamp, "power")).mFlags[0];
    sgNoFlag = lyrExplain(Named(sgMyLamp, "state")).mFlags[3];
    sgCopiedFlag = sgOwnFlag;
    sgCopiedFlag.mIsSet = false;
    sgOverride = lyrOverrideOf(Named(sgDeskLamp, "power"));
    sgNoOverride = lyrOverrideOf(Named(sgDeskLamp, "state"));

    KLyrPropertyHandle lShort = KLyrPropertyHandle::Create("short-lived", eINTEGER1);
    sgStaleOrigin = lyrExplain(lShort).mValue;
    lShort.Destroy();
}

void AskShops(const Shops& pShops) {
    sgAdded = lyrOverrideOf(Named(pShops.mFirst, "shelf"));
    sgRedundancy = lyrRedundancyOf(Named(pShops.mFirst, "price"));
    sgNoRedundancy = lyrRedundancyOf(Named(pShops.mSecond, "price"));
    const KLyrPropertyHandle lSold = Named(pShops.mFirst, "sold");
    sgPushItems = lyrPushItemsOf(lSold);
    sgNoPush = lyrPushItemsOf(Named(pShops.mSecond, "sold"));
    lyrVisitPushEffects(lSold, [](const KLyrPushEffect& pEffect) {
        sgPushAbove = pEffect;
        return false;
    });
    lyrVisitPushEffects(Named(pShops.mSecond, "price"), [&pShops](const KLyrPushEffect& pEffect) {
        if (pEffect.mProperty.GetPage() == pShops.mFirst.GetPage())
            sgPushBeside = pEffect;
    });
}

void MakeRanges() {
    sgChildren = lyrChildren(sgMyLamp);
    sgDescendents = lyrDescendents(sgMyLamp);
    sgAncestors = lyrAncestors(sgPlaceX);
    sgProperties = lyrProperties(sgMyLamp);
    sgOwnProperties = lyrOwnProperties(sgMyLamp);
    sgInstances = lyrInstances(sgLamp);
    sgAllInstances = lyrAllInstances(sgLamp);
    sgSources = lyrSources(sgPower);
    sgDestinations = lyrDestinations(sgMain, &sgDataOnly);
    sgSecondChild = ++sgChildren.begin();
    sgEndOfChildren = sgChildren.end();
}

void MakeTheRest(const Shops& pShops) {
    sgBound = KLyrBoundProperty(sgPower);
    sgBuilder = lyrBuild(pShops.mCatalogue, "weight", 0.1).Limits(0.0, 1.0);
    sgFailedBuilder = lyrBuild(pShops.mCatalogue, "size", 10).EnumTexts({"small", "large"});
    const KString lBright("bright");
    sgReason = lyrWhyRefused(sgPower, eSTRING, eLyrWrite, &lBright);
    sgRead = lyrGet<double>(sgMyPower);
    sgReadText = lyrGet<KString>(sgMyPower);
    sgSetResult = lyrSet(Named(pShops.mSecond, "price"), 2.5);
    sgVerdict = lyrConversionVerdict(eINTEGER1, eBYTE1);
    sgLimitVerdict = lyrValidate(sgPower, -1);
    sgOrigin = sgFarValue.mOrigin;
    sgPushResult = sgNoPush.mResult;
    sgPlainFlags = LyrPropertyFlags::eHIDDEN | LyrPropertyFlags::eANIMATABLE;
    sgPlainConnection = static_cast<kLyrConnectionType>(eLyrConnectionDefault | eLyrConnectionUnidirectional);
}

}  // namespace

void MakeAnswers() {
    const Shops lShops;
    ExplainLamps();
    AskShops(lShops);
    MakeRanges();
    MakeTheRest(lShops);
}

}  // namespace scene
