#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

#include "lyrfilesdk/components/kbaselib/klib/kstring.h"
#include "lyrfilesdk/components/kbaselib/klib/kstringlist.h"
#include "lyrfilesdk/klyrplugins/klyrcopystr.h"
#include "lyrfilesdk/klyrplugins/klyrsymbol.h"
#include "tests/reliability/hostile.h"

namespace lyrsdk {
namespace {

std::string StdText(const KString& pText) {
    return std::string(pText.Buffer(), static_cast<std::size_t>(pText.GetLen()));
}

// --- strings ---------------------------------------------------------------------------------------------------------

struct Strings {
    KString mText{"a text of its own"};
    KString mEmpty;

    std::string State() const { return StdText(mText) + '|' + StdText(mEmpty); }
};

TEST(HostileText, Strings) {
    MakeHostileCalls<Strings>({
        {"KString::KString", kNothing,
         [](Strings& p) {
             WithHostileTexts([](const char* pText) { EXPECT_EQ(StdText(KString(pText)), TextOrEmpty(pText)); });
             for (int lValue : kHostileInts)
                 EXPECT_EQ(StdText(KString(lValue)), std::to_string(lValue));
             EXPECT_EQ(StdText(KString(-DBL_MAX)), "-1.7976931348623157e+308");
             EXPECT_EQ(StdText(KString(std::numeric_limits<float>::signaling_NaN())), "nan");
             EXPECT_EQ(StdText(KString(p.mEmpty)), "");
         }},
        {"KString::operator=", kNothing,
         [](Strings& p) {
             KString& lSelf = p.mText;
             p.mText = lSelf;
             p.mText = static_cast<KString&&>(lSelf);
             p.mText = p.mText.Buffer();
             p.mEmpty = p.mEmpty;
             p.mEmpty = static_cast<const char*>(nullptr);
             p.mEmpty = p.mEmpty.Buffer();
         }},
        {"KString::operator=", kSome,
         [](Strings& p) {
             p.mText = p.mText.Buffer() + 2;
             EXPECT_EQ(StdText(p.mText), "text of its own");
             WithHostileTexts([&p](const char* pText) {
                 p.mText = pText;
                 EXPECT_EQ(StdText(p.mText), TextOrEmpty(pText));
                 p.mText = p.mText.Buffer() + p.mText.GetLen() / 2;
             });
         }},
        {"KString::Assign", kNothing,
         [](Strings& p) {
             for (int lLength : kNegative) {
                 EXPECT_FALSE(p.mText.Assign("a", lLength));
                 EXPECT_FALSE(p.mText.Assign(nullptr, lLength));
                 EXPECT_FALSE(p.mText.Assign(p.mText.Buffer(), lLength));
             }
             EXPECT_TRUE(p.mText.Assign(p.mText.Buffer(), p.mText.GetLen()));
             const FailAllocations lFail(0, true);
             EXPECT_FALSE(p.mText.Assign(HostileTexts().back().c_str(), 1 << 20));
             EXPECT_FALSE(p.mEmpty.Assign(INT_MIN));
             EXPECT_FALSE(p.mEmpty.Assign(-DBL_MAX));
             EXPECT_FALSE(p.mEmpty.Assign(std::numeric_limits<float>::signaling_NaN()));
         }},
        {"KString::Assign", kSome,
         [](Strings& p) {
             EXPECT_TRUE(p.mText.Assign(p.mText.Buffer() + 2, 4));
             EXPECT_EQ(StdText(p.mText), "text");
             EXPECT_TRUE(p.mText.Assign("\0\0\0", 3)) << "zero bytes count";
             EXPECT_EQ(p.mText.GetLen(), 3);
             for (int lLength : {0, 1, INT_MAX})
                 EXPECT_TRUE(p.mText.Assign(nullptr, lLength));
             EXPECT_TRUE(p.mText.IsEmpty());
             for (int lValue : {INT_MIN, -1, 0, INT_MAX}) {
                 EXPECT_TRUE(p.mText.Assign(lValue));
                 EXPECT_EQ(StdText(p.mText), std::to_string(lValue));
             }
             EXPECT_TRUE(p.mText.Assign(-DBL_MAX));
             EXPECT_EQ(StdText(p.mText), "-1.7976931348623157e+308");
             EXPECT_TRUE(p.mText.Assign(std::numeric_limits<float>::signaling_NaN()));
             EXPECT_EQ(StdText(p.mText), "nan");
         }},
        {"KString::Append", kNothing,
         [](Strings& p) {
             for (int lLength : kNegative)
                 EXPECT_FALSE(p.mText.Append("a", lLength));
             EXPECT_FALSE(p.mText.Append("a", INT_MAX)) << "the sum is no int";
             EXPECT_TRUE(p.mText.Append(nullptr));
             EXPECT_TRUE(p.mText.Append(nullptr, 5));
             EXPECT_TRUE(p.mText.Append("a", 0));
             EXPECT_TRUE(p.mEmpty.Append(p.mEmpty));
         }},
        {"KString::Append", kSome,
         [](Strings& p) {
             std::string lExpected = StdText(p.mText);
             for (int i = 0; i < 12; ++i) {
                 EXPECT_TRUE(i % 3 == 0   ? p.mText.Append(p.mText)
                             : i % 3 == 1 ? p.mText.Append(p.mText.Buffer())
                                          : p.mText.Append(p.mText.Buffer() + 1, p.mText.GetLen() - 1));
                 lExpected += i % 3 == 2 ? lExpected.substr(1) : lExpected;
                 ASSERT_EQ(StdText(p.mText), lExpected) << i;
             }
             WithHostileTexts([&p](const char* pText) { EXPECT_TRUE(p.mEmpty.Append(pText)); });
         }},
        {"KString::Clear", kSome,
         [](Strings& p) {
             p.mText.Clear();
             p.mText.Clear();
             p.mEmpty.Clear();
         }},
        {"KString::Buffer", kNothing, [](Strings& p) { EXPECT_STREQ(p.mEmpty.Buffer(), ""); }},
        {"KString::operator const char*", kNothing,
         [](Strings& p) { EXPECT_STREQ(static_cast<const char*>(p.mEmpty), ""); }},
        {"KString::GetLen", kNothing, [](Strings& p) { EXPECT_EQ(p.mEmpty.GetLen(), 0); }},
        {"KString::IsEmpty", kNothing, [](Strings& p) { EXPECT_TRUE(p.mEmpty.IsEmpty()); }},
        {"operator+", kNothing,
         [](Strings& p) {
             EXPECT_EQ(StdText(p.mEmpty + p.mEmpty), "");
             EXPECT_EQ(StdText(p.mText + static_cast<const char*>(nullptr)), StdText(p.mText));
             EXPECT_EQ(StdText(p.mText + p.mText.Buffer()), StdText(p.mText + p.mText));
         }},
        {"operator==", kNothing,
         [](Strings& p) {
             const char* lNull = nullptr;
             EXPECT_TRUE(p.mEmpty == lNull);
             EXPECT_TRUE(lNull == p.mEmpty);
             EXPECT_FALSE(p.mText == lNull);
             WithHostileTexts([](const char* pText) { EXPECT_TRUE(KString(pText) == pText); });
         }},
        {"operator!=", kNothing,
         [](Strings& p) {
             const char* lNull = nullptr;
             EXPECT_FALSE(p.mEmpty != lNull);
             EXPECT_FALSE(lNull != p.mEmpty);
             EXPECT_FALSE(p.mText != p.mText);
         }},
        {"lyrCompareText", kNothing,
         [](Strings& p) {
             EXPECT_EQ(lyrCompareText(p.mText, p.mText), 0);
             WithHostileTexts([&p](const char* pText) {
                 EXPECT_EQ(lyrCompareText(p.mEmpty, pText) < 0, pText && *pText);
                 EXPECT_EQ(lyrCompareText(pText, p.mEmpty) > 0, pText && *pText);
             });
         }},
        {"lyrFormat", kNothing,
         [](Strings&) {
             char lBuffer[32];
             for (int lValue : kHostileInts)
                 EXPECT_EQ(lyrFormat(lBuffer, lValue), static_cast<int>(std::to_string(lValue).size()));
             for (double lValue : {-DBL_MAX, DBL_MIN, -DBL_TRUE_MIN, static_cast<double>(NAN), -HUGE_VAL, -0.0}) {
                 EXPECT_LT(lyrFormat(lBuffer, lValue), 32);
                 EXPECT_LT(lyrFormat(lBuffer, static_cast<float>(lValue)), 32);
             }
         }},
        {"lyrParseDouble", kNothing,
         [](Strings&) {
             double lValue = 7;
             for (int lLength : kHostileInts)
                 EXPECT_FALSE(lyrParseDouble(nullptr, lLength, lValue));
             for (int lLength : {INT_MIN, -1, 0})
                 EXPECT_FALSE(lyrParseDouble("1", lLength, lValue));
             for (const std::string& lText : HostileTexts())
                 EXPECT_FALSE(lyrParseDouble(lText.c_str(), static_cast<int>(lText.size()), lValue));
             for (const char* lText : {"-", ".", "e5", "1e", "1e+", "+1", " 1", "0x1", "1e99999999999999999999", "--1"})
                 EXPECT_FALSE(lyrParseDouble(lText, static_cast<int>(std::strlen(lText)), lValue)) << lText;
             EXPECT_EQ(lValue, 7);
         }},
    });
}

template <typename T>
void ExpectNoValueInHostileTexts() {
    T lValue(1);
    WithHostileTexts([&lValue](const char* pText) { EXPECT_FALSE(lyrCopyStr(lValue, pText)); });
    for (const char* lText : {"-", "+", "1 1", "1e", "tru", "1\xa0"})
        EXPECT_FALSE(lyrCopyStr(lValue, lText)) << lText;
    if constexpr (std::is_integral_v<T>) {
        for (const char* lText : {"99999999999999999999999", "-99999999999999999999999"})
            EXPECT_FALSE(lyrCopyStr(lValue, lText)) << lText;
    }
    EXPECT_FALSE(lyrCopyStr(lValue, KString()));
    KString lZeroWithin;
    lZeroWithin.Assign("1\0", 2);
    EXPECT_FALSE(lyrCopyStr(lValue, lZeroWithin));
}

TEST(HostileText, NumbersAreNotReadFromHostileTexts) {
    MakeHostileCalls<NoSubject>({
        {"lyrCopyStr", kNothing,
         [](NoSubject&) {
             ExpectNoValueInHostileTexts<bool>();
             ExpectNoValueInHostileTexts<char>();
             ExpectNoValueInHostileTexts<unsigned char>();
             ExpectNoValueInHostileTexts<short>();
             ExpectNoValueInHostileTexts<unsigned short>();
             ExpectNoValueInHostileTexts<int>();
             ExpectNoValueInHostileTexts<unsigned int>();
             ExpectNoValueInHostileTexts<long long>();
             ExpectNoValueInHostileTexts<unsigned long long>();
             ExpectNoValueInHostileTexts<double>();
         }},
    });
}

// --- lists -----------------------------------------------------------------------------------------------------------

struct Lists {
    KStringList mList;
    KStringList mEmpty;

    Lists() {
        mList.Add("zero text", 1);
        mList.Add("one text", UINT_MAX);
        mList.Add("two text", 0);
    }
    std::string State() const {
        std::string lState;
        for (int i = 0; i < mList.GetCount(); ++i)
            lState += mList.GetStringAt(i) + std::to_string(mList.GetReferenceAt(i)) + '|';
        return lState + std::to_string(mEmpty.GetCount());
    }
};

TEST(HostileText, StringLists) {
    MakeHostileCalls<Lists>({
        {"KStringList::KStringList", kNothing, [](Lists&) { EXPECT_EQ(KStringList().GetCount(), 0); }},
        {"KStringListTemplate::KStringListTemplate", kNothing,
         [](Lists&) { EXPECT_EQ(KStringListTemplate<KStringListItem>().GetCount(), 0); }},
        {"KStringListTemplate::SetStringAt", kNothing,
         [](Lists& p) {
             for (int lIndex : kHostileInts) {
                 EXPECT_FALSE(p.mEmpty.SetStringAt(lIndex, "new"));
                 if (lIndex < 0 || lIndex > 2) {
                     EXPECT_FALSE(p.mList.SetStringAt(lIndex, "new"));
                 }
             }
             EXPECT_TRUE(p.mList.SetStringAt(1, p.mList.GetStringAt(1)));
         }},
        {"KStringListTemplate::SetStringAt", kSome,
         [](Lists& p) {
             EXPECT_TRUE(p.mList.SetStringAt(1, p.mList.GetStringAt(1) + 4));
             EXPECT_STREQ(p.mList.GetStringAt(1), "text");
             EXPECT_TRUE(p.mList.SetStringAt(2, p.mList.GetStringAt(0)));
             WithHostileTexts([&p](const char* pText) {
                 EXPECT_TRUE(p.mList.SetStringAt(0, pText));
                 EXPECT_EQ(p.mList.GetStringAt(0), TextOrEmpty(pText));
             });
         }},
        {"KStringListTemplate::InsertAt", kNothing,
         [](Lists& p) {
             for (int lIndex : kNegative) {
                 EXPECT_EQ(p.mList.InsertAt(lIndex, "new", 0), -1);
                 EXPECT_EQ(p.mEmpty.InsertAt(lIndex, nullptr, 0), -1);
             }
         }},
        {"KStringListTemplate::InsertAt", kSome,
         [](Lists& p) {
             EXPECT_EQ(p.mList.InsertAt(INT_MAX, p.mList.GetStringAt(0), UINT_MAX), 3);
             EXPECT_EQ(p.mList.InsertAt(0, p.mList.GetStringAt(3) + 5, 0), 0);
             EXPECT_STREQ(p.mList.GetStringAt(0), "text");
         }},
        {"KStringListTemplate::Add", kSome,
         [](Lists& p) {
             for (int i = 0; i < 20; ++i)
                 EXPECT_EQ(p.mList.Add(p.mList.GetStringAt(0), 0), 3 + i);
             WithHostileTexts([&p](const char* pText) { EXPECT_GE(p.mList.Add(pText, 0), 0); });
         }},
        {"KStringListTemplate::RemoveAt", kNothing,
         [](Lists& p) {
             for (int lIndex : kHostileInts) {
                 p.mEmpty.RemoveAt(lIndex);
                 if (lIndex < 0 || lIndex > 2)
                     p.mList.RemoveAt(lIndex);
             }
         }},
        {"KStringListTemplate::Clear", kSome,
         [](Lists& p) {
             p.mList.Clear();
             p.mList.Clear();
             p.mEmpty.Clear();
         }},
        {"KStringListTemplate::GetText", kNothing,
         [](Lists& p) {
             KString lText("before");
             EXPECT_TRUE(p.mEmpty.GetText(lText));
             EXPECT_TRUE(lText.IsEmpty());
         }},
        {"KStringListTemplate::SetText", kSome,
         [](Lists& p) {
             WithHostileTexts([&p](const char* pText) {
                 EXPECT_TRUE(p.mList.SetText(pText));
                 if (p.mList.GetCount() > 0) {
                     EXPECT_TRUE(p.mList.SetText(p.mList.GetStringAt(0))) << "its own string";
                 }
             });
         }},
        {"KStringListTemplate::GetCount", kNothing, [](Lists& p) { EXPECT_EQ(p.mEmpty.GetCount(), 0); }},
        {"KStringListTemplate::GetStringAt", kNothing,
         [](Lists& p) {
             for (int lIndex : kNegative)
                 EXPECT_STREQ(p.mList.GetStringAt(lIndex), "zero text");
             for (int lIndex : kPastTheEnd)
                 EXPECT_EQ(p.mList.GetStringAt(lIndex), nullptr);
             for (int lIndex : kHostileInts)
                 EXPECT_EQ(p.mEmpty.GetStringAt(lIndex), nullptr);
         }},
        {"KStringListTemplate::GetReferenceAt", kNothing,
         [](Lists& p) {
             for (int lIndex : kHostileInts)
                 EXPECT_EQ(p.mList.GetReferenceAt(lIndex), lIndex == 0 ? 1u : lIndex == 1 ? UINT_MAX : 0u);
         }},
        {"KStringListTemplate::FindIndex", kNothing,
         [](Lists& p) {
             EXPECT_EQ(p.mList.FindIndex(p.mList.GetStringAt(2)), 2);
             WithHostileTexts([&p](const char* pText) {
                 EXPECT_EQ(p.mList.FindIndex(pText), -1);
                 EXPECT_EQ(p.mEmpty.FindIndex(pText), -1);
             });
         }},
    });
}

// --- symbols ---------------------------------------------------------------------------------------------------------

struct Symbols {
    KLyrStringSymbol mSymbol{"a symbol of its own"};
    KLyrStringSymbol mEmpty;

    std::string State() const { return std::string(mSymbol.Buffer()) + '|' + mEmpty.Buffer(); }
};

TEST(HostileText, Symbols) {
    MakeHostileCalls<Symbols>({
        {"KLyrStringSymbol::KLyrStringSymbol", kNothing,
         [](Symbols& p) {
             WithHostileTexts([](const char* pText) {
                 const KLyrStringSymbol lSymbol(pText);
                 EXPECT_EQ(lSymbol.Buffer(), TextOrEmpty(pText));
             });
             EXPECT_EQ(KLyrStringSymbol(p.mSymbol.Buffer()), p.mSymbol);
         }},
        {"KLyrStringSymbol::operator=", kNothing,
         [](Symbols& p) {
             KLyrStringSymbol& lSelf = p.mSymbol;
             p.mSymbol = lSelf;
             p.mSymbol = static_cast<KLyrStringSymbol&&>(lSelf);
             p.mSymbol = p.mSymbol.Buffer();
             p.mEmpty = static_cast<const char*>(nullptr);
             p.mEmpty = p.mEmpty.Buffer();
         }},
        {"KLyrStringSymbol::Assign", kNothing,
         [](Symbols& p) {
             EXPECT_TRUE(p.mSymbol.Assign(p.mSymbol.Buffer()));
             EXPECT_TRUE(p.mEmpty.Assign(nullptr));
             const FailAllocations lFail(0, true);
             EXPECT_FALSE(p.mSymbol.Assign("a text that no symbol has"));
         }},
        {"KLyrStringSymbol::Assign", kSome,
         [](Symbols& p) {
             EXPECT_TRUE(p.mSymbol.Assign(p.mSymbol.Buffer() + 2));
             EXPECT_STREQ(p.mSymbol.Buffer(), "symbol of its own");
             WithHostileTexts([&p](const char* pText) { EXPECT_TRUE(p.mSymbol.Assign(pText)); });
         }},
        {"KLyrStringSymbol::IsEmpty", kNothing, [](Symbols& p) { EXPECT_TRUE(p.mEmpty.IsEmpty()); }},
        {"KLyrStringSymbol::Buffer", kNothing,
         [](Symbols& p) { EXPECT_EQ(p.mEmpty.Buffer(), KLyrStringSymbol(nullptr).Buffer()); }},
        {"KLyrStringSymbol::operator const char*", kNothing,
         [](Symbols& p) { EXPECT_STREQ(static_cast<const char*>(p.mEmpty), ""); }},
        {"KLyrStringSymbol::operator==", kNothing,
         [](Symbols& p) {
             const char* lNull = nullptr;
             EXPECT_TRUE(p.mEmpty == lNull);
             EXPECT_TRUE(lNull == p.mEmpty);
             EXPECT_TRUE(p.mSymbol == p.mSymbol.Buffer());
             WithHostileTexts([&p](const char* pText) { EXPECT_FALSE(p.mSymbol == pText); });
         }},
        {"KLyrStringSymbol::operator!=", kNothing,
         [](Symbols& p) {
             const char* lNull = nullptr;
             EXPECT_FALSE(p.mEmpty != lNull);
             EXPECT_TRUE(lNull != p.mSymbol);
             EXPECT_FALSE(p.mSymbol != p.mSymbol);
         }},
        {"KLyrStringSymbol::FindText", kNothing,
         [](Symbols& p) {
             EXPECT_EQ(KLyrStringSymbol::FindText(p.mSymbol.Buffer()), p.mSymbol.Buffer());
             EXPECT_EQ(KLyrStringSymbol::FindText(p.mSymbol.Buffer() + 1), nullptr);
             WithHostileTexts([&p](const char* pText) {
                 EXPECT_EQ(KLyrStringSymbol::FindText(pText), pText && *pText ? nullptr : p.mEmpty.Buffer());
             });
         }},
        {"KLyrStringSymbol::BracketClosed", kNothing,
         [](Symbols&) {
             for (int i = 0; i < 3; ++i)
                 KLyrStringSymbol::BracketClosed();
         }},
        {"KLyrStringSymbol::BracketOpened", kSome,
         [](Symbols& p) {
             for (int i = 0; i < 3; ++i)
                 KLyrStringSymbol::BracketOpened();
             p.mSymbol = nullptr;
             for (int i = 0; i < 4; ++i)
                 KLyrStringSymbol::BracketClosed();
             EXPECT_EQ(KLyrStringSymbol::FindText("a symbol of its own"), nullptr);
         }},
    });
}

}  // namespace
}  // namespace lyrsdk
