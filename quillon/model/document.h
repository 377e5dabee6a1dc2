// A scene document: its own parameters (frame rate, time range), the lists of
// objects, materials, scene layers, render settings and timeline markers, and
// the editor views with their cameras.
#pragma once

#include <memory>
#include <vector>

#include "quillon/model/node.h"
#include "quillon/model/object.h"

namespace quillon {

// An editor view. It looks through a scene camera when one is linked, and
// through its own editor camera otherwise.
struct View {
  uint64_t sceneCameraId = 0;
  std::unique_ptr<Object> editorCamera;
  View();
};

class Document : public Node {
 public:
  Document();
  ~Document() override;

  std::unique_ptr<Node> objects;
  std::unique_ptr<Node> materials;
  std::unique_ptr<Node> layers;
  std::unique_ptr<Node> settings;
  std::unique_ptr<Node> markers;
  // The scene states (scene_states.h) and the link id of the one in force, so that a
  // state freed or taken out is no longer current.
  std::unique_ptr<Node> states;
  uint64_t currentStateId = 0;
  // Link ids of the active objects, in the order they became active; an editor's
  // selection, not kept in the file.
  std::vector<uint64_t> activeObjectIds;
  // Null when the document has no active settings node.
  Node* activeSettings = nullptr;
  std::vector<std::unique_ptr<View>> views;
  // Indices into views; -1 for none.
  int32_t activeView = -1;
  int32_t renderView = -1;
  // The time at which EvaluateDocument animates the parameters.
  BaseTime currentTime;

  // Empties every list and view, keeping the document itself.
  void Clear();
};

Document* AsDocument(Node* node);
const Document* AsDocument(const Node* node);

// A new document: default frame rate and time range, one active render
// settings node and one active view.
std::unique_ptr<Document> NewDocument();
std::unique_ptr<Node> NewRenderSettings();
std::unique_ptr<Node> NewLayer();
std::unique_ptr<Node> NewMaterial(int32_t type);
std::unique_ptr<Node> NewShader(int32_t type);
std::unique_ptr<Node> NewMarker();

// A material; its shaders live under their own list root.
class MaterialNode : public Node {
 public:
  explicit MaterialNode(int32_t type);
  std::unique_ptr<Node> shaders;
};

// The shader list of a material, or null for any other node.
Node* ShaderList(Node& material);

// Object of a view's linked camera, if it lies in the document.
Object* SceneCameraOf(const View& view, const Document& document);

}  // namespace quillon
