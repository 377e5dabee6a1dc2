#pragma once
// A command object of the render session: a thread that works on the renders of its own
// map. `currentId` is set only by SelectRender and cleared by ReleaseRender, so any value
// but kNoRender names an entry of `renders`. The map has no lock: it belongs to the thread
// that works on the object, and each object has a map of its own.
#include <atomic>
#include <cstdint>

#include "plugin/session/ory_thread.h"
#include "plugin/session/render_map.h"
#include "plugin/session/render_thread.h"

namespace quillon {

// What a command object starts with in `requestId`.
constexpr uint32_t kFirstRequestId = 1027408;
// `result` while a command runs, and after one that ran to its end.
constexpr int32_t kCommandDone = -1;

class LegacyIpCommunicationThread : public ORYThread {
 public:
  LegacyIpCommunicationThread() = default;
  // Stops every render and destroys its contents, or leaves that to a read under way.
  ~LegacyIpCommunicationThread() override;

  const char* GetThreadName() override { return "LegacyIpCommunicationThread"; }

  // Makes `id` the current render, with a new record when the map has none.
  bool SelectRender(uint32_t id);
  bool StopCurrentRender();
  bool CloseDocument();
  // Forgets the current render; with `free` also stops it and deletes its record.
  bool ReleaseRender(bool free);

  // The record of the current render, or null.
  RenderThread* CurrentRender() const;

  uint32_t currentId = kNoRender;
  RenderMap renders;
  std::atomic<int32_t> result{kCommandDone};
  uint32_t requestId = kFirstRequestId;
};

}  // namespace quillon
