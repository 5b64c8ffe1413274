#include "analogShape.h"

#include <algorithm>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kUnitField = 4;
constexpr std::size_t kNumbers = 5;    // a, b, skew, min, max, primary, secondary follow
constexpr std::size_t kOldFields = 10; // without ratio and side
constexpr std::size_t kSideField = 12;

bool isNumberOrEmpty(const CfgLine& line, std::size_t index) {
    return readNumber(line[index].text).form != NumberForm::Malformed;
}

// Whether the fields fit the line when the first numeric one stands `surplus` fields further to the right.
bool fits(const CfgLine& line, std::size_t surplus) {
    const NumberForm factor = readNumber(line[kNumbers + surplus].text).form;
    if (factor == NumberForm::Malformed || factor == NumberForm::Empty) {
        return false;
    }
    const std::size_t last = std::min(line.count(), kSideField + surplus);
    for (std::size_t index = kNumbers + 1 + surplus; index < last; ++index) {
        if (!isNumberOrEmpty(line, index)) {
            return false;
        }
    }
    const CfgField& side = line[kSideField + surplus];
    return side.text.empty() || isSide(side.text);
}

std::optional<std::size_t> fittingSurplus(const CfgLine& line) {
    if (fits(line, 0)) {
        return 0;
    }
    for (std::size_t surplus = 1; surplus + kOldFields <= line.count(); ++surplus) {
        if (fits(line, surplus)) {
            return surplus;
        }
    }
    return std::nullopt;
}

std::size_t countWithoutEmptyEnd(const CfgLine& line) {
    std::size_t count = line.count();
    while (count > 0 && line[count - 1].text.empty()) {
        --count;
    }
    return count;
}

// A line without a side, longer than one of revision 1991, whose numbers can't be meant as they stand.
bool isShifted(const CfgLine& line) {
    const bool isLong = line[kSideField].text.empty() && countWithoutEmptyEnd(line) > kOldFields;
    return isLong &&
           (readNumber(line[kNumbers].text).value == 0.0 ||
            readNumber(line[8].text).value > readNumber(line[9].text).value || readNumber(line[10].text).value < 0.0);
}

// A unit is never a number, so one that is was part of a number.
bool isDoubtful(const CfgLine& line, const std::optional<std::size_t>& surplus) {
    if (!surplus || *surplus == 0) {
        return !surplus || isShifted(line);
    }
    return readNumber(line[kUnitField + *surplus].text).form == NumberForm::Good;
}

std::optional<DecimalCommas> decimalsOf(const CfgLine& line, bool isOld) {
    for (std::size_t index = kSideField + 1; index < line.count(); ++index) {
        if (isSide(line[index].text)) {
            return findDecimalCommas(line, index, {7});
        }
    }
    return findDecimalCommas(line, countWithoutEmptyEnd(line),
                             isOld ? std::vector<std::size_t>{5} : std::vector<std::size_t>{7, 5});
}

} // namespace

AnalogShape analogShape(const CfgLine& line, bool isOld) {
    const std::optional<std::size_t> surplus = fittingSurplus(line);
    AnalogShape shape;
    shape.textCommas = surplus.value_or(0);
    if (!isDoubtful(line, surplus)) {
        return shape;
    }
    shape.decimals = decimalsOf(line, isOld);
    const bool canStand = surplus && *surplus == 0;
    if (canStand && shape.decimals && shape.decimals->oddity > 1) {
        shape.decimals.reset(); // as odd as the line itself: a channel out of use, say
    }
    if (shape.decimals) {
        shape.textCommas = shape.decimals->first - kNumbers;
    }
    return shape;
}

bool isSide(std::string_view text) {
    return !text.empty() && (text[0] == 'P' || text[0] == 'p' || text[0] == 'S' || text[0] == 's');
}

} // namespace OrvComtradeIntake
