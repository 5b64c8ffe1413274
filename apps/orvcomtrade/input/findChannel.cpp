#include "input/findChannel.h"

#include "input/channelNames.h"
#include "output/Failure.h"
#include "output/Table.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

using OrvComtradeIntake::StatusInfo;

namespace {

/// What a channel may be called by, beside its number.
struct ChannelNames {
    std::string displayName;
    std::string nameOfValues; ///< display name with another unit, perhaps
    std::string identifier;
};

std::optional<std::size_t> positionByNumber(std::size_t channelCount, const std::string& wanted) {
    std::size_t number = 0;
    const char* const end = wanted.data() + wanted.size();
    const auto [stop, error] = std::from_chars(wanted.data(), end, number);
    if (error != std::errc() || stop != end || number < 1 || number > channelCount) {
        return std::nullopt;
    }
    return number - 1;
}

std::vector<std::size_t> positionsByName(const std::vector<ChannelNames>& channels, std::string ChannelNames::*name,
                                         const std::string& wanted) {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        if (channels[i].*name == wanted) {
            found.push_back(i);
        }
    }
    return found;
}

std::string listing(const std::vector<ChannelNames>& channels, const std::vector<std::size_t>& positions) {
    const auto forEachRow = [&](const std::function<void(const Table::Row&)>& onRow) {
        for (const std::size_t position : positions) {
            onRow({fmt::format("{}", position + 1), printable(clipped(channels[position].displayName))});
        }
    };
    std::string text;
    writeTable(Table({{"No", Table::Align::Right}, {"Name", Table::Align::Left}}), forEachRow,
               [&text](std::string_view line) { text += line; });
    text.pop_back(); // the line feed at the end
    return text;
}

std::vector<std::size_t> allPositions(const std::vector<ChannelNames>& channels) {
    std::vector<std::size_t> positions(channels.size());
    std::size_t next = 0;
    std::generate(positions.begin(), positions.end(), [&next] { return next++; });
    return positions;
}

/// The position that `wanted` means. `kind` is "analog" or "status".
std::size_t findChannel(const std::vector<ChannelNames>& channels, const std::string& wanted, const char* kind) {
    if (const auto position = positionByNumber(channels.size(), wanted)) {
        return *position;
    }
    std::vector<std::size_t> found;
    for (const auto name : {&ChannelNames::displayName, &ChannelNames::nameOfValues, &ChannelNames::identifier}) {
        if (found.empty()) {
            found = positionsByName(channels, name, wanted);
        }
    }
    if (found.size() == 1) {
        return found.front();
    }
    const std::string quoted = '"' + printable(wanted) + '"';
    if (channels.empty()) {
        throw Failure(kWrongUsage,
                      fmt::format("there is no {} channel {}: the recording has none at all", kind, quoted));
    }
    if (found.empty()) {
        throw Failure(kWrongUsage, fmt::format("there is no {} channel {}; the recording has\n{}", kind, quoted,
                                               listing(channels, allPositions(channels))));
    }
    throw Failure(kWrongUsage, fmt::format("{} {} channels are called {}; take one by its number\n{}", found.size(),
                                           kind, quoted, listing(channels, found)));
}

} // namespace

std::size_t findAnalogChannel(const Recording& recording, const std::string& wanted) {
    std::vector<ChannelNames> names;
    for (std::size_t i = 0; i < recording.header.analog.size(); ++i) {
        const auto& channel = recording.header.analog[i];
        names.push_back({analogName(channel, channel.unit), recording.analog.at(i).name, channel.id});
    }
    return findChannel(names, wanted, "analog");
}

std::size_t findStatusChannel(const Recording& recording, const std::string& wanted) {
    std::vector<ChannelNames> names;
    for (const StatusInfo& channel : recording.header.status) {
        names.push_back({statusName(channel), statusName(channel), channel.id});
    }
    return findChannel(names, wanted, "status");
}
