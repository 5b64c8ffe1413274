#include "input/openArchives.h"

#include "input/recordingName.h"
#include "output/Failure.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

namespace {

/// A name in an archive as a path below a folder: without what would lead out of it.
std::string safePath(const std::string& member) {
    std::string path;
    for (std::size_t begin = 0; begin <= member.size();) {
        const std::size_t end = std::min(member.find_first_of("/\\", begin), member.size());
        const std::string name = member.substr(begin, end - begin);
        if (!name.empty() && name != "." && name != "..") {
            path += (path.empty() ? "" : "/") + name;
        }
        begin = end + 1;
    }
    return path;
}

std::string targetOf(const Entry& archive, const std::string& member) {
    const std::string path = safePath(std::string(stemOf(member)));
    const std::string inside = path.empty() ? "recording" : path;
    return archive.target.empty() ? inside : archive.target + "/" + inside;
}

std::vector<Entry> entriesOf(const Entry& archive, const ArchiveLimits& limits) {
    std::vector<Entry> entries;
    try {
        for (ArchivedRecording& found : std::make_shared<Archive>(archive.archive, limits)->recordings(archive.inner)) {
            Entry entry{archive.archive + "/" + found.member, targetOf(archive, found.member)};
            entry.isMet = found.member != archive.inner;
            entry.archive = archive.archive;
            entry.read = std::move(found.read);
            entries.push_back(std::move(entry));
        }
    } catch (const Failure& failure) {
        entries = {archive};
        entries.front().problem = failure.what();
    }
    return entries;
}

} // namespace

void openArchives(EntryList& selection, const ArchiveLimits& limits) {
    const auto isArchive = [](const Entry& entry) { return entry.isUnopenedArchive(); };
    if (std::none_of(selection.entries.begin(), selection.entries.end(), isArchive)) {
        return;
    }
    std::vector<Entry> entries;
    for (Entry& entry : selection.entries) {
        if (isArchive(entry)) {
            std::vector<Entry> opened = entriesOf(entry, limits);
            std::move(opened.begin(), opened.end(), std::back_inserter(entries));
        } else {
            entries.push_back(std::move(entry));
        }
    }
    selection.entries = std::move(entries);
}
