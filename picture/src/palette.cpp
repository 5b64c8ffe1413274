#include "palette.h"

namespace OrvComtradePicture {

namespace {

// Phases are amber, green and red, as conductors are marked in much of the world; the green is a bluish one and the
// three differ in lightness, so that people who do not see red and green can distinguish them.
constexpr Palette kLight = {
    "#ffffff",
    "#f8f9fb",
    "#e2e6eb",
    "#aeb6c0",
    "#1c2128",
    "#5b6470",
    "#3b5b8c",
    "#8a2be2",
    {"#d08700", "#00856a", "#cf222e", "#0a5fc2", "#8250df", "#57606a", "#bf3989", "#0a7d91", "#7a5c00", "#3f7d20"},
    1.25};
constexpr Palette kDark = {
    "#0d1117",
    "#141a22",
    "#28303a",
    "#5a6470",
    "#e6edf3",
    "#98a2ad",
    "#7aa7e8",
    "#c49bff",
    {"#eac54f", "#3fbf95", "#ff6b66", "#58a6ff", "#bc8cff", "#b1bac4", "#f778ba", "#39c5cf", "#c9a227", "#8fce5a"},
    1.25};
constexpr Palette kPrint = {
    "#ffffff",
    "#ffffff",
    "#d0d0d0",
    "#808080",
    "#000000",
    "#303030",
    "#404040",
    "#000000",
    {"#c48a00", "#007358", "#9d0018", "#1f4e9d", "#5b2c83", "#444444", "#99005c", "#00566b", "#5f4700", "#2f5f16"},
    1.1};

} // namespace

const Palette& paletteOf(Theme theme) {
    switch (theme) {
    case Theme::Dark:
        return kDark;
    case Theme::Print:
        return kPrint;
    case Theme::Light:
        break;
    }
    return kLight;
}

const char* traceColour(const Palette& palette, std::size_t colour) {
    constexpr std::size_t phases = 4;
    const std::size_t others = palette.traces.size() - phases;
    return palette.traces.at(colour < palette.traces.size() ? colour : phases + (colour - phases) % others);
}

} // namespace OrvComtradePicture
