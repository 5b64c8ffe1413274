#include "input/columnsOf.h"

#include "Comtrade.h"

#include <algorithm>
#include <numeric>

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Selection;
using OrvComtradeIntake::StateChange;
using namespace OrvComtradeLib;

namespace {

std::vector<std::size_t> channelsOf(bool all, const std::vector<std::size_t>& some, std::size_t count) {
    if (!all) {
        return some;
    }
    std::vector<std::size_t> channels(count);
    std::iota(channels.begin(), channels.end(), std::size_t{0});
    return channels;
}

std::vector<StateChange> changesOf(const std::vector<Sample>& samples, std::size_t first, std::size_t end,
                                   std::size_t channel) {
    std::vector<StateChange> changes;
    for (std::size_t i = first; i < end; ++i) {
        const bool state = samples[i].binaryValues.at(channel);
        if (changes.empty() || changes.back().state != state) {
            changes.push_back({i, state});
        }
    }
    return changes;
}

} // namespace

void columnsOf(const Comtrade& comtrade, const Selection& selection, std::size_t most, const OnBlock& onBlock) {
    const std::vector<Sample>& samples = comtrade.dat.samples;
    const auto& configs = comtrade.cfg.analogChannelConfigs;
    const auto analog = channelsOf(selection.allAnalog, selection.analog, configs.size());
    const auto status = channelsOf(selection.allStatus, selection.status, comtrade.cfg.binaryChannelConfigs.size());
    const std::size_t begin = std::min<std::uint64_t>(selection.first, samples.size());
    const std::size_t end = begin + std::min<std::uint64_t>(selection.count, samples.size() - begin);
    for (std::size_t first = begin; first < end;) {
        Columns block;
        block.first = first;
        block.samples = std::min(most, end - first);
        const std::size_t behind = first + block.samples;
        for (std::size_t i = first; i < behind; ++i) {
            block.time.push_back(samples[i].time);
        }
        for (const std::size_t channel : analog) {
            block.a.push_back(configs.at(channel).a);
            block.b.push_back(configs.at(channel).b);
            for (std::size_t i = first; i < behind; ++i) {
                block.analog.push_back(samples[i].analogValues.at(channel));
            }
        }
        for (const std::size_t channel : status) {
            block.states.push_back(changesOf(samples, first, behind, channel));
        }
        if (!onBlock(block)) {
            return;
        }
        first = behind;
    }
}
