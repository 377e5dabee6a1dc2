#include "plugin/text/script_literal.h"

namespace {

// The UTF-8 bytes of U+2028 and U+2029 differ only in their last byte.
constexpr std::string_view kSeparatorLead = "\xE2\x80";
constexpr unsigned char kLineSeparatorLast = 0xA8;
constexpr unsigned char kParagraphSeparatorLast = 0xA9;

bool IsSeparatorAt(std::string_view text, size_t i) {
  if (i + 2 >= text.size() || text.substr(i, 2) != kSeparatorLead) return false;
  const auto last = static_cast<unsigned char>(text[i + 2]);
  return last == kLineSeparatorLast || last == kParagraphSeparatorLast;
}

std::string ControlEscape(unsigned char byte) {
  static const char kHex[] = "0123456789abcdef";
  return std::string("\\u00") + kHex[byte >> 4] + kHex[byte & 0xF];
}

// The escape of one byte, or an empty text when it stands for itself.
std::string ByteEscape(char c, char quote) {
  switch (c) {
    case '\\': return "\\\\";
    case '\n': return "\\n";
    case '\r': return "\\r";
    case '\t': return "\\t";
    default: break;
  }
  if (c == quote) return std::string{'\\', quote};
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 ? ControlEscape(byte) : std::string();
}

}  // namespace

std::string ScriptLiteralText(std::string_view text, char quote) {
  std::string literal;
  literal.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (IsSeparatorAt(text, i)) {
      literal += static_cast<unsigned char>(text[i + 2]) == kLineSeparatorLast ? "\\u2028" : "\\u2029";
      i += 2;
      continue;
    }
    const std::string escape = ByteEscape(text[i], quote);
    literal += escape.empty() ? std::string(1, text[i]) : escape;
  }
  return literal;
}
