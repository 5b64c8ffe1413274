#include "input/chooseChannels.h"

#include "input/channelNames.h"
#include "input/findChannel.h"
#include "input/namePattern.h"

#include <algorithm>
#include <numeric>

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::StatusInfo;

namespace {

std::vector<std::size_t> firstOnes(std::size_t count) {
    std::vector<std::size_t> positions(count);
    std::iota(positions.begin(), positions.end(), std::size_t{0});
    return positions;
}

} // namespace

ChosenChannels chooseChannels(const Recording& recording, const ChannelWishes& wishes) {
    if (wishes.isEmpty()) {
        return {firstOnes(recording.header.analog.size()), firstOnes(recording.header.status.size())};
    }
    ChosenChannels chosen;
    for (const Channel& channel :
         findChannels(recording, wishes.status, ChannelKind::Status, findChannels(recording, wishes.any))) {
        (channel.isStatus ? chosen.status : chosen.analog).push_back(channel.position);
    }
    return chosen;
}

bool hasChannelLike(const Header& header, const std::string& pattern) {
    return std::any_of(header.analog.begin(), header.analog.end(),
                       [&pattern](const AnalogInfo& channel) {
                           return isLike(channel.id, pattern) || isLike(analogName(channel, channel.unit), pattern);
                       }) ||
           std::any_of(header.status.begin(), header.status.end(), [&pattern](const StatusInfo& channel) {
               return isLike(channel.id, pattern) || isLike(statusName(channel), pattern);
           });
}
