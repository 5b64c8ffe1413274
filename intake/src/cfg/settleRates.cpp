#include "cfg/settleRates.h"

#include <algorithm>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::uint64_t kMostSamples = INT64_MAX; // as many as a line may declare; sums stop there
constexpr std::uint64_t kGreatShare = 20;         // losing one sample in so many is an error

std::uint64_t sumOf(std::uint64_t left, std::uint64_t right) {
    return right > kMostSamples - left ? kMostSamples : left + right;
}

bool isDecreasing(const std::vector<RateInfo>& rates) {
    return !std::is_sorted(rates.begin(), rates.end(), [](const RateInfo& left, const RateInfo& right) {
        return left.endSample < right.endSample;
    });
}

bool areLengths(const Header& header, std::uint64_t samples) {
    if (header.timesAreStamped()) {
        return false;
    }
    const bool isTotal = header.rates.back().endSample == samples;
    return isDecreasing(header.rates) || (!isTotal && ratesMayBeLengths(header, samples));
}

std::string endsText(const std::vector<RateInfo>& rates) {
    constexpr std::size_t most = 40;
    std::string text;
    for (const RateInfo& rate : rates) {
        if (text.size() > most) {
            return text + " ...";
        }
        text += (text.empty() ? "" : " ") + std::to_string(rate.endSample);
    }
    return text;
}

void addUpLengths(ReadCfg& cfg, Findings& findings) {
    findings.add(Kind::RatesAsLengths, cfg.rate,
                 {endsText(cfg.header.rates), "read as the number of samples of each rate"});
    cfg.wereLengths = true;
    std::uint64_t end = 0;
    for (RateInfo& rate : cfg.header.rates) {
        end = sumOf(end, rate.endSample);
        rate.endSample = end;
    }
}

std::string lostText(std::uint64_t samples, std::uint64_t declared) {
    const double share = static_cast<double>(declared - samples) / static_cast<double>(declared);
    const auto percent = static_cast<unsigned>(std::min(share * 100.0, 99.0)); // some are there
    return std::to_string(samples) + (percent == 0 ? std::string() : " (" + std::to_string(percent) + " % lost)");
}

Place placeOfEnd(const ReadCfg& cfg, std::size_t rate) {
    const bool isWritten = rate < cfg.ends.size(); // else where the rates should begin
    const RateSource end = isWritten ? cfg.ends[rate] : RateSource{cfg.rate.line, cfg.rate.offset};
    return {cfg.file, end.line, "endsamp", end.offset};
}

void reportEmptyRates(const ReadCfg& cfg, Findings& findings) {
    const std::vector<RateInfo>& rates = cfg.header.rates;
    if (cfg.header.samples == 0 || cfg.header.timesAreStamped() || rates.size() == 1) {
        return;
    }
    std::uint64_t begin = 0;
    for (std::size_t index = 0; index < rates.size(); ++index) {
        const bool goesOn = index + 1 == rates.size() && cfg.header.samples > begin;
        if (rates[index].endSample == begin && !goesOn) {
            findings.add(Kind::EmptyRate, placeOfEnd(cfg, index), {"none at rate " + std::to_string(index + 1)});
        }
        begin = rates[index].endSample;
    }
}

void checkCount(const ReadCfg& cfg, Findings& findings) {
    const std::uint64_t samples = cfg.header.samples;
    const std::uint64_t declared = cfg.header.samplesDeclared;
    if (samples == 0 || samples == declared) {
        return;
    }
    const std::string expected = std::to_string(declared) + " samples as declared";
    const Place place = placeOfEnd(cfg, cfg.header.rates.size() - 1);
    if (samples > declared) {
        findings.add(Kind::SampleCount, place, {std::to_string(samples), "", expected});
        return;
    }
    const bool isGreat = declared - samples > (declared - 1) / kGreatShare;
    findings.add(isGreat ? Kind::SamplesLost : Kind::SampleCount, place, {lostText(samples, declared), "", expected});
}

} // namespace

bool ratesMayBeLengths(const Header& header, std::uint64_t samples) {
    std::uint64_t sum = 0;
    for (const RateInfo& rate : header.rates) {
        sum = sumOf(sum, rate.endSample);
    }
    return header.rates.size() > 1 && sum == samples;
}

void settleRates(ReadCfg& cfg, std::uint64_t samples, Findings& findings) {
    Header& header = cfg.header;
    if (header.rates.empty()) {
        header.rates.emplace_back();
    }
    if (!cfg.areRatesSettled && areLengths(header, samples)) {
        addUpLengths(cfg, findings);
    }
    cfg.areRatesSettled = true;
    header.samples = samples;
    header.samplesDeclared = header.rates.back().endSample;
    reportEmptyRates(cfg, findings);
    checkCount(cfg, findings);
}

std::vector<RateInfo> ratesFrom(const std::vector<RateInfo>& rates, std::uint64_t first, std::uint64_t count) {
    std::vector<RateInfo> cut;
    std::uint64_t begin = 0;
    for (const RateInfo& rate : rates) {
        const bool isLast = &rate == &rates.back();
        const std::uint64_t end = isLast ? count : std::min(std::max(rate.endSample, first) - first, count);
        if (end > begin) {
            cut.push_back({rate.rate, end});
            begin = end;
        }
    }
    return cut;
}

} // namespace OrvComtradeIntake
