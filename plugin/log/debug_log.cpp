#include "plugin/log/debug_log.h"

#include <sys/utsname.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <mutex>

#include "plugin/log/host_log_info.h"
#include "plugin/log/log_format.h"
#include "plugin/platform/desktop_folder.h"
#include "plugin/platform/file_system.h"

namespace {

// Read once at load: the environment is not consulted again.
const bool g_logEnabled = std::getenv("QUILLON_FOR_AE_ENABLE_DEBUG_LOG") != nullptr;

std::mutex g_logPathMutex;
std::string g_logPath;

std::tm LocalNow() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return local;
}

std::string SystemName() {
  struct utsname name {};
  return uname(&name) == 0 ? name.sysname : "unknown";
}

int64_t Ticks() {
  using Ticks100ns = std::chrono::duration<int64_t, std::ratio<1, 10000000>>;
  return std::chrono::duration_cast<Ticks100ns>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

bool IsLogEnabled() { return g_logEnabled; }

std::string GetLogPath() {
  if (!g_logEnabled) return "";
  {
    std::lock_guard<std::mutex> lock(g_logPathMutex);
    if (!g_logPath.empty()) return g_logPath;
    const std::string desktop = DesktopFolder();
    if (desktop.empty()) return "";
    g_logPath = JoinPath(desktop, kLogFileName);
  }
  // The host blocks of the header need the calling thread's frame; without one the
  // header ends with the application line.
  const std::optional<HostLogInfo> host = QueryHostLogInfo();
  AppendToFile(g_logPath, FormatLogHeader(LocalNow(), SystemName(), host ? &*host : nullptr) + "\n");
  return g_logPath;
}

void LogLine(const std::string& text) {
  if (!g_logEnabled) return;
  const std::string path = GetLogPath();
  if (path.empty()) return;
  AppendToFile(path, FormatLogLine(LocalNow(), text));
}

void LogEvent(const std::string& scope, const std::string& text) {
  if (g_logEnabled) LogLine(scope + " -> " + text);
}

DebugLogger::DebugLogger(std::string name) : name_(std::move(name)) {
  if (g_logEnabled) startTicks_ = Ticks();
  LogEvent(name_, "Start");
}

DebugLogger::~DebugLogger() {
  std::optional<double> seconds;
  if (g_logEnabled) seconds = static_cast<double>(Ticks() - startTicks_) / 10000000.0;
  LogEvent(name_, FormatScopeEnd(seconds));
}
