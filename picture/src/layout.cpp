#include "layout.h"

#include <OrvComtradePicture/characters.h>

#include <algorithm>
#include <cmath>

namespace OrvComtradePicture {

namespace {

using namespace lengths;

std::size_t longestName(const Figure& figure) {
    std::size_t longest = 0;
    for (const Lane& lane : figure.lanes) {
        longest = std::max(longest, cellCount(lane.title));
        for (const Trace& trace : lane.traces) {
            longest = std::max(longest, cellCount(trace.name));
        }
    }
    for (const Strip& strip : figure.strips) {
        longest = std::max(longest, cellCount(strip.name));
    }
    return longest;
}

double legendHeight(const Lane& lane) {
    return kNameRow * static_cast<double>(lane.traces.size() + (lane.title.empty() ? 0 : 1));
}

} // namespace

Layout layoutOf(const Figure& figure, const SvgStyle& style) {
    Layout layout;
    layout.width = std::max(style.width, 320.0);
    const double most = std::min(260.0, layout.width * 0.3);
    const double names =
        std::clamp(kNameIndent + kCell * static_cast<double>(longestName(figure)), std::min(110.0, most), most);
    layout.nameCells = static_cast<std::size_t>((names - kNameIndent) / kCell);
    layout.left = kLeft;
    layout.right = std::floor(layout.width - kEdge - names);
    layout.top = kTop;

    const double strips = figure.strips.empty() ? 0.0 : kStripGap + kStrip * static_cast<double>(figure.strips.size());
    const double below = kAxis + kNote * static_cast<double>(figure.notes.size()) + (figure.notes.empty() ? 0.0 : 8.0);
    double lane = kLane;
    if (style.height > 0.0 && !figure.lanes.empty()) {
        const auto count = static_cast<double>(figure.lanes.size());
        lane = std::max((style.height - kTop - strips - below - kLaneGap * (count - 1.0)) / count, kLeastLane);
    }
    double y = kTop;
    for (const Lane& one : figure.lanes) {
        y += layout.lanes.empty() ? 0.0 : kLaneGap;
        const double height = std::max(lane, legendHeight(one));
        layout.lanes.push_back({y, y + height});
        y += height;
    }
    y += figure.strips.empty() || figure.lanes.empty() ? 0.0 : kStripGap;
    for (std::size_t i = 0; i < figure.strips.size(); ++i) {
        layout.strips.push_back({y, y + kStrip});
        y += kStrip;
    }
    layout.bottom = y;
    layout.height = std::max(y + below, style.height);
    return layout;
}

} // namespace OrvComtradePicture
