#include "plugin/platform/opentype_tables.h"

#include "plugin/text/encodings.h"

namespace {

constexpr uint16_t kPlatformMacintosh = 1;
constexpr uint16_t kPlatformWindows = 3;
constexpr int32_t kDefaultCharSet = 1;

// A big-endian number at `offset`, or nothing past the end.
std::optional<uint32_t> ReadBigEndian(std::string_view bytes, std::size_t offset, std::size_t size) {
  if (offset > bytes.size() || bytes.size() - offset < size) return std::nullopt;
  uint32_t value = 0;
  for (std::size_t i = 0; i < size; ++i) value = (value << 8) | static_cast<unsigned char>(bytes[offset + i]);
  return value;
}

std::optional<uint16_t> U16(std::string_view bytes, std::size_t offset) {
  const auto value = ReadBigEndian(bytes, offset, 2);
  return value ? std::optional<uint16_t>(static_cast<uint16_t>(*value)) : std::nullopt;
}

std::string DecodeName(std::string_view raw, uint16_t platform) {
  std::u16string units;
  if (platform == kPlatformWindows) {
    for (std::size_t i = 0; i + 1 < raw.size(); i += 2) {
      units.push_back(static_cast<char16_t>((static_cast<unsigned char>(raw[i]) << 8) |
                                            static_cast<unsigned char>(raw[i + 1])));
    }
  } else {
    for (const char c : raw) units.push_back(static_cast<char16_t>(static_cast<unsigned char>(c)));
  }
  return EncodeUtf8(units);
}

// Code page bits of ulCodePageRange1 and the character set the system lists them under.
struct CodePageCharSet {
  int bit;
  int32_t charSet;
};
constexpr CodePageCharSet kCodePageCharSets[] = {
    {0, 0},     // Latin 1: ANSI
    {1, 238},   // Latin 2: Eastern Europe
    {2, 204},   // Cyrillic: Russian
    {3, 161},   // Greek
    {4, 162},   // Turkish
    {5, 177},   // Hebrew
    {6, 178},   // Arabic
    {7, 186},   // Baltic
    {8, 163},   // Vietnamese
    {16, 222},  // Thai
    {17, 128},  // Japanese: Shift JIS
    {18, 134},  // Simplified Chinese: GB 2312
    {19, 129},  // Korean: Hangul
    {20, 136},  // Traditional Chinese: Big5
    {21, 130},  // Korean: Johab
    {31, 2},    // Symbol
};

}  // namespace

std::optional<std::string> FindFontName(std::string_view nameTable, uint16_t nameId) {
  const auto count = U16(nameTable, 2);
  const auto storage = U16(nameTable, 4);
  if (!count || !storage) return std::nullopt;
  for (std::size_t i = 0; i < *count; ++i) {
    const std::size_t record = 6 + 12 * i;
    const auto platform = U16(nameTable, record);
    const auto id = U16(nameTable, record + 6);
    const auto length = U16(nameTable, record + 8);
    const auto offset = U16(nameTable, record + 10);
    if (!platform || !id || !length || !offset) return std::nullopt;
    if (*id != nameId || (*platform != kPlatformWindows && *platform != kPlatformMacintosh)) continue;
    const std::size_t start = std::size_t{*storage} + *offset;
    if (start > nameTable.size() || nameTable.size() - start < *length) return std::nullopt;
    return DecodeName(nameTable.substr(start, *length), *platform);
  }
  return std::nullopt;
}

std::optional<FontStyle> ReadFontStyle(std::string_view os2Table) {
  const auto version = U16(os2Table, 0);
  const auto weight = U16(os2Table, 4);
  const auto selection = U16(os2Table, 62);
  if (!version || !weight || !selection) return std::nullopt;
  FontStyle style;
  style.weight = *weight;
  style.italic = (*selection & 1u) != 0;
  const auto codePages = *version >= 1 ? ReadBigEndian(os2Table, 78, 4) : std::nullopt;
  style.charSet = codePages ? CharSetOfCodePages(*codePages) : kDefaultCharSet;
  return style;
}

int32_t CharSetOfCodePages(uint32_t codePageRange1) {
  for (const CodePageCharSet& entry : kCodePageCharSets) {
    if (codePageRange1 & (uint32_t{1} << entry.bit)) return entry.charSet;
  }
  return kDefaultCharSet;
}
