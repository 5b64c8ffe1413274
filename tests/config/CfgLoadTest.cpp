#include "Cfg.h"
#include "support/BoundByPermissions.h"
#include "support/FileLimits.h"
#include "support/RecordingBuilder.h"
#include "support/Results.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

using namespace OrvComtradeLib;
using orvtest::BoundByPermissions;
using orvtest::Deadline;
using orvtest::NoFileHandles;
using orvtest::RecordingBuilder;
using orvtest::resultOf;
using orvtest::TempDir;

class CfgLoad : public testing::Test {
protected:
    Enums::LoadResult load(const std::string& text) { return resultOf(cfg.load(dir.write("r.cfg", text))); }
    Enums::LoadResult load(const RecordingBuilder& recording) { return load(recording.cfgText()); }

    static RecordingBuilder recording() {
        return RecordingBuilder().station("S,R,1999").analog("1,Ua,A,,V,1,0,0,-32767,32767,1,1,S").rate("1000,3");
    }

    TempDir dir;
    Cfg cfg;
};

TEST(CfgConstruct, SetsTheDefaults) {
    const Cfg cfg;
    EXPECT_EQ(cfg.stationName, "Station1");
    EXPECT_EQ(cfg.recorderId, "");
    EXPECT_EQ(cfg.revisionYear, 1999);
    EXPECT_EQ(cfg.totalChannelCount, 0);
    EXPECT_EQ(cfg.analogChannelCount, 0);
    EXPECT_EQ(cfg.binaryChannelCount, 0);
    EXPECT_EQ(cfg.lineFrequency, 50.0);
    EXPECT_TRUE(cfg.analogChannelConfigs.empty());
    EXPECT_TRUE(cfg.binaryChannelConfigs.empty());
    EXPECT_TRUE(cfg.samplingRates.empty());
    EXPECT_EQ(cfg.lastSampleNumber, 0U);
    EXPECT_TRUE(cfg.samplingRateKnown);
    EXPECT_EQ(cfg.dataFileType, Enums::Ascii);
    EXPECT_EQ(cfg.analogValueLength, 2U);
    EXPECT_EQ(cfg.analogValuesLength, 0U);
    EXPECT_EQ(cfg.statusWordCount, 0U);
    EXPECT_EQ(cfg.statusWordsLength, 0U);
    EXPECT_EQ(cfg.recordLength, 0U);
    EXPECT_EQ(cfg.timeMultiplier, 1.0);
    EXPECT_EQ(cfg.currentLine, "");
    EXPECT_EQ(cfg.duration, 0.0);
}

TEST_F(CfgLoad, ReadsEveryLine) {
    ASSERT_EQ(load("Substation 7,DFR-2,2013\n"
                   "3,2A,1D\n"
                   "11,Ua,A,Bus 1,kV,0.5,1,100,-10,10,1,1,S\n"
                   "12,Ia,A,Bus 1,A,2,0,0,-20,20,1,1,S\n"
                   "21,Trip,,52A,1\n"
                   "60\n"
                   "2\n"
                   "1200,600\n"
                   "600,900\n"
                   "01/02/2003,04:05:06.000000\n"
                   "01/02/2003,04:05:06.100000\n"
                   "BINARY\n"
                   "2\n"),
              Enums::CfgLoaded);
    EXPECT_EQ(cfg.stationName, "Substation 7");
    EXPECT_EQ(cfg.recorderId, "DFR-2");
    EXPECT_EQ(cfg.revisionYear, 2013);
    EXPECT_EQ(cfg.totalChannelCount, 3);
    EXPECT_EQ(cfg.analogChannelCount, 2);
    EXPECT_EQ(cfg.binaryChannelCount, 1);
    EXPECT_EQ(cfg.lineFrequency, 60.0);
    ASSERT_EQ(cfg.analogChannelConfigs.size(), 2U);
    EXPECT_EQ(cfg.analogChannelConfigs[0].index, 0);
    EXPECT_EQ(cfg.analogChannelConfigs[0].channelId, "Ua");
    EXPECT_EQ(cfg.analogChannelConfigs[0].unit, "kV");
    EXPECT_EQ(cfg.analogChannelConfigs[1].index, 1);
    EXPECT_EQ(cfg.analogChannelConfigs[1].channelId, "Ia");
    EXPECT_EQ(cfg.analogChannelConfigs[1].max, 20.0);
    ASSERT_EQ(cfg.binaryChannelConfigs.size(), 1U);
    EXPECT_EQ(cfg.binaryChannelConfigs[0].index, 0);
    EXPECT_EQ(cfg.binaryChannelConfigs[0].channelId, "Trip");
    EXPECT_EQ(cfg.binaryChannelConfigs[0].circuitComponent, "52A");
    EXPECT_EQ(cfg.binaryChannelConfigs[0].normalState, 1);
    ASSERT_EQ(cfg.samplingRates.size(), 2U);
    EXPECT_EQ(cfg.samplingRates[0].rate, 1200.0);
    EXPECT_EQ(cfg.samplingRates[0].endSample, 600U);
    EXPECT_EQ(cfg.samplingRates[1].rate, 600.0);
    EXPECT_EQ(cfg.samplingRates[1].endSample, 900U);
    EXPECT_EQ(cfg.lastSampleNumber, 900U);
    EXPECT_TRUE(cfg.samplingRateKnown);
    EXPECT_EQ(cfg.dataFileType, Enums::Binary);
    EXPECT_EQ(cfg.analogValueLength, 2U);
    EXPECT_EQ(cfg.analogValuesLength, 4U);
    EXPECT_EQ(cfg.statusWordCount, 1U);
    EXPECT_EQ(cfg.statusWordsLength, 2U);
    EXPECT_EQ(cfg.recordLength, 14U);
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.currentLine, "2");
    EXPECT_EQ(cfg.duration, 1.9966666666666666);
}

TEST_F(CfgLoad, LinesBehindTheTimeMultiplierAreNotRead) {
    ASSERT_EQ(load(recording().multiplier("3").extraLine("").extraLine("-5h30,x").extraLine("99,99,99")),
              Enums::CfgLoaded);
    EXPECT_EQ(cfg.timeMultiplier, 3.0);
    EXPECT_EQ(cfg.currentLine, "3");
}

// The file

TEST_F(CfgLoad, MissingFileIsNotFoundAndChangesNothing) {
    cfg.duration = 9.0;
    cfg.timeMultiplier = 2.0;
    cfg.currentLine = "kept";
    EXPECT_EQ(resultOf(cfg.load(dir.file("absent.cfg"))), Enums::CfgFileNotFound);
    EXPECT_EQ(resultOf(cfg.load("")), Enums::CfgFileNotFound);
    EXPECT_EQ(cfg.stationName, "Station1");
    EXPECT_EQ(cfg.duration, 9.0);
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.currentLine, "kept");
}

TEST_F(CfgLoad, FileThatDoesNotOpenIsLoadErrorAndChangesNothing) {
    const std::string path = dir.write("r.cfg", recording().cfgText());
    cfg.duration = 9.0;
    cfg.timeMultiplier = 2.0;
    cfg.currentLine = "kept";
    Enums::LoadResult result = resultOf(-1);
    {
        const NoFileHandles none;
        result = resultOf(cfg.load(path));
    }
    EXPECT_EQ(result, Enums::CfgLoadError);
    EXPECT_EQ(cfg.stationName, "Station1");
    EXPECT_EQ(cfg.duration, 9.0);
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.currentLine, "kept");
}

TEST_F(CfgLoad, UnreadableFileIsLoadError) {
    const std::string path = dir.write("r.cfg", recording().cfgText());
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    const BoundByPermissions bound;
    EXPECT_EQ(resultOf(cfg.load(path)), Enums::CfgLoadError);
}

TEST_F(CfgLoad, DirectoryIsLoadErrorWithoutATimeMultiplier) {
    cfg.timeMultiplier = 2.0;
    cfg.currentLine = "replaced";
    EXPECT_EQ(resultOf(cfg.load(dir.path())), Enums::CfgLoadError);
    EXPECT_EQ(cfg.stationName, "Station1");
    EXPECT_EQ(cfg.currentLine, "");
    EXPECT_EQ(cfg.timeMultiplier, 1.0);
    EXPECT_EQ(cfg.duration, -1.0);
}

TEST_F(CfgLoad, PipeIsNotFoundAndNotWaitedFor) {
    const Deadline deadline(20);
    ASSERT_EQ(mkfifo(dir.file("pipe.cfg").c_str(), 0600), 0);
    EXPECT_EQ(resultOf(cfg.load(dir.file("pipe.cfg"))), Enums::CfgFileNotFound);
}

TEST_F(CfgLoad, DeviceIsNotFound) {
    const Deadline deadline(20);
    EXPECT_EQ(resultOf(cfg.load("/dev/zero")), Enums::CfgFileNotFound);
    EXPECT_EQ(resultOf(cfg.load("/dev/null")), Enums::CfgFileNotFound);
}

TEST_F(CfgLoad, OpensAUtf8Path) {
    // "zapis" in Cyrillic letters
    const std::string path = dir.write("\xD0\xB7\xD0\xB0\xD0\xBF\xD0\xB8\xD1\x81\xD1\x8C 1.cfg", recording().cfgText());
    EXPECT_EQ(resultOf(cfg.load(path)), Enums::CfgLoaded);
}

// Station line

TEST_F(CfgLoad, StationLineOfOneFieldSetsOnlyTheName) {
    ASSERT_EQ(load(recording().station("S")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.stationName, "S");
    EXPECT_EQ(cfg.recorderId, "");
    EXPECT_EQ(cfg.revisionYear, 1999);
}

TEST_F(CfgLoad, ShorterStationLineOfASecondLoadKeepsTheOtherFields) {
    ASSERT_EQ(load(recording().station("First,Rec,2013")), Enums::CfgLoaded);
    ASSERT_EQ(load(recording().station("Second")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.stationName, "Second");
    EXPECT_EQ(cfg.recorderId, "Rec");
    EXPECT_EQ(cfg.revisionYear, 2013);
    ASSERT_EQ(load(recording().station("Third,Other")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.recorderId, "Other");
    EXPECT_EQ(cfg.revisionYear, 2013);
}

TEST_F(CfgLoad, StationLineForms) {
    struct {
        const char* why;
        const char* line;
        const char* stationName;
        const char* recorderId;
        int revisionYear;
    } const rows[] = {
        {"further fields are ignored", "S,R,1991,x,y", "S", "R", 1991},
        {"nothing is trimmed", " S , R , 2013 ", " S ", " R ", 2013},
        {"empty fields", ",,1991", "", "", 1991},
        {"trailing comma gives no field", "S,R,", "S", "R", 1999},
        {"only a comma", ",", "", "", 1999},
        {"year stops at the first non-digit", "S,R,2013rev", "S", "R", 2013},
        {"negative year", "S,R,-5", "S", "R", -5},
    };
    for (const auto& row : rows) {
        cfg = Cfg();
        EXPECT_EQ(load(recording().station(row.line)), Enums::CfgLoaded) << row.why;
        EXPECT_EQ(cfg.stationName, row.stationName) << row.why;
        EXPECT_EQ(cfg.recorderId, row.recorderId) << row.why;
        EXPECT_EQ(cfg.revisionYear, row.revisionYear) << row.why;
    }
}

TEST_F(CfgLoad, StationLineKeepsTheBytesOfTheFile) {
    // A byte order mark, and Cyrillic text in the Windows code page
    const std::string station = "\xEF\xBB\xBF\xCF\xF1 \xD2\xEE\xEA \xF4\xE0\xE7\xFB";
    ASSERT_EQ(load(recording().station(station + ",\xD0\xE0\xF1,1999")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.stationName, station);
    EXPECT_EQ(cfg.recorderId, "\xD0\xE0\xF1");
}

TEST_F(CfgLoad, RevisionYearIsPassedToTheChannelRecords) {
    RecordingBuilder file = RecordingBuilder().station("S,R,1991").analog("1,Ua,A,,kV,1,0,0,0,0,110,0.1,P");
    ASSERT_EQ(load(file.status("1,Trip,1").rate("1000,3")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.analogChannelConfigs.at(0).primary, 1.0);
    EXPECT_TRUE(cfg.analogChannelConfigs.at(0).secondaryValues);
    EXPECT_EQ(cfg.binaryChannelConfigs.at(0).normalState, 1);
    ASSERT_EQ(load(file.station("S,R,1999")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.analogChannelConfigs.at(0).primary, 110.0);
    EXPECT_FALSE(cfg.analogChannelConfigs.at(0).secondaryValues);
    EXPECT_EQ(cfg.binaryChannelConfigs.at(0).phase, "1");
}

TEST_F(CfgLoad, RevisionYearThatDoesNotConvertIsLoadErrorWithoutTheTimeMultiplierStep) {
    for (const char* const line : {"S,R,x", "S,R, ", "S,R,99999999999", "S,R,,5"}) {
        cfg = Cfg();
        cfg.timeMultiplier = 5.0;
        cfg.duration = 9.0;
        EXPECT_EQ(load(std::string(line) + "\n7\n"), Enums::CfgLoadError) << line;
        EXPECT_EQ(cfg.stationName, "S") << line;
        EXPECT_EQ(cfg.recorderId, "R") << line;
        EXPECT_EQ(cfg.revisionYear, 1999) << line;
        EXPECT_EQ(cfg.timeMultiplier, 5.0) << line;
        EXPECT_EQ(cfg.duration, 9.0) << line;
        EXPECT_EQ(cfg.currentLine, line);
    }
}

// Counts line

TEST_F(CfgLoad, CountsLineForms) {
    struct {
        const char* why;
        const char* counts;
        Enums::LoadResult result;
    } const rows[] = {
        {"letters", "3,2A,1D", Enums::CfgLoaded},
        {"no letters", "3,2,1", Enums::CfgLoaded},
        {"other letters", "3,2x,1y", Enums::CfgLoaded},
        {"letters exchanged", "3,2D,1A", Enums::CfgLoaded},
        {"blanks in front", " 3, 2A,\t1D", Enums::CfgLoaded},
        {"plus signs", "+3,+2A,+1D", Enums::CfgLoaded},
        {"further fields", "3,2A,1D,9", Enums::CfgLoaded},
        {"sum too small", "4,2A,1D", Enums::CfgLoadError},
        {"sum too large", "2,2A,1D", Enums::CfgLoadError},
        {"total zero", "0,0A,0D", Enums::CfgLoadError},
        {"total zero, counts not", "0,2A,1D", Enums::CfgLoadError},
        {"no number", "x,2A,1D", Enums::CfgLoadError},
        {"letter first", "3,A2,1D", Enums::CfgLoadError},
        {"no status count", "3,3A,", Enums::CfgLoadError},
        {"empty analog count", "3,,3D", Enums::CfgLoadError},
        {"total out of range", "2147483648,2A,1D", Enums::CfgLoadError},
        {"count out of range", "3,2A,-2147483649D", Enums::CfgLoadError},
    };
    for (const auto& row : rows) {
        cfg = Cfg();
        RecordingBuilder file = recording().analog("2,Ub,B,,V,1,0,0,0,0,1,1,S").status("1,Trip,,,0");
        EXPECT_EQ(load(file.counts(row.counts)), row.result) << row.why;
        if (row.result == Enums::CfgLoaded) {
            EXPECT_EQ(cfg.totalChannelCount, 3) << row.why;
            EXPECT_EQ(cfg.analogChannelCount, 2) << row.why;
            EXPECT_EQ(cfg.binaryChannelCount, 1) << row.why;
            EXPECT_EQ(cfg.analogChannelConfigs.size(), 2U) << row.why;
            EXPECT_EQ(cfg.binaryChannelConfigs.size(), 1U) << row.why;
        }
    }
}

TEST_F(CfgLoad, ChannelsOfOneKindAreEnough) {
    ASSERT_EQ(load(RecordingBuilder().status("1,Trip,,,0").rate("1000,3")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.analogChannelConfigs.size(), 0U);
    EXPECT_EQ(cfg.binaryChannelConfigs.size(), 1U);
    ASSERT_EQ(load(recording()), Enums::CfgLoaded);
    EXPECT_EQ(cfg.analogChannelConfigs.size(), 1U);
    EXPECT_EQ(cfg.binaryChannelConfigs.size(), 0U);
}

/// A configuration that has loaded a recording of one analog and one status channel already, then reads another file.
class CfgReload : public CfgLoad {
protected:
    CfgReload() {
        EXPECT_EQ(load("First,Rec1,2013\n"
                       "2,1A,1D\n"
                       "1,Ia,,,A,1,0,0,0,0,1,1,S\n"
                       "1,Trip,,,1\n"
                       "60\n"
                       "1\n"
                       "1000,4\n"
                       "start\n"
                       "trigger\n"
                       "FLOAT32\n"
                       "2\n"),
                  Enums::CfgLoaded);
        cfg.duration = 9.0;
    }

    void expectFirstHeader() const {
        EXPECT_EQ(cfg.stationName, "First");
        EXPECT_EQ(cfg.recorderId, "Rec1");
        EXPECT_EQ(cfg.revisionYear, 2013);
    }

    void expectFirstCounts() const {
        EXPECT_EQ(cfg.totalChannelCount, 2);
        EXPECT_EQ(cfg.analogChannelCount, 1);
        EXPECT_EQ(cfg.binaryChannelCount, 1);
    }

    void expectFirstChannels() const {
        ASSERT_EQ(cfg.analogChannelConfigs.size(), 1U);
        EXPECT_EQ(cfg.analogChannelConfigs[0].channelId, "Ia");
        expectFirstStatusChannel();
    }

    void expectFirstStatusChannel() const {
        ASSERT_EQ(cfg.binaryChannelConfigs.size(), 1U);
        EXPECT_EQ(cfg.binaryChannelConfigs[0].channelId, "Trip");
    }

    void expectFirstRates() const {
        ASSERT_EQ(cfg.samplingRates.size(), 1U);
        EXPECT_EQ(cfg.samplingRates[0].rate, 1000.0);
        EXPECT_EQ(cfg.samplingRates[0].endSample, 4U);
        EXPECT_EQ(cfg.lastSampleNumber, 4U);
        EXPECT_TRUE(cfg.samplingRateKnown);
    }

    void expectFirstLayout() const {
        EXPECT_EQ(cfg.dataFileType, Enums::Float32);
        EXPECT_EQ(cfg.analogValueLength, 4U);
        EXPECT_EQ(cfg.analogValuesLength, 4U);
        EXPECT_EQ(cfg.statusWordCount, 1U);
        EXPECT_EQ(cfg.statusWordsLength, 2U);
        EXPECT_EQ(cfg.recordLength, 14U);
    }
};

// First step

TEST_F(CfgReload, EmptyFileKeepsEverythingButTheDuration) {
    EXPECT_EQ(load(""), Enums::CfgLoadError);
    expectFirstHeader();
    expectFirstCounts();
    expectFirstChannels();
    EXPECT_EQ(cfg.lineFrequency, 60.0);
    expectFirstRates();
    expectFirstLayout();
    EXPECT_EQ(cfg.currentLine, "");
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.duration, 0.006);
}

TEST_F(CfgReload, BlankStationLineLeavesTheNextLineToTheTimeMultiplier) {
    EXPECT_EQ(load("\n7\n"), Enums::CfgLoadError);
    expectFirstHeader();
    expectFirstCounts();
    expectFirstChannels();
    expectFirstRates();
    expectFirstLayout();
    EXPECT_EQ(cfg.currentLine, "7");
    EXPECT_EQ(cfg.timeMultiplier, 7.0);
    EXPECT_EQ(cfg.duration, 0.021);
}

TEST_F(CfgReload, BlankStationLineBeforeTextKeepsTimeMultiplierAndDuration) {
    EXPECT_EQ(load("\nStation\n"), Enums::CfgLoadError);
    expectFirstHeader();
    EXPECT_EQ(cfg.currentLine, "Station");
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.duration, 9.0);
}

// Second step

TEST_F(CfgReload, MissingCountsLineTakesOnlyTheHeader) {
    EXPECT_EQ(load("Second,Rec2,1999\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.stationName, "Second");
    EXPECT_EQ(cfg.recorderId, "Rec2");
    EXPECT_EQ(cfg.revisionYear, 1999);
    expectFirstCounts();
    expectFirstChannels();
    expectFirstRates();
    EXPECT_EQ(cfg.currentLine, "");
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.duration, 0.006);
}

TEST_F(CfgReload, TotalOfZeroKeepsTheOtherCountsAndTheChannels) {
    EXPECT_EQ(load("Second\n0,5A,x\n7\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.totalChannelCount, 0);
    EXPECT_EQ(cfg.analogChannelCount, 1);
    EXPECT_EQ(cfg.binaryChannelCount, 1);
    expectFirstChannels();
    EXPECT_EQ(cfg.timeMultiplier, 7.0);
    EXPECT_EQ(cfg.duration, 0.021);
}

TEST_F(CfgReload, CountsThatDoNotAddUpAreStoredAndFailTheStep) {
    EXPECT_EQ(load("Second\n4,2A,1D\n7\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.totalChannelCount, 4);
    EXPECT_EQ(cfg.analogChannelCount, 2);
    EXPECT_EQ(cfg.binaryChannelCount, 1);
    expectFirstChannels();
    EXPECT_EQ(cfg.timeMultiplier, 7.0);
    EXPECT_EQ(cfg.duration, 0.021);
}

TEST_F(CfgReload, CountsLineOfTooFewFieldsFailsTheStep) {
    for (const char* const counts : {"1", "1,", "1,1A", "1,1A,"}) {
        EXPECT_EQ(load(std::string("Second\n") + counts + "\n7\n"), Enums::CfgLoadError) << counts;
        EXPECT_EQ(cfg.totalChannelCount, 1) << counts;
        expectFirstChannels();
        EXPECT_EQ(cfg.currentLine, "7") << counts;
        EXPECT_EQ(cfg.timeMultiplier, 7.0) << counts;
        cfg.timeMultiplier = 2.0;
    }
}

TEST_F(CfgReload, CountsLineOfOneFieldIsStillConverted) {
    EXPECT_EQ(load("Second\nx\n7\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.currentLine, "x");
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.duration, 9.0);
}

TEST_F(CfgReload, CountThatDoesNotConvertKeepsItselfAndTheCountsBehind) {
    EXPECT_EQ(load("Second\n5,A,5D\n7\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.totalChannelCount, 5);
    EXPECT_EQ(cfg.analogChannelCount, 1);
    EXPECT_EQ(cfg.binaryChannelCount, 1);
    EXPECT_EQ(cfg.currentLine, "5,A,5D");
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.duration, 9.0);
    EXPECT_EQ(load("Second\n6,3A,D\n7\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.totalChannelCount, 6);
    EXPECT_EQ(cfg.analogChannelCount, 3);
    EXPECT_EQ(cfg.binaryChannelCount, 1);
    EXPECT_EQ(load("Second\nx,3A,3D\n7\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.totalChannelCount, 6);
}

// Third and fourth step

TEST_F(CfgReload, MissingAnalogLineKeepsTheRecordsReadBefore) {
    EXPECT_EQ(load("Second\n3,3A,0D\n1,Ua,A,,V,1,0,0,0,0\n2,Ub,B,,V,1,0,0,0,0\n"), Enums::CfgLoadError);
    ASSERT_EQ(cfg.analogChannelConfigs.size(), 2U);
    EXPECT_EQ(cfg.analogChannelConfigs[0].channelId, "Ua");
    EXPECT_EQ(cfg.analogChannelConfigs[1].channelId, "Ub");
    EXPECT_EQ(cfg.analogChannelConfigs[1].index, 1);
    expectFirstStatusChannel();
    EXPECT_EQ(cfg.lineFrequency, 60.0);
    expectFirstRates();
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.duration, 0.006);
}

TEST_F(CfgReload, BlankAnalogLineFailsTheStep) {
    EXPECT_EQ(load("Second\n2,2A,0D\n1,Ua,A,,V,1,0,0,0,0\n\n7\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.analogChannelConfigs.size(), 1U);
    expectFirstStatusChannel();
    EXPECT_EQ(cfg.timeMultiplier, 7.0);
    EXPECT_EQ(cfg.duration, 0.021);
}

TEST_F(CfgReload, AnalogLineThatDoesNotParseIsAnException) {
    for (const char* const line : {"2,Ub,B,,V,x,0,0,0,0", "2,Ub,B,,V,1,0,0,0", "2", "2,Ub,B,,V,1e999,0,0,0,0"}) {
        cfg.timeMultiplier = 5.0;
        cfg.duration = 9.0;
        EXPECT_EQ(load(std::string("Second\n2,2A,0D\n1,Ua,A,,V,1,0,0,0,0\n") + line + "\n7\n"), Enums::CfgLoadError)
            << line;
        EXPECT_EQ(cfg.analogChannelConfigs.size(), 1U) << line;
        expectFirstStatusChannel();
        EXPECT_EQ(cfg.currentLine, line);
        EXPECT_EQ(cfg.timeMultiplier, 5.0) << line;
        EXPECT_EQ(cfg.duration, 9.0) << line;
    }
}

TEST_F(CfgReload, BlankStatusLineKeepsTheRecordsReadBefore) {
    EXPECT_EQ(load("Second\n3,1A,2D\n1,Ua,A,,V,1,0,0,0,0\n1,Close\n\n7\n"), Enums::CfgLoadError);
    ASSERT_EQ(cfg.analogChannelConfigs.size(), 1U);
    EXPECT_EQ(cfg.analogChannelConfigs[0].channelId, "Ua");
    ASSERT_EQ(cfg.binaryChannelConfigs.size(), 1U);
    EXPECT_EQ(cfg.binaryChannelConfigs[0].channelId, "Close");
    EXPECT_EQ(cfg.lineFrequency, 60.0);
    EXPECT_EQ(cfg.timeMultiplier, 7.0);
    EXPECT_EQ(cfg.duration, 0.021);
}

TEST_F(CfgReload, MissingStatusLineFailsTheStep) {
    EXPECT_EQ(load("Second\n1,0A,1D\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.analogChannelConfigs.size(), 0U);
    EXPECT_EQ(cfg.binaryChannelConfigs.size(), 0U);
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.duration, 0.006);
}

TEST_F(CfgReload, StatusLineThatDoesNotParseIsAnException) {
    for (const char* const line : {"1", "1,Close,,,x", "1,Close,,,99999999999"}) {
        cfg.timeMultiplier = 5.0;
        cfg.duration = 9.0;
        EXPECT_EQ(load(std::string("Second\n1,0A,1D\n") + line + "\n7\n"), Enums::CfgLoadError) << line;
        EXPECT_EQ(cfg.binaryChannelConfigs.size(), 0U) << line;
        EXPECT_EQ(cfg.currentLine, line);
        EXPECT_EQ(cfg.timeMultiplier, 5.0) << line;
        EXPECT_EQ(cfg.duration, 9.0) << line;
    }
}

// Fifth step

TEST_F(CfgReload, FrequencyThatDoesNotConvertKeepsTheFrequency) {
    for (const char* const line : {"x", "Hz 50", "\r", "1e999"}) {
        EXPECT_EQ(load(std::string("Second\n1,0A,1D\n1,Close\n") + line + "\n7\n"), Enums::CfgLoadError) << line;
        ASSERT_EQ(cfg.binaryChannelConfigs.size(), 1U) << line;
        EXPECT_EQ(cfg.binaryChannelConfigs[0].channelId, "Close") << line;
        EXPECT_EQ(cfg.lineFrequency, 60.0) << line;
        EXPECT_EQ(cfg.currentLine, line);
        EXPECT_EQ(cfg.timeMultiplier, 2.0) << line;
        EXPECT_EQ(cfg.duration, 9.0) << line;
    }
}

TEST_F(CfgReload, BlankOrMissingFrequencyFailsTheStep) {
    EXPECT_EQ(load("Second\n1,0A,1D\n1,Close\n\n7\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.lineFrequency, 60.0);
    expectFirstRates();
    EXPECT_EQ(cfg.timeMultiplier, 7.0);
    EXPECT_EQ(cfg.duration, 0.021);
    EXPECT_EQ(load("Second\n1,0A,1D\n1,Close\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.lineFrequency, 60.0);
    EXPECT_EQ(cfg.timeMultiplier, 7.0);
}

// Sixth step

TEST_F(CfgReload, BlankRateCountForgetsTheLastSampleNumber) {
    EXPECT_EQ(load("Second\n1,0A,1D\n1,Close\n50\n\n7\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.lineFrequency, 50.0);
    EXPECT_EQ(cfg.samplingRates.size(), 1U);
    EXPECT_EQ(cfg.lastSampleNumber, 0U);
    EXPECT_TRUE(cfg.samplingRateKnown);
    EXPECT_EQ(cfg.timeMultiplier, 7.0);
    // Index 2^64 - 1: the whole first segment, and as much again behind it
    EXPECT_EQ(cfg.duration, 0.056);
}

TEST_F(CfgReload, RateCountThatDoesNotConvertClearsTheDuration) {
    for (const char* const line : {"x", "2147483648", "-1", "-2147483648"}) {
        cfg.duration = 9.0;
        cfg.lastSampleNumber = 4;
        EXPECT_EQ(load(std::string("Second\n1,0A,1D\n1,Close\n50\n") + line + "\n7\n"), Enums::CfgLoadError) << line;
        EXPECT_EQ(cfg.samplingRates.size(), 1U) << line;
        EXPECT_EQ(cfg.lastSampleNumber, 0U) << line;
        EXPECT_EQ(cfg.duration, 0.0) << line;
        EXPECT_EQ(cfg.currentLine, line);
        EXPECT_EQ(cfg.timeMultiplier, 2.0) << line;
    }
}

TEST_F(CfgReload, BlankRateLineKeepsTheRatesReadBefore) {
    EXPECT_EQ(load("Second\n1,0A,1D\n1,Close\n50\n2\n0,9\n\n7\n"), Enums::CfgLoadError);
    ASSERT_EQ(cfg.samplingRates.size(), 2U);
    EXPECT_EQ(cfg.samplingRates[1].rate, 0.0);
    EXPECT_EQ(cfg.samplingRates[1].endSample, 9U);
    EXPECT_EQ(cfg.lastSampleNumber, 0U);
    EXPECT_TRUE(cfg.samplingRateKnown);
    EXPECT_EQ(cfg.timeMultiplier, 7.0);
    EXPECT_EQ(cfg.duration, -1.0);
}

TEST_F(CfgReload, MissingRateLineFailsTheStep) {
    EXPECT_EQ(load("Second\n1,0A,1D\n1,Close\n50\n0\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.samplingRates.size(), 1U);
    EXPECT_EQ(cfg.lastSampleNumber, 0U);
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.duration, 0.016);
}

TEST_F(CfgReload, RateLineOfTooFewFieldsFailsTheStep) {
    for (const char* const line : {"500", "500,", "x", ","}) {
        cfg.timeMultiplier = 2.0;
        EXPECT_EQ(load(std::string("Second\n1,0A,1D\n1,Close\n50\n1\n") + line + "\n7\n"), Enums::CfgLoadError) << line;
        EXPECT_EQ(cfg.samplingRates.size(), 1U) << line;
        EXPECT_EQ(cfg.currentLine, "7") << line;
        EXPECT_EQ(cfg.timeMultiplier, 7.0) << line;
        EXPECT_EQ(cfg.duration, 0.056) << line;
    }
}

TEST_F(CfgReload, RateLineThatDoesNotConvertIsAnException) {
    for (const char* const line : {"x,5", "500,x", "1e999,5", "500,9223372036854775808", ",5"}) {
        cfg.duration = 9.0;
        EXPECT_EQ(load(std::string("Second\n1,0A,1D\n1,Close\n50\n1\n") + line + "\n7\n"), Enums::CfgLoadError) << line;
        EXPECT_EQ(cfg.samplingRates.size(), 1U) << line;
        EXPECT_EQ(cfg.lastSampleNumber, 0U) << line;
        EXPECT_EQ(cfg.currentLine, line);
        EXPECT_EQ(cfg.timeMultiplier, 2.0) << line;
        EXPECT_EQ(cfg.duration, 0.0) << line;
    }
}

// Seventh and eighth step

TEST_F(CfgReload, MissingTriggerTimeKeepsTheDataFileType) {
    EXPECT_EQ(load("Second\n1,0A,1D\n1,Close\n50\n1\n500,6\nstart\n"), Enums::CfgLoadError);
    ASSERT_EQ(cfg.samplingRates.size(), 2U);
    EXPECT_EQ(cfg.lastSampleNumber, 6U);
    expectFirstLayout();
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    // Index 5: 4 samples at 1000 Hz and 1 at 500 Hz, twice as long
    EXPECT_EQ(cfg.duration, 0.012);
}

TEST_F(CfgReload, BlankStartOrTriggerTimeFailsTheStep) {
    for (const char* const lines : {"\n", "start\n\n"}) {
        cfg.timeMultiplier = 2.0;
        EXPECT_EQ(load(std::string("Second\n1,0A,1D\n1,Close\n50\n1\n500,6\n") + lines + "7\n"), Enums::CfgLoadError)
            << lines;
        expectFirstLayout();
        EXPECT_EQ(cfg.currentLine, "7") << lines;
        EXPECT_EQ(cfg.timeMultiplier, 7.0) << lines;
    }
}

TEST_F(CfgReload, BlankOrMissingTypeKeepsTheDataFileType) {
    EXPECT_EQ(load("Second\n1,0A,1D\n1,Close\n50\n1\n500,6\nstart\ntrigger\n\n7\n"), Enums::CfgLoadError);
    expectFirstLayout();
    EXPECT_EQ(cfg.timeMultiplier, 7.0);
    EXPECT_EQ(load("Second\n1,0A,1D\n1,Close\n50\n1\n500,6\nstart\ntrigger\n"), Enums::CfgLoadError);
    expectFirstLayout();
    EXPECT_EQ(cfg.currentLine, "");
    EXPECT_EQ(cfg.timeMultiplier, 7.0);
}

TEST_F(CfgReload, AsciiTypeKeepsTheByteLengths) {
    ASSERT_EQ(load("Second\n3,0A,3D\n1,X\n2,Y\n3,Z\n50\n1\n500,6\nstart\ntrigger\nASCII\n1\n"), Enums::CfgLoaded);
    EXPECT_EQ(cfg.dataFileType, Enums::Ascii);
    EXPECT_EQ(cfg.analogValueLength, 4U);
    EXPECT_EQ(cfg.analogValuesLength, 4U);
    EXPECT_EQ(cfg.statusWordCount, 1U);
    EXPECT_EQ(cfg.statusWordsLength, 2U);
    EXPECT_EQ(cfg.recordLength, 14U);
}

TEST_F(CfgReload, BinaryTypeComputesTheByteLengthsAnew) {
    ASSERT_EQ(load("Second\n1,0A,1D\n1,X\n50\n1\n500,6\nstart\ntrigger\nbinary\n1\n"), Enums::CfgLoaded);
    EXPECT_EQ(cfg.dataFileType, Enums::Binary);
    EXPECT_EQ(cfg.analogValueLength, 2U);
    EXPECT_EQ(cfg.analogValuesLength, 0U);
    EXPECT_EQ(cfg.recordLength, 10U);
}

TEST_F(CfgReload, SecondLoadReplacesTheChannelsAndAppendsTheRates) {
    ASSERT_EQ(
        load("Second\n3,2A,1D\n1,Ua,A,,V,1,0,0,0,0\n2,Ub,B,,V,1,0,0,0,0\n1,Close\n50\n1\n500,6\ns\nt\nASCII\n1\n"),
        Enums::CfgLoaded);
    ASSERT_EQ(cfg.analogChannelConfigs.size(), 2U);
    EXPECT_EQ(cfg.analogChannelConfigs[0].channelId, "Ua");
    ASSERT_EQ(cfg.binaryChannelConfigs.size(), 1U);
    EXPECT_EQ(cfg.binaryChannelConfigs[0].channelId, "Close");
    ASSERT_EQ(cfg.samplingRates.size(), 2U);
    EXPECT_EQ(cfg.samplingRates[0].endSample, 4U);
    EXPECT_EQ(cfg.samplingRates[1].endSample, 6U);
    EXPECT_EQ(cfg.lastSampleNumber, 6U);
}

TEST_F(CfgReload, SameFileTwiceDoublesTheRates) {
    const RecordingBuilder file = recording().rate("2000,5");
    cfg = Cfg();
    ASSERT_EQ(load(file), Enums::CfgLoaded);
    ASSERT_EQ(cfg.samplingRates.size(), 2U);
    ASSERT_EQ(load(file), Enums::CfgLoaded);
    ASSERT_EQ(cfg.samplingRates.size(), 4U);
    EXPECT_EQ(cfg.samplingRates[2].rate, 1000.0);
    EXPECT_EQ(cfg.samplingRates[3].rate, 2000.0);
    EXPECT_EQ(cfg.lastSampleNumber, 5U);
    EXPECT_EQ(cfg.analogChannelConfigs.size(), 1U);
}

// Huge and negative counts

TEST_F(CfgLoad, CountsBeyondTheLinesOfTheFileFailQuicklyAndReserveNothing) {
    struct {
        const char* why;
        const char* counts;
    } const rows[] = {
        {"as many analog channels as an int can hold", "2147483647,2147483647A,0D"},
        {"as many status channels as an int can hold", "2147483647,0A,2147483647D"},
        {"a negative count is a huge one", "-1,-1A,0D"},
        {"a negative status count", "-1,0A,-1D"},
        {"the smallest count", "-2147483648,-2147483648A,0D"},
    };
    for (const auto& row : rows) {
        cfg = Cfg();
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(load(std::string("S\n") + row.counts + "\n1,X,,,1,1,0,0,0,0\n2,Y,,,1,1,0,0,0,0\n"),
                  Enums::CfgLoadError)
            << row.why;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << row.why;
        EXPECT_EQ(cfg.analogChannelConfigs.size() + cfg.binaryChannelConfigs.size(), 2U) << row.why;
        EXPECT_LT(cfg.analogChannelConfigs.capacity() + cfg.binaryChannelConfigs.capacity(), 1000U) << row.why;
    }
}

TEST_F(CfgLoad, NegativeCountWithTheRightSumFails) {
    EXPECT_EQ(load(recording().counts("0,1A,-1D")), Enums::CfgLoadError);
    EXPECT_EQ(load(recording().counts("1,2A,-1D")), Enums::CfgLoadError);
    EXPECT_EQ(load(recording().counts("-2147483648,2147483647A,1D")), Enums::CfgLoadError);
}

TEST_F(CfgLoad, RateCountBeyondTheLinesOfTheFileFailsQuickly) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(load(recording().rateCount("2147483647")), Enums::CfgLoadError);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

// Channel lines

TEST_F(CfgLoad, ChannelLinesAreConvertedToUtf8) {
    // "Tok fazy A linii" in Cyrillic letters: Windows code page, DOS code page, UTF-8
    const std::string windows = "\xD2\xEE\xEA \xF4\xE0\xE7\xFB \xC0 \xEB\xE8\xED\xE8\xE8";
    const std::string dos = "\x92\xAE\xAA \xE4\xA0\xA7\xEB \x80 \xAB\xA8\xAD\xA8\xA8";
    const std::string utf8 = "\xD0\xA2\xD0\xBE\xD0\xBA \xD1\x84\xD0\xB0\xD0\xB7\xD1\x8B \xD0\x90 "
                             "\xD0\xBB\xD0\xB8\xD0\xBD\xD0\xB8\xD0\xB8";
    RecordingBuilder file = RecordingBuilder().rate("1000,3");
    for (const std::string& text : {windows, dos, utf8}) {
        file.analog("1," + text + ",A,,V,1,0,0,0,0").status("1," + text);
    }
    ASSERT_EQ(load(file), Enums::CfgLoaded);
    for (const std::size_t channel : {0U, 1U, 2U}) {
        EXPECT_EQ(cfg.analogChannelConfigs.at(channel).channelId, utf8) << channel;
        EXPECT_EQ(cfg.binaryChannelConfigs.at(channel).channelId, utf8) << channel;
    }
}

TEST_F(CfgLoad, LineThatDoesNotParseIsKeptConverted) {
    EXPECT_EQ(load("S\n1,1A,0D\n1,\xD2\xEE\xEA \xF4\xE0\xE7\xFB \xC0 \xEB\xE8\xED\xE8\xE8,A\n"), Enums::CfgLoadError);
    EXPECT_EQ(cfg.currentLine, "1,\xD0\xA2\xD0\xBE\xD0\xBA \xD1\x84\xD0\xB0\xD0\xB7\xD1\x8B \xD0\x90 "
                               "\xD0\xBB\xD0\xB8\xD0\xBD\xD0\xB8\xD0\xB8,A");
}

TEST_F(CfgLoad, ChannelIndexIsThePositionOfTheLine) {
    ASSERT_EQ(load(RecordingBuilder()
                       .analog("9,X,,,V,1,0,0,0,0")
                       .analog("9,Y,,,V,1,0,0,0,0")
                       .status("9,Z")
                       .status("x,W")
                       .rate("1000,3")),
              Enums::CfgLoaded);
    EXPECT_EQ(cfg.analogChannelConfigs.at(0).index, 0);
    EXPECT_EQ(cfg.analogChannelConfigs.at(1).index, 1);
    EXPECT_EQ(cfg.binaryChannelConfigs.at(0).index, 0);
    EXPECT_EQ(cfg.binaryChannelConfigs.at(1).index, 1);
}

// Line frequency and rates

TEST_F(CfgLoad, FrequencyForms) {
    struct {
        const char* why;
        const char* line;
        double frequency;
    } const rows[] = {
        {"fraction", "49.98", 49.98}, {"text behind", "60 Hz", 60.0}, {"blanks in front", "  16.7", 16.7},
        {"exponent", "5e1", 50.0},    {"negative", "-50", -50.0},     {"only the first number", "50,60", 50.0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(load(recording().frequency(row.line)), Enums::CfgLoaded) << row.why;
        EXPECT_EQ(cfg.lineFrequency, row.frequency) << row.why;
    }
}

TEST_F(CfgLoad, RateCountOfZeroStillReadsOneRateLine) {
    ASSERT_EQ(load(recording().rateCount("0").type("BINARY")), Enums::CfgLoaded);
    ASSERT_EQ(cfg.samplingRates.size(), 1U);
    EXPECT_EQ(cfg.samplingRates[0].rate, 1000.0);
    EXPECT_EQ(cfg.dataFileType, Enums::Binary);
}

TEST_F(CfgLoad, RateCountStopsAtTheFirstNonDigit) {
    ASSERT_EQ(load(recording().rateCount(" 1 rate").type("BINARY")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.samplingRates.size(), 1U);
    EXPECT_EQ(cfg.dataFileType, Enums::Binary);
}

// Date-times and type

TEST_F(CfgLoad, DateTimesAreNotParsed) {
    EXPECT_EQ(load(recording().startTime("any").triggerTime(" ")), Enums::CfgLoaded);
    EXPECT_EQ(load(recording().startTime("").triggerTime("t")), Enums::CfgLoadError);
    EXPECT_EQ(load(recording().startTime("s").triggerTime("")), Enums::CfgLoadError);
}

TEST_F(CfgLoad, TypeWords) {
    struct {
        const char* why;
        const char* word;
        Enums::DataFileType type;
    } const rows[] = {
        {"known word", "ASCII", Enums::Ascii},
        {"known word", "BINARY", Enums::Binary},
        {"known word", "FLOAT32", Enums::Float32},
        {"any case", "bInArY", Enums::Binary},
        {"the 32-bit integers are never recognised", "BINARY32", Enums::Ascii},
        {"the 32-bit integers are never recognised", "binary32", Enums::Ascii},
        {"the 32-bit integers are never recognised", "binaryY32", Enums::Ascii},
        {"unknown word is no error", "EBCDIC", Enums::Ascii},
        {"nothing is trimmed", "BINARY ", Enums::Ascii},
        {"nothing is trimmed", " BINARY", Enums::Ascii},
        {"nothing is trimmed", "FLOAT32\r", Enums::Ascii},
    };
    for (const auto& row : rows) {
        cfg = Cfg();
        EXPECT_EQ(load(recording().type(row.word)), Enums::CfgLoaded) << row.why << ": " << row.word;
        EXPECT_EQ(cfg.dataFileType, row.type) << row.why << ": " << row.word;
        EXPECT_EQ(cfg.recordLength == 0, row.type == Enums::Ascii) << row.why << ": " << row.word;
    }
}

TEST_F(CfgLoad, ByteLengthsOfThreeAnalogAndSeventeenStatusChannels) {
    RecordingBuilder file = RecordingBuilder().rate("1000,3");
    for (int channel = 0; channel < 3; ++channel) {
        file.analog("1,U,,,V,1,0,0,0,0");
    }
    for (int channel = 0; channel < 17; ++channel) {
        file.status("1,T");
    }
    struct {
        const char* word;
        unsigned int valueLength, valuesLength, wordCount, wordsLength, recordLength;
    } const rows[] = {
        {"float32", 4, 12, 2, 4, 24},
        {"binary", 2, 6, 2, 4, 18},
        {"ascii", 2, 0, 0, 0, 0},
    };
    for (const auto& row : rows) {
        cfg = Cfg();
        EXPECT_EQ(load(file.type(row.word)), Enums::CfgLoaded) << row.word;
        EXPECT_EQ(cfg.analogValueLength, row.valueLength) << row.word;
        EXPECT_EQ(cfg.analogValuesLength, row.valuesLength) << row.word;
        EXPECT_EQ(cfg.statusWordCount, row.wordCount) << row.word;
        EXPECT_EQ(cfg.statusWordsLength, row.wordsLength) << row.word;
        EXPECT_EQ(cfg.recordLength, row.recordLength) << row.word;
    }
}

TEST_F(CfgLoad, StatusWordsAreSixteenBitsEach) {
    struct {
        int channels;
        unsigned int words;
        unsigned int recordLength;
    } const rows[] = {{1, 1, 10}, {15, 1, 10}, {16, 1, 10}, {17, 2, 12}, {32, 2, 12}, {33, 3, 14}};
    for (const auto& row : rows) {
        RecordingBuilder file = RecordingBuilder().rate("1000,3").type("BINARY");
        for (int channel = 0; channel < row.channels; ++channel) {
            file.status("1,T");
        }
        EXPECT_EQ(load(file), Enums::CfgLoaded) << row.channels;
        EXPECT_EQ(cfg.statusWordCount, row.words) << row.channels;
        EXPECT_EQ(cfg.recordLength, row.recordLength) << row.channels;
    }
    EXPECT_EQ(load(recording().type("BINARY")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.statusWordCount, 0U);
    EXPECT_EQ(cfg.recordLength, 10U);
}

// Time multiplier

TEST_F(CfgLoad, FileThatEndsBehindTheTypeLineHasMultiplierOne) {
    cfg.timeMultiplier = 5.0;
    ASSERT_EQ(load(recording().withoutMultiplier()), Enums::CfgLoaded);
    EXPECT_EQ(cfg.timeMultiplier, 1.0);
    EXPECT_EQ(cfg.currentLine, "");
    EXPECT_EQ(cfg.duration, 0.002);
}

TEST_F(CfgLoad, TypeLineWithoutLineEndKeepsTheMultiplierAndSetsTheDuration) {
    cfg.timeMultiplier = 5.0;
    std::string text = recording().type("BINARY").withoutMultiplier().cfgText();
    text.pop_back();
    ASSERT_EQ(load(text), Enums::CfgLoaded);
    EXPECT_EQ(cfg.dataFileType, Enums::Binary);
    EXPECT_EQ(cfg.timeMultiplier, 5.0);
    EXPECT_EQ(cfg.currentLine, "BINARY");
    EXPECT_EQ(cfg.duration, 0.01);
}

TEST_F(CfgLoad, BlankMultiplierLineIsLoadError) {
    cfg.timeMultiplier = 5.0;
    cfg.duration = 9.0;
    EXPECT_EQ(load(recording().type("BINARY").multiplier("")), Enums::CfgLoadError);
    EXPECT_EQ(cfg.dataFileType, Enums::Binary);
    EXPECT_EQ(cfg.timeMultiplier, 5.0);
    EXPECT_EQ(cfg.duration, 0.0);
    EXPECT_EQ(cfg.currentLine, "");
}

TEST_F(CfgLoad, MultiplierLineForms) {
    struct {
        const char* why;
        const char* line;
        Enums::LoadResult result;
        double multiplier;
    } const rows[] = {
        {"fraction", "0.25", Enums::CfgLoaded, 0.25},
        {"exponent", "1e3", Enums::CfgLoaded, 1000.0},
        {"blanks in front", " 2", Enums::CfgLoaded, 2.0},
        {"text behind", "2x", Enums::CfgLoaded, 2.0},
        {"carriage return behind", "2\r", Enums::CfgLoaded, 2.0},
        {"negative", "-1", Enums::CfgLoaded, -1.0},
        {"zero", "0", Enums::CfgLoaded, 0.0},
        {"hexadecimal", "0x10", Enums::CfgLoaded, 16.0},
        {"only a carriage return", "\r", Enums::CfgLoadError, 5.0},
        {"only blanks", "  ", Enums::CfgLoadError, 5.0},
        {"text", "x", Enums::CfgLoadError, 5.0},
        {"overflow", "1e999", Enums::CfgLoadError, 5.0},
        {"underflow", "1e-999", Enums::CfgLoadError, 5.0},
    };
    for (const auto& row : rows) {
        cfg.timeMultiplier = 5.0;
        EXPECT_EQ(load(recording().multiplier(row.line)), row.result) << row.why;
        EXPECT_EQ(cfg.timeMultiplier, row.multiplier) << row.why;
    }
}

TEST_F(CfgLoad, MultiplierLineWithoutLineEndIsRead) {
    std::string text = recording().multiplier("2.5").cfgText();
    text.pop_back();
    ASSERT_EQ(load(text), Enums::CfgLoaded);
    EXPECT_EQ(cfg.timeMultiplier, 2.5);
    EXPECT_EQ(cfg.duration, 0.005);
}

// Carriage returns

TEST_F(CfgLoad, CarriageReturnStaysAtTheEndOfEveryLine) {
    ASSERT_EQ(load(RecordingBuilder()
                       .lineEnd("\r\n")
                       .station("S,R")
                       .analog("1,Ua,A,,V,1,0,0,-10,10")
                       .status("1,Trip")
                       .rate("1000,3")
                       .type("BINARY")
                       .multiplier("2")),
              Enums::CfgLoaded);
    EXPECT_EQ(cfg.recorderId, "R\r");
    EXPECT_EQ(cfg.binaryChannelCount, 1);
    EXPECT_EQ(cfg.analogChannelConfigs.at(0).max, 10.0);
    EXPECT_EQ(cfg.binaryChannelConfigs.at(0).channelId, "Trip\r");
    EXPECT_EQ(cfg.lastSampleNumber, 3U);
    EXPECT_EQ(cfg.dataFileType, Enums::Ascii);
    EXPECT_EQ(cfg.recordLength, 0U);
    EXPECT_EQ(cfg.timeMultiplier, 2.0);
    EXPECT_EQ(cfg.currentLine, "2\r");
    EXPECT_EQ(cfg.duration, 0.004);
}

TEST_F(CfgLoad, CarriageReturnAloneIsNoBlankLine) {
    EXPECT_EQ(load(recording().lineEnd("\r\n").startTime("").triggerTime("").type("")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.dataFileType, Enums::Ascii);
    EXPECT_EQ(load(recording().lineEnd("\r\n").station("")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.stationName, "\r");
}

TEST_F(CfgLoad, CarriageReturnAloneEndsNoLine) {
    EXPECT_EQ(load(recording().lineEnd("\r")), Enums::CfgLoadError);
    EXPECT_EQ(cfg.stationName, "S");
    EXPECT_EQ(cfg.recorderId, "R");
    EXPECT_EQ(cfg.totalChannelCount, 0);
}

TEST_F(CfgLoad, RevisionYearBeforeACarriageReturnConverts) {
    ASSERT_EQ(load(recording().lineEnd("\r\n").station("S,R,2013")), Enums::CfgLoaded);
    EXPECT_EQ(cfg.revisionYear, 2013);
}

// Truncation

TEST_F(CfgLoad, FileCutAnywhereBeforeTheTypeLineIsLoadError) {
    const std::string text = recording().status("1,Trip,,,0").type("BINARY").cfgText();
    const std::size_t typeLine = text.find("BINARY");
    for (std::size_t length = 0; length <= typeLine; ++length) {
        Cfg fresh;
        EXPECT_EQ(resultOf(fresh.load(dir.write("cut.cfg", text.substr(0, length)))), Enums::CfgLoadError) << length;
    }
    for (std::size_t length = typeLine + 1; length <= text.size(); ++length) {
        Cfg fresh;
        EXPECT_EQ(resultOf(fresh.load(dir.write("cut.cfg", text.substr(0, length)))), Enums::CfgLoaded) << length;
    }
}

} // namespace
