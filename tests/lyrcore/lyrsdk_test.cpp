#include "lyrfilesdk/lyrsdk.h"

#include <gtest/gtest.h>

// One scene from its types to its end, with nothing but the header that includes the whole public interface. The steps
// of a test build on one another.

namespace {

using lyrsdk::KLyrPropertyHandle;

class DataOnly : public lyrsdk::KLyrConnectionPointFilter {
public:
    bool Selects(const lyrsdk::KLyrConnectionPoint*, lyrsdk::kLyrConnectionType pType) const override {
        return (pType & lyrsdk::eLyrConnectionData) != 0;
    }
};

//   lamp   place (x, y typed by number)   power (number)   state (choice: off, on)   made (date)
class LyrSdk : public testing::Test {
protected:
    LyrSdk() {
        mPlace.Add("x", mNumber);
        mPlace.Add("y", mNumber);
        mLamp.BeginCreateOrFindProperty();
        for (const char* lName : {"place", "power", "place", "state", "power", "made"})
            if (!mLamp.Find(lName, true).Valid())
                mLamp.Add(lName, TypeOf(lName));
        mLamp.EndCreateOrFindProperty();
    }
    ~LyrSdk() override {
        for (KLyrPropertyHandle* lPage : {&mDesk, &mHall, &mLamp, &mPlace, &mDate, &mChoice, &mNumber})
            lPage->Destroy();
    }

    const KLyrPropertyHandle& TypeOf(const lyrsdk::KString& pName) const {
        return pName == "place" ? mPlace : pName == "power" ? mNumber : pName == "state" ? mChoice : mDate;
    }

    static KLyrPropertyHandle Part(const KLyrPropertyHandle& pLamp, const char* pPath) {
        return pLamp.Find(pPath, "/", true);
    }
    static bool Write(const KLyrPropertyHandle& pLamp, const char* pPath, const char* pText) {
        const lyrsdk::KString lText(pText);
        return Part(pLamp, pPath).Set(&lText, lyrsdk::eSTRING, true);
    }
    static lyrsdk::KString Read(const KLyrPropertyHandle& pLamp, const char* pPath) {
        lyrsdk::KString lText;
        EXPECT_TRUE(Part(pLamp, pPath).Get(&lText, lyrsdk::eSTRING)) << pPath;
        return lText;
    }

    KLyrPropertyHandle mNumber = KLyrPropertyHandle::Create("number", lyrsdk::eDOUBLE1);
    KLyrPropertyHandle mChoice = KLyrPropertyHandle::Create("choice", lyrsdk::eENUM);
    KLyrPropertyHandle mDate = KLyrPropertyHandle::Create("date", lyrsdk::eDATETIME);
    KLyrPropertyHandle mPlace = KLyrPropertyHandle::Create("place type", lyrsdk::eUNIDENTIFIED);
    KLyrPropertyHandle mLamp = KLyrPropertyHandle::Create("lamp", lyrsdk::eUNIDENTIFIED);
    KLyrPropertyHandle mDesk = KLyrPropertyHandle::Create(mLamp);
    KLyrPropertyHandle mHall = KLyrPropertyHandle::Create(mLamp);
};

TEST_F(LyrSdk, BuildsATypedSceneOnceFromNamesThatRepeat) {
    const char* const lExpected[] = {"place", "x", "y", "power", "state", "made"};
    int lCount = 0;
    for (KLyrPropertyHandle lIt = mDesk.GetFirstDescendent(); lIt.Valid(); lIt = mDesk.GetNextDescendent(lIt), ++lCount)
        EXPECT_STREQ(lIt.GetName(), lExpected[lCount]);
    EXPECT_EQ(lCount, 6);
    EXPECT_TRUE(Part(mDesk, "place/y").IsDescendentOf(Part(mDesk, "place")));
    EXPECT_EQ(Part(mDesk, "place/y").GetTypeInfo(), mNumber);
}

TEST_F(LyrSdk, GivesValuesToThePrototypeAndToItsInstances) {
    EXPECT_TRUE(Write(mLamp, "power", "60"));
    EXPECT_TRUE(Write(mLamp, "made", "2024-02-29T12:00:00"));
    EXPECT_TRUE(Write(mDesk, "place/x", "2.5"));
    EXPECT_FALSE(Write(mDesk, "made", "2023-02-29T12:00:00")) << "no such day";
    EXPECT_STREQ(Read(mDesk, "power"), "60");
    EXPECT_STREQ(Read(mHall, "place/x"), "0");
    EXPECT_STREQ(Read(mHall, "made"), "2024-02-29T12:00:00.000");

    EXPECT_TRUE(Write(mDesk, "power", "40"));
    EXPECT_EQ(Part(mDesk, "power").GetValueInheritType(false), lyrsdk::eLyrOverride);
    EXPECT_TRUE(Write(mDesk, "power", "60")) << "the prototype's value again";
    EXPECT_EQ(Part(mDesk, "power").GetValueInheritType(false), lyrsdk::eLyrInherit);
    double lDefault = 0;
    EXPECT_TRUE(Part(mDesk, "power").GetDefaultValue(&lDefault, lyrsdk::eDOUBLE1));
    EXPECT_EQ(lDefault, 60);
}

TEST_F(LyrSdk, DescribesPushesAndConnects) {
    const double lLeast = 0, lMost = 150;
    KLyrPropertyHandle lPower = Part(mLamp, "power");
    EXPECT_TRUE(lPower.SetLabel("Power (W)") && lPower.SetMin(&lLeast, lyrsdk::eDOUBLE1) &&
                lPower.SetMax(&lMost, lyrsdk::eDOUBLE1));
    EXPECT_TRUE(lPower.ModifyFlags(lyrsdk::LyrPropertyFlags::eANIMATABLE, true));
    KLyrPropertyHandle lState = Part(mHall, "state");
    EXPECT_EQ(lState.AddEnumValue("off"), 0);
    EXPECT_EQ(lState.AddEnumValue("on"), 1);
    EXPECT_TRUE(Write(mHall, "state", "1"));

    EXPECT_TRUE(mHall.PushPropertiesToParentInstance());
    EXPECT_STREQ(Part(mDesk, "state").GetEnumValue(1), "on");
    EXPECT_STREQ(Read(mDesk, "state"), "1");
    EXPECT_STREQ(Part(mDesk, "power").GetLabel(), "Power (W)");
    EXPECT_TRUE(Part(mDesk, "power").HasMax());
    EXPECT_EQ(Part(mDesk, "power").GetFlags(), lyrsdk::LyrPropertyFlags::eANIMATABLE);

    DataOnly lDataOnly;
    EXPECT_TRUE(Part(mDesk, "power").ConnectSrc(Part(mHall, "power"), lyrsdk::eLyrConnectionData));
    EXPECT_TRUE(Part(mDesk, "power").ConnectSrc(mNumber, lyrsdk::eLyrConnectionReference));
    EXPECT_EQ(Part(mDesk, "power").GetSrcCount(&lDataOnly), 1);
    EXPECT_EQ(Part(mDesk, "power").GetSrc(&lDataOnly, 0), Part(mHall, "power"));
    mHall.Destroy();
    EXPECT_EQ(Part(mDesk, "power").GetSrcCount(&lDataOnly), 0);
    EXPECT_EQ(Part(mDesk, "power").GetSrcCount(nullptr), 1);
}

TEST_F(LyrSdk, LeavesInstancesWholeWhenThePrototypeAndTheTypesGo) {
    EXPECT_TRUE(Write(mLamp, "power", "75.5"));
    EXPECT_TRUE(Write(mDesk, "place/x", "2.5"));
    mLamp.Destroy();
    mNumber.Destroy();
    mPlace.Destroy();
    EXPECT_STREQ(Read(mDesk, "power"), "75.5");
    EXPECT_STREQ(Read(mDesk, "place/x"), "2.5");
    EXPECT_STREQ(Read(mHall, "place/x"), "0");
    EXPECT_EQ(Part(mHall, "power").GetType(), lyrsdk::eDOUBLE1);
    EXPECT_FALSE(Part(mHall, "power").GetTypeInfo().Valid());
}

TEST_F(LyrSdk, OffersTheWholeInterface) {
    lyrsdk::KMap<int, int, lyrsdk::KLyrLessCompare<int>, lyrsdk::KHungryAllocator> lMap;
    EXPECT_TRUE(lMap.Insert(1, 2).mSecond);
    lyrsdk::KArrayTemplate<int> lArray;
    EXPECT_EQ(lArray.Add(5), 0);
    lyrsdk::KStringList lList;
    EXPECT_EQ(lList.Add("text", 0), 0);
    lyrsdk::KLyrSdkScopedPtr<lyrsdk::KStringList> lOwner(lyrsdk::LyrSdkNew<lyrsdk::KStringList>());
    EXPECT_TRUE(lOwner);
    EXPECT_EQ(lyrsdk::KTime(1).Get(), 1);
    EXPECT_STREQ(lyrsdk::lyrDistance(1, lyrsdk::KLyrSystemUnit::cm).unitName(), "cm");
    EXPECT_EQ(lyrsdk::KLyrStringSymbol("a"), lyrsdk::KLyrStringSymbol("a"));
    EXPECT_FALSE(lyrsdk::KLyrPlug::GetWipeMode());
    EXPECT_EQ(lyrsdk::LyrTypeSizeOf[lyrsdk::eDOUBLE44], 128);
    const float lSource = 1.5f;
    double lTarget = 0;
    EXPECT_TRUE(lyrsdk::lyrCopy(lTarget, lSource));
    EXPECT_EQ(lTarget, 1.5);
}

}  // namespace
