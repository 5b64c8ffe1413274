#include "commands/writtenFiles.h"

#include "output/json.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// The files that a recording may have beside the one that was named, in the usual cases of letters, or its archive.
std::vector<std::string> filesOf(const Entry& entry) {
    if (!entry.archive.empty()) {
        return {entry.archive};
    }
    std::vector<std::string> files = {entry.path};
    for (const char* const extension : {".cfg", ".dat", ".hdr", ".inf", ".CFG", ".DAT", ".HDR", ".INF"}) {
        files.push_back(fs::path(entry.path).replace_extension(extension).string());
    }
    return files;
}

bool isOlder(const fs::path& file, const Entry& entry) {
    std::error_code error;
    const fs::file_time_type written = fs::last_write_time(file, error);
    for (const std::string& original : filesOf(entry)) {
        std::error_code absent;
        const fs::file_time_type time = fs::last_write_time(original, absent);
        if (error || (!absent && time > written)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool isLeftOut(const Entry& entry, const Request& request, const OutputRequest& output, const std::string& file,
               Job& out) {
    std::error_code error;
    const bool mayBe = output.existing == Existing::Skip || output.existing == Existing::Update;
    if (!mayBe || !fs::exists(file, error) || (output.existing == Existing::Update && isOlder(file, entry))) {
        return false;
    }
    out.setOutcome("skipped");
    if (request.json) {
        Json line = recordingLine(entry.path, true);
        line["skipped"] = true;
        setPaths(line, "files", {file});
        writeLine(line, out);
    } else if (!request.quiet) {
        out.print("{}: skipped, {} is there\n", shownPath(entry.path), printable(file));
    }
    return true;
}

void reportWritten(const Entry& entry, const Request& request, const std::vector<std::string>& files,
                   std::optional<bool> isRepaired, Job& out) {
    if (request.json) {
        Json line = recordingLine(entry.path, true);
        if (isRepaired) {
            line["repaired"] = *isRepaired;
        }
        setPaths(line, "files", files);
        writeLine(line, out);
        return;
    }
    if (request.quiet) {
        return;
    }
    out.print("{}: {}written to {}\n", shownPath(entry.path), isRepaired.value_or(false) ? "repaired, " : "",
              printable(files.front()));
}
