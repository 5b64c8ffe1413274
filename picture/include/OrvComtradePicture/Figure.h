#pragma once

#include <OrvComtradeIntake/Instant.h>
#include <OrvComtradePicture/Envelope.h>
#include <OrvComtradePicture/Range.h>
#include <OrvComtradePicture/Source.h>
#include <OrvComtradePicture/StateRaster.h>

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace OrvComtradePicture {

/// What the axis counts times from. Where the recording lacks it, times are counted from the first sample, and a note
/// says so.
enum class TimeBase {
    Start,   ///< the first sample
    Trigger, ///< the trigger
    Clock    ///< the clock: dates and times of day
};

constexpr std::size_t kPhaseColours = 4; ///< phases A, B, C and neutral

/// A curve.
struct Trace {
    std::size_t channel = 0;   ///< 0-based analog channel
    std::string name;          ///< identifier, in characters that can be shown
    std::size_t colour = 0;    ///< 0 to 3: phases A, B, C and neutral; from 4 on: other channels in turn
    std::vector<Point> points; ///< base units
};

/// Curves over one axis of values.
struct Lane {
    std::string title; ///< circuit component, if all of its channels have the same one; otherwise empty
    std::string unit;  ///< without prefix
    OrvComtradeIntake::Side side = OrvComtradeIntake::Side::Recorded;
    Range values; ///< ends of the axis; their distance is not 0
    std::vector<Trace> traces;
};

/// A status channel as a bar.
struct Strip {
    std::size_t channel = 0; ///< 0-based status channel
    std::string name;
    std::vector<Span> spans;
};

/// What is to be drawn, as SVG or as text. All texts are in characters that can be shown. All times are seconds from
/// the first sample.
struct Figure {
    std::string title;             ///< station and recorder
    std::string subtitle;          ///< date, rates, file
    Range view;                    ///< times that are shown; its length is not 0
    std::optional<double> trigger; ///< nothing if it is outside the view
    TimeBase base = TimeBase::Start;
    double zero = 0.0;                               ///< time at which the axis has its 0
    std::optional<OrvComtradeIntake::Instant> start; ///< of the recording, by the clock that the axis shows
    bool isUtc = false;                              ///< whether that clock is UTC; otherwise it is the recorder's
    std::vector<Lane> lanes;
    std::vector<Strip> strips;
    std::vector<std::string> notes; ///< sentences: what is not drawn, and why
};

/// Ends of an axis for these values: a little beyond them, and for a wave as far below zero as above it. The ends are
/// never equal. Values must be finite and between -1e300 and 1e300.
Range axisAround(std::optional<Range> values);

/// What a picture shows of a recording.
struct Wanted {
    std::optional<std::vector<std::size_t>> analog; ///< 0-based channels; nothing: the voltages and currents that the
                                                    ///< disturbance changed most
    std::optional<std::vector<std::size_t>> status; ///< 0-based channels; nothing: those that change within the view
    std::optional<double> start; ///< seconds from the first sample; without `start` and `end`: the disturbance
    std::optional<double> end;   ///< seconds from the first sample
    TimeBase base = TimeBase::Start;
    std::optional<int> utcOffset; ///< shows UTC for TimeBase::Clock: minutes by which the recorder's clock is ahead
    std::string name;             ///< of the recording, such as its file name
    std::size_t columns = 800;    ///< of the drawing (see `columnsOf`): details narrower than one are merged
};

/// There is nothing to draw. `what` gives the reason in a sentence without a full stop.
class NothingToDraw : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads what the picture needs. It walks over the recording once, and then over the part that is shown. Memory holds a
/// block of samples and the columns of the drawing. Throws NothingToDraw, `std::out_of_range` for a channel that does
/// not exist, and what the source throws.
Figure figureOf(const Source& source, const Wanted& wanted);

} // namespace OrvComtradePicture
