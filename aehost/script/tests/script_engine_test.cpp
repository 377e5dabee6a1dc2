#include "aehost/script/script_engine.h"
#include "aehost/script/tests/script_test_support.h"

#include <gtest/gtest.h>

#include <vector>

namespace aehost {
namespace {

TEST(ScriptEngine, TheReplyIsTheLastValueAsTheHostPrintsIt) {
    ScriptContext context;
    EXPECT_EQ(RunOk(context, "1 + 2;"), "3");
    EXPECT_EQ(RunOk(context, "[1.5, -2, 'a'];"), "1.5,-2,a");
    EXPECT_EQ(RunOk(context, "var x = 1;"), "undefined");
    EXPECT_EQ(RunOk(context, "function f() { return \"\"; } f();"), "");
    EXPECT_EQ(RunOk(context, "1 == 1;"), "true");
    EXPECT_EQ(RunOk(context, "'\\u00e9\\ud83d\\ude00';"), "\xC3\xA9\xF0\x9F\x98\x80");
}

TEST(ScriptEngine, GlobalsStayFromOneScriptToTheNext) {
    ScriptContext context;
    RunOk(context, "function getLayerData(i) { return i * 2; }");
    EXPECT_EQ(RunOk(context, "getLayerData(21);"), "42");
}

TEST(ScriptEngine, ErrorsNameTheirLine) {
    ScriptContext context;
    EXPECT_EQ(RunFails(context, "var a = 1;\nthrow new Error('boom');"), "Error: boom (line 2)");
    const std::string undefinedName = RunFails(context, "\n\nnoSuchThing.value;");
    EXPECT_NE(undefinedName.find("ReferenceError"), std::string::npos);
    EXPECT_NE(undefinedName.find("line 3"), std::string::npos) << undefinedName;
    EXPECT_NE(RunFails(context, "var = ;").find("SyntaxError"), std::string::npos);
    EXPECT_EQ(RunFails(context, "x = \"\"\"never closed"), "line 1: triple-quoted string is not closed");
}

TEST(ScriptEngine, TripleQuotedJsonReachesTheScriptUnchanged) {
    ScriptContext context;
    EXPECT_EQ(RunOk(context,
                    "var jsonBlob = \"\"\"{\n   \"settings\" : {\n      \"selectedTextExport\" : 0\n   }\n}\n\"\"\";\n"
                    "var s = JSON.parse(jsonBlob); s.settings.selectedTextExport = 1; JSON.stringify(s);"),
              "{\"settings\":{\"selectedTextExport\":1}}");
}

TEST(ScriptEngine, AlertsAndConsoleLinesGoToTheReport) {
    ScriptContext context;
    std::vector<std::string> lines;
    context.report = [&lines](std::string_view line) { lines.emplace_back(line); };
    RunOk(context, "alert('Done'); $.writeln('a', 1, true); alert('x', 'Title');");
    EXPECT_EQ(lines, (std::vector<std::string>{"Done", "a1true", "Title: x"}));
}

TEST(ScriptEngine, ALoopThatNeverEndsIsStoppedAndTheNextScriptRuns) {
    ScriptContext context;
    context.limits.timeLimitMs = 200;
    context.report = [](std::string_view) {};
    RunOk(context, "var kept = 5;");
    EXPECT_EQ(RunFails(context, "while (true) {}"), "Error: the script was stopped after 200 ms");
    // A loop that allocates and one that catches every error are stopped as well.
    RunFails(context, "var s = []; for (;;) { s.push('x' + s.length); if (s.length > 1000) s = []; }");
    RunFails(context, "for (;;) { try { alert('x'); } catch (e) {} }");
    // The environment was made anew: the old global is gone, scripts run again.
    EXPECT_EQ(RunOk(context, "typeof kept;"), "undefined");
    EXPECT_EQ(RunOk(context, "6 * 7;"), "42");
}

TEST(ScriptEngine, AScriptThatWantsTooMuchMemoryFails) {
    ScriptContext context;
    // The limit holds for the next run even when the environment was made under another.
    EXPECT_EQ(RunOk(context, "var big = new Array(200000).join('y').length;"), "undefined");
    context.limits.memoryLimitBytes = 8u << 20;
    EXPECT_EQ(RunFails(context, "var a = [], s = 'x'; for (;;) { a.push(s); s = s + s; }"),
              "Error: alloc failed (line 1)");
    EXPECT_EQ(RunOk(context, "'still' + ' here';"), "still here");
}

}  // namespace
}  // namespace aehost
