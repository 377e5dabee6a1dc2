#include "quillon/format/file_frame.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "quillon/format/byte_reader.h"

namespace quillon::format {
namespace {

std::uint32_t Checksum(const std::uint8_t* data, std::size_t size) {
  return AddToChecksum(EmptyChecksum(), data, size);
}

std::string Hex(std::uint32_t v) {
  char text[11];
  std::snprintf(text, sizeof text, "0x%08X", v);
  return text;
}

std::string Printable(const std::uint8_t* p, std::size_t n) {
  std::string text;
  for (std::size_t i = 0; i < n; ++i) {
    const char c = static_cast<char>(p[i]);
    text += (c >= 0x20 && c < 0x7F) ? c : '?';
  }
  return "\"" + text + "\"";
}

}  // namespace

std::uint32_t EmptyChecksum() { return 0; }

// The CRC-32 of zlib and gzip. libdeflate computes it with the processor's carry-less
// multiply, two to three times as fast as zlib's tables, which the writer of a large scene
// file would otherwise wait on; the sums are the same.
std::uint32_t AddToChecksum(std::uint32_t checksum, const std::uint8_t* data, std::size_t size) {
  return libdeflate_crc32(checksum, data, size);
}

// The checksum is linear over bodies of one length: the sum of a body with some zeros
// rewritten is the old sum plus the sum of the change, and the change is the rewritten bytes
// followed by `bytesAfter` zeros. zlib's crc32_combine moves a sum past that many zeros in
// logarithmic time, so a rewrite near the start of a large body costs no pass over it.
std::uint32_t ChecksumAfterRewrite(std::uint32_t checksum, const std::uint8_t* data, std::size_t size,
                                   std::uint64_t bytesAfter) {
  std::uint32_t change = 0;
  static constexpr std::uint8_t kZeros[64] = {};
  for (std::size_t at = 0; at < size; at += sizeof kZeros) {
    const std::size_t n = std::min(size - at, sizeof kZeros);
    // Rewritten bytes against zeros, piece by piece, each piece carried past the pieces after it.
    const uLong piece = AddToChecksum(0, data + at, n) ^ AddToChecksum(0, kZeros, n);
    change ^= static_cast<std::uint32_t>(crc32_combine(piece, 0, static_cast<z_off_t>(size - at - n + bytesAfter)));
  }
  return checksum ^ change;
}

void BeginFrame(ByteWriter& w) {
  w.Raw(kSignature, 4);
  for (int shift = 24; shift >= 0; shift -= 8) w.U8(static_cast<std::uint8_t>(kIdent >> shift));
  w.U32(kFormatVersion);
  w.U32(0);  // checksum
  w.U64(0);  // body length
}

void SealFrame(ByteWriter& w) {
  SealFrame(w, Checksum(w.bytes.data() + kFrameHeaderBytes, w.bytes.size() - kFrameHeaderBytes));
}

void SealFrame(ByteWriter& w, std::uint32_t bodyChecksum) {
  w.PatchU32(8, kFormatVersion);
  w.PatchU32(12, bodyChecksum);
  w.PatchU64(16, w.Size() - kFrameHeaderBytes);
}

std::uint32_t CheckFrameHeader(const std::uint8_t* header, std::size_t fileSize) {
  ByteReader r(header, std::min(fileSize, kFrameHeaderBytes));
  if (fileSize < kFrameHeaderBytes)
    r.Fail(fileSize, "the file ends after " + std::to_string(fileSize) + " bytes, inside the " +
                         std::to_string(kFrameHeaderBytes) + "-byte header");
  if (std::memcmp(header, kSignature, 4) != 0)
    r.Fail(0, "signature " + Printable(header, 4) + " is not " + Printable(
                  reinterpret_cast<const std::uint8_t*>(kSignature), 4) + ": not a scene file");
  const std::uint32_t ident = (std::uint32_t{header[4]} << 24) | (std::uint32_t{header[5]} << 16) |
                              (std::uint32_t{header[6]} << 8) | header[7];
  if (ident != kIdent) r.Fail(4, "ident " + Printable(header + 4, 4) + " is not \"ORY6\"");
  r.U64();
  const std::uint32_t version = r.U32();
  if (version < kOldestFormatVersion || version > kFormatVersion)
    r.Fail(8, "format version " + std::to_string(version) + " is not one of the versions " +
                  std::to_string(kOldestFormatVersion) + " to " + std::to_string(kFormatVersion) +
                  " that this reader reads");
  const std::uint32_t checksum = r.U32();
  const std::uint64_t length = r.U64();
  const std::size_t body = fileSize - kFrameHeaderBytes;
  if (length != body)
    r.Fail(16, "body length " + std::to_string(length) + " does not match the " + std::to_string(body) +
                   " bytes after the header" + (length > body ? ": the file is truncated" : ""));
  return checksum;
}

void CheckBodyChecksum(std::uint32_t expected, std::uint32_t actual) {
  if (actual != expected)
    throw FormatError(12, "checksum " + Hex(expected) + " does not match the body's " + Hex(actual) +
                              ": the file is damaged");
}

void CheckFrame(const std::uint8_t* data, std::size_t size) {
  const std::uint32_t checksum = CheckFrameHeader(data, size);
  CheckBodyChecksum(checksum, Checksum(data + kFrameHeaderBytes, size - kFrameHeaderBytes));
}

}  // namespace quillon::format
