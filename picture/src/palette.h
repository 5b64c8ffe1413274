#pragma once

#include <OrvComtradePicture/svg.h>

#include <array>
#include <cstddef>

namespace OrvComtradePicture {

/// The colours of a theme.
struct Palette {
    const char* background;
    const char* plot; ///< background of curves and bars
    const char* grid;
    const char* zero; ///< line of the value 0
    const char* text;
    const char* muted; ///< axes, notes
    const char* bar;   ///< status channels
    const char* trigger;
    std::array<const char*, 10> traces; ///< phases A, B, C, neutral; then others
    double line;                        ///< width of curves, pixels
};

const Palette& paletteOf(Theme theme);

/// The colour of a trace for any value of Trace::colour: colours repeat.
const char* traceColour(const Palette& palette, std::size_t colour);

} // namespace OrvComtradePicture
