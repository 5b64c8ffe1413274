#include "output/sideName.h"

using OrvComtradeIntake::Side;

const char* sideName(Side side) {
    switch (side) {
    case Side::Primary:
        return "primary";
    case Side::Secondary:
        return "secondary";
    case Side::Recorded:
        break;
    }
    return "unknown";
}
