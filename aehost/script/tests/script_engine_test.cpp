#include "aehost/script/script_engine.h"

#include <gtest/gtest.h>

#include <vector>

namespace aehost {
namespace {

struct Outcome {
    bool ok;
    std::string text;  // the result, or the error
};

Outcome Execute(ScriptContext& context, const std::string& source) {
    std::string result;
    std::string error;
    const bool ok = RunScript(context, source, &result, &error);
    return {ok, ok ? result : error};
}

TEST(ScriptEngine, TheReplyIsTheLastValueAsTheHostPrintsIt) {
    ScriptContext context;
    EXPECT_EQ(Execute(context, "1 + 2;").text, "3");
    EXPECT_EQ(Execute(context, "[1.5, -2, 'a'];").text, "1.5,-2,a");
    EXPECT_EQ(Execute(context, "var x = 1;").text, "undefined");
    EXPECT_EQ(Execute(context, "function f() { return \"\"; } f();").text, "");
    EXPECT_EQ(Execute(context, "1 == 1;").text, "true");
    EXPECT_EQ(Execute(context, "'\\u00e9\\ud83d\\ude00';").text, "\xC3\xA9\xF0\x9F\x98\x80");
}

TEST(ScriptEngine, GlobalsStayFromOneScriptToTheNext) {
    ScriptContext context;
    ASSERT_TRUE(Execute(context, "function getLayerData(i) { return i * 2; }").ok);
    EXPECT_EQ(Execute(context, "getLayerData(21);").text, "42");
}

TEST(ScriptEngine, ErrorsNameTheirLine) {
    ScriptContext context;
    const Outcome thrown = Execute(context, "var a = 1;\nthrow new Error('boom');");
    EXPECT_FALSE(thrown.ok);
    EXPECT_EQ(thrown.text, "Error: boom (line 2)");
    const Outcome undefinedName = Execute(context, "\n\nnoSuchThing.value;");
    EXPECT_FALSE(undefinedName.ok);
    EXPECT_NE(undefinedName.text.find("ReferenceError"), std::string::npos);
    EXPECT_NE(undefinedName.text.find("line 3"), std::string::npos) << undefinedName.text;
    const Outcome syntax = Execute(context, "var = ;");
    EXPECT_FALSE(syntax.ok);
    EXPECT_NE(syntax.text.find("SyntaxError"), std::string::npos);
    const Outcome dialect = Execute(context, "x = \"\"\"never closed");
    EXPECT_FALSE(dialect.ok);
    EXPECT_EQ(dialect.text, "line 1: triple-quoted string is not closed");
}

TEST(ScriptEngine, TripleQuotedJsonReachesTheScriptUnchanged) {
    ScriptContext context;
    const Outcome run = Execute(context,
                            "var jsonBlob = \"\"\"{\n   \"settings\" : {\n      \"selectedTextExport\" : 0\n   }\n}\n\"\"\";\n"
                            "var s = JSON.parse(jsonBlob); s.settings.selectedTextExport = 1; JSON.stringify(s);");
    ASSERT_TRUE(run.ok) << run.text;
    EXPECT_EQ(run.text, "{\"settings\":{\"selectedTextExport\":1}}");
}

TEST(ScriptEngine, AlertsAndConsoleLinesGoToTheReport) {
    ScriptContext context;
    std::vector<std::string> lines;
    context.report = [&lines](std::string_view line) { lines.emplace_back(line); };
    ASSERT_TRUE(Execute(context, "alert('Done'); $.writeln('a', 1, true); alert('x', 'Title');").ok);
    EXPECT_EQ(lines, (std::vector<std::string>{"Done", "a1true", "Title: x"}));
}

TEST(ScriptEngine, ALoopThatNeverEndsIsStoppedAndTheNextScriptRuns) {
    ScriptContext context;
    context.limits.timeLimitMs = 200;
    context.report = [](std::string_view) {};
    ASSERT_TRUE(Execute(context, "var kept = 5;").ok);
    const Outcome endless = Execute(context, "while (true) {}");
    EXPECT_FALSE(endless.ok);
    EXPECT_EQ(endless.text, "Error: the script was stopped after 200 ms");
    // A loop that allocates and one that catches every error are stopped as well.
    EXPECT_FALSE(Execute(context, "var s = []; for (;;) { s.push('x' + s.length); if (s.length > 1000) s = []; }").ok);
    EXPECT_FALSE(Execute(context, "for (;;) { try { alert('x'); } catch (e) {} }").ok);
    // The environment was made anew: the old global is gone, scripts run again.
    EXPECT_EQ(Execute(context, "typeof kept;").text, "undefined");
    EXPECT_EQ(Execute(context, "6 * 7;").text, "42");
}

TEST(ScriptEngine, AScriptThatWantsTooMuchMemoryFails) {
    ScriptContext context;
    context.limits.memoryLimitBytes = 8u << 20;
    const Outcome greedy = Execute(context, "var a = [], s = 'x'; for (;;) { a.push(s); s = s + s; }");
    EXPECT_FALSE(greedy.ok);
    EXPECT_EQ(greedy.text, "Error: alloc failed (line 1)");
    EXPECT_EQ(Execute(context, "'still' + ' here';").text, "still here");
}

}  // namespace
}  // namespace aehost
