#pragma once

#include "dataSurvey.h"

namespace OrvComtradeIntake {

/// Surveys BINARY, BINARY32 and FLOAT32 data.
DataSurvey surveyBinary(const DataSource& source, const Configuration& configuration, Findings& findings);

} // namespace OrvComtradeIntake
