#include "input/samplesAtOnce.h"

#include <algorithm>

std::size_t samplesAtOnce(const OrvComtradeIntake::Header& header) {
    constexpr std::size_t most = 4096;
    constexpr std::size_t values = 256UL * 1024; // of a block: 4 MiB of state changes where every one is one
    return std::clamp<std::size_t>(values / (header.analog.size() + header.status.size() + 1), 1, most);
}
