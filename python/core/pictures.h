#pragma once

#include <OrvComtradeIntake/Opened.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// What a picture shows, as Python gives it.
struct PictureRequest {
    std::optional<std::vector<std::size_t>> analog; ///< nothing: those that are disturbed most
    std::optional<std::vector<std::size_t>> status; ///< nothing: those that change
    std::optional<double> start;                    ///< seconds
    std::optional<double> end;                      ///< seconds
    std::string relativeTo;                         ///< "start", "trigger" or "clock"
    std::string name;                               ///< of the recording
    double width = 0.0;                             ///< pixels
    double height = 0.0;                            ///< pixels, or 0: as needed
    std::string theme;                              ///< "light", "dark" or "print"
};

/// The picture as SVG, in UTF-8. Throws `std::invalid_argument` for an unknown word or an invalid size,
/// `std::runtime_error` if there is nothing to draw, and as `Opened::columns` does.
std::string svgOf(const OrvComtradeIntake::Opened& opened, const PictureRequest& request);
