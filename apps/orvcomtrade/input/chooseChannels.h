#pragma once

#include "input/Recording.h"

#include <cstddef>
#include <string>
#include <vector>

/// Which channels a command line asks for, by their names.
struct ChannelWishes {
    std::vector<std::string> any;    ///< analog channels, or status ones where no analog one is called so
    std::vector<std::string> status; ///< status channels

    bool isEmpty() const { return any.empty() && status.empty(); }
};

/// 0-based channels in the order of the wishes, each once.
struct ChosenChannels {
    std::vector<std::size_t> analog;
    std::vector<std::size_t> status;
};

/// The channels that are wished for, as `findChannels` understands it; all where nothing is. Throws a Failure.
ChosenChannels chooseChannels(const Recording& recording, const ChannelWishes& wishes);

/// Whether some channel, analog or status, has a name or an identifier like the pattern.
bool hasChannelLike(const OrvComtradeIntake::Header& header, const std::string& pattern);
