// Handing a file to the 3D application: the arguments, and a started program that reports
// what it received.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "plugin/session/application_handoff.h"

namespace {

TEST(HandoffArguments, ThePathStaysUnquotedAndAMergeIsMarkedDirectlyInFront) {
  EXPECT_EQ(quillon::HandoffArguments("/tmp/my scene.ory", false), "/tmp/my scene.ory");
  EXPECT_EQ(quillon::HandoffArguments("/tmp/my scene.ory", true), "$$$MERGE$$$/tmp/my scene.ory");
}

class ApplicationLaunch : public testing::Test {
 protected:
  void SetUp() override {
    dir_ = std::filesystem::temp_directory_path() / ("application_handoff." + std::to_string(getpid()));
    std::filesystem::create_directories(dir_);
    program_ = (dir_ / "app").string();
    report_ = (dir_ / "report").string();
    // The stand-in application writes how many arguments it got and each on a line.
    std::ofstream(program_) << "#!/bin/sh\n{ echo \"$#\"; for a in \"$@\"; do echo \"$a\"; done; } > " << report_
                            << ".part && mv " << report_ << ".part " << report_ << "\n";
    chmod(program_.c_str(), 0755);
  }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  // What the started program reported; it runs on its own, so the report is waited for.
  std::string Report() const {
    for (int i = 0; i < 1000 && !std::filesystem::exists(report_); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::ifstream in(report_);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
  }

  std::filesystem::path dir_;
  std::string program_;
  std::string report_;
};

TEST_F(ApplicationLaunch, AFileWithSpacesArrivesAsOneArgument) {
  ASSERT_TRUE(quillon::OpenFileInApplication(program_, "/tmp/my scene.ory", true));
  EXPECT_EQ(Report(), "1\n$$$MERGE$$$/tmp/my scene.ory\n");
}

TEST_F(ApplicationLaunch, TwoPartsAreJoinedByABlankAndNoneGivesNoArgument) {
  ASSERT_TRUE(quillon::LaunchWith(program_, "-render", "a.ory"));
  EXPECT_EQ(Report(), "1\n-render a.ory\n");
  std::filesystem::remove(report_);
  ASSERT_TRUE(quillon::LaunchApplication(program_, ""));
  EXPECT_EQ(Report(), "0\n");
}

TEST_F(ApplicationLaunch, AMissingProgramDoesNotStart) {
  EXPECT_FALSE(quillon::LaunchApplication((dir_ / "none").string(), "x"));
}

}  // namespace
