// The command lines as a person and a pipeline use them: the one summary line on standard
// output, --quiet and --verbose, --help, exit codes, and progress only on a terminal.
// The numbers of the summary lines are worked out by hand from the small project and scene
// below, as the conventions of export and import give them.
#include <gtest/gtest.h>
#include <json/json.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"

namespace {

using qae_test::CommandResult;
using qae_test::RunCommand;

// Composition "Shot": 640 x 360, 25 fps, 2 s, so frames 0..49. "Mover" is a 3D null whose
// position goes linearly from x 100 at 0.4 s (frame 10) to x 300 at 0.8 s (frame 20); "Flat"
// is a 2D solid, which the exporter leaves out. One composition marker at 1 s.
//
// The scene: the root null, "Mover", and, with no camera layer, the default camera with its
// target null: 4 objects, 1 camera, no light. Mover is baked one key a frame over frames
// 10..20, 11 keys; only x moves, so the y and z tracks are simplified away, and with no
// rotation or scale keys there are no such tracks: 1 track, 11 keys. The marker: 1.
constexpr const char* kProject = R"({
  "format": "aehost-project", "version": 1, "path": "/projects/shot.aep",
  "footage": [
    {"id": 1, "name": "Null 1", "width": 100, "height": 100, "solid": {"color": [1, 1, 1]}},
    {"id": 2, "name": "Grey Solid", "width": 640, "height": 360, "solid": {"color": [0.5, 0.5, 0.5]}}
  ],
  "comps": [{
    "id": 3, "name": "Shot", "width": 640, "height": 360, "frameRate": 25, "duration": 2,
    "markers": [{"time": 1, "comment": "cut"}],
    "layers": [
      {"id": 11, "name": "Mover", "source": 1, "threeD": true, "null": true,
       "transform": {"position": {"keys": [{"time": 0.4, "value": [100, 0, 0]},
                                           {"time": 0.8, "value": [300, 0, 0]}]}}},
      {"id": 12, "name": "Flat", "source": 2}
    ]
  }]
})";
constexpr const char* kExportCounts =
    "4 objects, 1 camera, 0 lights, 1 track, 11 keys, 1 marker, frames 0..49 at 25 fps";

// Scene "Moves": frames 0..4 at 25 fps (5 frames, 0.2 s), render size 640 x 360. A camera, a
// null with the compositing tag, a tagged solid of 200 x 100, an untagged null that makes no
// layer, and one marker. Nothing is animated, so the import writes no keyframe. The host puts
// the solid's footage item into a folder "Solids", as it does for every solid it makes.
constexpr const char* kScene = R"({
  "document": {"name": "Moves",
               "params": [{"id": "DocParam_Fps", "int32": 25},
                          {"id": "DocParam_MinTime", "time": [0, 25]},
                          {"id": "DocParam_MaxTime", "time": [4, 25]}]},
  "render_settings": [{"params": [{"id": "RenderParam_Width", "float": 640},
                                  {"id": "RenderParam_Height", "float": 360},
                                  {"id": "RenderParam_PixelAspect", "float": 1.0},
                                  {"id": "RenderParam_FrameRate", "float": 25}]}],
  "objects": [
    {"type": "ObjectType_Camera", "name": "Cam", "params": [{"id": "ObjectParam_Position", "vector": [0, 0, -1000]}]},
    {"type": "ObjectType_Null", "name": "Mover",
     "tags": [{"type": "TagType_Compositing", "params": [{"id": "CompositingTagParam_Solid", "int32": 0}]}]},
    {"type": "ObjectType_Null", "name": "Card",
     "tags": [{"type": "TagType_Compositing",
               "params": [{"id": "CompositingTagParam_Solid", "int32": 1},
                          {"id": "CompositingTagParam_Width", "int32": 200},
                          {"id": "CompositingTagParam_Height", "int32": 100}]}]},
    {"type": "ObjectType_Null", "name": "Left behind"}
  ],
  "markers": [{"params": [{"id": "MarkerParam_Time", "time": [2, 25]}]}],
  "views": [{"scene_camera": null, "editor_camera": null}]
})";

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

void ExpectSteps(const std::string& trace, const std::vector<std::string>& steps) {
  for (const std::string& step : steps) EXPECT_TRUE(Contains(trace, step)) << step << "\n" << trace;
}

// Runs a command with all three standard streams on a new terminal, as a person at a
// terminal runs it, and gives what the terminal showed.
CommandResult RunOnTerminal(const std::string& program, const std::vector<std::string>& args) {
  CommandResult result;
  int master = -1;
  const pid_t child = forkpty(&master, nullptr, nullptr, nullptr);
  if (child < 0) return result;
  if (child == 0) {
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    execv(program.c_str(), argv.data());
    _exit(127);
  }
  char buffer[4096];
  for (;;) {
    const ssize_t n = read(master, buffer, sizeof buffer);
    if (n > 0) {
      result.out.append(buffer, static_cast<std::size_t>(n));
    } else if (n < 0 && errno == EINTR) {
      continue;
    } else {
      break;  // EIO once the child has closed the terminal
    }
  }
  close(master);
  int status = 0;
  waitpid(child, &status, 0);
  result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

class Cli : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = qae_test::MakeTempDir("cli");
    qae_test::WriteFile(In("shot.json"), kProject);
    qae_test::WriteFile(In("moves.json"), kScene);
    const CommandResult built = RunCommand(qae_test::OrytoolPath(), {"build", In("moves.json"), "-o", In("moves.ory")});
    ASSERT_EQ(built.exitCode, 0) << built.err;
  }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  std::string In(const std::string& leaf) const { return dir_ + "/" + leaf; }
  std::vector<std::string> ExportArgs() const {
    return {"export", In("shot.json"), "--comp", "Shot", "--output", In("shot.ory")};
  }
  std::vector<std::string> ImportArgs() const {
    return {"import", In("moves.ory"), "--output", In("moves.project.json")};
  }
  CommandResult Aehost(std::vector<std::string> args, const std::vector<std::string>& more = {}) {
    args.insert(args.end(), more.begin(), more.end());
    return RunCommand(qae_test::AehostPath(), args);
  }

  std::string dir_;
};

TEST_F(Cli, ExportPrintsOneLineOfTheWrittenScene) {
  const CommandResult run = Aehost(ExportArgs());
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, "exported \"Shot\" to " + In("shot.ory") + ": " + kExportCounts + "\n");

  // orytool gives the same counts for the same file, alone with --summary and as the first
  // line of the tree without it.
  const CommandResult summary = RunCommand(qae_test::OrytoolPath(), {"dump", "--summary", In("shot.ory")});
  ASSERT_EQ(summary.exitCode, 0) << summary.err;
  EXPECT_EQ(summary.out, std::string(kExportCounts) + "\n");
  const CommandResult tree = RunCommand(qae_test::OrytoolPath(), {"dump", In("shot.ory")});
  ASSERT_EQ(tree.exitCode, 0) << tree.err;
  EXPECT_EQ(tree.out.rfind(std::string(kExportCounts) + "\n", 0), 0u) << tree.out;
  EXPECT_TRUE(Contains(tree.out, "track \"Position X\"")) << tree.out;

  // A cancelled save dialog writes nothing and says so.
  const CommandResult cancelled = Aehost({"export", In("shot.json"), "--comp", "Shot", "--cancel-save"});
  EXPECT_EQ(cancelled.exitCode, 0) << cancelled.err;
  EXPECT_EQ(cancelled.out, "export of \"Shot\" cancelled in the save dialog: nothing written\n");
}

TEST_F(Cli, ImportPrintsOneLineOfWhatItBuilt) {
  const CommandResult run = Aehost(ImportArgs());
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, "imported " + In("moves.ory") +
                         ": folder \"Moves\", composition \"Moves\" 640x360, 25 fps, 0.2 s (5 frames), folder "
                         "\"Solids\"; 3 layers (1 camera, 1 null, 1 solid), 0 keyframes, 0 markers\n");
  // The scene's marker goes only to an active layer, and only through an effect's call.

  // Into a project that holds a composition already: its two layers, two keys and marker
  // are not what the import built.
  const CommandResult into =
      Aehost({"import", In("moves.ory"), "--project", In("shot.json"), "--output", In("into.project.json")});
  ASSERT_EQ(into.exitCode, 0) << into.err;
  EXPECT_EQ(into.out, "imported " + In("moves.ory") +
                          ": folder \"Moves\", composition \"Moves\" 640x360, 25 fps, 0.2 s (5 frames), folder "
                          "\"Solids\"; 3 layers (1 camera, 1 null, 1 solid), 0 keyframes, 0 markers\n");
}

TEST_F(Cli, ImportCountsTheKeyframesThatTheSavedProjectHolds) {
  // An animated scene of the examples; the keys are counted in the saved description.
  const std::string scene = In("keys.ory");
  ASSERT_EQ(RunCommand(qae_test::OrytoolPath(),
                       {"build", std::string(QAE_EXAMPLES_DIR) + "/scenes/import_keys.json", "-o", scene})
                .exitCode,
            0);
  const CommandResult run = Aehost({"import", scene, "--output", In("keys.project.json")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  long long keys = 0;
  const Json::Value project = qae_test::ParseJson(qae_test::ReadFile(In("keys.project.json")));
  for (const Json::Value& comp : project["comps"])
    for (const Json::Value& layer : comp["layers"])
      for (const Json::Value& group : {layer["transform"], layer["camera"], layer["light"]})
        for (const Json::Value& stream : group)
          if (stream.isObject() && stream.isMember("keys")) keys += stream["keys"].size();
  ASSERT_GT(keys, 0);
  EXPECT_TRUE(Contains(run.out, ", " + std::to_string(keys) + " keyframes, ")) << run.out;
}

TEST_F(Cli, QuietPrintsNothingButStillDoesTheWork) {
  const CommandResult exported = Aehost(ExportArgs(), {"--quiet"});
  EXPECT_EQ(exported.exitCode, 0) << exported.err;
  EXPECT_EQ(exported.out, "");
  EXPECT_TRUE(qae_test::FileExists(In("shot.ory")));

  const CommandResult imported = Aehost(ImportArgs(), {"--quiet"});
  EXPECT_EQ(imported.exitCode, 0) << imported.err;
  EXPECT_EQ(imported.out, "");
  EXPECT_EQ(imported.err, "");
  EXPECT_TRUE(qae_test::FileExists(In("moves.project.json")));

  // Errors are still told.
  const CommandResult missing =
      Aehost({"export", In("shot.json"), "--comp", "Nope", "--output", In("x.ory"), "--quiet"});
  EXPECT_EQ(missing.exitCode, 2);
  EXPECT_EQ(missing.out, "");
  EXPECT_TRUE(Contains(missing.err, "no composition named \"Nope\"")) << missing.err;
}

TEST_F(Cli, VerboseTracesTheStepsOnStandardError) {
  const CommandResult exported = Aehost(ExportArgs(), {"--verbose"});
  ASSERT_EQ(exported.exitCode, 0) << exported.err;
  EXPECT_EQ(exported.out, "exported \"Shot\" to " + In("shot.ory") + ": " + kExportCounts + "\n");
  ExpectSteps(exported.err, {"trace: project " + In("shot.json") + " read\n",
                             "trace: the save dialog will be answered with " + In("shot.ory") + "\n",
                             "trace: menu command 1 \"Vantor Orrery Studio Exporter...\" inserted in File > Export\n",
                             "trace: the user clicks File > Export > \"Vantor Orrery Studio Exporter...\"",
                             "trace: layer 0 of composition \"Shot\": \"Mover\"\n",
                             "trace: layer 1 of composition \"Shot\": \"Flat\"\n", "trace: script run: ",
                             "trace: scene file written: " + In("shot.ory") + " (", "trace: quitting"});
  // The repaint the closed menu leaves is served while the plug-in waits for the engine, or by
  // the host once the command returns; either way before the run ends.
  ExpectSteps(exported.err, {"trace: the user clicks File > Export > \"Vantor Orrery Studio Exporter...\"",
                             "trace: the main window repainted\n", "trace: quitting"});

  // The text question is a dialog a script shows; the trace tells how it was answered.
  std::string withText = kProject;
  const std::string flat = R"({"id": 12, "name": "Flat", "source": 2})";
  const std::string words = R"({"id": 13, "name": "Words", "type": "text", "threeD": true})";
  withText.replace(withText.find(flat), flat.size(), flat + ", " + words);
  qae_test::WriteFile(In("text.json"), withText);
  const CommandResult text = Aehost(
      {"export", In("text.json"), "--comp", "Shot", "--output", In("text.ory"), "--text", "planes", "--verbose"});
  ASSERT_EQ(text.exitCode, 0) << text.err;
  ExpectSteps(text.err, {"trace: the text question will be answered with \"planes\"\n",
                         "trace: dialog answered: chose \"planes\", pressed the default button\n"});

  const CommandResult imported = Aehost(ImportArgs(), {"--verbose"});
  ASSERT_EQ(imported.exitCode, 0) << imported.err;
  ExpectSteps(imported.err, {"trace: an empty project\n",
                             "trace: import flavor \"Orrery Studio Importer...\" imports " + In("moves.ory") + "\n",
                             "trace: made folder \"Moves\"\n",
                             "trace: made composition \"Moves\" 640x360, 25 fps, 0.2 s\n",
                             "trace: made camera \"Cam\" in composition \"Moves\"\n",
                             "trace: made solid \"Card\" in composition \"Moves\"\n",
                             "trace: made null \"Mover\" in composition \"Moves\"\n",
                             "trace: project saved to " + In("moves.project.json") + "\n"});
  EXPECT_FALSE(Contains(imported.err, "Left behind")) << imported.err;

  const CommandResult roundtrip = Aehost({"roundtrip", In("shot.json"), "--comp", "Shot", "--verbose"});
  EXPECT_EQ(roundtrip.exitCode, 0) << roundtrip.out << roundtrip.err;
  EXPECT_TRUE(Contains(roundtrip.err, "trace: scene file written: ")) << roundtrip.err;
  // Only the default camera comes back: the exporter writes no compositing tag.
  EXPECT_TRUE(Contains(roundtrip.err, "trace: made camera \"AE \" in composition \"scene.ory\"")) << roundtrip.err;
}

TEST_F(Cli, VerboseWithQuietIsAUsageError) {
  for (const auto& args : {ExportArgs(), ImportArgs(),
                           std::vector<std::string>{"roundtrip", In("shot.json"), "--comp", "Shot"}}) {
    const CommandResult run = Aehost(args, {"--verbose", "--quiet"});
    EXPECT_EQ(run.exitCode, 2) << args[0];
    EXPECT_EQ(run.out, "") << args[0];
    EXPECT_EQ(run.err,
              "aehost: --verbose and --quiet cannot be used together: --verbose traces every step, --quiet prints "
              "nothing but errors\n")
        << args[0];
  }
  EXPECT_FALSE(qae_test::FileExists(In("shot.ory")));
  EXPECT_FALSE(qae_test::FileExists(In("moves.project.json")));
}

TEST_F(Cli, EveryCommandHasHelp) {
  for (const char* command : {"export", "import", "roundtrip"}) {
    const CommandResult help = Aehost({command, "--help"});
    EXPECT_EQ(help.exitCode, 0) << command;
    for (const char* option : {"--quiet", "--verbose", "--answers", "--transcript"})
      EXPECT_TRUE(Contains(help.out, option)) << command << " " << option << "\n" << help.out;
  }
  for (const char* command : {"xform", "menu"}) EXPECT_EQ(Aehost({command, "--help"}).exitCode, 0) << command;
  const CommandResult dump = RunCommand(qae_test::OrytoolPath(), {"dump", "--help"});
  EXPECT_EQ(dump.exitCode, 0);
  EXPECT_TRUE(Contains(dump.out, "--summary")) << dump.out;
  EXPECT_TRUE(Contains(dump.out, "--json")) << dump.out;
  EXPECT_EQ(RunCommand(qae_test::OrytoolPath(), {"dump", "--summary", "--json", In("moves.ory")}).exitCode, 2);
}

TEST_F(Cli, NoProgressWhenStandardErrorIsNotATerminal) {
  for (const auto& args : {ExportArgs(), ImportArgs()}) {
    const CommandResult run = Aehost(args);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_FALSE(Contains(run.err, "\r")) << run.err;
    EXPECT_FALSE(Contains(run.err, "%")) << run.err;
    EXPECT_FALSE(Contains(run.err, "Importing")) << run.err;
  }
}

TEST_F(Cli, ProgressOnATerminal) {
  const CommandResult exported = RunOnTerminal(qae_test::AehostPath(), ExportArgs());
  ASSERT_EQ(exported.exitCode, 0) << exported.out;
  // The export's progress dialog reaches its end: a full bar.
  EXPECT_TRUE(Contains(exported.out, "\rProcessing... [" + std::string(30, '#') + "] 100%")) << exported.out;
  EXPECT_TRUE(Contains(exported.out, kExportCounts)) << exported.out;

  const CommandResult imported = RunOnTerminal(qae_test::AehostPath(), ImportArgs());
  ASSERT_EQ(imported.exitCode, 0) << imported.out;
  // The import counts as it goes, and its last count is what it made.
  EXPECT_TRUE(Contains(imported.out, "\rImporting moves.ory: 1 layer, 0 keyframes")) << imported.out;
  EXPECT_TRUE(Contains(imported.out, "\rImporting moves.ory: 3 layers, 0 keyframes")) << imported.out;

  // Neither --quiet nor --verbose draws progress.
  for (const char* option : {"--quiet", "--verbose"}) {
    std::vector<std::string> args = ImportArgs();
    args.push_back(option);
    const CommandResult run = RunOnTerminal(qae_test::AehostPath(), args);
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_FALSE(Contains(run.out, "\rImporting")) << option << "\n" << run.out;
  }
}

}  // namespace
