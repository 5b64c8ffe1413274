#pragma once

#include <OrvComtradePicture/Figure.h>

#include <cstddef>
#include <functional>
#include <string_view>

namespace OrvComtradePicture {

enum class Theme { Light, Dark, Print };

/// How a figure is drawn as SVG.
struct SvgStyle {
    double width = 1000.0; ///< pixels; less than 320 counts as 320
    double height = 0.0;   ///< pixels; 0: as high as the contents need. The drawing is higher if they need more
    Theme theme = Theme::Light;
};

/// The number of columns that a figure for this style needs (see Wanted::columns).
std::size_t columnsOf(const SvgStyle& style);

/// Draws the figure as SVG 1.1. It is well-formed whatever the names are. It has no styles, scripts, identifiers or
/// references, so it can stand in any page, and its text can be selected and searched. `write` gets pieces of UTF-8.
/// What it throws passes through.
void writeSvg(const Figure& figure, const SvgStyle& style, const std::function<void(std::string_view)>& write);

} // namespace OrvComtradePicture
