#include "commands/plot.h"

#include "commands/commonFlags.h"
#include "commands/loadEntry.h"
#include "commands/outputTarget.h"
#include "commands/writtenFiles.h"
#include "input/channelNames.h"
#include "input/findChannel.h"
#include "input/recordingName.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/StreamFile.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/terminal.h"
#include "sandbox/Rasterizer.h"

#include <OrvComtradePicture/Figure.h>
#include <OrvComtradePicture/svg.h>
#include <OrvComtradePicture/text.h>
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

using OrvComtradePicture::Figure;
using OrvComtradePicture::Source;
using OrvComtradePicture::SvgStyle;
using OrvComtradePicture::TextStyle;
using OrvComtradePicture::Theme;
using OrvComtradePicture::Wanted;

namespace {

enum class Format { Svg, Png, Text };

const std::map<std::string, Format> kPictureFormats = {
    {"svg", Format::Svg}, {"png", Format::Png}, {"text", Format::Text}};
const std::map<std::string, Theme> kThemes = {{"light", Theme::Light}, {"dark", Theme::Dark}, {"print", Theme::Print}};

struct PlotRequest {
    std::optional<Format> format; ///< nothing: by the extension, or by where the picture goes
    OutputRequest output;
    std::vector<std::string> analog;
    std::vector<std::string> status;
    std::optional<double> start;
    std::optional<double> end;
    std::optional<double> width;
    std::optional<double> height;
    TimeBase time = TimeBase::Relative;
    Theme theme = Theme::Light;
};

const char* endingOf(Format format) {
    switch (format) {
    case Format::Svg:
        return ".svg";
    case Format::Png:
        return ".png";
    case Format::Text:
        break;
    }
    return ".txt";
}

Format formatOf(const Request& request, const PlotRequest& wanted) {
    if (wanted.format) {
        return *wanted.format;
    }
    if (wanted.output.target.empty()) {
        return isTerminal() ? Format::Text : Format::Svg;
    }
    if (isOneFile(request, wanted.output)) {
        for (const Format format : {Format::Png, Format::Text}) {
            if (endsWith(wanted.output.target, endingOf(format))) {
                return format;
            }
        }
    }
    return Format::Svg;
}

Source sourceOf(const Recording& recording) {
    Source source{recording.header, {}, {}};
    for (const AnalogValues& values : recording.analog) {
        source.analog.push_back({values.unit, values.side});
    }
    source.columns = [&recording](const OrvComtradeIntake::Selection& selection, std::size_t most,
                                  const OnBlock& onBlock) { recording.reader->columns(selection, most, onBlock); };
    return source;
}

/// What the words mean: nothing where there is none, "all" and "none", or channels of a kind.
std::optional<std::vector<std::size_t>> channelsOf(const Recording& recording, const std::vector<std::string>& words,
                                                   std::size_t count, ChannelKind kind) {
    if (words.empty()) {
        return std::nullopt;
    }
    std::vector<std::size_t> channels;
    if (words.size() == 1 && words.front() == "all") {
        channels.resize(count);
        std::iota(channels.begin(), channels.end(), std::size_t{0});
    } else if (words.size() > 1 || words.front() != "none") {
        for (const Channel& channel : findChannels(recording, words, kind)) {
            if (channel.isStatus != (kind == ChannelKind::Status)) {
                throw Failure(kRecordingProblem, printable(statusName(recording.header.status[channel.position])) +
                                                     ": a status channel, which --status draws, not --channel");
            }
            channels.push_back(channel.position);
        }
    }
    return channels;
}

SvgStyle svgStyle(const PlotRequest& wanted) {
    SvgStyle style;
    style.width = wanted.width.value_or(style.width);
    style.height = wanted.height.value_or(style.height);
    style.theme = wanted.theme;
    return style;
}

TextStyle textStyle(const PlotRequest& wanted) {
    TextStyle style;
    const bool goesToTerminal = wanted.output.target.empty() && isTerminal();
    const std::size_t terminal = goesToTerminal ? std::min<std::size_t>(terminalWidth(), 160) : 0;
    style.width = wanted.width ? static_cast<std::size_t>(*wanted.width) : terminal > 0 ? terminal : style.width;
    style.height = wanted.height ? static_cast<std::size_t>(*wanted.height) : 0;
    style.colours = goesToTerminal && isColourTerminal();
    return style;
}

/// What the axis shows, and what the range that was asked for counts from.
void setTime(const Entry& entry, const Recording& recording, TimeBase base, Wanted& picture) {
    switch (base) {
    case TimeBase::Relative:
        return;
    case TimeBase::Trigger:
        picture.base = OrvComtradePicture::TimeBase::Trigger;
        if (picture.start || picture.end) {
            const double zero = TimeScale(recording.header, base, entry.path).zero();
            picture.start = picture.start ? std::optional(*picture.start + zero) : std::nullopt;
            picture.end = picture.end ? std::optional(*picture.end + zero) : std::nullopt;
        }
        return;
    case TimeBase::Utc:
        picture.utcOffset = TimeScale(recording.header, base, entry.path).minutesFromUtc();
        [[fallthrough]];
    case TimeBase::Absolute:
        picture.base = OrvComtradePicture::TimeBase::Clock;
    }
}

Figure figureOf(const Entry& entry, const Recording& recording, const PlotRequest& wanted, std::size_t columns) {
    Wanted picture;
    picture.analog = channelsOf(recording, wanted.analog, recording.header.analog.size(), ChannelKind::Any);
    picture.status = channelsOf(recording, wanted.status, recording.header.status.size(), ChannelKind::Status);
    picture.start = wanted.start;
    picture.end = wanted.end;
    setTime(entry, recording, wanted.time, picture);
    picture.name = entry.path == "-" ? kStandardInput : nameOf(entry.path);
    picture.columns = columns;
    try {
        return OrvComtradePicture::figureOf(sourceOf(recording), picture);
    } catch (const OrvComtradePicture::NothingToDraw& reason) {
        throw Failure(kRecordingProblem, fmt::format("{}: nothing to draw: {}", shownPath(entry.path), reason.what()));
    }
}

void draw(const Entry& entry, const Recording& recording, const PlotRequest& wanted, Format format,
          Rasterizer& rasterizer, Output& out) {
    const auto write = [&out](std::string_view piece) { out.write(piece); };
    if (format == Format::Text) {
        const TextStyle style = textStyle(wanted);
        writeText(figureOf(entry, recording, wanted, columnsOf(style)), style, write);
        return;
    }
    const SvgStyle style = svgStyle(wanted);
    const Figure figure = figureOf(entry, recording, wanted, columnsOf(style));
    if (format == Format::Svg) {
        writeSvg(figure, style, write);
        return;
    }
    std::string svg;
    writeSvg(figure, style, [&svg](std::string_view piece) { svg += piece; });
    try {
        write(rasterizer.png(svg));
    } catch (const Failure& failure) {
        throw Failure(failure.status, shownPath(entry.path) + ": " + failure.what());
    }
}

void checkNumbers(const PlotRequest& wanted) {
    for (const auto& time : {wanted.start, wanted.end}) {
        if (time && !std::isfinite(*time)) {
            throw Failure(kWrongUsage, "--start and --end must be finite numbers");
        }
    }
    if (wanted.start && wanted.end && *wanted.start >= *wanted.end) {
        throw Failure(kWrongUsage, "--end must not lie before --start");
    }
    const auto isWithin = [](const std::optional<double>& length, double least) {
        return !length || (*length >= least && *length <= 20000.0);
    };
    if (!isWithin(wanted.width, 40.0) || !isWithin(wanted.height, 10.0)) {
        throw Failure(kWrongUsage, "--width must be from 40 to 20000, --height from 10 to 20000");
    }
}

class Plot : public Command {
public:
    Plot() : Command(_describe()) {
        add(outputFlag(
            _wanted.output, "File, or folder (for several: always); default: standard output",
            "For one recording named by a file it is a file, or a folder that exists or ends in a slash. Otherwise it "
            "is a folder, which is created if needed. Recordings found in a folder keep their place in it; with "
            "several folders, their names are kept as well. Several recordings need it, except as text."));
        add(_formatFlag());
        add(textsFlag("-c,--channel", "CHANNEL", "An analog channel to draw (may be given again), all, or none",
                      _wanted.analog)
                .of(ValueKind::Channel)
                .with("By its number from 1, its name as info prints it, or its identifier. Default: the voltages and "
                      "currents that the disturbance moved most, in six sets of axes at most."));
        add(textsFlag("--status", "CHANNEL", "A status channel to draw (may be given again), all, or none",
                      _wanted.status)
                .with("Default: those that change in the picture, at most 32."));
        add(numberFlag("-s,--start", "SECONDS", "First instant in seconds (default: the disturbance)", _wanted.start));
        add(numberFlag("-e,--end", "SECONDS", "Last instant in seconds (default: the disturbance)", _wanted.end)
                .with("If only one of the two is given, the other is the beginning or end of the recording."));
        add(timeFlag(_wanted.time)
                .with(
                    "What times are, and what --start and --end count from: seconds from the first sample, or from the "
                    "trigger. absolute is the recorder's clock, and utc needs a time code. With these two, --start "
                    "and --end count from the first sample."));
        add(choiceFlag("--theme", "THEME", "Colours: light (default), dark, or print", kThemes, _wanted.theme));
        add(numberFlag("--width", "NUMBER", "Width in pixels (default 1000), of text in characters", _wanted.width));
        add(numberFlag("--height", "NUMBER", "Height in pixels, of text in lines (default: as needed)", _wanted.height)
                .with("A picture that needs more for its names is higher."));
        add(forceFlags(request, _wanted.output));
        add(readingFlags(request));
    }

protected:
    void prepare() override { checkNumbers(_wanted); }

    std::vector<std::string> targets() override {
        _format = formatOf(request, _wanted);
        _checkTarget();
        std::vector<std::string> targets;
        if (!_wanted.output.target.empty() && !isStream(_wanted.output.target)) {
            refuseSharedTargets(request.selection, {endingOf(_format)});
            for (const Entry& entry : request.selection.entries) {
                targets.push_back(targetBase(entry, request, _wanted.output, endingOf(_format)));
            }
        }
        return targets;
    }

    void openOutputs() override {
        if (_format == Format::Png) {
            _rasterizer.begin();
        }
        if (isStream(_wanted.output.target)) {
            _stream = std::make_unique<StreamFile>(_wanted.output.target);
        }
    }

    std::vector<std::string> outcomes() const override { return {"written", "skipped", "failed"}; }

    void perform(const Entry& entry, Job& out) override {
        if (_wanted.output.target.empty()) {
            draw(entry, loadEntry(entry, request, out), _wanted, _format, _rasterizer, out);
            out.write(_format == Format::Text && request.several() ? "\n" : "");
            return;
        }
        if (_stream) {
            draw(entry, loadEntry(entry, request, out), _wanted, _format, _rasterizer, *_stream);
            _stream->flush();
            return;
        }
        const std::string target =
            isOneFile(request, _wanted.output)
                ? _wanted.output.target
                : targetBase(entry, request, _wanted.output, endingOf(_format)) + endingOf(_format);
        if (isLeftOut(entry, request, _wanted.output, target, out)) {
            return;
        }
        const Recording recording = loadEntry(entry, request, out);
        refuseToReplace({entry.path, recording.cfgFile, recording.datFile}, target);
        makeFolderOf(target);
        SafeFiles files(_wanted.output.replaces());
        draw(entry, recording, _wanted, _format, _rasterizer, files.add(target));
        files.publish();
        reportWritten(entry, request, {target}, std::nullopt, out);
    }

private:
    Flag _formatFlag() {
        std::vector<std::string> words;
        words.reserve(kPictureFormats.size());
        for (const auto& known : kPictureFormats) {
            words.push_back(known.first);
        }
        Flag flag{"-f,--format", "FORMAT", "svg, png or text (default: by the file's extension, else svg)",
                  [this, words](const std::string& word) {
                      const auto known = kPictureFormats.find(word);
                      if (known == kPictureFormats.end()) {
                          return problemOfChoice(word, words);
                      }
                      _wanted.format = known->second;
                      return std::string();
                  }};
        return std::move(flag)
            .of(ValueKind::Choice, std::move(words))
            .with("Text is Braille patterns, and the default where standard output is a terminal. PNG needs the "
                  "program rsvg-convert.");
    }

    void _checkTarget() const {
        if (!_wanted.output.target.empty()) {
            return;
        }
        if (request.json) {
            throw Failure(kWrongUsage, "--json reports which files were written, and needs --output");
        }
        if (request.several() && _format != Format::Text) {
            throw Failure(kWrongUsage, "a folder, or several recordings, need --output FOLDER");
        }
        if (_format == Format::Png && isTerminal()) {
            throw Failure(kWrongUsage, "--format png needs --output FILE: a terminal cannot show the picture");
        }
        if (!_wanted.format && _format == Format::Text && !isUtf8Terminal()) {
            throw Failure(kWrongUsage,
                          "a picture in characters needs a UTF-8 locale, which the terminal does not have; "
                          "--output FILE writes one as SVG or PNG");
        }
    }

    static Description _describe() {
        return {
            "plot",
            "Draw each recording: the disturbance, or what you ask for",
            {"Without options the picture is the one that an engineer would draw first: voltages and currents around "
             "the disturbance, in axes by feeder and bus if the names show these; below them the status channels that "
             "change, and a line at the trigger. On a terminal it is drawn in characters, elsewhere it is SVG.",
             "The disturbance is found by a rule. A jump is a peak of a voltage or current that differs from that of "
             "the cycle before by a tenth of the greatest voltage or current. Its events are jumps and changes of "
             "status channels (of those that change at most 16 times). Its mark is the trigger if an event is within "
             "five cycles of it, otherwise the greatest jump, otherwise the first change. The picture begins four "
             "cycles before the first event of the 15 cycles before the mark. It ends six cycles after the last event "
             "of the 30 cycles after the mark. Without an event it is 20 cycles around the trigger, or the whole "
             "recording. A line below the picture says what is left out.",
             "Each column of pixels shows the lowest and the highest of its samples, so that no peak is lost. A "
             "missing value is a gap."},
            {{"The disturbance, on the terminal", "orvcomtrade plot feeder_earth_fault.cfg"},
             {"Pictures of all recordings of a folder, for printing",
              "orvcomtrade plot recordings --theme print --output pictures"},
             {"Two currents, 50 ms from the trigger on",
              "orvcomtrade plot feeder_earth_fault.cfg -c IA -c 3I0 -s 0.076 -e 0.126 -o currents.svg"}}};
    }

    PlotRequest _wanted;
    std::unique_ptr<StreamFile> _stream;
    Format _format = Format::Svg;
    Rasterizer _rasterizer;
};

} // namespace

std::unique_ptr<Command> makePlot() {
    return std::make_unique<Plot>();
}
