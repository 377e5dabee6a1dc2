// End to end: `aehost roundtrip` carries a composition out through export and back
// through import, and judges each layer by its world matrix at every frame. Cameras
// and lights come back; a 2D layer is not exported. The exit code follows the
// tolerances: within them 0, above 1, bad input 2.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "tests/support/run_command.h"

namespace {

using qae_test::RunCommand;

// A camera that moves on bezier keys and rolls, turned by an orientation; a spot
// light that moves straight towards its point of interest, so its aim never turns;
// a 2D solid; then the `extra` layers. `rate` is the composition's frame rate.
std::string Project(const std::string& rate, const std::string& extra = "") {
  return R"({"format": "aehost-project", "version": 1, "path": "/p/roundtrip.aep",
 "footage": [{"id": 1, "name": "Grey", "width": 200, "height": 100, "solid": {"color": [0.5, 0.5, 0.5]}}],
 "comps": [{"id": 2, "name": "Main", "width": 1920, "height": 1080, "frameRate": )" + rate +
         R"(, "duration": 2, "layers": [
  {"id": 1, "name": "Cam", "type": "camera", "camera": {"zoom": 1000},
   "transform": {"pointOfInterest": [960, 540, 0],
     "position": {"keys": [{"time": 0, "value": [960, 540, -1500], "in": "bezier", "out": "bezier"},
                           {"time": 1.98, "value": [1400, 300, -600], "in": "bezier", "out": "bezier"}]},
     "orientation": [10, 20, 30], "rotationZ": {"keys": [{"time": 0, "value": 0}, {"time": 1, "value": 45}]}}},
  {"id": 2, "name": "Lamp", "type": "light", "light": {"type": "spot"},
   "transform": {"pointOfInterest": [960, 540, 0],
     "position": {"keys": [{"time": 0, "value": [960, 540, -1000]}, {"time": 2, "value": [960, 540, -500]}]}}},
  {"id": 3, "name": "Flat", "source": 1, "transform": {"position": [100, 100, 0]}})" +
         extra + "]}]}";
}

// A camera active from 1 s for half a second; 1 s is a frame boundary at 25 fps.
const std::string kLateCamera = R"(,
  {"id": 4, "name": "Late Cam", "type": "camera", "inPoint": 1, "duration": 0.5,
   "transform": {"pointOfInterest": [0, 0, 0],
     "position": {"keys": [{"time": 0, "value": [0, 0, -800]}, {"time": 2, "value": [300, 0, -800]}]}}})";

// The table's row of a layer, split into its columns, or empty.
std::vector<std::string> Row(const std::string& table, const std::string& layer) {
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::vector<std::string> columns;
    for (std::string word; words >> word;) columns.push_back(word);
    if (!columns.empty() && columns[0] == layer) return columns;
  }
  return {};
}

class Roundtrip : public ::testing::Test {
 protected:
  void SetUp() override { dir_ = qae_test::MakeTempDir("roundtrip"); }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  std::string Write(const std::string& content) {
    const std::string path = dir_ + "/project.json";
    qae_test::WriteFile(path, content);
    return path;
  }

  qae_test::CommandResult Run(const std::vector<std::string>& args) {
    std::vector<std::string> all{"roundtrip"};
    all.insert(all.end(), args.begin(), args.end());
    all.push_back("--quiet");
    return RunCommand(qae_test::AehostPath(), all);
  }

  std::string dir_;
};

TEST_F(Roundtrip, CameraAndLightComeBackWithinToleranceAndThe2DLayerIsNamed) {
  const auto result = Run({Write(Project("25", kLateCamera)), "--comp", "Main"});
  ASSERT_EQ(result.exitCode, 0) << result.out << result.err;
  // 2 s at 25 fps: frames 0 to 49, the whole composition for each layer.
  for (const std::string name : {"Cam", "Lamp"}) {
    const auto row = Row(result.out, name);
    ASSERT_EQ(row.size(), 5u) << name << '\n' << result.out;
    EXPECT_EQ(row[1], "50") << name;
    EXPECT_LE(std::stod(row[2]), 1e-3) << name;
    EXPECT_LE(std::stod(row[3]), 1e-3) << name;
    EXPECT_EQ(row[4], "ok") << name;
  }
  // Only the frames where the layer is active count: 1 s up to 1.5 s, frames 25 to 37.
  const auto late = Row(result.out, "Late");
  ASSERT_EQ(late.size(), 6u) << result.out;  // the name is two words
  EXPECT_EQ(late[2], "13");
  EXPECT_EQ(late[5], "ok");
  const auto flat = Row(result.out, "Flat");
  ASSERT_FALSE(flat.empty()) << result.out;
  EXPECT_NE(result.out.find("not back: 2D layer"), std::string::npos) << result.out;
}

TEST_F(Roundtrip, SamplingAtAnNtscRateIsNotExactAndATightToleranceFails) {
  // Keys land on the time base of a 29.97 fps composition, not on exact frame
  // times, so the bezier-moving camera comes back a little off; still far below a
  // thousandth of a pixel's tolerance, but above a millionth.
  const std::string project = Write(Project("29.97002997002997"));
  const auto loose = Run({project, "--comp", "Main"});
  EXPECT_EQ(loose.exitCode, 0) << loose.out << loose.err;
  const auto tight = Run({project, "--comp", "Main", "--tolerance-position", "1e-6"});
  EXPECT_EQ(tight.exitCode, 1) << tight.out << tight.err;
  const auto cam = Row(tight.out, "Cam");
  ASSERT_EQ(cam.size(), 6u) << tight.out;  // "above tolerance" is two words
  EXPECT_EQ(cam[1], "60");
  EXPECT_GT(std::stod(cam[2]), 1e-6);
  EXPECT_EQ(cam[4] + " " + cam[5], "above tolerance");
  EXPECT_EQ(Row(tight.out, "Lamp").back(), "ok") << tight.out;
  // The camera also rolls, so its turn comes back off by a sliver as well.
  const auto tightTurn = Run({project, "--comp", "Main", "--tolerance-rotation", "1e-6"});
  EXPECT_EQ(tightTurn.exitCode, 1) << tightTurn.out << tightTurn.err;
  EXPECT_GT(std::stod(Row(tightTurn.out, "Cam").at(3)), 1e-6) << tightTurn.out;
}

// A camera that looks at its point of interest, under a null in the middle of the frame. The
// export puts the camera's target under the null, and the import takes the target's own
// position as the point of interest, without the null: the camera comes back looking at the
// composition's corner instead of the null's centre, and more so when the null turns.
std::string ParentedCameraProject(const std::string& nullTurn) {
  return R"({"format": "aehost-project", "version": 1, "path": "/p/parented.aep",
 "footage": [{"id": 1, "name": "N", "width": 100, "height": 100, "solid": {"color": [1, 1, 1]}}],
 "comps": [{"id": 2, "name": "Main", "width": 1920, "height": 1080, "frameRate": 25, "duration": 2, "layers": [
  {"id": 1, "name": "Holder", "source": 1, "threeD": true, "null": true,
   "transform": {"position": [960, 540, 0], "rotationY": )" +
         nullTurn + R"(}},
  {"id": 2, "name": "Cam", "type": "camera", "parent": 1,
   "transform": {"pointOfInterest": [0, 0, 0], "position": [0, 0, -1000]}}]}]})";
}

TEST_F(Roundtrip, AnAimedCameraUnderAParentComesBackAimedElsewhere) {
  const auto still = Run({Write(ParentedCameraProject("0")), "--comp", "Main"});
  EXPECT_EQ(still.exitCode, 1) << still.out << still.err;
  const auto cam = Row(still.out, "Cam");
  ASSERT_EQ(cam.size(), 6u) << still.out;
  // The camera's place comes back (within the half pixel by which the export sets layers
  // stacked at one depth apart); its aim does not.
  EXPECT_LE(std::stod(cam[2]), 0.5 + 1e-9);
  EXPECT_GT(std::stod(cam[3]), 10.0);
  // A turning parent adds its turn to the difference: the camera turns with the null by up
  // to 90 degrees, the imported one does not.
  const auto turning =
      Run({Write(ParentedCameraProject(R"({"keys": [{"time": 0, "value": 0}, {"time": 2, "value": 90}]})")),
           "--comp", "Main"});
  EXPECT_EQ(turning.exitCode, 1) << turning.out << turning.err;
  EXPECT_GT(std::stod(Row(turning.out, "Cam").at(3)), std::stod(cam[3]) + 45.0) << turning.out;
}

// A still camera under a null that holds for a second and then turns: the camera's place
// moves only because its parent turns, and the import must key it on the last frame of the
// hold, or the host's curve would start the swing from the first frame. The null turns about
// its own place, so only its rotation has keys; it stands off depth 0, so the export sets
// nothing half a pixel apart.
TEST_F(Roundtrip, AStillCameraUnderAParentThatTurnsLaterStaysInPlace) {
  for (const std::string keys : {R"([{"time": 0, "value": 0}, {"time": 1, "value": 0}, {"time": 2, "value": 90}])",
                                 R"([{"time": 1, "value": 0}, {"time": 2, "value": 90}])"}) {
    const auto result = Run({Write(R"({"format": "aehost-project", "version": 1, "path": "/p/hold.aep",
 "footage": [{"id": 1, "name": "Null 1", "width": 100, "height": 100, "solid": {"color": [1, 1, 1]}}],
 "comps": [{"id": 2, "name": "Main", "width": 1920, "height": 1080, "frameRate": 25, "duration": 2, "layers": [
  {"id": 1, "name": "Cam", "type": "camera", "camera": {"zoom": 1000}, "parent": 2, "autoOrient": "off",
   "transform": {"position": [300, 0, -800]}},
  {"id": 2, "name": "Rig", "source": 1, "null": true, "threeD": true,
   "transform": {"anchorPoint": [0, 0, 0], "position": [960, 540, 100], "rotationY": {"keys": )" + keys + "}}}]}]}"),
                             "--comp", "Main"});
    EXPECT_EQ(result.exitCode, 0) << keys << "\n" << result.out << result.err;
  }
}

TEST_F(Roundtrip, BadInputExitsWith2) {
  const std::string project = Write(Project("25"));
  const auto noComp = Run({project, "--comp", "Nowhere"});
  EXPECT_EQ(noComp.exitCode, 2);
  EXPECT_NE(noComp.err.find("no composition named \"Nowhere\""), std::string::npos) << noComp.err;
  EXPECT_EQ(Run({project, "--comp", "Main", "--tolerance-rotation", "-1"}).exitCode, 2);
  EXPECT_EQ(Run({dir_ + "/missing.json", "--comp", "Main"}).exitCode, 2);
  const auto broken = Run({Write("{\"format\": \"aehost-project\""), "--comp", "Main"});
  EXPECT_EQ(broken.exitCode, 2);
  EXPECT_FALSE(broken.err.empty());
}

TEST_F(Roundtrip, HelpNamesTheTolerances) {
  const auto help = Run({"--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_NE(help.out.find("--tolerance-position"), std::string::npos) << help.out;
  EXPECT_NE(help.out.find("--tolerance-rotation"), std::string::npos) << help.out;
}

}  // namespace
