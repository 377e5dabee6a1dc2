// End to end: bad input through every command line. Each case feeds a tool a missing,
// empty, truncated, damaged, oversized or mistyped file, an unknown option or a target it
// cannot write, and checks what a user sees: a failing exit code, a message on standard
// error that names what was wrong, and the files that were already there left byte for
// byte as they were.
#include <gtest/gtest.h>
#include <json/json.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"

namespace {

using qae_test::RunCommand;

enum class Tool { kAehost, kOrytool };

// Exit codes of both tools: 1 the work failed (the plug-in reported a failure, handled
// nothing, or a file could not be written), 2 bad input or usage.
constexpr int kFailed = 1;
constexpr int kBadInput = 2;

// Existing output files hold this before every case; no failure may change it.
const char* const kKeptContent = "what the user had before\n";

struct BadInputCase {
  const char* name;
  Tool tool;
  // Arguments; "@" at the start of an argument stands for the case's working folder.
  std::vector<std::string> args;
  int exitCode;
  // Texts standard error must contain, "@" expanded as in `args`.
  std::vector<std::string> mentions;
  // Set when the tool needs a file system that refuses writes to a read-only folder.
  bool needsReadOnlyFolder = false;
  // Set while a tool gets the case wrong: why, for the skip message.
  const char* knownWrong = nullptr;
};

// Names the case in test output instead of dumping its bytes.
void PrintTo(const BadInputCase& c, std::ostream* out) { *out << c.name; }

std::string Expand(const std::string& text, const std::string& dir) {
  return !text.empty() && text[0] == '@' ? dir + text.substr(1) : text;
}

std::string Examples(const std::string& name) { return std::string(QAE_EXAMPLES_DIR) + "/" + name; }

// A file with every fifth byte after the header turned over: the header still says
// "scene", the checksum does not match any more.
std::string Damaged(std::string bytes) {
  for (std::size_t i = 40; i < bytes.size(); i += 5) bytes[i] = static_cast<char>(~bytes[i]);
  return bytes;
}

std::string Nested(std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); }

Json::Value ReadExample(const std::string& name) { return qae_test::ParseJson(qae_test::ReadFile(Examples(name))); }

// The example project `rig.json` changed by `change`.
std::string RigWith(const std::function<void(Json::Value&)>& change) {
  Json::Value root = ReadExample("rig.json");
  change(root);
  return Json::writeString(Json::StreamWriterBuilder(), root);
}

// A scene description whose document runs at `fps` to frame `lastFrame`: far more frames
// than a composition holds, or a rate no host time can carry.
std::string SceneTiming(int fps, double lastFrame) {
  Json::Value root = ReadExample("scenes/import_keys.json");
  for (Json::Value& param : root["document"]["params"]) {
    if (param["id"] == "DocParam_Fps") param["int32"] = fps;
    if (param["id"] == "DocParam_MaxTime") param["time"] = Json::arrayValue, param["time"].append(lastFrame),
                                           param["time"].append(fps);
  }
  for (Json::Value& param : root["render_settings"][0]["params"])
    if (param["id"] == "RenderParam_FrameRate") param["float"] = fps;
  return Json::writeString(Json::StreamWriterBuilder(), root);
}

class BadInput : public ::testing::TestWithParam<BadInputCase> {
 protected:
  void SetUp() override {
    dir_ = qae_test::MakeTempDir("bad_input");
    const auto built = RunCommand(qae_test::OrytoolPath(),
                                  {"build", Examples("scenes/import_keys.json"), "-o", dir_ + "/good.ory"});
    ASSERT_EQ(built.exitCode, 0) << built.err;
    const std::string scene = qae_test::ReadFile(dir_ + "/good.ory");
    ASSERT_GT(scene.size(), 200u);

    Write("empty.ory", "");
    Write("empty.json", "");
    Write("header.ory", scene.substr(0, 20));
    Write("half.ory", scene.substr(0, scene.size() / 2));
    Write("damaged.ory", Damaged(scene));
    Write("padded.ory", scene + std::string(1 << 20, '\0'));
    Write("half.json", qae_test::ReadFile(Examples("rig.json")).substr(0, 100));
    Write("garbage.json", "not json at all");
    Write("array.json", "[1, 2, 3]");
    Write("deep.json", Nested(100000));
    // One value of the wrong type, at the top and deep in a layer; a composition three
    // hours and one second long.
    Write("text_width.json", RigWith([](Json::Value& rig) { rig["footage"][0]["width"] = "wide"; }));
    Write("text_position.json",
          RigWith([](Json::Value& rig) { rig["comps"][0]["layers"][0]["transform"]["position"] = "left"; }));
    Write("text_name.json", R"({"document": {"name": 5}})");
    // A mask without vertices, and path options on a layer that holds no text.
    Write("empty_mask.json", RigWith([](Json::Value& rig) {
      rig["comps"][0]["layers"][0]["masks"] = qae_test::ParseJson(R"([{"shape": {"vertices": []}}])");
    }));
    Write("path_options.json", RigWith([](Json::Value& rig) {
      rig["comps"][0]["layers"][0]["pathOptions"] = qae_test::ParseJson(R"({"path": 0})");
    }));
    Write("too_long.json", RigWith([](Json::Value& rig) { rig["comps"][0]["duration"] = 10801; }));
    BuildScene("long.ory", SceneTiming(25, 250e6));   // 10 million seconds
    BuildScene("fast.ory", SceneTiming(1000000, 19e6));  // 19 s at a million frames a second
    Write("folder.ory/placeholder", "");
    std::filesystem::create_directory(dir_ + "/locked");
    Write("locked/kept.ory", kKeptContent);
    chmod((dir_ + "/locked").c_str(), 0555);
    for (const char* kept : {"kept.ory", "kept.json", "kept.txt"}) Write(kept, kKeptContent);
  }

  void TearDown() override {
    chmod((dir_ + "/locked").c_str(), 0755);
    std::filesystem::remove_all(dir_);
  }

  void Write(const std::string& name, const std::string& content) const {
    std::filesystem::create_directories(std::filesystem::path(dir_ + "/" + name).parent_path());
    qae_test::WriteFile(dir_ + "/" + name, content);
  }

  void BuildScene(const std::string& name, const std::string& description) const {
    Write(name + ".scene.json", description);
    const auto built = RunCommand(qae_test::OrytoolPath(), {"build", dir_ + "/" + name + ".scene.json", "-o", dir_ + "/" + name});
    ASSERT_EQ(built.exitCode, 0) << built.err;
  }

  // Every file the user had before the case, and what it held.
  std::vector<std::pair<std::string, std::string>> Snapshot() const {
    std::vector<std::pair<std::string, std::string>> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(dir_))
      if (entry.is_regular_file()) files.emplace_back(entry.path().string(), qae_test::ReadFile(entry.path().string()));
    return files;
  }

  std::string dir_;
};

TEST_P(BadInput, FailsClearlyAndLeavesFilesAlone) {
  const BadInputCase& c = GetParam();
  if (c.knownWrong != nullptr) GTEST_SKIP() << c.knownWrong;
  if (c.needsReadOnlyFolder && geteuid() == 0) GTEST_SKIP() << "the superuser writes into read-only folders";

  std::vector<std::string> args;
  for (const auto& arg : c.args) args.push_back(Expand(arg, dir_));
  // No progress bar between the messages; only the commands that run the plug-in draw one.
  if (c.tool == Tool::kAehost && (args[0] == "export" || args[0] == "import")) args.push_back("--quiet");
  const auto before = Snapshot();
  const auto result = RunCommand(c.tool == Tool::kAehost ? qae_test::AehostPath() : qae_test::OrytoolPath(), args);

  EXPECT_EQ(result.exitCode, c.exitCode) << result.err;
  for (const auto& mention : c.mentions)
    EXPECT_NE(result.err.find(Expand(mention, dir_)), std::string::npos) << "wanted \"" << mention << "\" in:\n" << result.err;
  const auto after = Snapshot();
  EXPECT_EQ(after, before) << "a failure changed or left files behind";
}

const BadInputCase kCases[] = {
    // orytool dump and validate: the scene file itself.
    {"DumpMissing", Tool::kOrytool, {"dump", "@/missing.ory"}, kBadInput, {"@/missing.ory", "No such file"}},
    {"DumpEmpty", Tool::kOrytool, {"dump", "@/empty.ory"}, kBadInput, {"@/empty.ory", "header"}},
    {"DumpHeaderCut", Tool::kOrytool, {"dump", "@/header.ory"}, kBadInput, {"@/header.ory", "ends after 20 bytes"}},
    {"DumpHalf", Tool::kOrytool, {"dump", "--json", "@/half.ory"}, kBadInput, {"@/half.ory", "truncated"}},
    {"DumpDamaged", Tool::kOrytool, {"dump", "@/damaged.ory"}, kBadInput, {"@/damaged.ory", "damaged"}},
    {"DumpFolder", Tool::kOrytool, {"dump", "@/folder.ory"}, kBadInput, {"@/folder.ory"}},
    {"ValidateMissing", Tool::kOrytool, {"validate", "@/missing.ory"}, kBadInput, {"@/missing.ory", "No such file"}},
    {"ValidateEmpty", Tool::kOrytool, {"validate", "@/empty.ory"}, kBadInput, {"@/empty.ory", "header"}},
    {"ValidateHalf", Tool::kOrytool, {"validate", "@/half.ory"}, kBadInput, {"@/half.ory", "truncated"}},
    {"ValidateDamaged", Tool::kOrytool, {"validate", "@/damaged.ory"}, kBadInput, {"@/damaged.ory", "checksum"}},
    {"ValidatePadded", Tool::kOrytool, {"validate", "@/padded.ory"}, kBadInput, {"@/padded.ory", "does not match"}},
    {"ValidateUnknownOption", Tool::kOrytool, {"validate", "--repair", "@/good.ory"}, kBadInput, {"--repair"}},
    {"UnknownSubcommand", Tool::kOrytool, {"repair", "@/good.ory"}, kBadInput, {"repair"}},

    // orytool build: the JSON scene description and the target.
    {"BuildMissing", Tool::kOrytool, {"build", "@/missing.json", "-o", "@/kept.ory"}, kBadInput, {"@/missing.json"}},
    {"BuildEmpty", Tool::kOrytool, {"build", "@/empty.json", "-o", "@/kept.ory"}, kBadInput, {"@/empty.json", "not valid JSON"}},
    {"BuildHalf", Tool::kOrytool, {"build", "@/half.json", "-o", "@/kept.ory"}, kBadInput, {"@/half.json", "not valid JSON"}},
    {"BuildGarbage", Tool::kOrytool, {"build", "@/garbage.json", "-o", "@/kept.ory"}, kBadInput, {"@/garbage.json", "not valid JSON"}},
    {"BuildDeep", Tool::kOrytool, {"build", "@/deep.json", "-o", "@/kept.ory"}, kBadInput, {"@/deep.json", "not valid JSON"}},
    {"BuildNoObject", Tool::kOrytool, {"build", "@/array.json", "-o", "@/kept.ory"}, kBadInput, {"@/array.json", "expected an object"}},
    {"BuildWrongType", Tool::kOrytool, {"build", "@/text_name.json", "-o", "@/kept.ory"}, kBadInput, {"@/text_name.json", "name"}},
    {"BuildNoOutput", Tool::kOrytool, {"build", Examples("scenes/import_keys.json")}, kBadInput, {"--output"}},
    {"BuildIntoMissingFolder", Tool::kOrytool, {"build", Examples("scenes/import_keys.json"), "-o", "@/nowhere/out.ory"}, kFailed,
     {"@/nowhere/out.ory", "No such file"}},
    {"BuildIntoAFile", Tool::kOrytool, {"build", Examples("scenes/import_keys.json"), "-o", "@/kept.txt/out.ory"}, kFailed,
     {"@/kept.txt/out.ory", "Not a directory"}},
    {"BuildOverAFolder", Tool::kOrytool, {"build", Examples("scenes/import_keys.json"), "-o", "@/folder.ory"}, kFailed,
     {"@/folder.ory"}},
    {"BuildIntoReadOnlyFolder", Tool::kOrytool, {"build", Examples("scenes/import_keys.json"), "-o", "@/locked/kept.ory"},
     kFailed, {"@/locked/kept.ory", "Permission denied"}, true},

    // aehost export: the project description and the target.
    {"ExportMissing", Tool::kAehost, {"export", "@/missing.json", "--comp", "Rig", "--output", "@/kept.ory"}, kBadInput,
     {"@/missing.json"}},
    {"ExportEmpty", Tool::kAehost, {"export", "@/empty.json", "--comp", "Rig", "--output", "@/kept.ory"}, kBadInput,
     {"@/empty.json", "not valid JSON"}},
    {"ExportHalf", Tool::kAehost, {"export", "@/half.json", "--comp", "Rig", "--output", "@/kept.ory"}, kBadInput,
     {"@/half.json", "not valid JSON"}},
    {"ExportDeep", Tool::kAehost, {"export", "@/deep.json", "--comp", "Rig", "--output", "@/kept.ory"}, kBadInput,
     {"@/deep.json", "not valid JSON"}},
    {"ExportNoObject", Tool::kAehost, {"export", "@/array.json", "--comp", "Rig", "--output", "@/kept.ory"}, kBadInput,
     {"@/array.json", "expected an object"}},
    {"ExportWrongType", Tool::kAehost, {"export", "@/text_width.json", "--comp", "Rig", "--output", "@/kept.ory"}, kBadInput,
     {"@/text_width.json", "footage[0].width", "whole number"}},
    {"ExportSceneAsProject", Tool::kAehost, {"export", "@/good.ory", "--comp", "Rig", "--output", "@/kept.ory"}, kBadInput,
     {"@/good.ory", "not valid JSON"}},
    {"ExportTooLong", Tool::kAehost, {"export", "@/too_long.json", "--comp", "Rig", "--output", "@/kept.ory"}, kBadInput,
     {"@/too_long.json", "comps[0].duration", "three hours"}},
    {"ExportWrongTypeInLayer", Tool::kAehost, {"export", "@/text_position.json", "--comp", "Rig", "--output", "@/kept.ory"},
     kBadInput, {"@/text_position.json", "transform.position", "expected an array"}},
    {"ExportEmptyMask", Tool::kAehost, {"export", "@/empty_mask.json", "--comp", "Rig", "--output", "@/kept.ory"},
     kBadInput, {"@/empty_mask.json", "comps[0].layers[0].masks[0].shape: a mask needs at least one vertex"}},
    {"ExportPathOptionsWithoutText", Tool::kAehost,
     {"export", "@/path_options.json", "--comp", "Rig", "--output", "@/kept.ory"}, kBadInput,
     {"@/path_options.json", "comps[0].layers[0].pathOptions: only text layers have path options"}},
    {"ExportUnknownComp", Tool::kAehost, {"export", Examples("rig.json"), "--comp", "Nope", "--output", "@/kept.ory"},
     kBadInput, {"Nope"}},
    {"ExportUnknownOption", Tool::kAehost, {"export", Examples("rig.json"), "--comp", "Rig", "--output", "@/kept.ory", "--fast"},
     kBadInput, {"--fast"}},
    {"ExportBadAnswers", Tool::kAehost,
     {"export", Examples("rig.json"), "--comp", "Rig", "--output", "@/kept.ory", "--answers", "@/garbage.json"}, kBadInput,
     {"@/garbage.json"}},
    {"ExportDeepAnswers", Tool::kAehost,
     {"export", Examples("rig.json"), "--comp", "Rig", "--output", "@/kept.ory", "--answers", "@/deep.json"}, kBadInput,
     {"@/deep.json", "not valid JSON"}},
    {"ExportIntoMissingFolder", Tool::kAehost, {"export", Examples("rig.json"), "--comp", "Rig", "--output", "@/nowhere/out.ory"},
     kFailed, {"@/nowhere/out.ory"}},
    {"ExportIntoAFile", Tool::kAehost, {"export", Examples("rig.json"), "--comp", "Rig", "--output", "@/kept.txt/out.ory"},
     kFailed, {"@/kept.txt/out.ory"}},
    {"ExportIntoReadOnlyFolder", Tool::kAehost,
     {"export", Examples("rig.json"), "--comp", "Rig", "--output", "@/locked/kept.ory"}, kFailed, {"@/locked/kept.ory"}, true},

    // aehost import: the scene file, the project to import into, and the target.
    {"ImportMissing", Tool::kAehost, {"import", "@/missing.ory", "--output", "@/kept.json"}, kBadInput, {"@/missing.ory"}},
    {"ImportEmpty", Tool::kAehost, {"import", "@/empty.ory", "--output", "@/kept.json"}, kFailed, {"@/empty.ory"}},
    {"ImportHeaderCut", Tool::kAehost, {"import", "@/header.ory", "--output", "@/kept.json"}, kBadInput,
     {"@/header.ory", "inside the 24-byte header"}},
    {"ImportHalf", Tool::kAehost, {"import", "@/half.ory", "--output", "@/kept.json"}, kBadInput,
     {"@/half.ory", "the file is truncated"}},
    {"ImportDamaged", Tool::kAehost, {"import", "@/damaged.ory", "--output", "@/kept.json"}, kBadInput,
     {"@/damaged.ory", "the file is damaged"}},
    {"ImportPadded", Tool::kAehost, {"import", "@/padded.ory", "--output", "@/kept.json"}, kBadInput,
     {"@/padded.ory", "does not match"}},
    {"ImportTooLong", Tool::kAehost, {"import", "@/long.ory", "--output", "@/kept.json"}, kFailed, {"@/long.ory"}},
    {"ImportTooFast", Tool::kAehost, {"import", "@/fast.ory", "--output", "@/kept.json"}, kFailed, {"@/fast.ory"}},
    {"ImportNotAScene", Tool::kAehost, {"import", Examples("rig.json"), "--output", "@/kept.json"}, kFailed,
     {"rig.json"}},
    {"ImportIntoBrokenProject", Tool::kAehost, {"import", "@/good.ory", "--project", "@/half.json", "--output", "@/kept.json"},
     kBadInput, {"@/half.json", "not valid JSON"}},
    {"ImportIntoMistypedProject", Tool::kAehost,
     {"import", "@/good.ory", "--project", "@/text_width.json", "--output", "@/kept.json"}, kBadInput,
     {"@/text_width.json", "footage[0].width"}},
    {"ImportNoOutput", Tool::kAehost, {"import", "@/good.ory"}, kBadInput, {"--output"}},
    {"ImportUnknownOption", Tool::kAehost, {"import", "@/good.ory", "--output", "@/kept.json", "--merge"}, kBadInput, {"--merge"}},
    {"ImportIntoMissingFolder", Tool::kAehost, {"import", "@/good.ory", "--output", "@/nowhere/out.json"}, kFailed,
     {"@/nowhere/out.json"}},
    {"ImportIntoAFile", Tool::kAehost, {"import", "@/good.ory", "--output", "@/kept.txt/out.json"}, kFailed,
     {"@/kept.txt/out.json"}},
    {"ImportIntoReadOnlyFolder", Tool::kAehost, {"import", "@/good.ory", "--output", "@/locked/kept.json"}, kFailed,
     {"@/locked/kept.json"}, true},

    // aehost roundtrip: the project and the tolerances.
    {"RoundtripMissing", Tool::kAehost, {"roundtrip", "@/missing.json", "--comp", "Rig", "--quiet"}, kBadInput,
     {"@/missing.json"}},
    {"RoundtripWrongType", Tool::kAehost, {"roundtrip", "@/text_width.json", "--comp", "Rig", "--quiet"}, kBadInput,
     {"@/text_width.json", "footage[0].width"}},
    {"RoundtripUnknownComp", Tool::kAehost, {"roundtrip", Examples("rig.json"), "--comp", "Nope", "--quiet"}, kBadInput,
     {"Nope"}},
    {"RoundtripNegativeTolerance", Tool::kAehost,
     {"roundtrip", Examples("rig.json"), "--comp", "Rig", "--tolerance-position", "-1", "--quiet"}, kBadInput,
     {"--tolerance-position", "\"-1\" is not a number of 0 or more"}},
    {"RoundtripToleranceNotANumber", Tool::kAehost,
     {"roundtrip", Examples("rig.json"), "--comp", "Rig", "--tolerance-rotation", "tight", "--quiet"}, kBadInput,
     {"--tolerance-rotation", "\"tight\" is not a number of 0 or more"}},
    {"RoundtripUnknownOption", Tool::kAehost, {"roundtrip", Examples("rig.json"), "--comp", "Rig", "--exact"}, kBadInput,
     {"--exact"}},

    {"AehostUnknownSubcommand", Tool::kAehost, {"frobnicate", Examples("rig.json")}, kBadInput, {"frobnicate"}},

    // aehost xform: the project description and the question.
    {"XformMissing", Tool::kAehost, {"xform", "@/missing.json", "--comp", "Rig", "--layer", "Arm", "--frame", "1"}, kBadInput,
     {"@/missing.json"}},
    {"XformEmpty", Tool::kAehost, {"xform", "@/empty.json", "--comp", "Rig", "--layer", "Arm", "--frame", "1"}, kBadInput,
     {"@/empty.json", "not valid JSON"}},
    {"XformWrongType", Tool::kAehost, {"xform", "@/text_width.json", "--comp", "Rig", "--layer", "Arm", "--frame", "1"},
     kBadInput, {"@/text_width.json", "footage[0].width"}},
    {"XformFrameNotANumber", Tool::kAehost, {"xform", Examples("rig.json"), "--comp", "Rig", "--layer", "Arm", "--frame", "soon"},
     kBadInput, {"--frame", "soon"}},
    {"XformUnknownLayer", Tool::kAehost, {"xform", Examples("rig.json"), "--comp", "Rig", "--layer", "Nope", "--frame", "1"},
     kBadInput, {"Nope"}},
    {"XformUnknownOption", Tool::kAehost,
     {"xform", Examples("rig.json"), "--comp", "Rig", "--layer", "Arm", "--frame", "1", "--local"}, kBadInput, {"--local"}},
};

INSTANTIATE_TEST_SUITE_P(Cases, BadInput, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<BadInputCase>& info) { return std::string(info.param.name); });

}  // namespace
