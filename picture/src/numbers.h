#pragma once

#include <OrvComtradePicture/Range.h>

#include <string>
#include <vector>

namespace OrvComtradePicture {

// Numbers as text, whatever the locale of the program is.

/// The number with `decimals` decimals; never "-0".
std::string fixed(double number, int decimals);

/// The number in its shortest form, with six significant digits at most.
std::string brief(double number);

/// Round numbers along an axis.
struct Ticks {
    std::vector<double> places;
    int decimals = 0; ///< decimals that are needed to distinguish neighbours
};

/// Multiples of 1, 2 or 5 times a power of ten within a range whose length is not 0, with `most` steps between them at
/// most.
Ticks ticksOf(Range range, int most);

/// What an axis counts in.
struct Scale {
    std::string prefix;  ///< of the unit
    double factor = 1.0; ///< of the prefix: the axis shows values divided by it
};

/// The prefix with which the numbers of this range have one to three digits before the point. A unit that allows no
/// prefix gets none.
Scale scaleOf(Range range, const std::string& unit);

} // namespace OrvComtradePicture
