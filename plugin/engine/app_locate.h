#pragma once
// Finding a full installation of the 3D application beside the engine library, and choosing
// which of its executables to start. Nothing of the export or import depends on it.
#include <cstdint>
#include <string>

// Whether `path` is an existing file (not a folder) named as the application's executable,
// compared without regard to case.
bool IsApplicationPath(const std::string& path);

// The executable of the newest installation folder below `root`, tried from the year 2030
// down to 2023, then the releases R26 down to R21; false, with `path` unchanged, when none
// holds one.
bool FindInstalledApplicationIn(const std::string& root, std::string* path);

// The same below the system's folder of programs.
bool FindInstalledApplication(std::string* path);

// The version of the installation in `folder`, from its "resource/version.h": the digits of
// the four version defines one behind the other (21, 0, 0, 0 give 21000); 0 without the file.
int32_t ReadApplicationVersion(const std::string& folder);
