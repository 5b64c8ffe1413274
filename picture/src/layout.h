#pragma once

#include <OrvComtradePicture/Figure.h>
#include <OrvComtradePicture/svg.h>

#include <cstddef>
#include <vector>

namespace OrvComtradePicture {

/// Where the parts of a drawing are, in pixels from its upper left corner.
struct Layout {
    double width = 0.0;
    double height = 0.0;
    double left = 0.0;         ///< edge of the plots
    double right = 0.0;        ///< edge of the plots; names are to the right of it
    double top = 0.0;          ///< of the first plot
    std::vector<Range> lanes;  ///< top and bottom of each lane
    std::vector<Range> strips; ///< top and bottom of each strip
    double bottom = 0.0;       ///< of the last plot; the axis of times is below it
    std::size_t nameCells = 0; ///< cells for a name
};

/// Lengths in pixels.

namespace lengths {

constexpr double kTitle = 24.0;    // baseline, from the top
constexpr double kSubtitle = 42.0; // baseline, from the top
constexpr double kTop = 72.0;      // top of the first plot
constexpr double kLeft = 72.0;     // room for the axes of values
constexpr double kEdge = 16.0;
constexpr double kLane = 128.0;
constexpr double kLeastLane = 48.0;
constexpr double kLaneGap = 14.0;
constexpr double kStrip = 16.0;
constexpr double kStripGap = 10.0; // before the first
constexpr double kAxis = 44.0;
constexpr double kNote = 15.0;
constexpr double kNameRow = 16.0;
constexpr double kNameIndent = 26.0; // room for the line in front of a name in a legend
constexpr double kCell = 6.4;        // width of an average letter

} // namespace lengths

Layout layoutOf(const Figure& figure, const SvgStyle& style);

} // namespace OrvComtradePicture
