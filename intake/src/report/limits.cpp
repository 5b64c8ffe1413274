#include "report/limits.h"

#include <string>
#include <utility>

namespace OrvComtradeIntake {

bool isAbove(std::uint64_t found, std::uint64_t most, const char* name, const char* things, Place place,
             Findings& findings) {
    if (found <= most) {
        return false;
    }
    place.field = name;
    findings.add(Kind::LimitExceeded, place,
                 {std::to_string(found) + ' ' + things, {}, "at most " + std::to_string(most) + ' ' + things});
    return true;
}

} // namespace OrvComtradeIntake
