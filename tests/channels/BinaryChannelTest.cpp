#include "BinaryChannel.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace OrvComtradeLib;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// A status channel record, samples with the given bits, and the view that joins them.
class StatusView {
public:
    explicit StatusView(const std::vector<std::pair<double, std::vector<bool>>>& course)
        : record(3, "4,Trip,A,CB1,1", 1999) {
        for (const auto& [time, bits] : course) {
            Sample sample(cfg);
            sample.time = time;
            sample.binaryValues = bits;
            samples.push_back(sample);
        }
    }

    BinaryChannel view() { return {record, samples}; }

    Cfg cfg;
    BinaryChannelConfig record;
    std::vector<Sample> samples;
};

/// Off at 0 s and 1 s, on at 2 s and 3 s.
const std::vector<std::pair<double, std::vector<bool>>> kOneStep = {
    {0, {false}}, {1, {false}}, {2, {true}}, {3, {true}}};

void expectPoints(const std::vector<Orv::PointF>& actual, const std::vector<Orv::PointF>& expected, const char* why) {
    ASSERT_EQ(actual.size(), expected.size()) << why;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(actual[i].x, expected[i].x) << why << ", point " << i;
        EXPECT_EQ(actual[i].y, expected[i].y) << why << ", point " << i;
    }
}

} // namespace

TEST(BinaryChannel, IsAViewByReferenceThatCanBeCopied) {
    static_assert(std::is_base_of_v<BaseChannel, BinaryChannel>);
    static_assert(std::is_copy_constructible_v<BinaryChannel>);

    StatusView recording(kOneStep);
    const BinaryChannel view = recording.view();
    const BinaryChannel copy(view); // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(&copy.samples, &recording.samples);
    EXPECT_EQ(&copy.config, &recording.record);
}

TEST(BinaryChannel, NameIsThatOfTheRecord) {
    StatusView recording(kOneStep);
    EXPECT_EQ(recording.view().name(), "Trip,CB1");
}

TEST(BinaryChannel, OwnRecordStaysAtItsDefaults) {
    StatusView recording(kOneStep);
    const BinaryChannel view = recording.view();
    EXPECT_EQ(view.binaryConfig.index, 0);
    EXPECT_EQ(view.binaryConfig.normalState, 0);
    EXPECT_EQ(view.binaryConfig.channelId, "");
    EXPECT_EQ(view.binaryConfig.phase, "");
    EXPECT_EQ(view.binaryConfig.circuitComponent, "");
    EXPECT_EQ(view.config.index, 3);
}

TEST(BinaryChannelBool2Float, IsOneOrZero) {
    StatusView recording(kOneStep);
    EXPECT_EQ(recording.view().bool2Float(true), 1.0F);
    EXPECT_EQ(recording.view().bool2Float(false), 0.0F);
}

TEST(BinaryChannelGetPoints, StepsOfOneChange) {
    struct Row {
        const char* why;
        double start, end;
        std::vector<Orv::PointF> expected;
    };
    const Row rows[] = {
        // From zero
        {"whole recording", 0, -1, {{0, 0}, {2, 1}, {3, 1}}},
        {"any negative end is the last sample", 0, -1e-300, {{0, 0}, {2, 1}, {3, 1}}},
        {"end between samples takes the state of the sample behind it", 0, 1.5, {{0, 0}, {1.5F, 1}}},
        {"end at a sample is inside, and the sample behind it closes", 0, 2, {{0, 0}, {2, 1}, {2, 1}}},
        {"end just before the change", 0, 1, {{0, 0}, {1, 1}}},
        {"no change in the range", 0, 0.5, {{0, 0}, {0.5F, 0}}},
        {"end after the last sample", 0, 5, {{0, 0}, {2, 1}, {5, 1}}},
        {"end of minus zero is no request for the whole", 0, -0.0, {{0, 0}, {0, 0}}},
        // From a later start: a change is counted from the start, opening and closing points are absolute
        {"start before the change", 1.5, -1, {{1.5F, 1}, {0.5F, 1}, {3, 1}}},
        {"start at a sample is inside", 1, -1, {{1, 0}, {1, 1}, {3, 1}}},
        {"start at the changed sample still sees the change", 2, -1, {{2, 1}, {0, 1}, {3, 1}}},
        {"start after the change", 2.5, -1, {{2.5F, 1}, {3, 1}}},
        {"start at the last sample", 3, -1, {{3, 1}}},
        {"start and end between the same samples", 1.2, 1.8, {{1.2F, 1}, {1.8F, 1}}},
        {"start and end between equal samples", 0.2, 0.8, {{0.2F, 0}, {0.8F, 0}}},
        {"start before the recording", -1, 2.5, {{-1, 0}, {3, 1}, {2.5F, 1}}},
        {"a change counted from the start that falls on the end is taken for the closing point",
         -1,
         3,
         {{-1, 0}, {3, 1}}},
        // Odd ranges
        {"end before start", 2, 1, {{2, 1}, {1, 1}}},
        {"every sample before the start", 4, -1, {}},
        {"every sample before the start, explicit end", 4, 5, {}},
        {"range before the recording", -3, -2, {{-3, 0}, {5, 1}, {3, 1}}},
    };
    for (const Row& row : rows) {
        StatusView recording(kOneStep);
        expectPoints(recording.view().getPoints(row.start, row.end, 0), row.expected, row.why);
    }
}

TEST(BinaryChannelGetPoints, EveryChangeIsAPointAndNothingIsAddedBeforeIt) {
    StatusView recording(
        {{0, {true}}, {1, {false}}, {2, {false}}, {3, {true}}, {4, {false}}, {5, {true}}, {6, {true}}});
    expectPoints(recording.view().getPoints(0, -1, 0), {{0, 1}, {1, 0}, {3, 1}, {4, 0}, {5, 1}, {6, 1}}, "alternating");
}

TEST(BinaryChannelGetPoints, ChangeAtTheLastSampleIsTheClosingPointToo) {
    StatusView recording({{0, {false}}, {1, {false}}, {2, {true}}});
    expectPoints(recording.view().getPoints(0, -1, 0), {{0, 0}, {2, 1}}, "from zero");
    expectPoints(recording.view().getPoints(0.5, -1, 0), {{0.5F, 0}, {1.5F, 1}, {2, 1}}, "from a later start");
}

TEST(BinaryChannelGetPoints, ConstantChannelGivesTheTwoEnds) {
    StatusView on({{0, {true}}, {1, {true}}, {2, {true}}});
    expectPoints(on.view().getPoints(0, -1, 0), {{0, 1}, {2, 1}}, "on");
    StatusView off({{0, {false}}, {1, {false}}, {2, {false}}});
    expectPoints(off.view().getPoints(0, -1, 0), {{0, 0}, {2, 0}}, "off");
}

TEST(BinaryChannelGetPoints, ClosingPointIsLeftOutWithinAMillionth) {
    StatusView recording({{0, {false}}, {1, {true}}, {4, {true}}});
    expectPoints(recording.view().getPoints(0, 1.0000009, 0), {{0, 0}, {1, 1}, {1.0000009F, 1}}, "sample beyond it");

    StatusView lastIsTheChange({{0, {false}}, {1, {true}}});
    expectPoints(lastIsTheChange.view().getPoints(0, 1.0000009, 0), {{0, 0}, {1, 1}}, "0.9 millionths");
    expectPoints(lastIsTheChange.view().getPoints(0, 1.0000011, 0), {{0, 0}, {1, 1}, {1.0000011F, 1}},
                 "1.1 millionths");
}

TEST(BinaryChannelGetPoints, EndThatNarrowsByMoreThanAMillionthIsPlottedTwice) {
    // 1000.1 as a float lies 0.0000244 below it; the second point has the state of the last sample inside the range
    StatusView recording({{0, {false}}, {1000, {false}}, {1001, {true}}});
    expectPoints(recording.view().getPoints(0, 1000.1, 0), {{0, 0}, {1000.1F, 1}, {1000.1F, 0}}, "on behind the end");

    StatusView change({{0, {false}}, {1000, {true}}, {1001, {false}}});
    expectPoints(change.view().getPoints(0, 1000.1, 0), {{0, 0}, {1000, 1}, {1000.1F, 0}, {1000.1F, 1}},
                 "off behind the end");

    StatusView lastSample({{0, {false}}, {1000.1, {true}}});
    expectPoints(lastSample.view().getPoints(0, -1, 0), {{0, 0}, {1000.1F, 1}, {1000.1F, 1}}, "end at the last sample");
}

TEST(BinaryChannelGetPoints, FirstSampleBeyondTheEndClosesWithTheStateBeforeTheRange) {
    // The samples before the start set the state that the closing point falls back to
    StatusView recording({{0, {true}}, {1000, {false}}, {1002, {true}}});
    expectPoints(recording.view().getPoints(1000.2, 1000.3, 0), {{1000.2F, 1}, {1000.3F, 1}, {1000.3F, 0}},
                 "both ends between two samples");
}

TEST(BinaryChannelGetPoints, PlotsStatusBitZeroWhateverTheRecord) {
    StatusView recording({{0, {false, true, false, true}}, {1, {true, false, false, true}}});
    for (const int index : {0, 1, 2, 3, 99, -1}) {
        recording.record.index = index;
        expectPoints(recording.view().getPoints(0, -1, 0), {{0, 0}, {1, 1}}, "bit 0");
        EXPECT_EQ(recording.view().name(), "Trip,CB1");
    }
}

TEST(BinaryChannelGetPoints, BitIsTheIndexOfTheOwnRecord) {
    StatusView recording({{0, {false, true}}, {1, {false, false}}});
    BinaryChannel view = recording.view();
    view.binaryConfig.index = 1;
    expectPoints(view.getPoints(0, -1, 0), {{0, 1}, {1, 0}}, "bit 1");
}

TEST(BinaryChannelGetPoints, RateIsNotUsed) {
    StatusView recording(kOneStep);
    for (const double rate : {-1.0, 0.0, 1e-300, 1e300, kNaN, std::numeric_limits<double>::infinity()}) {
        expectPoints(recording.view().getPoints(0, -1, rate), {{0, 0}, {2, 1}, {3, 1}}, "whole recording");
    }
}

TEST(BinaryChannelGetPoints, NoSamplesGiveTheEmptyList) {
    StatusView recording({});
    expectPoints(recording.view().getPoints(0, -1, 0), {}, "whole recording");
    expectPoints(recording.view().getPoints(0, 1, 0), {}, "explicit end");
}

TEST(BinaryChannelGetPoints, SingleSample) {
    StatusView recording({{1, {true}}});
    expectPoints(recording.view().getPoints(0, -1, 0), {{0, 1}, {1, 1}}, "from zero");
    expectPoints(recording.view().getPoints(1, -1, 0), {{1, 1}}, "from its time");
    expectPoints(recording.view().getPoints(0, 0.5, 0), {{0, 1}, {0.5F, 1}}, "end before it");
    expectPoints(recording.view().getPoints(2, 3, 0), {}, "start after it");
}

TEST(BinaryChannelGetPoints, SampleWithoutStatusBitsGivesTheEmptyList) {
    StatusView none({{0, {}}, {1, {}}});
    expectPoints(none.view().getPoints(0, -1, 0), {}, "no sample has a bit");
    StatusView one({{0, {true}}, {1, {}}});
    expectPoints(one.view().getPoints(0, -1, 0), {}, "one sample has no bit");
}

TEST(BinaryChannelGetPoints, TimesOutOfOrderAreWalkedInFileOrder) {
    StatusView recording({{0, {false}}, {2, {true}}, {1, {false}}, {3, {true}}});
    expectPoints(recording.view().getPoints(0, -1, 0), {{0, 0}, {2, 1}, {1, 0}, {3, 1}}, "all inside");
    expectPoints(recording.view().getPoints(1.5, -1, 0), {{1.5F, 1}, {0.5F, 1}, {1.5F, 1}, {3, 1}},
                 "a sample before the start still sets the state");
    expectPoints(recording.view().getPoints(0, 1.5, 0), {{0, 0}, {1.5F, 1}}, "the first sample beyond the end ends it");
}

TEST(BinaryChannelGetPoints, EndThatIsNotANumberIsNeverReached) {
    StatusView recording(kOneStep);
    expectPoints(recording.view().getPoints(0, kNaN, 0), {{0, 0}, {2, 1}}, "no closing point");
}

TEST(BinaryChannelGetPoints, IsReachedThroughTheBase) {
    StatusView recording(kOneStep);
    const BinaryChannel view = recording.view();
    const BaseChannel& base = view;
    EXPECT_EQ(base.getPoints(0, -1, 0).size(), 3U);
}
