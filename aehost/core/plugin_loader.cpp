#include "aehost/core/plugin_loader.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>

#include "aehost/core/basic_suite.h"
#include "aehost/core/host.h"

namespace aehost {

namespace {

// The version of the host interface that plug-ins are told.
constexpr A_long kMajorVersion = 1;
constexpr A_long kMinorVersion = 0;

}  // namespace

std::string FindAppDir(const std::string& override, const std::string& executablePath) {
    if (!override.empty()) return override;
    if (const char* env = std::getenv("AEHOST_APP_DIR"); env && *env) return env;
    std::error_code ec;
    std::filesystem::path exe = std::filesystem::weakly_canonical(executablePath, ec);
    if (ec) exe = executablePath;
    return (exe.parent_path().parent_path() / "lib" / "quillon-ae" / "AfterEffects").lexically_normal().string();
}

bool LoadPlugin(const std::string& libraryPath, LoadedPlugin* plugin, std::string* error) {
    *plugin = {};
    void* library = dlopen(libraryPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        *error = "cannot load plug-in " + libraryPath + ": " + dlerror();
        return false;
    }
    auto entry = reinterpret_cast<AEGP_EntryPointFunc>(dlsym(library, AEGP_ENTRY_POINT_NAME));
    if (!entry) {
        *error = "plug-in " + libraryPath + " has no entry point " + AEGP_ENTRY_POINT_NAME;
        dlclose(library);
        return false;
    }
    PluginRecord record;
    record.id = g_host.nextPluginId++;
    record.name = std::filesystem::path(libraryPath).stem().string();
    g_host.plugins.push_back(record);
    g_host.pluginDirs[record.id] = std::filesystem::path(libraryPath).parent_path().string();
    plugin->library = library;
    plugin->id = record.id;
    plugin->path = libraryPath;
    AEGP_GlobalRefcon refcon = nullptr;
    const A_Err err = entry(BasicSuite(), kMajorVersion, kMinorVersion, record.id, &refcon);
    if (refcon) g_host.plugins.back().refcon = refcon;
    if (err) {
        *error = "entry point of plug-in " + libraryPath + " returned error " + std::to_string(err);
        return false;
    }
    return true;
}

void UnloadPlugin(LoadedPlugin& plugin) {
    if (plugin.library) dlclose(plugin.library);
    plugin.library = nullptr;
}

}  // namespace aehost
