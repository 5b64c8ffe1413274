#include "data/survey.h"

#include "cfg/settleRates.h"
#include "data/DataLayout.h"
#include "data/asciiSurvey.h"
#include "data/binarySurvey.h"
#include "data/missingValues.h"
#include "data/recordForm.h"
#include "report/limits.h"

#include <algorithm>
#include <string>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kNamedChannels = 4;

/// What stands in the data for a missing value.
std::string codeOf(const Header& header) {
    switch (header.dataType) {
    case DataType::Binary:
        return "0x8000";
    case DataType::Binary32:
        return "0x80000000";
    case DataType::Float32:
        return "NaN or the largest negative single";
    case DataType::Ascii:
        break;
    }
    return std::to_string(MissingCode(header).number()) + " or nothing";
}

/// One finding for all of them, which names the channels.
void reportMissing(const ByteSource& data, const Header& header, const DataFacts& facts, Findings& findings) {
    std::uint64_t places = 0;
    std::size_t channels = 0;
    std::string names;
    const MissingRun* first = nullptr;
    for (const MissingRun& run : facts.missing) {
        places += run.count;
        first = first == nullptr || run.sample < first->sample ? &run : first;
        const bool isNew = &run == facts.missing.data() || (&run)[-1].channel != run.channel;
        if (isNew && ++channels <= kNamedChannels) {
            names += (channels == 1 ? "A" : ", A") + std::to_string(run.channel + 1);
        }
    }
    if (first == nullptr) {
        return;
    }
    names += channels > kNamedChannels ? " and " + std::to_string(channels - kNamedChannels) + " more channels" : "";
    const DataLayout layout(header);
    const std::uint64_t position =
        facts.type == DataType::Ascii
            ? 0
            : first->sample * facts.recordStride + DataLayout::kAnalogOffset + first->channel * layout.valueLength();
    findings.add(
        Kind::MissingValues, {data.name(), 0, "A" + std::to_string(first->channel + 1), data.offsetInFile(position)},
        {codeOf(header) + " in " + names + ", first in sample " + std::to_string(first->sample + 1), "", "", places});
}

} // namespace

std::optional<DataFacts> surveyData(const ByteSource& data, ReadCfg& cfg, const Options& options, Findings& findings,
                                    ColumnTap* tap) {
    const std::optional<DataForm> form = formOf(data, cfg, options.acceptsAnyNumbers, findings);
    if (!form) {
        return std::nullopt;
    }
    const Place start{data.name(), 0, "", data.offsetInFile(0)};
    const std::uint64_t records = form->stride == 0 ? 0 : data.length() / form->stride;
    if (isAbove(records, options.limits.samples, "samples", "samples", start, findings)) {
        return std::nullopt;
    }
    cfg.header.dataType = form->type;
    if (tap != nullptr) {
        tap->begin(cfg, form->type, form->stride, data.length());
    }
    std::optional<DataFacts> facts =
        form->type == DataType::Ascii ? surveyAscii(data, cfg, options.limits.samples, findings, tap)
                                      : surveyBinary(data, cfg, form->stride, options.acceptsAnyNumbers, findings, tap);
    if (facts) {
        reportMissing(data, cfg.header, *facts, findings);
    }
    return facts;
}

std::vector<Segment> segmentsOf(const ReadCfg& cfg, std::uint64_t samples) {
    if (cfg.header.timesAreStamped()) {
        return {};
    }
    if (cfg.header.rates.size() == 1) {
        return {{0, cfg.header.rates.front().rate}};
    }
    ReadCfg settled; // without the channels, which may be many
    settled.header.rates = cfg.header.rates;
    settled.areRatesSettled = cfg.areRatesSettled;
    Findings unused;
    settleRates(settled, samples, unused);
    std::vector<Segment> segments;
    std::uint64_t begin = 0;
    for (const RateInfo& rate : settled.header.rates) {
        if (begin < rate.endSample || &rate == &settled.header.rates.back()) { // which goes on to the end
            segments.push_back({begin, rate.rate});
        }
        begin = rate.endSample;
    }
    return segments;
}

} // namespace OrvComtradeIntake
