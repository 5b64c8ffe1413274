#pragma once

#include "cfg/ReadCfg.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <cstddef>
#include <optional>

namespace OrvComtradeIntake {

/// In which form data are, whatever the configuration says.
struct DataForm {
    DataType type = DataType::Ascii;
    std::size_t stride = 0; ///< bytes from one binary record to the next
};

/// Judges by the first bytes in which form the data are: text or records, of which type, how far apart. What counts is
/// where sample numbers go on; the type word only if they do not show it. Nothing, with a finding of severity Error,
/// where they are records of another layout; any numbers will do with `acceptsAny`.
std::optional<DataForm> formOf(const ByteSource& data, const ReadCfg& cfg, bool acceptsAny, Findings& findings);

} // namespace OrvComtradeIntake
