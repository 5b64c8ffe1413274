#pragma once

#include "report/Findings.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// One line of a `.cfg` in UTF-8, without its line end. Blanks are kept; control characters have become blanks.
struct TextLine {
    std::string text;
    std::size_t number = 0;   ///< 1-based, in the file
    std::uint64_t offset = 0; ///< of its first byte, in the file

    /// Only if the text was converted: where its fields end among the line's bytes in the file. These are the places
    /// after commas, semicolons and tabs, and the end of the line.
    std::vector<std::size_t> fieldEnds;
};

/// The lines of a `.cfg` with their places, blank ones left out.
struct CfgText {
    std::string file; ///< path, for findings
    std::vector<TextLine> lines;
    std::size_t lineCount = 0; ///< number of lines that are not blank, even if `lines` has fewer
    std::string encoding =
        "ASCII"; ///< of the file: ASCII, UTF-8, UTF-16LE, UTF-16BE, CP866, CP1251, or uchardet's name
};

/// Cuts the bytes of a `.cfg` into lines and converts them to UTF-8. The bytes may be a section of a `.cff`, which
/// begins at `offset` of `file`, with line number `firstLine`. `encoding` is the caller's choice; if empty, it is
/// detected. Throws `std::invalid_argument` for a name that iconv does not know. Lines beyond `mostLines` are only
/// counted.
CfgText readCfgText(std::string_view bytes, const std::string& file, std::uint64_t offset, std::size_t firstLine,
                    const std::string& encoding, Findings& findings, std::size_t mostLines = SIZE_MAX);

} // namespace OrvComtradeIntake
