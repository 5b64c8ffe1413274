#pragma once

#include <OrvComtradeIntake/Folders.h>

#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

/// The listings of the folders that were used last.
struct Folders::Listings {
    using Names = std::shared_ptr<const std::vector<std::string>>;

    /// Names in a folder, sorted without regard to the case of ASCII letters. Throws what listing it throws.
    Names of(const std::string& folder);

private:
    std::mutex _mutex;                               ///< locked while a folder is listed: others wait for the names
    std::list<std::pair<std::string, Names>> _known; ///< the one used last comes first
};

} // namespace OrvComtradeIntake
