// Parts of recordings and how they compare: what cut writes, what stats and compare say of it.

#include "cli/program.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace orvtest;

TEST(Cut, HasTheSamplesOfItsWindowBitByBit) {
    const TempDir folder;
    expectOutput(orvcomtradeIn(folder.path(), {"cut", kFeeder, "--start=-0.01", "--end", "0.03", "--time", "trigger",
                                               "--output", "part.cfg"}),
                 kFeeder + ": samples 67 to 107 of 8 analog and 5 status channels written to part.cfg\n");
    expectOutput(orvcomtradeIn(folder.path(), {"check", "part.cfg"}), "part.cfg: OK\n");
    const std::string all = bytesOf(kRecordings + "/feeder_earth_fault.dat");
    const std::string part = bytesOf(folder.file("part.dat"));
    EXPECT_EQ(part.substr(0, part.find("\r\n")).substr(4),
              all.substr(all.find("\n67,66000,") + 10).substr(0, part.find("\r\n") - 4));
    EXPECT_NE(bytesOf(folder.file("part.cfg"))
                  .find("\r\n1000,41\r\n14/03/2019,06:41:17.388000\r\n14/03/2019,06:41:17.398000\r\n"),
              std::string::npos);
}

TEST(Cut, WritesOneFileWhereItsNameEndsSo) {
    const TempDir folder;
    const Outcome outcome = orvcomtradeIn(folder.path(), {"cut", kLine, "-c", "1,3", "--status", "2", "--output",
                                                          "a.cff", "--type", "ascii", "--revision", "2013"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    expectOutput(orvcomtradeIn(folder.path(), {"check", "a.cff"}), "a.cff: OK\n");
    const std::string info = orvcomtradeIn(folder.path(), {"info", "a.cff"}).out;
    EXPECT_NE(info.find("Revision        2013\nData type       ASCII\n"), std::string::npos) << info;
    EXPECT_NE(info.find("Analog channels: 2\n"), std::string::npos) << info;
    EXPECT_NE(info.find("Status channels: 1\n"), std::string::npos) << info;
    expectOutcome(orvcomtradeIn(folder.path(), {"compare", "--values-only", "a.cff", "a.cff"}), 0,
                  "Equal: 2 analog channels and 1 status channel, 1200 samples\n", "");
}

TEST(Cut, RefusesWhatThereIsNot) {
    const TempDir folder;
    const struct {
        std::vector<std::string> arguments;
        int status;
        const char* complaint;
    } cases[] = {
        {{"--start", "2", "--end", "1"}, 2, "--end must not lie before --start"},
        {{"--start", "7"}, 1, "no sample lies in this window"},
        {{"--type", "float32", "--revision", "1999"}, 2, "FLOAT32 came with revision 2013"},
        {{"--side", "primary"}, 2, "cut takes no --side: each channel keeps its side"},
        {{"-c", "Nix"}, 2, "there is no channel \"Nix\"; the recording has"},
        {{"-c", "IA,Nix"}, 2, "there is no channel \"Nix\" (in \"IA,Nix\"); the recording has"},
        {{"-c", "IA,,Feeder"}, 2, "there is no channel \"IA,,Feeder\"; the recording has"}, // a name misspelt
    };
    for (const auto& row : cases) {
        std::vector<std::string> arguments = {"cut", kFeeder, "--output", "part.cfg"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const Outcome outcome = orvcomtradeIn(folder.path(), arguments);
        EXPECT_EQ(outcome.status, row.status) << row.complaint;
        EXPECT_NE(outcome.err.find(row.complaint), std::string::npos) << outcome.err;
    }
    EXPECT_FALSE(std::filesystem::exists(folder.file("part.cfg")));
}

TEST(Cut, SaysWhatTheFormCannotHold) {
    const TempDir folder;
    const std::string old = "orvcomtrade: " + kInrush + ": revision 1991 has no place for ";
    expectOutcome(
        orvcomtradeIn(folder.path(), {"cut", kInrush, "-o", "old.cfg", "--revision", "1991", "--type", "binary"}), 0,
        kInrush + ": samples 1 to 1400 of 8 analog and 4 status channels written to old.cfg\n",
        old + "sides and ratios\n" + old + "phases and components of status channels\n" + old +
            "time codes and time quality\norvcomtrade: " + kInrush +
            ": values of 8 of 8 analog channels are rounded to what BINARY holds\n");
    const std::string json =
        orvcomtradeIn(folder.path(), {"cut", kLine, "-c", "1", "-o", "a.cfg", "--json", "--type", "ascii"}).out;
    EXPECT_NE(json.find("\"rounded\":[],\"dropped\":[],"), std::string::npos) << json;
    const std::string part =
        orvcomtradeIn(folder.path(), {"cut", kInrush, "-c", "2", "-o", "b.cfg", "--json", "--type", "binary"}).out;
    EXPECT_NE(part.find("\"rounded\":[1],\"dropped\":[],"), std::string::npos) << part;
}

TEST(Cut, SaysThatThePartDoesNotHoldTheTrigger) {
    const TempDir folder;
    const Outcome outcome = orvcomtradeIn(folder.path(), {"cut", kFeeder, "--start", "0.2", "--output", "part.cfg"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "orvcomtrade: " + kFeeder + ": the trigger lies outside the window; its date is kept\n");
}

/// As `writeSmall` does, with names of which no part is empty.
void writeNamed(const TempDir& folder, const std::string& name, const std::string& data) {
    folder.write(name + ".cfg", "S,R,1999\r\n3,2A,1D\r\n1,U,A,Bus,V,1,0,0,-9,9,1,1,S\r\n"
                                "2,I,A,Bus,A,0.5,0,0,-9,9,1,1,S\r\n1,S,A,Bus,0\r\n50\r\n1\r\n1000,4\r\n"
                                "01/01/2020,00:00:00.000000\r\n01/01/2020,00:00:00.000000\r\nASCII\r\n1\r\n");
    folder.write(name + ".dat", data);
}

TEST(Stats, LeavesMissingValuesOutOfItsFormulas) {
    const TempDir folder;
    writeNamed(folder, "rec", "1,0,3,2,0\n2,1000,-4,4,1\n3,2000,99999,6,0\n4,3000,0,8,1\n");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"stats", "rec.cfg", "--csv"});
    EXPECT_EQ(outcome.out,
              "recording,window_start_s,window_end_s,kind,number,name,unit,side,samples,missing,min,max,"
              "peak,peak_time_s,rms,mean,changes,final\n"
              "rec.cfg,0,0.003,analog,1,\"U,A,Bus,V\",V,secondary,3,1,-4,3,-4,0.001,2.8867513459481287,"
              "-0.3333333333333333,,\n"
              "rec.cfg,0,0.003,analog,2,\"I,A,Bus,A\",A,secondary,4,0,1,4,4,0.003,2.7386127875258306,2.5,,\n"
              "rec.cfg,0,0.003,status,1,\"S,Bus\",,,4,0,,,,,,,3,1\n");
}

TEST(Stats, BothEndsBelongToTheWindow) {
    const TempDir folder;
    writeNamed(folder, "rec", kFourLines);
    const auto windowOf = [&folder](const std::vector<std::string>& flags) {
        std::vector<std::string> arguments = {"stats", "rec.cfg", "-c", "U"};
        arguments.insert(arguments.end(), flags.begin(), flags.end());
        const std::string out = orvcomtradeIn(folder.path(), arguments).out;
        return out.substr(0, out.find('\n'));
    };
    EXPECT_EQ(windowOf({}), "Window  0 s to 0.003 s, samples 1 to 4 (4)");
    EXPECT_EQ(windowOf({"-s", "0.001", "-e", "0.002"}), "Window  0.001 s to 0.002 s, samples 2 to 3 (2)");
    EXPECT_EQ(windowOf({"-s", "0.0010000001", "-e", "0.0019999999"}), "Window  0.001 s to 0.002 s, samples 2 to 3 (2)");
    EXPECT_EQ(windowOf({"-s", "0.0011"}), "Window  0.002 s to 0.003 s, samples 3 to 4 (2)");
}

TEST(Compare, ShowsTheLargestDifferenceAndTheFirstBeyondTheTolerance) {
    const TempDir folder;
    writeNamed(folder, "rec", kFourLines);
    writeNamed(folder, "other", "1,0,0.25,2,0\n2,1000,12,4,0\n3,2000,24,6,0\n4,3000,30,99999,1\n");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"compare", "--json", "-t", "1", "rec.cfg", "other.cfg"});
    EXPECT_EQ(
        outcome.out,
        "{\"a\":\"rec.cfg\",\"b\":\"other.cfg\",\"ok\":true,\"equal\":false,\"samples\":4,\"header\":[],"
        "\"onlyInA\":[],\"onlyInB\":[],\"analog\":[{\"name\":\"U,A,Bus,V\",\"unit\":\"V\",\"largest\":4.0,"
        "\"largestTime\":0.002,\"beyond\":2,\"first\":{\"sample\":2,\"time\":0.001,\"a\":10.0,\"b\":12.0}},"
        "{\"name\":\"I,A,Bus,A\",\"unit\":\"A\",\"largest\":0.0,\"largestTime\":0.0,\"beyond\":1,\"first\":{\"sample\":"
        "4,"
        "\"time\":0.003,\"a\":4.0,\"b\":null}}],\"status\":[{\"name\":\"S,Bus\",\"beyond\":1,\"first\":{\"sample\":3,"
        "\"time\":0.002,\"a\":1.0,\"b\":0.0}}]}\n");
    EXPECT_EQ(outcome.status, 1);
}

TEST(Compare, EndsWithZeroOneOrTwo) {
    const TempDir folder;
    writeNamed(folder, "rec", kFourLines);
    writeNamed(folder, "near", "1,0,0,2,0\n2,1000,10,4,0\n3,2000,20.25,6,1\n4,3000,30,8,1\n");
    const auto status = [&folder](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "compare");
        return orvcomtradeIn(folder.path(), arguments).status;
    };
    EXPECT_EQ(status({"rec.cfg", "rec.dat"}), 0);
    EXPECT_EQ(status({"rec.cfg", "near.cfg"}), 1);
    EXPECT_EQ(status({"rec.cfg", "near.cfg", "--tolerance", "0.25"}), 0);
    EXPECT_EQ(status({"rec.cfg", "near.cfg", "--tolerance", "1%"}), 0);
    EXPECT_EQ(status({"rec.cfg", "near.cfg", "--tolerance", "0.5%"}), 1);
    EXPECT_EQ(status({"rec.cfg", "absent.cfg"}), 2);
    EXPECT_EQ(status({"rec.cfg"}), 2);
    EXPECT_EQ(status({"rec.cfg", "near.cfg", "--tolerance", "-1"}), 2);
}

TEST(Compare, ShowsThreeRatesAndCountsTheOthers) {
    const TempDir folder;
    const auto write = [&folder](const std::string& name, const std::string& rates) {
        folder.write(name + ".cfg", "S,R,1999\r\n1,1A,0D\r\n1,U,A,Bus,V,1,0,0,-9,9,1,1,S\r\n50\r\n" + rates +
                                        "01/01/2020,00:00:00.000000\r\n01/01/2020,00:00:00.000000\r\nASCII\r\n1\r\n");
        folder.write(name + ".dat", "1,0,0\r\n2,1000,1\r\n3,2000,2\r\n4,3000,3\r\n");
    };
    write("three", "3\r\n1000,1\r\n500,2\r\n250,4\r\n");
    write("four", "4\r\n1000,1\r\n500,2\r\n250,3\r\n125,4\r\n");
    const std::string out = orvcomtradeIn(folder.path(), {"compare", "three.cfg", "four.cfg"}).out;
    EXPECT_NE(out.find("1000 Hz to 1, 500 Hz to 2, 250 Hz to 4"), std::string::npos) << out;
    EXPECT_EQ(out.find("250 Hz to 4 and"), std::string::npos) << out;
    EXPECT_NE(out.find("1000 Hz to 1, 500 Hz to 2, 250 Hz to 3 and 1 more"), std::string::npos) << out;
}

TEST(List, FiltersByStationChannelAndDate) {
    const auto listed = [](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"list", kRecordings, "--csv"});
        const std::string out = orvcomtrade(arguments).out;
        std::string found;
        for (const char* const name : {"feeder", "line", "transformer"}) {
            found += out.find(kRecordings + "/" + name) != std::string::npos ? std::string(name) + " " : "";
        }
        return found;
    };
    EXPECT_EQ(listed({}), "feeder line transformer ");
    EXPECT_EQ(listed({"--station", "OZERN"}), "feeder ");
    EXPECT_EQ(listed({"--station", "\xD0\xBF\xD1\x81 \xD0\xB7\xD0\xB0*"}), "line "); // lower-case Cyrillic letters
    EXPECT_EQ(listed({"--channel", "3i0"}), "feeder ");
    EXPECT_EQ(listed({"--after", "2019-03-14T06:41:17.322"}), "feeder line transformer ");
    EXPECT_EQ(listed({"--after", "2019-03-14T06:41:17.3221"}), "line transformer ");
    EXPECT_EQ(listed({"--before", "2021-11-02 19:05:45", "--after", "2020-01-01"}), "line ");
    for (const char* const date :
         {"2021-02-29", "2021-1a-01", "2021-01-1", "2021-01-01T10:00.", "2021-01-01T10:00:-1"}) {
        EXPECT_EQ(orvcomtrade({"list", kRecordings, "--before", date}).status, 2) << date;
    }
}

} // namespace
