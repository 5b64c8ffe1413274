#include "input/channelNames.h"

#include <initializer_list>

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::StatusInfo;

namespace {

std::string joinedParts(std::initializer_list<const std::string*> parts) {
    std::string name;
    for (const std::string* const part : parts) {
        name += name.empty() || part->empty() ? *part : ',' + *part;
    }
    return name;
}

} // namespace

std::string analogName(const AnalogInfo& channel, const std::string& unit) {
    return joinedParts({&channel.id, &channel.phase, &channel.component, &unit});
}

std::string statusName(const StatusInfo& channel) {
    return joinedParts({&channel.id, &channel.component});
}
