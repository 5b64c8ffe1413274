#pragma once

#include "DataSource.h"
#include "Findings.h"

#include <cstdint>
#include <optional>
#include <string>

namespace OrvComtradeIntake {

/// What a `.cff` (IEEE C37.111-2013, clause 10) holds of a recording.
struct CombinedFile {
    std::string cfg; ///< bytes of the CFG section
    std::uint64_t cfgOffset = 0;
    std::size_t cfgLine = 1; ///< 1-based line of the section's first line
    std::optional<DataSource> data;
    std::string dataFormat; ///< what the header of the DAT section says: "ASCII", "BINARY", ... in upper case, or empty
};

/// Finds the sections of a `.cff` in any order, with or without a byte-order mark, CR LF or LF; data as text, raw
/// binary of the declared byte count, or base64 (told by its form). Nothing, with a finding of severity Error, where
/// there is no CFG section. Memory: the CFG section and a block.
std::optional<CombinedFile> readCombinedFile(const std::string& path, Findings& findings);

} // namespace OrvComtradeIntake
