#pragma once

#include <OrvComtradePicture/Source.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradePicture {

/// Conductor that an analog channel measures. A voltage between two conductors counts as the first: A for AB, B for BC,
/// C for CA.
enum class Phase { None, A, B, C, Neutral };

/// What a unit measures.
enum class Quantity { Voltage, Current, Other };

/// What a unit measures, in whatever language it is written.
Quantity quantityOf(std::string_view unit);

/// A channel in a family.
struct Member {
    std::size_t channel = 0; ///< 0-based analog channel
    Phase phase = Phase::None;
};

/// Analog channels that are drawn over one axis: the phases of a feeder, a bus or a winding. All have the same unit and
/// side.
struct Family {
    Quantity quantity = Quantity::Other;
    bool hasPhases = false; ///< whether there are two phases or more
    std::vector<Member> members;
};

/// Groups 0-based analog channels. The groups come in the order of their first channels.
///
/// Phases belong together if their identifiers differ only in the letters or figures of the phase (A B C, R S T, 1 2 3,
/// AB BC CA) or of the neutral (N, G, E, 0, 3I0). These may stand anywhere in the name: names are compared with each
/// other, not with a list of known habits. If the channel's line declares a phase that contradicts the name, the line
/// is right. If names show nothing, the declared phases decide. The remaining channels are grouped by unit, side and
/// component, four at most in a group. Throws `std::out_of_range` for a channel that does not exist.
std::vector<Family> familiesOf(const Source& source, const std::vector<std::size_t>& channels);

} // namespace OrvComtradePicture
