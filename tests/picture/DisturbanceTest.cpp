// Which part of a recording a picture shows.

#include "picture/TestSource.h"

#include <OrvComtradePicture/survey.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace {

using OrvComtradePicture::disturbanceOf;
using OrvComtradePicture::Range;
using OrvComtradePicture::Survey;
using OrvComtradePicture::surveyOf;
using orvtest::TestSource;
using orvtest::wave;

constexpr std::size_t kSamples = 3001; // three seconds

std::vector<std::size_t> samplesFrom(std::size_t first) {
    std::vector<std::size_t> samples;
    for (std::size_t i = first; i < kSamples; ++i) {
        samples.push_back(i);
    }
    return samples;
}

void expectView(const char* why, const TestSource& test, std::optional<double> trigger, Range expected) {
    const Range view = disturbanceOf(surveyOf(test.source()), trigger);
    EXPECT_NEAR(view.from, expected.from, 1e-9) << why;
    EXPECT_NEAR(view.to, expected.to, 1e-9) << why;
}

TEST(DisturbanceOf, ViewBeginsFourCyclesBeforeTheFirstEventAndEndsSixBehindTheLast) {
    TestSource fault;
    fault.analog("IA", "A", wave(kSamples, 1.0, 1500, 10.0));
    // The cycle from 1.5 s on differs from the one before.
    expectView("a jump", fault, std::nullopt, {1.42, 1.62});
    fault.status("Trip", samplesFrom(1600));
    expectView("a change 100 ms later", fault, std::nullopt, {1.42, 1.72});
    fault.status("Reset", samplesFrom(2800));
    expectView("a change too late to belong to it", fault, std::nullopt, {1.42, 1.72});
    expectView("the trigger is the mark, and no event", fault, 1.57, {1.42, 1.72});
    expectView("a trigger far from everything", fault, 0.2, {1.42, 1.72});
}

TEST(DisturbanceOf, WithoutJumpsTheFirstChangeIsTheMark) {
    TestSource test;
    test.analog("IA", "A", wave(kSamples, 1.0, 0, 1.0)).status("Alarm", samplesFrom(1000));
    expectView("a change", test, std::nullopt, {0.92, 1.12});
}

TEST(DisturbanceOf, JumpsBelowATenthAndChatterAreNoEvents) {
    TestSource test;
    std::vector<std::size_t> chatter;
    for (std::size_t i = 500; i < 900; i += 2) {
        chatter.push_back(i);
    }
    test.analog("IA", "A", wave(kSamples, 1.0, 1500, 1.08)).status("Clock", chatter);
    expectView("nothing happens", test, std::nullopt, {0.0, 3.0});
    expectView("20 cycles around the trigger", test, 2.0, {1.9, 2.3});
    expectView("a trigger at the beginning", test, 0.0, {0.0, 3.0});
}

TEST(DisturbanceOf, ShortRecordingIsShownAsAWhole) {
    TestSource test;
    test.analog("IA", "A", wave(300, 1.0, 150, 10.0));
    expectView("0.3 s", test, std::nullopt, {0.06, 0.28});
    TestSource shorter;
    shorter.analog("IA", "A", wave(221, 1.0, 110, 10.0));
    expectView("0.22 s", shorter, std::nullopt, {0.0, 0.22});
}

TEST(SurveyOf, FewSamplesOfACycleCountAsOne) {
    TestSource test;
    test.analog("RMS", "A", {});
    test.samples = 400;
    for (std::size_t i = 0; i < test.samples; ++i) {
        test.times.push_back(static_cast<double>(i)); // one a second
        test.analogs[0].push_back(i < 200 ? 1.0 : 5.0);
    }
    expectView("eight seconds are a cycle", test, std::nullopt, {168.0, 248.0});
}

TEST(SurveyOf, OddRecordingsAreSurveyed) {
    const double infinity = std::numeric_limits<double>::infinity();
    TestSource test;
    test.analog("U", "V", {infinity, -infinity, std::nan(""), 1.0});
    test.times = {0.0, 1e300, -5.0, 1e-300};
    const Survey survey = surveyOf(test.source());
    EXPECT_EQ(survey.samples, 4U);
    EXPECT_EQ(survey.times, (Range{-5.0, 1e300}));
    ASSERT_TRUE(survey.analog[0].values);
    EXPECT_EQ(*survey.analog[0].values, (Range{1.0, 1.0}));
    const TestSource nothing;
    EXPECT_EQ(surveyOf(nothing.source()).samples, 0U);
}

} // namespace
