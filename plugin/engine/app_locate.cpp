#include "plugin/engine/app_locate.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "plugin/engine/app_locate_setting.h"
#include "plugin/platform/file_system.h"
#include "plugin/platform/installer_records.h"
#include "plugin/platform/program_folders.h"

namespace {

constexpr const char* kExecutableNames[] = {"Orrery Studio.exe", "Orrery Studio Lite.exe", "ORRERY STUDIO.exe"};
constexpr const char* kInstalledExecutable = "Orrery Studio.exe";
constexpr const char* kEngineExecutables[] = {"Quillon.exe", "QuillOn.exe"};
// The stem that ResolveExecutable accepts, and the length of the suffix behind it (".exe").
constexpr const char* kResolvableStems[] = {"Orrery Studio", "ORRERY STUDIO"};
constexpr size_t kSuffixLength = 4;
// The installer writes at most this many bytes for the name of the last installation.
constexpr size_t kLongestInstallationName = 600;

// Lower case of ASCII letters and of the umlauts in UTF-8 (Ä Ö Ü are C3 84, C3 96, C3 9C).
std::string FoldCase(const std::string& text) {
  std::string folded = text;
  for (size_t i = 0; i < folded.size(); ++i) {
    unsigned char c = static_cast<unsigned char>(folded[i]);
    if (c >= 'A' && c <= 'Z') folded[i] = static_cast<char>(c - 'A' + 'a');
    const bool umlaut = c == 0xC3 && i + 1 < folded.size();
    if (umlaut) {
      unsigned char next = static_cast<unsigned char>(folded[i + 1]);
      if (next == 0x84 || next == 0x96 || next == 0x9C) folded[i + 1] = static_cast<char>(next + 0x20);
    }
  }
  return folded;
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The 14 folder names in the order they are tried: newest year first, then newest release.
std::vector<std::string> InstallFolderNames() {
  std::vector<std::string> names;
  for (int year = 2030; year >= 2023; --year) names.push_back("Vantor Orrery Studio " + std::to_string(year));
  for (int release = 26; release >= 21; --release) names.push_back("Vantor Orrery Studio R" + std::to_string(release));
  return names;
}

bool TakeIfExists(const std::string& candidate, std::string* path) {
  if (!FileExists(candidate, false)) return false;
  *path = candidate;
  return true;
}

}  // namespace

ApplicationPlaces SystemApplicationPlaces() {
  return {ProgramFolderRoot(), InstallerRecordsPath(), "/ory_syncbridge_init_complete"};
}

bool IsApplicationPath(const std::string& path) {
  if (!FileExists(path, false)) return false;
  const std::string folded = FoldCase(path);
  for (const char* name : kExecutableNames)
    if (EndsWith(folded, "/" + FoldCase(name))) return true;
  return false;
}

bool FindInstalledApplication(const ApplicationPlaces& places, std::string* path) {
  for (const std::string& name : InstallFolderNames())
    if (TakeIfExists(JoinPath(JoinPath(places.programFolders, name), kInstalledExecutable), path)) return true;
  const std::string location = GetInstallLocation(places.installerRecords);
  return !location.empty() && TakeIfExists(JoinPath(location, kInstalledExecutable), path);
}

std::string GetInstallLocation(const std::string& recordsPath) {
  const InstallerRecords records = ReadInstallerRecords(recordsPath);
  std::string last = InstallerValue(records, "VANTOR Installer", "Last Installation").value_or("");
  if (last.size() > kLongestInstallationName) last.clear();
  for (int release = 26; release >= 21; --release) {
    const std::string key = "Uninstall/Vantor Orrery Studio R" + std::to_string(release);
    if (InstallerKeyExists(records, key)) return InstallerValue(records, key + "/" + last, "InstallLocation").value_or("");
  }
  return {};
}

int32_t LocateApplication(CTI* cti, const ApplicationPlaces& places, std::string* path) {
  if (!path->empty() && IsApplicationPath(*path)) return 1;
  std::string candidate;
  if (ReadStoredApplicationPath(cti, &candidate) && IsApplicationPath(candidate)) {
    *path = candidate;
    return 1;
  }
  if (FindInstalledApplication(places, &candidate) && IsApplicationPath(candidate)) {
    *path = candidate;
    return 1;
  }
  return kNoInstallation;
}

int32_t ReadApplicationVersion(const std::string& folder) {
  const auto text = ReadFileBytes(JoinPath(JoinPath(folder, "resource"), "version.h"));
  if (!text) return 0;
  std::string digits;
  size_t from = 0;
  for (int i = 1; i <= 4; ++i) {
    const std::string define = "ORY_V" + std::to_string(i);
    const size_t found = text->find(define, from);
    if (found == std::string::npos) break;
    const size_t begin = found + define.size();
    const size_t end = text->find("#define", begin);
    const std::string number = text->substr(begin, end == std::string::npos ? std::string::npos : end - begin);
    digits += std::to_string(std::atoi(number.c_str()));
    from = begin;
  }
  // A version whose digits a 32-bit number cannot hold counts as none.
  const long long version = digits.empty() || digits.size() > 10 ? 0 : std::atoll(digits.c_str());
  return version > INT32_MAX ? 0 : static_cast<int32_t>(version);
}

int32_t ResolveExecutable(std::string* path) {
  size_t folderEnd = std::string::npos;
  for (const char* stem : kResolvableStems) {
    const size_t nameLength = std::char_traits<char>::length(stem) + kSuffixLength;
    if (path->size() >= nameLength && path->compare(path->size() - nameLength, nameLength - kSuffixLength, stem) == 0)
      folderEnd = path->size() - nameLength;
  }
  if (folderEnd == std::string::npos) return 0;
  const std::string folder = path->substr(0, folderEnd);
  const int32_t version = ReadApplicationVersion(folder);
  if (version < 20000) return 0;
  if (version < 21000) return 1;
  return FindQuillonExecutable(folder, path) ? 0 : 1;
}

bool FindQuillonExecutable(const std::string& folder, std::string* path) {
  for (const char* name : kEngineExecutables)
    if (TakeIfExists(JoinPath(folder, name), path)) return true;
  return false;
}
