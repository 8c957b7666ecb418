#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "lyrfilesdk/klyrplugins/klyrsymbol.h"
#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "tests/klyrplugins/value_samples.h"
#include "tests/reliability/failing_memory_scenarios.h"

namespace lyrsdk {
namespace {

const char kLong[] = "a text that is longer than any of those that are there before";

// --- texts of units, dates and distances -----------------------------------------------------------------------------

struct FormsStage {
    KLyrSystemUnit mUnit{2.54, 10};
    lyrDistance mDistance{2.5f, KLyrSystemUnit::Foot};
    lyrDateTime mDate;

    FormsStage() { mDate.fromString("2026-11-21T20:54:00.125"); }
    std::string Shows(Detail) const { return ImageOf(mDistance) + ImageOf(mDate); }
    static testing::AssertionResult Holds() { return testing::AssertionSuccess(); }
};

const Operation<FormsStage> kFormsOperations[] = {
    {"NameOfAUnit", [](FormsStage& pStage) { return ImageOf(pStage.mUnit.GetScaleFactorAsString(true)); }, ""},
    {"NameOfAUnitInFull", [](FormsStage& pStage) { return ImageOf(pStage.mUnit.GetScaleFactorAsString(false)); }, ""},
    {"NameOfADistancesUnit", [](FormsStage& pStage) { return ImageOf(pStage.mDistance.unitName()); }, ""},
    {"TextOfADate", [](FormsStage& pStage) { return ImageOf(pStage.mDate.toString()); }, ""},
};

class FailingMemoryForm : public testing::TestWithParam<Operation<FormsStage>> {};

TEST_P(FailingMemoryForm, IsTheWholeTextOrEmpty) {
    ExpectDoneOrRefused(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Values, FailingMemoryForm, testing::ValuesIn(kFormsOperations), NameOfOperation());

TEST(FailingMemoryForm, IsWrittenToABufferAndReadBackWithoutMemory) {
    ExpectSameWithoutMemory([] {
        char lUnit[64], lDate[32];
        KLyrSystemUnit(3.25, 1.0 / 3).FormatScaleFactor(lUnit, false);
        lyrDateTime lValue;
        EXPECT_TRUE(lValue.fromString("1999-12-31 23:59"));
        lValue.format(lDate);
        return std::string(lUnit) + " " + lDate;
    });
}

// --- symbols ---------------------------------------------------------------------------------------------------------

struct SymbolStage {
    KLyrStringSymbol mSymbol;
    std::vector<KLyrStringSymbol> mMany;
    bool mBracket = false;

    ~SymbolStage() {
        if (mBracket)
            KLyrStringSymbol::BracketClosed();
    }
    void Fill(int pCount) {
        for (int i = 0; i < pCount; ++i)
            mMany.emplace_back(("filler " + std::to_string(i)).c_str());
    }
    std::string Shows(Detail) const {
        std::string lText = mSymbol.Buffer();
        for (const KLyrStringSymbol& lSymbol : mMany)
            lText += std::string("\n") + lSymbol.Buffer();
        return lText;
    }
    // Every text is found where its symbols have it, and only there.
    testing::AssertionResult Holds() const {
        std::vector<const KLyrStringSymbol*> lSymbols{&mSymbol};
        for (const KLyrStringSymbol& lSymbol : mMany)
            lSymbols.push_back(&lSymbol);
        for (const KLyrStringSymbol* lSymbol : lSymbols)
            if (KLyrStringSymbol::FindText(std::string(lSymbol->Buffer()).c_str()) != lSymbol->Buffer())
                return testing::AssertionFailure() << "'" << lSymbol->Buffer() << "' is not found";
        return testing::AssertionSuccess();
    }
};

void TakeShort(SymbolStage& pStage) {
    pStage.mSymbol = "short";
}
// The next text makes the table of texts grow.
void FillTheTable(SymbolStage& pStage) {
    pStage.Fill(64);
}
void DropATextInABracket(SymbolStage& pStage) {
    KLyrStringSymbol::BracketOpened();
    pStage.mBracket = true;
    pStage.mSymbol = "short";
    KLyrStringSymbol("idle");
}

const Operation<SymbolStage> kSymbolOperations[] = {
    {"Constructs", [](SymbolStage&) { return std::string(KLyrStringSymbol(kLong)); }, ""},
    {"AssignsTheFirstText", [](SymbolStage& pStage) { return Answer(pStage.mSymbol.Assign(kLong)); }, "false"},
    {"AssignsAnotherText", [](SymbolStage& pStage) { return Answer(pStage.mSymbol.Assign(kLong)); }, "false",
     Refused::eChangesNothing, TakeShort},
    {"AssignsPartOfItsOwn",
     [](SymbolStage& pStage) {
         return Answer(pStage.mSymbol.Assign(pStage.mSymbol == "short" ? pStage.mSymbol.Buffer() + 1 : "hort"));
     },
     "false", Refused::eChangesNothing, TakeShort},
    {"AssignsByOperator", [](SymbolStage& pStage) { return std::string((pStage.mSymbol = kLong).Buffer()); }, "short",
     Refused::eChangesNothing, TakeShort},
    {"AssignsWhenTheTableIsFull", [](SymbolStage& pStage) { return Answer(pStage.mSymbol.Assign(kLong)); }, "false",
     Refused::eChangesNothing, FillTheTable},
    {"AssignsInABracket", [](SymbolStage& pStage) { return Answer(pStage.mSymbol.Assign(kLong)); }, "false",
     Refused::eChangesNothing, DropATextInABracket},
};

class FailingMemorySymbol : public testing::TestWithParam<Operation<SymbolStage>> {};

TEST_P(FailingMemorySymbol, TakesTheTextOrKeepsItsOwn) {
    ExpectDoneOrRefused(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Values, FailingMemorySymbol, testing::ValuesIn(kSymbolOperations), NameOfOperation());

TEST(FailingMemorySymbol, IsFoundCopiedAndTakenAgainWithoutMemoryAlsoOutOfABracket) {
    SymbolStage lStage;
    DropATextInABracket(lStage);
    const char* lIdle = KLyrStringSymbol::FindText("idle");
    const FailAllocations lFail(0, true);
    const KLyrStringSymbol lCopy(lStage.mSymbol);
    EXPECT_TRUE(lCopy == lStage.mSymbol);
    EXPECT_TRUE(lStage.mSymbol.Assign("idle"));
    EXPECT_EQ(lStage.mSymbol.Buffer(), lIdle);
    EXPECT_EQ(KLyrStringSymbol::FindText("never taken"), nullptr);
    EXPECT_EQ(lFail.Failed(), 0u);
}

TEST(FailingMemorySymbol, LeavesNoTableBehindWhenTheFirstTextFoundNoMemory) {
    const LeakCheck lLeaks;
    const FailAllocations lFail(1, true);
    EXPECT_TRUE(KLyrStringSymbol(kLong).IsEmpty());
    EXPECT_EQ(lFail.Failed(), 1u);
}

// The table goes on with longer chains, and grows later.
TEST(FailingMemorySymbol, IsTakenThoughTheTableCannotGrow) {
    const LeakCheck lLeaks;
    SymbolStage lStage;
    lStage.Fill(64);
    {
        const FailAllocations lFail(0, false);
        lStage.mSymbol = kLong;
        EXPECT_EQ(lFail.Failed(), 1u);
    }
    EXPECT_STREQ(lStage.mSymbol.Buffer(), kLong);
    lStage.Fill(300);
    EXPECT_TRUE(lStage.Holds());
}

// --- blobs -----------------------------------------------------------------------------------------------------------

struct BlobStage {
    lyrBlob mBlob;
    lyrBlob mOther;
    lyrBlob mEmpty;

    BlobStage() {
        mBlob.Assign("bytes", 5);
        mOther.Assign(kLong, 50);
    }
    std::string Shows(Detail) const { return ImageOf(mBlob) + "|" + ImageOf(mOther) + "|" + ImageOf(mEmpty); }
    static testing::AssertionResult Holds() { return testing::AssertionSuccess(); }
};

const Operation<BlobStage> kBlobOperations[] = {
    {"Copies", [](BlobStage& pStage) { return ImageOf(lyrBlob(pStage.mOther)); }, ""},
    {"AssignsByOperator", [](BlobStage& pStage) { return Answer((pStage.mBlob = pStage.mOther).GetSize()); }, "5"},
    {"AssignsABlob", [](BlobStage& pStage) { return Answer(pStage.mBlob.Assign(pStage.mOther)); }, "false"},
    {"AssignsBytes", [](BlobStage& pStage) { return Answer(pStage.mBlob.Assign(kLong, 40)); }, "false"},
    {"AssignsTheFirstBytes", [](BlobStage& pStage) { return Answer(pStage.mEmpty.Assign(kLong, 1)); }, "false"},
};

class FailingMemoryBlob : public testing::TestWithParam<Operation<BlobStage>> {};

TEST_P(FailingMemoryBlob, TakesTheBytesOrKeepsItsOwn) {
    ExpectDoneOrRefused(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Values, FailingMemoryBlob, testing::ValuesIn(kBlobOperations), NameOfOperation());

TEST(FailingMemoryBlob, TakesBytesThatFitAndItsOwnWithoutMemory) {
    BlobStage lStage;
    const FailAllocations lFail(0, true);
    EXPECT_TRUE(lStage.mOther.Assign(lStage.mBlob));
    EXPECT_TRUE(lStage.mOther.Assign(lStage.mOther));
    EXPECT_TRUE(lStage.mOther == lStage.mBlob);
    EXPECT_TRUE(lStage.mBlob.Assign(nullptr, 9));
    lyrBlob lMoved(static_cast<lyrBlob&&>(lStage.mOther));
    lStage.mEmpty = static_cast<lyrBlob&&>(lMoved);
    EXPECT_EQ(ImageOf(lStage.mEmpty), "bytes");
    EXPECT_EQ(lFail.Failed(), 0u);
}

// --- conversion ------------------------------------------------------------------------------------------------------

// One value of each code, those that own memory with more of it than a default has.
class Value {
public:
    explicit Value(ELyrType pType) : mType(pType), mValue(lyrCreate(pType)) {}
    ~Value() { lyrDestroy(mType, mValue); }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

    void Sample() {
        const KString lText(mType == eSTRING ? kLong : "1");
        lyrBlob lBlob;
        lBlob.Assign(kLong, 30);
        if (mType == eBLOB)
            lyrCopy(mValue, mType, &lBlob, eBLOB);
        else if (mType == eDATETIME)
            static_cast<lyrDateTime*>(mValue)->fromString("2026-11-21T20:54:00.125");
        else if (mType == eDISTANCE)
            ::new (mValue) lyrDistance(2.5f, KLyrSystemUnit::Foot);
        else if (mType == eTIME)
            ::new (mValue) KTime(705600001);
        else if (lyrHoldsValue(mType) && (mType < eDOUBLE2 || mType > eDOUBLE44))
            lyrCopy(mValue, mType, &lText, eSTRING);
    }
    void* Get() const { return mValue; }
    std::string Image() const { return ImageOf(mType, mValue); }

private:
    ELyrType mType;
    void* mValue;
};

std::vector<ELyrType> AllTypes() {
    std::vector<ELyrType> lTypes;
    for (int i = 0; i < eMAX_TYPES; ++i)
        lTypes.push_back(static_cast<ELyrType>(i));
    return lTypes;
}

TEST(FailingMemoryValue, IsCreatedOrNot) {
    for (const ELyrType lType : AllTypes()) {
        SCOPED_TRACE(lType);
        if (lyrStorageSize(lType) == 0) {
            EXPECT_EQ(lyrCreate(lType), nullptr);
            continue;
        }
        WithEveryAllocationFailing([lType](FailurePoint pPoint) {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            void* lValue = lyrCreate(lType);
            EXPECT_EQ(lValue != nullptr, lFail.Failed() == 0);
            lyrDestroy(lType, lValue);
            return lFail.Failed();
        });
    }
}

// Into every destination that owns memory, from every source; all other conversions ask for none.
TEST(FailingMemoryValue, IsConvertedOrLeavesTheDestinationAsItWas) {
    ReportRecorder lReports;
    int lAsking = 0;
    for (const ELyrType lFrom : AllTypes()) {
        Value lSource(lFrom);
        lSource.Sample();
        for (const ELyrType lTo : AllTypes()) {
            SCOPED_TRACE(testing::Message() << lFrom << " into " << lTo);
            Value lDone(lTo);
            const std::size_t lBefore = MemoryProbe::Allocations();
            const bool lConverts = lyrCopy(lDone.Get(), lTo, lSource.Get(), lFrom);
            if (MemoryProbe::Allocations() == lBefore) {
                Value lWithout(lTo);
                const FailAllocations lFail(0, true);
                EXPECT_EQ(lyrCopy(lWithout.Get(), lTo, lSource.Get(), lFrom), lConverts);
                EXPECT_EQ(lWithout.Image(), lDone.Image());
                EXPECT_EQ(lFail.Failed(), 0u);
                continue;
            }
            ++lAsking;
            WithEveryAllocationFailing([&](FailurePoint pPoint) {
                Value lValue(lTo);
                const std::string lOld = lValue.Image();
                std::size_t lFailed = 0;
                bool lCopied = false;
                {
                    const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
                    lCopied = lyrCopy(lValue.Get(), lTo, lSource.Get(), lFrom);
                    lFailed = lFail.Failed();
                }
                EXPECT_EQ(lCopied, lFailed == 0);
                EXPECT_EQ(lValue.Image(), lCopied ? lDone.Image() : lOld);
                EXPECT_TRUE(lyrCopy(lValue.Get(), lTo, lSource.Get(), lFrom));
                EXPECT_EQ(lValue.Image(), lDone.Image());
                return lFailed;
            });
        }
    }
    lReports.Clear();
    EXPECT_EQ(lAsking, 22 + 20) << "every code into texts, and all but distances and dates into blobs";
}

TEST(FailingMemoryValue, GivesFalseAsATextOrNot) {
    WithEveryAllocationFailing([](FailurePoint pPoint) {
        KString lText("old");
        const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
        const bool lCopied = lyrCopy(lText, false);
        EXPECT_EQ(lCopied, lFail.Failed() == 0);
        EXPECT_STREQ(lText.Buffer(), lFail.Failed() == 0 ? "false" : "old");
        return lFail.Failed();
    });
}

// A longer value in place of a shorter one, which must survive.
TEST(FailingMemoryValue, KeepsATextOrBlobThatCouldNotBeReplaced) {
    for (const ELyrType lType : {eSTRING, eBLOB}) {
        SCOPED_TRACE(lType);
        Value lSource(lType);
        lSource.Sample();
        WithEveryAllocationFailing([&](FailurePoint pPoint) {
            KString lText("old");
            lyrBlob lBlob;
            lBlob.Assign("old", 3);
            void* lTarget = lType == eSTRING ? static_cast<void*>(&lText) : &lBlob;
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            const bool lCopied = lyrCopy(lTarget, lType, lSource.Get(), lType);
            EXPECT_EQ(lCopied, lFail.Failed() == 0);
            EXPECT_EQ(lType == eSTRING ? ImageOf(lText) : ImageOf(lBlob), lCopied ? lSource.Image() : "old");
            return lFail.Failed();
        });
    }
}

TEST(FailingMemoryValue, IsMadeInPlaceAndComparedWithoutMemory) {
    for (const ELyrType lType : AllTypes()) {
        if (!lyrHoldsValue(lType))
            continue;
        SCOPED_TRACE(lType);
        Value lValue(lType);
        lValue.Sample();
        alignas(std::max_align_t) unsigned char lMemory[kLyrMaxValueSize];
        const FailAllocations lFail(0, true);
        EXPECT_TRUE(lyrCompare(lValue.Get(), lValue.Get(), lType));
        EXPECT_TRUE(lyrConstruct(lType, lMemory));
        EXPECT_TRUE(lyrCompare(lMemory, lMemory, lType));
        lyrDestruct(lType, lMemory);
        EXPECT_EQ(lFail.Failed(), 0u);
    }
}

template <typename T>
void ExpectReadWithoutMemory(const char* pText, T pExpected) {
    const KString lText(pText);
    const FailAllocations lFail(0, true);
    T lValue{};
    EXPECT_TRUE(lyrCopyStr(lValue, lText));
    EXPECT_TRUE(lValue == pExpected);
    EXPECT_EQ(lFail.Failed(), 0u);
}

TEST(FailingMemoryValue, IsReadFromATextWithoutMemory) {
    ExpectReadWithoutMemory<bool>(" True ", true);
    ExpectReadWithoutMemory<char>("65", 'A');
    ExpectReadWithoutMemory<unsigned char>("-1", 255);
    ExpectReadWithoutMemory<short>("-32768", -32768);
    ExpectReadWithoutMemory<unsigned short>("65535", 65535);
    ExpectReadWithoutMemory<int>("\t+7", 7);
    ExpectReadWithoutMemory<unsigned int>("7", 7);
    ExpectReadWithoutMemory<long long>("-9223372036854775808", -9223372036854775807 - 1);
    ExpectReadWithoutMemory<unsigned long long>("18446744073709551615", 18446744073709551615u);
    ExpectReadWithoutMemory<double>("1234567890123456789012345678901234567890.5e-30", 1234567890.123456789);
}

}  // namespace
}  // namespace lyrsdk
