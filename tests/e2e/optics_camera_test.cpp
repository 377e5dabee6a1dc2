// End to end: camera layers and the default camera through `aehost export` and
// `orytool dump --json`. Expected values are worked out here from the conventions of both
// sides: After Effects' zoom is the distance in composition pixels at which the picture plane
// is as wide as the composition, so the horizontal field of view is 2 atan((width / 2) / zoom)
// with the zoom counted in square pixels; film sizes are in points (1/72 inch); scene y is
// After Effects' y negated, and the export root sits at (-width / 2, height / 2, 0).
#include <cmath>

#include "tests/e2e/optics_scene.h"

namespace {

using namespace optics_test;

constexpr double kPi = 3.14159265358979323846;
// A distance of After Effects in scene focus terms: points to millimetres, times 2.8346 in
// single precision.
constexpr double kFocusFactor = 25.4 / 72.0 * 2.8345999717712402;

// One composition with the given layers; footage 1 is a grey solid of 200 by 100.
std::string Project(const std::string& compExtra, const std::string& layers) {
  return R"({"format": "aehost-project", "version": 1, "path": "/p/optics.aep",
    "footage": [{"id": 1, "name": "Grey", "width": 200, "height": 100, "solid": {"color": [0.5, 0.5, 0.5]}}],
    "comps": [{"id": 2, "name": "Main", "width": 1920, "height": 1080, "frameRate": 25, "duration": 2)" +
         compExtra + R"(, "layers": [)" + layers + "]}]}";
}

class CameraExport : public SceneTest {};

TEST_F(CameraExport, FlythroughCameraHasItsOpticsAndIsTheScenesCamera) {
  const Json::Value dump = ExportAndDump(std::string(QAE_EXAMPLES_DIR) + "/flythrough.json", "Flythrough", workDir_);
  const std::vector<const Json::Value*> cameras = ObjectsOfType(dump, "ObjectType_Camera");
  ASSERT_EQ(cameras.size(), 1u) << "no default camera beside a camera layer";
  const Json::Value& camera = *cameras[0];
  EXPECT_EQ(camera["name"].asString(), "Fly Camera");
  EXPECT_EQ(IntParam(camera, "CameraParam_Projection"), 0);
  // The aperture stream of 36 stands for the film width.
  EXPECT_DOUBLE_EQ(FloatParam(camera, "CameraParam_Aperture"), 36.0);
  // Zoom 960 on a 1920 wide composition: the half width over the zoom is 1, a right angle.
  EXPECT_NEAR(FloatParam(camera, "CameraParam_FieldOfView"), kPi / 2.0, 1e-12);
  EXPECT_NEAR(FloatParam(camera, "CameraParam_FocusDistance"), 1500.0 * 0.9999838789304096, 1e-9);
  EXPECT_EQ(dump["views"][0]["scene_camera"].asString(), camera["ref"].asString());

  const Json::Value* target = ObjectNamed(dump, "Fly Camera.Target");
  ASSERT_NE(target, nullptr);
  EXPECT_EQ(TargetRef(camera), (*target)["ref"].asString());
}

TEST_F(CameraExport, KeyedZoomAndFocusBecomeTracksSampledEachFrame) {
  const Json::Value dump = ExportAndDump(std::string(QAE_EXAMPLES_DIR) + "/flythrough.json", "Flythrough", workDir_);
  const Json::Value* camera = ObjectNamed(dump, "Fly Camera");
  ASSERT_NE(camera, nullptr);
  const Json::Value* fov = Track(*camera, "Field of View");
  ASSERT_NE(fov, nullptr);
  // The zoom runs linearly from 960 at 0 s to 1920 at 4 s (frame 100 at 25 fps).
  for (int frame : {0, 25, 50, 99}) {
    const double zoom = 960.0 + 960.0 * frame / 100.0;
    EXPECT_NEAR(KeyAt(*fov, frame, 25), 2.0 * std::atan(960.0 / zoom), 1e-9) << frame;
  }
  const Json::Value* focus = Track(*camera, "Focus Distance");
  ASSERT_NE(focus, nullptr);
  // From 1500 at 0 s to 2500 at 2 s, then held; keys divide by the inverse of the static factor.
  EXPECT_NEAR(KeyAt(*focus, 0, 25), 1500.0 / 1.0000161213294834, 1e-9);
  EXPECT_NEAR(KeyAt(*focus, 25, 25), 2000.0 / 1.0000161213294834, 1e-9);
  EXPECT_NEAR(KeyAt(*focus, 0, 25), FloatParam(*camera, "CameraParam_FocusDistance"), 1e-9);
  // The held stretch says nothing and is pruned: no key between 2 s and the last frame.
  EXPECT_TRUE(std::isnan(KeyAt(*focus, 75, 25)));
}

TEST_F(CameraExport, CompositionWithoutCameraGetsTheDefaultCamera) {
  const Json::Value dump = ExportAndDump(std::string(QAE_EXAMPLES_DIR) + "/flythrough.json", "Still Life", workDir_);
  const std::vector<const Json::Value*> cameras = ObjectsOfType(dump, "ObjectType_Camera");
  ASSERT_EQ(cameras.size(), 1u);
  const Json::Value& camera = *cameras[0];
  EXPECT_EQ(camera["name"].asString(), "AE ");
  EXPECT_EQ(dump["views"][0]["scene_camera"].asString(), camera["ref"].asString());

  // Camera and target stand under the root node, beside the layers' objects.
  const Json::Value& root = dump["objects"][0];
  const Json::Value* target = nullptr;
  bool cameraUnderRoot = false;
  for (const Json::Value& child : root["children"]) {
    if (child["ref"] == camera["ref"]) cameraUnderRoot = true;
    if (child["name"].asString() == "AE .Target") target = &child;
  }
  EXPECT_TRUE(cameraUnderRoot);
  ASSERT_NE(target, nullptr);
  EXPECT_EQ(TargetRef(camera), (*target)["ref"].asString());

  // After Effects' default view of a 1280 wide composition: a 50 mm lens on 36 mm film, so the
  // distance to the picture plane is 1280 * 50 / 36. The scene's zoom is taken as half of it.
  const double distance = 1280.0 * 50.0 / 36.0;
  const std::vector<double> eye = VectorParam(camera, "ObjectParam_Position");
  ASSERT_EQ(eye.size(), 3u);
  EXPECT_NEAR(eye[0], 640.0, 1e-9);
  EXPECT_NEAR(eye[1], -360.0, 1e-9);
  EXPECT_NEAR(eye[2], -distance, 1e-9);
  const std::vector<double> middle = VectorParam(*target, "ObjectParam_Position");
  ASSERT_EQ(middle.size(), 3u);
  EXPECT_NEAR(middle[0], 640.0, 1e-9);
  EXPECT_NEAR(middle[1], -360.0, 1e-9);
  EXPECT_NEAR(middle[2], 0.0, 1e-9);
  EXPECT_NEAR(FloatParam(camera, "CameraParam_FieldOfView"), 2.0 * std::atan(640.0 / (distance / 2.0)), 1e-12);
  EXPECT_NEAR(FloatParam(camera, "CameraParam_FocusDistance"), distance / 2.0 * kFocusFactor, 1e-9);
  EXPECT_DOUBLE_EQ(FloatParam(camera, "CameraParam_Aperture"), 36.0);
  EXPECT_DOUBLE_EQ(FloatParam(camera, "CameraParam_FocalLength"), 50.0);
  EXPECT_EQ(IntParam(camera, "CameraParam_Projection"), 0);
}

TEST_F(CameraExport, NonSquarePixelsWidenTheView) {
  // Zoom 960 in pixels twice as wide as tall counts as 480 square pixels.
  const std::string project = WriteProject(
      workDir_, Project(R"(, "pixelAspect": 2)",
                        R"({"id": 1, "name": "Cam", "type": "camera", "camera": {"zoom": 960}})"));
  const Json::Value dump = ExportAndDump(project, "Main", workDir_);
  const Json::Value* camera = ObjectNamed(dump, "Cam");
  ASSERT_NE(camera, nullptr);
  EXPECT_NEAR(FloatParam(*camera, "CameraParam_FieldOfView"), 2.0 * std::atan(960.0 / 480.0), 1e-12);
  EXPECT_EQ(Track(*camera, "Field of View"), nullptr) << "a zoom without keys has no track";
}

TEST_F(CameraExport, OrthographicCameraAndFilmWidthBelowOneMillimetre) {
  const std::string project = WriteProject(
      workDir_, Project("", R"({"id": 1, "name": "Ortho", "type": "camera",
                               "camera": {"type": "orthographic", "aperture": 0.5}})"));
  const Json::Value dump = ExportAndDump(project, "Main", workDir_);
  const Json::Value* camera = ObjectNamed(dump, "Ortho");
  ASSERT_NE(camera, nullptr);
  EXPECT_EQ(IntParam(*camera, "CameraParam_Projection"), 4);
  EXPECT_DOUBLE_EQ(FloatParam(*camera, "CameraParam_Aperture"), 36.0);
}

// A camera that looks at its point of interest follows a target only while it has no turn of
// its own; an orientation of (10, 0, 0) comes out of the matrix as a pitch of 10 degrees.
TEST_F(CameraExport, AnOrientedCameraHasNoTarget) {
  const std::string project = WriteProject(
      workDir_, Project("", R"({"id": 1, "name": "Straight", "type": "camera",
                               "transform": {"position": [960, 540, -1000], "pointOfInterest": [960, 540, 0]}},
                              {"id": 2, "name": "Tilted", "type": "camera",
                               "transform": {"position": [960, 540, -1000], "pointOfInterest": [960, 540, 0],
                                             "orientation": [10, 0, 0]}})"));
  const Json::Value dump = ExportAndDump(project, "Main", workDir_);
  EXPECT_NE(ObjectNamed(dump, "Straight.Target"), nullptr);
  EXPECT_EQ(ObjectNamed(dump, "Tilted.Target"), nullptr);
  const Json::Value* tilted = ObjectNamed(dump, "Tilted");
  ASSERT_NE(tilted, nullptr);
  EXPECT_EQ(TargetRef(*tilted), "");
  const std::vector<double> rotation = VectorParam(*tilted, "ObjectParam_Rotation");
  ASSERT_EQ(rotation.size(), 3u);
  EXPECT_NEAR(rotation[0], 0.0, 1e-9);
  EXPECT_NEAR(std::fabs(rotation[1]), 10.0 * kPi / 180.0, 1e-9);
  EXPECT_NEAR(rotation[2], 0.0, 1e-9);
}

TEST_F(CameraExport, LowestCameraLayerIsTheScenesCamera) {
  const std::string project = WriteProject(
      workDir_, Project("", R"({"id": 1, "name": "Upper", "type": "camera"},
                               {"id": 2, "name": "Lower", "type": "camera"})"));
  const Json::Value dump = ExportAndDump(project, "Main", workDir_);
  ASSERT_EQ(ObjectsOfType(dump, "ObjectType_Camera").size(), 2u);
  const Json::Value* lower = ObjectNamed(dump, "Lower");
  ASSERT_NE(lower, nullptr);
  EXPECT_EQ(dump["views"][0]["scene_camera"].asString(), (*lower)["ref"].asString());
}

TEST_F(CameraExport, CameraInsideAPrecompositionKeepsTheDefaultCameraAway) {
  const std::string text = R"({"format": "aehost-project", "version": 1, "path": "/p/optics.aep",
    "footage": [{"id": 1, "name": "Grey", "width": 200, "height": 100, "solid": {"color": [0.5, 0.5, 0.5]}}],
    "comps": [
      {"id": 2, "name": "Inner", "width": 1920, "height": 1080, "frameRate": 25, "duration": 2,
       "layers": [{"id": 1, "name": "Inner Cam", "type": "camera"}]},
      {"id": 3, "name": "Outer", "width": 1920, "height": 1080, "frameRate": 25, "duration": 2,
       "layers": [{"id": 2, "name": "Pre", "source": 2, "threeD": true},
                  {"id": 3, "name": "Card", "source": 1, "threeD": true}]}]})";
  const Json::Value dump = ExportAndDump(WriteProject(workDir_, text), "Outer", workDir_);
  const std::vector<const Json::Value*> cameras = ObjectsOfType(dump, "ObjectType_Camera");
  ASSERT_EQ(cameras.size(), 1u);
  EXPECT_EQ((*cameras[0])["name"].asString(), "Inner Cam");
  EXPECT_EQ(ObjectNamed(dump, "AE "), nullptr);
}

}  // namespace
