#include "cfgSteps.h"

namespace OrvComtradeIntake {

namespace {

constexpr double kUsualFrequency = 50.0;
constexpr double kLeastFrequency = 10.0; // a smaller number alone on its line is rather the count of rates

bool isNumber(std::string_view text) {
    const NumberForm form = readNumber(text).form;
    return form == NumberForm::Good || form == NumberForm::Odd;
}

bool hasLine(const CfgCursor& cursor, std::size_t ahead) {
    return ahead < cursor.left();
}

const TextLine& lineAhead(const CfgCursor& cursor, std::size_t ahead) {
    return cursor.text.lines[cursor.next + ahead];
}

bool isNumberAlone(const CfgCursor& cursor, std::size_t ahead) {
    return hasLine(cursor, ahead) && isNumber(lineAhead(cursor, ahead).text);
}

bool isRateLine(const CfgCursor& cursor, std::size_t ahead) {
    if (!hasLine(cursor, ahead)) {
        return false;
    }
    const std::string_view text = lineAhead(cursor, ahead).text;
    const bool isDate = text.find_first_of("/:") != std::string_view::npos;
    return !isDate && isNumber(text.substr(0, text.find(',')));
}

bool isRateLineOfTwo(const CfgCursor& cursor, std::size_t ahead) {
    return isRateLine(cursor, ahead) && !isNumberAlone(cursor, ahead);
}

bool isFrequencyMissing(const CfgCursor& cursor) {
    if (!isNumberAlone(cursor, 0)) {
        return !hasLine(cursor, 0) || isRateLine(cursor, 0) || lineAhead(cursor, 0).text.find('/') != std::string::npos;
    }
    return isRateLineOfTwo(cursor, 1) && readNumber(lineAhead(cursor, 0).text).value < kLeastFrequency;
}

std::size_t rateLinesAhead(const CfgCursor& cursor) {
    std::size_t count = 0;
    while (isRateLine(cursor, count)) {
        ++count;
    }
    return count;
}

// The number of rates is told by the lines that are there.
std::optional<std::uint64_t> readDeclared(CfgCursor& cursor) {
    if (!isNumberAlone(cursor, 0)) {
        cursor.tellMissing("nrates",
                           {Severity::Warning, "field-missing", "the number of rates", "the rates counted", true});
        return std::nullopt;
    }
    const CfgLine line = cursor.take();
    const std::optional<std::uint64_t> declared = readCount(line[0].text);
    const std::uint64_t present = rateLinesAhead(cursor);
    const std::uint64_t expected = declared && *declared == 0 ? 1 : declared.value_or(0);
    const std::optional<std::int64_t> library = libraryInteger(line[0].raw);
    const bool isPlain = declared && library && static_cast<std::uint64_t>(*library) == *declared;
    if (!isPlain || expected != present) {
        line.tell(0, "nrates", {Severity::Warning, "counts", std::to_string(present), "the rates counted", true});
    }
    return declared;
}

std::uint64_t readEndSample(const CfgLine& line) {
    const CfgField& field = line[1];
    const std::optional<std::uint64_t> count = readCount(field.text);
    const std::optional<std::int64_t> library = libraryInteger(field.raw);
    const bool isPlain = count && library && static_cast<std::uint64_t>(*library) == *count && *library >= 0;
    if (!count) {
        line.tell(1, "endsamp",
                  {Severity::Warning, line.has(1) && !field.text.empty() ? "field-malformed" : "field-empty",
                   "the number of the last sample", "0", true});
    } else if (!isPlain) {
        line.tell(1, "endsamp", {Severity::Warning, "field-malformed", "a whole number", "written as one", true});
    }
    return count.value_or(0);
}

RateLine readRateLine(CfgCursor& cursor, bool isStamped) {
    const CfgLine line = cursor.take();
    RateLine rate;
    rate.rate = line.numberOf(0, "samp", 0.0, "0: times are those of the data").value;
    rate.endSample = readEndSample(line);
    if (!line[2].text.empty()) {
        line.tell(2, "endsamp", {Severity::Note, "extra-text", "the end of the line", "", false});
    }
    if (rate.rate < 0.0) {
        line.tell(0, "samp",
                  {Severity::Warning, "field-malformed", "a rate that is not negative",
                   "0: times are those of the data", false});
        rate.rate = 0.0;
    }
    if (isStamped && rate.rate > 0.0) {
        line.tell(0, "samp",
                  {Severity::Warning, "rate-zero", "0, as the number of rates says that times are in the data",
                   "written as 0", true});
        rate.rate = 0.0;
    }
    return rate;
}

} // namespace

void readLineFrequency(CfgCursor& cursor, Configuration& configuration) {
    configuration.lineFrequency = kUsualFrequency;
    if (isFrequencyMissing(cursor)) {
        cursor.tellMissing("lf", {Severity::Warning, "field-missing", "the line frequency", "50", true});
        return;
    }
    const CfgLine line = cursor.take();
    configuration.lineFrequency = line.numberOf(0, "lf", kUsualFrequency, "50").value;
}

void readRates(CfgCursor& cursor, Configuration& configuration) {
    const std::optional<std::uint64_t> declared = readDeclared(cursor);
    const bool isStamped = declared && *declared == 0;
    const std::size_t present = rateLinesAhead(cursor);
    configuration.rateLine = cursor.next;
    for (std::size_t index = 0; index < present; ++index) {
        configuration.rates.push_back(readRateLine(cursor, isStamped && present == 1));
    }
    if (!configuration.rates.empty()) {
        return;
    }
    cursor.tellMissing("samp",
                       {Severity::Warning, "field-missing", "a sampling rate", "0: times are in the data", true});
    configuration.rates.emplace_back();
}

} // namespace OrvComtradeIntake
