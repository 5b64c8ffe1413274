#include "CfgText.h"
#include "Configuration.h"
#include "DataSource.h"
#include "Findings.h"
#include "Intake.h"
#include "cfgReading.h"
#include "cfgWriting.h"
#include "combinedFile.h"
#include "companionFiles.h"
#include "dataSurvey.h"
#include "textData.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>
#include <utility>

namespace OrvComtradeIntake {

namespace {

namespace fs = std::filesystem;

/// Where the bytes of a recording are.
struct Sources {
    std::string cfgFile;
    std::string cfg; ///< bytes
    std::uint64_t cfgOffset = 0;
    std::size_t cfgLine = 1;
    std::optional<DataSource> data;
    std::string dataFormat;      ///< by the header of a section, or empty
    bool readableByName = false; ///< the library finds both files by the name of the first
};

Finding errorAbout(const std::string& file, const char* code, const std::string& found, const std::string& expected) {
    Finding finding;
    finding.severity = Severity::Error;
    finding.code = code;
    finding.file = file;
    finding.found = found;
    finding.expected = expected;
    return finding;
}

std::optional<std::string> bytesOf(const std::string& file, Findings& findings) {
    std::ifstream in(file, std::ios_base::binary);
    std::ostringstream bytes;
    if (in && in.peek() != std::ifstream::traits_type::eof()) {
        bytes << in.rdbuf();
    }
    if (!in.is_open() || in.bad() || !bytes) {
        findings.add(errorAbout(file, "unreadable", "a file that can't be read", "a readable file"));
        return std::nullopt;
    }
    return std::move(bytes).str();
}

std::optional<DataSource> wholeFile(const std::string& file) {
    std::error_code error;
    const std::uintmax_t length = fs::file_size(file, error);
    if (file.empty() || error) {
        return std::nullopt;
    }
    DataSource source;
    source.file = file;
    source.length = length;
    return source;
}

std::optional<Sources> fromCombinedFile(const std::string& file, Findings& findings) {
    std::optional<CombinedFile> combined = readCombinedFile(file, findings);
    if (!combined) {
        return std::nullopt;
    }
    Sources sources;
    sources.cfgFile = file;
    sources.cfg = std::move(combined->cfg);
    sources.cfgOffset = combined->cfgOffset;
    sources.cfgLine = combined->cfgLine;
    sources.data = std::move(combined->data);
    sources.dataFormat = std::move(combined->dataFormat);
    return sources;
}

std::optional<Sources> findSources(const std::string& path, Findings& findings) {
    const CompanionFiles files = findCompanions(path, findings);
    if (files.cfg.empty()) {
        return files.cff.empty() ? std::nullopt : fromCombinedFile(files.cff, findings);
    }
    std::optional<std::string> cfg = bytesOf(files.cfg, findings);
    if (!cfg) {
        return std::nullopt;
    }
    Sources sources;
    sources.cfgFile = files.cfg;
    sources.cfg = std::move(*cfg);
    sources.data = wholeFile(files.dat);
    sources.readableByName = files.named && sources.data;
    return sources;
}

bool hasUsableRatio(const AnalogLine& line) {
    return std::isfinite(line.primary) && std::isfinite(line.secondary) && line.primary != 0.0 && line.secondary != 0.0;
}

Side givenSide(const AnalogLine& line, Side wanted) {
    const bool isConverted = wanted != Side::Recorded && line.side != Side::Recorded && hasUsableRatio(line);
    return isConverted ? wanted : line.side;
}

AnalogOrigin originOf(const AnalogLine& line, Side wanted) {
    AnalogOrigin origin;
    origin.unit = line.unit;
    origin.side = line.side;
    origin.primary = line.primary;
    origin.secondary = line.secondary;
    origin.given = givenSide(line, wanted);
    return origin;
}

/// What the library does not keep of a configuration.
void keepOrigins(const Configuration& configuration, Side wanted, PreparedRecording& recording) {
    recording.start = configuration.start;
    recording.trigger = configuration.trigger;
    recording.timeCode = configuration.timeCode;
    recording.localCode = configuration.localCode;
    recording.timeQuality = configuration.timeQuality;
    recording.leapSecond = configuration.leapSecond;
    recording.dataType = typeWord(configuration.encoding);
    recording.samplesDeclared = configuration.samplesDeclared();
    for (const AnalogLine& line : configuration.analog) {
        recording.analog.push_back(originOf(line, wanted));
    }
}

/// A configuration without data becomes a recording without samples.
void declareNoSamples(Configuration& configuration, const std::string& cfgFile, Findings& findings) {
    configuration.encoding = DataEncoding::Ascii;
    configuration.rates.assign(1, RateLine{configuration.rates.front().rate, 0});
    Finding finding;
    finding.severity = Severity::Warning;
    finding.code = "no-data";
    finding.file = cfgFile;
    finding.found = "a configuration without data";
    finding.expected = "a data file beside it";
    finding.done = "the channels are there, without samples";
    finding.mended = true;
    findings.add(std::move(finding));
}

/// What intake itself writes for a configuration without data.
bool declaresNoSamples(const Configuration& configuration, const std::optional<DataSource>& data) {
    return data && data->length == 0 && configuration.encoding == DataEncoding::Ascii &&
           configuration.samplesDeclared() == 0;
}

void writeText(const std::string& file, const std::string& text) {
    errno = 0;
    std::ofstream out(file, std::ios_base::binary);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out) {
        throw std::system_error(errno != 0 ? errno : EIO, std::generic_category(), file);
    }
}

void putData(const std::optional<DataSource>& data, const Configuration& asRead, const DataSurvey& survey,
             const std::string& target) {
    if (!data) {
        writeText(target, "");
    } else if (survey.asItStands && data->wholeFile) {
        fs::create_symlink(fs::absolute(data->file), target);
    } else {
        writeData(*data, asRead, survey, target);
    }
}

std::string pairName(const Sources& sources, const std::string& folder) {
    const std::string stem = fs::path(sources.cfgFile).stem().string();
    return folder + '/' + (stem.empty() ? "recording" : stem);
}

/// Adjusts what was read until the library gives the right values and times for it.
Configuration settled(Configuration configuration, const CfgText& text, const DataSurvey& survey, Side side,
                      Findings& findings) {
    settleRates(configuration, survey.samples, text, findings);
    settleScaling(configuration, side, text, findings);
    divideFactors(configuration, survey.exponents);
    if (configuration.timesAreStamped()) {
        const double multiplier = configuration.timeMultiplier * survey.stampUnit / survey.stampFactor;
        configuration.timeMultiplier = std::max(multiplier, std::numeric_limits<double>::min()); // or would be 0
    }
    configuration.encoding = survey.encoding;
    return configuration;
}

/// A section's header and the configuration name different types.
void checkFormat(const Sources& sources, DataEncoding encoding, Findings& findings) {
    if (sources.dataFormat.empty()) {
        return;
    }
    const bool isText = sources.dataFormat.find("ASCII") != std::string::npos;
    if (isText == (encoding == DataEncoding::Ascii)) {
        return;
    }
    Finding finding = errorAbout(sources.cfgFile, "type-word", "DAT " + sources.dataFormat, typeWord(encoding));
    finding.severity = Severity::Warning;
    finding.field = "DAT";
    finding.done = "read as the configuration says";
    findings.add(std::move(finding));
}

/// Data of lines under a binary type word are read as what they are.
void checkTypeWord(const DataSource& data, Configuration& configuration, Findings& findings) {
    if (configuration.encoding == DataEncoding::Ascii || !isTextData(data, configuration)) {
        return;
    }
    Finding finding;
    finding.severity = Severity::Warning;
    finding.code = "type-word";
    finding.file = data.file;
    finding.offset = data.offset;
    finding.found = "lines of text";
    finding.expected = std::string(typeWord(configuration.encoding)) + " records, as the configuration says";
    finding.done = "read as ASCII";
    finding.mended = true;
    findings.add(std::move(finding));
    configuration.encoding = DataEncoding::Ascii;
}

void prepareSources(const Sources& sources, const Options& options, PreparedRecording& recording, Findings& findings) {
    recording.cfgFile = sources.cfgFile;
    recording.datFile = sources.data ? sources.data->file : std::string();
    if (isUtf16(sources.cfg)) {
        findings.add(
            errorAbout(sources.cfgFile, "unreadable", "UTF-16", "a text of one byte for each comma and digit"));
        return;
    }
    const CfgText text =
        readCfgText(sources.cfg, sources.cfgFile, sources.cfgOffset, sources.cfgLine, options.encoding, findings);
    recording.encoding = text.encoding;
    std::optional<Configuration> asRead = readConfiguration(text, findings);
    if (!asRead) {
        return;
    }
    keepOrigins(*asRead, options.side, recording);
    checkFormat(sources, asRead->encoding, findings);

    DataSurvey survey;
    if (!sources.data) {
        declareNoSamples(*asRead, sources.cfgFile, findings);
    } else if (!declaresNoSamples(*asRead, sources.data)) {
        checkTypeWord(*sources.data, *asRead, findings);
        survey = surveyData(*sources.data, *asRead, findings);
    }
    if (findings.anyError()) {
        return;
    }
    recording.samplesPresent = survey.samples;
    const Configuration configuration = settled(*asRead, text, survey, options.side, findings);
    recording.missing = std::move(survey.missing);
    if (sources.readableByName && survey.asItStands && !findings.anyMended()) {
        recording.path = sources.cfgFile;
        return;
    }
    recording.scratch = ScratchFolder::make(options.scratchFolder);
    const std::string name = pairName(sources, recording.scratch.path());
    writeText(name + ".cfg", writeConfiguration(configuration));
    putData(sources.data, *asRead, survey, name + ".dat");
    recording.path = name + ".cfg";
}

} // namespace

PreparedRecording prepare(const std::string& path, const Options& options) {
    Findings findings;
    PreparedRecording recording;
    if (const std::optional<Sources> sources = findSources(path, findings)) {
        prepareSources(*sources, options, recording, findings);
    }
    recording.findings = findings.take();
    return recording;
}

} // namespace OrvComtradeIntake
