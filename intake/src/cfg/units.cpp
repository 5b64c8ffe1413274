#include "cfg/units.h"

#include "base/characters.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace OrvComtradeIntake {

namespace {

struct Prefix {
    std::string_view text;
    long double factor;
};

constexpr std::array<Prefix, 9> kPrefixes = {{{"k", 1e3L},
                                              {"K", 1e3L},
                                              {"M", 1e6L},
                                              {"m", 1e-3L},
                                              {"G", 1e9L},
                                              {"u", 1e-6L},
                                              {"n", 1e-9L},
                                              {"\xC2\xB5", 1e-6L},   // micro sign
                                              {"\xCE\xBC", 1e-6L}}}; // Greek mu

constexpr std::array<Prefix, 4> kCyrillicPrefixes = {{{"\xD0\xBA", 1e3L},    // ka
                                                      {"\xD0\x9A", 1e3L},    // capital ka
                                                      {"\xD0\x9C", 1e6L},    // capital em
                                                      {"\xD0\xBC", 1e-3L}}}; // em

struct Unit {
    std::string_view written;
    std::string_view base;
};

constexpr std::array<Unit, 35> kUnits = {{{"V", "V"},
                                          {"v", "V"},
                                          {"A", "A"},
                                          {"a", "A"},
                                          {"W", "W"},
                                          {"w", "W"},
                                          {"Hz", "Hz"},
                                          {"HZ", "Hz"},
                                          {"hz", "Hz"},
                                          {"Ohm", "Ohm"},
                                          {"ohm", "ohm"},
                                          {"OHM", "Ohm"},
                                          {"Ohms", "Ohm"},
                                          {"ohms", "ohm"},
                                          {"\xCE\xA9", "\xCE\xA9"},         // Greek omega
                                          {"\xE2\x84\xA6", "\xE2\x84\xA6"}, // ohm sign
                                          {"var", "var"},
                                          {"VAr", "VAr"},
                                          {"VAR", "VAR"},
                                          {"Var", "Var"},
                                          {"VA", "VA"},
                                          {"va", "VA"},
                                          {"Wh", "Wh"},
                                          {"WH", "Wh"},
                                          {"wh", "Wh"},
                                          {"varh", "varh"},
                                          {"VArh", "VArh"},
                                          {"VARH", "VARh"},
                                          {"VAh", "VAh"},
                                          {"VAH", "VAh"},
                                          {"s", "s"},
                                          {"H", "H"},
                                          {"F", "F"},
                                          {"C", "C"},
                                          {"T", "T"}}};

constexpr std::array<std::string_view, 12> kCyrillicUnits = {"\xD0\x92",                         // V
                                                             "\xD0\x90",                         // A
                                                             "\xD0\x92\xD1\x82",                 // W
                                                             "\xD0\x92\xD0\x90",                 // VA
                                                             "\xD0\xB2\xD0\xB0\xD1\x80",         // var
                                                             "\xD0\x92\xD0\x90\xD1\x80",         // VAr
                                                             "\xD0\x92\xD0\x90\xD0\xA0",         // VAR
                                                             "\xD0\x9E\xD0\xBC",                 // Ohm
                                                             "\xD0\x93\xD1\x86",                 // Hz
                                                             "\xD0\x92\xD1\x82\xC2\xB7\xD1\x87", // Wh with a dot
                                                             "\xD0\x92\xD1\x82\xD1\x87",         // Wh
                                                             "\xD1\x81"};                        // s

// "na" is rather "not applicable" than a nanoampere, and "Gs" a gauss.
bool isDoubtful(std::string_view rest, long double factor) {
    const bool isUnusual = factor < 1e-3L || factor > 1e6L;
    return (isUnusual && (rest == "a" || rest == "v" || rest == "w")) || (factor > 1.0L && rest == "s");
}

BaseUnit knownUnit(std::string_view rest, long double factor) {
    if (isDoubtful(rest, factor)) {
        return {};
    }
    const auto* const unit =
        std::find_if(kUnits.begin(), kUnits.end(), [rest](const Unit& known) { return known.written == rest; });
    return unit == kUnits.end() ? BaseUnit{} : BaseUnit{std::string(unit->base), factor};
}

template <std::size_t Size> bool isOneOf(std::string_view text, const std::array<std::string_view, Size>& words) {
    return std::find(words.begin(), words.end(), text) != words.end();
}

// Behind a blank or a sign that separates it from the unit, in brackets, or as it stands.
std::string_view withoutFrame(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" _.-");
    text.remove_prefix(std::min(first, text.size()));
    const bool isFramed =
        text.size() > 2 && ((text.front() == '(' && text.back() == ')') || (text.front() == '[' && text.back() == ']'));
    return isFramed ? text.substr(1, text.size() - 2) : text;
}

std::string withoutHyphens(std::string_view text) {
    std::string bare(text);
    bare.erase(std::remove(bare.begin(), bare.end(), '-'), bare.end());
    return bare;
}

// What is said of a voltage or a current beside its unit: how the value is taken, or between which conductors. Nothing
// that would make another unit of it (kVA, kvar), or a word (MAP, GALL).
bool isQualifier(std::string_view text, bool isVoltage) {
    constexpr std::array<std::string_view, 2> asWritten = {"p", "pp"};
    constexpr std::array<std::string_view, 7> words = {"rms", "eff", "peak", "pk", "pkpk", "ac", "dc"};
    constexpr std::array<std::string_view, 5> conductors = {"ll", "ln", "lg", "phph", "phn"};
    const std::string bare = withoutHyphens(withoutFrame(text));
    const std::string lower = lowerCase(bare);
    return isOneOf(bare, asWritten) || isOneOf(lower, words) || (isVoltage && isOneOf(lower, conductors));
}

// "Vrms", "V RMS", "A(peak)", which keep what is said beside the unit.
BaseUnit qualifiedUnit(std::string_view rest, long double factor) {
    const bool isVoltage = !rest.empty() && (rest.front() == 'V' || rest.front() == 'v');
    const bool isCurrent = !rest.empty() && rest.front() == 'A';
    if ((!isVoltage && !isCurrent) || isDoubtful(rest.substr(0, 1), factor) ||
        !isQualifier(rest.substr(1), isVoltage)) {
        return {};
    }
    return {(isVoltage ? "V" : "A") + std::string(rest.substr(1)), factor};
}

BaseUnit cyrillicUnit(std::string_view rest, long double factor) {
    return isOneOf(rest, kCyrillicUnits) ? BaseUnit{std::string(rest), factor} : BaseUnit{};
}

BaseUnit latinUnit(std::string_view rest, long double factor) {
    BaseUnit unit = knownUnit(rest, factor);
    return unit.name.empty() ? qualifiedUnit(rest, factor) : unit;
}

// The unit behind one of the prefixes; no two of them begin alike.
template <std::size_t Size, class UnitBehind>
BaseUnit unitBehind(const std::array<Prefix, Size>& prefixes, std::string_view text, UnitBehind unitOf) {
    for (const Prefix& prefix : prefixes) {
        if (text.substr(0, prefix.text.size()) == prefix.text) {
            return unitOf(text.substr(prefix.text.size()), prefix.factor);
        }
    }
    return {};
}

} // namespace

BaseUnit baseUnit(const std::string& unit) {
    BaseUnit base = unitBehind(kPrefixes, unit, latinUnit);
    if (base.name.empty()) {
        base = unitBehind(kCyrillicPrefixes, unit, cyrillicUnit);
    }
    return base.name.empty() ? BaseUnit{unit, 1.0L} : base;
}

bool isScaledByLibrary(const std::string& unit) {
    return unit.size() > 1 && std::string_view("mkKM").find(unit.front()) != std::string_view::npos;
}

} // namespace OrvComtradeIntake
