#include "help.h"

#include "output/json.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

constexpr std::size_t kColumn = 30; // where the descriptions of flags begin
constexpr std::size_t kWidth = 100;

/// Appends words, the lines filled up to the width, all but the first indented.
void appendFilled(std::string& text, std::string_view words, std::size_t indent) {
    std::size_t length = indent;
    while (!words.empty()) {
        const std::string_view word = words.substr(0, words.find(' '));
        words.remove_prefix(std::min(words.size(), word.size() + 1));
        if (length > indent && length + 1 + word.size() > kWidth) {
            text += "\n" + std::string(indent, ' ');
            length = indent;
        }
        const std::size_t blank = length > indent ? 1 : 0;
        text.append(blank, ' ').append(word);
        length += blank + word.size();
    }
    text += '\n';
}

void appendRow(std::string& text, const std::string& name, const std::string& summary) {
    text += name.size() + 2 > kColumn ? name + "\n" + std::string(kColumn, ' ')
                                      : name + std::string(kColumn - name.size(), ' ');
    appendFilled(text, summary, kColumn);
}

/// "  -s, --start SECONDS"; without a short name it stands where long names stand.
std::string rowName(const Flag& flag) {
    const std::size_t comma = flag.names.find(',');
    const std::string names =
        comma == std::string::npos ? "    " + flag.names : flag.names.substr(0, comma) + ", " + flag.longName();
    return "  " + names + (flag.value.empty() ? "" : " " + flag.value);
}

void appendCommands(std::string& text, const std::vector<std::unique_ptr<Command>>& commands) {
    text += "\nCommands:\n";
    for (const auto& command : commands) {
        appendRow(text, "  " + command->description().name, command->description().summary);
    }
}

Json flagValue(const Flag& flag) {
    Json value = Json::object();
    value["names"] = flag.names;
    value["value"] = flag.value;
    value["summary"] = flag.summary;
    value["details"] = flag.details;
    return value;
}

Json commandValue(const Command& command) {
    const Description& description = command.description();
    Json value = Json::object();
    value["name"] = description.name;
    value["summary"] = description.summary;
    value["usages"] = description.usages;
    value["details"] = description.details;
    value["flags"] = Json::array();
    for (const Flag& flag : command.flags()) {
        value["flags"].push_back(flagValue(flag));
    }
    value["examples"] = Json::array();
    for (const Example& example : description.examples) {
        value["examples"].push_back({{"purpose", example.purpose}, {"line", example.line}});
    }
    return value;
}

} // namespace

std::string helpOn(const std::vector<std::unique_ptr<Command>>& commands) {
    std::string text = "Reads COMTRADE disturbance recordings (IEEE C37.111).\n"
                       "Usage: orvcomtrade COMMAND [OPTION]... PATH...\n";
    appendCommands(text, commands);
    text += "\nOptions:\n";
    appendRow(text, "  -h, --help",
              "Print this help and exit; after a command, the help of that command (as help COMMAND)");
    appendRow(text, "  -V, --version", "Print the version and exit");
    text +=
        "\nPATH is a file of a recording (.cfg, .dat or .cff, in any case), a folder, which is searched to any depth, "
        "or a\n.zip archive (archive.zip/name.cfg is a recording in it); - is a .cff on standard input.\nExit status: "
        "0 all good, 1 a recording cannot be read or is damaged, or a file cannot be "
        "written, 2 wrong usage.\n";
    return text;
}

std::string helpOn(const Command& command) {
    const Description& description = command.description();
    std::string text = description.summary + ".\n";
    for (const std::string& usage : description.usages) {
        text += fmt::format("{} orvcomtrade {} [OPTION]... {}\n",
                            &usage == &description.usages.front() ? "Usage:" : "      ", description.name, usage);
    }
    for (const std::string& paragraph : description.details) {
        text += '\n';
        appendFilled(text, paragraph, 0);
    }
    text += "\nOptions:\n";
    appendRow(text, "  -h, --help", "Print this help and exit");
    for (const Flag& flag : command.flags()) {
        appendRow(text, rowName(flag), flag.summary);
    }
    text += description.examples.empty() ? "" : "\nExamples:\n";
    for (const Example& example : description.examples) {
        text += fmt::format("  {}:\n    {}\n", example.purpose, example.line);
    }
    return text;
}

std::string descriptionOf(const std::vector<std::unique_ptr<Command>>& commands) {
    Json all = Json::array();
    for (const auto& command : commands) {
        all.push_back(commandValue(*command));
    }
    return lineText(all) + "\n";
}
