#include "base/civilTime.h"

#include <OrvComtradeIntake/Instant.h>

#include <array>
#include <cstdio>

namespace OrvComtradeIntake {

std::string Instant::text() const {
    const CivilTime time = civilTime(*this);
    std::array<char, 96> buffer{};
    const int length = std::snprintf(buffer.data(), buffer.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%09d", time.year,
                                     time.month, time.day, time.hour, time.minute, time.second, time.nanosecond);
    return {buffer.data(), static_cast<std::size_t>(length)};
}

} // namespace OrvComtradeIntake
