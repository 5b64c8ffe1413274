#include "cli/program.h"
#include "support/RecordingBuilder.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

// What every command prints, compared with the files in tests/cli/expected. To write these again after a deliberate
// change, run this program with ORVCOMTRADE_WRITE_EXPECTED=1 (it fails then) and read the difference.

namespace {

namespace fs = std::filesystem;
using namespace orvtest;
using Json = nlohmann::json;

/// A relay's recording as such devices write it: upper-case names, CR LF, primary kiloamperes with an offset, a missing
/// value, midnight in the middle.
RecordingBuilder relay() {
    return RecordingBuilder()
        .lineEnd("\r\n")
        .station("Nord 110 kV,Relay 7,1999")
        .analog("1,IA,A,Line 1,kA,0.001,0.5,0,-32767,32767,600,5,P")
        .analog("2,UA,A,Bus \"1\",V,0.01,0,0,-32767,32767,110000,100,S")
        .status("1,Start,,Line 1,0")
        .status("2,Trip,,Line 1,0")
        .status("3,Closed,,Line 1,1")
        .rate("1000,6")
        .startTime("05/06/2020,23:59:59.998000")
        .triggerTime("06/06/2020,00:00:00.000500")
        .type("BINARY")
        .record(0, {100, 5774}, {false, false, true})
        .record(1000, {250, 5000}, {false, false, true})
        .record(2000, {-32768, 333}, {true, false, true})
        .record(3000, {-400, -32768}, {true, true, true})
        .record(4000, {500, -32768}, {true, true, false})
        .record(5000, {32767, -1}, {false, true, false});
}

/// BINARY32 whose times stand in the data; the first value of the second channel is missing.
RecordingBuilder wide() {
    return RecordingBuilder()
        .station("S\xC3\xBC" // u with two dots
                 "d,PMU,2013")
        .analog("1,f,,,Hz,0.001,0,0,-2147483647,2147483647,1,1,S")
        .analog("2,P,,,MW,0.5,0,0,-2147483647,2147483647,1,1,S")
        .status("1,Alarm,,,0")
        .rate("0,3")
        .startTime("21/11/2020,12:00:00.250000")
        .triggerTime("21/11/2020,12:00:00.250000")
        .type("BINARY32")
        .record(0, {49987, -2147483648.0}, {false})
        .record(250, {50001, 3}, {true})
        .record(750, {49999, -8}, {false})
        .extraLine("+2h,+2h")
        .extraLine("4,0");
}

const char* const kDecimals = "S,R,1999\n3,2A,1D\n"
                              "1,U,,,kV,2,0,0,-99999,99999,1,1,S\n2,I,,,A,1,0,0,-99999,99999,1,1,S\n1,Trip,,,0\n"
                              "50\n1\n500,4\n29/02/2020,10:00:00.000000\n29/02/2020,10:00:00.004000\nASCII\n1\n";
const char* const kDecimalData = "1,0,1.25,+3,0\n2,2000,-0.5,,0\n3,4000,2,99999,1\n4,6000,0.125,-7,1\n";

const char* const kCombined = "--- file type: CFG ---\r\nCombined,R,2013\r\n2,1A,1D\r\n"
                              "1,U,,,V,0.5,1,0,-99999,99999,1,1,S\r\n1,Trip,,,0\r\n50\r\n1\r\n1000,3\r\n"
                              "01/01/2021,00:00:00.000000\r\n01/01/2021,00:00:00.001000\r\nASCII\r\n1\r\n0,0\r\n0,0\r\n"
                              "--- file type: INF ---\r\n[Public]\r\nnote=1\r\n--- file type: HDR ---\r\nA header.\r\n"
                              "--- file type: DAT ASCII ---\r\n1,0,7,0\r\n2,1000,8,1\r\n3,2000,-9,0\r\n";

const char* const kPlain = "S,R,1999\n2,1A,1D\n1,U,,,V,1,0,0,-99999,99999,1,1,S\n1,Trip,,,0\n50\n1\n1000,3\n"
                           "01/02/2020,10:00:00.000000\n01/02/2020,10:00:00.001000\nASCII\n1\n";

void writeRecordings(const TempDir& folder) {
    folder.write("RELAY.CFG", relay().cfgText());
    folder.write("RELAY.DAT", relay().datBytes());
    wide().write(folder.path(), "wide");
    folder.write("decimals.cfg", kDecimals);
    folder.write("decimals.dat", kDecimalData);
    fs::create_directory(folder.file("more"));
    folder.write("more/combined.cff", kCombined);
    folder.write("more/plain.cfg", kPlain);
    folder.write("more/plain.dat", "1,0,7,0\n2,1000,8,1\n3,2000,9,1\n");
    folder.write("more/broken.cfg", "S,R,1999\nno counts\n");
}

std::vector<Json> jsonLines(const TempDir& folder, const std::vector<std::string>& arguments) {
    std::istringstream in(orvcomtradeIn(folder.path(), arguments).out);
    std::vector<Json> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(Json::parse(line));
    }
    return lines;
}

std::string expectedFile(const std::string& name) {
    return std::string(ORVCOMTRADE_EXPECTED) + "/" + name;
}

void expectGolden(const std::string& name, const std::string& text) {
    if (std::getenv("ORVCOMTRADE_WRITE_EXPECTED") != nullptr) { // NOLINT(concurrency-mt-unsafe)
        writeFile(expectedFile(name), text);
        ADD_FAILURE() << name << " written again";
        return;
    }
    EXPECT_EQ(text, bytesOf(expectedFile(name))) << name;
}

/// Standard output, and standard error behind a mark if there is any: with the summary.
std::string printed(const Outcome& outcome) {
    const std::string err = outcome.err + outcome.summary;
    return outcome.out + (err.empty() ? "" : "--- standard error\n" + err) + "--- exit status " +
           std::to_string(outcome.status) + "\n";
}

TEST(CliGolden, EveryCommandOnRecordingsOfEveryKind) {
    const TempDir folder;
    writeRecordings(folder);
    const struct {
        const char* golden;
        std::vector<std::string> arguments;
    } cases[] = {
        {"info.txt", {"info", "."}},
        {"info-relay-secondary.txt", {"info", "--side", "secondary", "RELAY.CFG"}},
        {"info-relay-primary.txt", {"info", "--side", "primary", "RELAY.CFG"}},
        {"info.jsonl", {"info", "--json", "."}},
        {"info-as-is.txt", {"info", "--as-is", "."}},
        {"info-as-is.jsonl", {"info", "--as-is", "--json", "."}},
        {"check.txt", {"check", "."}},
        {"check.jsonl", {"check", "--json", "."}},
        {"check-as-is.txt", {"check", "--as-is", "."}},
        {"check-as-is.jsonl", {"check", "--as-is", "--json", "."}},
        {"points-relay.csv", {"points", "RELAY.DAT", "IA", "--rate", "2000", "--end", "0.0055"}},
        {"points-relay.jsonl", {"points", "--json", "RELAY.DAT", "2", "--rate", "2000", "--end", "0.0055"}},
        {"points-status.csv", {"points", "--status", ".", "--channel", "1"}},
        {"points-status.jsonl", {"points", "--status", "--json", ".", "--channel", "1"}},
        {"export-relay.csv", {"export", "RELAY.CFG"}},
        {"export-relay-secondary.csv", {"export", "--side", "secondary", "RELAY.CFG"}},
        {"export-relay-primary.csv", {"export", "--side", "primary", "RELAY.CFG"}},
        {"export-wide.csv", {"export", "wide.cfg"}},
        {"export-decimals.csv", {"export", "--format", "csv", "decimals.cfg"}},
        {"export-combined.csv", {"export", "more/combined.cff"}},
        {"export-relay.jsonl", {"export", "--format", "jsonl", "RELAY.CFG"}},
        {"export-decimals.jsonl", {"export", "--format", "jsonl", "decimals.cfg"}},
        {"export-plain-as-is.csv", {"export", "--as-is", "more/plain.cfg"}},
        {"list.txt", {"list", "."}},
        {"list.csv", {"list", "--csv", "."}},
        {"list.jsonl", {"list", "--json", "."}},
        {"stats.txt", {"stats", ".", "--start", "0.001"}},
        {"stats.csv", {"stats", "--csv", "."}},
        {"stats.jsonl", {"stats", "--json", "."}},
        {"compare.txt", {"compare", "RELAY.CFG", "more/plain.cfg"}},
        {"compare.json", {"compare", "--json", "RELAY.CFG", "more/plain.cfg"}},
        {"events.txt", {"events", "."}},
        {"events.jsonl", {"events", "--json", "."}},
        {"events-feeder.txt", {"events", kFeeder}},
        {"events-line.txt", {"events", kLine}},
        {"events-inrush.txt", {"events", kInrush}},
        {"plot-feeder.txt", {"plot", "--format", "text", kFeeder}},
        {"plot-line.txt", {"plot", "--format", "text", "--time", "trigger", kLine}},
        {"plot-inrush.txt", {"plot", "--format", "text", "--time", "absolute", kInrush}},
        {"plot-inrush-svg.txt", {"plot", "--format", "svg", "--width", "480", kInrush}},
        {"plot.txt", {"plot", "--format", "text", "--width", "60", "."}},
    };
    for (const auto& row : cases) {
        expectGolden(row.golden, printed(orvcomtradeIn(folder.path(), row.arguments)));
    }
}

/// Carriage returns as "\r", so that they are seen.
std::string escaped(std::string text) {
    for (std::size_t i = text.find('\r'); i != std::string::npos; i = text.find('\r', i)) {
        text.replace(i, 1, "\\r");
    }
    return text;
}

std::string contentsOf(const TempDir& folder, const std::string& sub, const std::vector<std::string>& extensions) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder.file(sub))) {
        const bool isWanted =
            std::find(extensions.begin(), extensions.end(), entry.path().extension().string()) != extensions.end();
        if (entry.is_regular_file() && isWanted) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    std::string text;
    for (const fs::path& file : files) {
        text += "--- " + fs::relative(file, folder.path()).string() + "\n" + escaped(bytesOf(file.string()));
    }
    return text;
}

TEST(CliGolden, NormalizeWritesPairsAsTheStandardAsksForThem) {
    const TempDir folder;
    writeRecordings(folder);
    const Outcome outcome = orvcomtradeIn(folder.path(), {"normalize", ".", "--output", "out"});
    expectGolden("normalize.txt", printed(outcome) + contentsOf(folder, "out", {".cfg", ".hdr", ".inf"}));
    EXPECT_EQ(bytesOf(folder.file("out/RELAY.dat")), bytesOf(folder.file("RELAY.DAT")));
    EXPECT_EQ(bytesOf(folder.file("out/more/plain.dat")), "1,0,7,0\r\n2,1000,8,1\r\n3,2000,9,1\r\n");
    for (const Json& line : jsonLines(folder, {"check", "--json", "out"})) {
        EXPECT_EQ(line.at("verdict"), "ok") << line;
    }
    for (const char* const side : {"recorded", "primary", "secondary"}) {
        for (const char* const name : {"RELAY", "decimals", "wide"}) {
            const auto samples = [&](const std::string& path) {
                const std::string text = orvcomtradeIn(folder.path(), {"export", "--side", side, path}).out;
                return text;
            };
            const std::string original = std::string(name) + (name == std::string("RELAY") ? ".CFG" : ".cfg");
            EXPECT_EQ(samples("out/" + std::string(name) + ".cfg"), samples(original)) << name << ' ' << side;
        }
    }
}

TEST(CliGolden, NormalizeForTheLibraryWritesPairsThatItReads) {
    const TempDir folder;
    writeRecordings(folder);
    const Outcome outcome =
        orvcomtradeIn(folder.path(), {"normalize", "--for", "library", "--side", "secondary", ".", "--output", "out"});
    expectGolden("normalize-library.txt", printed(outcome) + contentsOf(folder, "out", {".cfg"}));
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"check", "--as-is", "out"}).out, "out/RELAY.cfg: Ok (0)\n"
                                                                             "out/decimals.cfg: Ok (0)\n"
                                                                             "out/more/combined.cfg: Ok (0)\n"
                                                                             "out/more/plain.cfg: Ok (0)\n"
                                                                             "out/wide.cfg: Ok (0)\n");
    // The values of the standard's channels, which are primary and secondary ones, on the one side of the library.
    expectGolden("export-relay-library.csv",
                 printed(orvcomtradeIn(folder.path(), {"export", "--as-is", "out/RELAY.cfg"})));
}

TEST(CliGolden, NormalizeReportsFilesAsJson) {
    const TempDir folder;
    writeRecordings(folder);
    expectGolden("normalize.jsonl",
                 printed(orvcomtradeIn(folder.path(), {"normalize", "--json", ".", "--output", "out"})));
}

TEST(CliGolden, CutReportsFilesAsTextAndAsJson) {
    const TempDir folder;
    writeRecordings(folder);
    const Outcome outcome = orvcomtradeIn(folder.path(), {"cut", ".", "--output", "out", "--start", "0.001"});
    expectGolden("cut.txt", printed(outcome) + contentsOf(folder, "out", {".cfg", ".hdr", ".inf"}));
    expectGolden("cut.jsonl",
                 printed(orvcomtradeIn(folder.path(), {"cut", "--json", "--cff", ".", "--output", "one"})));
}

TEST(CliGolden, ExportReportsFilesAsTextAndAsJson) {
    const TempDir folder;
    writeRecordings(folder);
    expectGolden("export-files.txt",
                 printed(orvcomtradeIn(folder.path(), {"export", ".", "--format", "npy", "--output", "out"})));
    expectGolden("export-files.jsonl",
                 printed(orvcomtradeIn(folder.path(), {"export", "--json", ".", "--output", "csv"})));
    expectGolden("export-sidecars.txt", contentsOf(folder, "out", {".json"}));
}

// --- The shape of the JSON ------------------------------------------------------------------------------------------

/// Checks that a value is an object with exactly these members, each of one of the types named by letters: s text,
/// n number, b truth, a array, 0 null.
void expectMembers(const Json& value, const std::vector<std::pair<std::string, std::string>>& members) {
    ASSERT_TRUE(value.is_object()) << value;
    EXPECT_EQ(value.size(), members.size()) << value;
    for (const auto& [name, types] : members) {
        ASSERT_TRUE(value.contains(name)) << name << " in " << value;
        const Json& member = value[name];
        const char type = member.is_string()    ? 's'
                          : member.is_number()  ? 'n'
                          : member.is_boolean() ? 'b'
                          : member.is_array()   ? 'a'
                          : member.is_null()    ? '0'
                                                : '?';
        EXPECT_NE(types.find(type), std::string::npos) << name << " is " << member;
    }
}

void expectFailureOr(const Json& line, const std::vector<std::pair<std::string, std::string>>& members) {
    if (line.at("ok") == false && line.contains("error")) {
        expectMembers(line, {{"path", "s"}, {"ok", "b"}, {"error", "s"}});
    } else {
        expectMembers(line, members);
    }
}

TEST(CliJson, InfoHasItsMembers) {
    const TempDir folder;
    writeRecordings(folder);
    const auto lines = jsonLines(folder, {"info", "--json", "."});
    ASSERT_EQ(lines.size(), 6U);
    for (const Json& line : lines) {
        expectFailureOr(
            line, {{"path", "s"},          {"ok", "b"},           {"station", "s"},       {"recorder", "s"},
                   {"revision", "n"},      {"dataType", "s"},     {"samplingRates", "a"}, {"samplingRateKnown", "b"},
                   {"lineFrequency", "n"}, {"duration", "n"},     {"samples", "n"},       {"samplesDeclared", "n"},
                   {"encoding", "s0"},     {"start", "s0"},       {"trigger", "s0"},      {"timeCode", "s0"},
                   {"localCode", "s0"},    {"timeQuality", "s0"}, {"leapSecond", "s0"},   {"findings", "n"},
                   {"analog", "a"},        {"status", "a"},       {"hdr", "s0"},          {"inf", "s0"}});
        for (const Json& channel : line.value("analog", Json::array())) {
            expectMembers(channel, {{"number", "n"},
                                    {"name", "s"},
                                    {"id", "s"},
                                    {"phase", "s"},
                                    {"component", "s"},
                                    {"unit", "s"},
                                    {"side", "s"},
                                    {"a", "n"},
                                    {"b", "n"},
                                    {"skew", "n"},
                                    {"min", "n"},
                                    {"max", "n"},
                                    {"primary", "n"},
                                    {"secondary", "n"},
                                    {"valueUnit", "s"},
                                    {"valueSide", "s"}});
        }
        for (const Json& channel : line.value("status", Json::array())) {
            expectMembers(
                channel,
                {{"number", "n"}, {"name", "s"}, {"id", "s"}, {"phase", "s"}, {"component", "s"}, {"normal", "n"}});
        }
    }
}

TEST(CliJson, CheckHasItsMembers) {
    const TempDir folder;
    writeRecordings(folder);
    const auto lines = jsonLines(folder, {"check", "--json", "."});
    ASSERT_EQ(lines.size(), 6U);
    std::size_t findings = 0;
    for (const Json& line : lines) {
        expectMembers(line, {{"path", "s"}, {"ok", "b"}, {"verdict", "s"}, {"findings", "a"}});
        for (const Json& finding : line.at("findings")) {
            ++findings;
            expectMembers(finding, {{"severity", "s"},
                                    {"rule", "s"},
                                    {"clause", "s0"},
                                    {"code", "s"},
                                    {"file", "s"},
                                    {"line", "n0"},
                                    {"field", "s0"},
                                    {"offset", "n"},
                                    {"found", "s"},
                                    {"expected", "s"},
                                    {"repair", "s0"},
                                    {"advice", "s0"},
                                    {"places", "n"}});
        }
    }
    EXPECT_GT(findings, 5U);
}

TEST(CliJson, EventsAndPointsHaveTheirMembers) {
    const TempDir folder;
    writeRecordings(folder);
    for (const Json& line : jsonLines(folder, {"events", "--json", "."})) {
        expectFailureOr(line, {{"path", "s"}, {"ok", "b"}, {"start", "s0"}, {"timeCode", "s0"}, {"events", "a"}});
        for (const Json& event : line.value("events", Json::array())) {
            expectMembers(
                event, {{"time", "n"}, {"clock", "s0"}, {"number", "n"}, {"channel", "s"}, {"from", "n"}, {"to", "n"}});
        }
    }
    for (const Json& line : jsonLines(folder, {"points", "--json", ".", "1"})) {
        for (const Json& curve : line.value("curves", Json::array())) {
            EXPECT_TRUE(curve.at("missing").is_number());
            expectMembers(curve.at("channel"),
                          {{"kind", "s"}, {"number", "n"}, {"name", "s"}, {"unit", "s"}, {"side", "s"}});
            for (const Json& point : curve.at("points")) {
                ASSERT_EQ(point.size(), 2U);
                EXPECT_TRUE(point[0].is_number() && (point[1].is_number() || point[1].is_null()));
            }
        }
    }
}

// --- Arrays read back -----------------------------------------------------------------------------------------------

struct Array {
    std::string type;
    std::size_t rows = 0;
    std::size_t columns = 0;
    std::string data;
};

/// A reader of the .npy format, version 1.0.
Array readArray(const std::string& path) {
    const std::string bytes = bytesOf(path);
    EXPECT_EQ(bytes.substr(0, 8), std::string("\x93NUMPY\x01\x00", 8));
    const std::size_t length = static_cast<unsigned char>(bytes.at(8)) + 256U * static_cast<unsigned char>(bytes.at(9));
    EXPECT_EQ((10 + length) % 64, 0U);
    const std::string header = bytes.substr(10, length);
    EXPECT_EQ(header.back(), '\n');
    EXPECT_NE(header.find("'fortran_order': False"), std::string::npos);
    Array array;
    const std::size_t type = header.find("'descr': '") + 10;
    array.type = header.substr(type, header.find('\'', type) - type);
    EXPECT_EQ(
        std::sscanf(header.c_str() + header.find("'shape': "), "'shape': (%zu, %zu)", &array.rows, &array.columns), 2);
    array.data = bytes.substr(10 + length);
    return array;
}

double valueAt(const Array& array, std::size_t row, std::size_t column) {
    std::uint64_t bits = 0;
    for (std::size_t i = 8; i > 0; --i) {
        bits = bits << 8U | static_cast<unsigned char>(array.data.at((row * array.columns + column) * 8 + i - 1));
    }
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

TEST(CliNpy, ArraysHoldEverySampleOfTheRecording) {
    const TempDir folder;
    ASSERT_EQ(orvcomtrade({"export", kFeeder, "--format", "npy", "--output", folder.file("f")}).status, 0);
    const Array values = readArray(folder.file("f.npy"));
    EXPECT_EQ(values.type, "<f8");
    ASSERT_EQ(values.rows, 700U);
    ASSERT_EQ(values.columns, 9U);
    ASSERT_EQ(values.data.size(), 700U * 9U * 8U);
    const Array states = readArray(folder.file("f.status.npy"));
    EXPECT_EQ(states.type, "|u1");
    ASSERT_EQ(states.rows, 700U);
    ASSERT_EQ(states.columns, 5U);
    ASSERT_EQ(states.data.size(), 700U * 5U);

    // The data file is plain: number, microseconds, eight values, five states. Factors as the configuration has them.
    const double factors[] = {0.005, 0.005, 0.005, 0.005, 0.01, 0.01, 0.01, 0.01};
    std::istringstream data(bytesOf(kRecordings + "/feeder_earth_fault.dat"));
    std::string line;
    for (std::size_t row = 0; row < 700; ++row) {
        ASSERT_TRUE(std::getline(data, line));
        std::replace(line.begin(), line.end(), ',', ' ');
        std::istringstream fields(line);
        long number = 0;
        long stamp = 0;
        fields >> number >> stamp;
        ASSERT_NEAR(valueAt(values, row, 0), static_cast<double>(stamp) * 1e-6, 1e-12) << row;
        for (std::size_t i = 0; i < 8; ++i) {
            long raw = 0;
            fields >> raw;
            ASSERT_EQ(valueAt(values, row, 1 + i), static_cast<double>(raw) * factors[i]) << row << ' ' << i;
        }
        for (std::size_t i = 0; i < 5; ++i) {
            int state = -1;
            fields >> state;
            ASSERT_EQ(states.data[row * 5 + i], static_cast<char>(state)) << row << ' ' << i;
        }
    }
    const Json sidecar = Json::parse(bytesOf(folder.file("f.json")));
    EXPECT_EQ(sidecar.at("values"), "f.npy");
    EXPECT_EQ(sidecar.at("states"), "f.status.npy");
    EXPECT_EQ(sidecar.at("start"), "2019-03-14T06:41:17.322000000");
    EXPECT_EQ(sidecar.at("trigger"), "2019-03-14T06:41:17.398000000");
    EXPECT_EQ(sidecar.at("columns").size(), 14U);
    EXPECT_EQ(sidecar.at("samplingRates"), (Json::array({{{"rate", 1000.0}, {"endSample", 700}}})));
    Json column = sidecar.at("columns")[5];
    EXPECT_EQ(column.at("channel").at("primary"), 10000.0);
    EXPECT_EQ(column.at("channel").at("skew"), 0.0);
    EXPECT_EQ(column.at("channel").at("phase"), "A");
    column.erase("channel");
    EXPECT_EQ(column, (Json{{"kind", "analog"}, {"name", "UA,A,Busbar 1,V"}, {"unit", "V"}, {"side", "secondary"}}));
}

/// Numbers that look drawn, the same on any machine.
unsigned noise(unsigned row, unsigned column) {
    return ((row * 40503U + column * 9973U) ^ row * 7U) * 2654435761U >> 16U;
}

int drawnValue(unsigned row, unsigned column) {
    return static_cast<int>(noise(row, column) % 60000) - 30000;
}

bool drawnState(unsigned row, unsigned column) {
    return (noise(row / 3, 100 + column) & 1U) != 0;
}

TEST(CliNpy, ArraysOfManyPiecesHoldEverySample) {
    constexpr unsigned rows = 20011; // arrays of 2.1 and 0.3 MB, which end within a piece, as blocks of them do
    constexpr unsigned analogs = 12; // eight beside each other, and some more
    constexpr unsigned statuses = 17;
    RecordingBuilder recording;
    recording.type("BINARY").rate("1000," + std::to_string(rows));
    for (unsigned i = 1; i <= analogs; ++i) {
        recording.analog(std::to_string(i) + ",U,,,V,1,0,0,-32767,32767,1,1,S");
    }
    for (unsigned i = 1; i <= statuses; ++i) {
        recording.status(std::to_string(i) + ",D,,,0");
    }
    for (unsigned row = 0; row < rows; ++row) {
        std::vector<double> raw;
        std::vector<bool> bits;
        for (unsigned i = 0; i < analogs; ++i) {
            raw.push_back(drawnValue(row, i));
        }
        for (unsigned i = 0; i < statuses; ++i) {
            bits.push_back(drawnState(row, i));
        }
        recording.record(row * 1000, raw, bits);
    }
    const TempDir folder;
    recording.write(folder.path(), "a");
    ASSERT_EQ(orvcomtradeIn(folder.path(), {"export", "a.cfg", "--format", "npy", "--output", "a"}).status, 0);
    const Array values = readArray(folder.file("a.npy"));
    const Array states = readArray(folder.file("a.status.npy"));
    ASSERT_EQ(values.data.size(), std::size_t{rows} * (1 + analogs) * 8);
    ASSERT_EQ(states.data.size(), std::size_t{rows} * statuses);
    for (unsigned row = 0; row < rows; ++row) {
        ASSERT_DOUBLE_EQ(valueAt(values, row, 0), row / 1000.0);
        for (unsigned i = 0; i < analogs; ++i) {
            ASSERT_EQ(valueAt(values, row, 1 + i), drawnValue(row, i)) << row << ' ' << i;
        }
        for (unsigned i = 0; i < statuses; ++i) {
            ASSERT_EQ(states.data[row * statuses + i], static_cast<char>(drawnState(row, i))) << row << ' ' << i;
        }
    }
}

TEST(CliNpy, MissingValuesAreNotANumber) {
    const TempDir folder;
    writeRecordings(folder);
    ASSERT_EQ(orvcomtradeIn(folder.path(), {"export", "RELAY.CFG", "--format", "npy", "--output", "r"}).status, 0);
    const Array values = readArray(folder.file("r.npy"));
    ASSERT_EQ(values.rows, 6U);
    ASSERT_EQ(values.columns, 3U);
    const double expected[6][3] = {{0, 600, 57.74}, {0.001, 750, 50}, {0.002, 0, 3.33},
                                   {0.003, 100, 0}, {0.004, 1000, 0}, {0.005, 33267, -0.01}};
    for (std::size_t row = 0; row < 6; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            const bool isMissing = (row == 2 && column == 1) || ((row == 3 || row == 4) && column == 2);
            EXPECT_EQ(std::isnan(valueAt(values, row, column)), isMissing) << row << ' ' << column;
            if (!isMissing) {
                EXPECT_DOUBLE_EQ(valueAt(values, row, column), expected[row][column]) << row << ' ' << column;
            }
        }
    }
}

TEST(CliNpy, RecordingWithoutStatusChannelsHasAnEmptyArray) {
    const TempDir folder;
    folder.write("a.cfg", "S,R,1999\n1,1A,0D\n1,U,,,V,1,0,0,-9,9,1,1,S\n50\n1\n1000,2\n"
                          "01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nASCII\n1\n");
    folder.write("a.dat", "1,0,5\n2,1000,6\n");
    ASSERT_EQ(orvcomtradeIn(folder.path(), {"export", "a.cfg", "--format", "npy", "--output", "a"}).status, 0);
    const Array states = readArray(folder.file("a.status.npy"));
    EXPECT_EQ(states.rows, 2U);
    EXPECT_EQ(states.columns, 0U);
    EXPECT_EQ(states.data, "");
}

} // namespace
