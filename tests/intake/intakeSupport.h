#pragma once

#include "Cfg.h"
#include "Configuration.h"
#include "Dat.h"
#include "DataSource.h"
#include "Findings.h"
#include "dataSurvey.h"
#include "numbers.h"
#include "support/RecordingBuilder.h"
#include "support/TempDir.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orvtest {

/// A configuration of `analogs` channels with a = 1 and b = 0, and `statuses` status channels.
inline OrvComtradeIntake::Configuration configurationOf(std::size_t analogs, std::size_t statuses,
                                                        OrvComtradeIntake::DataEncoding encoding, double rate,
                                                        std::uint64_t samples) {
    OrvComtradeIntake::Configuration configuration;
    configuration.analog.resize(analogs);
    configuration.status.resize(statuses);
    configuration.rates = {{rate, samples}};
    configuration.encoding = encoding;
    return configuration;
}

inline std::string bytesOfFile(const std::string& path) {
    std::ifstream in(path, std::ios_base::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline OrvComtradeIntake::DataSource wholeFile(const std::string& path) {
    OrvComtradeIntake::DataSource source;
    source.file = path;
    source.length = std::filesystem::file_size(path);
    return source;
}

/// A survey and its findings.
struct Surveyed {
    OrvComtradeIntake::DataSurvey survey;
    std::vector<OrvComtradeIntake::Finding> findings;

    const OrvComtradeIntake::Finding* find(const std::string& code) const {
        const auto place = std::find_if(findings.begin(), findings.end(),
                                        [&](const OrvComtradeIntake::Finding& told) { return told.code == code; });
        return place == findings.end() ? nullptr : &*place;
    }

    bool anyMended() const {
        return std::any_of(findings.begin(), findings.end(),
                           [](const OrvComtradeIntake::Finding& told) { return told.mended; });
    }

    bool anyError() const {
        return std::any_of(findings.begin(), findings.end(), [](const OrvComtradeIntake::Finding& told) {
            return told.severity == OrvComtradeIntake::Severity::Error;
        });
    }

    std::vector<std::string> codes() const {
        std::vector<std::string> result;
        std::transform(findings.begin(), findings.end(), std::back_inserter(result),
                       [](const OrvComtradeIntake::Finding& told) { return told.code; });
        return result;
    }
};

inline Surveyed survey(const OrvComtradeIntake::DataSource& source,
                       const OrvComtradeIntake::Configuration& configuration) {
    Surveyed result;
    OrvComtradeIntake::Findings findings;
    result.survey = surveyData(source, configuration, findings);
    result.findings = findings.take();
    return result;
}

/// What the configuration says once the survey is known.
inline OrvComtradeIntake::Configuration settled(OrvComtradeIntake::Configuration configuration,
                                                const OrvComtradeIntake::DataSurvey& survey) {
    const double rate = configuration.timesAreStamped() ? 0.0 : configuration.rates.front().rate;
    configuration.rates = {{rate, survey.samples}};
    configuration.encoding = survey.encoding;
    configuration.timeMultiplier *= survey.stampUnit;
    configuration.timeMultiplier /= survey.stampFactor;
    return configuration;
}

/// The library's reading of a data file, with a = 1 and b = 0 for each channel.
struct Loaded {
    Loaded(const OrvComtradeIntake::Configuration& configuration, const std::string& datFile) {
        constexpr const char* words[] = {"ASCII", "BINARY", "BINARY32", "FLOAT32"};
        RecordingBuilder builder;
        for (std::size_t i = 0; i < configuration.analog.size(); ++i) {
            builder.analog("1,A,,,V,1,0,0,-32767,32767,1,1,S");
        }
        for (std::size_t i = 0; i < configuration.status.size(); ++i) {
            builder.status("1,D,,,0");
        }
        const OrvComtradeIntake::RateLine& rate = configuration.rates.front();
        builder.rate(std::to_string(rate.rate) + "," + std::to_string(rate.endSample))
            .type(words[static_cast<std::size_t>(configuration.encoding)])
            .multiplier(OrvComtradeIntake::numberText(configuration.timeMultiplier));
        const TempDir folder;
        cfgResult = cfg.load(folder.write("a.cfg", builder.cfgText()));
        dat = std::make_unique<OrvComtradeLib::Dat>(cfg);
        result = dat->load(datFile);
    }

    const std::vector<OrvComtradeLib::Sample>& samples() const { return dat->samples; }

    OrvComtradeLib::Cfg cfg;
    std::unique_ptr<OrvComtradeLib::Dat> dat;
    int cfgResult = -1;
    int result = -1;
};

inline bool operator==(const OrvComtradeIntake::MissingRun& left, const OrvComtradeIntake::MissingRun& right) {
    return left.channel == right.channel && left.sample == right.sample && left.count == right.count;
}

inline bool sameRuns(const std::vector<OrvComtradeIntake::MissingRun>& left,
                     const std::vector<OrvComtradeIntake::MissingRun>& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const auto& one, const auto& other) { return one == other; });
}

} // namespace orvtest
