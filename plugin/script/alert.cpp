#include "plugin/script/alert.h"

#include "plugin/host/host_text.h"
#include "plugin/script/run_script.h"
#include "plugin/text/script_literal.h"

std::string AlertScript(const std::string& message) {
  return "var dlg = new Window('dialog', 'Alert!');\tdlg.msgPnl = dlg.add('panel', undefined, undefined);"
         "\tdlg.msgPnl.alignment = ['fill', 'fill'];\tdlg.msgPnl.preferredSize = [100, -1];"
         "\tdlg.msgPnl.titleSt = dlg.msgPnl.add('statictext', undefined,'" +
         ScriptLiteralText(message, '\'') + "');\tdlg.okBtn = dlg.add('button', undefined, 'OK');\tdlg.show();";
}

bool ShowAlert(CTI* cti, const std::string& message) {
  const int32_t event = cti->generalCall ? cti->generalCall->event : eQuillon_AEGP_NotSet;
  // While the host reads a file in or restores options it may not run scripts.
  if (event == eQuillon_AEGP_InitInSpecFromFile || event == eQuillon_AEGP_InflateOptions) {
    cti->ReportMessage(ToHostUtf16(message));
    return true;
  }
  cti->CloseProgress();
  AEGP_MemHandle result = nullptr;
  AEGP_MemHandle error = nullptr;
  const A_Err err = RunScript(*cti, cti->pluginId, kAEGPUtilitySuiteVersion10, AlertScript(message), &result, &error);
  const A_Err freed = FreeScriptHandles(*cti, result, error);
  return !err && !freed;
}
