#include "plugin/engine/engine_loader.h"

#include <chrono>
#include <new>
#include <thread>
#include <vector>

#include "plugin/engine/engine_tables.h"
#include "plugin/log/debug_log.h"
#include "plugin/platform/dynamic_library.h"
#include "plugin/text/encodings.h"

namespace {

void YieldProcessor(void*) { std::this_thread::yield(); }

// What the package passes the engine at start.
constexpr char kStartText[] = "quillon_ae";
// Engine modules that a plug-in inside the host does not need.
constexpr const char* kModuleNegatives[] = {"sync_bridge", "team_render", "asset_browser"};

void* g_engineModule = nullptr;
QuillonInitializeFunc g_pfnInitialize = nullptr;
IsQuillonInitializedFunc g_pfnIsInitialized = nullptr;
QuillonShutdownFunc g_pfnShutdown = nullptr;

int32_t g_startCount = 0;
Filename* g_startPath = nullptr;

// The framework methods that the engine must not call into the plug-in after it has gone.
// The plug-in keeps no framework objects of its own whose clean-up would need the engine's
// release functions, so each replacement has nothing to do.
void AfterShutdown(void*) {}

template <class Func>
bool Resolve(const char* name, Func& function) {
  if (!function) function = reinterpret_cast<Func>(FindLibrarySymbol(g_engineModule, name));
  return function != nullptr;
}

std::vector<std::u16string> ToUtf16Arguments(const QuillonStartArguments& args, std::vector<char16_t*>& pointers) {
  std::vector<std::u16string> copies;
  copies.reserve(static_cast<size_t>(args.count));
  for (int64_t i = 0; i < args.count; ++i) {
    copies.push_back(args.items[i] ? DecodeUtf8(args.items[i]) : std::u16string());
  }
  for (int64_t i = 0; i < args.count; ++i) pointers.push_back(args.items[i] ? copies[i].data() : nullptr);
  return copies;
}

void TakeStartPath(const Filename* path) {
  g_startPath = new (std::nothrow) Filename{};
  if (!g_startPath) return;
  t_ORYOS_Fn->FilenameInit(g_startPath);
  t_ORYOS_Fn->FilenameCopy(path, g_startPath);
}

void DropStartPath() {
  if (!g_startPath) return;
  t_ORYOS_Fn->FilenameFree(g_startPath);
  delete g_startPath;
  g_startPath = nullptr;
}

}  // namespace

VantorModuleRecord g_vantor = {"quillon_ae", kQuillonApiVersion};
CpuYieldDelegate g_CpuYieldDelegate = {&YieldProcessor, nullptr};

std::string EngineLibraryFileName() { return LibraryFileName("quillon"); }

bool LoadQuillon(const std::u16string& path, const char* startText, const std::u16string& secondPath,
                 const QuillonStartArguments& args) {
  if (!startText) return false;
  if (g_pfnIsInitialized) return true;
  if (!g_engineModule) {
    std::string error;
    g_engineModule = LoadLibraryAt(EncodeUtf8(path) + EngineLibraryFileName(), &error);
    if (!g_engineModule) {
      LogEvent("LoadQuillon", "cannot load the engine: " + error);
      return false;
    }
  }
  // Every entry point is looked up, also after one is missing, so that the log names them all.
  bool found = Resolve("QuillonInitialize", g_pfnInitialize);
  found = Resolve("IsQuillonInitialized", g_pfnIsInitialized) && found;
  found = Resolve("QuillonShutdown", g_pfnShutdown) && found;
  if (!found) return false;
  try {
    std::vector<char16_t*> pointers;
    const std::vector<std::u16string> copies = ToUtf16Arguments(args, pointers);
    const QuillonArguments block{pointers.data(), static_cast<int64_t>(pointers.size()),
                                 static_cast<int64_t>(pointers.capacity())};
    return g_pfnInitialize(&g_vantor, startText, path.c_str(), secondPath.c_str(), &block);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

bool IsQuillonRunning() {
  if (!g_pfnIsInitialized) return false;
  const QuillonApi* api = nullptr;
  const bool running = g_pfnIsInitialized(&api);
  if (running && api) FillEngineTables(api);
  return running;
}

// The host's main thread is blocked for the wait; this system gives the plug-in no
// message queue of that thread to serve in between, so a round is one test and a pause.
bool WaitUntilQuillonIsRunning(int32_t seconds) {
  for (int32_t waited = 0;;) {
    if (IsQuillonRunning()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    waited += 100;
    if (static_cast<double>(waited) > seconds * 1000.0) return false;
  }
}

bool UnloadQuillon(bool keepRunning) {
  if (!g_pfnShutdown) return false;
  QuillonOverride overrides[] = {
      {{0, 0}, "Free@fd4f2d19abfff044", reinterpret_cast<void*>(&AfterShutdown)},
      {{0, 0}, "PrivateShowSynchronizedHashMapDiagnostics@3871f4377739d6f6", reinterpret_cast<void*>(&AfterShutdown)},
      {{0, 0}, "RemoveWeakReference@f0540d7d9f694e77", reinterpret_cast<void*>(&AfterShutdown)},
      {{0, 0}, "PrivateHandleUnreferencedType@852138fc3d484eb1", reinterpret_cast<void*>(&AfterShutdown)},
  };
  const QuillonOverrideBlock block{overrides, 4};
  g_pfnShutdown(&block, &g_vantor, keepRunning);
  g_pfnInitialize = nullptr;
  g_pfnIsInitialized = nullptr;
  g_pfnShutdown = nullptr;
  const bool unloaded = FreeLibrary(g_engineModule);
  g_engineModule = nullptr;
  return unloaded;
}

bool StartEngine(std::u16string& path) {
  // The host's main window is not reachable from a plug-in on this system, so the engine
  // is told of no parent window.
  const std::string parentWindow = "g_customParentHWND=";
  std::string negatives = "g_moduleNegatives=";
  for (const char* module : kModuleNegatives) negatives += std::string("\t\t\t\t") + module + "; ";
  const char* items[] = {parentWindow.c_str(), negatives.c_str()};
  const bool loaded = LoadQuillon(path, kStartText, std::u16string(), {items, 2});
  path.clear();
  return loaded;
}

namespace quillon {

AEGP_EXPORT int32_t ory_main(int32_t action, void* p1, void* /*p2*/, void* p3) {
  switch (action) {
    case kOryMainStart:
      if (++g_startCount == 1) {
        const int32_t version = FillEngineTables(static_cast<const QuillonApi*>(p1));
        if (version < kQuillonApiVersion || !p3) return -3;
        TakeStartPath(static_cast<const Filename*>(p3));
      }
      return 1;
    case kOryMainEnd:
      if (g_startCount-- == 1) {
        if (t_ORYOS_Lr && t_ORYOS_Lr->FreeModuleResources) t_ORYOS_Lr->FreeModuleResources(&g_vantor);
        DropStartPath();
      }
      return 1;
    case kOryMainQuery:
      return 5;
    case kOryMainPluginStart:
      return 1;  // the plug-in has nothing to start inside the engine
    default:  // plug-in messages included: this plug-in handles none
      return -1;
  }
}

}  // namespace quillon
