#include "cfg/read/dataType.h"

#include "base/characters.h"
#include "cfg/read/fields.h"

#include <algorithm>
#include <array>
#include <string>

namespace OrvComtradeIntake {

namespace {

struct Word {
    const char* text;
    DataType type;
};

constexpr std::array<Word, 4> kWords = {{{"ASCII", DataType::Ascii},
                                         {"BINARY", DataType::Binary},
                                         {"BINARY32", DataType::Binary32},
                                         {"FLOAT32", DataType::Float32}}};

constexpr std::array<Word, 9> kOtherWords = {{{"BIN", DataType::Binary},
                                              {"BIN16", DataType::Binary},
                                              {"BINARY16", DataType::Binary},
                                              {"INT16", DataType::Binary},
                                              {"BIN32", DataType::Binary32},
                                              {"INT32", DataType::Binary32},
                                              {"FLOAT", DataType::Float32},
                                              {"REAL", DataType::Float32},
                                              {"REAL32", DataType::Float32}}};

template <typename Words> const Word* find(const Words& words, const std::string& text) {
    for (const Word& word : words) {
        if (word.text == text) {
            return &word;
        }
    }
    return nullptr;
}

// "BINARY 16", "BINARY-32", "FLOAT_32"
std::string squeezed(std::string text) {
    const auto isFiller = [](char character) { return isBlank(character) || character == '-' || character == '_'; };
    text.erase(std::remove_if(text.begin(), text.end(), isFiller), text.end());
    return text;
}

std::string repairOf(DataType type) {
    return std::string("read as ") + typeWord(type);
}

} // namespace

void readDataType(CfgCursor& cursor, ReadCfg& read) {
    if (cursor.isAtEnd()) {
        cursor.findings.add(Kind::TypeWord, cursor.place("ft"), {{}, repairOf(DataType::Ascii)});
        return;
    }
    const CfgLine line = cursor.take();
    const std::string written = upperCase(line[0].text);
    reportRest(cursor, line, 1, "ft");
    if (const Word* const word = find(kWords, written)) {
        read.header.dataType = word->type;
        return;
    }
    const std::string text = squeezed(written);
    const Word* const standard = find(kWords, text);
    const Word* const word = standard != nullptr ? standard : find(kOtherWords, text);
    read.header.dataType = word != nullptr ? word->type : DataType::Ascii;
    report(cursor.findings, Kind::TypeWord, line, 0, "ft", {{}, repairOf(read.header.dataType)});
}

} // namespace OrvComtradeIntake
