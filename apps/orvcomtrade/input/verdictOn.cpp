#include "input/verdictOn.h"

#include "output/counted.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>

using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Severity;

namespace {

std::ptrdiff_t countOf(const std::vector<Finding>& findings, Severity severity) {
    return std::count_if(findings.begin(), findings.end(),
                         [severity](const Finding& finding) { return finding.severity == severity; });
}

struct Sentence {
    const char* name;
    std::string sentence;
};

Sentence wordsFor(bool isReadable, const std::vector<Finding>& findings) {
    if (!isReadable) {
        return {"unreadable", "cannot be read"};
    }
    const auto repairs = std::count_if(findings.begin(), findings.end(), isRepaired);
    const auto errors = countOf(findings, Severity::Error);
    const auto warnings = countOf(findings, Severity::Warning);
    const std::string damage = errors > 0 ? ", with " + counted(errors, "error") : "";
    if (repairs > 0) {
        return {"repaired", "readable after " + counted(repairs, "repair") + damage};
    }
    if (errors == 0 && warnings == 0) {
        return {"ok", "OK"};
    }
    return {"readable", errors > 0 ? "readable" + damage : "readable, with " + counted(warnings, "warning")};
}

} // namespace

bool isRepaired(const Finding& finding) {
    return finding.severity != Severity::Note && !finding.repair.empty();
}

Verdict verdictOn(const std::string& path, bool isReadable, const std::vector<Finding>& findings) {
    const Sentence words = wordsFor(isReadable, findings);
    Verdict verdict;
    verdict.isReadable = isReadable;
    verdict.name = words.name;
    verdict.words = words.sentence;
    verdict.sentence = shownPath(path) + ": " + words.sentence;
    return verdict;
}
