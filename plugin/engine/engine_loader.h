#pragma once
// Loading, starting, waiting for and shutting down the engine library. The plug-in does
// not link against the engine: it loads it from its install folder, starts it with a list
// of arguments, waits until it reports that it runs, and takes its tables of operations
// (engine_tables.h). Sibling plug-ins of the package call the same exported functions, so
// that one engine serves them all.
//
// Nothing of the engine's types (EngineString, Filename, scene nodes) may be made before
// WaitUntilQuillonIsRunning has returned true.
#include <cstdint>
#include <string>

#include "plugin/engine/engine_ops.h"
#include "sdk/aegp_entry.h"

// The program's module record for the core framework; the engine finds ory_main in the
// library that holds it.
struct VantorModuleRecord {
  const char* name;
  int32_t apiVersion;
};

// How the core framework yields the processor while it waits.
struct CpuYieldDelegate {
  void (*yield)(void* context);
  void* context;
};

// Start arguments as UTF-8 texts; a null entry stays null.
struct QuillonStartArguments {
  const char* const* items;
  int64_t count;
};

AEGP_EXPORT extern VantorModuleRecord g_vantor;
AEGP_EXPORT extern CpuYieldDelegate g_CpuYieldDelegate;

// Loads the library from `path` (the install folder with its separator) and starts it.
// A second call after a successful one does nothing and gives true; a failed one can be
// repeated and redoes only what is missing.
AEGP_EXPORT bool LoadQuillon(const std::u16string& path, const char* startText, const std::u16string& secondPath,
                             const QuillonStartArguments& args);
// True once the engine has started; each true test takes the tables again.
AEGP_EXPORT bool IsQuillonRunning();
// Tests in rounds of 100 ms until the engine runs (true) or more than `seconds` of rounds have
// passed, serving one piece of the host's pending work each round.
AEGP_EXPORT bool WaitUntilQuillonIsRunning(int32_t seconds);
// Shuts the engine down and unloads it; false when nothing was loaded.
AEGP_EXPORT bool UnloadQuillon(bool keepRunning);

// The plug-in's own start: the arguments it passes, then LoadQuillon. `path` is emptied.
bool StartEngine(std::u16string& path);

// The library file of the engine in its install folder.
std::string EngineLibraryFileName();
