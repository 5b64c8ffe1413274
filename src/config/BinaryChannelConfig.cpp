#include "BinaryChannelConfig.h"

#include "StringHelper.h"

namespace OrvComtradeLib {

BinaryChannelConfig::BinaryChannelConfig() = default;

BinaryChannelConfig::BinaryChannelConfig(int position, const std::string& line, int revisionYear) {
    BinaryChannelConfig::load(position, StringHelper::split(line, ','), revisionYear);
}

BinaryChannelConfig::~BinaryChannelConfig() = default;

std::string BinaryChannelConfig::channelInfo() const {
    // Deliberate: the 0-based position once more, and not the normal state.
    return StringHelper::join(',', {BaseChannelConfig::channelInfo(), std::to_string(index)});
}

void BinaryChannelConfig::load(int position, const std::vector<std::string>& fields, int revisionYear) {
    BaseChannelConfig::load(position, fields, revisionYear);
    loadExtValues(fields, revisionYear);
}

void BinaryChannelConfig::loadExtValues(const std::vector<std::string>& fields, int revisionYear) {
    if (revisionYear > 1998) {
        phase = fields.size() > 2 ? fields[2] : std::string();
        circuitComponent = fields.size() > 3 ? fields[3] : std::string();
        normalState = fields.size() > 4 ? std::stoi(fields[4]) : 0;
        return;
    }
    normalState = std::stoi(fields.at(2));
    circuitComponent.clear();
    phase.clear();
}

} // namespace OrvComtradeLib
