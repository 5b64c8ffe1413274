#include "commandLine.h"

#include "commands/commands.h"
#include "completion.h"
#include "help.h"
#include "nearestName.h"
#include "output/Failure.h"
#include "output/StandardOutput.h"
#include "output/printable.h"
#include "output/writeWhole.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace {

constexpr const char* kVersion = "orvcomtrade " ORVCOMTRADE_VERSION "\n";

using Commands = std::vector<std::unique_ptr<Command>>;
using Words = std::vector<std::string>;

std::function<int()> printing(std::string text) {
    return [text = std::move(text)] {
        StandardOutput out;
        out.write(text);
        out.flush();
        return 0;
    };
}

std::string unknownWord(const char* what, const std::string& typed, const Words& known) {
    const std::string nearest = nearestName(typed, known);
    return printable(fmt::format("unknown {} '{}'{}", what, typed,
                                 nearest.empty() ? "" : fmt::format("; did you mean '{}'?", nearest)));
}

Command& commandOf(const Commands& commands, const std::string& name) {
    Words known;
    for (const auto& command : commands) {
        if (command->description().name == name) {
            return *command;
        }
        known.push_back(command->description().name);
    }
    throw WrongWords(unknownWord("command", name, known));
}

void addTo(CLI::App& app, const Flag& flag) {
    const auto check = [take = flag.take, name = flag.longName()](const std::string& value) {
        const std::string problem = take(value);
        if (!problem.empty()) {
            throw CLI::ValidationError(name, problem);
        }
    };
    CLI::Option* option = nullptr;
    if (flag.value.empty()) {
        option = app.add_flag_callback(flag.names, [check] { check({}); });
    } else if (flag.repeats) {
        const auto checkAll = [check](const Words& all) { std::for_each(all.begin(), all.end(), check); };
        option = app.add_option_function<Words>(flag.names, checkAll)->allow_extra_args(false);
    } else {
        option = app.add_option_function<std::string>(flag.names, check)
                     ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    }
    option->required(flag.isRequired);
    for (const std::string& other : flag.excludes) {
        option->excludes(app.get_option(other)); // by name it takes memory in a function that may not throw
    }
}

/// As people type them: "-V" and "-h" anywhere.
void addFlags(CLI::App& app, const Command& command) {
    app.set_version_flag("-V,--version", kVersion);
    // A flag names those before it or behind it that it excludes.
    for (const bool isExcluding : {false, true}) {
        for (const Flag& flag : command.flags()) {
            if (flag.excludes.empty() != isExcluding) {
                addTo(app, flag);
            }
        }
    }
}

/// Of "A excludes B", which is CLI11's sentence.
std::string togetherText(const std::string& sentence) {
    constexpr std::string_view verb = " excludes ";
    const std::size_t place = sentence.find(verb);
    return place == std::string::npos ? sentence
                                      : sentence.substr(0, place) + " and " + sentence.substr(place + verb.size()) +
                                            " cannot be given together";
}

[[noreturn]] void refuseExtra(const Words& extra, const Command& command) {
    Words known = {"--help", "--version"};
    for (const Flag& flag : command.flags()) {
        known.push_back(flag.longName());
    }
    const std::string typed = extra.empty() ? "" : extra.front().substr(0, extra.front().find('='));
    throw WrongWords(unknownWord("option", typed, known), command.description().name);
}

/// Gives the command the words behind its name. Gives what is to be done.
std::function<int()> parse(Command& command, Words words) {
    CLI::App app("", "orvcomtrade " + command.description().name);
    app.add_option("PATH", command.words());
    addFlags(app, command);
    // CLI11 takes no more words behind "--" once the first of a list was there.
    const auto mark = std::find(words.begin(), words.end(), "--");
    const Words rest(mark == words.end() ? mark : mark + 1, words.end());
    words.erase(mark, words.end());
    std::reverse(words.begin(), words.end()); // as CLI11 wants them
    try {
        app.parse(std::move(words));
    } catch (const CLI::CallForHelp&) {
        return printing(helpOn(command));
    } catch (const CLI::CallForVersion&) {
        return printing(kVersion);
    } catch (const CLI::ExtrasError&) {
        refuseExtra(app.remaining(), command);
    } catch (const CLI::ExcludesError& problem) {
        throw WrongWords(togetherText(problem.what()), command.description().name);
    } catch (const CLI::ParseError& problem) {
        throw WrongWords(printable(problem.what()), command.description().name);
    }
    command.words().insert(command.words().end(), rest.begin(), rest.end());
    if (!command.hasInput()) {
        throw WrongWords("PATH is required", command.description().name);
    }
    return nullptr;
}

} // namespace

std::function<int()> readCommandLine(int argc, char** argv) {
    const auto commands = std::make_shared<const Commands>(allCommands());
    Words words(argv + 1, argv + argc);
    if (words.empty()) {
        return [commands] {
            writeWhole(STDERR_FILENO, helpOn(*commands));
            return kWrongUsage;
        };
    }
    const std::string first = words.front();
    words.erase(words.begin());
    if (first == "-h" || first == "--help" || (first == "help" && words.empty())) {
        return printing(helpOn(*commands));
    }
    if (first == "-V" || first == "--version") {
        return printing(kVersion);
    }
    if (first == "help") {
        return printing(helpOn(commandOf(*commands, words.front())));
    }
    if (first == "--describe") {
        return printing(descriptionOf(*commands));
    }
    if (first == "--complete") {
        return printing(completionsOf(words, *commands));
    }
    if (first.size() > 1 && first.front() == '-') {
        throw WrongWords(unknownWord("option", first, {"--help", "--version"}) +
                         " (options of a command come after its name)");
    }
    Command& command = commandOf(*commands, first);
    const std::function<int()> answer = parse(command, std::move(words));
    return answer ? answer : [commands, &command] { return command.run(); };
}
