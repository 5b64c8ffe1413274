#include "axes.h"

#include <OrvComtradePicture/characters.h>
#include <OrvComtradePicture/text.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace OrvComtradePicture {

namespace {

constexpr std::size_t kAxisCells = 9; // for the labels of values and the axis' line
constexpr std::size_t kDotsAcross = 2;
constexpr std::size_t kDotsDown = 4;

constexpr const char* kAxisLine = "\xE2\x94\x82";    // |
constexpr const char* kAxisMark = "\xE2\x94\xA4";    // |, with a mark to the left
constexpr const char* kCorner = "\xE2\x94\x94";      // axis of values meets axis of times
constexpr const char* kTimeLine = "\xE2\x94\x80";    // -
constexpr const char* kTimeMark = "\xE2\x94\xB4";    // -, with a mark above
constexpr const char* kTriggerLine = "\xE2\x94\x8A"; // dotted
constexpr const char* kTriggerMark = "\xE2\x96\xBC"; // a triangle that points down
constexpr const char* kOn = "\xE2\x96\x84";          // lower half of a cell
constexpr const char* kChanging = "\xE2\x96\x92";    // grey
constexpr const char* kOff = "\xC2\xB7";             // a dot
constexpr const char* kLegendLine = "\xE2\x94\x81";  // heavy -

// Select Graphic Rendition: phases in yellow, green, red and blue, others in magenta, cyan and white.
constexpr std::array<const char*, 7> kColours = {"33", "32", "31", "94", "35", "36", "37"};
constexpr const char* kBold = "1";
constexpr const char* kFaint = "2";
constexpr const char* kTriggerColour = "35";

const char* colourOf(std::size_t colour) {
    return kColours.at(colour < kColours.size()
                           ? colour
                           : kPhaseColours + (colour - kPhaseColours) % (kColours.size() - kPhaseColours));
}

/// The Braille pattern with these dots (Unicode, block "Braille Patterns").
std::string braille(unsigned dots) {
    return {'\xE2', static_cast<char>(0xA0U | dots >> 6U), static_cast<char>(0x80U | (dots & 0x3FU))};
}

/// Dots of curves, and the colour of the last curve in each cell.
class Canvas {
public:
    Canvas(std::size_t cells, std::size_t rows)
        : _cells(cells), _rows(rows), _dots(cells * rows), _colours(cells * rows) {}

    double width() const { return static_cast<double>(_cells * kDotsAcross); }
    double height() const { return static_cast<double>(_rows * kDotsDown); }

    /// From one place to another one, in dots; what lies beside the canvas is left out.
    void line(double x, double y, double toX, double toY, std::size_t colour) {
        if (x > toX) {
            std::swap(x, toX);
            std::swap(y, toY);
        }
        const double slope = toX > x ? (toY - y) / (toX - x) : 0.0;
        if (toX < 0.0 || x >= width()) {
            return;
        }
        if (x < 0.0) {
            y -= slope * x;
            x = 0.0;
        }
        if (toX > width() - 1.0) {
            toY -= slope * (toX - width() + 1.0);
            toX = width() - 1.0;
        }
        const double steps = std::ceil(std::max({std::abs(toX - x), std::min(std::abs(toY - y), height()), 1.0}));
        for (int i = 0; i <= static_cast<int>(steps); ++i) {
            const double share = i / steps;
            _dot(x + (toX - x) * share, y + (toY - y) * share, colour);
        }
    }

    unsigned dots(std::size_t cell, std::size_t row) const { return _dots[row * _cells + cell]; }
    std::size_t colour(std::size_t cell, std::size_t row) const { return _colours[row * _cells + cell]; }

private:
    void _dot(double x, double y, std::size_t colour) {
        constexpr std::array<std::array<unsigned, 2>, 4> bits = {{{1, 8}, {2, 16}, {4, 32}, {64, 128}}};
        const auto column = static_cast<std::size_t>(std::clamp(std::floor(x), 0.0, width() - 1.0));
        const auto line = static_cast<std::size_t>(std::clamp(std::floor(y), 0.0, height() - 1.0));
        const std::size_t place = line / kDotsDown * _cells + column / kDotsAcross;
        _dots[place] |= bits.at(line % kDotsDown).at(column % kDotsAcross);
        _colours[place] = colour;
    }

    std::size_t _cells;
    std::size_t _rows;
    std::vector<unsigned> _dots;
    std::vector<std::size_t> _colours;
};

class TextDrawer {
public:
    TextDrawer(const Figure& figure, const TextStyle& style, const std::function<void(std::string_view)>& write)
        : _figure(figure), _style(style), _write(write), _width(std::max<std::size_t>(style.width, 40)) {
        std::size_t longest = 0;
        for (const Lane& lane : figure.lanes) {
            for (const Trace& trace : lane.traces) {
                longest = std::max(longest, cellCount(trace.name) + 2);
            }
        }
        for (const Strip& strip : figure.strips) {
            longest = std::max(longest, cellCount(strip.name));
        }
        _nameCells = std::min(longest, _width / 4);
        _cells = _width - kAxisCells - 1 - _nameCells;
        const std::size_t others = 5 + figure.strips.size() + figure.notes.size() + figure.lanes.size();
        if (style.height > 0 && !figure.lanes.empty()) {
            _rows = style.height > others ? (style.height - others) / figure.lanes.size() : 0;
            _rows = std::max<std::size_t>(_rows, 2);
        }
    }

    void draw() {
        _line(_painted(shortened(_figure.title, _width), kBold));
        _line(_painted(shortened(_figure.subtitle, _width), kFaint));
        _triggerLabel();
        for (const Lane& lane : _figure.lanes) {
            _lane(lane);
        }
        for (const Strip& strip : _figure.strips) {
            _strip(strip);
        }
        _timeAxis();
        for (const std::string& note : _figure.notes) {
            _paragraph(note);
        }
    }

private:
    void _line(std::string line) const {
        const std::size_t end = line.find_last_not_of(' ');
        line.erase(end == std::string::npos ? 0 : end + 1);
        _write(line + "\n");
    }

    /// In lines that end between words, where they can.
    void _paragraph(std::string_view text) const {
        while (!text.empty()) {
            const std::string fitting = cellCount(text) > _width ? shortened(text, _width + 1) : std::string(text);
            std::size_t end = fitting.size() == text.size() ? text.size() : fitting.rfind(' ');
            end = end == std::string::npos || end == 0 || end > text.size() ? text.size() : end;
            _line(_painted(shortened(text.substr(0, end), _width), kFaint));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
    }

    std::string _painted(const std::string& text, const char* colour) const {
        return _style.colours && !text.empty() ? std::string("\x1B[") + colour + "m" + text + "\x1B[0m" : text;
    }

    static std::string _padded(const std::string& text, std::size_t cells) {
        const std::size_t used = cellCount(text);
        return std::string(cells > used ? cells - used : 0, ' ') + text;
    }

    /// The cell of a time within the view.
    std::size_t _cellOf(double time) const {
        const double share = (time - _figure.view.from) / _figure.view.length();
        return std::min(static_cast<std::size_t>(std::max(share, 0.0) * static_cast<double>(_cells)), _cells - 1);
    }

    bool _isTrigger(std::size_t cell) const { return _figure.trigger && _cellOf(*_figure.trigger) == cell; }

    void _triggerLabel() const {
        if (!_figure.trigger) {
            _line("");
            return;
        }
        const std::string label = kTriggerMark + (" " + triggerLabel(_figure));
        const std::size_t place = kAxisCells + _cellOf(*_figure.trigger);
        const std::size_t cells = cellCount(label);
        const bool fits = place + cells <= _width;
        const std::string left = triggerLabel(_figure) + " " + kTriggerMark;
        _line(_painted(fits ? std::string(place, ' ') + label : _padded(left, place + 1), kTriggerColour));
    }

    void _lane(const Lane& lane) const {
        Canvas canvas(_cells, _rows);
        for (const Trace& trace : lane.traces) {
            _curve(trace, lane, canvas);
        }
        const Axis axis = valueAxis(lane, static_cast<int>(std::max<std::size_t>(_rows / 2, 2)));
        std::vector<std::string> labels(_rows);
        for (const Mark& mark : axis.marks) {
            const double share = (lane.values.to - mark.place) / lane.values.length();
            labels[std::min(static_cast<std::size_t>(std::max(share, 0.0) * static_cast<double>(_rows)), _rows - 1)] =
                mark.label;
        }
        const std::string title = lane.title + (lane.title.empty() || axis.caption.empty() ? "" : ", ") + axis.caption;
        _line(std::string(kAxisCells, ' ') + _painted(shortened(title, _width - kAxisCells), kBold));
        for (std::size_t row = 0; row < _rows; ++row) {
            std::string line = _padded(shortened(labels[row], kAxisCells - 2), kAxisCells - 1);
            line += labels[row].empty() ? kAxisLine : kAxisMark;
            for (std::size_t cell = 0; cell < _cells; ++cell) {
                const unsigned dots = canvas.dots(cell, row);
                line += dots != 0          ? _painted(braille(dots), colourOf(canvas.colour(cell, row)))
                        : _isTrigger(cell) ? _painted(kTriggerLine, kTriggerColour)
                                           : " ";
            }
            _line(line + _legend(lane, row));
        }
    }

    std::string _legend(const Lane& lane, std::size_t row) const {
        if (row >= lane.traces.size()) {
            return {};
        }
        const std::size_t more = lane.traces.size() - row;
        if (row + 1 == _rows && more > 1) {
            return " and " + std::to_string(more) + " more";
        }
        const Trace& trace = lane.traces[row];
        return " " + _painted(kLegendLine, colourOf(trace.colour)) + " " +
               shortened(trace.name, std::max<std::size_t>(_nameCells, 4) - 2);
    }

    void _curve(const Trace& trace, const Lane& lane, Canvas& canvas) const {
        const auto x = [&](double time) { return (time - _figure.view.from) / _figure.view.length() * canvas.width(); };
        const auto y = [&](double value) { return (lane.values.to - value) / lane.values.length() * canvas.height(); };
        const Point* before = nullptr;
        for (const Point& point : trace.points) {
            if (std::isnan(point.value)) {
                before = nullptr;
                continue;
            }
            const Point& from = before == nullptr ? point : *before;
            if (_figure.view.holds(point.time) || before != nullptr) {
                canvas.line(x(from.time), y(from.value), x(point.time), y(point.value), trace.colour);
            }
            before = &point;
        }
    }

    void _strip(const Strip& strip) const {
        std::vector<const char*> cells(_cells, kOff);
        for (const Span& span : strip.spans) {
            const std::size_t begin = _cellOf(span.times.from);
            // What ends where a cell begins is not in it.
            const std::size_t end = std::max(_cellOf(span.times.to - 1e-6 * _figure.view.length()), begin);
            std::fill(cells.begin() + static_cast<std::ptrdiff_t>(begin),
                      cells.begin() + static_cast<std::ptrdiff_t>(end) + 1, span.changes ? kChanging : kOn);
        }
        std::string line = std::string(kAxisCells - 1, ' ') + kAxisLine;
        for (std::size_t cell = 0; cell < _cells; ++cell) {
            const bool isOff = cells[cell] == kOff;
            line += isOff && _isTrigger(cell) ? _painted(kTriggerLine, kTriggerColour)
                                              : _painted(cells[cell], isOff ? kFaint : kBold);
        }
        _line(line + " " + shortened(strip.name, _nameCells));
    }

    void _timeAxis() const {
        const Axis axis = timeAxis(_figure, static_cast<int>(std::max<std::size_t>(_cells / 10, 2)));
        std::vector<const char*> line(_cells, kTimeLine);
        std::string labels(kAxisCells, ' ');
        for (const Mark& mark : axis.marks) {
            const std::size_t cell = _cellOf(mark.place);
            line[cell] = kTimeMark;
            const std::size_t half = mark.label.size() / 2; // labels are ASCII
            const std::size_t middle = kAxisCells + cell > half ? kAxisCells + cell - half : 0;
            const std::size_t begin = std::min(middle, _width - std::min(mark.label.size(), _width));
            if (begin > labels.size() || labels.find_first_not_of(' ') == std::string::npos) {
                labels.resize(std::max(begin, std::size_t{1}), ' ');
                labels += mark.label;
            }
        }
        std::string drawn = std::string(kAxisCells - 1, ' ') + kCorner;
        for (const char* const cell : line) {
            drawn += cell;
        }
        _line(drawn);
        labels += labels.size() + 3 + cellCount(axis.caption) <= _width ? "   " : "\n" + std::string(kAxisCells, ' ');
        _line(labels + axis.caption);
    }

    const Figure& _figure;
    const TextStyle& _style;
    const std::function<void(std::string_view)>& _write;
    const std::size_t _width;
    std::size_t _nameCells = 0;
    std::size_t _rows = 8; ///< of a lane
    std::size_t _cells = 0;
};

} // namespace

std::size_t columnsOf(const TextStyle& style) {
    return std::max<std::size_t>(style.width, 40) * kDotsAcross;
}

void writeText(const Figure& figure, const TextStyle& style, const std::function<void(std::string_view)>& write) {
    TextDrawer(figure, style, write).draw();
}

} // namespace OrvComtradePicture
