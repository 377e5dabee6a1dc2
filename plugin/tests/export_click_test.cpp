// Clicks on the export command against the fake host: the engine is started by the first
// click that finds it, and a click that cannot find it leaves the next one to try again.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "fake_engine/fake_engine_state.h"
#include "fake_host.h"
#include "plugin/engine/engine_loader.h"
#include "plugin/engine/engine_start.h"
#include "plugin/engine/engine_tables.h"
#include "plugin/host/entry_point.h"
#include "plugin/host/plugin_globals.h"
#include "plugin/text/encodings.h"

namespace {

A_Err Click(FakeHost& host, A_Boolean* handled) {
  *handled = false;
  return host.commandHook(nullptr, nullptr, g_exportCommand, AEGP_HP_AfterAE, false, handled);
}

TEST(ExportClicks, StartTheEngineOnceAndRetryWhileItIsMissing) {
  FakeHost host;
  host.hasActiveItem = true;
  ASSERT_EQ(EntryPointFunc(const_cast<SPBasicSuite*>(host.pica()), 1, 0, 3, nullptr), 0);
  A_Boolean handled = false;

  setenv("QUILLON_ENGINE_DIR", "/nonexistent/engine", 1);
  const std::u16string missing = u"Error during event eQuillon_AEGP_CommandHook\nCode (A_Err_GENERIC) : " +
                                 DecodeUtf8(kEngineMissingMessage) + u"\n";
  EXPECT_EQ(Click(host, &handled), 0);
  EXPECT_TRUE(handled);
  EXPECT_EQ(Click(host, &handled), 0);
  EXPECT_EQ(host.reports, (std::vector<std::u16string>{missing, missing}));
  EXPECT_FALSE(g_engineStarted);

  // With the engine in place the next click starts it; the fake host has no project suite,
  // so each export then ends at the project's name, after the start.
  setenv("QUILLON_ENGINE_DIR", QAE_FAKE_ENGINE_DIR, 1);
  void* library = dlopen(QAE_FAKE_ENGINE_DIR "/libquillon.so", RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr);
  const auto engine = reinterpret_cast<FakeEngineState* (*)()>(dlsym(library, "FakeEngine"))();
  const int initializedBefore = engine->initializeCalls;
  const int shutDownBefore = engine->shutdownCalls;
  host.reports.clear();
  EXPECT_EQ(Click(host, &handled), A_Err_MISSING_SUITE);
  EXPECT_TRUE(g_engineStarted);
  EXPECT_EQ(Click(host, &handled), A_Err_MISSING_SUITE);
  ASSERT_EQ(host.reports.size(), 2u);
  EXPECT_EQ(host.reports[1],
            u"Error during event eQuillon_AEGP_CommandHook\nCode (A_Err_MISSING_SUITE) : Missing Suite Error\n");
  EXPECT_EQ(engine->initializeCalls, initializedBefore + 1);
  EXPECT_EQ(engine->path, u"" QAE_FAKE_ENGINE_DIR "/");

  EXPECT_EQ(host.deathHook(nullptr, nullptr), 0);
  EXPECT_EQ(engine->shutdownCalls, shutDownBefore + 1);
  dlclose(library);
  unsetenv("QUILLON_ENGINE_DIR");
  g_engineApi = nullptr;
}

}  // namespace
