#pragma once
// The engine library of the build, started once in a test process.
#include <gtest/gtest.h>

#include <string>

#include "plugin/engine/engine_loader.h"

namespace session_test {

// For a suite's SetUpTestSuite.
inline void StartBuildEngine() {
  std::u16string path = u"" QAE_ENGINE_DIR "/";
  ASSERT_TRUE(StartEngine(path));
  ASSERT_TRUE(WaitUntilQuillonIsRunning(60));
}

}  // namespace session_test
