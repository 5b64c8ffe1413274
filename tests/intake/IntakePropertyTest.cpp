// Random recordings, damaged in the ways of real devices, and random bytes.

#include "Comtrade.h"
#include "intake/comparison.h"
#include "intake/openedChecks.h"
#include "intake/slowReader.h"
#include "support/LittleEndianBytes.h"
#include "support/RandomNumbers.h"
#include "support/TempDir.h"
#include "support/fixedSeed.h"

#include <OrvComtradeIntake/Intake.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

using namespace OrvComtradeIntake;
using OrvComtradeLib::Comtrade;
using orvtest::contentsOf;
using orvtest::Decimal;
using orvtest::LittleEndianBytes;
using orvtest::randomCount;
using orvtest::randomDecimal;
using orvtest::TempDir;
namespace Enums = OrvComtradeLib::Enums;

namespace {

/// True once in `times`.
bool onceIn(int times) {
    return *rc::gen::inRange(0, times) == 0;
}

std::string oneOf(std::initializer_list<std::string> texts) {
    return *rc::gen::elementOf(std::vector<std::string>(texts));
}

struct Unit {
    const char* text;
    const char* base; ///< what the library is to show
    long double factor;
};

const Unit kUnits[] = {{"V", "V", 1},      {"kV", "V", 1000},           {"KV", "V", 1000},   {"mA", "A", 0.001L},
                       {"A", "A", 1},      {"MW", "W", 1000000},        {"", "", 1},         {"Hz", "Hz", 1},
                       {"%", "%", 1},      {"\xC2\xB0", "\xC2\xB0", 1}, {"m/s", "[m/s]", 1}, {"min", "[min]", 1},
                       {"kVA", "VA", 1000}};

/// One row of the data as it is written.
struct Row {
    std::vector<std::string> texts;    ///< ASCII: the analog fields
    std::vector<std::uint32_t> values; ///< binary: the analog fields
    std::uint64_t stamp = 0;           ///< before it wraps
    std::string stampText;             ///< ASCII: the stamp, if it is no such number
    bool stampIsMissing = false;
    std::vector<bool> status;
};

/// A recording: what it means, and what its files say.
struct RandomRecording {
    slow::Recording meaning;
    std::vector<std::string> cfg; ///< lines
    std::vector<Row> rows;
    std::string word;
    bool idsAreUnsure = false; ///< a comma stands in a name

    bool isAscii() const { return meaning.coding == slow::Coding::Ascii; }
};

std::string blanks() {
    return onceIn(6) ? oneOf({" ", "   ", "\t"}) : "";
}

std::string join(const std::vector<std::string>& fields, bool spaced) {
    std::string line;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        line += (i == 0 ? "" : ",") + (spaced ? blanks() + fields[i] + blanks() : fields[i]);
    }
    return line;
}

/// What the fields of the lines are written with.
struct Style {
    int year = 1999;
    bool spaced = false;
    bool gaps = false; ///< fields with a safe default are empty
    bool plus = false;
    bool decimals = false;
    bool nanoseconds = false; ///< nine digits of a second, and stamps that count so
};

void addAnalog(RandomRecording& written, const Style& style, std::size_t number) {
    slow::AnalogChannel channel;
    const Unit& unit = kUnits[randomCount(0, std::size(kUnits) - 1)];
    const Decimal a = randomDecimal(1, 100000, 6);
    const Decimal b = onceIn(2) ? Decimal{} : randomDecimal(-1000000, 1000000, 4);
    channel.id = oneOf({"Ua", "Ib", "U 0", "3I0", "\xD0\xA4\xD0\xB0\xD0\xB7\xD0\xB0"}); // the last: "Faza"
    channel.phase = oneOf({"A", "", "N"});
    channel.component = oneOf({"Bus", "", "line 1"});
    channel.unitAsWritten = unit.text;
    channel.baseUnit = unit.base;
    channel.prefix = unit.factor;
    channel.a = a.value();
    channel.b = b.value();
    std::vector<std::string> fields{
        std::to_string(number), channel.id, channel.phase, channel.component, unit.text, a.text(), b.text()};
    if (!written.idsAreUnsure && onceIn(20) && style.year >= 1999) {
        fields[1] += ", left";
        written.idsAreUnsure = true;
    }
    const Decimal skew = randomDecimal(-500, 500, 1);
    const bool noSkew = style.gaps && onceIn(2);
    channel.skew = noSkew ? 0 : skew.value() / 1000000;
    channel.min = -32767;
    channel.max = 32767;
    fields.push_back(noSkew ? "" : skew.text());
    fields.push_back(style.gaps && onceIn(2) ? "" : "-32767");
    fields.push_back(style.gaps && onceIn(2) ? "" : "32767");
    if (style.year >= 1999) {
        const auto primary = *rc::gen::inRange<int>(1, 2000);
        const auto secondary = *rc::gen::inRange<int>(1, 2000);
        const std::string side = oneOf({"S", "s", "P", "p"});
        channel.primary = primary;
        channel.secondary = secondary;
        channel.side = side == "P" || side == "p" ? slow::Side::Primary : slow::Side::Secondary;
        fields.insert(fields.end(), {std::to_string(primary), std::to_string(secondary), side});
    }
    written.cfg.push_back(join(fields, style.spaced));
    written.meaning.analog.push_back(channel);
}

void addStatus(RandomRecording& written, const Style& style, std::size_t number) {
    slow::StatusChannel channel;
    channel.id = oneOf({"Trip", "51 A", "Pickup-1", "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA"}); // the last: "Pusk"
    channel.normalState = *rc::gen::inRange(0, 2);
    std::vector<std::string> fields{std::to_string(number), channel.id};
    if (style.year >= 1999) {
        channel.phase = oneOf({"", "A"});
        channel.component = oneOf({"", "breaker"});
        fields.insert(fields.end(), {channel.phase, channel.component});
    }
    if (style.gaps && onceIn(2)) {
        channel.normalState = 0;
        fields.emplace_back("");
    } else {
        fields.push_back(std::to_string(channel.normalState));
    }
    written.cfg.push_back(join(fields, style.spaced));
    written.meaning.status.push_back(channel);
}

/// The raw value of an analog field of a row.
void addValue(RandomRecording& written, Row& row, slow::Sample& sample, const Style& style) {
    long double raw = 0;
    bool missing = onceIn(15);
    std::uint32_t pattern = 0;
    std::string text;
    switch (written.meaning.coding) {
    case slow::Coding::Ascii: {
        const Decimal number = randomDecimal(-99998, 99998, style.decimals ? 3 : 0);
        raw = number.value();
        text = missing ? oneOf({style.year == 1991 ? "999999" : "99999", ""})
                       : (style.plus && number.digits >= 0 ? "+" : "") + number.text();
        break;
    }
    case slow::Coding::Binary: {
        const auto number = *rc::gen::inRange<int>(-32767, 32768);
        raw = number;
        pattern = missing ? 0x8000U : static_cast<std::uint32_t>(number) & 0xFFFFU;
        break;
    }
    case slow::Coding::Binary32: {
        const auto number = style.decimals ? *rc::gen::inRange<std::int32_t>(-2147483647, 2147483647)
                                           : *rc::gen::inRange<std::int32_t>(-16777216, 16777216);
        raw = number;
        pattern = missing ? 0x80000000U : static_cast<std::uint32_t>(number);
        break;
    }
    case slow::Coding::Float32: {
        const float single = missing ? std::numeric_limits<float>::quiet_NaN()
                                     : static_cast<float>(*rc::gen::inRange(-1000000, 1000000)) / 128.0F;
        raw = static_cast<long double>(single);
        std::memcpy(&pattern, &single, sizeof pattern);
        break;
    }
    }
    row.texts.push_back(text);
    row.values.push_back(pattern);
    sample.raw.push_back(raw);
    sample.missing.push_back(missing);
}

Row randomRow(RandomRecording& written, slow::Sample& sample, const Style& style) {
    Row row;
    for (std::size_t i = 0; i < written.meaning.analog.size(); ++i) {
        addValue(written, row, sample, style);
    }
    row.status = *rc::gen::container<std::vector<bool>>(written.meaning.status.size(), rc::gen::arbitrary<bool>());
    sample.status = row.status;
    return row;
}

/// The data file.
std::string dataOf(const RandomRecording& written, const std::string& lineEnd, bool blankLines, bool spaced) {
    std::string text;
    LittleEndianBytes bytes;
    std::uint32_t number = 0;
    for (const Row& row : written.rows) {
        ++number;
        const auto stamp = static_cast<std::uint32_t>(row.stamp);
        const std::string stampText = row.stampText.empty() ? std::to_string(stamp) : row.stampText;
        std::vector<std::string> fields{std::to_string(number), row.stampIsMissing ? "" : stampText};
        fields.insert(fields.end(), row.texts.begin(), row.texts.end());
        bytes.u32(number).u32(row.stampIsMissing ? 0xFFFFFFFFU : stamp);
        for (const std::uint32_t value : row.values) {
            if (written.meaning.coding == slow::Coding::Binary) {
                bytes.u16(static_cast<std::uint16_t>(value));
            } else {
                bytes.u32(value);
            }
        }
        for (std::size_t first = 0; first < row.status.size(); first += 16) {
            unsigned int word = 0;
            for (std::size_t bit = 0; bit < 16 && first + bit < row.status.size(); ++bit) {
                word += row.status[first + bit] ? 1U << bit : 0U;
            }
            bytes.u16(static_cast<std::uint16_t>(word));
        }
        for (const bool state : row.status) {
            fields.emplace_back(state ? "1" : "0");
        }
        text += join(fields, spaced) + lineEnd + (blankLines && onceIn(3) ? lineEnd : "");
    }
    return written.isAscii() ? text : bytes.bytes();
}

struct Times {
    std::vector<Decimal> rates;
    std::vector<std::size_t> ends; ///< cumulative
};

Times randomTimes() {
    Times times;
    std::size_t end = 0;
    for (std::size_t i = randomCount(1, 4); i > 0; --i) {
        end += randomCount(1, 12);
        times.rates.push_back(randomDecimal(100, 100000, 2));
        times.ends.push_back(end);
    }
    return times;
}

/// Seconds to sample `index`, step by step.
long double timeByRates(const Times& times, std::size_t index) {
    long double sum = 0;
    for (std::size_t i = 0; i < index; ++i) {
        std::size_t segment = 0;
        while (segment + 1 < times.rates.size() && i >= times.ends[segment]) {
            ++segment;
        }
        sum += 1 / times.rates[segment].value();
    }
    return sum;
}

/// Rows with times by the rates: as many as declared, or fewer, or (of one rate) more.
void addRowsByRates(RandomRecording& written, const Times& times, const Style& style) {
    const std::size_t declared = times.ends.back();
    std::size_t present = declared;
    if (onceIn(4)) {
        present = times.rates.size() == 1 ? randomCount(1, declared + 5) : randomCount(1, declared);
    }
    for (std::size_t i = 0; i < present; ++i) {
        slow::Sample sample;
        Row row = randomRow(written, sample, style);
        sample.time = timeByRates(times, i);
        row.stamp = *rc::gen::inRange<std::uint32_t>(0, 100000) + i * 100;
        row.stampIsMissing = onceIn(10);
        written.rows.push_back(row);
        written.meaning.samples.push_back(sample);
    }
}

/// Rows with times by stamps, which may wrap or be missing in between.
void addStampedRows(RandomRecording& written, std::size_t count, const Decimal& multiplier, const Style& style) {
    const bool wraps = onceIn(3);
    const std::uint64_t step = (wraps ? 10000000U : 100U) * *rc::gen::inRange<std::uint64_t>(1, 40);
    const std::uint64_t first = wraps ? 4294000000U : 0U;
    for (std::size_t i = 0; i < count; ++i) {
        slow::Sample sample;
        Row row = randomRow(written, sample, style);
        row.stamp = first + i * step;
        row.stampIsMissing = i != 0 && i + 1 != count && !written.rows.back().stampIsMissing && onceIn(8);
        sample.time =
            static_cast<long double>(i * step) * multiplier.value() / (style.nanoseconds ? 1000000000 : 1000000);
        written.rows.push_back(row);
        written.meaning.samples.push_back(sample);
    }
}

/// Rows with times by stamps with a sign or decimals. Times count from the first sample, whatever its stamp.
void addOddlyStampedRows(RandomRecording& written, std::size_t count, const Decimal& multiplier, const Style& style) {
    const int digits = *rc::gen::inRange(0, 5);
    const std::int64_t step = *rc::gen::inRange<std::int64_t>(1, 4000);
    const std::int64_t first = *rc::gen::inRange<std::int64_t>(-20000, 20000);
    for (std::size_t i = 0; i < count; ++i) {
        slow::Sample sample;
        Row row = randomRow(written, sample, style);
        const std::int64_t passed = static_cast<std::int64_t>(i) * step;
        row.stampText = Decimal{first + passed, digits}.text();
        const Decimal meant{passed, digits};
        sample.time = meant.value() * multiplier.value() / (style.nanoseconds ? 1000000000 : 1000000);
        written.rows.push_back(row);
        written.meaning.samples.push_back(sample);
    }
}

std::string headingLine(const Style& style) {
    if (style.year == 1991) {
        return oneOf({"Station,Recorder", "Station,Recorder,1991", "Station,Recorder,"});
    }
    if (style.year == 1999) {
        return oneOf({"Station,Recorder,1999", "Station,Recorder,1999", "Station,Recorder,1997",
                      "Station,Recorder,2000", "Station,Recorder"});
    }
    return "Station,Recorder,2013";
}

RandomRecording randomRecording() {
    static const std::pair<const char*, slow::Coding> kWords[] = {
        {"ASCII", slow::Coding::Ascii},    {"ascii", slow::Coding::Ascii},       {"BINARY", slow::Coding::Binary},
        {"Binary", slow::Coding::Binary},  {"BINARY32", slow::Coding::Binary32}, {"binary32", slow::Coding::Binary32},
        {"FLOAT32", slow::Coding::Float32}};
    RandomRecording written;
    const auto& word = kWords[randomCount(0, std::size(kWords) - 1)];
    written.word = word.first;
    written.meaning.coding = word.second;
    written.meaning.station = "Station";
    written.meaning.recorder = "Recorder";
    Style style;
    style.year = *rc::gen::element<int>(1991, 1999, 2013);
    style.spaced = onceIn(3);
    style.gaps = onceIn(3);
    style.plus = onceIn(3);
    style.decimals = onceIn(3);
    style.nanoseconds = style.year == 2013 && onceIn(3);

    const std::size_t analogs = randomCount(0, 4);
    const std::size_t statuses = randomCount(analogs == 0 ? 1 : 0, 20);
    written.cfg = {headingLine(style), std::to_string(analogs + statuses + (onceIn(10) ? 1 : 0)) + "," +
                                           std::to_string(analogs) + oneOf({"A", "A", "a"}) + "," +
                                           std::to_string(statuses) + oneOf({"D", "D", "d"})};
    for (std::size_t i = 1; i <= analogs; ++i) {
        addAnalog(written, style, i);
    }
    for (std::size_t i = 1; i <= statuses; ++i) {
        addStatus(written, style, i);
    }
    written.cfg.emplace_back("50");
    written.meaning.lineFrequency = 50;

    const Times times = randomTimes();
    const Decimal multiplier = onceIn(2) ? Decimal{1, 0} : Decimal{25, 1};
    if (onceIn(3)) {
        if (written.isAscii() && onceIn(2)) {
            addOddlyStampedRows(written, times.ends.back(), multiplier, style);
        } else {
            addStampedRows(written, times.ends.back(), multiplier, style);
        }
        written.cfg.push_back(oneOf({"0", "1"}));
        written.cfg.push_back("0," + std::to_string(times.ends.back()));
        written.meaning.rates = {{0, 0, times.ends.back(), 0}};
    } else {
        addRowsByRates(written, times, style);
        written.cfg.push_back(std::to_string(times.rates.size()));
        for (std::size_t i = 0; i < times.rates.size(); ++i) {
            written.cfg.push_back(times.rates[i].text() + "," + std::to_string(times.ends[i]));
            written.meaning.rates.push_back({times.rates[i].value(), 0, times.ends[i], 0});
        }
    }
    written.meaning.samplesDeclared = times.ends.back();
    written.meaning.timeMultiplier = multiplier.value();

    const std::string date = style.year == 1991 ? oneOf({"02/13/03", "02/13/2003"}) : "13/02/2003";
    written.meaning.start = 1045109106000000000;   // 2003-02-13 04:05:06
    written.meaning.trigger = 1045109106123456000; // and 123456 microseconds
    const std::string digits = style.nanoseconds ? "000" : "";
    written.cfg.push_back(
        date + "," +
        (style.nanoseconds ? "04:05:06.000000000" : oneOf({"04:05:06.000000", "04:05:06.000", "4:5:6.0", "04:05:06"})));
    written.cfg.push_back(date + ",04:05:06.123456" + digits);
    written.cfg.push_back(written.word);
    if (multiplier.text() != "1" || !onceIn(3)) {
        written.cfg.push_back(multiplier.text());
    }
    return written;
}

/// The text of the configuration, with the line ends and the stray characters of devices.
std::string configurationOf(const RandomRecording& written, const std::string& lineEnd) {
    std::string text = onceIn(5) ? "\xEF\xBB\xBF" : "";
    const bool trailing = onceIn(4);
    const bool blankLines = onceIn(5);
    for (std::size_t i = 0; i < written.cfg.size(); ++i) {
        const bool last = i + 1 == written.cfg.size();
        text += written.cfg[i] + (trailing ? blanks() : "") + (last && onceIn(4) ? "" : lineEnd);
        text += blankLines && onceIn(4) ? lineEnd : "";
    }
    return text + (onceIn(5) ? oneOf({"\x1A", "\x1A\x1A\x1A", lineEnd + "\x1A"}) : "");
}

/// The data, with what devices leave behind the last sample.
std::string damagedDataOf(const RandomRecording& written) {
    if (written.isAscii()) {
        const std::string data = dataOf(written, oneOf({"\n", "\r\n"}), onceIn(4), onceIn(4));
        return data + oneOf({"", "", "", "\x1A", "77,1000"}); // the last: a line cut short
    }
    const std::string data = dataOf(written, "", false, false);
    const std::size_t record = data.size() / written.rows.size();
    switch (*rc::gen::inRange(0, 6)) {
    case 0:
        return data + std::string(randomCount(1, record - 1), '\x1A');
    case 1:
        return data + data.substr(0, randomCount(1, record - 1));
    default:
        return data;
    }
}

/// A combined file of the two, its sections in a random order.
std::string combinedOf(const RandomRecording& written, const std::string& cfg) {
    const std::string data = dataOf(written, "\r\n", false, false);
    const std::string heading =
        written.isAscii() ? "DAT ASCII" : "DAT " + written.word + ": " + std::to_string(data.size());
    std::vector<std::pair<std::string, std::string>> sections{
        {"CFG", cfg}, {"INF", "[Public]\r\n"}, {"HDR", ""}, {heading, data}};
    std::rotate(sections.begin(), sections.begin() + static_cast<std::ptrdiff_t>(randomCount(0, 3)), sections.end());
    std::string text = onceIn(4) ? "\xEF\xBB\xBF" : "";
    for (const auto& [title, body] : sections) {
        const bool ended = body.empty() || body.back() == '\n';
        text += "--- file type: " + title + " ---\r\n" + body + (ended ? "" : "\r\n");
    }
    return text;
}

Side randomSide() {
    return *rc::gen::element<Side>(Side::Recorded, Side::Recorded, Side::Primary, Side::Secondary);
}

/// The recording with texts that nobody can expect left out of the comparison.
std::string differenceOf(const Comtrade& loaded, const RandomRecording& written, Side side) {
    const std::string texts = written.idsAreUnsure ? "" : orvtest::firstTextDifference(loaded, written.meaning);
    return texts.empty() ? orvtest::firstValueDifference(loaded, written.meaning, side, 6) : texts;
}

/// Everything that the configuration records; names with a comma are whole or not.
std::string differenceOfTheHeader(const Opened& opened, const RandomRecording& written) {
    Header header = opened.header();
    for (std::size_t i = 0; written.idsAreUnsure && i < std::min(header.analog.size(), written.meaning.analog.size());
         ++i) {
        header.analog[i].id = written.meaning.analog[i].id;
        header.analog[i].phase = written.meaning.analog[i].phase;
        header.analog[i].component = written.meaning.analog[i].component;
    }
    return orvtest::firstHeaderDifference(header, written.meaning);
}

/// What stands in the folder, in the words of a log.
std::string shownFolder(const TempDir& folder) {
    std::string text;
    for (const auto& [name, bytes] : contentsOf(folder.path())) {
        text += "== ";
        text += name;
        text += ", " + std::to_string(bytes.size()) + " bytes\n" + bytes.substr(0, 4000) + "\n";
    }
    return text;
}

/// A random recording, and the folder that its files are written to.
struct Trial {
    Trial() { options.side = randomSide(); }

    /// The files are written.
    void begin() {
        _before = contentsOf(folder.path());
        RC_LOG() << shownFolder(folder);
    }

    /// What must hold of any files, then that they are as they were and that nothing is left beside.
    void check(const std::string& path) const {
        const Opened opened = open(path, options);
        RC_LOG() << orvtest::text(opened);
        RC_ASSERT(orvtest::firstBrokenPromise(opened, options, scratch.path()) == "");
        const auto openInto = [&](OrvComtradeIntake::Columns& columns, const OrvComtradeIntake::Selection& selection) {
            return open(path, columns, selection, options);
        };
        RC_ASSERT(orvtest::firstBrokenReading(opened, openInto) == "");
        RC_ASSERT(contentsOf(folder.path()) == _before);
    }

    const RandomRecording written = randomRecording();
    const TempDir folder;
    const TempDir scratch;
    Options options;

private:
    std::map<std::string, std::string> _before;
};

/// The library by itself, where it is said to give the same.
std::string differenceOfTheLibrary(const Opened& opened, const std::string& path, const Comtrade& loaded) {
    Comtrade alone;
    if (!opened.librarySuffices()) {
        return "";
    }
    return alone.load(path) == Enums::Ok ? orvtest::firstDifference(alone, loaded) : "the library does not load it";
}

} // namespace

RC_GTEST_PROP(IntakeProperty, WhatWasWrittenIsReadInSpiteOfTheDamage, ()) {
    Trial trial;
    const RandomRecording& written = trial.written;
    std::string path;
    if (onceIn(5)) {
        path = trial.folder.write("rec." + oneOf({"cff", "CFF"}),
                                  combinedOf(written, configurationOf(written, oneOf({"\n", "\r\n"}))));
    } else {
        path = trial.folder.write("rec." + oneOf({"cfg", "CFG", "Cfg"}),
                                  configurationOf(written, oneOf({"\n", "\r\n", "\r\n", "\r"})));
        const std::string dat =
            trial.folder.write("rec." + oneOf({"dat", "dat", "DAT", "Dat"}), damagedDataOf(written));
        path = onceIn(4) ? dat : path;
    }
    trial.begin();
    const Opened opened = open(path, trial.options);
    RC_LOG() << orvtest::text(opened);
    RC_ASSERT(opened.readable());
    Comtrade loaded;
    RC_ASSERT(opened.load(loaded) == Enums::Ok);
    RC_ASSERT(differenceOf(loaded, written, trial.options.side) == "");
    RC_ASSERT(differenceOfTheHeader(opened, written) == "");
    RC_ASSERT(orvtest::missingText(opened.columns().missing) == orvtest::missingText(written.meaning));
    RC_ASSERT(differenceOfTheLibrary(opened, path, loaded) == "");
    trial.check(path);
}

namespace {

/// Bytes taken out, put in, changed, or a piece put elsewhere.
void mutate(std::string& bytes) {
    static const std::string kPieces[] = {",",
                                          "\n",
                                          "\r",
                                          "\r\n",
                                          "-",
                                          "+",
                                          ".",
                                          "e400",
                                          "1e-320",
                                          "nan",
                                          "0",
                                          "99999",
                                          "\x1A",
                                          "A",
                                          "\"",
                                          " ",
                                          "P",
                                          "S",
                                          "kV",
                                          "[m",
                                          "\t",
                                          "\xFF",
                                          std::string(1, '\0'),
                                          "1999",
                                          "BINARY32",
                                          "ASCII",
                                          "inf",
                                          "18446744073709551616"};
    const std::size_t at = randomCount(0, bytes.size());
    const std::size_t count = std::min(randomCount(0, 12), bytes.size() - at);
    switch (*rc::gen::inRange(0, 5)) {
    case 0:
        bytes.erase(at, count);
        break;
    case 1:
        bytes.insert(at, kPieces[randomCount(0, std::size(kPieces) - 1)]);
        break;
    case 2:
        bytes.replace(at, count, kPieces[randomCount(0, std::size(kPieces) - 1)]);
        break;
    case 3:
        bytes.insert(randomCount(0, bytes.size()), bytes.substr(at, count));
        break;
    default:
        if (at < bytes.size()) {
            bytes[at] = static_cast<char>(*rc::gen::inRange(0, 256));
        }
        break;
    }
}

std::string mutated(std::string bytes) {
    for (std::size_t i = randomCount(0, 6); i > 0; --i) {
        mutate(bytes);
    }
    return bytes;
}

} // namespace

RC_GTEST_PROP(IntakeProperty, AnyBytesGiveARecordingThatKeepsItsPromisesOrAnError, ()) {
    Trial trial;
    const RandomRecording& written = trial.written;
    std::string path;
    if (onceIn(3)) {
        path = trial.folder.write("rec.cff",
                                  mutated(combinedOf(written, configurationOf(written, oneOf({"\n", "\r\n"})))));
    } else {
        path = trial.folder.write("rec.cfg", mutated(configurationOf(written, oneOf({"\n", "\r\n", "\r\n", "\r"}))));
        trial.folder.write("rec.dat", mutated(damagedDataOf(written)));
    }
    trial.begin();
    trial.check(path);
}
