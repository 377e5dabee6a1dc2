// End to end: `aehost roundtrip` carries a composition out through export and back
// through import, and judges each layer by its world matrix at every frame. Cameras
// and lights come back; a 2D layer is not exported. The exit code follows the
// tolerances: within them 0, above 1, bad input 2.
#include <gtest/gtest.h>
#include <json/json.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>

#include "tests/support/json_text.h"
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

// A composition of 2 s at 25 fps with the given layers, and the solid "Card" of 200 by 100
// pixels and "Null 1" of 100 by 100 as sources.
std::string Comp(const std::string& layers, const std::string& rate = "25") {
  return R"({"format": "aehost-project", "version": 1, "path": "/p/roundtrip.aep",
 "footage": [{"id": 1, "name": "Card", "width": 200, "height": 100, "solid": {"color": [0.5, 0.5, 0.5]}},
             {"id": 2, "name": "Null 1", "width": 100, "height": 100, "solid": {"color": [1, 1, 1]}}],
 "comps": [{"id": 9, "name": "Main", "width": 1920, "height": 1080, "frameRate": )" +
         rate + R"(, "duration": 2, "layers": [)" + layers + "]}]}";
}

// The row of each named layer (one word) says "ok" over `frames` frames.
void ExpectBack(const qae_test::CommandResult& result, const std::vector<std::string>& names, const std::string& frames) {
  EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
  for (const std::string& name : names) {
    const auto row = Row(result.out, name);
    ASSERT_EQ(row.size(), 5u) << name << '\n' << result.out;
    EXPECT_EQ(row[1], frames) << name;
    EXPECT_EQ(row[4], "ok") << name << '\n' << result.out;
  }
}

TEST_F(Roundtrip, LightsAimedOffTheirAxisComeBackWithoutRoll) {
  // "Aimed" looks from (0, -1000, -1000) at the middle of the picture: the host turns it by
  // heading and pitch with a level horizon. Its scene rotation has no bank, but the Z of its
  // X, Y, Z angles is 35.5 degrees, which, added as Z rotation, would roll it by as much.
  // "Turned" does not follow its point of interest: its orientation (30, 40, 0) gives a bank of
  // its own, which the import must bring back as the Z rotation of a light aimed at the point
  // 1000 pixels ahead of it. "Lift" rises with the same orientation: the point ahead of it must
  // rise along, although only its y moves.
  const std::string layers = R"(
  {"id": 1, "name": "Aimed", "type": "light", "light": {"type": "spot"},
   "transform": {"pointOfInterest": [960, 540, 0], "position": [0, -1000, -1000]}},
  {"id": 2, "name": "Turned", "type": "light", "autoOrient": "off", "light": {"type": "parallel"},
   "transform": {"position": [300, 200, -500], "orientation": [30, 40, 0]}},
  {"id": 3, "name": "Lift", "type": "light", "autoOrient": "off", "light": {"type": "spot"},
   "transform": {"orientation": [30, 40, 0],
     "position": {"keys": [{"time": 0, "value": [300, 900, -500]}, {"time": 2, "value": [300, 100, -500]}]}}})";
  ExpectBack(Run({Write(Comp(layers)), "--comp", "Main"}), {"Aimed", "Turned", "Lift"}, "50");
}

TEST_F(Roundtrip, OrientedCamerasAndLightsKeepTheirOrientation) {
  // Auto-oriented towards the point of interest, and oriented on top of that: 10 degrees about
  // X for the camera, 15 about Y for the light. Such a layer has a turn of its own, so the
  // export gives it no target and writes the turn of its matrix; the orientation stream is not
  // spatial, and taking it for absent would export a plain aim, 10 and 15 degrees off.
  const std::string layers = R"(
  {"id": 1, "name": "Tilted", "type": "camera",
   "transform": {"pointOfInterest": [960, 540, 0], "position": [960, 540, -1000], "orientation": [10, 0, 0]}},
  {"id": 2, "name": "TiltLamp", "type": "light", "light": {"type": "spot"},
   "transform": {"pointOfInterest": [960, 540, 0], "position": [500, 540, -1000], "orientation": [0, 15, 0]}})";
  ExpectBack(Run({Write(Comp(layers)), "--comp", "Main"}), {"Tilted", "TiltLamp"}, "50");
}

TEST_F(Roundtrip, CamerasAndLightsUnderATurningParentTurnWithIt) {
  // Both parents turn half a turn about Y in 2 s. The cameras keep their point of interest at
  // their parent's origin, so their targets go under the parents in the scene and the import
  // must follow the parents' turn into the point of interest. Under the null the target stands
  // at the null's corner, where its object is; under the solid at the picture's centre, where
  // the plane is, also for the keys of "PoiCam", whose point of interest moves across the card.
  // The light has no target: the point ahead of it must turn with the parent. "KeyedCam" moves
  // by keys of its own from 0.5 s to 1.5 s: its keys must be relative to where the turning
  // parent stands at each frame, or it takes the parent's turn twice.
  // The parents stand at depth 100, so no half-pixel stacking nudge applies to them (one would
  // turn with the parent and come back as much as a pixel off).
  const std::string layers = R"(
  {"id": 1, "name": "NullCam", "type": "camera", "parent": 3, "camera": {"zoom": 1000},
   "transform": {"pointOfInterest": [0, 0, 0], "position": [0, 0, -1000]}},
  {"id": 2, "name": "CardCam", "type": "camera", "parent": 4, "camera": {"zoom": 1000},
   "transform": {"pointOfInterest": [100, 50, 0], "position": [100, 50, -800]}},
  {"id": 6, "name": "PoiCam", "type": "camera", "parent": 4,
   "transform": {"position": [100, 50, -800],
     "pointOfInterest": {"keys": [{"time": 0, "value": [0, 0, 0]}, {"time": 2, "value": [200, 100, 0]}]}}},
  {"id": 7, "name": "KeyedCam", "type": "camera", "parent": 3,
   "transform": {"pointOfInterest": [0, 0, 0],
     "position": {"keys": [{"time": 0.5, "value": [0, 0, -800]}, {"time": 1.5, "value": [300, -200, -500]}]}}},
  {"id": 5, "name": "Lamp", "type": "light", "parent": 3, "autoOrient": "off", "light": {"type": "spot"},
   "transform": {"position": [0, 0, -500], "orientation": [0, 30, 0]}},
  {"id": 3, "name": "Pivot", "source": 2, "null": true, "threeD": true,
   "transform": {"anchorPoint": [50, 50, 0], "position": [960, 540, 100],
     "rotationY": {"keys": [{"time": 0, "value": 0}, {"time": 2, "value": 180}]}}},
  {"id": 4, "name": "Turntable", "source": 1, "threeD": true,
   "transform": {"position": [500, 300, 100],
     "rotationY": {"keys": [{"time": 0, "value": 0}, {"time": 2, "value": -180}]}}})";
  const auto result = Run({Write(Comp(layers)), "--comp", "Main"});
  ExpectBack(result, {"NullCam", "CardCam", "PoiCam", "KeyedCam", "Lamp"}, "50");
}

TEST_F(Roundtrip, ALayerStartingBetweenFramesKeepsItsFirstAndLastFrames) {
  // At 29.97 fps 1 s lies between frames 29 (0.9676 s) and 30 (1.001 s), so the camera is seen
  // from frame 30 to frame 44 (1.4681 s), 15 frames; its keys stand on frames 30 and 45. Both
  // its first and its last frame must be baked, with the key of frame 30 at document frame 30.
  const std::string layers = R"(
  {"id": 1, "name": "Late", "type": "camera", "inPoint": 1, "duration": 0.5,
   "transform": {"pointOfInterest": [0, 0, 0],
     "position": {"keys": [{"time": 1.001, "value": [0, 0, -800]}, {"time": 1.5015, "value": [300, 0, -800]}]}}},
  {"id": 2, "name": "Early", "type": "camera", "duration": 1,
   "transform": {"pointOfInterest": [0, 0, 0],
     "position": {"keys": [{"time": 0, "value": [0, 0, -800]}, {"time": 2, "value": [300, 0, -800]}]}}})";
  // "Early" is seen from frame 0 to 29 (0.9676 s): 30 frames.
  const auto result = Run({Write(Comp(layers, "29.97002997002997")), "--comp", "Main"});
  ExpectBack(result, {"Late"}, "15");
  ExpectBack(result, {"Early"}, "30");
}

TEST_F(Roundtrip, AimedLayersKeepTheirHoldsAndTheirParentsRoll) {
  // "Waiting" holds still until its turn starts at 0.3 s, between frames 7 and 8: the point
  // ahead of it must keep a key on frame 7, or the host glides it there from frame 0.
  // "Rolled" looks along the axis of a parent that rolls three quarters of a turn: its own Z
  // rotation must follow the parent's roll, which no track of its own carries. "Tracking" sits
  // under a parent that stands turned about Z and X and follows a moving point of interest: in
  // that parent's frame its horizon stays level, so its roll in the host changes as it turns,
  // although its stored rotation in the scene looks at where the point was at the start.
  // "Strider" under the same parent moves itself while its point of interest stays: the line of
  // sight turns all the same.
  const std::string layers = R"(
  {"id": 6, "name": "Strider", "type": "light", "parent": 5, "light": {"type": "spot"},
   "transform": {"pointOfInterest": [0, 0, 0],
     "position": {"keys": [{"time": 0.36, "value": [-451, -466, -390]}, {"time": 1.14, "value": [-91, -295, -43]}]}}},
  {"id": 4, "name": "Tracking", "type": "camera", "parent": 5,
   "transform": {"position": [0, 0, -800],
     "pointOfInterest": {"keys": [{"time": 0.2, "value": [0, 0, 0]}, {"time": 1.8, "value": [400, 200, 100]}]}}},
  {"id": 5, "name": "Tilt", "source": 2, "null": true, "threeD": true,
   "transform": {"anchorPoint": [50, 50, 0], "position": [960, 540, 100], "rotationZ": 40, "rotationX": 30}},
  {"id": 1, "name": "Waiting", "type": "light", "light": {"type": "spot"}, "autoOrient": "off",
   "transform": {"position": [300, 200, -500], "orientation": [10, 20, 30],
     "rotationY": {"keys": [{"time": 0.3, "value": 0}, {"time": 1.9, "value": 200}]}}},
  {"id": 2, "name": "Rolled", "type": "camera", "parent": 3,
   "transform": {"pointOfInterest": [0, 0, 0], "position": [0, 0, -800]}},
  {"id": 3, "name": "Roller", "source": 2, "null": true, "threeD": true,
   "transform": {"anchorPoint": [50, 50, 0], "position": [960, 540, 100],
     "rotationZ": {"keys": [{"time": 0, "value": 0}, {"time": 2, "value": 270}]}}})";
  ExpectBack(Run({Write(Comp(layers)), "--comp", "Main"}), {"Waiting", "Rolled", "Tracking", "Strider"}, "50");
}

TEST_F(Roundtrip, WhatTurnsOrPlacesALayerIsCarriedWhereTheLayerIsSeen) {
  // "Turner" has a turn of its own (Z 30), so it gets no target, and its moving point of
  // interest must be baked into its rotation. "Bulb" is a point light, which the host gives no
  // point of interest: its Y rotation must come back as a rotation. "After" is seen from 1 s,
  // when its keys (0 to 0.5 s) are over: its place is where they left it, not where it was at 0.
  const std::string layers = R"(
  {"id": 1, "name": "Turner", "type": "light", "light": {"type": "spot"},
   "transform": {"position": [300, 200, -800], "rotationZ": 30,
     "pointOfInterest": {"keys": [{"time": 0.2, "value": [960, 540, 0]}, {"time": 1.8, "value": [200, 900, 300]}]}}},
  {"id": 2, "name": "Bulb", "type": "light", "light": {"type": "point"},
   "transform": {"rotationY": 20,
     "position": {"keys": [{"time": 0.5, "value": [300, 400, -200]}, {"time": 1.5, "value": [-200, -200, 200]}]}}},
  {"id": 3, "name": "After", "type": "camera", "inPoint": 1, "duration": 1,
   "transform": {"pointOfInterest": [960, 540, 0],
     "position": {"keys": [{"time": 0, "value": [0, 0, -800]}, {"time": 0.5, "value": [500, 100, -300]}]}}})";
  const auto result = Run({Write(Comp(layers)), "--comp", "Main"});
  ExpectBack(result, {"Turner", "Bulb"}, "50");
  ExpectBack(result, {"After"}, "25");
}

TEST_F(Roundtrip, ALateChildOfAMovingParentStaysWithIt) {
  // "Lantern" has no keys and is seen from 0.24 s; its parent moves and grows from the start.
  // Its place is read where it is first seen, so it is made relative to where the parent stands
  // then, not where the parent stood at the start.
  const std::string layers = R"(
  {"id": 1, "name": "Lantern", "type": "light", "parent": 2, "inPoint": 0.24, "duration": 1,
   "autoOrient": "off", "light": {"type": "parallel"},
   "transform": {"position": [-26, 146, -800], "orientation": [-10.7, -7.8, -12.7]}},
  {"id": 2, "name": "Carrier", "source": 2, "null": true, "threeD": true,
   "transform": {"anchorPoint": [50, 50, 0],
     "position": {"keys": [{"time": 0, "value": [684, 287, 950]}, {"time": 1.8, "value": [275, 402, 274]}]},
     "scale": {"keys": [{"time": 0, "value": [100, 100, 100]}, {"time": 2, "value": [150, 150, 150]}]}}})";
  // Seen from frame 6 (0.24 s) for 1 s: frames 6 to 30.
  ExpectBack(Run({Write(Comp(layers)), "--comp", "Main"}), {"Lantern"}, "25");
}

TEST_F(Roundtrip, AChildWhoseWorldHoldsStillInOneAxisKeepsItsPlace) {
  // "Rider" stands still on its parent, which turns about X (0.28 s to 1.49 s) and moves
  // (0.83 s to 0.96 s). The rider's baked world x keeps still while the parent only turns, so
  // those keys are pruned; when its keys are made relative to the parent, the pruned x must be
  // read between keys that still hold world values.
  const std::string layers = R"(
  {"id": 1, "name": "Rider", "type": "camera", "parent": 2,
   "transform": {"position": [-159, -207, -800],
     "pointOfInterest": {"keys": [{"time": 0.13, "value": [91, -195, 137]}, {"time": 1.4, "value": [-3, 167, -10]}]}}},
  {"id": 2, "name": "Mount", "source": 2, "null": true, "threeD": true,
   "transform": {"anchorPoint": [50, 50, 0], "rotationZ": 55.4,
     "position": {"keys": [{"time": 0.83, "value": [647, 610, 858]}, {"time": 0.96, "value": [459, 835, 210]}]},
     "rotationX": {"keys": [{"time": 0.28, "value": -68.4}, {"time": 1.49, "value": 104.1}]}}})";
  ExpectBack(Run({Write(Comp(layers)), "--comp", "Main"}), {"Rider"}, "50");
}

TEST_F(Roundtrip, AFrameOnTheOutPointIsNotCompared) {
  // Seen from 0.68 s for 1 s at 25 fps: frames 17 to 41, 25 frames; frame 42 lies on the out
  // point, 1.68 s, where the layer is no longer shown (0.68 + 1 is a hair above 1.68 in
  // doubles). "Mover" moves from 1.64 s on, so at frame 42 it stands elsewhere.
  const std::string layers = R"(
  {"id": 1, "name": "Mover", "type": "camera", "autoOrient": "off", "inPoint": 0.68, "duration": 1,
   "transform": {"position": {"keys": [{"time": 1.64, "value": [-259, 315, 339]}, {"time": 1.74, "value": [-307, 391, 401]}]}}})";
  ExpectBack(Run({Write(Comp(layers)), "--comp", "Main"}), {"Mover"}, "25");
}

TEST_F(Roundtrip, AnAxisThatStandsStillInTheWorldIsKeptUnderAMovingParent) {
  // "Spinner" turns by keys from 0.85 s to 1.32 s under a parent that has moved before then.
  // Over its keys its world x stands still, but not where it stood when it was first seen
  // (0.23 s), before the parent moved: pruned in world terms, the x track would be dropped and
  // the first place taken for it. Pruning waits until the keys are relative to the parent.
  const std::string layers = R"(
  {"id": 1, "name": "Spinner", "type": "light", "parent": 2, "inPoint": 0.23, "duration": 1,
   "light": {"type": "parallel"},
   "transform": {"position": [18.5, -220.3, -800], "pointOfInterest": [0, 0, 0],
     "rotationZ": {"keys": [{"time": 0.85, "value": 169.2}, {"time": 1.32, "value": -78.2}]}}},
  {"id": 2, "name": "Sled", "source": 2, "null": true, "threeD": true,
   "transform": {"anchorPoint": [50, 50, 0], "rotationZ": -41.6,
     "position": {"keys": [{"time": 0.35, "value": [920, 402, 729]}, {"time": 0.77, "value": [845, 1023, 337]}]},
     "rotationX": {"keys": [{"time": 1.18, "value": -53}, {"time": 1.47, "value": -143.5}]}}})";
  // Seen from frame 6 (0.24 s, the first frame at or after 0.23 s) to frame 30: 25 frames.
  ExpectBack(Run({Write(Comp(layers)), "--comp", "Main"}), {"Spinner"}, "25");
}

TEST_F(Roundtrip, KeysBetweenFramesBringInTheFramesAroundThem) {
  // At 25 fps keys at 0.51 s and 1.49 s lie between frames 12 and 13 and between 37 and 38:
  // frame 12 still shows the first key's value and frame 38 is the first to show the last
  // one's, so both must be baked. "Stretched" runs at half speed from 0.2 s, which puts its
  // keys (layer times 0 and 0.9 s) at 0.2 s and 2 s of the composition, between frames 5 and 6
  // and after the last frame 59 at 29.97 fps.
  const std::string between = R"(
  {"id": 1, "name": "Between", "type": "camera",
   "transform": {"pointOfInterest": [960, 540, 0],
     "position": {"keys": [{"time": 0.51, "value": [0, 0, -800]}, {"time": 1.49, "value": [500, 100, -300]}]}}})";
  ExpectBack(Run({Write(Comp(between)), "--comp", "Main"}), {"Between"}, "50");
  const std::string stretched = R"(
  {"id": 1, "name": "Stretched", "type": "camera", "stretch": 2, "startTime": 0.2, "inPoint": 0.2,
   "transform": {"pointOfInterest": [960, 540, 0],
     "position": {"keys": [{"time": 0, "value": [0, 0, -800]}, {"time": 0.9, "value": [500, 100, -300]}]}}})";
  // Seen from its start, 0.2 s, which lies between frames 5 and 6: frames 6 to 59, 54 frames.
  ExpectBack(Run({Write(Comp(stretched, "29.97002997002997")), "--comp", "Main"}), {"Stretched"}, "54");
}

TEST_F(Roundtrip, ACompositionWhoseDisplayStartsLateComesBack) {
  // The display starts at 10 s, frame 250 at 25 fps: the document's range runs from frame 250,
  // and the composition's frame i must stand at document frame 250 + i, where the import looks
  // for it. "Keyed" moves by keys, "Spun" rolls by an expression, which is sampled on every
  // frame of the composition.
  const std::string layers = R"(
  {"id": 1, "name": "Keyed", "type": "camera",
   "transform": {"pointOfInterest": [960, 540, 0],
     "position": {"keys": [{"time": 0.4, "value": [0, 0, -800]}, {"time": 1.6, "value": [500, 100, -300]}]}}},
  {"id": 2, "name": "Spun", "type": "camera",
   "transform": {"pointOfInterest": [960, 540, 0], "position": [300, 200, -900],
     "rotationZ": {"value": 0, "expression": "time * 90"}}})";
  std::string project = Comp(layers);
  const std::string rate = R"("frameRate": 25,)";
  project.replace(project.find(rate), rate.size(), R"("frameRate": 25, "displayStart": 10,)");
  ExpectBack(Run({Write(project), "--comp", "Main"}), {"Keyed", "Spun"}, "50");
}

TEST_F(Roundtrip, ZoomKeysComeBackAtTheirFramesWhenTheDisplayStartsLate) {
  // The camera's own values are sampled on import from the document's first frame, where the
  // export put the composition's frame 0: the zoom runs from 1000 to 2000 in the first second,
  // so it is 1400 at 0.4 s, and 2000 from 1 s on.
  std::string project = Comp(R"(
  {"id": 1, "name": "Zoomer", "type": "camera",
   "camera": {"zoom": {"keys": [{"time": 0, "value": 1000}, {"time": 1, "value": 2000}]}},
   "transform": {"pointOfInterest": [960, 540, 0], "position": [960, 540, -1000]}})");
  const std::string rate = R"("frameRate": 25,)";
  project.replace(project.find(rate), rate.size(), R"("frameRate": 25, "displayStart": 10,)");
  const std::string scene = dir_ + "/zoom.ory", imported = dir_ + "/imported.json";
  ASSERT_EQ(RunCommand(qae_test::AehostPath(), {"export", Write(project), "--comp", "Main", "--output", scene, "--quiet"})
                .exitCode,
            0);
  ASSERT_EQ(RunCommand(qae_test::AehostPath(), {"import", scene, "--output", imported, "--quiet"}).exitCode, 0);
  const Json::Value result = qae_test::ParseJson(qae_test::ReadFile(imported));
  const Json::Value* zoom = nullptr;
  for (const Json::Value& comp : result["comps"])
    for (const Json::Value& layer : comp["layers"])
      if (layer["name"].asString() == "Zoomer") zoom = &layer["camera"]["zoom"]["keys"];
  ASSERT_NE(zoom, nullptr) << result.toStyledString();
  std::map<int, double> byFrame;  // frames at 25 fps
  for (const Json::Value& key : *zoom) byFrame[static_cast<int>(std::lround(key["time"].asDouble() * 25))] = key["value"].asDouble();
  ASSERT_TRUE(byFrame.count(0) && byFrame.count(10) && byFrame.count(25)) << zoom->toStyledString();
  EXPECT_NEAR(byFrame[0], 1000.0, 1e-6);
  EXPECT_NEAR(byFrame[10], 1400.0, 1e-6);
  EXPECT_NEAR(byFrame[25], 2000.0, 1e-6);
}

TEST_F(Roundtrip, EachLayerThatDoesNotComeBackIsToldWhy) {
  // A 3D text and a 3D shape layer are not exported at all; a 3D solid is, as a plane, but
  // without a compositing tag the import makes no layer of it; a 2D solid is not exported.
  const std::string layers = R"(
  {"id": 1, "name": "Words", "type": "text", "threeD": true, "transform": {"position": [960, 540, 0]}},
  {"id": 2, "name": "Blob", "type": "shape", "threeD": true, "transform": {"position": [960, 540, 0]}},
  {"id": 3, "name": "Plate", "source": 1, "threeD": true, "transform": {"position": [960, 540, 0]}},
  {"id": 4, "name": "Flat", "source": 1, "transform": {"position": [960, 540, 0]}})";
  const auto result = Run({Write(Comp(layers)), "--comp", "Main"});
  EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
  const std::pair<const char*, const char*> expected[] = {
      {"Words", "not exported"}, {"Blob", "not exported"}, {"Plate", "no compositing tag"}, {"Flat", "2D layer"}};
  for (const auto& [name, why] : expected) {
    const std::string row = "not back: " + std::string(why);
    const std::vector<std::string> columns = Row(result.out, name);
    ASSERT_FALSE(columns.empty()) << name << '\n' << result.out;
    std::string verdict;
    for (size_t i = 4; i < columns.size(); ++i) verdict += (i > 4 ? " " : "") + columns[i];
    EXPECT_EQ(verdict, row) << name;
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
