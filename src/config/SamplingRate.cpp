#include "SamplingRate.h"

#include "../util/splitInto.h"
#include "segmentDuration.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeLib {

SamplingRate::SamplingRate(const std::string& line) {
    const std::vector<std::string_view> fields = firstFields(line, 2);
    if (fields.size() < 2) {
        throw std::out_of_range("sampling rate line");
    }
    rate = std::stod(std::string(fields[0]));
    endSample = static_cast<unsigned long>(std::stol(std::string(fields[1])));
}

double SamplingRate::getDuration(unsigned long sampleCount) const {
    return segmentDuration(rate, endSample, sampleCount);
}

} // namespace OrvComtradeLib
