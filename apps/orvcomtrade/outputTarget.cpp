#include "outputTarget.h"

#include "printable.h"

#include <fmt/format.h>

#include <cstddef>
#include <filesystem>
#include <system_error>
#include <unordered_map>

namespace {

bool isFolder(const std::string& path) {
    std::error_code error;
    return path.back() == '/' || std::filesystem::is_directory(path, error);
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

} // namespace

bool isOneFile(const Request& request, const OutputRequest& output) {
    return request.selection.single && !isFolder(output.target);
}

std::string targetBase(const Entry& entry, const Request& request, const OutputRequest& output,
                       const std::string& extension) {
    if (isOneFile(request, output)) {
        const std::string& file = output.target;
        return endsWith(file, extension) ? file.substr(0, file.size() - extension.size()) : file;
    }
    return (std::filesystem::path(output.target) / entry.target).string();
}

void refuseSharedTargets(Selection& selection) {
    std::unordered_map<std::string, std::size_t> owners;
    for (std::size_t i = 0; i < selection.entries.size(); ++i) {
        Entry& entry = selection.entries[i];
        if (!entry.problem.empty()) {
            continue;
        }
        const auto [owner, isNew] = owners.try_emplace(entry.target, i);
        if (!isNew) {
            entry.problem = fmt::format("{}: would be written to the same file as {}", printable(entry.path),
                                        printable(selection.entries[owner->second].path));
        }
    }
}
