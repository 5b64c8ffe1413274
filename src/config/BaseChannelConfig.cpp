#include "BaseChannelConfig.h"

#include "StringHelper.h"
#include "channelLine.h"

namespace OrvComtradeLib {

BaseChannelConfig::BaseChannelConfig() = default;

BaseChannelConfig::~BaseChannelConfig() = default;

std::string BaseChannelConfig::name() const {
    // Deliberate: the phase is no part of this name.
    return StringHelper::join(',', {channelId, circuitComponent});
}

std::string BaseChannelConfig::channelInfo() const {
    const auto number = static_cast<int>(static_cast<unsigned int>(index) + 1U); // wraps where a host sets the largest
    return StringHelper::join(',', {std::to_string(number), channelId, phase, circuitComponent});
}

void BaseChannelConfig::load(int position, const std::vector<std::string>& fields, int /*revisionYear*/) {
    loadFields(*this, position, viewsOf(fields));
}

void loadFields(BaseChannelConfig& record, int position, const FieldViews& fields) {
    record.index = position;
    record.channelId = fields.at(1);
}

} // namespace OrvComtradeLib
