// orytool as a user runs it: exit codes, messages and files.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/run_command.h"

namespace {

using qae_test::RunCommand;

class OrytoolCli : public ::testing::Test {
 protected:
  void SetUp() override { dir = qae_test::MakeTempDir("orytool_cli"); }
  void TearDown() override { std::filesystem::remove_all(dir); }
  std::string In(const char* leaf) const { return dir + "/" + leaf; }
  qae_test::CommandResult Run(const std::vector<std::string>& args) {
    return RunCommand(qae_test::OrytoolPath(), args);
  }
  std::string dir;
};

constexpr const char* kScene = R"({
  "objects": [{"type": "ObjectType_Camera", "name": "Cam",
               "tags": [{"type": "TagType_Target", "params": [{"id": 1001, "link": "t"}]}]},
              {"type": "ObjectType_Null", "name": "Target", "ref": "t"}]
})";

TEST_F(OrytoolCli, BuildDumpAndBuildAgainGiveTheSameFile) {
  qae_test::WriteFile(In("scene.json"), kScene);
  auto built = Run({"build", In("scene.json"), "--output", In("a.ory")});
  ASSERT_EQ(built.exitCode, 0) << built.err;
  auto json = Run({"dump", "--json", In("a.ory")});
  ASSERT_EQ(json.exitCode, 0) << json.err;
  qae_test::WriteFile(In("dumped.json"), json.out);
  ASSERT_EQ(Run({"build", In("dumped.json"), "-o", In("b.ory")}).exitCode, 0);
  EXPECT_EQ(qae_test::ReadFile(In("a.ory")), qae_test::ReadFile(In("b.ory")));

  auto text = Run({"dump", In("a.ory")});
  ASSERT_EQ(text.exitCode, 0) << text.err;
  EXPECT_EQ(text.out.rfind("2 objects, 1 camera, 0 lights, 0 tracks, 0 keys, 0 markers, frames 0..90 at 30 fps\n", 0),
            0u)
      << text.out;
  EXPECT_NE(text.out.find("1001 TargetTagParam_Target = link -> Null \"Target\"\n"), std::string::npos) << text.out;
}

TEST_F(OrytoolCli, ValidateNamesTheOffsetOfTheProblem) {
  qae_test::WriteFile(In("scene.json"), kScene);
  ASSERT_EQ(Run({"build", In("scene.json"), "-o", In("a.ory")}).exitCode, 0);
  auto good = Run({"validate", In("a.ory")});
  EXPECT_EQ(good.exitCode, 0) << good.err;
  EXPECT_EQ(good.out, In("a.ory") + ": valid\n");

  std::string bytes = qae_test::ReadFile(In("a.ory"));
  bytes.resize(bytes.size() - 5);
  qae_test::WriteFile(In("cut.ory"), bytes);
  auto cut = Run({"validate", In("cut.ory")});
  EXPECT_EQ(cut.exitCode, 2);
  EXPECT_EQ(cut.err, "orytool: " + In("cut.ory") + ": byte 16: body length " + std::to_string(bytes.size() + 5 - 24) +
                         " does not match the " + std::to_string(bytes.size() - 24) +
                         " bytes after the header: the file is truncated\n");
  auto missing = Run({"dump", In("none.ory")});
  EXPECT_EQ(missing.exitCode, 2);
  EXPECT_EQ(missing.err, "orytool: " + In("none.ory") + ": cannot open: No such file or directory\n");
}

TEST_F(OrytoolCli, BadDescriptionsExitWithTwoAndNameThePath) {
  qae_test::WriteFile(In("broken.json"), "{\"objects\": [");
  auto broken = Run({"build", In("broken.json"), "-o", In("x.ory")});
  EXPECT_EQ(broken.exitCode, 2);
  EXPECT_EQ(broken.err.rfind("orytool: " + In("broken.json") + ": not valid JSON: ", 0), 0u) << broken.err;

  qae_test::WriteFile(In("deep.json"), "{\"objects\": " + std::string(5000, '[') + std::string(5000, ']') + "}");
  auto deep = Run({"build", In("deep.json"), "-o", In("x.ory")});
  EXPECT_EQ(deep.exitCode, 2);
  EXPECT_EQ(deep.err.rfind("orytool: " + In("deep.json") + ": not valid JSON: ", 0), 0u) << deep.err;

  qae_test::WriteFile(In("wrong.json"), R"({"objects": [{"type": "ObjectType_Null", "rotation_order": "six"}]})");
  auto wrong = Run({"build", In("wrong.json"), "-o", In("x.ory")});
  EXPECT_EQ(wrong.exitCode, 2);
  EXPECT_EQ(wrong.err, "orytool: " + In("wrong.json") + ": $.objects[0].rotation_order: expected a whole number\n");
  EXPECT_FALSE(qae_test::FileExists(In("x.ory")));
}

// An update document written by hand: the ids and the marker reach the file, the dump shows
// them, and the dump builds the same file again.
TEST_F(OrytoolCli, UniqueIdsAndMarkersGoThroughBuildAndDump) {
  qae_test::WriteFile(In("update.json"), R"({"objects": [{"type": "ObjectType_Plane", "name": "Plane",
      "marker": "00112233445566778899AABBCCDDEEFF",
      "unique_ids": [{"application": 7, "text": "plane-1"}, {"application": 8, "hex": "0001"}]}]})");
  auto built = Run({"build", In("update.json"), "-o", In("update.ory")});
  ASSERT_EQ(built.exitCode, 0) << built.err;
  EXPECT_EQ(Run({"validate", In("update.ory")}).out, In("update.ory") + ": valid\n");
  auto json = Run({"dump", "--json", In("update.ory")});
  ASSERT_EQ(json.exitCode, 0) << json.err;
  EXPECT_NE(json.out.find("\"marker\" : \"00112233445566778899aabbccddeeff\""), std::string::npos) << json.out;
  EXPECT_NE(json.out.find("\"text\" : \"plane-1\""), std::string::npos) << json.out;
  EXPECT_NE(json.out.find("\"hex\" : \"0001\""), std::string::npos) << json.out;
  qae_test::WriteFile(In("dumped.json"), json.out);
  ASSERT_EQ(Run({"build", In("dumped.json"), "-o", In("again.ory")}).exitCode, 0);
  EXPECT_EQ(qae_test::ReadFile(In("again.ory")), qae_test::ReadFile(In("update.ory")));

  qae_test::WriteFile(In("twice.json"), R"({"objects": [{"type": "ObjectType_Plane",
      "unique_ids": [{"application": 7, "text": "a"}, {"application": 7, "text": "b"}]}]})");
  auto twice = Run({"build", In("twice.json"), "-o", In("x.ory")});
  EXPECT_EQ(twice.exitCode, 2);
  EXPECT_EQ(twice.err, "orytool: " + In("twice.json") +
                           ": $.objects[0].unique_ids[1].application: application 7 gives a second unique id\n");
  EXPECT_FALSE(qae_test::FileExists(In("x.ory")));
}

TEST_F(OrytoolCli, UsageErrorsExitWithTwoAndHelpWithZero) {
  EXPECT_EQ(Run({}).exitCode, 2);
  EXPECT_EQ(Run({"dump"}).exitCode, 2);
  EXPECT_EQ(Run({"build", In("scene.json")}).exitCode, 2);
  auto unknown = Run({"frobnicate", In("scene.json")});
  EXPECT_EQ(unknown.exitCode, 2);
  EXPECT_NE(unknown.err.find("unknown command \"frobnicate\""), std::string::npos) << unknown.err;
  for (const char* command : {"dump", "validate", "build"}) {
    auto help = Run({command, "--help"});
    EXPECT_EQ(help.exitCode, 0) << command;
    EXPECT_NE(help.out.find("Usage"), std::string::npos) << help.out;
  }
  EXPECT_EQ(Run({"--help"}).exitCode, 0);
}

TEST_F(OrytoolCli, WriteFailureExitsWithOne) {
  qae_test::WriteFile(In("scene.json"), kScene);
  auto result = Run({"build", In("scene.json"), "-o", In("no/folder/a.ory")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.err.find("no/folder/a.ory: cannot write: No such file or directory"), std::string::npos) << result.err;
}

}  // namespace
