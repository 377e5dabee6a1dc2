// The host's stand-in for the desktop's window system: one main window, and the queue of work
// pending on the main thread (a repaint after a menu closes, for one). A plug-in that blocks
// the main thread, as the engine wait does, serves that queue through the record the host
// exports (sdk/window_system.h); what is still pending when a hook returns the host runs itself.
#pragma once

#include <cstdint>
#include <functional>

namespace aehost {

// The number of the host's main window: the process's own, shown and unowned.
uint64_t MainWindowNumber();

// Queues work for the main thread.
void PostMainThreadWork(std::function<void()> work);

// Runs all work still pending, in the order it was posted.
void RunPendingMainThreadWork();

}  // namespace aehost
