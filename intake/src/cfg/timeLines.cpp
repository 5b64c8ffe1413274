#include "cfgSteps.h"
#include "decimalComma.h"
#include "intakeMark.h"

#include <algorithm>
#include <array>
#include <utility>

namespace OrvComtradeIntake {

namespace {

std::string upperCase(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 32) : letter;
    });
    return upper;
}

std::optional<DataEncoding> encodingOf(const std::string& word) {
    constexpr std::array<std::pair<const char*, DataEncoding>, 4> words = {{{"ASCII", DataEncoding::Ascii},
                                                                            {"BINARY", DataEncoding::Binary},
                                                                            {"BINARY32", DataEncoding::Binary32},
                                                                            {"FLOAT32", DataEncoding::Float32}}};
    for (const auto& [name, encoding] : words) {
        if (word == name) {
            return encoding;
        }
    }
    return std::nullopt;
}

// What the library makes of the line, which it compares as a whole.
DataEncoding libraryEncodingOf(const CfgLine& line) {
    const bool isWord = line.count() == 1;
    const auto encoding = isWord ? encodingOf(upperCase(line[0].raw)) : std::nullopt;
    const bool isRead = encoding && *encoding != DataEncoding::Binary32;
    return isRead ? *encoding : DataEncoding::Ascii;
}

bool isMark(const CfgLine& line) {
    return line[0].text == kIntakeMark;
}

void tellNoMultiplier(const CfgCursor& cursor, const Configuration& configuration, bool isMended) {
    const bool isDue = configuration.revision >= 1999; // revision 1991 has no such line
    if (isDue || isMended) {
        cursor.tellMissing("timemult", {isMended ? Severity::Warning : Severity::Note, "field-missing",
                                        "the time multiplier", "1", isMended});
    }
}

// "1,0" in a file whose numbers have decimal commas; time codes came with revision 2013.
bool isMultiplierWithComma(const CfgCursor& cursor, const Configuration& configuration) {
    Findings unused;
    const CfgLine line(cursor.text, cursor.line(), unused);
    return configuration.hasDecimalCommas && configuration.revision < 2013 && line.count() == 2 &&
           areHalves(line[0], line[1]);
}

bool isFollowedByCodes(const CfgCursor& cursor) {
    Findings unused;
    const CfgLine line(cursor.text, cursor.line(), unused);
    return line.count() > 1 || isMark(line);
}

void readMultiplier(CfgCursor& cursor, Configuration& configuration) {
    configuration.multiplierLine = cursor.next;
    if (cursor.isAtEnd()) {
        tellNoMultiplier(cursor, configuration, cursor.text.endsBlank);
        return;
    }
    const bool hasComma = isMultiplierWithComma(cursor, configuration);
    if (!hasComma && isFollowedByCodes(cursor)) {
        tellNoMultiplier(cursor, configuration, true);
        return;
    }
    CfgLine line = cursor.take();
    if (hasComma) {
        line.joinDecimal(0, "timemult");
    }
    configuration.timeMultiplier = line.numberOf(0, "timemult", 1.0, "1").value;
    if (configuration.timeMultiplier > 0.0) {
        return;
    }
    line.tell(0, "timemult", {Severity::Warning, "time-multiplier", "a number greater than 0", "1", true});
    configuration.timeMultiplier = 1.0;
}

std::string plainText(const CfgLine& line, std::size_t index) {
    return std::string(line[index].text);
}

void readCodes(CfgCursor& cursor, std::string& first, std::string& second) {
    if (cursor.isAtEnd()) {
        return;
    }
    const TextLine& next = cursor.line();
    const CfgLine line(cursor.text, next, cursor.findings);
    if (isMark(line)) {
        return;
    }
    ++cursor.next;
    first = plainText(line, 0);
    second = plainText(line, 1);
}

void readRest(CfgCursor& cursor, Configuration& configuration) {
    while (!cursor.isAtEnd()) {
        const CfgLine line = cursor.take();
        if (isMark(line)) {
            const bool isOfStamps = line[2].text == kMarkOfMicroseconds;
            (isOfStamps ? configuration.stampsAreSettled : configuration.ratesAreSettled) = true;
        } else {
            line.tell(0, "", {Severity::Note, "extra-text", "the end of the file", "", false});
        }
    }
}

} // namespace

void readDataType(CfgCursor& cursor, Configuration& configuration) {
    if (cursor.isAtEnd()) {
        cursor.tellMissing(
            "ft", {Severity::Warning, "type-word", "ASCII, BINARY, BINARY32 or FLOAT32", "taken as ASCII", true});
        return;
    }
    const CfgLine line = cursor.take();
    const std::optional<DataEncoding> encoding = encodingOf(upperCase(line[0].text));
    configuration.encoding = encoding.value_or(DataEncoding::Ascii);
    const bool isRead =
        configuration.encoding == DataEncoding::Binary32 || libraryEncodingOf(line) == configuration.encoding;
    if (!encoding) {
        line.tell(0, "ft",
                  {Severity::Warning, "type-word", "ASCII, BINARY, BINARY32 or FLOAT32", "taken as ASCII", false});
    } else if (!isRead) {
        line.tell(0, "ft", {Severity::Warning, "type-word", "the word alone", "written so", true});
    }
}

void readTimeLines(CfgCursor& cursor, Configuration& configuration) {
    readMultiplier(cursor, configuration);
    readCodes(cursor, configuration.timeCode, configuration.localCode);
    readCodes(cursor, configuration.timeQuality, configuration.leapSecond);
    readRest(cursor, configuration);
}

} // namespace OrvComtradeIntake
