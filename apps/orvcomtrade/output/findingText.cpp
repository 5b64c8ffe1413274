#include "output/findingText.h"

#include "output/printable.h"

#include <fmt/format.h>

using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Place;
using OrvComtradeIntake::Rule;

namespace {

void append(std::string& sentence, const char* separator, const std::string& part) {
    if (!part.empty()) {
        sentence += sentence.empty() ? "" : separator;
        sentence += part;
    }
}

const char* ruleName(Rule rule) {
    return rule == Rule::Standard ? "standard" : "damage";
}

} // namespace

std::string placeText(const Place& place) {
    std::string text = printable(place.file);
    if (place.line > 0) {
        text += fmt::format(":{}", place.line);
    } else if (place.offset > 0) {
        text += fmt::format(":byte {}", place.offset);
    }
    if (!place.field.empty()) {
        text += ":" + printable(place.field);
    }
    return text;
}

std::string findingSentence(const Finding& finding) {
    std::string sentence;
    append(sentence, "", finding.expected.empty() ? "" : printable(finding.expected) + " expected");
    append(sentence, ", ", finding.found.empty() ? "" : "found " + printable(finding.found));
    append(sentence, ": ", printable(finding.repair.empty() ? finding.advice : finding.repair));
    if (finding.places > 1) {
        sentence += fmt::format(" (first of {})", finding.places);
    }
    return sentence;
}

std::string findingLine(const Finding& finding, const std::string& severity) {
    return fmt::format("{}: {}: {} [{}]", placeText(finding.place),
                       severity.empty() ? severityWord(finding.severity) : severity, findingSentence(finding),
                       finding.code);
}

Json findingValue(const Finding& finding) {
    Json value = Json::object();
    value["severity"] = severityWord(finding.severity);
    value["rule"] = ruleName(finding.rule);
    value["clause"] = textValue(finding.clause);
    value["code"] = finding.code;
    setPath(value, "file", finding.place.file);
    value["line"] = finding.place.line > 0 ? Json(finding.place.line) : Json();
    value["field"] = textValue(finding.place.field);
    value["offset"] = finding.place.offset;
    value["found"] = finding.found;
    value["expected"] = finding.expected;
    value["repair"] = textValue(finding.repair);
    value["advice"] = textValue(finding.advice);
    value["places"] = finding.places;
    return value;
}
