#include "plugin/engine/app_locate.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "plugin/platform/file_system.h"
#include "plugin/platform/program_folders.h"

namespace {

constexpr const char* kExecutableNames[] = {"Orrery Studio.exe", "Orrery Studio Lite.exe", "ORRERY STUDIO.exe"};
constexpr const char* kInstalledExecutable = "Orrery Studio.exe";

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

}  // namespace

bool IsApplicationPath(const std::string& path) {
  if (!FileExists(path, false)) return false;
  const std::string folded = FoldCase(path);
  for (const char* name : kExecutableNames)
    if (EndsWith(folded, "/" + FoldCase(name))) return true;
  return false;
}

bool FindInstalledApplicationIn(const std::string& root, std::string* path) {
  for (const std::string& name : InstallFolderNames()) {
    const std::string candidate = JoinPath(JoinPath(root, name), kInstalledExecutable);
    if (FileExists(candidate, false)) {
      *path = candidate;
      return true;
    }
  }
  return false;
}

bool FindInstalledApplication(std::string* path) { return FindInstalledApplicationIn(ProgramFolderRoot(), path); }

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
