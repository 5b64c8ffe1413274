#pragma once

#include "dataSurvey.h"

namespace OrvComtradeIntake {

/// Surveys ASCII data.
DataSurvey surveyAscii(const DataSource& source, const Configuration& configuration, Findings& findings);

} // namespace OrvComtradeIntake
