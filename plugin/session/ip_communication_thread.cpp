#include "plugin/session/ip_communication_thread.h"

#include <new>

#include "plugin/engine/engine_tables.h"

namespace quillon {

namespace {

// Destroys the contents at once and gives true, or leaves them to the last read under way.
bool DestroyUnlessRead(RenderThread& render) {
  SpinLockScope lock(render.stateLock);
  if (render.readers > 0) {
    render.closePending = true;
    return false;
  }
  render.DestroyContents();
  return true;
}

}  // namespace

LegacyIpCommunicationThread::~LegacyIpCommunicationThread() {
  ForEachRender(renders, [](RenderMapEntry& entry) {
    if (!entry.render) return;
    entry.render->StopThread();
    // A record that a read still uses stays with that read, which destroys its contents.
    if (DestroyUnlessRead(*entry.render)) delete entry.render;
  });
}

RenderThread* LegacyIpCommunicationThread::CurrentRender() const {
  if (currentId == kNoRender) return nullptr;
  const RenderMapEntry* entry = FindRender(renders, currentId);
  return entry ? entry->render : nullptr;
}

bool LegacyIpCommunicationThread::SelectRender(uint32_t id) {
  if (id == kNoRender) return false;
  RenderMapEntry* entry = FindOrInsertRender(renders, id);
  if (!entry) return false;
  // An entry whose record could not be made stays empty; the next selection tries again.
  if (!entry->render) entry->render = new (std::nothrow) RenderThread();
  if (!entry->render) return false;
  currentId = id;
  return true;
}

bool LegacyIpCommunicationThread::StopCurrentRender() {
  RenderThread* render = CurrentRender();
  if (!render) return false;
  render->StopThread();
  render->dirty = true;
  return true;
}

bool LegacyIpCommunicationThread::CloseDocument() {
  RenderThread* render = CurrentRender();
  if (!render) return false;
  render->StopThread();
  SpinLockScope lock(render->stateLock);
  if (render->readers > 0) {
    render->closePending = true;
  } else if (!render->cloning) {
    render->destroyPending = false;
    render->DestroyContents();
  } else {
    render->destroyPending = true;
  }
  return true;
}

bool LegacyIpCommunicationThread::ReleaseRender(bool free) {
  if (currentId == kNoRender) return false;
  if (RenderThread* render = CurrentRender()) {
    if (render->document) t_ORYOS_At->Remove(render->document);
    if (free) {
      render->StopThread();
      render->FreeDocument();
      delete render;
      EraseRender(renders, currentId);
    }
  }
  currentId = kNoRender;
  return true;
}

}  // namespace quillon
