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
    double left = 0.0;         ///< of the plots
    double right = 0.0;        ///< of the plots; names begin behind it
    double top = 0.0;          ///< of the first plot
    std::vector<Range> lanes;  ///< top and bottom
    std::vector<Range> strips; ///< top and bottom
    double bottom = 0.0;       ///< of the last plot; below it the axis of times
    std::size_t nameCells = 0; ///< for a name
};

namespace lengths {

constexpr double kTitle = 24.0;    // baseline
constexpr double kSubtitle = 42.0; // baseline
constexpr double kTop = 72.0;      // of the first plot
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
constexpr double kNameIndent = 26.0; // of a name in a legend, for its line
constexpr double kCell = 6.4;        // of a letter of usual width

} // namespace lengths

Layout layoutOf(const Figure& figure, const SvgStyle& style);

} // namespace OrvComtradePicture
