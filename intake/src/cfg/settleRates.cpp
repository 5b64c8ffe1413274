#include "CfgLine.h"
#include "cfgWriting.h"

#include <algorithm>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

namespace {

/// Samples taken at one rate.
struct Segment {
    double rate = 0.0;
    std::uint64_t length = 0;
};

bool operator==(const Segment& left, const Segment& right) {
    return left.rate == right.rate && left.length == right.length;
}

using Segments = std::vector<Segment>;

/// Finds the line of the first rate among the lines of the `.cfg`, for findings.
class RatePlaces {
public:
    RatePlaces(const Configuration& configuration, const CfgText& text, Findings& findings)
        : _text(text), _findings(findings), _first(configuration.rateLine), _multiplier(configuration.multiplierLine) {}

    void tellRate(std::size_t index, std::size_t field, const char* name, const Told& told, const std::string& found) {
        _tell(_first + index, field, name, told, found);
    }

    void tellMultiplier(const Told& told, const std::string& found) { _tell(_multiplier, 0, "timemult", told, found); }

private:
    void _tell(std::size_t index, std::size_t field, const char* name, const Told& told, const std::string& found) {
        Finding finding;
        finding.severity = told.severity;
        finding.code = told.code;
        finding.file = _text.file;
        finding.field = name;
        finding.found = found;
        finding.expected = told.expected;
        finding.done = told.done;
        finding.mended = told.isMended;
        if (index < _text.lines.size()) {
            Findings unused;
            finding.line = _text.lines[index].number;
            finding.offset = CfgLine(_text, _text.lines[index], unused)[field].offset;
        }
        _findings.add(std::move(finding));
    }

    const CfgText& _text;
    Findings& _findings;
    std::size_t _first;
    std::size_t _multiplier;
};

void append(Segments& segments, Segment segment) {
    if (segment.length == 0) {
        return;
    }
    if (!segments.empty() && segments.back().rate == segment.rate) {
        segments.back().length += segment.length;
    } else {
        segments.push_back(segment);
    }
}

// The first `present` samples; the last rate goes on where the segments hold fewer.
Segments cut(const std::vector<RateLine>& rates, const std::vector<std::uint64_t>& lengths, std::uint64_t present) {
    Segments segments;
    std::uint64_t left = present;
    for (std::size_t index = 0; index < rates.size(); ++index) {
        const bool isLast = index + 1 == rates.size();
        const std::uint64_t length = isLast ? left : std::min(lengths[index], left);
        append(segments, {rates[index].rate, length});
        left -= length;
    }
    return segments;
}

std::vector<std::uint64_t> numbersOf(const std::vector<RateLine>& rates) {
    std::vector<std::uint64_t> numbers;
    numbers.reserve(rates.size());
    for (const RateLine& line : rates) {
        numbers.push_back(line.endSample);
    }
    return numbers;
}

std::vector<std::uint64_t> differencesOf(std::vector<std::uint64_t> ends) {
    for (std::size_t index = ends.size() - 1; index > 0; --index) {
        ends[index] -= ends[index - 1];
    }
    return ends;
}

bool isDecreasing(const std::vector<RateLine>& rates) {
    return !std::is_sorted(rates.begin(), rates.end(), [](const RateLine& left, const RateLine& right) {
        return left.endSample < right.endSample;
    });
}

// The sum stops at `most`, which no number of samples reaches.
std::uint64_t sumOf(const std::vector<RateLine>& rates, std::uint64_t most) {
    std::uint64_t sum = 0;
    for (const RateLine& line : rates) {
        sum = line.endSample > most - sum ? most : sum + line.endSample;
    }
    return sum;
}

bool areLengths(const std::vector<RateLine>& rates, std::uint64_t present) {
    const bool isTotal = rates.back().endSample == present;
    return rates.size() > 1 && (isDecreasing(rates) || (!isTotal && sumOf(rates, UINT64_MAX) == present));
}

// What a reader takes the rates for when they are written without a mark.
Segments readAgain(const std::vector<RateLine>& rates, std::uint64_t present) {
    const std::vector<std::uint64_t> numbers = numbersOf(rates);
    return cut(rates, areLengths(rates, present) ? numbers : differencesOf(numbers), present);
}

std::vector<RateLine> linesOf(const Segments& segments, std::uint64_t present) {
    std::vector<RateLine> lines;
    lines.reserve(segments.size());
    for (const Segment& segment : segments) {
        lines.push_back({segment.rate, segment.length});
    }
    lines.back().endSample = present;
    return lines;
}

std::string endsText(const std::vector<RateLine>& rates) {
    std::string text;
    for (const RateLine& line : rates) {
        if (text.size() > 40) {
            return text + " ...";
        }
        text += (text.empty() ? "" : " ") + std::to_string(line.endSample);
    }
    return text;
}

void settleCount(Configuration& configuration, std::uint64_t present, bool areSegments, RatePlaces& places) {
    std::uint64_t& last = configuration.rates.back().endSample;
    if (last == present) {
        return;
    }
    const std::uint64_t declared = areSegments ? sumOf(configuration.rates, UINT64_MAX) : last;
    if (present != 0 && declared != present) {
        places.tellRate(
            configuration.rates.size() - 1, 1, "endsamp",
            {Severity::Warning, "sample-count", std::to_string(present) + ", the samples present", "written so", true},
            std::to_string(declared));
    }
    last = present;
}

void settleSegments(Configuration& configuration, std::uint64_t present, RatePlaces& places) {
    const std::vector<RateLine> written = configuration.rates;
    const bool isMeantAsLengths = !configuration.ratesAreSettled && areLengths(written, present);
    const bool areSegments = configuration.ratesAreSettled || isMeantAsLengths;
    settleCount(configuration, present, isMeantAsLengths, places);
    const std::vector<std::uint64_t> numbers = numbersOf(written);
    const Segments meant = cut(written, areSegments ? numbers : differencesOf(numbers), present);
    if (isMeantAsLengths && present != 0) {
        places.tellRate(0, 1, "endsamp",
                        {Severity::Warning, "rates-as-lengths",
                         "numbers of the last samples, counted from the first one",
                         "taken for the numbers of samples of each rate", written.back().endSample != present},
                        endsText(written));
    }
    if (meant == cut(written, numbers, present)) {
        const bool isTotalNew = written.back().endSample != present; // a reader without the mark sums up other numbers
        configuration.ratesAreSettled =
            configuration.ratesAreSettled || isTotalNew || meant != readAgain(configuration.rates, present);
        return;
    }
    configuration.rates = linesOf(meant, present);
    configuration.ratesAreSettled = true;
    places.tellRate(0, 1, "endsamp",
                    {Severity::Warning, "rates-cumulative", "the lengths that the library counts",
                     "written as the number of samples of each rate, the last as their total", true},
                    endsText(written));
}

void settleStamps(Configuration& configuration, std::uint64_t present, RatePlaces& places) {
    settleCount(configuration, present, false, places);
    const bool areNanoseconds = configuration.nanosecondStamps && configuration.revision >= 2013;
    if (!areNanoseconds || configuration.stampsAreSettled) {
        return;
    }
    places.tellMultiplier({Severity::Warning, "nanosecond-stamps", "stamps in microseconds",
                           "divided by 1000: dates with nanoseconds have such stamps", true},
                          numberText(configuration.timeMultiplier));
    configuration.timeMultiplier /= 1000.0;
    configuration.stampsAreSettled = true;
}

} // namespace

void settleRates(Configuration& configuration, std::uint64_t present, const CfgText& text, Findings& findings) {
    if (configuration.rates.empty()) {
        configuration.rates.emplace_back();
    }
    RatePlaces places(configuration, text, findings);
    if (configuration.timesAreStamped()) {
        settleStamps(configuration, present, places);
        return;
    }
    settleSegments(configuration, present, places);
    if (configuration.timeMultiplier == 1.0) {
        return;
    }
    places.tellMultiplier({Severity::Warning, "time-multiplier", "1, as times come from the sampling rate",
                           "written as 1: the library would scale the times", true},
                          numberText(configuration.timeMultiplier));
    configuration.timeMultiplier = 1.0;
}

} // namespace OrvComtradeIntake
