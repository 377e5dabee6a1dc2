#include "plugin/engine/app_locate_launch.h"

#include <unistd.h>

#include <vector>

#include "plugin/host/host_text.h"
#include "plugin/platform/process_front.h"
#include "plugin/platform/process_list.h"
#include "plugin/platform/process_start.h"
#include "plugin/platform/readiness_event.h"
#include "plugin/text/encodings.h"
#include "plugin/text/load_string_table.h"

namespace {

// The system's process list is read this far, as the application's own locator does.
constexpr size_t kProcessesLooked = 1024;
// The options every start passes behind the file.
constexpr const char* kStartOptions[] = {"-setforeground", "-g_supressWarning=true"};
// One round of the wait, and the rounds of each start: 10 s for StartApplication, 15 s for
// OpenInApplication, the time the application's link takes to come up on a slow machine.
constexpr int kRoundMilliseconds = 500;
constexpr int kStartRounds = 20;
constexpr int kOpenRounds = 30;

bool HasSceneSuffix(const std::string& file) {
  return file.size() > 4 && (file.compare(file.size() - 4, 4, ".ory") == 0 || file.compare(file.size() - 4, 4, ".ORY") == 0);
}

// The scene file of the active item: the path of its main footage when that is a scene file.
std::string ActiveItemScene(CTI* cti) {
  const auto* items = cti->Suite<AEGP_ItemSuite13>(kAEGPItemSuite, kAEGPItemSuiteVersion13);
  AEGP_ItemH item = nullptr;
  AEGP_ItemType type = AEGP_ItemType_NONE;
  if (items->AEGP_GetActiveItem(&item) || !item || items->AEGP_GetItemType(item, &type) ||
      type != AEGP_ItemType_FOOTAGE)
    return {};
  const auto* footage = cti->Suite<AEGP_FootageSuite11>(kAEGPFootageSuite, kAEGPFootageSuiteVersion11);
  AEGP_FootageH main = nullptr;
  AEGP_MemHandle handle = nullptr;
  if (footage->AEGP_GetMainFootageFromItem(item, &main) ||
      footage->AEGP_GetFootagePath(cti->pluginId, main, 0, 0, &handle))
    return {};
  std::u16string path;
  if (ReadUtf16Handle(*cti, handle, &path)) return {};
  const std::string file = EncodeUtf8(path);
  return HasSceneSuffix(file) ? file : std::string();
}

// Runs the application with the file and the start options; the file reaches it as one
// argument, whatever blanks it holds.
bool RunApplication(CTI* cti, const std::string& program, const std::string& file) {
  std::vector<std::string> arguments{file};
  arguments.insert(arguments.end(), std::begin(kStartOptions), std::end(kStartOptions));
  std::string error;
  if (StartDetachedProcess(program, arguments, &error)) return true;
  ReportError(kCannotStart, cti);
  return false;
}

bool WaitRounds(ReadinessEvent& event, int rounds) {
  for (int round = 0; round < rounds; ++round)
    if (WaitForReadiness(event, kRoundMilliseconds)) return true;
  return false;
}

}  // namespace

bool FindRunningApplication(const std::string& path, pid_t* processId) {
  std::vector<RunningProcess> processes;
  if (!ListProcesses(kProcessesLooked, &processes)) {
    *processId = 0;
    return false;
  }
  const std::string program = FullPath(path);
  for (const RunningProcess& process : processes) {
    if (*processId != 0 && process.id != *processId) continue;
    if (process.executable != program) continue;
    *processId = process.id;
    return true;
  }
  return false;
}

void BringProcessToFront(pid_t processId) { ContinueProcess(processId); }

bool StartApplication(CTI* cti, int32_t mode, std::string file, const ApplicationPlaces& places) {
  if (!cti) return false;
  std::string program;
  if (LocateApplication(cti, places, &program) == kNoInstallation) {
    ReportError(kNoInstallation, cti);
    return false;
  }
  if (mode != kStartWithoutActiveFile && file.empty()) file = ActiveItemScene(cti);
  pid_t before = 0;
  const bool waitNeeded = mode == kStartAndWait && !FindRunningApplication(program, &before);
  pid_t running = 0;
  FindRunningApplication(program, &running);
  if (!RunApplication(cti, program, file)) return false;
  if (running) BringProcessToFront(running);
  if (!waitNeeded) return true;
  ReadinessEvent event;
  const bool ready = CreateReadinessEvent(places.readinessEvent, EventReset::kManual, &event) &&
                     WaitRounds(event, kStartRounds);
  CloseReadinessEvent(event);
  if (!ready) ReportError(kNoReadinessSignal, cti);
  return ready;
}

bool OpenInApplication(CTI* cti, std::string file, const std::string& path, const ApplicationPlaces& places) {
  if (!cti) return false;
  if (file.empty()) file = ActiveItemScene(cti);
  pid_t running = 0;
  const bool waitNeeded = !FindRunningApplication(path, &running);
  ReadinessEvent event;
  if (waitNeeded) CreateReadinessEvent(places.readinessEvent, EventReset::kAuto, &event);
  if (!RunApplication(cti, path, file)) {
    CloseReadinessEvent(event);
    return false;
  }
  if (!waitNeeded) return true;
  bool ready = false;
  for (int round = 0; round < kOpenRounds && !ready; ++round) {
    // Without an event the only sign of the application is its process.
    if (event.semaphore) {
      ready = WaitForReadiness(event, kRoundMilliseconds);
    } else {
      pid_t started = 0;
      ready = FindRunningApplication(path, &started);
      if (!ready) usleep(kRoundMilliseconds * 1000);
    }
  }
  CloseReadinessEvent(event);
  if (!ready) ReportError(kNoReadinessSignal, cti);
  return ready;
}
