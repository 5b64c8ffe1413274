#pragma once

#include <cstddef>
#include <iconv.h>
#include <stdexcept>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// iconv doesn't know an encoding.
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

    /// What can't be converted becomes `replacement`, and sets `isDamaged`; as many bytes are passed over for it as
    /// `lengthOf` gives of what is left, one at least.
    std::string convert(std::string_view bytes, std::string_view replacement,
                        std::size_t (*lengthOf)(std::string_view left), bool& isDamaged);

private:
    iconv_t _converter;
};

} // namespace OrvComtradeIntake
