#include "plugin/session/asset_lists.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/session/document_params.h"
#include "plugin/session/owned_container.h"

namespace quillon {

namespace {

// Each path of `files` (entries 0, 1, 2 ...) as a string of `list` under the same number.
void CopyPathsAsStrings(ParamContainer& files, ParamContainer* list) {
  for (int32_t index = 0; t_ORYOS_Bc->FindIndex(&files, index, 0) >= 0; ++index) {
    const Filename* file = t_ORYOS_Gd->GetFilename(t_ORYOS_Bc->GetData(&files, index));
    if (!file) continue;
    OwnedString text;
    t_ORYOS_Fn->GetString(text.get(), file);
    t_ORYOS_Bc->SetString(list, index, text.get());
  }
}

}  // namespace

void DocumentFolderOf(BaseDocument* document, Filename* folder) {
  const ParamLevel level{DocParam_Path, 0, 0};
  const ParamId id{&level, 1, 0};
  DataValue value{DataKind_Empty, 0, {0}};
  if (t_ORYOS_At->GetParameter(document, &id, &value, 0) && t_ORYOS_Gd->GetKind(&value) == DataKind_Filename)
    t_ORYOS_Fn->FilenameCopy(t_ORYOS_Gd->GetFilename(&value), folder);
  t_ORYOS_Gd->Free(&value);
}

bool CollectAssets(const RenderThread& render, ParamContainer* list) {
  if (!list) return false;
  if (!render.document) return true;
  OwnedFilename folder;
  DocumentFolderOf(render.document, &folder.value);
  OwnedContainer assets;
  if (!t_ORYOS_Ge->GetAssets(render.document, 0, &assets.value, &folder.value, kAssetsPictures, 0)) return false;
  CopyPathsAsStrings(assets.value, list);
  return true;
}

bool CollectTextures(const RenderThread& render, ParamContainer* list) {
  if (!list || !render.document || !render.sessionOpen) return false;
  OwnedContainer textures;
  t_ORYOS_Bd->GetTextureList(&textures.value, render.document, 0, 0);
  CopyPathsAsStrings(textures.value, list);
  return true;
}

}  // namespace quillon
