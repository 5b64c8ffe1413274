#pragma once

#include <OrvComtradeIntake/Form.h>
#include <OrvComtradePage/Page.h>

#include <cstdint>
#include <string>
#include <vector>

namespace OrvComtradePage {

/// A recording in the list of a site. Texts are UTF-8, in characters that can be shown.
struct IndexRow {
    std::string file;  ///< name of the recording
    std::string link;  ///< relative address of its page; empty if there is none
    std::string error; ///< why there is no page, or empty; with an error, all members below are empty
    std::string start; ///< date and time, or empty
    std::string station;
    std::string recorder;
    double duration = 0.0; ///< seconds
    std::size_t analog = 0;
    std::size_t status = 0;
    std::vector<std::string> operated; ///< names of the status channels that change, the first few
    std::size_t operatedCount = 0;
    std::string verdict;  ///< one word of the check: "ok", "repaired", "readable"
    std::string sentence; ///< of the verdict
    std::string picture;  ///< see `pictureOf`
};

/// A small picture of the traces as SVG for use inside HTML; empty if there is no value.
std::string pictureOf(const PageSummary& summary);

/// Writes the page that lists the recordings: one HTML file with a table that can be sorted and searched. Throws what
/// the sink throws, and `std::bad_alloc` if memory runs out.
void writeIndex(const std::string& title, const std::vector<IndexRow>& rows, const OrvComtradeIntake::Sink& sink);

} // namespace OrvComtradePage
