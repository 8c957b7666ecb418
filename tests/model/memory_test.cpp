#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include "tests/model/driver.h"
#include "tests/support/memory_probe.h"
#include "tests/support/scarce_memory.h"

// Random operations while random requests for memory are refused. What the library does not do changes nothing that it
// shows, save for what is listed here, and is done when memory is back.

namespace lyrmodel {
namespace {

using Scarce = Driver::Scarce;

constexpr std::uint64_t kSeeds = 40;
constexpr std::uint64_t kSteps = 500;

// What may be left of an operation that failed.
const std::map<Kind, const char*> kPartlyDone = {
    {Kind::eSet, "the value seen became the page's own"},
    {Kind::eSetMinMax, "the bound is there, without the value"},
    {Kind::ePush, "properties that had no room above stayed where they were"},
    {Kind::ePushRoot, "the same"},
    {Kind::eAddTyped, "the ids of what was added and taken back are used up"},
    {Kind::eAddItems, "the same"},
    {Kind::eAddShared, "the same"},
};

// Refused often enough to say something.
const std::set<Kind> kAsksOften = {Kind::eCreateRoot,
                                   Kind::eCreateNamed,
                                   Kind::eCreateInstance,
                                   Kind::eCreateTyped,
                                   Kind::eAdd,
                                   Kind::eAddTyped,
                                   Kind::eAddItems,
                                   Kind::eAddShared,
                                   Kind::eSet,
                                   Kind::eSetLabel,
                                   Kind::eSetMinMax,
                                   Kind::eAddEnumValue,
                                   Kind::eModifyFlags,
                                   Kind::eSetFlagsInheritType,
                                   Kind::eSetValueInheritType,
                                   Kind::ePushRoot,
                                   Kind::eConnectSrc,
                                   Kind::eConnectDst,
                                   Kind::eBeginCreateOrFind,
                                   Kind::eGetSrc,
                                   Kind::eLookAt};

class PropertyModelMemory : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(lyrsdk::MemoryProbe::LiveBlocks(), 0u);
        lyrsdk::ScarceMemory::Install();
    }
    void TearDown() override {
        EXPECT_EQ(lyrsdk::ScarceMemory::LiveBlocks(), 0u);
        lyrsdk::MemoryProbe::Install();
    }
};

TEST_F(PropertyModelMemory, IsRefusedWithoutHarmAndUsedWhenItIsBack) {
    ScarceCounts lCounts{};
    for (std::uint64_t lSeed = 1; lSeed <= kSeeds; ++lSeed)
        ASSERT_EQ(RunSeedScarce(lSeed, kSteps, lCounts), "");

    for (std::size_t i = 0; i < lCounts.size(); ++i) {
        const Kind lKind = static_cast<Kind>(i);
        const auto lCount = [&](Scarce pOutcome) { return lCounts[i][static_cast<std::size_t>(pOutcome)]; };
        const std::uint64_t lRefused = lCount(Scarce::eDone) + lCount(Scarce::eUndone) + lCount(Scarce::ePartly);
        EXPECT_GE(lRefused, kAsksOften.count(lKind) ? 5u : 0u) << NameOf(lKind);
        EXPECT_TRUE(lCount(Scarce::ePartly) == 0 || kPartlyDone.count(lKind)) << NameOf(lKind);
        if (Driver::NeverAsks(lKind)) {
            EXPECT_EQ(lRefused, 0u) << NameOf(lKind);
        }
    }
    std::size_t lSeen = 0;
    for (const auto& lRow : kPartlyDone)
        lSeen += lCounts[static_cast<std::size_t>(lRow.first)][static_cast<std::size_t>(Scarce::ePartly)] > 0 ? 1u : 0u;
    EXPECT_GE(lSeen, 4u);
}

// Each request of an operation is refused in turn, alone and with all behind it; how often each outcome came.
std::map<Scarce, int> RefuseEach(const std::vector<const char*>& pBefore, const char* pOperation) {
    std::map<Scarce, int> lOutcomes;
    Operation lOperation;
    for (const bool lForever : {false, true}) {
        bool lRefused = true;
        for (std::size_t lFirst = 0; lRefused && lFirst < 100; ++lFirst) {
            Driver lDriver;
            for (const char* lText : pBefore) {
                EXPECT_TRUE(FromText(lText, lOperation)) << lText;
                EXPECT_TRUE(lDriver.Apply(lOperation)) << lDriver.Difference();
            }
            EXPECT_TRUE(FromText(pOperation, lOperation)) << pOperation;
            const Scarce lOutcome = lDriver.ApplyScarce(lOperation, lFirst, lForever);
            EXPECT_NE(lOutcome, Scarce::eDiffers) << lDriver.Last() << ": " << lDriver.Difference();
            ++lOutcomes[lOutcome];
            lRefused = lOutcome != Scarce::eNotRefused && lOutcome != Scarce::eDiffers;
        }
    }
    EXPECT_EQ(lOutcomes[Scarce::eNotRefused], 2);
    return lOutcomes;
}

// A text on a page, and an instance of the page.
const std::vector<const char*> kInstanceOfAText = {"CreateNamed 0 9", "CreateInstance 0 0"};

TEST_F(PropertyModelMemory, IsRefusedWhileATextIsOverridden) {
    std::map<Scarce, int> lOutcomes = RefuseEach(kInstanceOfAText, "Set 1 0 9 20 0");
    EXPECT_GE(lOutcomes[Scarce::eUndone], 2);
    EXPECT_GE(lOutcomes[Scarce::ePartly], 1);
}

TEST_F(PropertyModelMemory, IsRefusedWhileManyPropertiesArePushed) {
    std::vector<const char*> lBefore = kInstanceOfAText;
    for (const char* lStep : {"CreateInstance 1 0", "Add 2 0 0 0", "Add 2 0 1 1", "Add 2 0 2 9", "Set 2 1 0 1 0"})
        lBefore.push_back(lStep);
    std::map<Scarce, int> lOutcomes = RefuseEach(lBefore, "PushRoot 2");
    EXPECT_GE(lOutcomes[Scarce::ePartly], 4);
}

// An entry that holds nothing goes without memory, also among those that have no room above.
TEST_F(PropertyModelMemory, IsRefusedWhileAnEmptyEntryIsPushedAmongOthers) {
    std::vector<const char*> lBefore = {"CreateNamed 0 9", "Add 0 0 0 0", "CreateInstance 0 0", "CreateInstance 1 0"};
    for (const char* lStep : {"Set 2 0 9 1 0", "ChangeEntryState 2 1 0", "Add 2 0 1 1"})
        lBefore.push_back(lStep);
    std::map<Scarce, int> lOutcomes = RefuseEach(lBefore, "PushRoot 2");
    EXPECT_GE(lOutcomes[Scarce::ePartly], 2);
}

TEST_F(PropertyModelMemory, IsRefusedWhileATypePageIsCopied) {
    std::vector<const char*> lBefore = {"CreateNamed 0 0", "CreateNamed 1 0", "BeginCreateOrFind 1"};
    for (const char* lAdd : {"Add 0 0 0 0", "Add 0 0 1 9", "Add 0 1 2 9"})
        lBefore.push_back(lAdd);
    std::map<Scarce, int> lOutcomes = RefuseEach(lBefore, "AddTyped 1 0 3 0");
    EXPECT_GE(lOutcomes[Scarce::eUndone], 4);
    EXPECT_GE(lOutcomes[Scarce::ePartly], 4);
}

// The model kept the name of an add that was refused behind its only property; a lookup then found the namesake above.
TEST_F(PropertyModelMemory, IsRefusedWhileABracketOfAnInstanceHasNotSeenTheNamesake) {
    std::map<Scarce, int> lOutcomes = RefuseEach({"CreateNamed 0 0", "Add 0 0 0 0", "CreateInstance 0 0",
                                                  "CreateNamed 0 0", "BeginCreateOrFind 1", "Add 0 0 51 0"},
                                                 "AddTyped 1 0 51 2");
    EXPECT_GE(lOutcomes[Scarce::ePartly], 2);
}

TEST_F(PropertyModelMemory, IsRefusedInAShortSequenceWhenTheTwoDiverge) {
    ScarceCounts lCounts{};
    const std::string lText = RunSeedScarce(3, 3000, lCounts, Fault::eRefusedPairLeavesNoCopy);
    EXPECT_EQ(lText.rfind("seed 3, operation ", 0), 0u) << lText;
    EXPECT_NE(lText.find("the library says"), std::string::npos) << lText;
    // This mistake shows with memory, too.
    EXPECT_EQ(lText.find('!'), std::string::npos) << lText;
    EXPECT_LE(std::count(lText.begin(), lText.end(), '\n'), 10) << lText;

    std::vector<Operation> lOperations;
    std::istringstream lLines(lText);
    for (std::string lLine; std::getline(lLines, lLine);) {
        Operation lOperation;
        if (FromText(lLine, lOperation))
            lOperations.push_back(lOperation);
    }
    EXPECT_FALSE(RunOperations(lOperations, 1, Fault::eRefusedPairLeavesNoCopy).mSame) << lText;
    EXPECT_TRUE(RunOperations(lOperations, 1).mSame) << lText;
}

TEST_F(PropertyModelMemory, IsCountedByRequest) {
    lyrsdk::ScarceMemory::Refuse(1, false);
    lyrsdk::KLyrPropertyPage* lPage = lyrsdk::KLyrPropertyPage::Create("a", lyrsdk::eINTEGER1);
    EXPECT_EQ(lyrsdk::ScarceMemory::Relent(), 1u);
    EXPECT_EQ(lPage, nullptr);
    lyrsdk::ScarceMemory::Refuse(0, true);
    {
        const lyrsdk::ScarceMemory::Pause lPause;
        lPage = lyrsdk::KLyrPropertyPage::Create("a", lyrsdk::eINTEGER1);
    }
    EXPECT_EQ(lyrsdk::ScarceMemory::Relent(), 0u);
    ASSERT_NE(lPage, nullptr);
    EXPECT_GT(lyrsdk::ScarceMemory::LiveBlocks(), 0u);
    lPage->Destroy();
}

}  // namespace
}  // namespace lyrmodel
