// End to end: the host's preferences kept in a file across runs of aehost (--prefs), as a
// user meets them: what one run finds in the file is there for the plug-in and is written
// back at exit; a file that is not preferences is refused before the plug-in runs, and left
// as it was.
#include <gtest/gtest.h>
#include <json/json.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/run_command.h"

namespace {

using qae_test::RunCommand;

constexpr int kBadInput = 2;

class Preferences : public ::testing::Test {
 protected:
  void SetUp() override { dir = qae_test::MakeTempDir("aehost_prefs"); }
  void TearDown() override { std::filesystem::remove_all(dir); }

  qae_test::CommandResult RunWith(const std::string& prefs) {
    return RunCommand(qae_test::AehostPath(),
                      {"menu", std::string(QAE_EXAMPLES_DIR) + "/rig.json", "--comp", "Rig", "--prefs", prefs});
  }

  static Json::Value Parsed(const std::string& text) {
    Json::Value value;
    std::istringstream in(text);
    in >> value;
    return value;
  }

  std::string dir;
};

TEST_F(Preferences, WhatARunFindsIsWrittenBackForTheNext) {
  const std::string prefs = dir + "/prefs.json";
  const std::string text =
      R"({"Orrery Studio": {"ORY_LITEPATH": "explicit:/srv/my tools/Orrery Studio.exe"}, "Other": {"n": "12"}})";
  qae_test::WriteFile(prefs, text);
  const auto run = RunWith(prefs);
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(Parsed(qae_test::ReadFile(prefs)), Parsed(text));
}

TEST_F(Preferences, AFirstRunMakesTheFile) {
  const std::string prefs = dir + "/new.json";
  const auto run = RunWith(prefs);
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(Parsed(qae_test::ReadFile(prefs)), Json::Value(Json::objectValue));
}

TEST_F(Preferences, AFileThatCannotBeWrittenFailsTheRun) {
  const std::string prefs = dir + "/no folder/prefs.json";
  const auto run = RunWith(prefs);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.err.find("aehost: cannot write the preferences: " + prefs + ": cannot write: No such file or directory"),
            std::string::npos)
      << run.err;
}

// A file that is not preferences, and what aehost says of it.
struct RefusedCase {
  const char* name;
  const char* content;  // null: a folder stands at the path
  const char* mention;
};

void PrintTo(const RefusedCase& c, std::ostream* out) { *out << c.name; }

class RefusedPreferences : public Preferences, public ::testing::WithParamInterface<RefusedCase> {};

TEST_P(RefusedPreferences, AreNamedAndLeftAsTheyWere) {
  const RefusedCase& c = GetParam();
  const std::string prefs = dir + "/prefs.json";
  if (c.content)
    qae_test::WriteFile(prefs, c.content);
  else
    std::filesystem::create_directory(prefs);
  const auto run = RunWith(prefs);
  EXPECT_EQ(run.exitCode, kBadInput);
  EXPECT_NE(run.err.find("aehost: " + prefs + ": " + c.mention), std::string::npos) << run.err;
  if (c.content) {
    EXPECT_EQ(qae_test::ReadFile(prefs), c.content);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Files, RefusedPreferences,
    ::testing::Values(RefusedCase{"NotJson", "{\"Orrery Studio\": ", "not valid JSON"},
                      RefusedCase{"NotAnObject", "[1, 2]", "expected an object of sections"},
                      RefusedCase{"SectionNotAnObject", R"({"Orrery Studio": "x"})",
                                  "section \"Orrery Studio\": expected an object of keys"},
                      RefusedCase{"ValueNotAString", R"({"Orrery Studio": {"ORY_LITEPATH": 3}})",
                                  "section \"Orrery Studio\", key \"ORY_LITEPATH\": expected a string"},
                      RefusedCase{"AFolder", nullptr, "not a regular file"}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
