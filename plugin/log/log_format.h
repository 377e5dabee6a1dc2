#pragma once
// The form of the debug log: the header written at the first log call of a run, and
// the timestamped lines.
#include <ctime>
#include <optional>
#include <string>

inline constexpr char kLogFileName[] = "QUILLON_FOR_AE_DEBUG_LOG.txt";

// What the host tells about itself for the header; each part is absent when the host
// could not be asked or refused.
struct HostLogInfo {
  std::optional<bool> renderOnly;
  std::optional<std::string> user;
  std::optional<std::string> company;
  std::optional<std::string> language;
};

// The header block, without the line feed that follows it in the file.
std::string FormatLogHeader(const std::tm& localStart, const std::string& systemName,
                            const HostLogInfo* host);

// One line: the local time on a 12-hour clock with no AM/PM mark, " : ", the text.
std::string FormatLogLine(const std::tm& localTime, const std::string& text);

// The text logged at the end of a scope that took `seconds`.
std::string FormatScopeEnd(std::optional<double> seconds);
