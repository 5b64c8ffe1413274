// Random recordings in which nothing is wrong: no false alarm, the right values by every way out, and written anew they
// are the same.

#include "support/soundRecordings.h"

#include "Comtrade.h"
#include "intake/comparison.h"
#include "intake/openedChecks.h"
#include "intake/slowReader.h"
#include "support/TempDir.h"

#include <OrvComtradeIntake/Intake.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

using namespace OrvComtradeIntake;
using OrvComtradeLib::Comtrade;
using namespace orvtest;
namespace Enums = OrvComtradeLib::Enums;

namespace {

constexpr std::uint64_t kForAlarms = 10000;
constexpr std::uint64_t kForValues = 2000;
constexpr std::uint64_t kForFiles = 500;
constexpr std::uint64_t kForForms = 150;
constexpr int kMostFailures = 5; ///< that are shown

SoundRecording recordingOf(std::uint64_t seed) {
    Random random(seed);
    const Shape shape = randomShape(random);
    return soundRecording(shape, random);
}

/// Runs a check on recordings of the seeds 1, 2, ...; a failure shows its seed and its shape.
template <class Check> void forEachRecording(std::uint64_t count, Check check) {
    int failures = 0;
    for (std::uint64_t seed = 1; seed <= count && failures < kMostFailures; ++seed) {
        const SoundRecording recording = recordingOf(seed);
        const std::string wrong = check(recording);
        EXPECT_EQ(wrong, "") << "seed " << seed << ": " << text(recording.shape) << "\n" << recording.cfg();
        failures += wrong.empty() ? 0 : 1;
    }
}

/// The pair, or once in four times the same as one file.
Written filesOf(const SoundRecording& recording) {
    const bool isOneFile = recording.records.size() % 4 == 3;
    return isOneFile ? Written{recording.combined(), ""} : Written{recording.cfg(), recording.dat()};
}

std::string seriousFindings(const Opened& opened) {
    std::string serious;
    for (const Finding& finding : opened.findings()) {
        serious += finding.severity > Severity::Note ? text(finding) : "";
    }
    return serious;
}

} // namespace

TEST(SoundRecordings, HaveNoFindingWorseThanANote) {
    forEachRecording(kForAlarms, [](const SoundRecording& recording) {
        const Written files = filesOf(recording);
        const Opened opened = open(bytesToOpen(files));
        return opened.readable() ? seriousFindings(opened) : "not readable: " + text(opened);
    });
}

TEST(SoundRecordings, AreReadAsTheSlowReaderReadsThem) {
    forEachRecording(kForValues, [](const SoundRecording& recording) -> std::string {
        const slow::Recording meaning = slow::read(recording.cfg(), recording.dat(), recording.facts);
        const Written files = filesOf(recording);
        const Opened opened = open(bytesToOpen(files));
        Comtrade loaded;
        if (opened.load(loaded) != Enums::Ok) {
            return "not loaded";
        }
        for (const std::string& difference :
             {firstHeaderDifference(opened.header(), meaning), firstTextDifference(loaded, meaning),
              firstValueDifference(loaded, meaning, Side::Recorded, 4), firstBrokenFinding(opened)}) {
            if (!difference.empty()) {
                return difference;
            }
        }
        const std::string missing = missingText(opened.columns().missing);
        return missing == missingText(meaning) ? "" : "missing values: " + missing;
    });
}

TEST(SoundRecordings, GiveTheSameByEveryWayOut) {
    const TempDir folder;
    forEachRecording(kForValues, [&folder](const SoundRecording& recording) {
        Options options;
        options.side = recording.records.size() % 3 == 0   ? Side::Recorded
                       : recording.records.size() % 3 == 1 ? Side::Primary
                                                           : Side::Secondary;
        const Written files = filesOf(recording);
        const Opened opened = open(bytesToOpen(files), options);
        const std::string broken = firstBrokenPromise(opened, options, folder.path());
        const auto openInto = [&](Columns& columns, const Selection& selection) {
            return open(bytesToOpen(files), columns, selection, options);
        };
        return broken.empty() ? firstBrokenReading(opened, openInto) : broken;
    });
}

TEST(SoundRecordings, GiveTheLibraryAloneTheSameWhereItSuffices) {
    const TempDir folder;
    int number = 0;
    int sufficient = 0;
    forEachRecording(kForFiles, [&](const SoundRecording& recording) -> std::string {
        const std::string name = std::to_string(++number);
        folder.write(name + ".dat", recording.dat());
        const std::string path = folder.write(name + ".cfg", recording.cfg());
        const Opened opened = open(path);
        if (!opened.librarySuffices()) {
            return "";
        }
        ++sufficient;
        Comtrade alone;
        Comtrade loaded;
        alone.load(path);
        opened.load(loaded);
        return firstDifference(alone, loaded);
    });
    EXPECT_GT(sufficient, 20);
}

namespace {

bool exists(int revision, DataType type) {
    return revision == 2013 || type == DataType::Ascii || type == DataType::Binary;
}

std::string wrongInForm(const Opened& opened, const Form& form) {
    const Written written = writtenBy(opened, form);
    const Opened again = open(bytesToOpen(written));
    if (!again.readable() || !codesOf(again, Severity::Warning).empty()) {
        return text(again);
    }
    const DataType type = form.dataType.value_or(opened.header().dataType);
    if (again.header().dataType != type) {
        return "type";
    }
    if (again.header().revision != form.revision.value_or(opened.header().revision)) {
        return "revision";
    }
    const bool isScaled = type != opened.header().dataType;
    const std::string header = isScaled ? "" : firstDifference(again.header(), opened.header());
    const bool isPrecise = keepsValues(type, opened.header().dataType);
    return header.empty() ? firstApartness(again, opened, isPrecise ? 0.0 : 1e-4) : header;
}

std::string formText(const Form& form) {
    return "revision " + std::to_string(form.revision.value_or(0)) + ", type " +
           (form.dataType ? typeWord(*form.dataType) : "as recorded") + (form.combined ? ", combined: " : ": ");
}

/// The first form in which what was written is not the same.
std::string wrongInAForm(const Opened& opened) {
    for (const int revision : {1991, 1999, 2013}) {
        for (const DataType type : {DataType::Ascii, DataType::Binary, DataType::Binary32, DataType::Float32}) {
            for (const bool combined : {false, true}) {
                if (!exists(revision, type)) {
                    continue;
                }
                Form form;
                form.revision = revision;
                form.dataType = type;
                form.combined = combined;
                const std::string wrong = wrongInForm(opened, form);
                if (!wrong.empty()) {
                    return formText(form) + wrong;
                }
            }
        }
    }
    return "";
}

} // namespace

TEST(SoundRecordings, AreTheSameOnceWrittenInAnyForm) {
    forEachRecording(kForForms, [](const SoundRecording& recording) {
        const Written files = filesOf(recording);
        const Opened opened = open(bytesToOpen(files));
        return wrongInAForm(opened);
    });
}

TEST(SoundRecordings, HaveNoFindingAtAllOnceWritten) {
    forEachRecording(kForValues, [](const SoundRecording& recording) {
        const Written files = filesOf(recording);
        const Opened opened = open(bytesToOpen(files));
        const Written written = writtenBy(opened);
        const Opened again = open(bytesToOpen(written));
        std::string found;
        for (const Finding& finding : again.findings()) {
            const bool isOfValues =
                finding.code == "missing-values" || finding.code == "constant-channel" || finding.code == "all-zero";
            found += isOfValues ? "" : text(finding);
        }
        return found;
    });
}
