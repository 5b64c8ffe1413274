// The example programs, run as a user runs them. What stands in tests/examples/expected, and every point and rectangle
// of the drawings of plot_fault in docs/images, was first compared with a second reading of the recordings that shares
// no code with the library: struct and float arithmetic of Python on the bytes of the files.

#include "support/RecordingBuilder.h"
#include "support/TempDir.h"
#include "support/files.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace {

using orvtest::bytesOf;
using orvtest::RecordingBuilder;
using orvtest::TempDir;

const std::string kRoot = ORV_SOURCE_DIR;
const std::string kExpected = kRoot + "/tests/examples/expected/";
const std::string kImages = kRoot + "/docs/images/";

struct Outcome {
    int status;
    std::string out;
};

/// Runs a line of the shell in a folder, with the example programs first on PATH.
Outcome runIn(const std::string& folder, const std::string& line) {
    const std::string command = "cd '" + folder + "' && PATH='" + ORV_PROGRAMS + "':$PATH && " + line;
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("no shell");
    }
    Outcome outcome{-1, {}};
    std::array<char, 4096> piece{};
    for (std::size_t got = 0; (got = fread(piece.data(), 1, piece.size(), pipe)) > 0;) {
        outcome.out.append(piece.data(), got);
    }
    const int status = pclose(pipe);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

Outcome run(const std::string& line) {
    return runIn(kRoot + "/examples/recordings", line);
}

RecordingBuilder recordingOf(const std::vector<std::string>& analogs, const std::vector<std::string>& statuses) {
    RecordingBuilder builder;
    for (const std::string& line : analogs) {
        builder.analog(line);
    }
    for (const std::string& line : statuses) {
        builder.status(line);
    }
    return builder;
}

const std::string kPlain = ",A,Bay,V,1,0,0,-32767,32767,1,1,S";

TEST(Examples, ExampleRecordingsGiveWhatIsCommitted) {
    const struct {
        const char* command;
        std::string file;
    } rows[] = {
        {"all_channels_to_csv feeder_earth_fault.cfg | head -n 20", kExpected + "feeder_earth_fault.csv"},
        {"all_channels_to_csv line_two_phase_fault.cfg | head -n 20", kExpected + "line_two_phase_fault.csv"},
        {"all_channels_to_csv transformer_inrush.cfg | head -n 20", kExpected + "transformer_inrush.csv"},
        {"status_events feeder_earth_fault.cfg", kExpected + "feeder_earth_fault.events.txt"},
        {"status_events line_two_phase_fault.cfg", kExpected + "line_two_phase_fault.events.txt"},
        {"status_events transformer_inrush.cfg", kExpected + "transformer_inrush.events.txt"},
        {"fault_window feeder_earth_fault.cfg 0.08 0.18", kExpected + "feeder_earth_fault.window.txt"},
        {"fault_window line_two_phase_fault.dat 0.06 0.14", kExpected + "line_two_phase_fault.window.txt"},
        {"fault_window line_two_phase_fault.cfg 0.38 0.42", kExpected + "line_two_phase_fault.two_rates.txt"},
        {"fault_window transformer_inrush.cfg 0.1 0.2", kExpected + "transformer_inrush.window.txt"},
        {"tutorial_values feeder_earth_fault.cfg 0.1", kExpected + "feeder_earth_fault.values.txt"},
        {"tutorial_values line_two_phase_fault.cfg 0.1", kExpected + "line_two_phase_fault.values.txt"},
        {"tutorial_values transformer_inrush.cfg 0.1", kExpected + "transformer_inrush.values.txt"},
        {"tutorial_times feeder_earth_fault.cfg", kExpected + "feeder_earth_fault.times.txt"},
        {"tutorial_times line_two_phase_fault.cfg", kExpected + "line_two_phase_fault.times.txt"},
        {"tutorial_times transformer_inrush.cfg", kExpected + "transformer_inrush.times.txt"},
        {"plot_fault feeder_earth_fault.cfg 0.076 0.199", kImages + "tutorial_feeder.svg"},
        {"plot_fault line_two_phase_fault.cfg 0.06 0.155", kImages + "tutorial_line.svg"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = run(row.command);
        EXPECT_EQ(outcome.status, 0) << row.command;
        EXPECT_EQ(outcome.out, bytesOf(row.file)) << row.command;
    }
}

TEST(Examples, EverySampleIsARowOfTheCsv) {
    EXPECT_EQ(run("all_channels_to_csv feeder_earth_fault.cfg | wc -l").out, "701\n");
    EXPECT_EQ(run("all_channels_to_csv line_two_phase_fault.cfg | wc -l").out, "1201\n");
    EXPECT_EQ(run("all_channels_to_csv transformer_inrush.cfg | wc -l").out, "1401\n");
}

TEST(Examples, EveryFailureHasAMessageAndAStatus) {
    const struct {
        const char* why;
        const char* command;
        int status;
        const char* message;
    } rows[] = {
        {"no argument", "all_channels_to_csv", 2, "usage: all_channels_to_csv FILE\n"},
        {"no argument", "status_events", 2, "usage: status_events FILE\n"},
        {"no argument", "folder_in_parallel", 2, "usage: folder_in_parallel FOLDER\n"},
        {"no argument", "tutorial_times", 2, "usage: tutorial_times FILE\n"},
        {"no argument", "open_anything", 2, "usage: open_anything FILE\n"},
        {"no argument", "quick_start", 1, ""},
        {"an end that is no number", "fault_window feeder_earth_fault.cfg 0 1s", 2,
         "usage: fault_window FILE START END (in seconds)\n"},
        {"a time that is not finite", "tutorial_values feeder_earth_fault.cfg inf", 2,
         "usage: tutorial_values FILE TIME (in seconds)\n"},
        {"no window", "plot_fault feeder_earth_fault.cfg", 2,
         "usage: plot_fault FILE START END [CHANNEL...] > fault.svg (START and END in seconds)\n"},
        {"no such recording", "all_channels_to_csv none.cfg", 1,
         "none.cfg: no configuration file (.cfg) of this name\n"},
        {"no such recording", "status_events none.dat", 1, "none.dat: no configuration file (.cfg) of this name\n"},
        {"another extension", "fault_window README.md 0 1", 1,
         "README.md: not a file of a recording: the extension is not .cfg, .dat or .cff\n"},
        {"no extension", "tutorial_times none", 1, "none: the path has no extension: name the .cfg or the .dat file\n"},
        {"an escape sequence in the path", "tutorial_values \"$(printf '\\033[31m.cfg')\" 0", 1,
         "?[31m.cfg: no configuration file (.cfg) of this name\n"},
        {"no such channel", "plot_fault feeder_earth_fault.cfg 0 1 ID", 1,
         "feeder_earth_fault.cfg: no analog channel of this name\n"},
        {"a window behind the recording", "plot_fault feeder_earth_fault.cfg 5 6", 1,
         "feeder_earth_fault.cfg: nothing recorded from START to END\n"},
        {"a window that ends before it begins", "plot_fault feeder_earth_fault.cfg 0.2 0.1", 1,
         "feeder_earth_fault.cfg: nothing recorded from START to END\n"},
        {"no such recording", "open_anything none.cfg", 1,
         "no-such-file, line 0: No such file or directory\nnot readable\n"},
        {"no such recording", "device_values none.cfg", 1, "no-such-file: No such file or directory\n"},
        {"no such recording", "quick_start none.cfg", 1, ""},
        {"no such folder", "folder_in_parallel none", 1, "none: No such file or directory\n"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = run(std::string("LC_ALL=C ") + row.command + " 2>&1");
        EXPECT_EQ(outcome.status, row.status) << row.why << ": " << row.command;
        EXPECT_EQ(outcome.out, row.message) << row.why << ": " << row.command;
    }
}

TEST(Examples, OutputThatCannotBeWrittenIsAFailure) {
    EXPECT_EQ(run("all_channels_to_csv feeder_earth_fault.cfg > /dev/full").status, 1);
    EXPECT_EQ(run("status_events feeder_earth_fault.cfg > /dev/full").status, 1);
    EXPECT_EQ(run("fault_window feeder_earth_fault.cfg 0 1 > /dev/full").status, 1);
    EXPECT_EQ(run("plot_fault feeder_earth_fault.cfg 0 1 > /dev/full").status, 1);
    EXPECT_EQ(run("folder_in_parallel . > /dev/full").status, 1);
    EXPECT_EQ(run("tutorial_values feeder_earth_fault.cfg 0.1 > /dev/full").status, 1);
    EXPECT_EQ(run("tutorial_times feeder_earth_fault.cfg > /dev/full").status, 1);
    EXPECT_EQ(run("open_anything feeder_earth_fault.cfg > /dev/full").status, 1);
}

TEST(OpenAnything, ReadsWhatTheLibraryAloneRefuses) {
    const TempDir folder;
    folder.write("r.CFG", "S\x1B,R,1999\r\n1,1A,0D\r\n1,U" + kPlain +
                              "\r\n50\r\n1\r\n1000,2\r\n01/02/2003,04:05:06.000000\r\n"
                              "01/02/2003,04:05:06.000000\r\nBINARY32\r\n1\r\n");
    folder.write("r.DAT", std::string("\1\0\0\0\0\0\0\0\5\0\0\0\2\0\0\0\350\3\0\0\7\0\0\0", 24));
    EXPECT_EQ(runIn(folder.path(), "quick_start r.CFG").status, 1);
    const Outcome outcome = runIn(folder.path(), "open_anything r.CFG");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find("2 samples of 1 analog and 0 status channels\n"
                               "begins at 2003-02-01T04:05:06.000000000\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_EQ(outcome.out.find('\x1B'), std::string::npos);
}

TEST(AllChannelsToCsv, NamesAreTrimmedCleanedAndQuoted) {
    const TempDir folder;
    recordingOf({"1, say \"U\" , A,,kV,1,0,0,-1,1,1,1,S"}, {"1,\x1B[2J,,,0", "2,a\xE2\x80\xAEz,,,0"})
        .lineEnd("\r\n")
        .rate("1000,2")
        .record(0, {-3}, {true, false})
        .record(1000, {0}, {false, true})
        .write(folder.path(), "odd");
    const Outcome outcome = runIn(folder.path(), "all_channels_to_csv odd.cfg");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "time [s],\"say \"\"U\"\" [V]\",?[2J,a?z\n"
                           "0,-3000,1,0\n"
                           "0.001,0,0,1\n");
}

TEST(FaultWindow, ValuesCountByTheirTimeWhereTheRateChanges) {
    const TempDir folder;
    recordingOf({"1,U" + kPlain}, {})
        .rate("1000,2")
        .rate("500,4")
        .record(0, {2}, {})
        .record(0, {-2}, {})
        .record(0, {4}, {})
        .record(0, {-4}, {})
        .write(folder.path(), "rates");
    // Squares of 4 for 1 ms each and of 16 for 2 ms each: the mean is 72 / 6, and its root 3.464.
    EXPECT_EQ(runIn(folder.path(), "fault_window rates.cfg 0 1").out,
              " samples          peak      at, s           RMS  channel\n"
              "       4         4.000   0.002000         3.464  U Bay [V]\n");
}

TEST(FaultWindow, SamplesAreLookedForWhereTheSkewPutsThem) {
    const TempDir folder;
    recordingOf({"1,U" + kPlain, "2,V,A,Bay,V,1,0,1000,-32767,32767,1,1,S"}, {})
        .rate("1000,3")
        .record(0, {5, 5}, {})
        .record(0, {6, 6}, {})
        .record(0, {7, 7}, {})
        .write(folder.path(), "skew");
    EXPECT_EQ(runIn(folder.path(), "fault_window skew.cfg 0.0015 0.0025").out,
              " samples          peak      at, s           RMS  channel\n"
              "       1         7.000   0.002000         7.000  U Bay [V]\n"
              "       1         6.000   0.002000         6.000  V Bay [V]\n");
}

TEST(FaultWindow, WindowWithoutSamplesGivesZeros) {
    EXPECT_EQ(run("fault_window feeder_earth_fault.cfg 7 8 | sed -n 2p").out,
              "       0         0.000   0.000000         0.000  IA Feeder 4 [A]\n");
}

TEST(TutorialTimes, LastSampleNumbersCountFromTheBeginning) {
    const TempDir folder;
    RecordingBuilder builder = recordingOf({"1,U" + kPlain}, {});
    builder.rate("1000,5").rate("2000,15").rate("4000,20").multiplier("2");
    for (int i = 0; i < 20; ++i) {
        builder.record(0, {0}, {});
    }
    builder.write(folder.path(), "three");
    // 5 ms, then 10 samples of 0.5 ms, then 0.25 ms each: sample 19 lies at 5 + 5 + 1 ms. The library takes 15 as the
    // length of the second segment and doubles what it gets: (5 + 14 * 0.5) * 2.
    EXPECT_EQ(runIn(folder.path(), "tutorial_times three.cfg").out,
              "1000 samples per second up to number 5\n"
              "2000 samples per second up to number 15\n"
              "4000 samples per second up to number 20\n"
              "times come from the sampling rates; time multiplier 2\n"
              "20 of 20 samples, the last at 0.024 s\n"
              "sample, its time, and its time by the rates:\n"
              "4  0.008  0.004\n"
              "5  0.01  0.005\n"
              "14  0.019  0.0095\n"
              "15  0.02  0.01\n"
              "19  0.024  0.011\n");
}

TEST(TutorialTimes, RateOfZeroLeavesTheTimesToTheStamps) {
    const TempDir folder;
    recordingOf({"1,U" + kPlain}, {})
        .rateCount("0")
        .rate("0,2")
        .multiplier("10")
        .record(0, {0}, {})
        .record(125, {0}, {})
        .write(folder.path(), "stamps");
    EXPECT_EQ(runIn(folder.path(), "tutorial_times stamps.cfg").out,
              "0 samples per second up to number 2\n"
              "times come from the time stamps of the data file; time multiplier 10\n"
              "2 of 2 samples, the last at 0.00125 s\n");
}

TEST(FolderInParallel, OneLinePerRecordingInOrderWhateverFails) {
    const TempDir folder;
    std::string expected;
    for (int i = 10; i < 50; ++i) {
        const std::string name = "r" + std::to_string(i);
        recordingOf({"1,U" + kPlain}, {"1,Trip,,,0"})
            .rate("1000,2")
            .record(0, {0}, {false})
            .record(1000, {0}, {i % 2 == 0})
            .write(folder.path(), name);
        expected += name + ".cfg: ";
        if (i == 20) {
            std::remove(folder.file(name + ".dat").c_str());
            expected += "no data file (.dat) of this name\n";
        } else if (i == 30) {
            folder.write(name + ".cfg", "S\n");
            expected += "the configuration file cannot be read\n";
        } else if (i == 40) {
            folder.write(name + ".dat", "1,0,x\n");
            expected += "the data file cannot be read, or does not match its configuration\n";
        } else {
            expected += "1 analog, 1 status, 2 samples, 0.001 s\n";
        }
    }
    folder.write("notes.txt", "");
    const Outcome outcome = run("folder_in_parallel '" + folder.path() + "'");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, expected);
}

TEST(FolderInParallel, FolderOfReadableRecordingsSucceeds) {
    const Outcome outcome = run("folder_in_parallel .");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "feeder_earth_fault.cfg: 8 analog, 5 status, 700 samples, 0.699 s\n"
                           "line_two_phase_fault.cfg: 7 analog, 5 status, 1200 samples, 1.3975 s\n"
                           "transformer_inrush.cfg: 8 analog, 4 status, 1400 samples, 0.6995 s\n");
}

TEST(PlotFault, TextOfTheRecordingIsNoMarkup) {
    const TempDir folder;
    recordingOf({"1,</text><script>&\x1B" + kPlain}, {})
        .station("\"<&\x01,R,1999")
        .rate("1000,2")
        .record(0, {0}, {})
        .record(0, {1}, {})
        .write(folder.path(), "hostile");
    const Outcome outcome = runIn(folder.path(), "plot_fault hostile.cfg 0 1");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find(">&quot;&lt;&amp;?</text>"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find(">&lt;/text&gt;&lt;script&gt;&amp;? Bay</text>"), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.out.find("<script"), std::string::npos);
}

TEST(PlotFault, TriggerIsMarkedWhereTheDateTimesCanBeRead) {
    const struct {
        const char* why;
        const char* start;
        const char* trigger;
        bool marked;
    } rows[] = {
        {"half a second later", "01/02/2003,04:05:06.000000", "01/02/2003,04:05:06.500000", true},
        {"over midnight", "01/02/2003,23:59:59.800000", "02/02/2003,00:00:00.300000", true},
        {"outside the view", "01/02/2003,04:05:06.000000", "01/02/2003,04:15:06.000000", false},
        {"no time", "01/02/2003,", "01/02/2003,04:05:06.500000", false},
        {"no date-time", "x", "y", false},
        {"no hour of a day", "01/02/2003,24:05:06.000000", "01/02/2003,24:05:06.500000", false},
    };
    for (const auto& row : rows) {
        const TempDir folder;
        recordingOf({"1,U" + kPlain}, {})
            .startTime(row.start)
            .triggerTime(row.trigger)
            .rate("1,2")
            .record(0, {0}, {})
            .record(0, {1}, {})
            .write(folder.path(), "r");
        const std::string drawing = runIn(folder.path(), "plot_fault r.cfg 0 1").out;
        // 0.5 s of 1 s, on a plot from 72 to 874 pixels.
        const bool marked = drawing.find(" d=\"M473 68V200\"/>") != std::string::npos;
        EXPECT_EQ(marked, row.marked) << row.why;
        EXPECT_EQ(drawing.find(">trigger ") != std::string::npos, row.marked) << row.why;
    }
}

TEST(PlotFault, LongRecordingKeepsItsPeaksInADrawingOfBoundedSize) {
    const TempDir folder;
    RecordingBuilder builder = recordingOf({"1,U" + kPlain}, {});
    builder.rate("20000,20000");
    for (int i = 0; i < 20000; ++i) {
        builder.record(0, {i == 12345 ? 1000.0 : i % 2 == 0 ? 1.0 : -1.0}, {});
    }
    builder.write(folder.path(), "long");
    const Outcome outcome = runIn(folder.path(), "plot_fault long.cfg 0 1");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_LT(outcome.out.size(), 40000U);
    // From -1 to 1000 in axes that are 128 pixels high and 12 % longer than that: from 121.1 pixels to 6.9.
    EXPECT_NE(outcome.out.find(" -114.2l"), std::string::npos) << outcome.out;
}

} // namespace
