// Finding an installation of the 3D application in a folder of programs made for the test.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "plugin/engine/app_locate.h"

namespace {

namespace fs = std::filesystem;

class AppLocate : public ::testing::Test {
 protected:
  void SetUp() override {
    root = fs::temp_directory_path() / ("app_locate_" + std::to_string(getpid()));
    fs::remove_all(root);
    fs::create_directories(root);
  }
  void TearDown() override { fs::remove_all(root); }

  std::string Install(const std::string& folder, const std::string& executable = "Orrery Studio.exe") {
    fs::create_directories(root / folder);
    const fs::path path = root / folder / executable;
    std::ofstream(path) << "#!/bin/sh\n";
    return path.string();
  }

  fs::path root;
};

TEST_F(AppLocate, TheNewestYearWinsWhateverTheOrderOfInstallation) {
  const std::string newer = Install("Vantor Orrery Studio 2027");
  Install("Vantor Orrery Studio 2025");
  Install("Vantor Orrery Studio R26");
  std::string path;
  ASSERT_TRUE(FindInstalledApplicationIn(root.string(), &path));
  EXPECT_EQ(path, newer);
}

TEST_F(AppLocate, AReleaseFolderCountsWhenNoYearHoldsTheExecutable) {
  fs::create_directories(root / "Vantor Orrery Studio 2030");  // a folder without the executable
  const std::string release = Install("Vantor Orrery Studio R22");
  std::string path = "unchanged";
  ASSERT_TRUE(FindInstalledApplicationIn(root.string(), &path));
  EXPECT_EQ(path, release);
  fs::remove_all(root / "Vantor Orrery Studio R22");
  path = "unchanged";
  EXPECT_FALSE(FindInstalledApplicationIn(root.string(), &path));
  EXPECT_EQ(path, "unchanged");
}

TEST_F(AppLocate, TheExecutableNameIsComparedWithoutRegardToCase) {
  EXPECT_TRUE(IsApplicationPath(Install("a", "ORRERY STUDIO.EXE")));
  EXPECT_TRUE(IsApplicationPath(Install("b", "Orrery Studio Lite.exe")));
  EXPECT_FALSE(IsApplicationPath(Install("c", "Other Studio.exe")));
  EXPECT_FALSE(IsApplicationPath((root / "missing" / "Orrery Studio.exe").string()));
  fs::create_directories(root / "d" / "Orrery Studio.exe");
  EXPECT_FALSE(IsApplicationPath((root / "d" / "Orrery Studio.exe").string()));  // a folder
}

TEST_F(AppLocate, TheVersionIsTheDigitsOfTheFourDefines) {
  fs::create_directories(root / "resource");
  std::ofstream(root / "resource" / "version.h")
      << "#define ORY_V1 21\n#define ORY_V2 0\n#define ORY_V3 0\n#define ORY_V4 0\n#define ORY_BUILD 7\n";
  EXPECT_EQ(ReadApplicationVersion(root.string()), 21000);
  std::ofstream(root / "resource" / "version.h") << "#define ORY_V1 20\n#define ORY_V2 5\n#define ORY_V3 1\n";
  EXPECT_EQ(ReadApplicationVersion(root.string()), 2051);
  std::ofstream(root / "resource" / "version.h")
      << "#define ORY_V1 99999\n#define ORY_V2 99999\n#define ORY_V3 9\n#define ORY_V4 9\n";
  EXPECT_EQ(ReadApplicationVersion(root.string()), 0);  // more than 32 bits hold
  EXPECT_EQ(ReadApplicationVersion((root / "none").string()), 0);
}

}  // namespace
