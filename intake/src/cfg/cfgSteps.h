#pragma once

#include "CfgLine.h"
#include "Configuration.h"

#include <cstddef>
#include <optional>

namespace OrvComtradeIntake {

/// Number of channel lines of each kind.
struct ChannelCounts {
    std::size_t analog = 0;
    std::size_t status = 0;
};

/// The year of the station line as the file and as the library have it.
struct RevisionYear {
    std::optional<std::uint64_t> written;       ///< nothing where it is missing or no number
    std::optional<std::int64_t> library = 1999; ///< nothing where the library throws
    std::size_t line = 0;                       ///< index of the station line
    bool isStationMissing = false;
};

/// The station line: names, and the year that judgeLayout goes by.
RevisionYear readStationLine(CfgCursor& cursor, Configuration& configuration);

/// The counts line. Where it contradicts itself or the lines that follow, the lines are counted. Nothing, with a
/// finding of severity Error, where the channels can't be told.
std::optional<ChannelCounts> readCountsLine(CfgCursor& cursor);

/// Judges by the fields of the channel lines, which begin at the cursor, whether they are laid out as in revision 1991.
/// Sets the revision.
/// @return whether the status lines are laid out so.
bool judgeLayout(const CfgCursor& cursor, const ChannelCounts& counts, const RevisionYear& year,
                 Configuration& configuration);

void readAnalogLine(CfgCursor& cursor, Configuration& configuration);
void readStatusLine(CfgCursor& cursor, bool isOldLayout, Configuration& configuration);

/// Whether the line at `index` is a line frequency with a decimal comma ("50,0"), before the count of rates and a rate;
/// by itself it could be a rate or a status channel as well.
bool isFrequencyWithComma(const CfgCursor& cursor, std::size_t index);

void readLineFrequency(CfgCursor& cursor, Configuration& configuration);
void readRates(CfgCursor& cursor, Configuration& configuration);
void readDates(CfgCursor& cursor, Configuration& configuration);
void readDataType(CfgCursor& cursor, Configuration& configuration);

/// The lines behind the data type: time multiplier, time codes, time quality, the intake's own mark.
void readTimeLines(CfgCursor& cursor, Configuration& configuration);

/// Puts the range of the encoding where the line gives none.
void fillRanges(Configuration& configuration);

} // namespace OrvComtradeIntake
