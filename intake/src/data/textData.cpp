#include "textData.h"

#include "DataLayout.h"
#include "DataReader.h"

#include <array>
#include <string_view>
#include <system_error>

namespace OrvComtradeIntake {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

} // namespace

bool isUtf16(std::string_view bytes) {
    constexpr char none = '\0';
    const std::string_view mark = bytes.substr(0, 2);
    const bool isLittle = bytes.size() > 3 && bytes[1] == none && bytes[3] == none;
    const bool isBig = bytes.size() > 3 && bytes[0] == none && bytes[2] == none;
    return mark == "\xFF\xFE" || mark == "\xFE\xFF" || isLittle != isBig;
}

bool isUtf16Data(const DataSource& source) {
    std::array<char, 4> begin{};
    return isUtf16({begin.data(), DataReader(source).read(begin.data(), begin.size())});
}

bool isTextData(const DataSource& source, const Configuration& configuration) {
    if (dataLength(source) / DataLayout(configuration).recordLength() == configuration.samplesDeclared()) {
        return false;
    }
    constexpr std::string_view kBytesOfText = "0123456789+-.eE, \t\r\n";
    std::array<char, 256> begin{};
    std::string_view bytes;
    try {
        bytes = {begin.data(), DataReader(source).read(begin.data(), begin.size())};
    } catch (const std::system_error&) { // the survey tells it
    }
    if (bytes.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        bytes.remove_prefix(kByteOrderMark.size());
    }
    return bytes.find(',') != std::string_view::npos && bytes.find_first_not_of(kBytesOfText) == std::string_view::npos;
}

} // namespace OrvComtradeIntake
