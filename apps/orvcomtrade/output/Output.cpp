#include "output/Output.h"

#include <fmt/compile.h>

void Output::write(std::string_view text) {
    if (text.size() >= kPieceLength) {
        flush();
        send(text);
        return;
    }
    _pending.append(text.data(), text.data() + text.size());
    _flushIfFull();
}

void Output::number(double value) {
    fmt::format_to(std::back_inserter(_pending), FMT_COMPILE("{}"), value);
    _flushIfFull();
}

void Output::number(float value) {
    fmt::format_to(std::back_inserter(_pending), FMT_COMPILE("{}"), value);
    _flushIfFull();
}

void Output::flush() {
    if (_pending.size() > 0) {
        send({_pending.data(), _pending.size()});
        _pending.clear();
    }
}
