// The aehost command line with the test plug-in: what a pipeline sees.
#include <gtest/gtest.h>
#include <json/json.h>

#include <filesystem>
#include <sstream>

#include "tests/support/run_command.h"

namespace {

using qae_test::AehostPath;
using qae_test::CommandResult;
using qae_test::FileExists;
using qae_test::ReadFile;
using qae_test::RunCommand;
using qae_test::WriteFile;

// "Card": a 3D solid layer whose anchor is (100, 50, 0) and whose position
// moves from (0, 0, 0) at 0 s to (100, 0, 0) at 1 s; below it the same
// solid, 2D, unnamed, anchored at the middle of the solid (the default) and
// placed at (320, 240); at the bottom "Follower", whose position expression
// moves it 10 pixels a second along x.
const char* kProject = R"({"format": "aehost-project", "version": 1, "path": "/projects/shot.aep",
  "footage": [{"id": 1, "name": "Red", "width": 200, "height": 100, "solid": {"color": [1, 0, 0]}}],
  "comps": [{"id": 2, "name": "Main", "width": 640, "height": 480, "frameRate": 25, "duration": 2,
    "layers": [
      {"id": 1, "name": "Card", "source": 1, "threeD": true,
       "transform": {"anchorPoint": {"value": [100, 50, 0]},
                     "position": {"keys": [{"time": 0, "value": [0, 0, 0]}, {"time": 1, "value": [100, 0, 0]}]}}},
      {"id": 2, "source": 1, "transform": {"position": {"value": [320, 240, 0]}}},
      {"id": 3, "name": "Follower", "source": 1, "threeD": true,
       "transform": {"anchorPoint": {"value": [0, 0, 0]},
                     "position": {"value": [0, 0, 0], "expression": "[time * 10, 5, 0]"}}}]}]})";

class CommandLineTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir = qae_test::MakeTempDir("aehost_cli");
        project = dir + "/shot.json";
        WriteFile(project, kProject);
    }
    void TearDown() override { std::filesystem::remove_all(dir); }

    CommandResult Run(std::vector<std::string> args, const std::string& scenario = "") {
        if (args.size() > 0 && args[0] != "xform") args.insert(args.end(), {"--plugin", AEHOST_TEST_PLUGIN});
        return RunCommand(AehostPath(), args, {"AEHOST_TEST_PLUGIN=" + scenario});
    }

    std::string dir;
    std::string project;
};

TEST_F(CommandLineTest, ExportClicksTheCommandAndWritesTheChosenFile) {
    const std::string out = dir + "/shot.tst";
    const std::string transcript = dir + "/messages.txt";
    const CommandResult r = Run({"export", project, "--comp", "Main", "--output", out, "--transcript", transcript});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    // Translations at 0 s: position minus anchor for each layer.
    EXPECT_EQ(ReadFile(out), "0 Card 3d -100 -50 0\n1 Red 2d 220 190 0\n2 Follower 3d 0 5 0\n");
    EXPECT_NE(r.err.find("exported 3 layers"), std::string::npos) << r.err;
    EXPECT_NE(ReadFile(transcript).find("exported 3 layers\n"), std::string::npos);
}

TEST_F(CommandLineTest, CancelledSaveDialogWritesNothingAndSucceeds) {
    const CommandResult r = Run({"export", project, "--comp", "Main", "--cancel-save"});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err.find("exported"), std::string::npos);
}

TEST_F(CommandLineTest, AnswersFileChoosesTheFile) {
    const std::string out = dir + "/answered.tst";
    WriteFile(dir + "/answers.json", R"({"save": {"path": ")" + out + R"("}})");
    const CommandResult r = Run({"export", project, "--comp", "Main", "--answers", dir + "/answers.json"});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(FileExists(out));
}

TEST_F(CommandLineTest, PluginFaultsFailTheRun) {
    const std::vector<std::string> args = {"export", project, "--comp", "Main", "--cancel-save"};
    CommandResult r = Run(args, "leak");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("memory handle \"leak\" of plug-in 1 (64 bytes) was never freed"), std::string::npos) << r.err;
    std::vector<std::string> lenient = args;
    lenient.push_back("--allow-leaks");
    r = Run(lenient, "leak");
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_NE(r.err.find("never freed"), std::string::npos);
    r = Run(args, "double-free");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("AEGP_FreeMemHandle: memory handle already freed"), std::string::npos) << r.err;
    r = Run(args, "unhandled");
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("no plug-in handled \"Test Exporter...\""), std::string::npos) << r.err;
}

TEST_F(CommandLineTest, MenuShowsTheCommandEnabledOnlyWithACompositionOpen) {
    CommandResult r = Run({"menu", project, "--comp", "Main"});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out, "13\tenabled\tTest Exporter...\n");
    r = Run({"menu", project});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out, "13\tdisabled\tTest Exporter...\n");
}

TEST_F(CommandLineTest, ImportBuildsAFolderAndCompositionAndSavesTheProject) {
    WriteFile(dir + "/scene.tst", "TST1\nAlpha\nBeta\n");
    const std::string out = dir + "/imported.json";
    const CommandResult r = Run({"import", dir + "/scene.tst", "--project", project, "--output", out});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    Json::Value saved;
    std::istringstream(ReadFile(out)) >> saved;
    const Json::Value& folders = saved["folders"];
    ASSERT_EQ(folders.size(), 2u);  // "Imported", and "Solids" for the nulls' sources
    const Json::Value& comps = saved["comps"];
    ASSERT_EQ(comps.size(), 2u);
    const Json::Value& scene = comps[1];
    EXPECT_EQ(scene["name"].asString(), "Scene");
    EXPECT_EQ(scene["width"].asInt(), 320);
    EXPECT_EQ(scene["frameRate"].asDouble(), 25.0);
    EXPECT_EQ(scene["folder"].asInt(), folders[0]["name"].asString() == "Imported" ? folders[0]["id"].asInt()
                                                                                     : folders[1]["id"].asInt());
    ASSERT_EQ(scene["layers"].size(), 2u);
    // A null shows the name of its solid. Each new layer goes to the top:
    // the last name stands first.
    auto shownName = [&](const Json::Value& layer) {
        for (const Json::Value& item : saved["footage"])
            if (item["id"] == layer["source"]) return item["name"].asString();
        return layer["name"].asString();
    };
    EXPECT_EQ(shownName(scene["layers"][0]), "Beta");
    EXPECT_EQ(shownName(scene["layers"][1]), "Alpha");
    EXPECT_TRUE(scene["layers"][0]["null"].asBool());
}

TEST_F(CommandLineTest, ImportMarksTheSelectedLayer) {
    WriteFile(dir + "/scene.tst", "TST1\nAlpha\nBeta\n");
    const std::string out = dir + "/marked.json";
    const CommandResult r = Run({"import", dir + "/scene.tst", "--project", project, "--comp", "Main", "--layer",
                                 "Card", "--output", out});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    Json::Value saved;
    std::istringstream(ReadFile(out)) >> saved;
    const Json::Value& card = saved["comps"][0]["layers"][0];
    EXPECT_EQ(card["name"].asString(), "Card");
    ASSERT_EQ(card["markers"].size(), 1u);
    EXPECT_EQ(card["markers"][0]["time"].asDouble(), 1.0);
    EXPECT_EQ(card["markers"][0]["comment"].asString(), "imported 2 names");
    EXPECT_EQ(Run({"import", dir + "/scene.tst", "--project", project, "--comp", "Main", "--layer", "Nope",
                   "--output", out}).exitCode,
              2);
}

TEST_F(CommandLineTest, ImportRefusesFilesTheFlavorDoesNotTake) {
    WriteFile(dir + "/bad.tst", "NOPE\n");
    CommandResult r = Run({"import", dir + "/bad.tst", "--output", dir + "/o.json"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("cannot import"), std::string::npos) << r.err;
    WriteFile(dir + "/scene.txt", "TST1\n");
    r = Run({"import", dir + "/scene.txt", "--output", dir + "/o.json"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("no plug-in imports files like"), std::string::npos) << r.err;
    EXPECT_FALSE(FileExists(dir + "/o.json"));
}

TEST_F(CommandLineTest, XformPrintsTheLayerToWorldMatrix) {
    // Frame 12.5 at 25 fps is 0.5 s: position (50, 0, 0) less the anchor.
    const CommandResult r = Run({"xform", project, "--comp", "Main", "--layer", "Card", "--frame", "12.5"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    Json::Value out;
    std::istringstream(r.out) >> out;
    EXPECT_EQ(out["time"].asDouble(), 0.5);
    const double expected[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {-50, -50, 0, 1}};
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col)
            EXPECT_NEAR(out["matrix"][row][col].asDouble(), expected[row][col], 1e-9) << row << "," << col;
    EXPECT_EQ(Run({"xform", project, "--comp", "Main", "--layer", "Nope", "--frame", "0"}).exitCode, 2);
    // Expressions run: frame 50 is 2 s, so the follower stands at x = 20.
    const CommandResult follower = Run({"xform", project, "--comp", "Main", "--layer", "Follower", "--frame", "50"});
    ASSERT_EQ(follower.exitCode, 0) << follower.err;
    std::istringstream(follower.out) >> out;
    EXPECT_NEAR(out["matrix"][3][0].asDouble(), 20.0, 1e-9);
    EXPECT_NEAR(out["matrix"][3][1].asDouble(), 5.0, 1e-9);
}

TEST_F(CommandLineTest, BadInputAndUsageExitWithTwo) {
    EXPECT_EQ(RunCommand(AehostPath(), {}).exitCode, 2);
    EXPECT_EQ(RunCommand(AehostPath(), {"export", "--help"}).exitCode, 0);
    EXPECT_EQ(Run({"export", project, "--comp", "Main"}).exitCode, 2);  // no answer to the save dialog
    EXPECT_EQ(Run({"export", project, "--comp", "Other", "--cancel-save"}).exitCode, 2);
    EXPECT_EQ(Run({"export", dir + "/missing.json", "--comp", "Main", "--cancel-save"}).exitCode, 2);
    WriteFile(dir + "/answers.json", R"({"save": {"file": "x"}})");
    const CommandResult r = Run({"export", project, "--comp", "Main", "--answers", dir + "/answers.json"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("answers.json: save: unknown key \"file\""), std::string::npos) << r.err;
    WriteFile(dir + "/broken.json", "{\"format\": ");
    EXPECT_EQ(Run({"menu", dir + "/broken.json"}).exitCode, 2);
}

TEST_F(CommandLineTest, MissingPluginFailsWithItsPath) {
    const CommandResult r = RunCommand(
        AehostPath(), {"menu", project, "--app-dir", dir + "/nowhere"}, {"AEHOST_APP_DIR="});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find(dir + "/nowhere/Plug-ins/Quillon by Vantor/quillon_ae.so"), std::string::npos) << r.err;
}

}  // namespace
