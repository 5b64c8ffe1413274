#pragma once

#include "input/Recording.h"

#include <cstddef>
#include <string>
#include <vector>

/// A channel of a recording.
struct Channel {
    bool isStatus = false;
    std::size_t position = 0; ///< 0-based, among those of its kind

    bool operator==(const Channel& other) const { return isStatus == other.isStatus && position == other.position; }
};

/// Which channels a word may mean.
enum class ChannelKind {
    Any,   ///< analog ones before status ones; a number is that of an analog one
    Status ///< status channels alone
};

/// The channels that `wanted` means, the first of these that fits: a number from 1; a display name (with the recorded
/// unit, or with that of the values; with its empty parts, as the library has it, or without); an identifier; these
/// names in letters of another case; a pattern of them with * and ?; a list of such words with commas between. A
/// Failure that lists the channels when there is none, or more than one of the same name.
std::vector<Channel> findChannels(const Recording& recording, const std::string& wanted,
                                  ChannelKind kind = ChannelKind::Any);

/// The same for several words, without repetition; those in `all` stay in front.
std::vector<Channel> findChannels(const Recording& recording, const std::vector<std::string>& wanted,
                                  ChannelKind kind = ChannelKind::Any, std::vector<Channel> all = {});
