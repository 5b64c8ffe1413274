#include "commands/loadEntry.h"

#include "input/loadRecording.h"

Recording loadEntry(const Entry& entry, const Request& request, Job& out) {
    Recording recording = loadRecording(entry.path, request.load);
    if (!recording.objection.empty()) {
        out.note(recording.objection);
    }
    return recording;
}
