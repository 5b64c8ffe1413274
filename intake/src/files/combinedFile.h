#pragma once

#include "files/ByteSource.h"
#include "report/Findings.h"

#include <optional>
#include <string>

namespace OrvComtradeIntake {

/// The sections of a `.cff` (IEEE C37.111-2013, clause 10).
struct CombinedFile {
    ByteSource cfg;
    std::optional<ByteSource> data; ///< decoded; none: no such section, or one that can't be read
    std::string dataFormat;         ///< by the heading of the data, in upper case: "ASCII", "BINARY", ... or empty
    ByteSource hdr;                 ///< empty if there is none
    ByteSource inf;                 ///< likewise
};

/// Whether the first line that is not blank is the heading of a section. The file may be in UTF-16.
bool isCombinedFile(const ByteSource& source);

/// Finds the sections of a `.cff`, in any order, with or without a byte-order mark, with any line ends. Data may be
/// text, bytes, or base64 text, which is recognised by its form and decoded. The byte count of a heading is used if the
/// next heading, or the end of the file, comes after so many bytes. Otherwise the data end at the next heading.
///
/// Returns nothing, with a finding of severity Error, if there is no section CFG, or if there is more base64 than the
/// limit allows. In a file in UTF-16, data must be text; other data are left out, with such a finding. Its other
/// sections then begin with a byte-order mark. Throws `std::system_error`. Memory holds a block and the decoded base64,
/// or half of a file in UTF-16.
std::optional<CombinedFile> readCombinedFile(const ByteSource& file, Findings& findings, const Limits& limits = {});

} // namespace OrvComtradeIntake
