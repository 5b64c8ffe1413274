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
    Standard, ///< any program that follows IEEE C37.111: side, ratio and units as recorded, cumulative end samples, CR
              ///< LF
    Library   ///< `OrvComtradeLib::Comtrade` by itself: values in base units on the side of the options
};

/// How `Opened::write` writes a recording. All members but the first apply only to the form of the standard.
struct Form {
    Reader reader = Reader::Standard;
    std::optional<int> revision;      ///< 1991, 1999 or 2013; nothing: as recorded
    std::optional<DataType> dataType; ///< nothing: as recorded. Not of the library's form
    std::string encoding;             ///< of the texts, as iconv names it; empty: UTF-8
    Selection selection;              ///< channels and samples; `raw` and `missingAsNan` have no meaning here
    bool combined = false;            ///< one `.cff` with all sections, to the first sink; not in UTF-16 and the like
};

/// What of a recording its form could not hold, so that what was written lacks it.
struct Losses {
    std::vector<std::size_t> rounded; ///< 0-based analog channels, of those written, with values that were rounded
    bool ratios = false;              ///< sides and ratios, in revision 1991
    bool statusNames = false;         ///< phases and components of status channels, in revision 1991
    bool timeCodes = false;           ///< time codes, time quality and leap second, before revision 2013
    bool nanoseconds = false;         ///< of dates, before revision 2013
};

} // namespace OrvComtradeIntake
