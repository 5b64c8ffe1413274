#pragma once

#include <cstdint>
#include <string>

namespace OrvComtradeIntake {

/// A date and time of the recorder's own clock. It has no time zone; Header::timeCode has it, if it is recorded.
struct Instant {
    std::int64_t nanoseconds = 0; ///< since 1970-01-01 00:00:00 of that clock; covers the years 1678 to 2261

    /// "2026-11-21T12:34:56.123456789", always with nine digits.
    std::string text() const;
};

inline bool operator==(Instant left, Instant right) {
    return left.nanoseconds == right.nanoseconds;
}

inline bool operator!=(Instant left, Instant right) {
    return !(left == right);
}

} // namespace OrvComtradeIntake
