#include "companionFiles.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace OrvComtradeIntake {

namespace {

struct NamedPath {
    std::string stem;      ///< folder included, up to the last '.' of the name
    std::string extension; ///< as written, with its '.'
};

NamedPath cut(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::size_t dot = path.rfind('.');
    const bool hasDot = dot != std::string::npos && (slash == std::string::npos || dot > slash);
    return hasDot ? NamedPath{path.substr(0, dot), path.substr(dot)} : NamedPath{path, {}};
}

std::string changed(std::string text, int (*change)(int)) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [change](unsigned char letter) { return static_cast<char>(change(letter)); });
    return text;
}

std::string lower(const std::string& text) {
    return changed(text, std::tolower);
}

/// A file, or what leads to one; a folder, a pipe or a device is none, whatever its name: these may have no end.
bool isFile(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

/// Finds the file of one kind beside the given one.
class Search {
public:
    Search(const std::string& path, Findings& findings) : _given(path), _name(cut(path)), _findings(findings) {
        _listFolder();
    }

    const NamedPath& name() const { return _name; }

    std::string find(const std::string& extension) {
        if (lower(_name.extension) == extension && isFile(_given)) {
            return _given;
        }
        std::vector<std::string> fitting = _fitting(extension);
        if (fitting.empty()) {
            fitting = _fittingInOtherCase(extension);
        }
        if (fitting.empty()) {
            return {};
        }
        if (fitting.size() > 1) {
            _tellAmbiguous(fitting);
        }
        return fitting.front();
    }

private:
    /// Names in the folder that differ from the given one in their extension, or in the case of their letters; empty
    /// where it can't be listed.
    void _listFolder() {
        const std::filesystem::path folder = std::filesystem::path(_given).parent_path();
        const std::string stem = std::filesystem::path(_name.stem).filename().string();
        std::error_code error;
        std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, error);
        for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            const NamedPath found = cut(entry->path().filename().string());
            if (found.extension.size() != 4) {
                continue;
            }
            if (found.stem == stem) {
                _extensions.push_back(found.extension);
            } else if (lower(found.stem) == lower(stem)) {
                _others.push_back(
                    {_name.stem.substr(0, _name.stem.size() - stem.size()) + found.stem, found.extension});
            }
        }
        std::sort(_extensions.begin(), _extensions.end()); // a folder has no order of its own
        std::sort(_others.begin(), _others.end(), [](const NamedPath& left, const NamedPath& right) {
            return left.stem + left.extension < right.stem + right.extension;
        });
    }

    /// In the order of preference: lower case, upper case, then any.
    std::vector<std::string> _fitting(const std::string& extension) const {
        const std::string upper = changed(extension, std::toupper);
        std::vector<std::string> fitting;
        const auto add = [&](const std::string& candidate) {
            const std::string path = _name.stem + candidate;
            if (std::find(fitting.begin(), fitting.end(), path) == fitting.end() && isFile(path)) {
                fitting.push_back(path);
            }
        };
        add(extension);
        add(upper);
        add(extension.substr(0, 1) + upper.substr(1, 1) + extension.substr(2)); // ".Cfg"
        for (const std::string& candidate : _extensions) {
            if (lower(candidate) == extension) {
                add(candidate);
            }
        }
        return fitting;
    }

    /// Files whose names differ in case, as systems that do not tell the case apart leave them.
    std::vector<std::string> _fittingInOtherCase(const std::string& extension) const {
        std::vector<std::string> fitting;
        for (const NamedPath& other : _others) {
            const std::string path = other.stem + other.extension;
            if (lower(other.extension) == extension && isFile(path) && !_isOfAnother(other.stem)) {
                fitting.push_back(path);
            }
        }
        return fitting;
    }

    /// Whether that name has a file of the given one's kind itself.
    bool _isOfAnother(const std::string& stem) const {
        return isFile(_given) && std::any_of(_others.begin(), _others.end(), [&](const NamedPath& other) {
                   return other.stem == stem && lower(other.extension) == lower(_name.extension);
               });
    }

    void _tellAmbiguous(const std::vector<std::string>& fitting) {
        Finding finding;
        finding.severity = Severity::Warning;
        finding.code = "companion-ambiguous";
        finding.file = fitting.front();
        for (const std::string& path : fitting) {
            finding.found += (finding.found.empty() ? "" : ", ") + std::filesystem::path(path).filename().string();
        }
        finding.found = shown(finding.found, 200);
        finding.expected = "one file of this kind";
        finding.done = "the first is read";
        _findings.add(std::move(finding));
    }

    std::string _given;
    NamedPath _name;
    std::vector<std::string> _extensions; ///< of the given name
    std::vector<NamedPath> _others;       ///< the given name but for the case of its letters
    Findings& _findings;
};

Finding missingConfiguration(const std::string& path) {
    Finding finding;
    finding.severity = Severity::Error;
    finding.code = "no-cfg";
    finding.file = path;
    finding.expected = "a .cfg, or a .cff, of this name";
    return finding;
}

void tellName(const CompanionFiles& files, const std::string& expected, Findings& findings) {
    Finding finding;
    finding.severity = Severity::Warning;
    finding.code = "companion-case";
    finding.file = files.dat;
    finding.found = shown(std::filesystem::path(files.dat).filename().string(), 200);
    finding.expected = shown(std::filesystem::path(expected).filename().string(), 200);
    finding.done = "read under the name expected";
    finding.mended = true;
    findings.add(std::move(finding));
}

bool isRecordingExtension(const std::string& extension) {
    constexpr std::array<std::string_view, 3> known = {".cfg", ".dat", ".cff"};
    return std::find(known.begin(), known.end(), lower(extension)) != known.end();
}

} // namespace

CompanionFiles findCompanions(const std::string& path, Findings& findings) {
    CompanionFiles files;
    const std::string extension = cut(path).extension;
    if (!isRecordingExtension(extension)) {
        Finding finding = missingConfiguration(path);
        finding.found = extension.empty() ? "no extension" : shown(extension);
        findings.add(std::move(finding));
        return files;
    }
    Search search(path, findings);
    if (lower(extension) == ".cff") {
        files.cff = search.find(".cff");
        if (!files.cff.empty()) {
            return files;
        }
    }
    files.cfg = search.find(".cfg");
    files.dat = search.find(".dat");
    if (files.cfg.empty()) {
        files.cff = search.find(".cff");
        if (files.cff.empty()) {
            findings.add(missingConfiguration(path));
        }
        return files;
    }
    if (files.dat.empty()) {
        files.named = false;
        return files; // configuration only
    }
    const std::string expected = cut(files.cfg).stem + ".dat";
    files.named = files.dat == expected;
    if (!files.named) {
        tellName(files, expected, findings);
    }
    return files;
}

} // namespace OrvComtradeIntake
