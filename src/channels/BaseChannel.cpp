#include "BaseChannel.h"

namespace OrvComtradeLib {

BaseChannel::BaseChannel(BaseChannelConfig& channelConfig, const std::vector<Sample>& recordedSamples)
    : samples(recordedSamples), config(channelConfig) {}

BaseChannel::~BaseChannel() = default;

std::string BaseChannel::name() const {
    return config.name();
}

} // namespace OrvComtradeLib
