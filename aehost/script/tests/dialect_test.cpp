#include "aehost/script/dialect.h"

#include <gtest/gtest.h>

#include <map>

namespace aehost {
namespace {

std::string Translate(const std::string& source, const std::map<std::string, std::string>& files = {}) {
    std::string out;
    std::string error;
    const auto include = [&files](const std::string& name, std::string* text, std::string* why) {
        const auto it = files.find(name);
        if (it == files.end()) {
            *why = "missing";
            return false;
        }
        *text = it->second;
        return true;
    };
    EXPECT_TRUE(TranslateDialect(source, include, &out, &error)) << error;
    return out;
}

std::string Failure(const std::string& source) {
    std::string out;
    std::string error;
    EXPECT_FALSE(TranslateDialect(source, nullptr, &out, &error));
    return error;
}

TEST(Dialect, TripleQuotesBecomeOneLiteralAndKeepLineNumbers) {
    // Quotes, a backslash and two line ends inside: taken literally, escaped for JavaScript,
    // and the two line ends follow the literal so that the next line keeps its number.
    EXPECT_EQ(Translate("var a = \"\"\"{\"k\": \"x\\ny\"}\nline 2\n3\"\"\";\nb();"),
              "var a = \"{\\\"k\\\": \\\"x\\\\ny\\\"}\\nline 2\\n3\"\n\n;\nb();");
    EXPECT_EQ(Translate("f(\"\"\"\"\"\")"), "f(\"\")");
}

TEST(Dialect, TripleQuotesInsideOtherTokensAreLeftAlone) {
    const std::string kept[] = {
        "var s = '\"\"\"';",                 // in a single-quoted string
        "var s = \"a\\\"\\\"\\\"b\";",        // escaped quotes in a double-quoted string
        "// say \"\"\"hi\"\"\"\nx();",        // in a line comment
        "/* \"\"\" */ x();",                  // in a block comment
        "var r = /\"\"\"/g;",                 // in a regular expression
        "var r = x.replace(/[\"\\/]/g, '');", // a class holding a slash and a quote
        "var q = a / b; var s = \"\";",       // a division is not a regular expression
    };
    for (const std::string& source : kept) EXPECT_EQ(Translate(source), source);
}

TEST(Dialect, DirectivesAreIncludedOrDropped) {
    EXPECT_EQ(Translate("#target aftereffects\n#include \"lib.jsx\"\nrun();",
                        {{"lib.jsx", "function run() { return \"\"\"x\"\"\"; }"}}),
              "\nfunction run() { return \"x\"; }\n\nrun();");
    EXPECT_EQ(Translate("  //@include 'a.jsx'\nb;", {{"a.jsx", "a;"}}), "  a;\n\nb;");
    // A # that does not begin a line is no directive.
    EXPECT_EQ(Translate("var s = '#include';"), "var s = '#include';");
}

TEST(Dialect, MalformedSourcesNameTheLine) {
    EXPECT_EQ(Failure("a();\nvar s = \"\"\"open"), "line 2: triple-quoted string is not closed");
    EXPECT_EQ(Failure("#pragma once"), "line 1: unknown directive #pragma");
    EXPECT_EQ(Failure("x;\n#include \"none.jsx\""), "line 2: cannot include \"none.jsx\"");
    EXPECT_EQ(Failure("/* never closed"), "line 1: comment is not closed");
}

TEST(Dialect, AnIncludeCycleEnds) {
    std::string out;
    std::string error;
    const auto self = [](const std::string&, std::string* text, std::string*) {
        *text = "#include \"self.jsx\"\n";
        return true;
    };
    EXPECT_FALSE(TranslateDialect("#include \"self.jsx\"", self, &out, &error));
    EXPECT_NE(error.find("nested too deeply"), std::string::npos) << error;
}

}  // namespace
}  // namespace aehost
