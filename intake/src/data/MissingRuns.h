#pragma once

#include <OrvComtradeIntake/Columns.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// Collects the samples without a value, channel by channel, as runs. Samples must come in order.
class MissingRuns {
public:
    explicit MissingRuns(std::size_t channels) : _open(channels) {}

    void add(std::size_t channel, std::uint64_t sample);

    /// All runs before sample `samples`, by channel, then sample.
    std::vector<MissingRun> take(std::uint64_t samples);

private:
    std::vector<MissingRun> _open; ///< the last run of each channel
    std::vector<MissingRun> _closed;
};

/// Those of one channel, out of all by channel, then sample.
std::vector<MissingRun> runsOf(const std::vector<MissingRun>& all, std::size_t channel);

/// Shows the missing values of a channel while samples go by.
class MissingCursor {
public:
    MissingCursor(const std::vector<MissingRun>& all, std::size_t channel) : _runs(runsOf(all, channel)) {}

    /// Samples must come in order.
    bool isMissing(std::uint64_t sample) {
        while (_next != _runs.size() && _runs[_next].sample + _runs[_next].count <= sample) {
            ++_next;
        }
        return _next != _runs.size() && _runs[_next].sample <= sample;
    }

    bool isEmpty() const { return _runs.empty(); }

private:
    std::vector<MissingRun> _runs;
    std::size_t _next = 0;
};

} // namespace OrvComtradeIntake
