#pragma once

#include <OrvComtradePicture/Figure.h>

#include <cstddef>
#include <functional>
#include <string_view>

namespace OrvComtradePicture {

struct TextStyle {
    std::size_t width = 100; ///< cells, 40 at least
    std::size_t height = 0;  ///< lines; 0: as the contents need. They may need more than this, too
    bool colours = false;    ///< by escape sequences (ISO 6429)
};

/// The number of columns that a figure for this style needs: two dots of Braille to a cell.
std::size_t columnsOf(const TextStyle& style);

/// Draws the figure as lines of text in UTF-8, curves in Braille patterns. Gives them to `write`, line by line.
void writeText(const Figure& figure, const TextStyle& style, const std::function<void(std::string_view)>& write);

} // namespace OrvComtradePicture
