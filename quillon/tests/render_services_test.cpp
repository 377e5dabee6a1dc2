// The general services the render session calls beside the render: files the
// engine writes, deletes and finds its folders for, world transforms of objects,
// and framing the camera around the scene.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "quillon/tests/scene_under_camera.h"

namespace quillon::testing {
namespace {

const ORYOS_Fl* Fl() { return TableAt<ORYOS_Fl>(Table_Fl); }

struct Folder {
  std::string path = std::filesystem::temp_directory_path() / ("render_services_" + std::to_string(getpid()));
  Folder() { std::filesystem::create_directories(path); }
  ~Folder() { std::filesystem::remove_all(path); }
};

struct Path {
  Filename file{nullptr};
  explicit Path(const std::string& text) {
    Fn()->FilenameInit(&file);
    Fn()->SetFromCString(&file, text.c_str());
  }
  ~Path() { Fn()->FilenameFree(&file); }
};

std::string Contents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST(DiskFileTest, AFileReplacesItsTargetWhenFreed) {
  Folder folder;
  const std::string target = folder.path + "/tex.bin";
  std::ofstream(target) << "old";
  DiskFile* file = Fl()->AllocFile();
  const Path path(target);
  ASSERT_TRUE(Fl()->OpenFile(file, &path.file, kDiskFileWrite, 0, 1, 0x4F525943, 0x4F525931));
  ASSERT_TRUE(Fl()->WriteFile(file, "new ", 4));
  ASSERT_TRUE(Fl()->WriteFile(file, "bytes", 5));
  EXPECT_EQ(Contents(target), "old");  // nothing in place before the file is done
  Fl()->FreeFile(file);
  EXPECT_EQ(Contents(target), "new bytes");
}

TEST(DiskFileTest, APathThatCannotBeWrittenFailsAtOpen) {
  Folder folder;
  const Path missingFolder(folder.path + "/none/tex.bin");
  const Path aFolder(folder.path);
  const Path target(folder.path + "/tex.bin");
  DiskFile* file = Fl()->AllocFile();
  EXPECT_FALSE(Fl()->OpenFile(file, &missingFolder.file, kDiskFileWrite, 0, 1, 0, 0));
  EXPECT_FALSE(Fl()->OpenFile(file, &aFolder.file, kDiskFileWrite, 0, 1, 0, 0));
  EXPECT_FALSE(Fl()->OpenFile(file, &target.file, 1, 0, 1, 0, 0));  // reading is not offered
  EXPECT_FALSE(Fl()->WriteFile(file, "x", 1));
  Fl()->FreeFile(file);
  EXPECT_FALSE(std::filesystem::exists(folder.path + "/tex.bin"));
}

TEST(EngineFolderTest, DeleteFileRemovesFilesButNoFolder) {
  Folder folder;
  std::ofstream(folder.path + "/gone.png") << "x";
  const Path file(folder.path + "/gone.png");
  const Path directory(folder.path);
  EXPECT_TRUE(Ge()->DeleteFile(&file.file, 0));
  EXPECT_FALSE(std::filesystem::exists(folder.path + "/gone.png"));
  EXPECT_FALSE(Ge()->DeleteFile(&file.file, 0));
  EXPECT_FALSE(Ge()->DeleteFile(&directory.file, 0));
  EXPECT_TRUE(std::filesystem::is_directory(folder.path));
}

TEST(EngineFolderTest, TheUserFolderIsChosenByTheEnvironmentAndHoldsTex) {
  Folder folder;
  setenv("QUILLON_USER_DIR", (folder.path + "/user").c_str(), 1);
  Filename out{nullptr};
  Fn()->FilenameInit(&out);
  Ge()->GetEngineFolder(&out, kEngineFolderUser);
  unsetenv("QUILLON_USER_DIR");
  Text text;
  Fn()->GetString(&text.value, &out);
  Fn()->FilenameFree(&out);
  EXPECT_EQ(text.Utf8(), folder.path + "/user");
  EXPECT_TRUE(std::filesystem::is_directory(folder.path + "/user/tex"));
}

void ExpectNear(const Vector& a, const Vector& b) {
  EXPECT_NEAR(a.x, b.x, 1e-9);
  EXPECT_NEAR(a.y, b.y, 1e-9);
  EXPECT_NEAR(a.z, b.z, 1e-9);
}

// A parent at (100, 0, 0), turned a quarter about y (heading) and scaled 2: its child's
// local (10, 0, 0) lies 20 units along the parent's turned x axis.
TEST(WorldTransformTest, AChildsWorldPlaceTurnAndScaleGoThroughItsParent) {
  SceneUnderCamera scene(1.0);
  BaseObject* parent = scene.Add(ObjectType_Null, {100, 0, 0});
  Bo()->SetRotationOrder(parent, kRotationOrderHpb);
  const Vector quarter{M_PI / 2, 0, 0};
  const Vector twice{2, 2, 2};
  Bo()->SetRotation(parent, &quarter);
  Bo()->SetScale(parent, &twice);
  BaseObject* child = scene.Add(ObjectType_Null, {10, 0, 0}, parent);
  Bo()->SetRotationOrder(child, kRotationOrderHpb);
  Vector place, scale, turn;
  Bo()->GetAbsolutePosition(child, &place);
  Bo()->GetAbsoluteScale(child, &scale);
  Bo()->GetAbsoluteRotation(child, &turn);
  Matrix parentMatrix;
  Bo()->GetGlobalMatrix(parent, &parentMatrix);
  ExpectNear(place, Vector{100, 0, 0} + Normalized(parentMatrix.axisX) * 20);
  ExpectNear(scale, twice);
  ExpectNear(turn, quarter);

  const Vector there{0, 50, 0};
  const Vector none{0, 0, 0};
  const Vector unit{1, 1, 1};
  Bo()->SetAbsolutePosition(child, &there);
  Bo()->SetAbsoluteRotation(child, &none);
  Bo()->SetAbsoluteScale(child, &unit);
  Bo()->GetAbsolutePosition(child, &place);
  Bo()->GetAbsoluteScale(child, &scale);
  ExpectNear(place, there);
  ExpectNear(scale, unit);
  // No turn: the world axes are the unit axes (the angles may come back a full turn apart).
  Matrix world;
  Bo()->GetGlobalMatrix(child, &world);
  ExpectNear(world.axisX, {1, 0, 0});
  ExpectNear(world.axisY, {0, 1, 0});
  Bo()->GetPosition(parent, &place);
  ExpectNear(place, {100, 0, 0});  // the parent stays where it was
}

// A plane of 200 x 100 at z 1000; the default frame is 1280 x 720, so with a field of
// view of 2 atan(0.2) the narrower half angle is atan(0.2 x 720 / 1280). The sphere around
// the plane (radius half its diagonal) fits that angle from r / sin(angle) away.
TEST(FrameCameraTest, TheCameraBacksOffAlongItsSightUntilTheSceneFits) {
  SceneUnderCamera scene(2.0 * std::atan(0.2));
  scene.AddPlane(200, 100, {0, 0, 1000});
  Ge()->FrameCamera(scene.document, 0);
  Vector place;
  Bo()->GetAbsolutePosition(scene.camera, &place);
  const double radius = std::sqrt(200.0 * 200.0 + 100.0 * 100.0) / 2.0;
  const double distance = radius / std::sin(std::atan(0.2 * 720.0 / 1280.0));
  ExpectNear(place, {0, 0, 1000 - distance});
}

}  // namespace
}  // namespace quillon::testing
