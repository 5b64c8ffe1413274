#pragma once

/// The floor of each operation: the least work that yields the same result, for files known to be well-formed. Nothing
/// is checked that a reader of strange files would have to check.

#include "Cfg.h"
#include "Sample.h"

#include <OrvCommon.h>

#include <cstddef>
#include <string>
#include <vector>

namespace orvbench {
namespace floors {

/// Laid out as the library's sample, with everything inline.
struct Sample {
    explicit Sample(const OrvComtradeLib::Cfg& configuration) : cfg(configuration) {}

    unsigned long index = 0;
    double time = 0.0;
    std::vector<double> analogValues;
    std::vector<bool> binaryValues;
    const OrvComtradeLib::Cfg& cfg;
};
static_assert(sizeof(Sample) == sizeof(OrvComtradeLib::Sample), "the floor must build the same structures");

/// Whether the library's advice on huge pages is given for the samples.
enum class Pages { Usual, Huge };

/// The samples of a data file.
std::vector<Sample> loadSamples(const OrvComtradeLib::Cfg& cfg, const std::string& path, Pages pages);

/// The numbers of the channel lines of a configuration file with `analogs` and `statuses` of them: seven of each
/// analog channel (a, b, skew, min, max, primary, secondary), one of each status channel.
std::vector<double> readNumbers(const std::string& path, std::size_t analogs, std::size_t statuses);

/// Interpolated points at `start` + k / `rate` below `end`.
std::vector<Orv::PointF> analogPoints(const std::vector<OrvComtradeLib::Sample>& samples, std::size_t channel,
                                      double skew, double start, double end, double rate);

/// The opening point, one point per change and the closing point.
std::vector<Orv::PointF> statusPoints(const std::vector<OrvComtradeLib::Sample>& samples, std::size_t bit, double start,
                                      double end);

} // namespace floors
} // namespace orvbench
