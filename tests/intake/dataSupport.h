#pragma once

// What the tests of the data have in common: data as bytes, surveyed, decoded and written again.

#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "cfg/settleRates.h"
#include "data/Blocks.h"
#include "data/DataWriter.h"
#include "data/outputPlan.h"
#include "data/survey.h"
#include "files/ByteSource.h"
#include "report/Findings.h"
#include "support/LittleEndianBytes.h"

#include <OrvComtradeIntake/Form.h>
#include <OrvComtradeIntake/Options.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvtest {

/// A configuration of revision 1999, with a = 1 and b = 0 for each channel and one rate. A rate of 0: times are in the
/// data.
inline OrvComtradeIntake::ReadCfg cfgFor(std::size_t analogs, std::size_t statuses, OrvComtradeIntake::DataType type,
                                         double rate = 1000.0, std::uint64_t samples = 0) {
    OrvComtradeIntake::ReadCfg cfg;
    cfg.file = "a.cfg";
    cfg.header.analog.resize(analogs);
    cfg.header.status.resize(statuses);
    cfg.header.rates = {{rate, samples}};
    cfg.header.samplesDeclared = samples;
    cfg.header.dataType = type;
    cfg.analog.resize(analogs);
    return cfg;
}

/// A record of one analog channel of 16 bits and no status channel.
inline std::string record16(std::uint32_t number, std::uint32_t stamp, std::uint16_t bits) {
    return LittleEndianBytes().u32(number).u32(stamp).u16(bits).bytes();
}

/// A record of one analog channel of 32 bits and no status channel.
inline std::string record32(std::uint32_t number, std::uint32_t stamp, std::uint32_t bits) {
    return LittleEndianBytes().u32(number).u32(stamp).u32(bits).bytes();
}

inline std::string recordOfSingle(std::uint32_t number, std::uint32_t stamp, float value) {
    return LittleEndianBytes().u32(number).u32(stamp).f32(value).bytes();
}

/// Records of 16 bits with these stamps.
inline std::string stamped(const std::vector<std::uint32_t>& stamps) {
    std::string data;
    std::uint32_t number = 0;
    for (const std::uint32_t stamp : stamps) {
        data += record16(++number, stamp, 5);
    }
    return data;
}

inline const OrvComtradeIntake::Finding* findingOf(const std::vector<OrvComtradeIntake::Finding>& findings,
                                                   const std::string& code) {
    const auto place = std::find_if(findings.begin(), findings.end(),
                                    [&](const OrvComtradeIntake::Finding& finding) { return finding.code == code; });
    return place == findings.end() ? nullptr : &*place;
}

/// Short names, separated by blanks, in their order; tests whose lines end with LF alone leave that one out.
inline std::string codesOf(const std::vector<OrvComtradeIntake::Finding>& findings, bool withLineEnds = true) {
    std::string codes;
    for (const OrvComtradeIntake::Finding& finding : findings) {
        if (withLineEnds || finding.code != "line-ends") {
            codes += (codes.empty() ? "" : " ") + finding.code;
        }
    }
    return codes;
}

inline bool hasError(const std::vector<OrvComtradeIntake::Finding>& findings) {
    return std::any_of(findings.begin(), findings.end(), [](const OrvComtradeIntake::Finding& finding) {
        return finding.severity == OrvComtradeIntake::Severity::Error;
    });
}

/// Data, and what a survey found in them.
struct Surveyed {
    Surveyed(std::string data, OrvComtradeIntake::ReadCfg configuration, const OrvComtradeIntake::Options& options = {})
        : bytes(std::make_shared<const std::string>(std::move(data))),
          source(OrvComtradeIntake::ByteSource::ofMemory(*bytes, "a.dat")), cfg(std::move(configuration)) {
        OrvComtradeIntake::Findings found;
        facts = surveyData(source, cfg, options, found);
        findings = found.take();
        if (facts) {
            settleRates(cfg, facts->samples, found);
        }
    }

    std::uint64_t samples() const { return facts ? facts->samples : 0; }
    bool libraryReads() const { return facts && facts->libraryReads; }
    std::string codes() const { return codesOf(findings); }
    std::string codesBesideLineEnds() const { return codesOf(findings, false); }
    const OrvComtradeIntake::Finding* find(const std::string& code) const { return findingOf(findings, code); }

    std::shared_ptr<const std::string> bytes;
    OrvComtradeIntake::ByteSource source;
    OrvComtradeIntake::ReadCfg cfg; ///< settled
    std::optional<OrvComtradeIntake::DataFacts> facts;
    std::vector<OrvComtradeIntake::Finding> findings;
};

inline OrvComtradeIntake::BlockRange allOf(const Surveyed& surveyed, std::size_t mostRows = 1000) {
    OrvComtradeIntake::BlockRange range;
    range.analog.resize(surveyed.cfg.header.analog.size());
    std::iota(range.analog.begin(), range.analog.end(), std::size_t{0});
    range.count = surveyed.facts->samples;
    range.mostRows = mostRows;
    return range;
}

/// The samples of a range, in blocks.
inline std::vector<OrvComtradeIntake::Block> blocksOf(const Surveyed& surveyed, OrvComtradeIntake::BlockRange range) {
    const auto reader = readBlocks(surveyed.source, surveyed.cfg.header, *surveyed.facts, std::move(range));
    std::vector<OrvComtradeIntake::Block> blocks;
    OrvComtradeIntake::Block block;
    while (reader->next(block)) {
        blocks.push_back(block);
    }
    return blocks;
}

/// All samples in one block.
inline OrvComtradeIntake::Block wholeOf(const Surveyed& surveyed) {
    const auto rows = static_cast<std::size_t>(surveyed.facts->samples);
    const std::size_t columns = surveyed.cfg.header.analog.size();
    OrvComtradeIntake::Block whole;
    whole.rows = rows;
    whole.raw.resize(rows * columns);
    for (const OrvComtradeIntake::Block& block : blocksOf(surveyed, allOf(surveyed))) {
        whole.stateWords = block.stateWords;
        whole.numbers.insert(whole.numbers.end(), block.numbers.begin(), block.numbers.end());
        whole.stamps.insert(whole.stamps.end(), block.stamps.begin(), block.stamps.end());
        whole.states.insert(whole.states.end(), block.states.begin(), block.states.end());
        for (std::size_t column = 0; column < columns; ++column) {
            const double* const values = block.raw.data() + column * block.rows;
            std::copy_n(values, block.rows, whole.raw.data() + column * rows + static_cast<std::size_t>(block.first));
        }
    }
    return whole;
}

inline std::string written(const Surveyed& surveyed, const OrvComtradeIntake::DataOutput& output) {
    std::string bytes;
    const OrvComtradeIntake::Sink sink = [&bytes](std::string_view piece) { bytes += piece; };
    OrvComtradeIntake::DataWriter writer(output, surveyed.facts->missing, sink);
    for (const OrvComtradeIntake::Block& block : blocksOf(surveyed, allOf(surveyed, 7))) {
        writer.write(block);
    }
    return bytes;
}

/// The data as they are written for the library.
inline std::string libraryData(const Surveyed& surveyed) {
    return written(surveyed, planForLibrary(surveyed.cfg.header, *surveyed.facts).output);
}

/// Header and data as they are written for whoever follows the standard.
struct Rewritten {
    Rewritten(const Surveyed& surveyed, const OrvComtradeIntake::Form& form) {
        const auto read = [&surveyed] {
            const OrvComtradeIntake::Header& recorded = surveyed.cfg.header;
            return readBlocks(surveyed.source, recorded, *surveyed.facts, wholeRange(recorded, *surveyed.facts));
        };
        const OrvComtradeIntake::OutputPlan plan = planForStandard(read, surveyed.cfg, *surveyed.facts, form);
        header = plan.header;
        data = written(surveyed, plan.output);
    }

    /// What is read of it again.
    Surveyed again() const {
        OrvComtradeIntake::ReadCfg cfg;
        cfg.header = header;
        for (const OrvComtradeIntake::AnalogInfo& channel : header.analog) {
            OrvComtradeIntake::AnalogSource source;
            source.a = static_cast<long double>(channel.a);
            source.b = static_cast<long double>(channel.b);
            cfg.analog.push_back(source);
        }
        cfg.areRatesSettled = true;
        return Surveyed(data, cfg);
    }

    OrvComtradeIntake::Header header;
    std::string data;
};

/// Runs of missing values as "channel:first+count".
inline std::string textOf(const std::vector<OrvComtradeIntake::MissingRun>& runs) {
    std::string text;
    for (const OrvComtradeIntake::MissingRun& run : runs) {
        text += (text.empty() ? "" : " ") + std::to_string(run.channel) + ":" + std::to_string(run.sample) + "+" +
                std::to_string(run.count);
    }
    return text;
}

} // namespace orvtest
