#include "numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace OrvComtradePicture {

namespace {

struct Prefix {
    std::string_view latin;
    std::string_view cyrillic;
    double factor;
};

constexpr std::array<Prefix, 6> kPrefixes = {{{"G", "\xD0\x93", 1e9},
                                              {"M", "\xD0\x9C", 1e6},
                                              {"k", "\xD0\xBA", 1e3},
                                              {"", "", 1.0},
                                              {"m", "\xD0\xBC", 1e-3},
                                              {"\xC2\xB5", "\xD0\xBC\xD0\xBA", 1e-6}}};

template <std::size_t Size> bool isOneOf(std::string_view text, const std::array<std::string_view, Size>& words) {
    return std::find(words.begin(), words.end(), text) != words.end();
}

bool takesPrefix(std::string_view unit) {
    constexpr std::array<std::string_view, 15> units = {
        "V", "A", "W", "VA", "var", "VAr", "VAR", "Var", "Ohm", "ohm", "Vrms", "Arms", "s", "\xCE\xA9", "\xE2\x84\xA6"};
    return isOneOf(unit, units);
}

bool takesCyrillicPrefix(std::string_view unit) {
    constexpr std::array<std::string_view, 5> units = {"\xD0\x92", "\xD0\x90", "\xD0\x92\xD1\x82", "\xD0\x92\xD0\x90",
                                                       "\xD0\xB2\xD0\xB0\xD1\x80"}; // V, A, W, VA, var
    return isOneOf(unit, units);
}

} // namespace

std::string fixed(double number, int decimals) {
    std::array<char, 400> text{}; // more than the longest double has
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, decimals);
    std::string result(text.data(), end.ptr);
    const bool isNegativeZero = result.front() == '-' && result.find_first_not_of("-0.") == std::string::npos;
    return isNegativeZero ? result.substr(1) : result;
}

std::string brief(double number) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, 6);
    return {text.data(), end.ptr};
}

Ticks ticksOf(Range range, int most) {
    const double rough = range.length() / std::max(most, 2);
    const double power = std::floor(std::log10(rough));
    const double unit = std::pow(10.0, power);
    // The rounding of the range's length may not make one tick too many.
    const double step = rough <= 1.0001 * unit   ? 1.0
                        : rough <= 2.0001 * unit ? 2.0
                        : rough <= 5.0001 * unit ? 5.0
                                                 : 10.0;
    Ticks ticks;
    ticks.decimals = static_cast<int>(std::clamp(step == 10.0 ? -power - 1.0 : -power, 0.0, 15.0));
    const double first = std::ceil(range.from / (step * unit) - 1e-9);
    for (int i = 0; i <= most; ++i) {
        const double place = (first + i) * (step * unit);
        if (place > range.to + 1e-9 * range.length()) {
            break;
        }
        ticks.places.push_back(place);
    }
    return ticks;
}

Scale scaleOf(Range range, const std::string& unit) {
    const bool isCyrillic = takesCyrillicPrefix(unit);
    if (!isCyrillic && !takesPrefix(unit)) {
        return {};
    }
    const double greatest = std::max(std::abs(range.from), std::abs(range.to));
    const auto* const prefix =
        std::find_if(kPrefixes.begin(), kPrefixes.end() - 1,
                     [greatest](const Prefix& candidate) { return greatest >= candidate.factor; });
    return {std::string(isCyrillic ? prefix->cyrillic : prefix->latin), prefix->factor};
}

} // namespace OrvComtradePicture
