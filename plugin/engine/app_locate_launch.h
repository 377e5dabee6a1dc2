#pragma once
// Telling whether the 3D application runs, starting it with a scene file and waiting until
// its link answers. The wait blocks the calling thread: at most 10 seconds in
// StartApplication, 15 in OpenInApplication. A started application is left running.
#include <sys/types.h>

#include <cstdint>
#include <string>

#include "plugin/engine/app_locate.h"
#include "plugin/host/cti.h"

// Modes of StartApplication.
constexpr int32_t kStartWithoutActiveFile = 1;  // no file of the active item is passed
constexpr int32_t kStartAndWait = 2;            // wait for the readiness signal

// Failure codes, each shown to the user with its text.
constexpr int32_t kCannotStart = 37;
constexpr int32_t kNoReadinessSignal = 38;

// Whether a process runs the program at `path` (compared by full path). A `processId` that
// is not 0 asks about that process only; it becomes the first that runs it. When the list of
// processes cannot be read: false, and `processId` 0.
bool FindRunningApplication(const std::string& path, pid_t* processId);

// Brings the process to the front, as far as this system has a front (see
// plugin/platform/process_front.h).
void BringProcessToFront(pid_t processId);

// Locates the application and starts it with `file` (with an empty `file` and a mode other
// than kStartWithoutActiveFile, the scene file of the active footage item). With
// kStartAndWait, an application that did not run yet is waited for. False after a message:
// no installation, the program could not be run, or no readiness signal in time.
bool StartApplication(CTI* cti, int32_t mode, std::string file, const ApplicationPlaces& places);

// The same for the application at `path`, without locating it, waiting whenever it did not
// run yet.
bool OpenInApplication(CTI* cti, std::string file, const std::string& path, const ApplicationPlaces& places);
