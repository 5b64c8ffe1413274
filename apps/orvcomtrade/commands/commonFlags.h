#pragma once

#include "commands/Flag.h"
#include "commands/Request.h"
#include "input/Window.h"
#include "input/chooseChannels.h"
#include "output/TimeScale.h"
#include "output/csv.h"

#include <string>
#include <vector>

/// The flags of every command that reads recordings. `mayBeAsIs` says whether it has --as-is.
std::vector<Flag> readingFlags(Request& request, bool mayBeAsIs = true);

/// Only some of these flags, by name.
std::vector<Flag> readingFlags(Request& request, const std::vector<std::string>& names);

/// What the times are counted from.
Flag timeFlag(TimeBase& base);

/// What the skews of the channels do.
Flag skewFlag(bool& keeps, std::string summary);

/// How CSV is written: --excel, --digits, --raw.
std::vector<Flag> csvFlags(CsvStyle& style);

/// Where to write. `details` says what the value means for one recording and for several.
Flag outputFlag(OutputRequest& output, std::string summary, std::string details);

/// From how many bytes of recorded values on a page is reduced, for commands that write pages.
Flag fullBytesFlag(std::size_t& bytes);

/// --force: reads data that make no sense. With `output`, for commands that write files, it also replaces existing
/// ones. `forceFlags` adds the flags for what else may become of these (--skip-existing, --update).
Flag forceFlag(Request& request);
Flag forceFlag(Request& request, OutputRequest& output);
std::vector<Flag> forceFlags(Request& request, OutputRequest& output);

/// The flags that select channels.
std::vector<Flag> channelFlags(ChannelWishes& wishes);

/// The flags that select samples.
std::vector<Flag> windowFlags(WindowRequest& window);
