#pragma once

// What the tests of the whole intake share.

#include "Intake.h"
#include "support/TempDir.h"

#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <map>
#include <string>

namespace orvtest {

inline std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// The files of a folder: name to bytes.
inline std::map<std::string, std::string> contentsOf(const std::filesystem::path& folder) {
    std::map<std::string, std::string> contents;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        contents[entry.path().filename().string()] = bytesOf(entry.path());
    }
    return contents;
}

inline std::string text(const OrvComtradeIntake::Finding& finding) {
    return finding.code + (finding.mended ? " (mended) " : " ") + finding.file + ":" + std::to_string(finding.line) +
           ":" + finding.field + " found '" + finding.found + "' expected '" + finding.expected + "' done '" +
           finding.done + "'\n";
}

/// Every finding on a line of its own.
inline std::string text(const OrvComtradeIntake::PreparedRecording& prepared) {
    std::string all;
    for (const OrvComtradeIntake::Finding& finding : prepared.findings) {
        all += text(finding);
    }
    return all;
}

/// The findings for which the pair was written anew, each on a line of its own.
inline std::string mendedText(const OrvComtradeIntake::PreparedRecording& prepared) {
    std::string all;
    for (const OrvComtradeIntake::Finding& finding : prepared.findings) {
        all += finding.mended ? text(finding) : "";
    }
    return all;
}

/// Copies a prepared pair into a folder and gives the path of its configuration.
inline std::string copyOfPair(const OrvComtradeIntake::PreparedRecording& prepared, const TempDir& folder) {
    std::filesystem::path dat = prepared.path;
    dat.replace_extension(".dat");
    folder.write("again.dat", bytesOf(dat));
    return folder.write("again.cfg", bytesOf(prepared.path));
}

} // namespace orvtest
