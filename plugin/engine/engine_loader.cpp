#include "plugin/engine/engine_loader.h"

#include <cstring>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "plugin/engine/engine_tables.h"
#include "plugin/log/debug_log.h"
#include "plugin/platform/dynamic_library.h"
#include "plugin/platform/window_system.h"
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

// One round of the wait: a test, a pause for the host's pending work, and a sleep.
constexpr int32_t kWaitRoundMilliseconds = 100;

// The core framework's two release functions, kept for the time of the shutdown: the program's
// static objects that run their clean-up then still reach them through the overrides.
using FrameworkRelease = void (*)(void* block);
FrameworkRelease g_savedFree = nullptr;
FrameworkRelease g_savedSecondFree = nullptr;

constexpr char kFreeMethod[] = "Free@fd4f2d19abfff044";
constexpr char kDiagnosticsMethod[] = "PrivateShowSynchronizedHashMapDiagnostics@3871f4377739d6f6";
constexpr char kWeakReferenceMethod[] = "RemoveWeakReference@f0540d7d9f694e77";
constexpr char kUnreferencedTypeMethod[] = "PrivateHandleUnreferencedType@852138fc3d484eb1";

void ForwardFree(void* block) {
  if (g_savedFree) g_savedFree(block);
}
void ForwardSecondFree(void* block) {
  if (g_savedSecondFree) g_savedSecondFree(block);
}
void DoNothing(void*) {}

// The framework's own record of a method, by name; null when it keeps none.
const QuillonOverride* FrameworkMethod(const char* name) {
  const auto* records =
      static_cast<const QuillonOverrideBlock*>(FindLibrarySymbol(g_engineModule, kFrameworkMethodsSymbol));
  if (!records || !records->items) return nullptr;
  for (int64_t i = 0; i < records->count; ++i) {
    const QuillonOverride& record = records->items[i];
    if (record.methodName && std::strcmp(record.methodName, name) == 0) return &record;
  }
  return nullptr;
}

FrameworkRelease SavedRelease(const char* method) {
  const QuillonOverride* record = FrameworkMethod(method);
  return record ? reinterpret_cast<FrameworkRelease>(record->function) : nullptr;
}

// A replacement under the interface id the framework's record gives the method.
QuillonOverride OverrideOf(const char* method, FrameworkRelease replacement) {
  QuillonOverride item{{0, 0}, method, reinterpret_cast<void*>(replacement)};
  if (const QuillonOverride* record = FrameworkMethod(method)) {
    item.interfaceId[0] = record->interfaceId[0];
    item.interfaceId[1] = record->interfaceId[1];
  }
  return item;
}

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

// The wait blocks the host's main thread, so each round serves one piece of the host's pending
// work. Only the sleeps are counted: a round with a full pause takes twice its length.
bool WaitUntilQuillonIsRunning(int32_t seconds) {
  for (int64_t waited = 0;;) {
    if (IsQuillonRunning()) return true;
    if (WaitForThreadInput(kWaitRoundMilliseconds)) DispatchOnePendingMessage();
    SleepMilliseconds(kWaitRoundMilliseconds);
    waited += kWaitRoundMilliseconds;
    if (static_cast<double>(waited) > seconds * 1000.0) return false;
  }
}

bool UnloadQuillon(bool keepRunning) {
  if (!g_pfnShutdown) return false;
  g_savedFree = SavedRelease(kFreeMethod);
  g_savedSecondFree = SavedRelease(kWeakReferenceMethod);
  QuillonOverride overrides[] = {
      OverrideOf(kFreeMethod, &ForwardFree),
      OverrideOf(kDiagnosticsMethod, &DoNothing),
      OverrideOf(kWeakReferenceMethod, &ForwardSecondFree),
      OverrideOf(kUnreferencedTypeMethod, &DoNothing),
  };
  const QuillonOverrideBlock block{overrides, 4};
  g_pfnShutdown(&block, &g_vantor, keepRunning);
  g_pfnInitialize = nullptr;
  g_pfnIsInitialized = nullptr;
  g_pfnShutdown = nullptr;
  const bool unloaded = FreeLibrary(g_engineModule);
  g_engineModule = nullptr;
  g_savedFree = nullptr;
  g_savedSecondFree = nullptr;
  return unloaded;
}

bool StartEngine(std::u16string& path) {
  // The engine's windows belong to the host's main window, when one is found.
  std::string parentWindow = "g_customParentHWND=";
  if (const std::optional<uint64_t> window = FindHostMainWindow()) parentWindow += std::to_string(*window);
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
