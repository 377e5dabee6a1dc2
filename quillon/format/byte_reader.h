#pragma once
// Reads little-endian primitives from bytes that may be hostile: every read is checked
// against the bytes that remain, and every failure throws a FormatError that names the byte
// offset where the bad item starts. The bytes are either all in memory, or come from a
// source (a file) through a buffer of bounded size, so that a file of any size is read
// without being held whole.
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillon::format {

struct FormatError : std::runtime_error {
  FormatError(std::size_t offset, const std::string& problem);
  std::size_t offset;
};

// Where a streaming reader's bytes come from: the next bytes in order, up to `size` of them
// into `into`; 0 only at the end.
struct ByteSource {
  virtual ~ByteSource() = default;
  virtual std::size_t Read(std::uint8_t* into, std::size_t size) = 0;
};

class ByteReader {
 public:
  // The bytes from `start` up to `size`, all in `data`; offsets count from `data`.
  ByteReader(const std::uint8_t* data, std::size_t size, std::size_t start = 0);
  // The bytes from `start` up to `size` of a file, which `source` gives from `start` on.
  ByteReader(ByteSource& source, std::size_t size, std::size_t start);
  ByteReader(const ByteReader&) = delete;
  ByteReader& operator=(const ByteReader&) = delete;

  // The buffer of a streaming reader holds this much.
  static constexpr std::size_t kBufferBytes = std::size_t{1} << 20;

  std::uint8_t U8() { return *Take(1, "8-bit value"); }
  // The next byte or 32-bit value, left to be read again.
  std::uint8_t PeekU8() { return *Peek(1, "8-bit value"); }
  std::uint32_t PeekU32();
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
  // The next `size` bytes into `into`.
  void Bytes(void* into, std::size_t size, const char* what);
  // The next `size` bytes where they are at hand already, else null; for a record that is read
  // at once in the common case. Skip then moves past them.
  const std::uint8_t* AtHand(std::size_t size) const {
    return static_cast<std::size_t>(end_ - cur_) >= size ? cur_ : nullptr;
  }
  void Skip(std::size_t size) { Take(size, "record"); }

  std::size_t Offset() const { return base_ + static_cast<std::size_t>(cur_ - begin_); }
  std::size_t Remaining() const { return size_ - Offset(); }
  [[noreturn]] void Fail(std::size_t offset, const std::string& problem) const;

 private:
  const std::uint8_t* Peek(std::size_t n, const char* what) {
    if (static_cast<std::size_t>(end_ - cur_) < n) Refill(n, what);
    return cur_;
  }
  const std::uint8_t* Take(std::size_t n, const char* what) {
    const std::uint8_t* p = Peek(n, what);
    cur_ += n;
    return p;
  }
  // Makes at least n bytes stand behind cur_, or fails as truncated.
  void Refill(std::size_t n, const char* what);
  void CheckRemaining(std::size_t n, const char* what) const;

  ByteSource* source_ = nullptr;
  std::vector<std::uint8_t> buffer_;
  // The window of bytes at hand: begin_ stands at offset base_, cur_ is the next byte.
  const std::uint8_t* begin_;
  const std::uint8_t* cur_;
  const std::uint8_t* end_;
  std::size_t base_ = 0;
  std::size_t size_;
};

}  // namespace quillon::format
