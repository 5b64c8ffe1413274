#include "input/loadRecording.h"

#include "input/intakeRecording.h"
#include "input/libraryRecording.h"
#include "output/Failure.h"

Recording openRecording(const std::string& path, const LoadOptions& options) {
    return options.asIs ? libraryRecording(path) : intakeRecording(path, options.intake);
}

Recording loadRecording(const std::string& path, const LoadOptions& options) {
    Recording recording = openRecording(path, options);
    if (!recording.noneNote.empty()) {
        throw NotARecording(recording.problem, recording.noneNote);
    }
    if (!recording.problem.empty()) {
        throw Failure(kRecordingProblem, recording.problem);
    }
    return recording;
}
