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
    std::string verdict;   ///< a sentence about the findings, or empty
    std::string indexLink; ///< relative address of the page that lists the recordings, or empty: no link
    std::string program;   ///< name and version of the program that makes the page, or empty
    OrvComtradeIntake::Side side = OrvComtradeIntake::Side::Recorded; ///< of the values that are shown first
    std::size_t threads = 1; ///< number of threads that pack the channels of a long recording; below 2: only the caller

    /// Bytes of recorded values that a page holds in full. A recording with more is reduced, and the page says so: away
    /// from the trigger only the least and the greatest of every 16 samples are kept. The samples around the trigger
    /// are kept in full: as many as fit into these bytes, 1,000,000 at most.
    std::uint64_t fullBytes = 100UL * 1000 * 1000;
};

/// The least and the greatest value of one part of a trace.
struct Extremes {
    double least = 0.0;
    double greatest = 0.0; ///< below `least` if the part has no value
};

/// One trace of the small picture of a recording, in up to 60 parts of the same number of samples.
struct Trace {
    std::size_t channel = 0; ///< 0-based analog channel
    std::vector<Extremes> parts;
};

/// What a list of pages shows of a page.
struct PageSummary {
    double lastTime = 0.0;             ///< seconds, of the last sample; 0 without one
    std::vector<std::size_t> operated; ///< 0-based status channels that change
    std::vector<Trace> traces;         ///< of up to three analog channels, currents if there are any
    bool isReduced = false;            ///< see PageOptions::fullBytes
    std::uint64_t bytes = 0;           ///< of the page
};

/// Writes the page of a recording, piece by piece. It holds the header, the findings, every channel and every sample as
/// recorded, packed. Names are data in it and never markup. If only the configuration can be read, the page has no
/// samples.
///
/// Throws as `Opened::columns` does, `std::bad_alloc` if memory runs out, and what the sink throws. Memory stays within
/// a small multiple of the recorded values, each of which takes as many bytes as the widest of its channel needs.
PageSummary writePage(const OrvComtradeIntake::Opened& opened, const PageOptions& options,
                      const OrvComtradeIntake::Sink& sink);

} // namespace OrvComtradePage
