#include "plugin/platform/desktop_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// A home of its own, with the environment of the desktop convention set for the test.
class DesktopFolderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    home_ = fs::temp_directory_path() / ("qae_home_" + std::to_string(::getpid()));
    fs::create_directories(home_ / ".config");
    Save("HOME");
    Save("XDG_DESKTOP_DIR");
    Save("XDG_CONFIG_HOME");
    setenv("HOME", home_.c_str(), 1);
    unsetenv("XDG_DESKTOP_DIR");
    unsetenv("XDG_CONFIG_HOME");
  }
  void TearDown() override {
    for (const auto& [name, value] : saved_) {
      if (value) setenv(name.c_str(), value->c_str(), 1);
      else unsetenv(name.c_str());
    }
    fs::remove_all(home_);
  }
  void Save(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    saved_.emplace_back(name, value ? std::optional<std::string>(value) : std::nullopt);
  }

  fs::path home_;
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

TEST_F(DesktopFolderTest, FollowsTheUserDirsConvention) {
  EXPECT_EQ(DesktopFolder(), "");  // $HOME/Desktop does not exist, and is not made
  fs::create_directory(home_ / "Desktop");
  EXPECT_EQ(DesktopFolder(), (home_ / "Desktop").string());
  // The user's own name for the folder, relative to $HOME.
  std::ofstream(home_ / ".config/user-dirs.dirs") << "# written by xdg-user-dirs-update\n"
                                                  << "XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"\n"
                                                  << "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n";
  fs::create_directory(home_ / "Schreibtisch");
  EXPECT_EQ(DesktopFolder(), (home_ / "Schreibtisch").string());
  // The environment names it before any file does.
  fs::create_directory(home_ / "elsewhere");
  setenv("XDG_DESKTOP_DIR", (home_ / "elsewhere").c_str(), 1);
  EXPECT_EQ(DesktopFolder(), (home_ / "elsewhere").string());
  setenv("XDG_DESKTOP_DIR", (home_ / "missing").c_str(), 1);
  EXPECT_EQ(DesktopFolder(), "");
}

}  // namespace
