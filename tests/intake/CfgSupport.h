#pragma once

#include "cfgReading.h"
#include "cfgWriting.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace intakeTest {

/// A `.cfg` as read, with everything that was found on the way.
struct ReadCfg {
    OrvComtradeIntake::CfgText text;
    std::optional<OrvComtradeIntake::Configuration> configuration;
    std::vector<OrvComtradeIntake::Finding> findings;

    const OrvComtradeIntake::Finding* finding(std::string_view code, std::string_view field = {}) const {
        const auto found = std::find_if(findings.begin(), findings.end(), [&](const auto& each) {
            return each.code == code && (field.empty() || each.field == field);
        });
        return found == findings.end() ? nullptr : &*found;
    }

    bool isMended() const {
        return std::any_of(findings.begin(), findings.end(), [](const auto& each) { return each.mended; });
    }

    /// "code:field" of each finding, with a star where it is mended.
    std::string codes() const {
        std::string all;
        for (const auto& each : findings) {
            all += all.empty() ? "" : " ";
            all += each.code + (each.field.empty() ? "" : ':' + each.field) + (each.mended ? "*" : "");
        }
        return all;
    }
};

inline ReadCfg readCfg(std::string_view bytes, const std::string& encoding = {}) {
    OrvComtradeIntake::Findings findings;
    ReadCfg read;
    read.text = OrvComtradeIntake::readCfgText(bytes, "x.cfg", 0, 1, encoding, findings);
    read.configuration = OrvComtradeIntake::readConfiguration(read.text, findings);
    read.findings = findings.take();
    return read;
}

/// A `.cfg` of revision 1999 put together from its lines, any of which a test replaces.
struct CfgLines {
    std::string station = "S,R,1999";
    std::string counts = "2,1A,1D";
    std::string analog = "1,Ua,A,Bus,V,0.5,0.25,0,-32767,32767,1,1,S";
    std::string status = "1,Trip,,,0";
    std::string frequency = "50";
    std::string rates = "1\n1000,8";
    std::string start = "12/01/2011,05:55:30.075011";
    std::string trigger = "12/01/2011,05:55:30.078261";
    std::string type = "BINARY";
    std::string rest = "1\n";

    std::string text() const {
        std::string all;
        for (const auto* line : {&station, &counts, &analog, &status, &frequency, &rates, &start, &trigger, &type})
            all += *line + (line->empty() ? "" : "\n");
        return all + rest;
    }
};

} // namespace intakeTest
