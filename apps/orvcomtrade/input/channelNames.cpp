#include "input/channelNames.h"

#include <fmt/format.h>

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::StatusInfo;

std::string analogName(const AnalogInfo& channel, const std::string& unit) {
    return fmt::format("{},{},{},{}", channel.id, channel.phase, channel.component, unit);
}

std::string statusName(const StatusInfo& channel) {
    return fmt::format("{},{}", channel.id, channel.component);
}
