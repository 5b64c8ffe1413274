#pragma once

#include <optional>
#include <string>
#include <string_view>

/// How well a file stands for its recording: the lower the better.
enum class FileKind { Cfg, Cff, Dat, Other };

/// From the last dot on, or nothing.
std::string_view extensionOf(std::string_view name);

std::string_view stemOf(std::string_view name);

/// What stands behind the last slash.
std::string_view nameOf(std::string_view path);

/// The path of a name in a folder; of the name alone where `folder` is empty.
std::string joined(const std::string& folder, const std::string& name);

/// By the extension, in any case; none for a file that belongs to no recording.
std::optional<FileKind> kindOf(std::string_view name);

/// Whether the name is that of an archive, in any case.
bool isArchiveName(std::string_view name);
