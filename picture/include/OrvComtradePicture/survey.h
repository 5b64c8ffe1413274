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

/// What one walk over a recording tells of an analog channel.
struct AnalogSurvey {
    std::optional<Range> values; ///< nothing where no value is finite
    double greatestJump = 0.0;   ///< of the peaks of one cycle against those of the cycle before
};

/// What it tells of a status channel.
struct StatusSurvey {
    std::uint64_t changes = 0;
    std::vector<double> times; ///< of the first changes, in seconds; 17 at most
};

/// Where in the recording the samples of a time are.
struct BlockPlace {
    std::uint64_t first = 0; ///< 0-based sample
    Range times;             ///< seconds
};

/// What one walk over a recording tells. Its memory depends on the number of channels, and 24 bytes go to each block of
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

/// The part of the recording that a picture shows unless it is told another one: the disturbance.
///
/// Events are the trigger, changes of status channels (of those that change 16 times at most) and jumps: a peak of a
/// voltage or current differs from that of the cycle before by a tenth of the greatest voltage or current of all. The
/// trigger is the mark of the disturbance if another event is within five cycles of it; otherwise the greatest jump is,
/// otherwise the first change. The view begins four cycles before the first event of the 25 cycles before the mark and
/// ends six cycles behind the last event of the 50 cycles behind it. It is the whole recording where that is not much
/// longer (by a quarter), or where there is no event. Where a cycle has fewer than eight samples, eight samples count
/// as one.
///
/// `trigger` is in seconds; nothing where there is none within the recording.
Range disturbanceOf(const Survey& survey, std::optional<double> trigger);

} // namespace OrvComtradePicture
