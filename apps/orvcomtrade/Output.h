#pragma once

#include <fmt/format.h>

#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

/// Thrown when nobody reads standard output any more (a pipe to `head`, say): no reason to complain.
struct ReaderGone {};

/// Standard output in large pieces, with every failed write noticed. Call `flush` at the end; nothing else does.
class Output {
public:
    void write(std::string_view text);

    template <class... Args> void print(fmt::format_string<Args...> format, Args&&... args) {
        fmt::format_to(std::back_inserter(_pending), format, std::forward<Args>(args)...);
        _flushIfFull();
    }

    /// Throws ReaderGone, or a Failure that gives the system's reason.
    void flush();

private:
    void _flushIfFull();

    fmt::memory_buffer _pending;
};
