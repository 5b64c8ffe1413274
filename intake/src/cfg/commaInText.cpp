#include "commaInText.h"

#include <algorithm>
#include <array>
#include <string>

namespace OrvComtradeIntake {

namespace {

bool isPhase(std::string_view text) {
    constexpr std::array<std::string_view, 27> phases = {"A",  "B",  "C",  "N",  "G",  "E",  "R",  "S",   "T",
                                                         "U",  "V",  "W",  "0",  "1",  "2",  "AB", "BC",  "CA",
                                                         "AC", "AN", "BN", "CN", "L1", "L2", "L3", "3I0", "ABC"};
    std::string upper(text.substr(0, 4)); // none is as long
    std::transform(upper.begin(), upper.end(), upper.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 32) : letter;
    });
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

} // namespace

void joinTexts(CfgLine& line, std::size_t surplus) {
    const std::size_t ofName = fieldsOfName(line, surplus);
    line.join(1, ofName, "ch_id");
    line.join(3, surplus + 2 - ofName, "ccbm");
}

} // namespace OrvComtradeIntake
