#include "loadRecording.h"

#include "Failure.h"
#include "findingText.h"
#include "printable.h"
#include "toUtf8.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>

namespace Enums = OrvComtradeLib::Enums;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Severity;
using OrvComtradeIntake::Side;

namespace {

struct Problem {
    const std::string& file;
    const char* sentence;
    const char* codeName;
};

Problem problemOf(int code, const OrvComtradeLib::Comtrade& recording, const std::string& path) {
    switch (code) {
    case Enums::NotComtradeFile:
        return {path, "not a file of a recording: the extension is none of .cfg, .dat and .cff", "NotComtradeFile"};
    case Enums::CfgFileNotFound:
        return {recording.cfgFileName, "configuration file not found", "CfgFileNotFound"};
    case Enums::CfgLoadError:
        return {recording.cfgFileName, "configuration file cannot be read", "CfgLoadError"};
    case Enums::DatFileNotFound:
        return {recording.datFileName, "data file not found", "DatFileNotFound"};
    case Enums::DatLoadError:
        return {recording.datFileName, "data file cannot be read, or does not match its configuration", "DatLoadError"};
    default:
        return {path, "not loaded", "unknown result"};
    }
}

/// The first error, and how many there are beside it.
Failure unreadable(const std::string& path, const std::vector<Finding>& findings) {
    const auto isError = [](const Finding& finding) { return finding.severity == Severity::Error; };
    const auto first = std::find_if(findings.begin(), findings.end(), isError);
    if (first == findings.end()) {
        return {kRecordingProblem, printable(path) + ": cannot be read"};
    }
    const auto count = std::count_if(findings.begin(), findings.end(), isError);
    const std::string rest = count > 1 ? fmt::format(" (and {} more: orvcomtrade check tells)", count - 1) : "";
    return {kRecordingProblem, findingPlace(*first) + ": " + findingSentence(*first) + rest};
}

} // namespace

Verdict loadAsIs(OrvComtradeLib::Comtrade& recording, const std::string& path) {
    if (path.find('.') == std::string::npos) { // the library throws for such a path
        return {Enums::NotComtradeFile, "NotComtradeFile",
                printable(path) + ": not a file of a recording: the path has no extension"};
    }
    const int code = recording.load(path);
    if (code == Enums::Ok) {
        return {code, "Ok", {}};
    }
    const Problem problem = problemOf(code, recording, path);
    return {code, problem.codeName,
            fmt::format("{}: {} ({}, {})", printable(problem.file), problem.sentence, problem.codeName, code)};
}

void prepareRecording(Recording& recording, const std::string& path, const LoadOptions& options) {
    recording.options = options;
    try {
        recording.prepared = OrvComtradeIntake::prepare(path, options.intake);
    } catch (const std::system_error& problem) {
        throw Failure(kRecordingProblem,
                      fmt::format("{}: cannot be mended in a temporary folder (TMPDIR says where): {}", printable(path),
                                  printable(problem.what())));
    }
}

void loadPrepared(Recording& recording, const std::string& path) {
    if (!recording.prepared.readable()) {
        throw unreadable(path, recording.prepared.findings);
    }
    const Verdict verdict = loadAsIs(recording.comtrade, recording.prepared.path);
    if (verdict.code != Enums::Ok) {
        throw Failure(kRecordingProblem, verdict.sentence);
    }
}

void loadRecording(Recording& recording, const std::string& path, const LoadOptions& options) {
    if (!options.asIs) {
        prepareRecording(recording, path, options);
        loadPrepared(recording, path);
        recording.prepared.scratch = {}; // the disk is free again while the recording is worked on
        return;
    }
    recording.options = options;
    const Verdict verdict = loadAsIs(recording.comtrade, path);
    if (verdict.code != Enums::Ok) {
        throw Failure(kRecordingProblem, verdict.sentence);
    }
}

const char* sideName(Side side) {
    switch (side) {
    case Side::Primary:
        return "primary";
    case Side::Secondary:
        return "secondary";
    case Side::Recorded:
        break;
    }
    return "unknown";
}

const char* sideName(const Recording& recording, std::size_t channel) {
    return recording.options.asIs ? "secondary" : sideName(recording.prepared.analog.at(channel).given);
}

std::string stationText(const std::string& bytes) {
    return toUtf8::detectAndConvert(bytes);
}
