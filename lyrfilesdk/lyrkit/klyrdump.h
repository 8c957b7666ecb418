#pragma once

// Pages and families as readable text, and the connections between them as a graph.
//
//   page 1 "desk lamp" instance of page 0
//     ....  (root): eUNIDENTIFIED
//     ....    bulb: eUNIDENTIFIED [UI_GROUP]
//     .v..      bulb/power: eDOUBLE1 = 75.5 limits 0..100 soft 5..90 label "Power"
//     ..fc    colour: eENUM = 1 (warm) [ANIMATABLE, HIDDEN*] choices "cold"|"warm"
//                 <- page 2 "switch" state (data)
//
// A line for each property, depth first, with what the page holds itself in front: d(escription), v(alue), f(lags),
// c(onnections). A point stands for what a page above holds, a minus for what none does. A flag with a star is set on
// this page over another one; "no HIDDEN" is one that is off here and on above. An arrow to the left is a source, one
// to the right a destination. Properties whose parent is not there follow with trees of their own.
//
// The text is stable: pages go by numbers in the order in which they come up, families from the top with each page in
// front of its instances. It holds no pointers. How parts are written: klyrdumptext.h.
//
// Failure: false, and nothing written, for a handle without a page or with an id that does not exist. False too when
// there was no memory for the numbers; what lacks one is "page ?", and left out of a graph. A text that cannot be read
// for want of memory is "?". A stream that fails keeps that in its state.
// Cost: a few searches on the chain for each property shown, linear in connections. Memory: a map record for each page
// that comes up, and for each node of a graph, given back at the end.

#include <iosfwd>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"

namespace lyrsdk {

// What a dump shows of each property.
struct KLyrDumpStyle {
    // Between the names of a path.
    char mSeparator = '/';
    // Only properties of which the page holds something itself.
    bool mOnlyOwn = false;
    // Labels, tags and enumeration texts too.
    bool mDescriptions = true;
    // Longer text values are cut; below 0 there is no limit.
    int mMaxTextLength = 160;
};

// A property and all below it, as seen through its page. The root of a page shows the whole page.
LYRSDK_API bool lyrDump(std::ostream& pStream, const KLyrPropertyHandle& pProperty,
                        const KLyrDumpStyle& pStyle = KLyrDumpStyle());

// All pages of the families that the handles' pages belong to; ids do not matter, a family that comes up twice is shown
// once, and handles without a page are passed over. False when there is nothing to show.
LYRSDK_API bool lyrDumpFamilies(std::ostream& pStream, const KLyrPropertyHandle* pPages, int pCount,
                                const KLyrDumpStyle& pStyle = KLyrDumpStyle());
// The same for one family.
LYRSDK_API bool lyrDumpFamily(std::ostream& pStream, const KLyrPropertyHandle& pPage,
                              const KLyrDumpStyle& pStyle = KLyrDumpStyle());

// The connections of a property and all below it on its page, as a graph in the DOT language: an edge from each source
// to its destination, named by its type, and nodes for both ends, whichever page they are on. A node's id is made of
// its page's number and its property id.
LYRSDK_API bool lyrDumpConnectionsAsDot(std::ostream& pStream, const KLyrPropertyHandle& pProperty,
                                        char pSeparator = '/');
// The connections of all pages of those families.
LYRSDK_API bool lyrDumpFamilyConnectionsAsDot(std::ostream& pStream, const KLyrPropertyHandle* pPages, int pCount,
                                              char pSeparator = '/');

}  // namespace lyrsdk
