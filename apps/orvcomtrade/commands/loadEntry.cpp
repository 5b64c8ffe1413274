#include "commands/loadEntry.h"

#include "input/loadRecording.h"
#include "output/findingText.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <cstddef>

namespace {

void noteReading(const Recording& recording, Job& out) {
    out.note(fmt::format("{}: read with {}, texts in {}", printable(recording.cfgFile),
                         recording.datFile.empty() ? "no data" : printable(recording.datFile),
                         printable(recording.header.encoding)));
    const auto* const findings = recording.reader->findings();
    for (std::size_t i = 0; findings != nullptr && i < findings->size(); ++i) {
        const OrvComtradeIntake::Finding& finding = (*findings)[i];
        if (finding.severity != OrvComtradeIntake::Severity::Note) {
            out.note(findingLine(finding));
        }
    }
}

} // namespace

Recording loadEntry(const Entry& entry, const Request& request, Job& out) {
    Recording recording = loadRecording(entry, request.load);
    if (!recording.objection.empty()) {
        out.note(recording.objection);
    }
    if (request.verbose) {
        noteReading(recording, out);
    }
    return recording;
}
