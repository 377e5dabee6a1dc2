#include "quillon/format/tests/sample_scene.h"

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/links.h"
#include "quillon/model/tag.h"

namespace quillon::format::testing {
namespace {

Value ValueOf(void (*set)(DataValue&, int32_t), int32_t n) {
  Value v;
  set(v.raw, n);
  return v;
}

Object* AddObject(Node* parent, int32_t type, const std::u16string& name) {
  auto* object = new Object(type);
  object->name = name;
  InsertLastUnder(object, parent);
  return object;
}

Tag* AddTag(Object* object, int32_t type) {
  auto* tag = new Tag(type);
  InsertLastUnder(tag, object->tagRoot.get());
  return tag;
}

Track* AddTrack(Node* node, std::vector<ParamLevel> path, int32_t kind) {
  auto* track = new Track(std::move(path));
  track->kind = kind;
  track->curve = std::make_unique<Curve>();
  track->curve->track = track;
  InsertLastUnder(track, node->trackList());
  return track;
}

void FillSpline(Object* spline) {
  ResizeSplineArrays(*spline, 3, 1);
  auto* points = static_cast<Vector*>(FindTag(*spline, TagType_Points, 0)->Address());
  points[0] = {0, 0, 0};
  points[1] = {10.5, -3, 0};
  points[2] = {20, 7.25, 1e-9};
  auto* tangents = static_cast<SplineTangent*>(FindTag(*spline, TagType_Tangents, 0)->Address());
  tangents[1] = {{-1, 0, 0}, {1, 0.5, 0}};
  auto* segments = static_cast<SplineSegment*>(FindTag(*spline, TagType_Segments, 0)->Address());
  segments[0].count = 3;
  segments[0].closed = 1;
}

void AddPositionKeys(Object* object) {
  Track* track = AddTrack(object, {{ObjectParam_Position, DataKind_Vector, 0}, {VectorComponent_Y, DataKind_Float, 0}},
                          kTrackKindFloat);
  track->name = u"Position Y";
  for (int frame : {0, 1, 5, 24}) {
    Key* key = AddKeyAt(*track->curve, BaseTime(frame, 25));
    key->value = -0.1 * frame * frame;
    key->bits.set(kNodeBitKeyLinear, frame == 5);
    key->bits.set(kNodeBitKeyTangentsLocked, true);
  }
  Track* off = AddTrack(object, {{ObjectParam_Enabled, 0, 0}}, kTrackKindFloat);
  off->infoBits = kInfoBitTrackOff;
  AddKeyAt(*off->curve, BaseTime(3, 1))->value = 1.0;
}

void AddSplineKeys(Object* spline) {
  Track* track = AddTrack(spline, {{SplineKeyTrack_Id, DataKind_SplineKey, 0}}, DataKind_SplineKey);
  track->name = u"Shape Curve";
  Key* key = AddKeyAt(*track->curve, BaseTime(2, 25));
  InitCustom(key->data.raw, DataKind_SplineKey);
  SplineKeyData& payload = *AsSplineKey(key->data.raw);
  payload.points->Resize(2);
  static_cast<Vector*>(payload.points->Address())[1] = {4, 5, 6};
  payload.tangents->Resize(2);
  key->params[SplineKeyParam_Mode] = ValueOf(SetInt32, 2);
  Track* text = AddTrack(spline, {{ChildObjectParam_Flag, DataKind_String, 0}}, DataKind_String);
  SetText(AddKeyAt(*text->curve, BaseTime(0, 1))->data.raw, u"first");
  SetText(AddKeyAt(*text->curve, BaseTime(1, 1))->data.raw, u"zweite \u00E4");
}

Tag* AddTargetTag(Object* camera, Object* target) {
  Tag* tag = AddTag(camera, TagType_Target);
  SetLinkId(tag->params[TargetTagParam_Target].raw, LinkIdOf(target));
  DataValue& priority = tag->params[TargetTagParam_Priority].raw;
  InitCustom(priority, DataKind_Priority);
  for (int32_t entry : {2, 10, 1}) AsPriority(priority)->entries.push_back(ValueOf(SetInt32, entry));
  SetBool(tag->params[TargetTagParam_PriorityEnable].raw, true);
  return tag;
}

void AddCompositingTag(Object* object) {
  Tag* tag = AddTag(object, TagType_Compositing);
  SetBool(tag->params[CompositingTagParam_Children].raw, false);
  SetInt32(tag->params[CompositingTagParam_Solid].raw, 1);
  SetInt32(tag->params[CompositingTagParam_Width].raw, 640);
  SetInt32(tag->params[CompositingTagParam_Height].raw, 360);
  SetVector(tag->params[CompositingTagParam_Color].raw, {0.25, 0.5, 1});
}

Node* AddMaterial(Document& document) {
  Node* material = NewMaterial(MaterialType_Standard).release();
  material->name = u"Mat";
  InsertLastUnder(material, document.materials.get());
  SetVector(material->params[MaterialParam_Color].raw, {1, 0.5, 0});
  Node* shader = NewShader(ShaderType_Bitmap).release();
  SetPath(shader->params[BitmapShaderParam_File].raw, "/footage/plate \u00E9.png");
  SetInt32(shader->params[BitmapShaderParam_LastFrame].raw, 99);
  InsertLastUnder(shader, ShaderList(*material));
  Node* inner = NewShader(ShaderType_Bitmap).release();
  InsertLastUnder(inner, shader);
  SetLinkId(material->params[MaterialChannel_Color].raw, LinkIdOf(shader));
  return material;
}

void AddMarkers(Document& document) {
  for (int i = 0; i < 2; ++i) {
    Node* marker = NewMarker().release();
    SetTime(marker->params[MarkerParam_Time].raw, BaseTime(10 * i, 25));
    SetText(marker->params[MarkerParam_Note].raw, i == 0 ? u"start" : u"");
    SetVector(marker->params[MarkerParam_Color].raw, {1, 0, 0});
    SetTime(marker->params[MarkerParam_Length].raw, BaseTime(i, 1));
    InsertLastUnder(marker, document.markers.get());
  }
}

void AddSettingsAndViews(Document& document, Object* camera) {
  Node* second = NewRenderSettings().release();
  SetInt32(second->params[RenderParam_FrameSequence].raw, 2);
  SetTime(second->params[RenderParam_FrameFrom].raw, BaseTime(0, 25));
  SetTime(second->params[RenderParam_FrameTo].raw, BaseTime(49, 25));
  InsertLastUnder(second, document.settings.get());
  document.activeSettings = second;
  document.views.front()->sceneCameraId = LinkIdOf(camera);
  document.views.front()->editorCamera->name = u"editor";
  document.views.push_back(std::make_unique<View>());
  document.views.back()->editorCamera.reset();
  document.activeView = 1;
  document.renderView = 0;
}

}  // namespace

std::unique_ptr<Document> MakeSampleScene() {
  std::unique_ptr<Document> document = NewDocument();
  document->name = u"sample";
  document->bits.set(kNodeBitDocumentLayers);
  document->currentTime = BaseTime(7, 25);
  SetInt32(document->params[DocParam_Fps].raw, 25);

  Object* root = AddObject(document->objects.get(), ObjectType_Null, u"project-Comp 1");
  SetText(root->params[ParamKey_OriginKey].raw, u"QUILLON_EXPORT_ROOT_NODE");
  root->offsetPosition = {-960, 540, 0};
  Object* camera = AddObject(root, ObjectType_Camera, u"Camera 1");
  camera->rotationOrder = kRotationOrderHpb;
  SetFloat(camera->params[CameraParam_FocalLength].raw, 50.0);
  SetInt32(camera->params[ParamKey_LayerId].raw, -1);
  SetTime(camera->params[ParamKey_LayerInTime].raw, BaseTime(0, 25));
  SetInt64(camera->params[465002000].raw, -1234567890123LL);
  SetVector(camera->params[ObjectParam_Position].raw, {100, -200, -1500});
  Object* target = AddObject(root, ObjectType_Null, u"Camera 1 target");
  AddTargetTag(camera, target);
  AddPositionKeys(camera);
  camera->modes = {1, 2, 1};

  Object* solid = AddObject(root, ObjectType_Plane, u"Solid \u00FC");
  solid->bits.set(3);
  solid->infoBits = kInfoBitFromCache;
  AddCompositingTag(solid);
  Node* material = AddMaterial(*document);
  Tag* texture = AddTag(solid, TagType_Texture);
  SetLinkId(texture->params[TextureTagParam_Material].raw, LinkIdOf(material));
  SetInt32(texture->params[TextureTagParam_Projection].raw, 6);
  DataValue& font = solid->params[1009371].raw;
  InitCustom(font, DataKind_Font);
  SetText(AsFont(font)->description[500].raw, u"Sans");
  FreeData(solid->params[4242].raw);  // an empty value

  Object* spline = AddObject(root, ObjectType_Spline, u"Shape");
  FillSpline(spline);
  AddSplineKeys(spline);
  Object* extrude = AddObject(root, ObjectType_Extrude, u"Extrude");
  InsertLastUnder(spline, extrude);

  Node* layer = NewLayer().release();
  layer->name = u"Layer A";
  InsertLastUnder(layer, document->layers.get());
  solid->layerId = LinkIdOf(layer);
  SetInt32(layer->params[LayerParam_Locked].raw, 1);

  AddMarkers(*document);
  AddSettingsAndViews(*document, camera);
  return document;
}

Object* FindObjectNamed(const Document& document, const std::u16string& name) {
  std::vector<Node*> pending = ChildrenOf(document.objects.get());
  while (!pending.empty()) {
    Node* node = pending.front();
    pending.erase(pending.begin());
    if (node->name == name) return AsObject(node);
    std::vector<Node*> children = ChildrenOf(node);
    pending.insert(pending.begin(), children.begin(), children.end());
  }
  return nullptr;
}

}  // namespace quillon::format::testing
