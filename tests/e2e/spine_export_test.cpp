// The export command as a user meets it through the host: the menu item, the save dialog,
// the messages of the failures that end an export, and the debug log.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/run_command.h"

namespace {

using qae_test::CommandResult;
using qae_test::FileExists;
using qae_test::ReadFile;
using qae_test::RunCommand;

constexpr char kEngineMissing[] =
    "Orrery Studio 2024 must be installed in order to use \"Quillon by Vantor\". To install from the Creative "
    "Cloud app, go to After Effects, choose the \"...\" button next to \"Open\" and select 'Add-ons'.";

// A project of one composition "Main" (640 by 360, 25 fps, two seconds shown from 1 s) with a 3D null and, when asked, a 2D solid; `saved`
// gives it a project file in `folder`.
std::string Project(const std::string& folder, bool saved, bool with3d, bool with2d) {
  std::string layers;
  if (with3d) {
    layers += R"({"id": 11, "name": "Box", "source": 2, "threeD": true, "null": true,
                  "transform": {"position": {"keys": [{"time": 0, "value": [100, 200, 0]},
                                                        {"time": 1, "value": [300, 200, -50]}]}}})";
  }
  if (with2d) {
    layers += std::string(layers.empty() ? "" : ",") +
              R"({"id": 12, "name": "Flat", "source": 2, "threeD": false,
                  "transform": {"position": {"value": [50, 50, 0]}}})";
  }
  return std::string(R"({"format": "aehost-project", "version": 1,)") +
         (saved ? "\"path\": \"" + folder + "/shot.aep\"," : "") +
         R"("footage": [{"id": 2, "name": "Card", "width": 100, "height": 100, "solid": {"color": [1, 1, 1]}}],
            "comps": [{"id": 1, "name": "Main", "width": 640, "height": 360, "frameRate": 25, "duration": 2,
                       "displayStart": 1,
                       "layers": [)" +
         layers + "]}]}";
}

class SpineExport : public ::testing::Test {
 protected:
  void SetUp() override { dir_ = qae_test::MakeTempDir("spine_export"); }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  std::string WriteProject(bool saved, bool with3d, bool with2d) {
    const std::string path = dir_ + "/project.json";
    qae_test::WriteFile(path, Project(dir_, saved, with3d, with2d));
    return path;
  }

  CommandResult Export(const std::string& project, std::vector<std::string> choice,
                       const std::vector<std::string>& env = {}) {
    std::vector<std::string> args = {"export", project, "--comp", "Main", "--quiet"};
    args.insert(args.end(), choice.begin(), choice.end());
    return RunCommand(qae_test::AehostPath(), args, env);
  }

  // The files the export left in the folder, beside the project description.
  std::vector<std::string> WrittenFiles() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir_)) {
      const std::string name = entry.path().filename().string();
      if (name != "project.json" && name != "answers.json") names.push_back(name);
    }
    return names;
  }

  std::string dir_;
};

TEST_F(SpineExport, WritesTheSceneFileTheUserChose) {
  const CommandResult run = Export(WriteProject(true, true, false), {"--output", dir_ + "/scene.ory"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(WrittenFiles(), std::vector<std::string>{"scene.ory"});
  EXPECT_EQ(run.err.find("Error during event"), std::string::npos) << run.err;
}

TEST_F(SpineExport, TheSceneHoldsTheRootAndTheCompositionsTimeAndSize) {
  ASSERT_EQ(Export(WriteProject(true, true, false), {"--output", dir_ + "/scene.ory"}).exitCode, 0);
  const CommandResult dump = RunCommand(qae_test::OrytoolPath(), {"dump", dir_ + "/scene.ory"});
  ASSERT_EQ(dump.exitCode, 0) << dump.err;
  // The root: "<project file>-<composition>", centred on the composition (half of 640 by 360,
  // y up), found again by its origin key.
  EXPECT_NE(dump.out.find("  Null \"shot.aep-Main\", rotation order 0, offset (-320, 180, 0)\n"
                          "    465001953 ParamKey_OriginKey = string \"QUILLON_EXPORT_ROOT_NODE\"\n"),
            std::string::npos)
      << dump.out;
  // 50 frames shown from frame 25: from 25/25 s to (25 + 49)/25 s.
  for (const char* line : {"1001 DocParam_Fps = int32 25\n", "1002 DocParam_MinTime = time 1/1\n",
                           "1003 DocParam_MaxTime = time 74/25\n", "5008 RenderParam_Width = float 640\n",
                           "5009 RenderParam_Height = float 360\n", "5017 RenderParam_FrameFrom = time 1/1\n",
                           "5018 RenderParam_FrameTo = time 74/25\n", "5020 RenderParam_FrameRate = float 25\n",
                           "6008 RenderParam_PixelAspect = float 1\n"}) {
    EXPECT_NE(dump.out.find(line), std::string::npos) << line << dump.out;
  }
}

TEST_F(SpineExport, AChosenNameGetsTheSceneSuffix) {
  const std::string project = WriteProject(true, true, false);
  Export(project, {"--output", dir_ + "/plain"});
  Export(project, {"--output", dir_ + "/other.txt"});
  EXPECT_TRUE(FileExists(dir_ + "/plain.ory"));
  EXPECT_TRUE(FileExists(dir_ + "/other.ory"));
  EXPECT_FALSE(FileExists(dir_ + "/plain"));
  EXPECT_FALSE(FileExists(dir_ + "/other.txt"));
}

TEST_F(SpineExport, ACancelledSaveDialogShowsNothingAndWritesNothing) {
  const CommandResult run = Export(WriteProject(true, true, false), {"--cancel-save"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_TRUE(WrittenFiles().empty());
  // The host tells of the dialog; the plug-in says nothing.
  EXPECT_NE(run.err.find("cancelled"), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find("Error during event"), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find("Problem encountered"), std::string::npos) << run.err;
}

TEST_F(SpineExport, ACancelOnTheProgressBarLeavesNoFileAndNoMessage) {
  qae_test::WriteFile(dir_ + "/answers.json", R"({"cancelProgressAt": 50})");
  const CommandResult run = Export(WriteProject(true, true, false),
                                   {"--output", dir_ + "/scene.ory", "--answers", dir_ + "/answers.json"});
  EXPECT_TRUE(WrittenFiles().empty());
  EXPECT_EQ(run.err.find("Error during event"), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find("Problem encountered"), std::string::npos) << run.err;
}

TEST_F(SpineExport, ANeverSavedProjectIsToldOnceTheEngineRuns) {
  const std::string project = WriteProject(false, true, false);
  const CommandResult run = Export(project, {"--output", dir_ + "/scene.ory"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.err.find("You must save the project before exporting."), std::string::npos) << run.err;
  EXPECT_TRUE(WrittenFiles().empty());
  // Without the engine the start fails first, and the project is not looked at.
  const std::string empty = dir_ + "/no-engine";
  std::filesystem::create_directory(empty);
  const CommandResult noEngine = Export(project, {"--output", dir_ + "/scene.ory"}, {"QUILLON_ENGINE_DIR=" + empty});
  EXPECT_NE(noEngine.err.find(kEngineMissing), std::string::npos) << noEngine.err;
  EXPECT_EQ(noEngine.err.find("You must save the project"), std::string::npos) << noEngine.err;
}

TEST_F(SpineExport, AMissingEngineLibraryIsToldInTheInstallersWords) {
  const std::string empty = dir_ + "/no-engine";
  std::filesystem::create_directory(empty);
  const CommandResult run =
      Export(WriteProject(true, true, false), {"--output", dir_ + "/scene.ory"}, {"QUILLON_ENGINE_DIR=" + empty});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.err.find("Error during event eQuillon_AEGP_CommandHook\nCode (A_Err_GENERIC) : " +
                         std::string(kEngineMissing)),
            std::string::npos)
      << run.err;
  EXPECT_FALSE(FileExists(dir_ + "/scene.ory"));
}

TEST_F(SpineExport, OnlyFlatLayersGiveNoFile) {
  const CommandResult run = Export(WriteProject(true, false, true), {"--output", dir_ + "/scene.ory"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.err.find("No 3D layers found."), std::string::npos) << run.err;
  EXPECT_TRUE(WrittenFiles().empty());
}

TEST_F(SpineExport, FlatLayersBesideDeepOnesAreToldAndLeftOut) {
  const CommandResult run = Export(WriteProject(true, true, true), {"--output", dir_ + "/scene.ory"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.err.find("2D layers found, these will not be exported."), std::string::npos) << run.err;
  EXPECT_TRUE(FileExists(dir_ + "/scene.ory"));
}

TEST_F(SpineExport, TextLayersBringTheTextQuestionBeforeTheSaveDialog) {
  const std::string project = dir_ + "/project.json";
  std::string text = Project(dir_, true, true, false);
  const std::string layers = "\"layers\": [";
  text.insert(text.find(layers) + layers.size(), R"({"id": 13, "name": "Title", "type": "text", "threeD": true},)");
  qae_test::WriteFile(project, text);
  const CommandResult live = Export(project, {"--output", dir_ + "/scene.ory", "--text", "live"});
  EXPECT_EQ(live.exitCode, 0) << live.err;
  const size_t question = live.err.find("How should they be exported?");
  const size_t chosen = live.err.find("chose \"Live text");
  const size_t save = live.err.find("save dialog");
  EXPECT_LT(question, chosen) << live.err;
  EXPECT_LT(chosen, save) << live.err;
  EXPECT_NE(save, std::string::npos) << live.err;
  // Closing the question ends the export silently: no save dialog, no message, no file.
  qae_test::WriteFile(dir_ + "/answers.json", R"({"dialogs": [{"cancel": true}]})");
  std::filesystem::remove(dir_ + "/scene.ory");
  const CommandResult cancelled =
      Export(project, {"--output", dir_ + "/scene.ory", "--answers", dir_ + "/answers.json"});
  EXPECT_EQ(cancelled.err.find("save dialog"), std::string::npos) << cancelled.err;
  EXPECT_EQ(cancelled.err.find("Error during event"), std::string::npos) << cancelled.err;
  EXPECT_FALSE(FileExists(dir_ + "/scene.ory"));
}

TEST_F(SpineExport, TheMenuItemIsEnabledExactlyForAnActiveComposition) {
  const std::string project = WriteProject(true, true, false);
  const CommandResult none = RunCommand(qae_test::AehostPath(), {"menu", project, "--quiet"});
  const CommandResult comp = RunCommand(qae_test::AehostPath(), {"menu", project, "--comp", "Main", "--quiet"});
  EXPECT_EQ(none.out, "13\tdisabled\tVantor Orrery Studio Exporter...\n");
  EXPECT_EQ(comp.out, "13\tenabled\tVantor Orrery Studio Exporter...\n");
}

TEST_F(SpineExport, TheDebugLogIsWrittenWhenAsked) {
  const std::string project = WriteProject(true, true, false);
  const std::string desktop = dir_ + "/Desktop";
  std::filesystem::create_directory(desktop);
  Export(project, {"--output", dir_ + "/scene.ory"}, {"XDG_DESKTOP_DIR=" + desktop});
  EXPECT_FALSE(FileExists(desktop + "/QUILLON_FOR_AE_DEBUG_LOG.txt"));
  // An empty value turns it on all the same; each run appends a header of its own.
  const std::vector<std::string> env = {"XDG_DESKTOP_DIR=" + desktop, "QUILLON_FOR_AE_ENABLE_DEBUG_LOG="};
  Export(project, {"--output", dir_ + "/scene.ory"}, env);
  Export(project, {"--output", dir_ + "/scene.ory"}, env);
  const std::string log = ReadFile(desktop + "/QUILLON_FOR_AE_DEBUG_LOG.txt");
  size_t headers = 0;
  for (size_t at = log.find("\nQUILLON_FOR_AE_DEBUG_LOG\n========================="); at != std::string::npos;
       at = log.find("\nQUILLON_FOR_AE_DEBUG_LOG\n", at + 1)) {
    ++headers;
  }
  EXPECT_EQ(headers, 2u) << log;
  EXPECT_NE(log.find("Application : After Effects\n"), std::string::npos) << log;
  EXPECT_NE(log.find(" : CommandHook -> Start\n"), std::string::npos) << log;
  EXPECT_NE(log.find(" : CommandHook -> End ["), std::string::npos) << log;
  EXPECT_NE(log.find(" sec]\n"), std::string::npos) << log;
}

}  // namespace

// Counts the places where `needle` stands in `text`.
static size_t Occurrences(const std::string& text, const std::string& needle) {
  size_t count = 0;
  for (size_t at = text.find(needle); at != std::string::npos; at = text.find(needle, at + needle.size())) ++count;
  return count;
}

TEST_F(SpineExport, ASecondExportInOneRunDoesNotStartTheEngineAgain) {
  const std::string desktop = dir_ + "/Desktop";
  std::filesystem::create_directory(desktop);
  const CommandResult run =
      Export(WriteProject(true, true, false), {"--output", dir_ + "/scene.ory", "--clicks", "2"},
             {"XDG_DESKTOP_DIR=" + desktop, "QUILLON_FOR_AE_ENABLE_DEBUG_LOG=1"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  const std::string log = ReadFile(desktop + "/QUILLON_FOR_AE_DEBUG_LOG.txt");
  EXPECT_EQ(Occurrences(log, "starting the engine"), 1u) << log;
  EXPECT_EQ(Occurrences(log, "scene file written"), 2u) << log;
}

TEST_F(SpineExport, AfterAMissingEngineTheNextClickTriesAgain) {
  const std::string empty = dir_ + "/no-engine";
  std::filesystem::create_directory(empty);
  const std::string desktop = dir_ + "/Desktop";
  std::filesystem::create_directory(desktop);
  const CommandResult run =
      Export(WriteProject(true, true, false), {"--output", dir_ + "/scene.ory", "--clicks", "2"},
             {"QUILLON_ENGINE_DIR=" + empty, "XDG_DESKTOP_DIR=" + desktop, "QUILLON_FOR_AE_ENABLE_DEBUG_LOG=1"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(Occurrences(run.err, kEngineMissing), 2u) << run.err;
  EXPECT_EQ(Occurrences(ReadFile(desktop + "/QUILLON_FOR_AE_DEBUG_LOG.txt"), "starting the engine"), 2u);
  EXPECT_FALSE(FileExists(dir_ + "/scene.ory"));
}
