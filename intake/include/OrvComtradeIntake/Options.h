#pragma once

#include <string>

namespace OrvComtradeIntake {

/// Side of the instrument transformers.
enum class Side {
    Recorded, ///< each channel as its line declares; of a channel: its line declares none
    Primary,  ///< line side
    Secondary ///< relay side
};

/// What the caller of `open` chooses.
struct Options {
    Side side = Side::Recorded;     ///< side of the values that `load` and `columns` give
    std::string encoding;           ///< of the texts, as iconv names it ("CP1251"); empty: detected
    bool acceptsAnyNumbers = false; ///< read data even if neither their sample numbers nor their stamps make sense
};

} // namespace OrvComtradeIntake
