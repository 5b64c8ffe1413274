#include "cfg/read/commas.h"

#include "base/characters.h"
#include "cfg/read/analogFields.h"
#include "cfg/read/fields.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace OrvComtradeIntake {

namespace {

bool isPhase(std::string_view text) {
    constexpr std::array<std::string_view, 27> phases = {"A",  "B",  "C",  "N",  "G",  "E",  "R",  "S",   "T",
                                                         "U",  "V",  "W",  "0",  "1",  "2",  "AB", "BC",  "CA",
                                                         "AC", "AN", "BN", "CN", "L1", "L2", "L3", "3I0", "ABC"};
    const std::string upper = upperCase(text.substr(0, 4)); // none is as long
    return std::find(phases.begin(), phases.end(), upper) != phases.end();
}

int rankOfPhase(std::string_view text) {
    if (isPhase(text)) {
        return 2;
    }
    return text.empty() ? 1 : 0;
}

// Number of fields that make the name; the phase is the one behind them.
std::size_t fieldsOfName(const CfgLine& line, std::size_t surplus) {
    std::size_t best = surplus + 1;
    for (std::size_t count = surplus + 1; count >= 1; --count) {
        if (rankOfPhase(line[count + 1].text) > rankOfPhase(line[best + 1].text)) {
            best = count;
        }
    }
    return best;
}

constexpr std::size_t kSkew = 2; // of the numbers
constexpr std::array<const char*, 7> kNames = {"a", "b", "skew", "min", "max", "primary", "secondary"};

std::string_view withoutSign(std::string_view text) {
    return text.substr(!text.empty() && (text.front() == '-' || text.front() == '+') ? 1 : 0);
}

bool areDigits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

std::string joinedText(const CfgLine& line, std::size_t index) {
    return std::string(line[index].text).append(1, '.').append(line[index + 1].text);
}

// "0123" is no number of its own but the end of one.
bool isFractionOnly(std::string_view text) {
    const std::string_view digits = withoutSign(text);
    return digits.size() > 1 && digits[0] == '0' && isDigit(digits[1]);
}

// Empty where the fields from `field` on are no such numbers.
std::vector<double> numbersOf(const CfgLine& line, std::size_t field, const std::vector<bool>& areJoined) {
    std::vector<double> numbers;
    for (const bool isJoined : areJoined) {
        if (isFractionOnly(line[field].text) || (isJoined && !areHalves(line, field))) {
            return {};
        }
        const ReadNumber number = readNumber(isJoined ? joinedText(line, field) : std::string(line[field].text));
        const bool isEmptySkew = number.form == NumberForm::Empty && numbers.size() == kSkew;
        if (number.form != NumberForm::Good && !isEmptySkew) {
            return {};
        }
        numbers.push_back(number.value);
        field += isJoined ? 2U : 1U;
    }
    return numbers;
}

DecimalCommas commasFrom(const CfgLine& line, std::size_t first, std::size_t numbers, std::size_t pairs) {
    DecimalCommas commas;
    commas.first = first;
    std::size_t halves = 0;
    for (std::size_t field = first; field + 1 < first + numbers + pairs; ++field) {
        halves += areHalves(line, field) ? 1U : 0U;
    }
    if (halves < pairs) {
        return commas;
    }
    std::vector<double> found;
    std::vector<bool> areJoined(numbers, false);
    std::fill(areJoined.end() - static_cast<std::ptrdiff_t>(pairs), areJoined.end(), true);
    do {
        const std::vector<double> taken = numbersOf(line, first, areJoined);
        if (taken.empty() || (pairs < numbers && !isSensibleChannel(taken))) {
            continue;
        }
        commas.isOneOfSeveral = commas.isOneOfSeveral || (!found.empty() && taken != found);
        commas.areJoined = areJoined;
        found = taken;
    } while (std::next_permutation(areJoined.begin(), areJoined.end()));
    return commas;
}

} // namespace

void joinText(CfgCursor& cursor, CfgLine& line, std::size_t index, std::size_t count, const char* name) {
    if (count < 2 || index + count > line.written()) {
        return;
    }
    std::string joined;
    for (std::size_t part = index; part < index + count; ++part) {
        joined.append(1, ',').append(line[part].text);
    }
    joined = withoutCommas(joined);
    const std::string repair = joined.empty() ? "an empty field skipped" : "read as \"" + escaped(joined) + '"';
    report(cursor.findings, Kind::CommaInText, line, index, name, {escaped(line.textFrom(index, count)), repair});
    line.replace(index, count, std::move(joined));
}

void joinTexts(CfgCursor& cursor, CfgLine& line, std::size_t surplus) {
    const std::size_t ofName = fieldsOfName(line, surplus);
    joinText(cursor, line, 1, ofName, "ch_id");
    joinText(cursor, line, 3, surplus + 2 - ofName, "ccbm");
}

DecimalCommas findDecimalCommas(const CfgLine& line, std::size_t end, std::size_t numbers) {
    for (std::size_t first = std::max(kFirstNumberField, end - std::min(end, 2 * numbers)); first + numbers < end;
         ++first) {
        if (readNumber(line[first - 1].text).form == NumberForm::Good) {
            continue;
        }
        DecimalCommas commas = commasFrom(line, first, numbers, end - first - numbers);
        if (!commas.areJoined.empty()) {
            return commas;
        }
    }
    return {};
}

bool isSensibleChannel(const std::vector<double>& numbers) {
    const bool hasRatio = numbers.size() < kNames.size() || (numbers[5] != 0.0 && numbers[6] != 0.0);
    return numbers[0] != 0.0 && numbers[kSkew] >= 0.0 && numbers[3] <= numbers[4] && hasRatio;
}

void joinDecimals(CfgCursor& cursor, CfgLine& line, const DecimalCommas& commas) {
    for (std::size_t number = 0; number < commas.areJoined.size(); ++number) {
        if (commas.areJoined[number]) {
            joinDecimal(cursor, line, commas.first + number, kNames[number]);
        }
    }
}

void joinDecimal(CfgCursor& cursor, CfgLine& line, std::size_t index, const char* name) {
    std::string joined = joinedText(line, index);
    report(cursor.findings, Kind::DecimalComma, line, index, name,
           {escaped(line.textFrom(index, 2)), "read as " + numberText(readNumber(joined).value)});
    line.replace(index, 2, std::move(joined));
    cursor.hasDecimalCommas = true;
}

bool areHalves(const CfgLine& line, std::size_t index) {
    const std::string_view whole = line[index].raw;
    const std::string_view fraction = line[index + 1].raw;
    const bool isApart = whole.empty() || fraction.empty() || !isDigit(whole.back()) || !isDigit(fraction.front());
    const std::string_view rest = trimmed(fraction);
    const std::size_t exponent = std::min(rest.find_first_of("eE"), rest.size());
    const bool isPlain = exponent == rest.size() || areDigits(withoutSign(rest.substr(exponent + 1)));
    return !isApart && areDigits(withoutSign(trimmed(whole))) && areDigits(rest.substr(0, exponent)) && isPlain;
}

} // namespace OrvComtradeIntake
