#pragma once

#include "AnalogChannelConfig.h"
#include "BaseChannel.h"
#include "OrvComtradeExport.h"

#include <string>
#include <vector>

namespace OrvComtradeLib {

/// View of one analog channel: values by linear interpolation between samples, and evenly spaced plot points.
class ORVCOMTRADE_API AnalogChannel : public BaseChannel {
public:
    /// Copies the record's skew; a later change of it does not reach the view.
    AnalogChannel(AnalogChannelConfig& channelConfig, const std::vector<Sample>& recordedSamples);
    ~AnalogChannel() override;

    std::string phase() const;

    /// Unit as written in the `.cfg`; values are in its base unit. Throws `std::bad_cast` if `config` is no analog one.
    std::string unit() const;

    /// Whether the unit is exactly "A", "a" or the Cyrillic small letter a (so kA and mA are no currents).
    bool isCurrent() const;

    /// The straight line through (x1, y1) and (x2, y2) at x; not finite when x1 equals x2.
    double getInterpolationValue(double x1, double y1, double x2, double y2, double x) const;

    /// The straight line through samples `index` and `index` + 1 at `time`, which is not corrected for skew; 0.0 when
    /// there are no such samples.
    double getInterpolationValue(unsigned int index, double time) const;

    /// Value at `time` (seconds), corrected for skew; 0.0 before time 0 and after the last sample. The search starts
    /// at sample `index`, never moves backwards, and leaves there where it ended: begin with 0.
    double getValue(double time, unsigned int& index) const;

    /// Points per second that give about 1000 points over `duration` seconds.
    double defaultSampleRate(double duration) const;

    /// Values at `start` + k / `rate` for every k below (`end` - `start`) * `rate`; a negative `rate` means
    /// defaultSampleRate. There is no decimation. Empty without samples, for a range or rate that gives no points, and
    /// when memory runs out.
    std::vector<Orv::PointF> getPoints(double start, double end, double rate) const override;

    double skew; ///< seconds
};

} // namespace OrvComtradeLib
