// The header test decides from eight bytes alone whether the host offers a file to the importer.
#include "plugin/importer/scene_file_header.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::string WriteTemp(const std::string& name, const std::string& bytes) {
  const std::string path = (std::filesystem::temp_directory_path() / name).string();
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

TEST(SceneFileHeader, EveryVariantTagWithTheIdentIsAScene) {
  for (const char* tag : {"XORY", "6ORY", "AORY", "8ORY", "QORY", "YORY"}) {
    const std::string path = WriteTemp("header_ok.ory", std::string(tag) + "ORY6 and the rest");
    EXPECT_TRUE(IsSceneFile(path)) << tag;
    std::remove(path.c_str());
  }
  // Exactly the header and nothing after it is still a scene file by its header.
  EXPECT_TRUE(IsSceneFileHeader("QORYORY6", 8));
  EXPECT_FALSE(IsSceneFileHeader("QORYORY6", 7));
  EXPECT_FALSE(IsSceneFileHeader(nullptr, 8));
}

TEST(SceneFileHeader, OtherTagsIdentsShortFilesAndMissingFilesAreNot) {
  const struct {
    const char* name;
    std::string bytes;
  } cases[] = {{"unknown tag", "ZORYORY6...."},
               {"ident of another version", "XORYORY5...."},
               {"tag in lower case", "xoryORY6...."},
               {"seven bytes", "XORYORY"},
               {"empty", ""}};
  for (const auto& c : cases) {
    const std::string path = WriteTemp("header_bad.ory", c.bytes);
    EXPECT_FALSE(IsSceneFile(path)) << c.name;
    std::remove(path.c_str());
  }
  EXPECT_FALSE(IsSceneFile("/nonexistent/folder/shot.ory"));
}

}  // namespace
