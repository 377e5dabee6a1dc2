#include "quillon/format/byte_reader.h"

#include <bit>

namespace quillon::format {

FormatError::FormatError(std::size_t offset, const std::string& problem)
    : std::runtime_error("byte " + std::to_string(offset) + ": " + problem), offset(offset) {}

void ByteReader::Fail(std::size_t offset, const std::string& problem) const {
  throw FormatError(offset, problem);
}

const std::uint8_t* ByteReader::Take(std::size_t n, const char* what) {
  if (n > Remaining())
    Fail(pos, std::string("truncated ") + what + ": needs " + std::to_string(n) + " bytes, " +
                  std::to_string(Remaining()) + " remain");
  const std::uint8_t* p = data + pos;
  pos += n;
  return p;
}

std::uint8_t ByteReader::U8() { return *Take(1, "8-bit value"); }

std::uint32_t ByteReader::U32() {
  const std::uint8_t* p = Take(4, "32-bit value");
  std::uint32_t v = 0;
  for (int i = 3; i >= 0; --i) v = (v << 8) | p[i];
  return v;
}

std::uint64_t ByteReader::U64() {
  const std::uint8_t* p = Take(8, "64-bit value");
  std::uint64_t v = 0;
  for (int i = 7; i >= 0; --i) v = (v << 8) | p[i];
  return v;
}

double ByteReader::F64() { return std::bit_cast<double>(U64()); }

std::string ByteReader::String(const char* what) {
  const std::size_t start = pos;
  const std::uint32_t length = U32();
  if (length > Remaining())
    Fail(start, std::string(what) + " length " + std::to_string(length) + " exceeds the " +
                    std::to_string(Remaining()) + " bytes that remain");
  const auto* p = reinterpret_cast<const char*>(Take(length, what));
  return std::string(p, length);
}

std::u16string ByteReader::String16(const char* what) {
  const std::size_t start = pos;
  const std::uint32_t units = U32();
  if (units > Remaining() / 2)
    Fail(start, std::string(what) + " length " + std::to_string(units) + " units exceeds the " +
                    std::to_string(Remaining()) + " bytes that remain");
  const std::uint8_t* p = Take(std::size_t{units} * 2, what);
  std::u16string text(units, u'\0');
  for (std::uint32_t i = 0; i < units; ++i)
    text[i] = static_cast<char16_t>(p[2 * i] | (p[2 * i + 1] << 8));
  return text;
}

std::uint32_t ByteReader::Count(const char* what, std::size_t minItemBytes) {
  const std::size_t start = pos;
  const std::uint32_t count = U32();
  if (minItemBytes != 0 && count > Remaining() / minItemBytes)
    Fail(start, std::string(what) + " count " + std::to_string(count) + " needs at least " +
                    std::to_string(static_cast<std::uint64_t>(count) * minItemBytes) +
                    " bytes, " + std::to_string(Remaining()) + " remain");
  return count;
}

}  // namespace quillon::format
