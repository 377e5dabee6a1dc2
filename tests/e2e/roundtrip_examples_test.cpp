// End to end: every composition of every example project goes out through export and back
// through import (`aehost roundtrip`), and each layer is judged by what the project says it is:
//
// - cameras and lights come back, and within the default tolerances of a thousandth of a
//   pixel and a thousandth of a degree at every frame where the original is active. The scene
//   file keeps doubles and the import writes one key a frame, so at frame times a value comes
//   back up to rounding (about 1e-12). What is left comes from the time base: the import keys
//   a frame at i × 100 in a time scale of trunc(rate × 100), which at 29.97 fps (2997) lies a
//   millionth of the time away from the host's own frame (i × 1001 / 30000 s), a few 1e-4 px
//   for a fast move late in a composition. A thousandth is above both and far below anything
//   one could see;
// - 2D layers do not come back: the exporter writes only 3D layers;
// - solids, nulls, footage, precompositions, text and shapes in 3D do not come back either: the importer
//   makes layers only of cameras, lights and objects that carry the compositing tag, and the
//   exporter writes no such tag, so these stay in the scene but make no layer.
//
// One difference is known and kept: the parallel light "Sun" of lights.json looks at its point
// of interest from above and to the side. The import gives a layer that looks at its point of
// interest the Z angle of its X, Y, Z rotation as its Z rotation, and that angle holds part of
// the aim when the line of sight is turned both ways; the host then rolls the light about its
// line of sight. Its place comes back exact, and a parallel light's roll does not change its
// light.
//
// The expected verdict of each layer is worked out here from the project description (its
// type and 3D switch), never taken from the command's output.
#include <gtest/gtest.h>
#include <json/json.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/run_command.h"

namespace {

namespace fs = std::filesystem;

struct ExpectedLayer {
  std::string name;
  std::string verdict;  // "ok", or the reason after "not back: "
};

// Layers that come back turned, with the reason in the header above.
struct KnownDifference {
  const char* project;  // file name in examples/
  const char* layer;
};
const KnownDifference kRolledAboutTheirSight[] = {{"lights.json", "Sun"}};

struct ExampleComp {
  std::string project;  // path of the example
  std::string comp;
  std::vector<ExpectedLayer> layers;
};

std::string ItemName(const Json::Value& project, int id) {
  for (const char* list : {"footage", "comps", "folders"})
    for (const Json::Value& item : project[list])
      if (item["id"].asInt() == id) return item["name"].asString();
  return "";
}

ExpectedLayer Expect(const Json::Value& project, const Json::Value& layer) {
  ExpectedLayer expected;
  expected.name = layer.isMember("name") ? layer["name"].asString() : ItemName(project, layer["source"].asInt());
  const std::string type = layer.get("type", "av").asString();
  if (type == "camera" || type == "light") {
    expected.verdict = "ok";
  } else if (!layer.get("threeD", false).asBool()) {
    expected.verdict = "2D layer";
  } else {
    expected.verdict = "no compositing tag";
  }
  return expected;
}

std::vector<ExampleComp> ExampleComps() {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(QAE_EXAMPLES_DIR))
    if (entry.path().extension() == ".json") files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  std::vector<ExampleComp> comps;
  for (const fs::path& file : files) {
    Json::Value project;
    std::istringstream text(qae_test::ReadFile(file.string()));
    Json::CharReaderBuilder reader;
    std::string errors;
    if (!Json::parseFromStream(reader, text, &project, &errors)) {
      ADD_FAILURE() << file << ": " << errors;
      continue;
    }
    for (const Json::Value& comp : project["comps"]) {
      ExampleComp example{file.string(), comp["name"].asString(), {}};
      for (const Json::Value& layer : comp["layers"]) {
        ExpectedLayer expected = Expect(project, layer);
        for (const KnownDifference& known : kRolledAboutTheirSight)
          if (file.filename() == known.project && expected.name == known.layer) expected.verdict = "above tolerance";
        example.layers.push_back(expected);
      }
      comps.push_back(example);
    }
  }
  return comps;
}

// The table's verdict of a layer: the name fills the first 24 columns, then frames, position,
// rotation and the verdict. "ok", "above tolerance", or the reason of "not back: ...".
struct Row {
  bool found = false;
  int frames = 0;
  std::string position;  // the largest position difference as printed, "-" when not compared
  std::string verdict;
};

Row FindRow(const std::string& table, const std::string& layer) {
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    if (line.size() <= 24) continue;
    std::string name = line.substr(0, 24);
    name.erase(name.find_last_not_of(' ') + 1);
    if (name != layer) continue;
    std::istringstream rest(line.substr(24));
    std::string frames, position, rotation, verdict;
    rest >> frames >> position >> rotation;
    std::getline(rest >> std::ws, verdict);
    Row row{true, frames == "-" ? 0 : std::stoi(frames), position, verdict};
    if (verdict.rfind("not back: ", 0) == 0) row.verdict = verdict.substr(10);
    return row;
  }
  return {};
}

TEST(RoundtripExamples, TheExamplesHoldCamerasAndLightsToCarry) {
  // The test below would pass on an empty folder; these are the layers that must come back.
  int camerasAndLights = 0;
  for (const ExampleComp& comp : ExampleComps())
    for (const ExpectedLayer& layer : comp.layers) camerasAndLights += layer.verdict == "ok";
  EXPECT_GE(camerasAndLights, 4);  // the fly-through's camera and three of the four lights
}

TEST(RoundtripExamples, EveryCompositionComesBackAsDesigned) {
  for (const ExampleComp& comp : ExampleComps()) {
    SCOPED_TRACE(comp.project + " / " + comp.comp);
    const auto result =
        qae_test::RunCommand(qae_test::AehostPath(), {"roundtrip", comp.project, "--comp", comp.comp, "--quiet"});
    const bool anyAbove = std::any_of(comp.layers.begin(), comp.layers.end(),
                                      [](const ExpectedLayer& layer) { return layer.verdict == "above tolerance"; });
    EXPECT_EQ(result.exitCode, anyAbove ? 1 : 0) << result.out << result.err;
    for (const ExpectedLayer& layer : comp.layers) {
      const Row row = FindRow(result.out, layer.name);
      ASSERT_TRUE(row.found) << layer.name << '\n' << result.out;
      EXPECT_EQ(row.verdict, layer.verdict) << layer.name << '\n' << result.out;
      if (layer.verdict == "ok") {
        EXPECT_GT(row.frames, 0) << layer.name;
      }
      // A layer that comes back turned still comes back in its place.
      if (layer.verdict == "above tolerance") {
        EXPECT_LE(std::stod(row.position), 1e-3) << layer.name;
      }
    }
  }
}

}  // namespace
