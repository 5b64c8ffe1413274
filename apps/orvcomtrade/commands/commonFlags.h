#pragma once

#include "commands/Flag.h"
#include "commands/Request.h"
#include "input/Window.h"
#include "input/chooseChannels.h"
#include "output/TimeScale.h"
#include "output/csv.h"

#include <string>
#include <vector>

/// Of every command that reads recordings. `mayBeAsIs` says whether it may leave the intake out.
std::vector<Flag> readingFlags(Request& request, bool mayBeAsIs = true);

/// Those of them that are named.
std::vector<Flag> readingFlags(Request& request, const std::vector<std::string>& names);

/// What the times are counted from.
Flag timeFlag(TimeBase& base);

/// What the skews of the channels do.
Flag skewFlag(bool& keeps, std::string summary);

/// How CSV is written: --excel, --digits, --raw.
std::vector<Flag> csvFlags(CsvStyle& style);

/// Where to write; `details` say what it is for one recording and for several.
Flag outputFlag(OutputRequest& output, std::string summary, std::string details);

/// From how many bytes of recorded values on a page is reduced; of the commands that write pages.
Flag fullBytesFlag(std::size_t& bytes);

/// Reads what makes no sense; of a command that writes files, replaces those that exist as well, and with the flags for
/// what else may become of these (--skip-existing, --update).
Flag forceFlag(Request& request);
Flag forceFlag(Request& request, OutputRequest& output);
std::vector<Flag> forceFlags(Request& request, OutputRequest& output);

/// Which channels a command is to take.
std::vector<Flag> channelFlags(ChannelWishes& wishes);

/// Which samples.
std::vector<Flag> windowFlags(WindowRequest& window);
