#include "BinaryChannelConfig.h"

#include "../util/splitInto.h"
#include "StringHelper.h"
#include "channelLine.h"

#include <cstddef>

namespace OrvComtradeLib {

namespace {

/// A field that the line lacks is empty.
void assignField(std::string& text, const std::vector<std::string>& fields, std::size_t number) {
    if (number < fields.size()) {
        text = fields[number];
    } else {
        text.clear();
    }
}

} // namespace

BinaryChannelConfig::BinaryChannelConfig() = default;

BinaryChannelConfig::BinaryChannelConfig(int position, const std::string& line, int revisionYear) {
    BinaryChannelConfig::load(position, firstFields(line, kStatusFields), revisionYear);
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
        assignField(phase, fields, 2);
        assignField(circuitComponent, fields, 3);
        normalState = fields.size() > 4 ? std::stoi(fields[4]) : 0;
        return;
    }
    normalState = std::stoi(fields.at(2));
    circuitComponent.clear();
    phase.clear();
}

} // namespace OrvComtradeLib
