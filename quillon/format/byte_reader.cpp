#include "quillon/format/byte_reader.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace quillon::format {

FormatError::FormatError(std::size_t offset, const std::string& problem)
    : std::runtime_error("byte " + std::to_string(offset) + ": " + problem), offset(offset) {}

ByteReader::ByteReader(const std::uint8_t* data, std::size_t size, std::size_t start)
    : begin_(data), cur_(data + std::min(start, size)), end_(data + size), size_(size) {}

ByteReader::ByteReader(ByteSource& source, std::size_t size, std::size_t start)
    : source_(&source), buffer_(kBufferBytes), begin_(buffer_.data()), cur_(begin_), end_(begin_), base_(start),
      size_(std::max(size, start)) {}

void ByteReader::Fail(std::size_t offset, const std::string& problem) const {
  throw FormatError(offset, problem);
}

void ByteReader::CheckRemaining(std::size_t n, const char* what) const {
  if (n > Remaining())
    Fail(Offset(), std::string("truncated ") + what + ": needs " + std::to_string(n) + " bytes, " +
                       std::to_string(Remaining()) + " remain");
}

void ByteReader::Refill(std::size_t n, const char* what) {
  CheckRemaining(n, what);
  // In memory every remaining byte is at hand already; a source moves what is left of the
  // window to the front of the buffer and fills up behind it.
  const auto kept = static_cast<std::size_t>(end_ - cur_);
  std::memmove(buffer_.data(), cur_, kept);
  base_ = Offset();
  begin_ = buffer_.data();
  cur_ = begin_;
  end_ = begin_ + kept;
  while (static_cast<std::size_t>(end_ - cur_) < n) {
    const auto filled = static_cast<std::size_t>(end_ - begin_);
    const std::size_t wanted = std::min(buffer_.size() - filled, Remaining() - filled);
    const std::size_t got = source_->Read(buffer_.data() + filled, wanted);
    if (got == 0) Fail(base_ + filled, "the file ends here, shorter than when its reading began");
    end_ += got;
  }
}

namespace {

std::uint32_t LittleEndian32(const std::uint8_t* p) {
  std::uint32_t v = 0;
  for (int i = 3; i >= 0; --i) v = (v << 8) | p[i];
  return v;
}

}  // namespace

std::uint32_t ByteReader::U32() { return LittleEndian32(Take(4, "32-bit value")); }
std::uint32_t ByteReader::PeekU32() { return LittleEndian32(Peek(4, "32-bit value")); }

std::uint64_t ByteReader::U64() {
  const std::uint8_t* p = Take(8, "64-bit value");
  std::uint64_t v = 0;
  for (int i = 7; i >= 0; --i) v = (v << 8) | p[i];
  return v;
}

double ByteReader::F64() { return std::bit_cast<double>(U64()); }

void ByteReader::Bytes(void* into, std::size_t size, const char* what) {
  CheckRemaining(size, what);
  auto* out = static_cast<std::uint8_t*>(into);
  const std::size_t atHand = std::min(size, static_cast<std::size_t>(end_ - cur_));
  if (atHand > 0) std::memcpy(out, cur_, atHand);
  cur_ += atHand;
  // The rest comes straight from the source, past the buffer.
  for (std::size_t done = atHand; done < size;) {
    const std::size_t got = source_->Read(out + done, size - done);
    if (got == 0) Fail(Offset(), "the file ends here, shorter than when its reading began");
    done += got;
    base_ += got;
  }
}

std::string ByteReader::String(const char* what) {
  const std::size_t start = Offset();
  const std::uint32_t length = U32();
  if (length > Remaining())
    Fail(start, std::string(what) + " length " + std::to_string(length) + " exceeds the " +
                    std::to_string(Remaining()) + " bytes that remain");
  std::string text(length, '\0');
  Bytes(text.data(), length, what);
  return text;
}

std::u16string ByteReader::String16(const char* what) {
  const std::size_t start = Offset();
  const std::uint32_t units = U32();
  if (units > Remaining() / 2)
    Fail(start, std::string(what) + " length " + std::to_string(units) + " units exceeds the " +
                    std::to_string(Remaining()) + " bytes that remain");
  std::u16string text(units, u'\0');
  // In pieces that the buffer holds.
  constexpr std::uint32_t kPieceUnits = 4096;
  for (std::uint32_t at = 0; at < units; at += kPieceUnits) {
    const std::uint32_t n = std::min(kPieceUnits, units - at);
    const std::uint8_t* p = Take(std::size_t{n} * 2, what);
    for (std::uint32_t i = 0; i < n; ++i) text[at + i] = static_cast<char16_t>(p[2 * i] | (p[2 * i + 1] << 8));
  }
  return text;
}

std::uint32_t ByteReader::Count(const char* what, std::size_t minItemBytes) {
  const std::size_t start = Offset();
  const std::uint32_t count = U32();
  if (minItemBytes != 0 && count > Remaining() / minItemBytes)
    Fail(start, std::string(what) + " count " + std::to_string(count) + " needs at least " +
                    std::to_string(static_cast<std::uint64_t>(count) * minItemBytes) +
                    " bytes, " + std::to_string(Remaining()) + " remain");
  return count;
}

}  // namespace quillon::format
