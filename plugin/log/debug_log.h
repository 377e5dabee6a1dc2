#pragma once
// An optional trace file for support cases. It costs one test of a flag unless the
// environment variable QUILLON_FOR_AE_ENABLE_DEBUG_LOG exists (whatever its value) when
// the plug-in is loaded; then every call appends a timestamped line to
// QUILLON_FOR_AE_DEBUG_LOG.txt in the user's desktop folder, after a header that the
// first call of each run writes.
#include <cstdint>
#include <string>

bool IsLogEnabled();

// The log file's path; empty when logging is off or there is no desktop folder (the
// next call tries again). The first call that finds the folder writes the header.
std::string GetLogPath();

void LogLine(const std::string& text);
void LogEvent(const std::string& scope, const std::string& text);

// Logs "Start" when made and "End [seconds sec]" when it goes out of scope.
class DebugLogger {
 public:
  explicit DebugLogger(std::string name = "DebugLogger");
  ~DebugLogger();
  DebugLogger(const DebugLogger&) = delete;
  DebugLogger& operator=(const DebugLogger&) = delete;

 private:
  std::string name_;
  int64_t startTicks_ = 0;  // 100 ns units, 0 when logging is off
};
