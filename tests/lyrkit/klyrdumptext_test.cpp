#include "lyrfilesdk/lyrkit/klyrdumptext.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <locale>
#include <sstream>

#include "tests/support/handle_pages.h"

namespace lyrsdk {
namespace {

class DumpTextTest : public HandleTest {
protected:
    // What pWrite writes to a stream.
    template <typename Write>
    static std::string Written(Write pWrite) {
        std::ostringstream lStream;
        pWrite(lStream);
        return lStream.str();
    }
    static std::string Text(std::string_view pText) {
        return Written([&](std::ostream& pStream) { lyrDumpText(pStream, pText); });
    }
    static std::string Quoted(std::string_view pText) {
        return Written([&](std::ostream& pStream) { lyrDumpQuoted(pStream, pText); });
    }
    // "(none)" for what is refused; nothing may be written then.
    static std::string Value(const KLyrPropertyHandle& pProperty, int pMaxLength = -1) {
        bool lDone = false;
        const std::string lText =
            Written([&](std::ostream& pStream) { lDone = lyrDumpValue(pStream, pProperty, pMaxLength); });
        EXPECT_TRUE(lDone || lText.empty());
        return lDone ? lText : "(none)";
    }
    static std::string Limits(const KLyrPropertyHandle& pProperty, bool pSoft) {
        bool lDone = false;
        const std::string lText =
            Written([&](std::ostream& pStream) { lDone = lyrDumpLimits(pStream, pProperty, pSoft); });
        EXPECT_TRUE(lDone || lText.empty());
        return lDone ? lText : "(none)";
    }
    static std::string Path(const KLyrPropertyHandle& pProperty, char pSeparator = '/') {
        return Written([&](std::ostream& pStream) { lyrDumpPath(pStream, pProperty, pSeparator); });
    }
};

// --- characters ------------------------------------------------------------------------------------------------------

TEST_F(DumpTextTest, ReadableTextStaysAsItIs) {
    EXPECT_EQ(Text("Lampe n\xC2\xB0 3, \xE7\x81\xAF, \xF0\x9F\x92\xA1 \"'&<"),
              "Lampe n\xC2\xB0 3, \xE7\x81\xAF, \xF0\x9F\x92\xA1 \"'&<");
    EXPECT_EQ(Text(""), "");
}

TEST_F(DumpTextTest, WhatBreaksALineOrSteersATerminalIsEscaped) {
    EXPECT_EQ(Text("a\nb\tc\rd\x1B\x7F"), "a\\nb\\tc\\x0Dd\\x1B\\x7F");
    EXPECT_EQ(Text(std::string_view("\0x", 2)), "\\x00x");
    EXPECT_EQ(Text("\xC2\x80 \xC2\x9F \xC2\xA0"), "\\xC2\\x80 \\xC2\\x9F \xC2\xA0");
    // Those that break or reverse a line are in two runs: U+2028 to U+202E and U+2066 to U+2069.
    for (int lLast = 0x80; lLast <= 0xBF; ++lLast) {
        for (const int lMiddle : {0x80, 0x81}) {
            const std::string lText = {'\xE2', static_cast<char>(lMiddle), static_cast<char>(lLast)};
            const bool lUnsafe = lMiddle == 0x80 ? lLast >= 0xA8 && lLast <= 0xAE : lLast >= 0xA6 && lLast <= 0xA9;
            EXPECT_EQ(Text(lText).substr(0, 4) == "\\xE2", lUnsafe) << lLast;
            EXPECT_EQ(Text(lText).size(), lUnsafe ? 12u : 3u);
        }
    }
    EXPECT_EQ(Text("\\n"), "\\\\n");
}

TEST_F(DumpTextTest, EveryByteThatIsNotUtf8IsEscaped) {
    EXPECT_EQ(Text("a\xFFz"), "a\\xFFz");
    EXPECT_EQ(Text("\xC0\xAF"), "\\xC0\\xAF");
    EXPECT_EQ(Text("\xE0\x9F\xBF \xE0\xA0\x80"), "\\xE0\\x9F\\xBF \xE0\xA0\x80");
    EXPECT_EQ(Text("\xED\xA0\x80"), "\\xED\\xA0\\x80");
    EXPECT_EQ(Text("\xF0\x8F\xBF\xBF"), "\\xF0\\x8F\\xBF\\xBF");
    EXPECT_EQ(Text("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80");
    EXPECT_EQ(Text("\xE7\x81"), "\\xE7\\x81");
    EXPECT_EQ(Text("\xE7\x81z"), "\\xE7\\x81z");
}

// What is written consists of well-formed characters that are no control characters, and says what was there.
TEST_F(DumpTextTest, EveryPairOfBytesCanBeToldFromEveryOther) {
    std::string lAll;
    for (int lFirst = 0; lFirst < 256; ++lFirst) {
        for (int lSecond = 0; lSecond < 256; ++lSecond) {
            const char lPair[] = {static_cast<char>(lFirst), static_cast<char>(lSecond)};
            std::string_view lRest(lPair, 2);
            std::string lBack;
            char lBuffer[16];
            while (!lRest.empty()) {
                const std::string lShown(lyrEscapeFirst(lRest, lBuffer));
                ASSERT_NE(lyrUtf8Length(lShown), 0u);
                ASSERT_GE(static_cast<unsigned char>(lShown[0]), 0x20);
                for (std::size_t i = 0; lShown.size() >= 4 && lShown[0] == '\\' && i < lShown.size(); i += 4)
                    lBack += static_cast<char>(std::stoi(lShown.substr(i + 2, 2), nullptr, 16));
                if (lShown.size() < 4 || lShown[0] != '\\')
                    lBack += lShown == "\\n" ? "\n" : lShown == "\\t" ? "\t" : lShown == "\\\\" ? "\\" : lShown;
            }
            ASSERT_EQ(lBack, std::string(lPair, 2));
        }
    }
}

TEST_F(DumpTextTest, QuotesHaveABackslashBeforeInnerOnes) {
    EXPECT_EQ(Quoted("a \"b\" \\"), "\"a \\\"b\\\" \\\\\"");
    EXPECT_EQ(Quoted(""), "\"\"");
}

// --- values ----------------------------------------------------------------------------------------------------------

TEST_F(DumpTextTest, ValuesReadAsTheirTexts) {
    const OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    const KLyrPropertyHandle lNumber = AddChild(lRoot, "number", eDOUBLE1);
    SetDouble(lNumber, -0.5);
    EXPECT_EQ(Value(lNumber), "-0.5");
    KLyrPropertyHandle lVector = AddChild(lRoot, "vector", eDOUBLE3);
    lyrDouble3 lValue;
    for (int i = 0; i < 3; ++i)
        lValue[i] = i + 1;
    lVector.Set(&lValue, eDOUBLE3);
    EXPECT_EQ(Value(lVector), "1,2,3");
    const KLyrPropertyHandle lText = AddChild(lRoot, "text", eSTRING);
    SetText(lText, "a \"b\"\n");
    EXPECT_EQ(Value(lText), "\"a \\\"b\\\"\\n\"");
    const KLyrPropertyHandle lMatrix = AddChild(lRoot, "matrix", eDOUBLE44);
    EXPECT_EQ(Value(lMatrix), "0,0,0,0; 0,0,0,0; 0,0,0,0; 0,0,0,0");
}

// Their own texts go through int.
TEST_F(DumpTextTest, IntegersThatAnIntDoesNotHoldAreShownInFull) {
    const auto lShown = [](ELyrType pType, auto pNumber) {
        OwnedRoot lRoot(KLyrPropertyHandle::Create("root", pType));
        EXPECT_TRUE(lRoot->Set(&pNumber, pType, false));
        EXPECT_TRUE(lRoot->SetMin(&pNumber, pType));
        EXPECT_TRUE(lRoot->SetSoftMax(&pNumber, pType));
        std::string lValue = Value(lRoot);
        EXPECT_EQ(Limits(lRoot, false), lValue + "..");
        EXPECT_EQ(Limits(lRoot, true), ".." + lValue);
        return lValue;
    };
    EXPECT_EQ(lShown(eLONGLONG1, 1LL << 40), "1099511627776");
    EXPECT_EQ(lShown(eLONGLONG1, -1LL), "-1");
    EXPECT_EQ(lShown(eLONGLONG1, std::numeric_limits<long long>::min()), "-9223372036854775808");
    EXPECT_EQ(lShown(eLONGLONG1, std::numeric_limits<long long>::max()), "9223372036854775807");
    EXPECT_EQ(lShown(eULONGLONG1, std::numeric_limits<unsigned long long>::max()), "18446744073709551615");
    EXPECT_EQ(lShown(eULONGLONG1, 0ULL), "0");
    EXPECT_EQ(lShown(eUINTEGER1, 4294967295U), "4294967295");
    EXPECT_EQ(lShown(eINTEGER1, std::numeric_limits<int>::min()), "-2147483648");
    EXPECT_EQ(lShown(eUBYTE1, static_cast<unsigned char>(200)), "200");
    EXPECT_EQ(lShown(eUSHORT1, static_cast<unsigned short>(65535)), "65535");
}

// A bound keeps the type that its property had when it was set.
TEST_F(DumpTextTest, ABoundThatIsNoIntegerIsShownAsItsText) {
    const OwnedRoot lType(KLyrPropertyHandle::Create("type", eSTRING));
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", *lType));
    const KString lLow("low");
    EXPECT_TRUE(lRoot->SetMin(&lLow, eSTRING));
    for (const ELyrType lNow : {eUINTEGER1, eLONGLONG1, eULONGLONG1}) {
        lType->GetPage()->GetPropertyEntry(0)->Set(KLyrPropertyInfo::Create("type", lNow));
        EXPECT_EQ(lRoot->GetType(), lNow);
        EXPECT_EQ(Limits(lRoot, false), "low..");
    }
}

TEST_F(DumpTextTest, EnumerationsShowTheirTextWhereThereIsOne) {
    const OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eENUM));
    KLyrPropertyHandle(*lRoot).AddEnumValue("cold\n");
    EXPECT_EQ(Value(lRoot), "0 (cold\\n)");
    SetInt(*lRoot, 1);
    EXPECT_EQ(Value(lRoot), "1");
    SetInt(*lRoot, -1);
    EXPECT_EQ(Value(lRoot), "-1");
}

TEST_F(DumpTextTest, BlobsShowTheirSize) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eBLOB));
    const std::string lEmpty = Value(lRoot);
    EXPECT_NE(lEmpty.find("0 bytes"), std::string::npos) << lEmpty;
    lyrBlob lBlob;
    lBlob.Assign("x", 1);
    lRoot->Set(&lBlob, eBLOB);
    EXPECT_EQ(Value(lRoot).substr(Value(lRoot).size() - 7), " 1 byte");
}

TEST_F(DumpTextTest, LongTextsAreCutBetweenCharacters) {
    const OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eSTRING));
    SetText(*lRoot, "a\xE7\x81\xAFz");
    EXPECT_EQ(Value(lRoot, 5), "\"a\xE7\x81\xAFz\"");
    EXPECT_EQ(Value(lRoot, 4), "\"a\xE7\x81\xAF\"...");
    EXPECT_EQ(Value(lRoot, 3), "\"a\"...");
    EXPECT_EQ(Value(lRoot, 0), "\"\"...");
    EXPECT_EQ(Value(lRoot, std::numeric_limits<int>::max()), "\"a\xE7\x81\xAFz\"");
}

TEST_F(DumpTextTest, BytesThatArePartOfNoCharacterAreCutWhereTheyAre) {
    const OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eSTRING));
    SetText(*lRoot, "\x80\x80\x80\x80\x80\x80");
    EXPECT_EQ(Value(lRoot, 5), "\"\\x80\\x80\\x80\\x80\\x80\"...");
    SetText(*lRoot, "a\xE7\x81z\xC3");
    EXPECT_EQ(Value(lRoot, 4), "\"a\\xE7\\x81z\"...");
    EXPECT_EQ(Value(lRoot, 2), "\"a\\xE7\"...");
    SetText(*lRoot, "\xF0\x9F\x92\xA1\xA1");
    EXPECT_EQ(Value(lRoot, 4), "\"\xF0\x9F\x92\xA1\"...");
    for (const int lInside : {1, 2, 3})
        EXPECT_EQ(Value(lRoot, lInside), "\"\"...");
}

// Every code but that of a reference is written, none with a report, references and none without a value.
TEST_F(DumpTextTest, EveryTypeWithAValueIsWritten) {
    for (int lCode = 0; lCode < eMAX_TYPES; ++lCode) {
        const auto lType = static_cast<ELyrType>(lCode);
        const OwnedRoot lRoot(KLyrPropertyHandle::Create("root", lType));
        EXPECT_EQ(Value(lRoot) != "(none)", lyrHoldsValue(lType)) << lCode;
    }
}

TEST_F(DumpTextTest, NeitherLocaleNorFormatOfTheStreamMatter) {
    struct Commas : std::numpunct<char> {
        char do_thousands_sep() const override { return ','; }
        std::string do_grouping() const override { return "\1"; }
    };
    const OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eINTEGER1));
    SetInt(*lRoot, 1234);
    std::ostringstream lStream;
    lStream.imbue(std::locale(std::locale::classic(), new Commas));
    lStream << std::hex << std::showbase;
    lStream.width(20);
    lStream.fill('*');
    EXPECT_TRUE(lyrDumpValue(lStream, lRoot));
    EXPECT_EQ(lStream.str(), "1234");
}

TEST_F(DumpTextTest, AStreamThatFailsKeepsThatAndNothingElseHappens) {
    const OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eINTEGER1));
    std::ostream lNowhere(nullptr);
    EXPECT_TRUE(lyrDumpValue(lNowhere, lRoot));
    EXPECT_FALSE(lNowhere.good());
}

// --- flags, limits, paths --------------------------------------------------------------------------------------------

TEST_F(DumpTextTest, FlagsAndConnectionTypesAreListedByName) {
    const auto lFlags = [](unsigned pBits) {
        return Written([pBits](std::ostream& pStream) {
            lyrDumpFlags(pStream, static_cast<LyrPropertyFlags::eLyrPropertyFlags>(pBits));
        });
    };
    EXPECT_EQ(lFlags(0), "");
    EXPECT_EQ(lFlags(LyrPropertyFlags::eUI_GROUP | LyrPropertyFlags::eANIMATABLE), "ANIMATABLE, UI_GROUP");
    EXPECT_EQ(lFlags(0x80018010u), "STATIC, 0x80018000");
    EXPECT_EQ(lFlags(0x8000u), "0x8000");
    const std::string lAll = lFlags(LyrPropertyFlags::AllFlags());
    EXPECT_EQ(std::count(lAll.begin(), lAll.end(), ','), 14);
    EXPECT_EQ(lAll.find("0x"), std::string::npos);

    const auto lType = [](int pType) {
        return Written(
            [pType](std::ostream& pStream) { lyrDumpConnectionType(pStream, static_cast<kLyrConnectionType>(pType)); });
    };
    EXPECT_EQ(lType(eLyrConnectionNone), "none");
    EXPECT_EQ(lType(eLyrConnectionDefault), "reference, user");
    EXPECT_EQ(lType(eLyrConnectionUnidirectional | 64), "unidirectional, 0x40");
    EXPECT_EQ(lType(-1), "reference, contains, data, system, user, unidirectional, 0xFFFFFF60");
}

TEST_F(DumpTextTest, LimitsShowTheSidesThatThereAre) {
    OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eDOUBLE1));
    EXPECT_EQ(Limits(lRoot, false), "(none)");
    const double lLow = -1.5;
    lRoot->SetMin(&lLow, eDOUBLE1);
    EXPECT_EQ(Limits(lRoot, false), "-1.5..");
    EXPECT_EQ(Limits(lRoot, true), "(none)");
    const double lHigh = 8;
    lRoot->SetSoftMax(&lHigh, eDOUBLE1);
    EXPECT_EQ(Limits(lRoot, true), "..8");
    lRoot->SetMax(&lHigh, eDOUBLE1);
    EXPECT_EQ(Limits(lRoot, false), "-1.5..8");
}

TEST_F(DumpTextTest, PathsTellSeparatorsInNamesFromThoseBetweenThem) {
    const OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    const KLyrPropertyHandle lOuter = AddChild(lRoot, "a/b.c", eUNIDENTIFIED);
    const KLyrPropertyHandle lEmpty = AddChild(lOuter, "", eUNIDENTIFIED);
    const KLyrPropertyHandle lQuotes = AddChild(lEmpty, "\"\"\n", eUNIDENTIFIED);
    EXPECT_EQ(Path(lRoot), "");
    EXPECT_EQ(Path(lOuter), "a\\/b.c");
    EXPECT_EQ(Path(lQuotes), "a\\/b.c/\"\"/\\\"\\\"\\n");
    EXPECT_EQ(Path(lQuotes, '.'), "a/b\\.c.\"\".\\\"\\\"\\n");
    EXPECT_EQ(Path(lEmpty, '\n'), "a/b.c\\n\"\"");
}

TEST_F(DumpTextTest, OfADeepPathTheLastNamesAreShown) {
    const OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    KLyrPropertyHandle lDeep = *lRoot;
    std::string lPath;
    for (int i = 0; i < 64; ++i) {
        lDeep = AddChild(lDeep, "x", eUNIDENTIFIED);
        lPath += i == 0 ? "x" : "/x";
    }
    EXPECT_EQ(Path(lDeep), lPath);
    EXPECT_EQ(Path(AddChild(lDeep, "y", eUNIDENTIFIED)), ".../" + lPath.substr(2) + "/y");
}

TEST_F(DumpTextTest, TheWholePathOfAnOrphanHasNothingInFront) {
    const OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    KLyrPropertyHandle lDeep(lRoot->GetPage(), lRoot->GetPage()->Add(1000, "top", eUNIDENTIFIED));
    std::string lPath = "top";
    for (int i = 1; i < 64; ++i) {
        lDeep = AddChild(lDeep, "x", eUNIDENTIFIED);
        lPath += "/x";
    }
    EXPECT_EQ(Path(lDeep), lPath);
}

TEST_F(DumpTextTest, AnOrphanAndParentsInACircleHaveAPathThatEnds) {
    const OwnedRoot lRoot(KLyrPropertyHandle::Create("root", eUNIDENTIFIED));
    KLyrPropertyPage* lPage = lRoot->GetPage();
    const int lOrphan = lPage->Add(77, "orphan", eINTEGER1);
    EXPECT_EQ(Path({lPage, lOrphan}), "orphan");
    const int lFirst = lPage->Add(3, "first", eINTEGER1);
    const int lSecond = lPage->Add(lFirst, "second", eINTEGER1);
    ASSERT_EQ(lSecond, 3);
    EXPECT_EQ(Path({lPage, lSecond}).substr(0, 4), ".../");
}

}  // namespace
}  // namespace lyrsdk
