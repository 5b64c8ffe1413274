#include "input/openArchives.h"

#include "input/recordingName.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

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

std::vector<Entry> failedEntries(std::vector<Entry> entries, const std::string& problem) {
    for (Entry& entry : entries) {
        entry.problem = problem;
    }
    return entries;
}

Entry entryOf(const Entry& archive, ArchivedRecording found) {
    Entry entry{archive.archive + "/" + found.member, targetOf(archive, found.member)};
    entry.isMet = found.member != archive.inner;
    entry.isChosen = archive.isChosen;
    entry.archive = archive.archive;
    entry.read = std::move(found.read);
    return entry;
}

std::vector<Entry> entriesOf(const Entry& archive, const ArchiveLimits& limits) {
    std::vector<Entry> entries;
    try {
        for (ArchivedRecording& found : std::make_shared<Archive>(archive.archive, limits)->recordings(archive.inner)) {
            entries.push_back(entryOf(archive, std::move(found)));
        }
    } catch (const Failure& failure) {
        return failedEntries({archive}, failure.what());
    }
    return entries;
}

/// Of recordings of one archive, each of which is known: the archive is looked through once for all of them.
std::vector<Entry> entriesOf(std::vector<Entry> chosen, const ArchiveLimits& limits) {
    std::unordered_map<std::string, Entry*> byMember;
    for (Entry& entry : chosen) {
        byMember.emplace(entry.inner, &entry);
    }
    const auto isWanted = [&byMember](const std::string& member) { return byMember.count(member) > 0; };
    try {
        const auto archive = std::make_shared<Archive>(chosen.front().archive, limits);
        for (ArchivedRecording& found : archive->recordings({}, isWanted)) {
            Entry& entry = *byMember.at(found.member);
            entry = entryOf(entry, std::move(found));
        }
    } catch (const Failure& failure) {
        return failedEntries(std::move(chosen), failure.what());
    }
    for (Entry& entry : chosen) {
        if (!entry.read) {
            entry.problem = printable(entry.path) + ": no recording of this name in the archive";
        }
    }
    return chosen;
}

} // namespace

void openArchives(EntryList& selection, const ArchiveLimits& limits) {
    const auto isArchive = [](const Entry& entry) { return entry.isUnopenedArchive(); };
    if (std::none_of(selection.entries.begin(), selection.entries.end(), isArchive)) {
        return;
    }
    std::vector<Entry> entries;
    const auto end = selection.entries.end();
    for (auto entry = selection.entries.begin(); entry != end;) {
        if (!isArchive(*entry)) {
            entries.push_back(std::move(*entry++));
            continue;
        }
        const auto isOther = [&first = *entry](const Entry& other) {
            return !first.isChosen || !other.isChosen || other.archive != first.archive;
        };
        const auto next = std::find_if(entry + 1, end, isOther);
        std::vector<Entry> opened =
            entry->isChosen ? entriesOf({std::make_move_iterator(entry), std::make_move_iterator(next)}, limits)
                            : entriesOf(*entry, limits);
        std::move(opened.begin(), opened.end(), std::back_inserter(entries));
        entry = next;
    }
    selection.entries = std::move(entries);
}
