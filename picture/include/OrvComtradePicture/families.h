#pragma once

#include <OrvComtradePicture/Source.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradePicture {

/// Conductor that an analog channel measures. Of voltages between two conductors: A for AB, B for BC, C for CA.
enum class Phase { None, A, B, C, Neutral };

/// What a unit measures, whatever language it is written in.
enum class Quantity { Voltage, Current, Other };

Quantity quantityOf(std::string_view unit);

/// A channel in a family.
struct Member {
    std::size_t channel = 0; ///< 0-based analog channel
    Phase phase = Phase::None;
};

/// Analog channels that belong into one set of axes: the phases of a feeder, a bus or a winding. All have the same unit
/// and side.
struct Family {
    Quantity quantity = Quantity::Other;
    bool hasPhases = false; ///< two phases at least
    std::vector<Member> members;
};

/// Groups channels, in the order of the first one of each group.
///
/// Phases belong together whose identifiers are the same but for the letters or figures of the phase (A B C, R S T,
/// 1 2 3, AB BC CA) or of the neutral (N, G, E, 0, 3I0), wherever in the name these stand: the names are compared with
/// one another, not with a list of makers' habits. A phase that the channel's line declares decides against a name.
/// Where names show nothing, the declared phases do. What is in no such group stands together by unit, side and
/// component, four channels at most.
std::vector<Family> familiesOf(const Source& source, const std::vector<std::size_t>& channels);

} // namespace OrvComtradePicture
