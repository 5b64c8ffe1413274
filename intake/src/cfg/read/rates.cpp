#include "cfg/read/rates.h"

#include "cfg/read/commas.h"
#include "cfg/read/fields.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

namespace {

constexpr double kUsualFrequency = 50.0;
constexpr double kLeastFrequency = 10.0; // a smaller number alone on its line is rather the number of rates
constexpr double kLeastRate = 1e-6;      // one sample in eleven days

bool isNumberAloneAhead(const CfgCursor& cursor, std::size_t ahead) {
    return ahead < cursor.left() && isNumberAlone(cursor.peek(ahead));
}

bool isRateLine(const CfgCursor& cursor, std::size_t ahead) {
    if (ahead >= cursor.left()) {
        return false;
    }
    const bool isDate = cursor.text.lines[cursor.next + ahead].text.find(':') != std::string::npos;
    return !isDate && isNumber(cursor.peek(ahead)[0].text);
}

bool isRateLineOfTwo(const CfgCursor& cursor, std::size_t ahead) {
    return isRateLine(cursor, ahead) && isNumber(cursor.peek(ahead)[1].text);
}

std::size_t rateLinesAhead(const CfgCursor& cursor) {
    std::size_t count = 0;
    while (isRateLine(cursor, count)) {
        ++count;
    }
    return count;
}

// The rates are as many as there are lines of them, whatever their number says.
std::optional<std::uint64_t> readDeclared(CfgCursor& cursor) {
    if (!isNumberAloneAhead(cursor, 0)) {
        cursor.findings.add(Kind::FieldMissing, cursor.place("nrates"),
                            {{}, "the rates were counted", "the number of rates"});
        return std::nullopt;
    }
    const CfgLine line = cursor.take();
    reportRest(cursor, line, 1, "nrates");
    const std::optional<std::uint64_t> declared = countOf(cursor, line, 0, "nrates", "the rates were counted");
    const std::uint64_t present = rateLinesAhead(cursor);
    const bool isBorneOut = !declared || present == 0 || (*declared == 0 ? 1 : *declared) == present;
    if (!isBorneOut) {
        report(cursor.findings, Kind::Counts, line, 0, "nrates",
               {{}, "the rates were counted", std::to_string(present)});
    }
    return declared;
}

bool isZero(std::string_view digits) {
    return digits.find_first_not_of('0') == std::string_view::npos;
}

// "1000,0,40": no rate ends at sample 0, no number of a sample begins with 0, and where a number of the file has a
// decimal comma the others have too.
bool hasRateWithComma(const CfgCursor& cursor, const CfgLine& line) {
    const std::string_view end = line[2].text;
    const std::string_view fraction = line[1].text;
    if (!areHalves(line, 0) || !readCount(end) || end.front() == '0') {
        return false;
    }
    return cursor.hasDecimalCommas || isZero(fraction) || fraction.front() == '0';
}

RateInfo readRate(CfgCursor& cursor, CfgLine& line, bool isStamped) {
    if (hasRateWithComma(cursor, line)) {
        joinDecimal(cursor, line, 0, "samp");
    }
    constexpr const char* fromData = "read as 0, times are in the data";
    RateInfo rate;
    rate.rate = quantityOf(cursor, line, 0, "samp", 0.0, fromData);
    rate.endSample = countOf(cursor, line, 1, "endsamp", "read as 0").value_or(0);
    reportRest(cursor, line, 2, "endsamp");
    if (rate.rate < 0.0 || (rate.rate > 0.0 && rate.rate < kLeastRate)) {
        report(cursor.findings, Kind::FieldMalformed, line, 0, "samp", {{}, fromData, "samples per second, or 0"});
        rate.rate = 0.0;
    }
    if (isStamped && rate.rate > 0.0) {
        report(cursor.findings, Kind::RateZero, line, 0, "samp", {{}, fromData});
        rate.rate = 0.0;
    }
    return rate;
}

} // namespace

bool isLessThanFrequency(const CfgLine& line) {
    return readNumber(line[0].text).value < kLeastFrequency;
}

bool isFrequencyMissing(const CfgCursor& cursor, std::size_t ahead) {
    if (ahead >= cursor.left()) {
        return true;
    }
    const CfgLine line = cursor.peek(ahead);
    if (isNumberAlone(line)) {
        return isRateLineOfTwo(cursor, ahead + 1) && isLessThanFrequency(line);
    }
    const bool isOther = isRateLine(cursor, ahead) || line.textFrom(0).find('/') != std::string::npos;
    return isOther && !isFrequency(cursor, ahead);
}

bool isFrequency(const CfgCursor& cursor, std::size_t ahead) {
    const CfgLine line = cursor.peek(ahead);
    if (isNumberAlone(line)) {
        const bool isFollowed = isNumberAloneAhead(cursor, ahead + 1) || isRateLineOfTwo(cursor, ahead + 1);
        return line.written() == 1 || isFollowed;
    }
    return line.count() == 2 && readNumber(line[0].text).value >= kLeastFrequency &&
           isNumberAloneAhead(cursor, ahead + 1) && isRateLineOfTwo(cursor, ahead + 2);
}

void readLineFrequency(CfgCursor& cursor, ReadCfg& read) {
    read.header.lineFrequency = kUsualFrequency;
    if (isFrequencyMissing(cursor, 0)) {
        cursor.findings.add(Kind::FieldMissing, cursor.place("lf"), {{}, "read as 50", "the line frequency"});
        return;
    }
    CfgLine line = cursor.take();
    if (line.count() == 2 && areHalves(line, 0)) {
        joinDecimal(cursor, line, 0, "lf");
    }
    read.header.lineFrequency = quantityOf(cursor, line, 0, "lf", kUsualFrequency, "read as 50");
    reportRest(cursor, line, 1, "lf");
}

void readRates(CfgCursor& cursor, ReadCfg& read) {
    const std::optional<std::uint64_t> declared = readDeclared(cursor);
    const std::size_t present = rateLinesAhead(cursor);
    const bool isStamped = declared && *declared == 0 && present == 1;
    read.rate = cursor.place("samp");
    for (std::size_t index = 0; index < present; ++index) {
        CfgLine line = cursor.take();
        const Place end = line.place(1, "endsamp");
        read.ends.push_back({end.line, end.offset});
        read.header.rates.push_back(readRate(cursor, line, isStamped));
    }
    if (present == 0) {
        cursor.findings.add(Kind::FieldMissing, cursor.place("samp"),
                            {{}, "read as 0, times are in the data", "a sampling rate"});
        read.header.rates.emplace_back();
    }
    read.header.samplesDeclared = read.header.rates.back().endSample;
}

} // namespace OrvComtradeIntake
