#include "quillon/format/byte_writer.h"

#include <bit>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace quillon::format {

// Whole values are appended at once: one capacity check instead of one a byte.
void ByteWriter::Put(const void* data, std::size_t size) {
  const auto* p = static_cast<const std::uint8_t*>(data);
  bytes.insert(bytes.end(), p, p + size);
  if (sink && bytes.size() >= kBufferBytes) Flush();
}

void ByteWriter::U32(std::uint32_t v) {
  std::uint8_t le[4];
  std::uint8_t* end = le;
  StoreLittleEndian(end, v);
  Put(le, 4);
}

void ByteWriter::U64(std::uint64_t v) {
  std::uint8_t le[8];
  std::uint8_t* end = le;
  StoreLittleEndian(end, v);
  Put(le, 8);
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
  // In pieces, so that a long text passes through a bounded buffer.
  std::uint8_t piece[512];
  for (std::size_t at = 0; at < text.size();) {
    std::size_t n = 0;
    for (; n < sizeof piece && at < text.size(); n += 2, ++at) {
      piece[n] = static_cast<std::uint8_t>(text[at]);
      piece[n + 1] = static_cast<std::uint8_t>(text[at] >> 8);
    }
    Put(piece, n);
  }
}

void ByteWriter::Raw(const void* data, std::size_t size) {
  if (!sink || size < kBufferBytes) {
    Put(data, size);
    return;
  }
  // A block as large as the buffer goes to the sink as it is instead of through the buffer.
  Flush();
  sink->Append(static_cast<const std::uint8_t*>(data), size);
  handed += size;
}

void ByteWriter::Flush() {
  if (!sink || bytes.empty()) return;
  handed += bytes.size();
  sink->Hand(bytes);
}

void ByteWriter::Patch(std::uint64_t offset, const std::uint8_t* le, std::size_t size) {
  if (offset + size > Size()) throw std::out_of_range("patch beyond the bytes written");
  if (offset >= handed) {
    std::memcpy(bytes.data() + (offset - handed), le, size);
    return;
  }
  // Bytes already handed over: the sink rewrites them once it holds everything before the end.
  Flush();
  sink->Rewrite(offset, le, size);
}

void ByteWriter::PatchU32(std::uint64_t offset, std::uint32_t v) {
  std::uint8_t le[4];
  std::uint8_t* end = le;
  StoreLittleEndian(end, v);
  Patch(offset, le, 4);
}

void ByteWriter::PatchU64(std::uint64_t offset, std::uint64_t v) {
  std::uint8_t le[8];
  std::uint8_t* end = le;
  StoreLittleEndian(end, v);
  Patch(offset, le, 8);
}

}  // namespace quillon::format
