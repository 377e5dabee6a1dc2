#include "plugin/session/texture_relink.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"

namespace quillon {

namespace {

constexpr int32_t kChannelCount = 30;
// The shaders of channels 8 and 9 keep the files they name, whatever a caller sends.
constexpr int32_t kSkippedChannels[] = {8, 9};

bool IsSkipped(int32_t index) {
  for (int32_t skipped : kSkippedChannels)
    if (index == skipped) return true;
  return false;
}

// The key of the last component of the file the bitmap shader shows; empty without one.
std::u16string PictureKeyOf(BaseShader* shader) {
  const ParamLevel level{BitmapShaderParam_File, 0, 0};
  const ParamId id{&level, 1, 0};
  DataValue value{DataKind_Empty, 0, {0}};
  std::u16string key;
  if (t_ORYOS_At->GetParameter(shader, &id, &value, 0)) {
    if (const Filename* file = t_ORYOS_Gd->GetFilename(&value)) {
      OwnedFilename leaf;
      t_ORYOS_Fn->GetFile(&leaf.value, file);
      OwnedString text;
      t_ORYOS_Fn->GetString(text.get(), &leaf.value);
      key = TextureKey(*text.get());
    }
  }
  t_ORYOS_Gd->Free(&value);
  return key;
}

// The shader shows the sent file in place of the one it names; the file keeps its bytes.
void ShowFile(BaseShader* shader, const Filename& file) {
  const ParamLevel level{BitmapShaderParam_File, 0, 0};
  const ParamId id{&level, 1, 0};
  DataValue value{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->SetFilename(&value, &file);
  t_ORYOS_At->SetParameter(shader, &id, &value, 0);
  t_ORYOS_Gd->Free(&value);
}

void RelinkBitmap(BaseShader* shader, const RenderThread& render) {
  const std::u16string key = PictureKeyOf(shader);
  if (key.empty()) return;
  const auto sent = render.textures.find(key);
  if (sent != render.textures.end()) ShowFile(shader, sent->second);
}

// Without a child, the shaders of the node's shader lists stand below it.
void RelinkShaderLists(BaseShader* shader, const RenderThread& render) {
  NodeArray* heads = t_ORYOS_At->AllocNodeArray();
  if (!heads) return;
  t_ORYOS_At->GetBranches(shader, heads, 0);
  const int32_t count = t_ORYOS_At->GetNodeArrayCount(heads);
  for (int32_t i = 0; i < count; ++i) {
    const SceneNode* head = t_ORYOS_At->GetNodeArrayItem(heads, i);
    if (t_ORYOS_At->GetBranchKind(head) != NodeKind_Shader) continue;
    RelinkShader(static_cast<BaseShader*>(t_ORYOS_At->GetDown(head)), false, render);
  }
  t_ORYOS_At->FreeNodeArray(heads);
}

void RelinkReflection(Material* material, const RenderThread& render) {
  if (t_ORYOS_At->GetType(material) != MaterialType_Standard) return;
  NodeArray* shaders = t_ORYOS_At->AllocNodeArray();
  if (!shaders) return;
  if (t_ORYOS_Mt->GetReflectionShaders(material, shaders)) {
    const int32_t count = t_ORYOS_At->GetNodeArrayCount(shaders);
    for (int32_t i = 0; i < count; ++i)
      RelinkShader(static_cast<BaseShader*>(t_ORYOS_At->GetNodeArrayItem(shaders, i)), true, render);
  }
  t_ORYOS_At->FreeNodeArray(shaders);
}

}  // namespace

std::u16string TextureKey(const EngineString& text) {
  std::u16string units;
  const int32_t length = t_ORYOS_St->GetLength(&text);
  for (int32_t i = 0; i < length; ++i) units.push_back(t_ORYOS_St->GetUnit(&text, i));
  return units;
}

bool RelinkShader(BaseShader* shader, bool single, const RenderThread& render) {
  if (!shader) return false;
  for (; shader; shader = static_cast<BaseShader*>(t_ORYOS_At->GetNext(shader))) {
    if (t_ORYOS_At->GetType(shader) == ShaderType_Bitmap) RelinkBitmap(shader, render);
    if (auto* child = static_cast<BaseShader*>(t_ORYOS_At->GetDown(shader)))
      RelinkShader(child, false, render);
    else
      RelinkShaderLists(shader, render);
    if (single) break;
  }
  return true;
}

void RelinkTextures(Material* material, const RenderThread& render) {
  for (int32_t index = 0; index < kChannelCount; ++index) {
    if (IsSkipped(index)) continue;
    if (index == kMaterialChannelReflection) {
      RelinkReflection(material, render);
      continue;
    }
    const MaterialChannel* channel = t_ORYOS_Mt->GetChannel(material, index);
    RelinkShader(t_ORYOS_Ba->GetChannelShader(channel), true, render);
  }
}

void RelinkAllMaterials(const RenderThread& render) {
  if (!render.document || render.textures.empty()) return;
  for (Material* material = t_ORYOS_Bd->GetFirstMaterial(render.document); material;
       material = static_cast<Material*>(t_ORYOS_At->GetNext(material)))
    RelinkTextures(material, render);
}

}  // namespace quillon
