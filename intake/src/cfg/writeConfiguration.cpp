#include "cfg/writeConfiguration.h"

#include "base/characters.h"
#include "base/numbers.h"
#include "cfg/CfgLine.h"
#include "cfg/dateTime.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <utility>

namespace OrvComtradeIntake {

namespace {

using std::to_string;

std::string withinQuotes(const std::string& text) {
    std::string quoted = "\"";
    for (const char letter : text) {
        quoted.append(letter == '"' ? 2 : 1, letter);
    }
    return quoted + '"';
}

// From the last field to the first: whether a quotation mark at the begin of a field is closed depends on what follows.
std::string lineAsRead(std::initializer_list<std::string> fields) {
    std::string line;
    for (const std::string* field = fields.end(); field != fields.begin();) {
        --field;
        const std::string rest = field + 1 == fields.end() ? line : ',' + line;
        const std::string plain = *field + rest;
        line = beginsWithinQuotes(plain, ',') ? withinQuotes(*field) + rest : plain;
    }
    return line;
}

/// Lines put together from their fields.
class CfgLines {
public:
    explicit CfgLines(Reader reader) : _reader(reader) {}

    void add(std::initializer_list<std::string> fields) {
        if (_reader == Reader::Standard && _hasQuotes(fields)) {
            text += lineAsRead(fields);
        } else {
            _join(fields);
        }
        text += _reader == Reader::Standard ? "\r\n" : "\n";
    }

    std::string text;

private:
    static bool _hasQuotes(std::initializer_list<std::string> fields) {
        return std::any_of(fields.begin(), fields.end(),
                           [](const std::string& field) { return field.find('"') != std::string::npos; });
    }

    void _join(std::initializer_list<std::string> fields) {
        const char* separator = "";
        for (const std::string& field : fields) {
            text.append(separator).append(field);
            separator = ",";
        }
    }

    Reader _reader;
};

// Nothing that is read from a line has a comma or a line end in it.
std::string plain(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char letter) { return letter == ',' || isBlank(letter); }, ' ');
    return text;
}

bool isOldLayout(const Header& header) {
    return header.revision < 1999;
}

void addStation(CfgLines& lines, const Header& header, Reader reader) {
    if (isOldLayout(header) && reader == Reader::Standard) {
        lines.add({plain(header.station), plain(header.recorder)});
    } else {
        lines.add({plain(header.station), plain(header.recorder), to_string(header.revision)});
    }
}

void addAnalog(CfgLines& lines, const AnalogInfo& channel, std::size_t number, bool isOld) {
    const std::string range = numberText(channel.min) + ',' + numberText(channel.max);
    const std::string ratio = ',' + numberText(channel.primary) + ',' + numberText(channel.secondary) +
                              (channel.side == Side::Primary ? ",P" : ",S");
    lines.add({to_string(number), plain(channel.id), plain(channel.phase), plain(channel.component),
               plain(channel.unit), numberText(channel.a), numberText(channel.b), numberText(channel.skew),
               isOld ? range : range + ratio});
}

void addStatus(CfgLines& lines, const StatusInfo& channel, std::size_t number, bool isOld) {
    const std::string state = to_string(channel.normalState);
    if (isOld) {
        lines.add({to_string(number), plain(channel.id), state});
    } else {
        lines.add({to_string(number), plain(channel.id), plain(channel.phase), plain(channel.component), state});
    }
}

void addChannels(CfgLines& lines, const Header& header) {
    const std::size_t analog = header.analog.size();
    const std::size_t status = header.status.size();
    lines.add({to_string(analog + status), to_string(analog) + 'A', to_string(status) + 'D'});
    for (std::size_t index = 0; index < analog; ++index) {
        addAnalog(lines, header.analog[index], index + 1, isOldLayout(header));
    }
    for (std::size_t index = 0; index < status; ++index) {
        addStatus(lines, header.status[index], index + 1, isOldLayout(header));
    }
}

// The number of rates is 0 where times are in the data, and one line follows all the same.
void addRates(CfgLines& lines, const Header& header) {
    if (header.timesAreStamped()) {
        lines.add({"0"});
        lines.add({"0", to_string(header.rates.empty() ? 0 : header.rates.back().endSample)});
        return;
    }
    lines.add({to_string(header.rates.size())});
    for (const RateInfo& rate : header.rates) {
        lines.add({numberText(rate.rate), to_string(rate.endSample)});
    }
}

std::string dateText(Instant instant, const Header& header) {
    constexpr std::size_t yearPosition = 6;
    if (!isOldLayout(header)) {
        return dateTimeText(instant, DateOrder::DayMonth, header.hasNanosecondDates);
    }
    std::string text = dateTimeText(instant, DateOrder::MonthDay, header.hasNanosecondDates);
    const std::string year = text.substr(yearPosition, 4);
    if (year >= "1970" && year < "2070") { // as two digits are read
        text.erase(yearPosition, 2);
    }
    return text;
}

void addDates(CfgLines& lines, const Header& header) {
    for (const std::optional<Instant>& instant : {header.start, header.trigger}) {
        lines.add({dateText(instant.value_or(Instant{}), header)}); // the zero of clocks stands for no date
    }
}

void addTimeLines(CfgLines& lines, const Header& header) {
    if (!isOldLayout(header) || header.timeMultiplier != 1.0) {
        lines.add({numberText(header.timeMultiplier)});
    }
    if (header.revision < 2013) {
        return;
    }
    // Empty where nothing is recorded: no code stands for a quality that is not known.
    lines.add({plain(header.timeCode), plain(header.localCode)});
    lines.add({plain(header.timeQuality), plain(header.leapSecond)});
}

} // namespace

std::string writeConfiguration(const Header& header, Reader reader) {
    CfgLines lines(reader);
    addStation(lines, header, reader);
    addChannels(lines, header);
    lines.add({numberText(header.lineFrequency)});
    addRates(lines, header);
    addDates(lines, header);
    lines.add({typeWord(header.dataType)});
    addTimeLines(lines, header);
    return std::move(lines.text);
}

} // namespace OrvComtradeIntake
