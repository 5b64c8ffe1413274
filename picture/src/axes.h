#pragma once

#include "numbers.h"

#include <OrvComtradePicture/Figure.h>

#include <string>
#include <vector>

namespace OrvComtradePicture {

/// A mark at an axis.
struct Mark {
    double place = 0.0; ///< seconds, or base units
    std::string label;
};

struct Axis {
    std::vector<Mark> marks;
    std::string caption; ///< what the axis counts, and in which unit
};

/// The axis of times, with so many marks at most.
Axis timeAxis(const Figure& figure, int most);

/// The axis of a lane's values.
Axis valueAxis(const Lane& lane, int most);

/// What stands at the trigger's line.
std::string triggerLabel(const Figure& figure);

/// Sentences for those who don't see the picture.
std::string descriptionOf(const Figure& figure);

} // namespace OrvComtradePicture
