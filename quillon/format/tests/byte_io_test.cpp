// The primitives under every scene file: byte order, bounds and the offsets in errors.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "quillon/format/byte_reader.h"
#include "quillon/format/byte_writer.h"

namespace quillon::format {
namespace {

ByteReader ReaderOf(const std::vector<std::uint8_t>& bytes) { return ByteReader(bytes.data(), bytes.size()); }

TEST(ByteIo, WritesLittleEndianWhateverTheMachine) {
  ByteWriter w;
  w.U32(0x11223344u);
  w.I32(-2);
  w.U64(0x0102030405060708ull);
  w.F64(1.0);  // IEEE 754: 0x3FF0000000000000
  const std::vector<std::uint8_t> expected = {
      0x44, 0x33, 0x22, 0x11, 0xFE, 0xFF, 0xFF, 0xFF, 0x08, 0x07, 0x06, 0x05, 0x04, 0x03,
      0x02, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F};
  EXPECT_EQ(w.bytes, expected);
}

TEST(ByteIo, ReadsBackEveryPrimitiveBitForBit) {
  ByteWriter w;
  w.U8(0xAB);
  w.I32(std::numeric_limits<std::int32_t>::min());
  w.I64(-5);
  w.F64(-0.0);
  w.F64(std::numeric_limits<double>::denorm_min());
  w.String("Kamera \xC3\xA4");
  w.String("");
  w.String16(u"\xD800 lone");
  ByteReader r = ReaderOf(w.bytes);
  EXPECT_EQ(r.U8(), 0xAB);
  EXPECT_EQ(r.I32(), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(r.I64(), -5);
  const double negativeZero = r.F64();
  EXPECT_TRUE(std::signbit(negativeZero));
  EXPECT_EQ(r.F64(), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(r.String("name"), "Kamera \xC3\xA4");
  EXPECT_EQ(r.String("name"), "");
  EXPECT_EQ(r.String16("name"), u"\xD800 lone");
  EXPECT_EQ(r.Remaining(), 0u);
}

TEST(ByteIo, PatchOverwritesAnEarlierLength) {
  ByteWriter w;
  w.U32(0);
  w.U8(7);
  w.PatchU32(0, 0xCAFEu);
  ByteReader r = ReaderOf(w.bytes);
  EXPECT_EQ(r.U32(), 0xCAFEu);
}

TEST(ByteIo, TruncatedValueNamesTheOffsetWhereItStarts) {
  const std::vector<std::uint8_t> bytes = {1, 2, 3, 4, 5, 6};
  ByteReader r = ReaderOf(bytes);
  r.U32();
  try {
    r.U32();
    FAIL() << "read past the end";
  } catch (const FormatError& e) {
    EXPECT_EQ(e.offset, 4u);
    EXPECT_STREQ(e.what(), "byte 4: truncated 32-bit value: needs 4 bytes, 2 remain");
  }
}

TEST(ByteIo, StringLongerThanTheRestIsRefusedBeforeAnyAllocation) {
  ByteWriter w;
  w.U8(0);
  w.U32(0xFFFFFFF0u);
  w.Raw("abc", 3);
  ByteReader r = ReaderOf(w.bytes);
  r.U8();
  try {
    r.String("node name");
    FAIL() << "oversized string accepted";
  } catch (const FormatError& e) {
    EXPECT_EQ(e.offset, 1u);
    EXPECT_STREQ(e.what(), "byte 1: node name length 4294967280 exceeds the 3 bytes that remain");
  }
}

TEST(ByteIo, Utf16TextIsTwoBytesAUnitLowByteFirst) {
  ByteWriter w;
  w.String16(u"A\u20AC");
  const std::vector<std::uint8_t> expected = {2, 0, 0, 0, 'A', 0, 0xAC, 0x20};
  EXPECT_EQ(w.bytes, expected);
  w.bytes[0] = 3;
  ByteReader r = ReaderOf(w.bytes);
  EXPECT_THROW(r.String16("name"), FormatError);
}

TEST(ByteIo, CountsAreCheckedAgainstTheSmallestItemSize) {
  ByteWriter w;
  w.U32(3);             // three items of 4 bytes: 12 bytes needed
  w.Raw("abcdefghijk", 11);
  ByteReader tooMany = ReaderOf(w.bytes);
  EXPECT_THROW(tooMany.Count("key", 4), FormatError);

  w.U8(0);              // now exactly 12 bytes follow the count
  ByteReader exact = ReaderOf(w.bytes);
  EXPECT_EQ(exact.Count("key", 4), 3u);
}

TEST(ByteIo, HugeCountDoesNotOverflowTheCheck) {
  ByteWriter w;
  w.U32(0xFFFFFFFFu);
  w.U64(0);
  ByteReader r = ReaderOf(w.bytes);
  try {
    r.Count("track", 0x10000000);
    FAIL() << "count accepted";
  } catch (const FormatError& e) {
    EXPECT_EQ(e.offset, 0u);
    EXPECT_NE(std::string(e.what()).find("track count 4294967295"), std::string::npos);
  }
}

}  // namespace
}  // namespace quillon::format
