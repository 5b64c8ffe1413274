#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// Kind of a flag's value, for completion.
enum class ValueKind {
    Any,
    Choice,     ///< one of the flag's words
    Suggestion, ///< most often one of the flag's words
    File,       ///< any file or folder
    Channel     ///< of the recording on the line
};

/// A flag of a command: everything that parser, help, manual page, documents and completion need.
struct Flag {
    std::string names;   ///< "-s,--start"
    std::string value;   ///< name of its value in help ("SECONDS"); empty if it has no value
    std::string summary; ///< for help and completion; no full stop
    std::function<std::string(const std::string&)> take; ///< takes a value; returns what is wrong with it, or ""
    std::string details = {};                            ///< sentences for the manual page and the documents
    ValueKind kind = ValueKind::Any;                     ///< of the value
    std::vector<std::string> words = {};                 ///< known values
    bool repeats = false;                                ///< may be given more than once
    bool isRequired = false;
    std::vector<std::string> excludes = {}; ///< long names of the flags that it excludes

    Flag with(std::string sentences) &&; ///< with these details
    Flag of(ValueKind valueKind, std::vector<std::string> known = {}) &&;
    Flag without(std::vector<std::string> others) &&; ///< excludes these flags
    std::string longName() const;                     ///< "--start"
};

/// A flag without a value, which sets `on`.
Flag switchFlag(std::string names, std::string summary, bool& on);

Flag textFlag(std::string names, std::string value, std::string summary, std::string& text);

/// A flag that may be given more than once; each time adds a text.
Flag textsFlag(std::string names, std::string value, std::string summary, std::vector<std::string>& texts);

/// A number in any notation of C, including "nan" and "inf": the command checks which are allowed.
Flag numberFlag(std::string names, std::string value, std::string summary, std::optional<double>& number);

/// A whole number from `least` to `most`.
Flag countFlag(std::string names, std::string summary, std::size_t least, std::size_t most, std::size_t& count);

std::string problemOfChoice(const std::string& text, const std::vector<std::string>& words);

/// One of some words. `words` and `chosen` must outlive the flag.
template <class Value>
Flag choiceFlag(std::string names, std::string value, std::string summary, const std::map<std::string, Value>& words,
                Value& chosen) {
    std::vector<std::string> all;
    std::transform(words.begin(), words.end(), std::back_inserter(all), [](const auto& word) { return word.first; });
    const auto take = [&words, &chosen, all](const std::string& text) {
        const auto word = words.find(text);
        if (word == words.end()) {
            return problemOfChoice(text, all);
        }
        chosen = word->second;
        return std::string();
    };
    return Flag{std::move(names), std::move(value), std::move(summary), take}.of(ValueKind::Choice, std::move(all));
}
