#include "SamplingRate.h"

#include "StringHelper.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace OrvComtradeLib {

SamplingRate::SamplingRate(const std::string& line) {
    const std::vector<std::string> fields = StringHelper::split(line, ',');
    if (fields.size() < 2) {
        throw std::out_of_range("sampling rate line");
    }
    rate = std::stod(fields[0]);
    endSample = static_cast<unsigned long>(std::stol(fields[1]));
}

double SamplingRate::getDuration(unsigned long sampleCount) const {
    if (!(rate > 0.0)) {
        return -1.0;
    }
    return static_cast<double>(std::min(endSample, sampleCount)) / rate;
}

} // namespace OrvComtradeLib
