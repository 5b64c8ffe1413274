#include "axes.h"
#include "layout.h"
#include "numbers.h"
#include "palette.h"

#include <OrvComtradePicture/characters.h>
#include <OrvComtradePicture/svg.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace OrvComtradePicture {

namespace {

using namespace lengths;

constexpr const char* kFonts = "'DejaVu Sans', Verdana, 'Segoe UI', 'Noto Sans', Helvetica, Arial, sans-serif";

/// Text for XML 1.0, whose characters leave out two that are seen by nobody (2.2).
std::string escaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        text.remove_prefix(character.bytes.size());
        if (!character.code || *character.code == 0xFFFE || *character.code == 0xFFFF || isUnseen(*character.code)) {
            result += "?"; // texts of a figure have none
        } else if (character.bytes == "&") {
            result += "&amp;";
        } else if (character.bytes == "<") {
            result += "&lt;";
        } else if (character.bytes == ">") {
            result += "&gt;";
        } else if (character.bytes == "\"") {
            result += "&quot;";
        } else {
            result += character.bytes;
        }
    }
    return result;
}

/// Tenths of a pixel, without a needless point.
std::string px(double length) {
    std::string text = fixed(length, 1);
    if (text.back() == '0') {
        text.erase(text.size() - 2);
    }
    return text;
}

class Drawer {
public:
    Drawer(const Figure& figure, const SvgStyle& style, const std::function<void(std::string_view)>& write)
        : _figure(figure), _layout(layoutOf(figure, style)), _palette(paletteOf(style.theme)), _write(write) {}

    void draw() {
        _begin();
        _title();
        _backgrounds();
        _timeAxis();
        for (std::size_t i = 0; i < _figure.lanes.size(); ++i) {
            _lane(_figure.lanes[i], _layout.lanes[i]);
        }
        for (std::size_t i = 0; i < _figure.strips.size(); ++i) {
            _strip(_figure.strips[i], _layout.strips[i]);
        }
        _trigger();
        _notes();
        _write("</svg>\n");
    }

private:
    double _x(double time) const {
        return _layout.left + (_layout.right - _layout.left) * ((time - _figure.view.from) / _figure.view.length());
    }

    void _element(const std::string& element) const { _write(element + "\n"); }

    void _text(double x, double y, const std::string& words, const std::string& attributes) const {
        _element("<text x=\"" + px(x) + "\" y=\"" + px(y) + "\" " + attributes + ">" + escaped(words) + "</text>");
    }

    /// A name, whole for who points at it.
    void _name(double x, double y, const std::string& name, const std::string& attributes) const {
        const std::string brief = shortened(name, _layout.nameCells);
        const std::string whole = brief == name ? "" : "<title>" + escaped(name) + "</title>";
        _element("<text x=\"" + px(x) + "\" y=\"" + px(y) + "\" " + attributes + ">" + whole + escaped(brief) +
                 "</text>");
    }

    void _rectangle(double x, double y, double width, double height, const std::string& attributes) const {
        _element("<rect x=\"" + px(x) + "\" y=\"" + px(y) + "\" width=\"" + px(width) + "\" height=\"" + px(height) +
                 "\" " + attributes + "/>");
    }

    std::string _fill(const char* colour) const { return std::string("fill=\"") + colour + "\""; }

    void _begin() const {
        const std::string size = px(_layout.width) + "\" height=\"" + px(_layout.height);
        _element(R"(<svg xmlns="http://www.w3.org/2000/svg" role="img" width=")" + size + R"(" viewBox="0 0 )" +
                 px(_layout.width) + " " + px(_layout.height) + R"(" font-family=")" + kFonts + R"(" font-size="11">)");
        _element("<title>" + escaped(_figure.title) + "</title>");
        _element("<desc>" + escaped(descriptionOf(_figure)) + "</desc>");
        _rectangle(0.0, 0.0, _layout.width, _layout.height, _fill(_palette.background));
    }

    void _title() const {
        const auto cells = [this](double cell) {
            return static_cast<std::size_t>((_layout.width - 2.0 * kEdge) / cell);
        };
        _text(kEdge, kTitle, shortened(_figure.title, cells(9.0)),
              "font-size=\"15\" font-weight=\"bold\" " + _fill(_palette.text));
        _text(kEdge, kSubtitle, shortened(_figure.subtitle, cells(kCell)), _fill(_palette.muted));
    }

    void _backgrounds() const {
        const double width = _layout.right - _layout.left;
        for (const Range& lane : _layout.lanes) {
            _rectangle(_layout.left, lane.from, width, lane.length(), _fill(_palette.plot));
        }
        if (!_layout.strips.empty()) {
            const double top = _layout.strips.front().from;
            _rectangle(_layout.left, top, width, _layout.bottom - top, _fill(_palette.plot));
        }
    }

    void _timeAxis() const {
        const int most = static_cast<int>(std::max((_layout.right - _layout.left) / 75.0, 2.0));
        const Axis axis = timeAxis(_figure, most);
        std::string lines;
        for (const Mark& mark : axis.marks) {
            for (const Range& lane : _layout.lanes) {
                lines += "M" + px(_x(mark.place)) + " " + px(lane.from) + "V" + px(lane.to);
            }
            const double top = _layout.strips.empty() ? _layout.bottom : _layout.strips.front().from;
            lines += "M" + px(_x(mark.place)) + " " + px(top) + "V" + px(_layout.bottom + 4.0);
            _text(_x(mark.place), _layout.bottom + 17.0, mark.label, "text-anchor=\"middle\" " + _fill(_palette.muted));
        }
        _stroke(lines, _palette.grid, 1.0);
        _text((_layout.left + _layout.right) / 2.0, _layout.bottom + 34.0, axis.caption,
              "text-anchor=\"middle\" " + _fill(_palette.muted));
    }

    void _stroke(const std::string& path, const char* colour, double width, const char* more = "") const {
        if (!path.empty()) {
            _element("<path fill=\"none\" stroke=\"" + std::string(colour) + "\" stroke-width=\"" + brief(width) +
                     "\"" + more + " d=\"" + path + "\"/>");
        }
    }

    void _lane(const Lane& lane, Range place) const {
        const auto y = [&](double value) {
            return place.to - place.length() * ((value - lane.values.from) / lane.values.length());
        };
        const Axis axis = valueAxis(lane, static_cast<int>(std::clamp(place.length() / 21.0, 2.0, 8.0)));
        std::string lines;
        for (const Mark& mark : axis.marks) {
            const std::string line = "M" + px(_layout.left) + " " + px(y(mark.place)) + "H" + px(_layout.right);
            if (mark.place == 0.0) {
                _stroke(line, _palette.zero, 1.0);
            } else {
                lines += line;
            }
            _text(_layout.left - 6.0, y(mark.place) + 4.0, mark.label, "text-anchor=\"end\" " + _fill(_palette.muted));
        }
        _stroke(lines, _palette.grid, 1.0);
        const double middle = (place.from + place.to) / 2.0;
        _text(kEdge, middle, shortened(axis.caption, 24),
              "text-anchor=\"middle\" transform=\"rotate(-90 " + px(kEdge) + " " + px(middle) + ")\" " +
                  _fill(_palette.text));
        _curves(lane, place);
        _legend(lane, place);
    }

    /// In a window of its own: what lies outside is cut off.
    void _curves(const Lane& lane, Range place) const {
        const double width = _layout.right - _layout.left;
        const std::string size = px(width) + "\" height=\"" + px(place.length());
        _element("<svg x=\"" + px(_layout.left) + "\" y=\"" + px(place.from) + "\" width=\"" + size +
                 "\" overflow=\"hidden\" fill=\"none\" stroke-linejoin=\"round\" stroke-linecap=\"round\" "
                 "stroke-width=\"" +
                 brief(_palette.line) + "\">");
        for (const Trace& trace : lane.traces) {
            const std::string path = _path(trace, lane, place.length());
            if (!path.empty()) {
                _element("<path stroke=\"" + std::string(traceColour(_palette, trace.colour)) + "\" d=\"" + path +
                         "\"/>");
            }
        }
        _element("</svg>");
    }

    /// Steps in tenths of a pixel from point to point: half as long as places.
    std::string _path(const Trace& trace, const Lane& lane, double height) const {
        const double perSecond = (_layout.right - _layout.left) / _figure.view.length() * 10.0;
        const double perUnit = height * 10.0;
        std::string path;
        long long x = 0;
        long long y = 0;
        bool pen = false;
        bool isAlone = false;
        for (const Point& point : trace.points) {
            if (std::isnan(point.value)) {
                path += isAlone ? "h0" : "";
                pen = isAlone = false;
                continue;
            }
            const double share = (point.value - lane.values.from) / lane.values.length();
            const long long newX = std::llround(std::clamp((point.time - _figure.view.from) * perSecond, -1e6, 1e6));
            const long long newY = std::llround(std::clamp(perUnit * (1.0 - share), -1e6, 1e6));
            path += pen ? "l" : "M";
            path += _tenths(pen ? newX - x : newX) + " " + _tenths(pen ? newY - y : newY);
            isAlone = !pen;
            pen = true;
            x = newX;
            y = newY;
        }
        return path + (isAlone ? "h0" : "");
    }

    static std::string _tenths(long long number) {
        const long long size = number < 0 ? -number : number;
        std::string text = number < 0 ? "-" : "";
        text += size < 10 && size > 0 ? "" : std::to_string(size / 10);
        return size % 10 == 0 ? text : text + "." + static_cast<char>('0' + size % 10);
    }

    void _legend(const Lane& lane, Range place) const {
        const double x = _layout.right + 10.0;
        double y = place.from + 11.0;
        if (!lane.title.empty()) {
            _name(x, y, lane.title, "font-weight=\"bold\" " + _fill(_palette.text));
            y += kNameRow;
        }
        for (const Trace& trace : lane.traces) {
            _stroke("M" + px(x) + " " + px(y - 4.0) + "h12", traceColour(_palette, trace.colour), 2.5);
            _name(x + 17.0, y, trace.name, _fill(_palette.text));
            y += kNameRow;
        }
    }

    void _strip(const Strip& strip, Range place) const {
        const double base = place.to - 4.5;
        _stroke("M" + px(_layout.left) + " " + px(base) + "H" + px(_layout.right), _palette.grid, 1.0);
        std::string solid;
        std::string changing;
        for (const Span& span : strip.spans) {
            const double width = std::max(_x(span.times.to) - _x(span.times.from), 0.6);
            (span.changes ? changing : solid) += "M" + px(_x(span.times.from)) + " " + px(place.from + 3.0) + "h" +
                                                 px(width) + "v8.5h-" + px(width) + "z";
        }
        const std::string fill = "<path fill=\"" + std::string(_palette.bar) + "\"";
        if (!solid.empty()) {
            _element(fill + " d=\"" + solid + "\"/>");
        }
        if (!changing.empty()) {
            _element(fill + " fill-opacity=\"0.5\" d=\"" + changing + "\"/>");
        }
        _name(_layout.right + 10.0, place.to - 4.5, strip.name, _fill(_palette.text));
    }

    void _trigger() const {
        if (!_figure.trigger) {
            return;
        }
        const double x = _x(*_figure.trigger);
        _stroke("M" + px(x) + " " + px(kTop - 4.0) + "V" + px(_layout.bottom), _palette.trigger, 1.0,
                " stroke-dasharray=\"5 3\"");
        const std::string label = triggerLabel(_figure);
        const double half = kCell * static_cast<double>(label.size()) / 2.0;
        const double middle = std::clamp(x, _layout.left + half, std::max(_layout.right - half, _layout.left + half));
        _text(middle, kTop - 8.0, label, "text-anchor=\"middle\" " + _fill(_palette.trigger));
    }

    void _notes() const {
        double y = _layout.bottom + kAxis + 10.0;
        const auto cells = static_cast<std::size_t>((_layout.width - 2.0 * kEdge) / kCell);
        for (const std::string& note : _figure.notes) {
            _text(kEdge, y, shortened(note, cells), _fill(_palette.muted));
            y += kNote;
        }
    }

    const Figure& _figure;
    const Layout _layout;
    const Palette& _palette;
    const std::function<void(std::string_view)>& _write;
};

} // namespace

std::size_t columnsOf(const SvgStyle& style) {
    return static_cast<std::size_t>(std::clamp(style.width, 320.0, 20000.0));
}

void writeSvg(const Figure& figure, const SvgStyle& style, const std::function<void(std::string_view)>& write) {
    Drawer(figure, style, write).draw();
}

} // namespace OrvComtradePicture
