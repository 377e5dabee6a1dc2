#pragma once
// The fonts installed on this system, looked up by PostScript name: the one operation the
// text export needs of a font catalogue. The system's font configuration (fontconfig) names
// the candidate files; each face's own `name` table confirms the PostScript name, and its
// `name` and `OS/2` tables give what the system's font enumeration would report of it.
#include <optional>
#include <string>

#include "plugin/platform/opentype_tables.h"

struct FontFace {
  std::string family;  // the family name (name id 1), UTF-8: "DejaVu Sans" for DejaVuSans-Bold
  FontStyle style;
};

// The installed face whose PostScript name (name id 6) is `postScriptName`; nothing when no
// such face is installed or its tables cannot be read.
std::optional<FontFace> FindFontByPostScriptName(const std::string& postScriptName);
