// Parts of recordings, written as recordings of their own: what is read of them is what the whole has there.

#include "intake/comparison.h"
#include "intake/openedChecks.h"
#include "support/RecordingFolders.h"

#include <OrvComtradeIntake/Intake.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using orvtest::bytesToOpen;
using orvtest::codesOf;
using orvtest::firstDifference;
using orvtest::Written;
using orvtest::writtenBy;

Form samplesOf(std::uint64_t first, std::uint64_t count) {
    Form form;
    form.selection.first = first;
    form.selection.count = count;
    return form;
}

Form partOf(std::vector<std::size_t> analog, std::vector<std::size_t> status, std::uint64_t first = 0,
            std::uint64_t count = UINT64_MAX) {
    Form form = samplesOf(first, count);
    form.selection.allAnalog = false;
    form.selection.allStatus = false;
    form.selection.analog = std::move(analog);
    form.selection.status = std::move(status);
    return form;
}

constexpr std::string_view kCfg = "S,R,1999\r\n5,3A,2D\r\n1,IA,A,,A,0.5,1,0,-99999,99999,600,5,P\r\n"
                                  "2,IB,B,,A,2,0,0,-99999,99999,1,1,S\r\n3,IC,C,,A,1,0,0,-99999,99999,1,1,S\r\n"
                                  "1,Start,,,0\r\n2,Trip,,,1\r\n50\r\n2\r\n1000,4\r\n500,7\r\n"
                                  "01/02/2020,10:00:00.000000\r\n01/02/2020,10:00:00.003000\r\nASCII\r\n1\r\n";
constexpr std::string_view kDat = "1,0,10,20,30,0,1\r\n2,1000,11,21,31,0,1\r\n3,2000,12,99999,32,1,1\r\n"
                                  "4,3000,13,99999,33,1,1\r\n5,4000,14,24,34,1,0\r\n6,6000,15,25,35,0,0\r\n"
                                  "7,8000,16,26,36,0,0\r\n";

TEST(WritePart, SomeSamplesKeepTheirTimesTriggerAndRates) {
    const Opened whole = open(Bytes{kCfg, kDat});
    const Written part = writtenBy(whole, samplesOf(2, 4));
    EXPECT_EQ(part.cfg, "S,R,1999\r\n5,3A,2D\r\n1,IA,A,,A,0.5,1,0,-99999,99999,600,5,P\r\n"
                        "2,IB,B,,A,2,0,0,-99999,99999,1,1,S\r\n3,IC,C,,A,1,0,0,-99999,99999,1,1,S\r\n"
                        "1,Start,,,0\r\n2,Trip,,,1\r\n50\r\n2\r\n1000,2\r\n500,4\r\n"
                        "01/02/2020,10:00:00.002000\r\n01/02/2020,10:00:00.003000\r\nASCII\r\n1\r\n");
    EXPECT_EQ(part.dat,
              "1,0,12,99999,32,1,1\r\n2,1000,13,99999,33,1,1\r\n3,2000,14,24,34,1,0\r\n4,4000,15,25,35,0,0\r\n");
}

TEST(WritePart, SomeChannelsAreNumberedAnewInTheOrderGiven) {
    const Opened whole = open(Bytes{kCfg, kDat});
    const Written part = writtenBy(whole, partOf({2, 1}, {1}));
    EXPECT_EQ(part.cfg, "S,R,1999\r\n3,2A,1D\r\n1,IC,C,,A,1,0,0,-99999,99999,1,1,S\r\n"
                        "2,IB,B,,A,2,0,0,-99999,99999,1,1,S\r\n1,Trip,,,1\r\n50\r\n2\r\n1000,4\r\n500,7\r\n"
                        "01/02/2020,10:00:00.000000\r\n01/02/2020,10:00:00.003000\r\nASCII\r\n1\r\n");
    EXPECT_EQ(part.dat, "1,0,30,20,1\r\n2,1000,31,21,1\r\n3,2000,32,99999,1\r\n4,3000,33,99999,1\r\n5,4000,34,24,0\r\n"
                        "6,6000,35,25,0\r\n7,8000,36,26,0\r\n");
}

TEST(WritePart, MissingValuesStayMissingInAnotherType) {
    const Opened whole = open(Bytes{kCfg, kDat});
    Form form = partOf({1}, {}, 1, 3);
    form.dataType = DataType::Binary;
    const Written part = writtenBy(whole, form);
    const Opened again = open(bytesToOpen(part));
    EXPECT_EQ(codesOf(again), "missing-values") << part.cfg;
    Selection selection;
    selection.missingAsNan = true;
    const Columns columns = again.columns(selection);
    ASSERT_EQ(columns.samples, 3U);
    EXPECT_EQ(columns.analog[0], 42.0);
    EXPECT_TRUE(std::isnan(columns.analog[1]) && std::isnan(columns.analog[2]));
}

TEST(WritePart, StampsThatGiveTheTimesCountFromTheFirstSample) {
    constexpr std::string_view cfg = "S,R,1999\r\n1,1A,0D\r\n1,IA,A,,A,1,0,0,-99999,99999,1,1,S\r\n50\r\n0\r\n0,4\r\n"
                                     "01/02/2020,10:00:00.000000\r\n01/02/2020,10:00:00.000900\r\nASCII\r\n1\r\n";
    const Opened whole = open(Bytes{cfg, "1,100,1\r\n2,350,2\r\n3,600,3\r\n4,1100,4\r\n"});
    ASSERT_EQ(whole.columns().time, (std::vector<double>{0.0, 0.00025, 0.0005, 0.001}));
    const Written part = writtenBy(whole, samplesOf(1, 2));
    EXPECT_EQ(part.dat, "1,0,2\r\n2,250,3\r\n");
    EXPECT_NE(part.cfg.find("\r\n0\r\n0,2\r\n01/02/2020,10:00:00.000250\r\n01/02/2020,10:00:00.000900\r\n"),
              std::string::npos)
        << part.cfg;
}

TEST(WritePart, TheStartHasAsManyDigitsAsTheDatesHad) {
    const auto startOf = [](const std::string& dates, const char* year) {
        const std::string cfg = std::string("S,R,") + year +
                                "\r\n1,1A,0D\r\n1,I,A,,A,1,0,0,-99999,99999,1,1,S\r\n50\r\n1\r\n3000,3\r\n" + dates +
                                "ASCII\r\n1\r\n";
        const Opened whole = open(Bytes{cfg, "1,0,1\r\n2,333,2\r\n3,667,3\r\n"});
        const Written part = writtenBy(whole, samplesOf(2, 1));
        return open(bytesToOpen(part)).header().start->text();
    };
    EXPECT_EQ(startOf("01/02/2020,10:00:00.000000\r\n01/02/2020,10:00:00.000100\r\n", "1999"),
              "2020-02-01T10:00:00.000667000");
    EXPECT_EQ(startOf("01/02/2020,10:00:00.000000000\r\n01/02/2020,10:00:00.000100000\r\n", "2013"),
              "2020-02-01T10:00:00.000666667");
}

TEST(WritePart, OfOneFileHoldsTheSameAsThePair) {
    const Opened whole = open(Bytes{kCfg, kDat});
    Form form = partOf({0}, {0, 1}, 1, 5);
    const Written two = writtenBy(whole, form);
    const Opened pair = open(bytesToOpen(two));
    form.combined = true;
    form.dataType = DataType::Binary;
    const Written one = writtenBy(whole, form);
    EXPECT_NE(one.cfg.find("--- file type: DAT BINARY: 60 ---"), std::string::npos) << one.cfg;
    const Columns columns = open(bytesToOpen(one)).columns();
    EXPECT_EQ(columns.analog, pair.columns().analog);
    EXPECT_EQ(columns.time, pair.columns().time);
}

TEST(WritePart, OfAConfigurationAloneIsItsChannels) {
    const Opened whole = open(Bytes{kCfg});
    const Written part = writtenBy(whole, partOf({1}, {}));
    EXPECT_NE(part.cfg.find("1,1A,0D\r\n1,IB,"), std::string::npos) << part.cfg;
    EXPECT_EQ(part.dat, "");
}

TEST(WritePart, RefusesPartsThatThereAreNot) {
    const Opened whole = open(Bytes{kCfg, kDat});
    EXPECT_THROW(writtenBy(whole, partOf({3}, {})), std::out_of_range);
    EXPECT_THROW(writtenBy(whole, partOf({}, {})), std::invalid_argument);
    EXPECT_THROW(writtenBy(whole, samplesOf(7, 1)), std::invalid_argument);
    EXPECT_THROW(writtenBy(whole, samplesOf(0, 0)), std::invalid_argument);
    Form library = samplesOf(1, 2);
    library.reader = Reader::Library;
    EXPECT_THROW(writtenBy(whole, library), std::invalid_argument);
}

/// Every second channel backwards, and the middle of the samples.
Form middleOf(const Header& header) {
    std::vector<std::size_t> analog;
    std::vector<std::size_t> status;
    for (std::size_t i = header.analog.size(); i > 0; i -= std::min<std::size_t>(i, 2)) {
        analog.push_back(i - 1);
    }
    for (std::size_t i = header.status.size(); i > 0; i -= std::min<std::size_t>(i, 2)) {
        status.push_back(i - 1);
    }
    return partOf(analog, status, header.samples / 3, (header.samples + 2) / 3);
}

/// Of the findings of a whole recording those that a part of it has too are no fault of how it was written, nor that
/// it does not hold the trigger.
std::string newlyWrong(const Opened& again, const Opened& whole) {
    const std::string known = " " + codesOf(whole, Severity::Warning) + " trigger-outside ";
    for (const Finding& finding : again.findings()) {
        if (finding.severity > Severity::Note && known.find(" " + finding.code + " ") == std::string::npos) {
            return orvtest::text(finding);
        }
    }
    return "";
}

/// Values, states and missing ones to the last bit; times as far as the start has digits.
std::string firstApart(const Opened& again, const Opened& whole, const Selection& selection) {
    Columns part = again.columns();
    Columns expected = whole.columns(selection);
    if (part.samples != expected.samples || part.samples == 0) {
        return "counts";
    }
    const double begin = expected.time.front();
    for (std::size_t i = 0; i < part.samples; ++i) {
        const double time = expected.time[i] - begin;
        if (std::fabs(part.time[i] - time) > 1e-12 * std::fabs(expected.time[i]) + 1e-15) {
            return "time " + std::to_string(i);
        }
    }
    part.time = expected.time;
    for (auto& states : part.states) {
        for (auto& change : states) {
            change.sample += selection.first;
        }
    }
    for (auto& run : part.missing) {
        run.sample += selection.first;
    }
    part.first = expected.first;
    return firstDifference(part, expected);
}

TEST(WritePart, OfAnyRecordingReadsAsTheSamePlaceOfTheWhole) {
    std::vector<std::filesystem::path> folders = orvtest::corpusFolders();
    folders.push_back(orvtest::madeFolder());
    std::size_t count = 0;
    for (const std::filesystem::path& folder : folders) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            std::string extension = entry.path().extension().string();
            std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) { return c | 0x20; });
            const bool isWanted = extension == ".cfg" || extension == ".cff";
            if (!isWanted) {
                continue;
            }
            const Opened whole = open(entry.path().string());
            if (!whole.readable() || whole.header().samples == 0) {
                continue;
            }
            const Form form = middleOf(whole.header());
            const Written part = writtenBy(whole, form);
            const Opened again = open(bytesToOpen(part));
            ASSERT_TRUE(again.readable()) << entry.path() << '\n' << orvtest::text(again);
            EXPECT_EQ(newlyWrong(again, whole), "") << entry.path();
            EXPECT_EQ(firstApart(again, whole, form.selection), "") << entry.path();
            EXPECT_EQ(again.header().trigger, whole.header().trigger) << entry.path();
            ++count;
        }
    }
    EXPECT_GT(count, 30U);
}

} // namespace
