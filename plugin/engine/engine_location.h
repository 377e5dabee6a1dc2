#pragma once
// Where the plug-in finds the engine on this system. The engine's install folder,
// "Vantor Orrery Studio 2024", stands beside the host's application folder (the folder
// that holds "Plug-ins"), both in the build tree and after installation:
//
//   .../lib/quillon-ae/AfterEffects/Plug-ins/Quillon by Vantor/quillon_ae.so
//   .../lib/quillon-ae/Vantor Orrery Studio 2024/libquillon.so
//
// The environment variable QUILLON_ENGINE_DIR, when set and not empty, names the install
// folder instead.
#include <string>

#include "plugin/host/suite_handler.h"

inline constexpr char kEngineFolderName[] = "Vantor Orrery Studio 2024";

// The install folder with a trailing separator, as the loader wants it. The application
// folder comes from the host, or from the plug-in's own place when the host cannot say.
std::u16string EngineInstallFolder(SuiteHandler& suites, AEGP_PluginID pluginId);

// The rule itself: `overrideFolder` when not empty, else the folder beside `appFolder`.
std::string EngineFolderFor(const std::string& appFolder, const std::string& overrideFolder);
