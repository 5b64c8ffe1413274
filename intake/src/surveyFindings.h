#pragma once

#include "dataSurvey.h"

#include <functional>
#include <string>

namespace OrvComtradeIntake {

/// A finding about the data, so far without a place.
Finding dataFinding(Severity severity, const char* code, const DataSource& source);

/// Samples present and declared differ; `what` they are: "records" or "lines".
Finding sampleCountFinding(const DataSource& source, std::uint64_t present, std::uint64_t declared,
                           const std::string& what);

/// Tells the missing values of the survey, if any; `place` puts in where the first one is.
void tellMissing(const DataSurvey& survey, const DataSource& source,
                 const std::function<void(const MissingRun&, Finding&)>& place, Findings& findings);

} // namespace OrvComtradeIntake
