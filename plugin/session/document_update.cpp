#include "plugin/session/document_update.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/session/camera_update.h"
#include "plugin/session/document_params.h"
#include "plugin/session/element_merge.h"
#include "plugin/session/layer_update.h"
#include "plugin/session/render_settings_update.h"
#include "plugin/session/time_update.h"
#include "plugin/session/update_channel.h"
#include "plugin/session/view_update.h"

namespace quillon {

namespace {

// How the session loads a scene.
constexpr int32_t kSessionLoadFlags = 67;

std::string TextOf(const Filename& file) {
  OwnedString text;
  t_ORYOS_Fn->GetString(text.get(), &file);
  return ToUtf8(*text.get());
}

void SetFilenameParam(BaseDocument* document, int32_t id, const Filename& value) {
  DataValue path{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->SetFilename(&path, &value);
  SetDataParam(document, id, path);
  t_ORYOS_Gd->Free(&path);
}

// Where the document came from (texture caches know a document by its folder) and two
// markers of the engine's own.
void NoteOrigin(BaseDocument* document, const Filename& name) {
  OwnedFilename folder;
  OwnedFilename leaf;
  t_ORYOS_Fn->GetDirectory(&folder.value, &name);
  t_ORYOS_Fn->GetFile(&leaf.value, &name);
  SetFilenameParam(document, DocParam_Path, folder.value);
  SetFilenameParam(document, DocParam_File, leaf.value);
  SetInt32Param(document, kDocumentSessionParam, 1);
  SetInt32Param(document, kDocumentLoaderParam, kDocumentLoaderValue);
}

// A whole document in place of the render's. True when the given document already is the
// render's, and nothing else is to be done.
bool TakeWholeDocument(RenderThread& render, const Filename& name, const Filename& file, BaseDocument* document) {
  if (render.document && render.document == document) return true;
  render.FreeDocumentLater();
  render.document = document ? document : LoadSessionDocument(file);
  if (render.document && !document) {
    NoteOrigin(render.document, name);
    // A loaded document starts with nothing active.
    t_ORYOS_Bd->SetActiveObject(render.document, nullptr, 0);
  }
  render.dirty = true;
  return false;
}

void ApplyChannel(RenderThread& render, const ChannelOfUpdate& channel, BaseDocument* update) {
  switch (channel.channel) {
    case UpdateChannel::kCamera: ApplyCameraUpdate(render, update); break;
    case UpdateChannel::kActiveCamera: ApplyActiveCameraUpdate(render, update); break;
    case UpdateChannel::kView: ApplyViewUpdate(render, update); break;
    case UpdateChannel::kRenderSettings: ApplyRenderSettingsUpdate(render, update); break;
    case UpdateChannel::kTime: ApplyTimeUpdate(render, update); break;
    case UpdateChannel::kLayers: ApplyLayerUpdate(render, update); break;
    case UpdateChannel::kDifference:
      // What could not be merged stays out; the picture is out of date either way.
      MergeDifference(channel.applicationId, update, render.document);
      render.dirty = true;
      break;
    case UpdateChannel::kFullDocument: break;
  }
}

void ApplyUpdate(RenderThread& render, const ChannelOfUpdate& channel, const Filename& file, BaseDocument* given) {
  BaseDocument* update = given ? given : LoadSessionDocument(file);
  if (!update) return;
  if (render.document) ApplyChannel(render, channel, update);
  if (update != given) t_ORYOS_Bl->FreeNode(update);
}

}  // namespace

BaseDocument* LoadSessionDocument(const Filename& file) {
  BaseDocument* document = t_ORYOS_Bd->AllocDocument();
  if (!document) return nullptr;
  OwnedString error;
  if (!t_ORYOS_Ge->LoadFileIntoDocument(document, &file, kSessionLoadFlags, nullptr, nullptr, error.get())) {
    t_ORYOS_Bl->FreeNode(document);
    return nullptr;
  }
  return document;
}

bool UpdateDocument(RenderThread& render, const Filename& name, const void* memoryData, int64_t memorySize,
                    BaseDocument* document) {
  const ChannelOfUpdate channel = ChannelOfName(TextOf(name));
  OwnedFilename file;
  t_ORYOS_Fn->FilenameCopy(&name, &file.value);
  // A memory file keeps the leaf of the name, so that the loader names the update by it.
  if (memoryData) t_ORYOS_Fn->SetMemoryRead(&file.value, memoryData, memorySize, false);
  if (channel.channel == UpdateChannel::kFullDocument) {
    if (TakeWholeDocument(render, name, file.value, document)) return true;
  } else {
    ApplyUpdate(render, channel, file.value, document);
  }
  render.renderResult = kRenderResultOk;
  render.renderStage = 0;
  render.progress = 0.0;
  return render.document != nullptr;
}

bool SendUpdate(RenderThread& render, const Filename& name, const void* memoryData, int64_t memorySize) {
  render.StopThread();
  if (!UpdateDocument(render, name, memoryData, memorySize, nullptr)) return false;
  render.sessionOpen = true;
  return true;
}

}  // namespace quillon
