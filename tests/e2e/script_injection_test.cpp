// End to end: texts of a project reach scripts and expressions as data, never as code.
// A composition whose name holds quotes, backslashes, line ends, line separators or
// control characters is exported under exactly that name, and nothing of the name runs.
// An expression can only compute: it reaches no file, and one that fails or never ends
// is told once on standard error, with its layer and stream, and leaves the stream's
// value without it.
#include <gtest/gtest.h>
#include <json/json.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"

namespace {

using qae_test::CommandResult;
using qae_test::RunCommand;

constexpr const char* kVictimContent = "the user's own file\n";

// Composition "Shot" (640 x 360, 25 fps, 2 s, frames 0..49) with one 3D null "Mover" at
// (100, 20, 0), its anchor at its origin, not turned.
Json::Value Project(const std::string& compName) {
  Json::Value root = qae_test::ParseJson(R"({
    "format": "aehost-project", "version": 1, "path": "/projects/shot.aep",
    "footage": [{"id": 1, "name": "Null 1", "width": 100, "height": 100, "solid": {"color": [1, 1, 1]}}],
    "comps": [{
      "id": 3, "name": "Shot", "width": 640, "height": 360, "frameRate": 25, "duration": 2,
      "layers": [
        {"id": 11, "name": "Mover", "source": 1, "threeD": true, "null": true,
         "transform": {"anchorPoint": {"value": [0, 0, 0]}, "position": {"value": [100, 20, 0]},
                       "rotationZ": {"value": 0}}}
      ]
    }]
  })");
  root["comps"][0]["name"] = compName;
  return root;
}

class ScriptInjection : public ::testing::Test {
 protected:
  void SetUp() override { dir_ = qae_test::MakeTempDir("script_injection"); }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  std::string WriteProject(const Json::Value& project) {
    const std::string path = dir_ + "/project.json";
    qae_test::WriteFile(path, Json::writeString(Json::StreamWriterBuilder(), project));
    return path;
  }

  // The project with an expression on each of Mover's `streams` (name, expression).
  std::string ProjectWithExpressions(const std::vector<std::pair<std::string, std::string>>& streams) {
    Json::Value project = Project("Shot");
    Json::Value& transform = project["comps"][0]["layers"][0]["transform"];
    for (const auto& [stream, expression] : streams) transform[stream]["expression"] = expression;
    return WriteProject(project);
  }

  CommandResult Export(const std::string& project, const std::string& comp, const std::string& output) {
    return RunCommand(qae_test::AehostPath(), {"export", project, "--comp", comp, "--output", output, "--transcript",
                                               dir_ + "/transcript.txt"});
  }

  std::string dir_;
};

// How many times `needle` stands in `text`.
int Count(const std::string& text, const std::string& needle) {
  int count = 0;
  for (std::size_t at = text.find(needle); at != std::string::npos; at = text.find(needle, at + 1)) ++count;
  return count;
}

struct NameCase {
  const char* label;
  std::string name;
};

void PrintTo(const NameCase& c, std::ostream* out) { *out << c.label; }

class CompositionNames : public ScriptInjection, public ::testing::WithParamInterface<NameCase> {};

// The name once ended the save dialog's string literal: the rest ran as script, or broke
// it, and the export failed without a reason and left the reply's memory handle open.
// Now the export succeeds (exit 0 also says that no handle was left open), writes a valid
// scene file under exactly the name, and the save dialog is all that the script showed.
TEST_P(CompositionNames, ExportUnderExactlyTheName) {
  const std::string& name = GetParam().name;
  const std::string output = dir_ + "/" + name + ".ory";
  const CommandResult run = Export(WriteProject(Project(name)), name, output);
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out.rfind("exported \"" + name + "\" to " + output + ": ", 0), 0u) << run.out;
  const std::string saveDialog = "save dialog \"ORY Exporter\" (*.ory): " + output + "\n";
  EXPECT_EQ(run.err, saveDialog);
  EXPECT_EQ(qae_test::ReadFile(dir_ + "/transcript.txt"), saveDialog);
  ASSERT_TRUE(qae_test::FileExists(output));
  const CommandResult valid = RunCommand(qae_test::OrytoolPath(), {"validate", output});
  EXPECT_EQ(valid.exitCode, 0) << valid.err;
}

INSTANTIATE_TEST_SUITE_P(
    Names, CompositionNames,
    ::testing::Values(NameCase{"alert", "X\"); alert(\"INJECTED\"); (\""},
                      NameCase{"console", "X\"); $.writeln(\"INJECTED\"); (\""},
                      NameCase{"single_quotes", "X'); alert('INJECTED'); ('"},
                      NameCase{"quotes", "Shot \"final\""}, NameCase{"backslash", "back\\slash"},
                      NameCase{"trailing_backslash", "end\\"}, NameCase{"line_feed", "two\nlines"},
                      NameCase{"carriage_return", "carriage\rreturn"},
                      NameCase{"line_separator", "line\xE2\x80\xA8separator"},
                      NameCase{"paragraph_separator", "paragraph\xE2\x80\xA9separator"},
                      NameCase{"control_characters", "bell\x07tab\tescape\x1b"}),
    [](const ::testing::TestParamInfo<NameCase>& info) { return std::string(info.param.label); });

std::string MoverPositionFailed(const std::string& why) {
  return "aehost: expression of \"Position\" on layer \"Mover\" in \"Shot\" failed: " + why;
}

struct ReachCase {
  const char* label;
  std::string expression;  // "@" stands for the victim file's path
  std::string why;         // the start of the reason told
};

void PrintTo(const ReachCase& c, std::ostream* out) { *out << c.label; }

class ExpressionReach : public ScriptInjection, public ::testing::WithParamInterface<ReachCase> {
 protected:
  std::string Victim() const { return dir_ + "/victim.txt"; }

  std::string ProjectReaching() {
    std::string expression = GetParam().expression;
    for (std::size_t at = expression.find('@'); at != std::string::npos; at = expression.find('@'))
      expression.replace(at, 1, Victim());
    qae_test::WriteFile(Victim(), kVictimContent);
    return ProjectWithExpressions({{"position", expression}});
  }
};

// Expressions once shared the scripts' global object, File and all, also under xform.
// Now each of these fails, is told once, and the layer stands where its position
// without the expression puts it: (100, 20, 0) with the anchor at the origin.
TEST_P(ExpressionReach, XformLeavesTheFileAndTellsWhy) {
  const CommandResult run = RunCommand(qae_test::AehostPath(),
                                       {"xform", ProjectReaching(), "--comp", "Shot", "--layer", "Mover", "--frame", "0"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(qae_test::ReadFile(Victim()), kVictimContent);
  EXPECT_EQ(Count(run.err, MoverPositionFailed(GetParam().why)), 1) << run.err;
  const Json::Value matrix = qae_test::ParseJson(run.out)["matrix"];
  const double expected[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {100, 20, 0, 1}};
  for (Json::ArrayIndex row = 0; row < 4; ++row) {
    for (Json::ArrayIndex col = 0; col < 4; ++col) {
      EXPECT_NEAR(matrix[row][col].asDouble(), expected[row][col], 1e-9) << row << ", " << col;
    }
  }
}

// An export reads the stream at each of the 50 frames; the reason is told once.
TEST_P(ExpressionReach, ExportLeavesTheFileAndTellsWhyOnce) {
  const CommandResult run = Export(ProjectReaching(), "Shot", dir_ + "/shot.ory");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(qae_test::ReadFile(Victim()), kVictimContent);
  EXPECT_EQ(Count(run.err, "aehost: expression of"), 1) << run.err;
  EXPECT_EQ(Count(run.err, MoverPositionFailed(GetParam().why)), 1) << run.err;
}

INSTANTIATE_TEST_SUITE_P(
    Expressions, ExpressionReach,
    ::testing::Values(
        ReachCase{"file", "new File('@').remove(); [1, 2, 3]", "ReferenceError: identifier 'File' undefined"},
        ReachCase{"folder", "Folder('@').remove(); [1, 2, 3]", "ReferenceError: identifier 'Folder' undefined"},
        ReachCase{"eval_file", "$.evalFile('@'); [1, 2, 3]", "ReferenceError: identifier '$' undefined"},
        ReachCase{"system", "system.callSystem('rm @'); [1, 2, 3]", "ReferenceError: identifier 'system' undefined"},
        ReachCase{"app", "app.project.file.remove(); [1, 2, 3]", "ReferenceError: identifier 'app' undefined"},
        ReachCase{"eval_of_text", "eval(\"new File('@').remove()\"); [1, 2, 3]",
                  "ReferenceError: identifier 'File' undefined"},
        ReachCase{"function_constructor", "Function('return File')()('@').remove(); [1, 2, 3]",
                  "ReferenceError: identifier 'File' undefined"},
        ReachCase{"include", "#include \"@\"\n[1, 2, 3]", "SyntaxError"},
        ReachCase{"require", "require('@'); [1, 2, 3]", "ReferenceError: identifier 'require' undefined"}),
    [](const ::testing::TestParamInfo<ReachCase>& info) { return std::string(info.param.label); });

TEST_F(ScriptInjection, AThrowingExpressionIsToldOnceWithItsLayerAndStream) {
  const CommandResult run =
      Export(ProjectWithExpressions({{"position", "if (time >= 0) throw new Error('no luck'); value"}}), "Shot",
             dir_ + "/shot.ory");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(Count(run.err, "aehost: expression of"), 1) << run.err;
  EXPECT_EQ(Count(run.err, MoverPositionFailed("Error: no luck (line 1)\n")), 1) << run.err;
}

// Each stream's endless expression is stopped at the time bound once and then switched
// off; without that the export would run into the bound at each of the 50 frames.
TEST_F(ScriptInjection, AnEndlessExpressionIsStoppedAndToldOncePerStream) {
  const CommandResult run = Export(
      ProjectWithExpressions({{"position", "while (true) {}"}, {"rotationZ", "for (;;) {} 50"}}), "Shot", dir_ + "/shot.ory");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::string switchedOff = "\" in \"Shot\" was stopped after 2000 ms and is switched off for the rest of the run\n";
  EXPECT_EQ(Count(run.err, "aehost: expression of"), 2) << run.err;
  EXPECT_EQ(Count(run.err, "aehost: expression of \"Position\" on layer \"Mover" + switchedOff), 1) << run.err;
  EXPECT_EQ(Count(run.err, "aehost: expression of \"Z Rotation\" on layer \"Mover" + switchedOff), 1) << run.err;
}

}  // namespace
