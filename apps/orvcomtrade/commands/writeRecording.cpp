#include "commands/writeRecording.h"

#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/findingText.h"

#include <filesystem>
#include <string_view>
#include <utility>

using OrvComtradeIntake::Form;
using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Reader;

namespace {

OrvComtradeIntake::Sink sinkOf(Output* file) {
    return [file](std::string_view bytes) {
        if (file != nullptr) {
            file->write(bytes);
        }
    };
}

/// What the recording may have been read from; extensions in lower case, as those of the files that are written.
std::vector<std::string> originalsOf(const Opened& opened) {
    const std::filesystem::path configuration = opened.cfgFile();
    return {opened.cfgFile(), opened.datFile(), std::filesystem::path(configuration).replace_extension(".hdr").string(),
            std::filesystem::path(configuration).replace_extension(".inf").string()};
}

} // namespace

std::vector<std::string> endingsOf(const Opened& opened, const Form& form) {
    if (form.combined) {
        return {".cff"};
    }
    std::vector<std::string> endings;
    if (!opened.header().hdr.empty()) {
        endings.emplace_back(".hdr");
    }
    if (!opened.header().inf.empty()) {
        endings.emplace_back(".inf");
    }
    // The standard takes a configuration alone, the library does not.
    if (!opened.datFile().empty() || form.reader == Reader::Library) {
        endings.emplace_back(".dat");
    }
    endings.emplace_back(".cfg");
    return endings;
}

WrittenRecording writeRecording(const Opened& opened, const std::string& base, const Form& form, bool replace) {
    const std::vector<std::string> endings = endingsOf(opened, form);
    for (const std::string& ending : endings) {
        refuseToReplace(originalsOf(opened), base + ending);
    }
    SafeFiles files(replace);
    Output* data = nullptr;
    Output* configuration = nullptr;
    for (const std::string& ending : endings) {
        SafeFile& file = files.add(base + ending);
        if (ending == ".hdr") {
            file.write(opened.header().hdr);
        } else if (ending == ".inf") {
            file.write(opened.header().inf);
        } else {
            (ending == ".dat" ? data : configuration) = &file;
        }
    }
    OrvComtradeIntake::Losses losses = opened.write(sinkOf(configuration), sinkOf(data), form);
    files.publish();
    return {files.targets(), std::move(losses)};
}

std::vector<std::string> droppedWords(const OrvComtradeIntake::Losses& losses) {
    std::vector<std::string> words;
    const auto add = [&words](bool isLost, const char* what) {
        if (isLost) {
            words.emplace_back(what);
        }
    };
    add(losses.ratios, "sides and ratios");
    add(losses.statusNames, "phases and components of status channels");
    add(losses.timeCodes, "time codes and time quality");
    add(losses.nanoseconds, "nanoseconds of dates");
    return words;
}

void reportMissingTexts(const Opened& opened, Job& out) {
    for (const OrvComtradeIntake::Finding& finding : opened.findings()) {
        const std::string& file = finding.place.file;
        const bool isError = finding.severity == OrvComtradeIntake::Severity::Error;
        const bool isOfText = finding.place.field == "text-bytes" // which may be those of a section
                              || (file != opened.cfgFile() && file != opened.datFile());
        if (isError && isOfText) {
            out.note(placeText(finding.place) + ": not written: " + findingSentence(finding));
            out.setStatus(kRecordingProblem);
        }
    }
}
