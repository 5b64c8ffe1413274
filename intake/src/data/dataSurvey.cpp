#include "dataSurvey.h"

#include "asciiSurvey.h"
#include "binarySurvey.h"
#include "surveyFindings.h"

#include <system_error>
#include <utility>

namespace OrvComtradeIntake {

DataSurvey surveyData(const DataSource& source, const Configuration& configuration, Findings& findings) {
    try {
        return configuration.encoding == DataEncoding::Ascii ? surveyAscii(source, configuration, findings)
                                                             : surveyBinary(source, configuration, findings);
    } catch (const std::system_error& error) {
        Finding finding = dataFinding(Severity::Error, "unreadable", source);
        finding.found = error.code().message();
        finding.expected = "a readable file";
        findings.add(std::move(finding));
        DataSurvey none;
        none.asItStands = false;
        return none;
    }
}

} // namespace OrvComtradeIntake
