#include "AnalogChannel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace OrvComtradeLib;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

using TimeAndValue = std::pair<double, double>;

/// A channel record, samples with one analog value each, and the view that joins them.
class AnalogView {
public:
    explicit AnalogView(const std::vector<TimeAndValue>& course, double skew = 0.0, const std::string& unit = "V")
        : record(0, "1,Ua,A,Bus 1," + unit + ",1,0,0,-32767,32767,1,1,S", 1999) {
        for (const auto& [time, value] : course) {
            Sample sample(cfg);
            sample.time = time;
            sample.analogValues = {value};
            samples.push_back(sample);
        }
        record.skew = skew;
    }

    AnalogChannel view() { return {record, samples}; }

    Cfg cfg;
    AnalogChannelConfig record;
    std::vector<Sample> samples;
};

/// Slopes 10, 5 and 25, so that a value shows which segment it was taken from.
const std::vector<TimeAndValue> kBentCourse = {{0, 0}, {1, 10}, {2, 15}, {3, 40}};

double valueAt(AnalogView& recording, double time) {
    unsigned int hint = 0;
    return recording.view().getValue(time, hint);
}

} // namespace

TEST(AnalogChannel, IsAViewByReferenceThatCanBeCopied) {
    static_assert(std::is_base_of_v<BaseChannel, AnalogChannel>);
    static_assert(std::is_abstract_v<BaseChannel>);
    static_assert(std::has_virtual_destructor_v<BaseChannel>);
    static_assert(std::is_copy_constructible_v<AnalogChannel>);

    AnalogView recording(kBentCourse, 0.25);
    const AnalogChannel view = recording.view();
    const AnalogChannel copy(view); // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(&copy.samples, &recording.samples);
    EXPECT_EQ(&copy.config, &recording.record);
    EXPECT_EQ(copy.skew, 0.25);
}

TEST(AnalogChannel, NamePhaseAndUnitAreThoseOfTheRecord) {
    const std::vector<Sample> samples;
    AnalogChannelConfig record(0, "1, Ua , A ,Bus 1, kV ,1,0,0,-32767,32767,1,1,S", 1999);
    const AnalogChannel view(record, samples);
    EXPECT_EQ(view.name(), " Ua , A ,Bus 1, kV ");
    EXPECT_EQ(view.phase(), " A ");
    EXPECT_EQ(view.unit(), " kV ");

    record.channelId = "Ib";
    record.phase = "B";
    record.unit = "A";
    EXPECT_EQ(view.name(), "Ib,B,Bus 1,A");
    EXPECT_EQ(view.phase(), "B");
    EXPECT_EQ(view.unit(), "A");
}

TEST(AnalogChannel, SkewIsCopiedOnceAtConstruction) {
    AnalogView recording(kBentCourse, 1.0);
    AnalogChannel view = recording.view();
    recording.record.skew = 2.0;
    EXPECT_EQ(view.skew, 1.0);
    unsigned int hint = 0;
    EXPECT_EQ(view.getValue(2.0, hint), 10.0);

    view.skew = 0.0;
    hint = 0;
    EXPECT_EQ(view.getValue(2.0, hint), 15.0);
}

TEST(AnalogChannelIsCurrent, HoldsForTheThreeExactTextsOnly) {
    struct Row {
        const char* why;
        const char* unit;
        bool expected;
    };
    const Row rows[] = {
        // Currents
        {"Latin capital", "A", true},
        {"Latin small letter", "a", true},
        {"Cyrillic small letter a", "\xD0\xB0", true},
        // Not currents
        {"Cyrillic capital A is not lowered", "\xD0\x90", false},
        {"prefix kilo", "kA", false},
        {"prefix milli", "mA", false},
        {"Cyrillic with a prefix", "\xD0\xBA\xD0\xB0", false},
        {"voltage", "V", false},
        {"empty", "", false},
        {"blank behind", "A ", false},
        {"blank before", " A", false},
        {"twice", "AA", false},
        {"first byte of the Cyrillic letter alone", "\xD0", false},
    };
    for (const Row& row : rows) {
        AnalogView recording(kBentCourse, 0.0, row.unit);
        EXPECT_EQ(recording.view().isCurrent(), row.expected) << row.why;
    }
}

// The literals differ in the last bits from every other way to write the straight line: y1 + (x - x1) * k, either
// product fused into its addition, both fused, y1 + (x*k - x1*k), y2 - (x2 - x)*k and the weighted mean.
TEST(AnalogChannelInterpolation, IsEvaluatedInThePrescribedOrder) {
    struct Row {
        double x1, y1, x2, y2, x, expected;
    };
    const Row rows[] = {
        {0.1, 1.1, 0.2, -4.1, 0.129, -0x1.a1cac083126f0p-2},  {0.1, 1.1, 0.2, -4.1, 0.137, -0x1.a5e353f7ced98p-1},
        {0.1, 100.1, 0.2, 55.7, 0.183, 0x1.f9fbe76c8b43cp+5}, {0.3, 100.1, 0.4, 9.7, 0.313, 0x1.61645a1cac080p+6},
        {0.3, 100.1, 0.4, 9.7, 0.361, 0x1.67a5e353f7ce8p+5},
    };
    for (const Row& row : rows) {
        AnalogView recording({{row.x1, row.y1}, {row.x2, row.y2}});
        const AnalogChannel view = recording.view();
        EXPECT_EQ(view.getInterpolationValue(row.x1, row.y1, row.x2, row.y2, row.x), row.expected) << row.x;
        EXPECT_EQ(view.getInterpolationValue(0U, row.x), row.expected) << row.x;
        EXPECT_EQ(valueAt(recording, row.x), row.expected) << row.x;
    }
}

TEST(AnalogChannelInterpolation, RightEndIsNotPinnedToItsSample) {
    AnalogView recording({{0.7, 0.1}, {1.1, 0.3}});
    EXPECT_EQ(valueAt(recording, 1.1), 0.30000000000000004);
}

TEST(AnalogChannelInterpolation, RunsOnBeyondItsTwoPoints) {
    AnalogView recording(kBentCourse);
    const AnalogChannel view = recording.view();
    EXPECT_EQ(view.getInterpolationValue(1.0, 10.0, 2.0, 20.0, 4.0), 40.0);
    EXPECT_EQ(view.getInterpolationValue(1.0, 10.0, 2.0, 20.0, -1.0), -10.0);
    EXPECT_EQ(view.getInterpolationValue(2U, 5.0), 90.0);
    EXPECT_EQ(view.getInterpolationValue(2U, -1.0), -60.0);
}

TEST(AnalogChannelInterpolation, EqualTimesGiveTheFloatingPointResultOfTheDivision) {
    AnalogView recording({{1, 10}, {1, 20}});
    const AnalogChannel view = recording.view();
    EXPECT_TRUE(std::isnan(view.getInterpolationValue(1.0, 2.0, 1.0, 5.0, 1.0)));
    EXPECT_TRUE(std::isnan(view.getInterpolationValue(1.0, 2.0, 1.0, 2.0, 1.0)));
    EXPECT_EQ(view.getInterpolationValue(-1.0, 2.0, -1.0, 5.0, 1.0), kInfinity);
    EXPECT_EQ(view.getInterpolationValue(-1.0, 5.0, -1.0, 2.0, 1.0), -kInfinity);
    EXPECT_TRUE(std::isnan(view.getInterpolationValue(0U, 1.0)));
}

TEST(AnalogChannelInterpolation, TimeOfTheSamplePairFormIsNotCorrectedForSkew) {
    AnalogView recording(kBentCourse, 0.5);
    EXPECT_EQ(recording.view().getInterpolationValue(1U, 1.5), 12.5);
}

TEST(AnalogChannelInterpolation, SamplePairThatDoesNotExistGivesZero) {
    AnalogView recording(kBentCourse);
    const AnalogChannel view = recording.view();
    EXPECT_EQ(view.getInterpolationValue(2U, 3.0), 40.0);
    EXPECT_EQ(view.getInterpolationValue(3U, 3.0), 0.0);
    EXPECT_EQ(view.getInterpolationValue(4U, 3.0), 0.0);
    EXPECT_EQ(view.getInterpolationValue(std::numeric_limits<unsigned int>::max(), 3.0), 0.0);

    AnalogView empty({});
    EXPECT_EQ(empty.view().getInterpolationValue(0U, 0.0), 0.0);
}

TEST(AnalogChannelInterpolation, ChannelIsTheIndexOfTheRecord) {
    AnalogView recording({{0, 1}, {1, 2}});
    recording.record.index = 2;
    recording.samples[0].analogValues = {1, 2, 30};
    recording.samples[1].analogValues = {5, 6, 70};
    EXPECT_EQ(recording.view().getInterpolationValue(0U, 0.5), 50.0);
    EXPECT_EQ(valueAt(recording, 0.25), 40.0);
    EXPECT_EQ(valueAt(recording, 0.0), 30.0);
}

TEST(AnalogChannelInterpolation, SampleWithFewerAnalogValuesGivesZero) {
    AnalogView recording(kBentCourse);
    recording.samples[2].analogValues.clear();
    const AnalogChannel view = recording.view();
    EXPECT_EQ(view.getInterpolationValue(0U, 0.5), 5.0);
    EXPECT_EQ(view.getInterpolationValue(1U, 1.5), 0.0);
    EXPECT_EQ(view.getInterpolationValue(2U, 2.5), 0.0);
    EXPECT_EQ(valueAt(recording, 0.5), 5.0);
    EXPECT_EQ(valueAt(recording, 1.5), 0.0);
    EXPECT_EQ(valueAt(recording, 2.5), 0.0);
}

TEST(AnalogChannelGetValue, FirstSampleWithoutTheChannelGivesZero) {
    AnalogView recording(kBentCourse);
    recording.samples[0].analogValues.clear();
    EXPECT_EQ(valueAt(recording, 0.0), 0.0);
    EXPECT_EQ(valueAt(recording, 0.5), 0.0);
    EXPECT_EQ(valueAt(recording, 1.5), 12.5);
}

TEST(AnalogChannelGetValue, HintMovesForwardOnlyAndIsStored) {
    struct Row {
        const char* why;
        double time;
        unsigned int hintBefore;
        double expected;
        unsigned int hintAfter;
    };
    const Row rows[] = {
        // From the start
        {"at the first sample", 0.0, 0, 0.0, 0},
        {"in the first segment", 0.5, 0, 5.0, 1},
        {"at a sample the segment before it is taken", 1.0, 0, 10.0, 1},
        {"in the second segment", 1.5, 0, 12.5, 2},
        {"in the last segment", 2.5, 0, 27.5, 3},
        {"at the last sample", 3.0, 0, 40.0, 3},
        // From a hint
        {"hint at the right place", 1.5, 2, 12.5, 2},
        {"hint before the right place", 2.5, 1, 27.5, 3},
        {"hint one beyond extends the later segment backwards", 0.5, 2, 7.5, 2},
        {"hint two beyond", 0.5, 3, -22.5, 3},
        {"hint beyond at time zero", 0.0, 2, 5.0, 2},
        // Outside the recording
        {"negative time leaves the hint", -0.5, 2, 0.0, 2},
        {"after the last sample leaves the hint", 3.5, 1, 0.0, 1},
        // Hints that name no sample
        {"hint equal to the number of samples", 2.5, 4, 27.5, 3},
        {"hint equal to the number of samples, early time", 0.5, 4, -22.5, 3},
        {"largest hint", 2.5, std::numeric_limits<unsigned int>::max(), 27.5, 3},
        {"largest hint outside the recording", 9.0, std::numeric_limits<unsigned int>::max(), 0.0,
         std::numeric_limits<unsigned int>::max()},
    };
    for (const Row& row : rows) {
        AnalogView recording(kBentCourse);
        unsigned int hint = row.hintBefore;
        EXPECT_EQ(recording.view().getValue(row.time, hint), row.expected) << row.why;
        EXPECT_EQ(hint, row.hintAfter) << row.why;
    }
}

TEST(AnalogChannelGetValue, HintCarriesOnOverAscendingTimes) {
    AnalogView recording(kBentCourse);
    const AnalogChannel view = recording.view();
    unsigned int hint = 0;
    EXPECT_EQ(view.getValue(0.5, hint), 5.0);
    EXPECT_EQ(view.getValue(2.5, hint), 27.5);
    EXPECT_EQ(view.getValue(1.5, hint), 2.5); // the last segment, extended
    EXPECT_EQ(hint, 3U);
}

TEST(AnalogChannelGetValue, BeforeTheFirstSampleIsItsValue) {
    AnalogView recording({{1, 10}, {2, 30}});
    EXPECT_EQ(valueAt(recording, 0.0), 10.0);
    EXPECT_EQ(valueAt(recording, -0.0), 10.0);
    EXPECT_EQ(valueAt(recording, 0.5), 10.0);
    EXPECT_EQ(valueAt(recording, 1.0), 10.0);
    EXPECT_EQ(valueAt(recording, 1.5), 20.0);
    EXPECT_EQ(valueAt(recording, -1e-12), 0.0);
    EXPECT_EQ(valueAt(recording, 2.0000001), 0.0);
}

TEST(AnalogChannelGetValue, SkewShiftsTheTimeAxis) {
    AnalogView recording({{0, 5}, {0.001, 10}, {0.002, 30}, {0.003, 20}}, 0.001);
    EXPECT_EQ(valueAt(recording, 0.003), 30.0);
    EXPECT_EQ(valueAt(recording, 0.001), 5.0);
    EXPECT_EQ(valueAt(recording, 0.004), 20.0);
    EXPECT_EQ(valueAt(recording, 0.0005), 0.0) << "negative after the skew";
    EXPECT_EQ(valueAt(recording, 0.0041), 0.0) << "after the last sample";

    AnalogView early({{0, 5}, {1, 10}, {2, 30}}, -0.5);
    EXPECT_EQ(valueAt(early, -0.5), 5.0);
    EXPECT_EQ(valueAt(early, 0.5), 10.0);
    EXPECT_EQ(valueAt(early, 1.5), 30.0);
    EXPECT_EQ(valueAt(early, 1.75), 0.0);
}

TEST(AnalogChannelGetValue, SkewIsSubtractedInDoublePrecision) {
    // 0.3 - 0.1 lies one step below 0.2, still before the step there
    AnalogView recording({{0, 1}, {0.19999999999999998, 1}, {0.2, 1000}, {1, 1000}}, 0.1);
    EXPECT_EQ(valueAt(recording, 0.3), 1.0);
}

TEST(AnalogChannelGetValue, SingleSampleGivesItsValueUpToItsTime) {
    AnalogView recording({{1.0, 7.0}});
    EXPECT_EQ(valueAt(recording, 1.0), 7.0);
    EXPECT_EQ(valueAt(recording, 0.25), 7.0);
    EXPECT_EQ(valueAt(recording, 1.0000001), 0.0);
    EXPECT_EQ(valueAt(recording, -0.25), 0.0);

    for (const unsigned int beyond : {1U, 2U, std::numeric_limits<unsigned int>::max()}) {
        unsigned int hint = beyond;
        EXPECT_EQ(recording.view().getValue(1.0, hint), 7.0) << beyond;
        EXPECT_EQ(hint, 0U) << beyond;
    }
}

TEST(AnalogChannelGetValue, NoSamplesGiveZero) {
    AnalogView recording({});
    for (const double time : {0.0, 1.0, -1.0, kNaN}) {
        unsigned int hint = 7;
        EXPECT_EQ(recording.view().getValue(time, hint), 0.0) << time;
        EXPECT_EQ(hint, 7U) << time;
    }
}

TEST(AnalogChannelGetValue, NegativeSampleTimesAreNeverReached) {
    AnalogView recording({{-2, 1}, {-1, 2}, {0, 30}, {1, 50}});
    EXPECT_EQ(valueAt(recording, -1.0), 0.0);
    EXPECT_EQ(valueAt(recording, 0.0), 30.0);
    EXPECT_EQ(valueAt(recording, 0.5), 40.0);

    AnalogView allNegative({{-2, 1}, {-1, 2}});
    EXPECT_EQ(valueAt(allNegative, 0.0), 0.0);
    EXPECT_EQ(valueAt(allNegative, -1.5), 0.0);
}

TEST(AnalogChannelGetValue, TimesOutOfOrderAreSearchedInFileOrder) {
    AnalogView recording({{0, 0}, {2, 20}, {1, 100}, {3, 30}});
    EXPECT_EQ(valueAt(recording, 1.5), 15.0);
    EXPECT_EQ(valueAt(recording, 2.5), 47.5);

    AnalogView lastIsEarlier({{0, 0}, {5, 50}, {1, 7}});
    EXPECT_EQ(valueAt(lastIsEarlier, 0.5), 5.0);
    EXPECT_EQ(valueAt(lastIsEarlier, 3.0), 0.0) << "after the time of the last sample";
}

TEST(AnalogChannelGetValue, RepeatedTimesTakeTheFirstSegmentThatReachesThem) {
    AnalogView recording({{0, 0}, {1, 10}, {1, 20}, {2, 40}});
    EXPECT_EQ(valueAt(recording, 1.0), 10.0);
    EXPECT_EQ(valueAt(recording, 1.5), 30.0);
}

TEST(AnalogChannelGetValue, TimeThatIsNotANumberStaysAtTheHint) {
    AnalogView recording({{0, 6}, {1, 10}, {2, 15}});
    const AnalogChannel view = recording.view();
    unsigned int hint = 0;
    EXPECT_EQ(view.getValue(kNaN, hint), 6.0);
    EXPECT_EQ(hint, 0U);
    hint = 2;
    EXPECT_TRUE(std::isnan(view.getValue(kNaN, hint)));
    EXPECT_EQ(hint, 2U);
}

TEST(AnalogChannelGetValue, LastSampleTimeThatIsNotANumberEndsNoSearchEarly) {
    AnalogView recording({{0, 0}, {1, 10}, {kNaN, 15}});
    EXPECT_EQ(valueAt(recording, 0.5), 5.0);
    unsigned int hint = 0;
    EXPECT_TRUE(std::isnan(recording.view().getValue(9.0, hint)));
    EXPECT_EQ(hint, 2U);
}

TEST(AnalogChannelDefaultSampleRate, IsNudgedOffMultiplesOfTwoHundredths) {
    struct Row {
        const char* why;
        double duration;
        double expected;
    };
    const Row rows[] = {
        // Close to a multiple of 0.02
        {"1000 exactly", 1.0, 1000.006},
        {"2000", 0.5, 2000.006},
        {"0.0059 above a multiple", 0.9999941000348098, 1000.0119},
        {"0.0059 below a multiple", 0.9999859001988072, 1000.0201},
        {"0.0029 below a multiple", 7.0, 142.86314285714286},
        {"0.0018 above a multiple", 55.0, 18.187818181818184},
        {"a small rate", 1e300, 0.006},
        {"negative duration", -1.0, -999.994},
        // Far from one
        {"0.0061 above a multiple", 0.9999939000372098, 1000.0061},
        {"0.0061 below a multiple", 0.9999861001932073, 1000.0139},
        {"a third", 3.0, 333.3333333333333},
        {"0.0086 below a multiple", 0.7, 1428.5714285714287},
        {"midway between multiples", 100000.0, 0.01},
        // Limits
        {"zero duration", 0.0, kInfinity},
        {"endless duration", kInfinity, 0.006},
    };
    AnalogView recording(kBentCourse);
    for (const Row& row : rows) {
        EXPECT_EQ(recording.view().defaultSampleRate(row.duration), row.expected) << row.why;
    }
    EXPECT_TRUE(std::isnan(recording.view().defaultSampleRate(kNaN)));
}

TEST(AnalogChannelGetPoints, ExampleOfFivePoints) {
    AnalogView recording({{0, 0}, {1, 10}});
    const std::vector<Orv::PointF> points = recording.view().getPoints(0, 0.5, 10);
    ASSERT_EQ(points.size(), 5U);
    const float times[] = {0.0F, 0.1F, 0.2F, 0.3F, 0.4F};
    const float values[] = {0.0F, 1.0F, 2.0F, 3.0F, 4.0F};
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(points[i].x, times[i]) << i;
        EXPECT_EQ(points[i].y, values[i]) << i;
    }
}

TEST(AnalogChannelGetPoints, CountIsTheTotalRoundedUp) {
    struct Row {
        const char* why;
        double start, end, rate;
        std::size_t expected;
    };
    const Row rows[] = {
        // Explicit range and rate
        {"whole total", 0, 0.5, 10, 5},
        {"fraction of a point", 0, 0.35, 10, 4},
        {"less than one point", 0, 1e-9, 1, 1},
        {"1.1 - 1.0 is a little more than 0.1", 1.0, 1.1, 10, 2},
        {"0.4 - 0.1 is a little more than 0.3", 0.1, 0.4, 10, 4},
        {"1.0 - 0.8 is a little less than 0.2", 0.8, 1.0, 10, 2},
        {"0.29 * 100 is a little less than 29", 0, 0.29, 100, 29},
        {"start before the recording", -2, 1, 1, 3},
        {"end after the recording", 0, 50, 1, 50},
        // Nothing to plot
        {"end before start", 2, 1, 10, 0},
        {"end at start", 1, 1, 10, 0},
        {"no points per second", 0, 1, 0, 0},
        {"end of minus zero is no request for the whole", 0, -0.0, 10, 0},
        {"rate of minus zero is no request for the default", 0, 1, -0.0, 0},
        // Whole recording: the last sample is at 3 s
        {"whole recording", 0, -1, 10, 30},
        {"any negative end", 0, -1e-300, 10, 30},
        {"start within", 1, -1, 10, 20},
        {"start after the last sample", 4, -1, 10, 0},
        {"negative end is replaced even above a lower start", -5, -4, 1, 8},
        // Default rate
        {"default over 2 s is 500.006", 0, 2, -1, 1001},
        {"default over 3 s is 333.33, three times which is 1000", 0, 3, -1, 1000},
        {"any negative rate", 0, 2, -1e-300, 1001},
        {"both negative factors: 1 s at -999.994", 2, 1, -1, 1000},
        {"default rate of no duration is infinite, 0 times it no number", 1, 1, -1, 0},
    };
    for (const Row& row : rows) {
        AnalogView recording(kBentCourse);
        EXPECT_EQ(recording.view().getPoints(row.start, row.end, row.rate).size(), row.expected) << row.why;
    }
}

TEST(AnalogChannelGetPoints, TotalsThatCannotBeReservedGiveTheEmptyList) {
    struct Row {
        const char* why;
        double start, end, rate;
    };
    const Row rows[] = {
        {"more than a vector can hold", 0, 2e18, 1},
        {"just below 2^64", 0, 18446744073709549568.0, 1},
        {"2^64", 0, 18446744073709551616.0, 1},
        {"far beyond", 0, 1e300, 1},
        {"product overflows", 0, 1e300, 1e300},
        {"endless range", 0, kInfinity, 1},
        {"endless range, default rate", 0, kInfinity, -1},
        {"endless rate", 0, 1, kInfinity},
        {"start without end", -kInfinity, 1, 1},
        {"start is not a number", kNaN, 1, 1},
        {"end is not a number", 0, kNaN, 1},
        {"rate is not a number", 0, 1, kNaN},
        {"large negative total", 1e300, 0, 1e300},
    };
    AnalogView recording(kBentCourse);
    for (const Row& row : rows) {
        EXPECT_TRUE(recording.view().getPoints(row.start, row.end, row.rate).empty()) << row.why;
    }
}

TEST(AnalogChannelGetPoints, WholeRecordingOfOneSecondGives1001Points) {
    AnalogView recording({{0, 0}, {1, 10}});
    const std::vector<Orv::PointF> points = recording.view().getPoints(0, -1, -1);
    ASSERT_EQ(points.size(), 1001U);
    EXPECT_EQ(points[0].x, 0.0F);
    EXPECT_EQ(points[1].x, 0x1.062476p-10F);
    EXPECT_EQ(points[500].x, 0x1.ffff36p-2F);
    EXPECT_EQ(points[1000].x, 0x1.ffff36p-1F);
    EXPECT_EQ(points[1000].y, 9.99994F);
}

TEST(AnalogChannelGetPoints, NegativeFactorsWalkBackwardsFromTheStart) {
    AnalogView recording(kBentCourse);
    const std::vector<Orv::PointF> points = recording.view().getPoints(2, 1, -1);
    ASSERT_EQ(points.size(), 1000U);
    EXPECT_EQ(points[0].x, 2.0F);
    EXPECT_EQ(points[0].y, 15.0F);
    EXPECT_EQ(points[1].x, 1.998999994F);
    EXPECT_EQ(points[1].y, 14.99499997F);
    EXPECT_EQ(points[999].x, 1.000994006F);
    EXPECT_EQ(points[999].y, 10.00497003F);
}

TEST(AnalogChannelGetPoints, OneHintServesTheWholeCall) {
    // Backwards over two segments: only a hint kept from the first point extends the later segment down to x = 0.5
    AnalogView recording({{0, 0}, {1, 10}, {2, 15}, {3, 40}});
    const std::vector<Orv::PointF> points = recording.view().getPoints(3, 0.5, -1);
    ASSERT_EQ(points.size(), 1000U);
    EXPECT_EQ(points[0].y, 40.0F);
    // 500 / -399.994 + 3 = 1.7499812497 on the line 25 t - 35 (from 2 s to 3 s), not 5 t + 5
    EXPECT_EQ(points[500].x, 1.749981249718746F);
    EXPECT_EQ(points[500].y, 8.74953124F);
}

TEST(AnalogChannelGetPoints, TimeIsTheQuotientAndNotAProductWithTheStep) {
    // 3 / 10 is the last sample's time; 3 * 0.1 lies after it
    AnalogView recording({{0, 0}, {0.3, 3}});
    const std::vector<Orv::PointF> points = recording.view().getPoints(0, 0.35, 10);
    ASSERT_EQ(points.size(), 4U);
    EXPECT_EQ(points[3].y, 3.0F);
}

TEST(AnalogChannelGetPoints, TimeIsNotASumOfSteps) {
    // Eight times 0.1 added up stay below 0.8 and thus below time zero after the skew
    AnalogView recording({{0, 7}, {1, 7}}, 0.8);
    const std::vector<Orv::PointF> points = recording.view().getPoints(0, 1, 10);
    ASSERT_EQ(points.size(), 10U);
    EXPECT_EQ(points[7].y, 0.0F);
    EXPECT_EQ(points[8].y, 7.0F);
}

TEST(AnalogChannelGetPoints, StartIsAddedAfterTheDivision) {
    // 2 / 10 + 0.1 is one step above 0.3, which (2 + 1) / 10 is not
    AnalogView recording({{0, 7}, {1, 7}}, 0.30000000000000004);
    const std::vector<Orv::PointF> points = recording.view().getPoints(0.1, 0.35, 10);
    ASSERT_EQ(points.size(), 3U);
    EXPECT_EQ(points[1].y, 0.0F);
    EXPECT_EQ(points[2].y, 7.0F);
}

TEST(AnalogChannelGetPoints, FirstPointLiesAtTheStart) {
    AnalogView recording(kBentCourse);
    const std::vector<Orv::PointF> points = recording.view().getPoints(1.5, 2.6, 1);
    ASSERT_EQ(points.size(), 2U);
    EXPECT_EQ(points[0].x, 1.5F);
    EXPECT_EQ(points[0].y, 12.5F);
    EXPECT_EQ(points[1].x, 2.5F);
    EXPECT_EQ(points[1].y, 27.5F);
}

TEST(AnalogChannelGetPoints, PointsOutsideTheRecordingLieOnTheAxis) {
    AnalogView recording({{0, 5}, {1, 10}});
    const std::vector<Orv::PointF> points = recording.view().getPoints(-2, 4, 1);
    ASSERT_EQ(points.size(), 6U);
    const float times[] = {-2, -1, 0, 1, 2, 3};
    const float values[] = {0, 0, 5, 10, 0, 0};
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(points[i].x, times[i]) << i;
        EXPECT_EQ(points[i].y, values[i]) << i;
    }
}

TEST(AnalogChannelGetPoints, XIsNotShiftedBySkew) {
    AnalogView recording({{0, 5}, {1, 10}, {2, 30}}, 1.0);
    const std::vector<Orv::PointF> points = recording.view().getPoints(0, 3, 1);
    ASSERT_EQ(points.size(), 3U);
    const float times[] = {0, 1, 2};
    const float values[] = {0, 5, 10};
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(points[i].x, times[i]) << i;
        EXPECT_EQ(points[i].y, values[i]) << i;
    }
}

TEST(AnalogChannelGetPoints, PeaksBetweenPointsAreNotKept) {
    AnalogView recording({{0, 0}, {0.5, 0}, {0.501, 1000}, {0.502, 0}, {1, 0}, {2, 0}});
    const std::vector<Orv::PointF> points = recording.view().getPoints(0, 2, 1);
    ASSERT_EQ(points.size(), 2U);
    EXPECT_EQ(points[0].y, 0.0F);
    EXPECT_EQ(points[1].y, 0.0F);
}

TEST(AnalogChannelGetPoints, CoordinatesAreNarrowedOnlyWhenStored) {
    // 16777217 is no float; the value there is taken at the double, and narrowed afterwards
    AnalogView recording({{0, 0}, {16777217, 0.1}, {16777218, 5}});
    const std::vector<Orv::PointF> points = recording.view().getPoints(16777217, 16777218, 1);
    ASSERT_EQ(points.size(), 1U);
    EXPECT_EQ(points[0].x, 16777216.0F);
    EXPECT_EQ(points[0].y, 0.1F);
}

TEST(AnalogChannelGetPoints, ListIsReservedOnce) {
    AnalogView recording(kBentCourse);
    EXPECT_EQ(recording.view().getPoints(0, 0.5, 10).capacity(), 5U);
    EXPECT_EQ(recording.view().getPoints(0, 3, 100).capacity(), 300U);
}

TEST(AnalogChannelGetPoints, SingleSampleAtZeroHasNoRange) {
    AnalogView recording({{0, 7}});
    EXPECT_TRUE(recording.view().getPoints(0, -1, -1).empty());
    EXPECT_TRUE(recording.view().getPoints(0, -1, 10).empty());
    const std::vector<Orv::PointF> points = recording.view().getPoints(0, 2, 1);
    ASSERT_EQ(points.size(), 2U);
    EXPECT_EQ(points[0].y, 7.0F);
    EXPECT_EQ(points[1].y, 0.0F);
}

TEST(AnalogChannelGetPoints, NoSamplesGiveTheEmptyList) {
    AnalogView recording({});
    EXPECT_TRUE(recording.view().getPoints(0, -1, -1).empty());
    EXPECT_TRUE(recording.view().getPoints(0, 1, 10).empty());
    EXPECT_TRUE(recording.view().getPoints(2, 1, -1).empty());
}

TEST(AnalogChannelGetPoints, SampleWithFewerAnalogValuesPutsItsSegmentsOnTheAxis) {
    AnalogView recording(kBentCourse);
    recording.samples[2].analogValues.clear();
    const std::vector<Orv::PointF> points = recording.view().getPoints(0.5, 3, 1);
    ASSERT_EQ(points.size(), 3U);
    EXPECT_EQ(points[0].y, 5.0F);
    EXPECT_EQ(points[1].y, 0.0F);
    EXPECT_EQ(points[2].y, 0.0F);
}

TEST(AnalogChannelGetPoints, IsReachedThroughTheBase) {
    AnalogView recording(kBentCourse);
    const AnalogChannel view = recording.view();
    const BaseChannel& base = view;
    const std::vector<Orv::PointF> points = base.getPoints(1, 3, 1);
    ASSERT_EQ(points.size(), 2U);
    EXPECT_EQ(points[0].y, 10.0F);
    EXPECT_EQ(points[1].y, 15.0F);
}
