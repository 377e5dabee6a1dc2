#include "plugin/platform/dynamic_library.h"

#include <dlfcn.h>

std::string LibraryFileName(const std::string& name) { return "lib" + name + ".so"; }

void* LoadLibraryAt(const std::string& path, std::string* error) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library && error) {
    const char* reason = dlerror();
    *error = reason ? reason : "unknown reason";
  }
  return library;
}

void* FindLibrarySymbol(void* library, const char* name) { return library ? dlsym(library, name) : nullptr; }

bool FreeLibrary(void* library) { return library && dlclose(library) == 0; }
