#pragma once

#include <OrvComtradePicture/Range.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace OrvComtradePicture {

/// A point of a curve. One whose value is NaN is a gap: the curve is interrupted there.
struct Point {
    double time = 0.0; ///< seconds
    double value = 0.0;
};

/// What is left of a curve at some width: of each column the lowest and the highest sample, so that no extreme is lost,
/// not even a single one. Where a column has no more than two samples, the curve is complete. Memory depends on the
/// number of columns alone.
class Envelope {
public:
    /// At least one column; `view` has a length.
    Envelope(Range view, std::size_t columns);

    /// The next sample. A value that is not finite makes a gap. Of the samples outside the view, the nearest before it
    /// and the nearest behind it are kept, to which the curve runs.
    void add(double time, double value);

    /// In the order of time. Without gaps at its ends.
    std::vector<Point> points() const;

    /// Lowest and highest value within the view; nothing where there is none.
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
    Column _before; ///< the sample next to the view, twice
    Column _after;
    bool _gap = false;
};

} // namespace OrvComtradePicture
