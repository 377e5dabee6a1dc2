#include "quillon/model/finite_values.h"

#include <cmath>
#include <sstream>
#include <vector>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/tag.h"

namespace quillon {
namespace {

std::string ParamName(int32_t id) {
  switch (id) {
    case ObjectParam_Position: return "position";
    case ObjectParam_Rotation: return "rotation";
    case ObjectParam_Scale: return "scale";
    default: return "parameter " + std::to_string(id);
  }
}

// The numbers a value holds: one for a float, three for a vector, none for other kinds.
std::vector<double> NumbersOf(const DataValue& value) {
  if (value.kind == DataKind_Float) return {AsFloat(value)};
  if (const Vector* vector = value.kind == DataKind_Vector ? AsVector(value) : nullptr) {
    return {vector->x, vector->y, vector->z};
  }
  return {};
}

// The first number that is not finite, written as the C library writes it.
bool NonFinite(const std::vector<double>& numbers, std::string* shown) {
  for (const double number : numbers) {
    if (std::isfinite(number)) continue;
    std::ostringstream text;
    text << number;
    *shown = text.str();
    return true;
  }
  return false;
}

std::string TrackName(const Track& track) {
  if (track.path.empty()) return "a track";
  std::string name = "the track of " + ParamName(track.path[0].id);
  if (track.path.size() > 1) {
    switch (track.path[1].id) {
      case VectorComponent_X: name += ".x"; break;
      case VectorComponent_Y: name += ".y"; break;
      case VectorComponent_Z: name += ".z"; break;
      default: break;
    }
  }
  return name;
}

// The node's own parameters and the keys of its tracks.
std::string ProblemOfNode(const Node& node) {
  std::string shown;
  for (const auto& [id, value] : node.params) {
    if (NonFinite(NumbersOf(value.raw), &shown)) return ParamName(id) + " holds " + shown;
  }
  if (!node.trackRoot) return "";
  for (const Node* at = node.trackRoot->firstChild; at; at = at->next) {
    const Track* track = AsTrack(at);
    if (!track || !track->curve) continue;
    const KeyStore& keys = track->curve->keys;
    for (int32_t i = 0; i < keys.size(); ++i) {
      const Key* node = keys.nodeAt(i);
      if (NonFinite({keys.valueAt(i)}, &shown) || (node && NonFinite(NumbersOf(node->data.raw), &shown))) {
        return "key " + std::to_string(i) + " of " + TrackName(*track) + " holds " + shown;
      }
    }
  }
  return "";
}

std::string ProblemOfObject(const Object& object) {
  std::string problem = ProblemOfNode(object);
  for (const Tag* tag : TagsOf(object)) {
    if (problem.empty()) problem = ProblemOfNode(*tag);
  }
  return problem;
}

}  // namespace

std::string NonFiniteValue(const Document& document) {
  // Depth first with a stack of its own: documents made through the engine's operations may
  // nest deeper than a recursion should go.
  std::vector<const Node*> stack;
  for (const Node* top = document.objects->lastChild; top; top = top->prev) stack.push_back(top);
  while (!stack.empty()) {
    const Node* node = stack.back();
    stack.pop_back();
    if (const Object* object = AsObject(node)) {
      const std::string problem = ProblemOfObject(*object);
      if (!problem.empty()) return "object \"" + ToUtf8(object->name) + "\": " + problem;
    }
    for (const Node* child = node->lastChild; child; child = child->prev) stack.push_back(child);
  }
  return "";
}

}  // namespace quillon
