#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "tests/model/driver.h"

// What random runs get to, so that their agreement says something.

namespace lyrmodel {
namespace {

constexpr std::uint64_t kSeeds = 20;
constexpr std::uint64_t kSteps = 10000;
// Each answer of each kind of operation comes so often.
constexpr std::uint64_t kOften = 10;

// What pages were seen in, how often or how far.
using Situations = std::map<std::string, std::uint64_t>;

void Most(Situations& pSituations, const char* pWhat, std::size_t pCount) {
    std::uint64_t& lMost = pSituations[pWhat];
    lMost = std::max<std::uint64_t>(lMost, pCount);
}

void LookAtProperty(Page& pPage, int pId, Situations& pSituations) {
    const std::vector<Link> lSrcs = pPage.GetLinks(pId, true, nullptr);
    Most(pSituations, "sources of one property", lSrcs.size());
    std::set<int> lTypes;
    for (const Link& lLink : lSrcs)
        lTypes.insert(lLink.mType);
    Most(pSituations, "connection types of one property", lTypes.size());
    const Info* lInfo = pPage.GetInfo(pId);
    if (!lInfo)
        return;
    Most(pSituations, "enumeration texts", lInfo->mEnums.size());
    pSituations["typed properties"] += lInfo->mTypeInfo && pPage.GetChild(pId) != -1 ? 1u : 0u;
    const auto lBounds = std::count_if(lInfo->mBounds.begin(), lInfo->mBounds.end(),
                                       [](const std::optional<Value>& pBound) { return pBound.has_value(); });
    Most(pSituations, "bounds of one property", static_cast<std::size_t>(lBounds));
    const Found lValue = pPage.GetItem(Item::eValue, pId);
    pSituations["values inherited from three pages up"] +=
        lValue && pPage.Depth() - lValue.mPage->Depth() >= 3 ? 1u : 0u;
}

void Look(const World& pWorld, Situations& pSituations) {
    std::set<const int*> lFamilies;
    std::size_t lBrackets = 0;
    for (int lSlot : pWorld.LiveSlots()) {
        Page* lPage = pWorld.At(lSlot);
        lFamilies.insert(lPage->mNextId.get());
        lBrackets += lPage->mOpen ? 1u : 0u;
        pSituations["pages of depth 6"] += lPage->Depth() == 6 ? 1u : 0u;
        pSituations["pages without a root property"] += lPage->GetEntry(0) ? 0u : 1u;
        pSituations["families without ids left"] += *lPage->mNextId < 0 ? 1u : 0u;
        pSituations["pages that hold the greatest id"] += lPage->Own(INT_MAX) ? 1u : 0u;
        Most(pSituations, "instances of one page", lPage->mInstances.size());
        const std::vector<int> lIds = lPage->VisibleIds();
        Most(pSituations, "properties of one page", lIds.size());
        for (int lId : lIds)
            LookAtProperty(*lPage, lId, pSituations);
    }
    Most(pSituations, "pages", pWorld.LiveSlots().size());
    Most(pSituations, "families", lFamilies.size());
    Most(pSituations, "brackets open at once", lBrackets);
}

// What an operation is about to change.
void LookAhead(const Operation& pOperation, const World& pWorld, Situations& pSituations) {
    const Arguments lArguments = Resolve(pOperation, pWorld);
    Page* lPage = lArguments.mPages[0];
    if (!lPage)
        return;
    switch (pOperation.mKind) {
        case Kind::eDestroyPage:
            pSituations["destroyed pages with instances"] += lPage->mInstances.empty() ? 0u : 1u;
            pSituations["destroyed pages between others"] += !lPage->mInstances.empty() && lPage->mInstanceOf ? 1u : 0u;
            break;
        case Kind::ePushRoot:
            pSituations["pushes that move something"] += lPage->mInstanceOf && !lPage->mEntries.empty() ? 1u : 0u;
            break;
        case Kind::eAddTyped: {
            const int lCount = lPage->CountOfTyped(lArguments.mPages[1]);
            pSituations["typed adds that copy children"] += lCount > 1 ? 1u : 0u;
            pSituations["typed adds into an open bracket"] += lCount > 1 && lPage->mOpen ? 1u : 0u;
            Most(pSituations, "copies of one typed add", static_cast<std::size_t>(lCount));
            break;
        }
        case Kind::eGetSrc:
            if (lArguments.mFilter) {
                const Filter lOdd{0, 1};
                const std::size_t lAll = lPage->GetLinks(lArguments.mIds[0], true, nullptr).size();
                const std::size_t lSome = lPage->GetLinks(lArguments.mIds[0], true, &lOdd).size();
                pSituations["filtered lists"] += lAll > 0 ? 1u : 0u;
                pSituations["lists of which a filter leaves a part"] += lSome > 0 && lSome < lAll ? 1u : 0u;
            }
            break;
        default:
            break;
    }
}

void RunAll(Tallies& pTallies, Situations& pSituations, std::map<Kind, std::uint64_t>& pKinds) {
    for (std::uint64_t lSeed = 1; lSeed <= kSeeds; ++lSeed) {
        Driver lDriver;
        lDriver.SetTallies(&pTallies);
        int lStep = 0;
        for (const Operation& lOperation : Generate(lSeed, kSteps)) {
            LookAhead(lOperation, lDriver.Model(), pSituations);
            ASSERT_TRUE(lDriver.Apply(lOperation)) << lDriver.Last() << ": " << lDriver.Difference();
            ++pKinds[lOperation.mKind];
            if (++lStep % 50 == 0)
                Look(lDriver.Model(), pSituations);
        }
    }
}

const std::set<std::string> kReports = {"Recursive type info", "Incompatible type assigment",
                                        "Trying to assign an unknown type",
                                        "Trying to set value on a void Reference type"};

// What can be answered in one way only, or is not asked often.
bool HasOneAnswer(Kind pKind, const std::string& pWhat) {
    static const std::set<std::string> sOne = {"new page", "parent set", "parent set on the page", "min set",
                                               "entry that follows"};
    return sOne.count(pWhat) || kReports.count(pWhat) || (pKind == Kind::eDestroyPage && pWhat == "destroyed") ||
           (pKind == Kind::eDisconnectNth && pWhat.find("disconnected") != std::string::npos);
}

TEST(PropertyModelReach, IsEveryAnswerOfEveryOperationAndEverySituation) {
    Tallies lTallies;
    Situations lSituations;
    std::map<Kind, std::uint64_t> lKinds;
    ASSERT_NO_FATAL_FAILURE(RunAll(lTallies, lSituations, lKinds));

    Tally lReports;
    for (std::size_t i = 0; i < lTallies.size(); ++i) {
        const Kind lKind = static_cast<Kind>(i);
        EXPECT_GE(lKinds[lKind], 100u) << NameOf(lKind);
        for (const auto& [lAnswer, lCount] : lTallies[i]) {
            const auto& [lWhat, lYes] = lAnswer;
            if (kReports.count(lWhat))
                lReports[lAnswer] += lCount;
            if (HasOneAnswer(lKind, lWhat))
                continue;
            EXPECT_GE(lCount, kOften) << NameOf(lKind) << ", " << lWhat << ": " << lYes;
            EXPECT_EQ(lTallies[i].count({lWhat, !lYes}), 1u) << NameOf(lKind) << ", " << lWhat << ": never " << !lYes;
        }
    }
    for (const std::string& lReport : kReports) {
        const std::uint64_t lCount = lReports[{lReport, true}];
        EXPECT_GE(lCount, 100u) << lReport;
    }

    const Situations lLeast = {{"pages of depth 6", 50},
                               {"pages", World::kSlots},
                               {"families", 4},
                               {"pages without a root property", 100},
                               {"families without ids left", 100},
                               {"pages that hold the greatest id", 100},
                               {"instances of one page", 4},
                               {"properties of one page", 35},
                               // Longer than what a plain list holds without an index.
                               {"sources of one property", 33},
                               {"connection types of one property", 5},
                               {"enumeration texts", 3},
                               {"typed properties", 1000},
                               {"bounds of one property", 4},
                               {"values inherited from three pages up", 1000},
                               {"brackets open at once", 3},
                               {"destroyed pages with instances", 100},
                               {"destroyed pages between others", 50},
                               {"pushes that move something", 100},
                               {"typed adds that copy children", 100},
                               {"typed adds into an open bracket", 20},
                               {"copies of one typed add", 10},
                               {"filtered lists", 100},
                               {"lists of which a filter leaves a part", 10}};
    for (const auto& [lWhat, lCount] : lLeast)
        EXPECT_GE(lSituations[lWhat], lCount) << lWhat;
    EXPECT_EQ(lSituations.size(), lLeast.size());
}

}  // namespace
}  // namespace lyrmodel
