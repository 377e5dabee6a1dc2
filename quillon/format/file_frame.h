#pragma once
// The frame around the body of a scene file: the eight bytes that identify a scene file,
// the format version, and a length and checksum of the body, so that a truncated or
// damaged file is refused before any of its content is interpreted.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "quillon/format/byte_writer.h"

namespace quillon::format {

// The first four bytes: one of the signatures by which a scene file is recognised.
inline constexpr char kSignature[4] = {'Q', 'O', 'R', 'Y'};
// The next four: the ident 'ORY6' as a 32-bit word in big-endian order.
inline constexpr std::uint32_t kIdent = 0x4F525936u;
inline constexpr std::uint32_t kFormatVersion = 1;
inline constexpr std::size_t kFrameHeaderBytes = 24;

// Writes the header with room for the length and checksum; the body follows it.
void BeginFrame(ByteWriter& w);
// Fills in version, length and checksum of everything behind the header.
void SealFrame(ByteWriter& w);
// Checks the header, the length and the checksum of a whole file; throws FormatError
// naming the offset. The body then starts at kFrameHeaderBytes.
void CheckFrame(const std::uint8_t* data, std::size_t size);

}  // namespace quillon::format
