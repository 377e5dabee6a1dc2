#include "plugin/session/ory_thread.h"

#include "plugin/engine/engine_tables.h"

namespace quillon {

namespace {

void RunMain(void* object) { static_cast<ORYThread*>(object)->Main(); }
bool RunTestBreak(void* object) { return static_cast<ORYThread*>(object)->TestBreak(); }
const char* RunGetThreadName(void* object) { return static_cast<ORYThread*>(object)->GetThreadName(); }

}  // namespace

ORYThread::ORYThread() {
  if (t_ORYOS_Bt) handle = t_ORYOS_Bt->AllocThread(&RunMain, &RunTestBreak, this, &RunGetThreadName);
}

ORYThread::~ORYThread() {
  if (handle && !borrowed) t_ORYOS_Bt->FreeThread(handle);
}

bool ORYThread::Start(int32_t mode, int32_t priority) {
  return handle && t_ORYOS_Bt->StartThread(handle, mode, priority, 0);
}

void ORYThread::End(bool wait) {
  if (handle) t_ORYOS_Bt->EndThread(handle, wait ? 1 : 0);
}

void ORYThread::Wait() {
  if (handle) t_ORYOS_Bt->WaitThread(handle, 0);
}

bool ORYThread::IsRunning() const { return handle && t_ORYOS_Bt->IsThreadRunning(handle); }

}  // namespace quillon
