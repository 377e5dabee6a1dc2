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

  ApplicationPlaces Places() const { return {root.string(), (root / "installer-records").string(), ""}; }

  fs::path root;
};

TEST_F(AppLocate, TheNewestYearWinsWhateverTheOrderOfInstallation) {
  const std::string newer = Install("Vantor Orrery Studio 2027");
  Install("Vantor Orrery Studio 2025");
  Install("Vantor Orrery Studio R26");
  std::string path;
  ASSERT_TRUE(FindInstalledApplication(Places(), &path));
  EXPECT_EQ(path, newer);
}

TEST_F(AppLocate, AReleaseFolderCountsWhenNoYearHoldsTheExecutable) {
  fs::create_directories(root / "Vantor Orrery Studio 2030");  // a folder without the executable
  const std::string release = Install("Vantor Orrery Studio R22");
  std::string path = "unchanged";
  ASSERT_TRUE(FindInstalledApplication(Places(), &path));
  EXPECT_EQ(path, release);
  fs::remove_all(root / "Vantor Orrery Studio R22");
  path = "unchanged";
  EXPECT_FALSE(FindInstalledApplication(Places(), &path));
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

TEST_F(AppLocate, TheInstallerRecordsAreAskedOnlyWhenNoFolderHoldsTheExecutable) {
  const std::string elsewhere = (root / "srv" / "orrery").string();
  fs::create_directories(elsewhere);
  std::ofstream(elsewhere + "/Orrery Studio.exe") << "#!/bin/sh\n";
  std::ofstream(root / "installer-records") << "# written by the installer\n"
                                              << "VANTOR Installer/Last Installation = Orrery Studio R25\n"
                                              << "Uninstall/Vantor Orrery Studio R25/Orrery Studio R25/InstallLocation = "
                                              << elsewhere << "\n";
  EXPECT_EQ(GetInstallLocation(Places().installerRecords), elsewhere);
  std::string path;
  ASSERT_TRUE(FindInstalledApplication(Places(), &path));
  EXPECT_EQ(path, elsewhere + "/Orrery Studio.exe");
  const std::string folder = Install("Vantor Orrery Studio 2023");
  ASSERT_TRUE(FindInstalledApplication(Places(), &path));
  EXPECT_EQ(path, folder);
}

TEST_F(AppLocate, TheFirstUninstallKeyThatOpensIsTheOnlyOneRead) {
  // R26 opens but holds no entry of the last installation's name: no location, although R25
  // would hold one.
  std::ofstream(root / "installer-records") << "VANTOR Installer/Last Installation=Studio\n"
                                              << "Uninstall/Vantor Orrery Studio R26/Other/InstallLocation=/a\n"
                                              << "Uninstall/Vantor Orrery Studio R25/Studio/InstallLocation=/b\n";
  EXPECT_EQ(GetInstallLocation(Places().installerRecords), "");
  EXPECT_EQ(GetInstallLocation((root / "no-records").string()), "");
}

// Which executable an installation of each version starts.
struct ResolveCase {
  const char* name;
  const char* version;  // the text of resource/version.h, null for none
  bool engineExecutable;
  int32_t result;
  bool pathIsEngine;
};

TEST_F(AppLocate, TheVersionChoosesTheExecutable) {
  const ResolveCase cases[] = {
      {"Orrery Studio.exe", "#define ORY_V1 19\n#define ORY_V2 9\n#define ORY_V3 9\n#define ORY_V4 9\n", true, 0, false},
      {"Orrery Studio.exe", "#define ORY_V1 20\n#define ORY_V2 5\n#define ORY_V3 0\n#define ORY_V4 0\n", true, 1, false},
      {"ORRERY STUDIO.exe", "#define ORY_V1 21\n#define ORY_V2 0\n#define ORY_V3 0\n#define ORY_V4 0\n", true, 0, true},
      {"Orrery Studio.exe", "#define ORY_V1 26\n#define ORY_V2 1\n#define ORY_V3 0\n#define ORY_V4 0\n", false, 1, false},
      {"Orrery Studio Lite.exe", "#define ORY_V1 26\n#define ORY_V2 1\n#define ORY_V3 0\n#define ORY_V4 0\n", true, 0, false},
      {"Orrery Studio.exe", nullptr, true, 0, false},
  };
  int n = 0;
  for (const ResolveCase& c : cases) {
    const fs::path folder = root / std::to_string(n++);
    const std::string executable = Install(folder.filename().string(), c.name);
    if (c.version) {
      fs::create_directories(folder / "resource");
      std::ofstream(folder / "resource" / "version.h") << c.version;
    }
    if (c.engineExecutable) std::ofstream(folder / "QuillOn.exe") << "";
    std::string path = executable;
    EXPECT_EQ(ResolveExecutable(&path), c.result) << c.name << " " << (c.version ? c.version : "");
    EXPECT_EQ(path, c.pathIsEngine ? (folder / "QuillOn.exe").string() : executable);
  }
}

TEST_F(AppLocate, TheEngineExecutableIsLookedForUnderBothSpellings) {
  std::string path = "unchanged";
  EXPECT_FALSE(FindQuillonExecutable(root.string(), &path));
  EXPECT_EQ(path, "unchanged");
  std::ofstream(root / "QuillOn.exe") << "";
  ASSERT_TRUE(FindQuillonExecutable(root.string(), &path));
  EXPECT_EQ(path, (root / "QuillOn.exe").string());
  std::ofstream(root / "Quillon.exe") << "";
  ASSERT_TRUE(FindQuillonExecutable(root.string(), &path));
  EXPECT_EQ(path, (root / "Quillon.exe").string());
}

}  // namespace
