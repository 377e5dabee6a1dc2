// The engine's entry points. The start runs on a thread of the engine's own:
// it looks up the program's quillon::ory_main in the image that holds the
// module record, hands it the API record, and only then reports ready, so that
// the program's tables are filled before IsQuillonInitialized turns true.
#include <dlfcn.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "quillon/api/job_queue.h"
#include "quillon/api/tables.h"
#include "quillon/model/value.h"

#define QUILLON_EXPORT extern "C" __attribute__((visibility("default")))

namespace quillon {
namespace {

// quillon::ory_main(int, void*, void*, void*) as the program's image names it.
constexpr const char* kOryMainSymbol = "_ZN7quillon8ory_mainEiPvS0_S0_";

// The install folder that the engine lends a module at start, as the Filename
// handed to ory_main; it lives until the module releases its resources (Lr).
struct FilenameRelease {
  void operator()(Filename* file) const {
    ReleasePath(*file);
    delete file;
  }
};

struct StartRecord {
  void* module = nullptr;
  std::unique_ptr<Filename, FilenameRelease> folder;
  StartRecord(void* owner, const std::u16string& path) : module(owner), folder(new Filename{nullptr}) {
    AssignPath(*folder, ToUtf8(path));
  }
};

struct EngineState {
  std::mutex mutex;
  std::thread starter;
  std::atomic<bool> ready{false};
  bool started = false;
  // Set when the program accepted the start, so that it gets the end too.
  OryMainFunc program = nullptr;
  std::vector<StartRecord> modules;

  ~EngineState() {
    if (starter.joinable()) starter.join();
  }
};

EngineState& State() {
  static EngineState state;
  return state;
}

OryMainFunc FindOryMain(void* moduleRecord) {
  Dl_info info{};
  if (moduleRecord && dladdr(moduleRecord, &info) != 0 && info.dli_fname) {
    if (void* image = dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD)) {
      void* symbol = dlsym(image, kOryMainSymbol);
      dlclose(image);
      if (symbol) return reinterpret_cast<OryMainFunc>(symbol);
    }
  }
  return reinterpret_cast<OryMainFunc>(dlsym(RTLD_DEFAULT, kOryMainSymbol));
}

void RunStart(void* moduleRecord, Filename* installFolder) {
  EngineState& state = State();
  if (OryMainFunc oryMain = FindOryMain(moduleRecord)) {
    int32_t result = oryMain(kOryMainStart, const_cast<QuillonApi*>(&ApiRecord()), nullptr, installFolder);
    std::lock_guard lock(state.mutex);
    if (result == 1) state.program = oryMain;
  }
  state.ready.store(true);
}

// The core framework's methods that a program replaces for the time after the engine, with
// the interface each belongs to. This engine has no weak references and no diagnostics to
// show; its memory release is the C library's.
void FrameworkFree(void* block) { std::free(block); }
void FrameworkNothing(void*) {}

QuillonOverride g_frameworkMethods[] = {
    {{0x9d61a4c2e03b7f15, 0x41c8e2b07a5d3f96}, "Free@fd4f2d19abfff044", reinterpret_cast<void*>(&FrameworkFree)},
    {{0x2b7e5f08c4d19a63, 0x8f0c3a6e5b2d7140},
     "PrivateShowSynchronizedHashMapDiagnostics@3871f4377739d6f6",
     reinterpret_cast<void*>(&FrameworkNothing)},
    {{0x9d61a4c2e03b7f15, 0x41c8e2b07a5d3f97},
     "RemoveWeakReference@f0540d7d9f694e77",
     reinterpret_cast<void*>(&FrameworkNothing)},
    {{0x6a3f9e1d7c2b0845, 0xe57b2c9d1f4a6083},
     "PrivateHandleUnreferencedType@852138fc3d484eb1",
     reinterpret_cast<void*>(&FrameworkNothing)},
};

// A program's overrides name the four methods in the framework's order, under the interface
// ids of the framework's records.
bool ValidOverrides(const QuillonOverrideBlock* overrides) {
  if (!overrides || !overrides->items || overrides->count != 4) return false;
  for (int64_t i = 0; i < 4; ++i) {
    const QuillonOverride& item = overrides->items[i];
    const QuillonOverride& record = g_frameworkMethods[i];
    if (!item.methodName || std::string(item.methodName) != record.methodName || !item.function ||
        item.interfaceId[0] != record.interfaceId[0] || item.interfaceId[1] != record.interfaceId[1])
      return false;
  }
  return true;
}

void FreeModuleResources(void* moduleRecord) {
  EngineState& state = State();
  std::lock_guard lock(state.mutex);
  std::erase_if(state.modules, [moduleRecord](const StartRecord& record) { return record.module == moduleRecord; });
}

}  // namespace

const ORYOS_Lr& LrTable() {
  static const ORYOS_Lr table{.FreeModuleResources = FreeModuleResources};
  return table;
}

}  // namespace quillon

extern "C" {
__attribute__((visibility("default"))) extern const QuillonOverrideBlock QuillonFrameworkMethods;
const QuillonOverrideBlock QuillonFrameworkMethods = {quillon::g_frameworkMethods, 4};
}

// The engine takes no start arguments of its own; secondPath and the argument
// block are the program's business with the real engine.
QUILLON_EXPORT bool QuillonInitialize(void* moduleRecord, const char* startText, const char16_t* path,
                                      const char16_t*, const QuillonArguments*) {
  using namespace quillon;
  if (!startText) return false;
  EngineState& state = State();
  std::lock_guard lock(state.mutex);
  if (state.started) return true;
  state.modules.emplace_back(moduleRecord, path ? std::u16string(path) : std::u16string());
  state.started = true;
  state.starter = std::thread(RunStart, moduleRecord, state.modules.back().folder.get());
  return true;
}

QUILLON_EXPORT bool IsQuillonInitialized(const QuillonApi** record) {
  bool ready = quillon::State().ready.load();
  if (ready && record) *record = &quillon::ApiRecord();
  return ready;
}

QUILLON_EXPORT bool QuillonShutdown(const QuillonOverrideBlock* overrides, void* moduleRecord, bool keepRunning) {
  using namespace quillon;
  EngineState& state = State();
  if (state.starter.joinable()) state.starter.join();
  OryMainFunc program = nullptr;
  {
    std::lock_guard lock(state.mutex);
    program = state.program;
    state.program = nullptr;
  }
  if (program) program(kOryMainEnd, const_cast<QuillonApi*>(&ApiRecord()), nullptr, nullptr);
  // The jobs the program queued call into it, so they all run before it goes.
  StopMainThread();
  FreeModuleResources(moduleRecord);
  if (!keepRunning) {
    std::lock_guard lock(state.mutex);
    state.ready.store(false);
    state.started = false;
  }
  return ValidOverrides(overrides);
}
