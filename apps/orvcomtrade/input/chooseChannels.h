#pragma once

#include "input/Recording.h"

#include <cstddef>
#include <string>
#include <vector>

/// Channels that a command line names.
struct ChannelWishes {
    std::vector<std::string> any;    ///< analog channels, or status channels if no analog channel has the name
    std::vector<std::string> status; ///< status channels

    bool isEmpty() const { return any.empty() && status.empty(); }
};

/// 0-based channels in the order of the command line, each once.
struct ChosenChannels {
    std::vector<std::size_t> analog;
    std::vector<std::size_t> status;
};

/// The channels that are named, as `findChannels` understands them; all if none is named. Throws a Failure.
ChosenChannels chooseChannels(const Recording& recording, const ChannelWishes& wishes);

/// Whether any channel, analog or status, has a name or an identifier that fits the pattern.
bool hasChannelLike(const OrvComtradeIntake::Header& header, const std::string& pattern);
