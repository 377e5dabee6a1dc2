#pragma once
// Texts across the host's interface: UTF-16 in and out, and the host memory handles in
// which the host hands texts over.
#include <string>
#include <string_view>

#include "plugin/host/suite_handler.h"

inline const A_UTF16Char* HostText(const std::u16string& text) {
  return reinterpret_cast<const A_UTF16Char*>(text.c_str());
}

// A UTF-8 text (which may hold \uXXXX escapes) as UTF-16 for the host.
std::u16string ToHostUtf16(std::string_view utf8);

// The zero-terminated UTF-16 text in `handle`; the handle is unlocked and freed. An error
// of the memory suite is returned, and `text` stays empty.
A_Err ReadUtf16Handle(SuiteHandler& suites, AEGP_MemHandle handle, std::u16string* text);
// The same for a zero-terminated UTF-8 text, such as a script's reply.
A_Err ReadUtf8Handle(SuiteHandler& suites, AEGP_MemHandle handle, std::string* text);
