#pragma once
// Libraries loaded at run time by full path.
#include <string>

// The file name that a library called `name` has on this system ("libname.so").
std::string LibraryFileName(const std::string& name);

// A handle of the loaded library, or null; `error` (optional) gets the system's reason.
void* LoadLibraryAt(const std::string& path, std::string* error);
// The address of an exported symbol, or null.
void* FindLibrarySymbol(void* library, const char* name);
// True when the library was unloaded.
bool FreeLibrary(void* library);
