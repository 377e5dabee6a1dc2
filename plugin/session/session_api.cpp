#include "plugin/session/session_api.h"

#include <cstring>
#include <new>

#include "plugin/engine/owned_filename.h"
#include "plugin/engine/engine_loader.h"
#include "plugin/engine/engine_start.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/host/frame_report.h"
#include "plugin/host/plugin_globals.h"
#include "plugin/session/asset_lists.h"
#include "plugin/session/camera_values.h"
#include "plugin/session/direct_operations.h"
#include "plugin/session/document_update.h"
#include "plugin/session/frame_read.h"
#include "plugin/session/frame_view.h"
#include "plugin/session/owned_container.h"
#include "plugin/session/open_document.h"
#include "plugin/session/output_settings.h"
#include "plugin/session/port_test.h"
#include "plugin/session/render_prepare.h"
#include "plugin/session/render_preparation.h"
#include "plugin/session/render_settings.h"
#include "plugin/session/render_state.h"
#include "plugin/session/session_commands.h"
#include "plugin/session/texture_files.h"

// A caller's session object is a command object of its own.
struct QuillonRenderSession {
  quillon::SessionThread commands;
};

namespace {

quillon::RenderThread* CurrentRenderOf(QuillonRenderSession* session) {
  return session ? session->commands.CurrentRender() : nullptr;
}

Vector VectorOf(const double values[3]) { return Vector{values[0], values[1], values[2]}; }

void StoreVector(const Vector& value, double out[3]) {
  out[0] = value.x;
  out[1] = value.y;
  out[2] = value.z;
}

// The active render settings of the current render's document; null without them.
ParamContainer* CurrentSettingsOf(QuillonRenderSession* session) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && render->document ? ActiveSettingsOf(render->document) : nullptr;
}

NodeMarker MarkerOf(const uint8_t* bytes) {
  NodeMarker marker;
  std::memcpy(marker.bytes, bytes, sizeof(marker.bytes));
  return marker;
}

}  // namespace

bool QuillonSessionStartEngine(void) {
  if (!g_pica) return false;
  bool started = false;
  RunInFrame(g_pica, eQuillon_AEGP_NotSet, g_pluginId, [&started](CTI* cti) { started = EnsureEngineStarted(cti); });
  return started;
}

QuillonRenderSession* QuillonSessionNew(void) {
  if (!IsQuillonRunning()) return nullptr;
  return new (std::nothrow) QuillonRenderSession();
}

void QuillonSessionFree(QuillonRenderSession* session) { delete session; }

bool QuillonSessionSelectRender(QuillonRenderSession* session, uint32_t id) {
  return session && session->commands.SelectRender(id);
}

bool QuillonSessionOpenDocument(QuillonRenderSession* session, const char* path) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || !path) return false;
  const OwnedFilename file(path);
  return quillon::OpenDocument(*render, file.value);
}

bool QuillonSessionPrepareRender(QuillonRenderSession* session, int32_t width, int32_t height,
                                 int32_t bytesPerChannel, bool option6014, bool normalPriority) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && quillon::PrepareRender(*render, width, height, bytesPerChannel, option6014, normalPriority);
}

bool QuillonSessionReadFrame(QuillonRenderSession* session, QuillonFrameLineCallback callback, void* refcon,
                             bool* running) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && callback && quillon::ReadFrame(*render, callback, refcon, running);
}

bool QuillonSessionReadFrameChanges(QuillonRenderSession* session, QuillonFrameLineCallback callback, void* refcon,
                                    bool* running) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && callback && quillon::ReadFrameChanges(*render, callback, refcon, running);
}

bool QuillonSessionGetRenderState(QuillonRenderSession* session, bool* running, int32_t* result, double* progress,
                                  int32_t* stage) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && quillon::GetRenderState(*render, running, result, progress, stage);
}

bool QuillonSessionStopCurrentRender(QuillonRenderSession* session) {
  return session && session->commands.StopCurrentRender();
}

bool QuillonSessionCloseDocument(QuillonRenderSession* session) { return session && session->commands.CloseDocument(); }

bool QuillonSessionReleaseRender(QuillonRenderSession* session, bool free) {
  return session && session->commands.ReleaseRender(free);
}

bool QuillonSessionSendFile(QuillonRenderSession* session, const char* name, void** data, int64_t size,
                            bool toMemory) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || !name) return false;
  const OwnedFilename file(name);
  return quillon::SendFile(*render, file.value, data, size, toMemory);
}

bool QuillonSessionSendPicture(QuillonRenderSession* session, const char* name, const void* pixels, int32_t format,
                               int32_t width, int32_t height, int32_t stride) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || !name) return false;
  const OwnedFilename file(name);
  return quillon::SendPicture(*render, file.value, pixels, format, width, height, stride);
}

bool QuillonSessionRemoveFile(QuillonRenderSession* session, const char* name) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || !name) return false;
  const OwnedFilename file(name);
  return quillon::RemoveFile(*render, file.value);
}

bool QuillonSessionUpdateDocument(QuillonRenderSession* session, const char* name, const void* data, int64_t size) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || !name || (data && size < 0)) return false;
  const OwnedFilename file(name);
  return quillon::SendUpdate(*render, file.value, data, size);
}

bool QuillonSessionIsDirty(QuillonRenderSession* session, bool* dirty) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || !dirty) return false;
  *dirty = render->dirty;
  return true;
}

bool QuillonSessionIsOpen(QuillonRenderSession* session, bool* open) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || !open) return false;
  *open = render->sessionOpen;
  return true;
}

bool QuillonSessionSetDocumentTime(QuillonRenderSession* session, double numerator, double denominator) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && quillon::SetTime(*render, BaseTime(numerator, denominator));
}

bool QuillonSessionSetKeepCaches(QuillonRenderSession* session, bool keep) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && quillon::SetKeepCaches(*render, keep);
}

bool QuillonSessionSetCameraValues(QuillonRenderSession* session, const double position[3], const double rotation[3],
                                   float focalLength, float aperture, float third, int32_t projection, bool makeNew) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || !position || !rotation) return false;
  const quillon::CameraValues values{VectorOf(position), VectorOf(rotation), focalLength, aperture, third, projection};
  return quillon::SetCameraValues(*render, values, makeNew);
}

bool QuillonSessionSelectCamera(QuillonRenderSession* session, int32_t applicationId, const void* id, int32_t size) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || !id || size < 1) return false;
  return quillon::SelectCamera(*render, applicationId,
                               std::string(static_cast<const char*>(id), static_cast<std::size_t>(size)));
}

bool QuillonSessionSendLayerList(QuillonRenderSession* session, const int32_t* indices, int32_t count,
                                 bool objectsWithoutLayerVisible) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || count < 0 || (count > 0 && !indices)) return false;
  return quillon::SendLayerList(*render, std::vector<int32_t>(indices, indices + count), objectsWithoutLayerVisible);
}

bool QuillonSessionSetLayerStates(QuillonRenderSession* session, const uint8_t* markers, int32_t count,
                                  bool objectsWithoutLayerVisible) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || count < 0 || (count > 0 && !markers)) return false;
  std::vector<NodeMarker> list(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < list.size(); ++i) list[i] = MarkerOf(markers + i * sizeof(NodeMarker));
  return quillon::SetLayerStates(*render, list, objectsWithoutLayerVisible);
}

bool QuillonSessionSelectObject(QuillonRenderSession* session, int32_t applicationId, const void* id, int32_t size,
                                int32_t mode) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || !id || size < 1) return false;
  return quillon::SelectObject(*render, applicationId,
                               std::string(static_cast<const char*>(id), static_cast<std::size_t>(size)), mode);
}

bool QuillonSessionSetActivePosition(QuillonRenderSession* session, const double position[3]) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && position && quillon::SetActivePosition(*render, VectorOf(position));
}

bool QuillonSessionSetObjectPosition(QuillonRenderSession* session, const uint8_t marker[16],
                                     const double position[3]) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && marker && position && quillon::SetObjectPosition(*render, MarkerOf(marker), VectorOf(position));
}

bool QuillonSessionSetObjectRotation(QuillonRenderSession* session, const uint8_t marker[16],
                                     const double rotation[3], int32_t order) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && marker && rotation &&
         quillon::SetObjectRotation(*render, MarkerOf(marker), VectorOf(rotation), order);
}

bool QuillonSessionSetObjectScale(QuillonRenderSession* session, const uint8_t marker[16], const double scale[3]) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && marker && scale && quillon::SetObjectScale(*render, MarkerOf(marker), VectorOf(scale));
}

bool QuillonSessionRunHookMessages(QuillonRenderSession* session) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && quillon::RunHookMessages(*render);
}

bool QuillonSessionCopyDocumentOnce(QuillonRenderSession* session) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  return render && quillon::CopyDocumentOnce(*render);
}

bool QuillonSessionFrameView(QuillonRenderSession* session, int32_t mode, double position[3], double rotation[3]) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render) return false;
  // Nothing is filled without a camera: the caller's values then stay as they were.
  Vector place = position ? VectorOf(position) : Vector{0, 0, 0};
  Vector angles = rotation ? VectorOf(rotation) : Vector{0, 0, 0};
  if (!quillon::FrameView(*render, mode, &place, &angles)) return false;
  if (position) StoreVector(place, position);
  if (rotation) StoreVector(angles, rotation);
  return true;
}

bool QuillonSessionSetFrameRange(QuillonRenderSession* session, int32_t sequence, double rate, double fromNumerator,
                                 double toNumerator, double denominator, int32_t value) {
  ParamContainer* settings = CurrentSettingsOf(session);
  if (!settings) return false;
  quillon::SetFrameRange(settings, sequence, rate, BaseTime(fromNumerator, denominator),
                         BaseTime(toNumerator, denominator), value);
  return true;
}

bool QuillonSessionSetOutputSize(QuillonRenderSession* session, double width, double height, double pixelAspect,
                                 double filmAspect) {
  ParamContainer* settings = CurrentSettingsOf(session);
  if (!settings) return false;
  quillon::SetOutputSize(settings, width, height, pixelAspect, filmAspect);
  return true;
}

bool QuillonSessionGetOutputSize(QuillonRenderSession* session, double* width, double* height, double* pixelAspect,
                                 double* filmAspect) {
  const ParamContainer* settings = CurrentSettingsOf(session);
  if (!settings) return false;
  if (width) *width = GetSettingsFloat(settings, RenderParam_Width);
  if (height) *height = GetSettingsFloat(settings, RenderParam_Height);
  if (pixelAspect) *pixelAspect = GetSettingsFloat(settings, RenderParam_PixelAspect);
  if (filmAspect) *filmAspect = GetSettingsFloat(settings, RenderParam_FilmAspect);
  return true;
}

namespace {

using CollectPaths = bool (*)(const quillon::RenderThread& render, ParamContainer* list);

// The strings the list holds under 0, 1, 2 ..., one call each.
bool ReportPaths(QuillonRenderSession* session, CollectPaths collect, QuillonPathCallback callback, void* refcon) {
  quillon::RenderThread* render = CurrentRenderOf(session);
  if (!render || !callback) return false;
  OwnedContainer list;
  if (!collect(*render, &list.value)) return false;
  for (int32_t index = 0; t_ORYOS_Bc->FindIndex(&list.value, index, 0) >= 0; ++index) {
    OwnedString path;
    t_ORYOS_Bc->GetString(&list.value, path.get(), index, nullptr);
    callback(refcon, ToUtf8(*path.get()).c_str());
  }
  return true;
}

}  // namespace

bool QuillonSessionCollectAssets(QuillonRenderSession* session, QuillonPathCallback callback, void* refcon) {
  return ReportPaths(session, quillon::CollectAssets, callback, refcon);
}

bool QuillonSessionCollectTextures(QuillonRenderSession* session, QuillonPathCallback callback, void* refcon) {
  return ReportPaths(session, quillon::CollectTextures, callback, refcon);
}

int32_t QuillonSessionStopRender(uint32_t id) { return StopRender(id); }
int32_t QuillonSessionCloseRender(uint32_t id) { return CloseRender(id); }
int32_t QuillonSessionEndSession(uint32_t id) { return EndSession(id); }
void QuillonSessionFreeThreads(void) { FreeSessionThreads(); }

bool QuillonSessionIsPortFree(uint16_t port, bool* addressFree) {
  bool ignored = true;
  return IsPortFree(port, addressFree ? addressFree : &ignored);
}
