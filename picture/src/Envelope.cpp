#include <OrvComtradePicture/Envelope.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace OrvComtradePicture {

Envelope::Envelope(Range view, std::size_t columns)
    : _view(view), _columnsPerSecond(static_cast<double>(columns) / view.length()), _columns(columns) {}

void Envelope::add(double time, double value) {
    if (!std::isfinite(value)) {
        _gap = true;
        return;
    }
    if (!_view.holds(time)) {
        _addOutside(time, value);
        return;
    }
    const auto number = static_cast<std::size_t>((time - _view.from) * _columnsPerSecond);
    Column& column = _columns[std::min(number, _columns.size() - 1)];
    if (!column.isUsed) {
        column = {{time, value}, {time, value}, true, _gap};
    } else if (value < column.low.value) {
        column.low = {time, value};
    } else if (value > column.high.value) {
        column.high = {time, value};
    }
    _gap = false;
}

void Envelope::_addOutside(double time, double value) {
    const Column sample = {{time, value}, {time, value}, true, _gap};
    if (time < _view.from && (!_before.isUsed || time >= _before.low.time)) {
        _before = sample;
    }
    if (time > _view.to && (!_after.isUsed || time < _after.low.time)) {
        _after = sample;
    }
    _gap = false;
}

std::vector<Point> Envelope::points() const {
    std::vector<Point> points;
    const auto append = [&points](const Column& column) {
        if (!column.isUsed) {
            return;
        }
        const auto [first, second] = std::minmax(
            column.low, column.high, [](const Point& one, const Point& other) { return one.time < other.time; });
        if (column.isBehindGap && !points.empty()) {
            points.push_back({first.time, std::numeric_limits<double>::quiet_NaN()});
        }
        points.push_back(first);
        if (second.time != first.time || second.value != first.value) {
            points.push_back(second);
        }
    };
    append(_before);
    std::for_each(_columns.begin(), _columns.end(), append);
    append(_after);
    return points;
}

std::optional<Range> Envelope::values() const {
    std::optional<Range> values;
    for (const Column& column : _columns) {
        if (column.isUsed) {
            values = values ? Range{std::min(values->from, column.low.value), std::max(values->to, column.high.value)}
                            : Range{column.low.value, column.high.value};
        }
    }
    return values;
}

} // namespace OrvComtradePicture
