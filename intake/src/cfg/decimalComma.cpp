#include "decimalComma.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kFirstNumber = 5; // behind the unit
constexpr std::array<const char*, 7> kNames = {"a", "b", "skew", "min", "max", "primary", "secondary"};

// From this on a reading is no likely one: it takes several oddities, or a range whose ends are the wrong way round.
constexpr int kUnlikely = 8;

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool areDigits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

std::string_view withoutSign(std::string_view text) {
    const bool isSigned = !text.empty() && (text.front() == '-' || text.front() == '+');
    return text.substr(isSigned ? 1 : 0);
}

// Digits, and an exponent or none.
bool isFraction(std::string_view text) {
    const std::size_t exponent = text.find_first_of("eE");
    const bool isPlain = exponent == std::string_view::npos;
    return areDigits(text.substr(0, exponent)) && (isPlain || areDigits(withoutSign(text.substr(exponent + 1))));
}

/// A number, of one field or of two.
struct Candidate {
    bool isPossible = false;
    bool isJoined = false;
    bool isEmpty = false;
    bool hasZeroInFront = false; ///< that a whole number has not: "0123" is rather a fraction
    bool isShort = true;         ///< no zero at the end of its decimals
    std::size_t decimals = 0;
    double value = 0.0;
};

Candidate candidateOf(const std::string& text, bool isJoined) {
    const ReadNumber number = readNumber(text);
    Candidate candidate;
    candidate.isEmpty = number.form == NumberForm::Empty;
    candidate.isPossible = number.form == NumberForm::Good || (candidate.isEmpty && !isJoined);
    candidate.isJoined = isJoined;
    candidate.value = number.value;
    const std::string_view digits = withoutSign(text);
    candidate.hasZeroInFront = digits.size() > 1 && digits[0] == '0' && isDigit(digits[1]);
    const std::size_t point = digits.find('.');
    if (point != std::string_view::npos) {
        const std::string_view decimals = digits.substr(point + 1);
        candidate.decimals = std::min(decimals.find_first_of("eE"), decimals.size());
        candidate.isShort = candidate.decimals == 0 || decimals[candidate.decimals - 1] != '0';
    }
    return candidate;
}

std::string joinedText(const CfgField& whole, const CfgField& fraction) {
    return std::string(whole.text).append(1, '.').append(fraction.text);
}

/// What each field may be: a number of its own, or one together with its neighbour.
struct FieldCandidates {
    Candidate alone;
    Candidate joined;
};

std::vector<FieldCandidates> candidatesOf(const CfgLine& line, std::size_t first, std::size_t end) {
    std::vector<FieldCandidates> all(end - first);
    for (std::size_t index = first; index < end; ++index) {
        FieldCandidates& found = all[index - first];
        found.alone = candidateOf(std::string(line[index].text), false);
        if (index + 1 < end && areHalves(line[index], line[index + 1])) {
            found.joined = candidateOf(joinedText(line[index], line[index + 1]), true);
        }
    }
    return all;
}

// One program writes neighbours alike: with the same number of decimals, or each as short as it can be.
int oddityOf(const Candidate& one, const Candidate& other) {
    const bool isAlike =
        one.isEmpty || other.isEmpty || one.decimals == other.decimals || (one.isShort && other.isShort);
    return isAlike ? 0 : 1;
}

// Microseconds behind the first channel, a part of what lies between two samples.
int oddityOfSkew(double skew) {
    return skew < 0.0 ? 2 : skew < 1000.0 ? 0 : 1;
}

// Its ends are whole numbers, and as far from 0 unless it begins there.
int oddityOfRange(const Candidate& min, const Candidate& max) {
    const int joined = (min.isJoined ? 1 : 0) + (max.isJoined ? 1 : 0);
    if (min.isEmpty || max.isEmpty) {
        return joined;
    }
    if (min.value > max.value) {
        return kUnlikely;
    }
    const double sum = min.value + max.value;
    const bool isUsual = sum == 0.0 || sum == -1.0 || (min.value == 0.0 && max.value > 0.0);
    return joined + oddityOf(min, max) + (isUsual ? 0 : 3);
}

// Transformers have 1 A, 5 A or 100 V on that side, so that a part of 1 is rather the end of the other factor.
int oddityOfRatio(const Candidate& primary, const Candidate& secondary) {
    const bool isPart = !secondary.isEmpty && secondary.value < 1.0 && !primary.isJoined;
    return oddityOf(primary, secondary) + (isPart ? 2 : 0);
}

int oddityOfFactor(const Candidate& factor) {
    return factor.isEmpty || factor.value > 0.0 ? 0 : factor.value < 0.0 ? kUnlikely : 4;
}

// How odd a line with these numbers would be.
int oddityOf(const std::vector<Candidate>& numbers) {
    int oddity = numbers[0].value == 0.0 ? 4 : 0;
    for (const Candidate& number : numbers) {
        oddity += number.hasZeroInFront ? kUnlikely : 0;
    }
    oddity += oddityOf(numbers[0], numbers[1]) + oddityOf(numbers[1], numbers[2]);
    oddity += oddityOfSkew(numbers[2].value);
    oddity += oddityOfRange(numbers[3], numbers[4]);
    if (numbers.size() > 6) {
        oddity += oddityOfFactor(numbers[5]) + oddityOfFactor(numbers[6]) + oddityOfRatio(numbers[5], numbers[6]);
    }
    return oddity;
}

/// A way to take all of the numbers.
struct Reading {
    std::vector<Candidate> numbers;
    int oddity = kUnlikely;
};

// Nothing where the fields don't make the numbers of which bits of `joined` say whether they have two.
std::optional<Reading> readingOf(const std::vector<FieldCandidates>& fields, std::size_t count,
                                 const std::bitset<kNames.size()>& joined) {
    Reading reading;
    std::size_t field = 0;
    for (std::size_t number = 0; number < count; ++number) {
        const Candidate& candidate = joined[number] ? fields[field].joined : fields[field].alone;
        if (!candidate.isPossible) {
            return std::nullopt;
        }
        reading.numbers.push_back(candidate);
        field += joined[number] ? 2U : 1U;
    }
    reading.oddity = reading.numbers[0].isEmpty ? kUnlikely : oddityOf(reading.numbers);
    return reading;
}

bool isSame(const Reading& one, const Reading& other) {
    return std::equal(one.numbers.begin(), one.numbers.end(), other.numbers.begin(), other.numbers.end(),
                      [](const Candidate& left, const Candidate& right) { return left.value == right.value; });
}

/// The least odd of the readings; of several the one whose commas stand furthest to the left.
class BestReading {
public:
    void add(Reading reading) {
        if (reading.oddity < _best.oddity) {
            std::swap(reading, _best);
        }
        if (!reading.numbers.empty() && reading.oddity < _nextOddity && !isSame(reading, _best)) {
            _nextOddity = reading.oddity;
        }
    }

    bool isFound() const { return _best.oddity < kUnlikely; }
    bool isOneOfSeveral() const { return _nextOddity <= _best.oddity + 1; }
    const Reading& reading() const { return _best; }

private:
    Reading _best;
    int _nextOddity = kUnlikely;
};

bool areNumbers(const std::vector<FieldCandidates>& fields) {
    return std::all_of(fields.begin(), fields.end(),
                       [](const FieldCandidates& field) { return field.alone.isPossible; });
}

BestReading bestReading(const std::vector<FieldCandidates>& fields, const std::vector<std::size_t>& numbers) {
    BestReading best;
    for (const std::size_t count : numbers) {
        if (fields.size() <= count || fields.size() > 2 * count) {
            continue;
        }
        for (unsigned bits = 1; bits < 1U << count; ++bits) {
            const std::bitset<kNames.size()> joined(bits);
            if (joined.count() != fields.size() - count) {
                continue;
            }
            if (std::optional<Reading> reading = readingOf(fields, count, joined)) {
                best.add(*std::move(reading));
            }
        }
    }
    return best;
}

DecimalCommas commasOf(std::size_t first, const BestReading& best) {
    DecimalCommas commas;
    commas.first = first;
    for (const Candidate& number : best.reading().numbers) {
        commas.fieldsOf.push_back(number.isJoined ? 2 : 1);
        commas.count += number.isJoined ? 1U : 0U;
    }
    commas.oddity = best.reading().oddity;
    commas.isOneOfSeveral = best.isOneOfSeveral();
    return commas;
}

} // namespace

std::optional<DecimalCommas> findDecimalCommas(const CfgLine& line, std::size_t end,
                                               const std::vector<std::size_t>& numbers) {
    const std::size_t most = 2 * kNames.size();
    const std::size_t begin = std::max(kFirstNumber, end > most ? end - most : 0);
    for (std::size_t first = begin; first < end; ++first) {
        if (readNumber(line[first - 1].text).form == NumberForm::Good) {
            continue;
        }
        const std::vector<FieldCandidates> fields = candidatesOf(line, first, end);
        if (!areNumbers(fields)) {
            continue;
        }
        const BestReading best = bestReading(fields, numbers);
        if (best.isFound()) {
            return commasOf(first, best);
        }
    }
    return std::nullopt;
}

void joinDecimals(CfgLine& line, const DecimalCommas& commas) {
    if (commas.isOneOfSeveral) {
        line.tell(commas.first, "",
                  {Severity::Warning, "decimal-comma", "commas that can be taken in one way only",
                   "the likeliest of several ways taken", true},
                  shown(line.textFrom(commas.first)));
    }
    for (std::size_t number = 0; number < commas.fieldsOf.size(); ++number) {
        if (commas.fieldsOf[number] == 2) {
            line.joinDecimal(commas.first + number, kNames[number]);
        }
    }
}

bool areHalves(const CfgField& whole, const CfgField& fraction) {
    const bool isUnparted =
        !whole.raw.empty() && !fraction.raw.empty() && isDigit(whole.raw.back()) && isDigit(fraction.raw.front());
    return isUnparted && areDigits(withoutSign(whole.text)) && isFraction(fraction.text);
}

} // namespace OrvComtradeIntake
