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

/// Finds fast lines: those in which a quick look sees that nothing is wrong, as most devices write them: integers of up
/// to 18 digits, values also with "-" before them, status columns of one "0" or "1", a comma between any two, no more
/// and no fewer columns than there are, no value that could mean a missing one, LF or CR LF at the end. The library
/// reads such a line rightly.
class FastLines {
public:
    explicit FastLines(const DataLayout& layout)
        : _shape{2 * layout.statuses, layout.analogs + 1, 2 * layout.fields() - 1} {}

    /// Bytes around the lines that are read with them, whatever they hold.
    static constexpr std::size_t kSlack = 64;

    static constexpr std::size_t kLinesAtOnce = 16; ///< looked at for one verdict, at the most

    /// The fast lines, up to `most`, that the text begins with. Its first byte stands behind a line end; `kSlack`
    /// bytes before and behind it must be readable. The run is valid until the next call.
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

/// Reads the integer at `at` of a fast line (see FastLines) and steps behind the comma, or the byte, that ends it.
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
