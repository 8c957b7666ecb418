#include <gtest/gtest.h>

#include <sstream>

#include "lyrfilesdk/lyrkit/lyrkit.h"
#include "tests/reliability/hostile_pages.h"

// What the kit writes to streams, of properties that are not there and of texts that are no texts.

namespace lyrsdk {
namespace {

// pCall(stream, handle) with handles that name no property of the pages; nothing may be written.
template <typename Call>
void WithNoProperties(HostilePages& pPages, Call pCall) {
    std::ostringstream lStream;
    pCall(lStream, KLyrPropertyHandle());
    pCall(lStream, KLyrPropertyHandle(nullptr, 0));
    for (const int lId : {INT_MIN, -5, -1, 77, INT_MAX})
        pCall(lStream, KLyrPropertyHandle(pPages.mPage.get(), lId));
    EXPECT_EQ(lStream.str(), "");
}

// A line without control characters.
void ExpectHarmless(const std::string& pText) {
    for (const char lByte : pText)
        ASSERT_TRUE(static_cast<unsigned char>(lByte) >= 0x20 && lByte != 0x7F);
    std::string_view lRest = pText;
    while (!lRest.empty()) {
        const std::size_t lLength = lyrUtf8Length(lRest);
        ASSERT_NE(lLength, 0u);
        lRest.remove_prefix(lLength);
    }
}

TEST(HostileKitDump, Texts) {
    MakeHostileCalls<NoSubject>({
        {"lyrUtf8Length", kNothing,
         [](NoSubject&) {
             EXPECT_EQ(lyrUtf8Length(std::string_view()), 0u);
             for (const std::string& lText : HostileTexts())
                 EXPECT_LE(lyrUtf8Length(lText), lText.size());
         }},
        {"lyrEscapeFirst", kNothing,
         [](NoSubject&) {
             char lBuffer[16];
             std::string_view lNone;
             EXPECT_TRUE(lyrEscapeFirst(lNone, lBuffer).empty());
             for (const std::string& lText : HostileTexts()) {
                 std::string_view lRest = lText;
                 std::size_t lCount = 0;
                 for (; !lRest.empty(); ++lCount)
                     EXPECT_FALSE(lyrEscapeFirst(lRest, lBuffer).empty());
                 EXPECT_LE(lCount, lText.size());
             }
         }},
        {"lyrDumpText", kNothing,
         [](NoSubject&) {
             for (const std::string& lText : HostileTexts()) {
                 std::ostringstream lStream;
                 lyrDumpText(lStream, lText);
                 ExpectHarmless(lStream.str());
             }
             std::ostringstream lStream;
             lyrDumpText(lStream, std::string_view());
             EXPECT_EQ(lStream.str(), "");
         }},
        {"lyrDumpQuoted", kNothing,
         [](NoSubject&) {
             for (const std::string& lText : HostileTexts()) {
                 std::ostringstream lStream;
                 lyrDumpQuoted(lStream, lText);
                 ExpectHarmless(lStream.str());
             }
         }},
        {"lyrDumpFlags", kNothing,
         [](NoSubject&) {
             for (const unsigned lBits : kHostileFlags) {
                 std::ostringstream lStream;
                 lyrDumpFlags(lStream, HostileFlagsOf(lBits));
                 EXPECT_EQ(lStream.str().empty(), lBits == 0);
             }
         }},
        {"lyrDumpConnectionType", kNothing,
         [](NoSubject&) {
             for (const int lType : {INT_MIN, -1, 0, 29, 64, INT_MAX}) {
                 std::ostringstream lStream;
                 lyrDumpConnectionType(lStream, HostileConnection(lType));
                 EXPECT_FALSE(lStream.str().empty());
             }
         }},
    });
}

TEST(HostileKitDump, Parts) {
    MakeHostileCalls<HostilePages>({
        {"lyrDumpValue", kNothing,
         [](HostilePages& pPages) {
             WithNoProperties(pPages, [](std::ostream& pStream, const KLyrPropertyHandle& pProperty) {
                 EXPECT_FALSE(lyrDumpValue(pStream, pProperty));
             });
             for (const int lId : HostilePages::kIds) {
                 for (const int lLength : {INT_MIN, -1, 0, 1, INT_MAX}) {
                     std::ostringstream lStream;
                     EXPECT_TRUE(lyrDumpValue(lStream, {pPages.mPage.get(), lId}, lLength));
                 }
             }
         }},
        {"lyrDumpLimits", kNothing,
         [](HostilePages& pPages) {
             WithNoProperties(pPages, [](std::ostream& pStream, const KLyrPropertyHandle& pProperty) {
                 EXPECT_FALSE(lyrDumpLimits(pStream, pProperty, false));
                 EXPECT_FALSE(lyrDumpLimits(pStream, pProperty, true));
             });
         }},
        {"lyrDumpPath", kNothing,
         [](HostilePages& pPages) {
             WithNoProperties(pPages, [](std::ostream& pStream, const KLyrPropertyHandle& pProperty) {
                 lyrDumpPath(pStream, pProperty);
             });
             for (int lSeparator = -128; lSeparator < 128; ++lSeparator) {
                 std::ostringstream lStream;
                 lyrDumpPath(lStream, {pPages.mPage.get(), HostilePages::kPart}, static_cast<char>(lSeparator));
                 ExpectHarmless(lStream.str());
             }
         }},
    });
}

TEST(HostileKitDump, Pages) {
    MakeHostileCalls<HostilePages>({
        {"lyrDump", kNothing,
         [](HostilePages& pPages) {
             WithNoProperties(pPages, [](std::ostream& pStream, const KLyrPropertyHandle& pProperty) {
                 EXPECT_FALSE(lyrDump(pStream, pProperty));
             });
             KLyrDumpStyle lStyle;
             lStyle.mSeparator = '\n';
             lStyle.mMaxTextLength = INT_MIN;
             std::ostringstream lStream;
             EXPECT_TRUE(lyrDump(lStream, {pPages.mBelow.get(), 0}, lStyle));
         }},
        {"lyrDumpFamily", kNothing,
         [](HostilePages&) {
             std::ostringstream lStream;
             EXPECT_FALSE(lyrDumpFamily(lStream, KLyrPropertyHandle()));
             EXPECT_FALSE(lyrDumpFamily(lStream, {nullptr, 0}));
             EXPECT_EQ(lStream.str(), "");
         }},
        {"lyrDumpFamilies", kNothing,
         [](HostilePages& pPages) {
             std::ostringstream lStream;
             const KLyrPropertyHandle lPages[] = {{nullptr, 0}, {pPages.mPage.get(), INT_MIN}};
             for (const int lCount : {INT_MIN, -1, 0, 1})
                 EXPECT_FALSE(lyrDumpFamilies(lStream, lPages, lCount));
             EXPECT_FALSE(lyrDumpFamilies(lStream, nullptr, INT_MAX));
             EXPECT_EQ(lStream.str(), "");
             EXPECT_TRUE(lyrDumpFamilies(lStream, lPages, 2)) << "of handles only the page counts";
         }},
        {"lyrDumpConnectionsAsDot", kNothing,
         [](HostilePages& pPages) {
             WithNoProperties(pPages, [](std::ostream& pStream, const KLyrPropertyHandle& pProperty) {
                 EXPECT_FALSE(lyrDumpConnectionsAsDot(pStream, pProperty));
             });
         }},
        {"lyrDumpFamilyConnectionsAsDot", kNothing,
         [](HostilePages& pPages) {
             std::ostringstream lStream;
             const KLyrPropertyHandle lPages[] = {{nullptr, 0}, {pPages.mPage.get(), INT_MIN}};
             for (const int lCount : {INT_MIN, -1, 0, 1})
                 EXPECT_FALSE(lyrDumpFamilyConnectionsAsDot(lStream, lPages, lCount));
             EXPECT_FALSE(lyrDumpFamilyConnectionsAsDot(lStream, nullptr, INT_MAX));
             EXPECT_EQ(lStream.str(), "");
             EXPECT_TRUE(lyrDumpFamilyConnectionsAsDot(lStream, lPages, 2, '"'));
         }},
    });
}

}  // namespace
}  // namespace lyrsdk
