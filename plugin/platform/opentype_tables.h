#pragma once
// Readers of the two tables of an OpenType (or TrueType) font that tell what a face is: the
// `name` table (its names by number) and the `OS/2` table (weight, italic flag and the code
// pages it covers). Both take the table's bytes as the font file holds them, big-endian,
// and check every offset: a damaged table gives no name or no style, never a read outside it.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Name ids.
constexpr uint16_t kNameIdFamily = 1;
constexpr uint16_t kNameIdPostScript = 6;

// The first record with `nameId` on platform 3 (Windows, UTF-16 big-endian) or platform 1
// (Macintosh, 8-bit bytes, each taken as one character), in the table's order and in any
// language, as UTF-8.
std::optional<std::string> FindFontName(std::string_view nameTable, uint16_t nameId);

// What the system's font enumeration reports of a face, worked out from its OS/2 table.
struct FontStyle {
  int32_t weight = 400;  // usWeightClass: 100 thin to 900 black, 400 regular, 700 bold
  bool italic = false;   // fsSelection bit 0; oblique faces set it too
  int32_t charSet = 1;   // see CharSetOfCodePages
};

// Nothing when the table is too short for the fields read.
std::optional<FontStyle> ReadFontStyle(std::string_view os2Table);

// The character set under which the system lists a face first: that of the lowest code
// page the face claims in ulCodePageRange1 (bit 0, Latin 1, is 0, the ANSI set; Cyrillic
// 204; Greek 161; ... symbol 2). A table of version 0 claims no code pages, and a face
// that claims none of the known ones is listed under the default set, 1.
int32_t CharSetOfCodePages(uint32_t codePageRange1);
