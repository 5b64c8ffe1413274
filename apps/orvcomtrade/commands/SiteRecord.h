#pragma once

#include <OrvComtradePage/Index.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// A file that a page was made of, as it was then.
struct SourceFile {
    std::string path;
    std::uint64_t size = 0;
    std::int64_t modified = 0; ///< nanoseconds

    friend bool operator==(const SourceFile& left, const SourceFile& right) {
        return left.path == right.path && left.size == right.size && left.modified == right.modified;
    }
};

/// A page of a site, and what it was made of.
struct SitePage {
    OrvComtradePage::IndexRow row;
    std::vector<SourceFile> sources;
};

/// What a site remembers of its pages in a file beside them, by the recordings' paths: those that are still true need
/// not be made anew.
class SiteRecord {
public:
    /// What the file says; nothing where there is none, or where another version of the program wrote it.
    static SiteRecord read(const std::string& file, const std::string& options);

    /// The page of this recording if it was made of the files that are there now, else null.
    const SitePage* current(const std::string& path) const;

    void add(const std::string& path, SitePage page) { _pages[path] = std::move(page); }

    /// As the file holds it. `options` are what the pages depend on beside the recordings.
    std::string text(const std::string& options) const;

private:
    std::map<std::string, SitePage> _pages;
};

/// The files as they are now: those of a recording that are there.
std::vector<SourceFile> sourcesOf(const std::string& cfgFile, const std::string& datFile);
