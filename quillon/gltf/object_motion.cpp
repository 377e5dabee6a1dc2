#include "quillon/gltf/object_motion.h"

#include <cmath>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/links.h"
#include "quillon/model/tag.h"
#include "quillon/render/node_values.h"

namespace quillon::gltf {
namespace {

bool IsTransformComponent(const Track& track) {
  if (track.path.size() != 2) return false;
  const int32_t parameter = track.path[0].id;
  const int32_t component = track.path[1].id;
  return (parameter == ObjectParam_Position || parameter == ObjectParam_Rotation || parameter == ObjectParam_Scale) &&
         component >= VectorComponent_X && component <= VectorComponent_Z;
}

// A scene layer with animation switched off takes the force out of its objects' tracks.
bool AnimationAllowed(const Document& document, const Object& object) {
  if (object.layerId == 0) return true;
  const Node* layer = ResolveLinkIn(object.layerId, &document);
  return !layer || render::Int32Of(*layer, LayerParam_Animation, 1) != 0;
}

std::vector<const Track*> CountingTransformTracks(const Document& document, Object& object) {
  std::vector<const Track*> tracks;
  if (!AnimationAllowed(document, object)) return tracks;
  for (Track* track : TracksOf(object)) {
    if (track->kind == kTrackKindFloat && track->curve && track->curve->keys.size() > 0 &&
        (track->infoBits & kInfoBitTrackOff) == 0 && IsTransformComponent(*track))
      tracks.push_back(track);
  }
  return tracks;
}

void AddChainTimes(const Document& document, Object* object, std::set<BaseTime>& times) {
  for (; object; object = AsObject(VisibleParent(object))) {
    const std::set<BaseTime> own = TransformKeyTimes(document, *object);
    times.insert(own.begin(), own.end());
  }
}

double& ComponentOf(Vector& vector, int32_t component) {
  if (component == VectorComponent_X) return vector.x;
  if (component == VectorComponent_Y) return vector.y;
  return vector.z;
}

// Axes that look along `direction`, x level (no bank), y up as far as it can be.
bool LookAxes(const Vector& direction, Vector& x, Vector& y, Vector& z) {
  if (Length(direction) <= 1e-9) return false;
  z = Normalized(direction);
  x = Cross(Vector{0.0, 1.0, 0.0}, z);
  // Straight up or down the heading is undefined; the target gives no answer then.
  if (Length(x) <= 1e-9) return false;
  Normalize(x);
  y = Cross(z, x);
  return true;
}

}  // namespace

std::set<BaseTime> TransformKeyTimes(const Document& document, Object& object) {
  std::set<BaseTime> times;
  for (const Track* track : CountingTransformTracks(document, object)) {
    for (int32_t i = 0; i < track->curve->keys.size(); ++i) times.insert(track->curve->keys.at(i)->time);
  }
  return times;
}

std::set<BaseTime> MotionKeyTimes(const Document& document, Object& object) {
  std::set<BaseTime> times = TransformKeyTimes(document, object);
  if (Object* target = TargetOf(document, object)) {
    AddChainTimes(document, AsObject(VisibleParent(&object)), times);
    AddChainTimes(document, target, times);
  }
  return times;
}

bool HasTransformTracks(const Document& document, Object& object) {
  return !CountingTransformTracks(document, object).empty();
}

Object* TargetOf(const Document& document, const Object& object) {
  const Tag* tag = FindTag(object, TagType_Target, 0);
  Object* target = tag ? AsObject(render::LinkedNodeOf(*tag, TargetTagParam_Target, &document)) : nullptr;
  return target == &object ? nullptr : target;
}

void PoseAt(const Document& document, Object& object, const BaseTime& time) {
  Vector values[3] = {PositionOf(object), RotationOf(object), ScaleOf(object)};
  bool changed = false;
  for (const Track* track : CountingTransformTracks(document, object)) {
    Vector& vector = values[track->path[0].id - ObjectParam_Position];
    double& component = ComponentOf(vector, track->path[1].id);
    component = EvaluateCurve(*track->curve, time, component);
    changed = true;
  }
  if (!changed) return;
  SetPositionOf(object, values[0]);
  SetRotationOf(object, values[1]);
  SetScaleOf(object, values[2]);
}

void PoseDocumentAt(const Document& document, const BaseTime& time) {
  std::vector<Node*> pending = ChildrenOf(document.objects.get());
  while (!pending.empty()) {
    Node* node = pending.back();
    pending.pop_back();
    if (Object* object = AsObject(node)) PoseAt(document, *object, time);
    for (Node* child : ChildrenOf(node)) pending.push_back(child);
  }
}

Matrix SceneLocalMatrix(const Document& document, const Object& object) {
  Matrix local = LocalMatrixOf(object);
  const Object* target = TargetOf(document, object);
  if (!target) return local;
  const Object* parent = AsObject(VisibleParent(&object));
  // The parents and the target count with their own rotations; a target tag turns only its
  // own object, so that two objects that look at each other cannot wait on each other.
  const Matrix parentWorld = parent ? GlobalMatrixOf(*parent) : Matrix();
  const Vector place = TransformPoint(parentWorld, local.off);
  const Vector aim = GlobalMatrixOf(*target).off;
  Vector x, y, z;
  if (!LookAxes(aim - place, x, y, z)) return local;
  const Vector scale = ScaleOf(object);
  Matrix world;
  world.off = place;
  world.axisX = x * scale.x;
  world.axisY = y * scale.y;
  world.axisZ = z * scale.z;
  return Multiply(Invert(parentWorld), world);
}

}  // namespace quillon::gltf
