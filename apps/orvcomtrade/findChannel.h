#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// What a channel may be called by, beside its number.
struct ChannelNames {
    std::string displayName;
    std::string identifier;
};

/// The names of every channel record, in order.
template <class Record> std::vector<ChannelNames> channelNames(const std::vector<Record>& records) {
    std::vector<ChannelNames> names;
    names.reserve(records.size());
    for (const Record& record : records) {
        names.push_back({record.name(), record.channelId});
    }
    return names;
}

/// Position of the channel that `wanted` means: a number from 1, else the display name, else the identifier. A Failure
/// that lists the channels when there is none or more than one; `kind` is "analog" or "status".
std::size_t findChannel(const std::vector<ChannelNames>& channels, const std::string& wanted, const char* kind);
