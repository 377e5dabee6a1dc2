#include "plugin/exporter/text_shape/shape_properties.h"

#include "plugin/exporter/text_shape/property_bridge.h"
#include "plugin/exporter/text_shape/script_queries.h"
#include "plugin/exporter/text_shape/shape_styles.h"

namespace {


// The reply by which a gradient's colour counts as opaque white.
constexpr const char* kGradientColourReply = "1.0,1.0,1.0,1.0";

std::string KeyTimeMember(int keyNumber) { return "keyTime(" + std::to_string(keyNumber) + ").toString()"; }

std::string ColourReply(AEToOry& exporter, AEGP_LayerH layer, const ShapeStyleEntry& entry, const std::string& member) {
  if (entry.isGradient && member.find("value") != std::string::npos) return kGradientColourReply;
  return QueryLayerScript(exporter, layer, BuildShapeColourQuery(entry, member, exporter.compStack));
}

std::string AttributeReply(AEToOry& exporter, AEGP_LayerH layer, int32_t group, bool stroke, const std::string& member) {
  return QueryLayerScript(exporter, layer,
                          BuildGroupAttributeQuery(stroke ? "Stroke" : "Fill", stroke ? "Stroke Color" : "Fill Color",
                                                   member, group, exporter.compStack));
}

std::string PathReply(AEToOry& exporter, AEGP_LayerH layer, int32_t group, const std::string& member) {
  return QueryLayerScript(exporter, layer, BuildGroupPathQuery(member, group, exporter.compStack));
}

}  // namespace

int GetShapeGroupCount(AEToOry& exporter, AEGP_LayerH layer) {
  return ParseCount(QueryLayerScript(exporter, layer, BuildRootVectorsQuery("numProperties", exporter.compStack)));
}

std::string GetShapeGroupName(AEToOry& exporter, AEGP_LayerH layer, int32_t group) {
  return QueryLayerScript(exporter, layer, BuildGroupQuery(group, "name", exporter.compStack));
}

std::vector<ShapeStyleEntry> ListShapeStyles(AEToOry& exporter, AEGP_LayerH layer, int32_t group) {
  const std::string reply = QueryLayerScript(exporter, layer, BuildShapeStyleInventory(group, exporter.compStack));
  return ParseShapeStyles(reply, group, [&] { return IsGroupPathClosed(exporter, layer, group); });
}

int GetShapeColourNumKeys(AEToOry& exporter, AEGP_LayerH layer, const ShapeStyleEntry& entry) {
  return ParseCount(ColourReply(exporter, layer, entry, "numKeys"));
}

double GetShapeColourKeyTime(AEToOry& exporter, AEGP_LayerH layer, const ShapeStyleEntry& entry, int keyNumber) {
  return ParseNumber(ColourReply(exporter, layer, entry, KeyTimeMember(keyNumber)));
}

bool GetShapeColourValue(AEToOry& exporter, AEGP_LayerH layer, const ShapeStyleEntry& entry, const BaseTime* time,
                         TextColour* colour) {
  return ParseColour(ColourReply(exporter, layer, entry, BuildPropertyPath("", time)), colour);
}

bool IsShapeColourAnimated(AEToOry& exporter, AEGP_LayerH layer, const ShapeStyleEntry& entry) {
  return ParseFlag(ColourReply(exporter, layer, entry, "isTimeVarying"));
}

int GetAttributeNumKeys(AEToOry& exporter, AEGP_LayerH layer, int32_t group, bool stroke) {
  return ParseCount(AttributeReply(exporter, layer, group, stroke, "numKeys"));
}

double GetAttributeKeyTime(AEToOry& exporter, AEGP_LayerH layer, int32_t group, bool stroke, int keyNumber) {
  return ParseNumber(AttributeReply(exporter, layer, group, stroke, KeyTimeMember(keyNumber)));
}

bool GetAttributeColour(AEToOry& exporter, AEGP_LayerH layer, int32_t group, bool stroke, const BaseTime* time,
                        TextColour* colour) {
  return ParseColour(AttributeReply(exporter, layer, group, stroke, BuildPropertyPath("", time)), colour);
}

bool IsAttributeAnimated(AEToOry& exporter, AEGP_LayerH layer, int32_t group, bool stroke) {
  return ParseIsSet(AttributeReply(exporter, layer, group, stroke, "isTimeVarying"));
}

bool HasAttributeColour(AEToOry& exporter, AEGP_LayerH layer, int32_t group, bool stroke) {
  return ParseHasValue(AttributeReply(exporter, layer, group, stroke, "value"));
}

bool IsGroupPathClosed(AEToOry& exporter, AEGP_LayerH layer, int32_t group) {
  if (ReplyContains(PathReply(exporter, layer, group, "value.closed"), "true")) return true;
  TextColour stroke;
  return GetAttributeColour(exporter, layer, group, true, nullptr, &stroke);
}

bool IsGroupPathAnimated(AEToOry& exporter, AEGP_LayerH layer, int32_t group) {
  const std::string reply = PathReply(exporter, layer, group, "isTimeVarying");
  return reply.size() >= 4 && ReplyContains(reply, "true");
}

int GetGroupPathNumKeys(AEToOry& exporter, AEGP_LayerH layer, int32_t group) {
  return ParseLargestWhole(PathReply(exporter, layer, group, "numKeys"));
}

double GetGroupPathKeyTime(AEToOry& exporter, AEGP_LayerH layer, int32_t group, int keyNumber) {
  return ParseNumber(PathReply(exporter, layer, group, KeyTimeMember(keyNumber)));
}
