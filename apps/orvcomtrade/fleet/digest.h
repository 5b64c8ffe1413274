#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// XXH3, 64 bits, seed 0.
std::uint64_t hashOf(std::string_view bytes);

/// XXH3 (128 bits, seed 0) of bytes that are added piece by piece.
class Digest {
public:
    Digest();
    ~Digest();
    Digest(const Digest&) = delete;
    Digest& operator=(const Digest&) = delete;
    Digest(Digest&&) = delete;
    Digest& operator=(Digest&&) = delete;

    void add(std::string_view bytes);

    std::string text() const; ///< 32 hexadecimal digits, as the program xxh128sum prints them

private:
    struct State;
    const std::unique_ptr<State> _state;
};

/// 16 hexadecimal digits.
std::string hexText(std::uint64_t value);
