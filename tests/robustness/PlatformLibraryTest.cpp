// A platform library of this program's own: its two functions take the place of those that the library was built with.

#include "Comtrade.h"
#include "support/Disk.h"
#include "support/RecordingBuilder.h"
#include "support/Results.h"
#include "support/TempDir.h"

#include <OrvCommon.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <ios>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

/// What the two functions do; a test replaces either.
struct Site {
    std::function<bool(const std::string&)> fileExist;
    std::function<std::ifstream(const std::string&, std::ios_base::openmode)> open;

    Site() { reset(); }

    void reset() {
        fileExist = [](const std::string& path) { return std::filesystem::exists(path); };
        open = [](const std::string& path, std::ios_base::openmode mode) { return std::ifstream(path, mode); };
    }
};

Site& site() {
    static Site theSite;
    return theSite;
}

} // namespace

bool Orv::fileExist(const std::string& path) {
    return site().fileExist(path);
}

std::ifstream Orv::openInputFileUTF8Name(const std::string& path, std::ios_base::openmode mode) {
    return site().open(path, mode);
}

namespace {

using namespace OrvComtradeLib;
using orvtest::Disk;
using orvtest::RecordingBuilder;
using orvtest::resultOf;
using orvtest::TempDir;

using Analogs = std::vector<double>;
using Mode = std::ios_base::openmode;
using Action = std::function<void()>;

/// One analog and one status channel at 1000 Hz.
RecordingBuilder recording(const std::string& type, std::size_t samples) {
    RecordingBuilder builder;
    builder.analog("1,U,,,V,1,0,0,0,0").status("1,T").rate("1000," + std::to_string(samples)).type(type);
    for (std::size_t i = 0; i < samples; ++i) {
        builder.record(0, {static_cast<double>(i % 1000)}, {i % 2 == 1});
    }
    return builder;
}

std::size_t openFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

/// The reading end of a pipe that holds some bytes, as a path.
class Pipe {
public:
    explicit Pipe(const std::string& bytes) {
        EXPECT_EQ(pipe(_ends), 0);
        EXPECT_EQ(write(_ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        close(_ends[1]);
    }
    ~Pipe() { close(_ends[0]); }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(_ends[0]); }

private:
    int _ends[2] = {-1, -1};
};

/// A configuration and a reader that hold three samples, in lines or in records.
class PlatformLibrary : public testing::TestWithParam<const char*> {
protected:
    PlatformLibrary() {
        cfgPath = recording(GetParam(), 3).write(dir.path(), "r");
        datPath = dir.file("r.dat");
        EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgLoaded);
        EXPECT_EQ(resultOf(dat.load(datPath)), Enums::Ok);
        filesBefore = openFiles();
    }

    ~PlatformLibrary() override {
        site().reset();
        EXPECT_EQ(openFiles(), filesBefore);
    }

    bool isAscii() const { return cfg.dataFileType == Enums::Ascii; }

    void expectThreeSamples() const {
        ASSERT_EQ(dat.samples.size(), 3U);
        EXPECT_EQ(dat.samples[1].analogValues, Analogs{1.0});
        EXPECT_EQ(dat.samples[1].binaryValues, std::vector<bool>{true});
        EXPECT_EQ(dat.samples[2].time, 0.002);
        EXPECT_EQ(dat.lastSampleTime, 0.002);
    }

    void expectNoSamples(double lastSampleTime) const {
        EXPECT_TRUE(dat.samples.empty());
        EXPECT_EQ(dat.lastSampleTime, lastSampleTime);
    }

    /// Every stream comes as `prepare` leaves it.
    static void open(const std::function<void(std::ifstream&)>& prepare) {
        site().open = [prepare](const std::string& path, Mode mode) {
            std::ifstream stream(path, mode);
            prepare(stream);
            return stream;
        };
    }

    TempDir dir;
    Cfg cfg;
    Dat dat{cfg};
    std::string cfgPath;
    std::string datPath;
    std::size_t filesBefore = 0;
};

INSTANTIATE_TEST_SUITE_P(Each, PlatformLibrary, testing::Values("ASCII", "BINARY", "FLOAT32"),
                         [](const auto& param) { return std::string(param.param); });

TEST_P(PlatformLibrary, IsAskedForEveryFileWithItsMode) {
    std::vector<std::string> asked;
    std::vector<std::pair<std::string, Mode>> opened;
    site().fileExist = [&](const std::string& path) {
        asked.push_back(path);
        return true;
    };
    site().open = [&](const std::string& path, Mode mode) {
        opened.emplace_back(path, mode);
        return std::ifstream(path, mode);
    };
    EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgLoaded);
    EXPECT_EQ(resultOf(dat.load(datPath)), Enums::Ok);
    EXPECT_EQ(asked, (std::vector<std::string>{cfgPath, datPath}));
    ASSERT_EQ(opened.size(), 2U);
    EXPECT_EQ(opened[0], std::make_pair(cfgPath, std::ios_base::in));
    EXPECT_EQ(opened[1], std::make_pair(datPath, isAscii() ? std::ios_base::in : std::ios_base::binary));
}

TEST_P(PlatformLibrary, FileThatDoesNotExistIsNeverOpened) {
    site().fileExist = [](const std::string&) { return false; };
    site().open = [](const std::string&, Mode) -> std::ifstream { throw std::logic_error("opened"); };
    EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgFileNotFound);
    EXPECT_EQ(resultOf(dat.load(datPath)), Enums::DatFileNotFound);
    expectThreeSamples();
}

TEST_P(PlatformLibrary, ExceptionIsLoadErrorWithNothingChanged) {
    const std::vector<std::pair<const char*, Action>> rows = {
        {"runtime error", [] { throw std::runtime_error("no such drive"); }},
        {"stream failure", [] { throw std::ios_base::failure("not opened"); }},
        {"bad_alloc", [] { throw std::bad_alloc(); }},
    };
    for (const auto& [why, fail] : rows) {
        SCOPED_TRACE(why);
        for (const bool whileOpening : {true, false}) {
            site().reset();
            if (whileOpening) {
                site().open = [fail = fail](const std::string&, Mode) {
                    fail();
                    return std::ifstream();
                };
            } else {
                site().fileExist = [fail = fail](const std::string&) {
                    fail();
                    return true;
                };
            }
            EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgLoadError);
            EXPECT_EQ(cfg.samplingRates.size(), 1U);
            EXPECT_EQ(cfg.analogChannelConfigs.size(), 1U);
            EXPECT_EQ(cfg.lastSampleNumber, 3U);
            EXPECT_EQ(resultOf(dat.load(datPath)), Enums::DatLoadError);
            expectThreeSamples();
        }
    }
}

TEST_P(PlatformLibrary, WhatIsNoStandardExceptionPassesThrough) {
    site().open = [](const std::string&, Mode) -> std::ifstream { throw 42; };
    EXPECT_THROW(cfg.load(cfgPath), int);
    EXPECT_THROW(dat.load(datPath), int);
    expectThreeSamples();
    site().reset();
    EXPECT_EQ(resultOf(dat.load(datPath)), Enums::Ok);
}

TEST_P(PlatformLibrary, FileThatVanishesBeforeItIsOpenedIsLoadErrorWithNothingChanged) {
    site().fileExist = [](const std::string& path) { return std::filesystem::remove(path); };
    EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgLoadError);
    EXPECT_EQ(cfg.samplingRates.size(), 1U);
    EXPECT_EQ(resultOf(dat.load(datPath)), Enums::DatLoadError);
    expectThreeSamples();
}

TEST_P(PlatformLibrary, FileThatVanishesOnceItIsOpenLoads) {
    open([this](std::ifstream&) {
        std::filesystem::remove(cfgPath);
        std::filesystem::remove(datPath);
    });
    const RecordingBuilder again = recording(GetParam(), 3);
    EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgLoaded);
    again.write(dir.path(), "r");
    EXPECT_EQ(resultOf(dat.load(datPath)), Enums::Ok);
    expectThreeSamples();
    EXPECT_EQ(resultOf(dat.load(datPath)), Enums::DatFileNotFound);
}

TEST_P(PlatformLibrary, StreamWithItsBadBitSetIsLoadErrorWithNothingChanged) {
    open([](std::ifstream& stream) { stream.setstate(std::ios_base::badbit); });
    EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgLoadError);
    EXPECT_EQ(resultOf(dat.load(datPath)), Enums::DatLoadError);
    expectThreeSamples();
}

TEST_P(PlatformLibrary, StreamWithItsFailBitSetIsLoadErrorWithoutSamples) {
    open([](std::ifstream& stream) { stream.setstate(std::ios_base::failbit); });
    EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgLoadError);
    EXPECT_EQ(resultOf(dat.load(datPath)), Enums::DatLoadError);
    expectNoSamples(isAscii() ? 0.002 : -1.0); // its length is unknown: an exception only for lines
}

TEST_P(PlatformLibrary, StreamThatStandsAtItsEnd) {
    open([](std::ifstream& stream) { stream.seekg(0, std::ios_base::end); });
    EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgLoadError);
    if (isAscii()) {
        EXPECT_EQ(resultOf(dat.load(datPath)), Enums::Ok); // lines are read from the start of the file
        expectThreeSamples();
    } else {
        EXPECT_EQ(resultOf(dat.load(datPath)), Enums::DatLoadError); // records from where the stream stands
        expectNoSamples(-1.0);
    }
}

TEST_P(PlatformLibrary, StreamThatThrowsLoadsAGoodFile) {
    for (const std::ios_base::iostate mask : {std::ios_base::badbit, std::ios_base::failbit | std::ios_base::badbit,
                                              std::ios_base::eofbit | std::ios_base::failbit | std::ios_base::badbit}) {
        SCOPED_TRACE(static_cast<int>(mask));
        open([mask](std::ifstream& stream) { stream.exceptions(mask); });
        EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgLoaded);
        EXPECT_EQ(resultOf(dat.load(datPath)), Enums::Ok);
        expectThreeSamples();
    }
}

TEST_P(PlatformLibrary, StreamThatThrowsAtTheEndOfTheConfigurationIsLoadError) {
    open([](std::ifstream& stream) { stream.exceptions(std::ios_base::eofbit | std::ios_base::failbit); });
    const std::string text = recording(GetParam(), 3).cfgText();
    dir.write("r.cfg", text.substr(0, text.size() - 1)); // the last line ends with the file
    EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgLoadError);
    dir.write("r.cfg", text.substr(0, text.size() - 2)); // the file ends behind the type line
    EXPECT_EQ(resultOf(cfg.load(cfgPath)), Enums::CfgLoadError);
    EXPECT_EQ(resultOf(cfg.load(dir.write("e.cfg", ""))), Enums::CfgLoadError);
}

TEST_P(PlatformLibrary, StreamThatThrowsOnAReadErrorLeavesTheTimeOfTheEarlierLoad) {
    cfg.samplingRates.clear();
    ASSERT_EQ(resultOf(cfg.load(recording(GetParam(), 40000).write(dir.path(), "many"))), Enums::CfgLoaded);
    open([](std::ifstream& stream) { stream.exceptions(std::ios_base::badbit); });
    const std::size_t length = std::filesystem::file_size(dir.file("many.dat"));
    Disk disk;
    disk.failFrom(length - 10, EIO);
    EXPECT_EQ(resultOf(dat.load(dir.file("many.dat"))), Enums::DatLoadError);
    EXPECT_EQ(dat.lastSampleTime, 0.002);
    if (isAscii()) {
        EXPECT_TRUE(dat.samples.empty());
        return;
    }
    // The records read before the error stay.
    ASSERT_GT(dat.samples.size(), 10000U);
    ASSERT_LT(dat.samples.size(), 40000U);
    EXPECT_EQ(dat.samples[9999].index, 9999U);
    EXPECT_EQ(dat.samples[9999].time, 9.999);
    EXPECT_EQ(dat.samples[9999].analogValues, Analogs{999.0});
}

TEST_P(PlatformLibrary, ShortRecordFileOnAStreamThatThrowsIsLoadError) {
    open([](std::ifstream& stream) { stream.exceptions(std::ios_base::failbit | std::ios_base::eofbit); });
    Disk disk;
    disk.beforeRead(1, [this] { std::filesystem::resize_file(datPath, 3); });
    EXPECT_EQ(resultOf(dat.load(datPath)), Enums::DatLoadError);
    expectNoSamples(isAscii() ? -1.0 : 0.002); // a line that does not decode; a read that throws
}

TEST_P(PlatformLibrary, ConfigurationIsReadFromAStreamThatCannotSeek) {
    const Pipe pipe(recording(GetParam(), 3).cfgText());
    site().open = [&](const std::string&, Mode mode) { return std::ifstream(pipe.path(), mode); };
    filesBefore = openFiles() - 1;
    Cfg piped;
    EXPECT_EQ(resultOf(piped.load(cfgPath)), Enums::CfgLoaded);
    EXPECT_EQ(piped.analogChannelConfigs.size(), 1U);
    EXPECT_EQ(piped.binaryChannelConfigs.size(), 1U);
    EXPECT_EQ(piped.lastSampleNumber, 3U);
    EXPECT_EQ(piped.duration, 0.002);
}

TEST_P(PlatformLibrary, DataOnAStreamThatCannotSeekIsLoadErrorWithoutSamples) {
    const Pipe pipe(recording(GetParam(), 3).datBytes());
    site().open = [&](const std::string&, Mode mode) { return std::ifstream(pipe.path(), mode | std::ios_base::in); };
    filesBefore = openFiles() - 1;
    EXPECT_EQ(resultOf(dat.load(datPath)), Enums::DatLoadError);
    expectNoSamples(isAscii() ? 0.002 : -1.0);
}

TEST_P(PlatformLibrary, FacadeTurnsEveryFailureIntoACode) {
    Comtrade comtrade;
    ASSERT_EQ(resultOf(comtrade.load(cfgPath)), Enums::Ok);
    site().open = [](const std::string&, Mode) -> std::ifstream { throw std::runtime_error("no drive"); };
    EXPECT_EQ(resultOf(comtrade.load(cfgPath)), Enums::CfgLoadError);
    EXPECT_FALSE(comtrade.loaded);
    site().open = [this](const std::string& path, Mode mode) {
        if (path == datPath) {
            throw std::runtime_error("no drive");
        }
        return std::ifstream(path, mode);
    };
    EXPECT_EQ(resultOf(comtrade.load(cfgPath)), Enums::DatLoadError);
    EXPECT_FALSE(comtrade.loaded);
    EXPECT_EQ(comtrade.dat.samples.size(), 3U);
    EXPECT_EQ(comtrade.dat.lastSampleTime, 0.002);
    EXPECT_EQ(comtrade.filePath, cfgPath);
    EXPECT_EQ(comtrade.duration, 0.002);
    site().reset();
    EXPECT_EQ(resultOf(comtrade.load(cfgPath)), Enums::Ok);
    EXPECT_TRUE(comtrade.loaded);
}

} // namespace
