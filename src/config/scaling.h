#pragma once

namespace OrvComtradeLib {

/// The one place where a raw sample becomes a secondary value in base units; inline for the loops over whole files.
/// The order of evaluation is fixed, and the library's own flags keep it from being fused.
inline double scaled(double raw, double a, double b, double unitMultiplier) {
    return (raw * a + b) * unitMultiplier;
}

} // namespace OrvComtradeLib
