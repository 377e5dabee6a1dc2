#include "quillon/format/byte_writer.h"

#include <bit>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace quillon::format {

// Whole values are appended at once: one capacity check instead of one a byte.
void ByteWriter::U32(std::uint32_t v) {
  std::uint8_t le[4];
  for (int i = 0; i < 4; ++i) le[i] = static_cast<std::uint8_t>(v >> (8 * i));
  bytes.insert(bytes.end(), le, le + 4);
}

void ByteWriter::U64(std::uint64_t v) {
  std::uint8_t le[8];
  for (int i = 0; i < 8; ++i) le[i] = static_cast<std::uint8_t>(v >> (8 * i));
  bytes.insert(bytes.end(), le, le + 8);
}

void ByteWriter::F64(double v) { U64(std::bit_cast<std::uint64_t>(v)); }

void ByteWriter::String(const std::string& text) {
  if (text.size() > std::numeric_limits<std::uint32_t>::max())
    throw std::length_error("text of more than 4 GiB cannot be written");
  U32(static_cast<std::uint32_t>(text.size()));
  Raw(text.data(), text.size());
}

void ByteWriter::String16(const std::u16string& text) {
  if (text.size() > std::numeric_limits<std::uint32_t>::max() / 2)
    throw std::length_error("text of more than 2 G units cannot be written");
  U32(static_cast<std::uint32_t>(text.size()));
  for (char16_t unit : text) {
    bytes.push_back(static_cast<std::uint8_t>(unit));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
  }
}

void ByteWriter::Raw(const void* data, std::size_t size) {
  const auto* p = static_cast<const std::uint8_t*>(data);
  bytes.insert(bytes.end(), p, p + size);
}

void ByteWriter::PatchU32(std::size_t offset, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) bytes.at(offset + i) = static_cast<std::uint8_t>(v >> (8 * i));
}

void ByteWriter::PatchU64(std::size_t offset, std::uint64_t v) {
  for (int i = 0; i < 8; ++i) bytes.at(offset + i) = static_cast<std::uint8_t>(v >> (8 * i));
}

}  // namespace quillon::format
