#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Bytes; a longer line is not a heading.
constexpr std::size_t kLongestHeading = 200;

/// The line above a section of a `.cff` (IEEE C37.111-2013, clause 10): "--- file type: DAT BINARY: 4214 ---".
struct SectionHeading {
    std::string kind;                       ///< "CFG", "DAT", ... in upper case
    std::string format;                     ///< what follows it, in upper case: "ASCII", "BINARY", "BINARY BASE64"
    std::optional<std::uint64_t> byteCount; ///< the largest value of the type if the number is larger
    bool isRight = true;                    ///< three dashes at each end
};

/// Whether the standard has such a section.
bool isSectionKind(std::string_view kind);

/// Reads a line as a heading; nothing if it is not one. Blanks may be anywhere, letters may be of either case, and
/// byte-order marks may come first. A line with another number of dashes, or without those at one end, is a heading if
/// it names a section of the standard. A line with a comma is never one.
std::optional<SectionHeading> sectionHeading(std::string_view line);

} // namespace OrvComtradeIntake
