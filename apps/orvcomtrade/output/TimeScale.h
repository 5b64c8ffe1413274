#pragma once

#include "output/Output.h"

#include <OrvComtradeIntake/Header.h>

#include <optional>
#include <string>

/// What times are counted from.
enum class TimeBase {
    Relative, ///< seconds from the first sample
    Trigger,  ///< seconds from the trigger
    Absolute, ///< date and time of the recorder's clock, with its offset from UTC if a time code gives it
    Utc       ///< date and time in UTC
};

/// Minutes by which a clock is ahead of UTC, by a time code (IEEE C37.111-2013, 7.4.11: "-5h30"). Returns nothing if
/// the code does not apply ("x") or cannot be understood.
std::optional<int> utcOffset(const std::string& timeCode);

/// Shows the times of a recording, which are seconds from its first sample.
class TimeScale {
public:
    /// Throws a Failure that names the recording if it lacks what the base needs.
    TimeScale(const OrvComtradeIntake::Header& header, TimeBase base, const std::string& path);

    bool isClock() const { return _base == TimeBase::Absolute || _base == TimeBase::Utc; }

    /// Seconds from the first sample to the zero of the scale; 0 for a clock.
    double zero() const { return _zero; }

    /// Minutes by which the recorder's clock is ahead of UTC, if that is known.
    std::optional<int> minutesFromUtc() const { return _offset; }

    /// A time on the scale. Only for a base that is not a clock.
    double shown(double time) const;

    /// For a clock, "2024-06-21T11:30:02.150000+02:00" or "...Z"; otherwise the number. Empty if the clock cannot show
    /// the time.
    std::string text(double time) const;

private:
    const TimeBase _base;
    double _zero = 0.0;
    std::optional<OrvComtradeIntake::Instant> _start;
    std::optional<int> _offset;
};

/// A time rounded to 1e-12 s, so that 0.08 + 0.003 gives 0.083.
double roundedTime(double time);
