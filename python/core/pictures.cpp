#include "pictures.h"

#include <OrvComtradePicture/Figure.h>
#include <OrvComtradePicture/svg.h>

#include <stdexcept>
#include <string_view>

using namespace OrvComtradePicture;

namespace {

constexpr double kLeastSize = 320.0;
constexpr double kMostSize = 20000.0;

TimeBase baseOf(const std::string& word) {
    if (word == "start") {
        return TimeBase::Start;
    }
    if (word == "trigger") {
        return TimeBase::Trigger;
    }
    if (word == "clock") {
        return TimeBase::Clock;
    }
    throw std::invalid_argument("relative_to is \"start\", \"trigger\" or \"clock\", not \"" + word + "\"");
}

Theme themeOf(const std::string& word) {
    if (word == "light") {
        return Theme::Light;
    }
    if (word == "dark") {
        return Theme::Dark;
    }
    if (word == "print") {
        return Theme::Print;
    }
    throw std::invalid_argument("theme is \"light\", \"dark\" or \"print\", not \"" + word + "\"");
}

SvgStyle styleOf(const PictureRequest& request) {
    if (!(request.width >= kLeastSize && request.width <= kMostSize)) {
        throw std::invalid_argument("width is from 320 to 20000 pixels");
    }
    if (!(request.height >= 0.0 && request.height <= kMostSize)) {
        throw std::invalid_argument("height is at most 20000 pixels, or 0");
    }
    SvgStyle style;
    style.width = request.width;
    style.height = request.height;
    style.theme = themeOf(request.theme);
    return style;
}

} // namespace

std::string svgOf(const OrvComtradeIntake::Opened& opened, const PictureRequest& request) {
    const SvgStyle style = styleOf(request);
    Wanted wanted;
    wanted.analog = request.analog;
    wanted.status = request.status;
    wanted.start = request.start;
    wanted.end = request.end;
    wanted.base = baseOf(request.relativeTo);
    wanted.name = request.name;
    wanted.columns = columnsOf(style);
    std::string svg;
    writeSvg(figureOf(sourceOf(opened), wanted), style, [&svg](std::string_view piece) { svg += piece; });
    return svg;
}
