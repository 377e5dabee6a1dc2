#pragma once
// Decodes the body of a scene file into a document. Every length and count is checked
// against the bytes that remain, trees and values nest at most kMaxDepth deep, and every
// problem throws FormatError naming the byte offset (layout in quillon/FORMAT.md).
#include "quillon/format/byte_reader.h"
#include "quillon/model/document.h"

namespace quillon::format {

// Reads the body from r's position to the end of its buffer into `document`, which must
// be empty. Links between the nodes read are restored; links to nodes outside the file
// are cleared.
// `version` is the format version of the file (file_frame.h).
void ReadDocumentBody(ByteReader& r, Document& document, std::uint32_t version);

}  // namespace quillon::format
