#include "plugin/platform/module_path.h"

#include <dlfcn.h>

#include <climits>
#include <cstdlib>

std::string ModulePathOf(const void* address) {
  Dl_info info{};
  if (dladdr(address, &info) == 0 || !info.dli_fname) return "";
  char resolved[PATH_MAX];
  return realpath(info.dli_fname, resolved) ? resolved : info.dli_fname;
}
