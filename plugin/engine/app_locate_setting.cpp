#include "plugin/engine/app_locate_setting.h"

#include <algorithm>
#include <cctype>

#include "plugin/platform/file_system.h"

namespace {

constexpr const char* kSection = "Orrery Studio";
constexpr const char* kKey = "ORY_LITEPATH";
constexpr const char* kExplicitPrefix = "explicit:";
// A stored path inside the plug-in's own folder is left over from a copy of the application
// the plug-in once carried, and never what the user chose.
constexpr const char* kPluginSupportMark = "/Plug-ins/Quillon by Vantor/support/";
// The size of the buffer the value is read into, the host's limit for a path.
constexpr A_u_long kValueBufferSize = 260;

const AEGP_PersistentDataSuite3* Preferences(CTI* cti) {
  return cti->Suite<AEGP_PersistentDataSuite3>(kAEGPPersistentDataSuite, kAEGPPersistentDataSuiteVersion3);
}

std::string Lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

bool StartsWith(const std::string& text, const std::string& start) { return text.compare(0, start.size(), start) == 0; }

}  // namespace

bool ReadStoredApplicationPath(CTI* cti, std::string* path) {
  if (!cti) return false;
  const AEGP_PersistentDataSuite3* preferences = Preferences(cti);
  AEGP_PersistentBlobH blob = nullptr;
  if (preferences->AEGP_GetApplicationBlob(&blob)) return false;
  char buffer[kValueBufferSize] = {};
  if (preferences->AEGP_GetString(blob, kSection, kKey, "", kValueBufferSize, buffer, nullptr)) return false;
  std::string stored = buffer;
  if (StartsWith(stored, kExplicitPrefix))
    stored.erase(0, std::char_traits<char>::length(kExplicitPrefix));
  else if (stored.find(kPluginSupportMark) != std::string::npos)
    stored = *path;
  if (FileExists(stored, false)) *path = stored;
  return true;
}

bool StoreApplicationPath(CTI* cti, const ApplicationPlaces& places, const std::string& path, bool isDefault) {
  if (!cti) return false;
  // The setting is read once before the first store of a process, so that preferences the
  // host cannot read are not overwritten blindly.
  static bool settingRead = false;
  if (!settingRead) {
    std::string ignored;
    if (!ReadStoredApplicationPath(cti, &ignored)) return false;
    settingRead = true;
  }
  const AEGP_PersistentDataSuite3* preferences = Preferences(cti);
  AEGP_PersistentBlobH blob = nullptr;
  A_Boolean exists = false;
  if (preferences->AEGP_GetApplicationBlob(&blob) || preferences->AEGP_DoesKeyExist(blob, kSection, kKey, &exists))
    return false;
  std::string value = path;
  std::string installed;
  if (exists && !isDefault) {
    FindInstalledApplication(places, &installed);
    if (Lowered(installed) != Lowered(path)) value = kExplicitPrefix + path;
  }
  return preferences->AEGP_SetString(blob, kSection, kKey, value.c_str()) == A_Err_NONE;
}
