#include "plugin/platform/font_catalog.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H
#include FT_TRUETYPE_TAGS_H

#include <memory>
#include <vector>

namespace {

// A face file of the catalogue and the index of the face in it.
struct FaceFile {
  std::string path;
  int index = 0;
};

// The files fontconfig lists under the PostScript name. A configuration of its own is loaded
// for each look-up and freed after it, so that the plug-in holds nothing between two calls.
std::vector<FaceFile> CandidateFiles(const std::string& postScriptName) {
  std::vector<FaceFile> files;
  FcConfig* config = FcInitLoadConfigAndFonts();
  if (!config) return files;
  FcPattern* pattern = FcPatternCreate();
  FcPatternAddString(pattern, FC_POSTSCRIPT_NAME, reinterpret_cast<const FcChar8*>(postScriptName.c_str()));
  FcObjectSet* objects = FcObjectSetBuild(FC_FILE, FC_INDEX, nullptr);
  FcFontSet* found = pattern && objects ? FcFontList(config, pattern, objects) : nullptr;
  for (int i = 0; found && i < found->nfont; ++i) {
    FcChar8* file = nullptr;
    int index = 0;
    if (FcPatternGetString(found->fonts[i], FC_FILE, 0, &file) != FcResultMatch) continue;
    FcPatternGetInteger(found->fonts[i], FC_INDEX, 0, &index);
    files.push_back({reinterpret_cast<const char*>(file), index});
  }
  if (found) FcFontSetDestroy(found);
  if (objects) FcObjectSetDestroy(objects);
  if (pattern) FcPatternDestroy(pattern);
  FcConfigDestroy(config);
  return files;
}

// The bytes of one table of a face; empty when the face has none.
std::string TableOf(FT_Face face, FT_ULong tag) {
  FT_ULong length = 0;
  if (FT_Load_Sfnt_Table(face, tag, 0, nullptr, &length) != 0 || length == 0) return {};
  std::string bytes(length, '\0');
  if (FT_Load_Sfnt_Table(face, tag, 0, reinterpret_cast<FT_Byte*>(bytes.data()), &length) != 0) return {};
  return bytes;
}

std::optional<FontFace> ReadFace(FT_Library library, const FaceFile& file, const std::string& postScriptName) {
  FT_Face face = nullptr;
  if (FT_New_Face(library, file.path.c_str(), file.index, &face) != 0) return std::nullopt;
  const std::string names = TableOf(face, TTAG_name);
  const std::string os2 = TableOf(face, TTAG_OS2);
  FT_Done_Face(face);
  if (FindFontName(names, kNameIdPostScript) != postScriptName) return std::nullopt;
  const std::optional<std::string> family = FindFontName(names, kNameIdFamily);
  const std::optional<FontStyle> style = ReadFontStyle(os2);
  if (!family || !style) return std::nullopt;
  return FontFace{*family, *style};
}

}  // namespace

std::optional<FontFace> FindFontByPostScriptName(const std::string& postScriptName) {
  if (postScriptName.empty()) return std::nullopt;
  const std::vector<FaceFile> files = CandidateFiles(postScriptName);
  if (files.empty()) return std::nullopt;
  FT_Library library = nullptr;
  if (FT_Init_FreeType(&library) != 0) return std::nullopt;
  std::optional<FontFace> found;
  for (std::size_t i = 0; i < files.size() && !found; ++i) found = ReadFace(library, files[i], postScriptName);
  FT_Done_FreeType(library);
  return found;
}
