#pragma once

#include "Cfg.h"
#include "data/DataLayout.h"
#include "data/LineParser.h"

#include <string_view>

namespace OrvComtradeIntake {

/// Asks the library what it makes of a line of ASCII data.
class LibraryLine {
public:
    explicit LibraryLine(const DataLayout& layout);

    /// Whether the library takes the line for the sample as it is meant; time stamps count if times come from them.
    bool reads(std::string_view line, bool isStamped, const AsciiSample& meant) const;

private:
    OrvComtradeLib::Cfg _cfg; ///< a = 1 and b = 0 for each channel, times from the stamps
};

} // namespace OrvComtradeIntake
