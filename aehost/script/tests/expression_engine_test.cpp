// Expressions run through the project model's evaluation, as the suites read
// streams. Expected values are worked out by hand from the keys and the formulas.
#include "aehost/script/expression_engine.h"

#include "aehost/model/edit.h"
#include "aehost/model/evaluate.h"
#include "aehost/model/project.h"
#include "aehost/script/tests/script_test_support.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace aehost {
namespace {

void ExpectNear(const Value& actual, const Value& expected) {
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(actual[i], expected[i], 1e-9) << "component " << i;
}

class Expressions : public ::testing::Test {
protected:
    void SetUp() override {
        InstallExpressionEngine([this](const std::string& line) { reports.push_back(line); });
        project = NewProject();
        comp = &AddComp(project, "Main", 1000, 500, 1.0, 10.0, 25.0);
        leader = &AddNullLayer(project, *comp, "Leader");
        leader->name = "Leader";
        leader->switches.threeD = true;
        Stream& position = EnsureStream(project, *comp, *leader, LayerStream::Position);
        AddKeyframe(position, 0.0, V(0, 100, 0));
        AddKeyframe(position, 2.0, V(200, 100, 40));
        follower = &AddNullLayer(project, *comp, "Follower");
        follower->name = "Follower";
        follower->switches.threeD = true;
    }

    // Sets an expression on the follower and evaluates it at `time`.
    Value Eval(LayerStream id, const std::string& expression, double time, std::string* error = nullptr) {
        EnsureStream(project, *comp, *follower, id).expression = expression;
        return EvaluateStream(project, *comp, *follower, id, time, false, error);
    }

    std::vector<std::string> reports;
    Project project;
    Item* comp = nullptr;
    Layer* leader = nullptr;
    Layer* follower = nullptr;
};

TEST_F(Expressions, TimeValueAndMath) {
    EXPECT_EQ(Eval(LayerStream::Opacity, "time * 10", 1.5)[0], 15.0);
    // The follower's own rotation is 0 before the expression.
    EXPECT_EQ(Eval(LayerStream::RotationZ, "value + 45", 3.0)[0], 45.0);
    EXPECT_EQ(Eval(LayerStream::Opacity, "var a = 2;\nif (time > 1) { a * 20 } else { 0 }", 2.0)[0], 40.0);
    EXPECT_EQ(Eval(LayerStream::Opacity, "clamp(time * 100, 0, 60)", 4.0)[0], 60.0);
    // linear(t, 0, 2, 10, 30) at t = 0.5 is a quarter of the way: 15.
    EXPECT_EQ(Eval(LayerStream::Opacity, "linear(time, 0, 2, 10, 30)", 0.5)[0], 15.0);
    // ease at the middle is halfway too: 3u^2 - 2u^3 at u = 0.5 is 0.5.
    EXPECT_EQ(Eval(LayerStream::Opacity, "ease(time, 0, 2, 10, 30)", 1.0)[0], 20.0);
    EXPECT_EQ(Eval(LayerStream::Opacity, "timeToFrames()", 2.0)[0], 50.0);
}

TEST_F(Expressions, OtherLayersAndVectors) {
    // The leader moves linearly from (0, 100, 0) to (200, 100, 40) over 2 s: at 1 s (100, 100, 20).
    ExpectNear(Eval(LayerStream::Position, "thisComp.layer('Leader').transform.position.value", 1.0),
               V(100, 100, 20));
    ExpectNear(Eval(LayerStream::Position, "add(thisComp.layer(2).transform.position.value, [0, -50, 0])", 1.0),
               V(100, 50, 20));
    // A property stands for its value in the helpers and as the result.
    ExpectNear(Eval(LayerStream::Position, "sub(thisComp.layer('Leader').transform.position, [100, 0, 0])", 2.0),
               V(100, 100, 40));
    ExpectNear(Eval(LayerStream::Position, "thisComp.layer('Leader').transform.position", 2.0), V(200, 100, 40));
    EXPECT_EQ(Eval(LayerStream::Position, "var p = thisComp.layer('Leader').transform.position; [p[0] * 2, p[1], 7]", 2.0),
              V(400, 100, 7));
    // Two of three numbers: the third keeps the value before the expression.
    follower->streams[LayerStream::Position].value = V(1, 2, 3);
    EXPECT_EQ(Eval(LayerStream::Position, "[time, 5]", 2.0), V(2, 5, 3));
    EXPECT_EQ(Eval(LayerStream::Opacity, "length([3, 4])", 0.0)[0], 5.0);
    // The follower's scale (100, 100, 100) by its own name.
    EXPECT_EQ(Eval(LayerStream::Opacity, "scale[0] / 2", 0.0)[0], 50.0);
}

TEST_F(Expressions, ABrokenExpressionKeepsTheValueAndSaysWhy) {
    std::string error;
    follower->streams[LayerStream::Opacity].value = V(80, 0);
    EXPECT_EQ(Eval(LayerStream::Opacity, "nonsense(", 1.0, &error)[0], 80.0);
    EXPECT_NE(error.find("SyntaxError"), std::string::npos) << error;
    EXPECT_EQ(Eval(LayerStream::Opacity, "thisComp.layer('Nobody').name", 1.0, &error)[0], 80.0);
    EXPECT_NE(error.find("TypeError"), std::string::npos) << error;
    EXPECT_EQ(Eval(LayerStream::Position, "42", 1.0, &error), V(500, 250, 0));
    EXPECT_NE(error.find("where 3 numbers are needed"), std::string::npos) << error;
    Eval(LayerStream::Opacity, "'many'", 1.0, &error);
    EXPECT_NE(error.find("not a number"), std::string::npos) << error;
    Eval(LayerStream::Opacity, "[1, 2]", 1.0, &error);
    EXPECT_NE(error.find("more than 1"), std::string::npos) << error;
}

TEST_F(Expressions, ExpressionsCannotChangeTheProjectOrRunForever) {
    std::string error;
    Eval(LayerStream::Opacity,
         "thisComp.layer('Leader').transform.position.setTemporalEaseAtKey(1, [new KeyframeEase(1, 50)]); 1", 1.0,
         &error);
    EXPECT_NE(error.find("cannot be changed"), std::string::npos) << error;
    follower->streams[LayerStream::Opacity].value = V(30, 0);
    EXPECT_EQ(Eval(LayerStream::Opacity, "while (true) {}", 1.0, &error)[0], 30.0);
    EXPECT_NE(error.find("stopped"), std::string::npos) << error;
}

TEST_F(Expressions, AFailureIsToldOnceForEachStreamWithItsNames) {
    follower->streams[LayerStream::Opacity].value = V(80, 0);
    for (double time = 0.0; time < 1.0; time += 0.25) {
        EXPECT_EQ(Eval(LayerStream::Opacity, "throw new Error('at ' + time)", time)[0], 80.0);
        Eval(LayerStream::RotationZ, "nonsense(", time);
    }
    EXPECT_EQ(reports, (std::vector<std::string>{
                           "expression of \"Opacity\" on layer \"Follower\" in \"Main\" failed: Error: at 0 (line 1)",
                           "expression of \"Z Rotation\" on layer \"Follower\" in \"Main\" failed: SyntaxError: "
                           "parse error (line 1, end of input)"}));
}

TEST_F(Expressions, AStoppedExpressionIsSwitchedOffForTheRun) {
    follower->streams[LayerStream::Opacity].value = V(30, 0);
    std::string error;
    EXPECT_EQ(Eval(LayerStream::Opacity, "while (true) {}", 1.0, &error)[0], 30.0);
    EXPECT_NE(error.find("stopped"), std::string::npos) << error;
    // Not run again: no error, the value without the expression, nothing more told.
    error.clear();
    EXPECT_EQ(Eval(LayerStream::Opacity, "while (true) {}", 2.0, &error)[0], 30.0);
    EXPECT_EQ(error, "");
    EXPECT_EQ(reports, (std::vector<std::string>{"expression of \"Opacity\" on layer \"Follower\" in \"Main\" was "
                                                 "stopped after 2000 ms and is switched off for the rest of the run"}));
    // Other streams still run, and so does this one in a new run.
    EXPECT_EQ(Eval(LayerStream::RotationZ, "time * 10", 2.0)[0], 20.0);
    InstallExpressionEngine(nullptr);
    EXPECT_EQ(Eval(LayerStream::Opacity, "time * 10", 2.0)[0], 20.0);
}

// Expressions are a calculator: nothing of the scripts' environment is there, and eval
// or the Function constructor find nothing more.
TEST_F(Expressions, SeeNothingThatReachesOutside) {
    for (const char* name : {"File", "Folder", "$", "alert", "confirm", "prompt", "app", "Window", "Duktape",
                             "require", "system"}) {
        const std::string test = std::string("typeof ") + name + " === \"undefined\"";
        EXPECT_EQ(Eval(LayerStream::Opacity, "(" + test + ") ? 1 : 0", 0.0)[0], 1.0) << name;
        EXPECT_EQ(Eval(LayerStream::Opacity, "eval('" + test + "') ? 1 : 0", 0.0)[0], 1.0) << name;
        EXPECT_EQ(Eval(LayerStream::Opacity, "Function('return " + test + "')() ? 1 : 0", 0.0)[0], 1.0) << name;
    }
    EXPECT_EQ(Eval(LayerStream::Opacity, "comp('Main').numLayers + Math.floor(2.5)", 0.0)[0], 4.0);
}

TEST_F(Expressions, ACycleOfExpressionsEndsWithAnError) {
    EnsureStream(project, *comp, *leader, LayerStream::Opacity).expression =
        "thisComp.layer('Follower').transform.opacity.value";
    std::string error;
    Eval(LayerStream::Opacity, "thisComp.layer('Leader').transform.opacity.value", 0.0, &error);
    EXPECT_NE(error.find("levels deep"), std::string::npos) << error;
    // Each of the two streams is told once, the one where the levels ran out first.
    ASSERT_EQ(reports.size(), 2u);
    EXPECT_EQ(reports[0].rfind("expression of \"Opacity\" on layer \"Follower\" in \"Main\" failed: expressions "
                               "refer to each other more than 8 levels deep", 0), 0u)
        << reports[0];
    EXPECT_EQ(reports[1].rfind("expression of \"Opacity\" on layer \"Leader\" in \"Main\" failed: ", 0), 0u)
        << reports[1];
}

}  // namespace
}  // namespace aehost
