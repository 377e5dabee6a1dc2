// Files and pictures a caller sends into a render, against the engine library of the build:
// the format words of pictures, files on the disk and in memory, and their removal.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/session/picture_format.h"
#include "plugin/session/session_commands.h"
#include "plugin/session/tests/test_engine.h"
#include "plugin/session/texture_files.h"

namespace {

using quillon::RenderThread;

struct FormatCase {
  int32_t format;
  bool accepted;
  PictureFormat picture;
};

void PrintTo(const FormatCase& c, std::ostream* out) { *out << "format " << c.format; }

class PictureFormatTest : public testing::TestWithParam<FormatCase> {};

TEST_P(PictureFormatTest, GivesChannelsAndSizes) {
  PictureFormat picture{};
  ASSERT_EQ(PictureFormatOf(GetParam().format, &picture), GetParam().accepted);
  if (!GetParam().accepted) return;
  EXPECT_EQ(picture.bytes, GetParam().picture.bytes);
  EXPECT_EQ(picture.sourceChannels, GetParam().picture.sourceChannels);
  EXPECT_EQ(picture.bitmapChannels, GetParam().picture.bitmapChannels);
}

INSTANTIATE_TEST_SUITE_P(
    Words, PictureFormatTest,
    testing::Values(FormatCase{0, false, {}}, FormatCase{0x10, false, {}}, FormatCase{0x20, false, {}},
                    FormatCase{0x30, true, {1, 3, 3}}, FormatCase{2, true, {1, 1, 1}}, FormatCase{9, true, {1, 2, 1}},
                    FormatCase{6, true, {1, 3, 3}}, FormatCase{5, true, {1, 4, 3}}, FormatCase{24, true, {2, 1, 1}},
                    FormatCase{19, true, {2, 2, 1}}, FormatCase{20, true, {2, 3, 3}}, FormatCase{21, true, {2, 4, 3}},
                    FormatCase{40, true, {4, 1, 1}}, FormatCase{35, true, {4, 2, 1}}, FormatCase{36, true, {4, 3, 3}},
                    FormatCase{37, true, {4, 4, 3}}, FormatCase{11, true, {1, 3, 3}},
                    FormatCase{0x45, true, {1, 3, 3}}));

std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

class TextureFiles : public testing::Test {
 protected:
  static void SetUpTestSuite() { session_test::StartBuildEngine(); }
  void SetUp() override {
    folder = std::filesystem::temp_directory_path() / ("session_textures_" + std::to_string(getpid()));
    std::filesystem::create_directories(folder / "user");
    setenv("QUILLON_USER_DIR", (folder / "user").c_str(), 1);
    ASSERT_TRUE(caller.SelectRender(1));
    render = caller.CurrentRender();
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  std::filesystem::path folder;
  quillon::SessionThread caller;
  RenderThread* render = nullptr;
};

TEST_F(TextureFiles, AFileForTheDiskIsWrittenAndTheCallerKeepsItsBytes) {
  const std::string path = (folder / "wood.png").string();
  const OwnedFilename name(path);
  char bytes[] = "not really a picture";
  void* data = bytes;
  ASSERT_TRUE(quillon::SendFile(*render, name.value, &data, sizeof(bytes) - 1, false));
  EXPECT_EQ(data, bytes);
  EXPECT_EQ(ReadAll(path), "not really a picture");
  EXPECT_TRUE(render->textures.empty());
  ASSERT_TRUE(quillon::RemoveFile(*render, name.value));
  EXPECT_FALSE(std::filesystem::exists(path));
  // Nothing of that name any more: still true.
  EXPECT_TRUE(quillon::RemoveFile(*render, name.value));
}

TEST_F(TextureFiles, ANameWithoutAFolderLivesInTheTexFolder) {
  const OwnedFilename name("stone.png");
  char bytes[] = "grey";
  void* data = bytes;
  ASSERT_TRUE(quillon::SendFile(*render, name.value, &data, 4, false));
  const auto path = folder / "user" / "tex" / "stone.png";
  EXPECT_EQ(ReadAll(path.string()), "grey");
  ASSERT_TRUE(quillon::RemoveFile(*render, name.value));
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(TextureFiles, AFileForMemoryIsTakenOverAndKeptUnderItsName) {
  const OwnedFilename name("sky.png");
  void* data = std::malloc(8);
  std::memcpy(data, "12345678", 8);
  ASSERT_TRUE(quillon::SendFile(*render, name.value, &data, 8, true));
  EXPECT_EQ(data, nullptr);
  ASSERT_EQ(render->textures.size(), 1u);
  EXPECT_EQ(render->textures.begin()->first, u"sky.png");
  // A second file of the name takes the place of the first.
  data = std::malloc(2);
  ASSERT_TRUE(quillon::SendFile(*render, name.value, &data, 2, true));
  EXPECT_EQ(render->textures.size(), 1u);
  ASSERT_TRUE(quillon::RemoveFile(*render, name.value));
  EXPECT_TRUE(render->textures.empty());
  void* none = nullptr;
  EXPECT_FALSE(quillon::SendFile(*render, name.value, &none, 0, true));
}

TEST_F(TextureFiles, APictureIsKeptAndARefusedOneIsNot) {
  const OwnedFilename name("dots");
  // Two pixels of format 5: alpha first, then red, green and blue.
  const uint8_t pixels[] = {255, 10, 20, 30, 128, 40, 50, 60};
  ASSERT_TRUE(quillon::SendPicture(*render, name.value, pixels, 5, 2, 1, sizeof(pixels)));
  ASSERT_EQ(render->textures.size(), 1u);
  EXPECT_EQ(render->textures.begin()->first, u"dots");
  const OwnedFilename other("other");
  EXPECT_FALSE(quillon::SendPicture(*render, other.value, pixels, 0x10, 2, 1, sizeof(pixels)));
  EXPECT_FALSE(quillon::SendPicture(*render, other.value, pixels, 5, 0, 1, sizeof(pixels)));
  EXPECT_FALSE(quillon::SendPicture(*render, other.value, pixels, 5, 2, 1, 0));
  EXPECT_FALSE(quillon::SendPicture(*render, other.value, nullptr, 5, 2, 1, sizeof(pixels)));
  EXPECT_EQ(render->textures.size(), 1u);
  caller.CloseDocument();
  EXPECT_TRUE(render->textures.empty());
}

}  // namespace
