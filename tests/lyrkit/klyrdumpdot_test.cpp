#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <set>
#include <sstream>

#include "lyrfilesdk/lyrkit/klyrdump.h"
#include "tests/support/failing_memory.h"
#include "tests/support/page_family.h"

namespace lyrsdk {
namespace {

// Reads what the graphs are made of in the DOT language: digraph ID { ID=ID; node [...]; ID [...]; ID -> ID [...]; }.
// Each node must be stated once, in front of its edges.
class DotReader {
public:
    explicit DotReader(const std::string& pText) : mText(pText) {
        Expect("digraph");
        Word();
        Expect("{");
        while (!mFailed && !Accept("}"))
            Statement();
        EXPECT_TRUE(Peek().empty()) << "behind the graph: " << Peek();
        EXPECT_FALSE(mFailed) << mText;
    }

    std::multiset<std::string> mEdges;  // "source>destination:label"
    std::map<std::string, std::string> mNodes;

private:
    void Statement() {
        const std::string lFirst = Word();
        if (Accept("=")) {
            Word();
        } else if (Accept("->")) {
            const std::string lSecond = Word();
            Check(mNodes.count(lFirst) == 1 && mNodes.count(lSecond) == 1);
            mEdges.insert(lFirst + '>' + lSecond + ':' + Attribute());
        } else {
            const std::string lLabel = Attribute();
            if (lFirst != "node")
                Check(mNodes.emplace(lFirst, lLabel).second);
        }
        Expect(";");
    }

    std::string Attribute() {
        Expect("[");
        Word();
        Expect("=");
        std::string lValue = Word();
        Expect("]");
        return lValue;
    }

    // An identifier, or the content of a quoted text, escapes undone.
    std::string Word() {
        std::string lToken = Next();
        Check(!lToken.empty() && (lToken[0] == '"' || std::isalnum(static_cast<unsigned char>(lToken[0]))));
        return lToken[0] == '"' ? Unquoted(lToken) : lToken;
    }

    std::string Unquoted(const std::string& pToken) {
        std::string lText;
        for (std::size_t i = 1; i + 1 < pToken.size(); ++i) {
            if (pToken[i] == '&') {
                Check(pToken.compare(i, 5, "&amp;") == 0);
                i += 4;
                lText += '&';
            } else if (pToken[i] == '\\') {
                ++i;
                Check(pToken[i] == 'n' || pToken[i] == '"' || pToken[i] == '\\');
                lText += pToken[i] == 'n' ? '\n' : pToken[i];
            } else {
                lText += pToken[i];
            }
        }
        return lText;
    }

    std::string Next() {
        std::string lToken = Peek();
        mAt += lToken.size();
        return lToken;
    }
    std::string Peek() {
        while (mAt < mText.size() && (mText[mAt] == ' ' || mText[mAt] == '\n'))
            ++mAt;
        std::size_t lEnd = mAt;
        if (lEnd < mText.size() && mText[lEnd] == '"') {
            for (++lEnd; lEnd < mText.size() && mText[lEnd] != '"'; ++lEnd)
                lEnd += mText[lEnd] == '\\' ? 1 : 0;
            ++lEnd;
        } else if (mText.compare(mAt, 2, "->") == 0) {
            lEnd += 2;
        } else {
            while (lEnd < mText.size() && (std::isalnum(static_cast<unsigned char>(mText[lEnd])) || mText[lEnd] == '_'))
                ++lEnd;
            lEnd += lEnd == mAt && lEnd < mText.size() ? 1 : 0;
        }
        return mText.substr(mAt, lEnd - mAt);
    }
    bool Accept(const char* pToken) {
        const bool lFound = Peek() == pToken;
        mAt += lFound ? Peek().size() : 0;
        return lFound;
    }
    void Expect(const char* pToken) { Check(Accept(pToken)); }
    void Check(bool pGood) {
        if (!pGood && !mFailed)
            ADD_FAILURE() << "at " << mAt << " of\n" << mText;
        mFailed = mFailed || !pGood;
    }

    std::string mText;
    std::size_t mAt = 0;
    bool mFailed = false;
};

std::string DotOf(const KLyrPropertyHandle& pProperty) {
    std::ostringstream lStream;
    EXPECT_TRUE(lyrDumpConnectionsAsDot(lStream, pProperty));
    return lStream.str();
}

//   rig:     0 "rig"   1 "aim"   2 "x" (below aim)
//   camera:  an instance of rig
//   other:   0 "other"   1 "y"
class DotTest : public PageTest {
protected:
    DotTest() {
        mRig->Add(0, "aim", eDOUBLE1);
        mRig->Add(1, "x", eDOUBLE1);
        mOther->Add(0, "y", eDOUBLE1);
    }

    OwnedPage mRig = MakeRoot("rig");
    OwnedPage mCamera = MakeInstance(mRig);
    OwnedPage mOther = MakeRoot("other");
};

TEST_F(DotTest, APageWithoutConnectionsIsAnEmptyGraph) {
    EXPECT_EQ(DotOf({mRig.get(), 0}), "digraph connections {\n    rankdir=LR;\n    node [shape=box];\n}\n");
}

TEST_F(DotTest, EachConnectionIsAnEdgeFromItsSourceToItsDestination) {
    mCamera->ConnectSrc(2, mOther.get(), 1, eLyrConnectionData);
    mCamera->ConnectSrc(1, mCamera.get(), 2, eLyrConnectionDefault);
    mCamera->ConnectDst(1, mRig.get(), 0, eLyrConnectionContains);
    EXPECT_EQ(DotOf({mCamera.get(), 0}),
              "digraph connections {\n"
              "    rankdir=LR;\n"
              "    node [shape=box];\n"
              "    p0_2 [label=\"page 0 \\\"rig\\\"\\naim/x\"];\n"
              "    p0_1 [label=\"page 0 \\\"rig\\\"\\naim\"];\n"
              "    p0_2 -> p0_1 [label=\"reference, user\"];\n"
              "    p1_0 [label=\"page 1 \\\"rig\\\"\"];\n"
              "    p0_1 -> p1_0 [label=\"contains\"];\n"
              "    p2_1 [label=\"page 2 \\\"other\\\"\\ny\"];\n"
              "    p2_1 -> p0_2 [label=\"data\"];\n"
              "}\n");
    const DotReader lPart(DotOf({mCamera.get(), 2}));
    EXPECT_EQ(lPart.mEdges.size(), 2u);
    EXPECT_EQ(DotReader(DotOf({mRig.get(), 0})).mEdges.size(), 1u);
}

TEST_F(DotTest, AChildWithASmallerIdThanItsParentIsAnEndLikeAnyOther) {
    const OwnedPage lPage = MakeRoot();
    lPage->Add(2, "child", eINTEGER1);
    lPage->Add(0, "parent", eINTEGER1);
    ASSERT_TRUE(lPage->ConnectSrc(1, lPage.get(), 2, eLyrConnectionData));
    const std::multiset<std::string> lEdges = {"p0_2>p0_1:data"};
    EXPECT_EQ(DotReader(DotOf({lPage.get(), 2})).mEdges, lEdges);
    EXPECT_EQ(DotReader(DotOf({lPage.get(), 1})).mEdges, lEdges);
    EXPECT_EQ(DotReader(DotOf({lPage.get(), 0})).mEdges, lEdges);
}

TEST_F(DotTest, AFamilyShowsTheConnectionsOfAllItsPagesOnce) {
    mCamera->ConnectSrc(2, mOther.get(), 1, eLyrConnectionData);
    mRig->ConnectSrc(1, mCamera.get(), 2, eLyrConnectionData);
    mOther->ConnectSrc(0, mRig.get(), 0, eLyrConnectionData);
    const KLyrPropertyHandle lPages[] = {{mCamera.get(), 0}, {mOther.get(), 0}, {mRig.get(), 0}};
    std::ostringstream lOne;
    EXPECT_TRUE(lyrDumpFamilyConnectionsAsDot(lOne, lPages, 1));
    const std::multiset<std::string> lEdges = {"p1_2>p0_1:data", "p0_0>p2_0:data", "p2_1>p1_2:data"};
    EXPECT_EQ(DotReader(lOne.str()).mEdges, lEdges) << lOne.str();
    std::ostringstream lAll;
    EXPECT_TRUE(lyrDumpFamilyConnectionsAsDot(lAll, lPages, 3));
    EXPECT_EQ(DotReader(lAll.str()).mEdges, lEdges);
}

TEST_F(DotTest, NamesOfAnyBytesAreReadBackByTheLanguage) {
    std::string lBytes;
    for (int lByte = 1; lByte < 256; ++lByte)
        lBytes += static_cast<char>(lByte);
    for (const std::string& lName : {lBytes, std::string("\\"), std::string("\""), std::string("a\\"),
                                     std::string("&lt;"), std::string("\\N\\G\\l"), std::string("]; } //")}) {
        const OwnedPage lPage = MakeRoot(lName.c_str());
        const int lChild = lPage->Add(0, lName.c_str(), eINTEGER1);
        ASSERT_TRUE(lPage->ConnectSrc(lChild, lPage.get(), 0, eLyrConnectionData));
        const DotReader lGraph(DotOf({lPage.get(), 0}));
        EXPECT_EQ(lGraph.mEdges, (std::multiset<std::string>{"p0_0>p0_1:data"}));
    }
    const OwnedPage lPage = MakeRoot("R&\\D \"x\"");
    const int lChild = lPage->Add(0, "y", eINTEGER1);
    ASSERT_TRUE(lPage->ConnectSrc(lChild, lPage.get(), 0, eLyrConnectionData));
    EXPECT_EQ(DotReader(DotOf({lPage.get(), 0})).mNodes.at("p0_0"), "page 0 \"R&\\\\D \\\"x\\\"\"");
}

TEST_F(DotTest, WhatDoesNotExistIsRefusedAndNothingIsWritten) {
    std::ostringstream lStream;
    for (const KLyrPropertyHandle& lProperty :
         {KLyrPropertyHandle(), KLyrPropertyHandle(nullptr, 0), KLyrPropertyHandle(mRig.get(), -1),
          KLyrPropertyHandle(mRig.get(), -5), KLyrPropertyHandle(mRig.get(), 99)})
        EXPECT_FALSE(lyrDumpConnectionsAsDot(lStream, lProperty));
    EXPECT_FALSE(lyrDumpFamilyConnectionsAsDot(lStream, nullptr, 3));
    const KLyrPropertyHandle lNone;
    EXPECT_FALSE(lyrDumpFamilyConnectionsAsDot(lStream, &lNone, 1));
    EXPECT_FALSE(lyrDumpFamilyConnectionsAsDot(lStream, &lNone, -1));
    EXPECT_EQ(lStream.str(), "");
}

TEST_F(DotTest, WithoutMemoryTheGraphIsAGraphStillAndTheAnswerIsFalse) {
    mCamera->ConnectSrc(2, mOther.get(), 1, eLyrConnectionData);
    mCamera->ConnectSrc(1, mCamera.get(), 2, eLyrConnectionDefault);
    const KLyrPropertyHandle lPages[] = {{mCamera.get(), 0}, {mOther.get(), 0}};
    WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
        std::ostringstream lStream;
        const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
        const bool lDone = lyrDumpFamilyConnectionsAsDot(lStream, lPages, 2);
        EXPECT_EQ(lDone, lFail.Failed() == 0);
        if (!lStream.str().empty())
            DotReader{lStream.str()};
        return lFail.Failed();
    });
}

// Every connection once, whatever was connected and whatever the trees look like.
TEST(Dot, TheEdgesOfRandomFamiliesAreTheirConnections) {
    const LeakCheck lLeaks;
    std::size_t lEdges = 0;
    for (unsigned lSeed = 0; lSeed < 60 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(150);
        for (int i = 0; i < 30; ++i)
            lFamily.AnyPage()->ConnectSrc(lFamily.AnyId(), lFamily.AnyPage().get(), lFamily.AnyId(),
                                          eLyrConnectionData);
        std::size_t lSources = 0;
        for (const OwnedPage& lPage : lFamily.Pages()) {
            std::size_t lOfPage = 0;
            std::size_t lWithin = 0;
            for (int lId = 0; lId < RandomFamily::kMaxProperties; ++lId) {
                const int lCount = lPage->GetSrcCount(lId, nullptr);
                lSources += static_cast<std::size_t>(lCount);
                lOfPage += static_cast<std::size_t>(lCount + lPage->GetDstCount(lId, nullptr));
                for (int i = 0; i < lCount; ++i) {
                    KLyrPropertyPage* lSrc = nullptr;
                    lPage->GetSrc(lId, i, nullptr, &lSrc, nullptr);
                    lWithin += lSrc == lPage.get() ? 1 : 0;
                }
            }
            EXPECT_EQ(DotReader(DotOf({lPage.get(), 0})).mEdges.size(), lOfPage - lWithin);
        }
        const KLyrPropertyHandle lAny(lFamily.AnyPage().get(), 0);
        std::ostringstream lStream;
        EXPECT_TRUE(lyrDumpFamilyConnectionsAsDot(lStream, &lAny, 1));
        EXPECT_EQ(DotReader(lStream.str()).mEdges.size(), lSources);
        lEdges += lSources;
    }
    EXPECT_GT(lEdges, 100u);
}

}  // namespace
}  // namespace lyrsdk
