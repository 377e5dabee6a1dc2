// The console line of each render result.
#include <gtest/gtest.h>

#include "plugin/session/render_result_text.h"

namespace {

struct ResultCase {
  int32_t code;
  const char* text;
};

void PrintTo(const ResultCase& c, std::ostream* out) { *out << "code " << c.code; }

class RenderResultTextTest : public testing::TestWithParam<ResultCase> {};

TEST_P(RenderResultTextTest, NamesTheReason) { EXPECT_EQ(RenderResultText(GetParam().code), GetParam().text); }

INSTANTIATE_TEST_SUITE_P(
    Codes, RenderResultTextTest,
    testing::Values(ResultCase{1, "Render process was interrupted - Error: Out Of Memory"},
                    ResultCase{2, "Render process was interrupted - Error: Missing Asset"},
                    ResultCase{5, "Render process was interrupted - Error: Saving Failed"},
                    ResultCase{6, "Render process was interrupted - Error: User Break"},
                    ResultCase{7, "Render process was interrupted - Error: GI Cache Missing"},
                    ResultCase{9, "Render process was interrupted - Error: Machine was not found"},
                    ResultCase{1000, "Render process was interrupted - Error: Project was not found"},
                    ResultCase{1001, "Render process was interrupted - Error: Loading the project failed"},
                    ResultCase{1002, "Render process was interrupted - Error: Output was not specified"},
                    ResultCase{3, "Render process was interrupted, error code 3"},
                    ResultCase{4, "Render process was interrupted, error code 4"},
                    ResultCase{8, "Render process was interrupted, error code 8"},
                    ResultCase{-7, "Render process was interrupted, error code -7"}));

}  // namespace
