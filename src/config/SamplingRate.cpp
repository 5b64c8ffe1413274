#include "SamplingRate.h"

#include "../util/splitInto.h"
#include "segmentDuration.h"

#include <stdexcept>
#include <vector>

namespace OrvComtradeLib {

SamplingRate::SamplingRate(const std::string& line) {
    const std::vector<std::string> fields = firstFields(line, 2);
    if (fields.size() < 2) {
        throw std::out_of_range("sampling rate line");
    }
    rate = std::stod(fields[0]);
    endSample = static_cast<unsigned long>(std::stol(fields[1]));
}

double SamplingRate::getDuration(unsigned long sampleCount) const {
    return segmentDuration(rate, endSample, sampleCount);
}

} // namespace OrvComtradeLib
