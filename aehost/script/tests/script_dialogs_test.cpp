// The save dialog, File and the headless ScriptUI window, run through scripts as
// the plug-in writes them.
#include "aehost/script/script_engine.h"
#include "aehost/script/tests/script_test_support.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>
#include <vector>

namespace aehost {
namespace {

namespace fs = std::filesystem;

class ScriptDialogs : public ::testing::Test {
protected:
    void SetUp() override {
        folder = fs::temp_directory_path() / ("aehost_script_" + std::to_string(::getpid()));
        fs::create_directories(folder);
        context.user = &user;
        context.report = [this](std::string_view line) { lines.emplace_back(line); };
    }
    void TearDown() override { fs::remove_all(folder); }

    std::string Run(const std::string& source) { return RunOk(context, source); }
    std::string Fail(const std::string& source) { return RunFails(context, source); }

    fs::path folder;
    ScriptUser user;
    ScriptContext context;
    std::vector<std::string> lines;
};

// The save dialog script of the export command, with the proposed file spliced in.
std::string SaveDialogScript(const std::string& proposed) {
    return "function openSaveDialog() { \tvar defaultFilename = new File(\"" + proposed +
           "\"); \tvar f = defaultFilename.saveDlg(\"ORY Exporter\", \"*.ory\"); \tif (f == null) "
           "return \"\"; \treturn f.fsName; \t} \topenSaveDialog();";
}

TEST_F(ScriptDialogs, TheSaveDialogIsAnsweredByTheUser) {
    // Accepting keeps the proposed file.
    EXPECT_EQ(Run(SaveDialogScript("/work/shots/My Comp.ory")), "/work/shots/My Comp.ory");
    EXPECT_EQ(lines.back(), "save dialog \"ORY Exporter\" (*.ory): /work/shots/My Comp.ory");
    // A chosen path, relative to the working folder, comes back absolute.
    user.save.path = "out/scene";
    EXPECT_EQ(Run(SaveDialogScript("/a/b.ory")), (fs::current_path() / "out/scene").string());
    // Cancel gives null, which the script turns into "".
    user.save.cancel = true;
    EXPECT_EQ(Run(SaveDialogScript("/a/b.ory")), "");
    EXPECT_EQ(lines.back(), "save dialog \"ORY Exporter\" (*.ory): cancelled");
    // Without a user every dialog is cancelled.
    context.user = nullptr;
    EXPECT_EQ(Run("File.saveDialog('Save') === null;"), "true");
}

TEST_F(ScriptDialogs, FileNamesAndPathsTakeTheirExtendScriptForms) {
    EXPECT_EQ(Run("var f = new File('/tmp/a b/x%20y.ory'); [f.fsName, f.name, f.displayName, f.path].join('|');"),
              "/tmp/a b/x y.ory|x%20y.ory|x y.ory|/tmp/a%20b");
    EXPECT_EQ(Run("new File('/tmp/./q/../r.txt').fsName;"), "/tmp/r.txt");
    EXPECT_EQ(Run("File('~/z.txt').fsName;"), std::string(std::getenv("HOME")) + "/z.txt");
    EXPECT_EQ(Run("new File('/x') instanceof File && !(new Folder('/x') instanceof File);"), "true");
    EXPECT_EQ(Run("File.decode('a%C3%A9%20b') + '|' + File.encode('a b');"), "a\xC3\xA9 b|a%20b");
}

TEST_F(ScriptDialogs, FilesAreWrittenAndReadBack) {
    const std::string path = (folder / "t.txt").string();
    EXPECT_EQ(Run("var f = new File('" + path + "'); var was = f.exists; f.open('w'); f.writeln('caf\\u00e9'); "
                  "f.write('2'); f.close(); [was, f.exists].join();"),
              "false,true");
    std::ifstream in(path, std::ios::binary);
    std::stringstream bytes;
    bytes << in.rdbuf();
    EXPECT_EQ(bytes.str(), "caf\xC3\xA9\n2");
    EXPECT_EQ(Run("var f = new File('" + path + "'); f.open('r'); var a = f.readln(); var b = f.read(); "
                  "f.close(); [a.length, b, f.length].join();"),
              "4,2,7");
    // Bytes one by one in BINARY.
    EXPECT_EQ(Run("var f = new File('" + path + "'); f.encoding = 'BINARY'; f.open('r'); var s = f.read(); "
                  "f.close(); s.charCodeAt(3) + ',' + s.charCodeAt(4);"),
              "195,169");
    EXPECT_EQ(Run("var f = new File('" + (folder / "none").string() + "'); f.open('r');"), "false");
    EXPECT_EQ(Run("var d = new Folder('" + (folder / "sub").string() + "'); d.create(); "
                  "new File(d.fsName + '/k.jsx').open('w'); [d.exists, d.getFiles('*.jsx')[0].name].join();"),
              "true,k.jsx");
}

TEST_F(ScriptDialogs, IncludedFilesAndEvalFileRunInTheGlobalScope) {
    std::ofstream(folder / "lib.jsx") << "function twice(x) { return 2 * x; }\nvar blob = \"\"\"a\"b\"\"\";\n";
    context.includeFolder = folder.string();
    EXPECT_EQ(Run("#include \"lib.jsx\"\ntwice(4) + blob;"), "8a\"b");
    EXPECT_EQ(Run("$.evalFile('lib.jsx'); twice(5);"), "10");
    EXPECT_NE(Fail("$.evalFile('missing.jsx');").find("missing.jsx"), std::string::npos);
}

// A dialog like the text question: two radio buttons, OK and Cancel, and the
// settings in and out through JSON.
const char* const kTextQuestion = R"JS(
var jsonBlob = """{"settings": {"selectedTextExport": 0}}""";
function ask() {
    var settings = JSON.parse(jsonBlob);
    var dlg = new Window("dialog", "Text export");
    var panel = dlg.add("panel", undefined, "Export text layers");
    dlg.add("statictext", undefined, "How should text be exported?");
    var live = panel.add("radiobutton", undefined, "As live text");
    var planes = panel.add("radiobutton", undefined, "As planes");
    live.value = true;
    var buttons = dlg.add("group");
    buttons.add("button", undefined, "OK", {name: "ok"});
    buttons.add("button", undefined, "Cancel", {name: "cancel"});
    if (dlg.show() != 1) return "cancel";
    settings.settings.selectedTextExport = live.value ? 1 : 0;
    return JSON.stringify(settings);
}
ask();
)JS";

TEST_F(ScriptDialogs, AWindowIsAnsweredByTheScriptedUser) {
    // No answer queued: the default button with the script's own choice.
    EXPECT_EQ(Run(kTextQuestion), "{\"settings\":{\"selectedTextExport\":1}}");
    EXPECT_EQ(lines[0], "dialog \"Text export\": How should text be exported?");
    EXPECT_EQ(lines[1], "  pressed \"OK\"");
    user.dialogs.push_back({{"planes"}, "", false});
    EXPECT_EQ(Run(kTextQuestion), "{\"settings\":{\"selectedTextExport\":0}}");
    user.dialogs.push_back({{}, "", true});
    EXPECT_EQ(Run(kTextQuestion), "cancel");
    user.dialogs.push_back({{}, "cancel", false});
    EXPECT_EQ(Run(kTextQuestion), "cancel");
    // An answer that fits no control is an error, not a silent default.
    user.dialogs.push_back({{"outlines"}, "", false});
    EXPECT_NE(Fail(kTextQuestion).find("has no choice \"outlines\""), std::string::npos);
}

TEST_F(ScriptDialogs, ButtonsCloseTheWindowThroughTheirHandlers) {
    const std::string script =
        "var w = new Window('dialog', 'Pick'); var g = w.add('group');"
        "var a = g.add('button', undefined, 'Again'); a.onClick = function () { w.close(7); };"
        "g.add('button', undefined, 'Stay'); w.show();";
    user.dialogs.push_back({{}, "again", false});
    EXPECT_EQ(Run(script), "7");
    user.dialogs.push_back({{}, "Stay", false});
    EXPECT_NE(Fail(script).find("stayed open"), std::string::npos);
}

TEST_F(ScriptDialogs, TheAlertWindowShowsItsMessage) {
    // The plug-in's long message box, tabs as it sends them.
    EXPECT_EQ(Run("var dlg = new Window('dialog', 'Alert!');\tdlg.msgPnl = dlg.add('panel', undefined, undefined);"
                  "\tdlg.msgPnl.alignment = ['fill', 'fill'];\tdlg.msgPnl.preferredSize = [100, -1];"
                  "\tdlg.msgPnl.titleSt = dlg.msgPnl.add('statictext', undefined,'Disk full.');"
                  "\tdlg.okBtn = dlg.add('button', undefined, 'OK');\tdlg.show();"),
              "1");
    EXPECT_EQ(lines[0], "dialog \"Alert!\": Disk full.");
}

}  // namespace
}  // namespace aehost
