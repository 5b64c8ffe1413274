#pragma once

#include <OrvComtradePicture/Range.h>

#include <string>
#include <vector>

namespace OrvComtradePicture {

// Numbers as text, whatever the locale of the program is.

/// So many decimals; never "-0".
std::string fixed(double number, int decimals);

/// Six significant digits at most, in the shortest form.
std::string brief(double number);

/// Round numbers along an axis.
struct Ticks {
    std::vector<double> places;
    int decimals = 0; ///< that distinguish one from the next
};

/// Multiples of 1, 2 or 5 times a power of ten within a range that has a length; `most` at most (two at least).
Ticks ticksOf(Range range, int most);

/// What an axis counts in.
struct Scale {
    std::string prefix;  ///< of the unit
    double factor = 1.0; ///< of the prefix: a value divided by it stands at the axis
};

/// The prefix with which the numbers of this range have one to three digits before the point; none for a unit that
/// takes none.
Scale scaleOf(Range range, const std::string& unit);

} // namespace OrvComtradePicture
