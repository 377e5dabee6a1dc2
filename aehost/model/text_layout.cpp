#include "aehost/model/text_layout.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <map>
#include <memory>

namespace aehost {

namespace {

constexpr double kLeading = 1.2;  // baseline to baseline, in sizes

struct FontFile {
  std::string path;
  int index = 0;
};

void ReadFontFile(FcPattern* face, FontFile* file) {
  FcChar8* path = nullptr;
  if (FcPatternGetString(face, FC_FILE, 0, &path) != FcResultMatch) return;
  file->path = reinterpret_cast<const char*>(path);
  FcPatternGetInteger(face, FC_INDEX, 0, &file->index);
}

FontFile InstalledFace(FcConfig* config, const std::string& postScriptName) {
  FontFile file;
  FcPattern* pattern = FcPatternCreate();
  FcObjectSet* objects = FcObjectSetBuild(FC_FILE, FC_INDEX, nullptr);
  if (pattern) FcPatternAddString(pattern, FC_POSTSCRIPT_NAME, reinterpret_cast<const FcChar8*>(postScriptName.c_str()));
  if (FcFontSet* list = pattern && objects ? FcFontList(config, pattern, objects) : nullptr) {
    if (list->nfont > 0) ReadFontFile(list->fonts[0], &file);
    FcFontSetDestroy(list);
  }
  if (objects) FcObjectSetDestroy(objects);
  if (pattern) FcPatternDestroy(pattern);
  return file;
}

// The face the system's font configuration shows when nothing is asked for.
FontFile DefaultFace(FcConfig* config) {
  FontFile file;
  FcPattern* pattern = FcPatternCreate();
  if (!pattern) return file;
  FcConfigSubstitute(config, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultNoMatch;
  if (FcPattern* match = FcFontMatch(config, pattern, &result)) {
    ReadFontFile(match, &file);
    FcPatternDestroy(match);
  }
  FcPatternDestroy(pattern);
  return file;
}

// The file of the face with this PostScript name, or, as the host shows text whose font is
// missing, of the default face. Asked once a name, since the font configuration is slow to
// load and a layout is asked for at every frame of an export. Each look-up loads a
// configuration of its own and frees it, since the library's shared default one is never
// given back and would show as a leak at every exit.
const FontFile* FindFontFile(const std::string& postScriptName) {
  static std::map<std::string, FontFile> found;
  if (auto it = found.find(postScriptName); it != found.end()) return it->second.path.empty() ? nullptr : &it->second;
  FontFile file;
  if (FcConfig* config = FcInitLoadConfigAndFonts()) {
    file = InstalledFace(config, postScriptName);
    if (file.path.empty()) file = DefaultFace(config);
    FcConfigDestroy(config);
  }
  const FontFile& kept = found[postScriptName] = file;
  return kept.path.empty() ? nullptr : &kept;
}

// The characters of UTF-8 text with their code points; false when it is not UTF-8.
bool SplitCharacters(const std::string& text, std::vector<std::pair<std::string, char32_t>>* out) {
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0x80 ? 1 : (lead >> 5) == 6 ? 2 : (lead >> 4) == 14 ? 3 : (lead >> 3) == 30 ? 4 : 0;
    if (length == 0 || i + length > text.size()) return false;
    char32_t code = length == 1 ? lead : lead & (0x7F >> length);
    for (std::size_t k = 1; k < length; ++k) {
      const auto next = static_cast<unsigned char>(text[i + k]);
      if ((next >> 6) != 2) return false;
      code = (code << 6) | (next & 0x3F);
    }
    out->emplace_back(text.substr(i, length), code);
    i += length;
  }
  return true;
}

// Collects a glyph outline as closed contours of Bezier vertices, scaled from font units and
// with y turned down.
struct OutlineSink {
  double scaleX = 1.0;
  double scaleY = 1.0;
  std::vector<PathShape> contours;

  void Point(const FT_Vector* p, double* x, double* y) const {
    *x = static_cast<double>(p->x) * scaleX;
    *y = -static_cast<double>(p->y) * scaleY;
  }
  PathVertex& Last() { return contours.back().vertices.back(); }

  void Start(const FT_Vector* to) {
    contours.emplace_back();
    PathVertex v;
    Point(to, &v.x, &v.y);
    contours.back().vertices.push_back(v);
  }
  void Cubic(double c1x, double c1y, double c2x, double c2y, const FT_Vector* to) {
    PathVertex& from = Last();
    from.outX = c1x - from.x;
    from.outY = c1y - from.y;
    PathVertex v;
    Point(to, &v.x, &v.y);
    v.inX = c2x - v.x;
    v.inY = c2y - v.y;
    contours.back().vertices.push_back(v);
  }
  // FreeType ends every contour with a segment back to its start: that vertex is the first.
  void CloseLast() {
    if (contours.empty()) return;
    std::vector<PathVertex>& vertices = contours.back().vertices;
    if (vertices.size() > 1 && vertices.back().x == vertices.front().x && vertices.back().y == vertices.front().y) {
      vertices.front().inX = vertices.back().inX;
      vertices.front().inY = vertices.back().inY;
      vertices.pop_back();
    }
  }
};

OutlineSink* Sink(void* user) { return static_cast<OutlineSink*>(user); }

int MoveTo(const FT_Vector* to, void* user) {
  Sink(user)->CloseLast();
  Sink(user)->Start(to);
  return 0;
}

int LineTo(const FT_Vector* to, void* user) {
  OutlineSink* sink = Sink(user);
  const PathVertex& from = sink->Last();
  double x = 0.0, y = 0.0;
  sink->Point(to, &x, &y);
  sink->Cubic(from.x, from.y, x, y, to);
  return 0;
}

// A quadratic curve is the cubic whose handles lie two thirds of the way to its control point.
int ConicTo(const FT_Vector* control, const FT_Vector* to, void* user) {
  OutlineSink* sink = Sink(user);
  const PathVertex& from = sink->Last();
  double cx = 0.0, cy = 0.0, x = 0.0, y = 0.0;
  sink->Point(control, &cx, &cy);
  sink->Point(to, &x, &y);
  sink->Cubic(from.x + 2.0 / 3.0 * (cx - from.x), from.y + 2.0 / 3.0 * (cy - from.y), x + 2.0 / 3.0 * (cx - x),
              y + 2.0 / 3.0 * (cy - y), to);
  return 0;
}

int CubicTo(const FT_Vector* control1, const FT_Vector* control2, const FT_Vector* to, void* user) {
  OutlineSink* sink = Sink(user);
  double c1x = 0.0, c1y = 0.0, c2x = 0.0, c2y = 0.0;
  sink->Point(control1, &c1x, &c1y);
  sink->Point(control2, &c2x, &c2y);
  sink->Cubic(c1x, c1y, c2x, c2y, to);
  return 0;
}

struct FaceCloser {
  void operator()(FT_Face face) const { FT_Done_Face(face); }
};
struct LibraryCloser {
  void operator()(FT_Library library) const { FT_Done_FreeType(library); }
};

struct Glyph {
  std::vector<PathShape> contours;
  double advance = 0.0;  // pixels
};

bool LoadGlyph(FT_Face face, char32_t code, double scaleX, double scaleY, Glyph* glyph) {
  if (FT_Load_Glyph(face, FT_Get_Char_Index(face, code), FT_LOAD_NO_SCALE) != 0) return false;
  glyph->advance = static_cast<double>(face->glyph->advance.x) * scaleX;
  if (face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) return true;
  static const FT_Outline_Funcs funcs = {MoveTo, LineTo, ConicTo, CubicTo, 0, 0};
  OutlineSink sink{scaleX, scaleY, {}};
  if (FT_Outline_Decompose(&face->glyph->outline, &funcs, &sink) != 0) return false;
  sink.CloseLast();
  glyph->contours = std::move(sink.contours);
  return true;
}

// Shifts each line of characters [begin, end) by the justification, from a left start.
void Justify(Justification justification, double width, std::vector<LaidOutCharacter>& characters,
             std::size_t begin) {
  double shift = 0.0;
  switch (justification) {
    case Justification::Right:
    case Justification::FullLastLineRight: shift = -width; break;
    case Justification::Center:
    case Justification::FullLastLineCenter: shift = -width / 2.0; break;
    default: break;
  }
  for (std::size_t i = begin; i < characters.size(); ++i) characters[i].originX += shift;
}

}  // namespace

bool LayOutText(const TextDocument& document, std::vector<LaidOutCharacter>* characters, std::string* error) {
  characters->clear();
  std::vector<std::pair<std::string, char32_t>> codes;
  if (!SplitCharacters(document.text, &codes)) {
    *error = "the text is not UTF-8";
    return false;
  }
  const FontFile* file = FindFontFile(document.font);
  if (!file) {
    *error = "neither the font \"" + document.font + "\" nor a default font is installed";
    return false;
  }
  FT_Library rawLibrary = nullptr;
  FT_Face rawFace = nullptr;
  if (FT_Init_FreeType(&rawLibrary) != 0) {
    *error = "the font library cannot start";
    return false;
  }
  std::unique_ptr<FT_LibraryRec_, LibraryCloser> library(rawLibrary);
  if (FT_New_Face(rawLibrary, file->path.c_str(), file->index, &rawFace) != 0 || rawFace->units_per_EM == 0) {
    if (rawFace) FT_Done_Face(rawFace);
    *error = "the font file " + file->path + " of \"" + document.font + "\" cannot be read";
    return false;
  }
  std::unique_ptr<FT_FaceRec_, FaceCloser> face(rawFace);
  const double perUnit = document.fontSize / rawFace->units_per_EM;
  const double tracking = document.tracking / 1000.0 * document.fontSize;
  double x = 0.0, y = 0.0;
  std::size_t lineStart = 0;
  for (const auto& [text, code] : codes) {
    if (text == "\r") {
      characters->push_back(LaidOutCharacter{text, x, y, {}});
      Justify(document.justification, x, *characters, lineStart);
      lineStart = characters->size();
      x = 0.0;
      y += kLeading * document.fontSize;
      continue;
    }
    Glyph glyph;
    if (!LoadGlyph(rawFace, code, perUnit * document.horizontalScale, perUnit * document.verticalScale, &glyph)) {
      *error = "the glyph of \"" + text + "\" in \"" + document.font + "\" cannot be read";
      return false;
    }
    characters->push_back(LaidOutCharacter{text, x, y, std::move(glyph.contours)});
    x += glyph.advance + tracking;
  }
  Justify(document.justification, x, *characters, lineStart);
  return true;
}

}  // namespace aehost
