#pragma once

#include "Columns.h"
#include "Header.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// Takes bytes in the order in which they are written. What it throws passes through `Opened::write`.
using Sink = std::function<void(std::string_view)>;

/// Who reads what `Opened::write` writes.
enum class Reader {
    Standard, ///< any program that follows IEEE C37.111: side, ratio and units as recorded, cumulative end samples,
              ///< lines that end with CR LF
    Library   ///< `OrvComtradeLib::Comtrade` by itself: values in base units on the side of the options
};

/// How `Opened::write` writes a recording. For Reader::Library, the other members must keep their defaults.
struct Form {
    Reader reader = Reader::Standard;
    std::optional<int> revision;      ///< 1991, 1999 or 2013; nothing: as recorded
    std::optional<DataType> dataType; ///< nothing: as recorded
    std::string encoding;             ///< of the texts, as iconv names it; empty: UTF-8; UTF-16 gets a byte order mark
    Selection selection;              ///< channels and samples; `raw` and `missingAsNan` are ignored
    bool combined = false; ///< one `.cff` with all sections, to the first sink; needs an encoding that contains ASCII
};

/// What was lost in writing because the chosen form cannot hold it.
struct Losses {
    std::vector<std::size_t> rounded; ///< analog channels with rounded values, as 0-based numbers of those written
    bool ratios = false;              ///< sides and ratios: revision 1991 has none
    bool statusNames = false;         ///< phases and components of status channels: revision 1991 has none
    bool timeCodes = false;           ///< time codes, time quality and leap second: only revision 2013 has them
    bool nanoseconds = false;         ///< nanoseconds of the dates: only revision 2013 has them
};

} // namespace OrvComtradeIntake
