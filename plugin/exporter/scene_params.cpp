#include "plugin/exporter/scene_params.h"

#include <vector>

#include "plugin/exporter/scene_ids.h"

namespace {

// One level addressing a whole parameter.
struct WholeParamId {
  explicit WholeParamId(int32_t parameter) : level{parameter, 0, 0}, id{&level, 1, 0} {}
  WholeParamId(const WholeParamId&) = delete;
  WholeParamId& operator=(const WholeParamId&) = delete;
  ParamLevel level;
  ParamId id;
};

// A value that the engine fills or that holds engine memory; freed with its scope.
struct OwnedValue {
  OwnedValue() : value{DataKind_Empty, 0, {0}} {}
  ~OwnedValue() { t_ORYOS_Gd->Free(&value); }
  OwnedValue(const OwnedValue&) = delete;
  OwnedValue& operator=(const OwnedValue&) = delete;
  DataValue value;
};

void SetParam(SceneNode* node, int32_t id, const DataValue& value) {
  const WholeParamId path(id);
  t_ORYOS_At->SetParameter(node, &path.id, &value, 0);
}

}  // namespace

OwnedString::OwnedString() = default;

OwnedString::OwnedString(const std::string& utf8) { t_ORYOS_St->FromCString(&value_, utf8.c_str(), kStringEncodingUtf8); }

OwnedString::~OwnedString() { t_ORYOS_St->Release(&value_); }

std::string ToUtf8(const EngineString& text) {
  if (!text.impl) return {};
  const int32_t length = t_ORYOS_St->GetCStringLength(&text, kStringEncodingUtf8);
  if (length <= 0) return {};
  std::vector<char> buffer(static_cast<size_t>(length) + 2, '\0');
  t_ORYOS_St->GetCString(&text, buffer.data(), length + 1, kStringEncodingUtf8);
  return std::string(buffer.data(), static_cast<size_t>(length));
}

std::string LeafOf(const Filename& file) {
  Filename leaf{nullptr};
  t_ORYOS_Fn->FilenameInit(&leaf);
  t_ORYOS_Fn->GetFile(&leaf, &file);
  OwnedString text;
  t_ORYOS_Fn->GetString(text.get(), &leaf);
  t_ORYOS_Fn->FilenameFree(&leaf);
  return ToUtf8(*text.get());
}

bool IsFilled(const Filename& file) { return t_ORYOS_Fn->IsFilled(&file); }

void SetNodeName(SceneNode* node, const std::string& name) {
  const OwnedString text(name);
  t_ORYOS_At->SetName(node, text.get(), true);
}

std::string NodeName(SceneNode* node) {
  OwnedString text;
  t_ORYOS_At->GetName(node, text.get());
  return ToUtf8(*text.get());
}

void SetInt32Param(SceneNode* node, int32_t id, int32_t value) {
  DataValue v{DataKind_Int32, 0, {0}};
  v.payload.int32 = value;
  SetParam(node, id, v);
}

void SetFloatParam(SceneNode* node, int32_t id, double value) {
  DataValue v{DataKind_Float, 0, {0}};
  v.payload.float64 = value;
  SetParam(node, id, v);
}

void SetTimeParam(SceneNode* node, int32_t id, const BaseTime& value) {
  OwnedValue v;
  t_ORYOS_Gd->SetTime(&v.value, &value);
  SetParam(node, id, v.value);
}

void SetVectorParam(SceneNode* node, int32_t id, const Vector& value) {
  OwnedValue v;
  t_ORYOS_Gd->SetVector(&v.value, &value);
  SetParam(node, id, v.value);
}

void SetStringParam(SceneNode* node, int32_t id, const std::string& value) {
  const OwnedString text(value);
  OwnedValue v;
  t_ORYOS_Gd->SetString(&v.value, text.get());
  SetParam(node, id, v.value);
}

void SetDataParam(SceneNode* node, int32_t id, const DataValue& value) { SetParam(node, id, value); }

int32_t GetInt32Param(SceneNode* node, int32_t id, int32_t fallback) {
  const WholeParamId path(id);
  OwnedValue v;
  if (!t_ORYOS_At->GetParameter(node, &path.id, &v.value, 0)) return fallback;
  return t_ORYOS_Gd->GetKind(&v.value) == DataKind_Int32 ? t_ORYOS_Gd->GetInt32(&v.value) : fallback;
}

void SetContainerString(SceneNode* node, int32_t id, const std::string& value) {
  const OwnedString text(value);
  t_ORYOS_Bc->SetString(t_ORYOS_Bl->GetDataInstance(node), id, text.get());
}

std::string GetContainerString(SceneNode* node, int32_t id) {
  OwnedString text;
  const OwnedString empty;
  t_ORYOS_Bc->GetString(t_ORYOS_Bl->GetDataInstance(node), text.get(), id, empty.get());
  return ToUtf8(*text.get());
}

void SetContainerInt32(SceneNode* node, int32_t id, int32_t value) {
  t_ORYOS_Bc->SetInt32(t_ORYOS_Bl->GetDataInstance(node), id, value);
}

int32_t GetContainerInt32(SceneNode* node, int32_t id, int32_t fallback) {
  return t_ORYOS_Bc->GetInt32(t_ORYOS_Bl->GetDataInstance(node), id, fallback);
}

SceneNode* FindByName(SceneNode* first, const std::string& name) {
  for (SceneNode* node = first; node; node = t_ORYOS_At->GetNext(node)) {
    if (NodeName(node) == name) return node;
    if (SceneNode* below = FindByName(t_ORYOS_At->GetDown(node), name)) return below;
  }
  return nullptr;
}

BaseTag* MakeTag(BaseObject* object, int32_t type, BaseTag* predecessor) {
  BaseTag* tag = t_ORYOS_Tg->AllocTag(type, 0);
  if (tag) t_ORYOS_Bo->InsertTag(object, tag, predecessor);
  return tag;
}
