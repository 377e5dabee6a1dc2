// libFuzzer target for the readers of a font's name and OS/2 tables: any bytes, read as
// either table, give a name or a style or nothing, and never a read outside them.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "plugin/platform/opentype_tables.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  FindFontName(bytes, kNameIdPostScript);
  FindFontName(bytes, kNameIdFamily);
  ReadFontStyle(bytes);
  return 0;
}
