#pragma once

#include "BaseChannelConfig.h"
#include "OrvComtradeExport.h"
#include "Sample.h"

#include <OrvCommon.h>

#include <string>
#include <vector>

namespace OrvComtradeLib {

/// View of one channel of a recording: its configuration record and the samples. It owns neither; both must outlive it.
/// Views have no mutable state, so several threads may query them at the same time while nothing loads.
class ORVCOMTRADE_API BaseChannel {
public:
    /// Keeps only the two references.
    BaseChannel(BaseChannelConfig& channelConfig, const std::vector<Sample>& recordedSamples);
    virtual ~BaseChannel();

    /// Plot points from `start` to `end` (seconds; a negative `end` means the last sample), `rate` of them per second.
    /// The caller owns the list. It is empty if there is nothing to plot or memory runs out.
    virtual std::vector<Orv::PointF> getPoints(double start, double end, double rate) const = 0;

    /// Display name of the channel, as its configuration record gives it.
    std::string name() const;

    const std::vector<Sample>& samples; ///< samples of the recording, not owned
    BaseChannelConfig& config;          ///< configuration record of the channel, not owned
};

} // namespace OrvComtradeLib
