#pragma once
// Files as the operating system offers them. Paths are UTF-8.
#include <optional>
#include <string>

// True when `path` exists and is a directory exactly when `asDirectory` is set.
bool FileExists(const std::string& path, bool asDirectory);

// All bytes of a file; nothing when it cannot be opened or read.
std::optional<std::string> ReadFileBytes(const std::string& path);

// Appends `text` in one write to the file, creating it if needed. Other processes may
// read and append at the same time; each call is complete before the next one opens.
bool AppendToFile(const std::string& path, const std::string& text);

// `folder` and `leaf` joined with one separator.
std::string JoinPath(const std::string& folder, const std::string& leaf);
