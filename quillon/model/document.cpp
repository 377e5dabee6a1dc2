#include "quillon/model/document.h"

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/links.h"

namespace quillon {
namespace {

constexpr int32_t kDefaultFps = 30;
constexpr int32_t kDefaultFrames = 90;
constexpr double kDefaultWidth = 1280.0;
constexpr double kDefaultHeight = 720.0;

void SetTimeParam(Node& node, int32_t id, const BaseTime& time) { SetTime(node.params[id].raw, time); }
void SetFloatParam(Node& node, int32_t id, double value) { SetFloat(node.params[id].raw, value); }
void SetInt32Param(Node& node, int32_t id, int32_t value) { SetInt32(node.params[id].raw, value); }

}  // namespace

View::View() : editorCamera(std::make_unique<Object>(ObjectType_Camera)) {}

Document::Document()
    : Node(NodeClass::Document, NodeType_Document),
      objects(MakeListRoot(this)),
      materials(MakeListRoot(this)),
      layers(MakeListRoot(this)),
      settings(MakeListRoot(this)),
      markers(MakeListRoot(this)),
      states(MakeListRoot(this)) {}

Document::~Document() = default;

void Document::Clear() {
  objects = MakeListRoot(this);
  materials = MakeListRoot(this);
  layers = MakeListRoot(this);
  settings = MakeListRoot(this);
  markers = MakeListRoot(this);
  states = MakeListRoot(this);
  currentStateId = 0;
  activeObjectIds.clear();
  activeSettings = nullptr;
  views.clear();
  activeView = renderView = -1;
  currentTime = BaseTime();
  params.clear();
  trackRoot.reset();
  bits.reset();
  name.clear();
}

MaterialNode::MaterialNode(int32_t materialType)
    : Node(NodeClass::Material, materialType), shaders(MakeListRoot(this)) {}

Document* AsDocument(Node* node) {
  return node && node->nodeClass == NodeClass::Document ? static_cast<Document*>(node) : nullptr;
}

const Document* AsDocument(const Node* node) {
  return node && node->nodeClass == NodeClass::Document ? static_cast<const Document*>(node) : nullptr;
}

std::unique_ptr<Document> NewDocument() {
  auto document = std::make_unique<Document>();
  SetInt32Param(*document, DocParam_Fps, kDefaultFps);
  SetTimeParam(*document, DocParam_MinTime, BaseTime(0, kDefaultFps));
  SetTimeParam(*document, DocParam_MaxTime, BaseTime(kDefaultFrames, kDefaultFps));
  SetTimeParam(*document, DocParam_LoopMinTime, BaseTime(0, kDefaultFps));
  SetTimeParam(*document, DocParam_LoopMaxTime, BaseTime(kDefaultFrames, kDefaultFps));
  Node* settings = NewRenderSettings().release();
  InsertLastUnder(settings, document->settings.get());
  document->activeSettings = settings;
  document->views.push_back(std::make_unique<View>());
  document->activeView = 0;
  return document;
}

std::unique_ptr<Node> NewRenderSettings() {
  auto settings = std::make_unique<Node>(NodeClass::RenderSettings, NodeType_RenderSettings);
  SetFloatParam(*settings, RenderParam_Width, kDefaultWidth);
  SetFloatParam(*settings, RenderParam_Height, kDefaultHeight);
  SetFloatParam(*settings, RenderParam_FrameRate, kDefaultFps);
  SetFloatParam(*settings, RenderParam_PixelAspect, 1.0);
  SetFloatParam(*settings, RenderParam_FilmAspect, kDefaultWidth / kDefaultHeight);
  return settings;
}

std::unique_ptr<Node> NewLayer() {
  auto layer = std::make_unique<Node>(NodeClass::Layer, NodeType_Layer);
  SetInt32Param(*layer, LayerParam_Visible, 1);
  SetInt32Param(*layer, LayerParam_Locked, 0);
  SetInt32Param(*layer, LayerParam_Animation, 1);
  return layer;
}

std::unique_ptr<Node> NewMaterial(int32_t type) { return std::make_unique<MaterialNode>(type); }
std::unique_ptr<Node> NewShader(int32_t type) { return std::make_unique<Node>(NodeClass::Shader, type); }
std::unique_ptr<Node> NewMarker() { return std::make_unique<Node>(NodeClass::Marker, NodeType_Marker); }

Node* ShaderList(Node& material) {
  if (material.nodeClass != NodeClass::Material) return nullptr;
  return static_cast<MaterialNode&>(material).shaders.get();
}

Object* SceneCameraOf(const View& view, const Document& document) {
  return AsObject(ResolveLinkIn(view.sceneCameraId, &document));
}

}  // namespace quillon
