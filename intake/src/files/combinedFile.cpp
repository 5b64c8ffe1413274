#include "files/combinedFile.h"

#include "base/characters.h"
#include "files/TextLines.h"
#include "files/base64.h"
#include "files/narrowed.h"
#include "files/sectionHeading.h"
#include "report/limits.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::string_view kBase64Word = "BASE64";
constexpr std::size_t kBase64Sample = 4096; ///< bytes that show base64 well enough
constexpr std::size_t kShortestRecord = 10; ///< of binary data, of which some byte is not of base64's alphabet
constexpr std::size_t kMostFiller = 4096;   ///< blanks and line ends between a section of bytes and what follows it
constexpr std::string_view kFiller = " \t\r\n\x1A";

static_assert(kLongestHeading < TextLines::kLong);

/// A section's place, without its heading.
struct Section {
    SectionHeading heading;
    std::uint64_t headingOffset = 0;
    std::size_t headingLine = 0;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;

    std::uint64_t length() const { return end - begin; }
    bool isBinary() const { return heading.kind == "DAT" && heading.format.find("ASCII") == std::string::npos; }
    bool saysBase64() const { return heading.format.find(kBase64Word) != std::string::npos; }
};

std::string firstBytes(const ByteSource& source, std::size_t most) {
    return source.part(0, most).all();
}

/// The first line that is not blank.
std::string_view firstLine(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kFiller), text.size()));
    return text.substr(0, text.find_first_of("\r\n"));
}

Place placeOf(const Section& section, const ByteSource& file) {
    return {file.name(), section.headingLine, section.heading.kind, file.offsetInFile(section.headingOffset)};
}

const Section* sectionOf(const std::vector<Section>& sections, std::string_view kind) {
    const auto place = std::find_if(sections.begin(), sections.end(),
                                    [kind](const Section& section) { return section.heading.kind == kind; });
    return place == sections.end() ? nullptr : &*place;
}

/// Walks over the file once and keeps the places of the first section of each kind.
class SectionFinder {
public:
    SectionFinder(const ByteSource& file, Findings& findings) : _file(file), _lines(file), _findings(findings) {}

    std::vector<Section> find() {
        std::size_t number = 0;
        while (const std::optional<TextLines::Line> line = _lines.next()) {
            ++number;
            if (std::optional<SectionHeading> heading = sectionHeading(line->text)) {
                _endOpen(line->begin);
                _begin({std::move(*heading), line->begin, number, line->next, line->next}, line->text);
            }
        }
        _endOpen(_file.length());
        return std::move(_sections);
    }

private:
    void _begin(Section section, std::string_view line) {
        if (!isSectionKind(section.heading.kind)) {
            return;
        }
        if (sectionOf(_sections, section.heading.kind) != nullptr) {
            _report(section, line, "skipped; the first one of its kind is read", "one section of each kind");
            return;
        }
        if (!section.heading.isRight) {
            _report(section, line, "read as the heading of a section", "");
        }
        const std::optional<std::uint64_t>& count = section.heading.byteCount;
        const std::uint64_t rest = _file.length() - section.begin;
        _isOpen = !(count && section.isBinary() && *count <= rest && _isEndOfSection(section.begin + *count));
        if (!_isOpen) {
            section.end = section.begin + *count;
            _lines.goTo(section.end);
        }
        _sections.push_back(std::move(section));
    }

    void _report(const Section& section, std::string_view line, const char* repair, const char* expected) {
        _findings.add(Kind::SectionHeading, placeOf(section, _file), {escaped(trimmed(line)), repair, expected});
    }

    /// Whether a heading or the end of the file is there, blanks and line ends aside.
    bool _isEndOfSection(std::uint64_t position) const {
        const std::string ahead = firstBytes(_file.part(position, _file.length()), kMostFiller);
        const std::size_t padding = ahead.find_first_not_of(kFiller);
        if (padding == std::string::npos) {
            return position + ahead.size() == _file.length();
        }
        const std::optional<SectionHeading> heading = sectionHeading(firstLine(ahead));
        return heading && (heading->isRight || _isLineStart(position + padding)); // not amid the dashes of one
    }

    bool _isLineStart(std::uint64_t position) const {
        char before = '\n';
        _file.read(position - 1, &before, 1);
        return before == '\n' || before == '\r';
    }

    void _endOpen(std::uint64_t end) {
        if (_isOpen) {
            _sections.back().end = end;
        }
        _isOpen = false;
    }

    const ByteSource& _file;
    TextLines _lines;
    Findings& _findings;
    std::vector<Section> _sections;
    bool _isOpen = false; ///< the last section ends where the next one begins
};

std::string kindsOf(const std::vector<Section>& sections) {
    std::string kinds;
    for (const Section& section : sections) {
        kinds += (kinds.empty() ? "" : ", ") + section.heading.kind;
    }
    return kinds.empty() ? "no heading of a section" : "only " + kinds;
}

ByteSource bytesOf(const Section& section, const ByteSource& file) {
    return file.part(section.begin, section.length()).withFirstLine(section.headingLine + 1);
}

ByteSource bytesOf(const Section* section, const ByteSource& file) {
    return section == nullptr ? ByteSource() : bytesOf(*section, file);
}

bool isBase64(const Section& section, const ByteSource& bytes) {
    if (section.saysBase64()) {
        return true;
    }
    const bool isLong = !section.heading.byteCount || section.length() >= kShortestRecord;
    return section.isBinary() && !section.heading.format.empty() && isLong &&
           looksLikeBase64(firstBytes(bytes, kBase64Sample));
}

void checkLength(const Section& section, const ByteSource& file, Findings& findings) {
    const std::optional<std::uint64_t>& count = section.heading.byteCount;
    if (section.isBinary() && count && *count != section.length()) {
        findings.add(Kind::SectionLength, placeOf(section, file),
                     {std::to_string(section.length()) + " bytes", "all of them are read",
                      std::to_string(*count) + " bytes as declared by the heading"});
    }
}

std::string dataFormatOf(const Section& section) {
    std::string format = section.heading.format;
    if (section.saysBase64()) {
        format.erase(format.find(kBase64Word), kBase64Word.size());
    }
    return std::string(trimmed(format));
}

/// Nothing, with a finding, where they are bytes amid units of two, or more than the limit allows.
std::optional<ByteSource> dataOf(const Section& section, const ByteSource& file, bool isNarrowed, Findings& findings,
                                 const Limits& limits) {
    const ByteSource bytes = bytesOf(section, file);
    if (isBase64(section, bytes)) {
        if (isAbove(decodedLength(bytes), limits.decodedBytes, "decoded-bytes", "bytes", placeOf(section, file),
                    findings)) {
            return std::nullopt;
        }
        // A byte count is of the text or of what it stands for, as writers like.
        findings.add(Kind::Base64, placeOf(section, file), {"base64 text", "decoded"});
        return ByteSource::ofText(decodedBase64(bytes), file.name(), bytes.offsetInFile(0))
            .withFirstLine(bytes.lineInFile(1));
    }
    if (isNarrowed && section.isBinary() && !section.heading.format.empty()) {
        findings.add(Kind::NoSamples, placeOf(section, file),
                     {"binary data in a file in UTF-16", {}, "data as text or base64, or a file in UTF-8"});
        return std::nullopt;
    }
    checkLength(section, file, findings);
    return bytes;
}

std::optional<CombinedFile> readSections(const ByteSource& file, bool isNarrowed, Findings& findings,
                                         const Limits& limits) {
    const std::vector<Section> sections = SectionFinder(file, findings).find();
    const Section* const cfg = sectionOf(sections, "CFG");
    if (cfg == nullptr) {
        findings.add(Kind::NoConfiguration, {file.name(), 0, ""},
                     {kindsOf(sections), {}, "a section \"--- file type: CFG ---\""});
        return std::nullopt;
    }
    CombinedFile combined;
    combined.cfg = bytesOf(*cfg, file);
    combined.hdr = bytesOf(sectionOf(sections, "HDR"), file);
    combined.inf = bytesOf(sectionOf(sections, "INF"), file);
    if (const Section* const data = sectionOf(sections, "DAT")) {
        combined.data = dataOf(*data, file, isNarrowed, findings, limits);
        combined.dataFormat = dataFormatOf(*data);
        if (!combined.data && findings.has(Kind::LimitExceeded)) {
            return std::nullopt;
        }
    }
    return combined;
}

} // namespace

bool isCombinedFile(const ByteSource& source) {
    const ByteSource first = source.part(0, kMostFiller);
    const std::string_view encoding = utf16NameOf(first);
    return sectionHeading(firstLine((encoding.empty() ? first : narrowed(first, encoding)).all())).has_value();
}

std::optional<CombinedFile> readCombinedFile(const ByteSource& file, Findings& findings, const Limits& limits) {
    const std::string_view encoding = utf16NameOf(file);
    if (encoding.empty()) {
        return readSections(file, false, findings, limits);
    }
    std::optional<CombinedFile> combined = readSections(narrowed(file, encoding), true, findings, limits);
    if (combined) {
        for (ByteSource* const text : {&combined->cfg, &combined->hdr, &combined->inf}) {
            *text = widened(*text, file, encoding);
        }
    }
    return combined;
}

} // namespace OrvComtradeIntake
