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

/// What times are counted from.
enum class TimeBase {
    Start,   ///< the first sample
    Trigger, ///< the trigger, where the recording has one
    Clock    ///< the recorder's clock, where the recording has its start
};

constexpr std::size_t kPhaseColours = 4; ///< phases A, B, C and neutral

/// A curve.
struct Trace {
    std::size_t channel = 0;   ///< 0-based analog channel
    std::string name;          ///< identifier, fit to be shown
    std::size_t colour = 0;    ///< 0 to 3: phases A, B, C and neutral; 4 and more: others, in turn
    std::vector<Point> points; ///< base units
};

/// Curves over one axis of values.
struct Lane {
    std::string title; ///< component that all of its channels are of, or empty
    std::string unit;  ///< without prefix
    OrvComtradeIntake::Side side = OrvComtradeIntake::Side::Recorded;
    Range values; ///< of the axis; has a length
    std::vector<Trace> traces;
};

/// A status channel as a bar.
struct Strip {
    std::size_t channel = 0; ///< 0-based status channel
    std::string name;
    std::vector<Span> spans;
};

/// What is to be drawn, however it is drawn. All texts are fit to be shown, all times are seconds from the first
/// sample.
struct Figure {
    std::string title;             ///< station and recorder
    std::string subtitle;          ///< when, rates, file
    Range view;                    ///< has a length
    std::optional<double> trigger; ///< within the view
    TimeBase base = TimeBase::Start;
    double zero = 0.0;                               ///< time of the axis' zero; of the clock: of the start
    std::optional<OrvComtradeIntake::Instant> start; ///< by the clock that the axis shows
    bool isUtc = false;                              ///< that clock: not the recorder's
    std::vector<Lane> lanes;
    std::vector<Strip> strips;
    std::vector<std::string> notes; ///< sentences: what is not drawn, and why
};

/// Where an axis of these values begins and ends: a little beside them, and as far below zero as above it for a wave.
/// Has a length whatever the values, which are finite and at most 1e300.
Range axisAround(std::optional<Range> values);

/// What of a recording a picture shows.
struct Wanted {
    std::optional<std::vector<std::size_t>> analog; ///< nothing: voltages and currents, those disturbed most
    std::optional<std::vector<std::size_t>> status; ///< nothing: those that change within the view
    std::optional<double> start; ///< seconds from the first sample; neither of the two: the disturbance
    std::optional<double> end;   ///< seconds from the first sample
    TimeBase base = TimeBase::Start;
    std::optional<int> utcOffset; ///< minutes by which the recorder's clock is ahead of UTC, if that is to be shown
    std::string name;             ///< of the recording, such as its file name
    std::size_t columns = 800;    ///< of the drawing: what is narrower is not drawn apart
};

/// There is nothing to draw. `what` says why, in a sentence without its full stop.
class NothingToDraw : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads what the picture needs: one walk over the recording, another one over the part that is shown. Memory: a block
/// of samples, and what the columns take. Throws NothingToDraw, `std::out_of_range` for a channel that does not exist,
/// and what the source throws.
Figure figureOf(const Source& source, const Wanted& wanted);

} // namespace OrvComtradePicture
