#include "summary.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace OrvComtradePage {

using OrvComtradeIntake::Opened;

namespace {

constexpr std::size_t kTraces = 3;
constexpr std::size_t kParts = 60;

/// The first currents of a recording; the first channels of one that has none.
std::vector<std::size_t> tracedChannels(const Opened& opened) {
    std::vector<std::size_t> currents;
    std::vector<std::size_t> others;
    for (std::size_t channel = 0; channel < opened.header().analog.size(); ++channel) {
        (opened.unitOf(channel) == "A" ? currents : others).push_back(channel);
    }
    std::vector<std::size_t>& traced = currents.empty() ? others : currents;
    traced.resize(std::min(traced.size(), kTraces));
    return traced;
}

using Missing = std::vector<OrvComtradeIntake::MissingRun>;

template <class Value>
std::vector<Extremes> partsOf(const std::vector<Value>& values, const Missing& missing,
                              const OrvComtradeIntake::Scale& scale) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::size_t samples = values.size();
    std::vector<Extremes> parts(std::min(kParts, samples), {infinity, -infinity});
    auto run = missing.begin();
    double before = std::numeric_limits<double>::quiet_NaN();
    std::size_t i = 0;
    for (std::size_t part = 0; part < parts.size(); ++part) {
        Extremes& extremes = parts[part];
        for (const std::size_t end = ((part + 1) * samples + parts.size() - 1) / parts.size(); i < end; ++i) {
            while (run != missing.end() && run->sample + run->count <= i) {
                ++run;
            }
            const double value = static_cast<double>(values[i]) * scale.a + scale.b;
            if (!std::isfinite(value) || (run != missing.end() && run->sample <= i)) {
                before = std::numeric_limits<double>::quiet_NaN();
                continue;
            }
            const double joined = std::isnan(before) ? value : before; // so that the parts meet
            extremes.least = std::min({extremes.least, value, joined});
            extremes.greatest = std::max({extremes.greatest, value, joined});
            before = value;
        }
    }
    return parts;
}

Trace traceOf(const Opened& opened, const RecordedColumns& columns, std::size_t channel) {
    const OrvComtradeIntake::Scale scale = opened.scaleOf(channel, OrvComtradeIntake::Side::Recorded);
    const Missing& missing = columns.missing[channel];
    return {channel, std::visit([&](const auto& values) { return partsOf(values, missing, scale); },
                                columns.analog[channel].values())};
}

} // namespace

PageSummary summaryOf(const Opened& opened, const RecordedColumns& columns) {
    PageSummary summary;
    summary.lastTime = columns.time.empty() ? 0.0 : columns.time.back();
    summary.isReduced = columns.isReduced();
    for (std::size_t channel = 0; channel < columns.states.size(); ++channel) {
        if (columns.states[channel].size() > 1) {
            summary.operated.push_back(channel);
        }
    }
    for (const std::size_t channel : tracedChannels(opened)) {
        summary.traces.push_back(traceOf(opened, columns, channel));
    }
    return summary;
}

} // namespace OrvComtradePage
