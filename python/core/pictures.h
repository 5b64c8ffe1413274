#pragma once

#include <OrvComtradeIntake/Opened.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// What a picture shows, as Python gives it.
struct PictureRequest {
    std::optional<std::vector<std::size_t>> analog; ///< none: chosen by what is disturbed
    std::optional<std::vector<std::size_t>> status; ///< none: those that change
    std::optional<double> start;                    ///< seconds
    std::optional<double> end;                      ///< seconds
    std::string relativeTo;                         ///< "start", "trigger" or "clock"
    std::string name;                               ///< of the recording
    double width = 0.0;                             ///< pixels
    double height = 0.0;                            ///< pixels, or 0: as needed
    std::string theme;                              ///< "light", "dark" or "print"
};

/// The picture as SVG, in UTF-8. Throws `std::invalid_argument` for an unknown word or size, `std::runtime_error` where
/// there is nothing to draw, and as `Opened::columns` does.
std::string svgOf(const OrvComtradeIntake::Opened& opened, const PictureRequest& request);
