#pragma once

#include "DataLayout.h"

#include <cstddef>
#include <string_view>

namespace OrvComtradeIntake {

/// Tells lines that are as most devices write them: integers of up to 18 digits with "-" or nothing before them, status
/// columns of one "0" or "1", a comma between any two, no more and no fewer columns than there are, and no 99999. The
/// library reads such a line rightly, and nothing in it is missing.
class PlainLines {
public:
    explicit PlainLines(const DataLayout& layout);

    /// Bytes around a line that are read with it, whatever they hold.
    static constexpr std::size_t kSlack = 64;

    /// For a line with neither CR nor LF at its end; it must begin behind a line end. `kSlack` bytes before and behind
    /// it must be readable.
    bool isPlain(std::string_view line) const {
        return line.size() > _statusLength && _isPlain(line.data(), line.size(), _statusLength, _commas);
    }

private:
    using Check = bool (*)(const char* line, std::size_t length, std::size_t statusLength, std::size_t commas);

    std::size_t _statusLength; ///< bytes of the status columns, a comma before each
    std::size_t _commas;       ///< in front of them
    Check _isPlain;            ///< for the vector units that there are
};

} // namespace OrvComtradeIntake
