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

/// What a site remembers of its pages, by the paths of the recordings, in a file next to them. Pages that are still
/// current need not be made again.
class SiteRecord {
public:
    /// Reads the file. Gives an empty record if there is none, or if another version of the program, or other
    /// `options`, made it.
    static SiteRecord read(const std::string& file, const std::string& options);

    /// The page of this recording, or null if its files have changed since the page was made.
    const SitePage* current(const std::string& path) const;

    void add(const std::string& path, SitePage page) { _pages[path] = std::move(page); }

    /// The contents of the file. `options` is what the pages depend on apart from the recordings.
    std::string text(const std::string& options) const;

private:
    std::map<std::string, SitePage> _pages;
};

/// The state of those files of a recording that exist now.
std::vector<SourceFile> sourcesOf(const std::string& cfgFile, const std::string& datFile);
