// What columns cost, in counted bytes, page faults and room, never in seconds.

#include "intake/comparison.h"
#include "support/LittleEndianBytes.h"
#include "support/TempDir.h"

#include <OrvComtradeIntake/Intake.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <new>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using namespace OrvComtradeIntake;
using orvtest::LittleEndianBytes;
using orvtest::TempDir;

constexpr std::size_t kChannels = 16;
constexpr std::size_t kSamples = 60000;
constexpr std::size_t kMebibyte = std::size_t{1} << 20U;

std::string configuration(const std::string& type) {
    std::string text = "S,R,1999\n" + std::to_string(kChannels) + "," + std::to_string(kChannels) + "A,0D\n";
    for (std::size_t i = 1; i <= kChannels; ++i) {
        text += std::to_string(i) + ",U,,,V,0.5,1,0,-32767,32767,1,1,S\n";
    }
    return text + "50\n1\n1000," + std::to_string(kSamples) +
           "\n01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\n" + type + "\n1\n";
}

/// 8 MB of values of a recording of 2.4 MB or more.
std::string dataOf(const std::string& type) {
    if (type == "ASCII") {
        std::string text;
        for (std::size_t i = 0; i < kSamples; ++i) {
            text += std::to_string(i + 1) + "," + std::to_string(1000 * i);
            for (std::size_t channel = 0; channel < kChannels; ++channel) {
                text += "," + std::to_string((i * 7 + channel) % 1000);
            }
            text += "\r\n";
        }
        return text;
    }
    LittleEndianBytes bytes;
    for (std::size_t i = 0; i < kSamples; ++i) {
        bytes.u32(static_cast<std::uint32_t>(i + 1)).u32(static_cast<std::uint32_t>(1000 * i));
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            bytes.u16(static_cast<std::uint16_t>((i * 7 + channel) % 1000));
        }
    }
    return bytes.bytes();
}

struct Files {
    explicit Files(const std::string& type) {
        const std::string data = dataOf(type);
        length = data.size();
        folder.write("rec.dat", data);
        path = folder.write("rec.cfg", configuration(type));
    }

    TempDir folder;
    std::string path;
    std::size_t length = 0; ///< of the data
};

/// Bytes that this process has read so far.
std::size_t bytesRead() {
    std::ifstream counts("/proc/self/io");
    std::string name;
    std::size_t count = 0;
    counts >> name >> count;
    return count;
}

std::size_t pageFaults() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_minflt);
}

TEST(ColumnsCost, AFileInWhichNothingNeedsRepairIsReadOnce) {
    for (const std::string type : {"BINARY", "ASCII"}) {
        const Files files(type);
        Columns columns;
        const std::size_t before = bytesRead();
        const Opened opened = open(files.path, columns);
        const std::size_t once = bytesRead() - before;
        EXPECT_EQ(columns.samples, kSamples) << type;
        EXPECT_GE(once, files.length) << type;
        EXPECT_LE(once, files.length + kMebibyte / 2) << type; // the first bytes twice, and what the counting reads
    }
}

TEST(ColumnsCost, StorageOfEarlierColumnsIsUsedAgain) {
    const Files files("BINARY");
    Columns columns;
    open(files.path, columns);
    const double* const values = columns.analog.data();
    const double* const times = columns.time.data();
    const std::size_t before = pageFaults();
    const Opened opened = open(files.path, columns);
    const std::size_t again = pageFaults() - before;
    EXPECT_EQ(columns.analog.data(), values);
    EXPECT_EQ(columns.time.data(), times);
    EXPECT_LE(again, columns.analog.size() * sizeof(double) / 4096 / 4);
    Selection part;
    part.first = 7;
    part.count = 100;
    opened.columns(part, columns);
    EXPECT_EQ(columns.analog.data(), values);
    EXPECT_EQ(orvtest::firstDifference(columns, opened.columns(part)), "");
}

TEST(ColumnsCost, AreTheSameWhereThereAreNoHugePages) {
    const Files files("BINARY");
    Columns expected;
    open(files.path, expected);
    ASSERT_EQ(prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0), 0);
    Columns columns;
    open(files.path, columns);
    prctl(PR_SET_THP_DISABLE, 0, 0, 0, 0);
    EXPECT_EQ(orvtest::firstDifference(columns, expected), "");
}

void limitAddressSpaceTo(std::size_t more) {
    std::ifstream counts("/proc/self/statm");
    std::size_t pages = 0;
    counts >> pages;
    const rlim_t most = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + more;
    const rlimit limit{most, most};
    setrlimit(RLIMIT_AS, &limit);
}

/// 0 if blocks of the recording go through where there is no room for all of it, and that is reported for all.
int blocksInLittleRoom(const std::string& path) {
    const Opened opened = open(path);
    limitAddressSpaceTo(6 * kMebibyte);
    std::size_t samples = 0;
    opened.columns({}, 1000, [&samples](const Columns& block) {
        samples += block.samples;
        return true;
    });
    try {
        const Columns all = opened.columns();
        return 1;
    } catch (const std::bad_alloc&) {
        return samples == kSamples ? 0 : 2;
    }
}

TEST(ColumnsCostDeathTest, BlocksNeedNoRoomForTheRecording) {
    for (const std::string type : {"BINARY", "ASCII"}) {
        const Files files(type);
        EXPECT_EXIT(std::_Exit(blocksInLittleRoom(files.path)), testing::ExitedWithCode(0), "") << type;
    }
}

TEST(ColumnsCost, ADeclaredNumberOfLinesTakesNoMoreRoomThanTheDataCouldFill) {
    TempDir folder;
    std::string text = configuration("ASCII");
    text.replace(text.find("1000," + std::to_string(kSamples)), 10, "1000,999999999");
    folder.write("rec.dat", dataOf("ASCII").substr(0, 100000));
    const std::string path = folder.write("rec.cfg", text);
    Columns columns;
    const Opened opened = open(path, columns);
    EXPECT_TRUE(opened.readable());
    EXPECT_EQ(columns.samples, opened.header().samples);
    EXPECT_LE(columns.analog.capacity(), 100000U);
    EXPECT_EQ(orvtest::firstDifference(columns, opened.columns()), "");
}

} // namespace
