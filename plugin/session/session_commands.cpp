#include "plugin/session/session_commands.h"

#include <new>

#include "plugin/engine/engine_loader.h"

namespace quillon {

namespace {

// The results of a command's steps; 0 where a failed step is not reported.
struct CommandSteps {
  int32_t notSelected;
  int32_t notStopped;
  bool closesDocument;
  int32_t notReleased;
};

// Selects requestId in the object's own map, stops that render, closes its document when
// the command does, and releases it again.
void RunCommandSteps(LegacyIpCommunicationThread& object, const CommandSteps& steps) {
  object.result = kCommandDone;
  if (!object.SelectRender(object.requestId)) {
    object.result = steps.notSelected;
    return;
  }
  if (!object.StopCurrentRender()) object.result = steps.notStopped;
  if (steps.closesDocument) object.CloseDocument();
  if (!object.ReleaseRender(false) && steps.notReleased) object.result = steps.notReleased;
}

}  // namespace

void StopRenderThread::Main() { RunCommandSteps(*this, {kStopNotSelected, kStopNotStopped, false, 0}); }

void CloseThread::Main() { RunCommandSteps(*this, {kCloseNotSelected, kCloseNotStopped, false, kCloseNotReleased}); }

void SessionThread::Main() { RunCommandSteps(*this, {kCloseNotSelected, kCloseNotStopped, true, kCloseNotReleased}); }

}  // namespace quillon

namespace {

using quillon::kCommandUnavailable;

quillon::StopRenderThread* g_stopRenderThread = nullptr;
quillon::CloseThread* g_closeThread = nullptr;
quillon::SessionThread* g_sessionThread = nullptr;
SpinLock g_stopRenderLock;
SpinLock g_closeLock;
SpinLock g_sessionLock;

// How a command waits for its object's thread: the stop and the close return its result,
// the end of a session returns at once.
enum class Waiting { kForResult, kNot };

// One command on the object of its kind, made on first use. `busy` is the result when the
// object's last command still runs.
template <class Command>
int32_t RunCommand(Command*& object, SpinLock& lock, uint32_t id, int32_t startMode, Waiting waiting,
                   int32_t busy) {
  if (!IsQuillonRunning()) return 0;
  SpinLockScope scope(lock);
  if (!object) object = new (std::nothrow) Command();
  if (!object) return kCommandUnavailable;
  if (object->IsRunning()) return busy;
  object->requestId = id;
  object->Start(startMode, quillon::kThreadPriorityNormal);
  if (waiting == Waiting::kForResult) object->Wait();
  return object->result;
}

template <class Command>
void DeleteCommandObject(Command*& object, SpinLock& lock) {
  SpinLockScope scope(lock);
  // An end of session may still run on the object's thread, which calls the object's Main.
  if (object) object->Wait();
  delete object;
  object = nullptr;
}

}  // namespace

int32_t StopRender(uint32_t id) {
  return RunCommand(g_stopRenderThread, g_stopRenderLock, id, kThreadStartAsync, Waiting::kForResult,
                    quillon::kStopStillRunning);
}

int32_t CloseRender(uint32_t id) {
  // The close runs in the engine's second mode, the one of a render.
  return RunCommand(g_closeThread, g_closeLock, id, kThreadStartRender, Waiting::kForResult, kCommandUnavailable);
}

int32_t EndSession(uint32_t id) {
  return RunCommand(g_sessionThread, g_sessionLock, id, kThreadStartAsync, Waiting::kNot, kCommandUnavailable);
}

void FreeSessionThreads() {
  DeleteCommandObject(g_stopRenderThread, g_stopRenderLock);
  DeleteCommandObject(g_closeThread, g_closeLock);
  DeleteCommandObject(g_sessionThread, g_sessionLock);
}

quillon::StopRenderThread* StopRenderCommandObject() { return g_stopRenderThread; }
quillon::CloseThread* CloseCommandObject() { return g_closeThread; }
quillon::SessionThread* SessionCommandObject() { return g_sessionThread; }
