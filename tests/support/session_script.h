#pragma once
// The frame of the end-to-end tests of `aehost session`: a folder of the test's own, scene
// files built there from descriptions by the orytool of the build, scripts run by its aehost,
// and the frames those scripts read back.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "quillon/render/png_file.h"
#include "tests/support/run_command.h"

namespace qae_test {

class SessionScriptTest : public testing::Test {
 protected:
  explicit SessionScriptTest(const std::string& folder) : dir_(MakeTempDir(folder)) {}
  ~SessionScriptTest() override { std::filesystem::remove_all(dir_); }

  // A scene file from a description, NAME.ory in the folder; the test fails when orytool
  // refuses the description.
  std::string BuildScene(const std::string& name, const std::string& json) {
    const std::string description = dir_ + "/" + name + ".json";
    const std::string path = dir_ + "/" + name + ".ory";
    WriteFile(description, json);
    const auto built = RunCommand(OrytoolPath(), {"build", description, "--output", path});
    EXPECT_EQ(built.exitCode, 0) << built.err;
    return path;
  }

  // Runs `script` with the plug-in and engine of the build.
  CommandResult Run(const std::string& script, const std::vector<std::string>& env = {}) {
    WriteFile(dir_ + "/run.session", script);
    return RunCommand(AehostPath(), {"session", dir_ + "/run.session"}, env);
  }

  // A frame a script wrote, decoded; the test fails when it cannot be read or is not of the
  // size the scripts of these tests prepare.
  Bitmap ReadFrame(const std::string& path) {
    Bitmap picture;
    std::string error;
    EXPECT_TRUE(quillon::render::DecodePngFile(path, &picture, &error)) << error;
    EXPECT_EQ(picture.width, 400);
    EXPECT_EQ(picture.height, 200);
    return picture;
  }

  const std::string dir_;
};

// Whether the pixel at (x, y) of a decoded frame has exactly this colour.
inline bool PixelIs(const Bitmap& picture, int x, int y, float r, float g, float b) {
  const auto at = static_cast<std::size_t>((y * picture.width + x) * 3);
  return picture.samples[at] == r && picture.samples[at + 1] == g && picture.samples[at + 2] == b;
}

// What a script printed, a line each.
inline std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace qae_test
