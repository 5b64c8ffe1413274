#include "Findings.h"

#include <gtest/gtest.h>

#include <string>

using namespace OrvComtradeIntake;

namespace {

Finding finding(const std::string& code, const std::string& field, std::size_t line,
                Severity severity = Severity::Warning) {
    Finding made;
    made.severity = severity;
    made.code = code;
    made.file = "a.cfg";
    made.field = field;
    made.line = line;
    return made;
}

} // namespace

TEST(FindingsAdd, AlikeOnesBecomeOneAtTheFirstPlace) {
    Findings findings;
    findings.add(finding("blanks", "uu", 3));
    findings.add(finding("date", "start", 9));
    findings.add(finding("blanks", "uu", 4));
    findings.add(finding("blanks", "uu", 5));

    const std::vector<Finding> all = findings.take();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].code, "blanks");
    EXPECT_EQ(all[0].line, 3U);
    EXPECT_EQ(all[0].places, 3U);
    EXPECT_EQ(all[1].places, 1U);
}

TEST(FindingsAdd, OtherCodeFieldFileOrSeverityIsAnotherOne) {
    Findings findings;
    findings.add(finding("blanks", "uu", 3));
    findings.add(finding("blanks", "ph", 3));
    findings.add(finding("date", "uu", 3));
    findings.add(finding("blanks", "uu", 3, Severity::Note));
    Finding elsewhere = finding("blanks", "uu", 3);
    elsewhere.file = "a.dat";
    findings.add(elsewhere);
    EXPECT_EQ(findings.take().size(), 5U);
}

TEST(FindingsAdd, OneMendedPlaceMendsAll) {
    Findings findings;
    findings.add(finding("encoding", "", 1));
    EXPECT_FALSE(findings.anyMended());
    Finding mended = finding("encoding", "", 2);
    mended.mended = true;
    mended.places = 4;
    findings.add(mended);
    EXPECT_TRUE(findings.anyMended());
    const std::vector<Finding> all = findings.take();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].places, 5U);
    EXPECT_TRUE(all[0].mended);
}

TEST(FindingsAdd, AMillionAlikeOnesAreOne) {
    Findings findings;
    for (std::size_t line = 1; line <= 1000000; ++line)
        findings.add(finding("bad-data-line", "", line));
    const std::vector<Finding> all = findings.take();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].places, 1000000U);
}

TEST(FindingsTake, LeavesNone) {
    Findings findings;
    findings.add(finding("counts", "TT", 2, Severity::Error));
    EXPECT_TRUE(findings.anyError());
    EXPECT_EQ(findings.take().size(), 1U);
    EXPECT_FALSE(findings.anyError());
    findings.add(finding("counts", "TT", 2, Severity::Error));
    EXPECT_EQ(findings.take().size(), 1U);
}

TEST(Shown, EscapesWhatIsNoText) {
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
    for (const auto& row : rows)
        EXPECT_EQ(shown(row.bytes), row.expected) << row.why;
}

TEST(Shown, StopsAtTheMostBytesWithoutCuttingACharacter) {
    EXPECT_EQ(shown("abcdef", 6), "abcdef");
    EXPECT_EQ(shown("abcdefg", 6), "abcdef...");
    EXPECT_EQ(shown("abcde\xD0\x9F", 6), "abcde...");
}
