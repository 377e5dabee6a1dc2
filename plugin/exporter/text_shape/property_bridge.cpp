#include "plugin/exporter/text_shape/property_bridge.h"

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/text_shape/script_queries.h"
#include "plugin/script/run_script.h"

namespace {

std::string TextDocumentReply(AEToOry& exporter, AEGP_LayerH layer, const std::string& member) {
  return QueryLayerScript(exporter, layer, BuildTextDocumentQuery(BuildPropertyPath(member, nullptr), exporter.compStack));
}

const char* MarginName(bool first) { return first ? "First Margin" : "Last Margin"; }

std::string PathOptionReply(AEToOry& exporter, AEGP_LayerH layer, const char* option, const std::string& path) {
  return QueryLayerScript(exporter, layer, BuildPathOptionQuery(option, path, exporter.compStack));
}

}  // namespace

std::string QueryLayerScript(AEToOry& exporter, AEGP_LayerH layer, const std::string& scriptTemplate) {
  A_long index = 0;
  if (LayerSuite13()->AEGP_GetLayerIndex(layer, &index) != A_Err_NONE) return "";
  AEGP_MemHandle result = nullptr;
  const A_Err err = RunScript(*exporter.cti, PluginId(), kAEGPUtilitySuiteVersion11,
                              FillLayerIndex(scriptTemplate, index), &result, nullptr);
  // A host may hand out the reply's memory also when the run failed; it is freed either way.
  std::string reply;
  if (result && ReadReply(*exporter.cti, result, &reply) != A_Err_NONE) reply.clear();
  return err == A_Err_NONE ? reply : std::string();
}

bool IsTextFilled(AEToOry& exporter, AEGP_LayerH layer) {
  return ParseFlag(TextDocumentReply(exporter, layer, "applyFill"));
}

bool IsTextStroked(AEToOry& exporter, AEGP_LayerH layer) {
  return ParseFlag(TextDocumentReply(exporter, layer, "applyStroke"));
}

bool IsStrokeOverFill(AEToOry& exporter, AEGP_LayerH layer) {
  return ParseFlag(TextDocumentReply(exporter, layer, "strokeOverFill"));
}

double GetTextStrokeWidth(AEToOry& exporter, AEGP_LayerH layer) {
  return ParseNumber(TextDocumentReply(exporter, layer, "strokeWidth"));
}

int GetTextFontSize(AEToOry& exporter, AEGP_LayerH layer) {
  return ParseWhole(TextDocumentReply(exporter, layer, "fontSize"));
}

int GetTextTracking(AEToOry& exporter, AEGP_LayerH layer) {
  return ParseWhole(TextDocumentReply(exporter, layer, "tracking"));
}

int GetTextJustification(AEToOry& exporter, AEGP_LayerH layer) {
  return ParseWhole(TextDocumentReply(exporter, layer, "justification"));
}

double GetTextHorizontalScale(AEToOry& exporter, AEGP_LayerH layer) {
  return ParseNumber(TextDocumentReply(exporter, layer, "horizontalScale"));
}

double GetTextVerticalScale(AEToOry& exporter, AEGP_LayerH layer) {
  return ParseNumber(TextDocumentReply(exporter, layer, "verticalScale"));
}

std::string GetTextFont(AEToOry& exporter, AEGP_LayerH layer) { return TextDocumentReply(exporter, layer, "font"); }

bool GetTextColour(AEToOry& exporter, AEGP_LayerH layer, bool stroke, const BaseTime* time, TextColour* colour) {
  const std::string path = BuildPropertyPath(stroke ? "strokeColor" : "fillColor", time);
  return ParseColour(QueryLayerScript(exporter, layer, BuildTextDocumentQuery(path, exporter.compStack)), colour);
}

bool GetTextPathMaskIndex(AEToOry& exporter, AEGP_LayerH layer, int* maskIndex) {
  return ParseMaskIndex(PathOptionReply(exporter, layer, "Path", "value"), maskIndex);
}

double GetPathMarginValue(AEToOry& exporter, AEGP_LayerH layer, bool first, const std::string& path) {
  return ParseMargin(PathOptionReply(exporter, layer, MarginName(first), path));
}

double GetPathMarginKeyTime(AEToOry& exporter, AEGP_LayerH layer, bool first, int keyNumber) {
  const std::string path = "keyTime(" + std::to_string(keyNumber) + ").toString()";
  return ParseMargin(PathOptionReply(exporter, layer, MarginName(first), path));
}

int GetPathMarginNumKeys(AEToOry& exporter, AEGP_LayerH layer, bool first) {
  return ParseCount(PathOptionReply(exporter, layer, MarginName(first), "numKeys"));
}
