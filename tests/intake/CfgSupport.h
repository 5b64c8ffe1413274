#pragma once

#include "cfg/cfgReading.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvtest {

/// A `.cfg` as read, with everything that was found on the way.
struct CfgReading {
    OrvComtradeIntake::CfgText text;
    std::optional<OrvComtradeIntake::ReadCfg> cfg;
    std::vector<OrvComtradeIntake::Finding> findings;

    const OrvComtradeIntake::Header& header() const { return cfg.value().header; }

    const OrvComtradeIntake::Finding* finding(std::string_view code, std::string_view field = {}) const {
        const auto found = std::find_if(findings.begin(), findings.end(), [&](const auto& each) {
            return each.code == code && (field.empty() || each.place.field == field);
        });
        return found == findings.end() ? nullptr : &*found;
    }

    /// "code:field" of each finding.
    std::string codes() const {
        std::string all;
        for (const auto& each : findings) {
            all += all.empty() ? "" : " ";
            all += each.code + (each.place.field.empty() ? "" : ':' + each.place.field);
        }
        return all;
    }
};

inline CfgReading readBytes(std::string_view bytes, const std::string& encoding = {}) {
    OrvComtradeIntake::Findings findings;
    CfgReading read;
    read.text = OrvComtradeIntake::readCfgText(bytes, "x.cfg", 0, 1, encoding, findings);
    read.cfg = OrvComtradeIntake::readCfg(read.text, findings);
    read.findings = findings.take();
    return read;
}

/// Every LF of a text turned into CR LF, as the standard has it.
inline std::string withCrLf(std::string_view lines) {
    std::string text;
    for (const char character : lines) {
        text += character == '\n' ? "\r\n" : std::string(1, character);
    }
    return text;
}

/// A `.cfg` of revision 1999 put together from its lines, any of which a test replaces; lines are separated by LF.
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

    /// With CR LF; a line that is empty is left out.
    std::string text() const {
        std::string all;
        for (const auto* line : {&station, &counts, &analog, &status, &frequency, &rates, &start, &trigger, &type})
            all += *line + (line->empty() ? "" : "\n");
        return withCrLf(all + rest);
    }

    CfgReading read() const { return readBytes(text()); }
};

} // namespace orvtest
