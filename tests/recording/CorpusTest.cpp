#include "Comtrade.h"
#include "support/CarriageReturns.h"
#include "support/RecordingFolders.h"
#include "support/Results.h"
#include "support/TempDir.h"
#include "support/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

// The library by itself on recordings of many devices and programs: small ones made for the purpose (tests/recordings),
// and real ones where they are at hand (ORV_CORPUS_DIR). Every expected value was decoded from the files by a program
// of its own in another language.

using namespace OrvComtradeLib;
using namespace OrvComtradeLib::Enums;
using orvtest::bytesOf;
using orvtest::corpusFolders;
using orvtest::resultOf;

namespace {

namespace fs = std::filesystem;

/// The data file beside a configuration file, its extension in either case; empty when there is none.
fs::path dataFileBeside(const fs::path& cfgPath) {
    for (const char* extension : {".dat", ".DAT"}) {
        fs::path candidate = cfgPath;
        candidate.replace_extension(extension);
        if (fs::exists(candidate)) {
            return candidate;
        }
    }
    return {};
}

struct Expected {
    const char* folder;
    const char* file;
    Enums::LoadResult published; ///< result for the files as they are named
    Enums::LoadResult contents;  ///< result for the same bytes in files with lower-case extensions
    Enums::LoadResult crlf;      ///< result for the form with CR LF line ends
    std::size_t analogs;
    std::size_t statuses;
    std::size_t samples;
    double duration;
    double lastSampleTime;
};

void PrintTo(const Expected& expected, std::ostream* out) {
    *out << expected.folder;
}

const Expected kMadeRecordings[] = {
    // clang-format off
    {"1991-ascii-cp866", "rec.cfg", Ok, Ok, Ok, 2, 3, 40, 0.039, 0.039},
    {"1991-binary-utf8", "rec.cfg", Ok, Ok, DatLoadError, 2, 3, 40, 0.039, 0.039},
    {"1991-missing-999999", "rec.cfg", Ok, Ok, Ok, 2, 0, 30, 0.029, 0.029},
    {"1997-rate-0-multiplier", "record.evt.cfg", CfgLoadError, CfgLoadError, CfgLoadError, 0, 0, 0, 0.0, 0.0},
    {"2001-binary", "test1.cfg", Ok, Ok, DatLoadError, 2, 2, 50, 0.049, 0.049},
    {"752-status", "STATUS_752.CFG", DatFileNotFound, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"83-rates-blank-lines", "1.cfg", Ok, Ok, DatLoadError, 2, 2, 166, 0.06873228728018885, 0.06873228728018885},
    {"cff-ascii-bom", "COMBINED.CFF", CfgFileNotFound, CfgFileNotFound, CfgFileNotFound, 0, 0, 0, 0.0, 0.0},
    {"cff-base64-padding", "CODED.CFF", CfgFileNotFound, CfgFileNotFound, CfgFileNotFound, 0, 0, 0, 0.0, 0.0},
    {"cff-float32-raw", "float.cff", CfgFileNotFound, CfgFileNotFound, CfgFileNotFound, 0, 0, 0, 0.0, 0.0},
    {"commas-in-the-name", "200229,101530250,0T,SITE,U1,TDR,7.CFG", DatFileNotFound, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"configuration-only", "HR_2_ASCII.CFG", DatFileNotFound, DatFileNotFound, DatFileNotFound, 0, 0, 0, 0.0, 0.0},
    {"constant-zero-stamps", "2019_disturbance.cfg", Ok, Ok, DatLoadError, 2, 1, 40, 0.65, 0.65},
    {"declared-885-holds-8", "short.cfg", Ok, Ok, Ok, 1, 1, 8, 0.14733333333333334, 0.0011666666666666668},
    {"decimals-plus-signs", "rec.cfg", DatLoadError, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"empty-fields-0x1a", "feeder_1999.CFG", CfgLoadError, CfgLoadError, CfgLoadError, 0, 0, 0, 0.0, 0.0},
    {"ends-per-segment", "FIELD7_0001.cfg", DatLoadError, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"five-records", "five.cfg", Ok, Ok, DatLoadError, 1, 16, 5, 0.00026041666666666666, 0.00026041666666666666},
    {"float32-nanoseconds", "float.cfg", Ok, Ok, DatLoadError, 2, 33, 48, 0.03916666666666667, 0.03916666666666667},
    {"fourteen-fields", "DATA.cfg", CfgLoadError, CfgLoadError, CfgLoadError, 0, 0, 0, 0.0, 0.0},
    {"gbk-ascii-stamps-begin-again", "test2.cfg", Ok, Ok, Ok, 2, 2, 55, 0.054000000000000006, 0.054000000000000006},
    {"gbk-binary-4-rates", "bay.cfg", Ok, Ok, DatLoadError, 2, 18, 48, 0.48718749999999994, 0.48718749999999994},
    {"header-and-information", "rec.cfg", DatLoadError, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"latin1-station", "station.cfg", Ok, Ok, Ok, 1, 1, 40, 0.0325, 0.0325},
    {"missing-8000-stray-bytes", "HR_1.CFG", DatFileNotFound, Ok, DatLoadError, 3, 40, 40, 0.0195, 0.0195},
    {"missing-80000000", "rec.cfg", DatLoadError, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"missing-99999", "rec.cfg", Ok, Ok, Ok, 2, 0, 40, 0.039, 0.039},
    {"mixed-case-names", "RUN-2.cfg", DatFileNotFound, Ok, DatLoadError, 2, 0, 40, 0.039, 0.039},
    {"month-before-day", "rec.cfg", Ok, Ok, Ok, 1, 0, 30, 0.029, 0.029},
    {"no-time-lines", "rec.cfg", Ok, Ok, Ok, 1, 0, 40, 0.039, 0.039},
    {"one-record-more", "4.CFG", DatFileNotFound, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"range-in-units", "quality.cfg", Ok, Ok, Ok, 2, 0, 60, 0.007688681694482821, 0.007688681694482821},
    {"range-of-binary-in-binary32", "rec.cfg", DatLoadError, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"rate-0-nanosecond-stamps", "wave.cfg", DatLoadError, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"rate-0-tail", "trend.cfg", DatLoadError, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"rate-0.0-no-such-month", "results.cfg", Ok, Ok, Ok, 1, 0, 40, 0.0039000374999999996, 0.0039000374999999996},
    {"stamps-in-milliseconds", "out.cfg", DatLoadError, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"substitute-tail", "sub.cfg", Ok, Ok, Ok, 1, 1, 40, 0.039, 0.039},
    {"trailing-points", "SIMULATION.cfg", Ok, Ok, Ok, 2, 0, 40, 0.0203125, 0.0203125},
    {"travelling-wave-1999", "WAVE_TW.CFG", DatFileNotFound, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"travelling-wave-2013", "WAVE_A.CFG", DatFileNotFound, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"trigger-unset", "5.cfg", DatLoadError, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"unsigned-range", "simulator.cfg", Ok, Ok, Ok, 1, 1, 40, 0.00195, 0.00195},
    {"upper-case-ascii-crlf", "RECORD_1.CFG", DatFileNotFound, Ok, Ok, 2, 2, 40, 0.039, 0.039},
    {"upper-case-binary32-crlf", "RECORD_2.CFG", DatFileNotFound, DatLoadError, DatLoadError, 0, 0, 0, 0.0, 0.0},
    {"utf8-degree-blanks", "real.cfg", Ok, Ok, DatLoadError, 2, 2, 60, 0.036844999999999996, 0.036844999999999996},
    {"utf8-station", "station.cfg", Ok, Ok, Ok, 1, 0, 40, 0.039, 0.039},
    {"value-beyond-max", "RECORD_3.CFG", DatFileNotFound, Ok, Ok, 1, 0, 40, 0.039, 0.039},
    {"words-for-the-time-code", "rec.cfg", Ok, Ok, Ok, 1, 0, 40, 0.039, 0.039},
    // clang-format on
};

const Expected kRealRecordings[] = {
    // clang-format off
    {"s01-2013-ascii", "sample_ascii.cfg", Ok, Ok, Ok, 4, 4, 40, 0.0325, 0.0325},
    {"s02-2013-ascii-missing", "sample_ascii_missing.cfg", Ok, Ok, Ok, 4, 4, 40, 0.0325, 0.0325},
    {"s03-2013-ascii-utf8", "sample_ascii_utf-8.cfg", Ok, Ok, Ok, 4, 4, 40, 0.0325, 0.0325},
    {"s04-2013-ascii-latin1", "sample_iso8859-1.cfg", Ok, Ok, Ok, 4, 4, 40, 0.0325, 0.0325},
    {"s05-2013-ascii-sub", "sample_sub_char.cfg", Ok, Ok, Ok, 4, 4, 40, 0.0325, 0.0325},
    {"s06-1999-bin", "sample_bin.cfg", Ok, Ok, DatLoadError, 4, 16, 5, 0.00026041666666666666, 0.00026041666666666666},
    {"s07-1999-bin-missing", "sample_bin_missing.cfg", Ok, Ok, DatLoadError, 4, 16, 5, 0.00026041666666666666, 0.00026041666666666666},
    {"s08-2013-float32-cff", "sample_float32.cff", CfgFileNotFound, CfgFileNotFound, CfgFileNotFound, 0, 0, 0, 0.0, 0.0},
    {"s09-2013-ascii-cff", "sample_ascii.cff", CfgFileNotFound, CfgFileNotFound, CfgFileNotFound, 0, 0, 0, 0.0, 0.0},
    {"s10-2000-ascii-cp1251-83rates", "1.cfg", Ok, Ok, DatLoadError, 4, 15, 5316, 2.216964580619267, 2.216964580619267},
    {"s11-1997-bin-upper", "4.CFG", DatFileNotFound, DatLoadError, DatLoadError, 6, 16, 0, 0.0, 0.0},
    {"s12-2013-bin", "sample_2013_bin.cfg", Ok, Ok, DatLoadError, 4, 16, 5, 0.00026041666666666666, 0.00026041666666666666},
    {"s13-1999-bin-degree", "real_1999_bin.cfg", Ok, Ok, DatLoadError, 24, 64, 3000, 1.8728159999999998, 1.8728159999999998},
    {"s14-1999-ascii-gbk-10rates", "test2.cfg", Ok, Ok, Ok, 15, 7, 950, 0.9490000000000001, 0.9490000000000001},
    {"s15-1999-bin-gbk-4rates", "xtz.cfg", Ok, Ok, DatLoadError, 48, 96, 3077, 26.869999999999997, 26.869999999999997},
    {"s16-2013-ascii-upper-crlf", "TestRecord1_ASCII.CFG", DatFileNotFound, Ok, Ok, 7, 3, 1300, 1.299, 1.299},
    {"s17-2013-bin32-upper-crlf", "TestRecord1_Binary.CFG", DatFileNotFound, DatLoadError, DatLoadError, 7, 3, 0, 0.0, 0.0},
    {"s18-2013-cff-ascii", "TestRecord_CFF_ASCII_2013.CFF", CfgFileNotFound, CfgFileNotFound, CfgFileNotFound, 0, 0, 0, 0.0, 0.0},
    {"s19-2013-cff-bin-base64", "TestRecord_CFF_BinaryBase64.CFF", CfgFileNotFound, CfgFileNotFound, CfgFileNotFound, 0, 0, 0, 0.0, 0.0},
    {"s20-1999-ascii-upper-crlf", "keating_1999.CFG", CfgLoadError, CfgLoadError, CfgLoadError, 0, 0, 0, 0.0, 0.0},
    {"s21-1999-ascii-pq", "1999-ascii-pq.cfg", Ok, Ok, Ok, 6, 0, 3584, 0.4666286054260542, 0.4666286054260542},
    {"s22-1999-bin-crlf-tail", "1999-binary-hif-sel.cfg", DatLoadError, DatLoadError, DatLoadError, 18, 48, 0, 0.0, 0.0},
    {"s23-2000-bin-cp1251", "Number start = 690 Test = 4.1.2.1.1 Time = 07_19_2022 13_50_13.811 Terminal \xD0\x9F\xD0\xA1\xD0\x90.cfg", Ok, Ok, DatLoadError, 33, 128, 2500, 2.499, 2.499},
    {"s24-1999-ascii-rtds", "Number start = 691 Test = 4.1.2.1.2 Time = 07_19_2022 13_50_48.925 RTDS.cfg", Ok, Ok, Ok, 18, 30, 2000, 0.09995, 0.09995},
    {"s25-1991-ascii-cp866", "test.cfg", Ok, Ok, Ok, 4, 32, 4000, 3.999, 3.999},
    {"s26-1991-bin-utf8-cyrillic", "test1.binary.cfg", Ok, Ok, DatLoadError, 4, 32, 6000, 5.999, 5.999},
    {"s27-1999-ascii-short", "test_ascii.cfg", Ok, Ok, Ok, 6, 6, 8, 0.14733333333333334, 0.0011666666666666668},
    {"s28-1999-bin-persegment", "BAY01_0001_20221020_114520_483.cfg", DatLoadError, DatLoadError, DatLoadError, 10, 32, 0, 0.0, 0.0},
    {"s29-1997-bin-evt", "Main Protection - Oscilografia.evt.cfg", CfgLoadError, CfgLoadError, CfgLoadError, 0, 0, 0, 0.0, 0.0},
    {"s30-1999-bin-relay-tail", "HR_13360.CFG", DatFileNotFound, Ok, DatLoadError, 29, 384, 3000, 1.4995, 1.4995},
    {"s31-1999-bin-752status-crlf", "SE_A_2020_07_14_15h05_LT_e_CABO_220kV.CFG", DatFileNotFound, DatLoadError, DatLoadError, 14, 752, 0, 0.0, 0.0},
    {"s32-1999-bin-tw-crlf", "SE_A_2020_07_14_15h05_LT_e_CABO_220kV_TW.CFG", DatFileNotFound, DatLoadError, DatLoadError, 6, 0, 0, 0.0, 0.0},
    {"s33-2013-bin-tw-crlf", "2023_12_15_LT230kV_A.CFG", DatFileNotFound, DatLoadError, DatLoadError, 6, 0, 0, 0.0, 0.0},
    {"s34-2013-bin32-tdr-a", "191015,164355713,0T,CURUI,C1,ONS,TDR,10141.CFG", DatFileNotFound, DatLoadError, DatLoadError, 26, 320, 0, 0.0, 0.0},
    {"s35-2013-bin32-tdr-b", "191016,113830029,0T,XINGU,C1,ONS,TDR,10221.CFG", DatFileNotFound, DatLoadError, DatLoadError, 26, 320, 0, 0.0, 0.0},
    {"s36-1999-bin-mixedcase", "FC-2.cfg", DatFileNotFound, Ok, DatLoadError, 16, 0, 8025, 8.024, 8.024},
    {"s37-1999-bin-longterm", "2019_03_28_08h41min47s_SE_A_500kV_disturbance.cfg", Ok, Ok, DatLoadError, 68, 28, 1500, 24.983333333333334, 24.983333333333334},
    {"s38-1999-ascii-hif-a", "HIF_DRY1.cfg", Ok, Ok, Ok, 6, 0, 9600, 4.999479166666666, 4.999479166666666},
    {"s39-1999-ascii-hif-b", "HIF_SAND5.cfg", Ok, Ok, Ok, 6, 0, 9600, 4.999479166666666, 4.999479166666666},
    {"s40-1999-ascii-14fields", "DAta.cfg", CfgLoadError, CfgLoadError, CfgLoadError, 0, 0, 0, 0.0, 0.0},
    {"s41-1999-ascii-rate0", "resultadosHCS.cfg", Ok, Ok, Ok, 9, 0, 5001, 0.5000000135, 0.5000000135},
    {"s42-2013-float32", "Comtrade1.cfg", Ok, Ok, DatLoadError, 23, 140, 3000, 2.4991666666666665, 2.4991666666666665},
    {"s43-2013-cfgonly-592status", "HR_85429_ASCII.CFG", DatFileNotFound, DatFileNotFound, DatFileNotFound, 7, 592, 0, 0.0, 0.0},
    {"s44-2013-cfgonly", "ejemplo_comtrade.cfg", DatFileNotFound, DatFileNotFound, DatFileNotFound, 10, 12, 0, 0.0, 0.0},
    {"s45-2001-bin", "test1.cfg", Ok, Ok, DatLoadError, 20, 84, 4000, 3.999, 3.999},
    {"s46-1999-bin-gbk-wide", "ygz.cfg", Ok, Ok, DatLoadError, 96, 128, 1500, 4.78, 4.78},
    {"s47-2013-bin32-300status", "5.cfg", DatLoadError, DatLoadError, DatLoadError, 37, 300, 0, 0.0, 0.0},
    // clang-format on
};

/// One value and one status bit (-1: the recording has none) of one sample.
struct Spot {
    const char* folder;
    std::size_t sample;
    double time;
    std::size_t analog;
    double value;
    int status;
    bool bit;
};

const Spot kSpots[] = {
    // clang-format off
    {"s01-2013-ascii", 1, 0.0008333333333333334, 0, -1.65142822265625, 3, false},
    {"s01-2013-ascii", 13, 0.010833333333333334, 2, -0.51251220703125, 1, true},
    {"s01-2013-ascii", 39, 0.0325, 3, -12.47113037109375, 3, true},
    {"s02-2013-ascii-missing", 1, 0.0008333333333333334, 0, 11389.103210449219, 3, false},
    {"s02-2013-ascii-missing", 13, 0.010833333333333334, 2, -0.51251220703125, 1, true},
    {"s02-2013-ascii-missing", 39, 0.0325, 3, -12.47113037109375, 3, true},
    {"s06-1999-bin", 1, 6.510416666666667e-05, 0, -74.09159815833333, 15, false},
    {"s06-1999-bin", 2, 0.00013020833333333333, 2, 86.95953163333333, 15, false},
    {"s06-1999-bin", 4, 0.00026041666666666666, 3, 3.0435082666666666, 15, false},
    {"s07-1999-bin-missing", 1, 6.510416666666667e-05, 0, -74.09159815833333, 15, false},
    {"s07-1999-bin-missing", 2, 0.00013020833333333333, 2, -101.46310826666665, 15, false},
    {"s07-1999-bin-missing", 4, 0.00026041666666666666, 3, 3.0435082666666666, 15, false},
    {"s10-2000-ascii-cp1251-83rates", 1, 0.00041640476177816496, 0, -59.885136, 11, true},
    {"s10-2000-ascii-cp1251-83rates", 1992, 0.8298808402066518, 2, 23.454184, 14, false},
    {"s10-2000-ascii-cp1251-83rates", 5315, 2.216964580619267, 3, -1.804168, 11, true},
    {"s13-1999-bin-degree", 1, 0.000624, 0, 2.158286, 63, false},
    {"s13-1999-bin-degree", 1500, 0.93672, 12, -139.30003453799998, 63, false},
    {"s13-1999-bin-degree", 2999, 1.8728159999999998, 23, 926.2627708800001, 63, false},
    {"s14-1999-ascii-gbk-10rates", 1, 0.001, 0, 0.36018, 6, false},
    {"s14-1999-ascii-gbk-10rates", 475, 0.47500000000000003, 7, 0.23193300000000003, 6, false},
    {"s14-1999-ascii-gbk-10rates", 949, 0.9490000000000001, 14, 999999.0, 6, false},
    {"s15-1999-bin-gbk-4rates", 1, 0.0003125, 0, -85.19837199999999, 90, true},
    {"s15-1999-bin-gbk-4rates", 2071, 16.22, 24, 2.8432844999999998, 46, true},
    {"s15-1999-bin-gbk-4rates", 3076, 26.869999999999997, 47, 0.0031526, 90, true},
    {"s16-2013-ascii-upper-crlf", 1, 0.001, 0, 1.0499680148, 2, false},
    {"s16-2013-ascii-upper-crlf", 387, 0.387, 3, 0.00468893715, 0, false},
    {"s16-2013-ascii-upper-crlf", 1299, 1.299, 6, -0.05831484285000001, 2, false},
    {"s21-1999-ascii-pq", 1, 0.00013023405119342847, 0, 93.90237898908356, -1, false},
    {"s21-1999-ascii-pq", 1792, 0.23337941973862383, 3, 1575.059240443643, -1, false},
    {"s21-1999-ascii-pq", 3583, 0.4666286054260542, 5, 3849.174266571641, -1, false},
    {"s23-2000-bin-cp1251", 1, 0.001, 0, -30.40062299, 127, false},
    {"s23-2000-bin-cp1251", 1038, 1.038, 16, 0.6283206800000001, 111, false},
    {"s23-2000-bin-cp1251", 2499, 2.499, 32, 0.0, 127, false},
    {"s24-1999-ascii-rtds", 1, 5e-05, 0, 0.0545426350999999, 9, true},
    {"s24-1999-ascii-rtds", 1000, 0.05, 9, 0.14452800259999998, 9, true},
    {"s24-1999-ascii-rtds", 1999, 0.09995, 17, 77.29217062, 9, true},
    {"s25-1991-ascii-cp866", 1, 0.001, 0, 3.939624, 26, true},
    {"s25-1991-ascii-cp866", 2000, 2.0, 2, 4.599888, 26, true},
    {"s25-1991-ascii-cp866", 3999, 3.999, 3, 0.001488, 26, true},
    {"s26-1991-bin-utf8-cyrillic", 1, 0.001, 0, 0.037881, 26, true},
    {"s26-1991-bin-utf8-cyrillic", 3000, 3.0, 2, -0.037704, 26, true},
    {"s26-1991-bin-utf8-cyrillic", 5999, 5.999, 3, 0.002976, 26, true},
    {"s27-1999-ascii-short", 1, 0.00016666666666666666, 0, -68.18833000000001, 5, false},
    {"s27-1999-ascii-short", 4, 0.0006666666666666666, 3, 2.925281672834583, 5, true},
    {"s27-1999-ascii-short", 7, 0.0011666666666666668, 5, -34.671781138678746, 5, false},
    {"s30-1999-bin-relay-tail", 1, 0.0005, 0, -0.2198364218181818, 319, true},
    {"s30-1999-bin-relay-tail", 529, 0.2645, 14, 0.0, 381, false},
    {"s30-1999-bin-relay-tail", 2999, 1.4995, 28, -41615.36, 331, true},
    {"s36-1999-bin-mixedcase", 1, 0.001, 0, 0.1669019742857143, -1, false},
    {"s36-1999-bin-mixedcase", 4012, 4.012, 8, 0.00044469857142857144, -1, false},
    {"s36-1999-bin-mixedcase", 8024, 8.024, 15, 0.0, -1, false},
    {"s37-1999-bin-longterm", 1, 0.016666666666666666, 0, 312936.417237, 27, true},
    {"s37-1999-bin-longterm", 750, 12.5, 34, 349.3360689, 27, true},
    {"s37-1999-bin-longterm", 1499, 24.983333333333334, 67, 0.017118945, 27, true},
    {"s38-1999-ascii-hif-a", 1, 0.0005208333333333333, 0, 11051.0, -1, false},
    {"s38-1999-ascii-hif-a", 4800, 2.5, 3, 11268.0, -1, false},
    {"s38-1999-ascii-hif-a", 9599, 4.999479166666666, 5, 0.0, -1, false},
    {"s41-1999-ascii-rate0", 1, 9.99995e-05, 0, 245906.45000700006, -1, false},
    {"s41-1999-ascii-rate0", 2500, 0.2500000065, 4, -47.51742465500001, -1, false},
    {"s41-1999-ascii-rate0", 5000, 0.5000000135, 8, 51.42646092800001, -1, false},
    {"s42-2013-float32", 1, 0.0008333333333333334, 0, 237.4300079345703, 130, true},
    {"s42-2013-float32", 1200, 1.0, 11, 4.335000038146973, 7, true},
    {"s42-2013-float32", 2999, 2.4991666666666665, 22, 0.042223010212183, 130, true},
    {"s45-2001-bin", 1, 0.001, 0, 116.69298564, 48, true},
    {"s45-2001-bin", 1037, 1.037, 10, -11388.822718, 41, false},
    {"s45-2001-bin", 3999, 3.999, 19, 24.055857399999997, 48, true},
    {"s46-1999-bin-gbk-wide", 1, 0.0003125, 0, -74.95232039999999, 127, true},
    {"s46-1999-bin-gbk-wide", 763, 0.2384375, 48, 1.9482043, 10, true},
    {"s46-1999-bin-gbk-wide", 1499, 4.78, 95, -0.0534714, 127, true},
    // clang-format on
};

struct Name {
    const char* folder;
    std::size_t position;
    const char* name;
};

const Name kAnalogNames[] = {
    // ASCII, blanks kept
    {"s01-2013-ascii", 0, "IA ,,Line123, A"},
    {"s01-2013-ascii", 3, "3I0,,Line123, A"},
    {"s37-1999-bin-longterm", 34, "IS+ I_LT_SE_A_SE_B mag,,I_LT_SE_A_SE_B,A"},
    {"s37-1999-bin-longterm", 67, "I_NEUT_RDXN,,,A"},
    {"s41-1999-ascii-rate0", 4, "HCSB  -HVS1B , ,c,A"},
    {"s42-2013-float32", 22, "REF IN,,,A"},
    // UTF-8: a degree sign as the unit; a Cyrillic v in the identifier
    {"s13-1999-bin-degree", 12, "J1 Ib Angle         ,_,,\xC2\xB0     "},
    {"s26-1991-bin-utf8-cyrillic", 1, "I\xD0\xB2,B,,A"},
    // CP866: the same identifier
    {"s25-1991-ascii-cp866", 1, "I\xD0\xB2,B,,A"},
    {"s25-1991-ascii-cp866", 2, "Ic,C,,A"},
    // CP1251: the units volt per kilovolt and ampere in Cyrillic letters
    {"s23-2000-bin-cp1251", 0, "Ua,A,,\xD0\x92/\xD0\xBA\xD0\x92"},
    {"s23-2000-bin-cp1251", 16,
     "Ic \xD0\x92"
     "2,C,,\xD0\x90"},
    {"s10-2000-ascii-cp1251-83rates", 3, "3U0,,,V"},
};

const Name kStatusNames[] = {
    // ASCII
    {"s01-2013-ascii", 0, "51A,Line123"},
    {"s13-1999-bin-degree", 0, "Ph TOC 1 OP         ,"},
    {"s37-1999-bin-longterm", 27, "V_DJ705,"},
    {"s42-2013-float32", 139, "TRIP FROM LV,"},
    // UTF-8: "Sbros signalizatsii" and "Pusk OZZ" in Russian letters
    {"s26-1991-bin-utf8-cyrillic", 0,
     " \xD0\xA1\xD0\xB1\xD1\x80\xD0\xBE\xD1\x81 "
     "\xD1\x81\xD0\xB8\xD0\xB3\xD0\xBD\xD0\xB0\xD0\xBB\xD0\xB8\xD0\xB7\xD0\xB0"
     "\xD1\x86\xD0\xB8\xD0\xB8  ,"},
    {"s26-1991-bin-utf8-cyrillic", 16, "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA \xD0\x9E\xD0\x97\xD0\x97            ,"},
    // CP866: the same two
    {"s25-1991-ascii-cp866", 0,
     " \xD0\xA1\xD0\xB1\xD1\x80\xD0\xBE\xD1\x81 "
     "\xD1\x81\xD0\xB8\xD0\xB3\xD0\xBD\xD0\xB0\xD0\xBB\xD0\xB8\xD0\xB7\xD0\xB0"
     "\xD1\x86\xD0\xB8\xD0\xB8  ,"},
    {"s25-1991-ascii-cp866", 16, "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA \xD0\x9E\xD0\x97\xD0\x97            ,"},
    // CP1251: "ZMN-1 pusk", "Osh. F*", "DO02.07 Rezerv", "Vyv.puska UROV2"
    {"s10-2000-ascii-cp1251-83rates", 0, "\xD0\x97\xD0\x9C\xD0\x9D-1 \xD0\xBF\xD1\x83\xD1\x81\xD0\xBA,"},
    {"s10-2000-ascii-cp1251-83rates", 14, "\xD0\x9E\xD1\x88. F*,"},
    {"s23-2000-bin-cp1251", 64, "DO02.07 \xD0\xA0\xD0\xB5\xD0\xB7\xD0\xB5\xD1\x80\xD0\xB2,"},
    {"s23-2000-bin-cp1251", 127,
     "\xD0\x92\xD1\x8B\xD0\xB2.\xD0\xBF\xD1\x83\xD1\x81\xD0\xBA\xD0\xB0 \xD0\xA3\xD0\xA0\xD0\x9E\xD0\x92"
     "2,"},
};

std::vector<Expected> everyRecording() {
    return orvtest::rowsAtHand(kMadeRecordings, kRealRecordings);
}

fs::path pathOf(const Expected& expected) {
    return orvtest::fileOf(expected.folder, expected.file);
}

const Expected& realOne(const std::string& folder) {
    const auto* const found = std::find_if(std::begin(kRealRecordings), std::end(kRealRecordings),
                                           [&folder](const Expected& expected) { return folder == expected.folder; });
    return found == std::end(kRealRecordings) ? throw std::out_of_range(folder) : *found;
}

/// Copies the pair under a plain lower-case name, in the form asked for, and gives the path of the configuration.
std::string copyOf(const Expected& expected, const orvtest::TempDir& dir, bool crlf) {
    const fs::path cfgPath = pathOf(expected);
    const std::string cfgBytes = bytesOf(cfgPath);
    const std::string copy = dir.write("copy.cfg", crlf ? orvtest::withCarriageReturns(cfgBytes) : cfgBytes);
    const fs::path datPath = dataFileBeside(cfgPath);
    if (!datPath.empty()) {
        const std::string datBytes = bytesOf(datPath);
        const bool isText =
            cfgBytes.find("\nASCII") != std::string::npos || cfgBytes.find("\nascii") != std::string::npos;
        dir.write("copy.dat", crlf && isText ? orvtest::withCarriageReturns(datBytes) : datBytes);
    }
    return copy;
}

void expectLoaded(const Comtrade& recording, const Expected& expected) {
    EXPECT_TRUE(recording.loaded);
    EXPECT_EQ(recording.analogChannels.size(), expected.analogs);
    EXPECT_EQ(recording.binaryChannels.size(), expected.statuses);
    EXPECT_EQ(recording.dat.samples.size(), expected.samples);
    EXPECT_EQ(recording.duration, expected.duration);
    EXPECT_EQ(recording.dat.lastSampleTime, expected.lastSampleTime);
    for (const Sample& sample : recording.dat.samples) {
        ASSERT_EQ(sample.analogValues.size(), expected.analogs) << sample.index;
        ASSERT_EQ(sample.binaryValues.size(), expected.statuses) << sample.index;
    }
}

class EveryRecording : public testing::TestWithParam<Expected> {};

class EveryPair : public EveryRecording {};

/// The recordings that are no single combined file.
std::vector<Expected> pairs() {
    std::vector<Expected> result = everyRecording();
    const auto isCombined = [](const Expected& expected) {
        return std::string(expected.folder).find("cff") != std::string::npos;
    };
    result.erase(std::remove_if(result.begin(), result.end(), isCombined), result.end());
    return result;
}

std::string label(const testing::TestParamInfo<Expected>& info) {
    return orvtest::labelOf(info.param.folder);
}

/// Tests of real recordings alone: of each corpus at hand, of which there is none in a fresh clone.
class Corpus : public testing::TestWithParam<fs::path> {};

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Corpus);

} // namespace

TEST(EveryRecordingTable, HoldsEveryRecording) {
    std::vector<fs::path> folders = corpusFolders();
    folders.push_back(orvtest::madeFolder());
    std::size_t count = 0;
    for (const fs::path& folder : folders) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            count += entry.is_directory() ? 1U : 0U;
        }
    }
    EXPECT_EQ(count, everyRecording().size());
    for (const Expected& expected : everyRecording()) {
        EXPECT_TRUE(fs::exists(pathOf(expected))) << pathOf(expected);
    }
}

TEST_P(EveryRecording, LoadsUnderItsOwnName) {
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(pathOf(GetParam()).string())), GetParam().published);
    if (GetParam().published == Enums::Ok) {
        expectLoaded(recording, GetParam());
    } else {
        EXPECT_FALSE(recording.loaded);
        EXPECT_EQ(recording.duration, -1.0);
        EXPECT_TRUE(recording.analogChannels.empty());
        EXPECT_TRUE(recording.binaryChannels.empty());
    }
}

TEST_P(EveryPair, LoadsByItsContents) {
    const orvtest::TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(copyOf(GetParam(), dir, false))), GetParam().contents);
    if (GetParam().contents == Enums::Ok) {
        expectLoaded(recording, GetParam());
    }
}

TEST_P(EveryPair, LoadsInItsCrlfForm) {
    const orvtest::TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(copyOf(GetParam(), dir, true))), GetParam().crlf);
    if (GetParam().crlf == Enums::Ok) {
        expectLoaded(recording, GetParam());
    }
}

INSTANTIATE_TEST_SUITE_P(Whole, EveryRecording, testing::ValuesIn(everyRecording()), label);
INSTANTIATE_TEST_SUITE_P(Whole, EveryPair, testing::ValuesIn(pairs()), label);
INSTANTIATE_TEST_SUITE_P(Real, Corpus, testing::ValuesIn(corpusFolders()));

TEST_P(Corpus, ValuesTimesAndBitsAreThoseOfTheFiles) {
    std::string loadedFolder;
    orvtest::TempDir dir;
    std::unique_ptr<Comtrade> recording;
    for (const Spot& spot : kSpots) {
        SCOPED_TRACE(std::string(spot.folder) + ", sample " + std::to_string(spot.sample));
        if (loadedFolder != spot.folder) {
            recording = std::make_unique<Comtrade>();
            ASSERT_EQ(resultOf(recording->load(copyOf(realOne(spot.folder), dir, false))), Enums::Ok);
            loadedFolder = spot.folder;
        }
        ASSERT_LT(spot.sample, recording->dat.samples.size());
        const Sample& sample = recording->dat.samples[spot.sample];
        EXPECT_EQ(sample.index, spot.sample);
        EXPECT_EQ(sample.time, spot.time);
        EXPECT_EQ(sample.analogValues.at(spot.analog), spot.value);
        if (spot.status >= 0) {
            EXPECT_EQ(sample.binaryValues.at(static_cast<std::size_t>(spot.status)), spot.bit);
        }
    }
}

TEST_P(Corpus, NamesAreUtf8WhateverTheCodePageOfTheFile) {
    for (const bool crlf : {false, true}) {
        for (const Name& row : kAnalogNames) {
            const orvtest::TempDir dir;
            Cfg cfg;
            ASSERT_EQ(resultOf(cfg.load(copyOf(realOne(row.folder), dir, crlf))), Enums::CfgLoaded) << row.folder;
            EXPECT_EQ(cfg.analogChannelConfigs.at(row.position).name(), row.name) << row.folder;
        }
        for (const Name& row : kStatusNames) {
            const orvtest::TempDir dir;
            Cfg cfg;
            ASSERT_EQ(resultOf(cfg.load(copyOf(realOne(row.folder), dir, crlf))), Enums::CfgLoaded) << row.folder;
            EXPECT_EQ(cfg.binaryChannelConfigs.at(row.position).name(), row.name) << row.folder;
        }
    }
}

TEST_P(Corpus, ViewsCarryTheNamesAndTheUnits) {
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(pathOf(realOne("s23-2000-bin-cp1251")).string())), Enums::Ok);
    EXPECT_EQ(recording.analogChannels.at(0).name(), "Ua,A,,\xD0\x92/\xD0\xBA\xD0\x92"); // volts per kilovolt
    EXPECT_EQ(recording.analogChannels.at(16).unit(), "\xD0\x90");                       // Cyrillic capital A
    EXPECT_FALSE(recording.analogChannels.at(16).isCurrent());
    EXPECT_EQ(recording.analogChannels.at(1).skew, -1.11111e-06);
    EXPECT_EQ(recording.binaryChannels.at(127).name(),
              "\xD0\x92\xD1\x8B\xD0\xB2.\xD0\xBF\xD1\x83\xD1\x81\xD0\xBA\xD0\xB0 \xD0\xA3\xD0\xA0\xD0\x9E\xD0\x92"
              "2,");
}

TEST_P(Corpus, StationLineKeepsTheBytesOfTheFile) {
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(pathOf(realOne("s25-1991-ascii-cp866")).string())), Enums::Ok);
    EXPECT_EQ(recording.cfg.stationName, "\x91\x88\x90\x88\x93\x91-2-\x8B          "); // CP866
    EXPECT_EQ(recording.cfg.recorderId, " 17110318");
    EXPECT_EQ(recording.cfg.revisionYear, 1999);

    Comtrade other;
    ASSERT_EQ(resultOf(other.load(pathOf(realOne("s10-2000-ascii-cp1251-83rates")).string())), Enums::Ok);
    EXPECT_EQ(other.cfg.stationName, "11");
    EXPECT_EQ(other.cfg.recorderId, "\xF2\xE5\xF0\xEC\xE8\xED\xE0\xEB \xE2\xE5\xF0\xF1\xE8\xFF 101110"); // CP1251
    EXPECT_EQ(other.cfg.revisionYear, 2000);
    EXPECT_EQ(other.cfg.samplingRates.size(), 83U);
}

TEST_P(Corpus, AnyFileOfAPairNamesIt) {
    const Expected& expected = realOne("s01-2013-ascii");
    for (const char* extension : {".cfg", ".dat", ".cff", ".CFF"}) {
        fs::path path = pathOf(expected);
        path.replace_extension(extension);
        Comtrade recording;
        ASSERT_EQ(resultOf(recording.load(path.string())), Enums::Ok) << extension;
        expectLoaded(recording, expected);
        EXPECT_EQ(recording.filePath, path.string());
    }
}
