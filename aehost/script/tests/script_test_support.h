// What the tests share: running a script that must succeed or fail, and writing
// a model value.
#pragma once

#include "aehost/model/value.h"
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

inline Value V(double x, double y, double z = 0.0) {
    Value v;
    v.v = {x, y, z, 0.0};
    return v;
}

}  // namespace aehost
