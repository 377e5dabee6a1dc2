// The loader against an engine library that starts asynchronously.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "fake_engine/fake_engine_state.h"
#include "plugin/engine/engine_loader.h"
#include "plugin/engine/engine_tables.h"

namespace {

FakeEngineState* LoadedFakeEngine() {
  void* library = dlopen(QAE_FAKE_ENGINE_DIR "/libquillon.so", RTLD_NOW | RTLD_LOCAL);
  if (!library) return nullptr;
  auto state = reinterpret_cast<FakeEngineState* (*)()>(dlsym(library, "FakeEngine"));
  return state ? state() : nullptr;
}

TEST(EngineStart, LoadsOnceWaitsForTheEngineAndShutsItDown) {
  std::u16string path = u"" QAE_FAKE_ENGINE_DIR "/";
  ASSERT_TRUE(StartEngine(path));
  EXPECT_TRUE(path.empty());
  FakeEngineState* engine = LoadedFakeEngine();
  ASSERT_NE(engine, nullptr);
  EXPECT_EQ(engine->initializeCalls, 1);
  EXPECT_EQ(engine->moduleRecord, &g_vantor);
  EXPECT_EQ(engine->path, u"" QAE_FAKE_ENGINE_DIR "/");
  ASSERT_EQ(engine->arguments.size(), 2u);
  EXPECT_EQ(engine->arguments[0], u"g_customParentHWND=");
  EXPECT_EQ(engine->arguments[1].rfind(u"g_moduleNegatives=\t\t\t\t", 0), 0u);
  EXPECT_EQ(engine->arguments[1].substr(engine->arguments[1].size() - 2), u"; ");

  // Ready with no record: running, but nothing taken.
  engine->giveRecord = false;
  EXPECT_TRUE(IsQuillonRunning());
  EXPECT_EQ(g_engineApi, nullptr);

  // The asynchronous start: two tests answer "not yet", the third gives the tables.
  engine->giveRecord = true;
  engine->testsUntilReady = 2;
  EXPECT_FALSE(IsQuillonRunning());
  EXPECT_TRUE(WaitUntilQuillonIsRunning(5));
  EXPECT_EQ(g_engineApi, &engine->api);
  EXPECT_EQ(static_cast<const void*>(t_ORYOS_FL), engine->api.tables[Table_FL]);

  // A second load is a no-op.
  const char* items[] = {"other"};
  EXPECT_TRUE(LoadQuillon(u"/elsewhere/", "again", u"", {items, 1}));
  EXPECT_EQ(engine->initializeCalls, 1);

  EXPECT_TRUE(UnloadQuillon(false));
  EXPECT_EQ(engine->shutdownCalls, 1);
  EXPECT_EQ(engine->overrideNames,
            (std::vector<std::string>{"Free@fd4f2d19abfff044",
                                      "PrivateShowSynchronizedHashMapDiagnostics@3871f4377739d6f6",
                                      "RemoveWeakReference@f0540d7d9f694e77",
                                      "PrivateHandleUnreferencedType@852138fc3d484eb1"}));
  EXPECT_FALSE(IsQuillonRunning());
  EXPECT_FALSE(UnloadQuillon(false));
  g_engineApi = nullptr;
}

}  // namespace
