// End to end: exported scenes through `orytool gltf`. Every example composition converts to a
// file that the Khronos validator passes without errors; the camera of flythrough.json stands
// and looks where `aehost xform` says, after the documented change of axes; the spot light of
// lights.json has the layer's cone; a solid's quad has the solid's size; bad input is refused
// with the usual messages and exit codes, and nothing is left in place of a good file.
#include <gtest/gtest.h>
#include <json/json.h>
#include <sys/stat.h>
#include <tiny_gltf.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <numbers>
#include <sstream>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"

namespace {

using qae_test::RunCommand;
using std::numbers::pi;

constexpr int kFailed = 1;
constexpr int kBadInput = 2;

std::string Examples(const std::string& name) { return std::string(QAE_EXAMPLES_DIR) + "/" + name; }

class GltfTest : public ::testing::Test {
 protected:
  void SetUp() override { dir = qae_test::MakeTempDir("gltf"); }
  void TearDown() override { std::filesystem::remove_all(dir); }

  // Exports the composition and converts the scene; gives the glTF file's path.
  std::string Convert(const std::string& project, const std::string& comp, const std::string& output,
                      const std::vector<std::string>& exportOptions = {}) {
    const std::string scene = dir + "/" + output + ".ory";
    std::vector<std::string> args{"export", Examples(project), "--comp", comp, "--output", scene, "--quiet"};
    args.insert(args.end(), exportOptions.begin(), exportOptions.end());
    const auto exported = RunCommand(qae_test::AehostPath(), args);
    EXPECT_EQ(exported.exitCode, 0) << exported.err;
    const std::string gltf = dir + "/" + output;
    converted = RunCommand(qae_test::OrytoolPath(), {"gltf", scene, "--output", gltf});
    EXPECT_EQ(converted.exitCode, 0) << converted.err;
    return gltf;
  }

  tinygltf::Model Load(const std::string& path) {
    tinygltf::Model model;
    tinygltf::TinyGLTF loader;
    std::string error, warning;
    const bool binary = path.ends_with(".glb");
    const bool loaded = binary ? loader.LoadBinaryFromFile(&model, &error, &warning, path)
                               : loader.LoadASCIIFromFile(&model, &error, &warning, path);
    EXPECT_TRUE(loaded) << error;
    return model;
  }

  std::string dir;
  qae_test::CommandResult converted;
};

// --- The validator --------------------------------------------------------------------------

std::string FindOnPath(const std::string& program) {
  const char* path = std::getenv("PATH");
  std::stringstream folders(path ? path : "");
  for (std::string folder; std::getline(folders, folder, ':');) {
    const std::string candidate = folder + "/" + program;
    if (!folder.empty() && access(candidate.c_str(), X_OK) == 0) return candidate;
  }
  return "";
}

// Why the validator cannot run here, or empty when it can.
std::string ValidatorMissing() {
  if (FindOnPath("node").empty()) return "node is not installed (scripts/setup.sh installs it)";
  if (!std::filesystem::exists(std::string(QAE_SOURCE_DIR) + "/build-tools/node_modules/gltf-validator"))
    return "the gltf-validator package is not in build-tools/node_modules (scripts/setup.sh installs it)";
  return "";
}

// Runs the validator; its first line is "FILE: N errors, N warnings, N infos, N hints".
qae_test::CommandResult Validate(const std::string& file) {
  return RunCommand(FindOnPath("node"), {std::string(QAE_SOURCE_DIR) + "/scripts/validate_gltf.js", file});
}

struct Example {
  const char* project;
  const char* comp;
  const char* text;  // the answer to the text question
};

void PrintTo(const Example& e, std::ostream* out) { *out << e.project << " " << e.comp << " " << e.text; }

class EveryExample : public GltfTest, public ::testing::WithParamInterface<Example> {};

TEST_P(EveryExample, PassesTheKhronosValidatorAsGltfAndGlb) {
  const std::string missing = ValidatorMissing();
  if (!missing.empty()) GTEST_SKIP() << missing;
  for (const char* suffix : {".gltf", ".glb"}) {
    const std::string file =
        Convert(GetParam().project, GetParam().comp, std::string("scene") + suffix, {"--text", GetParam().text});
    const auto report = Validate(file);
    EXPECT_EQ(report.exitCode, 0) << report.out << report.err;
    EXPECT_NE(report.out.find(": 0 errors, "), std::string::npos) << report.out;
    // The warnings are counted for the record; only errors fail.
    std::cout << report.out.substr(0, report.out.find('\n')) << '\n';
  }
}

INSTANTIATE_TEST_SUITE_P(
    Examples, EveryExample,
    ::testing::Values(Example{"rig.json", "Rig", "live"}, Example{"keys.json", "Keys", "live"},
                      Example{"nested.json", "Outer", "live"}, Example{"ntsc.json", "Broadcast", "live"},
                      Example{"flythrough.json", "Flythrough", "live"}, Example{"flythrough.json", "Still Life", "live"},
                      Example{"lights.json", "Lights", "live"}, Example{"text.json", "Titles", "live"},
                      Example{"text.json", "Titles", "planes"}, Example{"text.json", "Lower Third", "planes"},
                      Example{"text.json", "Outlines", "planes"}, Example{"shapes.json", "Shapes", "live"},
                      Example{"shapes.json", "Inner", "live"}),
    [](const ::testing::TestParamInfo<Example>& info) {
      std::string name = std::string(info.param.project).substr(0, std::strlen(info.param.project) - 5) + "_" +
                         info.param.comp + "_" + info.param.text;
      for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
      return name;
    });

// --- Places, angles and sizes against hand-worked values ------------------------------------

struct Mat {
  double m[4][4];  // column vectors: m[column][row]
};

Mat Identity() {
  Mat r{};
  for (int i = 0; i < 4; ++i) r.m[i][i] = 1.0;
  return r;
}

Mat Multiply(const Mat& a, const Mat& b) {
  Mat r{};
  for (int c = 0; c < 4; ++c)
    for (int row = 0; row < 4; ++row)
      for (int k = 0; k < 4; ++k) r.m[c][row] += a.m[k][row] * b.m[c][k];
  return r;
}

// T * R * S of glTF, with R from the unit quaternion (x, y, z, w).
Mat FromTrs(const std::vector<double>& t, const std::vector<double>& q, const std::vector<double>& s) {
  const double x = q[0], y = q[1], z = q[2], w = q[3];
  const double rotation[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y + z * w), 2 * (x * z - y * w)},
                                 {2 * (x * y - z * w), 1 - 2 * (x * x + z * z), 2 * (y * z + x * w)},
                                 {2 * (x * z + y * w), 2 * (y * z - x * w), 1 - 2 * (x * x + y * y)}};
  Mat r = Identity();
  for (int c = 0; c < 3; ++c)
    for (int row = 0; row < 3; ++row) r.m[c][row] = rotation[c][row] * s[c];
  for (int row = 0; row < 3; ++row) r.m[3][row] = t[row];
  return r;
}

std::vector<float> Floats(const tinygltf::Model& model, int accessorIndex) {
  const tinygltf::Accessor& accessor = model.accessors.at(accessorIndex);
  const tinygltf::BufferView& view = model.bufferViews.at(accessor.bufferView);
  std::vector<float> values(accessor.count * tinygltf::GetNumComponentsInType(accessor.type));
  std::memcpy(values.data(), model.buffers.at(view.buffer).data.data() + view.byteOffset + accessor.byteOffset,
              values.size() * sizeof(float));
  return values;
}

// The node's translation, rotation or scale at a time that is one of its key times, or its
// own value when no channel moves it.
std::vector<double> PropertyAt(const tinygltf::Model& model, int node, const std::string& path, double seconds,
                               const std::vector<double>& own) {
  for (const tinygltf::Animation& animation : model.animations) {
    for (const tinygltf::AnimationChannel& channel : animation.channels) {
      if (channel.target_node != node || channel.target_path != path) continue;
      const tinygltf::AnimationSampler& sampler = animation.samplers.at(channel.sampler);
      const std::vector<float> times = Floats(model, sampler.input);
      const std::vector<float> values = Floats(model, sampler.output);
      const std::size_t width = values.size() / times.size();
      for (std::size_t i = 0; i < times.size(); ++i) {
        if (std::fabs(times[i] - seconds) < 1e-6) return std::vector<double>(values.begin() + i * width, values.begin() + (i + 1) * width);
      }
      ADD_FAILURE() << "no key of " << path << " at " << seconds << " s";
    }
  }
  return own;
}

int NodeNamed(const tinygltf::Model& model, const std::string& name) {
  for (std::size_t i = 0; i < model.nodes.size(); ++i)
    if (model.nodes[i].name == name) return static_cast<int>(i);
  ADD_FAILURE() << "no node " << name;
  return 0;
}

int ParentOf(const tinygltf::Model& model, int node) {
  for (std::size_t i = 0; i < model.nodes.size(); ++i)
    for (int child : model.nodes[i].children)
      if (child == node) return static_cast<int>(i);
  return -1;
}

Mat WorldMatrixAt(const tinygltf::Model& model, int node, double seconds) {
  const tinygltf::Node& n = model.nodes.at(node);
  const std::vector<double> t = n.translation.empty() ? std::vector<double>{0, 0, 0} : n.translation;
  const std::vector<double> r = n.rotation.empty() ? std::vector<double>{0, 0, 0, 1} : n.rotation;
  const std::vector<double> s = n.scale.empty() ? std::vector<double>{1, 1, 1} : n.scale;
  const Mat local = FromTrs(PropertyAt(model, node, "translation", seconds, t), PropertyAt(model, node, "rotation", seconds, r),
                            PropertyAt(model, node, "scale", seconds, s));
  const int parent = ParentOf(model, node);
  return parent < 0 ? local : Multiply(WorldMatrixAt(model, parent, seconds), local);
}

// A vector of the host (x right, y down, z into the picture, origin at the composition's top
// left corner) in glTF's axes: y up, z towards the viewer, origin at the composition's centre.
std::array<double, 3> HostToGltf(double x, double y, double z) { return {x, -y, -z}; }

TEST_F(GltfTest, TheFlythroughCameraStandsAndLooksWhereTheHostSays) {
  const tinygltf::Model model = Load(Convert("flythrough.json", "Flythrough", "fly.gltf"));
  const int camera = NodeNamed(model, "Fly Camera");
  ASSERT_GE(model.nodes[camera].camera, 0);
  for (int frame : {0, 30}) {
    SCOPED_TRACE("frame " + std::to_string(frame));
    const auto xform = RunCommand(qae_test::AehostPath(), {"xform", Examples("flythrough.json"), "--comp", "Flythrough",
                                                           "--layer", "Fly Camera", "--frame", std::to_string(frame)});
    ASSERT_EQ(xform.exitCode, 0) << xform.err;
    const Json::Value rows = qae_test::ParseJson(xform.out)["matrix"];
    const Mat world = WorldMatrixAt(model, camera, frame / 25.0);  // 25 frames a second
    // The place: the composition is 1920 x 1080, so its centre (960, 540) is glTF's origin.
    const auto place = HostToGltf(rows[3][0].asDouble() - 960.0, rows[3][1].asDouble() - 540.0, rows[3][2].asDouble());
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(world.m[3][i], place[i], 1e-3) << "axis " << i;
    // The look direction: the host's z axis is glTF's -z axis of the camera; the host's x
    // axis is glTF's x axis (both are level).
    const auto look = HostToGltf(rows[2][0].asDouble(), rows[2][1].asDouble(), rows[2][2].asDouble());
    const auto side = HostToGltf(rows[0][0].asDouble(), rows[0][1].asDouble(), rows[0][2].asDouble());
    for (int i = 0; i < 3; ++i) {
      EXPECT_NEAR(-world.m[2][i], look[i], 1e-6) << "look " << i;
      EXPECT_NEAR(world.m[0][i], side[i], 1e-6) << "side " << i;
    }
  }
  // Its field of view: a zoom of 960 on 1920 pixels is a quarter turn across; with the film
  // aspect 16:9, tan(yfov / 2) = 1 / (16 / 9).
  const tinygltf::Camera& lens = model.cameras.at(model.nodes[camera].camera);
  EXPECT_NEAR(lens.perspective.yfov, 2.0 * std::atan(9.0 / 16.0), 1e-9);
  EXPECT_NEAR(lens.perspective.aspectRatio, 16.0 / 9.0, 1e-9);
}

TEST_F(GltfTest, TheSpotLightHasTheLayersCone) {
  const tinygltf::Model model = Load(Convert("lights.json", "Lights", "lights.glb"));
  const int node = NodeNamed(model, "Spot");
  const tinygltf::Light& spot = model.lights.at(model.nodes[node].extensions.at("KHR_lights_punctual").Get("light").GetNumberAsInt());
  EXPECT_EQ(spot.type, "spot");
  // lights.json: cone angle 90 degrees and feather 50 per cent at frame 0. glTF measures
  // from the axis: half of 90 degrees outside, half of the unfeathered 45 degrees inside.
  EXPECT_NEAR(spot.spot.outerConeAngle, pi / 4, 1e-12);
  EXPECT_NEAR(spot.spot.innerConeAngle, pi / 8, 1e-9);
  EXPECT_EQ(spot.color, (std::vector<double>{1, 0, 0}));
}

TEST_F(GltfTest, ASolidsQuadHasTheSolidsSize) {
  const tinygltf::Model model = Load(Convert("flythrough.json", "Flythrough", "fly.glb"));
  // The layer Wall shows the solid "Red Wall" of 1000 x 500 pixels in red.
  const tinygltf::Primitive& quad = model.meshes.at(model.nodes[NodeNamed(model, "Wall")].mesh).primitives.at(0);
  const std::vector<float> corners = Floats(model, quad.attributes.at("POSITION"));
  ASSERT_EQ(corners.size(), 12u);
  float minX = 1e9f, maxX = -1e9f, minY = 1e9f, maxY = -1e9f;
  for (std::size_t i = 0; i < corners.size(); i += 3) {
    minX = std::min(minX, corners[i]), maxX = std::max(maxX, corners[i]);
    minY = std::min(minY, corners[i + 1]), maxY = std::max(maxY, corners[i + 1]);
    EXPECT_EQ(corners[i + 2], 0.0f);
  }
  EXPECT_EQ(maxX - minX, 1000.0f);
  EXPECT_EQ(maxY - minY, 500.0f);
  EXPECT_EQ(model.accessors.at(quad.indices).count, 6u);
  EXPECT_EQ(model.materials.at(quad.material).pbrMetallicRoughness.baseColorFactor, (std::vector<double>{1, 0, 0, 1}));
}

// --- The summary and bad input -------------------------------------------------------------

TEST_F(GltfTest, TheSummarySaysWhatWasConvertedAndWhatWasLeftOut) {
  Convert("flythrough.json", "Flythrough", "fly.gltf");
  EXPECT_NE(converted.out.find("to " + dir + "/fly.gltf: 8 nodes, 1 camera, 0 lights, 4 planes, 0 spline faces, "
                               "4 materials, 0 textures, 1 animated node (2 channels, "),
            std::string::npos)
      << converted.out;
  EXPECT_NE(converted.out.find("frames 0..99 at 25 fps\n"), std::string::npos) << converted.out;
  EXPECT_NE(converted.out.find("left out: the texture of material \"Plate\" (/footage/plate.mov: a movie or an image "
                               "sequence; glTF holds still images)\n"),
            std::string::npos)
      << converted.out;
  EXPECT_EQ(converted.err, "");
}

TEST_F(GltfTest, AnAmbientLightIsNamedAsNotRepresentable) {
  const std::string description = dir + "/ambient.json";
  qae_test::WriteFile(description, R"({"objects": [{"type": "ObjectType_Light", "name": "Fill",
      "params": [{"id": "LightParam_Type", "int32": 3}]}]})");
  ASSERT_EQ(RunCommand(qae_test::OrytoolPath(), {"build", description, "-o", dir + "/ambient.ory"}).exitCode, 0);
  const auto result = RunCommand(qae_test::OrytoolPath(), {"gltf", dir + "/ambient.ory", "-o", dir + "/ambient.gltf"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.out.find("1 node, 0 cameras, 0 lights, "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("left out: ambient light \"Fill\" (glTF has no ambient light)\n"), std::string::npos)
      << result.out;
}

TEST_F(GltfTest, MarkersAreNamedEventsCountedAtTheFrameRateAsked) {
  // A new document runs 90 frames at 30 fps, 0 to 3 s; a marker "cut" at 2 s.
  qae_test::WriteFile(dir + "/marked.json", R"({"objects": [{"type": "ObjectType_Null", "name": "N"}],
      "markers": [{"name": "cut", "params": [{"id": "MarkerParam_Time", "time": [2, 1]},
                                             {"id": "MarkerParam_Note", "string": "to the wide shot"}]}]})");
  ASSERT_EQ(RunCommand(qae_test::OrytoolPath(), {"build", dir + "/marked.json", "-o", dir + "/marked.ory"}).exitCode, 0);
  const auto result = RunCommand(qae_test::OrytoolPath(),
                                 {"gltf", dir + "/marked.ory", "-o", dir + "/marked.gltf", "--frame-rate", "24"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.out.find(", 1 marker, frames 0..72 at 24 fps\n"), std::string::npos) << result.out;
  const tinygltf::Model model = Load(dir + "/marked.gltf");
  // Nothing moves, so the markers stand in the scene's extras.
  const tinygltf::Value& marker = model.scenes.at(0).extras.Get("markers").Get(0);
  EXPECT_EQ(marker.Get("name").Get<std::string>(), "cut");
  EXPECT_EQ(marker.Get("time").GetNumberAsDouble(), 2.0);
  EXPECT_EQ(marker.Get("frame").GetNumberAsInt(), 48);
  EXPECT_EQ(marker.Get("note").Get<std::string>(), "to the wide shot");
}

// A picture of one orange pixel, as PNG.
const std::string kOnePixelPng(
    "\x89\x50\x4e\x47\x0d\x0a\x1a\x0a\x00\x00\x00\x0d\x49\x48\x44\x52\x00\x00\x00\x01\x00\x00\x00\x01\x08\x02\x00"
    "\x00\x00\x90\x77\x53\xde\x00\x00\x00\x0c\x49\x44\x41\x54\x78\x9c\x63\xf8\xdf\xc0\x00\x00\x04\x01\x01\x80\xc5"
    "\x2a\x18\x5d\x00\x00\x00\x00\x49\x45\x4e\x44\xae\x42\x60\x82",
    69);

TEST_F(GltfTest, AStillPictureBesideTheSceneBecomesAnEmbeddedTexture) {
  qae_test::WriteFile(dir + "/pixel.png", kOnePixelPng);
  // A plane whose material shows pixel.png, named relative to the scene's folder, and one whose
  // picture is missing.
  qae_test::WriteFile(dir + "/card.json", R"({
    "objects": [
      {"type": "ObjectType_Plane", "name": "Card",
       "params": [{"id": 1230, "float": 640}, {"id": 1231, "float": 360}, {"id": 1300, "int32": 5}],
       "tags": [{"type": "TagType_Texture", "params": [{"id": 1010, "link": "seen"}]}]},
      {"type": "ObjectType_Plane", "name": "Blank",
       "params": [{"id": 1230, "float": 10}, {"id": 1231, "float": 10}, {"id": 1300, "int32": 5}],
       "tags": [{"type": "TagType_Texture", "params": [{"id": 1010, "link": "lost"}]}]}],
    "materials": [
      {"type": "MaterialType_Standard", "name": "Seen", "ref": "seen", "params": [{"id": 8000, "link": "picture"}],
       "shaders": [{"type": "ShaderType_Bitmap", "ref": "picture", "params": [{"id": 1000, "filename": "pixel.png"}]}]},
      {"type": "MaterialType_Standard", "name": "Lost", "ref": "lost", "params": [{"id": 8000, "link": "gone"}],
       "shaders": [{"type": "ShaderType_Bitmap", "ref": "gone", "params": [{"id": 1000, "filename": "gone.png"}]}]}]})");
  const auto built = RunCommand(qae_test::OrytoolPath(), {"build", dir + "/card.json", "-o", dir + "/card.ory"});
  ASSERT_EQ(built.exitCode, 0) << built.err;
  const auto result = RunCommand(qae_test::OrytoolPath(), {"gltf", dir + "/card.ory", "-o", dir + "/card.glb"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.out.find(", 2 materials, 1 texture, "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("left out: the texture of material \"Lost\" (" + dir + "/gone.png: "), std::string::npos)
      << result.out;
  const tinygltf::Model model = Load(dir + "/card.glb");
  ASSERT_EQ(model.images.size(), 1u);
  EXPECT_EQ(model.images[0].mimeType, "image/png");
  const tinygltf::BufferView& view = model.bufferViews.at(model.images[0].bufferView);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(model.buffers[0].data.data()) + view.byteOffset, view.byteLength),
            kOnePixelPng);
  const tinygltf::Primitive& card = model.meshes.at(model.nodes[NodeNamed(model, "Card")].mesh).primitives.at(0);
  EXPECT_EQ(model.materials.at(card.material).pbrMetallicRoughness.baseColorTexture.index, 0);
  // The picture's top row (v = 0) at the top of the card (+y), its left column at -x.
  const std::vector<float> uv = Floats(model, card.attributes.at("TEXCOORD_0"));
  const std::vector<float> xyz = Floats(model, card.attributes.at("POSITION"));
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(uv[2 * i], xyz[3 * i] < 0 ? 0.0f : 1.0f);
    EXPECT_EQ(uv[2 * i + 1], xyz[3 * i + 1] > 0 ? 0.0f : 1.0f);
  }
  const std::string missing = ValidatorMissing();
  if (!missing.empty()) GTEST_SKIP() << missing;
  const auto report = Validate(dir + "/card.glb");
  EXPECT_NE(report.out.find(": 0 errors, "), std::string::npos) << report.out;
}

struct BadCase {
  const char* name;
  // Writes the case's files into the folder and gives the arguments after "gltf".
  std::function<std::vector<std::string>(const std::string& dir)> prepare;
  int exitCode;
  std::string message;  // on standard error, "@" standing for the folder
};

void PrintTo(const BadCase& c, std::ostream* out) { *out << c.name; }

std::string Expand(std::string text, const std::string& dir) {
  for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at + dir.size()))
    text.replace(at, 1, dir);
  return text;
}

std::vector<std::string> SceneWithOneNull(const std::string& dir) {
  qae_test::WriteFile(dir + "/one.json", R"({"objects": [{"type": "ObjectType_Null", "name": "N"}]})");
  RunCommand(qae_test::OrytoolPath(), {"build", dir + "/one.json", "-o", dir + "/one.ory"});
  return {dir + "/one.ory"};
}

class BadInput : public GltfTest, public ::testing::WithParamInterface<BadCase> {};

TEST_P(BadInput, IsRefusedAndLeavesTheOutputAsItWas) {
  std::vector<std::string> args{"gltf"};
  const std::vector<std::string> rest = GetParam().prepare(dir);
  args.insert(args.end(), rest.begin(), rest.end());
  const std::string kept = "what the user had before\n";
  if (!std::filesystem::exists(dir + "/out.gltf")) qae_test::WriteFile(dir + "/out.gltf", kept);
  const auto result = RunCommand(qae_test::OrytoolPath(), args);
  EXPECT_EQ(result.exitCode, GetParam().exitCode) << result.err;
  EXPECT_NE(result.err.find(Expand(GetParam().message, dir)), std::string::npos) << result.err;
  EXPECT_EQ(result.out, "");
  if (std::filesystem::is_regular_file(dir + "/out.gltf")) {
    EXPECT_EQ(qae_test::ReadFile(dir + "/out.gltf"), kept);
  }
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    EXPECT_FALSE(entry.path().string().ends_with(".tmp")) << entry.path();
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadInput,
    ::testing::Values(
        BadCase{"MissingScene", [](const std::string& d) { return std::vector<std::string>{d + "/none.ory", "-o", d + "/out.gltf"}; },
                kBadInput, "orytool: @/none.ory: "},
        BadCase{"DamagedScene",
                [](const std::string& d) {
                  std::string bytes = qae_test::ReadFile(SceneWithOneNull(d)[0]);
                  for (std::size_t i = 40; i < bytes.size(); i += 5) bytes[i] = static_cast<char>(~bytes[i]);
                  qae_test::WriteFile(d + "/damaged.ory", bytes);
                  return std::vector<std::string>{d + "/damaged.ory", "-o", d + "/out.gltf"};
                },
                kBadInput, "orytool: @/damaged.ory: "},
        BadCase{"NotAScene",
                [](const std::string& d) {
                  qae_test::WriteFile(d + "/text.ory", "just some words\n");
                  return std::vector<std::string>{d + "/text.ory", "-o", d + "/out.gltf"};
                },
                kBadInput, "orytool: @/text.ory: "},
        BadCase{"NothingToConvert",
                [](const std::string& d) {
                  qae_test::WriteFile(d + "/empty.json", "{}");
                  RunCommand(qae_test::OrytoolPath(), {"build", d + "/empty.json", "-o", d + "/empty.ory"});
                  return std::vector<std::string>{d + "/empty.ory", "-o", d + "/out.gltf"};
                },
                kBadInput, "orytool: @/empty.ory: the scene holds no object, so there is nothing to convert"},
        BadCase{"NumberBeyondFloats",
                [](const std::string& d) {
                  qae_test::WriteFile(d + "/huge.json", R"({"objects": [{"type": "ObjectType_Plane", "name": "Huge",
                      "params": [{"id": 1230, "float": 1e300}]}]})");
                  RunCommand(qae_test::OrytoolPath(), {"build", d + "/huge.json", "-o", d + "/huge.ory"});
                  return std::vector<std::string>{d + "/huge.ory", "-o", d + "/out.gltf"};
                },
                kBadInput, "orytool: @/huge.ory: the number -5e+299 lies beyond the 32-bit floats that glTF holds"},
        BadCase{"WrongSuffix",
                [](const std::string& d) {
                  return std::vector<std::string>{SceneWithOneNull(d)[0], "-o", d + "/out.obj"};
                },
                kBadInput, "orytool: @/out.obj: the output must end in .gltf (JSON) or .glb (binary)"},
        BadCase{"NegativeFrameRate",
                [](const std::string& d) {
                  return std::vector<std::string>{SceneWithOneNull(d)[0], "-o", d + "/out.gltf", "--frame-rate", "-5"};
                },
                kBadInput, "orytool: --frame-rate must be a positive number of frames a second"},
        BadCase{"ZeroFrameRate",
                [](const std::string& d) {
                  return std::vector<std::string>{SceneWithOneNull(d)[0], "-o", d + "/out.gltf", "--frame-rate", "0"};
                },
                kBadInput, "orytool: --frame-rate must be a positive number of frames a second, not 0"},
        BadCase{"MissingFolder",
                [](const std::string& d) {
                  return std::vector<std::string>{SceneWithOneNull(d)[0], "-o", d + "/no/such/out.gltf"};
                },
                kFailed, "orytool: @/no/such/out.gltf: "},
        BadCase{"OutputIsAFolder",
                [](const std::string& d) {
                  std::filesystem::create_directory(d + "/folder.gltf");
                  return std::vector<std::string>{SceneWithOneNull(d)[0], "-o", d + "/folder.gltf"};
                },
                kFailed, "orytool: @/folder.gltf: cannot write: Is a directory"}),
    [](const ::testing::TestParamInfo<BadCase>& info) { return std::string(info.param.name); });

TEST_F(GltfTest, AnOutputIsReplacedWholeAndKeepsItsPermissions) {
  const std::string scene = SceneWithOneNull(dir)[0];
  const std::string output = dir + "/out.glb";
  qae_test::WriteFile(output, "old");
  chmod(output.c_str(), 0640);
  const auto result = RunCommand(qae_test::OrytoolPath(), {"gltf", scene, "-o", output});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(qae_test::ReadFile(output).substr(0, 4), "glTF");
  struct stat info{};
  ASSERT_EQ(stat(output.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0640u);
}

}  // namespace
