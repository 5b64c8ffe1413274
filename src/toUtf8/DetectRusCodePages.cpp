#include "toUtf8.h"

#include <algorithm>

namespace toUtf8 {

namespace {

bool within(unsigned char byte, unsigned int low, unsigned int high) {
    return byte >= low && byte <= high;
}

/// Counts wrap for texts beyond 2^31 characters.
void add(int& counter, int count) {
    counter = static_cast<int>(static_cast<unsigned int>(counter) + static_cast<unsigned int>(count));
}

} // namespace

void DetectRusCodePages::analize(const char* data, std::size_t length) {
    *this = DetectRusCodePages();
    if (data == nullptr) {
        return;
    }
    const char* const end = data + length;
    while (data < end) {
        const auto byte = static_cast<unsigned char>(*data);
        // Deliberate: up to 0xB0, which is a shade character in CP866 and not a letter.
        if (within(byte, 0x80, 0xB0)) {
            add(cp866Count, 1);
            ++data;
            continue;
        }
        if (const int sequences = isUtf8Seq(data)) {
            add(utf8Count, sequences);
            utf8MaxRun = std::max(utf8MaxRun, sequences);
            continue;
        }
        if (byte >= 0xC0) {
            add(cp1251Count, 1);
        }
        if (within(byte, 0xE0, 0xF2)) {
            add(cp866Count, 1);
        }
        ++data;
    }
}

std::string DetectRusCodePages::convertSC(const std::string& source, const char* data, std::size_t length) const {
    if (cp866Count > utf8Count && cp866Count >= cp1251Count) {
        return from866(data, length);
    }
    if (cp866Count <= utf8Count && utf8Count >= cp1251Count) {
        if (!source.empty() || data == nullptr) {
            return source;
        }
        return {data, length};
    }
    return from1251(data, length);
}

} // namespace toUtf8
