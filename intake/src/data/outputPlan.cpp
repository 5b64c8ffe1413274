#include "data/outputPlan.h"

#include "base/decimal.h"
#include "base/numbers.h"
#include "cfg/standardForm.h"
#include "data/ChannelRange.h"
#include "data/DecimalScales.h"
#include "data/Stamps.h"
#include "data/missingValues.h"
#include "data/singleText.h"
#include "data/survey.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

namespace {

constexpr int kFirstOfWideTypes = 2013; // BINARY32 and FLOAT32

bool needsWideType(DataType type) {
    return type == DataType::Binary32 || type == DataType::Float32;
}

/// What the values of a channel need.
struct ChannelNeeds {
    ChannelNeeds(const AnalogInfo& channel, bool hasRange) : range(channel, hasRange) {}

    void see(double recorded) {
        seen.least = std::min(seen.least, recorded);
        seen.greatest = std::max(seen.greatest, recorded);
        ++seen.count;
        seen.outside += range.isLeftBy(recorded) ? 1U : 0U;
    }

    ChannelRange range;
    SeenValues seen;
    double greatest = 0.0; ///< size of raw values
    bool areIntegers = true;
    bool haveMarker = false; ///< some value is the number that stands for a missing one
};

/// By channel, how raw values differ from those recorded.
struct Scales {
    Scales(const DataFacts& facts, std::size_t channels) : ofDecimals(channels), ofIntegers(channels, 1.0) {
        for (std::size_t i = 0; i < facts.exponents.size(); ++i) {
            if (facts.type == DataType::Ascii) {
                ofDecimals[i] = facts.exponents[i];
            } else {
                ofIntegers[i] = std::pow(10.0, facts.exponents[i]);
            }
        }
    }

    std::vector<int> ofDecimals;    ///< powers of ten that make them integers
    std::vector<double> ofIntegers; ///< what integers are multiplied by for the library alone
};

/// Looks at all values.
class ValueNeeds {
public:
    /// `markers`: by channel, the raw value that would be written as the number that stands for a missing one.
    ValueNeeds(const ReadCfg& cfg, std::vector<double> markers, bool wantsScales)
        : scales(wantsScales ? markers.size() : 0), _markers(std::move(markers)), _wantsScales(wantsScales) {
        for (std::size_t i = 0; i < cfg.header.analog.size(); ++i) {
            channels.emplace_back(cfg.header.analog[i], cfg.analog[i].hasRange);
        }
    }

    void look(BlockReader& reader, const DataFacts& facts, const Scales& raw) {
        std::vector<MissingCursor> missing;
        for (std::size_t channel = 0; channel < channels.size(); ++channel) {
            missing.emplace_back(facts.missing, channel);
        }
        Block block;
        while (reader.next(block)) {
            for (std::size_t channel = 0; channel < channels.size(); ++channel) {
                _add(block, channel, raw, missing[channel]);
            }
        }
    }

    std::vector<ChannelNeeds> channels;
    DecimalScales scales; ///< of singles that become integers of a text

private:
    void _add(const Block& block, std::size_t channel, const Scales& raw, MissingCursor& missing) {
        ChannelNeeds& needs = channels[channel];
        const double scale = raw.ofIntegers[channel];
        const double recorded = std::pow(10.0, raw.ofDecimals[channel]);
        for (std::size_t row = 0; row < block.rows; ++row) {
            const double value = block.raw[channel * block.rows + row] / scale;
            if (missing.isMissing(block.first + row)) {
                continue;
            }
            needs.see(value / recorded);
            if (!std::isfinite(value)) {
                continue;
            }
            needs.greatest = std::max(needs.greatest, std::abs(value));
            needs.areIntegers = needs.areIntegers && value == std::trunc(value);
            needs.haveMarker = needs.haveMarker || value == _markers[channel];
            if (_wantsScales) {
                _addDecimal(channel, static_cast<float>(value));
            }
        }
    }

    void _addDecimal(std::size_t channel, float value) {
        std::array<char, 32> text{};
        const char* const end = writeSingle(text.data(), text.data() + text.size(), value);
        const std::string_view digits(text.data(), static_cast<std::size_t>(end - text.data()));
        scales.add(channel, readDecimal(digits).value_or(Decimal()));
    }

    std::vector<double> _markers;
    bool _wantsScales;
};

int revisionOf(const Header& header, const Form& form) {
    const int revision = form.revision.value_or(header.revision);
    const bool isKnown = revision == 1991 || revision == 1999 || revision == 2013 || revision == header.revision;
    if (!isKnown) {
        throw std::invalid_argument("no revision " + std::to_string(revision) + ": 1991, 1999 and 2013 can be written");
    }
    return revision;
}

DataType typeOf(const Header& header, const Form& form, int revision) {
    const DataType type = form.dataType.value_or(header.dataType);
    const bool isNewForm = form.revision || form.dataType;
    if (!isNewForm || !needsWideType(type) || revision >= kFirstOfWideTypes) {
        return type;
    }
    if (form.dataType) {
        throw std::invalid_argument(std::string(typeWord(type)) + " came with revision 2013");
    }
    return DataType::Ascii;
}

/// Plans one channel: scales it in the header, and says how it is written.
class ChannelPlanner {
public:
    ChannelPlanner(AnalogInfo& channel, const AnalogSource& source, const ChannelNeeds& needs, int exponent,
                   DataType from, DataType to)
        : _channel(channel), _source(source), _needs(needs), _exponent(exponent), _from(from), _to(to) {}

    ChannelForm plan(bool mayHaveDecimals, int exponentOfText) {
        ChannelForm form;
        if (_to == DataType::Ascii) {
            _planText(mayHaveDecimals, exponentOfText, form);
        } else {
            _scale(_exponent, 1.0);
            const double limit = _greatestOfType();
            const bool fits = (_needs.areIntegers || _to == DataType::Float32) && _needs.greatest <= limit;
            if (!fits) {
                form.divisor = _needs.greatest / limit;
                _scale(0, form.divisor);
                _channel.min = -limit;
                _channel.max = limit;
            }
        }
        return form;
    }

private:
    double _greatestOfType() const {
        if (_to == DataType::Float32) {
            return static_cast<double>(std::numeric_limits<float>::max());
        }
        return _to == DataType::Binary ? 32767.0 : 2147483647.0;
    }

    void _planText(bool mayHaveDecimals, int exponentOfText, ChannelForm& form) {
        if (_from == DataType::Float32 && mayHaveDecimals && !_needs.haveMarker) {
            form.isReal = true;
            return;
        }
        if (_from == DataType::Float32) {
            const int exponent = exponentOfText == 0 && _needs.haveMarker ? 1 : exponentOfText;
            form.divisor = std::pow(10.0, -exponent);
            _scale(exponent, 1.0);
            return;
        }
        if (mayHaveDecimals && !_needs.haveMarker) {
            form.decimals = _exponent;
            return;
        }
        const int more = _needs.haveMarker ? 1 : 0;
        form.divisor = more != 0 ? 0.1 : 1.0;
        _scale(_exponent + more, 1.0);
    }

    /// Raw values are written times ten to the power of `exponent`, divided by `divisor`.
    void _scale(int exponent, double divisor) {
        if (exponent != 0) {
            const long double power = std::pow(10.0L, static_cast<long double>(exponent));
            _channel.a = static_cast<double>(_source.a / power);
            _scaleRange(static_cast<double>(power));
        }
        _channel.a *= divisor;
    }

    /// Values that leave a range by rounding would do so by more units, once they are smaller. A range that many leave
    /// may be left by few in other units, which would look like faults. So both have room in it.
    void _scaleRange(double power) {
        const ChannelRange& range = _needs.range;
        const SeenValues& seen = _needs.seen;
        const RangeOf meaning = range.of(seen);
        if (meaning == RangeOf::Encoding || meaning == RangeOf::Unit) { // of no raw values
            return;
        }
        if (meaning == RangeOf::Recorded) {
            _takeIn(std::max(seen.least, range.low()), std::min(seen.greatest, range.high()));
        } else if (meaning == RangeOf::Others) {
            _takeIn(seen.least, seen.greatest);
        }
        constexpr double finite = std::numeric_limits<double>::max();
        _channel.min = std::max(_channel.min * power, -finite);
        _channel.max = std::min(_channel.max * power, finite);
    }

    void _takeIn(double least, double greatest) {
        _channel.min = std::min(_channel.min, least);
        _channel.max = std::max(_channel.max, greatest);
    }

    AnalogInfo& _channel;
    const AnalogSource& _source;
    const ChannelNeeds& _needs;
    int _exponent;
    DataType _from;
    DataType _to;
};

/// Whether decimals become integers, and a range with them that values may leave by rounding.
bool isRangeScaled(const ReadCfg& cfg, const DataFacts& facts, int revision) {
    for (std::size_t i = 0; i < facts.exponents.size() && revision < kFirstOfWideTypes; ++i) {
        const ChannelRange range(cfg.header.analog[i], cfg.analog[i].hasRange);
        if (facts.exponents[i] != 0 && range.isCompared()) {
            return true;
        }
    }
    return false;
}

/// Whether every value can be written as it stands. In 1991 a value may be the number for missing ones.
bool areKept(const ReadCfg& cfg, const DataFacts& facts, const DataOutput& output, int revision) {
    if (output.type != facts.type || facts.type != DataType::Ascii) {
        return output.type == facts.type;
    }
    const bool mayHaveMarker = revision < 1999 && !facts.missing.empty();
    return revision == cfg.header.revision && !mayHaveMarker && !isRangeScaled(cfg, facts, revision);
}

/// In a range beyond it, the number for missing values would be a value. The range up to it is that of an encoding, so
/// values that are greater do not leave it.
void limitToOldMarker(AnalogInfo& channel) {
    constexpr auto marker = static_cast<double>(MissingCode::kOld);
    if (channel.max > marker) {
        channel.min = -marker;
        channel.max = marker;
    }
}

/// Stamps as the rates make them, in the unit of the stamps.
std::vector<std::pair<std::uint64_t, double>> stampSteps(const ReadCfg& cfg, const Header& out) {
    const double nanoseconds = countsNanoseconds(out) ? 1000.0 : 1.0;
    std::vector<std::pair<std::uint64_t, double>> steps;
    for (const Segment& segment : segmentsOf(cfg, cfg.header.samples)) {
        steps.emplace_back(segment.begin, kMicrosecondsPerSecond * nanoseconds / segment.rate / out.timeMultiplier);
    }
    return steps;
}

} // namespace

OutputPlan planForLibrary(const Header& header, const DataFacts& facts) {
    OutputPlan plan;
    plan.output.type = facts.libraryType;
    plan.output.renumbers = facts.areNumbersAlike; // records may else become zeros alone, which pass for no data
    plan.output.statuses = header.status.size();
    plan.output.channels.resize(header.analog.size());
    if (!header.timesAreStamped() && header.rates.size() == 1) {
        plan.output.stampSteps = {{0, kMicrosecondsPerSecond / header.rates.front().rate}};
    }
    return plan;
}

OutputPlan planForStandard(const ReadBlocks& read, const ReadCfg& cfg, const DataFacts& facts, const Form& form) {
    const int revision = revisionOf(cfg.header, form);
    OutputPlan plan;
    plan.header = cfg.header;
    plan.header.dataType = typeOf(cfg.header, form, revision);
    const double multiplier = plan.header.timeMultiplier * facts.stamps.unit / facts.stamps.factor;
    plan.header.timeMultiplier = std::max(multiplier, std::numeric_limits<double>::min());
    if (revision != cfg.header.revision) {
        plan.header = withRevision(std::move(plan.header), revision);
    }

    DataOutput& output = plan.output;
    output.type = plan.header.dataType;
    output.statuses = plan.header.status.size();
    output.lineEnd = "\r\n";
    output.renumbers = true;
    output.keepsMarkers = false;
    output.missingCode = revision < 1999 ? MissingCode::kOld : MissingCode::kUsual;
    output.mayLeaveStampsOut = true;
    output.mayHaveLongNumbers = true;
    const bool isSameUnit = countsNanoseconds(plan.header) == countsNanoseconds(cfg.header);
    const bool haveRoom = output.type == DataType::Ascii || facts.doStampsFitRecords;
    output.computesStamps = !plan.header.timesAreStamped() && !(facts.areStampsSound && isSameUnit && haveRoom);
    output.stampSteps = stampSteps(cfg, plan.header);

    const Scales scales(facts, cfg.header.analog.size());
    std::vector<double> markers;
    for (const int exponent : scales.ofDecimals) {
        markers.push_back(static_cast<double>(output.missingCode) * std::pow(10.0, revision < 2013 ? 0 : exponent));
    }
    ValueNeeds needs(cfg, std::move(markers), facts.type == DataType::Float32 && output.type == DataType::Ascii);
    if (read && !areKept(cfg, facts, output, revision)) {
        needs.look(*read(), facts, scales);
    }
    const std::vector<int> exponentsOfText = needs.scales.exponents();
    for (std::size_t i = 0; i < cfg.header.analog.size(); ++i) {
        ChannelPlanner planner(plan.header.analog[i], cfg.analog[i], needs.channels[i], scales.ofDecimals[i],
                               facts.type, output.type);
        ChannelForm channel = planner.plan(revision >= 2013, exponentsOfText.empty() ? 0 : exponentsOfText[i]);
        channel.divisor *= scales.ofIntegers[i];
        output.channels.push_back(channel);
        if (output.missingCode == MissingCode::kOld && !runsOf(facts.missing, i).empty()) {
            limitToOldMarker(plan.header.analog[i]);
        }
    }
    return plan;
}

} // namespace OrvComtradeIntake
