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
    Any,   ///< analog channels before status channels; a number is that of an analog channel
    Status ///< only status channels
};

/// The channels that `wanted` means. These are tried in order: a number from 1 on; a display name (with the recorded
/// unit or that of the values; with its empty parts, as in the library, or without); an identifier; these names in
/// upper or lower case; a pattern of them with * and ?; a list of such words separated by commas. Throws a Failure that
/// lists the channels if none fits, or if several have the same name.
std::vector<Channel> findChannels(const Recording& recording, const std::string& wanted,
                                  ChannelKind kind = ChannelKind::Any);

/// The same for several words. Channels are added to `all`, each only once.
std::vector<Channel> findChannels(const Recording& recording, const std::vector<std::string>& wanted,
                                  ChannelKind kind = ChannelKind::Any, std::vector<Channel> all = {});
