#include "commands/check.h"

#include "commands/commonFlags.h"
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

class Check : public Command {
public:
    Check() : Command(describe()) {
        add(readingFlags(request));
        add(forceFlag(request));
    }

protected:
    void perform(const Entry& entry, Job& out) override { printCheck(entry, request, out); }

private:
    static Description describe() {
        return {"check",
                "Print what deviates from the standard or is damaged in each recording, and how it is read",
                {"A line for each finding: file, line and field; whether it is an error, a warning or a note; what is "
                 "expected and what was found; how it was read nevertheless, or what can be done about it; and a short "
                 "name for it in brackets. A last line gives the verdict on the recording: OK; readable after so many "
                 "repairs; readable, with errors or warnings that nothing can repair; or cannot be read. With --json "
                 "the verdict is ok, repaired, readable or unreadable."},
                {{"What is wrong with the recordings of a folder", "orvcomtrade check recordings"}}};
    }
};

} // namespace

std::unique_ptr<Command> makeCheck() {
    return std::make_unique<Check>();
}
