#pragma once

#include "Findings.h"

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

    /// Where the text had to be converted: places of its commas among the line's bytes in the file.
    std::vector<std::size_t> commas;
};

/// The lines of a `.cfg` with their places, blank ones left out (a finding tells them).
struct CfgText {
    std::string file; ///< path, for findings
    std::vector<TextLine> lines;
    std::string encoding = "ASCII"; ///< as found: ASCII, UTF-8, CP866, CP1251, or uchardet's name
    bool endsBlank = false;         ///< blank lines, or 0x1A on lines of their own, follow the last line
};

/// Cuts the bytes of a `.cfg` (or of the CFG section of a `.cff` that begins at `offset` of `file`, with line number
/// `firstLine`) into lines and converts them to UTF-8. Told as findings: byte-order mark, CR LF and CR line ends, 0x1A,
/// blank lines, blanks at line ends, texts that are not UTF-8. A last line without a line end is none.
/// `encoding` is what the caller chose, or empty: detected. Throws `std::invalid_argument` for a name iconv doesn't
/// know.
CfgText readCfgText(std::string_view bytes, const std::string& file, std::uint64_t offset, std::size_t firstLine,
                    const std::string& encoding, Findings& findings);

} // namespace OrvComtradeIntake
