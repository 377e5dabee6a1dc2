#pragma once
// Where the plug-in's files lie: "Plug-ins/Quillon by Vantor" in the host's application
// folder, with the string files and dialog scripts under "support/res".
#include <string>

#include "plugin/host/suite_handler.h"

inline constexpr char kPluginFolderInApp[] = "Plug-ins/Quillon by Vantor";

// The plug-in folder (UTF-8, no trailing separator) from the host's application folder.
// An error of the host is returned and `folder` stays empty.
A_Err GetPluginFolder(SuiteHandler& suites, AEGP_PluginID pluginId, std::string* folder);

// The folder of the plug-in's own library file, for the times when no host can be asked.
std::string PluginFolderOfThisLibrary();
