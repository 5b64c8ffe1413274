#pragma once

#include "asciiLine.h"

namespace OrvComtradeIntake {

/// Bytes behind a line that `readUsualLine` reads with it, whatever they hold.
constexpr std::size_t kUsualLineSlack = 64;

/// Reads a line as most devices write those that are not plain: numbers of up to 18 digits, analog ones perhaps with a
/// plus sign or a point, states of one "0" or "1", a comma between any two. Gives what `readAsciiLine` gives, but that
/// values keep the zeros at their end and faults are added up; false for any other line, for which `sample` is in no
/// certain state. The library reads the line for the same sample just if no fault is found (and its stamp fits).
bool readUsualLine(std::string_view line, const DataLayout& layout, AsciiSample& sample);

} // namespace OrvComtradeIntake
