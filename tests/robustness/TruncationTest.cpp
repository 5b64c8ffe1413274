// Recordings cut short and recordings with a wrong bit: whatever the bytes, a load ends in a documented result.

#include "Comtrade.h"
#include "support/RecordingBuilder.h"
#include "support/Results.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

using namespace OrvComtradeLib;
using orvtest::RecordingBuilder;
using orvtest::resultOf;
using orvtest::TempDir;

namespace {

struct Encoding {
    const char* type;
    const char* lineEnd;
    std::size_t cfgPrefixes; ///< prefixes of the `.cfg` that load, the whole file included
    std::size_t datPrefixes; ///< prefixes of the `.dat` that load, the whole file included
};

const Encoding kEncodings[] = {
    // From the first letter of the type word on the configuration is complete, and any unknown word means ASCII. A
    // data file loads at every line end, behind the last column, and empty.
    {"ASCII", "\n", 8, 7},
    {"ASCII", "\r\n", 10, 10},
    // A shorter type word means ASCII, which the records are not; a binary data file must be whole.
    {"BINARY", "\n", 4, 1},
    {"FLOAT32", "\n", 4, 1},
};

RecordingBuilder smallRecording(const Encoding& encoding) {
    return RecordingBuilder()
        .station("S,R,1999")
        .analog("1,Ua,A,B1,kV,0.5,0,0,-99,99,110,1,P")
        .analog("2,\xC8\xE0,B,B2,A,2,1,250,-99,99,5,1,S") // "Ia" in Cyrillic letters of code page 1251
        .status("1,Trip,,,0")
        .status("2,Open,,,1")
        .status("3,Start,,,0")
        .rate("1000,3")
        .type(encoding.type)
        .lineEnd(encoding.lineEnd)
        .record(0, {10, -20}, {false, true, false})
        .record(1000, {11, -21}, {true, true, false})
        .record(2000, {12, -22}, {true, false, false});
}

/// What the loads of one run gave.
struct Outcomes {
    std::size_t loaded = 0;
    std::size_t cfgLoadError = 0;
    std::size_t datLoadError = 0;
    std::size_t other = 0;

    void count(Enums::LoadResult result) {
        switch (result) {
        case Enums::Ok:
            ++loaded;
            break;
        case Enums::CfgLoadError:
            ++cfgLoadError;
            break;
        case Enums::DatLoadError:
            ++datLoadError;
            break;
        default:
            ++other;
        }
    }
};

void queryAnalogView(const AnalogChannel& view) {
    EXPECT_FALSE(view.name().empty()); // the commas at the least
    view.phase();
    view.unit();
    view.isCurrent();
    EXPECT_LE(view.getPoints(0.0, -1.0, -1.0).size(), 1100U);
    EXPECT_LE(view.getPoints(-0.5, 0.5, 100.0).size(), 100U);
    EXPECT_TRUE(view.getPoints(1.0, 0.5, 100.0).empty());
    for (const double time : {-1.0, 0.0, 0.0005, 0.001, 0.002, 1e9, std::numeric_limits<double>::quiet_NaN()}) {
        unsigned int hint = 0;
        view.getValue(time, hint);
        if (!view.samples.empty()) {
            EXPECT_LT(hint, view.samples.size());
        }
    }
    for (const unsigned int index : {0U, 1U, 2U, 3U, std::numeric_limits<unsigned int>::max()}) {
        const double value = view.getInterpolationValue(index, 0.0);
        if (index + std::size_t{1} >= view.samples.size()) {
            EXPECT_EQ(value, 0.0);
        }
    }
}

void queryBinaryView(const BinaryChannel& view) {
    EXPECT_FALSE(view.name().empty());
    EXPECT_LE(view.getPoints(0.0, -1.0, 0.0).size(), view.samples.size() + 2);
    EXPECT_LE(view.getPoints(-1.0, 0.0015, 0.0).size(), view.samples.size() + 2);
    for (const Orv::PointF& point : view.getPoints(0.0005, 1e9, 0.0)) {
        EXPECT_TRUE(point.y == 0.0F || point.y == 1.0F);
    }
}

/// What holds of a recording after `result`, whatever the files were.
void checkInvariants(const Comtrade& recording, Enums::LoadResult result) {
    EXPECT_EQ(recording.loaded, result == Enums::Ok);
    if (result != Enums::Ok) {
        EXPECT_TRUE(recording.dat.samples.empty());
        EXPECT_EQ(recording.dat.lastSampleTime, -1.0);
        return;
    }
    const Cfg& cfg = recording.cfg;
    const auto analogCount = static_cast<std::size_t>(cfg.analogChannelCount);
    const auto statusCount = static_cast<std::size_t>(cfg.binaryChannelCount);
    EXPECT_EQ(cfg.analogChannelConfigs.size(), analogCount);
    EXPECT_EQ(cfg.binaryChannelConfigs.size(), statusCount);
    EXPECT_LE(recording.dat.samples.size(), cfg.lastSampleNumber);
    for (std::size_t i = 0; i < recording.dat.samples.size(); ++i) {
        const Sample& sample = recording.dat.samples[i];
        EXPECT_EQ(sample.index, i);
        EXPECT_EQ(sample.analogValues.size(), analogCount);
        EXPECT_EQ(sample.binaryValues.size(), statusCount);
    }
    ASSERT_EQ(recording.analogChannels.size(), analogCount);
    ASSERT_EQ(recording.binaryChannels.size(), statusCount);
    for (const AnalogChannel& view : recording.analogChannels) {
        queryAnalogView(view);
    }
    for (const BinaryChannel& view : recording.binaryChannels) {
        queryBinaryView(view);
    }
}

/// Loads the recording of the two files, checks what must hold, and loads the good recording over it.
Enums::LoadResult loadAndCheck(const std::string& path, const std::string& goodPath) {
    Enums::LoadResult result = resultOf(-1);
    Comtrade recording;
    EXPECT_NO_THROW(result = resultOf(recording.load(path)));
    checkInvariants(recording, result);

    EXPECT_EQ(resultOf(recording.load(goodPath)), Enums::Ok);
    EXPECT_EQ(recording.dat.samples.size(), 3U);
    checkInvariants(recording, Enums::Ok);
    return result;
}

/// The results of the recording with one of its files replaced by each of its variants.
template <class ForEachVariant>
Outcomes loadVariants(const Encoding& encoding, const std::string& extension, ForEachVariant forEachVariant) {
    const TempDir dir;
    const RecordingBuilder builder = smallRecording(encoding);
    const std::string goodPath = builder.write(dir.path(), "good");
    const std::string path = builder.write(dir.path(), "rec");
    Outcomes outcomes;
    forEachVariant(extension == ".cfg" ? builder.cfgText() : builder.datBytes(), [&](const std::string& bytes) {
        dir.write("rec" + extension, bytes);
        outcomes.count(loadAndCheck(path, goodPath));
    });
    return outcomes;
}

template <class Visit> void forEachPrefix(const std::string& bytes, Visit visit) {
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        SCOPED_TRACE("first " + std::to_string(length) + " bytes");
        visit(bytes.substr(0, length));
    }
}

template <class Visit> void forEachBitFlip(const std::string& bytes, Visit visit) {
    for (std::size_t position = 0; position < bytes.size(); ++position) {
        for (unsigned int bit = 0; bit < 8; ++bit) {
            SCOPED_TRACE("byte " + std::to_string(position) + ", bit " + std::to_string(bit));
            std::string changed = bytes;
            changed[position] = static_cast<char>(static_cast<unsigned char>(bytes[position]) ^ (1U << bit));
            visit(changed);
        }
    }
}

class Truncation : public testing::TestWithParam<Encoding> {};
class BitFlip : public testing::TestWithParam<Encoding> {};

std::string nameOf(const testing::TestParamInfo<Encoding>& info) {
    return std::string(info.param.type) + (info.param.lineEnd[0] == '\r' ? "WithCrLf" : "");
}

} // namespace

TEST_P(Truncation, EveryPrefixOfTheConfigurationGivesADocumentedResult) {
    const Outcomes outcomes =
        loadVariants(GetParam(), ".cfg", [](const std::string& bytes, auto visit) { forEachPrefix(bytes, visit); });
    EXPECT_EQ(outcomes.loaded, GetParam().cfgPrefixes);
    EXPECT_EQ(outcomes.loaded + outcomes.cfgLoadError + outcomes.datLoadError,
              smallRecording(GetParam()).cfgText().size() + 1);
}

TEST_P(Truncation, EveryPrefixOfTheDataFileGivesADocumentedResult) {
    const Outcomes outcomes =
        loadVariants(GetParam(), ".dat", [](const std::string& bytes, auto visit) { forEachPrefix(bytes, visit); });
    EXPECT_EQ(outcomes.loaded, GetParam().datPrefixes);
    EXPECT_EQ(outcomes.loaded + outcomes.datLoadError, smallRecording(GetParam()).datBytes().size() + 1);
}

TEST_P(Truncation, EveryPrefixOfTheConfigurationGivesOneOfTheTwoCodesOfItsReader) {
    const TempDir dir;
    forEachPrefix(smallRecording(GetParam()).cfgText(), [&](const std::string& bytes) {
        Cfg cfg;
        const Enums::LoadResult result = resultOf(cfg.load(dir.write("rec.cfg", bytes)));
        EXPECT_TRUE(result == Enums::CfgLoaded || result == Enums::CfgLoadError) << result;
    });
}

TEST_P(Truncation, EveryPrefixOfTheDataFileGivesOneOfTheTwoCodesOfItsReader) {
    const TempDir dir;
    Cfg cfg;
    ASSERT_EQ(resultOf(cfg.load(smallRecording(GetParam()).write(dir.path(), "rec"))), Enums::CfgLoaded);
    Dat dat(cfg);
    forEachPrefix(smallRecording(GetParam()).datBytes(), [&](const std::string& bytes) {
        const Enums::LoadResult result = resultOf(dat.load(dir.write("rec.dat", bytes)));
        EXPECT_TRUE(result == Enums::Ok || result == Enums::DatLoadError) << result;
        EXPECT_TRUE(result == Enums::Ok || dat.samples.empty());
    });
}

TEST_P(BitFlip, EveryBitOfTheConfigurationGivesADocumentedResult) {
    const Outcomes outcomes =
        loadVariants(GetParam(), ".cfg", [](const std::string& bytes, auto visit) { forEachBitFlip(bytes, visit); });
    EXPECT_EQ(outcomes.other, 0U);
    EXPECT_GT(outcomes.loaded, 0U);
    EXPECT_GT(outcomes.cfgLoadError, 0U);
    // A wrong sample number or type word leaves binary records of another number or length; text takes any.
    EXPECT_EQ(outcomes.datLoadError > 0, std::string(GetParam().type) != "ASCII");
}

TEST_P(BitFlip, EveryBitOfTheDataFileGivesADocumentedResult) {
    const Outcomes outcomes =
        loadVariants(GetParam(), ".dat", [](const std::string& bytes, auto visit) { forEachBitFlip(bytes, visit); });
    EXPECT_EQ(outcomes.other + outcomes.cfgLoadError, 0U);
    EXPECT_GT(outcomes.loaded, 0U);
    // Any bytes decode as a record, while text must keep its grammar.
    EXPECT_EQ(outcomes.datLoadError > 0, std::string(GetParam().type) == "ASCII");
}

INSTANTIATE_TEST_SUITE_P(Encodings, Truncation, testing::ValuesIn(kEncodings), nameOf);
INSTANTIATE_TEST_SUITE_P(Encodings, BitFlip, testing::ValuesIn(kEncodings), nameOf);
