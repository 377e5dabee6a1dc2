#pragma once
// Appends little-endian primitives to a growing byte buffer. Scene files are always
// little-endian whatever the machine, so that a file moves between platforms unchanged.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quillon::format {

struct ByteWriter {
  std::vector<std::uint8_t> bytes;

  void U8(std::uint8_t v) { bytes.push_back(v); }
  void U32(std::uint32_t v);
  void I32(std::int32_t v) { U32(static_cast<std::uint32_t>(v)); }
  void U64(std::uint64_t v);
  void I64(std::int64_t v) { U64(static_cast<std::uint64_t>(v)); }
  void F64(double v);
  // A 32-bit byte count followed by the bytes.
  void String(const std::string& text);
  // A 32-bit count of UTF-16 units followed by the units, so that any text, even one
  // with a lone surrogate, comes back unit for unit.
  void String16(const std::u16string& text);
  void Raw(const void* data, std::size_t size);

  std::size_t Size() const { return bytes.size(); }
  // Overwrite bytes written earlier, for lengths and sums known only after the content.
  void PatchU32(std::size_t offset, std::uint32_t v);
  void PatchU64(std::size_t offset, std::uint64_t v);
};

}  // namespace quillon::format
