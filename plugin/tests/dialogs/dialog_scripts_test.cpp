// The dialog scripts and the JSON library, run in the host's script engine as the plug-in
// sends them.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "aehost/script/script_engine.h"
#include "plugin/host/target_file.h"
#include "plugin/script/text_export_question.h"

namespace {

std::string ReadSupportFile(const std::string& relative) {
  std::ifstream in(std::string(QAE_PLUGIN_SOURCE_DIR) + "/support/res/dialogs/" + relative, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// The three files joined as the plug-in joins them.
std::string TextExportDialog() {
  return ReadSupportFile("strings/str_dlg_textexport.jsx") + "\n" + ReadSupportFile("includes/JSON.jsx") + "\n" +
         ReadSupportFile("dlg_textexport.jsx") + "\n";
}

struct ScriptRun {
  bool ok;
  std::string result;
  std::string error;
};

ScriptRun RunDialogScript(const std::string& script, aehost::ScriptUser* user) {
  aehost::ScriptContext context;
  context.user = user;
  context.report = [](std::string_view) {};
  ScriptRun run;
  run.ok = aehost::RunScript(context, script, &run.result, &run.error);
  return run;
}

TEST(TextExportDialog, AnswersWithTheChosenModeOrCancel) {
  aehost::ScriptUser user;
  user.dialogs.push_back({{"live"}, "", false});
  user.dialogs.push_back({{"planes"}, "", false});
  user.dialogs.push_back({{}, "", true});
  user.dialogs.push_back({{"live"}, "cancel", false});
  uint8_t choice = 7;
  ScriptRun live = RunDialogScript(WithTextExportSettings(TextExportDialog()), &user);
  ASSERT_TRUE(live.ok) << live.error;
  ASSERT_EQ(ReadTextExportReply(live.result, &choice), 0);
  EXPECT_EQ(choice, 1);
  ScriptRun planes = RunDialogScript(WithTextExportSettings(TextExportDialog()), &user);
  ASSERT_TRUE(planes.ok) << planes.error;
  ASSERT_EQ(ReadTextExportReply(planes.result, &choice), 0);
  EXPECT_EQ(choice, 0);
  EXPECT_EQ(RunDialogScript(WithTextExportSettings(TextExportDialog()), &user).result, "cancel");
  EXPECT_EQ(RunDialogScript(WithTextExportSettings(TextExportDialog()), &user).result, "cancel");
}

TEST(TextExportDialog, StartsOnOutlinesWhenTheSettingsSayZero) {
  aehost::ScriptUser user;  // presses OK without choosing
  ScriptRun run = RunDialogScript(WithTextExportSettings(TextExportDialog()), &user);
  ASSERT_TRUE(run.ok) << run.error;
  uint8_t choice = 1;
  ASSERT_EQ(ReadTextExportReply(run.result, &choice), 0);
  EXPECT_EQ(choice, 0);
}

std::string WithJson(const std::string& expression) { return ReadSupportFile("includes/JSON.jsx") + "\n" + expression; }

TEST(JsonLibrary, WritesAndReadsBackNestedValues) {
  const ScriptRun run = RunDialogScript(WithJson(R"(QuillonJSON.stringify({a: [1, 2.5, -3e2], b: {c: "x\"y\\z\n\u0001"},
                                                                  d: true, e: null, f: undefined}))"),
                            nullptr);
  ASSERT_TRUE(run.ok) << run.error;
  EXPECT_EQ(run.result, R"({"a":[1,2.5,-300],"b":{"c":"x\"y\\z\n\u0001"},"d":true,"e":null})");
  const ScriptRun back = RunDialogScript(WithJson(R"(var v = QuillonJSON.parse(' {"a" : [1, {"b": "\u00e9\/"}], "c": false} ');
                                         v.a[1].b + "|" + v.a.length + "|" + v.c)"),
                             nullptr);
  ASSERT_TRUE(back.ok) << back.error;
  EXPECT_EQ(back.result, "\xC3\xA9/|2|false");
}

TEST(JsonLibrary, RefusesBrokenText) {
  for (const char* text : {"{", "[1,]", "{\"a\" 1}", "\"open", "tru", "1 2", "{\"a\":\"\\\\x\"}"}) {
    const ScriptRun run = RunDialogScript(WithJson(std::string("var r; try { QuillonJSON.parse(") + "'" + text +
                                       "'); r = 'parsed'; } catch (e) { r = e.name; } r"),
                              nullptr);
    ASSERT_TRUE(run.ok) << run.error;
    EXPECT_EQ(run.result, "SyntaxError") << text;
  }
}

// The user accepts the proposed file, so the reply is the path the script's File received.
TEST(SaveDialog, ProposesExactlyThePathItWasGiven) {
  const std::string paths[] = {
      "/p/Comp 1.ory",
      "/p/X\"); alert(\"INJECTED\"); (\".ory",
      "/p/Shot \"final\".ory",
      "/p/back\\slash\\.ory",
      "/p/line\nfeed\rreturn.ory",
      "/p/sep\xE2\x80\xA8line\xE2\x80\xA9para.ory",
      "/p/bell\x07tab\t.ory",
  };
  for (const std::string& path : paths) {
    aehost::ScriptUser user;
    std::vector<std::string> shown;
    aehost::ScriptContext context;
    context.user = &user;
    context.report = [&shown](std::string_view line) { shown.emplace_back(line); };
    std::string reply;
    std::string error;
    ASSERT_TRUE(aehost::RunScript(context, SaveDialogScript(path), &reply, &error)) << path << ": " << error;
    EXPECT_EQ(reply, path);
    ASSERT_EQ(shown.size(), 1u) << "only the save dialog is shown for " << path;
    EXPECT_EQ(shown[0], "save dialog \"ORY Exporter\" (*.ory): " + path);
  }
}

}  // namespace
