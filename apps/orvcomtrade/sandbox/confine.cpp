#include "sandbox/confine.h"

#include "input/recordingName.h"
#include "output/parentFolder.h"
#include "sandbox/Sandbox.h"

#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <iconv.h>
#include <memory>
#include <set>
#include <sstream>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Once each: a rule for every file would be one more for the kernel to look through at every opening.
std::set<std::string> foldersOf(const EntryList& selection) {
    std::set<std::string> folders;
    for (const Entry& entry : selection.entries) {
        if (entry.problem.empty() && entry.archive.empty() && !entry.read) {
            folders.insert(parentFolder(entry.path));
        }
    }
    return folders;
}

/// A file of a recording may be a link to one that lies elsewhere.
void allowLinked(const Sandbox& sandbox, const std::string& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folder.c_str()), closedir);
    if (!stream) {
        requireAbsent(errno, folder);
        return;
    }
    errno = 0;
    while (const dirent* const entry = readdir(stream.get())) { // NOLINT(concurrency-mt-unsafe): a stream of its own
        const bool mayBeLink = entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN;
        if (mayBeLink && kindOf(entry->d_name)) {
            const std::string path = folder + "/" + entry->d_name;
            struct stat status = {};
            if (stat(path.c_str(), &status) != 0) {
                requireAbsent(errno, path);
            } else if (S_ISREG(status.st_mode)) {
                sandbox.allowReading(path);
            }
        }
        errno = 0;
    }
    if (errno != 0) {
        requireAbsent(errno, folder);
    }
}

/// Converters of texts are libraries, which lie beside the C library or where its user says.
void allowConverters(const Sandbox& sandbox) {
    Dl_info library = {};
    if (dladdr(reinterpret_cast<void*>(&iconv_open), &library) != 0 && library.dli_fname != nullptr) { // NOLINT
        sandbox.allowReading(parentFolder(library.dli_fname));
    }
    const char* const folders = std::getenv("GCONV_PATH"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    std::istringstream list(folders == nullptr ? "" : folders);
    for (std::string folder; std::getline(list, folder, ':');) {
        sandbox.allowReading(folder);
    }
}

/// Where the intake keeps what it repaired if there are no files in memory.
void allowTemporary(const Sandbox& sandbox) {
    const int file = memfd_create("orvcomtrade", MFD_CLOEXEC);
    if (file >= 0) {
        close(file);
        return;
    }
    const char* const folder = std::getenv("TMPDIR"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    sandbox.allowWriting(folder == nullptr || *folder == '\0' ? "/tmp" : folder);
}

} // namespace

void confine(const EntryList& selection, const std::vector<std::string>& targets) {
    const Sandbox sandbox;
    if (sandbox.isThere()) {
        for (const std::string& folder : foldersOf(selection)) {
            sandbox.allowReading(folder);
            allowLinked(sandbox, folder);
        }
        for (const Entry& entry : selection.entries) {
            if (entry.isUnopenedArchive()) {
                sandbox.allowReading(entry.archive);
            }
        }
        std::set<std::string> written;
        for (const std::string& target : targets) {
            written.insert(parentFolder(target));
        }
        for (const std::string& folder : written) {
            sandbox.allowWriting(folder);
        }
        allowConverters(sandbox);
        allowTemporary(sandbox);
    }
    sandbox.close();
}
