#pragma once
// The .ory scene file: a whole document written to and read from a file or a byte buffer.
// The layout is described in quillon/FORMAT.md.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "quillon/model/document.h"

namespace quillon::format {

// Writes `doc` to `path` through a temporary file that replaces `path` only on success.
bool WriteDocument(const Document& doc, const std::string& path, std::string* error);
// Replaces the content of `doc` with what `path` holds; false and a message on any problem.
bool ReadDocument(const std::string& path, Document& doc, std::string* error);

// The same over a byte buffer holding a whole file. On failure `doc` is left empty, and
// the message starts with the byte offset of the problem. All four let std::bad_alloc
// through: running out of memory is no fault of the file, and the caller says what it was doing.
bool EncodeDocument(const Document& doc, std::vector<std::uint8_t>& bytes, std::string* error);
bool DecodeDocument(const std::uint8_t* data, std::size_t size, Document& doc, std::string* error);

// Files above this size are refused unread. A scene file is only ever read from a regular file.
inline constexpr std::size_t kMaxSceneFileBytes = std::size_t{1} << 36;

}  // namespace quillon::format
