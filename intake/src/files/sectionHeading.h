#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// A longer line is no heading.
constexpr std::size_t kLongestHeading = 200;

/// The line above a section of a `.cff` (IEEE C37.111-2013, clause 10): "--- file type: DAT BINARY: 4214 ---".
struct SectionHeading {
    std::string kind;                       ///< "CFG", "DAT", ... in upper case
    std::string format;                     ///< what follows it, in upper case: "ASCII", "BINARY", "BINARY BASE64"
    std::optional<std::uint64_t> byteCount; ///< the largest number for one that is larger
    bool isRight = true;                    ///< three dashes at each end
};

/// Whether the standard has such a section.
bool isSectionKind(std::string_view kind);

/// The heading that a line is, with blanks and letters of either case anywhere, and byte-order marks before it. With
/// another number of dashes, those at one end missing, it is one if it names a section of the standard. With a comma it
/// is none.
std::optional<SectionHeading> sectionHeading(std::string_view line);

} // namespace OrvComtradeIntake
