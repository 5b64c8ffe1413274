#pragma once

#include <OrvComtradeIntake/Form.h>
#include <OrvComtradeIntake/Opened.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Interactive pages: one HTML file for each recording, which shows it in a browser without a server or a connection.
namespace OrvComtradePage {

/// Options of a page.
struct PageOptions {
    std::string name;      ///< of the recording's file, UTF-8: shown, and the name of what the page saves
    std::string verdict;   ///< a sentence on the findings, or empty
    std::string indexLink; ///< relative address of the page that lists the recordings, or empty: no link
    std::string program;   ///< name and version of the maker of the page, or empty
    OrvComtradeIntake::Side side = OrvComtradeIntake::Side::Recorded; ///< of the values that are shown first
    std::size_t threads = 1; ///< that pack the channels of a long recording; below 2: the caller's alone
    std::uint64_t fullBytes =
        100UL * 1000 *
        1000; ///< recorded values of more bytes are reduced: outside 1,000,000 samples around the trigger
              ///< only the least and the greatest of every 16 samples are kept, and the page says so
};

/// The least and the greatest value of one part of a trace.
struct Extremes {
    double least = 0.0;
    double greatest = 0.0; ///< below `least`: no value there
};

/// One trace of the small picture of a recording, in up to 60 parts of equally many samples.
struct Trace {
    std::size_t channel = 0; ///< 0-based analog channel
    std::vector<Extremes> parts;
};

/// What a page was made of, for a list of pages.
struct PageSummary {
    double lastTime = 0.0;             ///< seconds, of the last sample; 0 without one
    std::vector<std::size_t> operated; ///< 0-based status channels that change
    std::vector<Trace> traces;         ///< of up to three analog channels, currents if there are any
    bool isReduced = false;            ///< see PageOptions::fullBytes
    std::uint64_t bytes = 0;           ///< of the page
};

/// Writes the page of a recording, piece by piece. It holds the header, the findings, every channel and every sample as
/// recorded, packed; names are data in it and never markup. A recording of which only the configuration could be read
/// gets a page without samples.
///
/// Throws as `Opened::columns` does, `std::bad_alloc` if memory runs out, and what the sink throws. Memory stays within
/// a small multiple of the recorded values; a value takes as many bytes as its channel needs.
PageSummary writePage(const OrvComtradeIntake::Opened& opened, const PageOptions& options,
                      const OrvComtradeIntake::Sink& sink);

} // namespace OrvComtradePage
