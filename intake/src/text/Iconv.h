#pragma once

#include <cstddef>
#include <iconv.h>
#include <stdexcept>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Thrown for an encoding that iconv does not know.
class UnknownEncoding : public std::invalid_argument {
public:
    using invalid_argument::invalid_argument;
};

/// A conversion from one encoding to another.
class Iconv {
public:
    /// Throws UnknownEncoding.
    Iconv(const std::string& from, const std::string& to);
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;
    ~Iconv();

    /// Bytes that cannot be converted become `replacement` and set `isDamaged`. `lengthOf` gets all bytes from there on
    /// and returns how many to skip; at least one is skipped.
    std::string convert(std::string_view bytes, std::string_view replacement,
                        std::size_t (*lengthOf)(std::string_view left), bool& isDamaged);

private:
    iconv_t _converter;
};

} // namespace OrvComtradeIntake
