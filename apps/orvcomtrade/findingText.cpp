#include "findingText.h"

#include "printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Severity;

namespace {

struct Advice {
    std::string_view code;
    const char* sentence;
};

/// What a person can do where nothing was done.
constexpr std::array<Advice, 21> kAdvice = {{
    {"bad-data-line", "look at the line, and ask for the file anew"},
    {"cff", "ask for the file anew, or for separate .cfg and .dat files"},
    {"companion-ambiguous", "name the right file, or move the others away"},
    {"counts", "look at the line, and ask for the file anew"},
    {"date", "take the time from elsewhere"},
    {"encoding", "look at the names; --encoding chooses another one"},
    {"field-malformed", "look at the field, and correct it in a copy"},
    {"field-missing", "ask for the file anew"},
    {"missing-values", "nothing need be done: exports leave them out"},
    {"no-cfg", "put the .cfg beside the data"},
    {"no-data", "ask for the data anew"},
    {"ratio", "take the ratio from elsewhere; values stay on the recorded side"},
    {"record-cut", "ask for the file anew if the end matters"},
    {"sample-count", "ask for the file anew if the end matters"},
    {"side", "take the side from elsewhere; values stay as recorded"},
    {"stamp-backwards", "look at the times around it"},
    {"stamp-constant", "take the times from elsewhere"},
    {"stamp-gap", "look at the times around it"},
    {"stamp-missing", "ask for the file anew"},
    {"stray-bytes", "nothing need be done"},
    {"unreadable", "make it readable, or ask for it anew"},
}};

std::string adviceOn(const Finding& finding) {
    const auto* const advice = std::find_if(
        kAdvice.begin(), kAdvice.end(), [&finding](const Advice& candidate) { return candidate.code == finding.code; });
    if (advice == kAdvice.end()) {
        return finding.severity == Severity::Note ? "nothing need be done" : "";
    }
    return advice->sentence;
}

void append(std::string& sentence, const char* separator, const std::string& part) {
    if (!part.empty()) {
        sentence += sentence.empty() ? "" : separator;
        sentence += part;
    }
}

} // namespace

std::string findingPlace(const Finding& finding) {
    std::string place = printable(finding.file);
    if (finding.line > 0) {
        place += fmt::format(":{}", finding.line);
    } else if (finding.offset > 0) {
        place += fmt::format(":byte {}", finding.offset);
    }
    if (!finding.field.empty()) {
        place += ":" + printable(finding.field);
    }
    return place;
}

std::string findingSentence(const Finding& finding) {
    std::string sentence;
    append(sentence, "", finding.found.empty() ? "" : "found " + printable(finding.found));
    append(sentence, ", ", finding.expected.empty() ? "" : "expected " + printable(finding.expected));
    append(sentence, "; ", finding.done.empty() ? adviceOn(finding) : printable(finding.done));
    if (finding.places > 1) {
        sentence += fmt::format(" ({} places, this is the first)", finding.places);
    }
    return sentence;
}

const char* severityName(Severity severity) {
    switch (severity) {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Note:
        break;
    }
    return "note";
}

Json findingValue(const Finding& finding) {
    Json value;
    value["severity"] = severityName(finding.severity);
    value["code"] = finding.code;
    value["file"] = finding.file;
    value["line"] = finding.line > 0 ? Json(finding.line) : Json();
    value["field"] = textValue(finding.field);
    value["offset"] = finding.offset;
    value["found"] = finding.found;
    value["expected"] = finding.expected;
    value["done"] = textValue(finding.done);
    value["places"] = finding.places;
    value["mended"] = finding.mended;
    return value;
}
