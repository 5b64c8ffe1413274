#include "Cfg.h"
#include "support/RecordingBuilder.h"
#include "support/Results.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace {

using OrvComtradeLib::Cfg;
using orvtest::RecordingBuilder;
using orvtest::resultOf;
using orvtest::TempDir;

Cfg cfgOf(std::initializer_list<const char*> rates, double timeMultiplier = 1.0) {
    Cfg cfg;
    for (const char* const rate : rates) {
        cfg.samplingRates.emplace_back(std::string(rate));
    }
    cfg.timeMultiplier = timeMultiplier;
    return cfg;
}

TEST(CfgTimeFromSampleIndex, WithoutRatesIsMinusOne) {
    EXPECT_EQ(Cfg().timeFromSampleIndex(0), -1.0);
    EXPECT_EQ(cfgOf({}, 2.5).timeFromSampleIndex(7), -1.0);
}

TEST(CfgTimeFromSampleIndex, CountsFromTheFirstSample) {
    const Cfg cfg = cfgOf({"1000,1000"});
    EXPECT_EQ(cfg.timeFromSampleIndex(0), 0.0);
    EXPECT_EQ(cfg.timeFromSampleIndex(1), 0.001);
    EXPECT_EQ(cfg.timeFromSampleIndex(999), 0.999);
}

TEST(CfgTimeFromSampleIndex, GrowsOnAtTheLastRateByAtMostItsLastSampleNumber) {
    const Cfg cfg = cfgOf({"1000,1000"});
    EXPECT_EQ(cfg.timeFromSampleIndex(1000), 1.0);
    EXPECT_EQ(cfg.timeFromSampleIndex(1500), 1.5);
    EXPECT_EQ(cfg.timeFromSampleIndex(2000), 2.0);
    EXPECT_EQ(cfg.timeFromSampleIndex(2001), 2.0);
    EXPECT_EQ(cfg.timeFromSampleIndex(2500), 2.0);
    EXPECT_EQ(cfg.timeFromSampleIndex(18446744073709551615UL), 2.0);
}

TEST(CfgTimeFromSampleIndex, EachLastSampleNumberCountsAsTheLengthOfItsSegment) {
    const Cfg two = cfgOf({"1000,500", "2000,1500"});
    EXPECT_EQ(two.timeFromSampleIndex(499), 0.499);
    EXPECT_EQ(two.timeFromSampleIndex(500), 0.5);
    EXPECT_EQ(two.timeFromSampleIndex(700), 0.6);
    EXPECT_EQ(two.timeFromSampleIndex(1499), 0.9995);
    EXPECT_EQ(two.timeFromSampleIndex(2000), 1.25);
    const Cfg three = cfgOf({"1000,500", "2000,1500", "4000,2000"});
    EXPECT_EQ(three.timeFromSampleIndex(1800), 1.15);
    EXPECT_EQ(three.timeFromSampleIndex(2000), 1.25);
    EXPECT_EQ(three.timeFromSampleIndex(2004), 1.251);
    EXPECT_EQ(three.timeFromSampleIndex(6000), 2.25);
    EXPECT_EQ(three.timeFromSampleIndex(9999), 2.25);
}

TEST(CfgTimeFromSampleIndex, IsScaledByTheTimeMultiplier) {
    EXPECT_EQ(cfgOf({"1000,1000"}, 2.5).timeFromSampleIndex(999), 2.4975);
    EXPECT_EQ(cfgOf({"1000,1000"}, 0.001).timeFromSampleIndex(999), 0.000999);
    EXPECT_EQ(cfgOf({"1000,500", "2000,1500"}, 10.0).timeFromSampleIndex(700), 6.0);
    EXPECT_EQ(cfgOf({"1000,500"}, -1.0).timeFromSampleIndex(100), -0.1);
    EXPECT_EQ(cfgOf({"1000,500"}, 0.0).timeFromSampleIndex(100), 0.0);
}

TEST(CfgTimeFromSampleIndex, SegmentLeftBehindWithoutARateGivesAnUnscaledMinusOne) {
    EXPECT_EQ(cfgOf({"0.0,1200"}).timeFromSampleIndex(1200), -1.0);
    EXPECT_EQ(cfgOf({"0.0,1200"}).timeFromSampleIndex(1201), -1.0);
    EXPECT_EQ(cfgOf({"0,2", "1000,5"}, 2.0).timeFromSampleIndex(2), -1.0);
    EXPECT_EQ(cfgOf({"-50,2", "1000,5"}, 2.0).timeFromSampleIndex(4), -1.0);
    EXPECT_EQ(cfgOf({"nan,2", "1000,5"}, 2.0).timeFromSampleIndex(4), -1.0);
    EXPECT_EQ(cfgOf({"1000,2", "0,5"}, 2.0).timeFromSampleIndex(7), -1.0);
}

TEST(CfgTimeFromSampleIndex, MinusOneOfTheSegmentReachedIsAddedAndScaled) {
    EXPECT_EQ(cfgOf({"0,1200"}).timeFromSampleIndex(1199), -1.0);
    EXPECT_EQ(cfgOf({"0,1200"}, 2.0).timeFromSampleIndex(0), -2.0);
    EXPECT_EQ(cfgOf({"1000,2", "nan,5"}).timeFromSampleIndex(3), -0.998);
    EXPECT_EQ(cfgOf({"1000,2", "-1,5"}, 2.0).timeFromSampleIndex(3), -1.996);
}

TEST(CfgTimeFromSampleIndex, SegmentWithoutSamplesIsPassedOver) {
    EXPECT_EQ(cfgOf({"1000,0", "2000,4"}).timeFromSampleIndex(0), 0.0);
    EXPECT_EQ(cfgOf({"1000,0", "2000,4"}).timeFromSampleIndex(3), 0.0015);
    EXPECT_EQ(cfgOf({"1000,0"}).timeFromSampleIndex(5), 0.0);
    EXPECT_EQ(cfgOf({"0,0", "1000,4"}).timeFromSampleIndex(1), -1.0);
}

class CfgDuration : public testing::Test {
protected:
    OrvComtradeLib::Enums::LoadResult load(const RecordingBuilder& recording) {
        return resultOf(cfg.load(dir.write("r.cfg", recording.cfgText())));
    }

    static RecordingBuilder recording() { return RecordingBuilder().status("1,Trip,,,0"); }

    TempDir dir;
    Cfg cfg;
};

TEST_F(CfgDuration, IsTheTimeOfTheLastSample) {
    ASSERT_EQ(load(recording().rate("1000,1000")), OrvComtradeLib::Enums::CfgLoaded);
    EXPECT_EQ(cfg.lastSampleNumber, 1000U);
    EXPECT_EQ(cfg.duration, 0.999);
    EXPECT_TRUE(cfg.samplingRateKnown);
}

TEST_F(CfgDuration, IsScaledByTheTimeMultiplier) {
    ASSERT_EQ(load(recording().rate("1000,1000").multiplier("2.5")), OrvComtradeLib::Enums::CfgLoaded);
    EXPECT_EQ(cfg.timeMultiplier, 2.5);
    EXPECT_EQ(cfg.duration, 2.4975);
}

TEST_F(CfgDuration, FollowsEveryRate) {
    ASSERT_EQ(load(recording().rate("1000,500").rate("2000,1500").rate("4000,2000")), OrvComtradeLib::Enums::CfgLoaded);
    EXPECT_EQ(cfg.lastSampleNumber, 2000U);
    EXPECT_EQ(cfg.duration, 1.2495);
}

TEST_F(CfgDuration, StaysZeroWhenARateIsZero) {
    cfg.duration = 7.0;
    ASSERT_EQ(load(recording().rateCount("0").rate("0,1200")), OrvComtradeLib::Enums::CfgLoaded);
    ASSERT_EQ(cfg.samplingRates.size(), 1U);
    EXPECT_EQ(cfg.samplingRates[0].rate, 0.0);
    EXPECT_EQ(cfg.samplingRates[0].endSample, 1200U);
    EXPECT_FALSE(cfg.samplingRateKnown);
    EXPECT_EQ(cfg.lastSampleNumber, 1200U);
    EXPECT_EQ(cfg.duration, 0.0);
}

TEST_F(CfgDuration, RateBelowAMillionthCountsAsZero) {
    struct {
        const char* why;
        const char* rate;
        bool known;
        double duration;
    } const rows[] = {
        {"zero", "0,5", false, 0.0},
        {"negative", "-1000,5", false, 0.0},
        {"just below", "0.00000099,5", false, 0.0},
        {"the limit itself", "0.000001,5", true, 4000000.0},
        {"not a number is known, though without a duration", "nan,5", true, -1.0},
        {"infinite", "inf,5", true, 0.0},
    };
    for (const auto& row : rows) {
        cfg = Cfg();
        EXPECT_EQ(load(recording().rate(row.rate)), OrvComtradeLib::Enums::CfgLoaded) << row.why;
        EXPECT_EQ(cfg.samplingRateKnown, row.known) << row.why;
        EXPECT_EQ(cfg.duration, row.duration) << row.why;
    }
}

TEST_F(CfgDuration, OneZeroRateAmongOthersMakesTheRatesUnknown) {
    for (const int zero : {0, 1, 2}) {
        cfg = Cfg();
        RecordingBuilder rates = recording();
        for (const int position : {0, 1, 2}) {
            rates.rate(position == zero ? "0,9" : "1000,9");
        }
        EXPECT_EQ(load(rates), OrvComtradeLib::Enums::CfgLoaded);
        EXPECT_FALSE(cfg.samplingRateKnown) << zero;
        EXPECT_EQ(cfg.duration, 0.0) << zero;
    }
}

TEST_F(CfgDuration, IsMinusOneTimesTheMultiplierForARateThatIsNotANumber) {
    ASSERT_EQ(load(recording().rate("nan,3").multiplier("2")), OrvComtradeLib::Enums::CfgLoaded);
    EXPECT_EQ(cfg.duration, -2.0);
}

TEST_F(CfgDuration, LastSampleNumberOfZeroWrapsToTheLargestIndex) {
    ASSERT_EQ(load(recording().rate("1000,100").rate("1000,0")), OrvComtradeLib::Enums::CfgLoaded);
    EXPECT_EQ(cfg.lastSampleNumber, 0U);
    EXPECT_EQ(cfg.duration, 0.1);
}

TEST_F(CfgDuration, NegativeLastSampleNumberIsUnsigned) {
    ASSERT_EQ(load(recording().rate("1000,-1")), OrvComtradeLib::Enums::CfgLoaded);
    EXPECT_EQ(cfg.lastSampleNumber, 18446744073709551615UL);
    EXPECT_EQ(cfg.duration, 18446744073709552.0);
}

TEST_F(CfgDuration, OfASecondLoadUsesTheRatesOfBoth) {
    ASSERT_EQ(load(recording().rate("1000,500")), OrvComtradeLib::Enums::CfgLoaded);
    EXPECT_EQ(cfg.duration, 0.499);
    ASSERT_EQ(load(recording().rate("2000,701")), OrvComtradeLib::Enums::CfgLoaded);
    EXPECT_EQ(cfg.lastSampleNumber, 701U);
    EXPECT_EQ(cfg.duration, 0.6);
}

TEST_F(CfgDuration, ZeroRateOfAFirstLoadKeepsASecondUnknown) {
    ASSERT_EQ(load(recording().rate("0,10")), OrvComtradeLib::Enums::CfgLoaded);
    ASSERT_EQ(load(recording().rate("1000,10")), OrvComtradeLib::Enums::CfgLoaded);
    EXPECT_FALSE(cfg.samplingRateKnown);
    EXPECT_EQ(cfg.duration, 0.0);
}

} // namespace
