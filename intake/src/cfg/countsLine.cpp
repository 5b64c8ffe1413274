#include "cfgSteps.h"

#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kAnalogFields = 8; // fewer than these make no analog line, more no status line

struct Count {
    std::optional<std::uint64_t> number;
    char suffix = ' ';
    bool isPlain = false; ///< the library takes it for the same number
};

bool isLetterBlank(char character) {
    return character == ' ' || (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

Count readChannelCount(const CfgField& field) {
    std::string_view digits = field.text;
    Count count;
    while (!digits.empty() && isLetterBlank(digits.back())) {
        count.suffix = digits.back() == ' ' ? count.suffix : digits.back();
        digits.remove_suffix(1);
    }
    while (!digits.empty() && isLetterBlank(digits.front())) {
        count.suffix = digits.front() == ' ' ? count.suffix : digits.front();
        digits.remove_prefix(1);
    }
    count.number = readCount(digits);
    const std::optional<std::int64_t> library = libraryInteger(field.raw);
    count.isPlain = count.number && library && static_cast<std::uint64_t>(*library) == *count.number;
    return count;
}

struct DeclaredCounts {
    std::optional<std::uint64_t> analog;
    std::optional<std::uint64_t> status;
    bool isPlain = false;
};

bool isLetter(char suffix, char letter) {
    return suffix == letter || suffix == letter + ('a' - 'A');
}

void tellSuffix(const CfgLine& line, std::size_t index, const char* name, bool isPlain) {
    line.tell(index, name,
              {isPlain ? Severity::Note : Severity::Warning, "field-malformed", "a number of channels",
               isPlain ? "the letters are left out of account" : "read by its digits", !isPlain});
}

DeclaredCounts readDeclared(const CfgLine& line) {
    const Count total = readChannelCount(line[0]);
    Count analog = readChannelCount(line[1]);
    Count status = readChannelCount(line[2]);
    const bool isSwapped = isLetter(analog.suffix, 'D') && isLetter(status.suffix, 'A');
    if (isSwapped) {
        std::swap(analog, status);
    }
    if (isSwapped || (line.has(1) && !analog.isPlain)) {
        tellSuffix(line, 1, "##A", false);
    }
    if (isSwapped || (line.has(2) && !status.isPlain)) {
        tellSuffix(line, 2, "##D", false);
    }
    if (total.suffix != ' ' || !total.isPlain) {
        tellSuffix(line, 0, "TT", total.isPlain);
    }
    DeclaredCounts declared{analog.number, status.number, false};
    if (total.number && declared.analog && !declared.status && *total.number >= *declared.analog) {
        declared.status = *total.number - *declared.analog;
    }
    declared.isPlain = line.libraryCount() > 2 && !isSwapped && total.isPlain && analog.isPlain && status.isPlain &&
                       *total.number == *analog.number + *status.number;
    return declared;
}

bool isNumberAlone(const TextLine& line) {
    const NumberForm form = readNumber(line.text).form;
    return form == NumberForm::Good || form == NumberForm::Odd;
}

bool areChannels(const CfgCursor& cursor, std::size_t begin, std::size_t end, bool isAnalog) {
    for (std::size_t index = begin; index < end; ++index) {
        const std::size_t fields = fieldCount(cursor.text.lines[index]);
        if ((fields >= kAnalogFields) != isAnalog || fields < 2) {
            return false;
        }
    }
    return true;
}

// The lines are as many as that, and a line that is none of a channel follows.
bool isBorneOut(const CfgCursor& cursor, const DeclaredCounts& counts) {
    if (!counts.analog || !counts.status || *counts.analog > cursor.left() ||
        *counts.status > cursor.left() - *counts.analog) {
        return false;
    }
    const std::size_t status = cursor.next + *counts.analog;
    const std::size_t end = status + *counts.status;
    const bool isFollowed =
        end < cursor.text.lines.size() && (isNumberAlone(cursor.text.lines[end]) || isFrequencyWithComma(cursor, end));
    return isFollowed && areChannels(cursor, cursor.next, status, true) && areChannels(cursor, status, end, false);
}

std::size_t endOfLines(const CfgCursor& cursor, std::size_t begin, bool isAnalog) {
    std::size_t end = begin;
    while (end < cursor.text.lines.size() && areChannels(cursor, end, end + 1, isAnalog) &&
           !isFrequencyWithComma(cursor, end)) {
        ++end;
    }
    return end;
}

DeclaredCounts countLines(const CfgCursor& cursor) {
    const std::size_t status = endOfLines(cursor, cursor.next, true);
    const std::size_t end = endOfLines(cursor, status, false);
    return {status - cursor.next, end - status, false};
}

// Without a check of what the lines are: a file may be cut short, or its lines be mended one by one.
bool isPossible(const CfgCursor& cursor, const DeclaredCounts& counts) {
    return counts.analog && counts.status && *counts.analog <= cursor.left() &&
           *counts.status <= cursor.left() - *counts.analog;
}

std::string countsText(const DeclaredCounts& counts) {
    return std::to_string(*counts.analog) + "A," + std::to_string(*counts.status) + 'D';
}

std::optional<DeclaredCounts> settledCounts(const CfgCursor& cursor, const CfgLine& line,
                                            const DeclaredCounts& declared) {
    if (isBorneOut(cursor, declared)) {
        return declared;
    }
    const DeclaredCounts counted = countLines(cursor);
    const bool isCounted = isBorneOut(cursor, counted);
    if (!isCounted && declared.isPlain && isPossible(cursor, declared)) {
        return declared;
    }
    if (!isCounted) {
        line.tell(0, "TT", {Severity::Error, "counts", "as many channel lines as counted", "", false});
        return std::nullopt;
    }
    line.tell(0, "TT", {Severity::Warning, "counts", countsText(counted), "the channel lines counted", true});
    return counted;
}

} // namespace

std::optional<ChannelCounts> readCountsLine(CfgCursor& cursor) {
    if (cursor.isAtEnd()) {
        cursor.tellMissing("TT", {Severity::Error, "counts", "the line of channel counts", "", false});
        return std::nullopt;
    }
    const CfgLine line = cursor.take();
    const DeclaredCounts declared = readDeclared(line);
    const std::optional<DeclaredCounts> settled = settledCounts(cursor, line, declared);
    if (!settled) {
        return std::nullopt;
    }
    if (*settled->analog + *settled->status == 0) {
        line.tell(0, "TT", {Severity::Error, "counts", "at least one channel", "", false});
        return std::nullopt;
    }
    const bool isToldAlready = settled->analog != declared.analog || settled->status != declared.status;
    if (!declared.isPlain && !isToldAlready) {
        line.tell(0, "TT", {Severity::Warning, "counts", countsText(*settled), "written so", true});
    }
    return ChannelCounts{static_cast<std::size_t>(*settled->analog), static_cast<std::size_t>(*settled->status)};
}

} // namespace OrvComtradeIntake
