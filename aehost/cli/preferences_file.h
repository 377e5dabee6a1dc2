// The host's preferences kept in a file across runs (--prefs FILE): what the persistent data
// suite holds, as a JSON object of sections, each an object of keys with text values:
//   {"Orrery Studio": {"ORY_LITEPATH": "explicit:/srv/orrery/Orrery Studio.exe"}}
#pragma once

#include <string>

namespace aehost {

// Reads the preferences file into the host; a missing file is a first run and leaves no
// preferences. False with "<path>: <problem>" in `error` for a file that is not a regular
// file, is larger than 1 MiB, or is not such an object.
bool ReadPreferencesFile(const std::string& path, std::string* error);

// Writes the host's preferences to the file, whole or not at all.
bool WritePreferencesFile(const std::string& path, std::string* error);

}  // namespace aehost
