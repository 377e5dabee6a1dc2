#include "files/same_file.h"

#include <sys/stat.h>

namespace qae::files {

bool SameFile(const std::string& a, const std::string& b) {
  struct stat first {}, second {};
  return ::stat(a.c_str(), &first) == 0 && ::stat(b.c_str(), &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

}  // namespace qae::files
