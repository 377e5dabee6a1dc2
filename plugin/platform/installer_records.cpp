#include "plugin/platform/installer_records.h"

#include <sys/stat.h>

#include <sstream>

#include "plugin/platform/file_system.h"

namespace {

constexpr off_t kLargestRecordsFile = 64 * 1024;

std::string Trimmed(const std::string& text) {
  const size_t begin = text.find_first_not_of(" \t\r");
  if (begin == std::string::npos) return {};
  const size_t end = text.find_last_not_of(" \t\r");
  return text.substr(begin, end - begin + 1);
}

bool SmallEnough(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && info.st_size <= kLargestRecordsFile;
}

}  // namespace

std::string InstallerRecordsPath() { return "/etc/vantor/installer-records"; }

InstallerRecords ReadInstallerRecords(const std::string& path) {
  InstallerRecords records;
  if (!SmallEnough(path)) return records;
  const auto bytes = ReadFileBytes(path);
  if (!bytes) return records;
  std::istringstream lines(*bytes);
  std::string line;
  while (std::getline(lines, line)) {
    const std::string text = Trimmed(line);
    const size_t equals = text.find('=');
    if (text.empty() || text[0] == '#' || equals == std::string::npos) continue;
    records[Trimmed(text.substr(0, equals))] = Trimmed(text.substr(equals + 1));
  }
  return records;
}

bool InstallerKeyExists(const InstallerRecords& records, const std::string& key) {
  const std::string below = key + "/";
  const auto first = records.lower_bound(below);
  return first != records.end() && first->first.compare(0, below.size(), below) == 0;
}

std::optional<std::string> InstallerValue(const InstallerRecords& records, const std::string& key,
                                          const std::string& name) {
  const auto found = records.find(key + "/" + name);
  if (found == records.end()) return std::nullopt;
  return found->second;
}
