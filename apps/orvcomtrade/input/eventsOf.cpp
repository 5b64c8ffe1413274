#include "input/eventsOf.h"

#include "input/samplesAtOnce.h"
#include "output/clockTime.h"

#include <algorithm>
#include <vector>

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Instant;
using OrvComtradeIntake::StateChange;

namespace {

bool isBefore(const Event& left, const Event& right) {
    return left.sample != right.sample ? left.sample < right.sample : left.channel < right.channel;
}

/// The changes of a block, in the order of time. `before` holds the states of the sample before it (none for the first
/// block), and then those of its last one.
std::vector<Event> eventsIn(const Columns& block, std::vector<bool>& before) {
    std::vector<Event> events;
    const bool isFirst = before.empty();
    before.resize(block.states.size());
    for (std::size_t channel = 0; channel < block.states.size(); ++channel) {
        for (const StateChange& change : block.states[channel]) {
            const bool isBegin = isFirst && change.sample == block.first;
            if (!isBegin && change.state != before[channel]) {
                const auto row = static_cast<std::size_t>(change.sample - block.first);
                events.push_back({change.sample, channel, change.state, block.time.at(row)});
            }
            before[channel] = change.state;
        }
    }
    std::sort(events.begin(), events.end(), isBefore);
    return events;
}

} // namespace

void forEachEvent(const Recording& recording, const OnEvent& onEvent) {
    OrvComtradeIntake::Selection states;
    states.allAnalog = false;
    std::vector<bool> before;
    recording.reader->columns(states, samplesAtOnce(recording.header), [&](const Columns& block) {
        const std::vector<Event> events = eventsIn(block, before);
        return std::all_of(events.begin(), events.end(), onEvent);
    });
}

void forEachEvent(const Columns& columns, const OnEvent& onEvent) {
    std::vector<bool> before;
    const std::vector<Event> events = eventsIn(columns, before);
    static_cast<void>(std::all_of(events.begin(), events.end(), onEvent));
}

std::optional<Instant> instantOf(const Recording& recording, const Event& event) {
    const std::optional<Instant>& start = recording.header.start;
    return start ? instantAfter(*start, event.time) : std::nullopt;
}
