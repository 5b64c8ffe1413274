#pragma once

#include <OrvComtradePicture/Range.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradePicture {

/// When a status channel is 1, as columns can show it: memory depends on their number alone, however often it changes.
struct Span {
    Range times;
    bool changes = false; ///< is 0 and 1 by turns, too often to be drawn
};

class StateRaster {
public:
    /// At least one column; `view` has a length.
    StateRaster(Range view, std::size_t columns);

    /// The channel has this state from one time to another one, at or after the one before.
    void add(Range times, bool state);

    /// Whether both states were there within the view.
    bool changes() const { return _wasOn && _wasOff; }

    /// In the order of time. A state shorter than a column takes one.
    std::vector<Span> spans() const;

private:
    const Range _view;
    const double _columnsPerSecond;
    std::vector<std::uint8_t> _columns; ///< states that were there, as bits
    bool _wasOn = false;
    bool _wasOff = false;
};

} // namespace OrvComtradePicture
