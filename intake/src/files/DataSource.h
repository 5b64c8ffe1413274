#pragma once

#include <cstdint>
#include <string>

namespace OrvComtradeIntake {

/// Where the bytes of the data are: a `.dat`, or the data section of a `.cff`.
struct DataSource {
    std::string file;
    std::uint64_t offset = 0; ///< of the first byte of the data
    std::uint64_t length = 0; ///< bytes
    bool wholeFile = true;    ///< the data are the whole file, which can be linked
    bool base64 = false;      ///< the bytes are base64 text of the data
};

} // namespace OrvComtradeIntake
