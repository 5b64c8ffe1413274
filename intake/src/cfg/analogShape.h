#pragma once

#include "CfgLine.h"
#include "decimalComma.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace OrvComtradeIntake {

/// What makes an analog line longer than it should be.
struct AnalogShape {
    std::size_t textCommas = 0;            ///< in name, phase or component
    std::optional<DecimalCommas> decimals; ///< in the numbers
};

/// Judges where the numbers of the line begin. `isOld`: a line without a side ends with the range, as in revision 1991.
AnalogShape analogShape(const CfgLine& line, bool isOld);

/// Whether the field says P or S.
bool isSide(std::string_view text);

} // namespace OrvComtradeIntake
