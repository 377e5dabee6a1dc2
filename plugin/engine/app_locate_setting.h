#pragma once
// The application's folder of choice, kept in the host's application preferences (section
// "Orrery Studio", key "ORY_LITEPATH") across runs of the host. The value is a path to the
// executable, or "explicit:" and a path when the user chose another place than the default
// installation.
#include <string>

#include "plugin/engine/app_locate.h"
#include "plugin/host/cti.h"

// Sets `path` to the stored executable when that file exists; a value inside the plug-in's
// own support folder is not used, and `path` stays as it was then. True when the preferences
// could be read (also when nothing is stored); false with a null frame.
bool ReadStoredApplicationPath(CTI* cti, std::string* path);

// Stores `path` as the setting. When a setting exists and `isDefault` is false, a path other
// than the installed executable (compared in lower case) is stored as "explicit:" and the
// path. True once written.
bool StoreApplicationPath(CTI* cti, const ApplicationPlaces& places, const std::string& path, bool isDefault);
