#include "quillon/format/file_frame.h"

#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "quillon/format/byte_reader.h"

namespace quillon::format {
namespace {

std::uint32_t Checksum(const std::uint8_t* data, std::size_t size) {
  uLong crc = crc32(0L, Z_NULL, 0);
  // zlib takes 32-bit lengths: feed large bodies in pieces.
  while (size > 0) {
    const auto piece = static_cast<uInt>(std::min<std::size_t>(size, 1u << 30));
    crc = crc32(crc, data, piece);
    data += piece;
    size -= piece;
  }
  return static_cast<std::uint32_t>(crc);
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

void BeginFrame(ByteWriter& w) {
  w.Raw(kSignature, 4);
  for (int shift = 24; shift >= 0; shift -= 8) w.U8(static_cast<std::uint8_t>(kIdent >> shift));
  w.U32(kFormatVersion);
  w.U32(0);  // checksum
  w.U64(0);  // body length
}

void SealFrame(ByteWriter& w) {
  const std::size_t bodySize = w.Size() - kFrameHeaderBytes;
  w.PatchU32(8, kFormatVersion);
  w.PatchU32(12, Checksum(w.bytes.data() + kFrameHeaderBytes, bodySize));
  w.PatchU64(16, bodySize);
}

void CheckFrame(const std::uint8_t* data, std::size_t size) {
  ByteReader r(data, size);
  if (size < kFrameHeaderBytes)
    r.Fail(size, "the file ends after " + std::to_string(size) + " bytes, inside the " +
                     std::to_string(kFrameHeaderBytes) + "-byte header");
  if (std::memcmp(data, kSignature, 4) != 0)
    r.Fail(0, "signature " + Printable(data, 4) + " is not " + Printable(
                  reinterpret_cast<const std::uint8_t*>(kSignature), 4) + ": not a scene file");
  const std::uint32_t ident = (std::uint32_t{data[4]} << 24) | (std::uint32_t{data[5]} << 16) |
                              (std::uint32_t{data[6]} << 8) | data[7];
  if (ident != kIdent) r.Fail(4, "ident " + Printable(data + 4, 4) + " is not \"ORY6\"");
  r.pos = 8;
  const std::uint32_t version = r.U32();
  if (version != kFormatVersion)
    r.Fail(8, "format version " + std::to_string(version) + " is not the version " +
                  std::to_string(kFormatVersion) + " that this reader reads");
  const std::uint32_t checksum = r.U32();
  const std::uint64_t length = r.U64();
  if (length != r.Remaining())
    r.Fail(16, "body length " + std::to_string(length) + " does not match the " +
                   std::to_string(r.Remaining()) + " bytes after the header" +
                   (length > r.Remaining() ? ": the file is truncated" : ""));
  const std::uint32_t actual = Checksum(data + kFrameHeaderBytes, r.Remaining());
  if (actual != checksum)
    r.Fail(12, "checksum " + Hex(checksum) + " does not match the body's " + Hex(actual) +
                   ": the file is damaged");
}

}  // namespace quillon::format
