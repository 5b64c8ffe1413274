#include "fleet/indexLine.h"

#include "commands/channelValue.h"
#include "fleet/digest.h"
#include "fleet/shardLines.h"
#include "input/channelNames.h"
#include "input/eventsOf.h"
#include "input/intakeRecording.h"
#include "input/problemIn.h"
#include "input/skewSeconds.h"
#include "output/Failure.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/sideName.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <memory>
#include <new>
#include <optional>
#include <unistd.h>
#include <utility>
#include <vector>

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Header;

namespace {

constexpr std::uint64_t kMostEvents = 10000;      // a status that chatters would fill the index
constexpr std::uint64_t kMostAtOnce = 1UL << 20U; // bytes of a recording whose states memory may hold

/// Throws a Failure.
std::string digestOfFile(const std::string& path) {
    constexpr std::size_t piece = 64UL * 1024;
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    std::vector<char> buffer(piece);
    Digest digest;
    ssize_t count = file < 0 ? -1 : 1;
    while (count > 0 || (count < 0 && file >= 0 && errno == EINTR)) {
        count = read(file, buffer.data(), buffer.size());
        digest.add({buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0});
    }
    const int error = errno;
    if (file >= 0) {
        close(file);
    }
    if (count < 0) {
        throw Failure(kRecordingProblem, fmt::format("{}: cannot be read: {}", printable(path), std::strerror(error)));
    }
    return digest.text();
}

/// By kind and severity, in the order in which they were found.
Json findingsValue(const std::vector<Finding>& findings) {
    std::vector<std::pair<const Finding*, std::uint64_t>> kinds;
    for (const Finding& finding : findings) {
        const auto known = std::find_if(kinds.begin(), kinds.end(), [&finding](const auto& kind) {
            return kind.first->code == finding.code && kind.first->severity == finding.severity;
        });
        if (known == kinds.end()) {
            kinds.emplace_back(&finding, finding.places);
        } else {
            known->second += finding.places;
        }
    }
    Json values = Json::array();
    for (const auto& [finding, places] : kinds) {
        values.push_back({{"code", finding->code}, {"severity", severityWord(finding->severity)}, {"places", places}});
    }
    return values;
}

Json analogValue(const AnalogInfo& channel, std::size_t position) {
    Json value = analogNameValue(channel, position);
    value["unit"] = channel.unit;
    value["side"] = sideName(channel.side);
    value["primary"] = channel.primary;
    value["secondary"] = channel.secondary;
    value["skew"] = skewSeconds(channel);
    return value;
}

/// What they are called and stand for, not the factors, which some recorders choose anew for each recording.
std::string channelsText(const Header& header) {
    Json channels = Json::object();
    Json& analog = channels["analog"] = Json::array();
    for (std::size_t i = 0; i < header.analog.size(); ++i) {
        analog.push_back(analogValue(header.analog[i], i));
    }
    Json& status = channels["status"] = Json::array();
    for (std::size_t i = 0; i < header.status.size(); ++i) {
        status.push_back(statusChannelValue(header.status[i], i));
    }
    return lineText(channels);
}

/// `states` are all changes of state, or null: they are read block by block.
void addEvents(Json& line, const Recording& recording, const Columns* states) {
    Json events = Json::array();
    std::uint64_t count = 0;
    const OnEvent onEvent = [&](const Event& event) {
        if (count++ < kMostEvents) {
            events.push_back({{"time", event.time},
                              {"clock", instantValue(instantOf(recording, event))},
                              {"number", event.channel + 1},
                              {"to", event.state ? 1 : 0}});
        }
        return true;
    };
    if (states != nullptr) {
        forEachEvent(*states, onEvent);
    } else {
        forEachEvent(recording, onEvent);
    }
    line["eventCount"] = count;
    line["events"] = std::move(events);
}

/// Behind the head: the object without its brace.
std::string finished(const std::string& head, const Json& rest) {
    return head + lineText(rest).substr(1);
}

/// The same with the channels as the last members: who knows the layout need not read them.
std::string finished(const std::string& head, Json rest, const Header& header) {
    const std::string channels = channelsText(header);
    rest["layout"] = hexText(hashOf(channels));
    std::string text = finished(head, rest);
    text.back() = ',';
    return text + channels.substr(1);
}

Json failure(const std::string& sentence) {
    Json rest = Json::object();
    rest["ok"] = false;
    rest["error"] = sentence;
    return rest;
}

std::uint64_t bytesOf(const FoundRecording& found) {
    std::uint64_t bytes = 0;
    for (const FileState& file : found.files) {
        bytes += file.bytes;
    }
    return bytes;
}

OrvComtradeIntake::Selection statesOnly() {
    OrvComtradeIntake::Selection selection;
    selection.allAnalog = false;
    return selection;
}

std::string digestOf(const std::string& bytes) {
    Digest digest;
    digest.add(bytes);
    return digest.text();
}

/// `digest` is that of its configuration.
Json restOf(const Json& digest, const Recording& recording, const Columns* states) {
    const std::vector<Finding>& findings = *recording.reader->findings();
    const std::string problem = recording.problem.empty() ? interruptionIn(findings) : recording.problem;
    Json rest = Json::object();
    rest["ok"] = problem.empty();
    if (!problem.empty()) {
        rest["error"] = problem;
    }
    rest["verdict"] = recording.reader->verdict().name;
    rest["digest"] = digest;
    setRecorded(rest, recording.header, problem.empty() ? std::optional(recording.reader->duration()) : std::nullopt);
    if (problem.empty()) {
        addEvents(rest, recording, states);
    }
    rest["findings"] = findingsValue(findings);
    return rest;
}

} // namespace

IndexLine indexLine(const FoundRecording& found, const std::string& head, const OrvComtradeIntake::Options& options) {
    if (!found.problem.empty()) {
        return {finished(head, failure(found.problem)), {}, false};
    }
    try {
        const bool isSmall = bytesOf(found) <= kMostAtOnce;
        Columns states;
        Entry entry{found.path, {}};
        Json digest;
        if (found.read) {
            const auto held = std::make_shared<HeldFiles>(found.read());
            digest = digestOf(held->cfg);
            entry.read = [held] { return std::move(*held); };
        }
        const Recording recording =
            isSmall ? intakeRecording(entry, options, states, statesOnly()) : intakeRecording(entry, options);
        if (!recording.noneNote.empty()) {
            return {{}, recording.noneNote, false};
        }
        if (!found.read && !recording.cfgFile.empty()) {
            digest = digestOfFile(found.path);
        }
        Json rest = restOf(digest, recording, isSmall ? &states : nullptr);
        const bool isReadable = rest["ok"].get<bool>();
        return {finished(head, std::move(rest), recording.header), {}, isReadable};
    } catch (const std::bad_alloc&) {
        return {finished(head, failure(printable(found.path) + ": out of memory")), {}, false};
    } catch (const std::exception& problem) {
        return {finished(head, failure(printable(found.path + ": " + problem.what()))), {}, false};
    }
}
