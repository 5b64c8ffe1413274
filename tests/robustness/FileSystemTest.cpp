#include "Comtrade.h"
#include "support/BoundByPermissions.h"
#include "support/Disk.h"
#include "support/FileLimits.h"
#include "support/RecordingBuilder.h"
#include "support/Results.h"
#include "support/TempDir.h"
#include "support/files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace OrvComtradeLib;
using orvtest::BoundByPermissions;
using orvtest::Deadline;
using orvtest::Disk;
using orvtest::RecordingBuilder;
using orvtest::resultOf;
using orvtest::TempDir;

using Analogs = std::vector<double>;

constexpr std::size_t kLines = 40000; // more than any reader takes at once
constexpr int kKept = 3;              // samples that an earlier load left

/// One analog and one status channel at 1000 Hz.
RecordingBuilder recording(const std::string& type, std::size_t samples) {
    RecordingBuilder builder;
    builder.analog("1,U,,,V,1,0,0,0,0").status("1,T").rate("1000," + std::to_string(samples)).type(type);
    for (std::size_t i = 0; i < samples; ++i) {
        builder.record(0, {static_cast<double>(i % 1000)}, {i % 2 == 1});
    }
    return builder;
}

/// A recording of `kLines` samples in a file, and a reader that holds the three samples of an earlier load.
class DiskFault : public testing::TestWithParam<const char*> {
protected:
    DiskFault() {
        EXPECT_EQ(resultOf(cfg.load(recording(GetParam(), kKept).write(dir.path(), "few"))), Enums::CfgLoaded);
        EXPECT_EQ(resultOf(dat.load(dir.file("few.dat"))), Enums::Ok);
        EXPECT_EQ(dat.lastSampleTime, 0.002);
        cfg.samplingRates.clear();
        EXPECT_EQ(resultOf(cfg.load(recording(GetParam(), kLines).write(dir.path(), "many"))), Enums::CfgLoaded);
        path = dir.file("many.dat");
        length = std::filesystem::file_size(path);
    }

    bool isAscii() const { return cfg.dataFileType == Enums::Ascii; }

    void expectSamples(std::size_t count, double lastTime) const {
        ASSERT_EQ(dat.samples.size(), count);
        EXPECT_EQ(dat.lastSampleTime, lastTime);
        if (count > 501) {
            EXPECT_EQ(dat.samples[501].index, 501U);
            EXPECT_EQ(dat.samples[501].time, 0.501);
            EXPECT_EQ(dat.samples[501].analogValues, Analogs{501.0});
            EXPECT_EQ(dat.samples[501].binaryValues, std::vector<bool>{true});
        }
    }

    /// What a read error leaves. A line file is an exception in the middle of the load, which leaves the time of the
    /// earlier load; a record file is one that is too short.
    void expectAfterReadError(Enums::LoadResult result) const {
        EXPECT_EQ(result, Enums::DatLoadError);
        EXPECT_TRUE(dat.samples.empty());
        EXPECT_EQ(dat.lastSampleTime, isAscii() ? 0.002 : -1.0);
    }

    /// The file loads once the fault is gone.
    void expectLoads() {
        EXPECT_EQ(resultOf(dat.load(path)), Enums::Ok);
        expectSamples(kLines, 39.999);
    }

    TempDir dir;
    Cfg cfg;
    Dat dat{cfg};
    std::string path;
    std::size_t length = 0;
};

INSTANTIATE_TEST_SUITE_P(Each, DiskFault, testing::Values("ASCII", "BINARY", "FLOAT32"),
                         [](const auto& param) { return std::string(param.param); });

TEST_P(DiskFault, TheDiskSeesTheReadsOfTheLibrary) {
    const Disk disk;
    expectLoads();
    EXPECT_EQ(disk.bytes(), length);
    EXPECT_GE(disk.reads(), 2U);
}

TEST_P(DiskFault, ReadErrorIsLoadError) {
    for (const std::size_t good : {std::size_t{0}, std::size_t{1}, length / 2, length - 1, length}) {
        SCOPED_TRACE(good);
        dat.samples = std::vector<Sample>(kKept, Sample(cfg));
        dat.lastSampleTime = 0.002;
        Enums::LoadResult result = resultOf(-1);
        std::size_t reads = 0;
        {
            Disk disk;
            disk.failFrom(good, EIO);
            result = resultOf(dat.load(path));
            reads = disk.reads();
        }
        EXPECT_GE(reads, 1U);
        if (good == length && !isAscii()) {
            EXPECT_EQ(result, Enums::Ok); // nobody reads behind the last record
            expectSamples(kLines, 39.999);
        } else {
            expectAfterReadError(result);
        }
    }
    expectLoads();
}

TEST_P(DiskFault, EveryKindOfReadErrorIsLoadError) {
    for (const int error : {EIO, EISDIR, ENXIO, ESTALE, ENOMEM, EAGAIN}) {
        SCOPED_TRACE(error);
        dat.lastSampleTime = 0.002;
        Enums::LoadResult result = resultOf(-1);
        {
            Disk disk;
            disk.failFrom(length / 3, error);
            result = resultOf(dat.load(path));
        }
        expectAfterReadError(result);
    }
    expectLoads();
}

TEST_P(DiskFault, ReadsInPiecesLoadTheSame) {
    for (const std::size_t piece : {std::size_t{1000}, std::size_t{7}, std::size_t{1}}) {
        SCOPED_TRACE(piece);
        Disk disk;
        disk.inPieces(piece);
        expectLoads();
        EXPECT_GE(disk.reads(), length / piece);
    }
}

TEST_P(DiskFault, FileThatShrinksBeforeItIsReadIsTakenAsItIs) {
    // Behind the 20000th sample; a line file holds its first lines, a record file is too short.
    const std::size_t shorter = isAscii() ? recording("ASCII", kLines / 2).datBytes().size() : length / 2;
    Disk disk;
    disk.beforeRead(1, [&] { std::filesystem::resize_file(path, shorter); });
    const Enums::LoadResult result = resultOf(dat.load(path));
    EXPECT_EQ(disk.bytes(), shorter);
    if (isAscii()) {
        EXPECT_EQ(result, Enums::Ok);
        expectSamples(kLines / 2, 19.999);
    } else {
        EXPECT_EQ(result, Enums::DatLoadError);
        expectSamples(0, -1.0);
    }
}

TEST_P(DiskFault, FileThatShrinksToNothingBeforeItIsRead) {
    Disk disk;
    disk.beforeRead(1, [&] { std::filesystem::resize_file(path, 0); });
    EXPECT_EQ(resultOf(dat.load(path)), isAscii() ? Enums::Ok : Enums::DatLoadError);
    expectSamples(0, -1.0);
}

TEST_P(DiskFault, FileThatShrinksInTheMiddleOfASample) {
    Disk disk;
    disk.beforeRead(1, [&] { std::filesystem::resize_file(path, 5); }); // "1,0,0" or part of a record
    EXPECT_EQ(resultOf(dat.load(path)), Enums::DatLoadError);
    expectSamples(0, -1.0);
}

TEST_P(DiskFault, FileThatShrinksWhileItIsReadEndsThere) {
    Disk disk;
    disk.inPieces(994).beforeRead(2, [&] { std::filesystem::resize_file(path, 0); });
    const Enums::LoadResult result = resultOf(dat.load(path));
    EXPECT_EQ(disk.bytes(), 994U);
    if (isAscii()) {
        EXPECT_EQ(result, Enums::Ok); // 994 bytes are 101 lines
        expectSamples(101, 0.1);
    } else {
        EXPECT_EQ(result, Enums::DatLoadError);
        expectSamples(0, -1.0);
    }
}

TEST_P(DiskFault, FileThatShrinksWhileALineIsReadIsLoadError) {
    Disk disk;
    disk.inPieces(1000).beforeRead(2, [&] { std::filesystem::resize_file(path, 0); });
    EXPECT_EQ(resultOf(dat.load(path)), Enums::DatLoadError); // the 102nd line ends behind its time stamp
    EXPECT_EQ(disk.bytes(), 1000U);
    expectSamples(0, -1.0);
}

TEST_P(DiskFault, FileThatGrowsBeforeItIsReadGivesTheDeclaredSamples) {
    std::string more;
    for (int i = 0; i < 50000; ++i) {
        more += isAscii() ? "9,9,9,9\n" : "more bytes ";
    }
    Disk disk;
    disk.beforeRead(1, [&] { orvtest::appendTo(path, more); });
    EXPECT_EQ(resultOf(dat.load(path)), Enums::Ok);
    expectSamples(kLines, 39.999);
    EXPECT_EQ(std::filesystem::file_size(path), length + more.size());
}

TEST_P(DiskFault, FileThatGrowsFromAFewSamplesGivesAllOfThem) {
    const std::string whole = orvtest::bytesOf(path);
    ASSERT_EQ(whole.size(), length);
    std::filesystem::resize_file(path, isAscii() ? 0 : 12);
    Disk disk;
    disk.beforeRead(1, [&] { orvtest::writeFile(path, whole); });
    if (isAscii()) {
        expectLoads(); // room was made for hardly any line
    } else {
        EXPECT_EQ(resultOf(dat.load(path)), Enums::DatLoadError); // the length was wrong when it was checked
        expectSamples(0, -1.0);
    }
}

TEST_P(DiskFault, FileThatIsRemovedWhileItIsReadLoads) {
    for (const std::size_t number : {std::size_t{1}, std::size_t{2}}) {
        SCOPED_TRACE(number);
        const std::string copy = dir.file("copy.dat");
        std::filesystem::copy_file(path, copy);
        Disk disk;
        disk.beforeRead(number, [&] { std::filesystem::remove(copy); });
        EXPECT_EQ(resultOf(dat.load(copy)), Enums::Ok);
        expectSamples(kLines, 39.999);
        EXPECT_FALSE(std::filesystem::exists(copy));
        EXPECT_EQ(resultOf(dat.load(copy)), Enums::DatFileNotFound);
        expectSamples(kLines, 39.999);
    }
}

TEST_P(DiskFault, FileThatIsReplacedWhileItIsReadLoadsAsOpened) {
    Disk disk;
    disk.beforeRead(1, [&] {
        std::filesystem::remove(path);
        orvtest::writeFile(path, "garbage");
    });
    EXPECT_EQ(resultOf(dat.load(path)), Enums::Ok);
    expectSamples(kLines, 39.999);
}

/// A configuration of 500 status channels, read in many pieces.
class CfgDiskFault : public testing::Test {
protected:
    CfgDiskFault() {
        RecordingBuilder builder;
        for (int i = 1; i <= 500; ++i) {
            builder.status(std::to_string(i) + ",A status channel with a long name,,,0");
        }
        path = builder.rate("1000,3").write(dir.path(), "r");
        length = std::filesystem::file_size(path);
    }

    void expectLoads() {
        EXPECT_EQ(resultOf(cfg.load(path)), Enums::CfgLoaded);
        EXPECT_EQ(cfg.binaryChannelConfigs.size(), 500U);
        EXPECT_EQ(cfg.lastSampleNumber, 3U);
        EXPECT_EQ(cfg.duration, 0.002);
    }

    TempDir dir;
    Cfg cfg;
    std::string path;
    std::size_t length = 0;
};

TEST_F(CfgDiskFault, ReadErrorIsLoadError) {
    for (const std::size_t good : {std::size_t{0}, std::size_t{1}, length / 2, length - 30}) {
        SCOPED_TRACE(good);
        Disk disk;
        disk.failFrom(good, EIO);
        EXPECT_EQ(resultOf(cfg.load(path)), Enums::CfgLoadError);
        EXPECT_GE(disk.reads(), 1U);
    }
    EXPECT_EQ(cfg.samplingRates.size(), 1U); // the last of the errors came behind the rates
    expectLoads();
}

TEST_F(CfgDiskFault, ReadErrorBehindTheTypeLineIsAMissingMultiplier) {
    cfg.timeMultiplier = 7.0;
    Disk disk;
    disk.failFrom(length - 2, EIO); // where the last line begins
    expectLoads();
    EXPECT_EQ(cfg.timeMultiplier, 1.0);
}

TEST_F(CfgDiskFault, ReadsInPiecesLoadTheSame) {
    Disk disk;
    disk.inPieces(1);
    expectLoads();
    EXPECT_GE(disk.reads(), length);
}

TEST_F(CfgDiskFault, FileThatShrinksWhileItIsReadIsLoadError) {
    Disk disk;
    disk.beforeRead(2, [&] { std::filesystem::resize_file(path, 0); });
    EXPECT_EQ(resultOf(cfg.load(path)), Enums::CfgLoadError);
    EXPECT_GE(disk.reads(), 2U);
    EXPECT_LT(disk.bytes(), length);
}

TEST_F(CfgDiskFault, FileThatGrowsOrIsRemovedWhileItIsReadLoads) {
    Disk disk;
    disk.beforeRead(2, [&] {
        orvtest::appendTo(path, std::string(100000, '\n'));
        std::filesystem::remove(path);
    });
    expectLoads();
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(resultOf(cfg.load(path)), Enums::CfgFileNotFound);
}

// Things that are no regular file

/// A facade that holds a good recording, and what it must hold after a load that failed.
class OddFile : public testing::Test {
protected:
    OddFile() {
        EXPECT_EQ(resultOf(comtrade.load(recording("ASCII", kKept).write(dir.path(), "good"))), Enums::Ok);
        goodCfg = dir.file("good.cfg");
        goodDat = dir.file("good.dat");
    }

    Enums::LoadResult load(const std::string& name) {
        const Deadline deadline(30); // nothing may wait for a writer
        return resultOf(comtrade.load(dir.file(name)));
    }

    void expectSamplesKept() const {
        ASSERT_EQ(comtrade.dat.samples.size(), 3U);
        EXPECT_EQ(comtrade.dat.samples[2].analogValues, Analogs{2.0});
        EXPECT_EQ(comtrade.dat.lastSampleTime, 0.002);
        expectFailed();
    }

    void expectFailed() const {
        EXPECT_FALSE(comtrade.loaded);
        EXPECT_EQ(comtrade.filePath, goodCfg);
        EXPECT_EQ(comtrade.duration, 0.002);
    }

    TempDir dir;
    Comtrade comtrade;
    std::string goodCfg;
    std::string goodDat;
};

TEST_F(OddFile, DirectoriesAreLoadErrors) {
    std::filesystem::create_directory(dir.file("d.cfg"));
    EXPECT_EQ(load("d.cfg"), Enums::CfgLoadError);
    expectSamplesKept();
    std::filesystem::copy_file(goodCfg, dir.file("e.cfg"));
    std::filesystem::create_directory(dir.file("e.dat"));
    EXPECT_EQ(load("e.cfg"), Enums::DatLoadError);
    EXPECT_TRUE(comtrade.dat.samples.empty());
    EXPECT_EQ(comtrade.dat.lastSampleTime, 0.002); // an exception ends the load
    expectFailed();
}

TEST_F(OddFile, DirectoryAsRecordFileIsLoadErrorWithoutSamples) {
    const RecordingBuilder binary = recording("BINARY", kKept);
    binary.write(dir.path(), "b");
    std::filesystem::remove(dir.file("b.dat"));
    std::filesystem::create_directory(dir.file("b.dat"));
    EXPECT_EQ(load("b.cfg"), Enums::DatLoadError);
    EXPECT_TRUE(comtrade.dat.samples.empty());
    EXPECT_EQ(comtrade.dat.lastSampleTime, -1.0);
}

TEST_F(OddFile, PipesDevicesAndDanglingLinksAreNotFound) {
    struct {
        const char* why;
        void (*make)(const std::string& path);
    } const rows[] = {
        {"pipe", [](const std::string& path) { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); }},
        {"endless device", [](const std::string& path) { std::filesystem::create_symlink("/dev/zero", path); }},
        {"empty device", [](const std::string& path) { std::filesystem::create_symlink("/dev/null", path); }},
        {"dangling link", [](const std::string& path) { std::filesystem::create_symlink("absent", path); }},
        {"link to itself", [](const std::string& path) { std::filesystem::create_symlink(path, path); }},
        {"nothing", [](const std::string&) {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string cfg = dir.file("odd.cfg");
        const std::string dat = dir.file("odd.dat");
        row.make(cfg);
        EXPECT_EQ(load("odd.cfg"), Enums::CfgFileNotFound);
        expectSamplesKept();
        std::filesystem::remove(cfg);
        std::filesystem::copy_file(goodCfg, cfg);
        row.make(dat);
        EXPECT_EQ(load("odd.cfg"), Enums::DatFileNotFound);
        expectSamplesKept();
        std::filesystem::remove(cfg);
        std::filesystem::remove(dat);
    }
}

TEST_F(OddFile, LinksToFilesLoad) {
    std::filesystem::create_symlink("good.cfg", dir.file("l.cfg"));
    std::filesystem::create_symlink("good.dat", dir.file("l.dat"));
    EXPECT_EQ(load("l.cfg"), Enums::Ok);
}

TEST_F(OddFile, EndlessFileOfTheProcessIsAnError) {
    // Regular by its kind, of length 0, yet full of bytes.
    std::filesystem::create_symlink("/proc/self/maps", dir.file("p.cfg"));
    EXPECT_EQ(load("p.cfg"), Enums::CfgLoadError);
    std::filesystem::copy_file(goodCfg, dir.file("q.cfg"));
    std::filesystem::create_symlink("/proc/self/maps", dir.file("q.dat"));
    EXPECT_EQ(load("q.cfg"), Enums::DatLoadError);
}

TEST_F(OddFile, UnreadableFilesAreLoadErrors) {
    const BoundByPermissions bound;
    std::filesystem::copy_file(goodCfg, dir.file("u.cfg"));
    std::filesystem::copy_file(goodDat, dir.file("u.dat"));
    ASSERT_EQ(chmod(dir.file("u.dat").c_str(), 0), 0);
    EXPECT_EQ(load("u.cfg"), Enums::DatLoadError);
    expectSamplesKept();
    ASSERT_EQ(chmod(dir.file("u.cfg").c_str(), 0), 0);
    EXPECT_EQ(load("u.cfg"), Enums::CfgLoadError);
    expectSamplesKept();
}

TEST_F(OddFile, FilesInAFolderThatIsNotSearchableAreNotFound) {
    const BoundByPermissions bound;
    std::filesystem::create_directory(dir.file("closed"));
    std::filesystem::copy_file(goodCfg, dir.file("closed/r.cfg"));
    ASSERT_EQ(chmod(dir.file("closed").c_str(), 0), 0);
    EXPECT_EQ(load("closed/r.cfg"), Enums::CfgFileNotFound);
    ASSERT_EQ(chmod(dir.file("closed").c_str(), 0700), 0);
    expectSamplesKept();
}

// Names

TEST_F(OddFile, NamesInCyrillicWithBlanksAndOddBytesLoad) {
    for (const char* const name :
         {"\xD0\xBA\xD0\xB7 \xD1\x84\xD0\xB8\xD0\xB4\xD0\xB5\xD1\x80", // "kz fider" in Cyrillic
          " blank  before, within and behind ", "new\nline", "quote\"and'percent%s", "\xFF\xFEnot UTF-8", "a.b.c", "-",
          "~"}) {
        SCOPED_TRACE(name);
        const std::string folder = dir.file(name);
        std::filesystem::create_directory(folder);
        const std::string path = recording("ASCII", kKept).write(folder, name);
        EXPECT_EQ(resultOf(comtrade.load(path)), Enums::Ok);
        EXPECT_EQ(comtrade.filePath, path);
        EXPECT_EQ(comtrade.dat.samples.size(), 3U);
        EXPECT_EQ(resultOf(comtrade.load(path.substr(0, path.size() - 3) + "dat")), Enums::Ok);
    }
}

TEST_F(OddFile, PathOfFourThousandCharactersLoads) {
    std::string folder = dir.path();
    while (folder.size() + 201 < 3980) {
        folder += '/' + std::string(200, 'x');
    }
    std::filesystem::create_directories(folder);
    const std::string path = folder + '/' + std::string(4000 - folder.size() - 5, 'r') + ".cfg";
    ASSERT_EQ(path.size(), 4000U);
    recording("ASCII", kKept).write(folder, path.substr(folder.size() + 1, path.size() - folder.size() - 5));
    EXPECT_EQ(resultOf(comtrade.load(path)), Enums::Ok);
    EXPECT_EQ(comtrade.cfgFileName, path);
}

TEST_F(OddFile, PathsThatTheSystemRefusesAreNotFound) {
    const std::string longName(300, 'n');
    const std::string longPath = "/" + std::string(100000, 'p');
    for (const std::string& stem :
         {longName, longPath, std::string(), std::string("good.cfg/r"), std::string("a\0b", 3)}) {
        SCOPED_TRACE(stem.size());
        EXPECT_EQ(load(stem + ".cfg"), Enums::CfgFileNotFound);
        expectSamplesKept();
    }
}

} // namespace
