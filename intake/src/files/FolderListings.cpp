#include "files/FolderListings.h"

#include "base/characters.h"
#include "files/folderNames.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kMostFolders = 8; // as many threads as usual, each in a folder of its own

} // namespace

Folders::Folders() : _listings(std::make_unique<Listings>()) {}
Folders::~Folders() = default;

Folders::Listings::Names Folders::Listings::of(const std::string& folder) {
    const std::lock_guard<std::mutex> lock(_mutex);
    const auto known =
        std::find_if(_known.begin(), _known.end(), [&folder](const auto& one) { return one.first == folder; });
    if (known != _known.end()) {
        _known.splice(_known.begin(), _known, known);
        return _known.front().second;
    }
    std::vector<std::string> names = allNames(folder, std::numeric_limits<std::size_t>::max());
    std::sort(names.begin(), names.end(), isBeforeWithoutCase);
    _known.emplace_front(folder, std::make_shared<const std::vector<std::string>>(std::move(names)));
    if (_known.size() > kMostFolders) {
        _known.pop_back();
    }
    return _known.front().second;
}

} // namespace OrvComtradeIntake
