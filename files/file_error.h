// How the file functions report a problem: "<path>: <what is wrong>", the system's own
// words where the system gave the reason.
#pragma once

#include <cstring>
#include <string>

namespace qae::files {

inline bool Fail(std::string* error, const std::string& path, const std::string& problem) {
  if (error) *error = path + ": " + problem;
  return false;
}

inline std::string SystemReason(int code) { return std::strerror(code); }

}  // namespace qae::files
