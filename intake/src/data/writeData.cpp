#include "DataLayout.h"
#include "DataReader.h"
#include "OutputFile.h"
#include "dataSurvey.h"
#include "transcode.h"

#include <algorithm>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kBlockLength = 128UL * 1024;

/// Whether the bytes need no change but for what stands behind the last sample.
bool isPrefix(const Configuration& configuration, const DataSurvey& survey) {
    return configuration.encoding != DataEncoding::Ascii && survey.encoding == configuration.encoding &&
           survey.recordStride == DataLayout(configuration).recordLength() && survey.stampFills.empty() &&
           survey.stampDivisor == 1;
}

} // namespace

void copyPrefix(const DataSource& source, std::uint64_t count, OutputFile& out) {
    DataReader reader(source);
    std::vector<char> block(kBlockLength);
    while (count != 0) {
        const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(count, block.size()));
        const std::size_t read = reader.read(block.data(), most);
        if (read == 0) {
            return;
        }
        out.write({block.data(), read});
        count -= read;
    }
}

void writeData(const DataSource& source, const Configuration& configuration, const DataSurvey& survey,
               const std::string& target) {
    OutputFile out(target);
    if (isPrefix(configuration, survey)) {
        copyPrefix(source, survey.samples * DataLayout(configuration).recordLength(), out);
    } else if (configuration.encoding != DataEncoding::Ascii) {
        transcodeBinary(source, configuration, survey, out);
    } else if (survey.asItStands) {
        copyPrefix(source, UINT64_MAX, out);
    } else {
        transcodeAscii(source, configuration, survey, out);
    }
    out.finish();
}

} // namespace OrvComtradeIntake
