#include <gtest/gtest.h>

#include <climits>
#include <initializer_list>
#include <set>
#include <string>

#include "lyrfilesdk/lyrkit/lyrkit.h"

namespace lyrsdk {
namespace {

// The values from pFirst on have these texts, no two the same, and what lies on both sides of them has none.
template <typename Result>
void ExpectTexts(std::initializer_list<const char*> pTexts, int pFirst = 0) {
    std::set<std::string> lSeen{"unknown"};
    int lValue = pFirst;
    for (const char* lText : pTexts) {
        EXPECT_STREQ(lyrResultText(static_cast<Result>(lValue)), lText) << lValue;
        EXPECT_TRUE(lSeen.insert(lText).second) << lText;
        ++lValue;
    }
    for (const int lNone : {INT_MIN, pFirst - 1, lValue, INT_MAX})
        EXPECT_STREQ(lyrResultText(static_cast<Result>(lNone)), "unknown") << lNone;
}

TEST(ResultText, TellsWhatAWriteDid) {
    ExpectTexts<ELyrSetResult>({"refused", "written", "inherited again", "inherited already"});
    EXPECT_STREQ(lyrResultText(lyrSet(KLyrPropertyHandle(), 1.0)), "refused");
}

TEST(ResultText, TellsWhatABoundPropertyIsOnAPage) {
    ExpectTexts<ELyrBoundState>({"on this page", "bound to nothing", "of another family", "not on this page"});
    EXPECT_STREQ(lyrResultText(KLyrBoundProperty().GetState(KLyrPropertyHandle())), "bound to nothing");
}

TEST(ResultText, TellsHowAValueKeepsToItsLimits) {
    ExpectTexts<ELyrLimitVerdict>({"within limits", "below the minimum", "above the maximum", "below the soft minimum",
                                   "above the soft maximum", "not a number", "refused"});
}

TEST(ResultText, TellsWhichStepOfABuilderFailed) {
    ExpectTexts<ELyrBuildStep>({"done", "property", "default", "minimum", "maximum", "soft minimum", "soft maximum",
                                "enumeration texts", "label", "user tag", "user data", "flags"});
    EXPECT_STREQ(lyrResultText(lyrBuild(KLyrPropertyHandle(), "power", 1.0).GetFailure()), "property");
}

TEST(ResultText, TellsWhereAnItemComesFrom) {
    ExpectTexts<KLyrOrigin>({"nowhere", "own", "inherited"});
}

TEST(ResultText, TellsWhatAPushDoesAndWhoSeesIt) {
    ExpectTexts<KLyrPushResult>(
        {"pushed", "no such property", "no page above", "nothing to push", "no place above", "no memory"});
    ExpectTexts<KLyrPushReach>({"not moved", "the same", "shielded", "changed"});
}

TEST(ResultText, IsTheVerdictTextForAConversion) {
    ExpectTexts<ELyrConversionVerdict>({"same", "exact", "may lose precision", "truncates", "wraps", "parses", "prints",
                                        "first element", "refused silently", "refused with a report"});
    for (int i = -1; i <= 10; ++i) {
        const auto lVerdict = static_cast<ELyrConversionVerdict>(i);
        EXPECT_STREQ(lyrResultText(lVerdict), lyrVerdictText(lVerdict));
    }
}

}  // namespace
}  // namespace lyrsdk
