#include "cli/Terminal.h"
#include "cli/program.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// What people are shown: tables, colours, what -v, -q and --get make of it.

namespace {

using namespace orvtest;

const std::string kTwins = std::string(ORVCOMTRADE_TWINS) + "/";

std::string lineWith(const std::string& text, const std::string& part) {
    const std::size_t place = text.find(part);
    if (place == std::string::npos) {
        return text;
    }
    const std::size_t begin = text.rfind('\n', place) + 1;
    return text.substr(begin, text.find('\n', place) - begin);
}

TEST(CliTables, NamesTakeTheCellsThatATerminalGivesThem) {
    const std::string text = orvcomtrade({"info", kTwins + "gbk-binary-4-rates/bay.cfg"}).out;
    EXPECT_EQ(lineWith(text, "  No  Name  "),
              "  No  Name                        Unit          a  b      Skew, us  Side               Ratio");
    EXPECT_EQ(lineWith(text, "_Ua"), "   1  220kV\u7532\u7EBF_Ua,A,220kV\u7532\u7EBF,V  V     0.0064173  0  "
                                     "-0.014902551  secondary  126500/57.735");
    const TempDir folder;
    folder.write("rec.cfg", "S,R,1999\n3,0A,3D\n1,e\u0301t\u00E9,,,0\n2,\u8F93\u5165,,,0\n3,abcdef,,,0\n50\n1\n1000,1\n"
                            "01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nASCII\n1\n");
    folder.write("rec.dat", "1,0,0,0,0\n");
    const std::string narrow = orvcomtrade({"info", folder.file("rec.cfg")}).out;
    EXPECT_NE(narrow.find("  No  Name    Normal\n"
                          "   1  e\u0301t\u00E9          0\n"
                          "   2  \u8F93\u5165         0\n"
                          "   3  abcdef       0\n"),
              std::string::npos)
        << narrow;
}

TEST(CliInfo, RatesWithoutSamplesAreNeitherShownNorADifference) {
    const std::string original = kTwins + "gbk-ascii-stamps-begin-again/test2.cfg"; // three rates and seven such
    EXPECT_EQ(lineWith(orvcomtrade({"info", original}).out, "Sampling rate"), "Sampling rate   1000 Hz");
    const TempDir folder;
    ASSERT_EQ(orvcomtrade({"normalize", original, "--output", folder.path()}).status, 0);
    const Outcome outcome = orvcomtrade({"compare", original, folder.file("test2.cfg")});
    EXPECT_EQ(outcome.status, 0) << outcome.out;
}

TEST(CliInfo, OfManyRatesTheRestIsCounted) {
    const std::string text = orvcomtrade({"info", kTwins + "83-rates-blank-lines/1.cfg"}).out;
    const std::string rates = lineWith(text, "Sampling rate");
    EXPECT_EQ(rates.find("Sampling rate   2400 Hz to sample 2, then 2400.959 Hz to sample 4, then "), 0U) << rates;
    EXPECT_NE(rates.find(", then 2400.274 Hz to sample 12, then 77 more rates to sample 166"), std::string::npos);
    EXPECT_LT(rates.size(), 250U);
    const std::string json = orvcomtrade({"info", "--json", kTwins + "83-rates-blank-lines/1.cfg"}).out;
    EXPECT_NE(json.find("\"endSample\":166}],\"lineFrequency\""), std::string::npos);
}

TEST(CliInfo, GetPrintsWhatIsNamedAndNothingElse) {
    expectOutput(orvcomtrade({"info", kLine, "--get", "station"}), "\u041F\u0421 \u0417\u0430\u0440\u0435\u0447"
                                                                   "\u043D\u0430\u044F 110 \u043A\u0412\n");
    expectOutput(orvcomtrade({"info", kFeeder, "--get", "samples", "--get", "lineFrequency", "--get", "timeCode"}),
                 "700\t50.0\t\n");
    const Outcome outcome = orvcomtrade({"info", kFeeder, "--get", "stations"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.err.find("did you mean station?"), std::string::npos) << outcome.err;
}

TEST(CliCheck, WordsInThePlaceOfTimeCodesAreCalledSo) {
    const std::string path = kTwins + "words-for-the-time-code/rec.cfg";
    expectOutput(orvcomtrade({"check", path}),
                 path +
                     ":11: note: time codes and quality, such as -5h30,-5h30 and 0,3 expected, found NA,NA: left out "
                     "(first of 2) [extra-text]\n" +
                     path + ": OK\n");
}

TEST(CliVerbose, SaysHowEachRecordingWasRead) {
    const TempDir folder;
    const std::string data = kRecordings + "/line_two_phase_fault.dat";
    const Outcome outcome = orvcomtrade({"events", "-v", kLine});
    EXPECT_EQ(outcome.err, "orvcomtrade: " + kLine + ": read with " + data +
                               ", texts in CP1251\norvcomtrade: " + kLine +
                               ":1: warning: UTF-8 expected, found CP1251: converted to UTF-8 (first of 13) "
                               "[encoding]\n");
    EXPECT_EQ(outcome.out, orvcomtrade({"events", kLine}).out);
}

TEST(CliQuiet, LeavesTheFailuresAlone) {
    const TempDir folder;
    const Outcome outcome = orvcomtradeIn(folder.path(), {"export", "-q", kLine, "absent.cfg", "-o", "out"});
    expectOutcome(outcome, 1, "", "orvcomtrade: absent.cfg: No such file or directory\n");
    EXPECT_EQ(outcome.summary, "");
    const Outcome usual = orvcomtradeIn(folder.path(), {"export", kLine, "absent.cfg", "-o", "other"});
    EXPECT_NE(usual.out, "");
    EXPECT_NE(usual.err.find("--skew apply"), std::string::npos) << usual.err;
    EXPECT_NE(usual.summary, "");
}

TEST(CliExport, SkewIsAppliedOnRequest) {
    const TempDir folder;
    folder.write("rec.cfg", "S,R,1999\n2,2A,0D\n1,U,,,V,1,0,0,-99,99,1,1,S\n2,I,,,A,1,0,500,-99,99,1,1,S\n50\n1\n"
                            "1000,3\n01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nASCII\n1\n");
    folder.write("rec.dat", "1,0,1,10\n2,1000,2,20\n3,2000,3,40\n");
    // A value stands half a step behind its sample: at the times of the samples it is between two of them.
    expectOutput(orvcomtradeIn(folder.path(), {"export", "rec.cfg", "--skew", "apply"}),
                 "time,\"U,V\",\"I,A\"\n0,1,\n0.001,2,15\n0.002,3,30\n");
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"export", "rec.cfg"}).out,
              "time,\"U,V\",\"I,A\"\n0,1,10\n0.001,2,20\n0.002,3,40\n");
}

/// What check prints to a terminal, with these words before it for env.
std::string checkedOnTerminal(const std::vector<std::string>& environment) {
    const Terminal terminal;
    const int keptOpen = terminal.slave(); // else what is there may be lost with the last descriptor
    const TempDir folder;
    std::vector<std::string> words = {"/usr/bin/env"};
    words.insert(words.end(), environment.begin(), environment.end());
    words.insert(words.end(), {ORVCOMTRADE_PROGRAM, "check", kLine});
    EXPECT_EQ(runWith(folder.path(), words, terminal.slave(), openForOutput("/dev/null")), 0);
    std::string shown = terminal.text();
    close(keptOpen);
    close(terminal.master);
    return shown;
}

TEST(CliColour, StandsOnATerminalThatWantsIt) {
    const std::string coloured = checkedOnTerminal({"-u", "NO_COLOR", "TERM=xterm"});
    EXPECT_NE(coloured.find(":1: \x1B[33mwarning\x1B[0m: UTF-8 expected"), std::string::npos) << coloured;
    EXPECT_NE(coloured.find(":1: \x1B[34mnote\x1B[0m: CR LF expected"), std::string::npos) << coloured;
    for (const std::vector<std::string>& environment : {std::vector<std::string>{"NO_COLOR=1", "TERM=xterm"},
                                                        {"-u", "NO_COLOR", "TERM=dumb"},
                                                        {"-u", "NO_COLOR", "-u", "TERM"}}) {
        const std::string plain = checkedOnTerminal(environment);
        EXPECT_NE(plain.find(":1: warning: UTF-8 expected"), std::string::npos) << plain;
        EXPECT_EQ(plain.find('\x1B'), std::string::npos) << plain;
    }
    EXPECT_EQ(orvcomtrade({"check", kLine}).out.find('\x1B'), std::string::npos);
}

} // namespace
