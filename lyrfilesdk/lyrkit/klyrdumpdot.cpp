#include <ostream>
#include <streambuf>
#include <string_view>

#include "lyrfilesdk/lyrkit/klyrdump.h"
#include "lyrfilesdk/lyrkit/klyrdumptext.h"
#include "lyrfilesdk/lyrkit/klyrdumpwalk.h"

// Connections as a graph in the DOT language. In a quoted text of that language a backslash begins an escape, and so
// does an ampersand.

namespace lyrsdk {
namespace {

using detail::End;
using detail::PageNumbers;

// Passes what is written on to a stream with the escapes of a quoted text. Takes no memory.
class DotQuotes : public std::streambuf {
public:
    explicit DotQuotes(std::ostream& pStream) : mStream(pStream) {}

protected:
    int_type overflow(int_type pByte) override {
        if (pByte == '"' || pByte == '\\')
            mStream.put('\\');
        if (pByte == '&')
            mStream.write("&amp;", 5);
        else if (pByte != traits_type::eof())
            mStream.put(static_cast<char>(pByte));
        return mStream ? traits_type::not_eof(pByte) : traits_type::eof();
    }

private:
    std::ostream& mStream;
};

// Nodes that were written already, by page number and property id.
class Nodes {
public:
    // True, and pIsNew says whether it was not there yet; false for want of memory.
    bool Add(int pPage, int pId, bool& pIsNew) {
        const long long lKey = static_cast<long long>(pPage) * (1LL << 32) + pId;
        const auto lResult = mNodes.Insert(lKey, 0);
        pIsNew = lResult.mSecond;
        mComplete = mComplete && lResult.mFirst;
        return lResult.mFirst != nullptr;
    }
    bool IsComplete() const { return mComplete; }

private:
    KMap<long long, int, KLyrLessCompare<long long>, KBaseAllocator> mNodes;
    bool mComplete = true;
};

class Graph {
public:
    Graph(std::ostream& pStream, char pSeparator)
        : mStream(pStream), mQuotes(pStream), mQuoted(&mQuotes), mSeparator(pSeparator) {}

    PageNumbers& Numbers() { return mNumbers; }
    bool IsComplete() const { return mNumbers.IsComplete() && mNodes.IsComplete(); }

    void Begin() { Put("digraph connections {\n    rankdir=LR;\n    node [shape=box];\n"); }
    void Finish() { Put("}\n"); }

    // The edges of a property; of those that another property of the graph has too, the destination writes it.
    template <typename IsInGraph>
    void DumpEdges(const KLyrPropertyHandle& pProperty, IsInGraph pIsInGraph) {
        KLyrPropertyConnect* lItem = detail::OwnItemOf<KLyrPropertyConnect>(pProperty.GetPage(), pProperty.GetId());
        for (int i = 0; lItem && i < lItem->GetSrcCount(nullptr); ++i) {
            const End lEnd = detail::SrcOf(*lItem, i);
            DumpEdge(lEnd.mProperty, pProperty, lEnd.mType);
        }
        for (int i = 0; lItem && i < lItem->GetDstCount(nullptr); ++i) {
            const End lEnd = detail::DstOf(*lItem, i);
            if (!pIsInGraph(lEnd.mProperty))
                DumpEdge(pProperty, lEnd.mProperty, lEnd.mType);
        }
    }

private:
    void Put(std::string_view pText) { mStream.write(pText.data(), static_cast<std::streamsize>(pText.size())); }

    void PutNumber(int pNumber) {
        char lDigits[32];
        const int lLength = lyrFormat(lDigits, pNumber);
        Put(std::string_view(lDigits, static_cast<std::size_t>(lLength)));
    }

    // A letter and digits with an underscore between them need no quotation marks.
    void PutNodeId(const KLyrPropertyHandle& pProperty) {
        mStream.put('p');
        PutNumber(mNumbers.Find(pProperty.GetPage()));
        mStream.put('_');
        PutNumber(pProperty.GetId());
    }

    bool HasNode(const KLyrPropertyHandle& pProperty) {
        const int lPage = pProperty.GetPage() && pProperty.GetId() >= 0 ? mNumbers.Of(pProperty.GetPage()) : -1;
        bool lIsNew = false;
        if (lPage < 0 || !mNodes.Add(lPage, pProperty.GetId(), lIsNew))
            return false;
        if (lIsNew)
            DumpNode(pProperty, lPage);
        return true;
    }

    void DumpNode(const KLyrPropertyHandle& pProperty, int pPage) {
        Put("    ");
        PutNodeId(pProperty);
        Put(" [label=\"page ");
        PutNumber(pPage);
        mQuoted.put(' ');
        lyrDumpQuoted(mQuoted, pProperty.GetPage()->GetName(0));
        if (pProperty.GetId() != 0) {
            Put("\\n");
            lyrDumpPath(mQuoted, pProperty, mSeparator);
        }
        Put("\"];\n");
    }

    void DumpEdge(const KLyrPropertyHandle& pSrc, const KLyrPropertyHandle& pDst, kLyrConnectionType pType) {
        if (!HasNode(pSrc) || !HasNode(pDst))
            return;
        Put("    ");
        PutNodeId(pSrc);
        Put(" -> ");
        PutNodeId(pDst);
        Put(" [label=\"");
        lyrDumpConnectionType(mStream, pType);
        Put("\"];\n");
    }

    std::ostream& mStream;
    DotQuotes mQuotes;
    std::ostream mQuoted;
    char mSeparator;
    PageNumbers mNumbers;
    Nodes mNodes;
};

// Whether the walk over pFrom and all below it comes to pProperty.
bool IsBelow(const KLyrPropertyHandle& pProperty, const KLyrPropertyHandle& pFrom) {
    return pProperty == pFrom || (pProperty.GetId() > pFrom.GetId() && pProperty.IsDescendentOf(pFrom));
}

}  // namespace

bool lyrDumpConnectionsAsDot(std::ostream& pStream, const KLyrPropertyHandle& pProperty, char pSeparator) {
    KLyrPropertyPage* lPage = pProperty.GetPage();
    if (!lPage || (pProperty.GetId() != 0 && !detail::Exists(pProperty)))
        return false;
    Graph lGraph(pStream, pSeparator);
    lGraph.Begin();
    for (int lId = pProperty.GetId(); lId != -1; lId = detail::NextBelow(lPage, pProperty.GetId(), lId)) {
        lGraph.DumpEdges(KLyrPropertyHandle(lPage, lId),
                         [&](const KLyrPropertyHandle& pEnd) { return IsBelow(pEnd, pProperty); });
    }
    lGraph.Finish();
    return lGraph.IsComplete();
}

bool lyrDumpFamilyConnectionsAsDot(std::ostream& pStream, const KLyrPropertyHandle* pPages, int pCount,
                                   char pSeparator) {
    Graph lGraph(pStream, pSeparator);
    const detail::Families lFamilies(pPages, pCount, lGraph.Numbers());
    if (lFamilies.GetPageCount() == 0)
        return false;
    lGraph.Begin();
    lFamilies.Visit([&](KLyrPropertyPage* pPage) {
        detail::VisitPage(pPage, [&](int pId, int) {
            lGraph.DumpEdges(KLyrPropertyHandle(pPage, pId),
                             [&](const KLyrPropertyHandle& pEnd) { return lFamilies.Has(pEnd.GetPage()); });
        });
    });
    lGraph.Finish();
    return lGraph.IsComplete();
}

}  // namespace lyrsdk
