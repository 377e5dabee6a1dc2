#pragma once
// The identity of a node in a scene file of version 2: its marker and the unique ids
// that applications gave it, the part NodePart_Identity of the node's common block.
//
//   identity := u8(has marker) [16 bytes marker] count { i32(application id) count(size) bytes }
#include "quillon/format/byte_reader.h"
#include "quillon/format/byte_writer.h"
#include "quillon/model/identity.h"

namespace quillon::format {

// The presence bit of the identity part, beside those of record_layout.h.
inline constexpr std::uint8_t kNodePartIdentity = 1 << 7;

void WriteIdentity(ByteWriter& w, const NodeIdentity& identity);
// Throws FormatError for a flag other than 0 or 1, an empty unique id, an application id
// that appears twice, or a count beyond the remaining bytes; an identity that the file ends
// before is named at `partsAt`, the offset of the node's part flags that promised it.
NodeIdentity ReadIdentity(ByteReader& r, std::size_t partsAt);

}  // namespace quillon::format
