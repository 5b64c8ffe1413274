#include "cfg/read/counts.h"

#include "base/characters.h"
#include "cfg/read/fields.h"
#include "cfg/read/rates.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kFieldsToFactor = 6; // no status line has as many
constexpr std::size_t kAnalogFields = 8;   // fewer than these make no analog line, more no status line

struct Count {
    std::optional<std::uint64_t> number;
    char letter = ' ';      ///< in upper case
    bool isInOrder = false; ///< the number, then the letter
};

bool isLetterOrBlank(char character) {
    return character == ' ' || isLetter(character);
}

Count channelCountOf(const CfgField& field) {
    std::string_view digits = field.text;
    while (!digits.empty() && isLetterOrBlank(digits.back())) {
        digits.remove_suffix(1);
    }
    while (!digits.empty() && isLetterOrBlank(digits.front())) {
        digits.remove_prefix(1);
    }
    Count count;
    count.number = readCount(digits);
    for (const char character : upperCase(field.text)) {
        count.letter = isLetter(character) ? character : count.letter;
    }
    count.isInOrder = !digits.empty() && digits.data() == field.text.data();
    return count;
}

struct DeclaredCounts {
    std::optional<std::uint64_t> analog;
    std::optional<std::uint64_t> status;
    bool isSum = false; ///< the total is that of both

    bool areBoth() const { return analog && status; }
};

void reportLetter(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name, const char* expected) {
    const Count count = channelCountOf(line[index]);
    if (count.number) {
        report(cursor.findings, Kind::FieldMalformed, line, index, name,
               {{}, "read as " + std::to_string(*count.number), expected});
    }
}

DeclaredCounts declaredCounts(CfgCursor& cursor, const CfgLine& line) {
    const Count total = channelCountOf(line[0]);
    Count analog = channelCountOf(line[1]);
    Count status = channelCountOf(line[2]);
    if (total.letter != ' ') {
        reportLetter(cursor, line, 0, "TT", "a number");
    }
    if (analog.letter != 'A' || !analog.isInOrder) {
        reportLetter(cursor, line, 1, "##A", "a number, then A");
    }
    if (status.letter != 'D' || !status.isInOrder) {
        reportLetter(cursor, line, 2, "##D", "a number, then D");
    }
    if (analog.letter == 'D' && status.letter == 'A') {
        std::swap(analog, status);
    }
    DeclaredCounts declared{analog.number, status.number, false};
    declared.isSum = total.number && declared.areBoth() && *total.number == *analog.number + *status.number;
    const bool isRestKnown = total.number && declared.analog && !declared.status && *total.number >= *declared.analog;
    if (isRestKnown) {
        declared.status = *total.number - *declared.analog;
    }
    return declared;
}

/// The lines behind the counts line, each of which is looked at by itself.
class ChannelLines {
public:
    explicit ChannelLines(const CfgCursor& cursor) : _cursor(cursor) {}

    /// Without a check of what the lines are: a file may be cut short, or its lines be repaired one by one.
    bool arePossible(const DeclaredCounts& counts) const {
        const std::size_t left = _cursor.left();
        return counts.areBoth() && *counts.analog <= left && *counts.status <= left - *counts.analog;
    }

    /// The lines are as many as that, and one that is none of a channel follows.
    bool bearOut(const DeclaredCounts& counts) const {
        if (!arePossible(counts)) {
            return false;
        }
        const auto analog = static_cast<std::size_t>(*counts.analog);
        const auto end = analog + static_cast<std::size_t>(*counts.status);
        if (end >= _cursor.left() || !isFrequency(_cursor, end)) {
            return false;
        }
        // "50," is a status line without a name only if the number of rates follows behind another frequency. "1,,,,"
        // is no frequency, so it is such a line where the frequency is left out, too.
        const bool isFollowed = end + 1 < _cursor.left() && isNumberAlone(_cursor.peek(end + 1));
        const bool isBefore = isFrequencyMissing(_cursor, end) && end > 0 && isLessThanFrequency(_cursor.peek(end - 1));
        const std::size_t leastFields = isFollowed || isBefore ? 1 : 2;
        return _endOf(0, analog, true, 1) == analog && _endOf(analog, end, false, leastFields) == end;
    }

    DeclaredCounts counted() const {
        const std::size_t analog = _endBeforeFrequency(0, true);
        return {analog, _endBeforeFrequency(analog, false) - analog, false};
    }

private:
    static bool _isChannel(const CfgLine& line, bool isAnalog) {
        return (line.count() >= kAnalogFields) == isAnalog && line.written() >= 2;
    }

    /// Some of its numbers may be missing, as a spreadsheet leaves cells empty.
    static bool _mayBeAnalog(const CfgLine& line) {
        return line.written() >= kAnalogFields && line.count() >= kFieldsToFactor;
    }

    std::size_t _endOf(std::size_t ahead, std::size_t end, bool isAnalog, std::size_t leastFields) const {
        for (; ahead < end; ++ahead) {
            const CfgLine line = _cursor.peek(ahead);
            const bool isChannel = _isChannel(line, isAnalog) || (isAnalog && _mayBeAnalog(line));
            if (!isChannel || line.count() < leastFields) {
                break;
            }
        }
        return ahead;
    }

    std::size_t _endBeforeFrequency(std::size_t ahead, bool isAnalog) const {
        while (ahead < _cursor.left() && _isChannel(_cursor.peek(ahead), isAnalog) && !isFrequency(_cursor, ahead)) {
            ++ahead;
        }
        return ahead;
    }

    const CfgCursor& _cursor;
};

std::string countsText(const DeclaredCounts& counts) {
    const std::uint64_t total = *counts.analog + *counts.status;
    return std::to_string(total) + ',' + std::to_string(*counts.analog) + "A," + std::to_string(*counts.status) + 'D';
}

std::nullopt_t refuse(CfgCursor& cursor, const CfgLine& line, Kind kind, std::string expected = {}) {
    const char* const field = kind == Kind::NotARecording ? "" : "TT";
    report(cursor.findings, kind, line, 0, field, {escaped(line.textFrom(0)), {}, std::move(expected)});
    return std::nullopt;
}

std::optional<DeclaredCounts> settledCounts(const ChannelLines& lines, const DeclaredCounts& declared) {
    if (lines.bearOut(declared)) {
        return declared;
    }
    const DeclaredCounts counted = lines.counted();
    const bool isAny = *counted.analog + *counted.status != 0;
    if (isAny && lines.bearOut(counted)) {
        return counted;
    }
    return declared.isSum && lines.arePossible(declared) ? std::optional(declared) : std::nullopt;
}

} // namespace

bool isCountsLine(const CfgLine& line) {
    const Count analog = channelCountOf(line[1]);
    const Count status = channelCountOf(line[2]);
    return line.count() == 3 && channelCountOf(line[0]).number && analog.number && analog.letter == 'A' &&
           status.number && status.letter == 'D';
}

std::optional<ChannelCounts> readCounts(CfgCursor& cursor, bool isConfiguration) {
    if (cursor.isAtEnd()) {
        cursor.findings.add(Kind::UnknownCounts, cursor.place("TT"), {{}, {}, "the line of channel counts"});
        return std::nullopt;
    }
    const CfgLine line = cursor.take();
    const DeclaredCounts declared = declaredCounts(cursor, line);
    const std::optional<DeclaredCounts> settled = settledCounts(ChannelLines(cursor), declared);
    if (!settled) {
        const bool isOther = !isConfiguration && !declared.analog && !declared.status;
        return refuse(cursor, line, isOther ? Kind::NotARecording : Kind::UnknownCounts);
    }
    if (*settled->analog + *settled->status == 0) {
        return refuse(cursor, line, Kind::UnknownCounts, "at least one channel");
    }
    const bool isOther = settled->analog != declared.analog || settled->status != declared.status;
    if (isOther || !declared.isSum) {
        report(cursor.findings, Kind::Counts, line, 0, "TT",
               {escaped(line.textFrom(0)), "the channel lines were counted", countsText(*settled)});
    }
    reportRest(cursor, line, 3, "##D");
    return ChannelCounts{static_cast<std::size_t>(*settled->analog), static_cast<std::size_t>(*settled->status)};
}

} // namespace OrvComtradeIntake
