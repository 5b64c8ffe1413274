#include "input/findChannel.h"

#include "input/channelNames.h"
#include "input/namePattern.h"
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

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::StatusInfo;

namespace {

bool isPattern(const std::string& text) {
    return text.find_first_of("*?") != std::string::npos;
}

/// A channel, and what it may be called beside its number: display names before the identifier.
struct Named {
    Channel channel;
    std::vector<std::string> displayNames;
    std::string identifier;
};

std::vector<Named> channelsOf(const Recording& recording, ChannelKind kind) {
    std::vector<Named> channels;
    if (kind == ChannelKind::Any) {
        for (std::size_t i = 0; i < recording.header.analog.size(); ++i) {
            const AnalogInfo& info = recording.header.analog[i];
            const std::string all = fmt::format("{},{},{},{}", info.id, info.phase, info.component, info.unit);
            channels.push_back({{false, i}, {analogName(info, info.unit), recording.analog.at(i).name, all}, info.id});
        }
    }
    for (std::size_t i = 0; i < recording.header.status.size(); ++i) {
        const StatusInfo& info = recording.header.status[i];
        channels.push_back({{true, i}, {statusName(info), info.id + ',' + info.component}, info.id});
    }
    return channels;
}

using IsMeant = std::function<bool(const std::string& name)>;

std::vector<Named> havingDisplayName(const std::vector<Named>& channels, const IsMeant& isMeant) {
    std::vector<Named> found;
    std::copy_if(channels.begin(), channels.end(), std::back_inserter(found), [&isMeant](const Named& channel) {
        return std::any_of(channel.displayNames.begin(), channel.displayNames.end(), isMeant);
    });
    return found;
}

std::vector<Named> havingIdentifier(const std::vector<Named>& channels, const IsMeant& isMeant) {
    std::vector<Named> found;
    std::copy_if(channels.begin(), channels.end(), std::back_inserter(found),
                 [&isMeant](const Named& channel) { return isMeant(channel.identifier); });
    return found;
}

std::string listing(const std::vector<Named>& channels) {
    const auto forEachRow = [&](const std::function<void(const Table::Row&)>& onRow) {
        for (const Named& named : channels) {
            onRow({named.channel.isStatus ? "status" : "analog", fmt::format("{}", named.channel.position + 1),
                   printable(clipped(named.displayNames.front()))});
        }
    };
    std::string text;
    const Table table({{"Kind", Table::Align::Left}, {"No", Table::Align::Right}, {"Name", Table::Align::Left}});
    writeTable(table, forEachRow, [&text](std::string_view line) { text += line; });
    text.pop_back(); // the line feed at the end
    return text;
}

std::string quoted(const std::string& wanted) {
    return '"' + printable(wanted) + '"';
}

/// Analog ones where there are both: nobody means a status channel that is called as an analog one.
std::vector<Named> oneKind(std::vector<Named> found) {
    if (!found.empty() && !found.front().channel.isStatus) {
        found.erase(
            std::remove_if(found.begin(), found.end(), [](const Named& named) { return named.channel.isStatus; }),
            found.end());
    }
    return found;
}

std::optional<Channel> byNumber(const Recording& recording, const std::string& wanted, ChannelKind kind) {
    std::size_t number = 0;
    const char* const end = wanted.data() + wanted.size();
    const auto [stop, error] = std::from_chars(wanted.data(), end, number);
    const bool isStatus = kind == ChannelKind::Status;
    const std::size_t count = isStatus ? recording.header.status.size() : recording.header.analog.size();
    if (error != std::errc() || stop != end || number < 1 || number > count) {
        return std::nullopt;
    }
    return Channel{isStatus, number - 1};
}

/// Those of a word that is no list.
std::vector<Channel> byWord(const Recording& recording, const std::vector<Named>& channels, const std::string& wanted,
                            ChannelKind kind) {
    if (const auto channel = byNumber(recording, wanted, kind)) {
        return {*channel};
    }
    const std::u32string word = foldedCase(wanted);
    const IsMeant isSame = [&wanted](const std::string& name) { return name == wanted; };
    const IsMeant isSameInAnyCase = [&word](const std::string& name) { return foldedCase(name) == word; };
    for (const IsMeant& isMeant : {isSame, isSameInAnyCase}) {
        for (const auto having : {havingDisplayName, havingIdentifier}) {
            const std::vector<Named> found = oneKind(having(channels, isMeant));
            if (found.size() > 1) {
                throw Failure(kWrongUsage,
                              fmt::format("{} {} channels are called {}; take one by its number\n{}", found.size(),
                                          found.front().channel.isStatus ? "status" : "analog", quoted(wanted),
                                          listing(found)));
            }
            if (found.size() == 1) {
                return {found.front().channel};
            }
        }
    }
    std::vector<Channel> all;
    for (const Named& named : channels) {
        if (isPattern(wanted) && (isLike(named.identifier, wanted) || isLike(named.displayNames.front(), wanted))) {
            all.push_back(named.channel);
        }
    }
    return all;
}

/// What a list means.
struct ByList {
    std::vector<Channel> channels;
    std::vector<std::string> unknown; ///< words of it that mean none
};

ByList byList(const Recording& recording, const std::vector<Named>& channels, const std::string& wanted,
              ChannelKind kind) {
    ByList list;
    for (std::size_t begin = 0; begin <= wanted.size();) {
        const std::size_t end = std::min(wanted.find(',', begin), wanted.size());
        const std::string word = wanted.substr(begin, end - begin);
        const std::vector<Channel> some = byWord(recording, channels, word, kind);
        list.channels.insert(list.channels.end(), some.begin(), some.end());
        if (some.empty()) {
            list.unknown.push_back(word);
        }
        begin = end + 1;
    }
    return list;
}

/// The word that is wrong in a list, or the whole: a list is only taken for one where the rest of it means something.
std::string shownUnknown(const std::string& wanted, const ByList& list) {
    if (list.channels.empty() || list.unknown.size() != 1 || list.unknown.front().empty()) {
        return quoted(wanted);
    }
    return fmt::format("{} (in {})", quoted(list.unknown.front()), quoted(wanted));
}

} // namespace

std::vector<Channel> findChannels(const Recording& recording, const std::string& wanted, ChannelKind kind) {
    const std::vector<Named> channels = channelsOf(recording, kind);
    std::vector<Channel> found = byWord(recording, channels, wanted, kind);
    if (!found.empty()) {
        return found;
    }
    ByList list;
    if (wanted.find(',') != std::string::npos) {
        list = byList(recording, channels, wanted, kind);
    }
    if (!list.channels.empty() && list.unknown.empty()) {
        return list.channels;
    }
    const char* const what = kind == ChannelKind::Status ? "status channel" : "channel";
    if (channels.empty()) {
        throw Failure(kWrongUsage,
                      fmt::format("there is no {} {}: the recording has none at all", what, quoted(wanted)));
    }
    throw Failure(kWrongUsage, fmt::format("there is no {} {}; the recording has\n{}", what, shownUnknown(wanted, list),
                                           listing(channels)));
}

std::vector<Channel> findChannels(const Recording& recording, const std::vector<std::string>& wanted, ChannelKind kind,
                                  std::vector<Channel> all) {
    for (const std::string& word : wanted) {
        for (const Channel& channel : findChannels(recording, word, kind)) {
            if (std::find(all.begin(), all.end(), channel) == all.end()) {
                all.push_back(channel);
            }
        }
    }
    return all;
}
