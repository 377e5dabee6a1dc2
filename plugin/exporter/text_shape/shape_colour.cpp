#include "plugin/exporter/text_shape/shape_colour.h"

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/object_material.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/text_shape/shape_host.h"
#include "plugin/exporter/track_ops.h"

namespace {

// Alpha, red, green, blue, as the host gives an item's colour and SetColorKeys takes it.
struct ItemColour {
  double values[4] = {0.0, 0.0, 0.0, 0.0};
  bool operator==(const ItemColour& other) const {
    for (int i = 0; i < 4; ++i)
      if (values[i] != other.values[i]) return false;
    return true;
  }
};

// The item's colour at a composition frame, read through the shape layer suite 3; false when
// the layer has no such item then or a call fails (`err` keeps the failure).
bool ColourAt(AEGP_LayerH layer, int32_t itemIndex, const A_Time& at, ItemColour* colour, A_Err* err) {
  const HostShape shape(layer, at, kAEGPShapeLayerSuiteVersion3);
  if ((*err = shape.error()) || !shape.get()) return false;
  AEGP_ShapeItemH item = shape.Item(itemIndex);
  if (!item) return false;
  AEGP_ShapeColour value{};
  if ((*err = AnimatedShapeSuite2()->GetItemColour(item, &value))) return false;
  *colour = ItemColour{{value.alpha, value.red, value.green, value.blue}};
  return true;
}

void SetStillColour(Material* material, const ItemColour& c) {
  SetVectorParam(material, MaterialParam_Color, Vector{c.values[1], c.values[2], c.values[3]});
  SetVectorParam(material, MaterialParam_Alpha, Vector{c.values[0], c.values[0], c.values[0]});
}

// The four colour tracks of the material, made at the first change.
struct ColourTracks {
  AnimTrack* tracks[4] = {};  // red, green, blue, alpha
  AnimCurve* curves[4] = {};

  bool Complete() const { return curves[0] && curves[1] && curves[2] && curves[3]; }
  void Make(Material* material) {
    const ComponentParamId red(MaterialParam_Color, VectorComponent_X);
    const ComponentParamId green(MaterialParam_Color, VectorComponent_Y);
    const ComponentParamId blue(MaterialParam_Color, VectorComponent_Z);
    static constexpr ParamLevel kAlphaLevels[2] = {{MaterialParam_Alpha, DataKind_Float, 0},
                                                   {VectorComponent_X, DataKind_Float, 0}};
    const ParamId alpha{kAlphaLevels, 2, 0};
    tracks[0] = GetOrCreateTrack(material, red.id, "Color.R");
    tracks[1] = GetOrCreateTrack(material, green.id, "Color.G");
    tracks[2] = GetOrCreateTrack(material, blue.id, "Color.B");
    tracks[3] = GetOrCreateTrack(material, alpha, "Color.A");
    if (tracks[0] && tracks[1] && tracks[2] && tracks[3])
      for (int i = 0; i < 4; ++i) curves[i] = CurveOf(tracks[i]);
  }
  void Keys(const ItemColour& colour, const BaseTime& time) const {
    SetColorKeys(colour.values, time, curves[0], curves[1], curves[2], curves[3]);
  }
  void Simplify() const {
    for (int i = 0; i < 4; ++i)
      if (curves[i]) SimplifyTrack(tracks[i]);
  }
};

}  // namespace

bool ExportShapeColour(AEToOry& exporter, AEGP_LayerH layer, int32_t itemIndex, BaseObject* extrude) {
  if (!layer) return false;
  Material* material = GetObjectMaterial(exporter, layer, extrude, itemIndex, true);
  if (!material) return false;
  ShapeTimeFrame frame;
  A_Err err = ReadShapeTimeFrame(layer, &frame);
  const int32_t first = FrameOf(FromAeTime(frame.inPoint.value, frame.inPoint.scale), frame.rate);
  const int32_t end = FrameOf(FromAeTime(frame.duration.value, frame.duration.scale), frame.rate) + 1 + first;
  const A_Time& step = exporter.frameDuration;
  ItemColour previous;
  BaseTime previousKey(first, exporter.fps);
  if (!err && ColourAt(layer, itemIndex, A_Time{first * step.value, step.scale}, &previous, &err))
    SetStillColour(material, previous);
  ColourTracks tracks;
  for (int32_t f = first + 1; f < end; ++f) {
    const BaseTime key(f, exporter.fps);
    ItemColour current = previous;
    if (!err && ColourAt(layer, itemIndex, A_Time{f * step.value, step.scale}, &current, &err) &&
        !(current == previous)) {
      if (!tracks.Complete()) tracks.Make(material);
      tracks.Keys(current, key);
      tracks.Keys(previous, previousKey);
    }
    previous = current;
    previousKey = key;
  }
  tracks.Simplify();
  return true;
}
