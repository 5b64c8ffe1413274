// Recordings of many devices and programs, through the intake, against a slow reader that knows the standard alone:
// small ones made for the purpose (tests/recordings), and real ones where they are at hand (ORV_CORPUS_DIR). The slow
// reader itself is held to literals that a program in another language decoded from the files.

#include "Comtrade.h"
#include "intake/comparison.h"
#include "intake/openedChecks.h"
#include "intake/slowReader.h"
#include "support/CarriageReturns.h"
#include "support/RecordingFolders.h"
#include "support/Results.h"
#include "support/TempDir.h"

#include <OrvComtradeIntake/Intake.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

using namespace OrvComtradeIntake;
using OrvComtradeLib::Comtrade;
using orvtest::bytesOf;
using orvtest::contentsOf;
using orvtest::corpusFolders;
using orvtest::fileOf;
using orvtest::madeFolder;
using orvtest::resultOf;
using orvtest::TempDir;
namespace Enums = OrvComtradeLib::Enums;

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kNone = INT64_MIN;

/// How a recording deviates from the standard, as a person sees who looks into its files.
enum How { Plain, Of1991, Lengths, FourteenFields, RecordsOf16, RecordsOf20, NoTrigger, MonthFirst, Nanoseconds };

struct Spot {
    std::size_t sample;
    std::size_t channel;
    double value; ///< as recorded, in the base unit
};

struct Expected {
    const char* folder;
    const char* file;
    How how;
    std::size_t analogs;
    std::size_t statuses;
    std::size_t samples;
    std::size_t missing; ///< analog values that are none
    std::size_t ones;    ///< status bits that are set
    double lastTime;
    Spot spots[2];
    std::int64_t start;   ///< nanoseconds since 1970
    std::int64_t trigger; ///< nanoseconds since 1970
    std::uint64_t declared;
    const char* encoding;
    const char* station; ///< or nullptr
    const char* analog;  ///< identifier of the first channel, or nullptr
    const char* codes; ///< of findings worse than a note, in any order; those with a question mark may be there or not
};

void PrintTo(const Expected& expected, std::ostream* out) {
    *out << expected.folder;
}

const Expected kMadeRecordings[] = {
#include "recordings/recordings.inc"
};

const Expected kRealRecordings[] = {
    // clang-format off
    {"s01-2013-ascii", "sample_ascii.cfg", Plain, 4, 4, 40, 0, 84, 0.0325, {{26, 0, 24.99920654296875}, {26, 3, 7.91546630859375}}, 1294811730075011000, 1294811730078261000, 40, "ASCII", "SMARTSTATION", "IA", ""},
    {"s02-2013-ascii-missing", "sample_ascii_missing.cfg", Plain, 4, 4, 40, 4, 84, 0.0325, {{26, 0, 24.99920654296875}, {26, 3, 7.91546630859375}}, 1294811730075011000, 1294811730078261000, 40, "ASCII", nullptr, nullptr, ""},
    {"s03-2013-ascii-utf8", "sample_ascii_utf-8.cfg", Plain, 4, 4, 40, 0, 84, 0.0325, {{26, 0, 24.99920654296875}, {26, 3, 7.91546630859375}}, 1294811730075011000, 1294811730078261000, 40, "UTF-8", "SMARTSTATION testing text encoding: hgvcj\xED\x84\xB0\xED\x8C\x8C\xED\x81\xAC" "387", "IA", ""},
    {"s04-2013-ascii-latin1", "sample_iso8859-1.cfg", Plain, 4, 4, 40, 0, 84, 0.0325, {{26, 0, 24.99920654296875}, {26, 3, 7.91546630859375}}, 1294811730075011000, 1294811730078261000, 40, "ISO-8859-1", "Esta\xC3\xA7\xC3\xA3o de Medi\xC3\xA7\xC3\xA3o", "IA", "encoding"},
    {"s05-2013-ascii-sub", "sample_sub_char.cfg", Plain, 4, 4, 40, 0, 84, 0.0325, {{26, 0, 24.99920654296875}, {26, 3, 7.91546630859375}}, 1294811730075011000, 1294811730078261000, 40, "ASCII", nullptr, nullptr, ""},
    {"s06-1999-bin", "sample_bin.cfg", Plain, 4, 16, 5, 0, 0, 0.00026041666666666666, {{3, 0, -8476.312825}, {3, 3, 187.871763}}, 1483803341958268000, 1483803341958333000, 5, "ASCII", nullptr, nullptr, ""},
    {"s07-1999-bin-missing", "sample_bin_missing.cfg", Plain, 4, 16, 5, 4, 0, 0.00026041666666666666, {{3, 0, -8476.312825}, {4, 3, 182.610496}}, 1483803341958268000, 1483803341958333000, 5, "ASCII", nullptr, nullptr, ""},
    {"s08-2013-float32-cff", "sample_float32.cff", Plain, 1, 1, 301, 0, 0, 3.0, {{200, 0, 25.99226951599121}, {200, 0, 25.99226951599121}}, 1613583432422969065, 1613583433922969065, 301, "ASCII", nullptr, nullptr, ""},
    {"s09-2013-ascii-cff", "sample_ascii.cff", Plain, 4, 4, 40, 0, 84, 0.0325, {{26, 0, 24.99920654296875}, {26, 3, 7.91546630859375}}, 1294811730075011000, 1294811730078261000, 40, "ASCII", nullptr, nullptr, ""},
    {"s10-2000-ascii-cp1251-83rates", "1.cfg", Plain, 4, 15, 5316, 0, 7980, 2.2114198998369226, {{3544, 0, 74.23572}, {3544, 3, 5.7932}}, 1495699996587000000, 1495699996677000000, 5316, "CP1251", nullptr, nullptr, "encoding"},
    {"s11-1997-bin-upper", "4.CFG", Plain, 6, 16, 2400, 0, 8256, 3.9983333333333335, {{1600, 0, 14.184018}, {1600, 5, 4.8e-06}}, 1417676508813000000, 1417676509533000000, 2399, "ASCII", nullptr, nullptr, "layout sample-count"},
    {"s12-2013-bin", "sample_2013_bin.cfg", Plain, 4, 16, 5, 0, 0, 0.00026041666666666666, {{3, 0, -8476.312825}, {3, 3, 187.871763}}, 1483803341958268000, 1483803341958333000, 5, "ASCII", nullptr, nullptr, ""},
    {"s13-1999-bin-degree", "real_1999_bin.cfg", Plain, 24, 64, 3000, 0, 0, 1.872816, {{2000, 0, -1.90437}, {2000, 23, 926.0364944}}, 1613600869159106000, 1613600870657858000, 3000, "UTF-8", nullptr, nullptr, ""},
    {"s14-1999-ascii-gbk-10rates", "test2.cfg", Plain, 15, 7, 950, 0, 0, 0.949, {{633, 0, -2.03928}, {633, 14, 999999.0}}, 1356370248384000000, 1356370248384000000, 950, "GB18030", "\xE5\x8D\x97\xE8\x87\xAA\xE7\xBA\xBF\xE8\xB7\xAF\xE4\xBF\x9D\xE6\x8A\xA4PSL603", "1-Ia", "encoding stamps-disagree stamp-backwards?"},
    {"s15-1999-bin-gbk-4rates", "xtz.cfg", Plain, 48, 96, 3077, 0, 32834, 7.34, {{2051, 0, 54.8127748}, {2051, 47, 0.0283734}}, 1683920725603838000, 1683920725803774000, 3077, "GB18030", nullptr, nullptr, "encoding"},
    {"s16-2013-ascii-upper-crlf", "TestRecord1_ASCII.CFG", Plain, 7, 3, 1300, 0, 240, 1.299, {{866, 0, 2.7654996}, {866, 6, -526.921996}}, 1405963123143033000, 1405963123443032000, 1300, "ASCII", nullptr, nullptr, ""},
    {"s17-2013-bin32-upper-crlf", "TestRecord1_Binary.CFG", Plain, 7, 3, 1300, 0, 240, 1.299, {{866, 0, 2.7654996}, {866, 6, -526.921996}}, 1405963123143033000, 1405963123443032000, 1300, "ASCII", nullptr, nullptr, ""},
    {"s18-2013-cff-ascii", "TestRecord_CFF_ASCII_2013.CFF", Plain, 4, 3, 10, 0, 13, 0.009, {{6, 0, -1082.0}, {6, 3, 43.0}}, 1405963123143033000, 1405963123443032000, 10, "ASCII", nullptr, nullptr, "trigger-outside"},
    {"s19-2013-cff-bin-base64", "TestRecord_CFF_BinaryBase64.CFF", RecordsOf20, 4, 3, 10, 0, 0, 0.009, {{6, 0, -1082.0}, {6, 3, 43.0}}, 1405963123143033000, 1405963123443032000, 10, "ASCII", nullptr, nullptr, "base64 record-padding trigger-outside"},
    {"s20-1999-ascii-upper-crlf", "keating_1999.CFG", Plain, 8, 0, 2048, 0, 0, 0.06666179454677486, {{1365, 0, 160.4036037139598}, {1365, 7, 0.0380415394902232}}, 1447824783765333000, 1447824783790289000, 2048, "ASCII", nullptr, nullptr, ""},
    {"s21-1999-ascii-pq", "1999-ascii-pq.cfg", Plain, 6, 0, 3584, 0, 0, 0.4666286054260542, {{2389, 0, 61.00679055474746}, {2389, 5, -8038.476340740599}}, 1341996261051022000, 1341996261051022000, 3584, "ASCII", nullptr, nullptr, ""},
    {"s22-1999-bin-crlf-tail", "1999-binary-hif-sel.cfg", Plain, 18, 48, 4000, 0, 15103, 133.254629, {{2666, 0, 7.0}, {3999, 17, 0.0}}, 1460090390598100000, 1460090480579118000, 4000, "ASCII", nullptr, nullptr, ""},
    {"s23-2000-bin-cp1251", "Number start = 690 Test = 4.1.2.1.1 Time = 07_19_2022 13_50_13.811 Terminal \xD0\x9F\xD0\xA1\xD0\x90.cfg", Plain, 33, 128, 2500, 0, 3654, 2.499, {{1666, 0, -0.01889411}, {2499, 32, 0.0}}, 1658238690920000000, 1658238691920000000, 2500, "CP1251", nullptr, nullptr, "encoding"},
    {"s24-1999-ascii-rtds", "Number start = 691 Test = 4.1.2.1.2 Time = 07_19_2022 13_50_48.925 RTDS.cfg", Plain, 18, 30, 2000, 0, 12000, 0.09995, {{1333, 0, -0.5629921345}, {1333, 17, -75.33283828}}, 1658238648956000000, 1658238649103000000, 2000, "ASCII", nullptr, nullptr, "trigger-outside"},
    {"s25-1991-ascii-cp866", "test.cfg", Of1991, 4, 32, 4000, 0, 16000, 3.999, {{2666, 0, 5.530626}, {2666, 3, 0.001488}}, 1167612313457000000, 1167612314457000000, 4000, "CP866", "\xD0\xA1\xD0\x98\xD0\xA0\xD0\x98\xD0\xA3\xD0\xA1-2-\xD0\x9B", "Ia", "encoding"},
    {"s26-1991-bin-utf8-cyrillic", "test1.binary.cfg", Of1991, 4, 32, 6000, 0, 18000, 5.999, {{4000, 0, 0.037881}, {4000, 3, 0.001488}}, 1167620471821000000, 1167620472821000000, 6000, "UTF-8", nullptr, nullptr, ""},
    {"s27-1999-ascii-short", "test_ascii.cfg", Plain, 6, 6, 8, 0, 4, 0.0011666666666666668, {{5, 0, -99643.18}, {5, 5, -6640.8689517071}}, 805484306663700000, 805484306687500000, 885, "ASCII", nullptr, nullptr, "samples-lost trigger-outside"},
    {"s28-1999-bin-persegment", "BAY01_0001_20221020_114520_483.cfg", Lengths, 10, 32, 1536, 0, 0, 0.23984375, {{1024, 0, 60324.6}, {1027, 9, -20.369}}, 1666266319921889000, 1666266320001889000, 1536, "ASCII", nullptr, nullptr, "rates-as-lengths"},
    {"s29-1997-bin-evt", "Main Protection - Oscilografia.evt.cfg", Plain, 21, 64, 6632, 0, 24912, 1.863357, {{4421, 0, 0.003906}, {4421, 20, 52.3}}, 1475076313743368000, 1475076314260222000, 6632, "ASCII", nullptr, nullptr, "layout"},
    {"s30-1999-bin-relay-tail", "HR_13360.CFG", Plain, 29, 384, 3000, 34215, 109572, 1.4995, {{2000, 0, 10.075836}, {2000, 0, 10.075836}}, 1553762507484851000, 1553762507686707000, 3000, "ASCII", nullptr, nullptr, ""},
    {"s31-1999-bin-752status-crlf", "SE_A_2020_07_14_15h05_LT_e_CABO_220kV.CFG", Plain, 14, 752, 1900, 0, 128995, 1.899, {{1266, 0, -32.405925}, {1266, 13, -0.029438}}, 1594739149696956000, 1594739149898722000, 1900, "ASCII", nullptr, nullptr, ""},
    {"s32-1999-bin-tw-crlf", "SE_A_2020_07_14_15h05_LT_e_CABO_220kV_TW.CFG", Plain, 6, 0, 11774, 0, 0, 0.007534769347964331, {{7849, 0, 66.460248}, {7851, 5, 0.923059}}, 1594739149890898486, 1594739149891932732, 11774, "ASCII", nullptr, nullptr, ""},
    {"s33-2013-bin-tw-crlf", "2023_12_15_LT230kV_A.CFG", Plain, 6, 0, 11774, 0, 0, 0.00753472, {{7849, 0, -1.439997}, {7856, 5, 4.79999}}, 1702661790885675860, 1702661790886710100, 11774, "ASCII", nullptr, nullptr, ""},
    {"s34-2013-bin32-tdr-a", "191015,164355713,0T,CURUI,C1,ONS,TDR,10141.CFG", Plain, 26, 320, 2000, 0, 139644, 0.1999, {{1333, 0, 1895.075530912}, {1333, 25, 59.9778014}}, 1571157835663668000, 1571157835713568000, 2000, "ASCII", nullptr, nullptr, ""},
    {"s35-2013-bin32-tdr-b", "191016,113830029,0T,XINGU,C1,ONS,TDR,10221.CFG", Plain, 26, 320, 2000, 0, 51446, 0.1999, {{1333, 0, 1482.8072208}, {1333, 25, 60.1613943}}, 1571225909979225000, 1571225910029125000, 2000, "ASCII", nullptr, nullptr, ""},
    {"s36-1999-bin-mixedcase", "FC-2.cfg", Plain, 16, 0, 8025, 0, 0, 8.024, {{5350, 0, -3.18094}, {5350, 15, -412.5577}}, 1556455314554482000, 1556455315527368000, 8025, "ASCII", nullptr, nullptr, ""},
    {"s37-1999-bin-longterm", "2019_03_28_08h41min47s_SE_A_500kV_disturbance.cfg", Plain, 68, 28, 1500, 0, 9000, 24.983333333333334, {{1000, 0, 312725.369103}, {1000, 67, 0.016933158}}, 1553762447683333000, 1553762507683333000, 1500, "ASCII", nullptr, nullptr, "trigger-outside"},
    {"s38-1999-ascii-hif-a", "HIF_DRY1.cfg", Plain, 6, 0, 9600, 0, 0, 4.999479166666666, {{6400, 0, 11268.0}, {9599, 5, 0.0}}, 1763217719066000000, 1763217719316000000, 9600, "ASCII", nullptr, nullptr, ""},
    {"s39-1999-ascii-hif-b", "HIF_SAND5.cfg", Plain, 6, 0, 9600, 0, 0, 4.999479166666666, {{6400, 0, 11268.0}, {9599, 5, 0.0}}, 1763219026053000000, 1763219026303000000, 9600, "ASCII", nullptr, nullptr, ""},
    {"s40-1999-ascii-14fields", "DAta.cfg", FourteenFields, 7, 0, 256, 0, 0, 1.0625, {{170, 0, 676.5484634657154}, {170, 6, 1070.653217335174}}, 1366640266309354000, 1366640266309354000, 256, "ASCII", nullptr, nullptr, "comma-in-text field-malformed? stamps-disagree?"},
    {"s41-1999-ascii-rate0", "resultadosHCS.cfg", Plain, 9, 0, 5001, 0, 0, 0.5000000135, {{3334, 0, 253130.926661}, {3334, 8, 59.978447978}}, kNone, kNone, 5001, "ASCII", nullptr, nullptr, "date-unknown"},
    {"s42-2013-float32", "Comtrade1.cfg", Plain, 23, 140, 3000, 0, 64655, 2.4991666666666665, {{2000, 0, 5.799000263214111}, {2000, 22, 0.1053946316242218}}, 1690449593156666511, 1690449594156602167, 3000, "ASCII", nullptr, nullptr, ""},
    {"s45-2001-bin", "test1.cfg", Plain, 20, 84, 4000, 0, 13781, 3.999, {{2666, 0, 93.49840005}, {2666, 19, 25.18105073}}, 1490997671125094000, 1490997672126097000, 4000, "ASCII", nullptr, nullptr, ""},
    {"s46-1999-bin-gbk-wide", "ygz.cfg", Plain, 96, 128, 1500, 0, 186737, 1.354375, {{1000, 0, -4.2709212}, {1000, 95, -0.0534714}}, 1683920732605359000, 1683920732805269000, 1500, "GB18030", nullptr, nullptr, "encoding"},
    {"s47-2013-bin32-300status", "5.cfg", NoTrigger, 37, 300, 202, 0, 1899, 0.1005, {{201, 0, 0.0}, {134, 36, 0.029}}, 1266874889659551000, kNone, 202, "ASCII", nullptr, nullptr, ""},
    // clang-format on
};

slow::Facts factsOf(const Expected& expected) {
    slow::Facts facts;
    facts.samples = expected.samples;
    facts.textEncoding = expected.encoding == std::string("ASCII") ? "UTF-8" : expected.encoding;
    facts.layout1991 = expected.how == Of1991;
    facts.endsAreLengths = expected.how == Lengths;
    facts.strayField = expected.how == FourteenFields ? 4 : 0;
    facts.recordLength = expected.how == RecordsOf16 ? 16 : expected.how == RecordsOf20 ? 20 : 0;
    facts.triggerIsUnset = expected.how == NoTrigger;
    facts.monthFirst = expected.how == MonthFirst;
    facts.nanosecondStamps = expected.how == Nanoseconds;
    return facts;
}

fs::path pathOf(const Expected& expected) {
    return fileOf(expected.folder, expected.file);
}

std::vector<Expected> everyRecording() {
    return orvtest::rowsAtHand(kMadeRecordings, kRealRecordings);
}

bool isCombined(const Expected& expected) {
    const std::string extension = fs::path(expected.file).extension().string();
    return extension == ".cff" || extension == ".CFF";
}

/// The data file beside a configuration file, its extension in either case.
fs::path dataFileBeside(fs::path path) {
    path.replace_extension(".dat");
    return fs::exists(path) ? path : path.replace_extension(".DAT");
}

slow::Recording slowly(const Expected& expected) {
    const fs::path path = pathOf(expected);
    if (isCombined(expected)) {
        const slow::Sections sections = slow::sectionsOf(bytesOf(path));
        return slow::read(sections.cfg, sections.dat, factsOf(expected));
    }
    return slow::read(bytesOf(path), bytesOf(dataFileBeside(path)), factsOf(expected));
}

/// A combined file with CR LF in all that is text.
std::string combinedWithCarriageReturns(const std::string& bytes) {
    const std::size_t heading = bytes.find("--- file type: DAT");
    const std::size_t data = bytes.find('\n', heading) + 1;
    const bool isCounted = bytes.substr(heading, data - heading).find(": DAT FLOAT32:") != std::string::npos;
    return isCounted ? orvtest::withCarriageReturns(bytes.substr(0, data)) + bytes.substr(data)
                     : orvtest::withCarriageReturns(bytes);
}

std::string inUpperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return text;
}

/// Another form of the files of a recording.
struct OtherForm {
    const char* name;
    bool crlf;
    bool upperCase;
};

const OtherForm kOtherForms[] = {
    {"CR LF", true, false}, {"upper-case names", false, true}, {"CR LF, upper-case names", true, true}};

/// Copies a recording in the form asked for and gives the path of the configuration or the combined file.
std::string copyOf(const Expected& expected, const slow::Recording& meaning, const TempDir& folder,
                   const OtherForm& form) {
    const fs::path path = pathOf(expected);
    const auto nameOf = [&form](const fs::path& file) {
        const std::string name = file.filename().string();
        return form.upperCase ? inUpperCase(name) : name;
    };
    const std::string bytes = bytesOf(path);
    if (isCombined(expected)) {
        return folder.write(nameOf(path), form.crlf ? combinedWithCarriageReturns(bytes) : bytes);
    }
    const fs::path datPath = dataFileBeside(path);
    const std::string data = bytesOf(datPath);
    const bool isText = meaning.coding == slow::Coding::Ascii;
    folder.write(nameOf(datPath), form.crlf && isText ? orvtest::withCarriageReturns(data) : data);
    return folder.write(nameOf(path), form.crlf ? orvtest::withCarriageReturns(bytes) : bytes);
}

/// Opens the recording at `path` and holds every way out against what is expected.
void expectRight(const std::string& path, const Expected& expected, const slow::Recording& meaning) {
    const Opened opened = open(path);
    SCOPED_TRACE(orvtest::text(opened));
    ASSERT_TRUE(opened.readable());
    EXPECT_EQ(orvtest::firstHeaderDifference(opened.header(), meaning), "");
    EXPECT_EQ(orvtest::missingText(opened.columns().missing), orvtest::missingText(meaning));
    Comtrade loaded;
    ASSERT_EQ(resultOf(opened.load(loaded)), Enums::Ok);
    EXPECT_EQ(orvtest::firstTextDifference(loaded, meaning), "");
    EXPECT_EQ(orvtest::firstValueDifference(loaded, meaning, Side::Recorded, 4), "");
    EXPECT_EQ(orvtest::unlikeCodes(orvtest::codesOf(opened, Severity::Warning), expected.codes), "");
    const TempDir folder;
    EXPECT_EQ(orvtest::firstBrokenPromise(opened, {}, folder.path()), "");
    const auto openInto = [&](OrvComtradeIntake::Columns& columns, const OrvComtradeIntake::Selection& selection) {
        return open(path, columns, selection);
    };
    EXPECT_EQ(orvtest::firstBrokenReading(opened, openInto), "");
    if (opened.librarySuffices()) {
        Comtrade alone;
        ASSERT_EQ(resultOf(alone.load(path)), Enums::Ok);
        EXPECT_EQ(orvtest::firstDifference(alone, loaded), "");
    }
}

class EveryRecording : public testing::TestWithParam<Expected> {};

std::string label(const testing::TestParamInfo<Expected>& info) {
    return orvtest::labelOf(info.param.folder);
}

} // namespace

TEST(EveryRecordingTable, HoldsEveryRecordingWithData) {
    std::vector<fs::path> folders = corpusFolders();
    folders.push_back(madeFolder());
    std::size_t withData = 0;
    for (const fs::path& folder : folders) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            const std::string name = entry.path().filename().string();
            const bool isAlone =
                name.find("cfgonly") != std::string::npos || name.find("configuration-only") != std::string::npos;
            withData += entry.is_directory() && !isAlone ? 1U : 0U;
        }
    }
    EXPECT_EQ(withData, everyRecording().size());
}

TEST_P(EveryRecording, SlowReaderReadsWhatAnotherLanguageReads) {
    const Expected& expected = GetParam();
    const slow::Recording recording = slowly(expected);
    ASSERT_EQ(recording.analog.size(), expected.analogs);
    ASSERT_EQ(recording.status.size(), expected.statuses);
    ASSERT_EQ(recording.samples.size(), expected.samples);
    EXPECT_EQ(recording.samplesDeclared, expected.declared);
    EXPECT_EQ(recording.start.value_or(kNone), expected.start);
    EXPECT_EQ(recording.trigger.value_or(kNone), expected.trigger);
    EXPECT_NEAR(static_cast<double>(recording.samples.back().time), expected.lastTime, 1e-15 * expected.lastTime);
    std::size_t missing = 0;
    std::size_t ones = 0;
    for (const slow::Sample& sample : recording.samples) {
        missing += static_cast<std::size_t>(std::count(sample.missing.begin(), sample.missing.end(), true));
        ones += static_cast<std::size_t>(std::count(sample.status.begin(), sample.status.end(), true));
    }
    EXPECT_EQ(missing, expected.missing);
    EXPECT_EQ(ones, expected.ones);
    for (const Spot& spot : expected.spots) {
        const slow::Value value =
            slow::valueOf(recording.analog.at(spot.channel), recording.samples.at(spot.sample).raw.at(spot.channel),
                          slow::Side::Unknown);
        EXPECT_NEAR(static_cast<double>(value.value), spot.value,
                    static_cast<double>(2 * orvtest::kHalfUlp * value.terms));
    }
}

TEST_P(EveryRecording, IsReadRightlyAsPublished) {
    expectRight(pathOf(GetParam()).string(), GetParam(), slowly(GetParam()));
}

TEST_P(EveryRecording, IsReadRightlyInTheFormsThatUsersHave) {
    const slow::Recording meaning = slowly(GetParam());
    for (const OtherForm& form : kOtherForms) {
        SCOPED_TRACE(form.name);
        const TempDir folder;
        const std::string path = copyOf(GetParam(), meaning, folder, form);
        const auto before = contentsOf(folder.path());
        expectRight(path, GetParam(), meaning);
        EXPECT_TRUE(contentsOf(folder.path()) == before);
    }
}

TEST_P(EveryRecording, IsReadRightlyAsACombinedFile) {
    if (isCombined(GetParam())) {
        return;
    }
    const slow::Recording meaning = slowly(GetParam());
    constexpr const char* kWords[] = {"ASCII", "BINARY", "BINARY32", "FLOAT32"};
    const std::string cfg = bytesOf(pathOf(GetParam()));
    const std::string data = bytesOf(dataFileBeside(pathOf(GetParam())));
    const std::string word = kWords[static_cast<std::size_t>(meaning.coding)];
    const std::string length = meaning.coding == slow::Coding::Ascii ? "" : ": " + std::to_string(data.size());
    const TempDir folder;
    const std::string path =
        folder.write("rec.cff", "--- file type: CFG ---\r\n" + cfg + (cfg.back() == '\n' ? "" : "\r\n") +
                                    "--- file type: INF ---\r\n--- file type: HDR ---\r\n" + "--- file type: DAT " +
                                    word + length + " ---\r\n" + data);
    expectRight(path, GetParam(), meaning);
}

TEST_P(EveryRecording, IsReadRightlyOnEitherSide) {
    const slow::Recording meaning = slowly(GetParam());
    for (const Side side : {Side::Primary, Side::Secondary}) {
        Options options;
        options.side = side;
        const Opened opened = open(pathOf(GetParam()).string(), options);
        SCOPED_TRACE((side == Side::Primary ? "primary\n" : "secondary\n") + orvtest::text(opened));
        Comtrade loaded;
        ASSERT_EQ(resultOf(opened.load(loaded)), Enums::Ok);
        EXPECT_EQ(orvtest::firstValueDifference(loaded, meaning, side, 6), "");
        EXPECT_EQ(orvtest::firstDifference(opened.columns(), loaded), "");
    }
}

TEST_P(EveryRecording, HasTextsInUtf8WhateverTheEncodingFound) {
    const Expected& expected = GetParam();
    const Opened opened = open(pathOf(expected).string());
    EXPECT_EQ(opened.header().encoding, expected.encoding);
    if (expected.station != nullptr) {
        EXPECT_EQ(opened.header().station, expected.station);
        EXPECT_EQ(opened.header().analog.at(0).id, expected.analog);
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, EveryRecording, testing::ValuesIn(everyRecording()), label);

namespace {

/// A configuration without data.
struct ConfigurationOnly {
    const char* folder;
    const char* file;
    std::size_t analogs;
    std::size_t statuses;
    std::uint64_t declared;
    std::int64_t start;
};

const ConfigurationOnly kMadeConfigurations[] = {
    {"configuration-only", "HR_2_ASCII.CFG", 1, 40, 62464, 1552545677322000000},
};

const ConfigurationOnly kRealConfigurations[] = {
    {"s43-2013-cfgonly-592status", "HR_85429_ASCII.CFG", 7, 592, 62464, 1745504709944000000},
    {"s44-2013-cfgonly", "ejemplo_comtrade.cfg", 10, 12, 576000, 1735727415123456000},
};

} // namespace

TEST(Corpus, ConfigurationWithoutDataOpensWithoutSamples) {
    for (const ConfigurationOnly& expected : orvtest::rowsAtHand(kMadeConfigurations, kRealConfigurations)) {
        const Opened opened = open(fileOf(expected.folder, expected.file).string());
        SCOPED_TRACE(std::string(expected.folder) + "\n" + orvtest::text(opened));
        EXPECT_EQ(orvtest::codesOf(opened, Severity::Warning), "no-data");
        EXPECT_EQ(opened.datFile(), "");
        EXPECT_EQ(opened.header().samplesDeclared, expected.declared);
        EXPECT_EQ(opened.header().samples, 0U);
        EXPECT_EQ(orvtest::textOf(opened.header().start), std::to_string(expected.start));
        Comtrade loaded;
        ASSERT_EQ(resultOf(opened.load(loaded)), Enums::Ok);
        EXPECT_EQ(loaded.analogChannels.size(), expected.analogs);
        EXPECT_EQ(loaded.binaryChannels.size(), expected.statuses);
        EXPECT_TRUE(loaded.dat.samples.empty());
    }
}

TEST(Corpus, LibrarySufficesWhereNothingStandsInItsWay) {
    EXPECT_TRUE(open((madeFolder() / "2001-binary/test1.cfg").string()).librarySuffices());
    EXPECT_FALSE(open((madeFolder() / "83-rates-blank-lines/1.cfg").string()).librarySuffices());
    EXPECT_FALSE(open((madeFolder() / "mixed-case-names/RUN-2.cfg").string()).librarySuffices());
    EXPECT_FALSE(open((madeFolder() / "cff-ascii-bom/COMBINED.CFF").string()).librarySuffices());
    for (const fs::path& corpus : corpusFolders()) {
        for (const char* path :
             {"s21-1999-ascii-pq/1999-ascii-pq.cfg", "s42-2013-float32/Comtrade1.cfg", "s45-2001-bin/test1.cfg"}) {
            EXPECT_TRUE(open((corpus / path).string()).librarySuffices()) << path;
        }
    }
}

TEST(Corpus, TimeCodesAreKept) {
    const Opened opened = open((madeFolder() / "five-records/five.cfg").string());
    EXPECT_EQ(opened.header().timeCode, "-5h30");
    EXPECT_EQ(opened.header().localCode, "-5h30");
    EXPECT_EQ(opened.header().timeQuality, "B");
    EXPECT_EQ(opened.header().leapSecond, "3");
}

TEST(Corpus, TextsBesideThePairAreKept) {
    const Opened opened = open((madeFolder() / "header-and-information/rec.cfg").string());
    EXPECT_EQ(opened.header().hdr, "Fault on line 3\r\n");
    EXPECT_EQ(opened.header().inf, "[Public Record_Information]\r\nSource=Relay\r\n");
}
