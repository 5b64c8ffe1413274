#include "dataSurvey.h"
#include "intake/intakeSupport.h"
#include "support/LittleEndianBytes.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using orvtest::configurationOf;
using orvtest::Loaded;
using orvtest::sameRuns;
using orvtest::settled;
using orvtest::Surveyed;
using orvtest::TempDir;

/// Data, what was found, and what was written for it.
struct Written {
    Written(const std::string& data, const Configuration& asRead, std::uint64_t offset = 0, bool base64 = false)
        : source(orvtest::wholeFile(folder.write("in.dat", data))) {
        source.offset = offset;
        source.length -= offset;
        source.wholeFile = offset == 0;
        source.base64 = base64;
        first = orvtest::survey(source, asRead);
        configuration = settled(asRead, first.survey);
        writeData(source, asRead, first.survey, folder.file("out.dat"));
        bytes = orvtest::bytesOfFile(folder.file("out.dat"));
    }

    TempDir folder;
    DataSource source;
    Surveyed first;
    Configuration configuration; ///< of what was written
    std::string bytes;
};

std::string written(const std::string& data, const Configuration& configuration) {
    return Written(data, configuration).bytes;
}

Configuration ascii(std::size_t analogs, std::size_t statuses, std::uint64_t samples, double rate = 1000.0) {
    return configurationOf(analogs, statuses, DataEncoding::Ascii, rate, samples);
}

struct LineRow {
    const char* why;
    std::string data;
    std::string expected;
};

TEST(WriteAsciiData, WritesPlainLines) {
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
        {"CR before a comma", "1,0,5\r,-3,1,0\n2,1000,6,-4,0,1\n", "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"CR behind the number", "1\r,0,5,-3,1,0\n2,1000,6,-4,0,1\n", "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"CR in a value", "1,0,5\r5,-3,1,0\n2,1000,6,-4,0,1\n", "1,0,99999,-3,1,0\n2,1000,6,-4,0,1\n"},
        {"CR before every comma", "1\r,0\r,5\r,-3\r,1\r,0\n", "1,0,5,-3,1,0\n"},
        {"CR within and at the end", "1,0,5\r,-3,1,0\r2,1000,6\r,-4,0,1\r", "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n"},
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
        {"short line at the end after a mended one", "1,0,+5,-3,1,0\n2,1000,6\n", "1,0,5,-3,1,0\n"},
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
    };
    for (const LineRow& row : rows) {
        const Written result(row.data, ascii(2, 2, 0));
        EXPECT_FALSE(result.first.survey.asItStands) << row.why;
        EXPECT_TRUE(result.first.anyMended()) << row.why;
        EXPECT_EQ(result.bytes, row.expected) << row.why;
    }
}

TEST(WriteAsciiData, SaysThePowerOfTenOfEachChannel) {
    const Written result("1,0,12.5,7,0.125\n", ascii(3, 0, 1));
    EXPECT_EQ(result.first.survey.exponents, (std::vector<int>{2, 0, 4}));
    EXPECT_EQ(result.bytes, "1,0,1250,7,1250\n");
}

TEST(WriteAsciiData, RoundsDigitsThatADoubleDoesNotHold) {
    const Written result("1,0,123456.78901234567\n2,1000,0.00000000001\n", ascii(1, 0, 2));
    // 123456.78901234567 * 10^10 is below 2^53 = 9007199254740992, times 10^11 is not
    EXPECT_EQ(result.first.survey.exponents, std::vector<int>{10});
    EXPECT_EQ(result.bytes, "1,0,1234567890123457\n2,1000,0\n");
}

struct StampRow {
    const char* why;
    std::string data;
    double unit;
    std::string expected;
};

TEST(WriteAsciiData, MendsStampsWhereTimesComeFromThem) {
    const StampRow rows[] = {
        {"between neighbours", "1,100,5\n2,,6\n3,,7\n4,400,8\n", 1.0, "1,100,5\n2,200,6\n3,300,7\n4,400,8\n"},
        {"at the beginning", "1,,5\n2,100,6\n3,150,7\n", 1.0, "1,50,5\n2,100,6\n3,150,7\n"},
        {"at the beginning, never before 0", "1,,5\n2,,6\n3,100,7\n4,200,8\n", 1.0,
         "1,0,5\n2,50,6\n3,100,7\n4,200,8\n"},
        {"at the end", "1,0,5\n2,100,6\n3,,7\n4,,8\n", 1.0, "1,0,5\n2,100,6\n3,200,7\n4,300,8\n"},
        {"wrap", "1,4294967000,5\n2,704,6\n", 10.0, "1,429496700,5\n2,429496800,6\n"},
        {"more than 32 bits", "1,0,5\n2,50000000000,6\n", 100.0, "1,0,5\n2,500000000,6\n"},
    };
    for (const StampRow& row : rows) {
        const Written result(row.data, ascii(1, 0, 0, 0.0));
        EXPECT_FALSE(result.first.survey.asItStands) << row.why;
        EXPECT_EQ(result.first.survey.stampUnit, row.unit) << row.why;
        EXPECT_EQ(result.bytes, row.expected) << row.why;
    }
}

struct ScaleRow {
    const char* why;
    std::string data;
    double factor; ///< what the time multiplier is divided by
    double unit;   ///< what it is multiplied by
    std::string expected;
};

TEST(WriteAsciiData, WritesStampsAsCountsFromZeroOn) {
    const ScaleRow rows[] = {
        {"decimals", "1,0,5\n2,0.25,6\n3,0.5,7\n", 100.0, 1.0, "1,0,5\n2,25,6\n3,50,7\n"},
        {"decimals behind plain lines", "1,0,5\n2,1,6\n3,1.5,7\n4,2,8\n", 10.0, 1.0, "1,0,5\n2,10,6\n3,15,7\n4,20,8\n"},
        {"zeros behind the point", "1,0.000,5\n2,100.000,6\n", 1.0, 1.0, "1,0,5\n2,100,6\n"},
        {"exponents", "1,0e0,5\n2,1.5e3,6\n3,3E+3,7\n", 1.0, 1.0, "1,0,5\n2,1500,6\n3,3000,7\n"},
        {"exponents of fractions", "1,0,5\n2,15e-1,6\n", 10.0, 1.0, "1,0,5\n2,15,6\n"},
        {"the most digits", "1,0,5\n2,42949672.94,6\n", 100.0, 1.0, "1,0,5\n2,4294967294,6\n"},
        {"one more", "1,0,5\n2,42949672.95,6\n", 10.0, 1.0, "1,0,5\n2,429496730,6\n"},
        {"more digits than fit", "1,0.123456789012,5\n2,8000.5,6\n", 100000.0, 1.0, "1,12346,5\n2,800050000,6\n"},
        {"decimals of wide stamps", "1,0.5,5\n2,50000000000,6\n", 1.0, 100.0, "1,0,5\n2,500000000,6\n"},
        {"decimals that begin again", "1,4294967000.5,5\n2,704.5,6\n", 1.0, 10.0, "1,429496700,5\n2,429496800,6\n"},
        {"missing among decimals", "1,0.5,5\n2,,6\n3,2.5,7\n4,,8\n", 10.0, 1.0, "1,5,5\n2,15,6\n3,25,7\n4,35,8\n"},
        {"negative", "1,-200,5\n2,-100,6\n3,0,7\n4,100,8\n", 1.0, 1.0, "1,0,5\n2,100,6\n3,200,7\n4,300,8\n"},
        {"negative, the lowest not the first", "1,0,5\n2,-100,6\n3,50,7\n", 1.0, 1.0, "1,100,5\n2,0,6\n3,150,7\n"},
        {"negative decimals", "1,-0.25,5\n2,0.5,6\n", 100.0, 1.0, "1,0,5\n2,75,6\n"},
        {"missing before negative", "1,,5\n2,-100,6\n3,0,7\n", 1.0, 1.0, "1,0,5\n2,100,6\n3,200,7\n"},
        {"negative and far apart", "1,-4000000000,5\n2,4000000000,6\n", 1.0, 10.0, "1,0,5\n2,800000000,6\n"},
        {"counts with a sign that begin again", "1,2147483647,5\n2,-2147483648,6\n3,-2147483647,7\n", 1.0, 1.0,
         "1,2147483647,5\n2,2147483648,6\n3,2147483649,7\n"},
        {"more than 64 bits", "1,0,5\n2,18446744073709551716,6\n3,200,7\n", 1.0, 1.0, "1,0,5\n2,100,6\n3,200,7\n"},
    };
    for (const ScaleRow& row : rows) {
        const Written result(row.data, ascii(1, 0, 0, 0.0));
        EXPECT_FALSE(result.first.survey.asItStands) << row.why;
        EXPECT_TRUE(result.first.anyMended()) << row.why;
        EXPECT_EQ(result.first.survey.stampFactor, row.factor) << row.why;
        EXPECT_EQ(result.first.survey.stampUnit, row.unit) << row.why;
        EXPECT_EQ(result.bytes, row.expected) << row.why;
        const Surveyed again = orvtest::survey(orvtest::wholeFile(result.folder.file("out.dat")), result.configuration);
        EXPECT_TRUE(again.survey.asItStands) << row.why;
        EXPECT_FALSE(again.anyMended()) << row.why;
    }
}

TEST(WriteAsciiData, RoundsStampsWithDecimalsWhereTheRateIsKnown) {
    const Written result("1,0.25,5\n2,-1000.75,6\n3,2e3,7\n", ascii(1, 0, 3));
    EXPECT_EQ(result.first.survey.stampFactor, 1.0);
    EXPECT_EQ(result.bytes, "1,0,5\n2,-1001,6\n3,2000,7\n");
}

/// A record of one analog channel of 32 bits and no status channel.
std::string record32(std::uint32_t number, std::uint32_t stamp, std::uint32_t bits) {
    return orvtest::LittleEndianBytes().u32(number).u32(stamp).u32(bits).bytes();
}

/// A record of one analog channel of 16 bits and no status channel.
std::string record16(std::uint32_t number, std::uint32_t stamp, std::uint16_t bits) {
    return orvtest::LittleEndianBytes().u32(number).u32(stamp).u16(bits).bytes();
}

Configuration binary32(std::uint64_t samples, double rate = 1000.0) {
    return configurationOf(1, 0, DataEncoding::Binary32, rate, samples);
}

Configuration binary(std::uint64_t samples, double rate = 1000.0) {
    return configurationOf(1, 0, DataEncoding::Binary, rate, samples);
}

TEST(WriteBinaryData, WritesIntegersOf32BitsAsSinglesWhereTheyAreExact) {
    const Written result(record32(1, 0, 100) + record32(2, 1000, 0xFFFFFFFE) + record32(3, 2000, 0x01000000) +
                             record32(4, 3000, 0x80000000),
                         binary32(4));
    EXPECT_EQ(result.first.survey.encoding, DataEncoding::Float32);
    EXPECT_EQ(result.bytes, record32(1, 0, 0x42C80000) + record32(2, 1000, 0xC0000000) + record32(3, 2000, 0x4B800000) +
                                record32(4, 3000, 0x7FC00000));
}

TEST(WriteBinaryData, WritesIntegersOf32BitsAsTextWhereTheyAreNot) {
    // 2^24 + 1 has 25 significant bits, a single 24
    const Written result(record32(1, 0, 0x01000001) + record32(2, 1000, 0x80000000) + record32(3, 2000, 0x7FFFFFFF),
                         binary32(3));
    EXPECT_EQ(result.first.survey.encoding, DataEncoding::Ascii);
    EXPECT_EQ(result.bytes, "1,0,16777217\n2,1000,99999\n3,2000,2147483647\n");
}

TEST(WriteBinaryData, WritesIntegersThatWouldLookMissingTimesTen) {
    const Written result(record32(1, 0, 99999) + record32(2, 1000, 0x7FFFFFFF) + record32(3, 2000, 0x80000000),
                         binary32(3));
    EXPECT_EQ(result.first.survey.exponents, std::vector<int>{1});
    EXPECT_EQ(result.bytes, "1,0,999990\n2,1000,21474836470\n3,2000,99999\n");
}

TEST(WriteBinaryData, WritesStatesAsText) {
    const Configuration configuration = configurationOf(1, 17, DataEncoding::Binary32, 1000.0, 1);
    EXPECT_EQ(written(record32(1, 0, 0x01000001) + std::string("\x05\x80\xFF\xFF", 4), configuration),
              "1,0,16777217,1,0,1,0,0,0,0,0,0,0,0,0,0,0,0,1,1\n");
}

TEST(WriteBinaryData, LeavesOutRecordsWhoseNumbersDoNotGoOn) {
    EXPECT_EQ(written(record16(1, 0, 5) + record16(2, 1000, 6) + record16(9, 9000, 7), binary(2)),
              record16(1, 0, 5) + record16(2, 1000, 6));
}

TEST(WriteBinaryData, MendsStampsWhereTimesComeFromThem) {
    const Written wrapped(record16(1, 0xFFFFFF00, 5) + record16(2, 0, 6), binary(2, 0.0));
    EXPECT_EQ(wrapped.first.survey.stampUnit, 10.0);
    EXPECT_EQ(wrapped.bytes, record16(1, 429496704, 5) + record16(2, 429496730, 6));
    EXPECT_EQ(written(record16(1, 100, 5) + record16(2, 0xFFFFFFFF, 6) + record16(3, 300, 7), binary(3, 0.0)),
              record16(1, 100, 5) + record16(2, 200, 6) + record16(3, 300, 7));
}

TEST(WriteData, CopiesAPartOfAFile) {
    const Written text("heading\n1,0,5\n2,1000,6\n", ascii(1, 0, 2), 8);
    EXPECT_TRUE(text.first.survey.asItStands);
    EXPECT_EQ(text.bytes, "1,0,5\n2,1000,6\n");
    const Written records("heading\n" + record16(1, 0, 5), binary(1), 8);
    EXPECT_TRUE(records.first.survey.asItStands);
    EXPECT_EQ(records.bytes, record16(1, 0, 5));
}

TEST(WriteData, DecodesBase64) {
    // 01 00 00 00 00 00 00 00 05 00, then 02 00 00 00 E8 03 00 00 06 00
    const Written result("\"AQAAAAAAAAAFAA==\"\r\n\"AgAAAOgDAAAGAA==\"\r\n", binary(2), 0, true);
    EXPECT_FALSE(result.first.survey.asItStands);
    EXPECT_EQ(result.bytes, record16(1, 0, 5) + record16(2, 1000, 6));
}

TEST(WriteData, ThrowsWhereTheFileCannotBeWritten) {
    const TempDir folder;
    const DataSource source = orvtest::wholeFile(folder.write("a.dat", "1,0,+5\n"));
    const Surveyed surveyed = orvtest::survey(source, ascii(1, 0, 1));
    EXPECT_THROW(writeData(source, ascii(1, 0, 1), surveyed.survey, folder.file("no/where")), std::system_error);
    EXPECT_THROW(writeData(source, ascii(1, 0, 1), surveyed.survey, folder.file("a.dat")), std::system_error);
}

/// Whatever the bytes: the library reads all samples of the survey, and finds nothing wrong with what was written.
void checkRoundTrip(const std::string& data, const Configuration& asRead, bool base64 = false) {
    const Written result(data, asRead, 0, base64);
    const DataSurvey& survey = result.first.survey;
    if (result.first.anyError()) {
        return;
    }
    RC_ASSERT(survey.samples != 0);
    const std::string file = result.folder.file("out.dat");
    const Loaded loaded(result.configuration, file);
    RC_ASSERT(loaded.cfgResult == OrvComtradeLib::Enums::CfgLoaded);
    RC_ASSERT(loaded.result == OrvComtradeLib::Enums::Ok);
    RC_ASSERT(loaded.samples().size() == survey.samples);
    RC_ASSERT(survey.asItStands || result.first.anyMended() || base64);
    RC_ASSERT(!survey.asItStands || !result.first.anyMended());

    const Surveyed again = orvtest::survey(orvtest::wholeFile(file), result.configuration);
    RC_ASSERT(again.survey.samples == survey.samples);
    RC_ASSERT(again.survey.asItStands);
    RC_ASSERT(!again.anyMended());
    RC_ASSERT(sameRuns(again.survey.missing, survey.missing));
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

RC_GTEST_PROP(WriteDataProperty, TextThatTheLibraryReadsRightlyIsLeftAlone, ()) {
    const auto analogs = *rc::gen::inRange<std::size_t>(0, 5);
    const auto statuses = *rc::gen::inRange<std::size_t>(analogs == 0 ? 1 : 0, 40);
    const MeantText meant(analogs, statuses, false);
    const Written result(meant.text, ascii(analogs, statuses, meant.lines.size(), *rc::gen::element(0.0, 1000.0)));
    RC_ASSERT(result.first.survey.asItStands);
    RC_ASSERT(meant.isReadBy(Loaded(result.configuration, result.source.file).samples()));
}

RC_GTEST_PROP(WriteDataProperty, TextThatIsLeftAloneIsReadAsItIsMeant, ()) {
    const auto analogs = *rc::gen::inRange<std::size_t>(1, 5);
    const auto statuses = *rc::gen::inRange<std::size_t>(0, 5);
    const MeantText meant(analogs, statuses, true);
    const Written result(meant.text, ascii(analogs, statuses, meant.lines.size(), *rc::gen::element(0.0, 1000.0)));
    if (result.first.survey.asItStands) {
        RC_ASSERT(meant.isReadBy(Loaded(result.configuration, result.source.file).samples()));
    }
}

/// Records of which each value and state is known.
struct MeantRecords {
    struct Record {
        std::vector<double> values;
        std::vector<bool> states;
    };

    MeantRecords(DataEncoding encoding, std::size_t analogs, std::size_t statuses) {
        const auto count = *rc::gen::inRange<std::size_t>(1, 20);
        for (std::size_t i = 0; i < count; ++i) {
            const auto number = static_cast<std::uint32_t>(i);
            bytes.u32(number + 1).u32(number * 1000);
            Record record;
            for (std::size_t channel = 0; channel < analogs; ++channel) {
                record.values.push_back(addValue(encoding));
            }
            record.states = *rc::gen::container<std::vector<bool>>(statuses, rc::gen::arbitrary<bool>());
            for (std::size_t first = 0; first < statuses; first += 16) {
                addWord(record.states, first);
            }
            records.push_back(std::move(record));
        }
    }

    /// The library gives the values divided by these powers of ten.
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
    double addValue(DataEncoding encoding) {
        if (encoding == DataEncoding::Binary) {
            const auto value = *rc::gen::arbitrary<std::int16_t>();
            bytes.i16(value);
            return value;
        }
        if (encoding == DataEncoding::Binary32) {
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

RC_GTEST_PROP(WriteDataProperty, RecordsAreReadAsTheyAreMeantAndLeftAloneWhereTheLibraryReadsThem, ()) {
    const auto encoding = *rc::gen::element(DataEncoding::Binary, DataEncoding::Binary32, DataEncoding::Float32);
    const auto analogs = *rc::gen::inRange<std::size_t>(0, 5);
    const auto statuses = *rc::gen::inRange<std::size_t>(analogs == 0 ? 1 : 0, 40);
    const MeantRecords meant(encoding, analogs, statuses);
    const Written result(meant.bytes.bytes(),
                         configurationOf(analogs, statuses, encoding, 1000.0, meant.records.size()));
    RC_ASSERT(result.first.survey.asItStands == (encoding != DataEncoding::Binary32));
    const std::string file = result.first.survey.asItStands ? result.source.file : result.folder.file("out.dat");
    RC_ASSERT(meant.isReadBy(Loaded(result.configuration, file).samples(), result.first.survey.exponents));
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

RC_GTEST_PROP(WriteDataProperty, TextIsReadByTheLibraryWhateverItHolds, ()) {
    const auto analogs = *rc::gen::inRange<std::size_t>(0, 4);
    const auto statuses = *rc::gen::inRange<std::size_t>(analogs == 0 ? 1 : 0, 20);
    const auto declared = *rc::gen::inRange<std::uint64_t>(0, 12);
    const double rate = *rc::gen::element(0.0, 1000.0);
    checkRoundTrip(*anyText(2 + analogs + statuses, *oddColumn()), ascii(analogs, statuses, declared, rate));
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

RC_GTEST_PROP(WriteDataProperty, StampsAreReadByTheLibraryWhateverTheyAre, ()) {
    const auto stamps = *rc::gen::scale(
        0.2, rc::gen::container<std::vector<std::string>>(rc::gen::resize(rc::kNominalSize, anyStamp())));
    std::string text;
    for (std::size_t i = 0; i < stamps.size(); ++i) {
        text += std::to_string(i + 1) + "," + stamps[i] + ",5\n";
    }
    checkRoundTrip(text, ascii(1, 0, stamps.size(), *rc::gen::element(0.0, 0.0, 1000.0)));
}

RC_GTEST_PROP(WriteDataProperty, BytesAreReadByTheLibraryWhateverTheyHold, ()) {
    const auto encoding =
        *rc::gen::element(DataEncoding::Ascii, DataEncoding::Binary, DataEncoding::Binary32, DataEncoding::Float32);
    const auto analogs = *rc::gen::inRange<std::size_t>(0, 4);
    const auto statuses = *rc::gen::inRange<std::size_t>(analogs == 0 ? 1 : 0, 20);
    const auto declared = *rc::gen::inRange<std::uint64_t>(0, 12);
    const double rate = *rc::gen::element(0.0, 1000.0);
    const auto byte = rc::gen::weightedOneOf<char>(
        {{1, rc::gen::arbitrary<char>()}, {1, rc::gen::element('\0', '\x80', '\xFF', '\x7F')}});
    const auto data = *rc::gen::scale(6.0, rc::gen::container<std::string>(byte));
    checkRoundTrip(data, configurationOf(analogs, statuses, encoding, rate, declared), *rc::gen::arbitrary<bool>());
}

} // namespace
