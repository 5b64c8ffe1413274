#pragma once

#include "dataSurvey.h"

#include <functional>
#include <string>

namespace OrvComtradeIntake {

/// A finding about the data, so far without a place.
Finding dataFinding(Severity severity, const char* code, const DataSource& source);

/// There are more samples than declared, and those beyond are left out. Other numbers than the declared one are found
/// where the configuration is settled.
Finding surplusFinding(const DataSource& source, const std::string& found, std::uint64_t declared);

/// Tells the missing values of the survey, if any; `place` puts in where the first one is.
void tellMissing(const DataSurvey& survey, const DataSource& source,
                 const std::function<void(const MissingRun&, Finding&)>& place, Findings& findings);

} // namespace OrvComtradeIntake
