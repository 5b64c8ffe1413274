#include "cfg/read/commaInText.h"

#include "base/characters.h"
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
    const std::string repair = joined.empty() ? "a field left out" : "read as \"" + shown(joined) + '"';
    report(cursor.findings, Kind::CommaInText, line, index, name, {shown(line.textFrom(index, count)), repair});
    line.replace(index, count, std::move(joined));
}

void joinTexts(CfgCursor& cursor, CfgLine& line, std::size_t surplus) {
    const std::size_t ofName = fieldsOfName(line, surplus);
    joinText(cursor, line, 1, ofName, "ch_id");
    joinText(cursor, line, 3, surplus + 2 - ofName, "ccbm");
}

} // namespace OrvComtradeIntake
