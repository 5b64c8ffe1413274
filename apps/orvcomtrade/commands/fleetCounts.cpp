#include "commands/fleetCounts.h"

#include "output/StandardOutput.h"
#include "output/printable.h"

void printFleetCounts(const std::string& target, const std::string& sentence,
                      const std::vector<std::pair<const char*, Json>>& counts, bool isJson) {
    StandardOutput out;
    if (isJson) {
        Json line = recordingLine(target, true);
        for (const auto& [name, count] : counts) {
            line[name] = count;
        }
        writeLine(line, out);
    } else {
        out.print("{}: {}\n", printable(target), sentence);
    }
    out.flush();
}
