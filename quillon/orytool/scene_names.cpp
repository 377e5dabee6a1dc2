#include "quillon/orytool/scene_names.h"


#include "plugin/exporter/scene_ids.h"
#include "quillon/model/evaluate.h"

namespace quillon::orytool {
namespace {

struct TypeEntry {
  NodeClass nodeClass;
  std::int32_t type;
  const char* name;
};

#define QAE_TYPE(cls, id) {NodeClass::cls, id, #id}
constexpr TypeEntry kTypes[] = {
    QAE_TYPE(Object, ObjectType_Spline),      QAE_TYPE(Object, ObjectType_Light),
    QAE_TYPE(Object, ObjectType_Camera),      QAE_TYPE(Object, ObjectType_Extrude),
    QAE_TYPE(Object, ObjectType_Sweep),       QAE_TYPE(Object, ObjectType_Instance),
    QAE_TYPE(Object, ObjectType_Null),        QAE_TYPE(Object, ObjectType_Plane),
    QAE_TYPE(Object, ObjectType_Text),        QAE_TYPE(Object, ObjectType_TextOutline),
    QAE_TYPE(Object, ObjectType_Deformer),    QAE_TYPE(Object, ObjectType_KvLight),
    QAE_TYPE(Object, ObjectType_KvCamera),    QAE_TYPE(Object, ObjectType_ChainGeneratorA),
    QAE_TYPE(Object, ObjectType_ChainGeneratorB), QAE_TYPE(Object, ObjectType_Duplicator),
    QAE_TYPE(Tag, TagType_Points),            QAE_TYPE(Tag, TagType_Texture),
    QAE_TYPE(Tag, TagType_Tangents),          QAE_TYPE(Tag, TagType_Segments),
    QAE_TYPE(Tag, TagType_Target),            QAE_TYPE(Tag, TagType_Compositing),
    QAE_TYPE(Material, MaterialType_Standard), QAE_TYPE(Shader, ShaderType_Bitmap),
};
#undef QAE_TYPE

// A parameter name applies on nodes of `nodeClass` whose type is `type`, or of any type
// when `type` is 0; entries of class ListRoot apply on every node.
struct ParamEntry {
  NodeClass nodeClass;
  std::int32_t type;
  std::int32_t id;
  const char* name;
};

#define QAE_PARAM(cls, type, id) {NodeClass::cls, type, id, #id}
constexpr ParamEntry kParams[] = {
    QAE_PARAM(Document, 0, DocParam_Fps),
    QAE_PARAM(Document, 0, DocParam_MinTime),
    QAE_PARAM(Document, 0, DocParam_MaxTime),
    QAE_PARAM(Document, 0, DocParam_LoopMinTime),
    QAE_PARAM(Document, 0, DocParam_LoopMaxTime),
    QAE_PARAM(RenderSettings, 0, RenderParam_Width),
    QAE_PARAM(RenderSettings, 0, RenderParam_Height),
    QAE_PARAM(RenderSettings, 0, RenderParam_FrameSequence),
    QAE_PARAM(RenderSettings, 0, RenderParam_FrameFrom),
    QAE_PARAM(RenderSettings, 0, RenderParam_FrameTo),
    QAE_PARAM(RenderSettings, 0, RenderParam_FrameRate),
    QAE_PARAM(RenderSettings, 0, RenderParam_FilmAspect),
    QAE_PARAM(RenderSettings, 0, RenderParam_PixelAspect),
    QAE_PARAM(Layer, 0, LayerParam_DocumentBit),
    QAE_PARAM(Layer, 0, LayerParam_Visible),
    QAE_PARAM(Layer, 0, LayerParam_Locked),
    QAE_PARAM(Layer, 0, LayerParam_Animation),
    QAE_PARAM(Marker, 0, MarkerParam_Time),
    QAE_PARAM(Marker, 0, MarkerParam_Note),
    QAE_PARAM(Marker, 0, MarkerParam_Color),
    QAE_PARAM(Marker, 0, MarkerParam_Length),
    QAE_PARAM(Object, 0, ObjectParam_Position),
    QAE_PARAM(Object, 0, ObjectParam_Rotation),
    QAE_PARAM(Object, 0, ObjectParam_Scale),
    QAE_PARAM(Object, 0, ObjectParam_Enabled),
    QAE_PARAM(Object, ObjectType_Plane, PlaneParam_Width),
    QAE_PARAM(Object, ObjectType_Plane, PlaneParam_Height),
    QAE_PARAM(Object, ObjectType_Plane, PlaneParam_SegmentsH),
    QAE_PARAM(Object, ObjectType_Plane, PlaneParam_SegmentsW),
    QAE_PARAM(Object, ObjectType_Plane, PlaneParam_Orientation),
    QAE_PARAM(Object, ObjectType_Camera, CameraParam_FocalLength),
    QAE_PARAM(Object, ObjectType_Camera, CameraParam_Projection),
    QAE_PARAM(Object, ObjectType_Camera, CameraParam_Aperture),
    QAE_PARAM(Object, ObjectType_Camera, CameraParam_FieldOfView),
    QAE_PARAM(Object, ObjectType_Camera, CameraParam_FocusDistance),
    QAE_PARAM(Object, ObjectType_KvCamera, KvCameraParam_FieldOfView),
    QAE_PARAM(Object, ObjectType_Light, LightParam_ShadowDensity),
    QAE_PARAM(Object, ObjectType_Light, LightParam_Color),
    QAE_PARAM(Object, ObjectType_Light, LightParam_Intensity),
    QAE_PARAM(Object, ObjectType_Light, LightParam_Type),
    QAE_PARAM(Object, ObjectType_Light, LightParam_Shadow),
    QAE_PARAM(Object, ObjectType_Light, LightParam_InnerAngle),
    QAE_PARAM(Object, ObjectType_Light, LightParam_OuterAngle),
    QAE_PARAM(Object, ObjectType_Light, LightParam_Falloff),
    QAE_PARAM(Object, ObjectType_Light, LightParam_InnerRadius),
    QAE_PARAM(Object, ObjectType_Light, LightParam_OuterRadius),
    QAE_PARAM(Object, ObjectType_KvLight, KvLightParam_Type),
    QAE_PARAM(Object, ObjectType_KvLight, KvLightParam_Shadow),
    QAE_PARAM(Object, ObjectType_KvLight, KvLightParam_ShadowTransparency),
    QAE_PARAM(Object, ObjectType_KvLight, KvLightParam_Color),
    QAE_PARAM(Object, ObjectType_KvLight, KvLightParam_Intensity),
    QAE_PARAM(Object, ObjectType_KvLight, KvLightParam_OuterAngle),
    QAE_PARAM(Object, ObjectType_KvLight, KvLightParam_ConeFalloff),
    QAE_PARAM(Object, ObjectType_Spline, ChildObjectParam_Flag),
    QAE_PARAM(Object, ObjectType_Spline, SplineParam_Closed),
    QAE_PARAM(Object, ObjectType_Text, ChildObjectParam_Flag),
    QAE_PARAM(Object, ObjectType_TextOutline, ChildObjectParam_Flag),
    QAE_PARAM(Object, ObjectType_Text, TextParam_Text),
    QAE_PARAM(Object, ObjectType_Text, TextParam_Alignment),
    QAE_PARAM(Object, ObjectType_Text, TextParam_Tracking),
    QAE_PARAM(Object, ObjectType_Text, TextParam_Size),
    QAE_PARAM(Object, ObjectType_Text, TextParam_Font),
    QAE_PARAM(Object, ObjectType_TextOutline, TextOutlineParam_Width),
    QAE_PARAM(Object, ObjectType_Sweep, SweepParam_Flag),
    QAE_PARAM(Object, ObjectType_Deformer, DeformerParam_Spline),
    QAE_PARAM(Object, ObjectType_Deformer, DeformerParam_Offset),
    QAE_PARAM(Object, ObjectType_Deformer, DeformerParam_Align),
    QAE_PARAM(Object, ObjectType_Deformer, DeformerParam_Turn),
    QAE_PARAM(Object, ObjectType_Instance, InstanceParam_Reference),
    QAE_PARAM(Object, ObjectType_Duplicator, DuplicatorParam_Count),
    QAE_PARAM(Object, ObjectType_Duplicator, DuplicatorParam_Offset),
    QAE_PARAM(Tag, TagType_Texture, TextureTagParam_Projection),
    QAE_PARAM(Tag, TagType_Texture, TextureTagParam_Material),
    QAE_PARAM(Tag, TagType_Target, TargetTagParam_Target),
    QAE_PARAM(Tag, TagType_Target, TargetTagParam_Priority),
    QAE_PARAM(Tag, TagType_Target, TargetTagParam_PriorityEnable),
    QAE_PARAM(Tag, TagType_Compositing, CompositingTagParam_Children),
    QAE_PARAM(Tag, TagType_Compositing, CompositingTagParam_Solid),
    QAE_PARAM(Tag, TagType_Compositing, CompositingTagParam_Width),
    QAE_PARAM(Tag, TagType_Compositing, CompositingTagParam_Height),
    QAE_PARAM(Tag, TagType_Compositing, CompositingTagParam_Anchor),
    QAE_PARAM(Tag, TagType_Compositing, CompositingTagParam_Color),
    QAE_PARAM(Material, 0, MaterialParam_Color),
    QAE_PARAM(Material, 0, MaterialParam_Alpha),
    QAE_PARAM(Material, 0, MaterialChannel_Color),
    QAE_PARAM(Shader, ShaderType_Bitmap, BitmapShaderParam_File),
    QAE_PARAM(Shader, ShaderType_Bitmap, BitmapShaderParam_LastFrame),
    QAE_PARAM(Key, 0, SplineKeyParam_Payload),
    QAE_PARAM(Key, 0, SplineKeyParam_Mode),
    QAE_PARAM(Key, 0, SplineKeyParam_Tension),
    QAE_PARAM(ListRoot, 0, ParamKey_OriginKey),
    QAE_PARAM(ListRoot, 0, ParamKey_LayerId),
    QAE_PARAM(ListRoot, 0, ParamKey_LayerInTime),
    QAE_PARAM(ListRoot, 0, ParamKey_LayerOutTime),
};
#undef QAE_PARAM

bool AppliesTo(const ParamEntry& entry, const Node& node) {
  if (entry.nodeClass == NodeClass::ListRoot) return true;
  return entry.nodeClass == node.nodeClass && (entry.type == 0 || entry.type == node.type);
}

}  // namespace

std::string TypeName(NodeClass nodeClass, std::int32_t type) {
  for (const TypeEntry& entry : kTypes)
    if (entry.nodeClass == nodeClass && entry.type == type) return entry.name;
  return "";
}

std::optional<std::int32_t> TypeByName(NodeClass nodeClass, const std::string& name) {
  for (const TypeEntry& entry : kTypes)
    if (entry.nodeClass == nodeClass && name == entry.name) return entry.type;
  return std::nullopt;
}

std::string ParamName(const Node& node, std::int32_t id) {
  for (const ParamEntry& entry : kParams)
    if (entry.id == id && AppliesTo(entry, node)) return entry.name;
  return "";
}

std::optional<std::int32_t> ParamByName(const Node& node, const std::string& name) {
  for (const ParamEntry& entry : kParams)
    if (name == entry.name && AppliesTo(entry, node)) return entry.id;
  return std::nullopt;
}

std::string ShortName(const std::string& name) {
  const std::size_t cut = name.find('_');
  return cut == std::string::npos ? name : name.substr(cut + 1);
}

}  // namespace quillon::orytool
