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
    std::size_t inflatedBytes = 0; ///< bytes that are in the zlib stream; 0 if there is none
    std::string base64;            ///< output of WordPacker, or a zlib stream (RFC 1950) of it
};

/// Packs columns of numbers with WordPacker. A word of 32 bits is an integer with its sign, or the bits of a single. Of
/// doubles, the lower words of all come first, then the upper words. Only one thread may use an object.
class Packer {
public:
    Packer();

    /// Singles and doubles are deflated if that saves anything: their bits predict little of the next ones. Integers
    /// are deflated if that will probably save a quarter; parts of a long column are tried to find out.
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
