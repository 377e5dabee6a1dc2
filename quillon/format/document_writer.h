#pragma once
// Encodes a document as the body of a scene file (layout in quillon/FORMAT.md).
#include "quillon/format/byte_writer.h"
#include "quillon/model/document.h"

namespace quillon::format {

// Appends the body; throws std::runtime_error for content that has no file form
// (a value of an unknown kind, a tree deeper than the reader accepts).
void WriteDocumentBody(ByteWriter& w, const Document& document);

}  // namespace quillon::format
