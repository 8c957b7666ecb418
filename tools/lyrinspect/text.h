#pragma once

// Texts on their way to a terminal.

#include <cstddef>
#include <sstream>
#include <string>
#include <string_view>

namespace lyrsdk::inspect {

// What pWrite writes to the stream that it is called with. One stream serves all, because a new one is dear.
template <typename Write>
std::string Gathered(Write pWrite) {
    thread_local std::ostringstream sStream;
    sStream.str(std::string());
    pWrite(static_cast<std::ostream&>(sStream));
    return sStream.str();
}

// The offset of the first byte that is no part of well-formed UTF-8, or npos when all of it is.
std::size_t FindInvalidUtf8(std::string_view pText);

// pText with every control character, every byte that is not UTF-8 and every backslash written as \xNN (\n, \t,
// \\ where there is a shorter form), so that no name in a file can steer a terminal or break a line.
std::string Escaped(std::string_view pText);

// Escaped, with quotation marks around it and before those inside it a backslash.
std::string Quoted(std::string_view pText);

// "1 node", "2 nodes". pPlural is pSingular with an s when it is null.
std::string Counted(std::size_t pCount, const char* pSingular, const char* pPlural = nullptr);

// The first pLength bytes of pText, cut between characters, with "..." behind them when something was cut.
std::string Shortened(std::string_view pText, std::size_t pLength);

}  // namespace lyrsdk::inspect
