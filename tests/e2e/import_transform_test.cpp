// End to end: an imported layer sits in the host's world where its object sat in the scene.
// The scene's matrix is worked out here from the scene's conventions on their own: rotations
// are left-handed, one turn a matrix with the angle negated; order x, y, z applies z first,
// heading-pitch-bank turns about y (heading), then x (pitch), then z (bank), bank first;
// a parent's matrix applies after its child's. The host's world, read with `aehost xform`,
// has y pointing down, so a scene point (x, y, z) is the host's (x, -y, z) and the host's
// y axis is the negated flip of the scene's. Tolerance 1e-9: the import goes through an
// Euler decomposition and back, which costs a few units in the last place.
#include <gtest/gtest.h>
#include <json/json.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <string>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"

namespace {

using qae_test::ParseJson;
using qae_test::RunCommand;
using Axes = std::array<std::array<double, 3>, 4>;  // x, y, z axes and the offset

Axes Turn(int axis, double angle) {
  const double c = std::cos(-angle), s = std::sin(-angle);
  Axes m{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}}};
  const int a = (axis + 1) % 3, b = (axis + 2) % 3;  // the plane the turn moves in
  m[a] = {0, 0, 0};
  m[b] = {0, 0, 0};
  m[a][a] = c;
  m[a][b] = s;
  m[b][a] = -s;
  m[b][b] = c;
  return m;
}

// First `inner`, then `outer`.
Axes Then(const Axes& outer, const Axes& inner) {
  Axes m{};
  for (int row = 0; row < 4; ++row)
    for (int k = 0; k < 3; ++k) {
      m[row][k] = row == 3 ? outer[3][k] : 0.0;
      for (int i = 0; i < 3; ++i) m[row][k] += inner[row][i] * outer[i][k];
    }
  return m;
}

Axes Transform(std::array<double, 3> position, std::array<double, 3> rotation, bool hpb, double scale) {
  Axes m = hpb ? Then(Then(Turn(1, rotation[0]), Turn(0, rotation[1])), Turn(2, rotation[2]))
               : Then(Then(Turn(0, rotation[0]), Turn(1, rotation[1])), Turn(2, rotation[2]));
  for (int i = 0; i < 3; ++i)
    for (double& v : m[i]) v *= scale;
  m[3] = position;
  return m;
}

class ImportTransform : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = qae_test::MakeTempDir("import_transform");
    const std::string scene = dir_ + "/rotations.ory";
    ASSERT_EQ(RunCommand(qae_test::OrytoolPath(),
                         {"build", std::string(QAE_EXAMPLES_DIR) + "/scenes/import_rotations.json", "-o", scene})
                  .exitCode,
              0);
    project_ = dir_ + "/rotations.json";
    const auto imported = RunCommand(qae_test::AehostPath(), {"import", scene, "--output", project_});
    ASSERT_EQ(imported.exitCode, 0) << imported.err;
  }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  void ExpectWorld(const std::string& layer, const Axes& scene) const {
    const auto run =
        RunCommand(qae_test::AehostPath(), {"xform", project_, "--comp", "Rotations", "--layer", layer, "--frame", "0"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const Json::Value matrix = ParseJson(run.out)["matrix"];
    for (int row = 0; row < 4; ++row) {
      const double sign = row == 1 ? -1.0 : 1.0;  // the host's y axis is the scene's turned over
      for (int k = 0; k < 3; ++k) {
        const double expected = sign * (k == 1 ? -scene[row][k] : scene[row][k]);
        EXPECT_NEAR(matrix[row][k].asDouble(), expected, 1e-9) << layer << " row " << row << " column " << k;
      }
    }
  }

  std::string dir_;
  std::string project_;
};

TEST_F(ImportTransform, BothRotationOrdersLandWhereTheSceneHasThem) {
  ExpectWorld("Order XYZ", Transform({10, 20, 30}, {0.3, 0.2, 0.1}, false, 1.0));
  ExpectWorld("Heading pitch bank", Transform({10, 20, 30}, {0.3, 0.2, 0.1}, true, 1.0));
}

TEST_F(ImportTransform, AChildCarriesItsParentsTurnScaleAndPlace) {
  const Axes parent = Transform({-50, 0, 100}, {0.5, -0.4, 0.7}, true, 2.0);
  const Axes child = Transform({5, 6, 7}, {-0.2, 0.1, 0.3}, true, 1.0);
  ExpectWorld("Flattened child", Then(parent, child));
}

}  // namespace
