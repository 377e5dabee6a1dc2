// End to end: the import reads a scene file under a shared lock. Another process that holds
// the file for writing keeps the import out (it waits its 5 seconds and gives up with error
// 2); one that only reads it lets the import in. Files that are no scenes, or that have a
// scene's header and nothing behind it, are refused without touching the project.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/support/run_command.h"

namespace {

using qae_test::RunCommand;

class ImportLock : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = qae_test::MakeTempDir("import_lock");
    scene_ = dir_ + "/keys.ory";
    const auto built = RunCommand(qae_test::OrytoolPath(),
                                  {"build", std::string(QAE_EXAMPLES_DIR) + "/scenes/import_keys.json", "-o", scene_});
    ASSERT_EQ(built.exitCode, 0) << built.err;
  }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  qae_test::CommandResult Import(const std::string& file) const {
    return RunCommand(qae_test::AehostPath(), {"import", file, "--output", Output()});
  }
  std::string Output() const { return dir_ + "/out.json"; }

  // Holds the file the way another program would: an open descriptor with a lock on it.
  int Hold(int operation) const {
    const int fd = open(scene_.c_str(), operation == LOCK_EX ? O_RDWR : O_RDONLY);
    EXPECT_GE(fd, 0);
    EXPECT_EQ(flock(fd, operation | LOCK_NB), 0);
    return fd;
  }

  std::string dir_;
  std::string scene_;
};

TEST_F(ImportLock, AWriterElsewhereKeepsTheImportOut) {
  const int writer = Hold(LOCK_EX);
  const auto result = Import(scene_);
  close(writer);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.err.find("failed to import"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("(error 2): " + scene_ + " is being written by another program (locked for 5 s)"),
            std::string::npos)
      << result.err;
  EXPECT_FALSE(qae_test::FileExists(Output()));
}

TEST_F(ImportLock, AReaderElsewhereSharesTheFile) {
  const int reader = Hold(LOCK_SH);
  const auto result = Import(scene_);
  close(reader);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(qae_test::FileExists(Output()));
}

TEST_F(ImportLock, FilesThatAreNoScenesAreRefused) {
  const std::string notScene = dir_ + "/not.ory";
  qae_test::WriteFile(notScene, "NOTASCENE");
  const auto refused = Import(notScene);
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_NE(refused.err.find("cannot import"), std::string::npos) << refused.err;

  // The header passes, the loading fails: the import itself reports failure, a malformed file.
  const std::string broken = dir_ + "/broken.ory";
  qae_test::WriteFile(broken, "XORYORY6 and nothing a scene would hold");
  const auto failed = Import(broken);
  EXPECT_EQ(failed.exitCode, 2);
  EXPECT_NE(failed.err.find("failed to import"), std::string::npos) << failed.err;
  EXPECT_FALSE(qae_test::FileExists(Output()));
}

}  // namespace
