#pragma once

#include "files/ByteSource.h"
#include "report/Findings.h"

#include <optional>
#include <string>

namespace OrvComtradeIntake {

/// What a `.cff` (IEEE C37.111-2013, clause 10) holds of a recording.
struct CombinedFile {
    ByteSource cfg;
    std::optional<ByteSource> data; ///< decoded; none: no such section, or one that can't be read
    std::string dataFormat;         ///< by the heading of the data, in upper case: "ASCII", "BINARY", ... or empty
    ByteSource hdr;                 ///< empty if there is none
    ByteSource inf;                 ///< likewise
};

/// Whether the first line that is not blank is the heading of a section, in UTF-16 too.
bool isCombinedFile(const ByteSource& source);

/// Finds the sections of a `.cff` in any order, with or without a byte-order mark, whatever ends the lines; data as
/// text, as bytes, or as base64 text, which is decoded (known by its form). A byte count is followed where a heading
/// or the end of the file is behind as many bytes; else the data go on to the next heading. Nothing, with a finding of
/// severity Error, where there is no section CFG, or more base64 than the limit allows. In a file in UTF-16 the data
/// are text, or none, with such a finding; its other sections begin with a byte-order mark. Throws `std::system_error`.
/// Memory: a block, and data in base64; of a file in UTF-16 half of it.
std::optional<CombinedFile> readCombinedFile(const ByteSource& file, Findings& findings, const Limits& limits = {});

} // namespace OrvComtradeIntake
