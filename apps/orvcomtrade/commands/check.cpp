#include "commands/check.h"

#include "commands/commonFlags.h"
#include "input/loadRecording.h"
#include "output/Failure.h"
#include "output/colour.h"
#include "output/findingText.h"
#include "output/json.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Severity;

namespace {

const std::map<std::string, Severity> kSeverities = {
    {"note", Severity::Note}, {"warning", Severity::Warning}, {"error", Severity::Error}};

Colour colourOf(Severity severity) {
    switch (severity) {
    case Severity::Error:
        return Colour::Red;
    case Severity::Warning:
        return Colour::Yellow;
    case Severity::Note:
        break;
    }
    return Colour::Blue;
}

/// The worst of the findings; nothing where there is none.
std::optional<Severity> worstOf(const std::vector<Finding>* findings) {
    std::optional<Severity> worst;
    for (std::size_t i = 0; findings != nullptr && i < findings->size(); ++i) {
        const Severity severity = (*findings)[i].severity;
        worst = !worst || *worst < severity ? severity : *worst;
    }
    return worst;
}

const char* outcomeOf(const Verdict& verdict, const std::optional<Severity>& worst) {
    if (!verdict.isReadable) {
        return "unreadable";
    }
    if (worst == Severity::Error) {
        return "with errors";
    }
    return worst == Severity::Warning ? "with warnings" : "clean";
}

void printText(const std::vector<Finding>* findings, const Verdict& verdict, Job& out) {
    if (findings != nullptr) {
        for (const Finding& finding : *findings) {
            out.print("{}\n",
                      findingLine(finding, inColour(severityWord(finding.severity), colourOf(finding.severity))));
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

void printCheck(const Entry& entry, const Request& request, Severity failing, Job& out) {
    const Recording recording = openRecording(entry, request.load);
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
    const std::optional<Severity> worst = worstOf(findings);
    const bool isFailure = !verdict.isReadable || (worst && *worst >= failing);
    out.setStatus(isFailure ? kRecordingProblem : 0);
    out.setOutcome(outcomeOf(verdict, worst));
}

class Check : public Command {
public:
    Check() : Command(_describe()) {
        add(choiceFlag("--fail-on", "SEVERITY", "Lowest severity that makes the exit status 1 (default: error)",
                       kSeverities, _failing)
                .with("note, warning or error. A recording that cannot be read always makes it 1."));
        add(forceFlag(request));
        add(readingFlags(request));
    }

protected:
    void perform(const Entry& entry, Job& out) override { printCheck(entry, request, _failing, out); }

    std::vector<std::string> outcomes() const override {
        return {"clean", "with warnings", "with errors", "unreadable"};
    }

private:
    static Description _describe() {
        return {"check",
                "Print where each recording is damaged or deviates from the standard, and how it was read",
                {"One line for each finding: file, line and field; error, warning or note; what was expected and what "
                 "was found; how it was read, or what you can do about it; and a short name in brackets. The last line "
                 "is the verdict: OK; readable after so many repairs; readable with errors or warnings that cannot be "
                 "repaired; or cannot be read. With --json the verdict is ok, repaired, readable or unreadable.",
                 "For several recordings, a summary goes to the standard error output, with --json as an object: how "
                 "many are clean (notes at most), with warnings, with errors, unreadable."},
                {{"What is wrong with the recordings of a folder", "orvcomtrade check recordings"}}};
    }

    Severity _failing = Severity::Error;
};

} // namespace

std::unique_ptr<Command> makeCheck() {
    return std::make_unique<Check>();
}
