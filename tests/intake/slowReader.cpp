#include "intake/slowReader.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iconv.h>
#include <limits>
#include <map>
#include <stdexcept>

namespace slow {
namespace {

void require(bool condition, const std::string& what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

std::string trimmed(const std::string& text) {
    const char* const blanks = " \t\r\x1A";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string::npos ? std::string() : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string> cut(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (const char letter : text) {
        if (letter == separator) {
            parts.emplace_back();
        } else {
            parts.back() += letter;
        }
    }
    for (std::string& part : parts) {
        part = trimmed(part);
    }
    return parts;
}

/// The lines that are not blank, without blanks at their ends.
std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (const std::string& line : cut(text, '\n')) {
        if (!line.empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

std::string utf8Of(const std::string& text, const std::string& encoding) {
    const iconv_t converter = iconv_open("UTF-8", encoding.c_str());
    require(converter != iconv_t(-1), "unknown encoding " + encoding);
    std::vector<char> in(text.begin(), text.end());
    std::vector<char> out(text.size() * 4 + 1);
    char* inAt = in.data();
    char* outAt = out.data();
    std::size_t inLeft = in.size();
    std::size_t outLeft = out.size();
    const std::size_t result = iconv(converter, &inAt, &inLeft, &outAt, &outLeft);
    iconv_close(converter);
    require(result != static_cast<std::size_t>(-1), "text is not " + encoding);
    return {out.data(), static_cast<std::size_t>(outAt - out.data())};
}

/// An empty field is 0.
long double numberIn(const std::string& field) {
    char* end = nullptr;
    const long double number = std::strtold(field.c_str(), &end);
    require(*end == '\0', "no number: " + field);
    return number;
}

std::size_t countIn(const std::string& field) {
    return static_cast<std::size_t>(std::strtoull(field.c_str(), nullptr, 10));
}

bool isOneOf(const std::string& text, const char* list) {
    return (" " + std::string(list) + " ").find(" " + text + " ") != std::string::npos;
}

/// Prefixes of the international system of units, before the units that recorders write.
void setUnit(AnalogChannel& channel, const std::string& unit) {
    channel.unitAsWritten = unit;
    channel.baseUnit = unit;
    const std::map<char, long double> prefixes = {{'k', 1e3L}, {'K', 1e3L}, {'M', 1e6L}, {'m', 1e-3L}};
    const auto prefix = unit.empty() ? prefixes.end() : prefixes.find(unit[0]);
    if (prefix != prefixes.end() && isOneOf(unit.substr(1), "V A W Hz VA VAr var Ohm ohm")) {
        channel.prefix = prefix->second;
        channel.baseUnit = unit.substr(1);
    }
}

Side sideIn(const std::string& field) {
    const bool primary = field == "P" || field == "p";
    require(primary || field == "S" || field == "s", "neither P nor S: " + field);
    return primary ? Side::Primary : Side::Secondary;
}

AnalogChannel analogChannel(const std::string& line, const Facts& facts) {
    std::vector<std::string> fields = cut(line, ',');
    if (facts.strayField != 0) {
        fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(facts.strayField - 1));
    }
    require(fields.size() == (facts.layout1991 ? 10U : 13U), "analog channel: " + line);
    AnalogChannel channel;
    channel.id = fields[1];
    channel.phase = fields[2];
    channel.component = fields[3];
    setUnit(channel, fields[4]);
    channel.a = numberIn(fields[5]);
    channel.b = numberIn(fields[6]);
    channel.skew = numberIn(fields[7]) / 1e6L;
    channel.min = numberIn(fields[8]);
    channel.max = numberIn(fields[9]);
    if (!facts.layout1991) {
        channel.primary = numberIn(fields[10]);
        channel.secondary = numberIn(fields[11]);
        channel.side = sideIn(fields[12]);
    }
    return channel;
}

StatusChannel statusChannel(const std::string& line, const Facts& facts) {
    const std::vector<std::string> fields = cut(line, ',');
    require(fields.size() == (facts.layout1991 ? 3U : 5U), "status channel: " + line);
    StatusChannel channel;
    channel.id = fields[1];
    if (!facts.layout1991) {
        channel.phase = fields[2];
        channel.component = fields[3];
    }
    channel.normalState = static_cast<int>(numberIn(fields.back()));
    return channel;
}

bool isLeap(long long year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

long long daysOfMonth(long long year, long long month) {
    const long long days[] = {31, isLeap(year) ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return days[month - 1];
}

/// Nothing for a month beyond the twelfth.
std::optional<std::int64_t> instantIn(const std::string& line, const Facts& facts) {
    const std::vector<std::string> parts = cut(line, ',');
    require(parts.size() == 2, "date: " + line);
    const std::vector<std::string> date = cut(parts[0], '/');
    const std::vector<std::string> clock = cut(parts[1], ':');
    require(date.size() == 3 && clock.size() == 3, "date: " + line);
    const bool monthFirst = facts.layout1991 || facts.monthFirst;
    long long day = std::atoll(date[monthFirst ? 1 : 0].c_str());
    const long long month = std::atoll(date[monthFirst ? 0 : 1].c_str());
    long long year = std::atoll(date[2].c_str());
    if (year < 100) {
        year += year < 70 ? 2000 : 1900;
    }
    if (month > 12 || day > daysOfMonth(year, month)) {
        return std::nullopt;
    }
    for (long long before = 1970; before < year; ++before) {
        day += isLeap(before) ? 366 : 365;
    }
    for (long long before = 1; before < month; ++before) {
        day += daysOfMonth(year, before);
    }
    const std::size_t point = clock[2].find('.');
    std::string fraction = point == std::string::npos ? "" : clock[2].substr(point + 1);
    fraction.resize(9, '0');
    const long long seconds = ((day - 1) * 24 + std::atoll(clock[0].c_str())) * 3600 +
                              std::atoll(clock[1].c_str()) * 60 + std::atoll(clock[2].c_str());
    return seconds * 1000000000 + std::atoll(fraction.c_str());
}

/// Begin and time of each rate, from the ends.
void layOut(std::vector<Rate>& rates, const Facts& facts) {
    for (std::size_t i = 1; i < rates.size(); ++i) {
        const Rate& before = rates[i - 1];
        if (facts.endsAreLengths) {
            rates[i].end += before.end;
        }
        rates[i].begin = before.end;
        rates[i].time = before.time + static_cast<long double>(before.end - before.begin) / before.rate;
    }
}

/// Samples beyond the last end go on at the last rate.
long double timeByRates(const std::vector<Rate>& rates, std::size_t sample) {
    std::size_t i = 0;
    while (i + 1 < rates.size() && sample >= rates[i].end) {
        ++i;
    }
    return rates[i].time + static_cast<long double>(sample - rates[i].begin) / rates[i].rate;
}

bool isStamped(const std::vector<Rate>& rates) {
    for (const Rate& rate : rates) {
        if (rate.rate == 0.0L) {
            return true;
        }
    }
    return false;
}

Coding codingOf(std::string word) {
    for (char& letter : word) {
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    }
    const std::map<std::string, Coding> codings = {{"ASCII", Coding::Ascii},
                                                   {"BINARY", Coding::Binary},
                                                   {"BINARY32", Coding::Binary32},
                                                   {"FLOAT32", Coding::Float32}};
    const auto coding = codings.find(word);
    require(coding != codings.end(), "data type " + word);
    return coding->second;
}

std::uint64_t littleEndian(const std::string& bytes, std::size_t at, std::size_t size) {
    std::uint64_t number = 0;
    for (std::size_t i = size; i-- > 0;) {
        number = number * 256 + static_cast<unsigned char>(bytes.at(at + i));
    }
    return number;
}

/// A two's complement number of `bits` bits.
long double signedNumber(std::uint64_t number, unsigned int bits) {
    const long double half = std::ldexp(1.0L, static_cast<int>(bits) - 1);
    const auto value = static_cast<long double>(number);
    return value < half ? value : value - 2.0L * half;
}

void addBinaryValue(Sample& sample, Coding coding, std::uint64_t bits) {
    long double value = 0.0L;
    bool missing = false;
    if (coding == Coding::Binary) {
        value = signedNumber(bits, 16);
        missing = bits == 0x8000;
    } else if (coding == Coding::Binary32) {
        value = signedNumber(bits, 32);
        missing = bits == 0x80000000;
    } else {
        float single = 0.0F;
        const auto pattern = static_cast<std::uint32_t>(bits);
        std::memcpy(&single, &pattern, sizeof single);
        value = static_cast<long double>(single);
        missing = std::isnan(single);
    }
    sample.raw.push_back(value);
    sample.missing.push_back(missing);
}

struct Stamped {
    Sample sample;
    std::optional<long double> stamp;
};

std::vector<Stamped> binarySamples(const std::string& dat, const Recording& recording, const Facts& facts) {
    const std::size_t size = recording.coding == Coding::Binary ? 2 : 4;
    const std::size_t words = (recording.status.size() + 15) / 16;
    const std::size_t standard = 8 + recording.analog.size() * size + words * 2;
    const std::size_t length = facts.recordLength == 0 ? standard : facts.recordLength;
    std::vector<Stamped> samples;
    for (std::size_t at = 0; samples.size() < facts.samples; at += length) {
        require(at + length <= dat.size(), "data end early");
        Stamped next;
        next.stamp = static_cast<long double>(littleEndian(dat, at + 4, 4));
        std::size_t field = at + 8;
        for (std::size_t i = 0; i < recording.analog.size(); ++i, field += size) {
            addBinaryValue(next.sample, recording.coding, littleEndian(dat, field, size));
        }
        for (std::size_t i = 0; i < recording.status.size(); ++i) {
            const std::uint64_t word = littleEndian(dat, field + i / 16 * 2, 2);
            next.sample.status.push_back(((word >> (i % 16)) & 1U) != 0);
        }
        samples.push_back(next);
    }
    return samples;
}

std::vector<Stamped> asciiSamples(const std::string& dat, const Recording& recording, const Facts& facts) {
    std::vector<Stamped> samples;
    for (const std::string& line : linesOf(dat)) {
        if (samples.size() == facts.samples) {
            break;
        }
        const std::vector<std::string> fields = cut(line, ',');
        require(fields.size() == 2 + recording.analog.size() + recording.status.size(), "data line: " + line);
        Stamped next;
        if (!fields[1].empty()) {
            next.stamp = numberIn(fields[1]);
        }
        std::size_t field = 2;
        for (std::size_t i = 0; i < recording.analog.size(); ++i, ++field) {
            const long double raw = numberIn(fields[field]);
            next.sample.raw.push_back(raw);
            next.sample.missing.push_back(fields[field].empty() || raw == (facts.layout1991 ? 999999.0L : 99999.0L));
        }
        for (std::size_t i = 0; i < recording.status.size(); ++i, ++field) {
            require(fields[field] == "0" || fields[field] == "1", "state " + fields[field]);
            next.sample.status.push_back(fields[field] == "1");
        }
        samples.push_back(next);
    }
    require(samples.size() == facts.samples, "data end early");
    return samples;
}

int sixBits(char letter) {
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::size_t place = alphabet.find(letter);
    require(place != std::string::npos, "not base64");
    return static_cast<int>(place);
}

std::string fromBase64(const std::string& text) {
    std::string bytes;
    unsigned int bits = 0;
    int count = 0;
    for (const char letter : text) {
        if (letter == '=') {
            break;
        }
        bits = bits * 64U + static_cast<unsigned int>(sixBits(letter));
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>((bits >> static_cast<unsigned int>(count)) & 0xFFU);
            bits &= (1U << static_cast<unsigned int>(count)) - 1U;
        }
    }
    return bytes;
}

} // namespace

Value valueOf(const AnalogChannel& channel, long double raw, Side side) {
    long double factor = channel.prefix;
    if (channel.side == Side::Primary && side == Side::Secondary) {
        factor = factor * channel.secondary / channel.primary;
    }
    if (channel.side == Side::Secondary && side == Side::Primary) {
        factor = factor * channel.primary / channel.secondary;
    }
    const long double product = raw * channel.a;
    return {(product + channel.b) * factor, (std::fabs(product) + std::fabs(channel.b)) * std::fabs(factor)};
}

namespace {

/// Times come from the stamps where some rate is 0. They count from the first sample, whose date the configuration has.
void addSamples(Recording& recording, const std::string& dat, const Facts& facts) {
    const bool ascii = recording.coding == Coding::Ascii;
    const bool stamped = isStamped(recording.rates);
    const long double unit = recording.timeMultiplier * (facts.nanosecondStamps ? 1e-9L : 1e-6L);
    std::optional<long double> first;
    for (Stamped& next : ascii ? asciiSamples(dat, recording, facts) : binarySamples(dat, recording, facts)) {
        require(!stamped || next.stamp.has_value(), "no time stamp");
        if (!first) {
            first = next.stamp;
        }
        next.sample.time =
            stamped ? (*next.stamp - *first) * unit : timeByRates(recording.rates, recording.samples.size());
        recording.samples.push_back(next.sample);
    }
}

} // namespace

Recording read(const std::string& cfg, const std::string& dat, const Facts& facts) {
    const std::string mark = "\xEF\xBB\xBF";
    const std::vector<std::string> lines =
        linesOf(utf8Of(cfg.compare(0, 3, mark) == 0 ? cfg.substr(3) : cfg, facts.textEncoding));
    std::size_t at = 0;
    const auto next = [&lines, &at] {
        require(at < lines.size(), "the configuration ends early");
        return lines[at++];
    };

    Recording recording;
    const std::vector<std::string> heading = cut(next(), ',');
    recording.station = heading.at(0);
    recording.recorder = heading.at(1);
    const std::vector<std::string> counts = cut(next(), ',');
    for (std::size_t i = countIn(counts.at(1)); i > 0; --i) {
        recording.analog.push_back(analogChannel(next(), facts));
    }
    for (std::size_t i = countIn(counts.at(2)); i > 0; --i) {
        recording.status.push_back(statusChannel(next(), facts));
    }
    recording.lineFrequency = numberIn(next());
    const std::size_t rateLines = countIn(next());
    while (recording.rates.size() < (rateLines == 0 ? 1 : rateLines)) {
        const std::vector<std::string> fields = cut(next(), ',');
        recording.rates.emplace_back();
        recording.rates.back().rate = rateLines == 0 ? 0.0L : numberIn(fields.at(0));
        recording.rates.back().end = countIn(fields.at(1));
    }
    layOut(recording.rates, facts);
    recording.samplesDeclared = recording.rates.back().end;
    recording.start = instantIn(next(), facts);
    const std::optional<std::int64_t> trigger = instantIn(next(), facts);
    recording.trigger = facts.triggerIsUnset ? std::nullopt : trigger;
    recording.coding = codingOf(next());
    recording.timeMultiplier = at < lines.size() ? numberIn(next()) : 1.0L;
    addSamples(recording, dat, facts);
    return recording;
}

Sections sectionsOf(const std::string& cff) {
    Sections sections;
    const std::string heading = "--- file type: ";
    std::size_t at = cff.find(heading);
    require(at != std::string::npos, "no section");
    while (at != std::string::npos) {
        const std::size_t lineEnd = cff.find('\n', at);
        require(lineEnd != std::string::npos, "heading without an end");
        const std::string title = trimmed(cff.substr(at + heading.size(), lineEnd - at - heading.size()));
        at = cff.find("\n" + heading, lineEnd);
        std::string body = cff.substr(lineEnd + 1, at == std::string::npos ? at : at - lineEnd);
        at = at == std::string::npos ? at : at + 1;
        if (title.compare(0, 3, "CFG") == 0) {
            sections.cfg = body;
        } else if (title.compare(0, 3, "DAT") == 0) {
            sections.dat = body;
        }
        if (title.compare(0, 3, "DAT") == 0 && title.find("base64") != std::string::npos) {
            sections.dat.clear();
            for (const std::string& line : linesOf(body)) {
                sections.dat += fromBase64(line.substr(1, line.size() - 2));
            }
        }
    }
    return sections;
}

} // namespace slow
