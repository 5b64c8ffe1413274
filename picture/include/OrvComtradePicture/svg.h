#pragma once

#include <OrvComtradePicture/Figure.h>

#include <cstddef>
#include <functional>
#include <string_view>

namespace OrvComtradePicture {

enum class Theme { Light, Dark, Print };

struct SvgStyle {
    double width = 1000.0; ///< pixels, 320 at least
    double height = 0.0;   ///< pixels; 0: as the contents need. They may need more than this, too
    Theme theme = Theme::Light;
};

/// The number of columns that a figure for this style needs.
std::size_t columnsOf(const SvgStyle& style);

/// Draws the figure as SVG 1.1: well-formed whatever the names, without styles, scripts, identifiers or references, so
/// that it may stand in any page. Text is text. Gives pieces of UTF-8 to `write`.
void writeSvg(const Figure& figure, const SvgStyle& style, const std::function<void(std::string_view)>& write);

} // namespace OrvComtradePicture
