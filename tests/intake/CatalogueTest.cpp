// The catalogue of findings against its page in the documents.

#include "report/catalogue.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace orvtest {

namespace {

using OrvComtradeIntake::Kind;
using OrvComtradeIntake::KindInfo;
using OrvComtradeIntake::Severity;

char letterOf(Severity severity) {
    return severity == Severity::Note ? 'N' : severity == Severity::Warning ? 'W' : 'E';
}

/// "`code` S | clause", as the page has it.
std::vector<std::string> rowsOfCatalogue() {
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < static_cast<std::size_t>(Kind::Count); ++i) {
        const KindInfo& info = OrvComtradeIntake::catalogue(static_cast<Kind>(i));
        rows.push_back('`' + std::string(info.code) + "` " + letterOf(info.severity) + " |" +
                       (*info.clause == '\0' ? "" : std::string(" ") + info.clause) + ' ');
    }
    return rows;
}

std::vector<std::string> rowsOfPage() {
    std::ifstream page(ORV_SOURCE_DIR "/docs/intake.md");
    std::vector<std::string> rows;
    for (std::string line; std::getline(page, line);) {
        const std::size_t severity = line.find("` ");
        const std::size_t clauseEnd = line.find('|', line.find('|', 1) + 1);
        const bool isRow = line.compare(0, 3, "| `") == 0 && severity != std::string::npos &&
                           severity + 4 < line.size() && line[severity + 4] == '|' && clauseEnd != std::string::npos;
        if (isRow) {
            rows.push_back(line.substr(2, clauseEnd - 2));
        }
    }
    return rows;
}

TEST(Catalogue, IsTheListOfThePage) {
    EXPECT_EQ(rowsOfPage(), rowsOfCatalogue());
}

TEST(Catalogue, SaysOfEachKindWhatIsExpectedAndWhatToDo) {
    std::set<std::string> codes;
    for (std::size_t i = 0; i < static_cast<std::size_t>(Kind::Count); ++i) {
        const KindInfo& info = OrvComtradeIntake::catalogue(static_cast<Kind>(i));
        EXPECT_TRUE(codes.insert(info.code).second) << info.code << " twice";
        EXPECT_STRNE(info.expected, "") << info.code;
        EXPECT_STRNE(info.advice, "") << info.code;
        const bool isOfStandard = info.rule == OrvComtradeIntake::Rule::Standard;
        EXPECT_TRUE(!isOfStandard || *info.clause != '\0') << info.code << " breaks a rule without a clause";
    }
}

} // namespace

} // namespace orvtest
