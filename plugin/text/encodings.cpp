#include "plugin/text/encodings.h"

#include <array>
#include <cstdint>

namespace {

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Reads exactly four hex digits at `at`; -1 when they are not all there.
int ReadHex4(std::string_view s, size_t at) {
  if (at + 4 > s.size()) return -1;
  int value = 0;
  for (size_t i = 0; i < 4; ++i) {
    const int digit = HexValue(s[at + i]);
    if (digit < 0) return -1;
    value = value * 16 + digit;
  }
  return value;
}

void AppendHex4(std::string& out, char16_t unit) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  for (int shift = 12; shift >= 0; shift -= 4) out += kDigits[(unit >> shift) & 0xF];
}

// Decodes one UTF-8 character at `pos`, advancing it past what was consumed.
char16_t DecodeUtf8Unit(std::string_view s, size_t& pos) {
  const auto byte = [&](size_t i) { return static_cast<uint8_t>(s[i]); };
  const uint8_t first = byte(pos);
  const size_t left = s.size() - pos - 1;  // bytes behind the first
  if (first < 0x80) {
    ++pos;
    return first == 0 ? kUnrepresentable : first;
  }
  if (first < 0xC0) {
    ++pos;
    return kUnrepresentable;
  }
  if (first < 0xE0) {
    if (left < 1) {
      pos = s.size();
      return kUnrepresentable;
    }
    const char16_t unit = static_cast<char16_t>(((first & 0x1F) << 6) | (byte(pos + 1) & 0x3F));
    pos += 2;
    return unit == 0 ? kUnrepresentable : unit;
  }
  if (first < 0xF0) {
    if (left < 2) {
      pos = s.size();
      return kUnrepresentable;
    }
    const uint8_t b1 = byte(pos + 1), b2 = byte(pos + 2);
    pos += 3;
    if (first == 0xE2 && b1 == 0x80 && b2 == 0x93) return u'\n';
    return static_cast<char16_t>(((first & 0x0F) << 12) | ((b1 & 0x3F) << 6) | (b2 & 0x3F));
  }
  // Characters beyond 16 bits and the old five- and six-byte forms are skipped whole.
  const size_t trailing = first < 0xF8 ? 3 : first < 0xFC ? 4 : first < 0xFE ? 5 : 6;
  pos += 1 + (trailing < left ? trailing : left);
  return kUnrepresentable;
}

// The 32 characters that code page 1252 places at 0x80..0x9F; 0 where it has none.
constexpr std::array<char16_t, 32> kCp1252High = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char ToCp1252Byte(char16_t unit) {
  if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return static_cast<char>(unit);
  for (size_t i = 0; i < kCp1252High.size(); ++i) {
    if (kCp1252High[i] == unit) return static_cast<char>(0x80 + i);
  }
  return '?';
}

}  // namespace

std::u16string DecodeUtf8(std::string_view bytes) {
  std::u16string out;
  out.reserve(bytes.size());
  for (size_t pos = 0; pos < bytes.size();) out += DecodeUtf8Unit(bytes, pos);
  return out;
}

std::string EncodeUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char16_t unit : text) {
    if (unit < 0x80) {
      out += static_cast<char>(unit);
    } else if (unit < 0x800) {
      out += static_cast<char>(0xC0 | (unit >> 6));
      out += static_cast<char>(0x80 | (unit & 0x3F));
    } else {
      out += static_cast<char>(0xE0 | (unit >> 12));
      out += static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (unit & 0x3F));
    }
  }
  return out;
}

std::string EncodeText(std::u16string_view text, TextEncoding encoding) {
  if (encoding == kEncodingUtf8) return EncodeUtf8(text);
  std::string out;
  out.reserve(text.size());
  for (char16_t unit : text) {
    if (unit == 0 && encoding != kEncoding7Bit) {
      out += static_cast<char>(kUnrepresentable);
    } else if (unit < 0x80) {
      out += static_cast<char>(unit);
    } else if (encoding == kEncodingEscapes) {
      out += "\\u";
      AppendHex4(out, unit);
    } else if (encoding == kEncodingHtmlEscapes) {
      out += "&#x";
      AppendHex4(out, unit);
      out += ';';
    } else {
      out += static_cast<char>(kUnrepresentable);
    }
  }
  return out;
}

std::u16string DecodeEscapes(std::string_view bytes) {
  std::u16string out;
  out.reserve(bytes.size());
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] == '\\' && i + 1 < bytes.size() && bytes[i + 1] == 'u') {
      const int value = ReadHex4(bytes, i + 2);
      if (value >= 0) {
        out += static_cast<char16_t>(value);
        i += 5;
        continue;
      }
    }
    out += static_cast<char16_t>(static_cast<uint8_t>(bytes[i]));
  }
  return out;
}

std::u16string DecodeText(std::string_view bytes, TextEncoding encoding) {
  switch (encoding) {
    case kEncodingUtf8:
      return DecodeUtf8(bytes);
    case kEncodingDefault:
    case kEncodingEscapes:
      return DecodeEscapes(bytes);
    case kEncoding7Bit: {
      std::u16string out;
      for (char c : bytes) {
        const auto b = static_cast<uint8_t>(c);
        out += b >= 127 ? kUnrepresentable : static_cast<char16_t>(b);
      }
      return out;
    }
    case kEncodingHtmlEscapes: {
      std::u16string out;
      for (size_t i = 0; i < bytes.size(); ++i) {
        if (bytes.substr(i, 3) == "&#x" && i + 7 < bytes.size() && bytes[i + 7] == ';') {
          const int value = ReadHex4(bytes, i + 3);
          if (value >= 0) {
            out += static_cast<char16_t>(value);
            i += 7;
            continue;
          }
        }
        out += static_cast<char16_t>(static_cast<uint8_t>(bytes[i]));
      }
      return out;
    }
  }
  return DecodeEscapes(bytes);
}

std::string ToCodePage1252(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char16_t unit : text) out += ToCp1252Byte(unit);
  return out;
}
