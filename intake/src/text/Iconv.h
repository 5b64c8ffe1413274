#pragma once

#include <cstddef>
#include <iconv.h>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// A conversion from one encoding to another.
class Iconv {
public:
    /// Throws `std::invalid_argument` for a name iconv doesn't know.
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
