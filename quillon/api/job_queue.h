// The core framework's job queue and the engine's main thread that serves it.
#pragma once

#include <cstdint>

#include "plugin/engine/engine_ops.h"

namespace quillon {

bool ExecuteOnMainThread(MainThreadJob job, void* data, int32_t waitMilliseconds);
bool IsMainThread();

// Runs every job that is queued, also those queued meanwhile, and ends the main thread;
// the next job starts it again. The engine's shutdown calls it, so that no job of a program
// outlives the program, and so does the end of the process.
void StopMainThread();

}  // namespace quillon
