#pragma once

#include <OrvComtradeIntake/Instant.h>

#include <cstdint>
#include <optional>

namespace OrvComtradeIntake {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

/// Date and time of day in the Gregorian calendar.
struct CivilTime {
    int year = 1970;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0; ///< 60 in a leap second, which is the same instant as the next second 0
    int nanosecond = 0;
};

CivilTime civilTime(Instant instant);

/// Nothing where the calendar has no such day or the day no such time, or where Instant doesn't reach.
std::optional<Instant> instantOf(const CivilTime& time);

} // namespace OrvComtradeIntake
