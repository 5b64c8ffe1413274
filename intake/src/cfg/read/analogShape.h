#pragma once

#include "cfg/CfgLine.h"
#include "cfg/read/commas.h"

#include <cstddef>
#include <string_view>

namespace OrvComtradeIntake {

/// What makes an analog line longer than it should be.
struct AnalogShape {
    std::size_t textCommas = 0; ///< in name, phase or component
    DecimalCommas decimals;     ///< in the numbers
    bool isAmbiguous = false; ///< its commas can be understood in several ways, or in none that gives sensible numbers
};

/// Finds where the numbers of the line begin. With `isOld`, a line without a side ends with the range, as in revision
/// 1991.
AnalogShape analogShape(const CfgLine& line, bool isOld);

/// Whether the field stands for P or S.
bool isSide(std::string_view text);

} // namespace OrvComtradeIntake
