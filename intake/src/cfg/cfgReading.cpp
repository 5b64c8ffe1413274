#include "cfgReading.h"

#include "cfgSteps.h"

namespace OrvComtradeIntake {

namespace {

void readChannels(CfgCursor& cursor, const ChannelCounts& counts, const RevisionYear& year,
                  Configuration& configuration) {
    const bool isOldLayout = judgeLayout(cursor, counts, year, configuration);
    configuration.channelLine = cursor.next;
    configuration.analog.reserve(counts.analog);
    configuration.status.reserve(counts.status);
    for (std::size_t index = 0; index < counts.analog; ++index) {
        readAnalogLine(cursor, configuration);
    }
    for (std::size_t index = 0; index < counts.status; ++index) {
        readStatusLine(cursor, isOldLayout, configuration);
    }
}

} // namespace

std::optional<Configuration> readConfiguration(const CfgText& text, Findings& findings) {
    CfgCursor cursor{text, findings};
    Configuration configuration;
    if (cursor.isAtEnd()) {
        cursor.tellMissing("station_name", {Severity::Error, "field-missing", "a configuration", "", false});
        return std::nullopt;
    }
    const RevisionYear year = readStationLine(cursor, configuration);
    const std::optional<ChannelCounts> counts = readCountsLine(cursor);
    if (!counts) {
        return std::nullopt;
    }
    readChannels(cursor, *counts, year, configuration);
    readLineFrequency(cursor, configuration);
    readRates(cursor, configuration);
    readDates(cursor, configuration);
    readDataType(cursor, configuration);
    readTimeLines(cursor, configuration);
    fillRanges(configuration);
    return configuration;
}

} // namespace OrvComtradeIntake
