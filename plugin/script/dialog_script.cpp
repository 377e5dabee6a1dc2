#include "plugin/script/dialog_script.h"

#include "plugin/host/host_text.h"
#include "plugin/host/plugin_folder.h"
#include "plugin/platform/file_system.h"
#include "plugin/text/encodings.h"
#include "plugin/text/string_table.h"

namespace {

void ShowUnreadable(CTI* cti) {
  if (const std::optional<std::u16string> text = GetStringU16(kStrFileRead)) cti->ReportMessage(*text);
}

}  // namespace

A_Err ReadTextFile(CTI* cti, const std::string& path, std::string* text) {
  text->clear();
  const std::optional<std::string> bytes = path.empty() ? std::nullopt : ReadFileBytes(path);
  if (!bytes) {
    ShowUnreadable(cti);
    return kReadTextFileFailed;
  }
  *text = EncodeUtf8(DecodeUtf8(*bytes));
  return A_Err_NONE;
}

A_Err LoadDialogScript(CTI* cti, AEGP_PluginID pluginId, const std::string& name, std::string* script) {
  script->clear();
  if (!cti) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  std::string folder;
  if (const A_Err err = GetPluginFolder(*cti, pluginId, &folder)) return err;
  if (name.empty()) return kReadTextFileNoMemory;
  const std::string dialogs = JoinPath(folder, "support/res/dialogs");
  const std::string paths[] = {JoinPath(dialogs, "strings/str_" + name), JoinPath(dialogs, "includes/JSON.jsx"),
                               JoinPath(dialogs, name)};
  std::string joined;
  for (const std::string& path : paths) {
    std::string text;
    if (const A_Err err = ReadTextFile(cti, path, &text)) return err;
    joined += text + "\n";
  }
  *script = std::move(joined);
  return A_Err_NONE;
}
