#pragma once

#include "Recording.h"
#include "data/Blocks.h"

#include <OrvComtradeIntake/Columns.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace OrvComtradeIntake {

/// The part of a recording that is written as a recording of its own: all of it, or some channels and samples. The
/// recording must outlive it.
class Part {
public:
    /// Throws `std::out_of_range` for a channel that does not exist, `std::invalid_argument` for a selection without
    /// any channel or sample.
    Part(const Recording& recording, const Selection& selection);

    bool isWhole() const { return !_cfg; }
    bool hasData() const { return _recording.data.has_value(); }

    const ReadCfg& cfg() const { return _cfg ? *_cfg : _recording.cfg; }
    const DataFacts& facts() const { return _cfg ? _facts : _recording.facts; }

    /// Reads its channels and samples block by block; samples count from the first of the part. The part must outlive
    /// the reader.
    std::unique_ptr<BlockReader> read() const;

private:
    void _selectChannels(const Selection& selection);
    void _selectSamples(const Selection& selection);
    double _findOrigin();
    void _moveStart(double seconds);
    BlockRange _range(std::vector<std::size_t> analog) const;

    const Recording& _recording;
    std::optional<ReadCfg> _cfg; ///< none: the whole
    DataFacts _facts;
    std::vector<std::size_t> _analog; ///< 0-based channels of the recording
    std::vector<std::size_t> _status;
    std::uint64_t _first = 0; ///< 0-based sample of the recording
    std::int64_t _origin = 0; ///< of the stamps, where times come from them
};

} // namespace OrvComtradeIntake
