#include "data/missingValues.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

namespace OrvComtradeIntake {

void MissingRuns::add(std::size_t channel, std::uint64_t sample) {
    MissingRun& run = _open[channel];
    if (run.count != 0 && run.sample + run.count == sample) {
        ++run.count;
        return;
    }
    if (run.count != 0) {
        _closed.push_back(run);
    }
    run = {channel, sample, 1};
}

std::vector<MissingRun> MissingRuns::take(std::uint64_t samples) {
    std::copy_if(_open.begin(), _open.end(), std::back_inserter(_closed),
                 [](const MissingRun& run) { return run.count != 0; });
    std::vector<MissingRun> runs = std::exchange(_closed, {});
    runs.erase(std::remove_if(runs.begin(), runs.end(), [&](const MissingRun& run) { return run.sample >= samples; }),
               runs.end());
    for (MissingRun& run : runs) {
        run.count = std::min(run.count, samples - run.sample);
    }
    std::sort(runs.begin(), runs.end(), [](const MissingRun& left, const MissingRun& right) {
        return std::tie(left.channel, left.sample) < std::tie(right.channel, right.sample);
    });
    return runs;
}

MissingRange runsOf(const std::vector<MissingRun>& all, std::size_t channel, std::uint64_t first, std::uint64_t end) {
    const auto isBefore = [channel, first](const MissingRun& run) {
        return run.channel < channel || (run.channel == channel && run.sample + run.count <= first);
    };
    const auto isWithin = [channel, end](const MissingRun& run) { return run.channel == channel && run.sample < end; };
    const MissingRun* const behind = all.data() + all.size();
    const MissingRun* const from = std::partition_point(all.data(), behind, isBefore);
    return {from, std::partition_point(from, behind, isWithin)};
}

} // namespace OrvComtradeIntake
