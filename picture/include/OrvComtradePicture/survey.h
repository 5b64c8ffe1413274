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

/// What a survey finds about an analog channel.
struct AnalogSurvey {
    std::optional<Range> values; ///< lowest and highest value, base units; nothing if no value is finite
    double greatestJump = 0.0;   ///< greatest change of a peak from one cycle to the next, base units
};

/// What a survey finds about a status channel.
struct StatusSurvey {
    std::uint64_t changes = 0;
    std::vector<double> times; ///< seconds, of the first 17 changes at most
};

/// The times that a block of samples covers.
struct BlockPlace {
    std::uint64_t first = 0; ///< 0-based first sample
    Range times;             ///< seconds
};

/// What one walk over a recording finds. Its memory depends on the number of channels; each block of samples adds 24
/// bytes.
struct Survey {
    /// Jumps of peaks over time, of all voltages or of all currents.
    struct Jumps {
        double step = 0.0;         ///< seconds
        std::vector<double> jumps; ///< the greatest jump in each step of time from `times.from` on, base units
        double peak = 0.0;         ///< the greatest magnitude of all these channels, base units
    };

    std::uint64_t samples = 0;
    Range times;          ///< of the samples, in seconds
    double cycle = 0.0;   ///< seconds, by the line frequency; 0.02 if no usable one is recorded
    double spacing = 0.0; ///< mean time between samples, seconds
    std::vector<AnalogSurvey> analog;
    std::vector<StatusSurvey> status;
    std::array<Jumps, 2> jumps; ///< of voltages, of currents
    std::vector<BlockPlace> blocks;
};

/// Walks over the recording once, in blocks. Throws what the source throws.
Survey surveyOf(const Source& source);

/// The part of the recording that a picture shows by default: the disturbance. In seconds.
///
/// Events are of two kinds. One is a change of a status channel that changes 16 times at most. The other is a jump: the
/// peak of a voltage (or current) differs from that of the cycle before by more than a tenth of the greatest voltage
/// (or current) of the recording.
///
/// The mark is the trigger if an event is within five cycles of it, otherwise the greatest jump, otherwise the first
/// change. The view begins four cycles before the first event in the 15 cycles before the mark. It ends six cycles
/// after the last event in the 30 cycles after the mark.
///
/// Without events the view is 20 cycles, of which five are before the trigger. It is the whole recording if there is no
/// trigger either, if the trigger is within the first cycle, or if the view would be four fifths of the recording or
/// more. If a cycle has fewer than eight samples, eight samples count as a cycle.
///
/// `trigger` is in seconds; pass nothing if it is outside the recording.
Range disturbanceOf(const Survey& survey, std::optional<double> trigger);

} // namespace OrvComtradePicture
