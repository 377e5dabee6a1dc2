#include "plugin/engine/engine_location.h"

#include <cstdlib>

#include "plugin/host/host_text.h"
#include "plugin/host/plugin_folder.h"
#include "plugin/platform/file_system.h"
#include "plugin/text/encodings.h"

namespace {

std::string ParentFolder(std::string folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  const size_t slash = folder.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : folder.substr(0, slash);
}

std::string AppFolder(SuiteHandler& suites, AEGP_PluginID pluginId) {
  std::u16string app;
  const auto* utility = suites.Suite<AEGP_UtilitySuite13>(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion13);
  AEGP_MemHandle handle = nullptr;
  if (utility->AEGP_GetPluginPaths(pluginId, AEGP_GetPathTypes_APP, &handle) == A_Err_NONE &&
      ReadUtf16Handle(suites, handle, &app) == A_Err_NONE && !app.empty()) {
    return EncodeUtf8(app);
  }
  // The plug-in lies in <app>/Plug-ins/Quillon by Vantor/.
  return ParentFolder(ParentFolder(PluginFolderOfThisLibrary()));
}

}  // namespace

std::string EngineFolderFor(const std::string& appFolder, const std::string& overrideFolder) {
  const std::string folder = overrideFolder.empty() ? JoinPath(ParentFolder(appFolder), kEngineFolderName)
                                                    : overrideFolder;
  return folder.back() == '/' ? folder : folder + "/";
}

std::u16string EngineInstallFolder(SuiteHandler& suites, AEGP_PluginID pluginId) {
  const char* overrideFolder = std::getenv("QUILLON_ENGINE_DIR");
  if (overrideFolder && *overrideFolder) return DecodeUtf8(EngineFolderFor("", overrideFolder));
  return DecodeUtf8(EngineFolderFor(AppFolder(suites, pluginId), ""));
}
