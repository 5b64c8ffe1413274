#include "input/intakeRecording.h"

#include "Comtrade.h"
#include "input/channelNames.h"
#include "input/problemIn.h"
#include "input/resultName.h"
#include "input/timeByRates.h"
#include "input/verdictOn.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <OrvComtradeIntake/Intake.h>
#include <fmt/format.h>

#include <algorithm>
#include <utility>

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Options;
using OrvComtradeIntake::Selection;
using OrvComtradeLib::Comtrade;

namespace {

class IntakeReader : public RecordingReader {
public:
    IntakeReader(std::string path, Readable readable)
        : _path(std::move(path)), _held(std::move(readable.held)), _opened(std::move(readable.opened)) {}

    const std::vector<Finding>* findings() const override { return &_opened.findings(); }
    Verdict verdict() const override { return verdictOn(_path, _opened.readable(), _opened.findings()); }

    double duration() const override {
        const Header& header = _opened.header();
        if (header.samples == 0) {
            return 0.0;
        }
        const std::uint64_t last = header.samples - 1;
        return header.timesAreStamped() ? _stampedTime(last) : timeByRates(header.rates, last);
    }

    Columns columns(const Selection& selection) const override { return _opened.columns(selection); }

    void columns(const Selection& selection, std::size_t most, const OnBlock& onBlock) const override {
        _opened.columns(selection, most, onBlock);
    }

    const Opened* opened() const override { return &_opened; }

    const Comtrade& comtrade() const override {
        if (!_comtrade) {
            auto comtrade = std::make_unique<Comtrade>();
            const int code = _opened.load(*comtrade);
            if (code != OrvComtradeLib::Enums::Ok) {
                throw Failure(kRecordingProblem, fmt::format("{}: the library cannot load it ({}, {})",
                                                             shownPath(_path), resultName(code), code));
            }
            _comtrade = std::move(comtrade);
        }
        return *_comtrade;
    }

private:
    double _stampedTime(std::uint64_t sample) const {
        Selection time;
        time.allAnalog = false;
        time.allStatus = false;
        time.first = sample;
        return _opened.columns(time).time.at(0);
    }

    const std::string _path;
    const std::shared_ptr<const HeldFiles> _held;
    const Opened _opened;
    mutable std::unique_ptr<Comtrade> _comtrade;
};

bool isForForce(const Opened& opened) {
    if (opened.readable()) {
        return false; // without a look at its values, which the first call for findings takes
    }
    const auto& findings = opened.findings();
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.code == "data-mismatch"; });
}

std::shared_ptr<const HeldFiles> heldFilesOf(const Entry& entry) {
    return entry.read ? std::make_shared<const HeldFiles>(entry.read()) : nullptr;
}

Opened openWith(const Entry& entry, const HeldFiles* held, const Options& options) {
    return held == nullptr ? OrvComtradeIntake::open(entry.path, options)
                           : OrvComtradeIntake::open(held->bytes(), options);
}

/// By force only where nothing else helps, so that it is known where it did.
Readable openGently(const Entry& entry, const Options& options) {
    Options gentle = options;
    gentle.acceptsAnyNumbers = false;
    const std::shared_ptr<const HeldFiles> held = heldFilesOf(entry);
    Opened opened = openWith(entry, held.get(), gentle);
    if (!options.acceptsAnyNumbers || !isForForce(opened)) {
        return {held, std::move(opened), {}};
    }
    Opened forced = openWith(entry, held.get(), options);
    const std::string objection = forced.readable() ? problemIn(opened, entry.path) + " (read because of --force)" : "";
    return {held, std::move(forced), objection};
}

Recording recordingOf(const Entry& entry, Readable readable) {
    Opened& opened = readable.opened;
    Recording recording;
    recording.objection = readable.objection;
    recording.cfgFile = opened.cfgFile();
    recording.datFile = opened.datFile();
    recording.header = opened.header();
    if (opened.readable()) {
        const Header& header = recording.header;
        for (std::size_t i = 0; i < header.analog.size(); ++i) {
            const std::string unit = opened.unitOf(i);
            recording.analog.push_back({analogName(header.analog[i], unit), unit, opened.sideOf(i)});
        }
    } else {
        recording.problem = problemIn(opened, entry.path);
        recording.noneNote = noteOfNone(opened);
    }
    recording.reader = std::make_unique<IntakeReader>(entry.path, std::move(readable));
    return recording;
}

} // namespace

Recording intakeRecording(const Entry& entry, const Options& options) {
    return recordingOf(entry, openGently(entry, options));
}

Recording intakeRecording(const Entry& entry, const Options& options, Columns& columns, const Selection& selection) {
    const std::shared_ptr<const HeldFiles> held = heldFilesOf(entry);
    return recordingOf(entry, {held,
                               held == nullptr ? OrvComtradeIntake::open(entry.path, columns, selection, options)
                                               : OrvComtradeIntake::open(held->bytes(), columns, selection, options),
                               {}});
}

Readable openReadable(const Entry& entry, const Options& options) {
    Readable readable = openGently(entry, options);
    const Opened& opened = readable.opened;
    if (opened.readable()) {
        return readable;
    }
    const std::string problem = problemIn(opened, entry.path);
    const std::string note = noteOfNone(opened);
    if (!note.empty()) {
        throw NotARecording(problem, note);
    }
    throw Failure(kRecordingProblem, problem);
}
