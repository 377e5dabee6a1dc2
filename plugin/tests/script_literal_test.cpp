#include "plugin/text/script_literal.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct LiteralCase {
  const char* name;
  std::string text;
  char quote;
  std::string literal;
};

void PrintTo(const LiteralCase& c, std::ostream* out) { *out << c.name; }

class ScriptLiteral : public ::testing::TestWithParam<LiteralCase> {};

TEST_P(ScriptLiteral, EscapesWhatWouldEndOrChangeTheLiteral) {
  EXPECT_EQ(ScriptLiteralText(GetParam().text, GetParam().quote), GetParam().literal);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ScriptLiteral,
    ::testing::Values(
        LiteralCase{"plain", "/C/p/Comp 1.ory", '"', "/C/p/Comp 1.ory"},
        LiteralCase{"non_ascii_kept", "Sz\xC3\xA8ne \xE2\x80\x93 1", '"', "Sz\xC3\xA8ne \xE2\x80\x93 1"},
        LiteralCase{"double_quote", "Shot \"final\"", '"', "Shot \\\"final\\\""},
        LiteralCase{"other_quote_kept", "It's \"x\"", '\'', "It\\'s \"x\""},
        LiteralCase{"injection", "X\"); alert(\"INJECTED\"); (\"", '"', "X\\\"); alert(\\\"INJECTED\\\"); (\\\""},
        LiteralCase{"backslash", "a\\b\\", '"', "a\\\\b\\\\"},
        LiteralCase{"line_ends", "a\nb\rc\td", '"', "a\\nb\\rc\\td"},
        LiteralCase{"separators", "a\xE2\x80\xA8" "b\xE2\x80\xA9", '"', "a\\u2028b\\u2029"},
        LiteralCase{"controls", std::string("a\x01\x1f\x7f", 4) + std::string(1, '\0'), '"', "a\\u0001\\u001f\x7f\\u0000"},
        LiteralCase{"cut_separator_kept", "a\xE2\x80", '"', "a\xE2\x80"}),
    [](const ::testing::TestParamInfo<LiteralCase>& info) { return std::string(info.param.name); });

}  // namespace
