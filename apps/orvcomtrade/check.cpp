#include "check.h"

#include "Failure.h"
#include "findingText.h"
#include "json.h"
#include "loadRecording.h"
#include "printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace Enums = OrvComtradeLib::Enums;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::PreparedRecording;

namespace {

const char* verdictName(const PreparedRecording& prepared) {
    if (!prepared.readable()) {
        return "unreadable";
    }
    return prepared.isOriginal() ? "original" : "mended";
}

std::string verdictSentence(const PreparedRecording& prepared) {
    if (!prepared.readable()) {
        return "cannot be read";
    }
    if (prepared.isOriginal()) {
        return "reads as it stands";
    }
    const auto mended = std::count_if(prepared.findings.begin(), prepared.findings.end(),
                                      [](const Finding& finding) { return finding.mended; });
    return fmt::format("reads, with {} {} mended (orvcomtrade normalize writes it so)", mended,
                       mended == 1 ? "thing" : "things");
}

void printFindings(const Entry& entry, const PreparedRecording& prepared, Job& out) {
    for (const Finding& finding : prepared.findings) {
        out.print("{}: {}: {} [{}]\n", findingPlace(finding), severityName(finding.severity), findingSentence(finding),
                  finding.code);
    }
    out.print("{}: {}\n", printable(entry.path), verdictSentence(prepared));
}

void printFindingsLine(const Entry& entry, const PreparedRecording& prepared, Job& out) {
    Json line = recordingLine(entry.path, prepared.readable());
    line["verdict"] = verdictName(prepared);
    line["findings"] = Json::array();
    for (const Finding& finding : prepared.findings) {
        line["findings"].push_back(findingValue(finding));
    }
    writeLine(line, out);
}

void checkAsIs(const Entry& entry, const Request& request, Job& out) {
    OrvComtradeLib::Comtrade recording;
    const Verdict verdict = loadAsIs(recording, entry.path);
    if (request.json) {
        Json line = recordingLine(entry.path, verdict.code == Enums::Ok);
        line["verdict"] = verdict.codeName;
        line["code"] = verdict.code;
        writeLine(line, out);
    } else if (verdict.code == Enums::Ok) {
        out.print("{}: {} ({})\n", printable(entry.path), verdict.codeName, verdict.code);
    } else {
        out.print("{}\n", verdict.sentence);
    }
    out.setStatus(verdict.code == Enums::Ok ? 0 : kRecordingProblem);
}

} // namespace

void printCheck(const Entry& entry, const Request& request, Job& out) {
    if (request.load.asIs) {
        checkAsIs(entry, request, out);
        return;
    }
    Recording recording;
    prepareRecording(recording, entry.path, request.load);
    if (recording.prepared.readable()) {
        loadPrepared(recording, entry.path);
    }
    if (request.json) {
        printFindingsLine(entry, recording.prepared, out);
    } else {
        printFindings(entry, recording.prepared, out);
    }
    out.setStatus(recording.prepared.readable() ? 0 : kRecordingProblem);
}
