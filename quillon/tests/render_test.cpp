// RenderDocument against pictures worked out by hand. The camera stands at the
// origin and looks along +z; a frame 400 pixels wide with a field of view of
// 2 atan(0.2) has a focal length of 200 / 0.2 = 1000 pixels, so at distance
// 1000 one unit is one pixel and the frame's centre is (200, 100).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <unistd.h>

#include "quillon/render/png_file.h"
#include "quillon/tests/scene_under_camera.h"

namespace quillon::testing {
namespace {

constexpr int32_t kWidth = 400;
constexpr int32_t kHeight = 200;
const double kFieldOfView = 2.0 * std::atan(0.2);

constexpr Pixel kClear{0, 0, 0, 0};
constexpr Pixel kRed{1, 0, 0, 1};
constexpr Pixel kGreen{0, 1, 0, 1};

// A block of pixels [left, right) x [top, bottom) and what it holds.
struct Block {
  int32_t left, top, right, bottom;
  Pixel inside;
};

// The expected picture: clear, then each block over the ones before.
Pixel Expected(const std::vector<Block>& blocks, int32_t x, int32_t y) {
  Pixel pixel = kClear;
  for (const Block& b : blocks)
    if (x >= b.left && x < b.right && y >= b.top && y < b.bottom) pixel = b.inside;
  return pixel;
}

// Every pixel equal; the first few that differ are named.
void ExpectPicture(const Bitmap* bitmap, int32_t bytes, const std::function<Pixel(int32_t, int32_t)>& expected) {
  int32_t wrong = 0;
  for (int32_t y = 0; y < Bm()->GetBitmapHeight(bitmap); ++y) {
    const std::vector<Pixel> row = ReadRow(bitmap, y, bytes);
    for (int32_t x = 0; x < static_cast<int32_t>(row.size()); ++x) {
      const Pixel want = expected(x, y);
      if (row[static_cast<size_t>(x)] == want) continue;
      if (++wrong <= 5)
        ADD_FAILURE() << "pixel (" << x << ", " << y << ") is " << row[static_cast<size_t>(x)].r << ","
                      << row[static_cast<size_t>(x)].g << "," << row[static_cast<size_t>(x)].b << ","
                      << row[static_cast<size_t>(x)].a << ", not " << want.r << "," << want.g << "," << want.b << ","
                      << want.a;
    }
  }
  EXPECT_EQ(wrong, 0);
}

struct Frame {
  Bitmap* bitmap;
  explicit Frame(int32_t bytes, int32_t width = kWidth, int32_t height = kHeight)
      : bitmap(Bm()->AllocBitmapSized(width, height, DepthOf(bytes))) {
    Bm()->AddAlphaChannel(bitmap, 1, false);
  }
  ~Frame() { Bm()->FreeBitmap(bitmap); }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;
};

int32_t Render(SceneUnderCamera& scene, Bitmap* bitmap, EngineThread* thread = nullptr) {
  return Ge()->RenderDocument(scene.document, 0, nullptr, nullptr, bitmap, scene.Settings(), 1, thread, 0);
}

class RenderDepthTest : public ::testing::TestWithParam<int32_t> {};

TEST_P(RenderDepthTest, APlaneCoversItsBlockAndNothingElse) {
  SceneUnderCamera scene(kFieldOfView);
  scene.Paint(scene.AddPlane(200, 100, {0, 0, 1000}), {1, 0, 0});
  Frame frame(GetParam());
  ASSERT_EQ(Render(scene, frame.bitmap), kRenderResultOk);
  // 200 x 100 units at one pixel a unit, centred on (200, 100).
  ExpectPicture(frame.bitmap, GetParam(),
                [](int32_t x, int32_t y) { return Expected({{100, 50, 300, 150, kRed}}, x, y); });
}

INSTANTIATE_TEST_SUITE_P(Depths, RenderDepthTest, ::testing::Values(1, 2, 4),
                         [](const auto& info) { return std::to_string(info.param * 8) + "bit"; });

TEST(RenderTest, TheNearerOfTwoPlanesHidesTheFarther) {
  SceneUnderCamera scene(kFieldOfView);
  // Drawn first but farther: 400 x 200 units at 2000 cover 200 x 100 pixels.
  scene.Paint(scene.AddPlane(400, 200, {0, 0, 2000}), {1, 0, 0});
  scene.Paint(scene.AddPlane(100, 100, {150, 0, 1000}), {0, 1, 0});
  Frame frame(1);
  ASSERT_EQ(Render(scene, frame.bitmap), kRenderResultOk);
  // The near plane spans x 300..400 and y 50..150, in front of the red 100..300 x 50..150.
  ExpectPicture(frame.bitmap, 1, [](int32_t x, int32_t y) {
    return Expected({{100, 50, 300, 150, kRed}, {300, 50, 400, 150, kGreen}}, x, y);
  });
}

TEST(RenderTest, AnObjectOnALayerSwitchedOffForRendersIsLeftOut) {
  SceneUnderCamera scene(kFieldOfView);
  SceneLayer* layer = Bd()->AllocLayer();
  At()->InsertUnderRoot(Bd()->GetLayerRoot(scene.document), layer);
  BaseObject* near = scene.AddPlane(100, 100, {150, 0, 1000});
  scene.Paint(near, {0, 1, 0});
  Bl()->SetLayer(near, layer);
  scene.Paint(scene.AddPlane(200, 100, {0, 0, 1000}), {1, 0, 0});
  Frame shown(1);
  ASSERT_EQ(Render(scene, shown.bitmap), kRenderResultOk);
  ExpectPicture(shown.bitmap, 1, [](int32_t x, int32_t y) {
    return Expected({{100, 50, 300, 150, kRed}, {300, 50, 400, 150, kGreen}}, x, y);
  });

  LayerRecord off = *Bl()->GetLayerData(layer, scene.document, 0);
  off.render = 0;
  ASSERT_TRUE(Bl()->SetLayerData(layer, scene.document, &off));
  Frame hidden(1);
  ASSERT_EQ(Render(scene, hidden.bitmap), kRenderResultOk);
  ExpectPicture(hidden.bitmap, 1, [](int32_t x, int32_t y) { return Expected({{100, 50, 300, 150, kRed}}, x, y); });
}

TEST(RenderTest, AParallelCameraDrawsOneUnitAPixelAtTheDocumentWidth) {
  SceneUnderCamera scene(kFieldOfView);
  Bc()->SetInt32(Params(scene.camera), CameraParam_Projection, 4);
  SetFloat(Bd()->GetActiveSettings(scene.document), RenderParam_Width, 200);
  // Far away and small: perspective would make it 20 x 10 pixels; parallel at two
  // pixels a unit (a frame of 400 for a document 200 wide) makes it 200 x 100.
  scene.Paint(scene.AddPlane(100, 50, {0, 0, 5000}), {1, 0, 0});
  Frame frame(1);
  ASSERT_EQ(Render(scene, frame.bitmap), kRenderResultOk);
  ExpectPicture(frame.bitmap, 1, [](int32_t x, int32_t y) { return Expected({{100, 50, 300, 150, kRed}}, x, y); });
}

// A green extruded spline at 1000 of two closed segments of four points each, the
// given eight points; one unit is one pixel there.
void AddTwoSquareSpline(SceneUnderCamera& scene, const Vector (&corners)[8]) {
  BaseObject* extrude = scene.Add(ObjectType_Extrude, {0, 0, 0});
  scene.Paint(extrude, {0, 1, 0});
  BaseObject* spline = Bo()->AllocSpline(0, 0);
  const Vector position{0, 0, 1000};
  Bo()->SetPosition(spline, &position);
  Bd()->InsertObject(scene.document, spline, extrude, nullptr, 0, 1);
  Bo()->ResizeSpline(spline, 8, 2);
  std::copy(corners, corners + 8, static_cast<Vector*>(Bo()->GetTagData(spline, TagType_Points, 0)));
  auto* segments = static_cast<SplineSegment*>(Bo()->GetTagData(spline, TagType_Segments, 0));
  segments[0] = {4, 1, {}};
  segments[1] = {4, 1, {}};
}

TEST(RenderTest, AClosedSplineUnderAnExtrudeIsFilledWithItsHoleLeftOut) {
  SceneUnderCamera scene(kFieldOfView);
  // A square of 100 units and, inside, one of 50: the even-odd rule makes it a hole.
  const Vector corners[8] = {{-50, -50, 0}, {50, -50, 0}, {50, 50, 0}, {-50, 50, 0},
                             {-25, -25, 0}, {25, -25, 0}, {25, 25, 0}, {-25, 25, 0}};
  AddTwoSquareSpline(scene, corners);
  Frame frame(1);
  ASSERT_EQ(Render(scene, frame.bitmap), kRenderResultOk);
  ExpectPicture(frame.bitmap, 1, [](int32_t x, int32_t y) {
    return Expected({{150, 50, 250, 150, kGreen}, {175, 75, 225, 125, kClear}}, x, y);
  });
}

TEST(RenderTest, AContourRepeatedToPadAFormIsFilledOnce) {
  SceneUnderCamera scene(kFieldOfView);
  const Vector corners[8] = {{-50, -50, 0}, {50, -50, 0}, {50, 50, 0}, {-50, 50, 0},
                             {-50, -50, 0}, {50, -50, 0}, {50, 50, 0}, {-50, 50, 0}};
  AddTwoSquareSpline(scene, corners);
  Frame frame(1);
  ASSERT_EQ(Render(scene, frame.bitmap), kRenderResultOk);
  ExpectPicture(frame.bitmap, 1, [](int32_t x, int32_t y) { return Expected({{150, 50, 250, 150, kGreen}}, x, y); });
}

// Two by two texels: red, green on top; blue, white below.
Bitmap* Quarters() {
  Bitmap* picture = Bm()->AllocBitmapSized(2, 2, kBitmapDepth8);
  const uint8_t texels[12] = {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255};
  Bm()->WriteBitmapLine(picture, 0, 0, 2, texels, 3, kLineFormatRgb8, 0);
  Bm()->WriteBitmapLine(picture, 0, 1, 2, texels + 6, 3, kLineFormatRgb8, 0);
  return picture;
}

// A 200 x 100 plane at 1000 whose material shows file, rendered; the picture spans the
// plane's block, each texel a quarter of it.
void ExpectQuartersShown(const Filename& file) {
  SceneUnderCamera scene(kFieldOfView);
  Material* material = scene.Paint(scene.AddPlane(200, 100, {0, 0, 1000}), {0.5, 0.5, 0.5});
  scene.ShowPicture(material, file);
  Frame frame(1);
  ASSERT_EQ(Render(scene, frame.bitmap), kRenderResultOk);
  ExpectPicture(frame.bitmap, 1, [](int32_t x, int32_t y) {
    return Expected({{100, 50, 200, 100, kRed},
                     {200, 50, 300, 100, kGreen},
                     {100, 100, 200, 150, {0, 0, 1, 1}},
                     {200, 100, 300, 150, {1, 1, 1, 1}}},
                    x, y);
  });
}

TEST(RenderTest, APlaneShowsItsMaterialsPictureAcrossIt) {
  const std::string folder = std::filesystem::temp_directory_path() / ("render_test_" + std::to_string(getpid()));
  std::filesystem::create_directories(folder);
  Bitmap* picture = Quarters();
  Filename file{nullptr};
  Fn()->FilenameInit(&file);
  Fn()->SetFromCString(&file, (folder + "/quarters.png").c_str());
  ASSERT_EQ(Bm()->SaveBitmap(picture, &file, kBitmapSavePng, nullptr, 0), 1);
  Bm()->FreeBitmap(picture);
  ExpectQuartersShown(file);
  Fn()->FilenameFree(&file);
  std::filesystem::remove_all(folder);
}

// As the session sends a picture: saved into a memory file, handed over as bytes.
TEST(RenderTest, APictureSentAsBytesIsShown) {
  Bitmap* picture = Quarters();
  MemoryFile* memory = Fn()->AllocMemoryFile();
  Filename target{nullptr};
  Fn()->FilenameInit(&target);
  Fn()->SetMemoryWrite(&target, memory);
  ASSERT_EQ(Bm()->SaveBitmap(picture, &target, kBitmapSavePng, nullptr, 0), 1);
  Bm()->FreeBitmap(picture);
  const void* bytes = nullptr;
  int64_t size = 0;
  Fn()->GetMemoryFileData(memory, &bytes, &size);
  Filename sent{nullptr};
  Fn()->FilenameInit(&sent);
  Fn()->SetFromCString(&sent, "sent-quarters.png");
  Fn()->SetMemoryRead(&sent, bytes, size, false);
  ExpectQuartersShown(sent);
  Fn()->FilenameFree(&sent);
  Fn()->FilenameFree(&target);
  Fn()->FreeMemoryFile(memory);
}

TEST(RenderTest, AMissingPictureIsReportedAndTheColourDrawn) {
  SceneUnderCamera scene(kFieldOfView);
  Material* material = scene.Paint(scene.AddPlane(200, 100, {0, 0, 1000}), {1, 0, 0});
  Filename file{nullptr};
  Fn()->FilenameInit(&file);
  Fn()->SetFromCString(&file, "/nonexistent/sky.png");
  scene.ShowPicture(material, file);
  Fn()->FilenameFree(&file);
  Frame frame(1);
  ASSERT_EQ(Render(scene, frame.bitmap), kRenderResultAssetMissing);
  ExpectPicture(frame.bitmap, 1, [](int32_t x, int32_t y) { return Expected({{100, 50, 300, 150, kRed}}, x, y); });
  Data missing;
  ASSERT_TRUE(Bm()->GetBitmapData(frame.bitmap, &missing.value, kBitmapDataMissingAssets, nullptr));
  const EngineString* text = Gd()->GetString(&missing.value);
  ASSERT_NE(text, nullptr);
  std::string utf8(static_cast<size_t>(St()->GetCStringLength(text, kStringEncodingUtf8)) + 1, '\0');
  St()->GetCString(text, utf8.data(), static_cast<int32_t>(utf8.size()), kStringEncodingUtf8);
  utf8.pop_back();
  EXPECT_EQ(utf8, "/nonexistent/sky.png: No such file or directory");
}

TEST(RenderTest, RefusesWhatItCannotRender) {
  SceneUnderCamera scene(kFieldOfView);
  Frame frame(1);
  EXPECT_EQ(Ge()->RenderDocument(nullptr, 0, nullptr, nullptr, frame.bitmap, nullptr, 1, nullptr, 0),
            kRenderResultNoProject);
  EXPECT_EQ(Ge()->RenderDocument(scene.document, 0, nullptr, nullptr, nullptr, nullptr, 1, nullptr, 0),
            kRenderResultNoOutput);
}

}  // namespace
}  // namespace quillon::testing
