#include "Comtrade.h"
#include "support/AllocationBudget.h"
#include "support/LittleEndianBytes.h"
#include "support/RecordingBuilder.h"
#include "support/Results.h"
#include "support/TempDir.h"
#include "toUtf8.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

using namespace OrvComtradeLib;
using orvtest::AllocationBudget;
using orvtest::allocationCounts;
using orvtest::Failing;
using orvtest::LittleEndianBytes;
using orvtest::RecordingBuilder;
using orvtest::resultOf;
using orvtest::TempDir;

using Analogs = std::vector<double>;
using Bits = std::vector<bool>;

constexpr std::size_t kMostAllocations = 100000; // no operation here comes near it

std::size_t openFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

/// Fails the first, the second, ... allocation of what `attempt` does, until it does without. `attempt` is handed a
/// function that runs an operation under the budget. Gives the number of allocations that were made to fail.
template <class Attempt> std::size_t failEveryAllocation(Failing failing, Attempt attempt) {
    for (std::size_t allowed = 0; allowed < kMostAllocations; ++allowed) {
        SCOPED_TRACE(testing::Message() << "allocation " << allowed
                                        << (failing == Failing::Once ? "" : " and all later"));
        const std::size_t filesBefore = openFiles();
        const std::size_t liveBefore = allocationCounts().live;
        bool exceeded = false;
        attempt([&](const auto& operation) {
            AllocationBudget budget(allowed, failing);
            try {
                operation();
            } catch (...) {
                exceeded = budget.exceeded();
                throw;
            }
            exceeded = budget.exceeded();
        });
        if (testing::Test::HasFailure()) {
            return allowed;
        }
        EXPECT_EQ(allocationCounts().live, liveBefore);
        EXPECT_EQ(openFiles(), filesBefore);
        if (!exceeded) {
            return allowed;
        }
    }
    ADD_FAILURE() << "the operation never succeeds";
    return kMostAllocations;
}

/// Texts are longer than what a string holds without an allocation; one channel name is in CP866.
RecordingBuilder recording(const std::string& type) {
    return RecordingBuilder()
        .station("A station with a long name,A recorder with a long name,1999")
        .analog("1,\x84\xA0\xE2\xA0 \xAE\xA1\xE0\xA0\xA7\xA5\xE6 \xA4\xAB\xA8\xAD\xAD\xEB\xA9,A,A circuit component,kV,"
                "2,1,0,-32767,32767,1,1,S")
        .analog("2,A current of the feeder,B,A circuit component,A,0.5,0,0,-32767,32767,1,1,S")
        .status("1,A breaker contact of the feeder,,A circuit component,0")
        .status("2,A trip contact of the feeder,,A circuit component,1")
        .rate("1000,4")
        .type(type)
        .record(0, {5, 100}, {false, true})
        .record(1000, {6, -100}, {true, true})
        .record(2000, {7, 3}, {true, false})
        .record(3000, {8, -1}, {false, false});
}

// "Data sample, long" in Russian, as the name above reads in UTF-8.
const char* const kFirstName =
    "\xD0\x94\xD0\xB0\xD1\x82\xD0\xB0 \xD0\xBE\xD0\xB1\xD1\x80\xD0\xB0\xD0\xB7\xD0\xB5\xD1\x86 "
    "\xD0\xB4\xD0\xBB\xD0\xB8\xD0\xBD\xD0\xBD\xD1\x8B\xD0\xB9";

void expectConfiguration(const Cfg& cfg) {
    EXPECT_EQ(cfg.stationName, "A station with a long name");
    EXPECT_EQ(cfg.recorderId, "A recorder with a long name");
    ASSERT_EQ(cfg.analogChannelConfigs.size(), 2U);
    EXPECT_EQ(cfg.analogChannelConfigs[0].channelId, kFirstName);
    EXPECT_EQ(cfg.analogChannelConfigs[0].unitMultiplier, 1000.0);
    EXPECT_EQ(cfg.analogChannelConfigs[1].channelId, "A current of the feeder");
    EXPECT_EQ(cfg.analogChannelConfigs[1].a, 0.5);
    ASSERT_EQ(cfg.binaryChannelConfigs.size(), 2U);
    EXPECT_EQ(cfg.binaryChannelConfigs[0].channelId, "A breaker contact of the feeder");
    EXPECT_EQ(cfg.binaryChannelConfigs[1].normalState, 1);
    ASSERT_FALSE(cfg.samplingRates.empty());
    EXPECT_LE(cfg.samplingRates.size(), 2U); // rates of a load that failed stay
    EXPECT_EQ(cfg.samplingRates.back().rate, 1000.0);
    EXPECT_EQ(cfg.lastSampleNumber, 4U);
    EXPECT_EQ(cfg.timeMultiplier, 1.0);
    EXPECT_EQ(cfg.duration, 0.003);
}

void expectSample(const Sample& sample, unsigned long index, double time, const Analogs& analogs, const Bits& bits) {
    EXPECT_EQ(sample.index, index);
    EXPECT_EQ(sample.time, time);
    EXPECT_EQ(sample.analogValues, analogs);
    EXPECT_EQ(sample.binaryValues, bits);
}

void expectSamples(const Dat& dat) {
    ASSERT_EQ(dat.samples.size(), 4U);
    expectSample(dat.samples[0], 0, 0.0, {11000.0, 50.0}, {false, true});
    expectSample(dat.samples[1], 1, 0.001, {13000.0, -50.0}, {true, true});
    expectSample(dat.samples[2], 2, 0.002, {15000.0, 1.5}, {true, false});
    expectSample(dat.samples[3], 3, 0.003, {17000.0, -0.5}, {false, false});
    EXPECT_EQ(dat.lastSampleTime, 0.003);
}

class AllocationFailure : public testing::TestWithParam<Failing> {
protected:
    AllocationFailure() {
        for (const char* const type : {"ASCII", "BINARY", "FLOAT32"}) {
            recording(type).write(dir.path(), type);
            Comtrade().load(file(type, ".cfg")); // allocates what the standard library keeps for good
        }
        openFiles();
    }

    std::string file(const std::string& type, const std::string& extension) const { return dir.file(type + extension); }

    TempDir dir;
};

INSTANTIATE_TEST_SUITE_P(Each, AllocationFailure, testing::Values(Failing::Once, Failing::FromThenOn),
                         [](const auto& param) { return param.param == Failing::Once ? "Once" : "FromThenOn"; });

TEST(AllocationBudget, ReachesIntoTheLibrary) {
    const std::string text(100, '\x84'); // CP866
    std::size_t before = allocationCounts().allocations;
    EXPECT_EQ(toUtf8::detectAndConvert(text).size(), 200U);
    EXPECT_GE(allocationCounts().allocations, before + 1);
    const AllocationBudget none(0, Failing::Once);
    EXPECT_THROW(toUtf8::detectAndConvert(text), std::bad_alloc);
    EXPECT_TRUE(none.exceeded());
}

TEST_P(AllocationFailure, CfgLoadGivesLoadErrorAndLoadsNextTime) {
    const std::string path = file("ASCII", ".cfg");
    const std::size_t failed = failEveryAllocation(GetParam(), [&](const auto& underBudget) {
        Cfg cfg;
        Enums::LoadResult result = resultOf(-1);
        underBudget([&] { result = resultOf(cfg.load(path)); });
        // A line that cannot grow ends as a stream error; on the very last line it need not change anything.
        if (result == Enums::CfgLoaded) {
            expectConfiguration(cfg);
        } else {
            EXPECT_EQ(result, Enums::CfgLoadError);
        }
        EXPECT_EQ(resultOf(cfg.load(path)), Enums::CfgLoaded);
        expectConfiguration(cfg);
    });
    EXPECT_GT(failed, 20U);
}

TEST_P(AllocationFailure, DatLoadGivesLoadErrorAndLoadsNextTime) {
    for (const char* const type : {"ASCII", "BINARY", "FLOAT32"}) {
        SCOPED_TRACE(type);
        const std::string path = file(type, ".dat");
        Cfg cfg;
        ASSERT_EQ(resultOf(cfg.load(file(type, ".cfg"))), Enums::CfgLoaded);
        const std::size_t failed = failEveryAllocation(GetParam(), [&](const auto& underBudget) {
            Dat dat(cfg);
            Enums::LoadResult result = resultOf(-1);
            underBudget([&] { result = resultOf(dat.load(path)); });
            if (result == Enums::Ok) {
                expectSamples(dat); // only spare room could not be given back
            } else {
                EXPECT_EQ(result, Enums::DatLoadError);
                EXPECT_TRUE(dat.samples.empty());
                EXPECT_EQ(dat.lastSampleTime, -1.0);
            }
            EXPECT_EQ(resultOf(dat.load(path)), Enums::Ok);
            expectSamples(dat);
        });
        EXPECT_GT(failed, 10U);
    }
}

TEST_P(AllocationFailure, DatLoadKeepsTheEarlierSamplesOrNone) {
    for (const char* const type : {"ASCII", "BINARY", "FLOAT32"}) {
        SCOPED_TRACE(type);
        const std::string path = file(type, ".dat");
        Cfg cfg;
        ASSERT_EQ(resultOf(cfg.load(file(type, ".cfg"))), Enums::CfgLoaded);
        bool kept = false;
        failEveryAllocation(GetParam(), [&](const auto& underBudget) {
            Dat dat(cfg);
            ASSERT_EQ(resultOf(dat.load(path)), Enums::Ok);
            Enums::LoadResult result = resultOf(-1);
            underBudget([&] { result = resultOf(dat.load(path)); });
            if (!dat.samples.empty()) {
                expectSamples(dat); // the file did not open, or all went well
                kept = kept || result == Enums::DatLoadError;
                return;
            }
            EXPECT_EQ(result, Enums::DatLoadError);
            EXPECT_TRUE(dat.lastSampleTime == -1.0 || dat.lastSampleTime == 0.003) << dat.lastSampleTime;
        });
        EXPECT_TRUE(kept);
    }
}

TEST_P(AllocationFailure, DatLoadOfALineLongerThanABlockGivesLoadError) {
    const std::string path =
        dir.write("long.dat", "1,0,5,100,0,1," + std::string(600000, 'x') + "\n2,1000,6,-100,1,1\n");
    Cfg cfg;
    ASSERT_EQ(resultOf(cfg.load(file("ASCII", ".cfg"))), Enums::CfgLoaded);
    failEveryAllocation(GetParam(), [&](const auto& underBudget) {
        Dat dat(cfg);
        Enums::LoadResult result = resultOf(-1);
        underBudget([&] { result = resultOf(dat.load(path)); });
        if (result != Enums::Ok) {
            EXPECT_EQ(result, Enums::DatLoadError);
            EXPECT_TRUE(dat.samples.empty());
            EXPECT_EQ(dat.lastSampleTime, -1.0);
            result = resultOf(dat.load(path));
        }
        EXPECT_EQ(result, Enums::Ok);
        ASSERT_EQ(dat.samples.size(), 2U);
        expectSample(dat.samples[1], 1, 0.001, {13000.0, -50.0}, {true, true});
    });
}

TEST_P(AllocationFailure, ComtradeLoadThrowsOnlyForWhatTheFacadeHoldsItself) {
    for (const char* const type : {"ASCII", "BINARY", "FLOAT32"}) {
        SCOPED_TRACE(type);
        const std::string path = file(type, ".cfg");
        bool viewsFailed = false;
        const std::size_t failed = failEveryAllocation(GetParam(), [&](const auto& underBudget) {
            Comtrade comtrade;
            Enums::LoadResult result = resultOf(-1);
            try {
                underBudget([&] { result = resultOf(comtrade.load(path)); });
                EXPECT_EQ(comtrade.loaded, result == Enums::Ok);
                EXPECT_TRUE(result == Enums::Ok || result == Enums::CfgLoadError || result == Enums::DatLoadError)
                    << result;
            } catch (const std::bad_alloc&) {
                if (comtrade.loaded) {
                    viewsFailed = true; // views, or the path that is kept with them
                    expectConfiguration(comtrade.cfg);
                    expectSamples(comtrade.dat);
                } else {
                    // file names, before anything is read
                    EXPECT_EQ(comtrade.cfg.stationName, "Station1");
                    EXPECT_TRUE(comtrade.cfg.currentLine.empty());
                    EXPECT_TRUE(comtrade.dat.samples.empty());
                }
            }
            EXPECT_EQ(resultOf(comtrade.load(path)), Enums::Ok);
            EXPECT_TRUE(comtrade.loaded);
            EXPECT_EQ(comtrade.filePath, path);
            EXPECT_EQ(comtrade.duration, 0.003);
            expectConfiguration(comtrade.cfg);
            expectSamples(comtrade.dat);
            ASSERT_EQ(comtrade.analogChannels.size(), 2U);
            EXPECT_EQ(comtrade.analogChannels[1].name(), "A current of the feeder,B,A circuit component,A");
            ASSERT_EQ(comtrade.binaryChannels.size(), 2U);
            EXPECT_EQ(comtrade.binaryChannels[1].name(), "A trip contact of the feeder,A circuit component");
        });
        EXPECT_TRUE(viewsFailed);
        EXPECT_GT(failed, 30U);
    }
}

TEST_P(AllocationFailure, AnalogGetPointsGivesNoPoints) {
    Comtrade comtrade;
    ASSERT_EQ(resultOf(comtrade.load(file("ASCII", ".cfg"))), Enums::Ok);
    const AnalogChannel& view = comtrade.analogChannels[0];
    const std::size_t failed = failEveryAllocation(GetParam(), [&](const auto& underBudget) {
        std::vector<Orv::PointF> points;
        underBudget([&] { points = view.getPoints(0.0, 0.003, 1000.0); });
        if (points.empty()) {
            points = view.getPoints(0.0, 0.003, 1000.0);
        }
        ASSERT_EQ(points.size(), 3U);
        EXPECT_EQ(points[0].y, 11000.0F);
        EXPECT_EQ(points[1].x, 0.001F);
        EXPECT_FLOAT_EQ(points[2].y, 15000.0F);
    });
    EXPECT_EQ(failed, 1U);
}

TEST_P(AllocationFailure, StatusGetPointsGivesNoPoints) {
    Comtrade comtrade;
    ASSERT_EQ(resultOf(comtrade.load(file("BINARY", ".cfg"))), Enums::Ok);
    const BinaryChannel& view = comtrade.binaryChannels[1];
    const std::size_t failed = failEveryAllocation(GetParam(), [&](const auto& underBudget) {
        std::vector<Orv::PointF> points;
        underBudget([&] { points = view.getPoints(0.0, 0.01, 0.0); });
        if (points.empty()) {
            points = view.getPoints(0.0, 0.01, 0.0);
        }
        ASSERT_EQ(points.size(), 4U);
        EXPECT_EQ(points[0].y, 0.0F);
        EXPECT_EQ(points[1].x, 0.001F);
        EXPECT_EQ(points[1].y, 1.0F);
        EXPECT_EQ(points[2].x, 0.003F);
        EXPECT_EQ(points[2].y, 0.0F);
        EXPECT_EQ(points[3].x, 0.01F);
    });
    EXPECT_GE(failed, 2U); // the list grows as it goes
}

TEST_P(AllocationFailure, SampleLoadGivesFalse) {
    Cfg ascii;
    Cfg binary;
    ASSERT_EQ(resultOf(ascii.load(file("ASCII", ".cfg"))), Enums::CfgLoaded);
    ASSERT_EQ(resultOf(binary.load(file("BINARY", ".cfg"))), Enums::CfgLoaded);
    const std::string line = "3,2000,7,3,1,0";
    std::string record = LittleEndianBytes().u32(3).u32(2000).i16(7).i16(3).u16(1).bytes();
    for (const bool text : {true, false}) {
        SCOPED_TRACE(text ? "line" : "record");
        const Cfg& cfg = text ? ascii : binary;
        const std::size_t failed = failEveryAllocation(GetParam(), [&](const auto& underBudget) {
            const auto load = [&](Sample& sample) {
                return text ? sample.load(line, 2) : sample.load(record.data(), 2);
            };
            auto sample = std::make_unique<Sample>(cfg);
            bool loaded = false;
            underBudget([&] { loaded = load(*sample); });
            if (!loaded) {
                sample = std::make_unique<Sample>(cfg); // each is loaded once
                EXPECT_TRUE(load(*sample));
            }
            expectSample(*sample, 2, 0.002, {15000.0, 1.5}, {true, false});
        });
        EXPECT_GE(failed, 3U); // two lists, one of which grows
    }
}

TEST_P(AllocationFailure, DetectAndConvertThrowsBadAlloc) {
    struct {
        const char* why;
        std::string text;
        std::size_t expected;
    } const rows[] = {
        {"CP866", std::string(300, '\x84'), 600},
        {"CP1251", std::string(300, '\xC4'), 600},
        {"UTF-8", std::string(kFirstName), 38},
        {"ASCII", std::string(300, 'a'), 300},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::size_t failed = failEveryAllocation(GetParam(), [&](const auto& underBudget) {
            std::string converted;
            try {
                underBudget([&] { converted = toUtf8::detectAndConvert(row.text); });
            } catch (const std::bad_alloc&) {
                EXPECT_TRUE(converted.empty());
                converted = toUtf8::detectAndConvert(row.text);
            }
            EXPECT_EQ(converted.size(), row.expected);
        });
        EXPECT_GE(failed, 1U);
    }
}

} // namespace
