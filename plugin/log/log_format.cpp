#include "plugin/log/log_format.h"

#include <sstream>

namespace {

// The C library's asctime form, "Sun Sep 16 01:03:52 1973\n", written without asctime's
// static buffer.
std::string AscTime(const std::tm& t) {
  char buffer[64];
  std::strftime(buffer, sizeof buffer, "%a %b %e %H:%M:%S %Y\n", &t);
  // asctime pads the day of the month to two places with a blank, as %e does.
  return buffer;
}

}  // namespace

std::string FormatLogHeader(const std::tm& localStart, const std::string& systemName,
                            const HostLogInfo* host) {
  std::string text = "\n";
  text += "QUILLON_FOR_AE_DEBUG_LOG\n";
  text += "=========================\n";
  text += "Start log : " + AscTime(localStart) + "\n";
  text += "Quillon Version : 5.1.2x1918709714\n";
  text += "Operating System : " + systemName + " \n";
  text += "Application : After Effects\n";
  if (!host) return text;
  if (host->renderOnly) text += std::string("Render Only    : ") + (*host->renderOnly ? "YES" : "NO") + "\n";
  if (host->user && host->company) {
    text += "Current User    : " + *host->user + "\n";
    text += "Current Company : " + *host->company + "\n";
  }
  if (host->language) text += "Current Language    : " + *host->language + "\n";
  return text;
}

std::string FormatLogLine(const std::tm& localTime, const std::string& text) {
  char stamp[80];
  std::strftime(stamp, sizeof stamp, "%Y-%m-%d %I:%M:%S", &localTime);
  return std::string(stamp) + " : " + text + "\n";
}

std::string FormatScopeEnd(std::optional<double> seconds) {
  std::ostringstream text;
  text << "End";
  if (seconds) text << " [" << *seconds << " sec]";
  return text.str();
}
