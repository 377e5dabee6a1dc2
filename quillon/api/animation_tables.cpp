// Table CA: tracks, curves and keys.
#include "plugin/exporter/scene_ids.h"
#include "quillon/api/handles.h"
#include "quillon/api/parameters.h"
#include "quillon/api/tables.h"

namespace quillon {
namespace {

// A track of floats animates a number or one component of a vector; any other
// track holds keys of the kind of its last level.
int32_t TrackKindFor(const Node& node, const std::vector<ParamLevel>& path) {
  if (path.empty()) return kTrackKindFloat;
  const ParamLevel& last = path.back();
  if (path.size() == 2 || last.kind == DataKind_Float || last.kind == DataKind_Int32) return kTrackKindFloat;
  if (last.kind != 0) return last.kind;
  auto found = node.params.find(last.id);
  if (found == node.params.end()) return kTrackKindFloat;
  int32_t kind = found->second.kind();
  bool number = kind == DataKind_Float || kind == DataKind_Int32 || kind == DataKind_Bool || kind == DataKind_Int64;
  return number ? kTrackKindFloat : kind;
}

Node* AnimatedNode(const Track& track) {
  Node* list = track.parent;
  return list && list->nodeClass == NodeClass::ListRoot ? list->owner : nullptr;
}

// The spline's current arrays, copied into a key of its point level animation.
void FillSplineKey(Key& key, const Node& node) {
  DataValue& slot = key.data.raw;
  InitCustom(slot, DataKind_SplineKey);
  SplineKeyData* payload = AsSplineKey(slot);
  if (const Object* spline = AsObject(&node)) {
    if (const Tag* points = FindTag(*spline, TagType_Points, 0)) payload->points = CloneTag(*points);
    if (const Tag* tangents = FindTag(*spline, TagType_Tangents, 0)) payload->tangents = CloneTag(*tangents);
  }
}

void GetKeyTime(const AnimKey* key, BaseTime* out) {
  if (const Key* model = KeyOf(key); model && out) *out = model->time;
}

double GetKeyValue(const AnimKey* key) {
  const Key* model = KeyOf(key);
  return model ? model->value : 0.0;
}

void SetKeyValue(AnimKey* key, AnimCurve*, double value) {
  if (Key* model = KeyOf(key)) model->value = value;
}

void SetKeyData(AnimKey* key, AnimCurve*, const DataValue* value) {
  if (Key* model = KeyOf(key); model && value) CopyData(model->data.raw, *value);
}

DataValue* GetKeyData(AnimKey* key) {
  Key* model = KeyOf(key);
  return model ? &model->data.raw : nullptr;
}

int32_t GetKeyCount(const AnimCurve* curve) {
  const Curve* model = CurveOf(curve);
  return model ? model->keys.size() : 0;
}

AnimKey* GetKey(const AnimCurve* curve, int32_t index) {
  const Curve* model = CurveOf(curve);
  return model ? HandleOf<AnimKey>(model->keys.at(index)) : nullptr;
}

AnimKey* FindKey(const AnimCurve* curve, const BaseTime* time, int32_t* index, int32_t) {
  const Curve* model = CurveOf(curve);
  if (index) *index = -1;
  if (!model || !time) return nullptr;
  bool exact = false;
  int32_t at = LowerBound(*model, *time, &exact);
  if (!exact) return nullptr;
  if (index) *index = at;
  return HandleOf<AnimKey>(model->keys.at(at));
}

AnimTrack* AllocTrack(SceneNode* node, const ParamId* id) {
  std::vector<ParamLevel> path = PathOf(id);
  if (!node || path.empty()) return nullptr;
  auto* track = new Track(path);
  track->kind = TrackKindFor(*NodeOf(node), path);
  return HandleOf<AnimTrack>(track);
}

AnimCurve* GetCurve(AnimTrack* track, int32_t, bool create) {
  Track* model = TrackOf(track);
  if (!model) return nullptr;
  if (!model->curve && create) {
    model->curve = std::make_unique<Curve>();
    model->curve->track = model;
  }
  return HandleOf<AnimCurve>(model->curve.get());
}

double GetCurveValue(const AnimTrack* track, const BaseDocument*, const BaseTime* time, int32_t) {
  const Track* model = TrackOf(track);
  if (!model || !time) return 0.0;
  double current = 0.0;
  if (const Node* node = AnimatedNode(*model)) ReadFloatParameter(*node, model->path, current);
  return model->curve ? EvaluateCurve(*model->curve, *time, current) : current;
}

bool FillKey(AnimTrack* track, const BaseDocument*, const SceneNode* node, AnimKey* key) {
  Track* model = TrackOf(track);
  Key* target = KeyOf(key);
  if (!model || !target || !node) return false;
  const Node& source = *NodeOf(node);
  if (model->kind == kTrackKindFloat) return ReadFloatParameter(source, model->path, target->value);
  if (model->kind == SplineKeyTrack_Id) {
    FillSplineKey(*target, source);
    return true;
  }
  return ReadParameter(source, model->path, target->data.raw);
}

int32_t GetTrackKind(const AnimTrack* track) {
  const Track* model = TrackOf(track);
  return model ? model->kind : 0;
}

AnimKey* AddKey(AnimCurve* curve, const BaseTime* time, void*, int32_t, int32_t) {
  Curve* model = CurveOf(curve);
  if (!model || !time) return nullptr;
  int32_t before = model->keys.size();
  Key* key = AddKeyAt(*model, *time);
  Track* track = model->track;
  bool added = model->keys.size() != before;
  if (added && track && track->kind == SplineKeyTrack_Id) {
    if (const Node* spline = AnimatedNode(*track)) FillSplineKey(*key, *spline);
  }
  return HandleOf<AnimKey>(key);
}

void DeleteKey(AnimCurve* curve, int32_t index, int32_t, int32_t) {
  if (Curve* model = CurveOf(curve)) DeleteKeyAt(*model, index);
}

void GetTrackParamId(const AnimTrack* track, ParamId* out) {
  const Track* model = TrackOf(track);
  if (!model || !out) return;
  if (out->capacity > 0) delete[] out->levels;
  auto count = static_cast<int32_t>(model->path.size());
  auto* levels = new ParamLevel[model->path.size()];
  std::copy(model->path.begin(), model->path.end(), levels);
  *out = ParamId{levels, count, count};
}

SceneNode* GetFirstTrack(const SceneNode* node) {
  if (!node) return nullptr;
  const Node* model = NodeOf(node);
  return model->trackRoot ? HandleOf<SceneNode>(model->trackRoot->firstChild) : nullptr;
}

}  // namespace

const ORYOS_CA& CATable() {
  static const ORYOS_CA table{.GetKeyTime = GetKeyTime,
                              .GetKeyValue = GetKeyValue,
                              .SetKeyValue = SetKeyValue,
                              .SetKeyData = SetKeyData,
                              .GetKeyData = GetKeyData,
                              .GetKeyCount = GetKeyCount,
                              .GetKey = GetKey,
                              .FindKey = FindKey,
                              .AllocTrack = AllocTrack,
                              .GetCurve = GetCurve,
                              .GetCurveValue = GetCurveValue,
                              .FillKey = FillKey,
                              .GetTrackKind = GetTrackKind,
                              .AddKey = AddKey,
                              .DeleteKey = DeleteKey,
                              .GetTrackParamId = GetTrackParamId,
                              .GetFirstTrack = GetFirstTrack};
  return table;
}

}  // namespace quillon
