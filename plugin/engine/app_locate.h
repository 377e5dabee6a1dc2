#pragma once
// Finding a full installation of the 3D application beside the engine library, and choosing
// which of its executables to start. Nothing of the export or import depends on it.
#include <cstdint>
#include <string>

#include "plugin/host/cti.h"

// Where this system keeps what the locator reads: the folder below which installations
// stand, the installer's records, and the name of the event by which a started application
// says that its link is up.
struct ApplicationPlaces {
  std::string programFolders;
  std::string installerRecords;
  std::string readinessEvent;
};

// The places of this system (see plugin/platform).
ApplicationPlaces SystemApplicationPlaces();

// Failure code of LocateApplication: no installation found.
constexpr int32_t kNoInstallation = 39;

// Whether `path` is an existing file (not a folder) named as the application's executable,
// compared without regard to case.
bool IsApplicationPath(const std::string& path);

// The executable of the newest installation folder below the folder of programs, tried from
// the year 2030 down to 2023, then the releases R26 down to R21; then the one in the folder
// the installer's records give. False, with `path` unchanged, when none exists.
bool FindInstalledApplication(const ApplicationPlaces& places, std::string* path);

// The folder of the last installation as the installer's records give it: the first of the
// uninstall keys R26 down to R21 that exists, below it the entry named by the last
// installation, its install location. Empty when the records give none.
std::string GetInstallLocation(const std::string& recordsPath);

// The first of these that names the application: `path` as given, the stored setting, the
// installed executable. 1 with `path` set to it, else kNoInstallation.
int32_t LocateApplication(CTI* cti, const ApplicationPlaces& places, std::string* path);

// The version of the installation in `folder`, from its "resource/version.h": the digits of
// the four version defines one behind the other (21, 0, 0, 0 give 21000); 0 without the file.
int32_t ReadApplicationVersion(const std::string& folder);

// Which executable of an installation to start, by its version. 1: `path` itself (versions
// 20000 to 20999, and later ones without an engine executable of their own). 0: a name other
// than "Orrery Studio" (or in capitals) with a four-letter suffix, a version below 20000, or
// from 21000 an installation with the engine's own executable, which `path` then names.
int32_t ResolveExecutable(std::string* path);

// The engine's own executable in `folder` ("Quillon.exe", else "QuillOn.exe").
bool FindQuillonExecutable(const std::string& folder, std::string* path);
