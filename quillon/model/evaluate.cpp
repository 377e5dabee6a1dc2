#include "quillon/model/evaluate.h"

#include <cmath>
#include <string>
#include <vector>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/finite_values.h"
#include "quillon/model/links.h"
#include "quillon/model/tag.h"

namespace quillon {
namespace {

constexpr int32_t kDefaultDuplicates = 3;
constexpr Vector kDefaultDuplicateOffset{100.0, 0.0, 0.0};

// What one evaluation has made so far, and the first limit it passed.
struct Evaluation {
  int64_t made = 0;  // objects in caches
  // The objects whose copies are being filled, innermost last: an instance inside such a copy
  // that refers to one of them would copy itself without end.
  std::vector<const Object*> copying;
  std::string problem;
};

std::string Named(const Object& object) { return "object \"" + ToUtf8(object.name) + "\""; }

// The object and every object below it.
int64_t CountObjects(const Object& object) {
  int64_t count = 0;
  std::vector<const Node*> stack{&object};
  while (!stack.empty()) {
    const Node* node = stack.back();
    stack.pop_back();
    if (AsObject(node)) ++count;
    for (const Node* child = node->firstChild; child; child = child->next) stack.push_back(child);
  }
  return count;
}

int64_t CountChildObjects(const Object& object) {
  int64_t count = 0;
  for (Node* child = object.firstChild; child; child = child->next) {
    if (const Object* childObject = AsObject(child)) count += CountObjects(*childObject);
  }
  return count;
}

// Takes `count` more objects for the caches of `generator`, or records that they would pass
// the limit.
bool Afford(Evaluation& evaluation, const Object& generator, int64_t count) {
  if (count > kMaxGeneratedObjects - evaluation.made) {
    evaluation.problem = Named(generator) + ": its caches would hold more than " +
                         std::to_string(kMaxGeneratedObjects) + " objects";
    return false;
  }
  evaluation.made += count;
  return true;
}

void BuildCachesAt(Object& object, Evaluation& evaluation, int32_t depth);

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

const Object* ReferenceOf(const Object& instance) {
  auto found = instance.params.find(InstanceParam_Reference);
  const LinkData* link = found == instance.params.end() ? nullptr : AsLink(found->second.raw);
  return link ? AsObject(ResolveLink(link->targetId)) : nullptr;
}

std::unique_ptr<Object> InstanceCache(const Object& instance, Evaluation& evaluation) {
  const Object* reference = ReferenceOf(instance);
  if (!reference) return nullptr;
  bool loops = IsWithin(&instance, reference);
  for (const Object* copying : evaluation.copying) loops = loops || copying == reference;
  if (loops) {
    evaluation.problem = Named(instance) + ": an instance of " + Named(*reference) +
                         ", which holds the instance itself, directly or through other instances";
    return nullptr;
  }
  if (!Afford(evaluation, instance, CountObjects(*reference))) return nullptr;
  auto copy = CloneObject(*reference);
  // The copy stands where the instance stands.
  SetLocalMatrixOf(*copy, Matrix());
  return copy;
}

std::unique_ptr<Object> DuplicatorCache(const Object& generator, Evaluation& evaluation) {
  const int32_t count = Int32Param(generator, DuplicatorParam_Count, kDefaultDuplicates);
  if (count < 0 || count > kMaxDuplicates) {
    evaluation.problem = Named(generator) + ": a duplicator makes 0 to " + std::to_string(kMaxDuplicates) +
                         " copies, not " + std::to_string(count);
    return nullptr;
  }
  if (!Afford(evaluation, generator, int64_t{count} * CountChildObjects(generator))) return nullptr;
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

std::unique_ptr<Object> PassThroughCache(const Object& generator, Evaluation& evaluation) {
  if (!Afford(evaluation, generator, CountChildObjects(generator))) return nullptr;
  auto root = NewCacheRoot();
  for (Node* child = generator.firstChild; child; child = child->next) {
    if (const Object* object = AsObject(child)) InsertLastUnder(CloneObject(*object).release(), root.get());
  }
  return root;
}

std::unique_ptr<Object> GeneratorCacheOf(const Object& object, Evaluation& evaluation) {
  switch (object.type) {
    case ObjectType_Instance: return InstanceCache(object, evaluation);
    case ObjectType_Duplicator: return DuplicatorCache(object, evaluation);
    case ObjectType_ChainGeneratorA:
    case ObjectType_ChainGeneratorB: return PassThroughCache(object, evaluation);
    default: return nullptr;
  }
}

bool HasDeformer(const Object& object) {
  for (Node* child = object.firstChild; child; child = child->next) {
    if (child->type == ObjectType_Deformer) return true;
  }
  return false;
}

bool IsGenerator(const Object& object) {
  switch (object.type) {
    case ObjectType_Instance:
    case ObjectType_Duplicator:
    case ObjectType_ChainGeneratorA:
    case ObjectType_ChainGeneratorB: return true;
    default: return false;
  }
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
            Evaluation& evaluation, int32_t depth) {
  slot = std::move(cache);
  if (!slot) return;
  slot->parent = &owner;
  MarkFromCache(*slot);
  BuildCachesAt(*slot, evaluation, depth + 1);
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


void BuildCachesAt(Object& object, Evaluation& evaluation, int32_t depth) {
  object.generatorCache.reset();
  object.deformCache.reset();
  if (!evaluation.problem.empty()) return;
  if (depth > kMaxCacheDepth && (IsGenerator(object) || HasDeformer(object))) {
    evaluation.problem = Named(object) + ": its cache would lie inside " + std::to_string(depth) +
                         " caches; they nest at most " + std::to_string(kMaxCacheDepth) + " deep";
    return;
  }
  for (Node* child = object.firstChild; child; child = child->next) {
    if (Object* childObject = AsObject(child)) BuildCachesAt(*childObject, evaluation, depth);
  }
  std::unique_ptr<Object> generated = GeneratorCacheOf(object, evaluation);
  // The caches inside an instance's copy are built while its reference counts as being copied.
  const Object* reference = object.type == ObjectType_Instance ? ReferenceOf(object) : nullptr;
  if (reference) evaluation.copying.push_back(reference);
  Attach(object.generatorCache, std::move(generated), object, evaluation, depth);
  if (reference) evaluation.copying.pop_back();
  std::unique_ptr<Object> deformed;
  if (HasDeformer(object) && Afford(evaluation, object, 1)) deformed = DeformCacheOf(object);
  Attach(object.deformCache, std::move(deformed), object, evaluation, depth);
}

void DropCaches(Object& object) {
  object.generatorCache.reset();
  object.deformCache.reset();
  for (Node* child = object.firstChild; child; child = child->next) {
    if (Object* childObject = AsObject(child)) DropCaches(*childObject);
  }
}

}  // namespace

std::string BuildCaches(Object& object) {
  Evaluation evaluation;
  BuildCachesAt(object, evaluation, 0);
  if (!evaluation.problem.empty()) DropCaches(object);
  return evaluation.problem;
}

std::string EvaluateDocumentCaches(Document& document) {
  Evaluation evaluation;
  evaluation.problem = NonFiniteValue(document);
  if (evaluation.problem.empty()) {
    Animate(*document.objects, document.currentTime);
    for (Node* node = document.objects->firstChild; node; node = node->next) {
      if (Object* object = AsObject(node)) BuildCachesAt(*object, evaluation, 0);
    }
  }
  if (evaluation.problem.empty()) return "";
  // No cache stays, from this evaluation or an earlier one.
  for (Node* node = document.objects->firstChild; node; node = node->next) {
    if (Object* object = AsObject(node)) DropCaches(*object);
  }
  return evaluation.problem;
}

}  // namespace quillon
