// Data as they are written: for the library, and whatever a plan of the output says.

#include "Cfg.h"
#include "Dat.h"
#include "base/numbers.h"
#include "data/DataWriter.h"
#include "intake/dataSupport.h"
#include "support/RecordingBuilder.h"
#include "support/TempDir.h"
#include "support/fixedSeed.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using orvtest::cfgFor;
using orvtest::libraryData;
using orvtest::LittleEndianBytes;
using orvtest::record16;
using orvtest::record32;
using orvtest::recordOfSingle;
using orvtest::stamped;
using orvtest::Surveyed;
using orvtest::TempDir;
using orvtest::textOf;

ReadCfg ascii(std::size_t analogs, std::size_t statuses, std::uint64_t samples = 0, double rate = 1000.0) {
    return cfgFor(analogs, statuses, DataType::Ascii, rate, samples);
}

ReadCfg binary(std::uint64_t samples, double rate = 1000.0) {
    return cfgFor(1, 0, DataType::Binary, rate, samples);
}

ReadCfg binary32(std::uint64_t samples, double rate = 1000.0) {
    return cfgFor(1, 0, DataType::Binary32, rate, samples);
}

/// The header for data that were written for the library.
ReadCfg rewrittenCfg(const Surveyed& surveyed) {
    ReadCfg cfg = surveyed.cfg;
    const double rate = cfg.header.timesAreStamped() ? 0.0 : cfg.header.rates.front().rate;
    cfg.header.rates = {{rate, surveyed.facts->samples}};
    cfg.header.samplesDeclared = surveyed.facts->samples;
    cfg.header.dataType = surveyed.facts->libraryType;
    cfg.header.timeMultiplier *= surveyed.facts->stamps.unit / surveyed.facts->stamps.factor;
    cfg.header.revision = 1999;
    return cfg;
}

/// The library's reading of data, with a = 1 and b = 0 for each channel.
struct Loaded {
    Loaded(const ReadCfg& configuration, const std::string& data) {
        orvtest::RecordingBuilder builder;
        for (std::size_t i = 0; i < configuration.header.analog.size(); ++i) {
            builder.analog("1,A,,,V,1,0,0,-32767,32767,1,1,S");
        }
        for (std::size_t i = 0; i < configuration.header.status.size(); ++i) {
            builder.status("1,D,,,0");
        }
        const RateInfo& rate = configuration.header.rates.front();
        builder.rate(numberText(rate.rate) + "," + std::to_string(rate.endSample))
            .type(typeWord(configuration.header.dataType))
            .multiplier(numberText(configuration.header.timeMultiplier));
        const TempDir folder;
        cfgResult = cfg.load(folder.write("a.cfg", builder.cfgText()));
        dat = std::make_unique<OrvComtradeLib::Dat>(cfg);
        result = dat->load(folder.write("a.dat", data));
    }

    const std::vector<OrvComtradeLib::Sample>& samples() const { return dat->samples; }

    OrvComtradeLib::Cfg cfg;
    std::unique_ptr<OrvComtradeLib::Dat> dat;
    int cfgResult = -1;
    int result = -1;
};

struct LineRow {
    const char* why;
    std::string data;
    std::string expected;
};

TEST(WriteForLibrary, LinesArePlain) {
    const LineRow rows[] = {
        // 2 analog and 2 status channels, 1000 samples per second
        {"plus sign", "1,0,+5,-3,1,0\n", "1,0,5,-3,1,0\n"},
        {"blanks before commas", "1 , 0 , 5 , -3 , 1 , 0\n", "1,0,5,-3,1,0\n"},
        {"empty value", "1,0,,-3,1,0\n", "1,0,99999,-3,1,0\n"},
        {"empty stamp, first sample", "1,,5,-3,1,0\n", "1,0,5,-3,1,0\n"},
        {"empty stamp, third sample", "1,0,5,-3,1,0\n2,1000,5,-3,1,0\n3,,5,-3,1,0\n",
         "1,0,5,-3,1,0\n2,1000,5,-3,1,0\n3,2000,5,-3,1,0\n"},
        {"empty number", ",0,5,-3,1,0\n,1000,5,-3,1,0\n", "1,0,5,-3,1,0\n2,1000,5,-3,1,0\n"},
        {"empty state", "1,0,5,-3,,1\n", "1,0,5,-3,0,1\n"},
        {"state of several digits", "1,0,5,-3,01,00\n", "1,0,5,-3,1,0\n"},
        {"state with a sign or a point", "1,0,+5,-3,+1,0.0\n", "1,0,5,-3,1,0\n"},
        {"state of text", "1,0,+5,-3,x,0\n", "1,0,5,-3,1,0\n"},
        {"text behind the last state", "1,0,+5,-3,1,0EOF\n", "1,0,5,-3,1,0\n"},
        {"comma at the end", "1,0,+5,-3,1,0,\n2,1000,6,-4,0,1,\n", "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"empty state before a comma at the end", "1,0,5,-3,1,,\n", "1,0,5,-3,1,0\n"},
        {"more columns", "1,0,+5,-3,1,0,7,8\n", "1,0,5,-3,1,0\n"},
        {"byte-order mark",
         "\xEF\xBB\xBF"
         "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n",
         "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"byte-order mark before decimals",
         "\xEF\xBB\xBF"
         "1,0,5.5,-3,1,0\n",
         "1,0,550,-3,1,0\n"},
        {"byte-order mark alone in its line", "\xEF\xBB\xBF\n1,0,5,-3,1,0\n", "1,0,5,-3,1,0\n"},
        {"no number", "1,0,****,-3,1,0\n", "1,0,99999,-3,1,0\n"},
        {"NaN", "1,0,NaN,-3,1,0\n", "1,0,99999,-3,1,0\n"},
        {"integers with a point", "1,0,5.,-3.000,1,0\n", "1,0,5,-3,1,0\n"},
        {"integer with an exponent", "1,0,5e2,-3E+0,1,0\n", "1,0,500,-3,1,0\n"},
        {"missing value with a point", "1,0,99999.0,-3,1,0\n", "1,0,99999,-3,1,0\n"},
        {"zero with a minus sign and a point", "1,0,-0.0,-3,1,0\n", "1,0,0,-3,1,0\n"},
        {"CR alone", "1,0,5,-3,1,0\r2,1000,6,-4,0,1\r", "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"CR alone once", "1,0,5,-3,1,0\r2,1000,6,-4,0,1\n3,2000,7,-5,1,1\n",
         "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n3,2000,7,-5,1,1\n"},
        {"CR alone behind a byte-order mark",
         "\xEF\xBB\xBF"
         "1,0,5,-3,1,0\r2,1000,6,-4,0,1\n3,2000,7,-5,1,1\n",
         "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n3,2000,7,-5,1,1\n"},
        {"CR before a comma", "1,0,5\r,-3,1,0\n2,1000,6,-4,0,1\n", "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"CR behind the number", "1\r,0,5,-3,1,0\n2,1000,6,-4,0,1\n", "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"CR in a value", "1,0,5\r5,-3,1,0\n2,1000,6,-4,0,1\n", "1,0,99999,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"CR before every comma", "1\r,0\r,5\r,-3\r,1\r,0\n", "1,0,5,-3,1,0\n"},
        {"short lines before CR", "1,0,5\r2,1000,6,-4,0,1\r", "1,0,5,99999,0,0\n2,1000,6,-4,0,1\n"},
        {"short lines before CR that are as long as one", "1,0,5\r2,1000,6\r3,2000,7,-5,1,1\r",
         "1,0,5,99999,0,0\n2,1000,6,99999,0,0\n3,2000,7,-5,1,1\n"},
        {"blank lines of CR LF files", "1,0,5,-3,1,0\r\n\r\n2,1000,6,-4,0,1\r\n", "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"0x1A between lines", "1,0,5,-3,1,0\n\x1A\n2,1000,6,-4,0,1\n", "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"0x1A in front of a line",
         "1,0,5,-3,1,0\n\x1A"
         "2,1000,6,-4,0,1\n",
         "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"zero bytes between lines", "1,0,5,-3,1,0\n" + std::string(512, '\0') + "2,1000,6,-4,0,1\n",
         "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"more zero bytes than a line may have", "1,0,5,-3,1,0\n" + std::string(200000, '\0') + "2,1000,6,-4,0,1\n",
         "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"text of as many columns", "1,0,5,-3,1,0\nold text of the disk,1,2\n2,1000,6,-4,0,1\n",
         "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"headings", "n,t,A,B,C,D\n1,0,5,-3,1,0\n", "1,0,5,-3,1,0\n"},
        {"short line between others", "1,0,5,-3,1,0\n2,1000,6\n3,2000,7,-5,1,1\n",
         "1,0,5,-3,1,0\n2,1000,6,99999,0,0\n3,2000,7,-5,1,1\n"},
        {"short line at the end after a repaired one", "1,0,+5,-3,1,0\n2,1000,6\n", "1,0,5,-3,1,0\n"},
        // Decimals: one digit more than the most of the channel, so that none can be 99999
        {"decimals", "1,0,12.5,-3,1,0\n2,1000,-0.25,7,1,0\n", "1,0,12500,-3,1,0\n2,1000,-250,7,1,0\n"},
        {"decimals beside plain lines", "1,0,12,-3,1,0\n2,1000,0.5,7,1,0\n", "1,0,1200,-3,1,0\n2,1000,50,7,1,0\n"},
        {"decimals beside missing values", "1,0,99999,-3,1,0\n2,1000,0.5,7,1,0\n",
         "1,0,99999,-3,1,0\n2,1000,50,7,1,0\n"},
        {"decimals with as many places, one of them without", "1,0,1.500,-3,1,0\n2,1000,+12.000,7,1,0\n",
         "1,0,150,-3,1,0\n2,1000,1200,7,1,0\n"},
        {"decimals in the last channel", "1,0,5,-3.5,1,0\n2,1000,5,-4,0,1\n", "1,0,5,-350,1,0\n2,1000,5,-400,0,1\n"},
        {"decimals of many digits", "1,0,123456789.25,-3,1,0\n2,1000,-0.000000125,7,0,1\n",
         "1,0,1234567892500000,-3,1,0\n2,1000,-1,7,0,1\n"},
        {"missing value with zeros behind the point, and its opposite", "1,0,99999.00,-99999.0,1,0\n",
         "1,0,99999,-99999,1,0\n"},
        {"decimals that would look missing", "1,0,9.9999,-3,1,0\n", "1,0,999990,-3,1,0\n"},
        {"decimals with exponents", "1,0,1.25e-1,-3,1,0\n", "1,0,1250,-3,1,0\n"},
        {"more than 64 bits", "1,0,1e20,-3,1,0\n2,1000,-5e19,-3,1,0\n",
         "1,0,1000000000000000,-3,1,0\n2,1000,-500000000000000,-3,1,0\n"},
        {"integers of 64 bits beside a plus sign", "1,0,9223372036854775807,+1,1,0\n",
         "1,0,9223372036854775807,1,1,0\n"},
    };
    for (const LineRow& row : rows) {
        const Surveyed survey(row.data, ascii(2, 2));
        EXPECT_FALSE(survey.libraryReads()) << row.why;
        EXPECT_EQ(libraryData(survey), row.expected) << row.why;
    }
}

TEST(WriteForLibrary, EachChannelHasItsPowerOfTen) {
    const Surveyed survey("1,0,12.5,7,0.125\n", ascii(3, 0, 1));
    EXPECT_EQ(survey.facts->exponents, (std::vector<int>{2, 0, 4}));
    EXPECT_EQ(libraryData(survey), "1,0,1250,7,1250\n");
}

TEST(WriteForLibrary, DigitsThatADoubleDoesNotHoldAreRounded) {
    const Surveyed survey("1,0,123456.78901234567\n2,1000,0.00000000001\n", ascii(1, 0, 2));
    // 123456.78901234567 * 10^10 is below 2^53 = 9007199254740992, times 10^11 is not
    EXPECT_EQ(survey.facts->exponents, std::vector<int>{10});
    EXPECT_EQ(libraryData(survey), "1,0,1234567890123457\n2,1000,0\n");
}

TEST(WriteForLibrary, TheCodeOf1991IsWrittenAsItStands) {
    ReadCfg cfg = ascii(2, 0);
    cfg.header.revision = 1991;
    const Surveyed survey("1,0,99999,999999\n2,1000,,+5\n", cfg);
    EXPECT_EQ(textOf(survey.facts->missing), "0:1+1 1:0+1");
    EXPECT_EQ(libraryData(survey), "1,0,99999,999999\n2,1000,99999,5\n");
}

struct StampRow {
    const char* why;
    std::string data;
    double factor; ///< what the time multiplier is divided by
    double unit;   ///< what it is multiplied by
    std::string expected;
};

TEST(WriteForLibrary, StampsAreWholeNumbersThatCountFromZero) {
    const StampRow rows[] = {
        {"between neighbours", "1,100,5\n2,,6\n3,,7\n4,400,8\n", 1.0, 1.0, "1,0,5\n2,100,6\n3,200,7\n4,300,8\n"},
        {"at the beginning", "1,,5\n2,100,6\n3,150,7\n", 1.0, 1.0, "1,0,5\n2,50,6\n3,100,7\n"},
        {"at the beginning, never before 0", "1,,5\n2,,6\n3,100,7\n4,200,8\n", 1.0, 1.0,
         "1,0,5\n2,50,6\n3,100,7\n4,200,8\n"},
        {"at the end", "1,0,5\n2,100,6\n3,,7\n4,,8\n", 1.0, 1.0, "1,0,5\n2,100,6\n3,200,7\n4,300,8\n"},
        {"wrap", "1,4294967000,5\n2,704,6\n", 1.0, 1.0, "1,0,5\n2,1000,6\n"},
        {"wrap of many", "1,0,5\n2,2147483647,6\n3,4294967000,7\n4,704,8\n", 1.0, 10.0,
         "1,0,5\n2,214748365,6\n3,429496700,7\n4,429496800,8\n"},
        {"more than 32 bits", "1,0,5\n2,50000000000,6\n", 1.0, 100.0, "1,0,5\n2,500000000,6\n"},
        {"decimals", "1,0,5\n2,0.25,6\n3,0.5,7\n", 100.0, 1.0, "1,0,5\n2,25,6\n3,50,7\n"},
        {"decimals behind plain lines", "1,0,5\n2,1,6\n3,1.5,7\n4,2,8\n", 10.0, 1.0, "1,0,5\n2,10,6\n3,15,7\n4,20,8\n"},
        {"zeros behind the point", "1,0.000,5\n2,100.000,6\n", 1.0, 1.0, "1,0,5\n2,100,6\n"},
        {"exponents", "1,0e0,5\n2,1.5e3,6\n3,3E+3,7\n", 1.0, 1.0, "1,0,5\n2,1500,6\n3,3000,7\n"},
        {"exponents of fractions", "1,0,5\n2,15e-1,6\n", 10.0, 1.0, "1,0,5\n2,15,6\n"},
        {"the most digits", "1,0,5\n2,42949672.94,6\n", 100.0, 1.0, "1,0,5\n2,4294967294,6\n"},
        {"one more", "1,0,5\n2,42949672.95,6\n", 10.0, 1.0, "1,0,5\n2,429496730,6\n"},
        {"more digits than fit", "1,0.123456789012,5\n2,8000.5,6\n", 100000.0, 1.0, "1,0,5\n2,800037654,6\n"},
        {"decimals of wide stamps", "1,0.5,5\n2,50000000000,6\n", 1.0, 100.0, "1,0,5\n2,500000000,6\n"},
        {"decimals that begin again", "1,4294967000.5,5\n2,704.5,6\n", 10.0, 1.0, "1,0,5\n2,10000,6\n"},
        {"missing among decimals", "1,0.5,5\n2,,6\n3,2.5,7\n4,,8\n", 10.0, 1.0, "1,0,5\n2,10,6\n3,20,7\n4,30,8\n"},
        {"negative", "1,-200,5\n2,-100,6\n3,0,7\n4,100,8\n", 1.0, 1.0, "1,0,5\n2,100,6\n3,200,7\n4,300,8\n"},
        {"negative, the lowest not the first", "1,0,5\n2,-100,6\n3,50,7\n", 1.0, 1.0, "1,100,5\n2,0,6\n3,150,7\n"},
        {"negative decimals", "1,-0.25,5\n2,0.5,6\n", 100.0, 1.0, "1,0,5\n2,75,6\n"},
        {"missing before negative", "1,,5\n2,-100,6\n3,0,7\n", 1.0, 1.0, "1,0,5\n2,100,6\n3,200,7\n"},
        {"negative and far apart", "1,-4000000000,5\n2,4000000000,6\n", 1.0, 10.0, "1,0,5\n2,800000000,6\n"},
        {"counts with a sign that begin again", "1,2147483647,5\n2,-2147483648,6\n3,-2147483647,7\n", 1.0, 1.0,
         "1,0,5\n2,1,6\n3,2,7\n"},
        {"more than 64 bits", "1,0,5\n2,18446744073709551716,6\n3,200,7\n", 1.0, 1.0, "1,0,5\n2,100,6\n3,200,7\n"},
        {"backwards by more than half the range", "1,5000000000,5\n2,7147483649,6\n3,5000000000,7\n", 1.0, 10.0,
         "1,0,5\n2,214748365,6\n3,0,7\n"},
        {"backwards by as much as half the range", "1,7,5\n2,2147483655,6\n3,7,7\n", 1.0, 1.0,
         "1,0,5\n2,2147483648,6\n3,0,7\n"},
    };
    for (const StampRow& row : rows) {
        const Surveyed survey(row.data, ascii(1, 0, 0, 0.0));
        EXPECT_FALSE(survey.libraryReads()) << row.why;
        EXPECT_EQ(survey.facts->stamps.factor, row.factor) << row.why;
        EXPECT_EQ(survey.facts->stamps.unit, row.unit) << row.why;
        const std::string data = libraryData(survey);
        EXPECT_EQ(data, row.expected) << row.why;
        const Surveyed again(data, rewrittenCfg(survey));
        EXPECT_TRUE(again.libraryReads()) << row.why;
    }
}

TEST(WriteForLibrary, StampsWithDecimalsAreRoundedWhereTheRateIsKnown) {
    const Surveyed survey("1,0.25,5\n2,-1000.75,6\n3,2e3,7\n", ascii(1, 0, 3));
    EXPECT_EQ(survey.facts->stamps.factor, 1.0);
    EXPECT_EQ(libraryData(survey), "1,0,5\n2,-1001,6\n3,2000,7\n");
}

TEST(WriteForLibrary, IntegersOf32BitsAreSinglesWhereTheyAreExact) {
    const Surveyed survey(record32(1, 0, 100) + record32(2, 1000, 0xFFFFFFFE) + record32(3, 2000, 0x01000000) +
                              record32(4, 3000, 0x80000000),
                          binary32(4));
    EXPECT_EQ(survey.facts->libraryType, DataType::Float32);
    EXPECT_EQ(libraryData(survey), record32(1, 0, 0x42C80000) + record32(2, 1000, 0xC0000000) +
                                       record32(3, 2000, 0x4B800000) + record32(4, 3000, 0x7FC00000));
}

TEST(WriteForLibrary, IntegersOf32BitsAreATextWhereTheyAreNot) {
    // 2^24 + 1 has 25 significant bits, a single 24
    const Surveyed survey(record32(1, 0, 0x01000001) + record32(2, 1000, 0x80000000) + record32(3, 2000, 0x7FFFFFFF),
                          binary32(3));
    EXPECT_EQ(survey.facts->libraryType, DataType::Ascii);
    EXPECT_EQ(libraryData(survey), "1,0,16777217\n2,1000,99999\n3,2000,2147483647\n");
}

TEST(WriteForLibrary, IntegersThatWouldLookMissingAreTakenTimesTen) {
    const Surveyed survey(record32(1, 0, 99999) + record32(2, 1000, 0x7FFFFFFF) + record32(3, 2000, 0x80000000),
                          binary32(3));
    EXPECT_EQ(survey.facts->exponents, std::vector<int>{1});
    EXPECT_EQ(libraryData(survey), "1,0,999990\n2,1000,21474836470\n3,2000,99999\n");
}

TEST(WriteForLibrary, StatesOfRecordsBecomeText) {
    const ReadCfg cfg = cfgFor(1, 17, DataType::Binary32, 1000.0, 1);
    EXPECT_EQ(libraryData(Surveyed(record32(1, 0, 0x01000001) + std::string("\x05\x80\xFF\xFF", 4), cfg)),
              "1,0,16777217,1,0,1,0,0,0,0,0,0,0,0,0,0,0,0,1,1\n");
}

TEST(WriteForLibrary, RecordsAreCopiedBitByBit) {
    const std::string singles = recordOfSingle(1, 0, 0.1F) + record32(2, 1000, 0xFF7FFFFF) +
                                record32(3, 2000, 0x7F800000) + record32(4, 3000, 0xFF800000) +
                                record32(5, 4000, 0x80000000) + record32(6, 5000, 0x00000001);
    EXPECT_EQ(libraryData(Surveyed(singles, cfgFor(1, 0, DataType::Float32))), singles);
    const std::string integers = record16(1, 0, 0x8000) + record16(2, 1000, 0x7FFF) + record16(3, 2000, 0xFFFF);
    EXPECT_EQ(libraryData(Surveyed(integers, binary(3))), integers);
}

TEST(WriteForLibrary, RecordsWhoseNumbersDoNotGoOnAreLeftOut) {
    EXPECT_EQ(libraryData(Surveyed(record16(1, 0, 5) + record16(2, 1000, 6) + record16(9, 9000, 7), binary(2))),
              record16(1, 0, 5) + record16(2, 1000, 6));
}

TEST(WriteForLibrary, StampsOfRecordsCountFromZero) {
    EXPECT_EQ(libraryData(Surveyed(stamped({0xFFFFFF00, 0}), binary(2, 0.0))), stamped({0, 256}));
    EXPECT_EQ(libraryData(Surveyed(stamped({100, 0xFFFFFFFF, 300}), binary(3, 0.0))), stamped({0, 100, 200}));
    const Surveyed far(stamped({0, 0x7FFFFFFF, 0xFFFFFF00, 0}), binary(4, 0.0));
    EXPECT_EQ(far.facts->stamps.unit, 10.0);
    EXPECT_EQ(libraryData(far), stamped({0, 214748365, 429496704, 429496730}));
}

TEST(WriteForLibrary, NumbersThatAreAllTheSameAreCounted) {
    ReadCfg cfg = cfgFor(0, 1, DataType::Binary);
    cfg.header.samplesDeclared = 0;
    const std::string odd = "\xFE\xFF"; // bits of no channel, without which nothing but zeros would be left
    const auto record = [](std::uint32_t number, const std::string& states) {
        return orvtest::LittleEndianBytes().u32(number).u32(0).bytes() + states;
    };
    const std::string states(2, '\0');
    const Surveyed one(record(0, odd), cfg);
    ASSERT_TRUE(one.facts);
    EXPECT_EQ(libraryData(one), record(1, states));
    const Surveyed three(record(0, odd) + record(0, odd) + record(0, odd), cfg);
    ASSERT_TRUE(three.facts);
    EXPECT_EQ(libraryData(three), record(1, states) + record(2, states) + record(3, states));
    const Surveyed counted(record(7, odd) + record(8, odd), cfg);
    EXPECT_EQ(libraryData(counted), record(7, states) + record(8, states));
}

TEST(WriteForLibrary, PaddingIsLeftOut) {
    std::string padded;
    std::string whole;
    for (std::uint32_t i = 1; i <= 5; ++i) {
        const std::string record = record16(i, 1000 * i, static_cast<std::uint16_t>(3 - i));
        padded += record + std::string(2, '\0');
        whole += record;
    }
    const Surveyed survey(padded, binary(5));
    EXPECT_FALSE(survey.libraryReads());
    EXPECT_EQ(libraryData(survey), whole);
}

TEST(WriteForLibrary, BitsThatNoChannelHasAreZero) {
    const auto recordOf = [](std::uint16_t word) { return record16(1, 0, 5) + LittleEndianBytes().u16(word).bytes(); };
    const ReadCfg cfg = cfgFor(1, 3, DataType::Binary, 1000.0, 1);
    EXPECT_EQ(libraryData(Surveyed(recordOf(0xFFFD), cfg)), recordOf(0x0005));
    EXPECT_EQ(libraryData(Surveyed(recordOf(0x0005), cfg)), recordOf(0x0005));
}

/// What is written of a block by itself.
std::string writtenBlock(const DataOutput& output, const Block& block, const std::vector<MissingRun>& missing = {}) {
    std::string bytes;
    const Sink sink = [&bytes](std::string_view piece) { bytes += piece; };
    DataWriter(output, missing, sink).write(block);
    return bytes;
}

/// A block of one channel.
Block blockOf(const std::vector<double>& raw) {
    Block block;
    block.rows = raw.size();
    for (std::size_t i = 0; i < raw.size(); ++i) {
        block.numbers.push_back(static_cast<std::int64_t>(i) + 1);
        block.stamps.push_back(0);
    }
    block.raw = raw;
    return block;
}

/// The value column of lines with numbers 1, 2, ... and stamps 0.
std::string valuesOf(const DataOutput& output, const std::vector<double>& raw) {
    const std::string text = writtenBlock(output, blockOf(raw));
    std::string values;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const std::string head = std::to_string(i + 1) + ",0,";
        EXPECT_EQ(text.compare(begin, head.size(), head), 0);
        const std::size_t end = text.find('\n', begin);
        values += (i == 0 ? "" : " ") + text.substr(begin + head.size(), end - begin - head.size());
        begin = end + 1;
    }
    EXPECT_EQ(begin, text.size());
    return values;
}

DataOutput textOutput(double divisor, int decimals = 0, bool isReal = false) {
    DataOutput output;
    ChannelForm form;
    form.divisor = divisor;
    form.decimals = decimals;
    form.isReal = isReal;
    output.channels = {form};
    return output;
}

TEST(DataWriterText, IntegersOfAnyLength) {
    std::vector<double> raw = {0};
    std::string expected = "0";
    std::int64_t number = 0;
    for (int digits = 1; digits <= 15; ++digits) {
        number = number * 10 + digits % 10;
        for (const std::int64_t each : {number, -number}) {
            raw.push_back(static_cast<double>(each));
            expected += " " + std::to_string(each);
        }
    }
    EXPECT_EQ(valuesOf(textOutput(1.0), raw), expected);
    EXPECT_EQ(valuesOf(textOutput(1.0), {9999, 10000, 99999999, 100000000}), "9999 10000 99999999 100000000");
    EXPECT_EQ(valuesOf(textOutput(1.0), {0x1p62, -0x1p62, 1e30, -1e30}),
              "4611686018427387904 -4611686018427387904 9223372036854775807 -9223372036854775807");
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(valuesOf(textOutput(1.0), {infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}),
              "9223372036854775807 -9223372036854775807 0");
}

TEST(DataWriterText, DecimalsExactly) {
    EXPECT_EQ(valuesOf(textOutput(1.0, 2), {0, 5, -5, 10, 100, 12345, -12345, 1200, -1}),
              "0 0.05 -0.05 0.1 1 123.45 -123.45 12 -0.01");
    EXPECT_EQ(valuesOf(textOutput(1.0, 15), {1, 9007199254740991}), "0.000000000000001 9.007199254740991");
    EXPECT_EQ(valuesOf(textOutput(1.0, -3), {0, 5, -12}), "0 5000 -12000");
    EXPECT_EQ(valuesOf(textOutput(1.0, 80), {-1234567890123456}),
              "-0.00000000000000000000000000000000000000000000000000000000000000001234567890123456");
    EXPECT_EQ(valuesOf(textOutput(1.0, -45), {-1234567890123456}),
              "-1234567890123456000000000000000000000000000000000000000000000");
}

TEST(DataWriterText, LongestNumbersOfManyChannelsHaveRoom) {
    DataOutput output = textOutput(1.0, 80);
    output.channels.resize(200, output.channels.front());
    Block block = blockOf({-1234567890123456});
    block.raw.resize(200, -1234567890123456);
    EXPECT_EQ(writtenBlock(output, block).size(), 4 + 200 * 84U); // "1,0" and a line end, "-0.", 80 digits, a comma
}

TEST(DataWriterText, SinglesAsTheShortestDecimals) {
    EXPECT_EQ(valuesOf(textOutput(1.0, 0, true), {0.5, static_cast<double>(0.1F), -1e20, 5, -0.0}),
              "0.5 0.1 -1e+20 5 -0");
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(valuesOf(textOutput(1.0, 0, true), {infinity, -infinity}), "3.4028235e+38 -3.4028233e+38");
}

TEST(DataWriterText, MarkersAndMissingCodes) {
    DataOutput output = textOutput(1.0);
    output.keepsMarkers = false;
    output.missingCode = 999999;
    EXPECT_EQ(writtenBlock(output, blockOf({5, 99999, 7}), {{0, 1, 1}}), "1,0,5\n2,0,999999\n3,0,7\n");
    output.keepsMarkers = true;
    EXPECT_EQ(writtenBlock(output, blockOf({5, 99999, 7}), {{0, 1, 1}}), "1,0,5\n2,0,99999\n3,0,7\n");
}

TEST(DataWriterText, RoundedValueIsNoMissingCode) {
    DataOutput output = textOutput(2.0);
    output.keepsMarkers = false;
    output.missingCode = 99999;
    EXPECT_EQ(valuesOf(output, {199998, 199996, 200000}), "99998 99998 100000");
    output.channels[0].divisor = 1.0;
    EXPECT_EQ(valuesOf(output, {99999}), "99999"); // its channel's range holds it
}

TEST(DataWriterText, NumbersBeyondIntegersHaveAllTheirDigits) {
    DataOutput output = textOutput(1.0, 3);
    output.mayHaveLongNumbers = true;
    EXPECT_EQ(valuesOf(output, {0x1p63, -1e22, 1e19, 7}),
              "9223372036854775.807 -10000000000000000000 10000000000000000 0.007");
    output.channels[0].decimals = 0;
    EXPECT_EQ(valuesOf(output, {0x1p100, std::numeric_limits<double>::infinity()}),
              "1267650600228229401496703205376 9223372036854775807");
}

TEST(DataWriterText, ValuesBeyondIntegersAreSaidToBeRounded) {
    const DataOutput output = textOutput(1.0);
    const std::vector<MissingRun> none;
    const Sink sink = [](std::string_view) {};
    const auto isRounded = [&](double raw) {
        DataWriter writer(output, none, sink);
        writer.write(blockOf({raw}));
        return !writer.rounded().empty();
    };
    EXPECT_FALSE(isRounded(-0x1p63));
    EXPECT_TRUE(isRounded(0x1.8p63));
    EXPECT_TRUE(isRounded(-std::numeric_limits<double>::infinity()));
}

TEST(DataWriterText, StatesAndLineEnds) {
    DataOutput output;
    output.statuses = 66;
    output.lineEnd = "\r\n";
    Block block = blockOf({});
    block.rows = 1;
    block.numbers = {1};
    block.stamps = {0};
    block.stateWords = 2;
    block.states = {0x8000000000000001, 2};
    std::string expected = "1,0,1";
    for (int i = 1; i < 63; ++i) {
        expected += ",0";
    }
    EXPECT_EQ(writtenBlock(output, block), expected + ",1,0,1\r\n");
    output.statuses = 0;
    block.stateWords = 0;
    block.states.clear();
    EXPECT_EQ(writtenBlock(output, block), "1,0\r\n");
}

/// Stamps of lines, "-" for none.
std::string stampsOf(const DataOutput& output, const std::vector<std::int64_t>& stamps, std::uint64_t first = 0) {
    Block block = blockOf({});
    block.rows = stamps.size();
    block.first = first;
    block.stamps = stamps;
    block.numbers.assign(stamps.size(), 7);
    std::string text = writtenBlock(output, block);
    std::string found;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t comma = text.find(',', begin);
        const std::size_t end = text.find('\n', begin);
        const std::string stamp = text.substr(comma + 1, end - comma - 1);
        found += (found.empty() ? "" : " ") + (stamp.empty() ? "-" : stamp);
        begin = end + 1;
    }
    return found;
}

TEST(DataWriterStamps, AreRecordedComputedOrLeftOut) {
    DataOutput output;
    output.stampSteps = {{0, 250.0}, {3, 100.0}};
    const std::vector<std::int64_t> stamps = {10, kNoStamp, 20, 30, kNoStamp, 40};
    EXPECT_EQ(stampsOf(output, stamps), "10 250 20 30 850 40");
    output.mayLeaveStampsOut = true;
    EXPECT_EQ(stampsOf(output, stamps), "10 - 20 30 - 40");
    output.computesStamps = true;
    EXPECT_EQ(stampsOf(output, stamps), "0 250 500 750 850 950");
    EXPECT_EQ(stampsOf(output, stamps, 100), "10450 10550 10650 10750 10850 10950");
}

TEST(DataWriterStamps, ThatAreComputedDoNotDrift) {
    DataOutput output;
    output.computesStamps = true;
    output.stampSteps = {{0, 1e6 / 3.0}};
    EXPECT_EQ(stampsOf(output, {0, 0, 0}, 3000), "1000000000 1000333333 1000666667");
    output.stampSteps = {{0, 0.1}};
    std::string last;
    Block block = blockOf(std::vector<double>(1000, 0.0));
    const Sink sink = [&last](std::string_view piece) { last = piece; };
    DataWriter writer(output, {}, sink);
    for (int i = 0; i < 3000; ++i, block.first += 1000) {
        writer.write(block);
    }
    EXPECT_EQ(last.substr(last.size() - 12), "1000,300000\n"); // 2999999 * 0.1
}

TEST(DataWriterStamps, ThatAreComputedBeginAgainAfter32Bits) {
    DataOutput output;
    output.computesStamps = true;
    output.stampSteps = {{0, 0x1p31}};
    EXPECT_EQ(stampsOf(output, {0, 0, 0, 0}), "0 2147483648 0 2147483648");
    output.stampSteps = {{0, 4294967295.0}};
    EXPECT_EQ(stampsOf(output, {0, 0, 0}), "0 4294967294 4294967294"); // 2^32 - 1 would be a missing one
    output.stampSteps = {{0, 4294967295.7}};
    EXPECT_EQ(stampsOf(output, {0, 0}), "0 0");
}

TEST(DataWriterNumbers, AreKeptOrCounted) {
    DataOutput output;
    Block block = blockOf({});
    block.rows = 2;
    block.first = 40;
    block.numbers = {-7, 9000000000000000000};
    block.stamps = {0, 0};
    EXPECT_EQ(writtenBlock(output, block), "-7,0\n9000000000000000000,0\n");
    output.renumbers = true;
    EXPECT_EQ(writtenBlock(output, block), "41,0\n42,0\n");
}

TEST(DataWriterRecords, HoldWhatTheirTypeHolds) {
    struct Row {
        const char* why;
        DataType type;
        double raw;
        std::uint32_t bits;
    };
    const double infinity = std::numeric_limits<double>::infinity();
    const Row rows[] = {
        {"16 bits", DataType::Binary, -5, 0xFFFB},
        {"rounded", DataType::Binary, 5.5, 6},
        {"the greatest", DataType::Binary, 32767, 0x7FFF},
        {"the least", DataType::Binary, -32767, 0x8001},
        {"too great", DataType::Binary, 1e9, 0x7FFF},
        {"too low, never a missing one", DataType::Binary, -1e9, 0x8001},
        {"infinity", DataType::Binary, infinity, 0x7FFF},
        {"32 bits", DataType::Binary32, -5, 0xFFFFFFFB},
        {"the greatest", DataType::Binary32, 2147483647, 0x7FFFFFFF},
        {"too great", DataType::Binary32, 1e12, 0x7FFFFFFF},
        {"too low, never a missing one", DataType::Binary32, -1e12, 0x80000001},
        {"a single", DataType::Float32, 0.5, 0x3F000000},
        {"rounded", DataType::Float32, 0.1, 0x3DCCCCCD},
        {"infinity", DataType::Float32, infinity, 0x7F800000},
        {"too great", DataType::Float32, 1e60, 0x7F7FFFFF},
        {"too low, never a missing one", DataType::Float32, -1e60, 0xFF7FFFFE},
    };
    for (const Row& row : rows) {
        DataOutput output = textOutput(1.0);
        output.type = row.type;
        output.keepsMarkers = false;
        const bool isNarrow = row.type == DataType::Binary;
        EXPECT_EQ(writtenBlock(output, blockOf({row.raw})),
                  isNarrow ? record16(1, 0, static_cast<std::uint16_t>(row.bits)) : record32(1, 0, row.bits))
            << row.why;
    }
}

TEST(DataWriterRecords, HaveTheMarkOfTheirTypeForAMissingValue) {
    struct Row {
        DataType type;
        std::string record;
    };
    const Row rows[] = {{DataType::Binary, record16(1, 0, 0x8000)},
                        {DataType::Binary32, record32(1, 0, 0x80000000)},
                        {DataType::Float32, record32(1, 0, 0x7FC00000)}};
    for (const Row& row : rows) {
        DataOutput output = textOutput(1.0);
        output.type = row.type;
        output.keepsMarkers = false;
        EXPECT_EQ(writtenBlock(output, blockOf({99999}), {{0, 0, 1}}), row.record);
    }
}

TEST(DataWriterRecords, HaveTheMarkOfAMissingStamp) {
    DataOutput output = textOutput(1.0);
    output.type = DataType::Binary;
    output.mayLeaveStampsOut = true;
    Block block = blockOf({5, 6, 7});
    block.stamps = {kNoStamp, -1000, 4294967296 + 8};
    EXPECT_EQ(writtenBlock(output, block), record16(1, 0xFFFFFFFF, 5) + record16(2, 4294966296, 6) + record16(3, 8, 7));
}

TEST(DataWriterWrite, WhatTheSinkThrowsPassesThrough) {
    const Sink sink = [](std::string_view) { throw std::runtime_error("no room"); };
    const DataOutput output = textOutput(1.0);
    DataWriter writer(output, {}, sink);
    EXPECT_THROW(writer.write(blockOf({5})), std::runtime_error);
}

/// Whatever the bytes: the library reads all samples of the survey, and nothing is wrong with what was written for it.
void checkRoundTrip(const std::string& data, const ReadCfg& cfg) {
    const Surveyed survey(data, cfg);
    RC_ASSERT(survey.facts || orvtest::hasError(survey.findings));
    if (!survey.facts || survey.find("no-times") != nullptr) {
        return;
    }
    RC_ASSERT(survey.samples() != 0);
    const std::string written = libraryData(survey);
    const ReadCfg rewritten = rewrittenCfg(survey);
    const Loaded loaded(rewritten, written);
    RC_ASSERT(loaded.cfgResult == OrvComtradeLib::Enums::CfgLoaded);
    RC_ASSERT(loaded.result == OrvComtradeLib::Enums::Ok);
    RC_ASSERT(loaded.samples().size() == survey.samples());
    const Block whole = orvtest::wholeOf(survey);
    for (std::size_t row = 0; row < whole.rows; ++row) {
        const OrvComtradeLib::Sample& sample = loaded.samples()[row];
        for (std::size_t channel = 0; channel < cfg.header.analog.size(); ++channel) {
            const double raw = whole.raw[channel * whole.rows + row];
            const double most = survey.facts->type == DataType::Ascii ? 0x1p63 : std::abs(raw); // of its integers
            RC_ASSERT(sample.analogValues.at(channel) == std::clamp(raw, -most, most) || std::isnan(raw));
        }
        for (std::size_t channel = 0; channel < cfg.header.status.size(); ++channel) {
            RC_ASSERT(sample.binaryValues.at(channel) == whole.state(row, channel));
        }
    }
    if (survey.libraryReads()) { // the same from the bytes as they are
        const bool isText = survey.facts->type == DataType::Ascii;
        const std::string bytes =
            isText ? data : data.substr(0, static_cast<std::size_t>(survey.samples()) * survey.facts->recordStride);
        const Loaded original(rewritten, bytes);
        RC_ASSERT(original.result == OrvComtradeLib::Enums::Ok);
        RC_ASSERT(original.samples().size() == survey.samples());
        for (std::size_t row = 0; row < whole.rows; ++row) {
            RC_ASSERT(original.samples()[row].time == loaded.samples()[row].time);
            const std::vector<double>& values = original.samples()[row].analogValues;
            RC_ASSERT(std::equal(values.begin(), values.end(), loaded.samples()[row].analogValues.begin(),
                                 [](double left, double right) { return left == right || std::isnan(left); }));
            RC_ASSERT(original.samples()[row].binaryValues == loaded.samples()[row].binaryValues);
        }
    }
    const Surveyed again(written, rewritten);
    RC_ASSERT(again.samples() == survey.samples());
    RC_ASSERT(again.libraryReads());
}

/// A column, and what it means.
struct MeantColumn {
    std::string text;
    double value = 0.0;
};

/// An integer as the library's grammar has it: blanks, a minus sign, zeros in front.
rc::Gen<MeantColumn> wellFormedColumn() {
    const auto value =
        rc::gen::weightedOneOf<std::int64_t>({{6, rc::gen::inRange<std::int64_t>(-40000, 40000)},
                                              {1, rc::gen::just<std::int64_t>(99999)},
                                              {1, rc::gen::inRange<std::int64_t>(-INT64_MAX, INT64_MAX)}});
    const auto front = rc::gen::weightedElement<std::string>({{20, ""}, {1, " "}, {1, "\t "}});
    const auto zeros = rc::gen::weightedOneOf<std::size_t>(
        {{20, rc::gen::just<std::size_t>(0)}, {1, rc::gen::inRange<std::size_t>(1, 25)}});
    return rc::gen::apply(
        [](std::int64_t meant, const std::string& blanks, std::size_t count) {
            const std::string digits = std::to_string(meant < 0 ? -meant : meant);
            return MeantColumn{blanks + (meant < 0 ? "-" : "") + std::string(count, '0') + digits,
                               static_cast<double>(meant)};
        },
        value, front, zeros);
}

/// The library may read it otherwise, or not at all.
rc::Gen<MeantColumn> oddMeantColumn() {
    return rc::gen::element<MeantColumn>(MeantColumn{"+5", 5.0}, MeantColumn{"1.5", 1.5}, MeantColumn{"-12.25", -12.25},
                                         MeantColumn{"5.", 5.0}, MeantColumn{"1e3", 1000.0}, MeantColumn{"", 99999.0},
                                         MeantColumn{"99999.0", 99999.0},
                                         MeantColumn{"18446744073709551621", 18446744073709551621.0});
}

/// Lines of which each column's meaning is known. Unless some may be odd, all are well formed.
struct MeantText {
    MeantText(std::size_t analogs, std::size_t statuses, bool odd) {
        const auto column = rc::gen::weightedOneOf<MeantColumn>(
            {{20, wellFormedColumn()}, {odd ? std::size_t{1} : std::size_t{0}, oddMeantColumn()}});
        const auto line = rc::gen::pair(rc::gen::container<std::vector<MeantColumn>>(analogs, column),
                                        rc::gen::container<std::vector<bool>>(statuses, rc::gen::arbitrary<bool>()));
        const std::string end = *rc::gen::element<std::string>("\n", "\r\n", "\n\n");
        lines = *rc::gen::nonEmpty(rc::gen::container<std::vector<Line>>(line));
        for (std::size_t i = 0; i < lines.size(); ++i) {
            text += std::to_string(i + 1) + "," + std::to_string(i * 1000);
            for (const MeantColumn& each : lines[i].first) {
                text += "," + each.text;
            }
            for (const bool state : lines[i].second) {
                text += state ? ",1" : ",0";
            }
            text += end;
        }
    }

    bool isReadBy(const std::vector<OrvComtradeLib::Sample>& samples) const {
        return std::equal(lines.begin(), lines.end(), samples.begin(), samples.end(),
                          [](const Line& line, const OrvComtradeLib::Sample& sample) {
                              return sample.binaryValues == line.second &&
                                     std::equal(line.first.begin(), line.first.end(), sample.analogValues.begin(),
                                                sample.analogValues.end(), [](const MeantColumn& column, double value) {
                                                    return column.value == value;
                                                });
                          });
    }

    using Line = std::pair<std::vector<MeantColumn>, std::vector<bool>>;
    std::vector<Line> lines;
    std::string text;
};

RC_GTEST_PROP(WriteForLibraryProperty, TextThatTheLibraryReadsRightlyIsLeftAlone, ()) {
    const auto analogs = *rc::gen::inRange<std::size_t>(0, 5);
    const auto statuses = *rc::gen::inRange<std::size_t>(analogs == 0 ? 1 : 0, 40);
    const MeantText meant(analogs, statuses, false);
    const Surveyed survey(meant.text, ascii(analogs, statuses, meant.lines.size(), *rc::gen::element(0.0, 1000.0)));
    RC_ASSERT(survey.libraryReads());
    RC_ASSERT(meant.isReadBy(Loaded(rewrittenCfg(survey), meant.text).samples()));
}

RC_GTEST_PROP(WriteForLibraryProperty, TextThatIsLeftAloneIsReadAsItIsMeant, ()) {
    const auto analogs = *rc::gen::inRange<std::size_t>(1, 5);
    const auto statuses = *rc::gen::inRange<std::size_t>(0, 5);
    const MeantText meant(analogs, statuses, true);
    const Surveyed survey(meant.text, ascii(analogs, statuses, meant.lines.size(), *rc::gen::element(0.0, 1000.0)));
    if (survey.libraryReads()) {
        RC_ASSERT(meant.isReadBy(Loaded(rewrittenCfg(survey), meant.text).samples()));
    }
}

/// Records of which each value and state is known.
struct MeantRecords {
    struct Record {
        std::vector<double> values;
        std::vector<bool> states;
    };

    MeantRecords(DataType type, std::size_t analogs, std::size_t statuses) {
        const auto count = *rc::gen::inRange<std::size_t>(1, 20);
        for (std::size_t i = 0; i < count; ++i) {
            const auto number = static_cast<std::uint32_t>(i);
            bytes.u32(number + 1).u32(number * 1000);
            Record record;
            for (std::size_t channel = 0; channel < analogs; ++channel) {
                record.values.push_back(addValue(type));
            }
            record.states = *rc::gen::container<std::vector<bool>>(statuses, rc::gen::arbitrary<bool>());
            for (std::size_t first = 0; first < statuses; first += 16) {
                addWord(record.states, first);
            }
            records.push_back(std::move(record));
        }
    }

    /// The library gives the values times these powers of ten.
    bool isReadBy(const std::vector<OrvComtradeLib::Sample>& samples, const std::vector<int>& exponents) const {
        return std::equal(records.begin(), records.end(), samples.begin(), samples.end(),
                          [&exponents](const Record& record, const OrvComtradeLib::Sample& sample) {
                              return sample.binaryValues == record.states &&
                                     hasValues(sample.analogValues, record.values, exponents);
                          });
    }

    std::vector<Record> records;
    orvtest::LittleEndianBytes bytes;

private:
    double addValue(DataType type) {
        if (type == DataType::Binary) {
            const auto value = *rc::gen::arbitrary<std::int16_t>();
            bytes.i16(value);
            return value;
        }
        if (type == DataType::Binary32) {
            const auto value = *rc::gen::weightedOneOf<std::int32_t>(
                {{9, rc::gen::inRange(-99998, 99998)}, {1, rc::gen::inRange(-INT32_MAX, INT32_MAX)}});
            bytes.i32(value);
            return value;
        }
        const float value = static_cast<float>(*rc::gen::inRange(-1000000, 1000000)) / 128.0F;
        bytes.f32(value);
        return static_cast<double>(value);
    }

    void addWord(const std::vector<bool>& states, std::size_t first) {
        unsigned int word = 0;
        for (std::size_t i = first; i < std::min(first + 16, states.size()); ++i) {
            word |= states[i] ? 1U << (i - first) : 0U;
        }
        bytes.u16(static_cast<std::uint16_t>(word));
    }

    static bool hasValues(const std::vector<double>& read, const std::vector<double>& meant,
                          const std::vector<int>& exponents) {
        if (read.size() != meant.size()) {
            return false;
        }
        for (std::size_t i = 0; i < read.size(); ++i) {
            const int exponent = exponents.empty() ? 0 : exponents.at(i);
            if (read[i] != meant[i] * std::pow(10.0, exponent)) {
                return false;
            }
        }
        return true;
    }
};

RC_GTEST_PROP(WriteForLibraryProperty, RecordsAreReadAsTheyAreMeantAndLeftAloneWhereTheLibraryReadsThem, ()) {
    const auto type = *rc::gen::element(DataType::Binary, DataType::Binary32, DataType::Float32);
    const auto analogs = *rc::gen::inRange<std::size_t>(0, 5);
    const auto statuses = *rc::gen::inRange<std::size_t>(analogs == 0 ? 1 : 0, 40);
    const MeantRecords meant(type, analogs, statuses);
    const Surveyed survey(meant.bytes.bytes(), cfgFor(analogs, statuses, type, 1000.0, meant.records.size()));
    RC_ASSERT(survey.facts.has_value());
    RC_ASSERT(survey.libraryReads() == (type != DataType::Binary32));
    const Loaded loaded(rewrittenCfg(survey), survey.libraryReads() ? *survey.bytes : libraryData(survey));
    RC_ASSERT(meant.isReadBy(loaded.samples(), survey.facts->exponents));
}

/// Something odd that some columns of a recording hold.
rc::Gen<std::string> oddColumn() {
    return rc::gen::element<std::string>(
        "", " ", "+5", "1.5", "-.25", "5.", "1e3", "9.9999", "99999", "99999.0", "-", "*", "x", "9223372036854775807",
        "9223372036854775808", "18446744073709551621", "123456789012345678901234", "999999999999999999",
        "0000000000000000000000000001", "1e59", "1e-70", "10", "4294967295", "4294967296", "-1", "-0.5", "-4294967297",
        "-9e18", "0.123456789012345", "1e-30", " 5 ", "5 6", "\x1A", "1\x1A", "--5", "5-", "00", "01", "0EOF", "5\r",
        "5\r5", "\r");
}

rc::Gen<std::string> anyColumn(const std::string& odd) {
    const auto number = rc::gen::map(rc::gen::inRange(-40000, 40000), [](int value) { return std::to_string(value); });
    return rc::gen::weightedOneOf<std::string>(
        {{8, number}, {4, rc::gen::element<std::string>("0", "1")}, {1, rc::gen::just(odd)}});
}

rc::Gen<std::string> anyLine(std::size_t fields, const std::string& odd) {
    const auto columns = rc::gen::container<std::vector<std::string>>(fields, anyColumn(odd));
    const auto separator =
        rc::gen::weightedElement<std::string>({{40, ","}, {1, " , "}, {1, " "}, {1, ", "}, {1, ",\r"}, {1, "\r,"}});
    const auto joined = rc::gen::apply(
        [](const std::vector<std::string>& all, const std::string& between) {
            std::string line;
            for (const std::string& column : all) {
                line += (line.empty() ? "" : between) + column;
            }
            return line;
        },
        columns, separator);
    return rc::gen::weightedOneOf<std::string>({
        {30, joined},
        {1,
         rc::gen::element<std::string>("", "  ", "\x1A", "a,b,c", "1", "1,2", ",,,,,,,,", "1,1,1,1,1,1,1,1,1,1,1,1")},
        {1, rc::gen::string<std::string>()},
    });
}

rc::Gen<std::string> anyText(std::size_t fields, const std::string& odd) {
    const auto end = rc::gen::weightedElement<std::string>(
        {{20, "\n"}, {10, "\r\n"}, {1, "\r"}, {1, "\n\n"}, {1, "\r\r\n"}, {1, " \n"}, {1, ",\n"}});
    const auto line = rc::gen::map(rc::gen::pair(anyLine(fields, odd), end),
                                   [](const auto& both) { return both.first + both.second; });
    return rc::gen::map(rc::gen::container<std::vector<std::string>>(line), [](const std::vector<std::string>& lines) {
        std::string text = lines.size() % 4 == 3 ? "\xEF\xBB\xBF" : "";
        for (const std::string& each : lines) {
            text += each;
        }
        return text;
    });
}

RC_GTEST_PROP(WriteForLibraryProperty, TextIsReadByTheLibraryWhateverItHolds, ()) {
    const auto analogs = *rc::gen::inRange<std::size_t>(0, 4);
    const auto statuses = *rc::gen::inRange<std::size_t>(analogs == 0 ? 1 : 0, 20);
    const auto declared = *rc::gen::inRange<std::uint64_t>(0, 12);
    ReadCfg cfg = ascii(analogs, statuses, declared, *rc::gen::element(0.0, 1000.0));
    cfg.header.revision = *rc::gen::element(1991, 1999, 2013);
    checkRoundTrip(*anyText(2 + analogs + statuses, *oddColumn()), cfg);
}

/// Stamps with a sign, with decimals, of any length, about the bounds of 32 and 64 bits, or none.
rc::Gen<std::string> anyStamp() {
    const auto decimal = rc::gen::apply(
        [](std::int64_t digits, int exponent) { return std::to_string(digits) + "e" + std::to_string(exponent); },
        rc::gen::arbitrary<std::int64_t>(), rc::gen::inRange(-25, 25));
    const auto near =
        rc::gen::apply([](std::int64_t bound, std::int64_t distance) { return std::to_string(bound + distance); },
                       rc::gen::element<std::int64_t>(0, 2147483648, -2147483648, 4294967296, -4294967296, 42949672950),
                       rc::gen::inRange<std::int64_t>(-3, 4));
    return rc::gen::oneOf(
        rc::gen::map(rc::gen::arbitrary<std::int64_t>(), [](std::int64_t stamp) { return std::to_string(stamp); }),
        rc::gen::element<std::string>("", "0.5", "-0.25", "+7", "5.", "-0", "1e18", "-9.1e18", "x"), decimal, near);
}

RC_GTEST_PROP(WriteForLibraryProperty, StampsAreReadByTheLibraryWhateverTheyAre, ()) {
    const auto stamps = *rc::gen::scale(
        0.2, rc::gen::container<std::vector<std::string>>(rc::gen::resize(rc::kNominalSize, anyStamp())));
    std::string text;
    for (std::size_t i = 0; i < stamps.size(); ++i) {
        text += std::to_string(i + 1) + "," + stamps[i] + ",5\n";
    }
    checkRoundTrip(text, ascii(1, 0, stamps.size(), *rc::gen::element(0.0, 0.0, 1000.0)));
}

RC_GTEST_PROP(WriteForLibraryProperty, BytesAreReadByTheLibraryWhateverTheyHold, ()) {
    const auto type = *rc::gen::element(DataType::Ascii, DataType::Binary, DataType::Binary32, DataType::Float32);
    const auto analogs = *rc::gen::inRange<std::size_t>(0, 4);
    const auto statuses = *rc::gen::inRange<std::size_t>(analogs == 0 ? 1 : 0, 20);
    const auto declared = *rc::gen::inRange<std::uint64_t>(0, 12);
    const double rate = *rc::gen::element(0.0, 1000.0);
    const auto byte = rc::gen::weightedOneOf<char>(
        {{1, rc::gen::arbitrary<char>()}, {1, rc::gen::element('\0', '\x80', '\xFF', '\x7F')}});
    const auto data = *rc::gen::scale(6.0, rc::gen::container<std::string>(byte));
    const ReadCfg cfg = cfgFor(analogs, statuses, type, rate, declared);
    checkRoundTrip(data, cfg);
    Options any;
    any.acceptsAnyNumbers = true;
    const Surveyed forced(data, cfg, any);
    RC_ASSERT(forced.facts || orvtest::hasError(forced.findings));
}

} // namespace
