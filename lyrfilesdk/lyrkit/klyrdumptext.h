#pragma once

// The parts of a property as readable text on a stream: names, values, flags, limits, paths.
//
// What is written is the same on every target and in every locale, has no line breaks in it, and holds no pointers.
// Bytes that are no well-formed UTF-8, control characters and those that break or reverse a line are written as \xNN
// (\n and \t where there is a shorter form), a backslash as \\, so that no name can steer a terminal or break a line.
// Streams are written to unformatted: their width, base and locale do not matter; failures stay in the stream's state.
//
// Only looking at texts and blobs takes memory. Failure: what cannot be read is not written, and the answer is false.

#include <cstddef>
#include <iosfwd>
#include <string_view>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"

namespace lyrsdk {

// The length in bytes of the well-formed UTF-8 sequence at the start of a text; 0 when there is none. Overlong forms,
// surrogates and values past U+10FFFF are not well formed.
LYRSDK_API std::size_t lyrUtf8Length(std::string_view pText);

// Takes the first character, or the first byte that is part of none, from a text and gives what is to be written for
// it: the character itself, or an escape in pBuffer. An empty text gives an empty text.
LYRSDK_API std::string_view lyrEscapeFirst(std::string_view& pRest, char (&pBuffer)[16]);

// A text, escaped.
LYRSDK_API void lyrDumpText(std::ostream& pStream, std::string_view pText);
// The same with quotation marks around it and a backslash in front of those inside.
LYRSDK_API void lyrDumpQuoted(std::ostream& pStream, std::string_view pText);

// The value seen, by its own conversion to a text, but integers in full: texts in quotation marks, an enumeration's
// index with its text in brackets, the rows of a matrix with "; " between them, a blob with its size. Texts of more
// than pMaxLength bytes are cut between characters and end in "..."; below 0 there is no limit. False for references
// and without a value.
LYRSDK_API bool lyrDumpValue(std::ostream& pStream, const KLyrPropertyHandle& pProperty, int pMaxLength = -1);

// "ANIMATABLE, UI_GROUP"; a bit without a name is a number. Nothing without flags.
LYRSDK_API void lyrDumpFlags(std::ostream& pStream, LyrPropertyFlags::eLyrPropertyFlags pFlags);

// "0..1", "0.." or "..1", of the hard or the soft bounds; false without any. A bound that cannot be read is "?".
LYRSDK_API bool lyrDumpLimits(std::ostream& pStream, const KLyrPropertyHandle& pProperty, bool pSoft);

// The names from below the root down to the property, with pSeparator between them; nothing for the root and for what
// does not exist. In a name, the separator and quotation marks have a backslash in front; an empty name is "". Of a
// path of more than 64 names the last ones, behind "...".
LYRSDK_API void lyrDumpPath(std::ostream& pStream, const KLyrPropertyHandle& pProperty, char pSeparator = '/');

// "reference, user"; "none" without any. A bit without a name is a number.
LYRSDK_API void lyrDumpConnectionType(std::ostream& pStream, kLyrConnectionType pType);

}  // namespace lyrsdk
