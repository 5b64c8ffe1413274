#include "write.h"

#include "Part.h"
#include "cfg/libraryForm.h"
#include "cfg/standardForm.h"
#include "data/DataLayout.h"
#include "data/outputPlan.h"
#include "files/sectionHeading.h"
#include "text/fromUtf8.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kWriteLength = 128UL * 1024;

/// The bytes from the beginning on, as they are.
void copyBytes(const ByteSource& data, std::uint64_t length, const Sink& sink) {
    std::vector<char> block(kWriteLength);
    for (std::uint64_t position = 0; position < length;) {
        const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(length - position, block.size()));
        const std::size_t count = data.read(position, block.data(), most);
        if (count == 0) {
            return;
        }
        sink({block.data(), count});
        position += count;
    }
}

/// Gives the analog channels with values that were rounded.
std::vector<std::size_t> writeBlocks(const Part& part, const std::string& file, const DataOutput& output,
                                     const Sink& sink) {
    DataWriter writer(output, part.facts().missing, sink);
    Block block;
    std::uint64_t written = 0;
    const auto reader = part.read();
    while (reader->next(block)) {
        writer.write(block);
        written += block.rows;
    }
    if (written != part.facts().samples) {
        throw std::runtime_error(file + ": the data have become shorter");
    }
    return writer.rounded();
}

std::string encoded(const std::string& text, const Form& form) {
    return form.encoding.empty() ? text : fromUtf8(text, form.encoding);
}

/// Whether characters of an encoding take several bytes each, and iconv begins no text with a byte order mark, since
/// the name tells the order ("UTF-16LE", not "UTF-16").
bool needsMark(const std::string& encoding) {
    const std::size_t one = encoding.empty() ? 1 : fromUtf8("-", encoding).size();
    return one > 1 && fromUtf8("--", encoding).size() == 2 * one;
}

/// A text as a file of its own. By the mark readers know the encoding; without it, they can only guess.
std::string encodedFile(const std::string& text, const Form& form) {
    constexpr const char* mark = "\xEF\xBB\xBF";
    return encoded(needsMark(form.encoding) ? mark + text : text, form);
}

/// A text with the standard's line ends, the last one closed. A line that would begin another section is quoted.
std::string sectionLines(std::string_view text) {
    std::string lines;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find_first_of("\r\n"), text.size());
        const std::string_view line = text.substr(0, length);
        text.remove_prefix(length);
        const bool hasReturn = !text.empty() && text.front() == '\r';
        const bool hasFeed = text.substr(hasReturn ? 1 : 0, 1) == "\n";
        lines.append(sectionHeading(line) ? "> " : "").append(line).append(hasReturn && !hasFeed ? "\r" : "\r\n");
        text.remove_prefix((hasReturn ? 1U : 0U) + (hasFeed ? 1U : 0U));
    }
    return lines;
}

/// In some encodings the headings of the sections are no ASCII.
void requireHeadings(const std::string& encoding) {
    if (!encoding.empty() && fromUtf8("-", encoding) != "-") {
        throw std::invalid_argument("no combined file is written in " + encoding);
    }
}

void writeSection(const std::string& kind, const std::string& text, const Sink& sink) {
    sink("--- file type: " + kind + " ---\r\n" + text);
}

/// All sections of a `.cff` (IEEE C37.111-2013, clause 10).
std::vector<std::size_t> writeCombined(const Part& part, const std::string& file, const OutputPlan& plan,
                                       const Form& form, const Sink& sink) {
    requireHeadings(form.encoding);
    writeSection("CFG", encoded(standardForm(plan.header), form), sink);
    writeSection("INF", encoded(sectionLines(plan.header.inf), form), sink);
    writeSection("HDR", encoded(sectionLines(plan.header.hdr), form), sink);
    if (!part.hasData()) {
        return {};
    }
    const bool isText = plan.output.type == DataType::Ascii;
    const std::uint64_t length = part.facts().samples * DataLayout(plan.header).recordLength();
    writeSection(std::string("DAT ") + (isText ? "ASCII" : "BINARY: " + std::to_string(length)), "", sink);
    return writeBlocks(part, file, plan.output, sink);
}

Losses writeStandard(const Recording& recording, const Sink& cfg, const Sink& dat, const Form& form) {
    const Part part(recording, form.selection);
    const ReadBlocks read = part.hasData() ? ReadBlocks([&part] { return part.read(); }) : ReadBlocks();
    const OutputPlan plan = planForStandard(read, part.cfg(), part.facts(), form);
    Losses losses = lostTo(part.cfg().header, plan.header.revision);
    if (form.combined) {
        losses.rounded = writeCombined(part, recording.datFile, plan, form, cfg);
        return losses;
    }
    cfg(encodedFile(standardForm(plan.header), form));
    if (part.hasData()) {
        losses.rounded = writeBlocks(part, recording.datFile, plan.output, dat);
    }
    return losses;
}

/// The data as the library reads them, beside `libraryForm`.
void writeLibraryData(const Recording& recording, const Sink& dat) {
    if (!recording.data) {
        return;
    }
    const DataFacts& facts = recording.facts;
    if (facts.libraryReads && !facts.hasUnusedBits) {
        const bool isText = facts.type == DataType::Ascii;
        copyBytes(*recording.data, isText ? recording.data->length() : facts.samples * facts.recordStride, dat);
        return;
    }
    writeBlocks(Part(recording, {}), recording.datFile, planForLibrary(recording.cfg.header, facts).output, dat);
}

} // namespace

Losses writeRecording(const Recording& recording, const Sink& cfg, const Sink& dat, const Form& form) {
    if (form.reader == Reader::Standard) {
        return writeStandard(recording, cfg, dat, form);
    }
    const bool isWhole = Part(recording, form.selection).isWhole();
    if (form.revision || form.dataType || form.combined || !form.encoding.empty() || !isWhole) {
        throw std::invalid_argument("the library's form has no choice of revision, data type, encoding or samples");
    }
    cfg(libraryForm(recording.cfg, recording.facts, recording.side));
    writeLibraryData(recording, dat);
    return {};
}

} // namespace OrvComtradeIntake
