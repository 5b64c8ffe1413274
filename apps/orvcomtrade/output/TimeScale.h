#pragma once

#include "output/Output.h"

#include <OrvComtradeIntake/Header.h>

#include <optional>
#include <string>

/// What times are counted from.
enum class TimeBase {
    Relative, ///< seconds from the first sample
    Trigger,  ///< seconds from the trigger
    Absolute, ///< date and time of the recorder's clock, with its offset from UTC where a time code gives it
    Utc       ///< date and time in UTC
};

/// Minutes by which a clock is ahead of UTC, by a time code (IEEE C37.111-2013, 7.4.11: "-5h30"); nothing where it says
/// that it does not apply ("x"), or nothing that can be understood.
std::optional<int> utcOffset(const std::string& timeCode);

/// Shows the times of a recording, which are seconds from its first sample.
class TimeScale {
public:
    /// Throws a Failure that names the recording where this does not have what the base needs.
    TimeScale(const OrvComtradeIntake::Header& header, TimeBase base, const std::string& path);

    bool isClock() const { return _base == TimeBase::Absolute || _base == TimeBase::Utc; }

    /// Where the scale's 0 lies, in seconds from the first sample; 0 of a clock.
    double zero() const { return _zero; }

    /// Minutes by which the recorder's clock is ahead of UTC, where that is known.
    std::optional<int> minutesFromUtc() const { return _offset; }

    /// Of a base that is no clock.
    double shown(double time) const;

    /// "2024-06-21T11:30:02.150000+02:00", or "...Z", of a clock; else the number. Empty for what the clock can't show.
    std::string text(double time) const;

private:
    const TimeBase _base;
    double _zero = 0.0;
    std::optional<OrvComtradeIntake::Instant> _start;
    std::optional<int> _offset;
};

/// A time without what rounding left of it, to 1e-12 s: 0.083 for 0.08 + 0.003.
double roundedTime(double time);
