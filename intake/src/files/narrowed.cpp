#include "files/narrowed.h"

#include "base/utf16.h"
#include "files/blockLength.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kFirstBytes = 16; ///< of which bytes of data can't be a part where a heading stands first
constexpr unsigned int kByteOrderUnit = 0xFEFF;
constexpr std::uint64_t kBytesOfUnit = 2;

unsigned int byteAt(const std::vector<char>& bytes, std::size_t index) {
    return static_cast<unsigned char>(bytes[index]);
}

char narrow(unsigned int unit) {
    if (unit == kByteOrderUnit) {
        return ' ';
    }
    return unit < 0x80 ? static_cast<char>(unit) : '?';
}

} // namespace

std::string_view utf16NameOf(const ByteSource& file) {
    return utf16Name(file.part(0, kFirstBytes).all());
}

ByteSource narrowed(const ByteSource& text, std::string_view encoding) {
    const std::size_t highByte = encoding == kUtf16Little ? 1 : 0;
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(text.length() / kBytesOfUnit + 1));
    std::vector<char> block(kBlockLength);
    std::uint64_t position = 0;
    while (const std::size_t count = text.read(position, block.data(), block.size())) {
        for (std::size_t index = 0; index + 1 < count; index += 2) {
            bytes += narrow(byteAt(block, index + highByte) << 8U | byteAt(block, index + 1 - highByte));
        }
        bytes.append(count % 2, '?'); // cut in a character
        position += count;
    }
    return ByteSource::ofText(std::move(bytes), text.name(), text.offsetInFile(0), kBytesOfUnit);
}

ByteSource widened(const ByteSource& part, const ByteSource& file, std::string_view encoding) {
    if (part.length() == 0) {
        return part;
    }
    const std::uint64_t begin = part.offsetInFile(0);
    const std::string mark = encoding == kUtf16Little ? "\xFF\xFE" : "\xFE\xFF";
    return ByteSource::ofText(mark + file.part(begin, kBytesOfUnit * part.length()).all(), file.name(),
                              begin - mark.size(), 1)
        .withFirstLine(part.lineInFile(1));
}

} // namespace OrvComtradeIntake
