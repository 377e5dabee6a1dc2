// An engine library for the loader's tests: it starts asynchronously (it reports that it
// runs only after a number of tests), hands over a record of placeholder tables, and tells
// the test through FakeEngineState what the loader passed it.
#include "fake_engine_state.h"

#define FAKE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

FakeEngineState g_state;
char g_placeholderTables[kEngineTableCount];

}  // namespace

FAKE_EXPORT FakeEngineState* FakeEngine() { return &g_state; }

FAKE_EXPORT bool QuillonInitialize(void* moduleRecord, const char* startText, const char16_t* path,
                                   const char16_t* /*secondPath*/, const QuillonArguments* args) {
  ++g_state.initializeCalls;
  g_state.moduleRecord = moduleRecord;
  g_state.startText = startText;
  g_state.path = path;
  g_state.arguments.clear();
  for (int64_t i = 0; i < args->count; ++i) g_state.arguments.emplace_back(args->items[i] ? args->items[i] : u"");
  g_state.api.version = kQuillonApiVersion;
  for (int i = 0; i < kEngineTableCount; ++i) g_state.api.tables[i] = &g_placeholderTables[i];
  return true;
}

FAKE_EXPORT bool IsQuillonInitialized(const QuillonApi** record) {
  if (g_state.testsUntilReady > 0) {
    --g_state.testsUntilReady;
    return false;
  }
  *record = g_state.giveRecord ? &g_state.api : nullptr;
  return true;
}

FAKE_EXPORT bool QuillonShutdown(const QuillonOverrideBlock* overrides, void* /*moduleRecord*/, bool /*keepRunning*/) {
  ++g_state.shutdownCalls;
  g_state.overrideNames.clear();
  for (int64_t i = 0; i < overrides->count; ++i) g_state.overrideNames.emplace_back(overrides->items[i].methodName);
  return true;
}
