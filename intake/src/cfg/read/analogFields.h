#pragma once

#include <cstddef>

namespace OrvComtradeIntake {

// Positions of the fields of an analog channel's line (IEEE C37.111-2013, 7.4.4).
constexpr std::size_t kUnitField = 4;
constexpr std::size_t kFirstNumberField = 5; ///< a, b, skew, min, max, primary, secondary
constexpr std::size_t kRatioField = 10;      ///< primary, then secondary; the fields of 1991 end before it
constexpr std::size_t kSideField = 12;

} // namespace OrvComtradeIntake
