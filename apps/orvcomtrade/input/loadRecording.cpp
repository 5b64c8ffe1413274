#include "input/loadRecording.h"

#include "input/intakeRecording.h"
#include "input/libraryRecording.h"
#include "output/Failure.h"
#include "output/printable.h"

Recording openRecording(const Entry& entry, const LoadOptions& options) {
    if (options.asIs && entry.read) {
        throw Failure(kRecordingProblem,
                      shownPath(entry.path) + ": --as-is reads files, not archives or standard input");
    }
    return options.asIs ? libraryRecording(entry.path) : intakeRecording(entry, options.intake);
}

Recording loadRecording(const Entry& entry, const LoadOptions& options) {
    Recording recording = openRecording(entry, options);
    if (!recording.noneNote.empty()) {
        throw NotARecording(recording.problem, recording.noneNote);
    }
    if (!recording.problem.empty()) {
        throw Failure(kRecordingProblem, recording.problem);
    }
    return recording;
}
