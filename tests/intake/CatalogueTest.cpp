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

/// The rows of the page's tables of findings.
std::vector<Cells> rowsOfPage() {
    std::istringstream page(bytesOf(kRoot + "/docs/findings.md"));
    std::vector<Cells> rows;
    bool isWanted = false;
    for (std::string line; std::getline(page, line);) {
        const Cells cells = line.compare(0, 1, "|") == 0 ? cellsOf(line) : Cells();
        if (isWanted && !cells.empty() && cells.back().find("---") == std::string::npos) {
            rows.push_back(cells);
        }
        isWanted = !cells.empty() && (isWanted || cells.front() == "finding");
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

/// What shows something: recordings in tests/recordings that have the same fault as real ones, or tests.
struct Witnessed {
    std::string what;
    std::vector<std::string> witnesses;
};

const std::vector<Witnessed> kKinds = {
    {"no-such-file", {"FindRecording.SaysWhyThereIsNoRecording"}},
    {"not-a-recording", {"FindRecording.SaysWhyThereIsNoRecording"}},
    {"no-cfg", {"FindRecording.SaysWhyThereIsNoRecording"}},
    {"empty-cfg", {"FindRecording.SaysThatAConfigurationIsEmpty"}},
    {"no-permission", {"FindRecording.SaysWhyThereIsNoRecording"}},
    {"not-a-file", {"FindRecording.SaysWhyThereIsNoRecording"}},
    {"file-changed", {"OpenOfAChangingFile.EndsWithAFindingWheneverTheChangeComes"}},
    {"unreadable", {"FindRecording.SaysWhyThereIsNoRecording"}},
    {"no-data", {"configuration-only"}},
    {"no-samples", {"SurveyAscii.IsAnErrorWithoutAWholeLine"}},
    {"companion-ambiguous", {"FindCompanions.ReportsWhichOfSeveralIsRead"}},
    {"section-heading", {"ReadCombinedFile.ReportsHeadingsWithOtherDashes"}},
    {"section-length", {"ReadCombinedFile.FollowsAByteCountWhereASectionEndsThere"}},
    {"base64", {"cff-base64-padding"}},
    {"limit-exceeded", {"OpenLimits.RefuseWhatGoesBeyondAndTellTheirName"}},
    {"findings-left-out", {"FindingsLimit.KeepsErrorsAndCountsTheRest"}},
    {"line-ends", {"2001-binary"}},
    {"byte-order-mark", {"ReadCfgText.CutsLinesAndKeepsTheirPlaces"}},
    {"control-characters", {"ReadCfgText.CutsLinesAndKeepsTheirPlaces"}},
    {"blank-lines", {"83-rates-blank-lines"}},
    {"encoding", {"1991-ascii-cp866", "gbk-binary-4-rates"}},
    {"damaged-text", {"ReadCfgText.Utf16ThatIsCutInACharacterIsDamaged"}},
    {"separators", {"ReadCfg.SemicolonsAndTabsSeparateFieldsAsCommasDo"}},
    {"quotes", {"ReadCfg.QuotationMarksAroundFieldsAreLeftOut"}},
    {"extra-text", {"words-for-the-time-code"}},
    {"revision", {"2001-binary"}},
    {"layout", {"one-record-more"}},
    {"counts", {"ReadCfg.CountsLine"}},
    {"unknown-counts", {"ReadCfg.ChannelsThatCannotBeMadeOutAreAnError"}},
    {"comma-in-text", {"fourteen-fields"}},
    {"decimal-comma", {"ReadCfg.DecimalCommasInAnAnalogLine"}},
    {"ambiguous-commas", {"ReadCfg.CommasThatCanBeTakenInNoOneWayAreAnError"}},
    {"field-empty", {"ReadCfg.AnalogLine"}},
    {"field-missing", {"ReadCfg.StatusLine"}},
    {"field-malformed", {"fourteen-fields"}},
    {"channel-numbers", {"ReadCfg.ChannelNumbersThatDoNotGrowAreOneFindingForEachKind"}},
    {"date-format", {"month-before-day"}},
    {"date-unset", {"trigger-unset"}},
    {"date-unknown", {"rate-0.0-no-such-month"}},
    {"type-word", {"ReadCfg.DataType"}},
    {"side", {"ReadCfg.AnalogLine"}},
    {"ratio", {"LibraryForm.Sides"}},
    {"rates-as-lengths", {"ends-per-segment"}},
    {"rate-zero", {"ReadCfg.FrequencyAndRates"}},
    {"time-multiplier", {"ReadCfg.LinesBehindTheType"}},
    {"trigger-outside", {"declared-885-holds-8"}},
    {"empty-rate", {"gbk-ascii-stamps-begin-again"}},
    {"time-lines", {"no-time-lines"}},
    {"data-mismatch", {"DataFormOf.RecordsOfAnotherLayoutAreAnError"}},
    {"record-layout", {"DataFormOf.RecordsOfAnotherLayoutAreAnError"}},
    {"record-padding", {"cff-base64-padding"}},
    {"unused-bits", {"upper-case-binary32-crlf"}},
    {"number-jump", {"DamagedRecords.LostAndRepeatedOnesAreErrors"}},
    {"shifted-records", {"DamagedRecords.BytesLostAnywhereEndTheSamplesBeforeThem"}},
    {"samples-lost", {"declared-885-holds-8"}},
    {"sample-count", {"one-record-more"}},
    {"stray-bytes", {"rate-0-tail"}},
    {"record-cut", {"DamagedRecords.CutAnywhereAreThoseThatAreWhole"}},
    {"stamps-disagree", {"gbk-ascii-stamps-begin-again"}},
    {"stamp-backwards", {"SurveyStamps.FindsWhatIsOddOfRecords"}},
    {"stamp-gap", {"SurveyStamps.FindsWhatIsOddOfRecords"}},
    {"stamp-constant", {"SurveyStamps.FindsTheSameTimeInEverySample"}},
    {"stamp-missing", {"SurveyStamps.FindsWhatIsOddOfATextAndHowItIsRead"}},
    {"no-times", {"SurveyStamps.IsAnErrorWhereNothingGivesTheTimes"}},
    {"stamp-wrap", {"SurveyStamps.FindsWhatIsOddOfRecords"}},
    {"stamp-range", {"SurveyStamps.FindsWhatIsOddOfATextAndHowItIsRead"}},
    {"stamp-decimals", {"SurveyStamps.FindsWhatIsOddOfATextAndHowItIsRead"}},
    {"value-out-of-range", {"value-beyond-max"}},
    {"infinite-values", {"CheckValues.ReportsInfiniteValuesByChannel"}},
    {"all-zero", {"CheckValues.FindsWhatNeverChanges"}},
    {"constant-channel", {"rate-0-tail"}},
    {"missing-values", {"missing-99999", "missing-80000000"}},
    {"bad-data-line", {"SurveyAscii.FindingsHaveTheirPlaces"}},
    {"short-data-line", {"SurveyAscii.FindingsHaveTheirPlaces"}},
    {"empty-data-field", {"SurveyAscii.FindingsHaveTheirPlaces"}},
    {"status-value", {"SurveyAscii.FindingsHaveTheirPlaces"}},
    {"decimals", {"decimals-plus-signs"}},
    {"surplus-columns", {"SurveyAscii.FindingsHaveTheirPlaces"}},
};

/// What looks wrong, is sound, and gives no finding of the data.
const std::vector<Witnessed> kTolerated = {
    {"sample numbers: a first number other than 1", {"1991-ascii-cp866"}},
    {"sample numbers: any constant step, 0 too", {"NumberWatch.ToleratesWhatRecordersDo"}},
    {"sample numbers: a new count where the rate changes", {"NumberWatch.ToleratesWhatRecordersDo"}},
    {"sample numbers: a count that begins again after 65535, 99999, 999999 or 2^32 - 1",
     {"NumberWatch.ToleratesWhatRecordersDo"}},
    {"stamps where rates are known: no stamps, or all the same", {"empty-fields-0x1a", "constant-zero-stamps"}},
    {"stamps where rates are known: any first stamp, negative ones too", {"range-in-units"}},
    {"stamps where rates are known: stamps that wrap at 32 bits", {"StampWatch.ToleratesWhatRecordersDo"}},
    {"stamps where rates are known: stamps that count samples, milliseconds or nanoseconds, or leave the multiplier "
     "out",
     {"stamps-in-milliseconds", "float32-nanoseconds"}},
    {"stamps where rates are known: steps off by less than half a sample, or by less than the clock's own step",
     {"travelling-wave-2013"}},
    {"range of a channel: none, or one without width", {"trailing-points"}},
    {"range of a channel: the range of an encoding: 32767, 99999, 2147483647 and the like",
     {"range-of-binary-in-binary32"}},
    {"range of a channel: values outside by rounding", {"float32-nanoseconds"}},
    {"range of a channel: a range outside of which a tenth of the values lie", {"range-in-units"}},
    {"trigger: outside by one sample or 1 ms", {"Open.TriggerOutsideByASampleOrAMillisecondIsRoundedAndNoFinding"}},
    {"channel numbers: any that increase", {"trigger-unset"}},
};

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
    for (const Cells& cells : rowsOfPage()) {
        rows.push_back({cells.at(0), cells.at(1)});
    }
    EXPECT_EQ(rows, rowsOfCatalogue());
}

TEST(Catalogue, EachKindHasWitnesses) {
    std::vector<std::string> codes;
    std::vector<std::string> expected;
    for (const Witnessed& kind : kKinds) {
        SCOPED_TRACE(kind.what);
        codes.push_back(kind.what);
        expected.emplace_back(OrvComtradeIntake::catalogue(static_cast<Kind>(expected.size())).code);
        EXPECT_FALSE(kind.witnesses.empty());
        for (const std::string& witness : kind.witnesses) {
            if (isMade(witness)) {
                EXPECT_TRUE(isWordOf(codesOf(openMade(witness)), kind.what)) << witness;
            } else {
                EXPECT_NE(sourceOf(witness).find(kind.what), std::string::npos) << witness;
            }
        }
    }
    EXPECT_EQ(codes.size(), static_cast<std::size_t>(Kind::Count));
    EXPECT_EQ(codes, expected);
}

TEST(Catalogue, WhatIsToleratedGivesNoFinding) {
    for (const Witnessed& tolerated : kTolerated) {
        SCOPED_TRACE(tolerated.what);
        for (const std::string& witness : tolerated.witnesses) {
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
