#pragma once

#include "ValueColumn.h"

#include <cstddef>
#include <memory>
#include <string>

struct libdeflate_compressor;

namespace OrvComtradePage {

/// Numbers as a page holds them.
struct Packed {
    const char* type = "";         ///< "i16", "i32", "f32" or "f64"
    std::size_t count = 0;         ///< numbers
    std::size_t inflatedBytes = 0; ///< of what is in the zlib stream, 0 where there is none
    std::string base64;            ///< of what WordPacker makes of the words, or of a zlib stream (RFC 1950) of it
};

/// Packs columns of numbers: integers, with their signs, and the bits of singles are words of 32 bits; of doubles, the
/// lower words of all come first, then the upper ones. Not for several threads at once.
class Packer {
public:
    Packer();

    /// Singles and doubles, whose bits say little of the next ones, are deflated where that saves something, integers
    /// where it probably saves a quarter: parts of a long column are tried.
    Packed pack(const ValueColumn& column);

private:
    struct Free {
        void operator()(libdeflate_compressor* compressor) const;
    };

    bool _isWorthDeflating(const std::string& bytes) const;
    std::string _deflated(const char* bytes, std::size_t size) const;

    std::unique_ptr<libdeflate_compressor, Free> _compressor;
};

} // namespace OrvComtradePage
