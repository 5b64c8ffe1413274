#pragma once

#include "input/Recording.h"

#include <OrvComtradeIntake/Instant.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

/// One status channel that changes.
struct Event {
    std::uint64_t sample; ///< 0-based first one with the new state
    std::size_t channel;
    bool state;  ///< new
    double time; ///< seconds
};

using OnEvent = std::function<bool(const Event&)>; ///< returns whether to continue

/// Calls `onEvent` for every event, in the order of time.
void forEachEvent(const Recording& recording, const OnEvent& onEvent);

/// The same for all samples of a recording in memory.
void forEachEvent(const OrvComtradeIntake::Columns& columns, const OnEvent& onEvent);

/// Time of the event by the recorder's clock; nothing if the recording does not have its start.
std::optional<OrvComtradeIntake::Instant> instantOf(const Recording& recording, const Event& event);
