#include "lyrfilesdk/lyrkit/klyrboundproperty.h"
#include "lyrfilesdk/lyrkit/klyrexplain.h"
#include "lyrfilesdk/lyrkit/klyrlimits.h"
#include "lyrfilesdk/lyrkit/klyrpushpreview.h"
#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"
#include "lyrfilesdk/lyrkit/klyrtypedadd.h"

// The texts of all results stand here together, so that they read alike. No switch has a default, so that the compiler
// tells of an enumerator without a text.

namespace lyrsdk {
namespace {

constexpr const char* kNone = "unknown";

}  // namespace

const char* lyrResultText(ELyrSetResult pResult) {
    switch (pResult) {
        case eLyrSetRefused:
            return "refused";
        case eLyrSetWritten:
            return "written";
        case eLyrSetCollapsed:
            return "inherited again";
        case eLyrSetAlreadySo:
            return "inherited already";
    }
    return kNone;
}

const char* lyrResultText(ELyrBoundState pState) {
    switch (pState) {
        case eLyrBoundHere:
            return "on this page";
        case eLyrBoundToNothing:
            return "bound to nothing";
        case eLyrBoundElsewhere:
            return "of another family";
        case eLyrBoundGone:
            return "not on this page";
    }
    return kNone;
}

const char* lyrResultText(ELyrLimitVerdict pVerdict) {
    switch (pVerdict) {
        case eLyrWithinLimits:
            return "within limits";
        case eLyrBelowMin:
            return "below the minimum";
        case eLyrAboveMax:
            return "above the maximum";
        case eLyrBelowSoftMin:
            return "below the soft minimum";
        case eLyrAboveSoftMax:
            return "above the soft maximum";
        case eLyrIsNotANumber:
            return "not a number";
        case eLyrLimitsRefused:
            return "refused";
    }
    return kNone;
}

const char* lyrResultText(ELyrBuildStep pStep) {
    switch (pStep) {
        case eLyrBuildDone:
            return "done";
        case eLyrBuildAdd:
            return "property";
        case eLyrBuildDefault:
            return "default";
        case eLyrBuildMin:
            return "minimum";
        case eLyrBuildMax:
            return "maximum";
        case eLyrBuildSoftMin:
            return "soft minimum";
        case eLyrBuildSoftMax:
            return "soft maximum";
        case eLyrBuildEnumTexts:
            return "enumeration texts";
        case eLyrBuildLabel:
            return "label";
        case eLyrBuildUserTag:
            return "user tag";
        case eLyrBuildUserData:
            return "user data";
        case eLyrBuildFlags:
            return "flags";
    }
    return kNone;
}

const char* lyrResultText(KLyrOrigin pOrigin) {
    switch (pOrigin) {
        case KLyrOrigin::eNowhere:
            return "nowhere";
        case KLyrOrigin::eOwn:
            return "own";
        case KLyrOrigin::eInherited:
            return "inherited";
    }
    return kNone;
}

const char* lyrResultText(KLyrPushResult pResult) {
    switch (pResult) {
        case KLyrPushResult::ePushed:
            return "pushed";
        case KLyrPushResult::eUnknown:
            return "no such property";
        case KLyrPushResult::eNoParent:
            return "no page above";
        case KLyrPushResult::eNothing:
            return "nothing to push";
        case KLyrPushResult::eNoPlace:
            return "no place above";
        case KLyrPushResult::eNoMemory:
            return "no memory";
    }
    return kNone;
}

const char* lyrResultText(KLyrPushReach pReach) {
    switch (pReach) {
        case KLyrPushReach::eNotMoved:
            return "not moved";
        case KLyrPushReach::eSame:
            return "the same";
        case KLyrPushReach::eShielded:
            return "shielded";
        case KLyrPushReach::eChanged:
            return "changed";
    }
    return kNone;
}

}  // namespace lyrsdk
