// Whether samples follow one another: their numbers, and their time stamps beside the sampling rates.

#include "data/watches.h"

#include "intake/dataSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using Numbers = std::vector<std::optional<std::int64_t>>;
using Stamps = std::vector<std::int64_t>;

constexpr auto kNone = std::nullopt;
constexpr std::int64_t kGreatest = std::numeric_limits<std::int64_t>::max();

SamplePlace placeOf(std::size_t sample) {
    return {sample, sample + 1, 10 * sample};
}

const ByteSource& source() {
    static const ByteSource empty = ByteSource::ofMemory("", "a.dat");
    return empty;
}

/// Numbers from `first` on, step by step.
Numbers numbersFrom(std::int64_t first, std::size_t count, std::int64_t step = 1) {
    Numbers numbers;
    for (std::size_t i = 0; i < count; ++i) {
        numbers.push_back(first + static_cast<std::int64_t>(i) * step);
    }
    return numbers;
}

Numbers joined(Numbers left, const Numbers& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// How many jumps of numbers are reported, and the first one: "1: 7 after 5, line 3".
std::string jumpsOf(const Numbers& numbers, const std::vector<std::uint64_t>& segments = {0}) {
    NumberWatch watch(segments);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        watch.add(numbers[i], placeOf(i));
    }
    Findings findings;
    watch.report(source(), findings);
    if (findings.all().empty()) {
        return "";
    }
    const Finding& finding = findings.all().front();
    EXPECT_EQ(finding.code, "number-jump");
    EXPECT_EQ(finding.severity, Severity::Error);
    return std::to_string(finding.places) + ": " + finding.found + ", line " + std::to_string(finding.place.line);
}

struct NumberRow {
    const char* why;
    Numbers numbers;
    std::vector<std::uint64_t> segments;
    const char* jumps;
};

TEST(NumberWatch, ToleratesWhatRecordersDo) {
    const NumberRow rows[] = {
        {"from 1", numbersFrom(1, 10), {0}, ""},
        {"from 0", numbersFrom(0, 10), {0}, ""},
        {"from anywhere", numbersFrom(70000, 10), {0}, ""},
        {"negative", numbersFrom(-5, 10), {0}, ""},
        {"none", {kNone, kNone, kNone}, {0}, ""},
        {"some missing", {1, kNone, 3, kNone, kNone, 6, 7}, {0}, ""},
        {"every tenth", numbersFrom(10, 10, 10), {0}, ""},
        {"downwards", numbersFrom(100, 10, -1), {0}, ""},
        {"the same throughout", numbersFrom(7, 10, 0), {0}, ""},
        {"zeros", numbersFrom(0, 10, 0), {0}, ""},
        {"from 1 again at another rate", joined(numbersFrom(1, 5), numbersFrom(1, 5)), {0, 5}, ""},
        {"from 0 again at another rate", joined(numbersFrom(1, 5), numbersFrom(0, 5)), {0, 5}, ""},
        {"from the first one again", joined(numbersFrom(50, 5), numbersFrom(50, 5)), {0, 5}, ""},
        {"on at another rate", numbersFrom(1, 10), {0, 5}, ""},
        {"over 16 bits to 0", joined(numbersFrom(65530, 6), numbersFrom(0, 5)), {0}, ""},
        {"over 16 bits to 1", joined(numbersFrom(65530, 6), numbersFrom(1, 5)), {0}, ""},
        {"over 5 digits", joined(numbersFrom(99990, 10), numbersFrom(1, 5)), {0}, ""},
        {"over 6 digits", joined(numbersFrom(999990, 10), numbersFrom(0, 5)), {0}, ""},
        {"over 10 digits", joined(numbersFrom(9999999990, 10), numbersFrom(1, 5)), {0}, ""},
        {"over 32 bits", joined(numbersFrom(4294967290, 6), numbersFrom(0, 5)), {0}, ""},
        {"one alone", {42}, {0}, ""},
    };
    for (const NumberRow& row : rows) {
        EXPECT_EQ(jumpsOf(row.numbers, row.segments), row.jumps) << row.why;
    }
}

TEST(NumberWatch, ReportsWhatIsLostOrRepeated) {
    const NumberRow rows[] = {
        {"one lost", joined(numbersFrom(1, 5), numbersFrom(7, 5)), {0}, "1: 7 after 5, line 6"},
        {"one repeated", joined(numbersFrom(1, 5), numbersFrom(5, 5)), {0}, "1: 5 after 5, line 6"},
        {"lost where some are missing", {1, 2, kNone, 5, 6}, {0}, "1: 5 after 2, line 4"},
        {"two jumps", {1, 2, 3, 10, 11, 12, 20, 21, 22}, {0}, "2: 10 after 3, line 4"},
        {"from 1 again, at no other rate",
         joined(numbersFrom(1, 5), numbersFrom(1, 5)),
         {0, 4},
         "1: 1 after 5, line 6"},
        {"from 2 again at another rate", joined(numbersFrom(1, 5), numbersFrom(2, 5)), {0, 5}, "1: 2 after 5, line 6"},
        {"over no end of a count", joined(numbersFrom(65520, 6), numbersFrom(0, 5)), {0}, "1: 0 after 65525, line 7"},
        {"another step from the middle on",
         joined(numbersFrom(1, 5), numbersFrom(7, 5, 2)),
         {0},
         "1: 7 after 5, line 6"},
        {"one of every tenth lost",
         joined(numbersFrom(10, 5, 10), numbersFrom(70, 5, 10)),
         {0},
         "1: 70 after 50, line 6"},
        {"two samples that do not count", {10, 20}, {0}, "1: 20 after 10, line 2"},
        {"the same twice, then on", {5, 5, 6, 7, 8}, {0}, "1: 5 after 5, line 2"},
        {"none with any sense", {8, 1, 1000, -5, 77}, {0}, "4: 1 after 8, line 2"},
        {"as far apart as can be",
         {kGreatest, -kGreatest, kGreatest, kNone, -kGreatest, 0, kNone, kNone, 5},
         {0},
         "4: -9223372036854775807 after 9223372036854775807, line 2"},
    };
    for (const NumberRow& row : rows) {
        EXPECT_EQ(jumpsOf(row.numbers, row.segments), row.jumps) << row.why;
    }
}

TEST(NumberWatch, NumbersMakeNoSenseWhereMostJump) {
    struct Row {
        const char* why;
        Numbers numbers;
        bool areSenseless;
    };
    const Row rows[] = {
        {"none", {}, false},
        {"one", {5}, false},
        {"two that jump", {5, 100}, false},
        {"three that jump", {5, 100, 3}, true},
        {"one jump of four", {5, 6, 7, 100}, false},
        {"two of four", {5, 6, 100, 3}, false},
        {"three of five", {5, 6, 100, 3, 70}, true},
        {"zeros", {0, 0, 0, 0}, false},
    };
    for (const Row& row : rows) {
        NumberWatch watch({0});
        for (std::size_t i = 0; i < row.numbers.size(); ++i) {
            watch.add(row.numbers[i], placeOf(i));
        }
        EXPECT_EQ(watch.areSenseless(), row.areSenseless) << row.why;
    }
}

TEST(NumberWatch, ShowsTheFirstNumbers) {
    NumberWatch watch({0});
    EXPECT_EQ(watch.firstNumbers(), "");
    EXPECT_EQ(watch.expected(), kNone);
    for (const std::int64_t number : {1, 1179569, 65534, 4}) {
        watch.add(number, placeOf(static_cast<std::size_t>(number)));
    }
    EXPECT_EQ(watch.firstNumbers(), "1, 1179569, 65534");
    EXPECT_EQ(watch.expected(), 5);
}

/// What is reported of stamps beside the rates: "found" of each finding, and the places of the last.
std::string contradictionOf(const std::vector<std::int64_t>& stamps, const std::vector<Segment>& segments,
                            double multiplier = 1.0) {
    StampWatch watch(segments, multiplier);
    for (std::size_t i = 0; i < stamps.size(); ++i) {
        watch.add(stamps[i] < 0 ? std::nullopt : std::optional<std::int64_t>(stamps[i]), placeOf(i));
    }
    Findings findings;
    watch.report(source(), findings);
    EXPECT_EQ(watch.areSound(), findings.all().empty());
    std::string text;
    for (const Finding& finding : findings.all()) {
        EXPECT_EQ(finding.code, "stamps-disagree");
        EXPECT_EQ(finding.severity, Severity::Warning);
        EXPECT_EQ(finding.repair, "times taken from the sampling rate");
        text += finding.found + " (" + std::to_string(finding.places) + ")";
    }
    return text;
}

/// Stamps of samples, `step` apart, rounded down to ticks of a clock.
Stamps stampsOf(std::size_t count, double step, std::int64_t tick = 1, double from = 0.0) {
    Stamps stamps;
    for (std::size_t i = 0; i < count; ++i) {
        const double exact = from + static_cast<double>(i) * step;
        stamps.push_back(static_cast<std::int64_t>(exact / static_cast<double>(tick)) * tick);
    }
    return stamps;
}

/// The stamps, from one of them on later by so much.
Stamps delayed(Stamps stamps, std::size_t from, std::int64_t delay) {
    for (std::size_t i = from; i < stamps.size(); ++i) {
        stamps[i] += delay;
    }
    return stamps;
}

Stamps wrapped(Stamps stamps) {
    for (std::int64_t& stamp : stamps) {
        stamp &= 0xFFFFFFFF;
    }
    return stamps;
}

Stamps jittering(std::size_t count, std::int64_t step, std::int64_t most) {
    std::mt19937 random(2);
    Stamps stamps;
    for (std::size_t i = 0; i < count; ++i) {
        stamps.push_back(static_cast<std::int64_t>(i + 1) * step +
                         static_cast<std::int64_t>(random() % static_cast<std::uint32_t>(most)));
    }
    return stamps;
}

struct StampRow {
    const char* why;
    Stamps stamps; ///< negative: none
    double rate;
    double multiplier;
};

TEST(StampWatch, ToleratesWhatRecordersDo) {
    const StampRow rows[] = {
        {"as the rate says", stampsOf(200, 1000), 1000, 1},
        {"from anywhere", stampsOf(200, 1000, 1, 12345678), 1000, 1},
        {"few", stampsOf(3, 1000), 1000, 1},
        {"rounded to microseconds", stampsOf(200, 1e6 / 1200), 1200, 1},
        {"shorter than a microsecond", stampsOf(500, 0.64), 1562500, 1},
        {"with a multiplier", stampsOf(200, 100), 1000, 10},
        {"with a multiplier left out", stampsOf(200, 1000), 1000, 0.25},
        {"in nanoseconds", stampsOf(200, 1e6), 1000, 1},
        {"in milliseconds", stampsOf(200, 20), 50, 1},
        {"in milliseconds, several samples each", stampsOf(200, 0.1), 10000, 1},
        {"numbers of samples", stampsOf(200, 1), 4800, 1},
        {"numbers of samples from anywhere", stampsOf(200, 1, 1, 7777), 4800, 1},
        {"all the same", stampsOf(200, 0), 1000, 1},
        {"all the same, not 0", stampsOf(200, 0, 1, 5), 1000, 1},
        {"none", Stamps(200, -1), 1000, 1},
        {"some missing", {0, -1, 2000, 3000, -1, -1, 6000, 7000, 8000}, 1000, 1},
        {"over 32 bits", wrapped(stampsOf(200, 1000, 1, 4294967000)), 1000, 1},
        {"over 32 bits in the middle", wrapped(stampsOf(200, 1000, 1, 4294867000)), 1000, 1},
        {"more than 32 bits", stampsOf(200, 1000, 1, 9e12), 1000, 1},
        {"a clock of 1 ms", stampsOf(300, 100, 1000), 10000, 1},
        {"a clock of 2 ms that does not fit", stampsOf(300, 1e6 / 4800, 2000), 4800, 1},
        {"jitter of less than half a sample", jittering(300, 1000, 240), 1000, 1},
        {"a rate that is a little off", stampsOf(300, 1040), 1000, 1},
        {"two ticks more", delayed(stampsOf(200, 1), 100, 2), 1000000, 1},
    };
    for (const StampRow& row : rows) {
        EXPECT_EQ(contradictionOf(row.stamps, {{0, row.rate}}, row.multiplier), "") << row.why;
    }
}

TEST(StampWatch, ToleratesCoarseClocksWhereverTheyBegin) {
    for (const std::int64_t tick : {300, 1000, 2000, 5000, 10000, 16667}) {
        for (int phase = 0; phase < 20; ++phase) {
            const double from = static_cast<double>(tick) * phase / 20.0;
            for (const double step : {100.0, 208.333, 950.0}) {
                const Stamps stamps = stampsOf(300, step, tick, from);
                EXPECT_EQ(contradictionOf(stamps, {{0, 1e6 / step}}), "") << tick << ' ' << phase << ' ' << step;
            }
        }
    }
}

TEST(StampWatch, ReportsWhatContradictsTheRate) {
    struct Row {
        const char* why;
        Stamps stamps;
        double rate;
        double multiplier;
        const char* found;
    };
    const Row rows[] = {
        {"a line frequency for a rate", stampsOf(200, 1000), 50, 1, "steps of 1e+03 instead of 2e+04 (1)"},
        {"twice the rate", stampsOf(200, 500), 1000, 1, "steps of 500 instead of 1e+03 (1)"},
        {"a fifth more", stampsOf(200, 1200), 1000, 1, "steps of 1.2e+03 instead of 1e+03 (1)"},
        {"three samples are enough", {0, 500, 1000, 1500}, 1000, 1, "steps of 500 instead of 1e+03 (1)"},
        {"downwards", stampsOf(100, -1000, 1, 1e6), 1000, 1, "steps of -1e+03 instead of 1e+03 (1)"},
        {"a gap", delayed(stampsOf(200, 1000), 100, 3280000), 1000, 1, "a step 3.28 s too long at sample 101 (1)"},
        {"a gap among the first", delayed(stampsOf(200, 1000), 10, 3280000), 1000, 1,
         "a step 3.28 s too long at sample 11 (1)"},
        {"fifty samples lost", delayed(stampsOf(200, 1000), 150, 50000), 1000, 1,
         "a step 0.05 s too long at sample 151 (1)"},
        {"one sample lost", delayed(stampsOf(200, 1000), 150, 1000), 1000, 1,
         "a step 0.001 s too long at sample 151 (1)"},
        {"one repeated", delayed(stampsOf(200, 1000), 150, -1000), 1000, 1,
         "a step 0.001 s too short at sample 151 (1)"},
        {"segments that overlap", delayed(stampsOf(200, 1000), 100, -50000), 1000, 1,
         "a step 0.05 s too short at sample 101 (1)"},
        {"two gaps", delayed(delayed(stampsOf(200, 1000), 100, 9000), 150, 7000), 1000, 1,
         "a step 0.009 s too long at sample 101 (2)"},
        {"a gap by another multiplier", delayed(stampsOf(200, 100), 100, 328000), 1000, 10,
         "a step 3.28 s too long at sample 101 (1)"},
        {"a gap of nanoseconds", delayed(stampsOf(200, 1e6), 100, 3280000000), 1000, 1,
         "a step 3.28 s too long at sample 101 (1)"},
        {"three ticks more", delayed(stampsOf(200, 1), 100, 3), 1000000, 1,
         "a step 3e-06 s too long at sample 101 (1)"},
        {"a gap of a coarse clock", delayed(stampsOf(300, 100, 1000), 200, 5000), 10000, 1,
         "a step 0.0059 s too long at sample 201 (1)"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(contradictionOf(row.stamps, {{0, row.rate}}, row.multiplier), row.found) << row.why;
    }
}

TEST(StampWatch, StampsMakeNoSenseWhereMoreThanAQuarterFallOrNoneRises) {
    struct Row {
        const char* why;
        Stamps stamps;
        bool areSenseless;
    };
    const Row rows[] = {
        {"rising", {0, 1, 2}, false},          {"one step", {0, 1}, true},
        {"all the same", {5, 5, 5}, true},     {"a quarter falls", {0, 4, 2, 4, 5}, false},
        {"a third falls", {0, 4, 2, 4}, true},
    };
    for (const Row& row : rows) {
        StampWatch watch({{0, 1000}}, 1.0);
        for (std::size_t i = 0; i < row.stamps.size(); ++i) {
            watch.add(row.stamps[i], placeOf(i));
        }
        EXPECT_EQ(watch.areSenseless(), row.areSenseless) << row.why;
    }
}

TEST(StampWatch, FollowsTheRates) {
    Stamps stamps = stampsOf(100, 1000);
    for (int i = 0; i < 100; ++i) {
        stamps.push_back(stamps.back() + 250);
    }
    EXPECT_EQ(contradictionOf(stamps, {{0, 1000}, {100, 4000}}), "");
    EXPECT_EQ(contradictionOf(stamps, {{0, 1000}, {100, 4000}, {200, 50}}), "");
    Stamps other = stampsOf(101, 1000); // the step to the first sample of a rate is that of the rate before
    for (int i = 0; i < 99; ++i) {
        other.push_back(other.back() + 250);
    }
    EXPECT_EQ(contradictionOf(other, {{0, 1000}, {100, 4000}}), "");
    EXPECT_EQ(contradictionOf(stamps, {{0, 1000}, {50, 4000}}), "a step 0.00075 s too long at sample 52 (49)");
    EXPECT_EQ(contradictionOf(stamps, {{0, 1000}}), "a step 0.00075 s too short at sample 101 (100)");
    EXPECT_EQ(contradictionOf(stamps, {}), "");
}

TEST(StampWatch, WhateverStampsRatesAndMultipliersAreNothingOverflows) {
    const std::vector<std::int64_t> stamps = {0, kGreatest, 1, kGreatest / 2, 4294967295, 5, 5, 5, kGreatest, 0, 7};
    for (const double rate : {1e-300, 1.0, 1e300}) {
        for (const double multiplier : {1e-300, 3e-308, 1.0, 1e300}) {
            StampWatch watch({{0, rate}}, multiplier);
            for (std::size_t i = 0; i < 200; ++i) {
                watch.add(stamps[i % stamps.size()], placeOf(i));
                const StampWatch::Band band = watch.bandAt(i + 1);
                EXPECT_LE(band.least, band.most);
            }
            Findings findings;
            watch.report(source(), findings);
        }
    }
}

/// One watch of both is the same as one of each.
TEST(Watches, PassOverSamplesThatGoOnWithoutAChangeOfVerdict) {
    std::mt19937 random(4);
    const auto chance = [&random](std::uint32_t of) { return random() % of == 0; };
    for (int round = 0; round < 300; ++round) {
        const std::vector<Segment> segments = chance(3)   ? std::vector<Segment>{}
                                              : chance(2) ? std::vector<Segment>{{0, 1000}}
                                                          : std::vector<Segment>{{0, 1000}, {90, 250}, {150, 1000}};
        Watches both(segments, 1.0);
        std::vector<std::uint64_t> begins;
        for (const Segment& segment : segments) {
            begins.push_back(segment.begin);
        }
        NumberWatch numbers(begins);
        StampWatch stamps(segments, 1.0);
        std::int64_t number = 0;
        std::int64_t stamp = 0;
        for (std::size_t i = 0; i < 250; ++i) {
            number += chance(60) ? static_cast<std::int64_t>(random() % 5) - 2 : 1;
            stamp += chance(60) ? static_cast<std::int64_t>(random() % 5000) - 2000 : 1000;
            const auto givenNumber = chance(80) ? std::nullopt : std::optional<std::int64_t>(number);
            const auto givenStamp = chance(80) ? std::nullopt : std::optional<std::int64_t>(stamp);
            EXPECT_TRUE(i == 0 || both.expectedNumber() == numbers.expected()) << i;
            both.add(givenNumber, givenStamp, placeOf(i));
            numbers.add(givenNumber, placeOf(i));
            stamps.add(givenStamp, placeOf(i));
        }
        Findings found;
        both.numbers().report(source(), found);
        both.stamps().report(source(), found);
        Findings meant;
        numbers.report(source(), meant);
        stamps.report(source(), meant);
        ASSERT_EQ(orvtest::codesOf(found.all()), orvtest::codesOf(meant.all()));
        for (std::size_t i = 0; i < meant.all().size(); ++i) {
            EXPECT_EQ(found.all()[i].found, meant.all()[i].found);
            EXPECT_EQ(found.all()[i].places, meant.all()[i].places);
            EXPECT_EQ(found.all()[i].place.line, meant.all()[i].place.line);
        }
        EXPECT_EQ(both.stamps().areSound(), stamps.areSound());
        EXPECT_EQ(both.areSenseless(), numbers.areSenseless() && stamps.areSenseless());
    }
}

TEST(Watches, AreSenselessWhereNeitherNumbersNorStampsMakeSense) {
    struct Row {
        const char* why;
        bool areNumbersRandom;
        bool areStampsRandom;
        bool areSenseless;
    };
    const Row rows[] = {
        {"both go on", false, false, false},
        {"numbers go on", false, true, false},
        {"stamps go on", true, false, false},
        {"neither", true, true, true},
    };
    for (const Row& row : rows) {
        std::mt19937 random(6);
        Watches watches({{0, 1000}}, 1.0);
        for (std::size_t i = 0; i < 500; ++i) {
            const auto number =
                row.areNumbersRandom ? static_cast<std::int64_t>(random()) : static_cast<std::int64_t>(i);
            const auto stamp =
                row.areStampsRandom ? static_cast<std::int64_t>(random()) : static_cast<std::int64_t>(1000 * i);
            watches.add(number, stamp, placeOf(i));
        }
        EXPECT_EQ(watches.areSenseless(), row.areSenseless) << row.why;
    }
}

} // namespace
