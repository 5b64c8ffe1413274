#include "combinedFile.h"

#include "base64.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string_view>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kBlockLength = 64UL * 1024;
constexpr std::size_t kLongestHeader = 200;
constexpr std::size_t kBase64Sample = 64;   // characters that show base64 well enough
constexpr std::size_t kShortestRecord = 10; // of which some byte is none of base64's
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// A section's place; its end is where the next header line begins, or the end of the file.
struct Section {
    std::string kind;                      ///< "CFG", "DAT", ... in upper case
    std::string format;                    ///< what follows the kind: "ASCII", "BINARY BASE64", "FLOAT32"
    std::optional<std::uint64_t> declared; ///< bytes of a binary section
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::size_t line = 1;
    std::uint64_t header = 0; ///< offset of the header line
    std::size_t headerLine = 0;
};

std::string_view trimmed(std::string_view text, std::string_view what) {
    const std::size_t first = text.find_first_not_of(what);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(what) - first + 1);
}

std::string upper(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    return result;
}

std::optional<std::uint64_t> numberOf(std::string_view digits) {
    std::uint64_t number = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9' || number > UINT64_MAX / 10 - 1) {
            return {};
        }
        number = number * 10 + static_cast<std::uint64_t>(digit - '0');
    }
    return digits.empty() ? std::nullopt : std::optional<std::uint64_t>(number);
}

/// "--- file type: DAT BINARY: 4214 ---", with blanks and letters of either case anywhere.
std::optional<Section> headerOf(std::string_view line) {
    constexpr std::string_view blanks = " \t\r\n\x1A";
    const std::string text = upper(trimmed(line, blanks));
    constexpr std::string_view marker = "FILE TYPE";
    if (text.size() < 3 || text.compare(0, 3, "---") != 0) {
        return {};
    }
    std::string_view rest = trimmed(trimmed(text, "-"), blanks);
    if (rest.substr(0, marker.size()) != marker) {
        return {};
    }
    rest = trimmed(rest.substr(marker.size()), " \t:");
    Section section;
    const std::size_t kindEnd = std::min(rest.find_first_of(" \t:"), rest.size());
    section.kind = rest.substr(0, kindEnd);
    rest = trimmed(rest.substr(kindEnd), " \t:");
    constexpr std::size_t npos = std::string_view::npos;
    const std::size_t colon = rest.find(':');
    section.format = trimmed(rest.substr(0, colon), blanks);
    const bool isRaw = section.kind == "DAT" && section.format != "ASCII" && section.format.find("BASE64") == npos;
    if (colon != npos && isRaw) {
        section.declared = numberOf(trimmed(rest.substr(colon + 1), blanks));
    }
    return section;
}

/// Reads the file once and keeps the places of its sections.
class SectionFinder {
public:
    explicit SectionFinder(const std::string& path) : _in(path, std::ios_base::binary), _block(kBlockLength) {}

    bool isOpen() const { return _in.is_open(); }

    std::vector<Section> find() {
        int byte = 0;
        while ((byte = _next()) >= 0) {
            const char character = static_cast<char>(byte);
            if (character == '\n' || character == '\r') {
                _endLine(character);
            } else if (_line.size() < kLongestHeader) {
                _line += character;
            }
        }
        _endText(_position);
        return std::move(_sections);
    }

private:
    int _next() {
        if (_used == _filled && !_fill()) {
            return -1;
        }
        ++_position;
        return static_cast<unsigned char>(_block[_used++]);
    }

    int _peek() {
        if (_used == _filled && !_fill()) {
            return -1;
        }
        return static_cast<unsigned char>(_block[_used]);
    }

    bool _fill() {
        _in.read(_block.data(), static_cast<std::streamsize>(_block.size()));
        _filled = static_cast<std::size_t>(_in.gcount());
        _used = 0;
        return _filled != 0;
    }

    void _endLine(char end) {
        if (end == '\r' && _peek() == '\n') {
            _next();
        }
        if (_lineBegin == 0 && _line.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0) {
            _line.erase(0, kByteOrderMark.size());
        }
        if (std::optional<Section> section = headerOf(_line)) {
            _begin(std::move(*section));
        }
        ++_lineNumber;
        _line.clear();
        _lineBegin = _position;
    }

    void _begin(Section section) {
        _endText(_lineBegin);
        section.header = _lineBegin;
        section.headerLine = _lineNumber;
        section.begin = _position;
        section.line = _lineNumber + 1;
        if (section.declared && _isBase64Ahead(*section.declared)) {
            section.declared.reset(); // counts the bytes decoded, or encoded, as writers like
        }
        if (section.declared) {
            _skip(*section.declared);
        }
        section.end = _position;
        _sections.push_back(std::move(section));
    }

    bool _isBase64Ahead(std::uint64_t most) {
        if (_filled - _used < kBase64Sample) {
            const auto rest = static_cast<std::ptrdiff_t>(_used);
            std::copy(_block.begin() + rest, _block.begin() + static_cast<std::ptrdiff_t>(_filled), _block.begin());
            _filled -= _used;
            _used = 0;
            _in.read(_block.data() + _filled, static_cast<std::streamsize>(_block.size() - _filled));
            _filled += static_cast<std::size_t>(_in.gcount());
        }
        const std::uint64_t seen = std::min<std::uint64_t>({most, kBase64Sample, _filled - _used});
        const std::string_view sample(_block.data() + _used, static_cast<std::size_t>(seen));
        const std::string_view data = sample.substr(0, sample.find("---")); // the next header
        return data.size() >= kShortestRecord && looksLikeBase64(data);
    }

    void _skip(std::uint64_t count) {
        while (count != 0 && _peek() >= 0) {
            const std::uint64_t step = std::min<std::uint64_t>(count, _filled - _used);
            _used += static_cast<std::size_t>(step);
            _position += step;
            count -= step;
        }
    }

    /// Text belongs to the section above it, unless that has its length from its header.
    void _endText(std::uint64_t end) {
        if (!_sections.empty() && !_sections.back().declared) {
            _sections.back().end = end;
        }
    }

    std::ifstream _in;
    std::vector<char> _block;
    std::size_t _used = 0;
    std::size_t _filled = 0;
    std::uint64_t _position = 0;
    std::uint64_t _lineBegin = 0;
    std::size_t _lineNumber = 1;
    std::string _line;
    std::vector<Section> _sections;
};

const Section* sectionOf(const std::vector<Section>& sections, std::string_view kind) {
    const auto place =
        std::find_if(sections.begin(), sections.end(), [kind](const Section& s) { return s.kind == kind; });
    return place == sections.end() ? nullptr : &*place;
}

std::string bytesOf(const std::string& path, std::uint64_t begin, std::uint64_t length) {
    std::ifstream in(path, std::ios_base::binary);
    in.seekg(static_cast<std::streamoff>(begin));
    std::string bytes(static_cast<std::size_t>(length), '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(length));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    return bytes;
}

Finding finding(Severity severity, const char* code, const std::string& path) {
    Finding result;
    result.severity = severity;
    result.code = code;
    result.file = path;
    return result;
}

void tellShortSection(const Section& section, const std::string& path, Findings& findings) {
    Finding told = finding(Severity::Warning, "cff", path);
    told.line = section.headerLine;
    told.field = "DAT";
    told.offset = section.header;
    told.found = std::to_string(section.end - section.begin) + " bytes";
    told.expected = std::to_string(*section.declared) + " bytes";
    told.done = "what there is was read";
    told.mended = true;
    findings.add(std::move(told));
}

void tellBase64(const Section& section, const std::string& path, Findings& findings) {
    Finding told = finding(Severity::Warning, "base64", path);
    told.line = section.headerLine;
    told.field = "DAT";
    told.offset = section.header;
    told.found = "data as base64 text";
    told.expected = "the bytes of the data";
    told.done = "decoded";
    told.mended = true;
    findings.add(std::move(told));
}

bool isBase64(const Section& section, const std::string& path) {
    if (section.format.find("BASE64") != std::string::npos) {
        return true;
    }
    if (section.declared || section.format.find("ASCII") != std::string::npos || section.format.empty()) {
        return false;
    }
    return looksLikeBase64(bytesOf(path, section.begin, std::min<std::uint64_t>(section.end - section.begin, 4096)));
}

DataSource dataOf(const Section& section, const std::string& path, Findings& findings) {
    DataSource data;
    data.file = path;
    data.offset = section.begin;
    data.length = section.end - section.begin;
    data.wholeFile = false;
    data.base64 = isBase64(section, path);
    if (section.declared && data.length < *section.declared) {
        tellShortSection(section, path, findings);
    }
    if (data.base64) {
        tellBase64(section, path, findings);
    }
    return data;
}

} // namespace

std::optional<CombinedFile> readCombinedFile(const std::string& path, Findings& findings) {
    SectionFinder finder(path);
    if (!finder.isOpen()) {
        Finding told = finding(Severity::Error, "no-cfg", path);
        told.found = std::strerror(errno); // NOLINT(concurrency-mt-unsafe)
        told.expected = "a file that can be read";
        findings.add(std::move(told));
        return {};
    }
    const std::vector<Section> sections = finder.find();
    const Section* const cfg = sectionOf(sections, "CFG");
    if (cfg == nullptr) {
        Finding told = finding(Severity::Error, "no-cfg", path);
        told.found = std::to_string(sections.size()) + " sections";
        told.expected = "a section \"--- file type: CFG ---\"";
        findings.add(std::move(told));
        return {};
    }
    Finding told = finding(Severity::Note, "cff", path);
    told.found = "all files of the recording in one";
    told.done = "read section by section";
    told.mended = true;
    findings.add(std::move(told));

    CombinedFile combined;
    combined.cfg = bytesOf(path, cfg->begin, cfg->end - cfg->begin);
    combined.cfgOffset = cfg->begin;
    combined.cfgLine = cfg->line;
    if (const Section* const data = sectionOf(sections, "DAT")) {
        combined.data = dataOf(*data, path, findings);
        combined.dataFormat = data->format;
    }
    return combined;
}

} // namespace OrvComtradeIntake
