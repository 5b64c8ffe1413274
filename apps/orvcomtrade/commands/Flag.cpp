#include "commands/Flag.h"

#include "nearestName.h"

#include <fmt/format.h>

#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

namespace {

template <class Number> bool isNumber(const std::string& text, Number& number) {
    const char* const begin = text.data() + (!text.empty() && text.front() == '+' ? 1 : 0);
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(begin, end, number);
    return error == std::errc() && stop == end;
}

} // namespace

Flag Flag::with(std::string sentences) && {
    details = std::move(sentences);
    return std::move(*this);
}

Flag Flag::of(ValueKind valueKind, std::vector<std::string> known) && {
    kind = valueKind;
    words = std::move(known);
    return std::move(*this);
}

Flag Flag::without(std::vector<std::string> others) && {
    excludes = std::move(others);
    return std::move(*this);
}

std::string Flag::longName() const {
    return names.substr(names.find("--"));
}

Flag switchFlag(std::string names, std::string summary, bool& on) {
    return {std::move(names), {}, std::move(summary), [&on](const std::string& /*none*/) {
                on = true;
                return std::string();
            }};
}

Flag textFlag(std::string names, std::string value, std::string summary, std::string& text) {
    return {std::move(names), std::move(value), std::move(summary), [&text](const std::string& given) {
                text = given;
                return std::string();
            }};
}

Flag textsFlag(std::string names, std::string value, std::string summary, std::vector<std::string>& texts) {
    Flag flag{std::move(names), std::move(value), std::move(summary), [&texts](const std::string& given) {
                  texts.push_back(given);
                  return std::string();
              }};
    flag.repeats = true;
    return flag;
}

Flag numberFlag(std::string names, std::string value, std::string summary, std::optional<double>& number) {
    return {std::move(names), std::move(value), std::move(summary), [&number](const std::string& given) {
                double parsed = 0.0;
                if (!isNumber(given, parsed)) {
                    return "not a number: " + given;
                }
                number = parsed;
                return std::string();
            }};
}

Flag countFlag(std::string names, std::string summary, std::size_t least, std::size_t most, std::size_t& count) {
    return {std::move(names), "NUMBER", std::move(summary), [least, most, &count](const std::string& given) {
                std::size_t parsed = 0;
                const bool isValid = isNumber(given, parsed) && parsed >= least && parsed <= most;
                if (!isValid && most == std::numeric_limits<std::size_t>::max()) {
                    return "not a whole number: " + given;
                }
                if (!isValid) {
                    return fmt::format("not a whole number from {} to {}: {}", least, most, given);
                }
                count = parsed;
                return std::string();
            }};
}

std::string problemOfChoice(const std::string& text, const std::vector<std::string>& words) {
    const std::string nearest = nearestName(text, words);
    return fmt::format("{} is not one of {}{}", text, fmt::join(words, ", "),
                       nearest.empty() ? "" : fmt::format("; did you mean {}?", nearest));
}
