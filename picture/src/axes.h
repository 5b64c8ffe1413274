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
    std::string caption; ///< quantity and unit
};

/// The axis of times, with `most` steps between marks at most.
Axis timeAxis(const Figure& figure, int most);

/// The axis of a lane's values.
Axis valueAxis(const Lane& lane, int most);

/// The label of the trigger's line.
std::string triggerLabel(const Figure& figure);

/// Sentences that describe the picture to those who cannot see it.
std::string descriptionOf(const Figure& figure);

} // namespace OrvComtradePicture
