#include "plugin/host/target_file.h"

#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/host/active_composition.h"
#include "plugin/host/plugin_globals.h"
#include "plugin/host/project_path.h"
#include "plugin/script/run_script.h"
#include "plugin/text/encodings.h"
#include "plugin/text/load_string_table.h"
#include "plugin/text/message_ids.h"
#include "plugin/text/path_text.h"
#include "plugin/text/script_literal.h"

namespace {

// The default name: the composition's, unchanged, with the suffix added.
std::u16string DefaultFileName(CTI* cti, AEGP_ItemH item) {
  std::u16string name;
  if (GetItemName(*cti, g_pluginId, item, &name) != A_Err_NONE || name.empty()) return u"untitled.ory";
  return name + u".ory";
}

// The proposed file in the project's folder, as the script's File wants it.
std::string ProposedScriptPath(const std::u16string& projectPath, const std::u16string& defaultName) {
  OwnedFilename proposed(EncodeUtf8(projectPath));
  OwnedFilename leaf(EncodeUtf8(defaultName));
  t_ORYOS_Fn->SetFile(&proposed.value, &leaf.value);
  OwnedString text;
  t_ORYOS_Fn->GetString(text.get(), &proposed.value);
  return EncodeUtf8(ToScriptPath(DecodeUtf8(ToUtf8(*text.get()))));
}

}  // namespace

std::string SaveDialogScript(const std::string& scriptPath) {
  return "function openSaveDialog() { \tvar defaultFilename = new File(\"" + ScriptLiteralText(scriptPath, '"') +
         "\"); \tvar f = defaultFilename.saveDlg(\"ORY Exporter\", \"*.ory\"); \tif (f == null) return \"\"; "
         "\treturn f.fsName; \t} \topenSaveDialog();";
}

A_Err ChooseTargetFile(CTI* cti, Filename* target) {
  std::u16string projectPath;
  GetProjectPath(*cti, &projectPath);
  if (projectPath.empty()) {
    ReportError(kCodeSaveBeforeExport, cti);
    return A_Err_NONE;
  }
  const ActiveComposition active = FindActiveComposition(*cti);
  if (!active.item) {
    cti->AddError(2, "No composition selected.");
    return active.err;
  }
  if (!active.isComposition) {
    cti->AddError(2, "Selected item is not a composition.");
    return active.err;
  }
  if (!active.comp) {
    cti->AddError(2, "Failed to get composition from item.");
    return active.err;
  }
  const std::string script = SaveDialogScript(ProposedScriptPath(projectPath, DefaultFileName(cti, active.item)));
  AEGP_MemHandle result = nullptr;
  if (const A_Err err = RunScript(*cti, g_pluginId, kAEGPUtilitySuiteVersion10, script, &result, nullptr)) {
    FreeScriptHandles(*cti, result, nullptr);
    return err;
  }
  std::string chosen;
  const A_Err err = ReadReply(*cti, result, &chosen);
  if (err || chosen.empty()) return err;
  OwnedFilename file(chosen);
  if (!t_ORYOS_Fn->IsFilled(&file.value)) return A_Err_NONE;
  if (!t_ORYOS_Fn->CheckSuffix(&file.value, "ory")) t_ORYOS_Fn->SetSuffix(&file.value, "ory");
  t_ORYOS_Fn->FilenameCopy(&file.value, target);
  return A_Err_NONE;
}
