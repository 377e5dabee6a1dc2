#include "quillon/gltf/scene_conversion.h"

#include "plugin/exporter/scene_ids.h"
#include "quillon/gltf/animation.h"
#include "quillon/gltf/cameras.h"
#include "quillon/gltf/gltf_buffer.h"
#include "quillon/gltf/lights.h"
#include "quillon/gltf/meshes.h"
#include "quillon/gltf/object_motion.h"
#include "quillon/gltf/scene_params.h"
#include "quillon/render/scene_faces.h"
#include "quillon/render/node_values.h"

namespace quillon::gltf {
namespace {

constexpr int32_t kNewDocumentFps = 30;

// What an object type carries that glTF does not, or an empty text. What lies inside a sweep
// is its stroke's path, which the sweep's own line names.
std::string NotCarried(const Object& object) {
  const Object* parent = AsObject(VisibleParent(&object));
  if (parent && parent->type == ObjectType_Sweep) return "";
  switch (object.type) {
    case ObjectType_Text: return "live text " + Quoted(object) + " (its letters are made by the 3D application; export text as character outlines to carry it)";
    case ObjectType_Sweep: return "the stroke of sweep " + Quoted(object) + " (only filled faces are converted)";
    case ObjectType_Instance:
      return object.generatorCache ? "" : "the copy that instance " + Quoted(object) + " shows (it refers to nothing)";
    case ObjectType_Deformer: return "the bend of deformer " + Quoted(object) + " (deformers are not evaluated)";
    case ObjectType_Polygon: return "the surface of polygon object " + Quoted(object) + " (the scene holds no points of it)";
    default: return "";
  }
}

void AddContent(Conversion& conversion, Object& object, tinygltf::Node& node) {
  switch (object.type) {
    case ObjectType_Camera:
    case ObjectType_KvCamera: AddCamera(conversion, object, node); return;
    case ObjectType_Light:
    case ObjectType_KvLight: AddLight(conversion, object, node); return;
    case ObjectType_Plane: AddPlaneMesh(conversion, object, node); return;
    case ObjectType_Spline:
      if (const Object* parent = AsObject(VisibleParent(&object)); parent && parent->type == ObjectType_Extrude)
        AddSplineMesh(conversion, object, *parent, node);
      return;
    default: break;
  }
  const std::string missing = NotCarried(object);
  if (!missing.empty()) conversion.summary.leftOut.push_back(missing);
}

// Adds the object and everything below it; gives the node's index. As the renderer draws
// them, an object switched off keeps its node but shows nothing, nor does anything below it;
// a generator's copies (its cache, built when the document was evaluated) come as a node
// below it, and a generator that consumes its children shows only those copies.
int AddNode(Conversion& conversion, Object& object, bool shown, std::vector<Object*>& converted) {
  const int index = static_cast<int>(conversion.model.nodes.size());
  conversion.model.nodes.emplace_back();
  conversion.nodeOf[&object] = index;
  converted.push_back(&object);
  ++conversion.summary.nodes;
  const bool showsItself = shown && !render::SwitchedOff(object);
  {
    tinygltf::Node node;
    node.name = ToUtf8(object.name);
    SetNodeTransform(conversion.document, object, node);
    if (showsItself) AddContent(conversion, object, node);
    conversion.model.nodes[index] = std::move(node);
  }
  if (shown && !showsItself)
    conversion.summary.leftOut.push_back("what object " + Quoted(object) + " and all below it show (switched off)");
  const bool childrenShown = showsItself && !(render::ConsumesChildren(object.type) && object.generatorCache);
  std::vector<Object*> below;
  for (Node* child : ChildrenOf(&object)) {
    if (Object* childObject = AsObject(child)) below.push_back(childObject);
  }
  for (Object* child : below) {
    const int childIndex = AddNode(conversion, *child, childrenShown, converted);
    conversion.model.nodes[index].children.push_back(childIndex);
  }
  if (object.generatorCache) {
    const int cacheIndex = AddNode(conversion, *object.generatorCache, showsItself, converted);
    conversion.model.nodes[index].children.push_back(cacheIndex);
  }
  return index;
}

// glTF time 0: the document's first frame, or the earliest transform key when one lies before.
BaseTime Origin(Document& document, const std::vector<Object*>& objects) {
  BaseTime origin = TimeParam(document, DocParam_MinTime, BaseTime());
  for (Object* object : objects) {
    const std::set<BaseTime> times = TransformKeyTimes(document, *object);
    if (!times.empty() && *times.begin() < origin) origin = *times.begin();
  }
  return origin;
}

std::vector<Object*> AllObjects(const Document& document) {
  std::vector<Object*> objects;
  std::vector<Node*> pending = ChildrenOf(document.objects.get());
  for (std::size_t i = 0; i < pending.size(); ++i) {
    if (Object* object = AsObject(pending[i])) objects.push_back(object);
    for (Node* child : ChildrenOf(pending[i])) pending.push_back(child);
  }
  return objects;
}

}  // namespace

bool ConvertScene(Document& document, const ConversionOptions& options, ConvertedScene& result, std::string* problem) {
  const std::vector<Object*> all = AllObjects(document);
  if (all.empty()) {
    *problem = "the scene holds no object, so there is nothing to convert";
    return false;
  }
  Conversion conversion{document, options, {}, {}, Origin(document, all), {}, {}};
  ConversionSummary& summary = conversion.summary;
  summary.frameRate = options.frameRate > 0.0 ? options.frameRate : render::Int32Of(document, DocParam_Fps, kNewDocumentFps);
  if (!(summary.frameRate > 0.0)) summary.frameRate = kNewDocumentFps;
  summary.firstFrame = FrameOf(TimeParam(document, DocParam_MinTime, BaseTime()), summary.frameRate);
  summary.lastFrame = FrameOf(TimeParam(document, DocParam_MaxTime, BaseTime()), summary.frameRate);

  tinygltf::Model& model = conversion.model;
  model.asset.version = "2.0";
  model.asset.generator = "orytool gltf";
  tinygltf::Scene scene;
  scene.name = document.name.empty() ? options.sceneName : ToUtf8(document.name);
  model.scenes.push_back(scene);
  model.defaultScene = 0;

  PoseDocumentAt(document, conversion.origin);
  try {
    std::vector<Object*> converted;
    for (Node* top : ChildrenOf(document.objects.get())) {
      if (Object* object = AsObject(top)) model.scenes.front().nodes.push_back(AddNode(conversion, *object, true, converted));
    }
    AddAnimation(conversion, converted);
  } catch (const BeyondFloatRange& e) {
    *problem = e.what();
    return false;
  }
  result.model = std::move(conversion.model);
  result.summary = std::move(conversion.summary);
  return true;
}

}  // namespace quillon::gltf
