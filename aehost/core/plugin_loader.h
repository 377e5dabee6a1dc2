// Finding and loading a plug-in: the host's application folder holds a
// "Plug-ins" folder; a plug-in library is opened, its entry point looked up
// and called with the host's basic suite.
#pragma once

#include <string>

#include "sdk/aegp.h"

namespace aehost {

constexpr const char* kPluginSubPath = "Plug-ins/Quillon by Vantor/quillon_ae.so";

// The application folder: `override` if not empty, else the environment
// variable AEHOST_APP_DIR, else lib/quillon-ae/AfterEffects beside the
// folder that holds the aehost executable.
std::string FindAppDir(const std::string& override, const std::string& executablePath);

struct LoadedPlugin {
    void* library = nullptr;
    AEGP_PluginID id = 0;
    std::string path;
};

// Opens the library and runs its entry point. False with a message naming
// the library when it cannot be opened, has no entry point, or the entry
// point returns an error (the plug-in then stays loaded, as its hooks may
// already be registered).
bool LoadPlugin(const std::string& libraryPath, LoadedPlugin* plugin, std::string* error);

void UnloadPlugin(LoadedPlugin& plugin);

}  // namespace aehost
