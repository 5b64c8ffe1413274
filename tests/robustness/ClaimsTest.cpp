#include "Comtrade.h"
#include "support/AllocationBudget.h"
#include "support/Disk.h"
#include "support/FileLimits.h"
#include "support/Results.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

using namespace OrvComtradeLib;
using orvtest::AllocationMeter;
using orvtest::Deadline;
using orvtest::Disk;
using orvtest::resultOf;
using orvtest::TempDir;

using Analogs = std::vector<double>;

constexpr std::size_t kMebibyte = std::size_t{1} << 20U;
constexpr std::size_t kMillion = 1000000;
constexpr std::size_t kHundredMillion = 100 * kMillion;

std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

/// A configuration of one analog and one status channel; each line is the test's to replace.
struct Lines {
    std::string station = "S,R,1999";
    std::string counts = "2,1A,1D";
    std::string analog = "1,U,,,V,1,0,0,0,0";
    std::string status = "1,T";
    std::string frequency = "50";
    std::string rateCount = "1";
    std::string rates = "1000,3";
    std::string start = "01/02/2003,04:05:06.000000";
    std::string trigger = "01/02/2003,04:05:06.000000";
    std::string type = "ASCII";
    std::string multiplier = "1";

    std::string text() const {
        std::string all;
        for (const std::string* const line : {&station, &counts, &analog, &status, &frequency, &rateCount, &rates,
                                              &start, &trigger, &type, &multiplier}) {
            all += *line;
            all += '\n';
        }
        return all;
    }
};

const char* const kThreeLines = "1,0,5,1\n2,1000,6,0\n3,2000,7,1\n";

/// Loads a recording and measures what that takes beyond what the program holds already. Memory counts in allocated
/// bytes, work in bytes read, in allocations, in bytes allocated in all, and in pages touched for the first time.
class Claims : public testing::Test {
protected:
    Enums::LoadResult load(const std::string& cfgText, const std::string& datBytes) {
        dir.write("r.cfg", cfgText);
        dir.write("r.dat", datBytes);
        return loadFiles();
    }

    Enums::LoadResult load(const Lines& lines, const std::string& datBytes = kThreeLines) {
        return load(lines.text(), datBytes);
    }

    Enums::LoadResult loadFiles() {
        const std::size_t files =
            std::filesystem::file_size(dir.file("r.cfg")) + std::filesystem::file_size(dir.file("r.dat"));
        comtrade.emplace(); // an earlier recording holds memory, and its rates
        const Deadline deadline(120);
        const Disk disk;
        const long pagesBefore = pagesTouched();
        const AllocationMeter meter;
        const Enums::LoadResult result = resultOf(comtrade->load(dir.file("r.cfg")));
        const std::size_t peak = meter.peak();
        EXPECT_LE(peak, 16 * files + 64 * kMebibyte);
        EXPECT_LE(meter.bytes(), 64 * files + 64 * kMebibyte);
        EXPECT_LE(meter.allocations(), files + 1000);
        EXPECT_LE(disk.bytes(), 2 * files + files / 4 + 64 * 1024); // lines are counted before a claim they refute
        EXPECT_LE(disk.reads(), files / 512 + 1000);
        EXPECT_LE(static_cast<std::size_t>(pagesTouched() - pagesBefore) * 4096, 64 * files + 64 * kMebibyte);
        RecordProperty("load_" + std::to_string(++loads),
                       "bytes of the files " + std::to_string(files) + ", at the peak " + std::to_string(peak) +
                           ", allocated " + std::to_string(meter.bytes()) + " in " +
                           std::to_string(meter.allocations()) + ", read " + std::to_string(disk.bytes()) + " in " +
                           std::to_string(disk.reads()));
        return result;
    }

    void expectThreeSamples() const {
        ASSERT_EQ(comtrade->dat.samples.size(), 3U);
        EXPECT_EQ(comtrade->dat.samples[0].analogValues, Analogs{5.0});
        EXPECT_EQ(comtrade->dat.samples[2].analogValues, Analogs{7.0});
        EXPECT_EQ(comtrade->dat.samples[2].time, 0.002);
        EXPECT_EQ(comtrade->dat.lastSampleTime, 0.002);
    }

    TempDir dir;
    std::optional<Comtrade> comtrade;

private:
    int loads = 0;

    static long pagesTouched() {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_minflt;
    }
};

TEST_F(Claims, TheMeterSeesTheLibrary) {
    dir.write("r.cfg", Lines().text());
    dir.write("r.dat", kThreeLines);
    comtrade.emplace();
    const Disk disk;
    const AllocationMeter meter;
    ASSERT_EQ(resultOf(comtrade->load(dir.file("r.cfg"))), Enums::Ok);
    EXPECT_GE(disk.bytes(), 120U); // the two files are longer together
    EXPECT_GE(disk.reads(), 2U);
    EXPECT_GE(meter.allocations(), 10U);
    EXPECT_GE(meter.peak(), 1000U);
    expectThreeSamples();
}

// Channel counts

TEST_F(Claims, ChannelCountsBeyondTheFileAreCfgLoadError) {
    for (const char* const counts :
         {"2147483647,2147483647A,0D", "2147483647,0A,2147483647D", "2147483647,1A,2147483646D",
          "2147483648,2147483648A,0D", "9223372036854775808,9223372036854775808A,0D", "18446744073709551615,1A,1D",
          "-1,-1A,0D", "-1,0A,-1D", "-2147483648,-2147483648A,0D", "-2,-1A,-1D", "2,-2147483646A,-2147483648D",
          "1,2147483647A,-2147483646D", "-1,2147483647A,-2147483648D"}) {
        SCOPED_TRACE(counts);
        Lines lines;
        lines.counts = counts;
        EXPECT_EQ(load(lines), Enums::CfgLoadError);
        EXPECT_FALSE(comtrade->loaded);
    }
}

// Rate counts

TEST_F(Claims, RateCountsBeyondTheFileAreCfgLoadError) {
    for (const char* const count : {"2147483647", "1000000000", "2147483648", "9223372036854775808",
                                    "18446744073709551616", "-1", "-2147483648", "-9223372036854775808"}) {
        SCOPED_TRACE(count);
        Lines lines;
        lines.rateCount = count;
        EXPECT_EQ(load(lines), Enums::CfgLoadError);
        EXPECT_TRUE(comtrade->dat.samples.empty());
    }
}

// Sample counts

TEST_F(Claims, ATrillionSamplesOverThreeLinesLoadsThree) {
    Lines lines;
    lines.rates = "1000,1000000000000";
    EXPECT_EQ(load(lines), Enums::Ok);
    EXPECT_EQ(comtrade->cfg.lastSampleNumber, 1000000000000U);
    expectThreeSamples();
}

TEST_F(Claims, ATrillionSamplesOverThreeRecordsAreDatLoadError) {
    for (const char* const type : {"BINARY", "FLOAT32"}) {
        SCOPED_TRACE(type);
        Lines lines;
        lines.rates = "1000,1000000000000";
        lines.type = type;
        EXPECT_EQ(load(lines, std::string(36, '\0')), Enums::DatLoadError);
        EXPECT_TRUE(comtrade->dat.samples.empty());
    }
}

TEST_F(Claims, SampleCountsThatNoMemoryHoldsAreErrors) {
    struct {
        const char* rates;
        const char* type;
        int expected;
    } const rows[] = {
        {"1000,9223372036854775807", "ASCII", Enums::DatLoadError},
        {"1000,9223372036854775807", "BINARY", Enums::DatLoadError},
        {"1000,-1", "ASCII", Enums::DatLoadError},
        {"1000,-1", "BINARY", Enums::DatLoadError},
        {"1000,-9223372036854775808", "ASCII", Enums::DatLoadError}, // 2^63
        {"1000,-9223372036854775808", "FLOAT32", Enums::DatLoadError},
        {"1000,9223372036854775808", "ASCII", Enums::CfgLoadError}, // beyond what converts
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.rates << ' ' << row.type);
        Lines lines;
        lines.rates = row.rates;
        lines.type = row.type;
        EXPECT_EQ(load(lines), row.expected);
        EXPECT_TRUE(comtrade->dat.samples.empty());
        EXPECT_EQ(comtrade->dat.lastSampleTime, -1.0);
    }
}

TEST_F(Claims, SampleCountsThatNoMemoryHoldsDestroyTheEarlierSamples) {
    Lines lines;
    struct {
        const char* type;
        double lastSampleTime;
    } const rows[] = {
        {"ASCII", 0.002}, // ends as an exhausted memory does
        {"BINARY", -1.0}, // ends as a length that does not match
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.type);
        EXPECT_EQ(load(Lines()), Enums::Ok);
        expectThreeSamples();
        lines.rates = "1000,9223372036854775807";
        lines.type = row.type;
        dir.write("r.cfg", lines.text());
        EXPECT_EQ(resultOf(comtrade->load(dir.file("r.cfg"))), Enums::DatLoadError);
        EXPECT_TRUE(comtrade->dat.samples.empty());
        EXPECT_EQ(comtrade->dat.lastSampleTime, row.lastSampleTime);
    }
}

TEST_F(Claims, ATrillionSamplesOverTwoMillionLinesLoadsThoseThereAre) {
    Lines lines;
    lines.rates = "1000,1000000000000";
    EXPECT_EQ(load(lines, repeated("1000000,0,5,1\n", 2 * kMillion)), Enums::Ok);
    EXPECT_EQ(comtrade->dat.samples.size(), 2000000U);
}

TEST_F(Claims, AMillionRatesWithAMillionSamplesInLinesAndRecords) {
    struct {
        const char* type;
        std::string data;
    } const rows[] = {
        {"ASCII", repeated("1,0,5,1\n", kMillion)},
        {"BINARY", repeated(std::string("\1\0\0\0\0\0\0\0\5\0\1\0", 12), kMillion)},
    };
    // Every segment lasts one sample at 1024 Hz; the last of them declares the number of samples.
    Lines lines;
    lines.rateCount = "1000000";
    lines.rates = repeated("1024,1\n", kMillion - 1) + "1024,1000000";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.type);
        lines.type = row.type;
        EXPECT_EQ(load(lines, row.data), Enums::Ok);
        ASSERT_EQ(comtrade->dat.samples.size(), 1000000U);
        EXPECT_EQ(comtrade->dat.samples[512].time, 0.5);
        EXPECT_EQ(comtrade->dat.lastSampleTime, 976.5615234375); // 999999 / 1024
        EXPECT_EQ(comtrade->duration, 976.5615234375);
    }
}

TEST_F(Claims, AMillionRatesOfNoSamples) {
    Lines lines;
    lines.rateCount = "1000000";
    lines.rates = repeated("1024,0\n", kMillion - 1) + "1024,1000000";
    EXPECT_EQ(load(lines, repeated("1,0,5,1\n", kMillion)), Enums::Ok);
    EXPECT_EQ(comtrade->dat.lastSampleTime, 976.5615234375);
}

TEST_F(Claims, AMillionZeroRatesTakeTheTimeFromTheLines) {
    Lines lines;
    lines.rateCount = "1000000";
    lines.rates = repeated("0,1\n", kMillion - 1) + "0,1000000";
    EXPECT_EQ(load(lines, repeated("1,2000000,5,1\n", kMillion)), Enums::Ok);
    ASSERT_EQ(comtrade->dat.samples.size(), 1000000U);
    EXPECT_EQ(comtrade->duration, 2.0);
}

// Long lines

TEST_F(Claims, AConfigurationLineOfAHundredMegabytesLoads) {
    const std::string longText(kHundredMillion, 'x');
    Lines lines;
    struct {
        const char* why;
        std::string& line;
        std::string text;
    } rows[] = {
        {"station", lines.station, ""},
        {"counts", lines.counts, "2,1A,1D,"},
        {"analog", lines.analog, "1,U,,,V,1,0,0,0,0,"},
        {"status", lines.status, "1,T,,,0,"},
        {"frequency", lines.frequency, "50"},
        {"rate count", lines.rateCount, "1"},
        {"rate", lines.rates, "1000,3,"},
        {"start", lines.start, ""},
        {"trigger", lines.trigger, ""},
        {"type", lines.type, ""},
        {"multiplier", lines.multiplier, "1"},
    };
    for (auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string usual = row.line;
        row.line = row.text + longText;
        EXPECT_EQ(load(lines), Enums::Ok);
        expectThreeSamples();
        row.line = usual;
    }
}

TEST_F(Claims, AChannelNameOfAHundredMegabytesInCp866Loads) {
    Lines lines;
    lines.analog = "1," + std::string(kHundredMillion, '\x80') + ",,,V,1,0,0,0,0";
    EXPECT_EQ(load(lines), Enums::Ok);
    EXPECT_EQ(comtrade->cfg.analogChannelConfigs[0].channelId.size(), 200000000U);
    expectThreeSamples();
}

TEST_F(Claims, ANumberOfAHundredMegabytesLoads) {
    Lines lines;
    lines.frequency = "50." + std::string(kHundredMillion, '0');
    EXPECT_EQ(load(lines), Enums::Ok);
    EXPECT_EQ(comtrade->cfg.lineFrequency, 50.0);
    lines.frequency = std::string(kHundredMillion, '9');
    EXPECT_EQ(load(lines), Enums::CfgLoadError);
    lines.frequency = "50";
    lines.rateCount = std::string(kHundredMillion, '0') + "1";
    EXPECT_EQ(load(lines), Enums::Ok);
    expectThreeSamples();
}

TEST_F(Claims, ADataLineOfAHundredMegabytesLoads) {
    struct {
        const char* why;
        std::string line;
    } const rows[] = {
        {"zeros before a number", "1,0," + std::string(kHundredMillion, '0') + "5,1\n"},
        {"blanks before a number", "1,0," + std::string(kHundredMillion, ' ') + "5,1\n"},
        {"blanks before a state", "1,0,5," + std::string(kHundredMillion, ' ') + "1\n"},
        {"behind the last column", "1,0,5,1," + std::string(kHundredMillion, 'x') + "\n"},
        {"behind the last column, at the end", "1,0,5,1\n2,0,6,0\n3,0,7,1" + std::string(kHundredMillion, ',')},
        {"behind the last sample", kThreeLines + std::string(kHundredMillion, 'x')},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(load(Lines(), row.line), Enums::Ok);
        ASSERT_FALSE(comtrade->dat.samples.empty());
        EXPECT_EQ(comtrade->dat.samples[0].analogValues, Analogs{5.0});
        EXPECT_EQ(comtrade->dat.samples[0].binaryValues, std::vector<bool>{true});
    }
}

TEST_F(Claims, ADataLineOfAHundredMegabytesOfGarbageIsDatLoadError) {
    for (const char byte : {'x', ',', ' ', '-', '5', '\xFF', '\r', '\0'}) {
        SCOPED_TRACE(testing::Message() << "byte " << static_cast<int>(byte));
        EXPECT_EQ(load(Lines(), std::string(kHundredMillion, byte)), Enums::DatLoadError);
        EXPECT_TRUE(comtrade->dat.samples.empty());
    }
}

TEST_F(Claims, AConfigurationLineOfMillionsOfCommasLoads) {
    const std::string commas(16 * kMillion, ',');
    Lines lines;
    struct {
        const char* why;
        std::string& line;
        const char* before;
    } rows[] = {
        {"station", lines.station, ""},   {"counts", lines.counts, ""}, {"analog", lines.analog, ",1,1,S"},
        {"status", lines.status, ",,,0"}, {"rate", lines.rates, ""},
    };
    for (auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string usual = row.line;
        row.line += row.before + commas;
        EXPECT_EQ(load(lines), Enums::Ok);
        row.line = usual;
    }
}

// Empty lines and NUL bytes

TEST_F(Claims, AMillionEmptyDataLinesAreSkipped) {
    EXPECT_EQ(load(Lines(), std::string(kMillion, '\n') + kThreeLines + std::string(kMillion, '\n')), Enums::Ok);
    expectThreeSamples();
    Lines lines;
    lines.rates = "1000,1000000000000";
    EXPECT_EQ(load(lines, std::string(kHundredMillion, '\n') + kThreeLines), Enums::Ok);
    expectThreeSamples();
}

TEST_F(Claims, ATrillionSamplesOverAHundredMillionEmptyLinesLoadsThoseThereAre) {
    Lines lines;
    lines.counts = "1,0A,1D";
    lines.analog = lines.status; // the shortest of data lines, so that the most of them would fit
    lines.status = lines.frequency;
    lines.frequency = "1";
    lines.rateCount = "1000,1000000000000";
    lines.rates = lines.start;
    lines.type = "1";
    lines.multiplier.clear();
    lines.trigger = "ASCII";
    EXPECT_EQ(load(lines, std::string(kHundredMillion, '\n') + "1,0,1\n2,0,0\n"), Enums::Ok);
    ASSERT_EQ(comtrade->dat.samples.size(), 2U);
    EXPECT_EQ(comtrade->dat.samples[1].time, 0.001);
}

TEST_F(Claims, AMillionCarriageReturnLinesAreDatLoadError) {
    EXPECT_EQ(load(Lines(), repeated("\r\n", kMillion) + kThreeLines), Enums::DatLoadError);
    EXPECT_TRUE(comtrade->dat.samples.empty());
}

TEST_F(Claims, AMillionEmptyConfigurationLinesAreCfgLoadError) {
    EXPECT_EQ(load(std::string(kMillion, '\n'), kThreeLines), Enums::CfgLoadError);
    EXPECT_EQ(load(Lines().text() + std::string(kMillion, '\n'), kThreeLines), Enums::Ok); // never read
}

TEST_F(Claims, NulBytesAloneAreErrors) {
    const std::string nuls(kMillion, '\0');
    EXPECT_EQ(load(nuls, nuls), Enums::CfgLoadError);
    EXPECT_EQ(load(repeated(std::string("\0\n", 2), kMillion), nuls), Enums::CfgLoadError);
    EXPECT_EQ(load(Lines(), nuls), Enums::DatLoadError);
    EXPECT_EQ(load(Lines(), repeated(std::string("\0\n", 2), kMillion)), Enums::DatLoadError);
}

TEST_F(Claims, NulBytesAreBytesOfATextAndEndANumber) {
    const std::string nul(1, '\0');
    Lines lines;
    lines.station = "S" + nul + "T,R" + nul + ",1999" + nul + "7";
    lines.counts = "2" + nul + ",1" + nul + ",1" + nul;
    lines.analog = nul + ",U" + nul + "x,,,V" + nul + ",1" + nul + ",0" + nul + ",0,0,0";
    lines.status = "1,T" + nul + ",,,0" + nul;
    lines.frequency = "50" + nul + "9";
    lines.rateCount = "1" + nul + "9";
    lines.rates = "1000" + nul + "9,3" + nul + "9";
    lines.start = nul;
    lines.trigger = nul;
    lines.type = "BINARY" + nul; // no known word
    lines.multiplier = "1" + nul + "9";
    EXPECT_EQ(load(lines), Enums::Ok);
    EXPECT_EQ(comtrade->cfg.stationName, "S" + nul + "T");
    EXPECT_EQ(comtrade->cfg.revisionYear, 1999);
    EXPECT_EQ(comtrade->cfg.analogChannelConfigs[0].channelId, "U" + nul + "x");
    EXPECT_EQ(comtrade->cfg.binaryChannelConfigs[0].channelId, "T" + nul);
    EXPECT_EQ(comtrade->cfg.dataFileType, Enums::Ascii);
    EXPECT_EQ(comtrade->duration, 0.002);
    expectThreeSamples();
}

TEST_F(Claims, NulBytesAsStatusColumnsReadAsTrue) {
    Lines lines;
    lines.counts = "1000000,0A,1000000D";
    lines.analog = repeated("1,T\n", kMillion - 1) + "1,T";
    lines.status = "50";
    lines.frequency = "1";
    lines.rateCount = "1000,1";
    lines.rates = "start";
    lines.start = "trigger";
    lines.trigger = "ASCII";
    lines.type = "1";
    lines.multiplier.clear();
    dir.write("r.cfg", lines.text());
    dir.write("r.dat", "1,0," + std::string(kMillion, '\0'));
    comtrade.emplace();
    EXPECT_EQ(resultOf(comtrade->cfg.load(dir.file("r.cfg"))), Enums::CfgLoaded);
    EXPECT_EQ(resultOf(comtrade->dat.load(dir.file("r.dat"))), Enums::Ok);
    ASSERT_EQ(comtrade->dat.samples.size(), 1U);
    EXPECT_EQ(comtrade->dat.samples[0].binaryValues, std::vector<bool>(kMillion, true));
}

TEST_F(Claims, RecordsOfNulBytesAreZeros) {
    Lines lines;
    lines.type = "BINARY";
    lines.rates = "1000,1000000";
    EXPECT_EQ(load(lines, std::string(12 * kMillion, '\0')), Enums::Ok);
    ASSERT_EQ(comtrade->dat.samples.size(), 1000000U);
    EXPECT_EQ(comtrade->dat.samples.back().analogValues, Analogs{0.0});
    EXPECT_EQ(comtrade->dat.samples.back().binaryValues, std::vector<bool>{false});
}

} // namespace
