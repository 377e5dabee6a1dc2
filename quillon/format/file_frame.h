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
// Version 2 gave nodes their identity (identity_record.h); version 1 files are still read.
inline constexpr std::uint32_t kFormatVersion = 2;
inline constexpr std::uint32_t kOldestFormatVersion = 1;
inline constexpr std::size_t kFrameHeaderBytes = 24;

// Writes the header with room for the length and checksum; the body follows it.
void BeginFrame(ByteWriter& w);
// Fills in version, length and checksum of everything behind the header, which `w` holds.
void SealFrame(ByteWriter& w);
// The same for a body that went to a sink, whose checksum the sink kept.
void SealFrame(ByteWriter& w, std::uint32_t bodyChecksum);

// The checksum of a body, fed piece by piece: start with EmptyChecksum(), then add each
// piece in order.
std::uint32_t EmptyChecksum();
std::uint32_t AddToChecksum(std::uint32_t checksum, const std::uint8_t* data, std::size_t size);
// The checksum of a body after `size` bytes that were zeros are rewritten with `data`,
// `bytesAfter` bytes before the body's end.
std::uint32_t ChecksumAfterRewrite(std::uint32_t checksum, const std::uint8_t* data, std::size_t size,
                                   std::uint64_t bytesAfter);
// Checks the header, the length and the checksum of a whole file; throws FormatError
// naming the offset. The body then starts at kFrameHeaderBytes.
void CheckFrame(const std::uint8_t* data, std::size_t size);
// The same in two steps, for a body that is read as it is checked: the header (its first
// bytes, as many as the file has up to kFrameHeaderBytes) against the file's size, which
// gives the checksum that the body must have; then that checksum against the body's.
std::uint32_t CheckFrameHeader(const std::uint8_t* header, std::size_t fileSize);
void CheckBodyChecksum(std::uint32_t expected, std::uint32_t actual);

}  // namespace quillon::format
