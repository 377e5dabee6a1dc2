#pragma once
// Appends little-endian primitives to a byte buffer. Scene files are always little-endian
// whatever the machine, so that a file moves between platforms unchanged. Without a sink the
// buffer grows to hold everything written; with one, the buffer is handed to the sink each
// time it fills, so that a file of any size is written through a buffer of bounded size.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quillon::format {

// Stores the little-endian bytes of a whole number at `at` and moves `at` past them.
template <typename Word>
void StoreLittleEndian(std::uint8_t*& at, Word v) {
  for (std::size_t i = 0; i < sizeof(Word); ++i) *at++ = static_cast<std::uint8_t>(v >> (8 * i));
}

// Where a writer's bytes go once its buffer is full: the bytes in order, and rewrites of
// bytes handed over before. A sink that fails throws.
struct ByteSink {
  virtual ~ByteSink() = default;
  virtual void Append(const std::uint8_t* data, std::size_t size) = 0;
  // The writer's full buffer, which comes back empty: a sink that works on its own thread
  // keeps the bytes and gives another buffer instead of making the writer wait for them.
  virtual void Hand(std::vector<std::uint8_t>& buffer) {
    Append(buffer.data(), buffer.size());
    buffer.clear();
  }
  // Only bytes that were written as zeros are rewritten, and only at the end of a file.
  virtual void Rewrite(std::uint64_t offset, const std::uint8_t* data, std::size_t size) = 0;
};

struct ByteWriter {
  // The buffer holds about this much before a writer with a sink hands it over.
  static constexpr std::size_t kBufferBytes = std::size_t{1} << 20;

  // What is not yet handed to the sink: without a sink, everything written.
  std::vector<std::uint8_t> bytes;
  ByteSink* sink = nullptr;
  // How many bytes went to the sink before those in `bytes`.
  std::uint64_t handed = 0;

  void U8(std::uint8_t v) { Put(&v, 1); }
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

  // Bytes written so far, handed over or not.
  std::uint64_t Size() const { return handed + bytes.size(); }
  // Overwrite bytes written earlier, for lengths and sums known only after the content.
  void PatchU32(std::uint64_t offset, std::uint32_t v);
  void PatchU64(std::uint64_t offset, std::uint64_t v);
  // Hands the buffer to the sink; without a sink nothing happens.
  void Flush();

 private:
  void Put(const void* data, std::size_t size);
  void Patch(std::uint64_t offset, const std::uint8_t* le, std::size_t size);
};

}  // namespace quillon::format
