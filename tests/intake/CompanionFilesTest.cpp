#include "companionFiles.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using OrvComtradeIntake::CompanionFiles;
using OrvComtradeIntake::findCompanions;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Findings;
using OrvComtradeIntake::Severity;

/// Names in one folder, and what is found for one of them.
struct Row {
    const char* why;
    std::vector<std::string> present;
    std::string given;
    std::string cfg;
    std::string dat;
    std::string cff;
    bool named;
    std::vector<std::string> codes;
};

const Row kRows[] = {
    // Pairs that the library finds by itself
    {"lower case", {"a.cfg", "a.dat"}, "a.cfg", "a.cfg", "a.dat", "", true, {}},
    {"the data file given", {"a.cfg", "a.dat"}, "a.dat", "a.cfg", "a.dat", "", true, {}},
    {"upper .CFG with lower .dat", {"a.CFG", "a.dat"}, "a.CFG", "a.CFG", "a.dat", "", true, {}},
    // Pairs that it does not
    {"upper case", {"A.CFG", "A.DAT"}, "A.CFG", "A.CFG", "A.DAT", "", false, {"companion-case"}},
    {"upper case, the data file given", {"A.CFG", "A.DAT"}, "A.DAT", "A.CFG", "A.DAT", "", false, {"companion-case"}},
    {".cfg with .DAT", {"a.cfg", "a.DAT"}, "a.cfg", "a.cfg", "a.DAT", "", false, {"companion-case"}},
    {"mixed case", {"a.Cfg", "a.DaT"}, "a.Cfg", "a.Cfg", "a.DaT", "", false, {"companion-case"}},
    {"given in another case than it has", {"a.CFG", "a.dat"}, "a.cfg", "a.CFG", "a.dat", "", true, {}},
    // Names in another case
    {"the name in another case",
     {"Rec1.cfg", "REC1.dat"},
     "Rec1.cfg",
     "Rec1.cfg",
     "REC1.dat",
     "",
     false,
     {"companion-case"}},
    {"all in another case than given",
     {"REC1.CFG", "REC1.DAT"},
     "rec1.cfg",
     "REC1.CFG",
     "REC1.DAT",
     "",
     false,
     {"companion-case"}},
    {"the .dat in another case given",
     {"Rec1.cfg", "REC1.dat"},
     "REC1.dat",
     "Rec1.cfg",
     "REC1.dat",
     "",
     false,
     {"companion-case"}},
    {"the exact name wins", {"a.cfg", "A.dat", "a.DAT"}, "a.cfg", "a.cfg", "a.DAT", "", false, {"companion-case"}},
    {"data of another recording", {"A.cfg", "a.cfg", "a.dat"}, "A.cfg", "A.cfg", "", "", false, {}},
    // Names
    {"double extension",
     {"x.evt.cfg", "x.evt.DAT", "x.dat"},
     "x.evt.cfg",
     "x.evt.cfg",
     "x.evt.DAT",
     "",
     false,
     {"companion-case"}},
    {"commas",
     {"19,16T,C1.CFG", "19,16T,C1.DAT"},
     "19,16T,C1.CFG",
     "19,16T,C1.CFG",
     "19,16T,C1.DAT",
     "",
     false,
     {"companion-case"}},
    {"blanks", {"a b .cfg", "a b .dat"}, "a b .cfg", "a b .cfg", "a b .dat", "", true, {}},
    {"Cyrillic letters (PSA)",
     {"\xD0\x9F\xD0\xA1\xD0\x90.cfg", "\xD0\x9F\xD0\xA1\xD0\x90.DAT"},
     "\xD0\x9F\xD0\xA1\xD0\x90.cfg",
     "\xD0\x9F\xD0\xA1\xD0\x90.cfg",
     "\xD0\x9F\xD0\xA1\xD0\x90.DAT",
     "",
     false,
     {"companion-case"}},
    {"a name of nothing but its extension", {".cfg", ".dat"}, ".cfg", ".cfg", ".dat", "", true, {}},
    {"a name that begins like another", {"a.cfg", "ab.dat"}, "a.cfg", "a.cfg", "", "", false, {}},
    // Several that fit
    {"the given .cfg wins", {"a.cfg", "a.CFG", "a.dat"}, "a.CFG", "a.CFG", "a.dat", "", true, {}},
    {"lower case before upper",
     {"a.cfg", "a.DAT", "a.dat"},
     "a.cfg",
     "a.cfg",
     "a.dat",
     "",
     true,
     {"companion-ambiguous"}},
    {"upper case before mixed",
     {"a.cfg", "a.Dat", "a.DAT"},
     "a.cfg",
     "a.cfg",
     "a.DAT",
     "",
     false,
     {"companion-ambiguous", "companion-case"}},
    // Combined files
    {"a .cff", {"a.cff"}, "a.cff", "", "", "a.cff", true, {}},
    {"a .CFF", {"a.CFF"}, "a.CFF", "", "", "a.CFF", true, {}},
    {"a .cff given beside a pair", {"a.cff", "a.cfg", "a.dat"}, "a.cff", "", "", "a.cff", true, {}},
    {"a pair beside a .cff", {"a.cff", "a.cfg", "a.dat"}, "a.cfg", "a.cfg", "a.dat", "", true, {}},
    {"a .dat with a .cff", {"a.cff", "a.dat"}, "a.dat", "", "a.dat", "a.cff", true, {}},
    {"a .cff that is not there, beside a pair", {"a.cfg", "a.dat"}, "a.cff", "a.cfg", "a.dat", "", true, {}},
    // Nothing to find
    {"configuration only", {"a.cfg"}, "a.cfg", "a.cfg", "", "", false, {}},
    {"data only", {"a.dat"}, "a.dat", "", "a.dat", "", true, {"no-cfg"}},
    {"nothing at all", {}, "a.cfg", "", "", "", true, {"no-cfg"}},
    {"no extension", {"a", "a.cfg", "a.dat"}, "a", "", "", "", true, {"no-cfg"}},
    {"another extension", {"a.hdr", "a.cfg", "a.dat"}, "a.hdr", "", "", "", true, {"no-cfg"}},
};

std::string inFolder(const orvtest::TempDir& folder, const std::string& name) {
    return name.empty() ? "" : folder.file(name);
}

std::vector<std::string> codesOf(const std::vector<Finding>& findings) {
    std::vector<std::string> codes;
    std::transform(findings.begin(), findings.end(), std::back_inserter(codes),
                   [](const Finding& finding) { return finding.code; });
    return codes;
}

TEST(FindCompanions, FindsTheFilesOfARecording) {
    for (const Row& row : kRows) {
        const orvtest::TempDir folder;
        for (const std::string& name : row.present) {
            folder.write(name, "x");
        }
        Findings findings;
        const CompanionFiles files = findCompanions(folder.file(row.given), findings);
        EXPECT_EQ(files.cfg, inFolder(folder, row.cfg)) << row.why;
        EXPECT_EQ(files.dat, inFolder(folder, row.dat)) << row.why;
        EXPECT_EQ(files.cff, inFolder(folder, row.cff)) << row.why;
        EXPECT_EQ(files.named, row.named) << row.why;
        EXPECT_EQ(codesOf(findings.take()), row.codes) << row.why;
    }
}

TEST(FindCompanions, SaysWhichNameTheLibraryWouldLookFor) {
    const orvtest::TempDir folder;
    folder.write("a.cfg", "x");
    folder.write("a.DAT", "x");
    Findings findings;
    findCompanions(folder.file("a.cfg"), findings);
    const std::vector<Finding> all = findings.take();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].severity, Severity::Warning);
    EXPECT_TRUE(all[0].mended);
    EXPECT_EQ(all[0].file, folder.file("a.DAT"));
    EXPECT_EQ(all[0].found, "a.DAT");
    EXPECT_EQ(all[0].expected, "a.dat");
}

TEST(FindCompanions, SaysThatThereIsNoConfiguration) {
    Findings findings;
    findCompanions("/nowhere/at/all.cfg", findings);
    const std::vector<Finding> all = findings.take();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].severity, Severity::Error);
    EXPECT_EQ(all[0].code, "no-cfg");
    EXPECT_EQ(all[0].file, "/nowhere/at/all.cfg");
}

TEST(FindCompanions, TakesLinksAndNoFolders) {
    const orvtest::TempDir folder;
    folder.write("original", "x");
    folder.write("a.cfg", "x");
    fs::create_directory(folder.file("a.dat"));
    fs::create_symlink("original", folder.file("a.DAT"));
    Findings findings;
    const CompanionFiles files = findCompanions(folder.file("a.cfg"), findings);
    EXPECT_EQ(files.dat, folder.file("a.DAT"));
    EXPECT_FALSE(files.named);
}

TEST(FindCompanions, TakesNoPipeAndNoDevice) {
    const orvtest::TempDir folder;
    ASSERT_EQ(mkfifo(folder.file("a.cfg").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", folder.file("a.dat"));
    Findings findings;
    const CompanionFiles files = findCompanions(folder.file("a.cfg"), findings);
    EXPECT_EQ(files.cfg, "");
    EXPECT_EQ(files.dat, "");
    EXPECT_EQ(codesOf(findings.take()), std::vector<std::string>{"no-cfg"});
}

TEST(FindCompanions, TakesNoLinkThatLeadsNowhere) {
    const orvtest::TempDir folder;
    folder.write("a.cfg", "x");
    fs::create_symlink("nothing", folder.file("a.dat"));
    Findings findings;
    EXPECT_EQ(findCompanions(folder.file("a.cfg"), findings).dat, "");
}

TEST(FindCompanions, FindsUsualNamesInAFolderThatCannotBeListed) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "permissions do not bind root";
    }
    const orvtest::TempDir folder;
    folder.write("a.CFG", "x");
    folder.write("a.DAT", "x");
    fs::permissions(folder.path(), fs::perms::owner_exec);
    Findings findings;
    const CompanionFiles files = findCompanions(folder.file("a.CFG"), findings);
    fs::permissions(folder.path(), fs::perms::owner_all);
    EXPECT_EQ(files.cfg, folder.file("a.CFG"));
    EXPECT_EQ(files.dat, folder.file("a.DAT"));
}

TEST(FindCompanions, TakesAPathWithoutAFolder) {
    const orvtest::TempDir folder;
    folder.write("a.cfg", "x");
    folder.write("a.daT", "x");
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    Findings findings;
    const CompanionFiles files = findCompanions("a.cfg", findings);
    fs::current_path(before);
    EXPECT_EQ(files.cfg, "a.cfg");
    EXPECT_EQ(files.dat, "a.daT");
}

} // namespace
