#pragma once

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Header.h>

#include <cstddef>
#include <vector>

/// Brings the values of channels with a skew to the times of the samples, by straight lines between them. Such a
/// channel has no value for the first sample. Skews below 0, and those not shorter than the step between two samples,
/// are left alone: no device has them.
class SkewAlignment {
public:
    explicit SkewAlignment(const OrvComtradeIntake::Header& header);

    /// The block of all analog channels that follows the one before; valid until the next call.
    const OrvComtradeIntake::Columns& aligned(const OrvComtradeIntake::Columns& block);

private:
    void _align(std::size_t channel, const OrvComtradeIntake::Columns& block);

    std::vector<double> _skews; ///< seconds, by channel
    OrvComtradeIntake::Columns _aligned;
    std::vector<double> _lastValues; ///< of the block before
    double _lastTime;
};
