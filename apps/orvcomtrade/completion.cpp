#include "completion.h"

#include "input/channelNames.h"
#include "output/printable.h"

#include <OrvComtradeIntake/Intake.h>

#include <algorithm>
#include <utility>

namespace {

using Words = std::vector<std::string>;

struct Candidate {
    std::string text;
    std::string meaning;
};

struct Answer {
    const char* files = "none";
    std::vector<Candidate> candidates;
};

bool isFlag(const std::string& word) {
    return word.size() > 1 && word.front() == '-';
}

/// "--rate=50" and, as bash cuts it, "--rate", "=", "50" become "--rate", "50".
Words withoutSigns(const Words& words) {
    Words result;
    for (const std::string& word : words) {
        const bool isLast = &word == &words.back();
        const std::size_t sign = word.rfind("--", 0) == 0 ? word.find('=') : std::string::npos;
        if (word == "=" && !result.empty()) {
            if (isLast) {
                result.emplace_back();
            }
        } else if (sign != std::string::npos) {
            result.push_back(word.substr(0, sign));
            result.push_back(word.substr(sign + 1));
        } else {
            result.push_back(word);
        }
    }
    return result;
}

const Flag* flagOf(const Command& command, const std::string& word) {
    for (const Flag& flag : command.flags()) {
        const bool isShort = flag.names.size() > 2 && flag.names[1] != '-' && word == flag.names.substr(0, 2);
        if (isShort || word == flag.longName()) {
            return &flag;
        }
    }
    return nullptr;
}

/// What the words before the last one are.
struct Line {
    const Flag* open = nullptr; ///< flag whose value is due
    Words paths;
};

Line lineOf(const Command& command, const Words& words) {
    Line line;
    for (std::size_t i = 1; i + 1 < words.size(); ++i) {
        if (line.open != nullptr) {
            line.open = nullptr;
        } else if (isFlag(words[i])) {
            const Flag* const flag = flagOf(command, words[i]);
            line.open = flag != nullptr && !flag->value.empty() ? flag : nullptr;
        } else {
            line.paths.push_back(words[i]);
        }
    }
    return line;
}

void addChannels(const Words& paths, Answer& answer) {
    for (const std::string& path : paths) {
        const OrvComtradeIntake::Opened opened = OrvComtradeIntake::open(path);
        const OrvComtradeIntake::Header& header = opened.header();
        for (const auto& channel : header.analog) {
            answer.candidates.push_back({channel.id, analogName(channel, channel.unit)});
        }
        for (const auto& channel : header.status) {
            answer.candidates.push_back({channel.id, statusName(channel)});
        }
    }
}

Answer valuesOf(const Flag& flag, const Words& paths) {
    Answer answer;
    for (const std::string& word : flag.words) {
        answer.candidates.push_back({word, {}});
    }
    if (flag.kind == ValueKind::File) {
        answer.files = "all";
    }
    if (flag.kind == ValueKind::Channel) {
        addChannels(paths, answer);
    }
    return answer;
}

Answer flagsOf(const Command& command) {
    Answer answer;
    for (const Flag& flag : command.flags()) {
        answer.candidates.push_back({flag.longName(), flag.summary});
    }
    answer.candidates.push_back({"--help", "Print help and exit"});
    answer.candidates.push_back({"--version", "Print the version and exit"});
    return answer;
}

/// Whether the last word of the line may be a channel.
bool takesChannelLast(const Command& command) {
    const Words& usages = command.description().usages;
    return std::any_of(usages.begin(), usages.end(), [](const std::string& usage) {
        return usage.size() > 7 && usage.compare(usage.size() - 8, 8, " CHANNEL") == 0 &&
               usage.find("--") == std::string::npos;
    });
}

Answer answerOf(const Words& words, const std::vector<std::unique_ptr<Command>>& commands) {
    Answer answer;
    if (words.size() == 1 || (words.size() == 2 && words.front() == "help")) {
        for (const auto& command : commands) {
            answer.candidates.push_back({command->description().name, command->description().summary});
        }
        if (words.size() == 1) {
            answer.candidates.push_back({"help", "Print the help of a command"});
            answer.candidates.push_back({"--help", "Print help and exit"});
            answer.candidates.push_back({"--version", "Print the version and exit"});
        }
        return answer;
    }
    const auto command = std::find_if(commands.begin(), commands.end(), [&words](const auto& known) {
        return known->description().name == words.front();
    });
    if (command == commands.end()) {
        return answer;
    }
    const Line line = lineOf(**command, words);
    if (line.open != nullptr) {
        return valuesOf(*line.open, line.paths);
    }
    if (isFlag(words.back()) || words.back() == "-") {
        return flagsOf(**command);
    }
    answer.files = "recordings";
    if (takesChannelLast(**command)) {
        addChannels(line.paths, answer);
    }
    return answer;
}

} // namespace

std::string completionsOf(Words words, const std::vector<std::unique_ptr<Command>>& commands) {
    words = withoutSigns(words);
    if (words.empty()) {
        words.emplace_back();
    }
    const Answer answer = answerOf(words, commands);
    std::string text = std::string(answer.files) + "\n";
    for (const Candidate& candidate : answer.candidates) {
        const std::string& begin = words.back();
        // A dash asks for options alone.
        const bool isWanted = candidate.text.compare(0, begin.size(), begin) == 0 && !candidate.text.empty() &&
                              (!begin.empty() || !isFlag(candidate.text));
        if (isWanted && printable(candidate.text) == candidate.text) {
            text += candidate.text + "\t" + printable(candidate.meaning) + "\n";
        }
    }
    return text;
}
