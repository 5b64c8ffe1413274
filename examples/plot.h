// The drawing of plot_fault: traces in panels and strips of states over one axis of time, as SVG.

#pragma once

#include "host.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace plot {

// Lengths are in pixels.
inline constexpr double kLeft = 70.0;
inline constexpr double kPlotWidth = 660.0;
inline constexpr double kLegendWidth = 240.0;
inline constexpr double kTop = 44.0;
inline constexpr double kPanelHeight = 190.0;
inline constexpr double kBottom = 46.0;
inline constexpr double kGap = 20.0;
inline constexpr double kStripHeight = 20.0;
inline constexpr std::size_t kLegendLetters = 30;
inline constexpr std::array<const char*, 7> kColours = {"#d48806", "#009e73", "#d62728", "#0072b2",
                                                        "#cc79a7", "#56b4e9", "#555555"};

struct Range {
    double from;
    double to;

    double length() const { return to - from; }
    bool holds(double value) const { return value >= from && value <= to; }
};

struct Point {
    double time;
    double value;
};

struct Trace {
    std::string label;
    std::vector<Point> points;
};

struct Panel {
    std::string unit;
    std::vector<Trace> traces;
};

struct Strip {
    std::string label;
    std::vector<Range> on; ///< when the state is 1
};

/// A drawing and what it shows; times are in seconds.
struct Figure {
    std::string title;
    Range view;
    Range window;                  ///< marked by a tint
    std::optional<double> trigger; ///< marked by a line
    std::vector<Panel> panels;
    std::vector<Strip> strips;
};

/// Text of a recording, for a document in XML.
inline std::string escaped(const std::string& text) {
    std::string result;
    for (const char letter : host::printable(text)) {
        switch (letter) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        default:
            result += letter;
        }
    }
    return result;
}

inline std::string shortened(const std::string& text, std::size_t letters) {
    std::size_t end = 0;
    for (std::size_t i = 0; i < letters && end < text.size(); ++i) {
        const auto character = host::firstCharacter(std::string_view(text).substr(end));
        end += character ? character->length : 1;
    }
    return end < text.size() ? text.substr(0, end) + "..." : text;
}

/// A length in hundredths of a pixel.
inline std::string px(double length) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), length, std::chars_format::fixed, 2);
    return end.ec == std::errc() ? std::string(text.data(), end.ptr) : "0";
}

/// Round numbers within a range, some five of them.
inline std::vector<double> ticksOf(Range range) {
    const double rough = range.length() / 5.0;
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    const double step = power * (rough < 1.5 * power   ? 1.0
                                 : rough < 3.5 * power ? 2.0
                                 : rough < 7.5 * power ? 5.0
                                                       : 10.0);
    std::vector<double> ticks;
    const double first = std::ceil(range.from / step);
    for (int i = 0; i < 12 && (first + i) * step <= range.to; ++i) {
        ticks.push_back((first + i) * step);
    }
    return ticks;
}

inline std::string tickLabel(double value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 6);
    return {text.data(), end.ptr};
}

inline Range rangeOf(const Panel& panel) {
    Range range{std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()};
    for (const Trace& trace : panel.traces) {
        for (const auto& [time, value] : trace.points) {
            if (std::isfinite(value)) {
                range = {std::min(range.from, value), std::max(range.to, value)};
            }
        }
    }
    if (range.from > range.to) {
        return {-1.0, 1.0};
    }
    const double margin = range.length() > 0.0 ? 0.06 * range.length() : std::max(std::abs(range.to) * 0.1, 1e-30);
    return {range.from - margin, range.to + margin};
}

class Canvas {
public:
    Canvas(std::ostream& out, Range view, double bottom) : _out(out), _view(view), _bottom(bottom) {}

    void text(double x, double y, const std::string& words, const std::string& attributes = "") {
        _out << "<text x=\"" << px(x) << "\" y=\"" << px(y) << "\" " << attributes << ">" << escaped(words)
             << "</text>\n";
    }

    void line(double x1, double y1, double x2, double y2, const std::string& attributes) {
        _out << "<path d=\"M" << px(x1) << " " << px(y1) << "L" << px(x2) << " " << px(y2) << "\" " << attributes
             << "/>\n";
    }

    void rectangle(double x, double y, double width, double height, const std::string& attributes) {
        _out << "<rect x=\"" << px(x) << "\" y=\"" << px(y) << "\" width=\"" << px(width) << "\" height=\""
             << px(height) << "\" " << attributes << "/>\n";
    }

    void window(Range window) {
        const double from = _x(std::max(window.from, _view.from));
        const double to = _x(std::min(window.to, _view.to));
        rectangle(from, kTop, to - from, _bottom - kTop, "fill=\"#fdf0d5\"");
    }

    void trigger(double time) {
        if (_view.holds(time)) {
            line(_x(time), kTop - 4, _x(time), _bottom, "stroke=\"#333\" stroke-dasharray=\"4 3\"");
            text(_x(time), kTop - 8, "trigger", "text-anchor=\"middle\"");
        }
    }

    void timeAxis() {
        for (const double tick : ticksOf(_view)) {
            line(_x(tick), kTop, _x(tick), _bottom + 4, kGrid);
            text(_x(tick), _bottom + 18, tickLabel(tick), "text-anchor=\"middle\"");
        }
        text(kLeft + kPlotWidth / 2, _bottom + 36, "time, s", "text-anchor=\"middle\"");
    }

    void panel(const Panel& panel, double top) {
        const Range range = rangeOf(panel);
        const auto y = [&](double value) { return top + kPanelHeight * ((range.to - value) / range.length()); };
        for (const double tick : ticksOf(range)) {
            line(kLeft - 4, y(tick), kLeft + kPlotWidth, y(tick), tick == 0.0 ? kAxis : kGrid);
            text(kLeft - 8, y(tick) + 4, tickLabel(tick), "text-anchor=\"end\"");
        }
        rectangle(kLeft, top, kPlotWidth, kPanelHeight, "fill=\"none\" stroke=\"#888\"");
        text(kLeft, top - 6, panel.unit.empty() ? "no unit" : panel.unit + ", secondary", "font-weight=\"bold\"");
        for (std::size_t i = 0; i < panel.traces.size(); ++i) {
            const std::string stroke = std::string("stroke=\"") + kColours[i % kColours.size()] + "\"";
            const double legend = top + 14 + 16 * static_cast<double>(i);
            line(kLeft + kPlotWidth + 10, legend - 4, kLeft + kPlotWidth + 26, legend - 4,
                 stroke + " stroke-width=\"2\"");
            text(kLeft + kPlotWidth + 32, legend, shortened(panel.traces[i].label, kLegendLetters));
            _path(panel.traces[i], y, stroke);
        }
    }

    void strip(const Strip& strip, double top) {
        line(kLeft, top + 15, kLeft + kPlotWidth, top + 15, "stroke=\"#888\"");
        for (const Range& on : strip.on) {
            rectangle(_x(on.from), top + 4, _x(on.to) - _x(on.from), 11, "fill=\"#0072b2\"");
        }
        text(kLeft + kPlotWidth + 10, top + 14, shortened(strip.label, kLegendLetters));
    }

private:
    static constexpr const char* kGrid = "stroke=\"#000\" stroke-opacity=\"0.12\"";
    static constexpr const char* kAxis = "stroke=\"#000\" stroke-opacity=\"0.5\"";

    double _x(double time) const { return kLeft + kPlotWidth * ((time - _view.from) / _view.length()); }

    template <class Projection> void _path(const Trace& trace, const Projection& y, const std::string& stroke) {
        _out << "<path fill=\"none\" stroke-width=\"1.2\" stroke-linejoin=\"round\" " << stroke << " d=\"";
        bool pen = false; // lifted where a value is no number
        for (const auto& [time, value] : trace.points) {
            if (std::isfinite(value)) {
                _out << (pen ? "L" : "M") << px(_x(time)) << " " << px(y(value)) << "\n";
            }
            pen = std::isfinite(value);
        }
        _out << "\"/>\n";
    }

    std::ostream& _out;
    Range _view;
    double _bottom;
};

inline void draw(std::ostream& out, const Figure& figure) {
    std::vector<double> tops;
    double bottom = kTop;
    for (const Panel& panel : figure.panels) {
        tops.push_back(bottom + kGap);
        const double legendHeight = 16.0 * static_cast<double>(panel.traces.size()) + 4.0;
        bottom += kGap + std::max(kPanelHeight, legendHeight);
    }
    const double stripsTop = bottom + kGap / 2;
    bottom = stripsTop + kStripHeight * static_cast<double>(figure.strips.size());

    const double width = kLeft + kPlotWidth + kLegendWidth;
    const double height = bottom + kBottom;
    out << R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" << px(width) << R"(" height=")" << px(height)
        << R"(" viewBox="0 0 )" << px(width) << " " << px(height)
        << R"(" font-family="DejaVu Sans, Verdana, sans-serif" font-size="11">)"
        << "\n";
    Canvas canvas(out, figure.view, bottom);
    canvas.rectangle(0, 0, width, height, "fill=\"#fff\"");
    canvas.text(kLeft, 20, figure.title, "font-size=\"15\" font-weight=\"bold\"");
    canvas.window(figure.window);
    canvas.timeAxis();
    for (std::size_t i = 0; i < tops.size(); ++i) {
        canvas.panel(figure.panels[i], tops[i]);
    }
    for (std::size_t i = 0; i < figure.strips.size(); ++i) {
        canvas.strip(figure.strips[i], stripsTop + kStripHeight * static_cast<double>(i));
    }
    if (figure.trigger) {
        canvas.trigger(*figure.trigger);
    }
    out << "</svg>\n";
}

} // namespace plot
