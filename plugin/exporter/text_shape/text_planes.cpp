#include "plugin/exporter/text_shape/text_planes.h"

#include <cmath>
#include <limits>
#include <map>
#include <memory>

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/key_baking.h"
#include "plugin/exporter/layer_stream.h"
#include "plugin/exporter/node_factory.h"
#include "plugin/exporter/object_material.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/text_shape/outline_spline.h"
#include "plugin/exporter/text_shape/property_bridge.h"
#include "plugin/exporter/text_shape/shape_host.h"
#include "plugin/exporter/text_shape/source_text_track.h"
#include "plugin/exporter/text_shape/text_object.h"
#include "plugin/exporter/text_shape/text_values.h"
#include "plugin/exporter/time_map.h"
#include "plugin/exporter/track_ops.h"
#include "plugin/text/encodings.h"

namespace {

constexpr char kOutOfMemory[] = "Export failed. Out of memory during text creation.";
constexpr A_Err kNoMemory = 4;
constexpr A_Err kNoScaleStream = 3;
constexpr A_Err kNoDims = 513;
constexpr ParamLevel kEnabledLevel{ObjectParam_Enabled, 0, 0};

// What the change detection compares of a character: any change in either matrix counts.
struct CharacterState {
  A_Matrix3 plane{};
  A_Matrix4 whole{};
};

bool SameState(const CharacterState& a, const CharacterState& b) {
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 3; ++c)
      if (a.plane.mat[r][c] != b.plane.mat[r][c]) return false;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      if (a.whole.mat[r][c] != b.whole.mat[r][c]) return false;
  return true;
}

// The state of character `c` at `t`; the first failing call's status.
A_Err ReadCharacterState(AEGP_LayerH layer, const A_Time& t, A_long c, CharacterState* state) {
  AEGP_TextCharacterH character = nullptr;
  A_Err err = TextLayerSuite2()->GetCharacterAt(layer, &t, c, &character);
  if (!err) err = TextLayerCharacterSuite1()->GetCharacterMatrix3(character, &state->plane);
  if (!err) err = TextLayerCharacterSuite1()->GetCharacterMatrix4(character, &state->whole);
  if (character) TextLayerSuite2()->DisposeCharacter(character);
  return err;
}

// The character's depth: element (3, 2) of its transform, 0 when the host gives no character.
double CharacterDepth(AEGP_LayerH layer, const A_Time& t, A_long c) {
  CharacterState state;
  return ReadCharacterState(layer, t, c, &state) ? 0.0 : state.whole.mat[3][2];
}

// "H(0)": the character at `c` of the text, "XXX" past its end, then the index.
std::string CharacterName(const std::u16string& text, A_long c) {
  const std::string letter = c < static_cast<A_long>(text.size()) ? EncodeUtf8(text.substr(c, 1)) : "XXX";
  return letter + "(" + std::to_string(c) + ")";
}

// A character's outline list, disposed when it goes out of scope.
class CharacterOutlines {
 public:
  CharacterOutlines(AEGP_LayerH layer, const A_Time& t, A_long c) {
    if (TextLayerSuite2()->GetCharacterOutlines(layer, &t, c, &outlines_) || !outlines_) outlines_ = nullptr;
  }
  ~CharacterOutlines() {
    if (outlines_) TextLayerSuite2()->AEGP_DisposeTextOutlines(outlines_);
  }
  CharacterOutlines(const CharacterOutlines&) = delete;
  CharacterOutlines& operator=(const CharacterOutlines&) = delete;

  A_long Count() const {
    A_long count = 0;
    if (!outlines_ || TextLayerSuite2()->AEGP_GetNumTextOutlines(outlines_, &count)) return 0;
    return count;
  }
  // Contour `j` and its vertex count; null when the host gives none.
  PF_PathOutlinePtr Path(A_long j, A_long* vertices) const {
    PF_PathOutlinePtr path = nullptr;
    *vertices = 0;
    if (!outlines_ || TextLayerSuite2()->AEGP_GetIndexedTextOutline(outlines_, j, &path) || !path) return nullptr;
    if (PathDataSuite1()->PF_PathNumSegments(nullptr, path, vertices)) return nullptr;
    return path;
  }

 private:
  AEGP_TextOutlinesH outlines_ = nullptr;
};

// The fill or stroke material of the layer, shared by all its characters: named and keyed
// after the null with "-Fill-Material" or "-Stroke-Material", with the text's colour. None
// when the host gives no colour.
Material* GetTextMaterial(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object, bool stroke) {
  TextColour colour;
  if (!GetTextColour(exporter, layer, stroke, nullptr, &colour)) return nullptr;
  bool made = false;
  Material* material =
      FindOrAllocMaterial(exporter, layer, object, stroke ? "-Stroke-Material" : "-Fill-Material", &made);
  if (!made) return material;
  SetVectorParam(material, MaterialParam_Color, Vector{colour.rgb[0], colour.rgb[1], colour.rgb[2]});
  t_ORYOS_Bd->InsertMaterial(exporter.document, material, nullptr, 0);
  return material;
}

A_Err LinkMaterial(BaseObject* object, Material* material) {
  if (!object || !material) return A_Err_NONE;
  if (LinkMaterialTag(object, material)) return A_Err_NONE;
  AddError(kNoMemory, "Export/Merge failed. Out of memory in material association.");
  return kNoMemory;
}

// The curve of a track just found or made; 4, with the error recorded, when either is missing.
A_Err CurveOfTrack(AnimTrack* track, AnimCurve** curve) {
  if (!track) {
    AddError(kNoMemory, "Key curve track memory error.");
    return kNoMemory;
  }
  if (!(*curve = t_ORYOS_CA->GetCurve(track, 1, true))) {
    AddError(kNoMemory, "Key track memory error.");
    return kNoMemory;
  }
  return A_Err_NONE;
}

// One key of the object's "Enabled" track at the entry's frame. A key that is on stays on, so
// that a character with contours at a frame is shown there.
A_Err AddEnabledKey(AEToOry& exporter, BaseObject* object, const BaseTime& entry, bool last, bool enabled) {
  const ParamId id{&kEnabledLevel, 1, 0};
  AnimTrack* track = GetOrCreateTrack(object, id, "Enabled");
  AnimCurve* curve = nullptr;
  if (const A_Err err = CurveOfTrack(track, &curve)) return err;
  const BaseTime time(FrameOf(entry, exporter.fps), exporter.fps);
  AnimKey* key = t_ORYOS_CA->FindKey(curve, &time, nullptr, 0);
  const bool isNew = !key;
  if (isNew && !(key = t_ORYOS_CA->AddKey(curve, &time, nullptr, 0, 0))) {
    AddError(kNoMemory, "Key curve track memory error.");
    return kNoMemory;
  }
  if (isNew || !(t_ORYOS_CA->GetKeyValue(key) > 0.0)) t_ORYOS_CA->SetKeyValue(key, curve, enabled ? 1.0 : 0.0);
  if (last) SimplifyTrack(track);
  return A_Err_NONE;
}

// The null keeps scale 1 but for the composition's pixel aspect, which stretches x: on its
// static scale, or on every key of its x scale track.
void StretchByPixelAspect(BaseObject* object, double pixelAspect) {
  const ComponentParamId x(ObjectParam_Scale, VectorComponent_X);
  AnimTrack* track = t_ORYOS_Bl->FindTrack(object, &x.id);
  if (!track) {
    Vector scale;
    t_ORYOS_Bo->GetScale(object, &scale);
    scale.x *= pixelAspect;
    t_ORYOS_Bo->SetScale(object, &scale);
    return;
  }
  AnimCurve* curve = CurveOf(track);
  const int32_t count = curve ? t_ORYOS_CA->GetKeyCount(curve) : 0;
  for (int32_t i = 0; i < count; ++i) {
    AnimKey* key = t_ORYOS_CA->GetKey(curve, i);
    t_ORYOS_CA->SetKeyValue(key, curve, t_ORYOS_CA->GetKeyValue(key) * pixelAspect);
  }
}

A_Time FrameTime(int32_t frame, const A_Time& frameDuration) {
  return A_Time{frame * frameDuration.value, frameDuration.scale};
}

// One text layer's export, in four passes that must stay apart: collect the times, measure
// each character's largest form over them, make the objects, write the forms. A spline's
// arrays are sized from its measure when it is made, and every key has that layout.
class PlanesExport {
 public:
  PlanesExport(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object)
      : exporter_(exporter), layer_(layer), object_(object) {}

  A_Err Run() {
    StretchByPixelAspect(object_, exporter_.pixelAspect);
    strokeOverFill_ = IsStrokeOverFill(exporter_, layer_);
    A_Err status = ReadShapeTimeFrame(layer_, &frame_);
    if (!status) status = SourceTextKeyTimes(exporter_, layer_, &keyTimes_);
    stroked_ = IsTextStroked(exporter_, layer_);
    filled_ = IsTextFilled(exporter_, layer_);
    if (!stroked_ && !filled_) return status;
    if (filled_) fillMaterial_ = GetTextMaterial(exporter_, layer_, object_, false);
    if (stroked_) strokeMaterial_ = GetTextMaterial(exporter_, layer_, object_, true);
    first_ = FrameOf(FromAeTime(frame_.inPoint.value, frame_.inPoint.scale), frame_.rate);
    end_ = FrameOf(FromAeTime(frame_.duration.value, frame_.duration.scale), frame_.rate) + first_;
    if (!status) status = CountFrames();
    if (!status) status = FindChanges();
    if (!status) status = AddScaleKeys();
    if (!status) AddAnchorEntry();
    if (!status) Measure();
    t_ORYOS_Bo->GetPosition(object_, &nullPosition_);
    int32_t i = 0;
    for (auto entry = keyTimes_.begin(); !status && entry != keyTimes_.end(); ++entry, ++i) {
      if (const int32_t cancel = exporter_.ReportSubProgress(i, static_cast<int32_t>(keyTimes_.size()))) return cancel;
      const std::u16string text = DecodeUtf8(SourceTextAt(layer_, entry->second));
      A_long n = 0;
      status = TextLayerSuite2()->GetCharacterCount(layer_, &entry->second, &n);
      for (A_long c = 0; !status && c < n; ++c) status = ExportCharacter(c, text, entry);
    }
    return status;
  }

 private:
  // Every frame of the layer with its character count, and the largest count.
  A_Err CountFrames() {
    for (int32_t f = first_; f < end_; ++f) {
      const A_Time t = FrameTime(f, exporter_.frameDuration);
      A_long count = 0;
      if (const A_Err err = TextLayerSuite2()->GetCharacterCount(layer_, &t, &count)) return err;
      maxCharacters_ = std::max(maxCharacters_, count);
      frameTimes_[BaseTime(f, exporter_.fps)] = {t, count};
    }
    return A_Err_NONE;
  }

  // The frames on both sides of every change of a character's state. Frames that are key
  // times already are passed over, the state before them kept.
  A_Err FindChanges() {
    for (A_long c = 0; c < maxCharacters_ && !frameTimes_.empty(); ++c) {
      auto entry = frameTimes_.begin();
      if (entry->second.count <= c) continue;
      CharacterState previous;
      if (const A_Err err = ReadCharacterState(layer_, entry->second.time, c, &previous)) return err;
      for (auto before = entry++; entry != frameTimes_.end(); before = entry++) {
        if (keyTimes_.count(entry->first) || entry->second.count <= c) continue;
        CharacterState current;
        if (const A_Err err = ReadCharacterState(layer_, entry->second.time, c, &current)) return err;
        if (!SameState(previous, current)) {
          keyTimes_[before->first] = before->second.time;
          keyTimes_[entry->first] = entry->second.time;
        }
        previous = current;
      }
    }
    return A_Err_NONE;
  }

  A_Err AddScaleKeys() {
    const LayerStream scale(layer_, AEGP_LayerStream_SCALE);
    if (!scale) return kNoScaleStream;
    return CollectKeyTimes(exporter_, layer_, scale.get(), true, &keyTimes_);
  }

  // The in point stands at document time 0; a still text is written once, at the frame where
  // the layer's scale is nearest 100 percent (the earlier of equals).
  void AddAnchorEntry() {
    A_Time t0 = frame_.inPoint;
    BaseTime b0(0, exporter_.fps);
    if (keyTimes_.empty()) {
      const double a = exporter_.pixelAspect > 0.0 ? 1.0 / exporter_.pixelAspect : 1.0;
      const double reference = std::sqrt(a * a + 1.0 + 1.0);
      double best = std::numeric_limits<float>::max();
      int32_t bestFrame = first_;
      for (int32_t f = first_; f < end_; ++f) {
        const A_Time t = FrameTime(f, exporter_.frameDuration);
        A_Matrix4 m{};
        if (LayerSuite13()->AEGP_GetLayerToWorldXform(layer_, &t, &m)) continue;
        double sum = 0.0;
        for (int r = 0; r < 3; ++r)
          sum += m.mat[r][0] * m.mat[r][0] + m.mat[r][1] * m.mat[r][1] + m.mat[r][2] * m.mat[r][2];
        const double d = std::fabs(std::sqrt(sum) - reference);
        if (d < best) {
          best = d;
          bestFrame = f;
          t0 = t;
        }
      }
      b0 = BaseTime(bestFrame, exporter_.fps);
    }
    keyTimes_[b0] = t0;
  }

  // The largest contour and vertex counts of each character name over all key times.
  void Measure() {
    for (const auto& [time, at] : keyTimes_) {
      const std::u16string text = DecodeUtf8(SourceTextAt(layer_, at));
      A_long n = 0;
      if (TextLayerSuite2()->GetCharacterCount(layer_, &at, &n)) continue;
      for (A_long c = 0; c < n; ++c) {
        const CharacterOutlines outlines(layer_, at, c);
        const A_long contours = outlines.Count();
        if (contours < 1) continue;
        A_long points = 0;
        for (A_long j = 0; j < contours; ++j) {
          A_long vertices = 0;
          if (outlines.Path(j, &vertices)) points = std::max(points, vertices);
        }
        IncludeOutline(&dims_[CharacterName(text, c)], contours, points);
      }
    }
  }

  struct CharacterObjects {
    BaseObject* extrude = nullptr;
    BaseObject* sweep = nullptr;
    BaseObject* spline = nullptr;
  };

  // The objects of one character, made on its first visit.
  A_Err MakeObjects(const std::string& name, bool isNew, CharacterObjects* made) {
    const std::string strokeName = name + "-Stroke";
    if (filled_) {
      made->extrude = CreateChildObject(exporter_, object_, layer_, name, ObjectType_Extrude, true, false);
      if (isNew) {
        if (const A_Err err = LinkMaterial(made->extrude, fillMaterial_)) return err;
      }
    }
    double width = 1.0;
    if (stroked_) {
      width = GetTextStrokeWidth(exporter_, layer_);
      made->sweep = CreateChildObject(exporter_, object_, layer_, strokeName, ObjectType_Sweep, true, false);
      if (isNew) {
        if (const A_Err err = LinkMaterial(made->sweep, strokeMaterial_)) return err;
        MoveInDepth(made->sweep, strokeOverFill_ ? kStrokeOverFillDepth : StrokeDepthOffset(width));
        SetInt32Param(made->sweep, SweepParam_Flag, 0);
        BaseObject* outline = CreateChildObject(exporter_, made->sweep, layer_, strokeName + "TextOutline",
                                                ObjectType_TextOutline, true, true);
        if (outline) SetFloatParam(outline, TextOutlineParam_Width, OutlineWidth(width));
      }
    }
    made->spline = CreateChildObject(exporter_, made->extrude ? made->extrude : made->sweep, layer_, name + " Spline",
                                     ObjectType_Spline, true, false);
    if (isNew && made->extrude && made->sweep) {
      if (!strokeOverFill_) MoveInDepth(made->extrude, -StrokeDepthOffset(width));
      if (const A_Err err = AddTextInstance(exporter_, made->sweep, made->spline)) return err;
    }
    if (isNew) {
      t_ORYOS_Bc->SetBool(t_ORYOS_Bl->GetDataInstance(made->spline), SplineParam_Closed, true);
      if (const auto found = dims_.find(name); found != dims_.end()) {
        const OutlineDims& dims = found->second;
        t_ORYOS_Bo->ResizeSpline(made->spline, dims.contours * dims.points, dims.contours);
      }
    }
    return A_Err_NONE;
  }

  A_Err ExportCharacter(A_long c, const std::u16string& text, TimeMap::const_iterator entry) {
    const A_Time& t = entry->second;
    const CharacterOutlines outlines(layer_, t, c);
    const A_long contours = outlines.Count();
    const std::string name = CharacterName(text, c);
    SceneNode* children = t_ORYOS_At->GetDown(object_);
    const bool isNew = !FindByKey(children, name) && !FindByKey(children, name + "-Stroke");
    CharacterObjects objects;
    if (const A_Err err = MakeObjects(name, isNew, &objects)) return err;
    const bool last = std::next(entry) == keyTimes_.end();
    if (contours <= 0) return AddEnabledKey(exporter_, objects.spline, entry->first, last, false);
    if (const A_Err err = AddEnabledKey(exporter_, objects.spline, entry->first, last, true)) return err;
    return WriteForm(objects.spline, outlines, contours, entry->first, t, c, name);
  }

  // The character's contours at this time into its spline or, when the form is animated, into
  // the point level key at `time`. Only the contours of this time are written: the places of
  // contours it lacks keep what they held.
  A_Err WriteForm(BaseObject* spline, const CharacterOutlines& outlines, A_long contours, const BaseTime& time,
                  const A_Time& t, A_long c, const std::string& name) {
    std::unique_ptr<ShapeKeyPayload> payload;
    if (keyTimes_.size() > 1) {
      AnimCurve* curve = nullptr;
      if (const A_Err err = CurveOfTrack(GetOrCreateShapeCurveTrack(spline), &curve)) return err;
      AnimKey* key = FindOrAddShapeKey(curve, time);
      if (!key) return kNoMemory;
      payload = std::make_unique<ShapeKeyPayload>(key);
      if (!payload->ok()) {
        AddError(kNoMemory, "Key track insert PLA memory error.");
        return kNoMemory;
      }
    }
    const double z = CharacterDepth(layer_, t, c);
    const auto found = dims_.find(name);
    if (found == dims_.end()) return kNoDims;
    const OutlinePlacement placement{z, nullPosition_.x, nullPosition_.y};
    for (A_long j = 0; j < contours; ++j) {
      A_long vertices = 0;
      const PF_PathOutlinePtr path = outlines.Path(j, &vertices);
      auto* segments = static_cast<SplineSegment*>(t_ORYOS_Bo->GetTagData(spline, TagType_Segments, 0));
      if (!segments) continue;
      const SplineArrays arrays = payload ? payload->arrays() : SplineArraysOf(spline);
      if (!arrays.points || !arrays.tangents) {
        AddError(kNoMemory, "Export/Merge failed. Out of memory.");
        return kNoMemory;
      }
      // A contour without vertices has no form to write.
      if (!path || vertices == 0) continue;
      if (const A_Err err = WriteOutlineContour(path, vertices, segments, j, found->second, arrays, placement))
        return err;
    }
    if (payload) payload->Store(kOutlineKeyTension);
    return A_Err_NONE;
  }

  struct FrameEntry {
    A_Time time{0, 1};
    A_long count = 0;
  };

  AEToOry& exporter_;
  AEGP_LayerH layer_;
  BaseObject* object_;
  ShapeTimeFrame frame_;
  bool strokeOverFill_ = false;
  bool stroked_ = false;
  bool filled_ = false;
  Material* fillMaterial_ = nullptr;
  Material* strokeMaterial_ = nullptr;
  int32_t first_ = 0;
  int32_t end_ = 0;
  A_long maxCharacters_ = 0;
  TimeMap keyTimes_;
  std::map<BaseTime, FrameEntry> frameTimes_;
  std::map<std::string, OutlineDims> dims_;
  Vector nullPosition_{};
};

}  // namespace

A_Err ExportTextLayerPlanes(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object) {
  if (!object) {
    AddError(kNoMemory, kOutOfMemory);
    return kNoMemory;
  }
  return PlanesExport(exporter, layer, object).Run();
}
