#include "cfg/cfgReading.h"

#include "cfg/CfgLine.h"
#include "cfg/read/channels.h"
#include "cfg/read/counts.h"
#include "cfg/read/dataType.h"
#include "cfg/read/dates.h"
#include "cfg/read/layout.h"
#include "cfg/read/rates.h"
#include "cfg/read/station.h"
#include "cfg/read/timeLines.h"
#include "report/limits.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

// Semicolons or tabs where they make a counts line, without any comma, and go on behind it.
char separatorOf(const CfgText& text) {
    const std::size_t last = std::min<std::size_t>(text.lines.size(), 3);
    for (const char separator : {';', '\t'}) {
        for (std::size_t index = 0; index + 1 < last; ++index) {
            const TextLine& line = text.lines[index];
            const bool isFollowed = text.lines[index + 1].text.find(separator) != std::string::npos;
            const bool isOnlyOne = line.text.find(',') == std::string::npos;
            if (isFollowed && isOnlyOne && isCountsLine(CfgLine(text.file, line, separator))) {
                return separator;
            }
        }
    }
    return ',';
}

void reportSeparators(const CfgCursor& cursor) {
    if (cursor.separator != ',') {
        const char* const found = cursor.separator == ';' ? "semicolons" : "tabs";
        cursor.findings.add(Kind::Separators, cursor.place(""), {found, "read as commas"});
    }
}

bool hasTooManyChannels(const CfgCursor& cursor, const ChannelCounts& counts, const Limits& limits) {
    return isAbove(counts.analog + counts.status, limits.channels, "channels", "channels", cursor.place(""),
                   cursor.findings);
}

bool readChannels(CfgCursor& cursor, const ChannelCounts& counts, const Layout& layout, ReadCfg& read) {
    read.header.analog.reserve(counts.analog);
    read.header.status.reserve(counts.status);
    read.analog.reserve(counts.analog);
    for (std::size_t index = 0; index < counts.analog; ++index) {
        if (!readAnalog(cursor, read)) {
            return false;
        }
    }
    for (std::size_t index = 0; index < counts.status; ++index) {
        readStatus(cursor, layout.hasOldStatus, read);
    }
    return true;
}

} // namespace

std::optional<ReadCfg> readCfg(const CfgText& text, Findings& findings, const Limits& limits) {
    CfgCursor cursor{text, findings, separatorOf(text)};
    if (cursor.isAtEnd()) {
        findings.add(Kind::EmptyConfiguration, cursor.place(""), {"only blanks, 0x1A or zero bytes"});
        return std::nullopt;
    }
    reportSeparators(cursor);
    ReadCfg read;
    read.file = text.file;
    read.header.encoding = text.encoding;
    const RevisionYear year = readStation(cursor, read.header);
    const std::optional<ChannelCounts> counts = readCounts(cursor, year.year.has_value());
    if (!counts || hasTooManyChannels(cursor, *counts, limits)) {
        return std::nullopt;
    }
    const Layout layout = judgeLayout(cursor, *counts, year);
    read.header.revision = layout.revision;
    if (!readChannels(cursor, *counts, layout, read)) {
        return std::nullopt;
    }
    readLineFrequency(cursor, read);
    readRates(cursor, read);
    if (isAbove(read.header.rates.size(), limits.rates, "rates", "sampling rates", read.rate, findings)) {
        return std::nullopt;
    }
    readDates(cursor, read);
    readDataType(cursor, read);
    readTimeLines(cursor, read);
    fillRanges(read);
    return read;
}

} // namespace OrvComtradeIntake
