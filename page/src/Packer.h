#pragma once

#include "ValueColumn.h"

#include <cstddef>
#include <memory>
#include <string>

struct libdeflate_compressor;

namespace OrvComtradePage {

/// Numbers as a page holds them: what is to be undone, from the last to the first.
struct Packed {
    const char* type = ""; ///< "i16", "i32", "f32" or "f64", little-endian
    std::size_t count = 0; ///< numbers
    bool isDelta = false;  ///< each is the difference to the one before (of its bits, modulo 2^16 or 2^32), its sign in
                           ///< the lowest bit: 0, -1, 1, -2, ... are 0, 1, 2, 3, ...
    bool isPlanes = false; ///< the lowest bytes of all numbers come first, then the next ones
    std::string base64;    ///< of a zlib stream (RFC 1950)
};

/// Packs columns of numbers. Not for several threads at once.
class Packer {
public:
    Packer();

    /// In the way that is probably the smallest: all are tried on parts of a long column.
    Packed pack(const ValueColumn& column);

private:
    struct Free {
        void operator()(libdeflate_compressor* compressor) const;
    };

    std::string _deflated(const std::string& bytes) const;

    std::unique_ptr<libdeflate_compressor, Free> _compressor;
};

} // namespace OrvComtradePage
