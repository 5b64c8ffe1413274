#include "cfg/CfgCursor.h"

#include <algorithm>

namespace OrvComtradeIntake {

CfgLine CfgCursor::peek(std::size_t ahead) const {
    return {text.file, text.lines[next + ahead], separator};
}

CfgLine CfgCursor::take() {
    CfgLine line = peek();
    ++next;
    if (line.hasQuotes()) {
        findings.add(Kind::Quotes, line.place(0, ""), {shown(line.textFrom(0)), "read without them"});
    }
    return line;
}

Place CfgCursor::place(const char* field) const {
    if (text.lines.empty()) {
        return {text.file, 0, field, 0};
    }
    const TextLine& line = text.lines[std::min(next, text.lines.size() - 1)];
    return {text.file, line.number, field, line.offset};
}

} // namespace OrvComtradeIntake
