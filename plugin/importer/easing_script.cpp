#include "plugin/importer/easing_script.h"

#include <cstdio>

#include "plugin/script/run_script.h"
#include "plugin/text/script_literal.h"

namespace {

// Six significant digits, as %g writes them: the host parses what the key ease dialog shows.
std::string Decimal(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

std::string EaseLine(const char* name, const KeyEase& ease) {
  return "var " + std::string(name) + " = new KeyframeEase(" + Decimal(ease.speed) + "," + Decimal(ease.influence) +
         ");\n";
}

}  // namespace

std::string KeyEaseScript(const KeyEaseTarget& target, const KeyEase& easeIn, const KeyEase& easeOut) {
  std::string script = "var comp = app.project.activeItem;\n";
  script += "var posProperty = comp.layer(" + std::to_string(target.layerIndex + 1) + ").property(\"" +
            ScriptLiteralText(target.propertyName, '"') + "\");\n";
  script += target.isSeparated
                ? "myProperty = posProperty.getSeparationFollower(" + std::to_string(target.dimension) + ");\n"
                : std::string("myProperty = posProperty;\n");
  script += EaseLine("easeIn", easeIn);
  script += EaseLine("easeOut", easeOut);
  script += "myProperty.setTemporalEaseAtKey(" + std::to_string(target.keyIndex) + ", [easeIn], [easeOut]);\n\n";
  return script;
}

A_Err RunKeyEase(CTI* cti, const KeyEaseTarget& target, const KeyEase& easeIn, const KeyEase& easeOut) {
  AEGP_MemHandle result = nullptr;
  const A_Err err = RunScript(*cti, cti->pluginId, kAEGPUtilitySuiteVersion11, KeyEaseScript(target, easeIn, easeOut),
                              &result, nullptr);
  const A_Err freed = FreeScriptHandles(*cti, result, nullptr);
  return err ? err : freed;
}
