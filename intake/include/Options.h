#pragma once

#include <string>

namespace OrvComtradeIntake {

/// Side of the instrument transformers.
enum class Side {
    Recorded, ///< each channel as its line declares
    Primary,  ///< line side
    Secondary ///< relay side
};

/// What the caller of prepare chooses.
struct Options {
    Side side = Side::Recorded; ///< side of the values that the library will give
    std::string encoding;       ///< of the texts, as iconv names it ("CP1251"); empty: detected
    std::string scratchFolder;  ///< existing folder in which private folders are made; empty: TMPDIR, else /tmp
};

} // namespace OrvComtradeIntake
