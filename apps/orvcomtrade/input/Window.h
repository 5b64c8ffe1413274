#pragma once

#include "input/Recording.h"

#include <cstdint>
#include <optional>
#include <string>

/// The part of a recording between two instants, both included.
struct WindowRequest {
    std::optional<double> start; ///< seconds; none: the first sample
    std::optional<double> end;   ///< seconds; none: the last sample
    bool fromTrigger = false;    ///< seconds count from the trigger, not from the first sample
};

/// Consecutive samples.
struct Window {
    std::uint64_t first = 0; ///< 0-based
    std::uint64_t count = 0;
    double start = 0.0; ///< time of the first one, in seconds from the first sample of the recording
    double end = 0.0;   ///< time of the last one, likewise
};

/// Throws a Failure for an invalid window.
void checkWindow(const WindowRequest& wanted);

/// The samples whose times are in the window, which may be none. A thousandth of the step between samples is allowed,
/// so that rounding of a number such as 0.1 loses no sample. If times count from the trigger, throws as triggerTime
/// does.
Window windowOf(const Recording& recording, const WindowRequest& wanted);

/// What is said of a window without samples.
std::string emptyWindowText(const Recording& recording);

/// Throws the Failure for a window without samples.
[[noreturn]] void refuseEmptyWindow(const Recording& recording);

/// Seconds from the first sample to the trigger. Throws a Failure unless the recording has both times.
double triggerTime(const Recording& recording);
