#include "plugin/exporter/text_shape/text_object.h"

#include "plugin/engine/engine_extensions.h"
#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/node_factory.h"
#include "plugin/exporter/object_material.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/text_shape/font_description.h"
#include "plugin/exporter/text_shape/property_bridge.h"
#include "plugin/exporter/text_shape/source_text_track.h"
#include "plugin/exporter/text_shape/text_path.h"
#include "plugin/exporter/text_shape/text_values.h"

namespace {

constexpr char kOutOfMemory[] = "Export failed. Out of memory during text creation.";

// The fill or stroke colour of the text as the colour of the object's first material; false
// when the host gives no colour (then no material is made) or there is no object.
bool ApplyTextColour(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object, bool stroke) {
  if (!object) return false;
  TextColour colour;
  if (!GetTextColour(exporter, layer, stroke, nullptr, &colour)) return false;
  Material* material = GetObjectMaterial(exporter, layer, object, 0, true);
  if (!material) return false;
  SetVectorParam(material, MaterialParam_Color, Vector{colour.rgb[0], colour.rgb[1], colour.rgb[2]});
  return true;
}

// A child of the layer's null, and whether this visit made it. A precomposition used twice
// visits its text layers twice and finds the objects of the first visit: what is added to
// them rather than set (the moves in depth, the instance) is done at their making only.
struct TextChild {
  BaseObject* object = nullptr;
  bool made = false;
};

TextChild CreateTextChild(AEToOry& exporter, BaseObject* parent, AEGP_LayerH layer, const char* suffix, int32_t type) {
  TextChild child;
  child.object = CreateChildObject(exporter, parent, layer, suffix, type, true, true, &child.made);
  return child;
}

// The sweep of the text's outline with the stroke colour; under the fill it moves away from
// the viewer and the fill towards it, each by the same offset.
TextChild CreateStroke(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object, const TextChild& extrude,
                       bool strokeOverFill) {
  const double width = GetTextStrokeWidth(exporter, layer);
  const double offset = StrokeDepthOffset(width);
  if (extrude.object && extrude.made && !strokeOverFill) MoveInDepth(extrude.object, -offset);
  const TextChild sweep = CreateTextChild(exporter, object, layer, "Sweep", ObjectType_Sweep);
  if (!sweep.object) return sweep;
  if (sweep.made) MoveInDepth(sweep.object, strokeOverFill ? kStrokeOverFillDepth : offset);
  SetInt32Param(sweep.object, SweepParam_Flag, 0);
  ApplyTextColour(exporter, layer, sweep.object, true);
  BaseObject* outline = CreateChildObject(exporter, sweep.object, layer, "TextOutline", ObjectType_TextOutline, true, true);
  if (outline) SetFloatParam(outline, TextOutlineParam_Width, OutlineWidth(width));
  return sweep;
}

// The host's horizontal and vertical scale of the characters, on the text object's own scale.
void ScaleText(AEToOry& exporter, AEGP_LayerH layer, BaseObject* text) {
  Vector scale;
  t_ORYOS_Bo->GetScale(text, &scale);
  scale.x *= GetTextHorizontalScale(exporter, layer);
  scale.y *= GetTextVerticalScale(exporter, layer);
  t_ORYOS_Bo->SetScale(text, &scale);
}

void WriteTextSettings(AEToOry& exporter, AEGP_LayerH layer, BaseObject* text) {
  SetStringParam(text, TextParam_Text, SourceTextAt(layer, exporter.compStart));
  WriteFontDescription(exporter, layer, text);
  SetFloatParam(text, TextParam_Size, GetTextFontSize(exporter, layer));
  SetFloatParam(text, TextParam_Tracking, SceneTracking(GetTextTracking(exporter, layer)));
  if (const std::optional<int32_t> alignment = SceneAlignment(GetTextJustification(exporter, layer))) {
    SetInt32Param(text, TextParam_Alignment, *alignment);
  }
  ScaleText(exporter, layer, text);
}

}  // namespace

void MoveInDepth(BaseObject* object, double dz) {
  Vector position;
  t_ORYOS_Bo->GetPosition(object, &position);
  position.z += dz;
  t_ORYOS_Bo->SetPosition(object, &position);
}

A_Err AddTextInstance(AEToOry& exporter, BaseObject* sweep, BaseObject* text) {
  BaseObject* instance = t_ORYOS_Bo->AllocObject(ObjectType_Instance);
  if (!instance) {
    AddError(4, kOutOfMemory);
    return 4;
  }
  BaseObject* outline = static_cast<BaseObject*>(t_ORYOS_At->GetDown(sweep));
  t_ORYOS_Bd->InsertObject(exporter.document, instance, sweep, outline, 0, 1);
  SetNodeName(instance, NodeName(text));
  Matrix textGlobal, sweepGlobal;
  t_ORYOS_Bo->GetGlobalMatrix(text, &textGlobal);
  t_ORYOS_Bo->GetGlobalMatrix(sweep, &sweepGlobal);
  const Matrix placed = Multiply(textGlobal, Invert(sweepGlobal));
  t_ORYOS_Bo->SetGlobalMatrix(instance, &placed);
  const InstanceLibrary* library = ExtensionLibrary<InstanceLibrary>(kExtensionInstance);
  bool referenced = false;
  if (library && library->SetInstanceReference) library->SetInstanceReference(instance, &referenced, text);
  return A_Err_NONE;
}

A_Err ExportTextObject(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object) {
  if (!object) {
    AddError(4, kOutOfMemory);
    return 4;
  }
  const bool strokeOverFill = IsStrokeOverFill(exporter, layer);
  const bool stroked = IsTextStroked(exporter, layer);
  const bool filled = IsTextFilled(exporter, layer);
  TextChild extrude;
  if (filled) {
    extrude = CreateTextChild(exporter, object, layer, "Extrude", ObjectType_Extrude);
    ApplyTextColour(exporter, layer, extrude.object, false);
  }
  const TextChild sweep = stroked ? CreateStroke(exporter, layer, object, extrude, strokeOverFill) : TextChild{};
  if (!extrude.object && !sweep.object) return A_Err_NONE;
  BaseObject* pathSpline = ConvertTextPathMask(exporter, layer, object);
  BaseObject* text = CreateChildObject(exporter, extrude.object ? extrude.object : sweep.object, layer, "Text",
                                       ObjectType_Text, true, true);
  if (!text) return A_Err_NONE;
  if (extrude.object && sweep.made) {
    if (const A_Err err = AddTextInstance(exporter, sweep.object, text)) return err;
  }
  WriteTextSettings(exporter, layer, text);
  const A_Err status = ExportSourceTextTrack(exporter, layer, text);
  if (pathSpline) ExportTextPathDeformer(exporter, layer, text, pathSpline);
  return status;
}
