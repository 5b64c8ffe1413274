#pragma once

#include "DataLayout.h"
#include "vectorUnits.h"

#include <cstddef>
#include <cstdint>

namespace OrvComtradeIntake {

/// Consecutive lines in memory.
struct LineRun {
    const char* begin = nullptr;
    const char* last = nullptr; ///< begin of the last one, if there is any
    const char* end = nullptr;  ///< behind the line end of the last one
    std::uint64_t count = 0;
};

/// Tells lines that are as most devices write them: integers of up to 18 digits, values also with "-" before them,
/// status columns of one "0" or "1", a comma between any two, no more and no fewer columns than there are, no 99999, LF
/// or CR LF at the end. The library reads such a line rightly, and nothing in it is missing.
class PlainLines {
public:
    /// With the vector units that there are, or in the usual width.
    explicit PlainLines(const DataLayout& layout, bool wide = hasWideVectors());

    /// Bytes around the lines that are read with them, whatever they hold.
    static constexpr std::size_t kSlack = 64;

    /// The plain lines, up to `most`, that the text begins with. Its first byte stands behind a line end; `kSlack`
    /// bytes before and behind it must be readable.
    LineRun take(const char* begin, const char* end, std::uint64_t most) const {
        return _take(_form, begin, end, most);
    }

    struct Form {
        std::size_t statusLength; ///< bytes of the status columns, a comma before each
        std::size_t commas;       ///< in front of them
        std::size_t leastLength;  ///< of a line, without its end
    };

private:
    using Take = LineRun (*)(const Form& form, const char* begin, const char* end, std::uint64_t most);

    Form _form;
    Take _take;
};

} // namespace OrvComtradeIntake
