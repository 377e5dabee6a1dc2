#pragma once
// The window system as the engine wait needs it: the host's main window, and the pending work
// of the main thread's queue, served while the thread waits so that the host stays responsive.
// Where the process has no window system, there is no window and nothing is ever pending.
#include <cstdint>
#include <optional>

// The host's main window: the first top-level window in system order that belongs to this
// process, has no owner and is shown.
std::optional<uint64_t> FindHostMainWindow();

// Waits up to `milliseconds` for pending work of this thread; returns early, with true, when
// there is some.
bool WaitForThreadInput(int32_t milliseconds);

// Takes one piece of pending work off this thread's queue and runs it.
void DispatchOnePendingMessage();

// Sleeps `milliseconds`.
void SleepMilliseconds(int32_t milliseconds);
