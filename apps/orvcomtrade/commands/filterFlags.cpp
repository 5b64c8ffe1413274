#include "commands/filterFlags.h"

#include "input/clockTimeIn.h"

#include <OrvComtradeIntake/Instant.h>

#include <optional>
#include <string>
#include <utility>

using OrvComtradeIntake::Instant;

namespace {

Flag dateFlag(std::string name, std::string summary, std::optional<Instant>& instant) {
    Flag flag{std::move(name), "DATE", std::move(summary), [&instant](const std::string& text) {
                  instant = clockTimeIn(text);
                  return instant ? "" : "a date is 2021-11-02, or 2021-11-02T19:05:44.61, not " + text;
              }};
    return std::move(flag).with("By the recorder's clock: 2021-11-02, 2021-11-02T19:05 or 2021-11-02T19:05:44.61.");
}

} // namespace

std::vector<Flag> filterFlags(Request& request) {
    request.takesCatalogues = true;
    RecordingFilter& filter = request.wanted.filter;
    std::vector<Flag> flags;
    flags.push_back(textsFlag("--station", "PATTERN", "Only recordings of stations with this name", filter.stations)
                        .with("Part of the name in any case, or a pattern with * and ?. Repeat it for more stations."));
    flags.push_back(
        textsFlag("-c,--channel", "PATTERN", "Only recordings that have a channel of this name", filter.channels)
            .with("A name or identifier in any case, or a pattern with * and ?. Repeat it for more channels."));
    flags.push_back(dateFlag("--after", "Only recordings that start then or later", filter.after));
    flags.push_back(dateFlag("--before", "Only recordings that start earlier", filter.before));
    flags.push_back(textFlag("--root", "FOLDER", "Folder of the recordings of a catalogue (default: as it was indexed)",
                             request.wanted.root)
                        .of(ValueKind::File)
                        .with("A catalogue names the folder that index searched, and its paths are relative to that. "
                              "The flag is for one that lies elsewhere now, or is mounted under another name."));
    return flags;
}
