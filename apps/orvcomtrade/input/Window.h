#pragma once

#include "input/Recording.h"

#include <cstdint>
#include <optional>
#include <string>

/// The part of a recording between two instants, both of which belong to it.
struct WindowRequest {
    std::optional<double> start; ///< seconds; none: the first sample
    std::optional<double> end;   ///< seconds; none: the last sample
    bool fromTrigger = false;    ///< seconds count from the trigger, not from the first sample
};

/// Consecutive samples.
struct Window {
    std::uint64_t first = 0; ///< 0-based
    std::uint64_t count = 0;
    double start = 0.0; ///< time of the first one, in seconds from the first of the recording
    double end = 0.0;   ///< time of the last one
};

/// Throws a Failure for an invalid window.
void checkWindow(const WindowRequest& wanted);

/// The samples whose times lie in it, to a thousandth of the step between samples: 0.1 is not missed for being rounded.
/// None is possible. Throws a Failure where the recording has no times of its start and trigger and is asked for them.
Window windowOf(const Recording& recording, const WindowRequest& wanted);

/// What is said of a window that no sample lies in.
std::string emptyWindowText(const Recording& recording);

/// Throws the Failure for a window that no sample lies in.
[[noreturn]] void refuseEmptyWindow(const Recording& recording);

/// Seconds from the first sample to the trigger. Throws a Failure where the recording does not have both times.
double triggerTime(const Recording& recording);
