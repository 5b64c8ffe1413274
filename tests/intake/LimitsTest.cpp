#include "report/Findings.h"
#include "support/AllocationBudget.h"

#include <OrvComtradeIntake/Intake.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using OrvComtradeIntake::Bytes;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Findings;
using OrvComtradeIntake::Kind;
using OrvComtradeIntake::Limits;
using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Options;
using orvtest::AllocationMeter;

const std::string kConfiguration = "S,R,1999\n3,2A,1D\n1,U,,,V,1,0,0,-9,9,1,1,S\n2,I,,,A,1,0,0,-9,9,1,1,S\n1,T,,,0\n"
                                   "50\n2\n1000,2\n500,4\n01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\n"
                                   "ASCII\n1\n";
const std::string kData = "1,0,1,2,0\n2,1000,3,4,0\n3,2000,5,6,1\n4,4000,7,8,1\n";
const std::string kCombined = "--- file type: CFG ---\r\nS,R,2013\r\n1,1A,0D\r\n1,U,,,V,1,0,0,0,0,1,1,S\r\n50\r\n1\r\n"
                              "1000,1\r\n01/01/2020,00:00:00.000000\r\n01/01/2020,00:00:00.000000\r\nBINARY\r\n1\r\n"
                              "0,0\r\n0,0\r\n--- file type: DAT BINARY BASE64 ---\r\nAQAAAAAAAAAFAA==\r\n";

const Finding* findingOf(const Opened& opened, const std::string& code) {
    for (const Finding& finding : opened.findings()) {
        if (finding.code == code) {
            return &finding;
        }
    }
    return nullptr;
}

TEST(OpenLimits, RefuseWhatGoesBeyondAndTellTheirName) {
    struct Row {
        const char* name;
        std::uint64_t Limits::*limit;
        std::uint64_t enough;
        const char* found;
    };
    for (const Row& row :
         {Row{"cfg-bytes", &Limits::cfgBytes, kConfiguration.size(), "155 bytes"},
          Row{"channels", &Limits::channels, 3, "3 channels"}, Row{"rates", &Limits::rates, 2, "2 sampling rates"},
          Row{"samples", &Limits::samples, 4, "more than 3 samples"}}) {
        Options options;
        options.limits.*row.limit = row.enough;
        EXPECT_TRUE(open({kConfiguration, kData}, options).readable()) << row.name;
        --(options.limits.*row.limit);
        const Opened opened = open({kConfiguration, kData}, options);
        EXPECT_FALSE(opened.readable()) << row.name;
        const Finding* const finding = findingOf(opened, "limit-exceeded");
        ASSERT_NE(finding, nullptr) << row.name;
        EXPECT_EQ(finding->place.field, row.name);
        EXPECT_EQ(finding->found, row.found);
    }
}

TEST(OpenLimits, LeaveOutTextsThatComeWithTheRecordingAndReadTheRest) {
    const std::string text(3UL * 1024 * 1024, 'h'); // nobody cuts it
    Bytes bytes{kConfiguration, kData, text, text, "r"};
    const Opened whole = open(bytes);
    EXPECT_TRUE(whole.header().hdr == text && whole.header().inf == text);
    EXPECT_EQ(findingOf(whole, "limit-exceeded"), nullptr);

    Options options;
    options.limits.textBytes = text.size() - 1;
    bytes.hdr.remove_suffix(1);
    const Opened opened = open(bytes, options);
    EXPECT_TRUE(opened.readable());
    EXPECT_EQ(opened.header().hdr.size(), text.size() - 1);
    EXPECT_EQ(opened.header().inf, "");
    const Finding* const finding = findingOf(opened, "limit-exceeded");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->place.file + ": " + finding->place.field, "r.inf: text-bytes");
    EXPECT_EQ(finding->found, "3145728 bytes");
}

TEST(OpenLimits, RefuseRecordsBeforeTheyAreWalkedOver) {
    std::string text = kConfiguration;
    text.replace(text.find("ASCII"), 5, "BINARY");
    const std::string records(std::size_t{14} * 1000, '\0');
    Options options;
    options.limits.samples = 999;
    EXPECT_EQ(findingOf(open({text, records}, options), "limit-exceeded"), nullptr); // no sample makes sense at all
    options.acceptsAnyNumbers = true;
    EXPECT_EQ(findingOf(open({text, records}, options), "limit-exceeded")->found, "1000 samples");
}

TEST(OpenLimits, EndTheWalkOverLines) {
    std::string lines;
    for (int i = 1; i <= 100000; ++i) { // every second value is missing, and would be remembered
        lines += std::to_string(i) + (i % 2 == 0 ? ",0,1,2,0\n" : ",0,99999,2,0\n");
    }
    Options options;
    options.limits.samples = 1000;
    const AllocationMeter meter;
    const Opened opened = open({kConfiguration, lines}, options);
    EXPECT_EQ(findingOf(opened, "limit-exceeded")->found, "more than 1000 samples");
    EXPECT_LE(meter.bytes(), 1024U * 1024);
}

TEST(OpenLimits, RefuseBase64ThatDecodesToMore) {
    Options options;
    EXPECT_TRUE(open(Bytes{kCombined}, options).readable());
    options.limits.decodedBytes = 9;
    const Opened opened = open(Bytes{kCombined}, options);
    EXPECT_FALSE(opened.readable());
    EXPECT_EQ(findingOf(opened, "limit-exceeded")->place.field, "decoded-bytes");
}

TEST(OpenLimits, BoundTheLinesThatAreKept) {
    std::string text = "S,R,1999\n1000000,0A,1000000D\n";
    for (std::size_t i = 0; i < 1000000; ++i) {
        text += "1\n";
    }
    const AllocationMeter meter;
    const Opened opened = open(Bytes{text});
    EXPECT_FALSE(opened.readable());
    EXPECT_EQ(findingOf(opened, "limit-exceeded")->found, "1000002 lines of channels and rates");
    EXPECT_LE(meter.peak(), 16U * 1024 * 1024);
    EXPECT_LE(meter.allocations(), 200000U);
}

TEST(OpenCost, GrowsWithTheChannels) {
    const auto cost = [](std::size_t channels) {
        std::string text = "S,R,1999\n" + std::to_string(channels) + ",0A," + std::to_string(channels) + "D\n";
        for (std::size_t i = 0; i < channels; ++i) {
            text += "1,\n";
        }
        text += "50\n1\n1000,1\n01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nBINARY\n1\n";
        const AllocationMeter meter;
        const Opened opened = open(Bytes{text});
        EXPECT_TRUE(opened.readable());
        EXPECT_LE(meter.peak(), 100 * text.size()) << channels;
        return meter.allocations();
    };
    const std::size_t some = cost(10000);
    EXPECT_LE(cost(40000), 9 * some / 2);
}

TEST(OpenCost, OfLinesThatLackNearlyAllColumnsFollowsTheirBytes) {
    std::string text = "S,R,1999\n5000,0A,5000D\n";
    std::string lines = "1,0";
    for (int i = 0; i < 5000; ++i) {
        text += "1,\n";
        lines += ",0";
    }
    text += "50\n1\n1000,0\n01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nASCII\n1\n";
    for (int i = 2; i <= 50000; ++i) {
        lines += '\n' + std::to_string(i) + ",0";
    }
    const AllocationMeter meter;
    const Opened opened = open(Bytes{text, lines});
    EXPECT_LE(meter.bytes(), 32 * (text.size() + lines.size()));
    EXPECT_FALSE(opened.readable());
    EXPECT_EQ(findingOf(opened, "no-samples")->found,
              "1185000 missing columns in the first 238 lines, hardly any present");
    lines.resize(10003 + 1000); // some 170 lines
    EXPECT_TRUE(open(Bytes{text, lines}).readable());
}

TEST(FindingsLimit, KeepsErrorsAndCountsTheRest) {
    Findings findings(2);
    for (int i = 1; i <= 5; ++i) {
        findings.add(Kind::ValueOutOfRange, {"f", 0, "A" + std::to_string(i)}, {"x"});
    }
    findings.add(Kind::ValueOutOfRange, {"f", 0, "A1"}, {"x"});
    findings.add(Kind::NoData, {"f", 0, ""}, {"x"});
    findings.add(Kind::NumberJump, {"f", 0, ""}, {"x"});
    EXPECT_TRUE(findings.has(Kind::NoData));
    EXPECT_FALSE(findings.has(Kind::Layout));
    std::string text;
    for (const Finding& finding : findings.take()) {
        text += finding.code + ' ' + finding.place.field + ' ' + std::to_string(finding.places) + ' ' + finding.found +
                '\n';
    }
    EXPECT_EQ(text, "value-out-of-range A1 2 x\nvalue-out-of-range A2 1 x\nnumber-jump  1 x\n"
                    "findings-left-out findings 1 4 more, the first of them here\n");
}

TEST(FindingsLimit, HoldsHoweverManyThereAre) {
    const AllocationMeter meter;
    Findings findings(1000);
    for (int i = 0; i < 100000; ++i) {
        findings.add(Kind::ValueOutOfRange, {"f", 0, "A" + std::to_string(i)}, {"x"});
    }
    EXPECT_EQ(findings.take().size(), 1001U);
    EXPECT_LE(meter.peak(), 2U * 1024 * 1024);
}

} // namespace
