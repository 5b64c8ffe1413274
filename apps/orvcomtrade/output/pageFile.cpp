#include "output/pageFile.h"

#include "output/printable.h"

#include <string_view>

std::string recordingName(const std::string& path) {
    return printable(path.substr(path.rfind('/') + 1));
}

OrvComtradePage::PageSummary writePageOf(const std::string& path, const OrvComtradeIntake::Opened& opened,
                                         OrvComtradePage::PageOptions options, Output& out) {
    options.name = recordingName(path);
    options.program = "orvcomtrade " ORVCOMTRADE_VERSION;
    return OrvComtradePage::writePage(opened, options, [&out](std::string_view text) { out.write(text); });
}
