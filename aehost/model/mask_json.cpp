// Masks of the project description, read and written.
#include "aehost/model/mask_json.h"

#include <algorithm>
#include <string>
#include <utility>

#include "aehost/model/shape_json.h"
#include "aehost/model/stream_json.h"

namespace aehost::description {
namespace {

// A margin is a one-dimensional stream; the host evaluates no expression on it.
Stream ReadMargin(const In& at) {
  Stream margin = ReadStreamOfKind(at, StreamKind::OneD);
  if (!margin.expression.empty()) Fail(Member(at, "expression"), "a path option takes no expression");
  return margin;
}

}  // namespace

std::vector<Mask> ReadMasks(const In& at) {
  std::vector<Mask> masks;
  const Json::Value& array = RequireArray(at);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    const In element = Element(at, i);
    RequireObject(element, {"name", "shape"});
    RequireMember(element, "shape");
    Mask mask;
    mask.name = "Mask " + std::to_string(i + 1);
    Read(element, "name", mask.name);
    mask.shape = ReadPathStream(Member(element, "shape"));
    const bool empty = mask.shape.shape.vertices.empty() ||
                       std::any_of(mask.shape.keys.begin(), mask.shape.keys.end(),
                                   [](const PathKey& key) { return key.shape.vertices.empty(); });
    if (empty) Fail(Member(element, "shape"), "a mask needs at least one vertex");
    masks.push_back(std::move(mask));
  }
  return masks;
}

TextPathOptions ReadPathOptions(const In& at, std::size_t maskCount) {
  RequireObject(at, {"path", "firstMargin", "lastMargin"});
  TextPathOptions options;
  if (Has(at, "path")) {
    const In path = Member(at, "path");
    options.path = Integer(path, 0, kMaxId);
    if (static_cast<std::size_t>(options.path) > maskCount) {
      Fail(path, "the layer has no mask " + std::to_string(options.path) + " (it has " + std::to_string(maskCount) +
                     ")");
    }
  }
  if (Has(at, "firstMargin")) options.firstMargin = ReadMargin(Member(at, "firstMargin"));
  if (Has(at, "lastMargin")) options.lastMargin = ReadMargin(Member(at, "lastMargin"));
  return options;
}

Json::Value WriteMasks(const std::vector<Mask>& masks) {
  Json::Value out(Json::arrayValue);
  for (std::size_t i = 0; i < masks.size(); ++i) {
    Json::Value mask(Json::objectValue);
    if (masks[i].name != "Mask " + std::to_string(i + 1)) mask["name"] = masks[i].name;
    mask["shape"] = WritePathStream(masks[i].shape);
    out.append(std::move(mask));
  }
  return out;
}

Json::Value WritePathOptions(const TextPathOptions& options) {
  Json::Value out(Json::objectValue);
  if (options.path != 0) out["path"] = options.path;
  if (options.firstMargin != Stream{}) out["firstMargin"] = WriteStream(options.firstMargin);
  if (options.lastMargin != Stream{}) out["lastMargin"] = WriteStream(options.lastMargin);
  return out;
}

}  // namespace aehost::description
