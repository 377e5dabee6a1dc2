// Scene files through tables Hf, Bl and Ge: what WriteNode writes,
// LoadFileIntoDocument reads back.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "quillon/tests/engine_tables.h"

namespace quillon::testing {
namespace {

class SceneFilesTest : public ::testing::Test {
 protected:
  std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                 ("quillon_scene_files_" + std::to_string(::getpid()));
  Filename path{nullptr};

  SceneFilesTest() {
    std::filesystem::create_directories(folder);
    Fn()->SetFromCString(&path, (folder / "scene.ory").c_str());
  }
  ~SceneFilesTest() override {
    Fn()->FilenameFree(&path);
    std::filesystem::remove_all(folder);
  }

  bool Write(BaseDocument* document, int32_t ident = kSceneFileIdent) {
    SceneFile* file = Hf()->AllocSceneFile();
    bool ok = Hf()->Open(file, ident, &path, kSceneFileModeWrite, 0) && Bl()->WriteNode(document, file);
    ok = Hf()->Close(file) && ok;
    Hf()->FreeSceneFile(file);
    return ok;
  }
};

TEST_F(SceneFilesTest, WrittenDocumentsLoadBack) {
  BaseDocument* document = Bd()->AllocDocument();
  BaseObject* camera = Bo()->AllocObject(ObjectType_Camera);
  Text name("Shot Camera");
  At()->SetName(camera, &name.value, true);
  Vector position{1.5, -2.25, 1000};
  Bo()->SetPosition(camera, &position);
  Bd()->InsertObject(document, camera, nullptr, nullptr, 0, 1);
  ASSERT_TRUE(Write(document));
  EXPECT_TRUE(Ge()->FileExists(&path, 0));

  BaseDocument* loaded = Bd()->AllocDocument();
  Text error;
  ASSERT_TRUE(Ge()->LoadFileIntoDocument(loaded, &path, 0, nullptr, nullptr, &error.value)) << error.Utf8();
  BaseObject* read = Bd()->GetFirstObject(loaded);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(At()->GetType(read), ObjectType_Camera);
  Text readName;
  At()->GetName(read, &readName.value);
  EXPECT_EQ(readName.Utf8(), "Shot Camera");
  Vector readPosition;
  Bo()->GetPosition(read, &readPosition);
  EXPECT_EQ(readPosition.y, -2.25);
  Bl()->FreeNode(loaded);
  Bl()->FreeNode(document);
}

TEST_F(SceneFilesTest, WrongIdentMissingFileAndGarbageFail) {
  BaseDocument* document = Bd()->AllocDocument();
  EXPECT_FALSE(Write(document, 0x4F525935));
  EXPECT_FALSE(Ge()->FileExists(&path, 0));

  SceneFile* file = Hf()->AllocSceneFile();
  EXPECT_FALSE(Hf()->Open(file, kSceneFileIdent, &path, kSceneFileModeRead, 0));
  EXPECT_FALSE(Hf()->Close(file));
  Hf()->FreeSceneFile(file);

  std::ofstream(folder / "scene.ory", std::ios::binary) << "not a scene";
  Text error;
  EXPECT_FALSE(Ge()->LoadFileIntoDocument(document, &path, 0, nullptr, nullptr, &error.value));
  EXPECT_FALSE(error.Utf8().empty());
  Bl()->FreeNode(document);
}

}  // namespace
}  // namespace quillon::testing
