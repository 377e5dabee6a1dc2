#include <gtest/gtest.h>

#include "aehost/cli/answers.h"

namespace aehost {
namespace {

TEST(AnswersTest, EveryAnswerIsRead) {
    UserAnswers answers;
    std::string error;
    ASSERT_TRUE(ReadAnswers(R"({"save": {"path": "/out/a.ory", "cancel": false},
        "dialogs": [{"choose": ["planes"]}, {"press": "Cancel"}, {"cancel": true}], "cancelProgressAt": 40})",
                            "a.json", &answers, &error))
        << error;
    EXPECT_EQ(answers.user.save.path, "/out/a.ory");
    EXPECT_FALSE(answers.user.save.cancel);
    ASSERT_EQ(answers.user.dialogs.size(), 3u);
    EXPECT_EQ(answers.user.dialogs[0].choose, std::vector<std::string>{"planes"});
    EXPECT_EQ(answers.user.dialogs[1].press, "Cancel");
    EXPECT_TRUE(answers.user.dialogs[2].cancel);
    EXPECT_EQ(answers.cancelProgressAt, 40);
}

TEST(AnswersTest, ProblemsNameTheSourceAndTheKey) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({"save": {"path": 3}})", "a.json: save.path: expected a string"},
        {R"({"dialogs": [{"choose": "x"}]})", "a.json: dialogs[0].choose: expected an array of strings"},
        {R"({"dialogs": [{}, {"cancel": "yes"}]})", "a.json: dialogs[1].cancel: expected true or false"},
        {R"({"cancelProgressAt": 101})", "a.json: cancelProgressAt: expected a whole number from 0 to 100"},
        {R"({"user": {}})", "a.json: top level: unknown key \"user\""},
        {R"([])", "a.json: top level: expected an object"},
    };
    for (const auto& [text, message] : cases) {
        UserAnswers answers;
        std::string error;
        EXPECT_FALSE(ReadAnswers(text, "a.json", &answers, &error)) << text;
        EXPECT_EQ(error, message);
    }
    UserAnswers answers;
    std::string error;
    EXPECT_FALSE(ReadAnswers(R"({"save": {}, "save": {}})", "a.json", &answers, &error));
    EXPECT_EQ(error.rfind("a.json: not valid JSON: ", 0), 0u) << error;
    // Nesting past the parser's bound is bad input like any other, not an abort.
    const std::string deep = "{\"dialogs\": " + std::string(5000, '[') + std::string(5000, ']') + "}";
    EXPECT_FALSE(ReadAnswers(deep, "deep.json", &answers, &error));
    EXPECT_EQ(error.rfind("deep.json: not valid JSON: ", 0), 0u) << error;
    EXPECT_FALSE(ReadAnswersFile("/nonexistent/answers.json", &answers, &error));
    EXPECT_EQ(error, "/nonexistent/answers.json: cannot open: No such file or directory");
}

}  // namespace
}  // namespace aehost
