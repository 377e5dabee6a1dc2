// The project description written straight to text: the same bytes as the text of the value
// tree the same project makes (the tree keeps its members sorted by itself), odd numbers and
// texts in their canonical form, and a project that cannot be written leaving the saved file.
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "aehost/model/edit.h"
#include "aehost/model/json_writer.h"
#include "aehost/model/project_json.h"
#include "model_fixture.h"

namespace aehost {
namespace {

std::string ReadText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

// The text of the project's value tree, the way the description was written before it streamed.
std::string TreeText(const Project& project) {
  const Json::Value tree = BuildTree([&](JsonOut& out) { WriteProject(out, project); });
  JsonTextWriter writer;
  writer.Tree(tree);
  writer.Finish();
  return writer.Take();
}

// A project of every kind of layer with keys and texts that need care in JSON.
SmallProject OddProject() {
  SmallProject p;
  Layer& solid = p.Solid();
  solid.name = "quote \" backslash \\ bell \x07 unit \x1f \xc3\xa9t\xc3\xa9 \xe2\x80\xa8 end";
  Stream& position = EnsureStream(p.project, *p.comp, solid, LayerStream::Position);
  AddKeyframe(position, 0.0, V(1e-300, -0.0, 0.1));
  AddKeyframe(position, 0.5, V(1e21, 3.0, 9223372036854775808.0));
  AddKeyframe(position, 1.0, V(5e-324, -1e-7, 123456789.125));
  position.keys[1].in = Interpolation::Hold;
  position.keys[2].easeIn[0] = {2.5, 75.0};
  position.keys[2].outTangent = V(0.25, -0.5, 1.0 / 3.0);
  position.expression = "wiggle(2, \"5\")\n\ttime\r";
  Layer& camera = AddCameraLayer(p.project, *p.comp, "Camera \xf0\x9f\x8e\xa5", 100, 50);
  AddKeyframe(EnsureStream(p.project, *p.comp, camera, LayerStream::Zoom), 0.0, V(877.0));
  camera.camera.filmSize = 36.5;
  Layer& light = AddLightLayer(p.project, *p.comp, "Light", 10, 20);
  AddKeyframe(EnsureStream(p.project, *p.comp, light, LayerStream::Color), 0.2, V(1.0, 0.5, 0.25, 0.75));
  SetStreamValue(p.project, *p.comp, light, LayerStream::Intensity, V(1e-5));
  AddNullLayer(p.project, *p.comp, "");
  AddFolder(p.project, "tab\there");
  return p;
}

TEST(JsonWriter, EveryExampleProjectWritesTheBytesOfItsTree) {
  std::vector<std::filesystem::path> files{std::filesystem::path(AEHOST_MODEL_TEST_DATA) / "full.json"};
  for (const auto& entry : std::filesystem::directory_iterator(AEHOST_EXAMPLES_DIR)) {
    if (entry.path().extension() == ".json") files.push_back(entry.path());
  }
  ASSERT_GT(files.size(), 5u);
  for (const auto& file : files) {
    SCOPED_TRACE(file.string());
    const Project project = LoadProjectFile(file.string());
    EXPECT_EQ(WriteProject(project), TreeText(project));
  }
}

TEST(JsonWriter, AProjectOfOddNumbersAndTextsWritesTheBytesOfItsTree) {
  const SmallProject p = OddProject();
  const std::string text = WriteProject(p.project);
  EXPECT_EQ(text, TreeText(p.project));
  EXPECT_EQ(WriteProject(ReadProject(text, "written")), text);
}

TEST(JsonWriter, NumbersAndTextsTakeTheirCanonicalForm) {
  const std::string text = WriteProject(OddProject().project);
  for (const char* expected : {
           R"("value": [1e-300, -0.0, 0.1])",
           R"("value": [1e+21, 3, 9223372036854775808])",
           R"("value": [5e-324, -1e-07, 123456789.125])",
           R"("outTangent": [0.25, -0.5, 0.3333333333333333])",
           R"("in": "hold")",
           R"("influence": 75,)",
           R"("speed": 2.5)",
           R"("expression": "wiggle(2, \"5\")\n\ttime\r")",
           "\"name\": \"quote \\\" backslash \\\\ bell \\u0007 unit \\u001f \xc3\xa9t\xc3\xa9 \xe2\x80\xa8 end\"",
           "\"name\": \"Camera \xf0\x9f\x8e\xa5\"",
           R"("name": "tab\there")",
           R"("filmSize": 36.5)",
           R"("value": [1, 0.5, 0.25, 0.75])",
           R"("intensity": 1e-05)",
       }) {
    EXPECT_NE(text.find(expected), std::string::npos) << expected;
  }
}

TEST(JsonWriter, ANumberWithoutAFormIsRefusedByItsPlace) {
  SmallProject p = OddProject();
  Layer& solid = *p.comp->comp.layers.back();
  EnsureStream(p.project, *p.comp, solid, LayerStream::Position).keys[2].value[1] =
      std::numeric_limits<double>::infinity();
  try {
    WriteProject(p.project);
    FAIL() << "written";
  } catch (const ProjectFormatError& error) {
    EXPECT_EQ(std::string(error.what()),
              "the project cannot be written: comps[0].layers[3].transform.position.keys[2].value[1]: "
              "JSON has no form for inf");
  }
}

class JsonWriterSave : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = std::filesystem::temp_directory_path() /
           ("json_writer_test_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(dir_);
    std::filesystem::create_directories(dir_);
  }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  // Keys enough for the text to be written in several pieces.
  static SmallProject LargeProject() {
    SmallProject p = OddProject();
    Stream& position = EnsureStream(p.project, *p.comp, *p.comp->comp.layers.back(), LayerStream::Position);
    for (int frame = 30; frame < 40000; ++frame) AddKeyframe(position, frame / 25.0, V(frame * 0.1, -frame, 0.5));
    return p;
  }

  std::filesystem::path dir_;
};

TEST_F(JsonWriterSave, ASavedFileHoldsTheTextWrittenInPieces) {
  const SmallProject p = LargeProject();
  const std::string path = (dir_ / "large.json").string();
  SaveProjectFile(p.project, path);
  const std::string expected = WriteProject(p.project);
  ASSERT_GT(expected.size(), std::size_t{3} << 20);
  EXPECT_EQ(ReadText(path), expected);
}

TEST_F(JsonWriterSave, AProjectRefusedHalfWayLeavesTheFileThatWasThere) {
  const std::string path = (dir_ / "project.json").string();
  SaveProjectFile(OddProject().project, path);
  const std::string before = ReadText(path);
  SmallProject p = LargeProject();
  p.comp->comp.layers.back()->streams.at(LayerStream::Position).keys.back().time = std::nan("");
  EXPECT_THROW(SaveProjectFile(p.project, path), ProjectFormatError);
  EXPECT_EQ(ReadText(path), before);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir_), std::filesystem::directory_iterator()), 1);
}

}  // namespace
}  // namespace aehost
