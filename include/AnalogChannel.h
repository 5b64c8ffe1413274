#pragma once

#include "AnalogChannelConfig.h"
#include "BaseChannel.h"
#include "OrvComtradeExport.h"

#include <string>
#include <vector>

namespace OrvComtradeLib {

/// View of one analog channel: values by linear interpolation between samples, and evenly spaced plot points. Values
/// are secondary ones in base units (V, A), as AnalogChannelConfig::GetRealValue gives them.
class ORVCOMTRADE_API AnalogChannel : public BaseChannel {
public:
    /// A view of the channel with the number `channelConfig.index`. The skew of the record is copied: a later change of
    /// it has no effect on the view. Record and samples must outlive the view.
    AnalogChannel(AnalogChannelConfig& channelConfig, const std::vector<Sample>& recordedSamples);
    ~AnalogChannel() override;

    /// Phase as written in the `.cfg`; may be empty.
    std::string phase() const;

    /// Unit as written in the `.cfg`; values are in its base unit. Throws `std::bad_cast` if `config` is not an analog
    /// record.
    std::string unit() const;

    /// Whether the unit is exactly "A", "a" or the Cyrillic small letter a (kA and mA do not count as currents). Throws
    /// as unit does.
    bool isCurrent() const;

    /// The straight line through (x1, y1) and (x2, y2) at x; not finite when x1 equals x2.
    double getInterpolationValue(double x1, double y1, double x2, double y2, double x) const;

    /// The straight line through samples `index` (0-based) and `index` + 1 at `time` (seconds), which is not corrected
    /// for skew; 0.0 when there are no such samples.
    double getInterpolationValue(unsigned int index, double time) const;

    /// Value at `time` (seconds), corrected for skew; 0.0 before time 0, after the last sample and without samples. The
    /// search starts at sample `index`, never moves backwards, and sets `index` to where it ended: begin with 0.
    double getValue(double time, unsigned int& index) const;

    /// Points per second that give about 1000 points over `duration` seconds; infinite for 0, negative for less.
    double defaultSampleRate(double duration) const;

    /// Values at `start` + k / `rate` for every k below (`end` - `start`) * `rate`, as getValue gives them; a negative
    /// `end` (seconds) means the last sample, a negative `rate` (points per second) defaultSampleRate. There is no
    /// decimation. The list is empty without samples, for a range or rate that gives no points, and when memory runs
    /// out.
    std::vector<Orv::PointF> getPoints(double start, double end, double rate) const override;

    double skew; ///< seconds by which the values of the channel are later than the times of the samples
};

} // namespace OrvComtradeLib
