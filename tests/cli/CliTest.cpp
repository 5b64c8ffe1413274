#include "cli/program.h"
#include "support/RecordingBuilder.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace orvtest;

// --- info -----------------------------------------------------------------------------------------------------------

TEST(CliInfo, AsciiRecordingPrintsSummaryAndBothTables) {
    expectOutput(orvcomtrade({"info", kFeeder}),
                 "Station         Ozernaya 35/10 kV\n"
                 "Recorder        Feeder 4 bay\n"
                 "Revision        1999\n"
                 "Data type       ASCII\n"
                 "Start           2019-03-14T06:41:17.322000000\n"
                 "Trigger         2019-03-14T06:41:17.398000000\n"
                 "Sampling rate   1000 Hz\n"
                 "Line frequency  50 Hz\n"
                 "Duration        0.699 s\n"
                 "Samples         700\n"
                 "\n"
                 "Analog channels: 8\n"
                 "  No  Name              Unit      a  b  Skew, us  Side             Ratio\n"
                 "   1  IA,A,Feeder 4,A   A     0.005  0         0  secondary        300/5\n"
                 "   2  IB,B,Feeder 4,A   A     0.005  0         0  secondary        300/5\n"
                 "   3  IC,C,Feeder 4,A   A     0.005  0         0  secondary        300/5\n"
                 "   4  3I0,N,Feeder 4,A  A     0.005  0         0  secondary        300/5\n"
                 "   5  UA,A,Busbar 1,V   V      0.01  0         0  secondary    10000/100\n"
                 "   6  UB,B,Busbar 1,V   V      0.01  0         0  secondary    10000/100\n"
                 "   7  UC,C,Busbar 1,V   V      0.01  0         0  secondary    10000/100\n"
                 "   8  3U0,N,Busbar 1,V  V      0.01  0         0  secondary  10000/57.74\n"
                 "\n"
                 "Status channels: 5\n"
                 "  No  Name                        Normal\n"
                 "   1  Earth fault start,Feeder 4       0\n"
                 "   2  Trip,Feeder 4                    0\n"
                 "   3  Breaker open,Feeder 4            0\n"
                 "   4  Breaker closed,Feeder 4          1\n"
                 "   5  Reclose,Feeder 4                 0\n");
}

TEST(CliInfo, BinaryRecordingPrintsCyrillicNamesAlignedAndBothRates) {
    expectOutput(
        orvcomtrade({"info", kLine}),
        "Station         \xD0\x9F\xD0\xA1 \xD0\x97\xD0\xB0\xD1\x80\xD0\xB5\xD1\x87\xD0\xBD\xD0\xB0\xD1\x8F 110 "
        "\xD0\xBA\xD0\x92\n"
        "Recorder        \xD0\xA0\xD0\xB5\xD0\xB3\xD0\xB8\xD1\x81\xD1\x82\xD1\x80\xD0\xB0\xD1\x82\xD0\xBE\xD1\x80 2\n"
        "Revision        1999\n"
        "Data type       BINARY\n"
        "Start           2021-11-02T19:05:44.610000000\n"
        "Trigger         2021-11-02T19:05:44.670000000\n"
        "Sampling rate   2000 Hz to sample 800, then 400 Hz to sample 1200\n"
        "Line frequency  50 Hz\n"
        "Duration        1.3975 s\n"
        "Samples         1200\n"
        "\n"
        "Analog channels: 7\n"
        "  No  Name                          Unit       a  b  Skew, us  Side          Ratio\n"
        "   1  \xD0\xA2\xD0\xBE\xD0\xBA A,A,\xD0\x92\xD0\x9B \xD0\x9B\xD0\xB5\xD1\x81\xD0\xBD\xD0\xB0\xD1\x8F,kA"
        "          kA    0.0005  0         0  primary       600/5\n"
        "   2  \xD0\xA2\xD0\xBE\xD0\xBA B,B,\xD0\x92\xD0\x9B \xD0\x9B\xD0\xB5\xD1\x81\xD0\xBD\xD0\xB0\xD1\x8F,kA"
        "          kA    0.0005  0        25  primary       600/5\n"
        "   3  \xD0\xA2\xD0\xBE\xD0\xBA C,C,\xD0\x92\xD0\x9B \xD0\x9B\xD0\xB5\xD1\x81\xD0\xBD\xD0\xB0\xD1\x8F,kA"
        "          kA    0.0005  0        50  primary       600/5\n"
        "   4  \xD0\xA2\xD0\xBE\xD0\xBA 3I0,N,\xD0\x92\xD0\x9B \xD0\x9B\xD0\xB5\xD1\x81\xD0\xBD\xD0\xB0\xD1\x8F,kA"
        "        kA    0.0005  0        75  primary       600/5\n"
        "   5  \xD0\x9D\xD0\xB0\xD0\xBF\xD1\x80\xD1\x8F\xD0\xB6\xD0\xB5\xD0\xBD\xD0\xB8\xD0\xB5 A,A,1\xD0\xA1\xD0\xA8 "
        "110 \xD0\xBA\xD0\x92,kV  kV      0.01  0       100  primary  110000/100\n"
        "   6  \xD0\x9D\xD0\xB0\xD0\xBF\xD1\x80\xD1\x8F\xD0\xB6\xD0\xB5\xD0\xBD\xD0\xB8\xD0\xB5 B,B,1\xD0\xA1\xD0\xA8 "
        "110 \xD0\xBA\xD0\x92,kV  kV      0.01  0       125  primary  110000/100\n"
        "   7  \xD0\x9D\xD0\xB0\xD0\xBF\xD1\x80\xD1\x8F\xD0\xB6\xD0\xB5\xD0\xBD\xD0\xB8\xD0\xB5 C,C,1\xD0\xA1\xD0\xA8 "
        "110 \xD0\xBA\xD0\x92,kV  kV      0.01  0       150  primary  110000/100\n"
        "\n"
        "Status channels: 5\n"
        "  No  Name                  Normal\n"
        "   1  \xD0\x9F\xD1\x83\xD1\x81\xD0\xBA \xD0\xB7\xD0\xB0\xD1\x89\xD0\xB8\xD1\x82,\xD0\x92\xD0\x9B "
        "\xD0\x9B\xD0\xB5\xD1\x81\xD0\xBD\xD0\xB0\xD1\x8F       0\n"
        "   2  \xD0\x9E\xD1\x82\xD0\xBA\xD0\xBB\xD1\x8E\xD1\x87\xD0\xB5\xD0\xBD\xD0\xB8\xD0\xB5,\xD0\x92\xD0\x9B "
        "\xD0\x9B\xD0\xB5\xD1\x81\xD0\xBD\xD0\xB0\xD1\x8F       0\n"
        "   3  \xD0\xA0\xD0\x9F\xD0\x9E,\xD0\x92\xD0\x9B \xD0\x9B\xD0\xB5\xD1\x81\xD0\xBD\xD0\xB0\xD1\x8F              "
        "0\n"
        "   4  \xD0\xA0\xD0\x9F\xD0\x92,\xD0\x92\xD0\x9B \xD0\x9B\xD0\xB5\xD1\x81\xD0\xBD\xD0\xB0\xD1\x8F              "
        "1\n"
        "   5  \xD0\x90\xD0\x9F\xD0\x92,\xD0\x92\xD0\x9B \xD0\x9B\xD0\xB5\xD1\x81\xD0\xBD\xD0\xB0\xD1\x8F              "
        "0\n");
}

TEST(CliInfo, Float32RecordingOfRevision2013) {
    expectOutput(orvcomtrade({"info", kInrush}),
                 "Station         S\xC3\xBC"
                 "derholm 110/20 kV\n"
                 "Recorder        T1 differential\n"
                 "Revision        2013\n"
                 "Data type       FLOAT32\n"
                 "Start           2024-06-21T11:30:02.150000000\n"
                 "Trigger         2024-06-21T11:30:02.250000000\n"
                 "Time code       2h\n"
                 "Time quality    4 (clock within 1 us)\n"
                 "Sampling rate   2000 Hz\n"
                 "Line frequency  50 Hz\n"
                 "Duration        0.6995 s\n"
                 "Samples         1400\n"
                 "\n"
                 "Analog channels: 8\n"
                 "  No  Name                  Unit  a  b  Skew, us  Side            Ratio\n"
                 "   1  I\xCE\x94 L1,L1,T1,A         A     1  0         0  secondary       200/1\n"
                 "   2  I\xCE\x94 L2,L2,T1,A         A     1  0         0  secondary       200/1\n"
                 "   3  I\xCE\x94 L3,L3,T1,A         A     1  0         0  secondary       200/1\n"
                 "   4  U L1,L1,T1,V          V     1  0         0  secondary  110000/100\n"
                 "   5  U L2,L2,T1,V          V     1  0         0  secondary  110000/100\n"
                 "   6  U L3,L3,T1,V          V     1  0         0  secondary  110000/100\n"
                 "   7  I\xCE\x94 L1 50 Hz,L1,T1,A   A     1  0         0  secondary       200/1\n"
                 "   8  I\xCE\x94 L1 100 Hz,L1,T1,A  A     1  0         0  secondary       200/1\n"
                 "\n"
                 "Status channels: 4\n"
                 "  No  Name                       Normal\n"
                 "   1  Circuit-breaker closed,T1       1\n"
                 "   2  \xCE\x94 start,T1                      0\n"
                 "   3  Block by 2nd harmonic,T1        0\n"
                 "   4  \xCE\x94 trip,T1                       0\n");
}

TEST(CliInfo, EveryFileNameOfTheRecordingLeadsToIt) {
    const std::string base = kRecordings + "/feeder_earth_fault";
    const std::string wanted = orvcomtrade({"info", base + ".cfg"}).out;
    ASSERT_NE(wanted, "");
    for (const char* const extension : {".dat", ".cff", ".CFF"}) {
        EXPECT_EQ(orvcomtrade({"info", base + extension}).out, wanted) << extension;
    }
}

TEST(CliInfo, ControlBytesOfTextsAreEscaped) {
    const TempDir folder;
    writeSmall(folder, "Sta\x1B[2Jtion,R\tec\x7F", "U\x07", "I", kFourLines);
    const Outcome outcome = orvcomtrade({"info", "--as-is", folder.file("rec.cfg")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out.find_first_of("\x1B\x07\x7F\t"), std::string::npos);
    EXPECT_NE(outcome.out.find("Station         Sta\\x1B[2Jtion\nRecorder        R\\x09ec\\x7F\n"), std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find("\n   1  U\\x07,V"), std::string::npos) << outcome.out;
}

TEST(CliInfo, BytesThatAreNoTextAndControlsBeyondAsciiAreEscaped) {
    const TempDir folder;
    // Well-formed UTF-8 of a letter, of the control U+009B, of the marks U+202E and U+061C and of the tag U+E0041, then
    // a byte that is no text.
    writeSmall(folder, "\xD0\x9F\xC2\x9B\xE2\x80\xAE\xD8\x9C\xF3\xA0\x81\x81\xB5,R", "U", "I", kFourLines);
    const std::string path = folder.file("rec.cfg");
    const Outcome outcome = orvcomtrade({"info", "--as-is", path});
    EXPECT_NE(
        outcome.out.find("Station         \xD0\x9F\\xC2\\x9B\\xE2\\x80\\xAE\\xD8\\x9C\\xF3\\xA0\\x81\\x81\\xB5\n"),
        std::string::npos)
        << outcome.out;
    const Outcome json = orvcomtrade({"info", "--as-is", "--json", path});
    EXPECT_NE(json.out.find("\"station\":\"\xD0\x9F\\u009B\\u202E\\u061C\\uDB40\\uDC41\xEF\xBF\xBD\""),
              std::string::npos)
        << json.out;
}

TEST(CliExport, TextsThatASpreadsheetTakesForFormulasAreProtected) {
    const TempDir folder;
    writeSmall(folder, "=1+1,\"x\"", "-3U0", "@I", kFourLines);
    const std::string path = folder.file("rec.cfg");
    const auto linesOf = [&path](const std::vector<std::string>& options) {
        std::vector<std::string> words = {"export", "--as-is", path};
        words.insert(words.end(), options.begin(), options.end());
        const std::string out = orvcomtrade(words).out;
        return out.substr(0, out.find("\n0.001,"));
    };
    EXPECT_EQ(linesOf({}), "time,\"'-3U0,V\",\"'@I,A\",S\n0,0,1,0");
    EXPECT_EQ(linesOf({"--raw"}), "time,\"-3U0,V\",\"@I,A\",S\n0,0,1,0");
    EXPECT_EQ(linesOf({"--comments"}),
              "# recording,rec.cfg\n# station,'=1+1\n# recorder,\"\"\"x\"\"\"\n# start,\n# trigger,\n# time code,\n"
              "# sampling rates,1000 Hz to sample 4\n# line frequency,50\n# skew,keep\n# ids: ,'-3U0,'@I,\n"
              "# phases: ,,,\n# components: ,,,\n# units: s,V,A,\n# sides: ,secondary,secondary,\n# ratios: ,1/1,1/1,\n"
              "# a: ,1,0.5,\n# b: ,0,0,\n# skews (us): ,0,0,\ntime,\"'-3U0,V\",\"'@I,A\",S\n0,0,1,0");
}

TEST(CliInfo, FewerLinesThanDeclaredAreReported) {
    const TempDir folder;
    writeSmall(folder, "S,R", "U", "I", "1,0,0,2,0\n2,1000,10,4,0\n");
    const Outcome outcome = orvcomtrade({"info", folder.file("rec.cfg")});
    EXPECT_NE(outcome.out.find("\nSamples         2 of 4 declared\n"), std::string::npos) << outcome.out;
}

TEST(CliInfo, RecordingWithoutFixedRateOrAnalogChannels) {
    const TempDir folder;
    folder.write("rec.cfg", "S,R,1999\n1,0A,1D\n1,Trip,,,0\n50\n0\n0,2\n"
                            "01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nASCII\n1\n");
    folder.write("rec.dat", "1,0,0\n2,2500,1\n");
    expectOutput(orvcomtrade({"info", folder.file("rec.cfg")}),
                 "Station         S\n"
                 "Recorder        R\n"
                 "Revision        1999\n"
                 "Data type       ASCII\n"
                 "Start           2020-01-01T00:00:00.000000000\n"
                 "Trigger         2020-01-01T00:00:00.000000000\n"
                 "Sampling rate   not fixed, the data file gives the times\n"
                 "Line frequency  50 Hz\n"
                 "Duration        0.0025 s\n"
                 "Samples         2\n"
                 "\n"
                 "Analog channels: 0\n"
                 "\n"
                 "Status channels: 1\n"
                 "  No  Name  Normal\n"
                 "   1  Trip       0\n");
}

TEST(CliInfo, RatesShowTheNumbersOfTheLastSamplesOfTheStandard) {
    const TempDir folder;
    folder.write("rec.cfg", "S,R,1999\n1,0A,1D\n1,Trip,,,0\n50\n3\n1000,2\n4000,5\n500,6\n"
                            "01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nASCII\n1\n");
    folder.write("rec.dat", "1,0,0\n2,0,0\n3,0,0\n4,0,0\n5,0,0\n6,0,1\n");
    const Outcome text = orvcomtrade({"info", folder.file("rec.cfg")});
    const std::string rates =
        "\nSampling rate   1000 Hz to sample 2, then 4000 Hz to sample 5, then 500 Hz to sample 6\n";
    EXPECT_NE(text.out.find(rates), std::string::npos) << text.out;
    const Outcome json = orvcomtrade({"info", "--json", folder.file("rec.cfg")});
    EXPECT_NE(json.out.find(R"("samplingRates":[{"rate":1000.0,"endSample":2},{"rate":4000.0,"endSample":5},)"
                            R"({"rate":500.0,"endSample":6}])"),
              std::string::npos)
        << json.out;
}

TEST(CliInfo, TimesThatAreNotGivenAreUnknown) {
    const TempDir folder;
    folder.write("rec.cfg",
                 "S,R,1999\n1,0A,1D\n1,Trip,,,0\n50\n1\n1000,1\nx/y/z,0\n01/01/1970,00:00:00.000000\nASCII\n1\n");
    folder.write("rec.dat", "1,0,0\n");
    const Outcome outcome = orvcomtrade({"info", folder.file("rec.cfg")});
    EXPECT_NE(outcome.out.find("\nStart           unknown\nTrigger         unknown\n"), std::string::npos)
        << outcome.out;
}

// --- completion -----------------------------------------------------------------------------------------------------

TEST(CliComplete, ChannelsOfTheRecordingAreNamedWithTheirMeanings) {
    const TempDir folder;
    folder.write("rec.cfg",
                 "S,R,1999\n3,2A,1D\n1,UA,A,,V,1,0,0,-9,9,1,1,S\n2,UB,B,,V,1,0,0,-9,9,1,1,S\n"
                 "1,Urgent trip,,,0\n50\n1\n1000,1\n14/03/2019,06:41:17.0\n14/03/2019,06:41:17.0\nASCII\n1\n");
    folder.write("rec.dat", "1,0,1,2,0\n");
    expectOutput(orvcomtradeIn(folder.path(), {"--complete", "points", "rec.cfg", "U"}),
                 "recordings\nUA\tUA,A,V\nUB\tUB,B,V\nUrgent trip\tUrgent trip\n");
}

// --- points ---------------------------------------------------------------------------------------------------------

TEST(CliPoints, AnalogValuesInEveryEncoding) {
    const struct {
        const char* why;
        std::vector<std::string> arguments;
        const char* rows;
    } cases[] = {
        {"ASCII, residual current as the fault begins; raw -3, 935, 2291",
         {kFeeder, "3I0", "--start", "0.076", "--end", "0.0785", "--rate", "1000"},
         "0.076,-0.015\n0.077,4.675\n0.078,11.455\n"},
        {"ASCII, between two samples: the mean of 81.62 and 77.64",
         {kFeeder, "5", "--end", "0.00075", "--rate", "2000"},
         "0,81.62\n0.0005,79.63\n"},
        {"ASCII, less than a point a second", {kFeeder, "5", "--rate", "0.5"}, "0,81.62\n"},
        {"BINARY, primary kA as primary A, 25 us of skew",
         {kLine, "2", "--start", "0.1", "--end", "0.10025", "--rate", "2000"},
         "0.1,-4359.925\n"},
        {"BINARY, in the second rate",
         {kLine, "2", "--start", "0.401", "--end", "0.4012", "--rate", "2000"},
         "0.401,0.11\n"},
        {"BINARY, before its skew a channel has no value", {kLine, "2", "--end", "0.0004", "--rate", "2000"}, ""},
        {"to the last sample, at the sampling rate",
         {kFeeder, "5", "--start", "0.698", "--rate", "1000"},
         "0.698,66.03\n0.699,77.67\n"},
        {"both ends belong to the range",
         {kFeeder, "4", "--start", "0.08", "--end", "0.083"},
         "0.08,27.71\n0.081,35.185\n0.082,40.9\n0.083,44.225\n"},
        {"samples at their own instants", {kLine, "2", "--start", "1.3949"}, "1.395025,-200\n1.397525,-296\n"},
        {"or at those of the samples", {kLine, "2", "--start", "1.395", "--skew", "keep"}, "1.395,-200\n1.3975,-296\n"},
        {"before the first sample there is nothing", {kFeeder, "5", "--start", "-1", "--end", "0"}, "0,81.62\n"},
        {"FLOAT32",
         {kInrush, "1", "--start", "0.11", "--end", "0.11125", "--rate", "2000"},
         "0.11,6.6083984\n0.1105,6.5078125\n0.111,6.286133\n"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        std::vector<std::string> arguments = {"points", "-q"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        expectOutput(orvcomtrade(arguments), std::string("time_s,value\n") + row.rows);
    }
}

TEST(CliPoints, GapOfAChannelLiesAtItsOwnInstants) {
    const TempDir folder;
    folder.write("rec.cfg", "S,R,1999\n1,1A,0D\n1,UA,A,,V,1,0,1000,-99998,99998,1,1,S\n50\n1\n1000,5\n"
                            "14/03/2019,06:41:17.0\n14/03/2019,06:41:17.0\nASCII\n1\n");
    folder.write("rec.dat", "1,0,10\n2,1000,99999\n3,2000,30\n4,3000,40\n5,4000,50\n");
    expectOutput(
        orvcomtradeIn(folder.path(), {"points", "-q", "rec.cfg", "1", "--rate", "2000"}),
        "time_s,value\n0.001,10\n0.0015,\n0.002,\n0.0025,\n0.003,30\n0.0035,35\n0.004,40\n0.0045,45\n0.005,50\n");
}

TEST(CliPoints, WithoutRateThereAreTheSamples) {
    const Outcome outcome = orvcomtrade({"points", kFeeder, "1"});
    EXPECT_EQ(outcome.status, 0);
    std::size_t lines = 0;
    for (const char character : outcome.out) {
        lines += character == '\n' ? 1 : 0;
    }
    EXPECT_EQ(lines, 701U);
    EXPECT_EQ(outcome.out.substr(0, 15), "time_s,value\n0,");
}

TEST(CliPoints, ChannelByNumberThenDisplayNameThenIdentifier) {
    const TempDir folder;
    writeSmall(folder, "S,R", "2", "I", kFourLines);
    const struct {
        const char* why;
        const char* channel;
        const char* rows;
    } cases[] = {
        {"number", "1", "0,0\n0.001,10\n"},
        {"a number goes before an identifier that reads the same", "2", "0,1\n0.001,2\n"},
        {"display name", "2,V", "0,0\n0.001,10\n"},
        {"as the library has it", "2,,,V", "0,0\n0.001,10\n"},
        {"in letters of another case", "i,a", "0,1\n0.001,2\n"},
        {"a pattern that one fits", "?,A", "0,1\n0.001,2\n"},
        {"identifier", "I", "0,1\n0.001,2\n"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        expectOutput(orvcomtrade({"points", "-q", folder.file("rec.cfg"), row.channel, "--end", "0.0015"}),
                     std::string("time_s,value\n") + row.rows);
    }
}

TEST(CliPoints, DisplayNameGoesBeforeAnIdentifierThatReadsTheSame) {
    const TempDir folder;
    // The status channels are called "A,B" (identifier A) and "A" (identifier A): only the second by display name.
    folder.write("rec.cfg", "S,R,1999\n2,0A,2D\n1,A,,B,0\n2,A,,,0\n50\n1\n1000,2\n"
                            "01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nASCII\n1\n");
    folder.write("rec.dat", "1,0,0,1\n2,1000,0,1\n");
    expectOutput(orvcomtrade({"points", "-q", folder.file("rec.cfg"), "A,", "--status"}),
                 "time_s,value\n0,1\n0.001,1\n");
    expectOutput(orvcomtrade({"points", "-q", folder.file("rec.cfg"), "A", "--status"}),
                 "time_s,value\n0,1\n0.001,1\n");
    folder.write("two.cfg", "S,R,1999\n2,0A,2D\n1,A,,B,0\n2,A,,C,0\n50\n1\n1000,2\n"
                            "01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nASCII\n1\n");
    folder.write("two.dat", "1,0,0,1\n2,1000,0,1\n");
    expectComplaint(orvcomtrade({"points", folder.file("two.cfg"), "A", "--status"}), 2,
                    "orvcomtrade: 2 status channels are called \"A\"; take one by its number\n"
                    "  Kind    No  Name\n"
                    "  status   1  A,B\n"
                    "  status   2  A,C\n");
}

TEST(CliPoints, UnknownChannelListsWhatThereIs) {
    const TempDir folder;
    writeSmall(folder, "S,R", "U", "I", kFourLines);
    for (const char* const channel : {"0", "3", "-1", "x", "U,,,", "99999999999999999999", "1 "}) {
        SCOPED_TRACE(channel);
        expectComplaint(orvcomtrade({"points", folder.file("rec.cfg"), "--", channel}), 2,
                        std::string("orvcomtrade: there is no channel \"") + channel +
                            "\"; the recording has\n"
                            "  Kind    No  Name\n"
                            "  analog   1  U,V\n"
                            "  analog   2  I,A\n"
                            "  status   1  S\n");
    }
}

TEST(CliPoints, UnknownChannelOfARecordingWithoutAny) {
    const TempDir folder;
    folder.write("rec.cfg", "S,R,1999\n1,1A,0D\n1,U,,,V,1,0,0,-9,9,1,1,S\n50\n1\n1000,1\n"
                            "01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nASCII\n1\n");
    folder.write("rec.dat", "1,0,5\n");
    expectComplaint(orvcomtrade({"points", folder.file("rec.cfg"), "1", "--status"}), 2,
                    "orvcomtrade: there is no status channel \"1\": the recording has none at all\n");
}

TEST(CliPoints, StatusStepsFollowTheChannelsOwnBit) {
    const struct {
        const char* why;
        std::vector<std::string> arguments;
        const char* rows;
    } cases[] = {
        {"first channel", {kFeeder, "1"}, "0,0\n0.088,1\n0.212,0\n0.699,0\n"},
        {"trip", {kFeeder, "Trip"}, "0,0\n0.138,1\n0.224,0\n0.699,0\n"},
        {"breaker closed, set at both ends", {kFeeder, "Breaker closed"}, "0,1\n0.19,0\n0.564,1\n0.699,1\n"},
        {"changes stand at their own times whatever the start",
         {kFeeder, "2", "--start", "0.1"},
         "0.1,0\n0.138,1\n0.224,0\n0.699,0\n"},
        {"a start between two samples",
         {kFeeder, "2", "--start", "0.1375", "--end", "0.2"},
         "0.1375,0\n0.138,1\n0.2,1\n"},
        {"a change at the start is the state at the start",
         {kFeeder, "2", "--start", "0.138", "--end", "0.2"},
         "0.138,1\n0.2,1\n"},
        {"a change at the end closes the list", {kFeeder, "2", "--end", "0.138"}, "0,0\n0.138,1\n"},
        {"a start before the recording", {kFeeder, "2", "--start", "-1", "--end", "0.1"}, "0,0\n0.1,0\n"},
        {"an end behind the recording", {kFeeder, "2", "--start", "0.5", "--end", "2"}, "0.5,0\n0.699,0\n"},
        {"a start at the last sample", {kFeeder, "2", "--start", "0.699"}, "0.699,0\n"},
        {"BINARY, the last of five bits, by its name in UTF-8",
         {kLine, "\xD0\x90\xD0\x9F\xD0\x92"},
         "0,0\n0.9775,1\n1.1,0\n1.3975,0\n"},
        {"FLOAT32", {kInrush, "3"}, "0,0\n0.106,1\n0.648,0\n0.6995,0\n"},
        {"FLOAT32, never set", {kInrush, "4"}, "0,0\n0.6995,0\n"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        std::vector<std::string> arguments = {"points", "-q", "--status"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        expectOutput(orvcomtrade(arguments), std::string("time_s,value\n") + row.rows);
    }
}

TEST(CliPoints, RangeWithoutSamplesGivesTheTitleAndANote) {
    const TempDir folder;
    writeSmall(folder, "S,R", "U", "I", "");
    const struct {
        std::vector<std::string> arguments;
        const char* name;
        const char* duration;
    } cases[] = {
        {{"points", kFeeder, "1", "--start", "7"}, "IA,A,Feeder 4,A", "0.699"},
        {{"points", kFeeder, "1", "--end", "-1"}, "IA,A,Feeder 4,A", "0.699"},
        {{"points", kFeeder, "1", "--start", "7", "--rate", "1000"}, "IA,A,Feeder 4,A", "0.699"},
        {{"points", kFeeder, "1", "--start", "7", "--status"}, "Earth fault start,Feeder 4", "0.699"},
        {{"points", "--as-is", folder.file("rec.cfg"), "1"}, "U,V", "0.003"},
        {{"points", "--as-is", folder.file("rec.cfg"), "S"}, "S", "0.003"},
    };
    for (const auto& row : cases) {
        expectOutcome(orvcomtrade(row.arguments), 0, "time_s,value\n",
                      std::string("orvcomtrade: ") + row.name +
                          ": no sample lies in this window; the recording lasts " + row.duration + " s\n");
    }
}

TEST(CliPoints, WhatWasPrintedIsReportedOnStandardError) {
    const struct {
        const char* why;
        std::vector<std::string> arguments;
        const char* report;
    } cases[] = {
        {"samples",
         {kFeeder, "3I0", "-s", "0.08", "-e", "0.083"},
         "3I0,N,Feeder 4,A: 4 samples: 0.08 to 0.083 s, none without a value, secondary, A\n"},
        {"a status channel by its name",
         {kFeeder, "Trip", "--time", "trigger"},
         "Trip,Feeder 4: 4 states: -0.076 to 0.623 s\n"},
        {"parts",
         {kFeeder, "IA", "--envelope", "2"},
         "IA,A,Feeder 4,A: 2 parts: 0 to 0.699 s, none without a value, secondary, A\n"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        std::vector<std::string> arguments = {"points"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        EXPECT_EQ(orvcomtrade(arguments).err, std::string("orvcomtrade: ") + row.report);
        arguments.emplace_back("--quiet");
        EXPECT_EQ(orvcomtrade(arguments).err, "");
    }
    const std::string err = orvcomtrade({"points", kFeeder, "IA", "--rate", "60"}).err;
    EXPECT_NE(err.find("--rate 60 is below twice the line frequency of 50 Hz"), std::string::npos) << err;
}

TEST(CliPoints, SeveralChannelsAndEnvelopesAreLinesWithTheNameOfTheChannel) {
    const std::string part = "channel,time_s,min,max\n\"UA,A,Busbar 1,V\",0,";
    const Outcome envelope = orvcomtrade({"points", "-q", kFeeder, "u?", "--envelope", "1"});
    EXPECT_EQ(envelope.out.find(part), 0U) << envelope.out;
    expectOutput(orvcomtrade({"points", "-q", kFeeder, "IA,Trip", "--end", "0.001"}),
                 "channel,time_s,value\n\"IA,A,Feeder 4,A\",0,2.615\n\"IA,A,Feeder 4,A\",0.001,2.815\n"
                 "\"Trip,Feeder 4\",0,0\n\"Trip,Feeder 4\",0.001,0\n");
    expectOutput(orvcomtrade({"points", "-q", kFeeder, "IA", "--envelope", "1", "--end", "0.004"}),
                 "time_s,min,max\n0,1.85,2.815\n");
}

TEST(CliPoints, TimesAreShownAsAskedFor) {
    const auto second = [](const std::vector<std::string>& options) {
        std::vector<std::string> words = {"points", "-q", kInrush, "1", "--end", "0.0001"};
        words.insert(words.end(), options.begin(), options.end());
        const std::string out = orvcomtrade(words).out;
        return out.substr(out.find('\n') + 1);
    };
    EXPECT_EQ(second({"--time", "utc"}), "2024-06-21T09:30:02.150000Z,-0.0009765625\n");
    EXPECT_EQ(second({"--time", "absolute"}), "2024-06-21T11:30:02.150000+02:00,-0.0009765625\n");
    EXPECT_EQ(second({"--time", "absolute", "--digits", "2", "--excel"}),
              "2024-06-21T11:30:02.150000+02:00;-0,00098\n");
    expectComplaint(
        orvcomtrade({"points", "-q", kFeeder, "1", "--time", "utc"}), 1,
        "orvcomtrade: " + kFeeder +
            ": no time code is recorded, so UTC is not known; --time absolute shows the recorder's clock\n");
}

TEST(CliPoints, SideThatCannotBeHadIsReported) {
    const TempDir folder;
    folder.write("rec.cfg", "S,R,1999\n1,1A,0D\n1,U,,,V,1,0,0,-9,9,0,0,S\n50\n1\n1000,1\n"
                            "01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nASCII\n1\n");
    folder.write("rec.dat", "1,0,5\n");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"points", "rec.cfg", "1", "--side", "primary"});
    EXPECT_EQ(outcome.out, "time_s,value\n0,5\n");
    EXPECT_EQ(outcome.err.find("orvcomtrade: rec.cfg: U,V cannot be converted to primary values"), 0U) << outcome.err;
}

TEST(CliPoints, ImpossibleRangesAreWrongUsage) {
    const struct {
        std::vector<std::string> options;
        const char* sentence;
    } cases[] = {
        {{"--start", "2", "--end", "1"}, "--end (1 s) lies before --start (2 s)"},
        {{"--start", "nan"}, "--start must be a finite number of seconds"},
        {{"--start", "inf"}, "--start must be a finite number of seconds"},
        {{"--end", "inf"}, "--end must be a finite number of seconds"},
        {{"--rate", "0"}, "--rate must be a finite number of points per second, above 0"},
        {{"--rate", "-5"}, "--rate must be a finite number of points per second, above 0"},
        {{"--rate", "nan"}, "--rate must be a finite number of points per second, above 0"},
        {{"--rate", "1e300"}, "this range at this --rate has 6.99e+299 points; at most 10000000 are printed"},
    };
    for (const auto& row : cases) {
        std::vector<std::string> arguments = {"points", kFeeder, "1"};
        arguments.insert(arguments.end(), row.options.begin(), row.options.end());
        const Outcome outcome = orvcomtrade(arguments);
        EXPECT_EQ(outcome.err, std::string("orvcomtrade: ") + row.sentence + "\n");
        EXPECT_EQ(outcome.status, 2);
    }
}

// --- What devices write ---------------------------------------------------------------------------------------------

/// The samples that `export` prints for one recording, without the lines above them.
std::string exported(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "export");
    const Outcome outcome = orvcomtrade(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out.substr(outcome.out.find('\n') + 1); // behind the line of names
}

/// One analog channel and one status channel, three samples.
RecordingBuilder three(const std::string& type) {
    return RecordingBuilder()
        .station("S,R,2013")
        .analog("1,U,,,V,2,0.5,0,-32767,32767,100,5,S")
        .status("1,Trip,,,0")
        .rate("1000,3")
        .startTime("01/02/2020,10:00:00.000000")
        .triggerTime("01/02/2020,10:00:00.000000")
        .type(type)
        .lineEnd("\r\n")
        .record(0, {5}, {true})
        .record(1000, {-6}, {false})
        .record(2000, {7}, {true})
        .extraLine("0,0")
        .extraLine("0,0");
}

std::string section(const std::string& title, const std::string& body) {
    return "--- file type: " + title + " ---\r\n" + body + (body.empty() || body.back() == '\n' ? "" : "\r\n");
}

TEST(CliReading, CombinedFileReadsAsSeparateFilesDo) {
    const std::string samples = "0,10.5,1\n0.001,-11.5,0\n0.002,14.5,1\n";
    for (const char* const type : {"ASCII", "BINARY", "BINARY32", "FLOAT32"}) {
        SCOPED_TRACE(type);
        const TempDir folder;
        const RecordingBuilder recording = three(type);
        EXPECT_EQ(exported({recording.write(folder.path(), "pair")}), samples);
        const std::string data = recording.datBytes();
        const std::string length = type == std::string("ASCII") ? "" : ": " + std::to_string(data.size());
        const std::string cfg = section("CFG", recording.cfgText());
        const std::string dat = section("DAT " + std::string(type) + length, data);
        const std::string rest = section("INF", "[Public]\r\n") + section("HDR", "--- a heading\r\n");
        EXPECT_EQ(exported({folder.write("a.cff", cfg + rest + dat)}), samples);
        EXPECT_EQ(exported({folder.write("b.cff", dat + rest + cfg)}), samples);
        EXPECT_EQ(exported({folder.write("c.CFF", "\xEF\xBB\xBF" + rest + cfg + dat)}), samples);
    }
}

TEST(CliReading, CombinedFileMayHoldItsDataAsBase64) {
    const TempDir folder;
    // Number, stamp, value and states of three records: 1 0 5 1, 2 1000 -6 0, 3 2000 7 1.
    EXPECT_EQ(exported({folder.write(
                  "a.cff", section("CFG", three("BINARY").cfgText()) +
                               section("DAT BINARY: 36", "AQAAAAAAAAAFAAEAAgAAAOgDAAD6/wAAAwAAANAHAAAHAAEA\r\n"))}),
              "0,10.5,1\n0.001,-11.5,0\n0.002,14.5,1\n");
}

TEST(CliReading, ConfigurationAloneHasItsChannels) {
    const TempDir folder;
    const Outcome outcome = orvcomtrade({"info", folder.write("a.cfg", three("BINARY").cfgText())});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("\nSamples         0 of 3 declared\n"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("\nAnalog channels: 1\n"), std::string::npos) << outcome.out;
    EXPECT_EQ(exported({folder.file("a.cfg")}), "");
}

TEST(CliReading, ValuesAndUnitsAreOfTheSideAskedFor) {
    const TempDir folder;
    // 100 to 5: a secondary volt is 20 primary ones; 2 * raw + 0.5 each on its own side.
    const RecordingBuilder recording = RecordingBuilder()
                                           .analog("1,U,,,V,2,0.5,0,-99999,99999,100,5,S")
                                           .analog("2,U,,,kV,2,0.5,0,-99999,99999,100,5,P")
                                           .rate("1000,2")
                                           .record(0, {10, 10}, {})
                                           .record(1000, {-1, 99999}, {});
    const std::string path = recording.write(folder.path(), "a");
    const std::string recorded = "0,20.5,20500\n0.001,-1.5,\n";
    EXPECT_EQ(exported({path}), recorded);
    EXPECT_EQ(exported({path, "--side", "recorded"}), recorded);
    EXPECT_EQ(exported({path, "--side", "primary"}), "0,410,20500\n0.001,-30,\n");
    EXPECT_EQ(exported({path, "--side", "secondary"}), "0,20.5,1025\n0.001,-1.5,\n");
}

TEST(CliReading, TextsWithACommaOrAQuotationMarkAreQuotedInCsv) {
    const TempDir folder;
    writeSmall(folder, "S,R", "U\"a", "I", kFourLines);
    std::string cfg = bytesOf(folder.file("rec.cfg"));
    cfg.replace(cfg.find(",V,"), 3, ",in\",");
    folder.write("rec.cfg", cfg);
    const std::string csv = orvcomtradeIn(folder.path(), {"export", "--comments", "rec.cfg"}).out;
    EXPECT_NE(csv.find("\n# units: s,\"in\"\"\",A,\n"), std::string::npos) << csv;
    EXPECT_NE(csv.find("\ntime,\"U\"\"a,in\"\"\",\"I,A\",S\n"), std::string::npos) << csv;
}

TEST(CliReading, ChangeBeyondTheRangeOfTheClockHasNoDate) {
    const TempDir folder;
    writeSmall(folder, "S,R", "U", "I", "1,0,0,2,0\n2,500000000,10,4,1\n3,1000000000,20,6,0\n");
    std::string cfg = bytesOf(folder.file("rec.cfg"));
    cfg.replace(cfg.find("\n1\n1000,4\n"), 10, "\n0\n0,3\n");
    cfg.replace(cfg.rfind("\n1\n"), 3, "\n10000000\n"); // 158 years and 317 behind the start
    folder.write("rec.cfg", cfg);
    expectOutput(orvcomtradeIn(folder.path(), {"events", "rec.cfg"}),
                 "      Time, s  Date and time               No  Channel  From  To\n"
                 "   5000000000  2178-06-11T08:53:20.000000   1  S           0   1\n"
                 "  10000000000                               1  S           1   0\n");
    const std::string json = orvcomtradeIn(folder.path(), {"events", "--json", "rec.cfg"}).out;
    EXPECT_NE(json.find("{\"time\":5000000000.0,\"clock\":\"2178-06-11T08:53:20.000000000\","), std::string::npos)
        << json;
    EXPECT_NE(json.find("{\"time\":10000000000.0,\"clock\":null,"), std::string::npos) << json;
}

TEST(CliReading, TextsAreOfTheEncodingFoundOrTheOneNamed) {
    const TempDir folder;
    // "Podstantsiya Zarechnaya", "Registrator" and "Napryazhenie" in Cyrillic letters, as CP1251 has them.
    RecordingBuilder recording = three("ASCII");
    recording
        .station("\xCF\xEE\xE4\xF1\xF2\xE0\xED\xF6\xE8\xFF \xC7\xE0\xF0\xE5\xF7\xED\xE0\xFF,"
                 "\xD0\xE5\xE3\xE8\xF1\xF2\xF0\xE0\xF2\xEE\xF0,2013")
        .analog("2,\xCD\xE0\xEF\xF0\xFF\xE6\xE5\xED\xE8\xE5,,,V,1,0,0,-9,9,1,1,S");
    const std::string path = folder.write("a.cfg", recording.cfgText());
    const struct {
        std::vector<std::string> options;
        const char* station;
    } cases[] = {
        {{}, "\xD0\x9F\xD0\xBE\xD0\xB4\xD1\x81\xD1\x82\xD0\xB0\xD0\xBD\xD1\x86\xD0\xB8\xD1\x8F"},
        {{"--encoding", "CP1251"}, "\xD0\x9F\xD0\xBE\xD0\xB4\xD1\x81\xD1\x82\xD0\xB0\xD0\xBD\xD1\x86\xD0\xB8\xD1\x8F"},
        {{"--encoding", "ISO-8859-1"},
         "\xC3\x8F\xC3\xAE\xC3\xA4\xC3\xB1\xC3\xB2\xC3\xA0\xC3\xAD\xC3\xB6\xC3\xA8\xC3\xBF"},
    };
    for (const auto& row : cases) {
        std::vector<std::string> arguments = {"info", path};
        arguments.insert(arguments.end(), row.options.begin(), row.options.end());
        const Outcome outcome = orvcomtrade(arguments);
        EXPECT_EQ(outcome.out.find(std::string("Station         ") + row.station), 0U) << outcome.out;
    }
}

TEST(CliReading, DatesOfEveryFormGiveTheStart) {
    const struct {
        const char* station;
        const char* channel;
        const char* date;
        const char* start;
    } cases[] = {
        {"S,R,1999", "1,T,,,0", "05/03/2020,10:00:00.123456", "2020-03-05T10:00:00.123456000"},
        {"S,R,1999", "1,T,,,0", "05/03/20,10:00:00.123", "2020-03-05T10:00:00.123000000"},
        {"S,R,2013", "1,T,,,0", "05/03/2020,10:00:00.123456789", "2020-03-05T10:00:00.123456789"},
        {"S,R", "1,T,0", "05/03/98,10:00:00.1234", "1998-05-03T10:00:00.123400000"},
        {"S,R", "1,T,0", "05/03/2020,10:00:00", "2020-05-03T10:00:00.000000000"},
    };
    for (const auto& row : cases) {
        const TempDir folder;
        RecordingBuilder recording;
        recording.station(row.station).status(row.channel).rate("1000,1").startTime(row.date).triggerTime(row.date);
        const Outcome outcome = orvcomtrade({"info", recording.record(0, {}, {true}).write(folder.path(), "a")});
        EXPECT_NE(outcome.out.find(std::string("\nStart           ") + row.start + "\n"), std::string::npos)
            << row.date << '\n'
            << outcome.out;
    }
}

TEST(CliReading, TimesFollowTheRatesAsTheyAreMeant) {
    const struct {
        const char* why;
        std::vector<std::string> rates;
        const char* multiplier;
        const char* times[4];
    } cases[] = {
        {"numbers of the last samples", {"1000,2", "500,4"}, "1", {"0", "0.001", "0.002", "0.004"}},
        {"lengths, which sum to the samples present", {"1000,2", "500,2"}, "1", {"0", "0.001", "0.002", "0.004"}},
        {"three lengths", {"1000,1", "500,1", "250,2"}, "1", {"0", "0.001", "0.003", "0.007"}},
        {"a multiplier, which is of the stamps", {"1000,4"}, "0.001", {"0", "0.001", "0.002", "0.003"}},
        {"rate 0: the stamps from the first one on, with a gap", {"0,4"}, "1", {"0", "0.00025", "4.99975", "5"}},
        {"rate 0, stamps of half a microsecond", {"0,4"}, "0.5", {"0", "0.000125", "2.499875", "2.5"}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        const TempDir folder;
        RecordingBuilder recording;
        recording.analog("1,U,,,V,1,0,0,-9,9,1,1,S").multiplier(row.multiplier);
        for (const std::string& rate : row.rates) {
            recording.rate(rate);
        }
        recording.record(250, {1}, {}).record(500, {2}, {}).record(5000000, {3}, {}).record(5000250, {4}, {});
        std::string samples;
        for (std::size_t i = 0; i < 4; ++i) {
            samples += std::string(row.times[i]) + "," + std::to_string(i + 1) + "\n";
        }
        EXPECT_EQ(exported({recording.write(folder.path(), "a")}), samples);
    }
}

TEST(CliReading, StampsThatBeginAgainAfter32BitsGoOn) {
    const TempDir folder;
    RecordingBuilder recording;
    recording.analog("1,U,,,V,1,0,0,-9,9,1,1,S").type("BINARY").rate("0,3");
    recording.record(4294967000, {1}, {}).record(704, {2}, {}).record(1704, {3}, {});
    EXPECT_EQ(exported({recording.write(folder.path(), "a")}), "0,1\n0.001,2\n0.002,3\n");
}

TEST(CliEvents, OfTheLibraryAloneAreAllChanges) {
    const TempDir folder;
    RecordingBuilder recording;
    recording.type("BINARY").status("1,T,,,0").rate("1000,6");
    for (std::uint32_t i = 0; i < 6; ++i) {
        recording.record(i * 1000, {}, {i % 3 == 1});
    }
    expectOutput(orvcomtrade({"events", "--as-is", recording.write(folder.path(), "a")}),
                 "  Time, s  Date and time  No  Channel  From  To\n"
                 "    0.001                  1  T           0   1\n"
                 "    0.002                  1  T           1   0\n"
                 "    0.004                  1  T           0   1\n"
                 "    0.005                  1  T           1   0\n");
}

TEST(CliInfo, RecordingWithoutDataHasNoDuration) {
    const TempDir folder;
    folder.write("a.cfg", three("ASCII").cfgText());
    EXPECT_NE(orvcomtradeIn(folder.path(), {"info", "a.cfg"}).out.find("Duration        0 s\n"), std::string::npos);
}

TEST(CliEvents, EveryChannelChangesByItsOwnBit) {
    const TempDir folder;
    RecordingBuilder recording;
    recording.type("BINARY").rate("1000,41");
    for (int i = 1; i <= 40; ++i) {
        recording.status(std::to_string(i) + ",T" + std::to_string(i) + ",,,0");
    }
    for (std::uint32_t i = 0; i <= 40; ++i) {
        std::vector<bool> states(40, false);
        for (std::size_t channel = 0; channel < i; ++channel) {
            states[channel] = true;
        }
        recording.record(i * 1000, {}, states);
    }
    const Outcome outcome = orvcomtrade({"events", recording.write(folder.path(), "a")});
    std::istringstream rows(outcome.out.substr(outcome.out.find('\n') + 1));
    for (int i = 1; i <= 40; ++i) {
        double time = 0.0;
        std::string clock;
        int number = 0;
        std::string name;
        int from = -1;
        int to = -1;
        rows >> time >> clock >> number >> name >> from >> to;
        EXPECT_DOUBLE_EQ(time, i / 1000.0);
        EXPECT_EQ(number, i);
        EXPECT_EQ(name, "T" + std::to_string(i));
        EXPECT_EQ(from, 0);
        EXPECT_EQ(to, 1);
    }
    std::string more;
    EXPECT_FALSE(rows >> more) << more;
}

TEST(CliCheck, EveryFindingShowsWhereWhatAndWhatToDo) {
    const char* const station = "S,R,1999\n";
    const char* const channels = "2,1A,1D\n1,U,,,V,1,0,0,-9,9,1,1,S\n1,T,,,0\n";
    const char* const dates = "01/02/2020,10:00:00.000000\n01/02/2020,10:00:00.000000\n";
    const struct {
        const char* why;
        std::string cfg;
        std::string dat;
    } cases[] = {
        {"nothing", "", "1,0,7,0\n"},
        {"no counts", std::string(station) + "no counts\n", "1,0,7,0\n"},
        {"no line of counts", station, "1,0,7,0\n"},
        {"no channels", std::string(station) + "0,0A,0D\n50\n1\n1000,1\n" + dates + "ASCII\n1\n", "1,0\n"},
        {"no data", std::string(station) + channels + "50\n1\n1000,1\n" + dates + "ASCII\n1\n", ""},
        {"no stamps", std::string(station) + channels + "50\n0\n0,2\n" + dates + "ASCII\n1\n", "1,,7,0\n2,,7,0\n"},
        {"odd stamps", std::string(station) + channels + "50\n0\n0,4\n" + dates + "ASCII\n1\n",
         "1,0,7,0\n2,100,7,0\n3,90,7,0\n4,100000,99999,0\n"},
        {"more than there should be",
         "S,R,2001,x\n2,1A,1D\nx,U,,,V,1,0,0,-9,9,1,1,X,y\nx,T,,,0,y\n50\n1\n1000,3,x\n"
         "01/02/2020,10:00:00.000000,x\n09/44/2020,10:00:00.000000\nASCII\n1\nx\nx\nx\n\n\x1A",
         "1,0,7,0\n\n2,1000,7,0\nx\n"},
        {"no ratio",
         "S,R,1999\n1,1A,0D\n1,U,,,V,1,0,0,-9,9,0,0,P\n50\n1\n1000,1\n" + std::string(dates) + "BINARY\n1\n",
         std::string("\1\0\0\0\0\0\0\0\5\0\x1A\x1A\x1A", 13)},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        const TempDir folder;
        folder.write("a.dat", row.dat);
        const Outcome outcome = orvcomtrade({"check", "--side", "primary", folder.write("a.cfg", row.cfg)});
        std::istringstream lines(outcome.out);
        std::size_t findings = 0;
        for (std::string line; std::getline(lines, line);) {
            if (line.back() != ']') {
                continue; // the verdict
            }
            ++findings;
            EXPECT_EQ(line.find(folder.path() + "/a."), 0U) << line;
            const std::size_t expected = line.find(" expected");
            ASSERT_NE(expected, std::string::npos) << line;
            EXPECT_NE(line.find(": ", expected), std::string::npos) << line;
        }
        EXPECT_GT(findings, 0U) << outcome.out;
    }
}

TEST(CliCheck, VerdictAndStatusFollowTheFindings) {
    const std::string cfg = three("ASCII").cfgText();
    const std::string late = three("ASCII").triggerTime("01/02/2020,11:00:00.000000").cfgText();
    const struct {
        const char* why;
        std::string cfg;
        const char* dat;
        const char* verdict;
        const char* name;
        int status;
    } cases[] = {
        {"as the standard asks for", cfg, "1,0,5,1\r\n2,1000,-6,0\r\n3,2000,7,1\r\n", "OK", "ok", 0},
        {"a note", cfg, "1,0,5,1\r\n2,1000,99999,0\r\n3,2000,7,1\r\n", "OK", "ok", 0},
        {"no data file, which nothing repairs", cfg, nullptr, "readable, with 1 warning", "readable", 0},
        {"a repair", cfg, "1,0,5,1\r\n2,1000,-6,7\r\n3,2000,7,1\r\n", "readable after 1 repair", "repaired", 0},
        {"a warning", late, "1,0,5,1\r\n2,1000,-6,0\r\n3,2000,7,1\r\n", "readable, with 1 warning", "readable", 0},
        {"an error", cfg, "1,0,5,1\r\n2,1000,-6,0\r\n", "readable, with 1 error", "readable", 1},
        {"a repair and an error", cfg, "1,0,5,1\r\n2,1000,-6,7\r\n", "readable after 1 repair, with 1 error",
         "repaired", 1},
        {"no data", cfg, "nonsense", "cannot be read", "unreadable", 1},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        const TempDir folder;
        if (row.dat != nullptr) {
            folder.write("a.dat", row.dat);
        }
        const std::string path = folder.write("a.cfg", row.cfg);
        const Outcome text = orvcomtrade({"check", path});
        const std::string last = path + ": " + row.verdict + "\n";
        EXPECT_EQ(text.out.rfind(last) + last.size(), text.out.size()) << text.out;
        EXPECT_EQ(text.status, row.status);
        const Outcome json = orvcomtrade({"check", "--json", path});
        EXPECT_NE(json.out.find(std::string(R"("verdict":")") + row.name + '"'), std::string::npos) << json.out;
        EXPECT_EQ(json.status, row.status);
    }
}

// --- normalize ------------------------------------------------------------------------------------------------------

TEST(CliNormalize, HeaderAndInformationFilesAreWrittenBeside) {
    const TempDir folder;
    three("BINARY").write(folder.path(), "a");
    folder.write("a.HDR", "A header\r\n");
    folder.write("a.inf", "[Public]\r\n");
    expectOutput(orvcomtradeIn(folder.path(), {"normalize", "a.cfg", "--output", "out"}),
                 "a.cfg: written to out/a.cfg\n");
    EXPECT_EQ(bytesOf(folder.file("out/a.hdr")), "A header\r\n");
    EXPECT_EQ(bytesOf(folder.file("out/a.inf")), "[Public]\r\n");
}

TEST(CliNormalize, HeaderFileThatCannotBeReadIsReported) {
    const TempDir folder;
    three("BINARY").write(folder.path(), "a");
    folder.write("a.hdr", "A header\r\n");
    std::filesystem::permissions(folder.file("a.hdr"), std::filesystem::perms::none);
    expectOutcome(orvcomtradeBoundIn(folder.path(), {"normalize", "a.cfg", "--output", "out"}), 1,
                  "a.cfg: written to out/a.cfg\n",
                  "orvcomtrade: a.hdr: not written: a readable file expected, found Permission denied: check "
                  "the permissions\n");
    EXPECT_FALSE(std::filesystem::exists(folder.file("out/a.hdr")));
}

TEST(CliNormalize, TextsAreCopiedWholeOrReportedAsLeftOut) {
    const TempDir folder;
    three("BINARY").write(folder.path(), "a");
    const std::string text(2UL * 1024 * 1024, 'h');
    folder.write("a.hdr", text);
    ASSERT_EQ(orvcomtradeIn(folder.path(), {"cut", "a.cfg", "-o", "b.cff"}).status, 0);
    const auto normalized = [&folder](const char* name, const char* limit) {
        return orvcomtradeIn(folder.path(), {"normalize", name, "--force", "-o", "out/", "--limit", limit});
    };
    const std::string begin = ":text-bytes: not written: at most 9 bytes expected, found ";
    const std::string end = " bytes: raise the limit of this name if the file is a recording\n";
    expectOutcome(normalized("a.cfg", "text-bytes=9"), 1, "a.cfg: written to out/a.cfg\n",
                  "orvcomtrade: a.hdr" + begin + "2097152" + end);
    EXPECT_FALSE(std::filesystem::exists(folder.file("out/a.hdr")));
    expectOutcome(normalized("b.cff", "text-bytes=9"), 1, "b.cff: written to out/b.cfg\n",
                  "orvcomtrade: b.cff:byte 233" + begin + "2097154" + end);
    EXPECT_EQ(normalized("b.cff", "text-bytes=3000000").status, 0);
    EXPECT_EQ(bytesOf(folder.file("out/b.hdr")), text + "\r\n");
}

TEST(CliNormalize, HeaderFileOfTheRecordingIsNeverReplaced) {
    const TempDir folder;
    folder.write("a.CFG", three("BINARY").cfgText());
    folder.write("a.DAT", three("BINARY").datBytes());
    folder.write("a.hdr", "A header\n");
    expectComplaint(orvcomtradeIn(folder.path(), {"normalize", "a.CFG", "--output", ".", "--force"}), 1,
                    "orvcomtrade: ./a.hdr: not replaced: it is a file of the recording itself\n");
    EXPECT_EQ(bytesOf(folder.file("a.hdr")), "A header\n");
}

TEST(CliNormalize, ConfigurationAloneStaysAloneButForTheLibrary) {
    const TempDir folder;
    folder.write("a.cfg", three("ASCII").cfgText());
    ASSERT_EQ(orvcomtradeIn(folder.path(), {"normalize", "a.cfg", "--output", "standard"}).status, 0);
    EXPECT_EQ(bytesOf(folder.file("standard/a.cfg")), three("ASCII").cfgText());
    EXPECT_THROW(bytesOf(folder.file("standard/a.dat")), std::runtime_error);
    ASSERT_EQ(orvcomtradeIn(folder.path(), {"normalize", "a.cfg", "--for", "library", "--output", "library"}).status,
              0);
    EXPECT_EQ(bytesOf(folder.file("library/a.dat")), "");
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"check", "--as-is", "library/a.cfg"}).out, "library/a.cfg: Ok (0)\n");
}

// --- --force --------------------------------------------------------------------------------------------------------

/// Data that no recorder wrote.
std::string noise(std::size_t length) {
    std::string bytes;
    std::uint32_t state = 1;
    while (bytes.size() < length) {
        state = state * 1664525U + 1013904223U;
        bytes += static_cast<char>(state >> 24U);
    }
    return bytes;
}

TEST(CliForce, DataWhoseNumbersMakeNoSenseAreReadByForceAloneWithANote) {
    const TempDir folder;
    RecordingBuilder recording = three("BINARY");
    folder.write("a.cfg", recording.cfgText());
    folder.write("a.dat", noise(36));
    for (const std::vector<std::string>& command : {std::vector<std::string>{"info"},
                                                    {"events"},
                                                    {"points", "--channel", "1"},
                                                    {"export"},
                                                    {"normalize", "--output", "out"}}) {
        SCOPED_TRACE(command.front());
        std::vector<std::string> arguments = command;
        arguments.emplace_back("a.cfg");
        const Outcome refused = orvcomtradeIn(folder.path(), arguments);
        EXPECT_EQ(refused.out, "");
        EXPECT_EQ(refused.err.find("orvcomtrade: a.dat: consecutive sample numbers expected, found "), 0U)
            << refused.err;
        EXPECT_EQ(refused.status, 1);
        arguments.emplace_back("--force");
        const Outcome forced = orvcomtradeIn(folder.path(), arguments);
        EXPECT_NE(forced.out, "");
        const std::string note = refused.err.substr(0, refused.err.size() - 1) + " (read because of --force)\n";
        EXPECT_EQ(forced.err.substr(0, note.size()), note);
        EXPECT_EQ(forced.status, 0);
    }
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"check", "a.cfg"}).status, 1);
}

TEST(CliForce, GoodRecordingIsReadWithoutANote) {
    const TempDir folder;
    three("BINARY").write(folder.path(), "a");
    expectOutput(orvcomtradeIn(folder.path(), {"check", "--force", "a.cfg"}), "a.cfg: OK\n");
}

// --- Problems of the recording --------------------------------------------------------------------------------------

TEST(CliProblem, EveryResultCodeBecomesASentenceThatNamesTheFile) {
    const TempDir folder;
    writeSmall(folder, "S,R", "U", "I", "1,0,nonsense,2,0\n");
    folder.write("empty.cfg", "");
    folder.write("alone.cfg", bytesOf(folder.file("rec.cfg")));
    const std::string& at = folder.path();
    const struct {
        std::string path;
        std::string sentence;
    } cases[] = {
        {at + "/rec.txt", at + "/rec.txt: No such file or directory"},
        {at + "/none.dat", at + "/none.cfg: configuration file not found (CfgFileNotFound, 2)"},
        {at + "/empty.cff", at + "/empty.cfg: configuration file cannot be read (CfgLoadError, 3)"},
        {at + "/alone.cfg", at + "/alone.dat: data file not found (DatFileNotFound, 5)"},
        {at + "/rec.cfg",
         at + "/rec.dat: data file cannot be read, or does not match its configuration (DatLoadError, 6)"},
    };
    for (const auto& row : cases) {
        expectComplaint(orvcomtrade({"info", "--as-is", row.path}), 1, "orvcomtrade: " + row.sentence + "\n");
        expectComplaint(orvcomtrade({"points", "--as-is", row.path, "1"}), 1, "orvcomtrade: " + row.sentence + "\n");
    }
}

TEST(CliProblem, RecordingThatCannotBeReadIsReportedByItsFirstError) {
    const TempDir folder;
    writeSmall(folder, "S,R", "U", "I", "");
    folder.write("empty.cfg", "");
    const std::string& at = folder.path();
    const struct {
        std::string path;
        std::string sentence;
    } cases[] = {
        {at + "/none.dat", at + "/none.dat: No such file or directory"},
        {at + "/empty.cfg", at + "/empty.cfg: a configuration expected, found an empty file: request the file again"},
        {at + "/rec.cfg", at + "/rec.dat: number, timestamp, 2 values, 1 states expected, found no line with 5 columns "
                               "of numbers; the data are empty: request the data again"},
    };
    for (const auto& row : cases) {
        expectComplaint(orvcomtrade({"info", row.path}), 1, "orvcomtrade: " + row.sentence + "\n");
        expectComplaint(orvcomtrade({"points", row.path, "1"}), 1, "orvcomtrade: " + row.sentence + "\n");
    }
}

TEST(CliReading, ConfigurationInUtf16IsRead) {
    const TempDir folder;
    std::string cfg = "\xFF\xFE";
    for (const char letter : three("ASCII").cfgText()) {
        cfg += letter;
        cfg += '\0';
    }
    folder.write("rec.dat", three("ASCII").datBytes());
    for (const std::string& bytes : {cfg, cfg.substr(2)}) {
        EXPECT_EQ(exported({folder.write("rec.cfg", bytes)}), "0,10.5,1\n0.001,-11.5,0\n0.002,14.5,1\n");
    }
}

TEST(CliProblem, CombinedFileThatNamesTwoDataTypesIsReported) {
    const TempDir folder;
    const std::string cfg =
        "--- file type: CFG ---\nS,R,2013\n1,0A,1D\n1,T,,,0\n50\n1\n1000,1\n01/01/2020,00:00:00.000000\n"
        "01/01/2020,00:00:00.000000\nBINARY\n1\n0,0\n0,0\n";
    const Outcome outcome =
        orvcomtrade({"check", folder.write("rec.cff", cfg + "--- file type: DAT ASCII ---\n1,0,1\n2,5,0\n")});
    EXPECT_NE(outcome.out.find("warning: BINARY data as declared expected, found lines of text: read as ASCII"),
              std::string::npos)
        << outcome.out;
}

TEST(CliProblem, PathWithoutADot) {
    expectComplaint(orvcomtrade({"info", "recording"}), 1, "orvcomtrade: recording: No such file or directory\n");
}

TEST(CliProblem, ControlBytesOfAPathAreEscaped) {
    expectComplaint(orvcomtrade({"info", "a\nb\x1B.cfg"}), 1,
                    "orvcomtrade: a\\x0Ab\\x1B.cfg: No such file or directory\n");
}

TEST(CliProblem, PipeWithoutReaderEndsQuietly) {
    const TempDir folder;
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    const std::string err = folder.file("stderr");
    EXPECT_EQ(runWith(folder.path(), {ORVCOMTRADE_PROGRAM, "points", kFeeder, "1"}, ends[1], openForOutput(err)), 0);
    EXPECT_EQ(bytesOf(err), "");
}

TEST(CliProblem, FullDeviceIsReported) {
    const TempDir folder;
    const std::string err = folder.file("stderr");
    const int full = open("/dev/full", O_WRONLY);
    ASSERT_GE(full, 0);
    EXPECT_EQ(runWith(folder.path(), {ORVCOMTRADE_PROGRAM, "info", kFeeder}, full, openForOutput(err)), 1);
    EXPECT_EQ(bytesOf(err), "orvcomtrade: cannot write the output: No space left on device\n");
}

// --- Arguments ------------------------------------------------------------------------------------------------------

TEST(CliArguments, WrongUsageIsStatus2) {
    const struct {
        std::vector<std::string> arguments;
        const char* sentence;
    } cases[] = {
        {{"info", "a.cfg", "--side", "primry"},
         "--side: primry is not one of primary, recorded, secondary; did you mean primary?"},
        {{"info", "a.cfg", "--sied=primary"}, "unknown option '--sied'; did you mean '--side'?"},
        {{"info"}, "PATH is required"},
        {{"points", "a.cfg"}, "CHANNEL is required"},
        {{"info", "a.cfg", "--extra\x1B"}, "unknown option '--extra\\x1B'"},
        {{"points", "a.cfg", "1", "--start", "soon"}, "--start: not a number: soon"},
        {{"points", "a.cfg", "1", "--envelope", "2", "--rate", "5"}, "--rate and --envelope cannot be given together"},
    };
    for (const auto& row : cases) {
        expectComplaint(orvcomtrade(row.arguments), 2,
                        std::string("orvcomtrade: ") + row.sentence + "\nTry orvcomtrade " + row.arguments.front() +
                            " --help.\n");
    }
    const struct {
        std::vector<std::string> arguments;
        const char* sentence;
    } unknown[] = {
        {{"inof", "a.cfg"}, "unknown command 'inof'; did you mean 'info'?"},
        {{"bogus"}, "unknown command 'bogus'"},
        {{"--jsn"}, "unknown option '--jsn' (options of a command come after its name)"},
        {{"-v", "info", "a.cfg"}, "unknown option '-v' (options of a command come after its name)"},
    };
    for (const auto& row : unknown) {
        expectComplaint(orvcomtrade(row.arguments), 2,
                        std::string("orvcomtrade: ") + row.sentence + "\nTry orvcomtrade --help.\n");
    }
}

TEST(CliArguments, WordsBehindTwoDashesAreNoOptions) {
    expectComplaint(orvcomtrade({"info", "--", "--json"}), 1, "orvcomtrade: --json: No such file or directory\n");
}

TEST(CliArguments, VersionIsTheProjectsWhereverItIsAskedFor) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"--version"}, {"-V"}, {"info", "-V"}, {"points", kFeeder, "--version", "3I0"}}) {
        expectOutput(orvcomtrade(words), "orvcomtrade " ORVCOMTRADE_VERSION "\n");
    }
}

TEST(CliArguments, WithoutAnyThereIsHelpOnStandardError) {
    expectComplaint(orvcomtrade({}), 2, orvcomtrade({"--help"}).out);
}

TEST(CliArguments, HelpOfACommandIsAskedForInThreeWays) {
    const std::string wanted = orvcomtrade({"info", "--help"}).out;
    EXPECT_EQ(wanted.find("Print what each recording is and which channels it has.\nUsage: orvcomtrade info "), 0U);
    expectOutput(orvcomtrade({"help", "info"}), wanted);
    expectOutput(orvcomtrade({"info", kFeeder, "-h"}), wanted);
    expectOutput(orvcomtrade({"help"}), orvcomtrade({"-h"}).out);
    expectComplaint(orvcomtrade({"help", "chekc"}), 2,
                    "orvcomtrade: unknown command 'chekc'; did you mean 'check'?\nTry orvcomtrade --help.\n");
}

TEST(CliArguments, HelpTellsTheCommandsAndTheirOptions) {
    const Outcome general = orvcomtrade({"--help"});
    EXPECT_EQ(general.status, 0);
    EXPECT_EQ(general.err, "");
    for (const char* const part :
         {"info  ", "points  ", "--version", "Exit status: 0 all good, 1 a recording cannot be read", "check  ",
          "export  ", "events  ", "normalize  "}) {
        EXPECT_NE(general.out.find(part), std::string::npos) << part;
    }
    const Outcome points = orvcomtrade({"points", "--help"});
    EXPECT_EQ(points.status, 0);
    for (const char* const part : {"PATH", "CHANNEL", "--start", "--end", "--rate", "--status", "base units"}) {
        EXPECT_NE(points.out.find(part), std::string::npos) << part;
    }
}

// --- Examples -------------------------------------------------------------------------------------------------------

TEST(Examples, MakeRecordingsMakesTheCommittedBytes) {
    const TempDir folder;
    expectOutput(runProgram(ORVCOMTRADE_MAKE_RECORDINGS, {folder.path()}), "");
    for (const char* const name : {"feeder_earth_fault.cfg", "feeder_earth_fault.dat", "line_two_phase_fault.cfg",
                                   "line_two_phase_fault.dat", "transformer_inrush.cfg", "transformer_inrush.dat"}) {
        EXPECT_TRUE(bytesOf(folder.file(name)) == bytesOf(kRecordings + "/" + name)) << name;
    }
}

TEST(Examples, MakeRecordingsTellsAFolderThatIsNotThere) {
    const TempDir folder;
    expectComplaint(runProgram(ORVCOMTRADE_MAKE_RECORDINGS, {folder.file("none")}), 1,
                    "make_recordings: cannot write " + folder.file("none") + "/feeder_earth_fault.cfg\n");
    expectComplaint(runProgram(ORVCOMTRADE_MAKE_RECORDINGS, {}), 2, "usage: make_recordings FOLDER\n");
}

TEST(Examples, QuickStartPrintsChannelsAndPointCounts) {
    expectOutput(runProgram(ORVCOMTRADE_QUICK_START, {kFeeder}), "IA,A,Feeder 4,A: 699 points\n"
                                                                 "IB,B,Feeder 4,A: 699 points\n"
                                                                 "IC,C,Feeder 4,A: 699 points\n"
                                                                 "3I0,N,Feeder 4,A: 699 points\n"
                                                                 "UA,A,Busbar 1,V: 699 points\n"
                                                                 "UB,B,Busbar 1,V: 699 points\n"
                                                                 "UC,C,Busbar 1,V: 699 points\n"
                                                                 "3U0,N,Busbar 1,V: 699 points\n");
}

TEST(Examples, QuickStartWithoutARecordingFails) {
    expectComplaint(runProgram(ORVCOMTRADE_QUICK_START, {}), 1, "");
    expectComplaint(runProgram(ORVCOMTRADE_QUICK_START, {kRecordings + "/none.cfg"}), 1, "");
}

} // namespace
