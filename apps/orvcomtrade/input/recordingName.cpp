#include "input/recordingName.h"

#include "StringHelper.h"

using OrvComtradeLib::StringHelper;

std::string_view extensionOf(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : name.substr(dot);
}

std::string_view stemOf(std::string_view name) {
    return name.substr(0, name.size() - extensionOf(name).size());
}

std::string_view nameOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string joined(const std::string& folder, const std::string& name) {
    return folder.empty() || folder.back() == '/' ? folder + name : folder + '/' + name;
}

std::optional<FileKind> kindOf(std::string_view name) {
    const std::string extension = StringHelper::toLower(std::string(extensionOf(name)));
    if (extension == ".cfg") {
        return FileKind::Cfg;
    }
    if (extension == ".cff") {
        return FileKind::Cff;
    }
    if (extension == ".dat") {
        return FileKind::Dat;
    }
    if (extension == ".hdr" || extension == ".inf") {
        return FileKind::Other;
    }
    return std::nullopt;
}

bool isArchiveName(std::string_view name) {
    return StringHelper::toLower(std::string(extensionOf(name))) == ".zip";
}
