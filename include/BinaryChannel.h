#pragma once

#include "BaseChannel.h"
#include "BinaryChannelConfig.h"
#include "OrvComtradeExport.h"

#include <vector>

namespace OrvComtradeLib {

/// View of one status channel: its states as step points.
class ORVCOMTRADE_API BinaryChannel : public BaseChannel {
public:
    /// A view named after `channelConfig`. Record and samples must outlive it.
    BinaryChannel(BinaryChannelConfig& channelConfig, const std::vector<Sample>& recordedSamples);
    ~BinaryChannel() override;

    /// 1 for true, 0 for false.
    float bool2Float(bool state) const;

    /// The state where the range begins (x = `start`), one point per change (x counted from `start`), and the state at
    /// its end (x = `end`; a negative `end` means the last sample). x is in seconds, y 0 or 1; `rate` is not used.
    /// Empty without samples, when all lie before `start`, when a sample lacks the bit, or when memory runs out. The
    /// bit plotted is `binaryConfig.index`, which is 0 in every view that the library makes.
    std::vector<Orv::PointF> getPoints(double start, double end, double rate) const override;

    /// Deliberately the view's own default record, never filled from the channel's: every view plots status channel 0.
    BinaryChannelConfig binaryConfig;
};

} // namespace OrvComtradeLib
