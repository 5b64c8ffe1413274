#pragma once

#include <OrvComtradePicture/Range.h>
#include <OrvComtradePicture/Source.h>
#include <OrvComtradePicture/families.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace OrvComtradePicture {

/// What one walk over a recording finds about an analog channel.
struct AnalogSurvey {
    std::optional<Range> values; ///< nothing where no value is finite
    double greatestJump = 0.0;   ///< of the peaks of one cycle against those of the cycle before
};

/// What it finds about a status channel.
struct StatusSurvey {
    std::uint64_t changes = 0;
    std::vector<double> times; ///< of the first changes, in seconds; 17 at most
};

/// Where in the recording the samples of a time are.
struct BlockPlace {
    std::uint64_t first = 0; ///< 0-based sample
    Range times;             ///< seconds
};

/// What one walk over a recording finds. Its memory depends on the number of channels, and 24 bytes go to each block of
/// samples.
struct Survey {
    /// Greatest jump of a kind of channels within a step of time, and the greatest value: currents against currents.
    struct Jumps {
        double step = 0.0;         ///< seconds
        std::vector<double> jumps; ///< one per step, from `times.from` on
        double peak = 0.0;
    };

    std::uint64_t samples = 0;
    Range times;          ///< of the samples, in seconds
    double cycle = 0.0;   ///< of the line frequency; 20 ms where that is not recorded
    double spacing = 0.0; ///< mean time from sample to sample
    std::vector<AnalogSurvey> analog;
    std::vector<StatusSurvey> status;
    std::array<Jumps, 2> jumps; ///< of voltages, of currents
    std::vector<BlockPlace> blocks;
};

/// Walks over the recording once, in blocks.
Survey surveyOf(const Source& source);

/// The part of the recording that a picture shows unless another one is asked for: the disturbance.
///
/// Its events are changes of status channels (of those that change 16 times at most) and jumps: a peak of a voltage or
/// current that differs from that of the cycle before by a tenth of the greatest voltage or current of all. Its mark is
/// the trigger if an event is within five cycles of it, otherwise the greatest jump, otherwise the first change. The
/// view begins four cycles before the first event of the 15 cycles before the mark, and ends six cycles behind the last
/// event of the 30 cycles behind it. Without any event it is 20 cycles around the trigger, or, where that is at the
/// beginning or there is none, the whole recording; so it is where the view would be almost that (four fifths). Where a
/// cycle has fewer than eight samples, eight samples count as one.
///
/// `trigger` is in seconds; nothing where there is none within the recording.
Range disturbanceOf(const Survey& survey, std::optional<double> trigger);

} // namespace OrvComtradePicture
