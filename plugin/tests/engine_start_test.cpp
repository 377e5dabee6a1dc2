// The loader against an engine library that starts asynchronously.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <deque>
#include <functional>
#include <vector>

#include "fake_engine/fake_engine_state.h"
#include "plugin/engine/engine_loader.h"
#include "plugin/engine/engine_tables.h"
#include "sdk/window_system.h"

namespace {

// The host's windows and the pending work of its main thread, as this process offers them.
struct TestWindowSystem {
  std::vector<QaeWindowInfo> windows;
  std::deque<std::function<void()>> pending;
  int waits = 0;
};
TestWindowSystem g_windowSystem;

int32_t ListTestWindows(QaeWindowInfo* windows, int32_t capacity) {
  const int32_t count = static_cast<int32_t>(g_windowSystem.windows.size());
  for (int32_t i = 0; i < count && i < capacity; ++i) windows[i] = g_windowSystem.windows[i];
  return count;
}

int32_t WaitForTestInput(int32_t) {
  ++g_windowSystem.waits;
  return g_windowSystem.pending.empty() ? 0 : 1;
}

int32_t DispatchOneTestMessage() {
  if (g_windowSystem.pending.empty()) return 0;
  const std::function<void()> work = g_windowSystem.pending.front();
  g_windowSystem.pending.pop_front();
  work();
  return 1;
}

}  // namespace

extern "C" {
__attribute__((visibility("default"))) QaeWindowSystemRecord QaeWindowSystem = {ListTestWindows, WaitForTestInput,
                                                                                 DispatchOneTestMessage};
}

namespace {

FakeEngineState* LoadedFakeEngine() {
  void* library = dlopen(QAE_FAKE_ENGINE_DIR "/libquillon.so", RTLD_NOW | RTLD_LOCAL);
  if (!library) return nullptr;
  auto state = reinterpret_cast<FakeEngineState* (*)()>(dlsym(library, "FakeEngine"));
  return state ? state() : nullptr;
}

TEST(EngineStart, LoadsOnceWaitsForTheEngineAndShutsItDown) {
  // Another process's window, an owned one, a hidden one, then the host's main window.
  const int64_t self = ::getpid();
  g_windowSystem.windows = {{7, self + 1, 0, 1}, {8, self, 7, 1}, {9, self, 0, 0}, {10, self, 0, 1}, {11, self, 0, 1}};
  std::u16string path = u"" QAE_FAKE_ENGINE_DIR "/";
  ASSERT_TRUE(StartEngine(path));
  EXPECT_TRUE(path.empty());
  FakeEngineState* engine = LoadedFakeEngine();
  ASSERT_NE(engine, nullptr);
  EXPECT_EQ(engine->initializeCalls, 1);
  EXPECT_EQ(engine->moduleRecord, &g_vantor);
  EXPECT_EQ(engine->path, u"" QAE_FAKE_ENGINE_DIR "/");
  ASSERT_EQ(engine->arguments.size(), 2u);
  EXPECT_EQ(engine->arguments[0], u"g_customParentHWND=10");
  EXPECT_EQ(engine->arguments[1].rfind(u"g_moduleNegatives=\t\t\t\t", 0), 0u);
  EXPECT_EQ(engine->arguments[1].substr(engine->arguments[1].size() - 2), u"; ");

  // Ready with no record: running, but nothing taken.
  engine->giveRecord = false;
  EXPECT_TRUE(IsQuillonRunning());
  EXPECT_EQ(g_engineApi, nullptr);

  // A wait of no time still makes one round: a test, a pause for pending work and a sleep.
  engine->testsUntilReady = 5;
  EXPECT_FALSE(WaitUntilQuillonIsRunning(0));
  EXPECT_EQ(engine->testsUntilReady, 4);
  EXPECT_EQ(g_windowSystem.waits, 1);

  // The asynchronous start: two tests answer "not yet", the third gives the tables. Each round
  // in between serves one piece of the host's pending work.
  engine->giveRecord = true;
  engine->testsUntilReady = 2;
  std::vector<int> served;
  for (int work = 1; work <= 3; ++work) g_windowSystem.pending.push_back([&served, work] { served.push_back(work); });
  EXPECT_TRUE(WaitUntilQuillonIsRunning(5));
  EXPECT_EQ(served, (std::vector<int>{1, 2}));
  EXPECT_EQ(g_windowSystem.pending.size(), 1u);
  g_windowSystem.pending.clear();
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
  // Under the ids of the framework's records; the two releases forward to the saved functions
  // for the time of the shutdown.
  EXPECT_EQ(engine->overrideIds, (std::vector<uint64_t>{11, 12, 21, 22, 31, 32, 41, 42}));
  EXPECT_EQ(engine->frameworkFrees, 1);
  EXPECT_EQ(engine->frameworkSecondFrees, 1);
  EXPECT_FALSE(IsQuillonRunning());
  EXPECT_FALSE(UnloadQuillon(false));
  g_engineApi = nullptr;
}

}  // namespace
