#include <OrvComtradePicture/families.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <utility>

using OrvComtradeIntake::AnalogInfo;

namespace OrvComtradePicture {

namespace {

constexpr std::size_t kLongestName = 100;      // bytes; longer ones are compared by their declared phase alone
constexpr std::size_t kMostOfLoneChannels = 4; // in a group
constexpr char kMark = '\x01';                 // stands for the phase in a pattern
constexpr char kPairMark = '\x02';

struct Replacement {
    std::string_view from;
    char to;
};

// Cyrillic letters that look like the Latin ones, and are written in their place.
constexpr std::array<Replacement, 11> kLookalikes = {{{"\xD0\x90", 'A'},
                                                      {"\xD0\xB0", 'a'},
                                                      {"\xD0\x92", 'B'},
                                                      {"\xD0\xB2", 'b'},
                                                      {"\xD0\xA1", 'C'},
                                                      {"\xD1\x81", 'c'},
                                                      {"\xD0\x9E", '0'},
                                                      {"\xD0\xBE", '0'},
                                                      {"\xD0\x9D", 'N'},
                                                      {"\xD0\xBD", 'n'},
                                                      {"\xD0\x86", 'I'}}};

std::string folded(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto* const found =
            std::find_if(kLookalikes.begin(), kLookalikes.end(), [text](const Replacement& replacement) {
                return text.substr(0, replacement.from.size()) == replacement.from;
            });
        const bool isKnown = found != kLookalikes.end();
        result += isKnown ? found->to : text.front();
        text.remove_prefix(isKnown ? found->from.size() : 1);
    }
    return result;
}

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

bool isLetter(char letter) {
    return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
}

std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" \t_");
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(" \t_") + 1 - begin);
}

/// "1-Ia" and "F2-IB" count channels before they name them.
std::string withoutCounter(const std::string& name) {
    std::size_t end = !name.empty() && name.front() == 'F' ? 1 : 0;
    const std::size_t digits = end;
    while (end < name.size() && isDigit(name[end])) {
        ++end;
    }
    if (end == digits || end + 1 >= name.size() || (name[end] != '-' && name[end] != ':')) {
        return name;
    }
    return name.substr(end + 1);
}

// Ways to write the three phases.
constexpr std::array<std::string_view, 5> kAlphabets = {"ABC", "abc", "RST", "rst", "123"};
constexpr std::size_t kFigures = 4; // the last of them

Phase phaseAt(std::size_t position) {
    constexpr std::array<Phase, 3> phases = {Phase::A, Phase::B, Phase::C};
    return phases.at(position);
}

/// Whether the phases that are figures are numbers of something else.
bool phasesAreNumbers(const std::vector<AnalogInfo>& channels) {
    return std::any_of(channels.begin(), channels.end(), [](const AnalogInfo& channel) {
        const std::string text = trimmed(channel.phase.substr(0, 8));
        return !text.empty() && isDigit(text.front()) && (text.size() > 1 || text.front() > '4');
    });
}

/// The phase that the channel's line declares, or None.
Phase declaredPhase(const AnalogInfo& channel, bool figuresAreNumbers) {
    std::string text = channel.phase.size() > 8 ? "" : folded(trimmed(channel.phase));
    if (figuresAreNumbers && !text.empty() && isDigit(text.front())) {
        return Phase::None;
    }
    if (text.size() == 2 && (text[0] == 'L' || text[0] == 'l')) {
        text.erase(0, 1);
    }
    const auto sign = text.find_first_of("-/");
    if (sign != std::string::npos) {
        text.erase(sign, 1);
    }
    if (text == "N" || text == "n" || text == "G" || text == "g" || text == "0" || text == "E") {
        return Phase::Neutral;
    }
    if (text.empty() || text.size() > 2) {
        return Phase::None;
    }
    for (std::size_t i = 0; i < kFigures; ++i) { // figures are sequences, or anything
        const std::size_t first = kAlphabets.at(i).find(text[0]);
        const bool isPair = text.size() == 2;
        const std::size_t second = isPair ? kAlphabets.at(i).find(text[1]) : 0;
        const bool isToNeutral = isPair && (text[1] == 'N' || text[1] == 'n');
        if (first != std::string_view::npos && (isToNeutral || (second != std::string_view::npos))) {
            return isPair && !isToNeutral && second != (first + 1) % 3 ? phaseAt(second) : phaseAt(first);
        }
    }
    return Phase::None;
}

/// A name with a mark in the place of what may be its phase.
struct Reading {
    std::size_t pattern = 0;  ///< hash of the name with the mark
    std::size_t alphabet = 0; ///< of a neutral: any
    Phase phase = Phase::None;
    Quantity quantity = Quantity::Other; ///< by the letter before the mark
    std::size_t position = 0;            ///< of the mark; ends of names count more
    bool isPair = false;                 ///< between two conductors
};

Quantity quantityBefore(const std::string& name, std::size_t position) {
    if (position > 0 && (name[position - 1] == 'L' || name[position - 1] == 'l')) {
        --position;
    }
    const char letter = position > 0 ? name[position - 1] : '\0';
    if (letter == 'I' || letter == 'i') {
        return Quantity::Current;
    }
    return letter == 'U' || letter == 'V' || letter == 'u' || letter == 'v' ? Quantity::Voltage : Quantity::Other;
}

class Readings {
public:
    explicit Readings(const std::string& identifier) {
        if (identifier.size() > kLongestName) {
            return;
        }
        _name = withoutCounter(trimmed(folded(identifier)));
        _readZeroSequence();
        for (std::size_t i = 0; i < _name.size(); ++i) {
            _readAt(i);
        }
        _readEndsOfWords();
    }

    std::vector<Reading> take() { return std::move(_readings); }

private:
    void _add(const std::string& pattern, std::size_t alphabet, Phase phase, std::size_t position,
              bool isPair = false) {
        _readings.push_back(
            {std::hash<std::string>{}(pattern), alphabet, phase, quantityBefore(_name, position), position, isPair});
    }

    std::string _replaced(std::size_t position, std::size_t length, char mark) const {
        std::string pattern = _name;
        pattern.replace(position, length, 1, mark);
        return pattern;
    }

    /// "3I0" is the neutral of "Ia".
    void _readZeroSequence() {
        for (std::size_t i = 0; i + 2 < _name.size(); ++i) {
            if (_name[i] == '3' && quantityBefore(_name, i + 2) != Quantity::Other &&
                (_name[i + 2] == '0' || _name[i + 2] == 'o' || _name[i + 2] == 'O')) {
                std::string pattern = _replaced(i + 2, 1, kMark);
                pattern.erase(i, 1);
                _add(pattern, 0, Phase::Neutral, i + 2);
            }
        }
    }

    void _readAt(std::size_t position) {
        const char letter = _name[position];
        if (std::string_view("NnGgE04").find(letter) != std::string_view::npos) {
            const std::string pattern = _replaced(position, 1, kMark);
            const std::size_t alphabet = letter == '4' ? kFigures : 0;
            _add(pattern, alphabet, Phase::Neutral, position);
            if (quantityBefore(_name, position) != Quantity::Other) { // "IN" of "IL1"
                _add(std::string(pattern).insert(position, 1, 'L'), alphabet, Phase::Neutral, position);
            }
        }
        if (letter >= '5' && letter <= '9') { // who counts so far counts no phases
            _add(_replaced(position, 1, kMark), kFigures, Phase::None, position);
        }
        for (std::size_t alphabet = 0; alphabet < kAlphabets.size(); ++alphabet) {
            const std::size_t phase = kAlphabets.at(alphabet).find(letter);
            if (phase == std::string_view::npos) {
                continue;
            }
            _add(_replaced(position, 1, kMark), alphabet, phaseAt(phase), position);
            const std::size_t other =
                position + 1 < _name.size() ? kAlphabets.at(alphabet).find(_name[position + 1]) : phase;
            const bool mayBePair = alphabet != kFigures || quantityBefore(_name, position) != Quantity::Other;
            if (other != std::string_view::npos && other != phase && mayBePair) {
                const std::size_t first = other == (phase + 1) % 3 ? phase : other;
                _add(_replaced(position, 2, kPairMark), alphabet, phaseAt(first), position, true);
            }
        }
    }

    /// "HCSA -HVS1A" has its phase twice.
    void _readEndsOfWords() {
        for (std::size_t alphabet = 0; alphabet < kFigures; ++alphabet) {
            for (std::size_t phase = 0; phase < 3; ++phase) {
                const char letter = kAlphabets.at(alphabet)[phase];
                std::string pattern = _name;
                std::size_t count = 0;
                std::size_t last = 0;
                for (std::size_t i = 0; i < pattern.size(); ++i) {
                    const bool isEnd = i + 1 == _name.size() || (!isLetter(_name[i + 1]) && !isDigit(_name[i + 1]));
                    if (_name[i] == letter && isEnd) {
                        pattern[i] = kMark;
                        ++count;
                        last = i;
                    }
                }
                if (count > 1) {
                    _add(pattern, alphabet, phaseAt(phase), last);
                }
            }
        }
    }

    std::string _name;
    std::vector<Reading> _readings;
};

/// Which phases there are of a pattern, as bits, by alphabet; and whether counting goes on behind the third.
struct PatternUse {
    std::array<unsigned, kAlphabets.size()> phases = {};
};

unsigned bitOf(Phase phase) {
    return 1U << static_cast<unsigned>(phase);
}

unsigned countOf(unsigned phases) {
    return (phases >> 1U & 1U) + (phases >> 2U & 1U) + (phases >> 3U & 1U);
}

struct Channel {
    std::size_t channel = 0;
    Phase declared = Phase::None;
    std::size_t kind = 0; ///< hash of unit and side: channels of different kinds have nothing in common
    std::vector<Reading> readings;
};

std::size_t keyOf(const Channel& channel, const Reading& reading) {
    return channel.kind * 31U + reading.pattern;
}

class Grouping {
public:
    Grouping(const Source& source, const std::vector<std::size_t>& channels) : _source(source) {
        const bool figuresAreNumbers = phasesAreNumbers(source.header.analog);
        _channels.reserve(channels.size());
        for (const std::size_t number : channels) {
            const AnalogInfo& info = source.header.analog.at(number);
            const ValuesOf& values = source.analog.at(number);
            Channel channel;
            channel.channel = number;
            channel.declared = declaredPhase(info, figuresAreNumbers);
            channel.kind = std::hash<std::string>{}(values.unit) * 4U + static_cast<std::size_t>(values.side);
            channel.readings = Readings(info.id).take();
            ++_channelsOf[info.component];
            for (const Reading& reading : channel.readings) {
                if (_isPossible(channel, reading)) {
                    _uses[keyOf(channel, reading)].phases.at(reading.alphabet) |= bitOf(reading.phase);
                }
            }
            _channels.push_back(std::move(channel));
        }
    }

    std::vector<Family> families() {
        for (const Channel& channel : _channels) {
            const Reading* const reading = _best(channel);
            if (reading != nullptr) {
                _place(channel, *reading);
            } else if (_isNeutral(channel) && _joinPhases(channel)) {
                continue;
            } else if (channel.declared != Phase::None) {
                _placeByDeclaration(channel);
            } else {
                _placeAlone(channel);
            }
        }
        for (Family& family : _families) {
            unsigned phases = 0;
            for (const Member& member : family.members) {
                phases |= bitOf(member.phase);
            }
            family.hasPhases = countOf(phases) >= 2;
        }
        return std::move(_families);
    }

private:
    static bool _isPossible(const Channel& channel, const Reading& reading) {
        return channel.declared == Phase::None || channel.declared == reading.phase;
    }

    const std::string& _component(std::size_t channel) const { return _source.header.analog[channel].component; }

    /// Two phases are a family, but of single figures only all three: channels are counted, too.
    unsigned _scoreOf(const Channel& channel, const Reading& reading) const {
        const auto use = _uses.find(keyOf(channel, reading));
        if (use == _uses.end()) {
            return 0;
        }
        unsigned best = 0;
        for (std::size_t alphabet = 0; alphabet < kAlphabets.size(); ++alphabet) {
            const unsigned phases = use->second.phases.at(alphabet);
            const bool isNeutral = reading.phase == Phase::Neutral;
            const unsigned count = countOf(phases);
            const bool isCount = (phases & bitOf(Phase::None)) != 0;
            const unsigned least = alphabet == kFigures && !reading.isPair ? 3 : 2;
            if ((isNeutral || alphabet == reading.alphabet) && count >= least && !isCount) {
                best = std::max(best, count * 4U + (alphabet == kFigures ? 0U : 2U) + (isNeutral ? 0U : 1U));
            }
        }
        return best;
    }

    const Reading* _best(const Channel& channel) const {
        const Reading* best = nullptr;
        std::pair<unsigned, std::size_t> bestScore;
        for (const Reading& reading : channel.readings) {
            const std::pair<unsigned, std::size_t> score = {
                _isPossible(channel, reading) ? _scoreOf(channel, reading) : 0U, reading.position};
            if (score.first > 0 && (best == nullptr || score > bestScore)) {
                best = &reading;
                bestScore = score;
            }
        }
        return best;
    }

    void _place(const Channel& channel, const Reading& reading) {
        std::vector<std::size_t>& candidates = _byPattern[keyOf(channel, reading)];
        _join(channel, reading.phase, reading.quantity, candidates);
    }

    void _placeByDeclaration(const Channel& channel) {
        _join(channel, channel.declared, Quantity::Other,
              _byPattern[channel.kind * 31U + std::hash<std::string>{}(_component(channel.channel))]);
    }

    /// Into the newest of these families that lacks the phase and has the component; else into one that lacks the
    /// phase, where no family has the component; else into a new one.
    void _join(const Channel& channel, Phase phase, Quantity byName, std::vector<std::size_t>& candidates) {
        std::optional<std::size_t> place;
        bool isOfComponent = false;
        const std::size_t looked = std::min<std::size_t>(candidates.size(), 16);
        for (auto candidate = candidates.rbegin();
             candidate != candidates.rbegin() + static_cast<std::ptrdiff_t>(looked); ++candidate) {
            const Family& family = _families[*candidate];
            const bool hasComponent = _component(family.members.front().channel) == _component(channel.channel);
            const bool lacks = std::none_of(family.members.begin(), family.members.end(),
                                            [phase](const Member& member) { return member.phase == phase; });
            if (hasComponent && !isOfComponent) {
                place.reset();
                isOfComponent = true;
            }
            if (lacks && !place && hasComponent == isOfComponent) {
                place = *candidate;
            }
        }
        if (!place) {
            place = _families.size();
            candidates.push_back(*place);
            _families.emplace_back();
            const Quantity byUnit = quantityOf(_source.analog[channel.channel].unit);
            const std::string& unit = _source.analog[channel.channel].unit;
            const bool hasUnit = !unit.empty() && unit != "none" && unit != "one";
            _families.back().quantity = hasUnit ? byUnit : byName;
        }
        _families[*place].members.push_back({channel.channel, phase});
    }

    bool _isNeutral(const Channel& channel) const {
        constexpr std::array<std::string_view, 16> names = {"IN", "IG", "IE", "I0", "Io", "UN", "UG",  "UE",
                                                            "U0", "Uo", "VN", "VG", "V0", "Vo", "3I0", "3U0"};
        const std::string& name = _source.header.analog[channel.channel].id;
        return channel.declared == Phase::Neutral ||
               (channel.declared == Phase::None && std::find(names.begin(), names.end(), name) != names.end());
    }

    /// A neutral of another name: to the last phases before it that are of its kind and component and have none.
    bool _joinPhases(const Channel& channel) {
        constexpr std::size_t nearest = 4; // families that are looked at
        const std::size_t end = _families.size() > nearest ? _families.size() - nearest : 0;
        for (std::size_t i = _families.size(); i > end; --i) {
            Family& family = _families[i - 1];
            const std::size_t first = family.members.front().channel;
            const bool fits = _component(first) == _component(channel.channel) &&
                              _source.analog[first].unit == _source.analog[channel.channel].unit &&
                              _source.analog[first].side == _source.analog[channel.channel].side;
            const bool hasNeutral = std::any_of(family.members.begin(), family.members.end(), [](const Member& member) {
                return member.phase == Phase::Neutral || member.phase == Phase::None;
            });
            if (fits) {
                if (!hasNeutral) {
                    family.members.push_back({channel.channel, Phase::Neutral});
                }
                return !hasNeutral;
            }
        }
        return false;
    }

    void _placeAlone(const Channel& channel) {
        const std::string& component = _component(channel.channel);
        const bool isShared = _channelsOf.at(component) > 1; // otherwise it is one more name of the channel
        const std::size_t key = channel.kind * 31U + (isShared ? std::hash<std::string>{}(component) : 0U);
        const auto open = _lone.find(key);
        if (open != _lone.end() && _families[open->second].members.size() < kMostOfLoneChannels) {
            _families[open->second].members.push_back({channel.channel, Phase::None});
            return;
        }
        _lone[key] = _families.size();
        _families.emplace_back();
        _families.back().quantity = quantityOf(_source.analog[channel.channel].unit);
        _families.back().members.push_back({channel.channel, Phase::None});
    }

    const Source& _source;
    std::vector<Channel> _channels;
    std::unordered_map<std::size_t, PatternUse> _uses;
    std::unordered_map<std::size_t, std::vector<std::size_t>> _byPattern; ///< families of a pattern
    std::unordered_map<std::size_t, std::size_t> _lone;
    std::unordered_map<std::string, std::size_t> _channelsOf; ///< of a component
    std::vector<Family> _families;
};

} // namespace

Quantity quantityOf(std::string_view unit) {
    struct Word {
        std::string_view text;
        Quantity quantity;
    };
    constexpr std::array<Word, 14> words = {{{"V", Quantity::Voltage},
                                             {"v", Quantity::Voltage},
                                             {"\xD0\x92", Quantity::Voltage}, // Cyrillic
                                             {"\xD0\x92/\xD0\xBA\xD0\x92", Quantity::Voltage},
                                             {"volt", Quantity::Voltage},
                                             {"volts", Quantity::Voltage},
                                             {"Volts", Quantity::Voltage},
                                             {"A", Quantity::Current},
                                             {"a", Quantity::Current},
                                             {"\xD0\x90", Quantity::Current},
                                             {"ampere", Quantity::Current},
                                             {"amps", Quantity::Current},
                                             {"Amps", Quantity::Current},
                                             {"Volt", Quantity::Voltage}}};
    const auto* const word =
        std::find_if(words.begin(), words.end(), [unit](const Word& known) { return known.text == unit; });
    if (word != words.end()) {
        return word->quantity;
    }
    // "Vrms", "A (peak)": what is said beside the unit; VA and VAr are none.
    const std::string_view rest = unit.substr(unit.empty() ? 0 : 1);
    const bool isQualified =
        !rest.empty() && std::string_view("rpead ([_").find(rest.front()) != std::string_view::npos;
    if (isQualified && rest != "ar" && (unit.front() == 'V' || unit.front() == 'A')) {
        return unit.front() == 'V' ? Quantity::Voltage : Quantity::Current;
    }
    return Quantity::Other;
}

std::vector<Family> familiesOf(const Source& source, const std::vector<std::size_t>& channels) {
    return Grouping(source, channels).families();
}

} // namespace OrvComtradePicture
