#include "plugin/session/open_document.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/session/document_params.h"

namespace quillon {

namespace {

// How the session loads a scene.
constexpr int32_t kSessionLoadFlags = 67;

void SetFilenameParam(BaseDocument* document, int32_t id, const Filename& value) {
  DataValue path{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->SetFilename(&path, &value);
  SetDataParam(document, id, path);
  t_ORYOS_Gd->Free(&path);
}

void NoteOrigin(BaseDocument* document, const Filename& file) {
  OwnedFilename folder;
  OwnedFilename leaf;
  t_ORYOS_Fn->GetDirectory(&folder.value, &file);
  t_ORYOS_Fn->GetFile(&leaf.value, &file);
  SetFilenameParam(document, kDocumentFolderParam, folder.value);
  SetFilenameParam(document, kDocumentLeafParam, leaf.value);
  SetInt32Param(document, kDocumentSessionParam, 1);
  SetInt32Param(document, kDocumentLoaderParam, kDocumentLoaderValue);
}

// The document of `file`, or null when it does not load.
BaseDocument* LoadDocument(const Filename& file) {
  BaseDocument* document = t_ORYOS_Bd->AllocDocument();
  if (!document) return nullptr;
  OwnedString error;
  if (!t_ORYOS_Ge->LoadFileIntoDocument(document, &file, kSessionLoadFlags, nullptr, nullptr, error.get())) {
    t_ORYOS_Bl->FreeNode(document);
    return nullptr;
  }
  return document;
}

}  // namespace

bool OpenDocument(RenderThread& render, const Filename& file) {
  if (!t_ORYOS_Ge->FileExists(&file, 0)) return false;
  render.StopThread();
  render.FreeDocument();
  render.document = LoadDocument(file);
  if (render.document) NoteOrigin(render.document, file);
  render.dirty = true;
  render.renderResult = kRenderResultOk;
  render.renderStage = 0;
  render.progress = 0.0;
  if (render.document) render.sessionOpen = true;
  return render.document != nullptr;
}

}  // namespace quillon
