#pragma once

#include <OrvComtradePicture/Range.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradePicture {

/// A time in which a status channel is 1.
struct Span {
    Range times;          ///< seconds
    bool changes = false; ///< it changes between 0 and 1 here, too often to be drawn
};

/// The states of a status channel reduced to the columns of a drawing. Memory depends only on their number, however
/// often the channel changes.
class StateRaster {
public:
    /// `view` is in seconds, and its length is not 0. `columns` is at least 1.
    StateRaster(Range view, std::size_t columns);

    /// The channel has this state during `times`, which begin no earlier than those added before.
    void add(Range times, bool state);

    /// Whether both states were there within the view.
    bool changes() const { return _wasOn && _wasOff; }

    /// The spans in the order of time. A state shorter than a column takes a whole one.
    std::vector<Span> spans() const;

private:
    const Range _view;
    const double _columnsPerSecond;
    std::vector<std::uint8_t> _columns; ///< states that were there, as bits
    bool _wasOn = false;
    bool _wasOff = false;
};

} // namespace OrvComtradePicture
