// The catalogue of findings against its page in the documents.

#include "report/catalogue.h"

#include "intake/openedChecks.h"
#include "support/RecordingFolders.h"
#include "support/files.h"

#include <OrvComtradeIntake/Intake.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvtest {

namespace {

using OrvComtradeIntake::Kind;
using OrvComtradeIntake::KindInfo;
using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Severity;

char letterOf(Severity severity) {
    return severity == Severity::Note ? 'N' : severity == Severity::Warning ? 'W' : 'E';
}

using Cells = std::vector<std::string>;

const std::string kRoot = ORV_SOURCE_DIR;

/// The cells of a row of a table, without the blanks around them.
Cells cellsOf(const std::string& line) {
    Cells cells;
    for (std::size_t begin = 1, end = 0; (end = line.find('|', begin)) != std::string::npos; begin = end + 1) {
        const std::string cell = line.substr(begin, end - begin);
        const std::size_t first = std::min(cell.find_first_not_of(' '), cell.size());
        cells.push_back(cell.substr(first, cell.find_last_not_of(' ') + 1 - first));
    }
    return cells;
}

/// The rows of the page's tables that have a last column of this name.
std::vector<Cells> rowsOfPage(const std::string& lastColumn) {
    std::istringstream page(bytesOf(kRoot + "/docs/intake.md"));
    std::vector<Cells> rows;
    bool isWanted = false;
    for (std::string line; std::getline(page, line);) {
        const Cells cells = line.compare(0, 1, "|") == 0 ? cellsOf(line) : Cells();
        if (isWanted && !cells.empty() && cells.back().find("---") == std::string::npos) {
            rows.push_back(cells);
        }
        isWanted = !cells.empty() && (isWanted || cells.back() == lastColumn);
    }
    return rows;
}

/// "`code` S" and the clause, as the page has them.
std::vector<Cells> rowsOfCatalogue() {
    std::vector<Cells> rows;
    for (std::size_t i = 0; i < static_cast<std::size_t>(Kind::Count); ++i) {
        const KindInfo& info = OrvComtradeIntake::catalogue(static_cast<Kind>(i));
        rows.push_back({'`' + std::string(info.code) + "` " + letterOf(info.severity), info.clause});
    }
    return rows;
}

bool isWordOf(const std::string& words, const std::string& word) {
    return (' ' + words + ' ').find(' ' + word + ' ') != std::string::npos;
}

/// What stands between back quotes.
std::vector<std::string> quotedIn(const std::string& cell) {
    std::vector<std::string> quoted;
    std::istringstream pieces(cell);
    std::string piece;
    while (std::getline(pieces, piece, '`') && std::getline(pieces, piece, '`')) {
        quoted.push_back(piece);
    }
    return quoted;
}

/// The recording of this name in tests/recordings, opened.
Opened openMade(const std::string& name) {
    for (const std::filesystem::directory_entry& file : std::filesystem::directory_iterator(madeFolder() / name)) {
        const std::string letter = file.path().extension().string().substr(0, 2);
        if (letter == ".c" || letter == ".C") {
            return OrvComtradeIntake::open(file.path().string());
        }
    }
    throw std::runtime_error("no recording in " + name);
}

/// The source of the tests of the intake in which a test of this name ("Suite.Case") stands.
std::string sourceOf(const std::string& test) {
    const std::size_t dot = test.find('.');
    const std::string head = '(' + test.substr(0, dot) + ", " + test.substr(dot + 1) + ") {";
    static const auto sources = contentsOf(kRoot + "/tests/intake");
    for (const auto& [name, source] : sources) {
        if (dot != std::string::npos && source.find(head) != std::string::npos) {
            return source;
        }
    }
    return {};
}

TEST(Catalogue, IsTheListOfThePage) {
    std::vector<Cells> rows;
    for (const Cells& cells : rowsOfPage("seen in")) {
        rows.push_back({cells.at(0), cells.at(1)});
    }
    EXPECT_EQ(rows, rowsOfCatalogue());
}

TEST(Catalogue, EachKindIsSeenWhereThePageSays) {
    for (const Cells& cells : rowsOfPage("seen in")) {
        SCOPED_TRACE(cells.at(0));
        const std::string code = quotedIn(cells.at(0)).at(0);
        const std::vector<std::string> witnesses = quotedIn(cells.back());
        EXPECT_FALSE(witnesses.empty());
        for (const std::string& witness : witnesses) {
            if (isMade(witness)) {
                EXPECT_TRUE(isWordOf(codesOf(openMade(witness)), code)) << witness;
            } else {
                EXPECT_NE(sourceOf(witness).find(code), std::string::npos) << witness;
            }
        }
    }
}

TEST(Catalogue, WhatIsToleratedIsSoWhereThePageSays) {
    const std::vector<Cells> rows = rowsOfPage("tolerated in");
    EXPECT_FALSE(rows.empty());
    for (const Cells& cells : rows) {
        SCOPED_TRACE(cells.at(1));
        const std::vector<std::string> witnesses = quotedIn(cells.back());
        EXPECT_FALSE(witnesses.empty());
        for (const std::string& witness : witnesses) {
            if (isMade(witness)) {
                const std::string codes = codesOf(openMade(witness));
                for (const char* code :
                     {"number-jump", "stamps-disagree", "value-out-of-range", "trigger-outside", "channel-numbers"}) {
                    EXPECT_FALSE(isWordOf(codes, code)) << witness;
                }
            } else {
                EXPECT_NE(sourceOf(witness), "") << witness;
            }
        }
    }
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
