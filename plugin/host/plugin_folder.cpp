#include "plugin/host/plugin_folder.h"

#include "plugin/host/host_text.h"
#include "plugin/platform/file_system.h"
#include "plugin/platform/module_path.h"
#include "plugin/text/encodings.h"

A_Err GetPluginFolder(SuiteHandler& suites, AEGP_PluginID pluginId, std::string* folder) {
  folder->clear();
  const auto* utility = suites.Suite<AEGP_UtilitySuite13>(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion13);
  AEGP_MemHandle handle = nullptr;
  if (const A_Err err = utility->AEGP_GetPluginPaths(pluginId, AEGP_GetPathTypes_APP, &handle)) return err;
  std::u16string app;
  if (const A_Err err = ReadUtf16Handle(suites, handle, &app)) return err;
  *folder = JoinPath(EncodeUtf8(app), kPluginFolderInApp);
  return A_Err_NONE;
}

std::string PluginFolderOfThisLibrary() {
  const std::string library = ModulePathOf(reinterpret_cast<const void*>(&PluginFolderOfThisLibrary));
  const size_t slash = library.find_last_of('/');
  return slash == std::string::npos ? "" : library.substr(0, slash);
}
