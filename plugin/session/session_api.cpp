#include "plugin/session/session_api.h"

#include <new>

#include "plugin/engine/owned_filename.h"
#include "plugin/engine/engine_loader.h"
#include "plugin/engine/engine_start.h"
#include "plugin/host/frame_report.h"
#include "plugin/host/plugin_globals.h"
#include "plugin/session/frame_read.h"
#include "plugin/session/open_document.h"
#include "plugin/session/port_test.h"
#include "plugin/session/render_prepare.h"
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

int32_t QuillonSessionStopRender(uint32_t id) { return StopRender(id); }
int32_t QuillonSessionCloseRender(uint32_t id) { return CloseRender(id); }
int32_t QuillonSessionEndSession(uint32_t id) { return EndSession(id); }
void QuillonSessionFreeThreads(void) { FreeSessionThreads(); }

bool QuillonSessionIsPortFree(uint16_t port, bool* addressFree) {
  bool ignored = true;
  return IsPortFree(port, addressFree ? addressFree : &ignored);
}
