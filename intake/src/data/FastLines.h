#pragma once

#include "base/characters.h"
#include "data/DataLayout.h"
#include "src/data/digits.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// Consecutive lines in memory.
struct LineRun {
    const char* const* begins = nullptr; ///< of each line
    const char* begin = nullptr;         ///< of the first one
    const char* end = nullptr;           ///< behind the line end of the last one
    std::uint64_t count = 0;
    std::size_t number = 0;     ///< 1-based, of the first line
    std::uint64_t position = 0; ///< of the first line, in the data
};

/// Finds fast lines: those in which a quick look shows that nothing is wrong. Most devices write only such lines. They
/// have integers of up to 18 digits, with "-" only before values; status columns of one "0" or "1"; one comma between
/// columns; exactly the columns that are due; no value that could mean a missing one; and LF or CR LF at the end. The
/// library reads such a line correctly.
class FastLines {
public:
    explicit FastLines(const DataLayout& layout)
        : _shape{2 * layout.statuses, layout.analogs + 1, 2 * layout.fields() - 1} {}

    /// Bytes before and after the lines that may be read with them; they may hold anything.
    static constexpr std::size_t kSlack = 64;

    static constexpr std::size_t kLinesAtOnce = 16; ///< most lines that are checked together

    /// The fast lines, up to `most`, with which the text begins. A line must begin at `begin`; `kSlack` bytes before
    /// and after the text must be readable. The run is valid until the next call.
    LineRun take(const char* begin, const char* end, std::uint64_t most);

    struct Shape {
        std::size_t statusLength; ///< bytes of the status columns, a comma before each
        std::size_t commas;       ///< in front of them
        std::size_t leastLength;  ///< of a line, without its end
    };

private:
    Shape _shape;
    std::size_t _linesAtOnce = kLinesAtOnce;
    std::vector<const char*> _begins;
};

/// Reads the integer at `at` of a fast line (see FastLines). Moves `at` past the comma, or other byte, that ends it.
inline std::int64_t takeInteger(const char*& at) {
    const bool isNegative = *at == '-';
    at += isNegative ? 1 : 0;
    unsigned int count = 0;
    std::uint64_t value = OrvComtradeLib::leadingDigits(at, count);
    at += count;
    if (count == OrvComtradeLib::kDigitsAtOnce) {
        for (; isDigit(*at); ++at) {
            value = value * 10 + static_cast<std::uint64_t>(*at - '0');
        }
    }
    ++at;
    return isNegative ? -static_cast<std::int64_t>(value) : static_cast<std::int64_t>(value);
}

} // namespace OrvComtradeIntake
