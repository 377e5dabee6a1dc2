#pragma once
// Writes a whole file so that readers see either the old content or the complete new one.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quillon::format {

// Writes `bytes` to a temporary file beside `path`, flushes it to the disk and renames it
// over `path`. On any failure the temporary file is removed, `path` keeps what it held,
// and `error` receives the path and the system's reason.
bool ReplaceFileContent(const std::string& path, const std::vector<std::uint8_t>& bytes,
                        std::string* error);

// Reads a whole file, refusing files larger than `maxBytes`.
bool ReadFileContent(const std::string& path, std::size_t maxBytes,
                     std::vector<std::uint8_t>& bytes, std::string* error);

}  // namespace quillon::format
