// Running a script in a test: the result of one that must succeed, the error of
// one that must fail.
#pragma once

#include "aehost/script/script_engine.h"

#include <gtest/gtest.h>

#include <string>

namespace aehost {

inline std::string RunOk(ScriptContext& context, const std::string& source) {
    std::string result;
    std::string error;
    EXPECT_TRUE(RunScript(context, source, &result, &error)) << error << "\nin: " << source;
    return result;
}

inline std::string RunFails(ScriptContext& context, const std::string& source) {
    std::string result;
    std::string error;
    EXPECT_FALSE(RunScript(context, source, &result, &error)) << "gave: " << result;
    EXPECT_EQ(result, "");
    return error;
}

}  // namespace aehost
