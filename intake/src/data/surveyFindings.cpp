#include "surveyFindings.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace OrvComtradeIntake {

Finding dataFinding(Severity severity, const char* code, const DataSource& source) {
    Finding finding;
    finding.severity = severity;
    finding.code = code;
    finding.file = source.file;
    finding.offset = source.offset;
    return finding;
}

Finding surplusFinding(const DataSource& source, const std::string& found, std::uint64_t declared) {
    Finding finding = dataFinding(Severity::Warning, "sample-count", source);
    finding.found = found;
    finding.expected = std::to_string(declared) + " as declared";
    return finding;
}

void tellMissing(const DataSurvey& survey, const DataSource& source,
                 const std::function<void(const MissingRun&, Finding&)>& place, Findings& findings) {
    if (survey.missing.empty()) {
        return;
    }
    const MissingRun& first =
        *std::min_element(survey.missing.begin(), survey.missing.end(),
                          [](const MissingRun& left, const MissingRun& right) { return left.sample < right.sample; });
    Finding finding = dataFinding(Severity::Note, "missing-values", source);
    finding.field = "A" + std::to_string(first.channel + 1);
    finding.places = std::accumulate(survey.missing.begin(), survey.missing.end(), std::uint64_t{0},
                                     [](std::uint64_t sum, const MissingRun& run) { return sum + run.count; });
    finding.expected = "a value";
    place(first, finding);
    findings.add(std::move(finding));
}

} // namespace OrvComtradeIntake
