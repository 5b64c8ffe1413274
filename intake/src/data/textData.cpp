#include "textData.h"

#include "DataLayout.h"
#include "DataReader.h"

#include <array>
#include <string_view>
#include <system_error>

namespace OrvComtradeIntake {

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
    return bytes.find(',') != std::string_view::npos && bytes.find_first_not_of(kBytesOfText) == std::string_view::npos;
}

} // namespace OrvComtradeIntake
