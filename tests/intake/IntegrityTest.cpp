// Damage that leaves every number readable: noise, lost and repeated records, lost bytes, data of another recording.
// Each is done to sound recordings, which have no such finding.

#include "intake/comparison.h"
#include "intake/openedChecks.h"
#include "support/soundRecordings.h"

#include <OrvComtradeIntake/Intake.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

using namespace OrvComtradeIntake;
using namespace orvtest;

namespace {

using Types = std::vector<DataType>;
using Damage = std::function<void(SoundRecording&, Random&)>;

const Types kAll = {DataType::Ascii, DataType::Binary, DataType::Binary32, DataType::Float32};
const Types kBinaries = {DataType::Binary, DataType::Binary32, DataType::Float32};
constexpr std::size_t kSamples = 200;
constexpr std::size_t kPlace = 120; ///< 0-based sample at which a recording is damaged
constexpr std::size_t kAllSamples = kSamples;

enum class Outcome { Readable, NotReadable };

struct Row {
    const char* why;
    Types types;
    Damage damage;
    const char* codes; ///< of findings worse than a note, as `unlikeCodes` takes them
    Severity severity; ///< of the worst of them
    Outcome outcome;
    std::size_t samples; ///< at least, of which the values are right
};

Shape shapeOf(DataType type) {
    Shape shape;
    shape.revision = type == DataType::Ascii || type == DataType::Binary ? 1999 : 2013;
    shape.type = type;
    shape.analogs = 3;
    shape.statuses = 5;
    shape.samples = kSamples;
    return shape;
}

std::size_t valueLength(DataType type) {
    return type == DataType::Binary ? 2 : 4;
}

/// All data at once, in place of the records.
void setData(SoundRecording& recording, const std::string& bytes) {
    recording.records = {bytes};
}

std::string noise(std::size_t length, Random& random) {
    std::string bytes(length, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random.between(0, 255));
    }
    return bytes;
}

void putInteger(std::string& bytes, std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < sizeof value; ++i) {
        bytes[at + i] = static_cast<char>(value >> (8 * i) & 0xFFU);
    }
}

/// Field number `index` of a data line, which ends before the next comma.
void setField(std::string& line, std::size_t index, const std::string& value) {
    std::size_t begin = 0;
    for (std::size_t i = 0; i < index; ++i) {
        begin = line.find(',', begin) + 1;
    }
    line.replace(begin, line.find_first_of(",\r\n", begin) - begin, value);
}

void setNumber(SoundRecording& recording, std::size_t sample, std::uint32_t number) {
    std::string& record = recording.records.at(sample);
    if (recording.shape.type == DataType::Ascii) {
        setField(record, 0, std::to_string(number));
    } else {
        putInteger(record, 0, number);
    }
}

void setStamp(SoundRecording& recording, std::size_t sample, std::uint32_t stamp) {
    std::string& record = recording.records.at(sample);
    if (recording.shape.type == DataType::Ascii) {
        setField(record, 1, std::to_string(stamp));
    } else {
        putInteger(record, 4, stamp);
    }
}

void numberAnew(SoundRecording& recording) {
    for (std::size_t i = 0; i < recording.records.size(); ++i) {
        setNumber(recording, i, static_cast<std::uint32_t>(i + 1));
    }
}

void setRateLine(SoundRecording& recording, const std::string& line) {
    recording.cfgLines.at(recording.rateLine()) = line;
}

void replaceInLine(std::string& line, const std::string& from, const std::string& to) {
    line.replace(line.find(from), from.size(), to);
}

/// Fields of records that are put together otherwise: number, stamp, values, states.
std::vector<std::string> partsOf(const std::string& record, DataType type, std::size_t analogs) {
    std::vector<std::string> parts{record.substr(0, 4), record.substr(4, 4)};
    for (std::size_t i = 0; i < analogs; ++i) {
        parts.push_back(record.substr(8 + i * valueLength(type), valueLength(type)));
    }
    parts.push_back(record.substr(8 + analogs * valueLength(type)));
    return parts;
}

void makeBigEndian(SoundRecording& recording, Random&) {
    for (std::string& record : recording.records) {
        std::string turned;
        for (std::string part : partsOf(record, recording.shape.type, recording.shape.analogs)) {
            std::reverse(part.begin(), part.end());
            turned += part;
        }
        record = turned;
    }
}

void putStatesInOneByte(SoundRecording& recording, Random&) {
    for (std::string& record : recording.records) {
        record.pop_back();
    }
}

void pad(SoundRecording& recording, std::size_t bytes) {
    for (std::string& record : recording.records) {
        record += std::string(bytes, '\0');
    }
}

void cutTo(SoundRecording& recording, std::size_t samples) {
    recording.records.resize(samples);
    setRateLine(recording, "1000," + std::to_string(samples));
    recording.cfgLines.at(recording.startLine() + 1) = recording.cfgLines.at(recording.startLine());
}

/// Bytes as a compressed file has them.
void compress(SoundRecording& recording, Random& random) {
    const std::string head("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10);
    setData(recording, head + noise(recording.dat().size() / 2, random));
}

void takeDataOfAnotherStation(SoundRecording& recording, Random& random) {
    Shape other = recording.shape;
    other.analogs = 7;
    other.statuses = 40;
    recording.records = soundRecording(other, random).records;
}

/// The first channel's values in its range, but for some.
void setRangeWithout(SoundRecording& recording, Random&) {
    std::string& line = recording.cfgLines.at(recording.analogLine(0));
    setField(line, 8, "-1500");
    setField(line, 9, "1500");
    const bool isText = recording.shape.type == DataType::Ascii;
    for (std::size_t i = 0; i < recording.records.size(); ++i) {
        const int value = i == kPlace ? 1600 : static_cast<int>(i % 100) * 10 - 500;
        std::string& record = recording.records[i];
        if (isText) {
            setField(record, 2, std::to_string(value));
        } else {
            record[8] = static_cast<char>(value & 0xFF);
            record[9] = static_cast<char>(value >> 8 & 0xFF);
        }
    }
}

const Row kRows[] = {
    {"nothing is done", kAll, [](SoundRecording&, Random&) {}, "", Severity::Note, Outcome::Readable, kAllSamples},

    // Data that are none of this configuration
    {"random bytes", kBinaries,
     [](SoundRecording& recording, Random& random) { setData(recording, noise(recording.dat().size(), random)); },
     "data-mismatch|record-layout", Severity::Error, Outcome::NotReadable, 0},
    {"random bytes under ASCII",
     {DataType::Ascii},
     [](SoundRecording& recording, Random& random) { setData(recording, noise(4000, random)); },
     "data-mismatch|no-samples|unreadable",
     Severity::Error,
     Outcome::NotReadable,
     0},
    {"zero bytes alone", kBinaries,
     [](SoundRecording& recording, Random&) { setData(recording, std::string(recording.dat().size(), '\0')); },
     "data-mismatch", Severity::Error, Outcome::NotReadable, 0},
    {"one byte throughout", kBinaries,
     [](SoundRecording& recording, Random&) { setData(recording, std::string(recording.dat().size(), '\x1A')); },
     "data-mismatch|no-samples", Severity::Error, Outcome::NotReadable, 0},
    {"records of another station, with more channels", kBinaries, takeDataOfAnotherStation,
     "record-layout|data-mismatch", Severity::Error, Outcome::NotReadable, 0},
    {"lines of another station, with more channels",
     {DataType::Ascii},
     takeDataOfAnotherStation,
     "surplus-columns samples-lost? status-value? value-out-of-range?",
     Severity::Warning,
     Outcome::Readable,
     0},
    {"the high byte first", kBinaries, makeBigEndian, "record-layout|data-mismatch", Severity::Error,
     Outcome::NotReadable, 0},
    {"states in one byte", kBinaries, putStatesInOneByte, "record-layout|data-mismatch", Severity::Error,
     Outcome::NotReadable, 0},
    {"integers of 16 bits under BINARY32",
     {DataType::Binary},
     [](SoundRecording& recording, Random&) {
         replaceInLine(recording.cfgLines.at(recording.startLine() + 2), "BINARY", "BINARY32");
     },
     "type-word",
     Severity::Warning,
     Outcome::Readable,
     kAllSamples},
    {"integers of 32 bits under BINARY",
     {DataType::Binary32},
     [](SoundRecording& recording, Random&) {
         replaceInLine(recording.cfgLines.at(recording.startLine() + 2), "BINARY32", "BINARY");
     },
     "type-word",
     Severity::Warning,
     Outcome::Readable,
     kAllSamples},
    {"singles under BINARY",
     {DataType::Float32},
     [](SoundRecording& recording, Random&) {
         replaceInLine(recording.cfgLines.at(recording.startLine() + 2), "FLOAT32", "BINARY");
     },
     "type-word",
     Severity::Warning,
     Outcome::Readable,
     kAllSamples},
    {"records under ASCII",
     {DataType::Binary},
     [](SoundRecording& recording, Random&) {
         replaceInLine(recording.cfgLines.at(recording.startLine() + 2), "BINARY", "ASCII");
     },
     "type-word",
     Severity::Warning,
     Outcome::Readable,
     kAllSamples},
    {"records under a type word that there is not",
     {DataType::Binary},
     [](SoundRecording& recording, Random&) {
         replaceInLine(recording.cfgLines.at(recording.startLine() + 2), "BINARY", "INT16");
     },
     "type-word",
     Severity::Warning,
     Outcome::Readable,
     kAllSamples},
    {"a compressed file", kBinaries, compress, "not-a-recording|data-mismatch", Severity::Error, Outcome::NotReadable,
     0},
    {"a compressed file under ASCII",
     {DataType::Ascii},
     compress,
     "not-a-recording|data-mismatch",
     Severity::Error,
     Outcome::NotReadable,
     0},
    {"ten records with two bytes between them",
     {DataType::Binary, DataType::Binary32, DataType::Float32},
     [](SoundRecording& recording, Random&) {
         cutTo(recording, 10);
         pad(recording, 2);
     },
     "record-padding",
     Severity::Warning,
     Outcome::Readable,
     10},
    {"records with sixteen bytes between them", kBinaries,
     [](SoundRecording& recording, Random&) { pad(recording, 16); }, "record-padding", Severity::Warning,
     Outcome::Readable, kAllSamples},

    // Lost, repeated, shifted
    {"a record is lost", kAll,
     [](SoundRecording& recording, Random&) { recording.records.erase(recording.records.begin() + kPlace); },
     "number-jump sample-count stamps-disagree?", Severity::Error, Outcome::Readable, kPlace},
    {"a record stands twice", kAll,
     [](SoundRecording& recording, Random&) {
         recording.records.insert(recording.records.begin() + kPlace, recording.records.at(kPlace));
     },
     "number-jump sample-count? stamps-disagree?", Severity::Error, Outcome::Readable, kPlace},
    {"two records have changed places", kAll,
     [](SoundRecording& recording, Random&) {
         std::swap(recording.records.at(kPlace), recording.records.at(kPlace + 1));
     },
     "number-jump stamps-disagree?", Severity::Error, Outcome::Readable, kPlace},
    {"a byte is lost", kBinaries, [](SoundRecording& recording, Random&) { recording.records.at(kPlace).erase(9, 1); },
     "shifted-records samples-lost", Severity::Error, Outcome::Readable, kPlace},
    {"a byte is added", kBinaries,
     [](SoundRecording& recording, Random&) { recording.records.at(kPlace).insert(9, "x"); },
     "shifted-records samples-lost", Severity::Error, Outcome::Readable, kPlace},
    {"a third of the samples is lost", kAll,
     [](SoundRecording& recording, Random&) { recording.records.resize(kSamples * 69 / 100); }, "samples-lost",
     Severity::Error, Outcome::Readable, kSamples * 69 / 100},
    {"one sample in fifty is lost at the end", kAll,
     [](SoundRecording& recording, Random&) { recording.records.resize(kSamples * 98 / 100); }, "sample-count",
     Severity::Warning, Outcome::Readable, kSamples * 98 / 100},
    {"the last record is cut", kBinaries,
     [](SoundRecording& recording, Random&) { recording.records.back().resize(9); },
     "sample-count|record-cut record-cut?", Severity::Warning, Outcome::Readable, kSamples - 1},

    // Stamps against rates
    {"fifty samples are lost, and the others numbered anew", kAll,
     [](SoundRecording& recording, Random&) {
         const auto first = recording.records.begin() + kPlace;
         recording.records.erase(first, first + 50);
         numberAnew(recording);
         setRateLine(recording, "1000," + std::to_string(recording.records.size()));
         recording.cfgLines.at(recording.startLine() + 1) = recording.cfgLines.at(recording.startLine());
     },
     "stamps-disagree", Severity::Warning, Outcome::Readable, kPlace},
    {"a recorder that starts anew after seconds", kAll,
     [](SoundRecording& recording, Random&) {
         for (std::size_t i = kPlace; i < kSamples; ++i) {
             setStamp(recording, i, static_cast<std::uint32_t>(3280000 + 1000 * i));
         }
     },
     "stamps-disagree", Severity::Warning, Outcome::Readable, kAllSamples},
    {"stamps that begin again", kAll,
     [](SoundRecording& recording, Random&) {
         for (std::size_t i = kPlace; i < kSamples; ++i) {
             setStamp(recording, i, static_cast<std::uint32_t>(1000 * (i - kPlace)));
         }
     },
     "stamps-disagree stamp-backwards?", Severity::Warning, Outcome::Readable, kAllSamples},
    {"the line frequency in the place of the rate", kAll,
     [](SoundRecording& recording, Random&) { setRateLine(recording, "50,200"); }, "stamps-disagree", Severity::Warning,
     Outcome::Readable, 0},
    {"a stamp that steps back where there is no rate", kAll,
     [](SoundRecording& recording, Random&) {
         recording.cfgLines.at(recording.rateLine() - 1) = "0";
         setRateLine(recording, "0,200");
         setStamp(recording, kPlace, 2000);
     },
     "stamp-backwards", Severity::Warning, Outcome::Readable, 0},

    // Against the configuration
    {"a value beyond the range of its channel",
     {DataType::Ascii, DataType::Binary},
     setRangeWithout,
     "value-out-of-range",
     Severity::Warning,
     Outcome::Readable,
     0},
    {"a trigger before the start", kAll,
     [](SoundRecording& recording, Random&) {
         recording.cfgLines.at(recording.startLine()) = "21/03/2020,04:00:00.500000";
         recording.cfgLines.at(recording.startLine() + 1) = "21/03/2020,04:00:00.400000";
     },
     "trigger-outside", Severity::Warning, Outcome::Readable, kAllSamples},
    {"a trigger behind the end", kAll,
     [](SoundRecording& recording, Random&) {
         recording.cfgLines.at(recording.startLine()) = "21/03/2020,04:00:00.500000";
         recording.cfgLines.at(recording.startLine() + 1) = "21/03/2020,04:00:01.400000";
     },
     "trigger-outside", Severity::Warning, Outcome::Readable, kAllSamples},
    {"channel numbers out of order", kAll,
     [](SoundRecording& recording, Random&) {
         std::string& line = recording.cfgLines.at(recording.analogLine(1));
         line.replace(0, 1, "7");
     },
     "channel-numbers", Severity::Warning, Outcome::Readable, kAllSamples},
    {"numbers that are all the same, as some recorders have them", kAll,
     [](SoundRecording& recording, Random&) {
         for (std::size_t i = 0; i < kSamples; ++i) {
             setNumber(recording, i, 1);
         }
     },
     "number-jump?", Severity::Note, Outcome::Readable, kAllSamples},
};

struct Case {
    const Row* row;
    DataType type;
};

void PrintTo(const Case& testCase, std::ostream* out) {
    *out << testCase.row->why << ", " << typeWord(testCase.type);
}

std::vector<Case> everyCase() {
    std::vector<Case> cases;
    for (const Row& row : kRows) {
        for (const DataType type : row.types) {
            cases.push_back({&row, type});
        }
    }
    return cases;
}

/// Files of a damaged recording, and of the one that it was before.
struct Damaged {
    explicit Damaged(const Case& testCase) {
        Random random(37111);
        SoundRecording recording = soundRecording(shapeOf(testCase.type), random);
        sound = {recording.cfg(), recording.dat()};
        testCase.row->damage(recording, random);
        files = {recording.cfg(), recording.dat()};
    }

    Written sound;
    Written files;
};

Severity worstOf(const Opened& opened) {
    Severity worst = Severity::Note;
    for (const Finding& finding : opened.findings()) {
        worst = std::max(worst, finding.severity);
    }
    return worst;
}

class Damages : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(Damages, AreFoundAndNothingElseIs) {
    const Row& row = *GetParam().row;
    const Damaged damaged(GetParam());
    const Opened opened = open(bytesToOpen(damaged.files));
    SCOPED_TRACE(text(opened));
    EXPECT_EQ(unlikeCodes(codesOf(opened, Severity::Warning), row.codes), "");
    EXPECT_TRUE(worstOf(opened) == row.severity || std::string(row.codes).find('?') != std::string::npos);
    EXPECT_EQ(opened.readable(), row.outcome == Outcome::Readable);
    EXPECT_EQ(firstBrokenFinding(opened), "");
    EXPECT_EQ(firstBrokenLoad(opened), "");
    const auto openInto = [&](OrvComtradeIntake::Columns& columns, const OrvComtradeIntake::Selection& selection) {
        return open(bytesToOpen(damaged.files), columns, selection);
    };
    EXPECT_EQ(orvtest::firstBrokenReading(opened, openInto), "");
}

TEST_P(Damages, LeaveWhatStandsBeforeThemReadable) {
    const Row& row = *GetParam().row;
    if (row.samples == 0) {
        return;
    }
    const Damaged damaged(GetParam());
    const Opened sound = open(bytesToOpen(damaged.sound));
    const Opened opened = open(bytesToOpen(damaged.files));
    ASSERT_TRUE(opened.readable()) << text(opened);
    Selection selection;
    selection.count = row.samples;
    const Columns found = opened.columns(selection);
    const Columns expected = sound.columns(selection);
    ASSERT_EQ(found.samples, row.samples) << text(opened);
    EXPECT_EQ(firstDifference(found, expected), "") << text(opened);
}

TEST_P(Damages, DoNotKeepAnyNumbersFromBeingReadWhereTheUserSaysSo) {
    const Row& row = *GetParam().row;
    const bool isForced = std::string(row.codes).find("data-mismatch") != std::string::npos &&
                          GetParam().type != DataType::Ascii &&
                          std::string(row.why).find("compressed") == std::string::npos;
    if (!isForced) {
        return;
    }
    const Damaged damaged(GetParam());
    Options options;
    options.acceptsAnyNumbers = true;
    const Opened opened = open(bytesToOpen(damaged.files), options);
    EXPECT_TRUE(opened.readable()) << text(opened);
    EXPECT_EQ(firstBrokenLoad(opened), "");
}

INSTANTIATE_TEST_SUITE_P(Integrity, Damages, testing::ValuesIn(everyCase()));

// What chance makes of noise, a table of one seed does not show.

TEST(Integrity, RandomBytesAreNeverTakenForSamples) {
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        Random random(seed);
        Shape shape = shapeOf(random.oneOf({DataType::Binary, DataType::Binary32, DataType::Float32}));
        shape.analogs = random.count(1, 20);
        shape.statuses = random.count(0, 40);
        shape.samples = random.count(4, 300);
        SoundRecording recording = soundRecording(shape, random);
        setData(recording, noise(recording.dat().size(), random));
        const Written files{recording.cfg(), recording.dat()};
        const Opened opened = open(bytesToOpen(files));
        EXPECT_FALSE(opened.readable()) << "seed " << seed << ": " << text(shape) << "\n" << text(opened);
    }
}

TEST(Integrity, LostRecordIsFoundWhereverItStood) {
    for (std::size_t lost = 1; lost + 2 < kSamples; ++lost) {
        Random random(lost);
        SoundRecording recording = soundRecording(shapeOf(random.oneOf({DataType::Ascii, DataType::Binary})), random);
        recording.records.erase(recording.records.begin() + static_cast<std::ptrdiff_t>(lost));
        const Written files{recording.cfg(), recording.dat()};
        const Opened opened = open(bytesToOpen(files));
        const Finding* const jump = findingOf(opened, "number-jump");
        ASSERT_NE(jump, nullptr) << "record " << lost << "\n" << text(opened);
        EXPECT_EQ(jump->severity, Severity::Error);
        EXPECT_EQ(jump->places, 1U) << "record " << lost << "\n" << text(opened);
    }
}

TEST(Integrity, LostByteIsFoundWhereverItStood) {
    Random random(1);
    const SoundRecording sound = soundRecording(shapeOf(DataType::Binary), random);
    const std::string data = sound.dat();
    const std::size_t length = sound.records.front().size();
    for (std::size_t at = 3 * length; at + 4 * length < data.size(); at += 13) {
        const Written files{sound.cfg(), data.substr(0, at) + data.substr(at + 1)};
        const Opened opened = open(bytesToOpen(files));
        const Finding* const shift = findingOf(opened, "shifted-records");
        ASSERT_NE(shift, nullptr) << "byte " << at << "\n" << text(opened);
        EXPECT_GE(opened.header().samples + 1, at / length) << "byte " << at << "\n" << text(opened);
        EXPECT_LE(opened.header().samples, at / length + 1) << "byte " << at << "\n" << text(opened);
    }
}

TEST(Integrity, ChannelThatStandsStillAmongOthersIsANote) {
    Random random(3);
    SoundRecording recording = soundRecording(shapeOf(DataType::Ascii), random);
    for (std::size_t i = 0; i < recording.records.size(); ++i) {
        setField(recording.records[i], 2, "17");
        setField(recording.records[i], 3, std::to_string(i));
        setField(recording.records[i], 4, std::to_string(i));
    }
    const Written files{recording.cfg(), recording.dat()};
    const Opened opened = open(bytesToOpen(files));
    EXPECT_EQ(codesOf(opened), "constant-channel");
    EXPECT_EQ(opened.findings().front().severity, Severity::Note);
}

TEST(Integrity, ZerosInAllAnalogChannelsAreANote) {
    Random random(4);
    SoundRecording recording = soundRecording(shapeOf(DataType::Binary), random);
    for (std::string& record : recording.records) {
        std::fill(record.begin() + 8, record.begin() + 14, '\0');
    }
    const Written files{recording.cfg(), recording.dat()};
    const Opened opened = open(bytesToOpen(files));
    EXPECT_EQ(codesOf(opened), "all-zero");
    EXPECT_EQ(opened.findings().front().severity, Severity::Note);
}
