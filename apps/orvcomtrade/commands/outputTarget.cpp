#include "commands/outputTarget.h"

#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <filesystem>
#include <system_error>
#include <unordered_map>

namespace {

bool isFolder(const std::string& path) {
    std::error_code error;
    const bool isThere = path.back() == '/' || std::filesystem::is_directory(path, error);
    if (error && error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory) {
        throw Failure(kRecordingProblem, fmt::format("{}: cannot be written: {}", printable(path), error.message()));
    }
    return isThere;
}

} // namespace

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

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

void refuseSharedTargets(EntryList& selection, const std::vector<std::string>& endings) {
    std::unordered_map<std::string, const Entry*> owners;
    for (Entry& entry : selection.entries) {
        if (!entry.problem.empty()) {
            continue;
        }
        for (const std::string& ending : endings) {
            const auto owner = owners.find(entry.target + ending);
            if (owner != owners.end()) {
                entry.problem = fmt::format("{}: would be written to the same file as {}", shownPath(entry.path),
                                            printable(owner->second->path));
                break;
            }
        }
        if (entry.problem.empty()) {
            for (const std::string& ending : endings) {
                owners.emplace(entry.target + ending, &entry);
            }
        }
    }
}
