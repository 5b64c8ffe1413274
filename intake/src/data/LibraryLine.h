#pragma once

#include "Cfg.h"
#include "data/DataLayout.h"
#include "data/LineParser.h"

#include <string_view>

namespace OrvComtradeIntake {

/// Finds out how the library reads a line of ASCII data.
class LibraryLine {
public:
    explicit LibraryLine(const DataLayout& layout);

    /// Whether the library reads the line as the sample `meant`. With `isStamped`, the time stamp must agree too.
    bool reads(std::string_view line, bool isStamped, const AsciiSample& meant) const;

private:
    OrvComtradeLib::Cfg _cfg; ///< a = 1 and b = 0 for each channel, times from the stamps
};

} // namespace OrvComtradeIntake
