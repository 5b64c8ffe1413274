// Every line of the input is a sampling-rate line: each alone, and the times that those of them imply which parse.

#include "Cfg.h"
#include "SamplingRate.h"
#include "support/Input.h"
#include "support/check.h"
#include "support/reference.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using OrvComtradeLib::SamplingRate;

constexpr std::uint64_t kLargest = UINT64_MAX;

std::optional<SamplingRate> parsed(const std::string& line) {
    try {
        return SamplingRate(line);
    } catch (const std::invalid_argument&) {
        return std::nullopt;
    } catch (const std::out_of_range&) {
        return std::nullopt;
    }
}

std::optional<SamplingRate> checkLine(const std::string& line) {
    const std::optional<SamplingRate> entry = parsed(line);
    const std::vector<std::string> fields = fuzz::cut(line, ',');
    const std::optional<double> rate = fields.empty() ? std::nullopt : fuzz::numberIn(fields[0]);
    const std::optional<long> end = fields.size() < 2 ? std::nullopt : fuzz::integerIn(fields[1]);
    FUZZ_CHECK(entry.has_value() == (rate && end));
    if (entry) {
        FUZZ_CHECK(fuzz::same(entry->rate, *rate) && entry->endSample == static_cast<std::uint64_t>(*end));
        double previous = -1.0;
        for (const std::uint64_t count : {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{1000}, kLargest}) {
            const double duration = entry->getDuration(count);
            FUZZ_CHECK(fuzz::same(duration, fuzz::slowDuration(*entry, count)));
            FUZZ_CHECK(duration >= previous);
            previous = duration;
        }
        FUZZ_CHECK(fuzz::same(entry->getDuration(entry->endSample), entry->getDuration(kLargest)));
    }
    return entry;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    OrvComtradeLib::Cfg cfg;
    cfg.timeMultiplier = size % 2 == 0 ? 1.0 : 1000.0;
    std::vector<std::uint64_t> indexes = {0, 1, 2, 1000, 1UL << 32U, kLargest / 2, kLargest - 1, kLargest};
    std::uint64_t passed = 0;
    for (int lines = 0; lines < 100 && !input.isOver(); ++lines) {
        const std::string line = input.upTo("\n");
        if (const std::optional<SamplingRate> entry = checkLine(line)) {
            cfg.samplingRates.push_back(*entry);
            passed += entry->endSample;
            indexes.insert(indexes.end(), {entry->endSample, passed - 1, passed, passed + 1, fuzz::hashOf(line)});
        }
    }
    for (const std::uint64_t index : indexes) {
        FUZZ_CHECK(
            fuzz::same(cfg.timeFromSampleIndex(index), fuzz::slowTime(cfg.samplingRates, cfg.timeMultiplier, index)));
    }
    return 0;
}
