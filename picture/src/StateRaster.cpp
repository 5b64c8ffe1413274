#include <OrvComtradePicture/StateRaster.h>

#include <algorithm>

namespace OrvComtradePicture {

namespace {

constexpr std::uint8_t kWasOff = 1;
constexpr std::uint8_t kWasOn = 2;

} // namespace

StateRaster::StateRaster(Range view, std::size_t columns)
    : _view(view), _columnsPerSecond(static_cast<double>(columns) / view.length()), _columns(columns) {}

void StateRaster::add(Range times, bool state) {
    const double from = std::max(times.from, _view.from);
    const double to = std::min(times.to, _view.to);
    if (!(from <= to)) {
        return;
    }
    (state ? _wasOn : _wasOff) = true;
    const auto columnOf = [this](double time) {
        return std::min(static_cast<std::size_t>((time - _view.from) * _columnsPerSecond), _columns.size() - 1);
    };
    const std::size_t last = columnOf(to);
    for (std::size_t i = columnOf(from); i <= last; ++i) {
        _columns[i] |= state ? kWasOn : kWasOff;
    }
}

std::vector<Span> StateRaster::spans() const {
    constexpr std::size_t edge = 2; // columns that are both where a state begins or ends, or is short
    const auto timeOf = [this](std::size_t column) {
        return column == _columns.size() ? _view.to : _view.from + static_cast<double>(column) / _columnsPerSecond;
    };
    std::vector<Span> spans;
    std::size_t end = 0;
    for (std::size_t begin = 0; begin < _columns.size(); begin = end) {
        const std::uint8_t states = _columns[begin];
        end = begin + 1;
        while (end < _columns.size() && _columns[end] == states) {
            ++end;
        }
        if ((states & kWasOn) == 0) {
            continue;
        }
        const bool changes = (states & kWasOff) != 0 && end - begin > edge;
        const Range times{timeOf(begin), timeOf(end)};
        if (!spans.empty() && spans.back().times.to == times.from && spans.back().changes == changes) {
            spans.back().times.to = times.to;
        } else {
            spans.push_back({times, changes});
        }
    }
    return spans;
}

} // namespace OrvComtradePicture
