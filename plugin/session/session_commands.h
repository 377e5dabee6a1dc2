#pragma once
// The three commands that reach a render from outside: stop it, close it, end its
// session. Each runs on a process-wide command object of its own kind, made on first use
// and kept between commands, one command of a kind at a time. A command object selects
// the render in its own map, so a command reaches only what that object has selected.
//
// Results: 0 the engine is not running (nothing was made or done); -1 the command ran to
// its end, or has not ended yet; 21 to 25 what went wrong inside the command; 31 and 32
// the command object could not be made or its last command still runs.
#include <cstdint>

#include "plugin/session/ip_communication_thread.h"

namespace quillon {

constexpr int32_t kStopNotSelected = 21;
constexpr int32_t kStopNotStopped = 22;
constexpr int32_t kCloseNotSelected = 23;
constexpr int32_t kCloseNotStopped = 24;
constexpr int32_t kCloseNotReleased = 25;
constexpr int32_t kCommandUnavailable = 31;
constexpr int32_t kStopStillRunning = 32;

class StopRenderThread : public LegacyIpCommunicationThread {
 public:
  void Main() override;
};

class CloseThread : public LegacyIpCommunicationThread {
 public:
  void Main() override;
};

class SessionThread : public LegacyIpCommunicationThread {
 public:
  void Main() override;
};

}  // namespace quillon

int32_t StopRender(uint32_t id);
int32_t CloseRender(uint32_t id);
// Starts the end of a session and returns at once, with what `result` holds then.
int32_t EndSession(uint32_t id);
// Deletes the command objects that exist.
void FreeSessionThreads();

// The command objects while they exist, for a look at their maps.
quillon::StopRenderThread* StopRenderCommandObject();
quillon::CloseThread* CloseCommandObject();
quillon::SessionThread* SessionCommandObject();
