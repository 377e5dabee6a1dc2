// An engine library for the loader's tests: it starts asynchronously (it reports that it
// runs only after a number of tests), hands over a record of placeholder tables, and tells
// the test through FakeEngineState what the loader passed it.
#include "fake_engine_state.h"

#define FAKE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

FakeEngineState g_state;
char g_placeholderTables[kEngineTableCount];

void FrameworkFree(void*) { ++g_state.frameworkFrees; }
void FrameworkSecondFree(void*) { ++g_state.frameworkSecondFrees; }

QuillonOverride g_frameworkMethods[] = {
    {{11, 12}, "Free@fd4f2d19abfff044", reinterpret_cast<void*>(&FrameworkFree)},
    {{21, 22}, "PrivateShowSynchronizedHashMapDiagnostics@3871f4377739d6f6", nullptr},
    {{31, 32}, "RemoveWeakReference@f0540d7d9f694e77", reinterpret_cast<void*>(&FrameworkSecondFree)},
    {{41, 42}, "PrivateHandleUnreferencedType@852138fc3d484eb1", nullptr},
};

}  // namespace

extern "C" {
__attribute__((visibility("default"))) extern const QuillonOverrideBlock QuillonFrameworkMethods;
const QuillonOverrideBlock QuillonFrameworkMethods = {g_frameworkMethods, 4};
}

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
  g_state.overrideIds.clear();
  for (int64_t i = 0; i < overrides->count; ++i) {
    const QuillonOverride& item = overrides->items[i];
    g_state.overrideNames.emplace_back(item.methodName);
    g_state.overrideIds.push_back(item.interfaceId[0]);
    g_state.overrideIds.push_back(item.interfaceId[1]);
    // The framework's clean-up during the shutdown goes through the program's replacements.
    reinterpret_cast<void (*)(void*)>(item.function)(nullptr);
  }
  return true;
}
