#include "report/Findings.h"

#include "report/catalogue.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

using namespace OrvComtradeIntake;

namespace {

Place placeAt(const std::string& field, std::size_t line, const std::string& file = "a.cfg") {
    return {file, line, field, 10 * line};
}

} // namespace

TEST(FindingsAdd, TakesFromTheCatalogueWhatThePlaceDoesNotSay) {
    Findings findings;
    findings.add(Kind::Decimals, placeAt("A3", 7), {"5.5", "read exactly"});
    const Finding& finding = findings.all().at(0);
    EXPECT_EQ(finding.code, "decimals");
    EXPECT_EQ(finding.severity, Severity::Note);
    EXPECT_EQ(finding.rule, Rule::Standard);
    EXPECT_EQ(finding.clause, "8.4");
    EXPECT_EQ(finding.place.file, "a.cfg");
    EXPECT_EQ(finding.place.line, 7U);
    EXPECT_EQ(finding.place.field, "A3");
    EXPECT_EQ(finding.place.offset, 70U);
    EXPECT_EQ(finding.places, 1U);
    EXPECT_EQ(finding.found, "5.5");
    EXPECT_EQ(finding.expected, "an integer");
    EXPECT_EQ(finding.repair, "read exactly");
    EXPECT_EQ(finding.advice, "no action needed");
    findings.add(Kind::Decimals, placeAt("A4", 7), {"5.5", "", "a whole number"});
    EXPECT_EQ(findings.all().at(1).expected, "a whole number");
    findings.add(Kind::EmptyConfiguration, placeAt("", 1), {});
    EXPECT_EQ(findings.all().at(2).rule, Rule::Damage);
}

TEST(FindingsAdd, AlikeOnesBecomeOneAtTheFirstPlace) {
    Findings findings;
    findings.add(Kind::FieldEmpty, placeAt("uu", 3), {"first"});
    findings.add(Kind::DateFormat, placeAt("start", 9), {"another"});
    findings.add(Kind::FieldEmpty, placeAt("uu", 4), {"second"});
    findings.add(Kind::FieldEmpty, placeAt("uu", 5), {"third", "", "", 10});

    const std::vector<Finding> all = findings.take();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].code, "field-empty");
    EXPECT_EQ(all[0].place.line, 3U);
    EXPECT_EQ(all[0].found, "first");
    EXPECT_EQ(all[0].places, 12U);
    EXPECT_EQ(all[1].places, 1U);
}

TEST(FindingsAdd, OtherKindFieldOrFileIsAnotherOne) {
    Findings findings;
    findings.add(Kind::FieldEmpty, placeAt("uu", 3), {""});
    findings.add(Kind::FieldEmpty, placeAt("ph", 3), {""});
    findings.add(Kind::FieldMissing, placeAt("uu", 3), {""});
    findings.add(Kind::FieldEmpty, placeAt("uu", 3, "a.dat"), {""});
    EXPECT_EQ(findings.take().size(), 4U);
}

TEST(FindingsAdd, FieldAndFileAreToldApart) {
    Findings findings;
    findings.add(Kind::FieldEmpty, placeAt("a", 3, "bc"), {""});
    findings.add(Kind::FieldEmpty, placeAt("ab", 3, "c"), {""});
    EXPECT_EQ(findings.take().size(), 2U);
}

TEST(FindingsAdd, ARepairOfOnePlaceIsThatOfAll) {
    Findings findings;
    findings.add(Kind::Encoding, placeAt("", 1), {"CP866"});
    findings.add(Kind::Encoding, placeAt("", 2), {"CP866", "converted", "", 4});
    findings.add(Kind::Encoding, placeAt("", 3), {"CP866", "left alone"});
    const std::vector<Finding> all = findings.take();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].places, 6U);
    EXPECT_EQ(all[0].repair, "converted");
}

TEST(FindingsAdd, AMillionAlikeOnesAreOne) {
    Findings findings;
    for (std::size_t line = 1; line <= 1000000; ++line) {
        findings.add(Kind::BadDataLine, {"a.dat", line, "", 0}, {"no sample"});
    }
    const std::vector<Finding> all = findings.take();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].places, 1000000U);
}

TEST(FindingsAdd, ThoseOfAnotherCollectionComeBehind) {
    Findings first;
    first.add(Kind::FieldEmpty, placeAt("uu", 3), {""});
    Findings second;
    second.add(Kind::DateFormat, placeAt("start", 9), {""});
    second.add(Kind::FieldEmpty, placeAt("uu", 4), {"", "read as 0", "", 5});
    first.add(second);
    ASSERT_EQ(first.all().size(), 2U);
    EXPECT_EQ(first.all()[0].code, "field-empty");
    EXPECT_EQ(first.all()[0].places, 6U);
    EXPECT_EQ(first.all()[0].repair, "read as 0");
    EXPECT_EQ(first.all()[1].code, "date-format");
    EXPECT_EQ(second.all().size(), 2U);
}

TEST(FindingsTake, LeavesNone) {
    Findings findings;
    findings.add(Kind::UnknownCounts, placeAt("TT", 2), {""});
    EXPECT_TRUE(findings.has(Kind::UnknownCounts));
    EXPECT_FALSE(findings.has(Kind::Counts));
    EXPECT_EQ(findings.take().size(), 1U);
    EXPECT_FALSE(findings.has(Kind::UnknownCounts));
    findings.add(Kind::UnknownCounts, placeAt("TT", 2), {""});
    const std::vector<Finding> all = findings.take();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].places, 1U);
}

TEST(FindingsAdd, RowsOfTheCatalogueStandInTheOrderOfTheKinds) {
    EXPECT_STREQ(catalogue(Kind::NoSuchFile).code, "no-such-file");
    EXPECT_STREQ(catalogue(Kind::LineEnds).code, "line-ends");
    EXPECT_STREQ(catalogue(Kind::Revision).code, "revision");
    EXPECT_STREQ(catalogue(Kind::DataMismatch).code, "data-mismatch");
    EXPECT_STREQ(catalogue(Kind::NumberJump).code, "number-jump");
    EXPECT_STREQ(catalogue(Kind::MissingValues).code, "missing-values");
    EXPECT_STREQ(catalogue(Kind::SurplusColumns).code, "surplus-columns");
}

TEST(Escaped, EscapesWhatIsNoText) {
    const struct {
        const char* why;
        std::string bytes;
        const char* expected;
    } rows[] = {
        {"ASCII stays", "kV 1", "kV 1"},
        {"well-formed UTF-8 stays", "\xD0\x9F\xC2\xB0", "\xD0\x9F\xC2\xB0"},
        {"other bytes", "a\xE9\x62", "a\\xE9b"},
        {"a character cut short", "\xD0", "\\xD0"},
        {"control characters", std::string("\0\r\n\x1A\x7F", 5), "\\x00\\x0D\\x0A\\x1A\\x7F"},
        {"control characters of two bytes", "\xC2\x85", "\\xC2\\x85"},
        {"an over-long form", "\xC0\x80", "\\xC0\\x80"},
        {"a surrogate", "\xED\xA0\x80", "\\xED\\xA0\\x80"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(escaped(row.bytes), row.expected) << row.why;
    }
}

TEST(Escaped, StopsAtTheMostBytesWithoutCuttingACharacter) {
    EXPECT_EQ(escaped("abcdef", 6), "abcdef");
    EXPECT_EQ(escaped("abcdefg", 6), "abcdef...");
    EXPECT_EQ(escaped("abcde\xD0\x9F", 6), "abcde...");
    EXPECT_EQ(escaped("abcd\xFF"
                      "e",
                      6),
              "abcd...");
}
