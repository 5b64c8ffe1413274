#include "files/recordingFiles.h"

#include "support/AllocationBudget.h"
#include "support/BoundByPermissions.h"
#include "support/FailingReads.h"
#include "support/FileLimits.h"
#include "support/OpenFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <new>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using OrvComtradeIntake::Bytes;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Findings;
using OrvComtradeIntake::findRecording;
using OrvComtradeIntake::RecordingFiles;
using OrvComtradeIntake::recordingOf;
using OrvComtradeIntake::Severity;
using orvtest::openFiles;
using orvtest::TempDir;
using Texts = std::vector<std::string>;

const std::string kCfg = "S,R,1999\n1,1A,0D\n";
const std::string kDat = "1,0,5\n";
const std::string kCff = "--- file type: CFG ---\n" + kCfg + "--- file type: HDR ---\nh\n--- file type: INF ---\ni\n";

/// What is found for a path or for bytes.
struct Found {
    explicit Found(const std::string& path) {
        Findings collected;
        files = findRecording(path, collected);
        findings = collected.take();
    }
    explicit Found(const Bytes& bytes) {
        Findings collected;
        files = recordingOf(bytes, collected);
        findings = collected.take();
    }

    Texts texts() const {
        Texts texts;
        for (const Finding& finding : findings) {
            texts.push_back(finding.code + ": " + finding.found);
        }
        return texts;
    }
    std::string data() const { return files && files->data ? files->data->all() : "none"; }

    std::optional<RecordingFiles> files;
    std::vector<Finding> findings;
};

TEST(FindRecording, OpensAPair) {
    const TempDir folder;
    folder.write("a.cfg", kCfg);
    folder.write("a.DAT", kDat);
    folder.write("a.hdr", "header");
    folder.write("a.INF", "information");
    for (const char* const name : {"a.cfg", "a.DAT", "a.dat", "a.hdr", "a.inf"}) {
        const Found found(folder.file(name));
        ASSERT_TRUE(found.files) << name;
        EXPECT_EQ(found.texts(), Texts{}) << name;
        EXPECT_EQ(found.files->cfgFile, folder.file("a.cfg")) << name;
        EXPECT_EQ(found.files->datFile, folder.file("a.DAT")) << name;
        EXPECT_EQ(found.files->cfg.all(), kCfg) << name;
        EXPECT_EQ(found.files->cfg.lineInFile(1), 1U) << name;
        EXPECT_EQ(found.data(), kDat) << name;
        EXPECT_EQ(found.files->dataFormat, "") << name;
        EXPECT_EQ(found.files->hdr, "header") << name;
        EXPECT_EQ(found.files->inf, "information") << name;
    }
}

TEST(FindRecording, OpensACombinedFile) {
    const TempDir folder;
    const std::string path = folder.write("a.CFF", kCff + "--- file type: DAT binary: 3 ---\n\x01\x02\x03");
    const Found found(path);
    ASSERT_TRUE(found.files);
    EXPECT_EQ(found.texts(), Texts{});
    EXPECT_EQ(found.files->cfgFile, path);
    EXPECT_EQ(found.files->datFile, path);
    EXPECT_EQ(found.files->cfg.all(), kCfg);
    EXPECT_EQ(found.files->cfg.lineInFile(1), 2U);
    EXPECT_EQ(found.data(), "\x01\x02\x03");
    EXPECT_EQ(found.files->dataFormat, "BINARY");
    EXPECT_EQ(found.files->hdr, "h\n");
    EXPECT_EQ(found.files->inf, "i\n");
    EXPECT_FALSE(found.files->isNamedForLibrary);
}

TEST(FindRecording, KnowsACombinedFileUnderAnotherName) {
    const TempDir folder;
    folder.write("a.cfg", kCff + "--- file type: DAT ASCII ---\n" + kDat);
    folder.write("a.dat", "other");
    const Found found(folder.file("a.cfg"));
    EXPECT_EQ(found.data(), kDat);
    EXPECT_EQ(found.texts(), Texts{});
}

TEST(FindRecording, KnowsWhichPairsTheLibraryFinds) {
    const struct {
        const char* cfg;
        const char* dat;
        const char* given;
        bool isNamed;
    } rows[] = {
        {"a.cfg", "a.dat", "a.cfg", true},  {"a.cfg", "a.dat", "a.dat", true},  {"a.cfg", "a.dat", "a.cff", true},
        {"a.CFG", "a.dat", "a.CFG", true},  {"a.CFG", "a.dat", "a.dat", false}, {"a.CFG", "a.dat", "a.cfg", false},
        {"a.cfg", "a.DAT", "a.cfg", false}, {"a.cfg", "a.DAT", "a.DAT", true},  {"a.cfg", "A.dat", "a.cfg", false},
        {"a.CFG", "a.DAT", "a.CFG", false}, {"a.CFG", "a.DAT", "a.DAT", false},
    };
    for (const auto& row : rows) {
        const TempDir folder;
        folder.write(row.cfg, kCfg);
        folder.write(row.dat, kDat);
        const Found found(folder.file(row.given));
        ASSERT_TRUE(found.files);
        EXPECT_EQ(found.files->isNamedForLibrary, row.isNamed) << row.cfg << ' ' << row.dat << ' ' << row.given;
    }
}

TEST(FindRecording, KeepsLongTextsWhole) {
    const TempDir folder;
    folder.write("a.cfg", kCfg);
    folder.write("a.dat", kDat);
    folder.write("a.hdr", std::string(1048576, 'h'));
    folder.write("a.inf", std::string(1048577, 'i'));
    const Found found(folder.file("a.cfg"));
    ASSERT_TRUE(found.files);
    EXPECT_TRUE(found.files->hdr == std::string(1048576, 'h'));
    EXPECT_TRUE(found.files->inf == std::string(1048577, 'i'));
}

TEST(FindRecording, ReportsDataThatAreMissing) {
    const TempDir folder;
    folder.write("a.cfg", kCfg);
    folder.write("b.cfg", kCfg);
    folder.write("b.dat.gz", "x");
    folder.write("c.cff", kCff);
    EXPECT_EQ(Found(folder.file("a.cfg")).texts(), Texts{"no-data: none"});
    EXPECT_EQ(Found(folder.file("b.cfg")).texts(), Texts{"no-data: b.dat.gz"});
    EXPECT_EQ(Found(folder.file("c.cff")).texts(), Texts{"no-data: none"});
    const Found found(folder.file("a.cfg"));
    ASSERT_TRUE(found.files);
    EXPECT_FALSE(found.files->data);
    EXPECT_EQ(found.files->datFile, "");
    EXPECT_EQ(found.findings.at(0).severity, Severity::Warning);
    EXPECT_EQ(found.findings.at(0).place.file, folder.file("a.cfg"));
    EXPECT_EQ(found.findings.at(0).repair, ""); // nothing makes up for them
}

TEST(FindRecording, TakesAnEmptyDataFile) {
    const TempDir folder;
    folder.write("a.cfg", kCfg);
    folder.write("a.dat", "");
    const Found found(folder.file("a.cfg"));
    EXPECT_EQ(found.data(), "");
    EXPECT_EQ(found.texts(), Texts{});
}

TEST(FindRecording, SaysWhyThereIsNoRecording) {
    const TempDir folder;
    folder.write("data.dat", kDat);
    folder.write("copied.dat", kDat);
    folder.write("copied (1).cfg", kCfg);
    folder.write("note.txt", "x");
    folder.write("none", "x");
    folder.write("bare.cff", kCfg);
    fs::create_directory(folder.file("folder.cfg"));
    fs::create_symlink("round.cfg", folder.file("round.cfg"));
    const struct {
        std::string path;
        Texts texts;
    } rows[] = {
        {folder.file("absent.cfg"), {"no-such-file: No such file or directory"}},
        {folder.file("absent.txt"), {"no-such-file: No such file or directory"}},
        {folder.file("note.txt/a.cfg"), {"no-such-file: Not a directory"}},
        {"", {"no-such-file: No such file or directory"}},
        {folder.file("data.dat"), {"no-cfg: none"}},
        {folder.file("copied.dat"), {"no-cfg: copied (1).cfg"}},
        {folder.file("note.txt"), {"not-a-recording: the extension .txt"}},
        {folder.file("none"), {"not-a-recording: no extension"}},
        {folder.file("bare.cff"), {"no-cfg: no heading of a section"}},
        {folder.file("folder.cfg"), {"not-a-file: Is a directory"}},
        {folder.path(), {"not-a-file: Is a directory"}},
        {folder.file("round.cfg"), {"unreadable: Too many levels of symbolic links"}},
        {"/dev/null", {"not-a-file: a pipe or a device"}},
    };
    for (const auto& row : rows) {
        const Found found(row.path);
        EXPECT_FALSE(found.files) << row.path;
        EXPECT_EQ(found.texts(), row.texts) << row.path;
        EXPECT_EQ(found.findings.at(0).severity, Severity::Error) << row.path;
        EXPECT_EQ(found.findings.at(0).place.file, row.path);
    }
}

TEST(FindRecording, SaysWhatAFileIsThatIsNoRecording) {
    const struct {
        std::string bytes;
        const char* found;
    } rows[] = {
        {std::string("\0\5\x16\7\0\2\0\0", 8), "a resource fork of macOS"},
        {"PK\3\4rest", "a zip archive"},
        {"\x1F\x8B\x08", "a gzip archive"},
        {"7z\xBC\xAF\x27\x1C", "a 7z archive"},
        {"Rar!\x1A\x07", "a rar archive"},
        {"%PDF-1.7", "a PDF document"},
        {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", "an Office document"},
        {"<!doctype html><html>", "a web page"},
        {"<?xml version=\"1.0\"?>", "an XML document"},
        {"<html>", "a web page"},
        {"PK\5\6rest", "an empty zip archive"},
        {std::string("\xFD\x37zXZ\0", 6), "an xz archive"},
        {"\x28\xB5\x2F\xFD", "a zstd archive"},
        {"{\\rtf1", "an RTF document"},
        {"\x89PNG\r\n\x1A\n", "a picture"},
        {"\x7F\x45LF", "a program"},
    };
    for (const auto& row : rows) {
        for (const char* const name : {"a.cfg", "a.dat", "a.cff", "a.zip", "a"}) {
            const TempDir folder;
            const Found found(folder.write(name, row.bytes));
            EXPECT_FALSE(found.files) << name;
            EXPECT_EQ(found.texts(), Texts{std::string("not-a-recording: ") + row.found}) << name;
            EXPECT_EQ(found.findings.at(0).expected, "a .cfg, .dat or .cff file") << name;
        }
    }
}

TEST(FindRecording, TakesAStationForNoDocument) {
    const std::string longest = "<!DOCTYPE html>" + std::string(4080, 'x'); // with its comma, all that is looked at
    for (const std::string& station : {std::string("PK"), std::string("%PDF-1.7"), std::string("<html> unit"),
                                       std::string("<?xml"), std::string("{\\rtf1"), longest}) {
        EXPECT_EQ(Found(Bytes{station + ",R,1999\n", "1,0,5\n"}).texts(), Texts{}) << station;
    }
    EXPECT_EQ(Found(Bytes{"x" + longest + ",R,1999\n", "1,0,5\n"}).texts(), Texts{});
    EXPECT_EQ(Found(Bytes{longest + "x,R,1999\n", "1,0,5\n"}).texts(), Texts{"not-a-recording: a web page"});
    EXPECT_EQ(Found(Bytes{"<html>\n<p>a, b\n", ""}).texts(), Texts{"not-a-recording: a web page"});
}

TEST(FindRecording, SaysThatAConfigurationIsEmpty) {
    const TempDir folder;
    folder.write("a.dat", kDat);
    folder.write("b.dat", "");
    for (const char* const name : {"a.cfg", "c.cff"}) {
        const Found found(folder.write(name, ""));
        EXPECT_FALSE(found.files) << name;
        EXPECT_EQ(found.texts(), Texts{"empty-cfg: an empty file"}) << name;
        EXPECT_EQ(found.findings.at(0).expected, "a configuration");
        EXPECT_EQ(found.findings.at(0).place.file, folder.file(name));
    }
    EXPECT_EQ(Found(folder.file("a.dat")).texts(), Texts{"empty-cfg: an empty file"});
    EXPECT_EQ(Found(folder.file("b.dat")).texts(), Texts{"no-cfg: none"});
}

TEST(FindRecording, TakesAConfigurationWhoseStationIsCalledLikeASection) {
    const TempDir folder;
    const std::string cfg = "--- file type: CFG ---,R,1999\n1,1A,0D\n";
    folder.write("a.cfg", cfg);
    folder.write("a.dat", kDat);
    const Found found(folder.file("a.cfg"));
    ASSERT_TRUE(found.files);
    EXPECT_EQ(found.texts(), Texts{});
    EXPECT_EQ(found.files->cfg.all(), cfg);
    EXPECT_EQ(found.data(), kDat);
}

TEST(FindRecording, TakesNoResourceForkForARecordingWhateverItHolds) {
    const TempDir folder;
    folder.write("._a.cfg", kCfg);
    folder.write("._a.dat", kDat);
    EXPECT_EQ(Found(folder.file("._a.cfg")).texts(), Texts{"not-a-recording: a resource fork of macOS"});
    EXPECT_EQ(Found(folder.file("._a.dat")).texts(), Texts{"not-a-recording: a resource fork of macOS"});
    EXPECT_EQ(Found(folder.file("._b.cfg")).texts(), Texts{"no-such-file: No such file or directory"});
}

TEST(FindRecording, SaysWhatDataAreThatAreNone) {
    const TempDir folder;
    folder.write("a.cfg", kCfg);
    folder.write("a.dat", "\x1F\x8B\x08 packed");
    for (const char* const name : {"a.cfg", "a.dat"}) {
        const Found found(folder.file(name));
        ASSERT_TRUE(found.files) << name;
        EXPECT_FALSE(found.files->data) << name;
        EXPECT_EQ(found.files->datFile, folder.file("a.dat")) << name;
        EXPECT_EQ(found.texts(), Texts{"not-a-recording: a gzip archive"}) << name;
        EXPECT_EQ(found.findings.at(0).place.file, folder.file("a.dat")) << name;
        EXPECT_EQ(found.findings.at(0).expected, "the data") << name;
    }
}

TEST(FindRecording, DoesNotWaitForAPipe) {
    const orvtest::Deadline deadline(20);
    const TempDir folder;
    ASSERT_EQ(mkfifo(folder.file("a.cfg").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(folder.file("b.dat").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo(folder.file("b.hdr").c_str(), 0600), 0);
    folder.write("b.cfg", kCfg);
    EXPECT_EQ(Found(folder.file("a.cfg")).texts(), Texts{"not-a-file: a pipe or a device"});
    EXPECT_EQ(Found(folder.file("b.cfg")).texts(), Texts{"no-data: b.dat, which is not a regular file"});
}

TEST(FindRecording, OpensEachFileOnceAndClosesAll) {
    const TempDir folder;
    folder.write("a.cfg", kCfg);
    folder.write("a.dat", kDat);
    folder.write("a.hdr", "h");
    folder.write("b.cff", kCff + "--- file type: DAT ASCII ---\n" + kDat);
    folder.write("c.dat", "PK\3\4");
    const std::ptrdiff_t before = openFiles();
    {
        const Found pair(folder.file("a.cfg"));
        EXPECT_EQ(openFiles(), before + 2);
        const Found combined(folder.file("b.cff"));
        EXPECT_EQ(openFiles(), before + 3);
        const Found none(folder.file("c.dat"));
        EXPECT_EQ(openFiles(), before + 3);
        // The files that were opened are read, whatever their names stand for now.
        folder.write("a.new", "other");
        fs::rename(folder.file("a.new"), folder.file("a.cfg"));
        EXPECT_EQ(pair.files->cfg.all(), kCfg);
    }
    EXPECT_EQ(openFiles(), before);
}

TEST(FindRecording, ReportsWhatOfTheRecordingMayNotBeRead) {
    const TempDir folder;
    for (const char* const name : {"a.cfg", "b.cfg"}) {
        folder.write(name, kCfg);
    }
    folder.write("b.dat", kDat);
    folder.write("b.hdr", "header");
    for (const char* const name : {"a.cfg", "b.dat", "b.hdr"}) {
        fs::permissions(folder.file(name), fs::perms::none);
    }
    const orvtest::BoundByPermissions bound;
    EXPECT_EQ(Found(folder.file("a.cfg")).texts(), Texts{"no-permission: Permission denied"});
    const Found found(folder.file("b.cfg"));
    EXPECT_EQ(found.texts(), (Texts{"no-permission: Permission denied", "no-permission: Permission denied"}));
    EXPECT_EQ(found.findings.at(0).place.file, folder.file("b.hdr"));
    EXPECT_EQ(found.findings.at(1).place.file, folder.file("b.dat"));
    EXPECT_EQ(found.findings.at(1).advice, "check the permissions");
}

TEST(FindRecording, SaysThatAFolderCannotBeListed) {
    const TempDir folder;
    fs::create_directory(folder.file("closed"));
    folder.write("closed/a.dat", kDat);
    fs::permissions(folder.file("closed"), fs::perms::owner_exec);
    {
        const orvtest::BoundByPermissions bound;
        EXPECT_EQ(Found(folder.file("closed/a.dat")).texts(),
                  Texts{"no-cfg: none in a folder that cannot be listed (Permission denied)"});
    }
    fs::permissions(folder.file("closed"), fs::perms::owner_all);
}

TEST(FindRecording, ReportsThatNoFileCanBeOpened) {
    const TempDir folder;
    folder.write("a.cfg", kCfg);
    const orvtest::NoFileHandles none;
    EXPECT_EQ(Found(folder.file("a.cfg")).texts(), Texts{"unreadable: Too many open files"});
}

TEST(FindRecording, ReportsThatAFileCannotBeRead) {
    const TempDir folder;
    folder.write("a.cff", kCff + "--- file type: DAT ASCII ---\n" + std::string(200000, '1'));
    folder.write("b.cfg", kCfg);
    folder.write("b.dat", kDat);
    orvtest::FailingReads reads;
    for (const int offset : {0, 100, 100000}) { // no part of it is taken for all of it
        reads.from(offset);
        const Found found(folder.file("a.cff"));
        EXPECT_FALSE(found.files) << offset;
        EXPECT_EQ(found.texts(), Texts{"unreadable: Input/output error"}) << offset;
    }
    reads.from(0);
    EXPECT_EQ(Found(folder.file("b.cfg")).texts(), Texts{"unreadable: Input/output error"});
    reads.from(10);
    EXPECT_EQ(Found(folder.file("b.cfg")).texts(), Texts{"unreadable: Input/output error"});
}

TEST(FindRecording, PassesOnThatMemoryRunsOut) {
    const TempDir folder;
    folder.write("a.cff", "-- file type: CFG --\nS\n--- file type: DAT BINARY base64: 4 ---\nAAAA\n");
    folder.write("b.cfg", kCfg);
    folder.write("b.daT", kDat);
    folder.write("b.hdr", "header");
    folder.write("c.cfg", kCfg);
    folder.write("c (1).dat", kDat);
    const std::ptrdiff_t before = openFiles();
    const std::string paths[] = {folder.file("a.cff"), folder.file("b.daT"), folder.file("c.cfg"), folder.file("d")};
    for (const std::string& path : paths) {
        const Texts expected = Found(path).texts();
        for (const auto failing : {orvtest::Failing::Once, orvtest::Failing::FromThenOn}) {
            bool hasFailed = true;
            for (std::size_t allocations = 0; hasFailed; ++allocations) {
                std::optional<Found> found;
                try {
                    const orvtest::AllocationBudget budget(allocations, failing);
                    found.emplace(path);
                    hasFailed = budget.exceeded();
                } catch (const std::bad_alloc&) {
                    hasFailed = true;
                }
                EXPECT_NE(found.has_value(), hasFailed) << path << ", allocation " << allocations;
                EXPECT_TRUE(!found || found->texts() == expected) << path << ", allocation " << allocations;
            }
        }
    }
    EXPECT_EQ(openFiles(), before);
}

TEST(RecordingOf, GivesTheSameAsFiles) {
    const TempDir folder;
    const std::string cff = kCff + "--- file type: DAT BINARY: 9 ---\n\x01\x02\x03";
    folder.write("a.cfg", kCfg);
    folder.write("a.dat", kDat);
    folder.write("a.hdr", "h");
    folder.write("a.inf", "i");
    folder.write("b.cff", cff);
    const struct {
        std::string path;
        Bytes bytes;
        std::string cfgFile;
        std::string datFile;
    } rows[] = {
        {folder.file("a.cfg"), {kCfg, kDat, "h", "i", "x"}, "x.cfg", "x.dat"},
        {folder.file("b.cff"), {cff, "not looked at", "nor this", {}, "x"}, "x.cff", "x.cff"},
    };
    for (const auto& row : rows) {
        const Found memory(row.bytes);
        const Found file(row.path);
        ASSERT_TRUE(memory.files && file.files);
        EXPECT_EQ(memory.files->cfg.all(), file.files->cfg.all());
        EXPECT_EQ(memory.files->cfg.lineInFile(1), file.files->cfg.lineInFile(1));
        EXPECT_EQ(memory.data(), file.data());
        EXPECT_EQ(memory.files->dataFormat, file.files->dataFormat);
        EXPECT_EQ(memory.files->hdr, file.files->hdr);
        EXPECT_EQ(memory.files->inf, file.files->inf);
        EXPECT_EQ(memory.texts(), file.texts());
        EXPECT_EQ(memory.files->cfgFile, row.cfgFile);
        EXPECT_EQ(memory.files->datFile, row.datFile);
        EXPECT_EQ(memory.files->cfg.name(), row.cfgFile);
        EXPECT_FALSE(memory.files->isNamedForLibrary);
    }
}

TEST(RecordingOf, DistinguishesNoDataFromEmptyOnes) {
    Bytes bytes;
    bytes.cfg = kCfg;
    EXPECT_EQ(Found(bytes).texts(), Texts{"no-data: no bytes"});
    bytes.dat = "";
    EXPECT_EQ(Found(bytes).texts(), Texts{});
    EXPECT_EQ(Found(bytes).data(), "");
}

TEST(RecordingOf, SaysWhatBytesAreThatAreNoRecording) {
    EXPECT_EQ(Found(Bytes{}).texts(), Texts{"empty-cfg: an empty file"});
    EXPECT_EQ(Found(Bytes{"PK\3\4", kDat}).texts(), Texts{"not-a-recording: a zip archive"});
    const Found found(Bytes{kCfg, "PK\3\4"});
    ASSERT_TRUE(found.files);
    EXPECT_FALSE(found.files->data);
    EXPECT_EQ(found.texts(), Texts{"not-a-recording: a zip archive"});
}

} // namespace
