// Text at the suites' boundary: the plug-in speaks UTF-16 and code page 1252,
// the host's model UTF-8.
#pragma once

#include <string>

#include "sdk/ae_types.h"

namespace aehost {

std::u16string Utf8ToUtf16(const std::string& text);
std::string Utf16ToUtf8(const std::u16string& text);
// Reads a zero-terminated UTF-16 text; null gives "".
std::string Utf16zToUtf8(const A_UTF16Char* text);
// Code page 1252 (menu texts, flavor names) to UTF-8.
std::string Cp1252ToUtf8(const std::string& text);

}  // namespace aehost
