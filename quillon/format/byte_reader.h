#pragma once
// Reads little-endian primitives from a byte buffer that may be hostile: every read is
// checked against the bytes that remain, and every failure throws a FormatError that names
// the byte offset where the bad item starts.
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace quillon::format {

struct FormatError : std::runtime_error {
  FormatError(std::size_t offset, const std::string& problem);
  std::size_t offset;
};

struct ByteReader {
  ByteReader(const std::uint8_t* data, std::size_t size) : data(data), size(size) {}

  std::uint8_t U8();
  std::uint32_t U32();
  std::int32_t I32() { return static_cast<std::int32_t>(U32()); }
  std::uint64_t U64();
  std::int64_t I64() { return static_cast<std::int64_t>(U64()); }
  double F64();
  // A 32-bit byte count followed by the bytes; `what` names the item in an error.
  std::string String(const char* what);
  // A 32-bit count of UTF-16 units followed by the units.
  std::u16string String16(const char* what);
  // A 32-bit count of items that each take at least `minItemBytes` in the file. A count
  // that the remaining bytes cannot hold fails here, so that no caller ever reserves or
  // loops beyond what the file can justify.
  std::uint32_t Count(const char* what, std::size_t minItemBytes);

  std::size_t Offset() const { return pos; }
  std::size_t Remaining() const { return size - pos; }
  [[noreturn]] void Fail(std::size_t offset, const std::string& problem) const;

  const std::uint8_t* data;
  std::size_t size;
  std::size_t pos = 0;

 private:
  const std::uint8_t* Take(std::size_t n, const char* what);
};

}  // namespace quillon::format
