#pragma once

#include "report/Findings.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// One line of a `.cfg` in UTF-8, without its line end. Blanks are kept; control characters within are blanks.
struct TextLine {
    std::string text;
    std::size_t number = 0;   ///< 1-based, in the file
    std::uint64_t offset = 0; ///< of its first byte, in the file

    /// Where the text had to be converted: places behind its commas, semicolons and tabs among the line's bytes in the
    /// file, and of its end.
    std::vector<std::size_t> fieldEnds;
};

/// The lines of a `.cfg` with their places, blank ones left out.
struct CfgText {
    std::string file; ///< path, for findings
    std::vector<TextLine> lines;
    std::size_t lineCount = 0;      ///< of those that are not blank, also where not all are in `lines`
    std::string encoding = "ASCII"; ///< as found: ASCII, UTF-8, UTF-16LE, UTF-16BE, CP866, CP1251, or uchardet's name
};

/// Cuts the bytes of a `.cfg` (or of the CFG section of a `.cff` that begins at `offset` of `file`, with line number
/// `firstLine`) into lines and converts them to UTF-8.
/// `encoding` is what the caller chose, or empty: detected. Throws `std::invalid_argument` for a name iconv doesn't
/// know. Lines beyond `mostLines` are only counted.
CfgText readCfgText(std::string_view bytes, const std::string& file, std::uint64_t offset, std::size_t firstLine,
                    const std::string& encoding, Findings& findings, std::size_t mostLines = SIZE_MAX);

} // namespace OrvComtradeIntake
