#pragma once
// What the tests that run the plug-in's code against the headless host in their own process
// share: the real engine library, started once, and a fresh host that knows the plug-in.
#include <gtest/gtest.h>

#include <string>

#include "aehost/core/host.h"
#include "plugin/engine/engine_loader.h"

namespace qae_test {

constexpr AEGP_PluginID kInProcessPlugin = 3;

// For a suite's SetUpTestSuite: the engine of the build tree, up and running.
inline void StartTestEngine() {
  std::u16string path = u"" QAE_ENGINE_DIR "/";
  ASSERT_TRUE(StartEngine(path));
  ASSERT_TRUE(WaitUntilQuillonIsRunning(60));
}

// A host reset to an empty `project`, with the plug-in registered under kInProcessPlugin.
inline void ResetHostWithPlugin(aehost::Project& project) {
  aehost::ResetHost();
  project = aehost::NewProject();
  aehost::g_host.project = &project;
  aehost::g_host.plugins.push_back({kInProcessPlugin, "quillon", nullptr});
}

}  // namespace qae_test
