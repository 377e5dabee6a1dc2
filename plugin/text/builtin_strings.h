#pragma once
// The English texts compiled into the plug-in, used when the string file or a key in
// it is missing, so that the plug-in always has something to say.
#include <cstdint>

inline constexpr int32_t kBuiltinStringCount = 128;

struct BuiltinString {
  int32_t id;
  const char* text;  // UTF-8; empty for records of sibling modules
};

// The record at `position` (not looked up by its id field); null outside the table.
const BuiltinString* BuiltinStringAt(int32_t position);
