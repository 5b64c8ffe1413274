#include "FilesHelper.h"

#include "FileExtensions.h"
#include "StringHelper.h"

#include <exception>

namespace OrvComtradeLib {

bool FilesHelper::isFileExist(const std::string& path) {
    return std::ifstream(path, std::ios_base::in).is_open();
}

std::string FilesHelper::getFileExtension(const std::string& path) {
    // Deliberate: a path without any '.' raises the range error of substr, and nothing in the library catches it.
    return path.substr(path.find_last_of('.'));
}

std::string FilesHelper::getfileNameWithoutExtension(const std::string& path) {
    return path.substr(0, path.find_last_of('.'));
}

bool FilesHelper::isCfgFile(const std::string& path) {
    return StringHelper::toLower(getFileExtension(path)) == cfgExtension;
}

bool FilesHelper::isDatFile(const std::string& path) {
    return StringHelper::toLower(getFileExtension(path)) == datExtension;
}

bool FilesHelper::isCffFile(const std::string& path) {
    return StringHelper::toLower(getFileExtension(path)) == cffExtension;
}

bool FilesHelper::isComtradeFile(const std::string& path) {
    return isCfgFile(path) || isDatFile(path) || isCffFile(path);
}

std::string FilesHelper::cfgFileName(const std::string& path) {
    return isCfgFile(path) ? path : getfileNameWithoutExtension(path) + cfgExtension;
}

// Deliberate: the derived extension is lower case, so "REC.CFG" leads to "REC.dat" even where only "REC.DAT" exists.
std::string FilesHelper::datFileName(const std::string& path) {
    return isDatFile(path) ? path : getfileNameWithoutExtension(path) + datExtension;
}

std::int64_t FilesHelper::fileLenght(std::ifstream& stream) {
    try {
        const std::streamoff position = stream.tellg();
        stream.seekg(0, std::ios_base::end);
        const std::streamoff length = stream.tellg();
        stream.seekg(position, std::ios_base::beg);
        return length;
    } catch (const std::exception&) {
        return -1; // a stream that is set to throw
    }
}

std::int64_t FilesHelper::fileLenght(const std::string& path) {
    std::ifstream stream(path, std::ios_base::in);
    return fileLenght(stream);
}

} // namespace OrvComtradeLib
