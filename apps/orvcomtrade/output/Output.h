#pragma once

#include <fmt/format.h>

#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

/// Thrown if nobody reads standard output any more (a pipe to `head`, for example). It is not an error.
struct ReaderGone {};

/// Collects text or bytes into large pieces, which the derived class sends. Call `flush` at the end: nothing else does.
class Output {
public:
    Output() = default;
    virtual ~Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    Output(Output&&) = delete;
    Output& operator=(Output&&) = delete;

    void write(std::string_view text);

    void put(char character) {
        _pending.push_back(character);
        _flushIfFull();
    }

    /// The number in the shortest form that reads back as the same.
    void number(double value);
    void number(float value);

    template <class... Args> void print(fmt::format_string<Args...> format, Args&&... args) {
        fmt::format_to(std::back_inserter(_pending), format, std::forward<Args>(args)...);
        _flushIfFull();
    }

    /// Throws what `send` throws.
    void flush();

protected:
    /// Sends a piece; throws if it cannot.
    virtual void send(std::string_view piece) = 0;

private:
    static constexpr std::size_t kPieceLength = 64UL * 1024;

    void _flushIfFull() {
        if (_pending.size() >= kPieceLength) {
            flush();
        }
    }

    fmt::memory_buffer _pending;
};
