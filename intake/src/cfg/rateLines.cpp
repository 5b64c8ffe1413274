#include "cfgSteps.h"
#include "decimalComma.h"

namespace OrvComtradeIntake {

namespace {

constexpr double kUsualFrequency = 50.0;
constexpr double kLeastFrequency = 10.0; // a smaller number alone on its line is rather the count of rates

bool isNumber(std::string_view text) {
    const NumberForm form = readNumber(text).form;
    return form == NumberForm::Good || form == NumberForm::Odd;
}

bool hasLine(const CfgCursor& cursor, std::size_t ahead) {
    return !cursor.isAtEnd() && ahead < cursor.left();
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
    if (isFrequencyWithComma(cursor, cursor.next)) {
        return false;
    }
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

bool isNaught(std::string_view digits) {
    return digits.find_first_not_of('0') == std::string_view::npos;
}

// "1000,0,40": no rate ends at sample 0, no number of a sample begins with 0, and where a number of the file has a
// decimal comma the others have too.
bool hasRateWithComma(const CfgLine& line, bool hasDecimalCommas) {
    const std::string_view number = line[2].text;
    const std::string_view fraction = line[1].text;
    if (!areHalves(line[0], line[1]) || !readCount(number) || number.front() == '0') {
        return false;
    }
    return hasDecimalCommas || isNaught(fraction) || fraction.front() == '0';
}

RateLine readRateLine(CfgCursor& cursor, bool isStamped, bool hasDecimalCommas) {
    CfgLine line = cursor.take();
    if (hasRateWithComma(line, hasDecimalCommas)) {
        line.joinDecimal(0, "samp");
    }
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

bool isFrequencyWithComma(const CfgCursor& cursor, std::size_t index) {
    const CfgCursor ahead{cursor.text, cursor.findings, index};
    if (!hasLine(ahead, 0) || !isNumberAlone(ahead, 1) || !isRateLineOfTwo(ahead, 2)) {
        return false;
    }
    Findings unused;
    const CfgLine line(cursor.text, lineAhead(ahead, 0), unused);
    return line.count() == 2 && areHalves(line[0], line[1]) && readNumber(line[0].text).value >= kLeastFrequency;
}

void readLineFrequency(CfgCursor& cursor, Configuration& configuration) {
    configuration.lineFrequency = kUsualFrequency;
    if (isFrequencyMissing(cursor)) {
        cursor.tellMissing("lf", {Severity::Warning, "field-missing", "the line frequency", "50", true});
        return;
    }
    const bool hasComma = isFrequencyWithComma(cursor, cursor.next);
    CfgLine line = cursor.take();
    if (hasComma) {
        line.joinDecimal(0, "lf");
        configuration.hasDecimalCommas = true;
    }
    configuration.lineFrequency = line.numberOf(0, "lf", kUsualFrequency, "50").value;
}

void readRates(CfgCursor& cursor, Configuration& configuration) {
    const std::optional<std::uint64_t> declared = readDeclared(cursor);
    const bool isStamped = declared && *declared == 0;
    const std::size_t present = rateLinesAhead(cursor);
    configuration.rateLine = cursor.next;
    for (std::size_t index = 0; index < present; ++index) {
        configuration.rates.push_back(readRateLine(cursor, isStamped && present == 1, configuration.hasDecimalCommas));
    }
    if (!configuration.rates.empty()) {
        return;
    }
    cursor.tellMissing("samp",
                       {Severity::Warning, "field-missing", "a sampling rate", "0: times are in the data", true});
    configuration.rates.emplace_back();
}

} // namespace OrvComtradeIntake
