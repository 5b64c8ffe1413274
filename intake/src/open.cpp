#include "Recording.h"
#include "base/civilTime.h"
#include "base/utf16.h"
#include "base/utf8.h"
#include "cfg/cfgReading.h"
#include "cfg/scaling.h"
#include "cfg/settleRates.h"
#include "data/ColumnTap.h"
#include "data/survey.h"
#include "files/FileError.h"
#include "files/recordingFiles.h"
#include "report/limits.h"
#include "text/CfgText.h"
#include "text/Iconv.h"
#include "text/encoding.h"

#include <OrvComtradeIntake/Intake.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr double kFinestDate = 1e-3; // seconds; many recorders write the rest as zeros

/// What only the heading of a section says of the data.
void checkHeading(const std::string& format, const ReadCfg& cfg, const std::string& file, Findings& findings) {
    if (format.empty()) {
        return;
    }
    const bool isText = format.find("ASCII") != std::string::npos;
    if (isText == (cfg.header.dataType == DataType::Ascii)) {
        return;
    }
    findings.add(Kind::TypeWord, {file, 0, "DAT", 0},
                 {"DAT " + escaped(format), "read as " + std::string(typeWord(cfg.header.dataType)),
                  typeWord(cfg.header.dataType)});
}

/// A text that comes with the recording, in UTF-8, without byte-order marks before it.
std::string sideText(const std::string& bytes, const std::string& encoding) {
    bool isDamaged = false;
    const bool isChosen = !encoding.empty() && utf16Name(bytes).empty(); // as for the configuration
    std::string text = convertToUtf8(bytes, isChosen ? encoding : detectEncoding(bytes), isDamaged);
    while (hasByteOrderMark(text)) {
        text.erase(0, kByteOrderMark.size());
    }
    return text;
}

/// Seconds from the first sample to the last.
double durationOf(const ReadCfg& cfg, const DataFacts& facts) {
    const Header& header = cfg.header;
    if (header.timesAreStamped()) {
        const bool hasNanoseconds = header.hasNanosecondDates && header.revision >= 2013;
        const double unit = header.timeMultiplier * facts.stamps.unit / facts.stamps.factor;
        return static_cast<double>(facts.stamps.greatest) * unit * (hasNanoseconds ? 1e-9 : 1e-6);
    }
    const std::uint64_t last = facts.samples - 1;
    double seconds = 0.0;
    std::uint64_t begin = 0;
    for (const RateInfo& rate : header.rates) {
        const std::uint64_t end = &rate == &header.rates.back() ? last : std::min(rate.endSample, last);
        seconds += end > begin ? static_cast<double>(end - begin) / rate.rate : 0.0;
        begin = std::max(begin, end);
    }
    return seconds;
}

} // namespace

/// Goes the way from files to a recording.
struct Opening {
    explicit Opening(const Options& wanted) : options(wanted) { recording->found = Findings(options.limits.findings); }

    Opened run(std::optional<RecordingFiles> files) {
        if (files) {
            recording->cfgFile = files->cfgFile;
            recording->datFile = files->datFile;
            recording->side = options.side;
            recording->isReadable = _isUnderstood(*files);
        }
        return Opened(recording);
    }

    /// The same, and the columns: on the way, if nothing needs repair.
    Opened run(std::optional<RecordingFiles> files, const Selection& selection, Columns& columns) {
        ColumnTap tap(selection, options.side, columns);
        _tap = &tap;
        Opened opened = run(std::move(files));
        if (!opened.readable()) {
            columns = {};
        } else if (!tap.finish(recording->facts)) {
            opened.columns(selection, columns);
        }
        return opened;
    }

    Findings& findings() { return recording->found; }

    const Options& options;
    std::shared_ptr<Recording> recording = std::make_shared<Recording>();

private:
    bool _isUnderstood(RecordingFiles& files) {
        try {
            const std::optional<ByteSource> data = files.data;
            const bool isUnderstood = _readConfiguration(files) && _readData(files);
            files.cfg.requireUnchanged();
            if (data) {
                data->requireUnchanged();
            }
            return isUnderstood;
        } catch (const FileError& error) {
            reportFileError(error, findings());
            return false;
        } catch (const UnknownEncoding& problem) {
            if (!options.encoding.empty()) {
                throw; // a mistake of the caller
            }
            findings().add(Kind::Unreadable, {files.cfgFile, 0, "", 0}, {problem.what()});
            return false;
        }
    }

    /// A line for each channel and rate, and as many others as a configuration can have.
    std::uint64_t _mostLines() const {
        constexpr std::uint64_t others = 1000;
        const std::uint64_t most = std::min<std::uint64_t>(options.limits.channels, SIZE_MAX / 4) +
                                   std::min<std::uint64_t>(options.limits.rates, SIZE_MAX / 4);
        return most + others;
    }

    bool _readConfiguration(const RecordingFiles& files) {
        const Limits& limits = options.limits;
        const Place start{files.cfgFile, 0, "", files.cfg.offsetInFile(0)};
        if (isAbove(files.cfg.length(), limits.cfgBytes, "cfg-bytes", "bytes", start, findings())) {
            return false;
        }
        const std::uint64_t mostLines = _mostLines();
        const CfgText text = readCfgText(files.cfg.all(), files.cfgFile, files.cfg.offsetInFile(0),
                                         files.cfg.lineInFile(1), options.encoding, findings(), mostLines);
        if (isAbove(text.lineCount, mostLines, "channels", "lines of channels and rates", start, findings())) {
            return false;
        }
        std::optional<ReadCfg> read = readCfg(text, findings(), limits);
        if (!read) {
            for (const Kind kind : {Kind::NotARecording, Kind::EmptyConfiguration}) {
                findings().keepOnly(kind, files.cfgFile); // what else stands in it is of no interest
            }
            return false;
        }
        ReadCfg& cfg = recording->cfg;
        cfg = std::move(*read);
        cfg.header.encoding = text.encoding;
        cfg.header.hdr = sideText(files.hdr, options.encoding);
        cfg.header.inf = sideText(files.inf, options.encoding);
        checkScaling(cfg, options.side, findings());
        return true;
    }

    bool _readData(RecordingFiles& files) {
        ReadCfg& cfg = recording->cfg;
        if (!files.data) {
            settleRates(cfg, 0, findings());
            return findings().has(Kind::NoData); // else there are some, which can't be read
        }
        const bool isEmptyOnPurpose =
            files.data->length() == 0 && cfg.header.dataType == DataType::Ascii && cfg.header.samplesDeclared == 0;
        if (isEmptyOnPurpose) {
            settleRates(cfg, 0, findings());
            return true;
        }
        std::optional<DataFacts> facts = surveyData(*files.data, cfg, options, findings(), _tap);
        if (!facts || findings().has(Kind::NoTimes)) {
            return false;
        }
        checkHeading(files.dataFormat, cfg, files.cfgFile, findings());
        recording->facts = std::move(*facts);
        recording->data = std::move(files.data);
        if (files.isNamedForLibrary) {
            recording->cfgForLibrary = files.cfg;
        }
        settleRates(cfg, recording->facts.samples, findings());
        _checkTrigger();
        return true;
    }

    void _checkTrigger() {
        const Header& header = recording->cfg.header;
        if (!header.start || !header.trigger) {
            return;
        }
        const auto offset =
            static_cast<double>(header.trigger->nanoseconds) - static_cast<double>(header.start->nanoseconds);
        const double seconds = offset / static_cast<double>(kNanosecondsPerSecond);
        const double duration = durationOf(recording->cfg, recording->facts);
        const double slack = std::max(kFinestDate, duration / static_cast<double>(recording->facts.samples));
        if (seconds >= -slack && seconds <= duration + slack) {
            return;
        }
        const std::string found = header.trigger->text() + (seconds < 0.0 ? ", before the start" : ", after the end");
        findings().add(Kind::TriggerOutside, recording->cfg.trigger, {found});
    }

    ColumnTap* _tap = nullptr;
};

Opened open(const std::string& path, const Options& options) {
    Opening opening(options);
    return opening.run(findRecording(path, opening.findings(), options));
}

Opened open(const Bytes& bytes, const Options& options) {
    Opening opening(options);
    return opening.run(recordingOf(bytes, opening.findings(), options));
}

Opened open(const std::string& path, Columns& columns, const Selection& selection, const Options& options) {
    Opening opening(options);
    return opening.run(findRecording(path, opening.findings(), options), selection, columns);
}

Opened open(const Bytes& bytes, Columns& columns, const Selection& selection, const Options& options) {
    Opening opening(options);
    return opening.run(recordingOf(bytes, opening.findings(), options), selection, columns);
}

} // namespace OrvComtradeIntake
