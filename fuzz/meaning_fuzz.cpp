// 14 bytes of choices, then a seed: a sound recording whose meaning is known (tests/support/soundRecordings.h), as a
// pair of files or as one. What opens has that meaning by every way out, on whichever side, without a finding worse
// than a note; written in any form and opened again it still has.

#include "Comtrade.h"
#include "intake/comparison.h"
#include "intake/openedChecks.h"
#include "intake/slowReader.h"
#include "support/recordings.h"
#include "support/soundRecordings.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace OrvComtradeIntake;
using namespace orvtest;
namespace Enums = OrvComtradeLib::Enums;

/// One of some, by a byte.
template <class Value, std::size_t Count> Value oneOf(fuzz::Input& input, const Value (&values)[Count]) {
    return values[input.u8() % Count];
}

Shape shapeBy(fuzz::Input& input) {
    static constexpr int kRevisions[] = {1991, 1999, 2013};
    static constexpr DataType kTypes[] = {DataType::Ascii, DataType::Binary, DataType::Binary32, DataType::Float32};
    static constexpr RateHabit kRates[] = {RateHabit::One, RateHabit::Several, RateHabit::Zero};
    static constexpr StampHabit kStamps[] = {StampHabit::FromZero, StampHabit::FromOnePeriod, StampHabit::FromElsewhere,
                                             StampHabit::Jittered, StampHabit::Constant,      StampHabit::Missing,
                                             StampHabit::Wrapped};
    static constexpr RangeHabit kRanges[] = {RangeHabit::OfValues, RangeHabit::OfEncoding, RangeHabit::OfBinary,
                                             RangeHabit::OfAscii, RangeHabit::OfValuesScaled};
    static constexpr const char* kFrequencies[] = {"1000",         "50",      "60",      "1920.",
                                                   "7673.6171875", "20000.0", "1562500", "0.5"};
    static constexpr const char* kSteps[] = {"1000", "60", "2400", "6400", "10000"};
    Shape shape;
    shape.revision = oneOf(input, kRevisions);
    shape.type = kTypes[input.u8() % (shape.revision == 2013 ? 4U : 2U)];
    shape.analogs = input.u8() % 6U;
    const unsigned int statuses = input.u8();
    shape.statuses = statuses % (statuses < 32 ? 32U : 4U) + (shape.analogs == 0 ? 1U : 0U);
    const unsigned int samples = input.u8();
    shape.samples = samples % (samples < 60 ? 60U : 8U) + 2;
    shape.rates = oneOf(input, kRates);
    const bool isStamped = shape.rates == RateHabit::Zero;
    shape.rate = isStamped ? oneOf(input, kSteps) : oneOf(input, kFrequencies);
    const std::uint8_t stamps = input.u8();
    static constexpr StampHabit kTelling[] = {StampHabit::FromZero, StampHabit::FromElsewhere, StampHabit::Jittered};
    shape.stamps = isStamped ? kTelling[stamps % 3] : kStamps[stamps % 7];
    shape.range = oneOf(input, kRanges);
    static constexpr std::uint32_t kNumbers[] = {1, 0, 4501};
    shape.firstNumber = oneOf(input, kNumbers);
    shape.missingOnceIn = input.u8() % 3 == 0 ? 7 : 0;
    const std::uint8_t flags = input.u8();
    shape.hasNanoseconds = shape.revision == 2013 && shape.rate != "0.5" && (flags & 1U) != 0;
    shape.hasCarriageReturns = (flags & 2U) == 0;
    shape.hasBlanks = (flags & 4U) != 0;
    shape.hasUtf8 = (flags & 8U) != 0;
    shape.endsWithMark = (flags & 16U) != 0;
    return shape;
}

std::string seriousFindings(const Opened& opened) {
    std::string serious;
    for (const Finding& finding : opened.findings()) {
        serious += finding.severity > Severity::Note ? text(finding) : "";
    }
    return serious;
}

void checkSide(const Bytes& bytes, Side side, const slow::Recording& meaning) {
    Options options;
    options.side = side;
    const Opened opened = open(bytes, options);
    FUZZ_CHECK(opened.readable());
    if (side == Side::Recorded) { // else a ratio may be none to convert by
        fuzz::expectNothing(seriousFindings(opened));
    }
    OrvComtradeLib::Comtrade loaded;
    FUZZ_CHECK(opened.load(loaded) == Enums::Ok);
    fuzz::expectNothing(firstHeaderDifference(opened.header(), meaning));
    fuzz::expectNothing(firstTextDifference(loaded, meaning));
    fuzz::expectNothing(firstValueDifference(loaded, meaning, side, 4));
    const Columns columns = opened.columns();
    fuzz::expectNothing(firstDifference(columns, loaded));
    FUZZ_CHECK(missingText(columns.missing) == missingText(meaning));
}

Form formBy(std::uint8_t choice) {
    static constexpr int kRevisions[] = {1991, 1999, 2013};
    static constexpr DataType kTypes[] = {DataType::Ascii, DataType::Binary, DataType::Binary32, DataType::Float32};
    Form form;
    form.revision = kRevisions[choice % 3];
    form.dataType = kTypes[choice / 3 % (form.revision == 2013 ? 4U : 2U)];
    form.combined = choice / 12 % 2 != 0;
    return form;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const Shape shape = shapeBy(input);
    const std::uint8_t side = input.u8();
    const std::uint8_t form = input.u8();
    Random random(fuzz::hashOf(input.rest()));
    const SoundRecording recording = soundRecording(shape, random);
    const slow::Recording meaning = slow::read(recording.cfg(), recording.dat(), recording.facts);
    const Written files =
        side / 4 % 2 == 0 ? Written{recording.cfg(), recording.dat()} : Written{recording.combined(), ""};
    const Bytes bytes = bytesToOpen(files);
    static constexpr Side kSides[] = {Side::Recorded, Side::Primary, Side::Secondary};
    if (!fuzz::kIsFuzzer || side / 8 % 2 == 0) {
        checkSide(bytes, kSides[side % 4 % 3], meaning);
    }
    if (!fuzz::kIsFuzzer || side / 8 % 2 != 0) {
        fuzz::expectNothing(firstBrokenForm(open(bytes), {}, formBy(form)));
    }
    return 0;
}
