#include "plugin/session/render_preparation.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/session/tree_walk.h"

namespace quillon {

namespace {

// The mode an object must have set to take the prepare message.
constexpr int32_t kPreparingMode = 2;

// The two words the prepare message carries.
struct PrepareMessageData {
  int32_t first = 0;
  int32_t second = 1;
};

void SetBusy(RenderThread& render, bool busy) {
  SpinLockScope lock(render.stateLock);
  render.busy = busy;
}

bool WantsPrepareMessage(SceneNode* node) {
  return t_ORYOS_At->IsKindOf(node, kPreparingObjectKind) &&
         t_ORYOS_Bo->GetMode(static_cast<BaseObject*>(node), kPreparingMode) != 0;
}

void SendHookMessages(RenderThread& render) {
  SetBusy(render, true);
  SceneNode* first = t_ORYOS_Bd->GetFirstObject(render.document);
  const SceneNode* top = first ? t_ORYOS_At->GetUp(first) : nullptr;
  for (SceneNode* node = first; node; node = NextInTree(node, top)) {
    if (!WantsPrepareMessage(node)) continue;
    PrepareMessageData data;
    t_ORYOS_At->SendNodeMessage(node, kPrepareMessage, &data);
  }
  if (SceneNode* hook = t_ORYOS_Bd->FindSceneHook(render.document, kPreparingSceneHook)) {
    PrepareMessageData data;
    t_ORYOS_At->SendNodeMessage(hook, kPrepareMessage, &data);
  }
  SetBusy(render, false);
}

void CopyAndDropDocument(RenderThread& render) {
  {
    SpinLockScope lock(render.stateLock);
    render.cloning = true;
    render.busy = true;
  }
  SceneNode* copy = t_ORYOS_At->CloneNode(render.document, 0, nullptr);
  {
    SpinLockScope lock(render.stateLock);
    render.cloning = false;
  }
  if (copy) t_ORYOS_Ge->FreeDocument(static_cast<BaseDocument*>(copy));
  SetBusy(render, false);
}

// What both steps share: the render stops, a busy record refuses, the step runs on an open
// document, and a close that came in meanwhile is carried out afterwards.
template <class Step>
bool RunPreparationStep(RenderThread& render, Step step) {
  render.StopThread();
  {
    SpinLockScope lock(render.stateLock);
    if (render.busy) return false;
  }
  if (render.sessionOpen && render.document) step(render);
  SpinLockScope lock(render.stateLock);
  if (render.destroyPending) {
    render.DestroyContents();
    render.destroyPending = false;
  }
  return false;
}

}  // namespace

bool RunHookMessages(RenderThread& render) { return RunPreparationStep(render, SendHookMessages); }

bool CopyDocumentOnce(RenderThread& render) { return RunPreparationStep(render, CopyAndDropDocument); }

}  // namespace quillon
