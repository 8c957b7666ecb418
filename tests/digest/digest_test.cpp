#include "tests/digest/digest.h"

#include <gtest/gtest.h>

// The numbers hold on every word size, with every compiler and at every optimisation level. One that changes means that
// results have changed.

namespace lyrsdk {
namespace {

TEST(Digest, OfAllPairsOfTypesIsTheSameOnEveryTarget) {
    EXPECT_EQ(0xE69171C225705F44ull, DigestOfConversions());
}

TEST(Digest, OfRandomNumbersConvertedIsTheSameOnEveryTarget) {
    EXPECT_EQ(0x1EC918E75D6B5667ull, DigestOfRandomConversions());
}

TEST(Digest, OfNumbersAsTextsIsTheSameOnEveryTarget) {
    EXPECT_EQ(0x908A30746F1FEF6Eull, DigestOfNumberTexts());
}

TEST(Digest, OfTextsReadAsNumbersIsTheSameOnEveryTarget) {
    EXPECT_EQ(0x080FE9B38F53B905ull, DigestOfParsing());
}

TEST(Digest, OfTimesDatesLengthsAndUnitsIsTheSameOnEveryTarget) {
    EXPECT_EQ(0x3575235D1C0409D1ull, DigestOfTimesAndUnits());
}

TEST(Digest, OfComparisonsIsTheSameOnEveryTarget) {
    EXPECT_EQ(0x7521EAE9CCE62298ull, DigestOfComparisons());
}

}  // namespace
}  // namespace lyrsdk
