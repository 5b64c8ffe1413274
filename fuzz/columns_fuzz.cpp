// A recording (support/recordings.h), then 6 bytes of selection and one for each channel that is chosen. What is
// selected, whole and in blocks, is that part of all columns; channels that there are not are refused; lack of memory
// anywhere is reported, and the next call gives the same.

#include "intake/comparison.h"
#include "intake/openedChecks.h"
#include "support/AllocationBudget.h"
#include "support/recordings.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace OrvComtradeIntake;

struct Query {
    explicit Query(fuzz::Input& input) {
        const std::uint8_t flags = input.u8();
        selection.allAnalog = (flags & 1U) == 0;
        selection.allStatus = (flags & 2U) == 0;
        selection.raw = (flags & 4U) != 0;
        selection.missingAsNan = (flags & 8U) != 0;
        most = input.u8();
        selection.first = input.u8();
        const std::uint8_t count = input.u8();
        selection.count = count == 0 ? UINT64_MAX - selection.first / 2 : count;
        failing = input.u8();
        const std::uint8_t channels = input.u8() % 8;
        for (std::uint8_t i = 0; i < channels; ++i) {
            const std::uint8_t channel = input.u8();
            (channel % 2 == 0 ? selection.analog : selection.status).push_back(channel / 2);
        }
    }

    Selection selection;
    std::size_t most = 0;
    std::size_t failing = 0;
};

std::vector<std::size_t> channelsOf(bool all, const std::vector<std::size_t>& chosen, std::size_t count) {
    std::vector<std::size_t> channels = chosen;
    if (all) {
        channels.resize(count);
        std::iota(channels.begin(), channels.end(), std::size_t{0});
    }
    return channels;
}

/// A part of all columns, taken value by value.
class Part {
public:
    Part(const Columns& whole, const Selection& selection)
        : _whole(whole), _first(std::min<std::uint64_t>(selection.first, whole.samples)),
          _count(std::min<std::uint64_t>(selection.count, whole.samples - _first)),
          _analog(channelsOf(selection.allAnalog, selection.analog, whole.a.size())),
          _status(channelsOf(selection.allStatus, selection.status, whole.states.size())) {}

    Columns columns() const {
        Columns part;
        part.first = _first;
        part.samples = static_cast<std::size_t>(_count);
        for (std::uint64_t i = _first; i < _first + _count; ++i) {
            part.time.push_back(_whole.time.at(i));
        }
        for (std::size_t column = 0; column < _analog.size(); ++column) {
            _addAnalog(part, column);
        }
        for (const std::size_t channel : _status) {
            part.states.emplace_back();
            const std::vector<bool> states = orvtest::statesOf(_whole, channel);
            for (std::uint64_t i = _first; i < _first + _count; ++i) {
                if (part.states.back().empty() || part.states.back().back().state != states[i]) {
                    part.states.back().push_back({i, states[i]});
                }
            }
        }
        return part;
    }

private:
    void _addAnalog(Columns& part, std::size_t column) const {
        const std::size_t channel = _analog[column];
        part.a.push_back(_whole.a.at(channel));
        part.b.push_back(_whole.b.at(channel));
        for (std::uint64_t i = _first; i < _first + _count; ++i) {
            part.analog.push_back(_whole.column(channel)[i]);
        }
        for (const MissingRun& run : _whole.missing) {
            const std::uint64_t begin = std::max(run.sample, _first);
            const std::uint64_t end = std::min(run.sample + run.count, _first + _count);
            if (run.channel == channel && begin < end) {
                part.missing.push_back({column, begin, end - begin});
            }
        }
    }

    const Columns& _whole;
    std::uint64_t _first;
    std::uint64_t _count;
    std::vector<std::size_t> _analog;
    std::vector<std::size_t> _status;
};

bool hasAll(const std::vector<std::size_t>& channels, std::size_t count) {
    return std::all_of(channels.begin(), channels.end(), [count](std::size_t channel) { return channel < count; });
}

void checkRefusal(const Opened& opened, const Query& query) {
    FUZZ_CHECK(fuzz::throws<std::out_of_range>([&] { opened.columns(query.selection); }));
    const auto ignore = [](const Columns& /*block*/) { return true; };
    FUZZ_CHECK(fuzz::throws<std::out_of_range>([&] { opened.columns(query.selection, query.most, ignore); }));
}

void checkFirstBlock(const Opened& opened, const Query& query) {
    std::size_t blocks = 0;
    opened.columns(query.selection, query.most, [&blocks](const Columns& /*block*/) {
        ++blocks;
        return false;
    });
    FUZZ_CHECK(blocks <= 1);
}

void checkLackOfMemory(const Opened& opened, const Query& query) {
    try {
        const orvtest::AllocationBudget budget(query.failing, orvtest::Failing::Once);
        opened.columns(query.selection);
    } catch (const std::bad_alloc&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const fuzz::Files files(input);
    const Query query(input);
    Options options = fuzz::optionsBy(fuzz::hashOf(files.cfg));
    options.encoding.clear();
    const Opened opened = open(files.bytes(), options);
    if (!opened.readable()) {
        FUZZ_CHECK(fuzz::throws<std::logic_error>([&] { opened.columns(query.selection); }));
        return 0;
    }
    const Selection& selection = query.selection;
    if ((!selection.allAnalog && !hasAll(selection.analog, opened.header().analog.size())) ||
        (!selection.allStatus && !hasAll(selection.status, opened.header().status.size()))) {
        checkRefusal(opened, query);
        return 0;
    }
    checkLackOfMemory(opened, query);
    Selection everything;
    everything.raw = selection.raw;
    everything.missingAsNan = selection.missingAsNan;
    const Columns whole = opened.columns(everything);
    const Columns expected = Part(whole, selection).columns();
    fuzz::expectNothing(orvtest::firstDifference(opened.columns(selection), expected));
    if (expected.samples != 0) {
        std::string broken;
        const Columns blocks =
            orvtest::columnsByBlocks(opened, selection, std::max<std::size_t>(query.most, 1), broken);
        fuzz::expectNothing(broken);
        fuzz::expectNothing(orvtest::firstDifference(blocks, expected));
        checkFirstBlock(opened, query);
    }
    return 0;
}
