#include "quillon/model/evaluate.h"

#include <cmath>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/links.h"
#include "quillon/model/tag.h"

namespace quillon {
namespace {

constexpr int32_t kDefaultDuplicates = 3;
constexpr Vector kDefaultDuplicateOffset{100.0, 0.0, 0.0};
// Generators inside caches inside caches stop here, so that an instance of
// its own ancestor cannot recurse without end.
constexpr int32_t kMaxCacheDepth = 16;

void BuildCachesAt(Object& object, const Document* document, int32_t depth);

void MarkFromCache(Node& node) {
  node.infoBits |= kInfoBitFromCache;
  if (Object* object = AsObject(&node)) {
    for (Tag* tag : TagsOf(*object)) tag->infoBits |= kInfoBitFromCache;
  }
  for (Node* child = node.firstChild; child; child = child->next) MarkFromCache(*child);
}

int32_t Int32Param(const Node& node, int32_t id, int32_t fallback) {
  auto found = node.params.find(id);
  return found == node.params.end() ? fallback : AsInt32(found->second.raw);
}

Vector VectorParam(const Node& node, int32_t id, Vector fallback) {
  auto found = node.params.find(id);
  const Vector* vector = found == node.params.end() ? nullptr : AsVector(found->second.raw);
  return vector ? *vector : fallback;
}

// A null at the generator's place that holds the generated objects.
std::unique_ptr<Object> NewCacheRoot() { return std::make_unique<Object>(ObjectType_Null); }

std::unique_ptr<Object> InstanceCache(const Object& instance) {
  auto found = instance.params.find(InstanceParam_Reference);
  const LinkData* link = found == instance.params.end() ? nullptr : AsLink(found->second.raw);
  const Object* reference = link ? AsObject(ResolveLink(link->targetId)) : nullptr;
  if (!reference || reference == &instance) return nullptr;
  auto copy = CloneObject(*reference);
  // The copy stands where the instance stands.
  SetLocalMatrixOf(*copy, Matrix());
  return copy;
}

std::unique_ptr<Object> DuplicatorCache(const Object& generator) {
  int32_t count = Int32Param(generator, DuplicatorParam_Count, kDefaultDuplicates);
  Vector offset = VectorParam(generator, DuplicatorParam_Offset, kDefaultDuplicateOffset);
  auto root = NewCacheRoot();
  for (int32_t i = 0; i < count; ++i) {
    for (Node* child = generator.firstChild; child; child = child->next) {
      const Object* object = AsObject(child);
      if (!object) continue;
      auto copy = CloneObject(*object);
      SetPositionOf(*copy, PositionOf(*copy) + offset * static_cast<double>(i));
      InsertLastUnder(copy.release(), root.get());
    }
  }
  return root;
}

std::unique_ptr<Object> PassThroughCache(const Object& generator) {
  auto root = NewCacheRoot();
  for (Node* child = generator.firstChild; child; child = child->next) {
    if (const Object* object = AsObject(child)) InsertLastUnder(CloneObject(*object).release(), root.get());
  }
  return root;
}

std::unique_ptr<Object> GeneratorCacheOf(const Object& object) {
  switch (object.type) {
    case ObjectType_Instance: return InstanceCache(object);
    case ObjectType_Duplicator: return DuplicatorCache(object);
    case ObjectType_ChainGeneratorA:
    case ObjectType_ChainGeneratorB: return PassThroughCache(object);
    default: return nullptr;
  }
}

bool HasDeformer(const Object& object) {
  for (Node* child = object.firstChild; child; child = child->next) {
    if (child->type == ObjectType_Deformer) return true;
  }
  return false;
}

// The deformed copy of the object itself, without its children.
std::unique_ptr<Object> DeformCacheOf(const Object& object) {
  auto copy = std::make_unique<Object>(object.type);
  CopyNodeBasics(object, *copy);
  copy->rotationOrder = object.rotationOrder;
  copy->modes = object.modes;
  for (Tag* tag : TagsOf(object)) InsertLastUnder(CloneTag(*tag).release(), copy->tagRoot.get());
  SetLocalMatrixOf(*copy, Matrix());
  return copy;
}

void Attach(std::unique_ptr<Object>& slot, std::unique_ptr<Object> cache, Object& owner,
            const Document* document, int32_t depth) {
  slot = std::move(cache);
  if (!slot) return;
  slot->parent = &owner;
  MarkFromCache(*slot);
  BuildCachesAt(*slot, document, depth + 1);
}

void ApplyTrack(Node& node, const Track& track, const BaseTime& time) {
  if (track.kind != kTrackKindFloat || !track.curve || track.curve->keys.size() == 0) return;
  if ((track.infoBits & kInfoBitTrackOff) != 0 || track.path.empty()) return;
  double value = EvaluateCurve(*track.curve, time, 0.0);
  DataValue& target = node.params[track.path[0].id].raw;
  if (track.path.size() == 1) {
    if (target.kind == DataKind_Int32) {
      SetInt32(target, static_cast<int32_t>(std::lround(value)));
    } else {
      SetFloat(target, value);
    }
    return;
  }
  Vector vector = AsVector(target) ? *AsVector(target) : Vector{};
  switch (track.path[1].id) {
    case VectorComponent_X: vector.x = value; break;
    case VectorComponent_Y: vector.y = value; break;
    case VectorComponent_Z: vector.z = value; break;
    default: return;
  }
  SetVector(target, vector);
}

void Animate(Node& node, const BaseTime& time) {
  for (Track* track : TracksOf(node)) ApplyTrack(node, *track, time);
  if (Object* object = AsObject(&node)) {
    for (Tag* tag : TagsOf(*object)) Animate(*tag, time);
  }
  for (Node* child = node.firstChild; child; child = child->next) Animate(*child, time);
}


void BuildCachesAt(Object& object, const Document* document, int32_t depth) {
  object.generatorCache.reset();
  object.deformCache.reset();
  if (depth > kMaxCacheDepth) return;
  for (Node* child = object.firstChild; child; child = child->next) {
    if (Object* childObject = AsObject(child)) BuildCachesAt(*childObject, document, depth);
  }
  Attach(object.generatorCache, GeneratorCacheOf(object), object, document, depth);
  Attach(object.deformCache, HasDeformer(object) ? DeformCacheOf(object) : nullptr, object, document, depth);
}
}  // namespace

void BuildCaches(Object& object, const Document* document) { BuildCachesAt(object, document, 0); }

void EvaluateDocumentCaches(Document& document) {
  Animate(*document.objects, document.currentTime);
  for (Node* node = document.objects->firstChild; node; node = node->next) {
    if (Object* object = AsObject(node)) BuildCaches(*object, &document);
  }
}

}  // namespace quillon
