#include "input/problemIn.h"

#include "output/findingText.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Severity;

namespace {

/// Not so where the data are something else: their configuration is that of a recording.
bool saysNoRecording(const Finding& finding, const Opened& opened) {
    return finding.code == "not-a-recording" && (opened.cfgFile().empty() || finding.place.file == opened.cfgFile());
}

bool isInterruption(const Finding& finding) {
    return finding.code == "unreadable" || finding.code == "file-changed";
}

/// Whether the system was asked for a file and refused: then that is why the recording can't be read, whatever else is
/// wrong with it.
bool isRefused(const Finding& finding) {
    return isInterruption(finding) || finding.code == "no-permission";
}

std::string sentenceOf(const Finding& finding) {
    return placeText(finding.place) + ": " + findingSentence(finding);
}

} // namespace

std::string interruptionIn(const std::vector<Finding>& findings) {
    const auto found = std::find_if(findings.begin(), findings.end(), isInterruption);
    return found == findings.end() ? std::string() : sentenceOf(*found);
}

std::string problemIn(const Opened& opened, const std::string& path) {
    const std::vector<Finding>& findings = opened.findings();
    const auto isError = [](const Finding& finding) { return finding.severity == Severity::Error; };
    auto first = std::find_if(findings.begin(), findings.end(), isRefused);
    first = first == findings.end() ? std::find_if(findings.begin(), findings.end(), isError) : first;
    if (first == findings.end()) {
        return shownPath(path) + ": cannot be read";
    }
    if (first->code == "no-such-file") {
        return placeText(first->place) + ": No such file or directory";
    }
    const auto others = std::count_if(findings.begin(), findings.end(), isError) - 1;
    const std::string rest = others > 0 ? fmt::format(" (and {} more: see orvcomtrade check)", others) : "";
    return sentenceOf(*first) + rest;
}

std::string noteOfNone(const Opened& opened) {
    for (const Finding& finding : opened.findings()) {
        if (saysNoRecording(finding, opened)) {
            return fmt::format("{}: skipped, not a recording: found {}", placeText(finding.place),
                               printable(finding.found));
        }
    }
    return {};
}
