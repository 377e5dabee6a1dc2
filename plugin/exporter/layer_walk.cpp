#include "plugin/exporter/layer_walk.h"

#include "plugin/exporter/camera_export.h"
#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/key_baking.h"
#include "plugin/exporter/light_export.h"
#include "plugin/exporter/node_factory.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/solid_plane.h"
#include "plugin/exporter/text_shape/shape_layer.h"
#include "plugin/exporter/text_shape/text_object.h"
#include "plugin/exporter/text_shape/text_planes.h"
#include "plugin/exporter/track_ops.h"
#include "plugin/exporter/transform_channels.h"
#include "plugin/exporter/walk_bounds.h"
#include "plugin/importer/timeline_markers.h"

namespace {

// Precomposition layers, solids and text stack in steps of half a pixel; shapes, which are
// extruded, take a larger step.
constexpr double kLayerStackStep = 0.5;
constexpr double kShapeLayerStackStep = 100.5;

// What a layer is for the exporter.
struct LayerClass {
  AEGP_ObjectType objectType = -1;
  AEGP_ItemH source = nullptr;
  AEGP_ItemType itemType = 0;
};

A_Err ClassifyLayer(AEGP_LayerH layer, LayerClass* out) {
  A_Err err = LayerSuite13()->AEGP_GetLayerObjectType(layer, &out->objectType);
  if (!err) err = LayerSuite13()->AEGP_GetLayerSourceItem(layer, &out->source);
  if (!err && out->source) err = ItemSuite13()->AEGP_GetItemType(out->source, &out->itemType);
  if (out->itemType != AEGP_ItemType_COMP && out->itemType != AEGP_ItemType_FOOTAGE) out->source = nullptr;
  return err;
}

bool IsPrecomp(const LayerClass& c) {
  return c.objectType == AEGP_ObjectType_AV && c.itemType == AEGP_ItemType_COMP && c.source;
}

// Layers for which the create walk can have made something.
bool MayHaveObject(const LayerClass& c) {
  return c.objectType == AEGP_ObjectType_AV ? c.source != nullptr : c.objectType > AEGP_ObjectType_AV;
}

// The layer's world matrix at the composition's start; its Z is what the stacking rule reads.
double DepthAtStart(AEToOry& exporter, AEGP_LayerH layer) {
  A_Matrix4 m{};
  LayerSuite13()->AEGP_GetLayerToWorldXform(layer, &exporter.compStart, &m);
  return m.mat[3][2];
}

void ApplyStackingRule(AEToOry& exporter, AEGP_LayerH layer, double depth, double step) {
  exporter.AddZOffset(StackingStep(depth, CountLayerStreamKeys(layer, AEGP_LayerStream_POSITION), step));
}

// The inner composition is made and linked entirely within the create walk of the outer one.
bool CreatePrecomp(AEToOry& exporter, AEGP_LayerH layer, AEGP_ItemH source, uint32_t index, A_Err* err) {
  AEGP_CompH inner = nullptr;
  CompSuite15()->AEGP_GetCompFromItem(source, &inner);
  if (!inner) return true;
  BaseObject* group = CreateLayerObject(exporter, layer, ObjectType_Null, true);
  if (!group) return false;
  const int32_t noSize = 0;
  if (ApplyObjectBasics(exporter, group, layer, &noSize, &noSize) != A_Err_NONE) return false;
  if (exporter.PushComp(inner, layer, group, index)) {
    if (!Walk(exporter, layer, nullptr, WalkMode::create)) *err = A_Err_STRUCT;
    exporter.PopComp();
  } else {
    *err = A_Err_STRUCT;
  }
  if (!exporter.PushComp(inner, layer, group, index)) return false;
  const bool linked = Walk(exporter, layer, group, WalkMode::link);
  exporter.PopComp();
  return linked;
}

bool CreateFromFootage(AEToOry& exporter, AEGP_LayerH layer, AEGP_ItemH source, A_Err* err) {
  AEGP_FootageH footage = nullptr;
  FootageSuite11()->AEGP_GetMainFootageFromItem(source, &footage);
  if (!footage) return true;
  AEGP_FootageSignature signature = 0;
  FootageSuite11()->AEGP_GetFootageSignature(footage, &signature);
  if (signature == AEGP_FootageSignature_SOLID) return CreateSolidPlane(exporter, layer, source, err);
  *err = CreateImagePlane(exporter, layer, source, footage);
  return true;
}

// A text layer stands in the scene as a null with the layer's transform that holds its text:
// live text, or with the planes answer one spline a character (text_planes.h).
bool CreateTextLayer(AEToOry& exporter, AEGP_LayerH layer, double depth, A_Err* err) {
  ApplyStackingRule(exporter, layer, depth, kLayerStackStep);
  BaseObject* holder = CreateLayerObject(exporter, layer, ObjectType_Null, true);
  if (!holder) {
    AddError(4, "Export failed. Out of memory during text creation.");
    return false;
  }
  const int32_t noSize = 0;
  if (ApplyObjectBasics(exporter, holder, layer, &noSize, &noSize) != A_Err_NONE) return false;
  *err = exporter.exportTextAsPlanes ? ExportTextLayerPlanes(exporter, layer, holder)
                                     : ExportTextObject(exporter, layer, holder);
  return true;
}

// Makes the objects of one layer. False ends the walk at once; `err` ends it after the layer.
bool CreateLayer(AEToOry& exporter, AEGP_LayerH layer, const LayerClass& c, uint32_t index, A_Err* err) {
  const double depth = DepthAtStart(exporter, layer);
  if (c.objectType == AEGP_ObjectType_LIGHT) *err = ExportLight(exporter, layer);
  if (c.objectType == AEGP_ObjectType_CAMERA) *err = ExportCamera(exporter, layer);
  if (c.objectType == AEGP_ObjectType_TEXT) return CreateTextLayer(exporter, layer, depth, err);
  if (c.objectType == AEGP_ObjectType_VECTOR) {
    ApplyStackingRule(exporter, layer, depth, kShapeLayerStackStep);
    *err = ExportShapeLayer(exporter, layer);
    return true;
  }
  if (c.objectType != AEGP_ObjectType_AV) return true;
  ApplyStackingRule(exporter, layer, depth, kLayerStackStep);
  if (!c.source) return true;
  if (c.itemType == AEGP_ItemType_COMP) return CreatePrecomp(exporter, layer, c.source, index, err);
  return CreateFromFootage(exporter, layer, c.source, err);
}

bool ScanPrecomp(AEToOry& exporter, AEGP_LayerH layer, AEGP_ItemH source, uint32_t index) {
  AEGP_CompH inner = nullptr;
  CompSuite15()->AEGP_GetCompFromItem(source, &inner);
  if (!inner) return true;
  if (!exporter.PushComp(inner, layer, nullptr, index)) return false;
  const bool walked = Walk(exporter, layer, nullptr, WalkMode::scan);
  exporter.PopComp();
  return walked;
}

// Each precomposition gets one entry in the document's layer list, named like its null object.
SceneLayer* PrecompDocLayer(AEToOry& exporter, AEGP_LayerH layerInParent, BaseObject* node) {
  SceneLayer* docLayer = CreateDocLayer(exporter, layerInParent, true);
  SetNodeName(docLayer, NodeName(node));
  return docLayer;
}

}  // namespace

double StackingStep(double depth, int32_t positionKeyCount, double step) {
  return depth == 0.0 && positionKeyCount == 0 ? step : 0.0;
}

bool IsLayerExportable(AEToOry& exporter, AEGP_LayerH layer) {
  A_Boolean is3d = false;
  LayerSuite14()->AEGP_IsLayer3D(layer, &is3d);
  if (is3d) return true;
  AEGP_LayerH parent = nullptr;
  LayerSuite13()->AEGP_GetLayerParent(layer, &parent);
  if (parent && IsLayerExportable(exporter, parent)) return true;
  for (const CompStackEntry& entry : exporter.compStack) {
    if (!entry.layer) continue;
    A_Boolean entered3d = false;
    LayerSuite14()->AEGP_IsLayer3D(entry.layer, &entered3d);
    if (entered3d) return true;
  }
  return false;
}

bool Walk(AEToOry& exporter, AEGP_LayerH layerInParent, BaseObject* node, WalkMode mode) {
  AEGP_CompH comp = exporter.TopComp();
  if (!comp) {
    AddError(A_Err_STRUCT, "Export failed, composition pointer is NULL.");
    return false;
  }
  if (mode == WalkMode::link && !node) {
    AddError(A_Err_STRUCT, "Export failed, root node pointer is NULL.");
    return false;
  }
  A_long count = 0;
  A_Err err = LayerSuite13()->AEGP_GetCompNumLayers(comp, &count);
  if (count == 0) return true;
  if (mode == WalkMode::create && !err) err = ExportCompMarkers(exporter.cti, exporter.document, comp);

  SceneLayer* docLayer = nullptr;
  for (A_long index = 0; index < count; ++index) {
    if (mode != WalkMode::scan) exporter.ReportProgress();
    AEGP_LayerH layer = nullptr;
    LayerClass c;
    if (!err) err = LayerSuite13()->AEGP_GetCompLayerByIndex(comp, index, &layer);
    if (!err) err = ClassifyLayer(layer, &c);
    if (!err && mode == WalkMode::create && !IsPrecomp(c))
      err = ExportLayerMarkers(exporter.cti, exporter.document, layer);
    if (err) return false;
    if (mode == WalkMode::scan) CheckWalkBounds(exporter, layer);
    if (c.objectType == AEGP_ObjectType_TEXT) exporter.foundTextLayers = true;
    if (c.objectType == AEGP_ObjectType_CAMERA) exporter.foundCamera = true;
    // A precomposition layer is entered whatever its own dimensionality.
    if (!IsPrecomp(c)) {
      if (!IsLayerExportable(exporter, layer)) {
        exporter.found2dLayers = true;
        continue;
      }
      exporter.foundLayersToExport = true;
    }
    if (mode == WalkMode::link && layerInParent && !docLayer) docLayer = PrecompDocLayer(exporter, layerInParent, node);
    ++exporter.layerCounter;
    const uint32_t at = static_cast<uint32_t>(index);
    switch (mode) {
      case WalkMode::create:
        if (!CreateLayer(exporter, layer, c, at, &err)) return false;
        break;
      case WalkMode::link:
        if (MayHaveObject(c)) err = LinkLayer(exporter, layer, node, docLayer);
        break;
      case WalkMode::scan:
        if (IsPrecomp(c) && !ScanPrecomp(exporter, layer, c.source, at)) return false;
        break;
    }
    if (err) return false;
  }
  return true;
}

A_Err LinkLayer(AEToOry& exporter, AEGP_LayerH layer, BaseObject* defaultParent, SceneLayer* docLayer) {
  AEGP_LayerH parentLayer = nullptr;
  A_Err err = LayerSuite13()->AEGP_GetLayerParent(layer, &parentLayer);
  AEGP_LayerIDVal id = -1, parentId = -1;
  if (!err) err = LayerSuite13()->AEGP_GetLayerID(layer, &id);
  if (!err && parentLayer) err = LayerSuite13()->AEGP_GetLayerID(parentLayer, &parentId);

  BaseObject* object = FindLayerObject(exporter, id);
  BaseObject* parent = defaultParent;
  if (parentLayer) {
    if (BaseObject* found = FindLayerObject(exporter, parentId)) parent = found;
  }
  if (!object) return err;
  if (docLayer) t_ORYOS_Bl->SetLayer(object, docLayer);
  BaseObject* target = TargetOf(object);
  if (target && docLayer) t_ORYOS_Bl->SetLayer(target, docLayer);
  if (!parent) return err;
  if (target) {
    t_ORYOS_At->Remove(target);
    t_ORYOS_At->InsertUnder(target, parent);
  }
  t_ORYOS_At->Remove(object);
  t_ORYOS_At->InsertUnder(object, parent);
  RebaseTracksToParent(object, parent, exporter.firstFrame, exporter.frameCount, exporter.fps, exporter.document);
  return err;
}
