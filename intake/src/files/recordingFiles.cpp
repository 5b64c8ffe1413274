#include "files/recordingFiles.h"

#include "base/characters.h"
#include "files/FileError.h"
#include "files/FileName.h"
#include "files/combinedFile.h"
#include "files/companionFiles.h"
#include "files/foreignFile.h"
#include "report/limits.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace OrvComtradeIntake {

namespace {

void reportForeign(const ByteSource& file, const std::string& found, const char* expected, Findings& findings) {
    findings.add(Kind::NotARecording, {file.name(), 0, ""}, {found, {}, expected});
}

void reportNoData(const RecordingFiles& files, Detail detail, Findings& findings) {
    findings.add(Kind::NoData, {files.cfgFile, 0, ""}, std::move(detail));
}

std::string textOf(const ByteSource& source, const Options& options, Findings& findings) {
    const bool isTooLong = isAbove(source.length(), options.limits.textBytes, "text-bytes", "bytes",
                                   {source.name(), 0, "", source.offsetInFile(0)}, findings);
    return isTooLong ? std::string() : source.all();
}

/// Of a file that a recording does without.
std::string textOfFile(const std::string& path, const Options& options, Findings& findings) {
    try {
        return path.empty() ? std::string() : textOf(ByteSource::ofFile(path), options, findings);
    } catch (const FileError& error) {
        if (error.code() != std::errc::permission_denied) {
            throw; // it would be there another time
        }
        reportFileError(error, findings);
        return {};
    }
}

std::optional<RecordingFiles> fromCombined(const ByteSource& file, const Options& options, Findings& findings) {
    std::optional<CombinedFile> combined = readCombinedFile(file, findings, options.limits);
    if (!combined) {
        return std::nullopt;
    }
    RecordingFiles files;
    files.cfgFile = file.name();
    files.cfg = std::move(combined->cfg);
    files.data = std::move(combined->data);
    files.dataFormat = std::move(combined->dataFormat);
    files.hdr = textOf(combined->hdr, options, findings);
    files.inf = textOf(combined->inf, options, findings);
    if (files.data) {
        files.datFile = file.name();
    } else if (files.dataFormat.empty()) { // else they are there, and a finding says why they are not read
        reportNoData(files, {"none", {}, "a section \"--- file type: DAT ---\"", 1, "request the .cff again"},
                     findings);
    }
    return files;
}

RecordingFiles fromConfiguration(const ByteSource& file) {
    RecordingFiles files;
    files.cfgFile = file.name();
    files.cfg = file;
    return files;
}

void takeData(RecordingFiles& files, const ByteSource& data, Findings& findings) {
    const std::string foreign = foreignKind(data);
    if (foreign.empty()) {
        files.data = data;
    } else {
        reportForeign(data, foreign, "the data", findings);
    }
}

void openData(RecordingFiles& files, Findings& findings) {
    try {
        takeData(files, ByteSource::ofFile(files.datFile), findings);
    } catch (const FileError& error) {
        reportFileError(error, findings);
    }
}

/// Whether a file is something else; then reports what.
bool isForeign(const ByteSource& file, Findings& findings) {
    const std::string foreign = foreignKind(file);
    if (!foreign.empty()) {
        reportForeign(file, foreign, "", findings);
    }
    return !foreign.empty();
}

/// Whether a file may be a configuration or a `.cff`; else reports why not.
bool isConfiguration(const ByteSource& file, Findings& findings) {
    if (file.length() == 0) {
        findings.add(Kind::EmptyConfiguration, {file.name(), 0, ""}, {"an empty file"});
        return false;
    }
    return !isForeign(file, findings);
}

bool isNameOfRecording(const std::string& path) {
    constexpr std::array<std::string_view, 5> known = {".cfg", ".dat", ".cff", ".hdr", ".inf"};
    const std::string extension = lowerCase(FileName::of(path).extension);
    return !isResourceForkName(path) && std::find(known.begin(), known.end(), extension) != known.end();
}

/// Why a file leads to no recording: it is something else, or its configuration is missing.
void reportNoConfiguration(const ByteSource& given, const std::string& nearMisses, Findings& findings) {
    const std::string& path = given.name();
    const std::string extension = FileName::of(path).extension;
    if (isResourceForkName(path)) {
        reportForeign(given, kResourceFork, "", findings);
    } else if (isForeign(given, findings)) {
        return;
    } else if (!isNameOfRecording(path)) {
        reportForeign(given, extension.empty() ? "no extension" : "the extension " + escaped(extension), "", findings);
    } else {
        findings.add(Kind::NoConfiguration, {path, 0, ""}, {nearMisses});
    }
}

/// Whether the library opens these two files for the path.
bool areNamedForLibrary(const CompanionFiles& companions, const std::string& path) {
    const FileName name = FileName::of(path);
    const std::string extension = lowerCase(name.extension);
    return companions.cfg == (extension == ".cfg" ? path : name.with(".cfg")) &&
           companions.dat == (extension == ".dat" ? path : name.with(".dat"));
}

std::optional<RecordingFiles> fromFiles(const ByteSource& file, const CompanionFiles& companions,
                                        const std::string& path, const Options& options, Findings& findings) {
    if (!isConfiguration(file, findings)) {
        return std::nullopt;
    }
    if (companions.cfg.empty() || isCombinedFile(file)) {
        return fromCombined(file, options, findings);
    }
    RecordingFiles files = fromConfiguration(file);
    files.hdr = textOfFile(companions.hdr, options, findings);
    files.inf = textOfFile(companions.inf, options, findings);
    files.datFile = companions.dat;
    if (files.datFile.empty()) {
        reportNoData(files, {companions.nearMisses}, findings);
        return files;
    }
    openData(files, findings);
    files.isNamedForLibrary = files.data && areNamedForLibrary(companions, path);
    return files;
}

} // namespace

std::optional<RecordingFiles> findRecording(const std::string& path, Findings& findings, const Options& options) {
    try {
        const CompanionFiles companions =
            isNameOfRecording(path) ? findCompanions(path, findings, options.folders.get()) : CompanionFiles();
        std::string first = companions.cfg.empty() ? companions.cff : companions.cfg;
        const bool isFound = !first.empty();
        first = isFound ? first : path;
        const ByteSource file = ByteSource::ofFile(first);
        if (isFound) {
            return fromFiles(file, companions, path, options, findings);
        }
        reportNoConfiguration(file, companions.nearMisses, findings);
    } catch (const FileError& error) {
        reportFileError(error, findings);
    }
    return std::nullopt;
}

std::optional<RecordingFiles> recordingOf(const Bytes& bytes, Findings& findings, const Options& options) {
    const auto named = [&bytes](const char* extension) { return bytes.isStream ? bytes.name : bytes.name + extension; };
    const bool isCombined = isCombinedFile(ByteSource::ofMemory(bytes.cfg, {}));
    const ByteSource file = ByteSource::ofMemory(bytes.cfg, named(isCombined ? ".cff" : ".cfg"));
    if (!isConfiguration(file, findings)) {
        return std::nullopt;
    }
    if (isCombined) {
        return fromCombined(file, options, findings);
    }
    RecordingFiles files = fromConfiguration(file);
    files.hdr = textOf(ByteSource::ofMemory(bytes.hdr, named(".hdr")), options, findings);
    files.inf = textOf(ByteSource::ofMemory(bytes.inf, named(".inf")), options, findings);
    if (bytes.dat.data() == nullptr) {
        const Detail ofStream{"a .cfg alone", {}, "a .cff", 1, "name the .cfg, so that its .dat is found"};
        reportNoData(files, bytes.isStream ? ofStream : Detail{"no bytes"}, findings);
        return files;
    }
    files.datFile = named(".dat");
    takeData(files, ByteSource::ofMemory(bytes.dat, files.datFile), findings);
    return files;
}

} // namespace OrvComtradeIntake
