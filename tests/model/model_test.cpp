#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/model/driver.h"
#include "tests/support/memory_probe.h"

// The library beside a plain model of page families, under random operations.
//
// LYRSDK_MODEL_STEPS sets how many operations all runs take together (the preset asan-m32, where each takes long, sets
// a tenth of the default), LYRSDK_MODEL_SEED the first seed.

namespace lyrmodel {
namespace {

constexpr std::uint64_t kRuns = 20;
constexpr std::uint64_t kStepsOfRun = 10000;

std::uint64_t FromEnvironment(const char* pName, std::uint64_t pDefault) {
    const char* lText = std::getenv(pName);
    return lText && *lText ? std::strtoull(lText, nullptr, 10) : pDefault;
}

// The operations of what a run printed.
std::vector<Operation> OperationsOf(const std::string& pText) {
    std::vector<Operation> lOperations;
    std::istringstream lLines(pText);
    for (std::string lLine; std::getline(lLines, lLine);) {
        Operation lOperation;
        if (FromText(lLine, lOperation))
            lOperations.push_back(lOperation);
    }
    return lOperations;
}

class PropertyModelRun : public testing::TestWithParam<std::uint64_t> {};

TEST_P(PropertyModelRun, ShowsWhatTheLibraryShows) {
    const std::uint64_t lAll = FromEnvironment("LYRSDK_MODEL_STEPS", kRuns * kStepsOfRun);
    std::uint64_t lSeed = FromEnvironment("LYRSDK_MODEL_SEED", 1) + GetParam();
    for (std::uint64_t lLeft = std::max<std::uint64_t>(1, lAll / kRuns); lLeft > 0; lSeed += kRuns) {
        const std::uint64_t lSteps = std::min(lLeft, kStepsOfRun);
        const lyrsdk::LeakCheck lLeaks;
        ASSERT_EQ(RunSeed(lSeed, lSteps), "");
        lLeft -= lSteps;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, PropertyModelRun, testing::Range(std::uint64_t(0), kRuns));

// --- the comparison notices mistakes

class PropertyModelFault : public testing::TestWithParam<int> {
protected:
    // A sequence that shows the fault, cut off where it does.
    static std::vector<Operation> Caught(Fault pFault) {
        for (std::uint64_t lSeed = 1; lSeed <= 20; ++lSeed) {
            std::vector<Operation> lOperations = Generate(lSeed, 3000);
            const Outcome lOutcome = RunOperations(lOperations, 50, pFault);
            lOperations.resize(lOutcome.mSteps);
            if (!lOutcome.mSame)
                return lOperations;
        }
        return {};
    }
};

TEST_P(PropertyModelFault, IsCaughtAndShownInAFewSteps) {
    const Fault lFault = static_cast<Fault>(GetParam());
    const std::vector<Operation> lOperations = Caught(lFault);
    ASSERT_FALSE(lOperations.empty());

    const std::vector<Operation> lShort = Shorten(lOperations, lFault, 300 * lOperations.size() + 2000000);
    EXPECT_LE(lShort.size(), 8u) << Print(lShort, lFault);
    const std::string lWhat = RunOperations(lShort, 1, lFault).mWhat;
    EXPECT_NE(lWhat, "");
    // The sequence shows the mistake and nothing else.
    EXPECT_TRUE(RunOperations(lShort, 1).mSame);
    // No operation of it can be left out.
    for (std::size_t i = 0; i < lShort.size(); ++i) {
        std::vector<Operation> lRest = lShort;
        lRest.erase(lRest.begin() + static_cast<std::ptrdiff_t>(i));
        EXPECT_NE(RunOperations(lRest, 0, lFault).mWhat, lWhat) << "without " << ToText(lShort[i]);
    }
}

INSTANTIATE_TEST_SUITE_P(Each, PropertyModelFault, testing::Range(1, static_cast<int>(Fault::eCount)));

TEST(PropertyModel, PrintsSeedSequenceAndDifferenceOfARunThatDiverges) {
    const std::string lText = RunSeed(3, 3000, Fault::eRefusedPairLeavesNoCopy);
    EXPECT_EQ(lText.rfind("seed 3, operation ", 0), 0u) << lText;
    EXPECT_NE(lText.find("the library says"), std::string::npos) << lText;

    // The lines can be replayed.
    const std::vector<Operation> lOperations = OperationsOf(lText);
    EXPECT_FALSE(RunOperations(lOperations, 1, Fault::eRefusedPairLeavesNoCopy).mSame);
    EXPECT_TRUE(RunOperations(lOperations, 1).mSame);
}

// --- findings

TEST(PropertyModelFinding, AnAddThatTheIdsEndInTakesItsNameOutOfTheBracket) {
    const std::vector<Operation> lOperations = OperationsOf(
        "CreateNamed 206 206\n"
        "Add 235 190 27 64\n"
        "Add 115 206 97 124\n"
        "BeginCreateOrFind 49\n"
        "Add 206 0 22 255\n"
        "CreateInstance 229 235\n"
        "CreateRoot\n"
        "AddTyped 196 179 32 116\n"
        "CreateNamed 107 10\n"
        "AddTyped 73 73 73 16\n"
        "SkipIds 41 255\n"
        "AddTyped 0 8 92 33\n");
    ASSERT_EQ(lOperations.size(), 12u);
    const Outcome lOutcome = RunOperations(lOperations, 1);
    EXPECT_TRUE(lOutcome.mSame) << lOutcome.mDifference;
}

// --- operations

TEST(PropertyModelOperation, IsDrawnFromNumbersThatAreTheSameOnEveryMachine) {
    Random lRandom(1234567);
    EXPECT_EQ(lRandom.Next(), 6457827717110365317u);
    EXPECT_EQ(lRandom.Next(), 3203168211198807973u);
}

TEST(PropertyModelOperation, IsOfEveryKindSoonerOrLater) {
    std::set<Kind> lKinds;
    for (const Operation& lOperation : Generate(42, 20000))
        lKinds.insert(lOperation.mKind);
    EXPECT_EQ(lKinds.size(), static_cast<std::size_t>(Kind::eCount));
}

TEST(PropertyModelOperation, ReadsBackFromItsText) {
    for (const Operation& lOperation : Generate(7, 1000)) {
        Operation lRead;
        ASSERT_TRUE(FromText(ToText(lOperation), lRead)) << ToText(lOperation);
        EXPECT_EQ(lRead.mKind, lOperation.mKind);
        EXPECT_EQ(lRead.mArguments, lOperation.mArguments);
        EXPECT_EQ(lRead.mRefused, 0);
    }
    for (const char* lText : {"Set 1 0 9 20 0 !3", "Set 1 0 9 20 0 !255+", "PushRoot 1 !1+"}) {
        Operation lRead;
        ASSERT_TRUE(FromText(std::string(lText) + "   # said", lRead)) << lText;
        EXPECT_EQ(ToText(lRead), lText);
    }
    Operation lRead;
    for (const char* lText : {"", "Nothing 1 2", "Set 1 2", "Set 1 2 3 4 256", "Set 1 2 x 4 5", "# Set 1 2 3 4 5"})
        EXPECT_FALSE(FromText(lText, lRead)) << lText;
}

TEST(PropertyModelOperation, ComesFromAnyBytes) {
    Random lRandom(99);
    for (int lRun = 0; lRun < 20; ++lRun) {
        std::vector<std::uint8_t> lBytes(2000 + static_cast<std::size_t>(lRun));
        for (std::uint8_t& lByte : lBytes)
            lByte = static_cast<std::uint8_t>(lRandom.Next());
        const std::uint8_t* lNext = lBytes.data();
        const std::uint8_t* lEnd = lNext + lBytes.size();
        std::vector<Operation> lOperations;
        for (Operation lOperation; DecodeOperation(lNext, lEnd, lOperation);)
            lOperations.push_back(lOperation);
        EXPECT_EQ(lNext, lEnd);
        EXPECT_GT(lOperations.size(), 300u);
        const Outcome lOutcome = RunOperations(lOperations, 50);
        EXPECT_TRUE(lOutcome.mSame) << lOutcome.mDifference;
    }
}

TEST(PropertyModelOperation, IsTheKindOfItsFirstByteAndTheNumbersBehindIt) {
    const std::uint8_t lBytes[] = {static_cast<std::uint8_t>(Kind::ePush), 3, 4, static_cast<std::uint8_t>(Kind::eSet),
                                   5};
    const std::uint8_t* lNext = lBytes;
    const std::uint8_t* lEnd = lBytes + sizeof(lBytes);
    Operation lOperation;
    ASSERT_TRUE(DecodeOperation(lNext, lEnd, lOperation));
    EXPECT_EQ(ToText(lOperation), "Push 3 4");
    // What is missing at the end is 0.
    ASSERT_TRUE(DecodeOperation(lNext, lEnd, lOperation));
    EXPECT_EQ(ToText(lOperation), "Set 5 0 0 0 0");
    EXPECT_FALSE(DecodeOperation(lNext, lEnd, lOperation));
}

}  // namespace
}  // namespace lyrmodel
