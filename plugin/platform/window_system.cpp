#include "plugin/platform/window_system.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include "sdk/window_system.h"

namespace {

// The host's record, looked up each time: it is the process's for as long as it runs.
const QaeWindowSystemRecord* WindowSystem() {
  return static_cast<const QaeWindowSystemRecord*>(dlsym(RTLD_DEFAULT, QAE_WINDOW_SYSTEM_SYMBOL));
}

}  // namespace

std::optional<uint64_t> FindHostMainWindow() {
  const QaeWindowSystemRecord* system = WindowSystem();
  if (!system || !system->ListTopLevelWindows) return std::nullopt;
  std::vector<QaeWindowInfo> windows(static_cast<size_t>(std::max(system->ListTopLevelWindows(nullptr, 0), 0)));
  // A window may close between the count and the list.
  const int32_t listed = system->ListTopLevelWindows(windows.data(), static_cast<int32_t>(windows.size()));
  windows.resize(std::min(windows.size(), static_cast<size_t>(std::max(listed, 0))));
  for (const QaeWindowInfo& window : windows) {
    if (window.processId == ::getpid() && window.owner == 0 && window.visible) return window.number;
  }
  return std::nullopt;
}

bool WaitForThreadInput(int32_t milliseconds) {
  const QaeWindowSystemRecord* system = WindowSystem();
  if (system && system->WaitForInput) return system->WaitForInput(milliseconds) != 0;
  SleepMilliseconds(milliseconds);
  return false;
}

void DispatchOnePendingMessage() {
  const QaeWindowSystemRecord* system = WindowSystem();
  if (system && system->DispatchOne) system->DispatchOne();
}

void SleepMilliseconds(int32_t milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }
