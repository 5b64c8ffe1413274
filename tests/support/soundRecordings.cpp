#include "support/soundRecordings.h"

#include "support/LittleEndianBytes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace orvtest {

using OrvComtradeIntake::DataType;

std::uint64_t Random::next() {
    _state += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = _state;
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31U);
}

std::int64_t Random::between(std::int64_t low, std::int64_t high) {
    const auto span = static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low) + 1;
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(low) + (span == 0 ? next() : next() % span));
}

std::size_t Random::count(std::size_t low, std::size_t high) {
    return static_cast<std::size_t>(between(static_cast<std::int64_t>(low), static_cast<std::int64_t>(high)));
}

Shape randomShape(Random& random) {
    Shape shape;
    shape.revision = random.oneOf({1991, 1999, 1999, 2013});
    shape.type = shape.revision == 2013
                     ? random.oneOf({DataType::Ascii, DataType::Binary, DataType::Binary32, DataType::Float32})
                     : random.oneOf({DataType::Ascii, DataType::Binary});
    shape.analogs = random.count(0, 4);
    shape.statuses = random.count(shape.analogs == 0 ? 1 : 0, random.onceIn(5) ? 40 : 4);
    shape.samples = random.count(2, random.onceIn(4) ? 60 : 12); // one of zeros alone is not known for a sample
    shape.rates = random.oneOf({RateHabit::One, RateHabit::One, RateHabit::Several, RateHabit::Zero});
    shape.rate =
        random.oneOf<const char*>({"50", "60", "600", "1000", "1000.0000", "1200", "1920.", "2400", "4800", "6400",
                                   "7673.6171875", "10000", "15360.000000000", "20000.0", "30720", "1562500", "0.5"});
    shape.stamps =
        random.oneOf({StampHabit::FromZero, StampHabit::FromZero, StampHabit::FromOnePeriod, StampHabit::FromElsewhere,
                      StampHabit::Jittered, StampHabit::Constant, StampHabit::Missing, StampHabit::Wrapped});
    if (shape.rates == RateHabit::Zero) {
        shape.rate = random.oneOf<const char*>({"60", "1000", "2400", "6400", "10000"});
        shape.stamps = random.oneOf({StampHabit::FromZero, StampHabit::FromElsewhere, StampHabit::Jittered});
    }
    shape.range = random.oneOf({RangeHabit::OfValues, RangeHabit::OfEncoding, RangeHabit::OfEncoding,
                                RangeHabit::OfBinary, RangeHabit::OfAscii, RangeHabit::OfValuesScaled});
    shape.firstNumber = random.oneOf({1U, 1U, 0U, 4501U});
    shape.missingOnceIn = random.onceIn(3) ? 7 : 0;
    shape.hasNanoseconds = shape.revision == 2013 && shape.rate != "0.5" && random.onceIn(3);
    shape.hasCarriageReturns = !random.onceIn(3);
    shape.hasBlanks = random.onceIn(5);
    shape.hasUtf8 = random.onceIn(5);
    shape.endsWithMark = random.onceIn(5);
    return shape;
}

std::string text(const Shape& shape) {
    constexpr std::array<const char*, 3> rates = {"one rate", "several rates", "rate 0"};
    constexpr std::array<const char*, 7> stamps = {"from 0",   "from one period", "from elsewhere", "jittered",
                                                   "constant", "missing",         "wrapped"};
    constexpr std::array<const char*, 5> ranges = {"of values", "of encoding", "of BINARY", "of ASCII", "scaled"};
    std::string text = std::to_string(shape.revision) + " " + typeWord(shape.type) + ", " +
                       std::to_string(shape.analogs) + " analog, " + std::to_string(shape.statuses) + " status, " +
                       std::to_string(shape.samples) + " samples, ";
    text += rates.at(static_cast<std::size_t>(shape.rates));
    text += " " + shape.rate + ", stamps ";
    text += stamps.at(static_cast<std::size_t>(shape.stamps));
    text += ", range ";
    text += ranges.at(static_cast<std::size_t>(shape.range));
    text += ", numbers from " + std::to_string(shape.firstNumber);
    text += shape.hasNanoseconds ? ", nanoseconds" : "";
    return text;
}

std::string SoundRecording::cfg() const {
    std::string all;
    for (const std::string& line : cfgLines) {
        all += line + (shape.hasCarriageReturns ? "\r\n" : "\n");
    }
    return all;
}

std::string SoundRecording::dat() const {
    std::string all;
    for (const std::string& record : records) {
        all += record;
    }
    return all + (shape.endsWithMark && shape.type == DataType::Ascii ? "\x1A" : "");
}

std::string SoundRecording::combined() const {
    const std::string end = shape.hasCarriageReturns ? "\r\n" : "\n";
    const std::string data = dat();
    const std::string length = shape.type == DataType::Ascii ? "" : ": " + std::to_string(data.size());
    return "--- file type: CFG ---" + end + cfg() + "--- file type: INF ---" + end + "--- file type: HDR ---" + end +
           "--- file type: DAT " + typeWord(shape.type) + length + " ---" + end + data;
}

std::size_t SoundRecording::rateLine() const {
    return 2 + shape.analogs + shape.statuses + 2;
}

std::size_t SoundRecording::startLine() const {
    const std::size_t type = cfgLines.size() - (shape.revision == 1991 ? 1 : shape.revision == 1999 ? 2 : 4);
    return type - 2;
}

namespace {

/// Shortest text with so many digits behind the point.
std::string decimalText(double number, int places) {
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "%.*f", places, number);
    return text.data();
}

struct Segment {
    std::string rate;
    std::size_t end = 0; ///< 0-based sample behind the last
};

/// A channel's raw values, and its line as fields.
struct Channel {
    std::vector<double> values;
    std::vector<bool> missing;
    std::vector<std::string> fields;
};

/// Makes one recording.
class Maker {
public:
    Maker(const Shape& shape, Random& random) : _shape(shape), _random(random) { _recording.shape = shape; }

    SoundRecording make() {
        _addHeading();
        for (std::size_t i = 0; i < _shape.analogs; ++i) {
            _addAnalog(i);
        }
        for (std::size_t i = 0; i < _shape.statuses; ++i) {
            _addStatus(i);
        }
        _addRates();
        _addTimes();
        _addRecords();
        _recording.facts.samples = _shape.samples;
        _recording.facts.layout1991 = _shape.revision == 1991;
        _recording.facts.nanosecondStamps = _shape.hasNanoseconds && _shape.rates == RateHabit::Zero;
        return std::move(_recording);
    }

private:
    void _addLine(const std::vector<std::string>& fields) {
        std::string line;
        for (const std::string& field : fields) {
            const bool isSpaced = _shape.hasBlanks && _random.onceIn(2);
            line += (line.empty() && &field == fields.data() ? "" : ",") + (isSpaced ? " " + field + "  " : field);
        }
        _recording.cfgLines.push_back(line);
    }

    void _addHeading() {
        std::vector<std::string> heading{_shape.hasUtf8 ? "\xD0\x9F\xD0\xA1-110" : "Station 7", "Recorder"};
        if (_shape.revision != 1991) {
            heading.push_back(std::to_string(_shape.revision));
        }
        _addLine(heading);
        _addLine({std::to_string(_shape.analogs + _shape.statuses), std::to_string(_shape.analogs) + "A",
                  std::to_string(_shape.statuses) + "D"});
    }

    /// The largest value that all careless ranges let through where they are taken at their word.
    double _limit() const {
        switch (_shape.type) {
        case DataType::Ascii:
            return 99990.0;
        case DataType::Binary:
            return 32767.0;
        case DataType::Binary32:
            return 2147483647.0;
        default:
            return 1e6;
        }
    }

    /// A wave, a level, or nothing at all.
    double _value(std::size_t sample, double amplitude, double level, double period) {
        const double wave = amplitude * std::sin(6.28 * static_cast<double>(sample) / period) + level;
        const double noise = static_cast<double>(_random.between(-3, 3));
        const double rounded = std::round(std::clamp(wave + (amplitude == 0.0 ? 0.0 : noise), -_limit(), _limit()));
        return _shape.type == DataType::Float32 ? rounded / 64.0 : rounded;
    }

    Channel _channelOfValues() {
        constexpr double sizes[] = {0.0, 20.0, 900.0, 20000.0, 1e5, 1e9};
        const double size = std::min(_limit(), sizes[_random.count(0, 5)]);
        const double amplitude = _random.onceIn(8) ? 0.0 : size * 0.7;
        const double level = _random.onceIn(2) ? 0.0 : size * 0.3;
        const auto period = static_cast<double>(_random.between(5, 40));
        Channel channel;
        for (std::size_t i = 0; i < _shape.samples; ++i) {
            channel.values.push_back(_value(i, amplitude, level, period));
            channel.missing.push_back(_shape.missingOnceIn != 0 && _random.onceIn(_shape.missingOnceIn));
        }
        return channel;
    }

    /// Fields min and max, and b, which is then chosen with them.
    void _setRange(Channel& channel, double a, double b) {
        const auto [least, greatest] = std::minmax_element(channel.values.begin(), channel.values.end());
        std::string& low = channel.fields[8];
        std::string& high = channel.fields[9];
        const bool looksRaw = _shape.range == RangeHabit::OfValuesScaled && a > 1.0;
        switch (looksRaw ? RangeHabit::OfEncoding : _shape.range) {
        case RangeHabit::OfValues:
            low = decimalText(std::floor(*least), 0);
            high = decimalText(std::ceil(*greatest) + (*least == *greatest ? 1.0 : 0.0), 0);
            break;
        case RangeHabit::OfEncoding:
            low = _shape.type == DataType::Ascii    ? "-99999"
                  : _shape.type == DataType::Binary ? "-32767"
                                                    : "-2147483648";
            high = _shape.type == DataType::Ascii ? "99998" : _shape.type == DataType::Binary ? "32767" : "2147483647";
            if (_shape.type == DataType::Float32) {
                low = "-3.40282347E+38";
                high = "3.40282347E+38";
            }
            break;
        case RangeHabit::OfBinary:
            low = "-32767";
            high = "32767";
            break;
        case RangeHabit::OfAscii:
            low = "-99999";
            high = "99998";
            break;
        case RangeHabit::OfValuesScaled:
            low = decimalText(std::floor(*least * a + b) - 1.0, 0);
            high = decimalText(std::ceil(*greatest * a + b) + 1.0, 0);
            break;
        }
    }

    void _addAnalog(std::size_t index) {
        Channel channel = _channelOfValues();
        const std::string a =
            _random.oneOf<const char*>({"0.0093", "0.000412507", "2.0893E-5", "0.0987548828125", "3.25"});
        const std::string b = _random.onceIn(2) ? "0" : _random.oneOf<const char*>({"-0.676083", "12.5"});
        const std::string id =
            _shape.hasUtf8 ? "\xD0\xA4\xD0\xB0\xD0\xB7\xD0\xB0" : _random.oneOf<const char*>({"Ua", "I 0", "3I0"});
        channel.fields = {std::to_string(index + 1),
                          id + std::to_string(index + 1),
                          _random.oneOf<const char*>({"A", "", "N"}),
                          _random.oneOf<const char*>({"", "line 1"}),
                          _random.oneOf<const char*>({"V", "kV", "A", "mA", "Hz", "%", "MW"}),
                          a,
                          b,
                          _random.oneOf<const char*>({"0", "0", "12.5", "-0.014902551"}),
                          "",
                          ""};
        _setRange(channel, std::strtod(a.c_str(), nullptr), std::strtod(b.c_str(), nullptr));
        if (_shape.revision != 1991) {
            const std::string ratio = _random.oneOf<const char*>({"1", "110000", "600.0"});
            channel.fields.insert(channel.fields.end(), {ratio, _random.oneOf<const char*>({"1", "100", "5"}),
                                                         _random.oneOf<const char*>({"P", "S", "p", "s"})});
        }
        _addLine(channel.fields);
        _channels.push_back(channel);
    }

    void _addStatus(std::size_t index) {
        std::vector<std::string> fields{std::to_string(index + 1), "Trip " + std::to_string(index + 1)};
        if (_shape.revision != 1991) {
            fields.insert(fields.end(), {"", ""});
        }
        fields.emplace_back(_random.onceIn(5) ? "1" : "0");
        _addLine(fields);
        std::vector<bool> states;
        bool state = _random.onceIn(4);
        for (std::size_t i = 0; i < _shape.samples; ++i) {
            state = _random.onceIn(12) ? !state : state;
            states.push_back(state);
        }
        _states.push_back(states);
    }

    void _addRates() {
        _addLine({_random.oneOf<const char*>({"50", "60", "50.0", "60."})});
        if (_shape.rates == RateHabit::Several) {
            const std::size_t most = std::min<std::size_t>(4, _shape.samples);
            const std::size_t count = _random.count(std::min<std::size_t>(2, most), most);
            for (std::size_t i = 0; i < count; ++i) {
                const std::size_t rest = count - 1 - i;
                const std::size_t before = _segments.empty() ? 0 : _segments.back().end;
                const std::size_t end = rest == 0 ? _shape.samples : _random.count(before + 1, _shape.samples - rest);
                _segments.push_back({_random.oneOf<const char*>({"1000", "50", "3200", "600", "6400.5"}), end});
            }
        } else {
            _segments.push_back({_shape.rate, _shape.samples});
        }
        const bool isStamped = _shape.rates == RateHabit::Zero;
        _addLine({isStamped ? "0" : std::to_string(_segments.size())});
        for (const Segment& segment : _segments) {
            _addLine({isStamped ? "0" : segment.rate, std::to_string(segment.end)});
        }
    }

    /// Seconds from the first sample.
    double _timeOf(std::size_t sample) const {
        double time = 0.0;
        std::size_t begin = 0;
        for (const Segment& segment : _segments) {
            const std::size_t end = std::min(sample, segment.end);
            time += static_cast<double>(end - begin) / std::strtod(segment.rate.c_str(), nullptr);
            if (sample <= segment.end) {
                break;
            }
            begin = segment.end;
        }
        return time;
    }

    /// The clock of a time, in microseconds or nanoseconds behind four o'clock.
    std::string _dateText(std::int64_t nanoseconds) const {
        const std::int64_t seconds = nanoseconds / 1000000000;
        const std::int64_t fraction = nanoseconds % 1000000000 / (_shape.hasNanoseconds ? 1 : 1000);
        std::array<char, 80> text{};
        std::snprintf(text.data(), text.size(), "%s,%02d:%02d:%02d.%0*lld",
                      _shape.revision == 1991 ? "03/21/20" : "21/03/2020", static_cast<int>(4 + seconds / 3600),
                      static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60),
                      _shape.hasNanoseconds ? 9 : 6, static_cast<long long>(fraction));
        return text.data();
    }

    void _addTimes() {
        const std::int64_t begin = _random.between(0, 999999) * 1000;
        const double length = _timeOf(_shape.samples - 1);
        const auto share = static_cast<double>(_random.between(0, 90)) / 100.0;
        _recording.cfgLines.push_back(_dateText(begin));
        _recording.cfgLines.push_back(_dateText(begin + static_cast<std::int64_t>(length * share * 1e6) * 1000));
        _addLine({typeWord(_shape.type)});
        _multiplier = _shape.revision == 1991 || !_random.onceIn(4) ? 1.0 : _random.oneOf({0.25, 0.5});
        if (_shape.revision != 1991) {
            _addLine(
                {_multiplier == 1.0 ? _random.oneOf<const char*>({"1", "1.0", "1."}) : decimalText(_multiplier, 2)});
        }
        if (_shape.revision == 2013) {
            _addLine({"0", "0"});
            _addLine({"0", "0"});
        }
    }

    /// Nothing where the sample has no stamp.
    std::string _stampText(std::size_t sample, std::uint32_t& stamp) {
        if (_shape.stamps == StampHabit::Missing) {
            stamp = 0xFFFFFFFFU;
            return "";
        }
        const double unit = (_shape.hasNanoseconds ? 1e-9 : 1e-6) * _multiplier;
        const auto period = static_cast<std::int64_t>(_timeOf(1) / unit);
        auto number = static_cast<std::int64_t>(std::floor(_timeOf(sample) / unit + 1e-6));
        switch (_shape.stamps) {
        case StampHabit::FromOnePeriod:
            number += period;
            break;
        case StampHabit::FromElsewhere:
            number += _elsewhere;
            break;
        case StampHabit::Jittered:
            number += period < 100 ? 0 : _random.between(sample == 0 ? 0 : -1, 1);
            break;
        case StampHabit::Constant:
            number = 0;
            break;
        case StampHabit::Wrapped:
            number += (std::int64_t{1} << 32U) - 3 * period / 2 - 2;
            break;
        default:
            break;
        }
        stamp = static_cast<std::uint32_t>(number);
        stamp = stamp == 0xFFFFFFFFU ? stamp - 1 : stamp;
        return std::to_string(stamp);
    }

    void _addRecords() {
        _elsewhere = _random.between(1, 2000000);
        for (std::size_t i = 0; i < _shape.samples; ++i) {
            std::uint32_t stamp = 0;
            const std::string stampText = _stampText(i, stamp);
            const std::uint32_t number = _shape.firstNumber + static_cast<std::uint32_t>(i);
            _recording.records.push_back(_shape.type == DataType::Ascii ? _lineOf(i, number, stampText)
                                                                        : _recordOf(i, number, stamp));
        }
    }

    std::string _lineOf(std::size_t sample, std::uint32_t number, const std::string& stamp) {
        std::string line = std::to_string(number) + "," + stamp;
        for (const Channel& channel : _channels) {
            const char* const code = _shape.revision == 1991 ? "999999" : "99999";
            line += "," + (channel.missing[sample] ? code : decimalText(channel.values[sample], 0));
        }
        for (const std::vector<bool>& states : _states) {
            line += states[sample] ? ",1" : ",0";
        }
        return line + (_shape.hasCarriageReturns ? "\r\n" : "\n");
    }

    std::string _recordOf(std::size_t sample, std::uint32_t number, std::uint32_t stamp) const {
        LittleEndianBytes bytes;
        bytes.u32(number).u32(stamp);
        for (const Channel& channel : _channels) {
            const double value = channel.values[sample];
            const bool isMissing = channel.missing[sample];
            if (_shape.type == DataType::Binary) {
                bytes.i16(isMissing ? std::numeric_limits<std::int16_t>::min() : static_cast<std::int16_t>(value));
            } else if (_shape.type == DataType::Binary32) {
                bytes.i32(isMissing ? std::numeric_limits<std::int32_t>::min() : static_cast<std::int32_t>(value));
            } else {
                bytes.f32(isMissing ? std::numeric_limits<float>::quiet_NaN() : static_cast<float>(value));
            }
        }
        for (std::size_t first = 0; first < _states.size(); first += 16) {
            unsigned int word = 0;
            for (std::size_t bit = 0; bit < 16 && first + bit < _states.size(); ++bit) {
                word |= _states[first + bit][sample] ? 1U << bit : 0U;
            }
            bytes.u16(static_cast<std::uint16_t>(word));
        }
        return bytes.bytes();
    }

    const Shape& _shape;
    Random& _random;
    SoundRecording _recording;
    std::vector<Channel> _channels;
    std::vector<std::vector<bool>> _states;
    std::vector<Segment> _segments;
    double _multiplier = 1.0;
    std::int64_t _elsewhere = 0;
};

} // namespace

SoundRecording soundRecording(const Shape& shape, Random& random) {
    return Maker(shape, random).make();
}

} // namespace orvtest
