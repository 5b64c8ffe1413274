#include "commands/noteSides.h"

#include "output/printable.h"
#include "output/sideName.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

using OrvComtradeIntake::Side;

void noteSides(const Recording& recording, const Entry& entry, const Request& request, Job& out) {
    const Side wanted = request.load.intake.side;
    const auto isOther = [wanted](const AnalogValues& channel) { return channel.side != wanted; };
    const auto others = std::count_if(recording.analog.begin(), recording.analog.end(), isOther);
    if (wanted == Side::Recorded || others == 0) {
        return;
    }
    const AnalogValues& first = *std::find_if(recording.analog.begin(), recording.analog.end(), isOther);
    const std::string more = others > 1 ? fmt::format(", and {} more channels,", others - 1) : "";
    out.note(fmt::format("{}: {}{} cannot be converted to {} values (no side or ratio): as recorded",
                         shownPath(entry.path), printable(clipped(first.name)), more, sideName(wanted)));
}
