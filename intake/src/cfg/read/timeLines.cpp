#include "cfg/read/timeLines.h"

#include "base/characters.h"
#include "cfg/read/commas.h"
#include "cfg/read/fields.h"

#include <string>
#include <string_view>

namespace OrvComtradeIntake {

namespace {

std::string_view withoutDigits(std::string_view text, std::size_t most) {
    std::size_t count = 0;
    while (count < most && count < text.size() && isDigit(text[count])) {
        ++count;
    }
    return text.substr(count);
}

// "x" (unknown), or hours and minutes from UTC: "0", "-5h30", "+2".
bool isTimeCode(std::string_view text) {
    if (text == "x" || text == "X") {
        return true;
    }
    text.remove_prefix(!text.empty() && (text.front() == '-' || text.front() == '+') ? 1 : 0);
    const std::string_view rest = withoutDigits(text, 2);
    const bool hasHours = rest.size() < text.size();
    const bool hasMinutes = !rest.empty() && (rest.front() == 'h' || rest.front() == 'H');
    return hasHours && (rest.empty() || (hasMinutes && withoutDigits(rest.substr(1), 2).empty()));
}

bool areTimeCodes(const CfgLine& line) {
    return line.count() == 2 && isTimeCode(line[0].text) && isTimeCode(line[1].text);
}

// A hexadecimal digit for the clock's accuracy, and what is known of leap seconds.
bool isTimeQuality(const CfgLine& line) {
    const std::string_view quality = line[0].text;
    const std::string_view leap = line[1].text;
    constexpr std::string_view hexadecimal = "0123456789ABCDEFabcdef";
    return line.count() == 2 && quality.size() == 1 && hexadecimal.find(quality.front()) != std::string_view::npos &&
           leap.size() == 1 && leap.front() >= '0' && leap.front() <= '3';
}

// "1,0" in a file whose numbers have decimal commas; from 2013 on it may be time codes.
bool hasDecimalComma(const CfgCursor& cursor, const CfgLine& line, const Header& header) {
    return cursor.hasDecimalCommas && header.revision < 2013 && line.count() == 2 && areHalves(line, 0);
}

// Revision 1991 has none: other text is no malformed one.
bool isMultiplierAhead(const CfgCursor& cursor, const Header& header) {
    if (cursor.isAtEnd()) {
        return false;
    }
    const CfgLine line = cursor.peek();
    const bool canBe = line.count() < 2 || hasDecimalComma(cursor, line, header);
    return canBe && (header.revision >= 1999 || isNumber(line[0].text));
}

void readMultiplier(CfgCursor& cursor, ReadCfg& read) {
    Header& header = read.header;
    if (!isMultiplierAhead(cursor, header)) {
        if (header.revision >= 1999) {
            cursor.findings.add(Kind::FieldMissing, cursor.place("timemult"), {{}, "read as 1", "the time multiplier"});
        }
        return;
    }
    CfgLine line = cursor.take();
    if (hasDecimalComma(cursor, line, header)) {
        joinDecimal(cursor, line, 0, "timemult");
    }
    header.timeMultiplier = numberOf(cursor, line, 0, "timemult", 1.0, "read as 1").value;
    reportRest(cursor, line, 1, "timemult");
    if (header.timeMultiplier <= 0.0) {
        report(cursor.findings, Kind::TimeMultiplier, line, 0, "timemult", {{}, "read as 1"});
        header.timeMultiplier = 1.0;
    }
}

// Words where time codes should stand, or time quality of another length.
void leaveOutCodes(CfgCursor& cursor) {
    const CfgLine line = cursor.take();
    if (line.count() != 0) { // else no codes are given
        report(cursor.findings, Kind::ExtraText, line, 0, "",
               {escaped(line.textFrom(0)), "left out", "time codes and quality, such as -5h30,-5h30 and 0,3"});
    }
}

void takeTwo(CfgCursor& cursor, std::string& first, std::string& second) {
    const CfgLine line = cursor.take();
    first = line[0].text;
    second = line[1].text;
    reportRest(cursor, line, 2, "");
}

// Two fields, whatever is in them.
bool areTwo(const CfgLine& line) {
    return line.count() == 2 || (line.count() == 0 && line.written() == 2);
}

// A line of codes that are none may stand before the quality.
bool readTimeCodes(CfgCursor& cursor, Header& header) {
    if (cursor.left() > 0 && areTimeCodes(cursor.peek())) {
        takeTwo(cursor, header.timeCode, header.localCode);
        return true;
    }
    if (cursor.left() < 2 || isTimeQuality(cursor.peek())) {
        return false;
    }
    const CfgLine next = cursor.peek(1);
    if (!isTimeQuality(next) && !(areTwo(cursor.peek()) && areTwo(next))) {
        return false;
    }
    leaveOutCodes(cursor);
    return true;
}

bool readTimeQuality(CfgCursor& cursor, Header& header) {
    if (cursor.left() > 0 && isTimeQuality(cursor.peek())) {
        takeTwo(cursor, header.timeQuality, header.leapSecond);
        return true;
    }
    if (cursor.left() > 0 && areTwo(cursor.peek())) {
        leaveOutCodes(cursor);
        return true;
    }
    return false;
}

void readCodes(CfgCursor& cursor, Header& header) {
    const bool hasCodes = readTimeCodes(cursor, header);
    const bool hasQuality = readTimeQuality(cursor, header);
    if (!hasCodes || !hasQuality) {
        const char* const missing = hasCodes ? "no time quality" : hasQuality ? "no time codes" : "neither";
        cursor.findings.add(Kind::TimeLines, cursor.place(""), {missing});
    }
}

} // namespace

void readTimeLines(CfgCursor& cursor, ReadCfg& read) {
    readMultiplier(cursor, read);
    if (read.header.revision >= 2013) {
        readCodes(cursor, read.header);
    }
    while (!cursor.isAtEnd()) {
        reportRest(cursor, cursor.take(), 0, "");
    }
}

} // namespace OrvComtradeIntake
