#pragma once

#include "PreparedRecording.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// Collects the samples without a value, channel by channel, as runs. Samples must come in order.
class MissingValues {
public:
    explicit MissingValues(std::size_t channels) : _open(channels) {}

    void add(std::size_t channel, std::uint64_t sample);

    /// All runs before sample `samples`, by channel, then sample.
    std::vector<MissingRun> take(std::uint64_t samples);

private:
    std::vector<MissingRun> _open; ///< the last run of each channel
    std::vector<MissingRun> _closed;
};

} // namespace OrvComtradeIntake
