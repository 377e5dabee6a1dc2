#pragma once
// Bringing a process to the front. On Windows that is raising its first top-level window
// and giving it the input focus. The host runs without a desktop here, so no window
// exists to raise; what stays of "to the front" is what a shell's `fg` does to a job:
// a process that was stopped goes on running, so that it can answer.
#include <sys/types.h>

// Continues the process `id` if it was stopped; false when it no longer exists or is not
// this user's.
bool ContinueProcess(pid_t id);
