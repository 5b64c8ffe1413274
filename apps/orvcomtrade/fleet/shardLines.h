#pragma once

#include "fleet/RecordingWalk.h"
#include "fleet/Shard.h"
#include "fleet/digest.h"

#include <cstdint>
#include <string>
#include <string_view>

// The lines of a shard's file, each a JSON object: what the file is, a line for each recording, and an end that shows
// that nothing is missing. docs/fleet.md lists their members.

/// Version of these members.
constexpr int kIndexVersion = 1;

/// First line: version, shard, and the folder that the paths are relative to.
std::string shardHeader(const Shard& shard, const std::string& root);

bool isShardHeader(std::string_view line);

/// Last line: how many recordings, and the digest of all lines before it, line ends included.
std::string shardEnd(std::uint64_t recordings, const Digest& digest);

bool isShardEnd(std::string_view line);

/// Beginning of the line of a recording: all that is known without reading it. An old line that begins like this, and
/// says that the recording could be read, is still correct.
std::string lineHead(const FoundRecording& found);

/// The bytes of a percent-encoded path.
std::string percentDecoded(std::string_view text);

/// What follows the head of a recording that could be read.
constexpr std::string_view kReadableMember = R"("ok":true,)";

/// Path of the recording, as `lineHead` got it; empty if the line does not begin like that of a recording.
std::string pathOfLine(std::string_view line);
