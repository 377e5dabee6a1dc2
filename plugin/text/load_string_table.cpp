#include "plugin/text/load_string_table.h"

#include <cstring>

#include "plugin/host/host_text.h"
#include "plugin/host/plugin_folder.h"
#include "plugin/text/string_table.h"

namespace {

std::string HostLanguage(SuiteHandler& suites) {
  const auto* app = suites.Suite<PFAppSuite7>(kPFAppSuite, kPFAppSuiteVersion7);
  A_char tag[PF_APP_LANG_TAG_SIZE] = {};
  if (app->PF_AppGetLanguage(tag) != A_Err_NONE) return "";
  return std::string(tag, strnlen(tag, sizeof tag));
}

void ShowUnreadable(SuiteHandler& suites, AEGP_PluginID pluginId) {
  const std::optional<std::u16string> text = GetStringU16(kStrFileRead);
  if (!text) return;
  const auto* utility = suites.Suite<AEGP_UtilitySuite13>(kAEGPUtilitySuite, kAEGPUtilitySuiteVersion13);
  utility->AEGP_ReportInfoUnicode(pluginId, HostText(*text));
}

}  // namespace

void LoadStringTable(SuiteHandler* suites, AEGP_PluginID pluginId) {
  if (!suites) {
    LoadStringTableFile(PluginFolderOfThisLibrary(), "en_US");
    return;
  }
  try {
    std::string folder;
    if (GetPluginFolder(*suites, pluginId, &folder) != A_Err_NONE) return;
    if (LoadStringTableFile(folder, HostLanguage(*suites)) == StringTableLoad::kUnreadable) {
      ShowUnreadable(*suites, pluginId);
    }
  } catch (A_Err) {
    // Without the suites there are no texts beside the built-in ones; that is not fatal.
  }
}

void ReportError(int32_t code, CTI* cti) {
  if (!cti) return;
  cti->CloseProgress();
  if (const std::optional<std::u16string> text = GetStringU16(MessageForCode(code))) cti->ReportMessage(*text);
}
