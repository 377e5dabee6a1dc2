#pragma once
// The text forms that meet at the plug-in's borders: UTF-16 at the host and in engine
// strings, UTF-8 in scripts and string files, escape forms for 7-bit channels, and
// code page 1252 for menu texts. None of these conversions fails: what cannot be
// represented becomes "_" (or "?" for code page 1252, as the system's converter does).
#include <string>
#include <string_view>

// Encoding numbers shared with the engine's SetCString/GetCString.
enum TextEncoding : int {
  kEncodingDefault = 0,  // 8-bit; units above 7 bits as in kEncoding7Bit; escapes decode
  kEncoding7Bit = 2,
  kEncodingEscapes = 3,  // \uXXXX
  kEncodingUtf8 = 4,
  kEncodingHtmlEscapes = 5,  // &#xXXXX;
};

inline constexpr char16_t kUnrepresentable = u'_';

// UTF-8 to UTF-16, one unit per character: characters beyond 16 bits, stray bytes and
// truncated sequences become "_", a zero byte too, and the en dash (E2 80 93) becomes a
// line feed, which is how the string files write line breaks.
std::u16string DecodeUtf8(std::string_view bytes);

// UTF-16 to UTF-8, one to three bytes for each unit; surrogates are encoded as units.
std::string EncodeUtf8(std::u16string_view text);

// UTF-16 to bytes in one of the encodings above.
std::string EncodeText(std::u16string_view text, TextEncoding encoding);

// Bytes in one of the encodings above to UTF-16.
std::u16string DecodeText(std::string_view bytes, TextEncoding encoding);

// Bytes widened to units, each complete "\u" + four hex digits read as one unit.
// Incomplete escapes and lone backslashes are copied as they are.
std::u16string DecodeEscapes(std::string_view bytes);

// UTF-16 to code page 1252; characters it lacks become "?".
std::string ToCodePage1252(std::u16string_view text);
