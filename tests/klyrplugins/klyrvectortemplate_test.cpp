#include "lyrfilesdk/klyrplugins/klyrvectortemplate.h"

#include <gtest/gtest.h>

#include <limits>

namespace lyrsdk {
namespace {

static_assert(sizeof(lyrDouble2) == 16 && sizeof(lyrDouble3) == 24 && sizeof(lyrDouble4) == 32, "arrays only");
static_assert(sizeof(lyrDouble44) == 128, "sixteen doubles");

TEST(LyrVectorTemplate, StartsWithZerosAndGivesItsElements) {
    lyrDouble3 lVector;
    EXPECT_TRUE((lVector == lyrDouble3{0, 0, 0}));
    lVector[1] = 5;
    const lyrDouble3& lConstant = lVector;
    EXPECT_EQ(5, lConstant[1]);
    EXPECT_EQ(5, lVector.mData[1]);
    lyrDouble44 lMatrix;
    lMatrix[2][3] = 7;
    EXPECT_EQ(7, lMatrix.mData[2].mData[3]);
}

TEST(LyrVectorTemplate, SetsAllElementsOfATwoAndThreeVectorToAScalar) {
    lyrDouble2 lTwo;
    lTwo = 2.5;
    EXPECT_TRUE((lTwo == lyrDouble2{2.5, 2.5}));
    lyrDouble3 lThree = {1, 2, 3};
    lThree = lThree[2];
    EXPECT_TRUE((lThree == lyrDouble3{3, 3, 3}));
    lThree = {1, 2, 3};
    lThree = lThree[0];
    EXPECT_TRUE((lThree == lyrDouble3{1, 1, 1}));
}

TEST(LyrVectorTemplate, KeepsTheFourthElementWhenAThreeVectorIsAssigned) {
    lyrDouble4 lFour = {9, 9, 9, 9};
    lFour = lyrDouble3{1, 2, 3};
    EXPECT_TRUE((lFour == lyrDouble4{1, 2, 3, 9}));
}

TEST(LyrVectorTemplate, ShowsTheFirstThreeElementsOfAFourVectorInPlace) {
    lyrDouble4 lFour = {1, 2, 3, 4};
    lyrDouble3& lThree = lFour;
    EXPECT_EQ(static_cast<void*>(&lFour), static_cast<void*>(&lThree));
    EXPECT_TRUE((lThree == lyrDouble3{1, 2, 3}));
    lThree[0] = 8;
    EXPECT_EQ(8, lFour[0]);
    lFour[2] = 6;
    EXPECT_EQ(6, lThree[2]);
    const lyrDouble4& lConstant = lFour;
    const lyrDouble3& lView = lConstant;
    EXPECT_EQ(8, lView[0]);
    lFour = lThree;
    EXPECT_TRUE((lFour == lyrDouble4{8, 2, 6, 4}));
}

TEST(LyrVectorTemplate, ComparesElementByElement) {
    for (int i = 0; i < 4; ++i) {
        lyrDouble4 lFour = {1, 2, 3, 4};
        lFour[i] = 0.5;
        EXPECT_TRUE((lFour != lyrDouble4{1, 2, 3, 4})) << i;
        for (int j = 0; j < 4; ++j) {
            lyrDouble44 lMatrix;
            lMatrix[i][j] = 1;
            EXPECT_FALSE(lMatrix == lyrDouble44()) << i << j;
            EXPECT_TRUE(lMatrix == lMatrix);
        }
    }
    for (int i = 0; i < 3; ++i) {
        lyrDouble3 lThree = {1, 2, 3};
        lThree[i] = 0.5;
        EXPECT_TRUE((lThree != lyrDouble3{1, 2, 3})) << i;
    }
    EXPECT_FALSE((lyrDouble2{1, 2} == lyrDouble2{1, 3}));
    EXPECT_FALSE((lyrDouble2{1, 2} == lyrDouble2{0, 2}));
    EXPECT_TRUE((lyrDouble2{0.0, 1} == lyrDouble2{-0.0, 1}));
    const double lNaN = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE((lyrDouble2{lNaN, 1} == lyrDouble2{lNaN, 1}));
}

}  // namespace
}  // namespace lyrsdk
