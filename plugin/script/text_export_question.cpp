#include "plugin/script/text_export_question.h"

#include <json/json.h>

#include "plugin/script/dialog_script.h"
#include "plugin/script/run_script.h"

std::string WithTextExportSettings(const std::string& dialog) {
  Json::Value settings;
  settings["settings"]["selectedTextExport"] = 0;
  Json::StyledWriter writer;
  return "var jsonBlob = \"\"\"" + writer.write(settings) + "\"\"\";\n" + dialog;
}

A_Err ReadTextExportReply(const std::string& reply, uint8_t* choice) {
  if (reply == "cancel") return PF_Interrupt_CANCEL;
  if (reply.size() <= 12) return A_Err_NONE;
  Json::Value root;
  Json::Reader reader;
  if (!reader.parse(reply, root, false) || !root.isObject()) return A_Err_NONE;
  const Json::Value settings = root.get("settings", Json::Value());
  const Json::Value selected = settings.isObject() ? settings.get("selectedTextExport", 0) : Json::Value(0);
  *choice = selected.isConvertibleTo(Json::intValue) && selected.asInt() == 1 ? 1 : 0;
  return A_Err_NONE;
}

A_Err AskTextExport(CTI* cti, uint8_t* choice) {
  if (!cti) return PF_Err_INTERNAL_STRUCT_DAMAGED;
  std::string dialog;
  if (const A_Err err = LoadDialogScript(cti, cti->pluginId, "dlg_textexport.jsx", &dialog)) return err;
  AEGP_MemHandle result = nullptr;
  AEGP_MemHandle error = nullptr;
  const std::string script = WithTextExportSettings(dialog);
  if (const A_Err err = RunScript(*cti, cti->pluginId, kAEGPUtilitySuiteVersion10, script, &result, &error)) {
    FreeScriptHandles(*cti, result, error);
    return err;
  }
  std::string reply;
  const A_Err freed = ReadReply(*cti, result, &reply);
  FreeScriptHandles(*cti, nullptr, error);
  const A_Err answer = ReadTextExportReply(reply, choice);
  return answer ? answer : freed;
}
