#pragma once

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Header.h>

#include <cstddef>
#include <vector>

/// Brings the values of channels with a skew to the times of the samples, by straight lines between them. The first one
/// has none then. Skews below 0, and those as long as the step between two samples, stay: no device has them.
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
