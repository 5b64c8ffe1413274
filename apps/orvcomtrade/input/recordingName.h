#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Kinds of files; the lowest one of a recording is its main file.
enum class FileKind { Cfg, Cff, Dat, Other };

/// The name from its last dot on, or empty.
std::string_view extensionOf(std::string_view name);

std::string_view stemOf(std::string_view name);

/// The part after the last slash.
std::string_view nameOf(std::string_view path);

/// The path of a name in a folder; just the name if `folder` is empty.
std::string joined(const std::string& folder, const std::string& name);

/// The kind of a file by its extension, in upper or lower case; nothing for a file that belongs to no recording.
std::optional<FileKind> kindOf(std::string_view name);

/// Whether the name is that of an archive, in upper or lower case.
bool isArchiveName(std::string_view name);
