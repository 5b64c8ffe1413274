#pragma once

#include <OrvComtradePicture/Figure.h>

#include <cstddef>
#include <functional>
#include <string_view>

namespace OrvComtradePicture {

/// How a figure is drawn as text.
struct TextStyle {
    std::size_t width = 100; ///< cells; less than 40 counts as 40
    std::size_t height = 0;  ///< lines; 0: as many as the contents need. There are more if they need more
    bool colours = false;    ///< by escape sequences (ISO 6429)
};

/// The number of columns that a figure for this style needs (see Wanted::columns): two dots of Braille per cell.
std::size_t columnsOf(const TextStyle& style);

/// Draws the figure as lines of text in UTF-8, with curves in Braille patterns. `write` gets them line by line. What it
/// throws passes through.
void writeText(const Figure& figure, const TextStyle& style, const std::function<void(std::string_view)>& write);

} // namespace OrvComtradePicture
