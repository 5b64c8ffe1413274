#pragma once

#include <cstddef>

namespace OrvComtradeLib {

/// Fields of a channel line, the channel number included (IEEE C37.111-1999, 5.3.3 and 5.3.4).
constexpr std::size_t kAnalogFieldsWithoutRatio = 10; ///< channel number to max
constexpr std::size_t kAnalogFields = 13;             ///< and primary, secondary, P or S
constexpr std::size_t kStatusFields = 5;              ///< channel number to normal state

} // namespace OrvComtradeLib
