#include "AsciiSamples.h"
#include "LineText.h"
#include "OutputFile.h"
#include "stamps.h"
#include "transcode.h"

#include <algorithm>
#include <cmath>

namespace OrvComtradeIntake {

namespace {

class LineWriter {
public:
    LineWriter(const Configuration& configuration, const DataSurvey& survey)
        : _survey(survey), _stamped(configuration.timesAreStamped()), _stamps(survey) {
        const bool oneRate = configuration.rates.size() == 1 && configuration.rates.front().rate > 0.0;
        _period = oneRate ? 1e6 / configuration.rates.front().rate : 0.0;
    }

    void append(const AsciiSample& sample, std::string& text) {
        LineText line(text, 2 + sample.analog.size(), sample.status.size());
        line.addNumber(sample.number.value_or(static_cast<std::int64_t>(_index + 1)));
        _addStamp(sample, line);
        for (std::size_t i = 0; i < sample.analog.size(); ++i) {
            line.addNumber(_valueOf(sample.analog[i], i));
        }
        line.addStates(sample.status.data(), sample.status.size());
        line.finish();
        ++_index;
    }

private:
    void _addStamp(const AsciiSample& sample, LineText& line) {
        if (_stamped) {
            line.addNumber(static_cast<std::int64_t>(_stamps.next(scaledStamp(sample, _survey.stampExponent))));
        } else if (sample.stamp) {
            line.addNumber(*sample.stamp);
        } else {
            line.addNumber(std::llround(std::min(static_cast<double>(_index) * _period, 4e18)));
        }
    }

    std::int64_t _valueOf(const AnalogField& field, std::size_t channel) const {
        if (field.missing) {
            return kMissingText;
        }
        const int exponent = _survey.exponents.empty() ? 0 : _survey.exponents[channel];
        const std::int64_t value = field.value.scaled(exponent);
        // Only where the channel's other values are so large that this one is rounded anyway.
        return value == kMissingText && exponent != 0 ? kMissingText - 1 : value;
    }

    const DataSurvey& _survey;
    bool _stamped;
    StampWriter _stamps;
    double _period; ///< microseconds per sample, or 0
    std::uint64_t _index = 0;
};

} // namespace

void transcodeAscii(const DataSource& source, const Configuration& configuration, const DataSurvey& survey,
                    OutputFile& out) {
    const DataLayout layout(configuration);
    AsciiSamples samples(source, layout, configuration.timesAreStamped());
    LineWriter writer(configuration, survey);
    for (std::uint64_t written = 0; written < survey.samples; ++written) {
        const PlacedSample* const read = samples.next();
        if (read == nullptr) {
            return;
        }
        writer.append(read->sample, out.buffer());
        out.flushIfLarge();
    }
}

} // namespace OrvComtradeIntake
