// Threads side by side: queries of one recording while nothing loads, and loads of recordings of their own. Of use
// under the thread sanitizer above all.

#include "Comtrade.h"
#include "support/RecordingBuilder.h"
#include "support/Results.h"
#include "support/TempDir.h"
#include "toUtf8.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

using namespace OrvComtradeLib;
using orvtest::RecordingBuilder;
using orvtest::resultOf;
using orvtest::TempDir;

namespace {

constexpr unsigned int kThreads = 4;
constexpr unsigned int kSamples = 400;

RecordingBuilder longRecording(const std::string& type) {
    RecordingBuilder builder;
    builder.analog("1,Ua,A,Bus,kV,0.5,0,0,-32767,32767,110,0.1,P")
        .analog("2,\xC8\xE0,B,Line,A,2,1,250,-32767,32767,5,1,S") // "Ia" in Cyrillic letters of code page 1251
        .analog("3,\xD0\xA2\xD0\xBE\xD0\xBA,C,Line,\xD0\xB0,1,0,0,-32767,32767,5,1,S") // "current", unit "a", in UTF-8
        .status("1,Trip,,,0")
        .status("2,\x8F\xE3\xE1\xAA,,,1") // "start" in code page 866
        .rate("1000,100")
        .rate("2000,400")
        .type(type);
    for (unsigned int i = 0; i < kSamples; ++i) {
        const double wave = static_cast<double>(i * i * 31 % 2001) - 1000.0;
        builder.record(i * 1000, {wave, -wave, 7.0}, {i % 7 < 3, i % 11 < 5});
    }
    return builder;
}

/// Every answer that the queries of a recording give, in one list.
struct Answers {
    std::vector<double> numbers;
    std::vector<std::string> texts;

    void add(double number) { numbers.push_back(number); }
    void add(const std::string& text) { texts.push_back(text); }
    void add(const std::vector<Orv::PointF>& points) {
        add(static_cast<double>(points.size()));
        for (const Orv::PointF& point : points) {
            add(static_cast<double>(point.x));
            add(static_cast<double>(point.y));
        }
    }

    bool operator==(const Answers& other) const { return numbers == other.numbers && texts == other.texts; }
};

Answers queryEverything(const Comtrade& recording) {
    Answers answers;
    for (const AnalogChannel& view : recording.analogChannels) {
        const BaseChannel& base = view;
        answers.add(base.name());
        answers.add(base.config.channelInfo());
        answers.add(view.phase());
        answers.add(view.unit());
        answers.add(view.isCurrent() ? 1.0 : 0.0);
        answers.add(base.getPoints(0.0, -1.0, -1.0));
        answers.add(base.getPoints(0.01, 0.17, 3000.0));
        answers.add(base.getPoints(-1.0, 2.0, 100.0));
        answers.add(view.defaultSampleRate(0.25));
        answers.add(view.getInterpolationValue(17, 0.0175));
        answers.add(view.getInterpolationValue(0.0, 1.0, 2.0, 5.0, 1.5));
        unsigned int hint = 0;
        for (int step = -2; step < 300; ++step) {
            answers.add(view.getValue(0.00091 * step, hint));
            answers.add(static_cast<double>(hint));
        }
    }
    for (const BinaryChannel& view : recording.binaryChannels) {
        const BaseChannel& base = view;
        answers.add(base.name());
        answers.add(base.config.channelInfo());
        answers.add(base.getPoints(0.0, -1.0, 0.0));
        answers.add(base.getPoints(0.03, 0.11, 0.0));
        answers.add(static_cast<double>(view.bool2Float(true)));
    }
    for (unsigned long index = 0; index < 2UL * kSamples; ++index) {
        answers.add(recording.cfg.timeFromSampleIndex(index));
    }
    for (const Sample& sample : recording.dat.samples) {
        answers.add(sample.time);
        for (const double value : sample.analogValues) {
            answers.add(value);
        }
        for (const bool state : sample.binaryValues) {
            answers.add(state ? 1.0 : 0.0);
        }
    }
    return answers;
}

/// Runs `work(thread)` in all threads, none of which begins before all exist; gives the sum of what they return.
template <class Work> unsigned int runSideBySide(Work work) {
    std::atomic<unsigned int> ready{0};
    std::atomic<unsigned int> sum{0};
    std::vector<std::thread> threads;
    for (unsigned int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            ++ready;
            while (ready != kThreads) {
                std::this_thread::yield();
            }
            sum += work(thread);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return sum;
}

} // namespace

TEST(ConcurrentViews, QueriesFromFourThreadsGiveWhatOneThreadGets) {
    const TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(longRecording("BINARY").write(dir.path(), "rec"))), Enums::Ok);
    const Answers expected = queryEverything(recording);
    // Of each analog view: the whole range at the default rate, 480 and 300 points, 302 instants; of each status view
    // some points; and the samples.
    ASSERT_GT(expected.numbers.size(), 3U * (2000 + 960 + 600 + 604) + 800 + 6UL * kSamples);
    ASSERT_EQ(expected.texts.size(), 3U * 4 + 2 * 2);

    constexpr unsigned int kRounds = 20;
    const unsigned int equal = runSideBySide([&](unsigned int) {
        unsigned int count = 0;
        for (unsigned int round = 0; round < kRounds; ++round) {
            count += queryEverything(recording) == expected ? 1U : 0U;
        }
        return count;
    });
    EXPECT_EQ(equal, kThreads * kRounds);
}

TEST(ConcurrentLoads, RecordingsOfTheirOwnInFourThreadsLoadAsInOne) {
    const TempDir dir;
    const std::array<std::string, 3> paths{longRecording("ASCII").write(dir.path(), "ascii"),
                                           longRecording("BINARY").write(dir.path(), "binary"),
                                           longRecording("FLOAT32").write(dir.path(), "float32")};
    std::vector<Answers> expected;
    for (const std::string& path : paths) {
        Comtrade recording;
        ASSERT_EQ(resultOf(recording.load(path)), Enums::Ok);
        ASSERT_EQ(recording.dat.samples.size(), kSamples);
        expected.push_back(queryEverything(recording));
    }

    constexpr unsigned int kRounds = 12;
    const unsigned int equal = runSideBySide([&](unsigned int thread) {
        unsigned int count = 0;
        for (unsigned int round = 0; round < kRounds; ++round) {
            const std::size_t which = (thread + round) % paths.size();
            Comtrade recording;
            const bool loaded = recording.load(paths[which]) == Enums::Ok;
            count += loaded && queryEverything(recording) == expected[which] ? 1U : 0U;
        }
        return count;
    });
    EXPECT_EQ(equal, kThreads * kRounds);
}

TEST(ConcurrentLoads, FailingLoadsDisturbNobody) {
    const TempDir dir;
    const std::string good = longRecording("ASCII").write(dir.path(), "good");
    const std::string bad = longRecording("BINARY").rawBytes(std::string(64, 'x')).write(dir.path(), "bad");
    const std::string missing = dir.file("missing.cfg");

    constexpr unsigned int kRounds = 12;
    const unsigned int asExpected = runSideBySide([&](unsigned int thread) {
        unsigned int count = 0;
        for (unsigned int round = 0; round < kRounds; ++round) {
            Comtrade recording;
            switch ((thread + round) % 3) {
            case 0:
                count += recording.load(good) == Enums::Ok && recording.dat.samples.size() == kSamples ? 1U : 0U;
                break;
            case 1:
                count += recording.load(bad) == Enums::DatLoadError && recording.dat.samples.empty() ? 1U : 0U;
                break;
            default:
                count += recording.load(missing) == Enums::CfgFileNotFound ? 1U : 0U;
            }
        }
        return count;
    });
    EXPECT_EQ(asExpected, kThreads * kRounds);
}

TEST(ConcurrentConversion, TextsConvertSideBySide) {
    const unsigned int equal = runSideBySide([](unsigned int) {
        unsigned int count = 0;
        for (unsigned int round = 0; round < 500; ++round) {
            // "Pusk" in Cyrillic letters of code page 866, of 1251 and of UTF-8
            for (const char* text : {"\x8F\xE3\xE1\xAA", "\xCF\xF3\xF1\xEA", "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA"}) {
                count += toUtf8::detectAndConvert(text) == "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA" ? 1U : 0U;
            }
        }
        return count;
    });
    EXPECT_EQ(equal, kThreads * 1500);
}
