#pragma once

#include <string>

namespace OrvComtradeIntake {

/// The parts of a path: "a/rec.evt.cfg" is "a/", "rec.evt" and ".cfg".
struct FileName {
    std::string folder;    ///< with its slash, or empty
    std::string stem;      ///< up to the last '.' of the name
    std::string extension; ///< as written, with its '.', or empty

    static FileName of(const std::string& path);

    /// Stem and extension.
    std::string name() const { return stem + extension; }

    /// The same stem with another extension, folder included.
    std::string with(const std::string& otherExtension) const { return folder + stem + otherExtension; }
};

} // namespace OrvComtradeIntake
