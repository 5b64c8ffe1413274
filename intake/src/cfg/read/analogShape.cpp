#include "cfg/read/analogShape.h"

#include "base/numbers.h"
#include "cfg/read/analogFields.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace OrvComtradeIntake {

namespace {

NumberForm formOf(const CfgLine& line, std::size_t index) {
    return readNumber(line[index].text).form;
}

// Whether the numbers, the first of which is not left empty, stand `surplus` fields further to the right.
bool fits(const CfgLine& line, std::size_t surplus) {
    const NumberForm factor = formOf(line, kFirstNumberField + surplus);
    if (factor == NumberForm::Malformed || factor == NumberForm::Empty) {
        return false;
    }
    const std::size_t last = std::min(line.count(), kSideField + surplus);
    for (std::size_t index = kFirstNumberField + 1 + surplus; index < last; ++index) {
        if (formOf(line, index) == NumberForm::Malformed) {
            return false;
        }
    }
    const CfgField& side = line[kSideField + surplus];
    return side.text.empty() || isSide(side.text);
}

std::optional<std::size_t> fittingSurplus(const CfgLine& line) {
    for (std::size_t surplus = 0; surplus == 0 || surplus + kRatioField <= line.count(); ++surplus) {
        if (fits(line, surplus)) {
            return surplus;
        }
    }
    return std::nullopt;
}

double valueAt(const CfgLine& line, std::size_t index) {
    return readNumber(line[index].text).value;
}

std::vector<double> numbersFrom(const CfgLine& line, std::size_t first) {
    const std::size_t last = first + (line.count() > first + 5 ? 7 : 5);
    std::vector<double> numbers;
    for (std::size_t index = first; index < last; ++index) {
        numbers.push_back(valueAt(line, index));
    }
    return numbers;
}

// A line without a side, longer than one of revision 1991, whose numbers can't be meant as they stand.
bool isShifted(const CfgLine& line) {
    const bool isLong = line[kSideField].text.empty() && line.count() > kRatioField;
    return isLong && (valueAt(line, 5) == 0.0 || valueAt(line, 8) > valueAt(line, 9) || valueAt(line, 10) < 0.0);
}

// A unit is never a number, so one that is was part of a number.
bool isDoubtful(const CfgLine& line, std::size_t surplus) {
    return surplus == 0 ? isShifted(line) : formOf(line, kUnitField + surplus) == NumberForm::Good;
}

DecimalCommas decimalsOf(const CfgLine& line, bool isOld) {
    for (std::size_t index = kSideField + 1; index < line.count(); ++index) {
        if (isSide(line[index].text)) {
            return findDecimalCommas(line, index, 7);
        }
    }
    return findDecimalCommas(line, line.count(), isOld ? 5 : 7);
}

} // namespace

AnalogShape analogShape(const CfgLine& line, bool isOld) {
    const std::optional<std::size_t> surplus = fittingSurplus(line);
    AnalogShape shape;
    shape.textCommas = surplus.value_or(0);
    if (surplus && !isDoubtful(line, *surplus)) {
        return shape;
    }
    shape.decimals = decimalsOf(line, isOld);
    shape.isAmbiguous = shape.decimals.isOneOfSeveral;
    if (!shape.decimals.areJoined.empty()) {
        shape.textCommas = shape.decimals.first - kFirstNumberField;
    } else if (shape.textCommas != 0) {
        shape.isAmbiguous = !isSensibleChannel(numbersFrom(line, kFirstNumberField + shape.textCommas));
    }
    return shape;
}

bool isSide(std::string_view text) {
    return !text.empty() && std::string_view("PpSs").find(text.front()) != std::string_view::npos;
}

} // namespace OrvComtradeIntake
