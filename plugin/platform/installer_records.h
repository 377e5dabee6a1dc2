#pragma once
// The records the 3D application's installer leaves on the machine. On Windows they are
// registry keys below HKEY_LOCAL_MACHINE; on this system they are one small text file of
// `key = value` lines, where a key is a path of names joined by '/', for example
//   VANTOR Installer/Last Installation = Orrery Studio R26
//   Uninstall/Vantor Orrery Studio R26/Orrery Studio R26/InstallLocation = /srv/orrery
// Lines that begin with '#' and blank lines are ignored; blanks around key and value too.
#include <map>
#include <optional>
#include <string>

// Where the installer writes its records on this system.
std::string InstallerRecordsPath();

using InstallerRecords = std::map<std::string, std::string>;

// The records of the file at `path`; none when it is missing, unreadable, not a regular
// file or larger than an installer writes (64 KiB).
InstallerRecords ReadInstallerRecords(const std::string& path);

// Whether `key` opens, as a registry key does: some record lies below it.
bool InstallerKeyExists(const InstallerRecords& records, const std::string& key);

// The value of `name` below `key`.
std::optional<std::string> InstallerValue(const InstallerRecords& records, const std::string& key,
                                          const std::string& name);
