// The frame of a scene file: what the importer's header test sees, and the refusal of
// files that are cut short or damaged before any of their content is read.
#include <gtest/gtest.h>

#include <string>

#include "quillon/format/byte_reader.h"
#include "quillon/format/file_frame.h"

namespace quillon::format {
namespace {

std::vector<std::uint8_t> FrameBody(const std::string& body) {
  ByteWriter w;
  BeginFrame(w);
  w.Raw(body.data(), body.size());
  SealFrame(w);
  return w.bytes;
}

// The error of CheckFrame, or "" when the frame is accepted.
std::string FrameError(const std::vector<std::uint8_t>& file) {
  try {
    CheckFrame(file.data(), file.size());
    return "";
  } catch (const FormatError& e) {
    return e.what();
  }
}

TEST(FileFrame, HeaderIsSignatureIdentVersionChecksumAndLength) {
  const std::vector<std::uint8_t> file = FrameBody(("abc"));
  // CRC-32 (ISO 3309) of "abc" is 0x352441C2.
  const std::vector<std::uint8_t> expected = {
      'Q', 'O', 'R', 'Y', 'O', 'R', 'Y', '6', 2, 0, 0, 0, 0xC2, 0x41, 0x24, 0x35,
      3,   0,   0,   0,   0,   0,   0,   0,   'a', 'b', 'c'};
  EXPECT_EQ(file, expected);
  EXPECT_EQ(FrameError(file), "");
}

TEST(FileFrame, EmptyBodyStillHasTheWholeHeader) {
  const std::vector<std::uint8_t> file = FrameBody("");
  ASSERT_EQ(file.size(), kFrameHeaderBytes);
  EXPECT_EQ(FrameError(file), "");
}

TEST(FileFrame, ShortFilesEndInsideTheHeader) {
  const std::vector<std::uint8_t> file = FrameBody(("abc"));
  for (std::size_t n = 0; n < kFrameHeaderBytes; ++n) {
    const std::vector<std::uint8_t> cut(file.begin(), file.begin() + n);
    EXPECT_EQ(FrameError(cut), "byte " + std::to_string(n) + ": the file ends after " +
                                   std::to_string(n) + " bytes, inside the 24-byte header");
  }
}

TEST(FileFrame, ForeignSignatureAndIdentAreNamed) {
  std::vector<std::uint8_t> file = FrameBody(("abc"));
  file[0] = 'X';
  EXPECT_EQ(FrameError(file), "byte 0: signature \"XORY\" is not \"QORY\": not a scene file");
  file[0] = 'Q';
  file[7] = '5';
  EXPECT_EQ(FrameError(file), "byte 4: ident \"ORY5\" is not \"ORY6\"");
}

TEST(FileFrame, VersionsOneAndTwoAreReadAndOthersRefused) {
  std::vector<std::uint8_t> file = FrameBody(("abc"));
  file[8] = 1;
  EXPECT_EQ(FrameError(file), "");
  for (std::uint8_t version : {0, 3}) {
    file[8] = version;
    EXPECT_EQ(FrameError(file), "byte 8: format version " + std::to_string(version) +
                                    " is not one of the versions 1 to 2 that this reader reads");
  }
}

TEST(FileFrame, SealingAgainRepairsAnyDamageBehindTheHeader) {
  ByteWriter w;
  BeginFrame(w);
  w.Raw("abc", 3);
  SealFrame(w);
  w.bytes[kFrameHeaderBytes] = 'x';
  w.bytes.push_back('d');
  EXPECT_NE(FrameError(w.bytes), "");
  SealFrame(w);
  EXPECT_EQ(FrameError(w.bytes), "");
}

TEST(FileFrame, TruncatedOrExtendedBodyIsRefusedByItsLength) {
  std::vector<std::uint8_t> file = FrameBody(("abcdef"));
  std::vector<std::uint8_t> cut(file.begin(), file.end() - 2);
  EXPECT_EQ(FrameError(cut),
            "byte 16: body length 6 does not match the 4 bytes after the header: the file is truncated");
  file.push_back(0);
  EXPECT_EQ(FrameError(file), "byte 16: body length 6 does not match the 7 bytes after the header");
}

TEST(FileFrame, AnyFlippedBitOfTheBodyIsFound) {
  const std::vector<std::uint8_t> file = FrameBody(("a scene body"));
  for (std::size_t i = kFrameHeaderBytes; i < file.size(); ++i) {
    for (int bit = 0; bit < 8; ++bit) {
      std::vector<std::uint8_t> damaged = file;
      damaged[i] ^= static_cast<std::uint8_t>(1u << bit);
      const std::string error = FrameError(damaged);
      EXPECT_EQ(error.rfind("byte 12: checksum ", 0), 0u) << error;
      EXPECT_NE(error.find("the file is damaged"), std::string::npos) << error;
    }
  }
}

}  // namespace
}  // namespace quillon::format
