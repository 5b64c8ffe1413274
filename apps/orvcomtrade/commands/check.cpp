#include "commands/check.h"

#include "input/loadRecording.h"
#include "output/Failure.h"
#include "output/findingText.h"
#include "output/json.h"

#include <string>
#include <vector>

using OrvComtradeIntake::Finding;

namespace {

void printText(const std::vector<Finding>* findings, const Verdict& verdict, Job& out) {
    if (findings != nullptr) {
        for (const Finding& finding : *findings) {
            out.print("{}: {}: {} [{}]\n", placeText(finding.place), severityName(finding.severity),
                      findingSentence(finding), finding.code);
        }
    }
    out.print("{}\n", verdict.sentence);
}

void printLine(const Entry& entry, const std::vector<Finding>* findings, const Verdict& verdict, Job& out) {
    Json line = recordingLine(entry.path, verdict.isReadable);
    line["verdict"] = verdict.name;
    if (verdict.code) {
        line["code"] = *verdict.code;
    }
    if (findings != nullptr) {
        line["findings"] = Json::array();
        for (const Finding& finding : *findings) {
            line["findings"].push_back(findingValue(finding));
        }
    }
    writeLine(line, out);
}

} // namespace

void printCheck(const Entry& entry, const Request& request, Job& out) {
    const Recording recording = openRecording(entry.path, request.load);
    if (!recording.noneNote.empty() && entry.isMet) {
        throw NotARecording(recording.problem, recording.noneNote);
    }
    if (!recording.objection.empty()) {
        out.note(recording.objection);
    }
    const std::vector<Finding>* const findings = recording.reader->findings();
    const Verdict verdict = recording.reader->verdict();
    if (request.json) {
        printLine(entry, findings, verdict, out);
    } else {
        printText(findings, verdict, out);
    }
    out.setStatus(verdict.status);
}
