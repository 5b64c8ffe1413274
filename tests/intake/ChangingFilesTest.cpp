// A recording whose files change while they are read: by a program that still writes them, or on a share.

#include "Comtrade.h"
#include "support/FailingReads.h"
#include "support/FileLimits.h"
#include "support/TempDir.h"

#include <OrvComtradeIntake/Intake.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <system_error>

namespace {

namespace fs = std::filesystem;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Severity;
using orvtest::TempDir;
using namespace std::chrono_literals;

const std::string kCfg = "S,R,1999\r\n1,1A,0D\r\n1,U,,,V,1,0,0,-99999,99999,1,1,S\r\n50\r\n1\r\n1000,3\r\n"
                         "01/02/2020,10:00:00.000000\r\n01/02/2020,10:00:00.000000\r\nASCII\r\n1\r\n";
const std::string kDat = "1,0,7\r\n2,1000,8\r\n3,2000,9\r\n";

struct Change {
    const char* why;
    std::function<void(const std::string& path)> make;
};

const Change kChanges[] = {
    {"shorter", [](const std::string& path) { fs::resize_file(path, fs::file_size(path) / 2); }},
    {"empty", [](const std::string& path) { fs::resize_file(path, 0); }},
    {"longer", [](const std::string& path) { std::ofstream(path, std::ios::app) << "4,3000,10\r\n"; }},
    {"written anew in the same length",
     [](const std::string& path) { fs::last_write_time(path, fs::last_write_time(path) + 1h); }},
};

const Change kExchanges[] = {
    {"removed", [](const std::string& path) { fs::remove(path); }},
    {"a pipe now",
     [](const std::string& path) {
         fs::remove(path);
         mkfifo(path.c_str(), 0600);
     }},
    {"a link now",
     [](const std::string& path) {
         fs::remove(path);
         fs::create_symlink("/dev/zero", path);
     }},
    {"another file now",
     [](const std::string& path) {
         fs::remove(path);
         std::ofstream(path) << "nonsense";
     }},
};

/// The files of a recording, pair or `.cff`, and which of them changes.
struct Place {
    const char* opened;
    const char* changed;
};

const Place kPlaces[] = {{"a.cfg", "a.cfg"}, {"a.cfg", "a.dat"}, {"b.cff", "b.cff"}};

void writeFiles(const TempDir& folder) {
    folder.write("a.cfg", kCfg);
    folder.write("a.dat", kDat);
    folder.write("b.cff", "--- file type: CFG ---\r\n" + kCfg + "--- file type: DAT ASCII ---\r\n" + kDat);
}

bool isOpenAs(int file, const struct stat& wanted) {
    struct stat status = {};
    return fstat(file, &status) == 0 && status.st_dev == wanted.st_dev && status.st_ino == wanted.st_ino;
}

/// Changes the file before the read of it that has this number, from 0; whether that came.
class ChangeAtRead {
public:
    ChangeAtRead(const std::string& path, const Change& change, std::size_t number) {
        struct stat status = {};
        stat(path.c_str(), &status);
        _reads.doing([=, &change](int file) {
            if (isOpenAs(file, status) && _count++ == number) {
                change.make(path);
            }
        });
        _number = number;
    }

    bool hasHappened() const { return _count > _number; }

private:
    orvtest::FailingReads _reads;
    std::size_t _count = 0;
    std::size_t _number = 0;
};

const Finding* changeIn(const Opened& opened) {
    for (const Finding& finding : opened.findings()) {
        if (finding.code == "file-changed") {
            return &finding;
        }
    }
    return nullptr;
}

TEST(OpenOfAChangingFile, EndsWithAFindingWheneverTheChangeComes) {
    for (const Place& place : kPlaces) {
        for (const Change& change : kChanges) {
            bool hasHappened = true;
            for (std::size_t read = 0; hasHappened; ++read) {
                const TempDir folder;
                writeFiles(folder);
                const std::string path = folder.file(place.changed);
                const ChangeAtRead changing(path, change, read);
                const Opened opened = OrvComtradeIntake::open(folder.file(place.opened));
                SCOPED_TRACE(std::string(place.changed) + " " + change.why + " at read " + std::to_string(read));
                ASSERT_EQ(opened.readable(), !changing.hasHappened());
                const Finding* const finding = changeIn(opened); // this reads the data once more
                hasHappened = changing.hasHappened();
                ASSERT_EQ(finding != nullptr, hasHappened);
                if (hasHappened) {
                    EXPECT_EQ(finding->severity, Severity::Error);
                    EXPECT_EQ(finding->place.file, path);
                    EXPECT_EQ(finding->advice, "read it again when it is complete");
                }
                ASSERT_TRUE(hasHappened || read > 0);
            }
        }
    }
}

TEST(OpenOfAChangingFile, GoesOnInTheFileThatWasOpened) {
    const orvtest::Deadline deadline(60);
    for (const Place& place : kPlaces) {
        for (const Change& change : kExchanges) {
            SCOPED_TRACE(std::string(place.changed) + " " + change.why);
            const TempDir folder;
            writeFiles(folder);
            const ChangeAtRead changing(folder.file(place.changed), change, 0);
            const Opened opened = OrvComtradeIntake::open(folder.file(place.opened));
            EXPECT_TRUE(changing.hasHappened());
            ASSERT_TRUE(opened.readable());
            EXPECT_EQ(changeIn(opened), nullptr);
            OrvComtradeLib::Comtrade comtrade;
            EXPECT_EQ(opened.load(comtrade), 0);
            EXPECT_EQ(opened.columns().analog, (OrvComtradeIntake::Values{7, 8, 9}));
        }
    }
}

TEST(OpenedOfAChangedFile, GivesNothingOfIt) {
    for (const Change& change : kChanges) {
        SCOPED_TRACE(change.why);
        const TempDir folder;
        writeFiles(folder);
        const Opened opened = OrvComtradeIntake::open(folder.file("a.cfg"));
        ASSERT_TRUE(opened.readable());
        ASSERT_TRUE(opened.librarySuffices());
        change.make(folder.file("a.dat"));
        const auto ignore = [](std::string_view) {};
        OrvComtradeLib::Comtrade comtrade;
        EXPECT_THROW(opened.load(comtrade), std::system_error);
        EXPECT_FALSE(comtrade.loaded);
        EXPECT_THROW(opened.columns(), std::system_error);
        EXPECT_THROW(opened.write(ignore, ignore), std::system_error);
        EXPECT_NE(changeIn(opened), nullptr);
        change.make(folder.file("a.cfg"));
        EXPECT_THROW(opened.librarySuffices(), std::system_error);
    }
}

TEST(OpenedOfAnExchangedFile, AsksTheLibraryForTheFileThatWasOpened) {
    const orvtest::Deadline deadline(60);
    for (const Change& change : kExchanges) {
        SCOPED_TRACE(change.why);
        const TempDir folder;
        writeFiles(folder);
        const Opened opened = OrvComtradeIntake::open(folder.file("a.cfg"));
        change.make(folder.file("a.cfg"));
        EXPECT_TRUE(opened.librarySuffices());
    }
}

} // namespace
