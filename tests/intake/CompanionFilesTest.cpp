#include "files/companionFiles.h"

#include "support/BoundByPermissions.h"
#include "support/FileLimits.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;
using OrvComtradeIntake::CompanionFiles;
using OrvComtradeIntake::findCompanions;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Findings;
using orvtest::TempDir;

/// Names in one folder, and what is found for one of them.
struct Row {
    const char* why;
    std::vector<std::string> present;
    std::string given;
    std::string cfg;
    std::string dat;
    std::string cff;
    std::vector<std::string> codes = {};
};

const Row kRows[] = {
    // Pairs
    {"lower case", {"a.cfg", "a.dat"}, "a.cfg", "a.cfg", "a.dat", ""},
    {"the data file given", {"a.cfg", "a.dat"}, "a.dat", "a.cfg", "a.dat", ""},
    {"upper .CFG with lower .dat", {"a.CFG", "a.dat"}, "a.CFG", "a.CFG", "a.dat", ""},
    {"upper case", {"A.CFG", "A.DAT"}, "A.CFG", "A.CFG", "A.DAT", ""},
    {"upper case, the data file given", {"A.CFG", "A.DAT"}, "A.DAT", "A.CFG", "A.DAT", ""},
    {".cfg with .DAT", {"a.cfg", "a.DAT"}, "a.cfg", "a.cfg", "a.DAT", ""},
    {"mixed case", {"a.Cfg", "a.DaT"}, "a.Cfg", "a.Cfg", "a.DaT", ""},
    {"given in another case than it has", {"a.CFG", "a.dat"}, "a.cfg", "a.CFG", "a.dat", ""},
    {"another file of the recording given", {"a.hdr", "a.cfg", "a.dat"}, "a.hdr", "a.cfg", "a.dat", ""},
    // Names in another case
    {"the name in another case", {"Rec1.cfg", "REC1.dat"}, "Rec1.cfg", "Rec1.cfg", "REC1.dat", ""},
    {"all in another case than given", {"REC1.CFG", "REC1.DAT"}, "rec1.cfg", "REC1.CFG", "REC1.DAT", ""},
    {"the .dat in another case given", {"Rec1.cfg", "REC1.dat"}, "REC1.dat", "Rec1.cfg", "REC1.dat", ""},
    {"the exact name wins", {"a.cfg", "A.dat", "a.DAT"}, "a.cfg", "a.cfg", "a.DAT", ""},
    {"the exact name wins in any case", {"a.cfg", "A.dat", "a.dAT"}, "a.cfg", "a.cfg", "a.dAT", ""},
    {"data of another recording", {"A.cfg", "a.cfg", "a.dat"}, "A.cfg", "A.cfg", "", ""},
    {"data of another recording, in any case", {"A.cfg", "a.CFG", "a.daT"}, "A.cfg", "A.cfg", "", ""},
    // Names
    {"double extension", {"x.evt.cfg", "x.evt.DAT", "x.dat"}, "x.evt.cfg", "x.evt.cfg", "x.evt.DAT", ""},
    {"commas", {"19,16T,C1.CFG", "19,16T,C1.DAT"}, "19,16T,C1.CFG", "19,16T,C1.CFG", "19,16T,C1.DAT", ""},
    {"blanks", {"a b .cfg", "a b .dat"}, "a b .cfg", "a b .cfg", "a b .dat", ""},
    {"Cyrillic letters (PSA)",
     {"\xD0\x9F\xD0\xA1\xD0\x90.cfg", "\xD0\x9F\xD0\xA1\xD0\x90.DAT"},
     "\xD0\x9F\xD0\xA1\xD0\x90.cfg",
     "\xD0\x9F\xD0\xA1\xD0\x90.cfg",
     "\xD0\x9F\xD0\xA1\xD0\x90.DAT",
     ""},
    {"a name of nothing but its extension", {".cfg", ".dat"}, ".cfg", ".cfg", ".dat", ""},
    {"a name that begins like another", {"a.cfg", "ab.dat", "a.b.dat"}, "a.cfg", "a.cfg", "", ""},
    // Several that fit
    {"the given .cfg wins", {"a.cfg", "a.CFG", "a.dat"}, "a.CFG", "a.CFG", "a.dat", ""},
    {"lower case before upper",
     {"a.cfg", "a.DAT", "a.dat"},
     "a.cfg",
     "a.cfg",
     "a.dat",
     "",
     {"companion-ambiguous: a.dat, a.DAT"}},
    {"upper case before mixed",
     {"a.cfg", "a.Dat", "a.DAT"},
     "a.cfg",
     "a.cfg",
     "a.DAT",
     "",
     {"companion-ambiguous: a.DAT, a.Dat"}},
    {"several in no usual case",
     {"a.cfg", "a.dAt", "a.DAt"},
     "a.cfg",
     "a.cfg",
     "a.DAt",
     "",
     {"companion-ambiguous: a.DAt, a.dAt"}},
    // Combined files
    {"a .cff", {"a.cff"}, "a.cff", "", "", "a.cff"},
    {"a .CFF", {"a.CFF"}, "a.CFF", "", "", "a.CFF"},
    {"a .cff given in another case", {"A.CFF"}, "a.cff", "", "", "A.CFF"},
    {"a .cff given beside a pair", {"a.cff", "a.cfg", "a.dat"}, "a.cff", "", "", "a.cff"},
    {"a pair beside a .cff", {"a.cff", "a.cfg", "a.dat"}, "a.cfg", "a.cfg", "a.dat", ""},
    {"a .dat with a .cff", {"a.cff", "a.dat"}, "a.dat", "", "a.dat", "a.cff"},
    {"a .cff that is not there, beside a pair", {"a.cfg", "a.dat"}, "a.cff", "a.cfg", "a.dat", ""},
    // Nothing to find
    {"configuration only", {"a.cfg"}, "a.cfg", "a.cfg", "", ""},
    {"data only", {"a.dat"}, "a.dat", "", "a.dat", ""},
    {"nothing at all", {}, "a.cfg", "", "", ""},
};

std::string inFolder(const TempDir& folder, const std::string& name) {
    return name.empty() ? "" : folder.file(name);
}

std::vector<std::string> textsOf(Findings& findings) {
    std::vector<std::string> texts;
    for (const Finding& finding : findings.take()) {
        texts.push_back(finding.code + ": " + finding.found);
    }
    return texts;
}

CompanionFiles companionsOf(const std::string& path) {
    Findings findings;
    return findCompanions(path, findings);
}

TEST(FindCompanions, FindsTheFilesOfARecording) {
    for (const Row& row : kRows) {
        const TempDir folder;
        for (const std::string& name : row.present) {
            folder.write(name, "x");
        }
        Findings findings;
        const CompanionFiles files = findCompanions(folder.file(row.given), findings);
        EXPECT_EQ(files.cfg, inFolder(folder, row.cfg)) << row.why;
        EXPECT_EQ(files.dat, inFolder(folder, row.dat)) << row.why;
        EXPECT_EQ(files.cff, inFolder(folder, row.cff)) << row.why;
        EXPECT_EQ(textsOf(findings), row.codes) << row.why;
    }
}

TEST(FindCompanions, ReportsWhichOfSeveralIsRead) {
    const TempDir folder;
    for (const char* const name : {"a.cfg", "a.dat", "a.DAT"}) {
        folder.write(name, "x");
    }
    Findings findings;
    findCompanions(folder.file("a.cfg"), findings);
    const std::vector<Finding> all = findings.take();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].place.file, folder.file("a.dat"));
    EXPECT_EQ(all[0].repair, "the first is read");
}

TEST(FindCompanions, TakesTwoNamesOfOneFileForOne) {
    const TempDir folder;
    folder.write("a.cfg", "x");
    folder.write("a.dat", "x");
    fs::create_hard_link(folder.file("a.dat"), folder.file("a.DAT"));
    Findings findings;
    EXPECT_EQ(findCompanions(folder.file("a.cfg"), findings).dat, folder.file("a.dat"));
    EXPECT_TRUE(findings.all().empty());
}

TEST(FindCompanions, FindsHeaderAndInformationFile) {
    const TempDir folder;
    for (const char* const name : {"a.cfg", "a.dat", "a.HDR", "a.Inf"}) {
        folder.write(name, "x");
    }
    const CompanionFiles files = companionsOf(folder.file("a.dat"));
    EXPECT_EQ(files.hdr, folder.file("a.HDR"));
    EXPECT_EQ(files.inf, folder.file("a.Inf"));
}

TEST(FindCompanions, TakesLinksAndNoFolders) {
    const TempDir folder;
    folder.write("original", "x");
    folder.write("a.cfg", "x");
    fs::create_directory(folder.file("a.dat"));
    fs::create_symlink("original", folder.file("a.DAT"));
    EXPECT_EQ(companionsOf(folder.file("a.cfg")).dat, folder.file("a.DAT"));
}

TEST(FindCompanions, TakesNoPipeAndNoDevice) {
    const TempDir folder;
    ASSERT_EQ(mkfifo(folder.file("a.cfg").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", folder.file("a.dat"));
    const CompanionFiles files = companionsOf(folder.file("a.cfg"));
    EXPECT_EQ(files.cfg, "");
    EXPECT_EQ(files.dat, "");
}

TEST(FindCompanions, TakesNoLinkThatLeadsNowhere) {
    const TempDir folder;
    folder.write("a.cfg", "x");
    fs::create_symlink("nothing", folder.file("a.dat"));
    EXPECT_EQ(companionsOf(folder.file("a.cfg")).dat, "");
}

TEST(FindCompanions, FindsUsualNamesInAFolderThatCannotBeListed) {
    const TempDir folder;
    folder.write("a.CFG", "x");
    folder.write("a.DAT", "x");
    folder.write("b.cfg", "x");
    folder.write("b.daT", "x");
    fs::permissions(folder.path(), fs::perms::owner_exec);
    {
        const orvtest::BoundByPermissions bound;
        const CompanionFiles files = companionsOf(folder.file("a.CFG"));
        EXPECT_EQ(files.cfg, folder.file("a.CFG"));
        EXPECT_EQ(files.dat, folder.file("a.DAT"));
        EXPECT_EQ(companionsOf(folder.file("b.cfg")).dat, "");
    }
    fs::permissions(folder.path(), fs::perms::owner_all);
}

TEST(FindCompanions, TakesNoEarlierErrorForOneOfTheFolder) {
    const TempDir folder;
    folder.write("b.cfg", "x");
    folder.write("b.daT", "x");
    errno = EIO;
    EXPECT_EQ(companionsOf(folder.file("b.cfg")).dat, folder.file("b.daT"));
}

TEST(FindCompanions, ThrowsWhereAFolderCannotBeListedForNow) {
    const TempDir folder;
    folder.write("a.CFG", "x");
    folder.write("a.DAT", "x");
    folder.write("b.cfg", "x");
    folder.write("b.daT", "x");
    const orvtest::NoFileHandles none;
    EXPECT_EQ(companionsOf(folder.file("a.CFG")).dat, folder.file("a.DAT"));
    EXPECT_THROW(companionsOf(folder.file("b.cfg")), std::system_error);
}

TEST(FindCompanions, TakesAPathWithoutAFolder) {
    const TempDir folder;
    folder.write("a.cfg", "x");
    folder.write("a.daT", "x");
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const CompanionFiles files = companionsOf("a.cfg");
    fs::current_path(before);
    EXPECT_EQ(files.cfg, "a.cfg");
    EXPECT_EQ(files.dat, "a.daT");
}

TEST(FindCompanions, NamesWhatMayBeMeantForWhatIsMissing) {
    const struct {
        const char* why;
        std::string given;
        std::vector<std::string> others;
        std::string expected;
    } rows[] = {
        {"an extension behind it", "rec.cfg", {"rec.DAT.txt"}, "rec.DAT.txt"},
        {"a number", "rec.cfg", {"rec.d00", "rec.D01"}, "rec.D01, rec.d00"},
        {"packed", "rec.cfg", {"rec.dat.gz", "rec.zip"}, "rec.dat.gz, rec.zip"},
        {"a copy of the configuration", "rec.dat", {"rec (1).cfg"}, "rec (1).cfg"},
        {"a copy of the data", "rec (2).dat", {"rec.cfg"}, "rec.cfg"},
        {"another copy", "rec.dat", {"Rec - Copy.cfg"}, "Rec - Copy.cfg"},
        {"the original of another copy", "Rec - Copy.dat", {"rec.cfg"}, "rec.cfg"},
        {"a text", "rec.dat", {"rec.cfg.txt", "rec.cfg~", "rec.cf_"}, "rec.cf_, rec.cfg.txt, rec.cfg~"},
        {"more than three", "a.cfg", {"a.d01", "a.d02", "a.d03", "a.d04"}, "a.d01, a.d02, a.d03, ..."},
        {"a name to be escaped", "a.cfg", {"a.dat\x1B"}, "a.dat\\x1B"},
        {"other files of the recording", "rec.cfg", {"rec.hdr", "rec.inf", "rec.csv", "rec.doc"}, ""},
        {"other recordings", "rec.cfg", {"rec2.dat", "rec.evt.dat", "re.dat", "rec (x).dat", "rec ().dat"}, ""},
        {"that of another recording", "REC.cfg", {"rec.cfg", "rec.dat"}, ""},
        {"a name of nothing but its extension", ".cfg", {"a.dat", "b.dat"}, ""},
    };
    for (const auto& row : rows) {
        const TempDir folder;
        folder.write(row.given, "x");
        for (const std::string& name : row.others) {
            folder.write(name, "x");
        }
        const std::string expected = row.expected.empty() ? "none" : row.expected;
        EXPECT_EQ(companionsOf(folder.file(row.given)).nearMisses, expected) << row.why;
    }
}

TEST(FindCompanions, NamesNothingInAFolderThatIsNotThere) {
    EXPECT_EQ(companionsOf("/nowhere/at/all.cfg").nearMisses, "none");
}

} // namespace
