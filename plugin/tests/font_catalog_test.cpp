// The font catalogue: installed faces found by PostScript name, described by their own name
// and OS/2 tables; and the readers of those tables on tables made here, whole and damaged.
#include <gtest/gtest.h>

#include "plugin/platform/font_catalog.h"

namespace {

// The DejaVu faces of Debian's fonts-dejavu-core. Their tables (read with an independent
// reader when this test was written): name id 1 on platforms 1 and 3 is the family below,
// usWeightClass is 700 for the bold faces and 400 otherwise, fsSelection has bit 0 clear,
// and ulCodePageRange1 has bit 0 (Latin 1) set, so the faces are listed under the ANSI set 0.
struct InstalledCase {
  const char* postScriptName;
  const char* family;
  int weight;
};

class InstalledFonts : public ::testing::TestWithParam<InstalledCase> {};

TEST_P(InstalledFonts, AreFoundByPostScriptName) {
  const InstalledCase& c = GetParam();
  const std::optional<FontFace> face = FindFontByPostScriptName(c.postScriptName);
  ASSERT_TRUE(face.has_value()) << c.postScriptName;
  EXPECT_EQ(face->family, c.family);
  EXPECT_EQ(face->style.weight, c.weight);
  EXPECT_FALSE(face->style.italic);
  EXPECT_EQ(face->style.charSet, 0);
}

INSTANTIATE_TEST_SUITE_P(DejaVu, InstalledFonts,
                         ::testing::Values(InstalledCase{"DejaVuSans", "DejaVu Sans", 400},
                                           InstalledCase{"DejaVuSans-Bold", "DejaVu Sans", 700},
                                           InstalledCase{"DejaVuSerif", "DejaVu Serif", 400},
                                           InstalledCase{"DejaVuSansMono-Bold", "DejaVu Sans Mono", 700}));

TEST(FontCatalog, AnUnknownNameFindsNothing) {
  EXPECT_FALSE(FindFontByPostScriptName("QuillonNoSuchFont-Regular").has_value());
  EXPECT_FALSE(FindFontByPostScriptName("").has_value());
  // Family and style names are not PostScript names.
  EXPECT_FALSE(FindFontByPostScriptName("DejaVu Sans").has_value());
}

// A name table of format 0 with the records given as (platform, name id, text); platform 1
// texts are stored as bytes, platform 3 texts as UTF-16 big-endian.
struct Record {
  uint16_t platform;
  uint16_t nameId;
  std::u16string text;
};

void PutU16(std::string& bytes, uint16_t value) {
  bytes.push_back(static_cast<char>(value >> 8));
  bytes.push_back(static_cast<char>(value & 0xff));
}

std::string NameTable(const std::vector<Record>& records) {
  std::string header, storage;
  PutU16(header, 0);
  PutU16(header, static_cast<uint16_t>(records.size()));
  PutU16(header, static_cast<uint16_t>(6 + 12 * records.size()));
  for (const Record& r : records) {
    std::string text;
    for (const char16_t unit : r.text) {
      if (r.platform == 3) PutU16(text, unit);
      else text.push_back(static_cast<char>(unit));
    }
    for (const uint16_t field : {r.platform, uint16_t{0}, uint16_t{0}, r.nameId, static_cast<uint16_t>(text.size()),
                                 static_cast<uint16_t>(storage.size())}) {
      PutU16(header, field);
    }
    storage += text;
  }
  return header + storage;
}

TEST(OpenTypeTables, TheFirstNameOnTheMacintoshOrWindowsPlatformIsTaken) {
  const std::string table = NameTable({{0, 6, u"Unicode-Only"}, {3, 1, u"Caf\u00e9 Sans"}, {1, 6, u"Mac-Name"},
                                       {3, 6, u"Windows-Name"}});
  EXPECT_EQ(FindFontName(table, kNameIdPostScript), "Mac-Name");
  EXPECT_EQ(FindFontName(table, kNameIdFamily), "Caf\xc3\xa9 Sans");
  EXPECT_FALSE(FindFontName(table, 4).has_value());
}

TEST(OpenTypeTables, DamagedNameTablesGiveNoName) {
  const std::string table = NameTable({{3, 6, u"Name"}});
  for (std::size_t cut = 0; cut < table.size(); ++cut) {
    EXPECT_FALSE(FindFontName(table.substr(0, cut), kNameIdPostScript).has_value()) << cut;
  }
  std::string pointsOutside = table;
  pointsOutside[4] = '\x7f';  // the storage offset beyond the end
  EXPECT_FALSE(FindFontName(pointsOutside, kNameIdPostScript).has_value());
}

// An OS/2 table of `version` with the weight, fsSelection and ulCodePageRange1 given.
std::string Os2Table(uint16_t version, uint16_t weight, uint16_t selection, uint32_t codePages) {
  std::string bytes(version >= 1 ? 86 : 78, '\0');
  bytes[0] = static_cast<char>(version >> 8);
  bytes[1] = static_cast<char>(version);
  bytes[4] = static_cast<char>(weight >> 8);
  bytes[5] = static_cast<char>(weight);
  bytes[62] = static_cast<char>(selection >> 8);
  bytes[63] = static_cast<char>(selection);
  if (version >= 1) {
    for (int i = 0; i < 4; ++i) bytes[78 + static_cast<std::size_t>(i)] = static_cast<char>(codePages >> (24 - 8 * i));
  }
  return bytes;
}

TEST(OpenTypeTables, WeightItalicAndCharacterSetFromTheOs2Table) {
  const std::optional<FontStyle> italic = ReadFontStyle(Os2Table(4, 300, 0x0001, 0x4));
  ASSERT_TRUE(italic.has_value());
  EXPECT_EQ(italic->weight, 300);
  EXPECT_TRUE(italic->italic);
  EXPECT_EQ(italic->charSet, 204);  // Cyrillic is its lowest code page
  // Version 0 claims no code pages: the default set.
  EXPECT_EQ(ReadFontStyle(Os2Table(0, 400, 0x0040, 0))->charSet, 1);
  EXPECT_FALSE(ReadFontStyle(Os2Table(1, 400, 0, 1).substr(0, 63)).has_value());
}

struct CharSetCase {
  uint32_t codePages;
  int32_t charSet;
};

class CharSets : public ::testing::TestWithParam<CharSetCase> {};

TEST_P(CharSets, AreThoseOfTheLowestCodePage) {
  EXPECT_EQ(CharSetOfCodePages(GetParam().codePages), GetParam().charSet);
}

INSTANTIATE_TEST_SUITE_P(Cases, CharSets,
                         ::testing::Values(CharSetCase{0x600001ff, 0}, CharSetCase{0x6, 238}, CharSetCase{0x8, 161},
                                           CharSetCase{0x20000, 128}, CharSetCase{0x80000000, 2},
                                           CharSetCase{0x200, 1}, CharSetCase{0, 1}));

}  // namespace
