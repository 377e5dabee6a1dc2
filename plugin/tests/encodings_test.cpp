#include "plugin/text/encodings.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf8Decoding, KeepsAsciiAndTwoAndThreeByteCharacters) {
  EXPECT_EQ(DecodeUtf8("Ab"), u"Ab");
  EXPECT_EQ(DecodeUtf8("\xC3\xA9"), u"\u00E9");        // é
  EXPECT_EQ(DecodeUtf8("\xE2\x82\xAC"), u"\u20AC");    // €
}

TEST(Utf8Decoding, TurnsTheEnDashIntoALineFeed) {
  EXPECT_EQ(DecodeUtf8("a\xE2\x80\x93" "b"), u"a\nb");
  EXPECT_EQ(DecodeUtf8("\xE2\x80\x94"), u"\u2014");  // the em dash stays
}

TEST(Utf8Decoding, ReplacesWhatItCannotRepresent) {
  EXPECT_EQ(DecodeUtf8("\xF0\x9F\x98\x80" "x"), u"_x");  // beyond 16 bits: one "_"
  EXPECT_EQ(DecodeUtf8(std::string("a\0b", 3)), u"a_b");
  EXPECT_EQ(DecodeUtf8("\x80" "a"), u"_a");              // stray continuation byte
  EXPECT_EQ(DecodeUtf8("a\xC3"), u"a_");                 // truncated two-byte form
  EXPECT_EQ(DecodeUtf8("\xE2\x82"), u"_");               // truncated three-byte form
  EXPECT_EQ(DecodeUtf8("\xC0\x80"), u"_");               // an encoded zero
  EXPECT_EQ(DecodeUtf8("\xF8\x88\x80\x80\x80" "z"), u"_z");  // five-byte form skipped whole
  EXPECT_EQ(DecodeUtf8("\xF0\x9F"), u"_");               // a four-byte form cut short
}

TEST(Utf8Encoding, WritesOneToThreeBytesPerUnit) {
  EXPECT_EQ(EncodeUtf8(u"A\u00E9\u20AC"), "A\xC3\xA9\xE2\x82\xAC");
  EXPECT_EQ(EncodeUtf8(std::u16string(1, char16_t(0xD83D))), "\xED\xA0\xBD");  // lone surrogate
}

TEST(EscapeEncodings, WriteUnitsAboveSevenBits) {
  EXPECT_EQ(EncodeText(u"a\u00E9", kEncodingEscapes), "a\\u00E9");
  EXPECT_EQ(EncodeText(u"\u20ACx", kEncodingHtmlEscapes), "&#x20AC;x");
  EXPECT_EQ(EncodeText(u"a\u00E9", kEncoding7Bit), "a_");
  EXPECT_EQ(EncodeText(u"a\u00E9", kEncodingDefault), "a_");
  EXPECT_EQ(EncodeText(std::u16string(u"a\0b", 3), kEncodingEscapes), "a_b");
}

TEST(EscapeEncodings, DecodeBackWhatTheyWrote) {
  EXPECT_EQ(DecodeText("&#x20AC;x", kEncodingHtmlEscapes), u"\u20ACx");
  EXPECT_EQ(DecodeText("&#x20A;x", kEncodingHtmlEscapes), u"&#x20A;x");
  EXPECT_EQ(DecodeText("a\x7F\x80", kEncoding7Bit), u"a__");
  EXPECT_EQ(DecodeText("x\\u00e9", kEncodingDefault), u"x\u00E9");
}

TEST(DecodeEscapes, ReadsOnlyCompleteEscapes) {
  EXPECT_EQ(DecodeEscapes("\\u0041BC"), u"ABC");
  EXPECT_EQ(DecodeEscapes("\\u20ac"), u"\u20AC");
  EXPECT_EQ(DecodeEscapes("\\u12"), u"\\u12");      // too few digits: copied
  EXPECT_EQ(DecodeEscapes("\\u12G4"), u"\\u12G4");
  EXPECT_EQ(DecodeEscapes("end\\"), u"end\\");      // trailing backslash stays
  EXPECT_EQ(DecodeEscapes("\\n"), u"\\n");
  EXPECT_EQ(DecodeEscapes(""), u"");
  EXPECT_EQ(DecodeEscapes("\xE9"), u"\u00E9");      // bytes are widened, not decoded
}

TEST(CodePage1252, MapsItsOwnCharactersAndReplacesTheRest) {
  EXPECT_EQ(ToCodePage1252(u"Caf\u00E9"), "Caf\xE9");
  EXPECT_EQ(ToCodePage1252(u"\u20AC\u2026"), "\x80\x85");
  EXPECT_EQ(ToCodePage1252(u"\u0416"), "?");  // Cyrillic Zhe is not in the code page
}

}  // namespace
