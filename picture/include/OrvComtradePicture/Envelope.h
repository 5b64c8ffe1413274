#pragma once

#include <OrvComtradePicture/Range.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace OrvComtradePicture {

/// A point of a curve. A value of NaN is a gap: the curve is interrupted there.
struct Point {
    double time = 0.0; ///< seconds
    double value = 0.0;
};

/// A curve reduced to the width of a drawing. Each column keeps its lowest and its highest sample, so a spike of one
/// sample is never lost. The curve is complete if no column has more than two samples. Memory depends only on the
/// number of columns.
class Envelope {
public:
    /// `view` is in seconds, and its length is not 0. `columns` is at least 1.
    Envelope(Range view, std::size_t columns);

    /// Adds the next sample. A value that is not finite makes a gap. Of the samples outside the view, the nearest one
    /// on each side is kept, so that the curve runs to the edges.
    void add(double time, double value);

    /// The curve in the order of time, without gaps at its ends.
    std::vector<Point> points() const;

    /// Lowest and highest value within the view; nothing if there is no value.
    std::optional<Range> values() const;

private:
    struct Column {
        Point low;
        Point high;
        bool isUsed = false;
        bool isBehindGap = false;
    };

    void _addOutside(double time, double value);

    const Range _view;
    const double _columnsPerSecond;
    std::vector<Column> _columns;
    Column _before; ///< the last sample before the view, as its own low and high
    Column _after;
    bool _gap = false;
};

} // namespace OrvComtradePicture
